// Source text to tokens. Entry points: Lexer, OpenScanner. Tests:
// tests/transcripts/vexil/language.vt.
#pragma once

#include <string>
#include <string_view>

#include "vexil/values/values.h"

namespace vexil {

enum class TokenKind {
  End,        // of the text
  Separator,  // a newline outside brackets, or ;
  Name,       // a bare name or one in backquotes
  Quoted,     // :name
  String,
  Integer,
  Float,
  Operator,  // any other sign, and the words and, or, not, div, mod
};

struct Token {
  TokenKind kind = TokenKind::End;
  std::string_view source;  // as it stands in the text
  std::string text;         // of a name or string: its text; else empty
  bool bare = false;        // a name without backquotes, so that `true` and true differ
  std::size_t start = 0;
  std::size_t line = 1;

  bool is(std::string_view sign) const { return kind == TokenKind::Operator && source == sign; }
};

/// Raises an error in the text; %1 stands for the part.
[[noreturn]] void raise_syntax_error(std::string message, std::string_view part = {});

/// Hands out one token after another. It is cheap to copy: a copy is a place to come back to.
class Lexer {
 public:
  explicit Lexer(std::string_view text, std::size_t line = 1) : text_(text), line_(line) {}
  Token next();
  std::size_t position() const { return position_; }
  std::size_t line() const { return line_; }
  std::string_view text() const { return text_; }
  /// Continues at the end of the present line.
  void skip_line();
  /// From here on newlines count.
  void close_brackets() { open_ = 0; }

 private:
  void skip_blanks();
  Token finish(Token token, TokenKind kind);
  Token read_string(Token token);
  Token read_backquoted(Token token);
  Token read_quoted(Token token);
  Token read_number(Token token);
  Token read_word(Token token);
  Token read_sign(Token token);
  char read_escape();
  char peek(std::size_t ahead = 0) const {
    return position_ + ahead < text_.size() ? text_[position_ + ahead] : '\0';
  }

  std::string_view text_;
  std::size_t position_ = 0;
  std::size_t line_;
  int open_ = 0;  // brackets: inside them a newline is a blank
};

/// Tells, fed line by line, whether a statement goes on in the next line: a bracket, a string or a
/// backquoted name is still open.
class OpenScanner {
 public:
  void feed(std::string_view line);
  bool is_open() const { return depth_ > 0 || quote_ != '\0'; }

 private:
  int depth_ = 0;
  char quote_ = '\0';
};

/// Whether a character can start a name, or stand inside one.
bool starts_name(char c);
bool continues_name(char c);

}  // namespace vexil
