// Statements, sequences, procedures and names; see parser.h. The operators are in expressions.cpp.
#include "vexil/language/parser.h"

#include <algorithm>

#include "vexil/language/builtins.h"
#include "vexil/language/depth.h"
#include "vexil/services/services.h"

namespace vexil {

namespace {

bool is_constant_name(const Token& token) {
  return token.text == "true" || token.text == "false" || token.text == "FAIL";
}

}  // namespace

/// Sets for a stretch of text what a comma means there.
class Parser::CommaScope {
 public:
  CommaScope(Parser& parser, bool commas) : parser_(parser), before_(parser.commas_) {
    parser_.commas_ = commas;
  }
  ~CommaScope() { parser_.commas_ = before_; }
  CommaScope(const CommaScope&) = delete;
  CommaScope& operator=(const CommaScope&) = delete;

 private:
  Parser& parser_;
  bool before_;
};

Parser::Parser(std::string_view text) : lexer_(text) {}

std::shared_ptr<Program> Parser::next() {
  scopes_.clear();
  commas_ = true;
  program_ = std::make_shared<Program>();
  do {
    statement_line_ = lexer_.line();
    advance();
  } while (token_.kind == TokenKind::Separator);
  if (token_.kind == TokenKind::End) return nullptr;
  program_->line = statement_line_ = token_.line;
  program_->root = statement();
  if (token_.kind != TokenKind::Separator && token_.kind != TokenKind::End) fail_here();
  return std::move(program_);
}

void Parser::skip_statement() {
  lexer_.close_brackets();
  if (token_.source != "\n") lexer_.skip_line();
}

void Parser::advance() {
  end_ = lexer_.position();
  token_ = Token{TokenKind::Operator, "", "", false, end_, lexer_.line()};  // if next() throws
  token_ = lexer_.next();
}

bool Parser::accept(std::string_view sign) {
  if (!at(sign)) return false;
  advance();
  return true;
}

void Parser::expect(std::string_view sign) {
  if (!accept(sign)) fail_here();
}

void Parser::skip_separators() {
  while (token_.kind == TokenKind::Separator) advance();
}

void Parser::fail_here() const {
  if (token_.kind == TokenKind::End || token_.source == "\n") {
    raise_syntax_error("unexpected end of the statement");
  }
  raise_syntax_error("unexpected `%1'", token_.source);
}

const Node* Parser::statement() { return sequence(); }

// a, b, ...; one element alone is itself.
const Node* Parser::sequence() {
  const Node* first = element();
  if (!commas_ || !at(",")) return first;
  Node& node = program_->add(NodeKind::Sequence);
  node.children.push_back(first);
  while (accept(",")) {
    if (at(")") || token_.kind == TokenKind::End || token_.kind == TokenKind::Separator) break;
    node.children.push_back(element());
  }
  return &node;
}

// What stands between two commas, or a whole assignment or procedure.
const Node* Parser::element() {
  check_depth();
  if (token_.kind == TokenKind::Name) {
    Lexer ahead = lexer_;
    if (ahead.next().is(":=")) return assignment();
  }
  return disjunction();
}

const Node* Parser::assignment() {
  const Token target = token_;
  if (target.bare && is_constant_name(target)) {
    raise_syntax_error("`%1' cannot be assigned", target.text);
  }
  Node& node = variable(target, NodeKind::Assign, NodeKind::AssignLocal);
  advance();
  advance();
  node.children.push_back(sequence());
  return &node;
}

// The lookahead stops at the first thing that is neither a name nor a comma.
bool Parser::is_procedure_ahead(std::vector<std::string>& parameters) const {
  Lexer ahead = lexer_;
  if (token_.kind == TokenKind::Name) {
    parameters.push_back(token_.text);
    return ahead.next().is("->");
  }
  Token token = ahead.next();
  while (token.kind == TokenKind::Name) {
    parameters.push_back(token.text);
    token = ahead.next();
    if (!token.is(",")) break;
    token = ahead.next();
    if (token.kind != TokenKind::Name) return false;
  }
  return token.is(")") && ahead.next().is("->");
}

const Node* Parser::procedure(std::size_t start, std::vector<std::string> parameters) {
  check_depth();
  while (!at("->")) advance();
  for (auto name = parameters.begin(); name != parameters.end(); ++name) {
    if (std::find(name + 1, parameters.end(), *name) != parameters.end()) {
      raise_syntax_error("parameter `%1' stands twice", *name);
    }
    if (*name == "true" || *name == "false" || *name == "FAIL") {
      raise_syntax_error("`%1' cannot be a parameter", *name);
    }
  }
  advance();
  Procedure result;
  result.parameters = parameters.size();
  scopes_.push_back({std::move(parameters), {}});
  result.body = sequence();
  result.captured = std::move(scopes_.back().captured);
  scopes_.pop_back();
  result.source = lexer_.text().substr(start, end_ - start);
  Node& node = program_->add(NodeKind::Procedure);
  node.slot = program_->add_procedure(std::move(result));
  return &node;
}

// A name of a procedure further out becomes one that the procedures between take along.
bool Parser::find_local(const std::string& text, std::size_t scope, std::uint32_t& slot) {
  std::size_t home = scope;
  const auto find = [&](const Scope& in) {
    return std::find(in.names.begin(), in.names.end(), text);
  };
  while (home > 0 && find(scopes_[home - 1]) == scopes_[home - 1].names.end()) --home;
  if (home == 0) return false;
  const Scope& owner = scopes_[home - 1];
  slot = static_cast<std::uint32_t>(find(owner) - owner.names.begin());
  for (; home < scope; ++home) {
    Scope& inner = scopes_[home];
    inner.captured.push_back(slot);
    inner.names.push_back(text);
    slot = static_cast<std::uint32_t>(inner.names.size() - 1);
  }
  return true;
}

Node& Parser::variable(const Token& token, NodeKind global, NodeKind local) {
  std::uint32_t slot = 0;
  const bool is_local = find_local(token.text, scopes_.size(), slot);
  Node& node = program_->add(is_local ? local : global);
  node.slot = slot;
  node.object = make_name(token.text);
  node.command = find_command(token.text);
  node.builtin = find_builtin(token.text);
  return node;
}

const Node* Parser::constant(Object object) {
  Node& node = program_->add(NodeKind::Constant);
  node.object = object;
  return &node;
}

const Node* Parser::name() {
  const Token token = token_;
  advance();
  // The floats without digits are written as names are; in backquotes they are names.
  if (token.bare && token.text == "nan") return constant(make_float(__builtin_nan("")));
  if (token.bare && token.text == "inf") return constant(make_float(__builtin_inf()));
  if (is_constant_name(token)) return constant(make_name(token.text));
  return &variable(token, NodeKind::Name, NodeKind::Local);
}

// ( ... ): nothing, one value, a sequence, or statements.
const Node* Parser::parenthesis() {
  advance();
  const CommaScope commas(*this, true);
  skip_separators();
  if (accept(")")) return constant(make_sequence({}));
  const Node* first = statement();
  if (token_.kind == TokenKind::Separator || first->kind == NodeKind::Assign ||
      first->kind == NodeKind::AssignLocal) {
    return block(first);
  }
  expect(")");
  return first;
}

const Node* Parser::block(const Node* first) {
  Node& node = program_->add(NodeKind::Block);
  node.children.push_back(first);
  for (skip_separators(); !at(")"); skip_separators()) {
    node.children.push_back(statement());
    if (!at(")") && token_.kind != TokenKind::Separator) fail_here();
  }
  advance();
  return &node;
}

void Parser::elements(Node& node, std::string_view close) {
  const CommaScope commas(*this, false);
  if (accept(close)) return;
  do {
    node.children.push_back(element());
  } while (accept(","));
  expect(close);
}

}  // namespace vexil
