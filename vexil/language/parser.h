// Statements to trees, by precedence climbing. Entry point: Parser. Tests:
// tests/transcripts/vexil/language.vt, errors.vt, limits.vt.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "vexil/language/ast.h"
#include "vexil/language/lexer.h"

namespace vexil {

/// Reads the statements of a text one after another, so that each can run before the next is looked
/// at. Throws HostError; after it, skip_statement() goes on with the next line.
class Parser {
 public:
  explicit Parser(std::string_view text);
  /// The next statement, or null at the end of the text.
  std::shared_ptr<Program> next();
  void skip_statement();
  /// Where the statement that was read last starts.
  std::size_t statement_line() const { return statement_line_; }

 private:
  // The names that a procedure's body knows as its own.
  struct Scope {
    std::vector<std::string> names;  // parameters, then what is captured
    std::vector<std::uint32_t> captured;
  };
  class CommaScope;

  void advance();
  bool at(std::string_view sign) const { return token_.is(sign); }
  bool accept(std::string_view sign);
  void expect(std::string_view sign);
  void skip_separators();
  [[noreturn]] void fail_here() const;

  const Node* statement();
  const Node* sequence();
  const Node* element();
  const Node* assignment();
  const Node* procedure(std::size_t start, std::vector<std::string> parameters);
  const Node* disjunction();
  const Node* conjunction();
  const Node* negation();
  const Node* comparison();
  const Node* range();
  const Node* sum();
  const Node* product();
  const Node* unary();
  const Node* postfix();
  const Node* primary();
  const Node* parenthesis();
  const Node* block(const Node* first);
  const Node* name();
  const Node* number();
  const Node* collection(NodeKind kind, std::string_view close);
  const Node* constant(Object object);
  const Node* chain(NodeKind kind, const Node* (Parser::*operand)());
  const Node* words(NodeKind kind, std::string_view word, const Node* (Parser::*operand)());
  void elements(Node& node, std::string_view close);
  bool is_procedure_ahead(std::vector<std::string>& parameters) const;
  bool find_local(const std::string& text, std::size_t scope, std::uint32_t& slot);
  Node& variable(const Token& token, NodeKind global, NodeKind local);

  Lexer lexer_;
  Token token_;
  std::size_t end_ = 0;  // of the token before
  std::size_t statement_line_ = 1;
  bool commas_ = true;  // whether a comma here joins a sequence, or ends an element
  std::vector<Scope> scopes_;
  std::shared_ptr<Program> program_;
};

}  // namespace vexil
