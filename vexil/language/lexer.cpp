// Source text to tokens; see lexer.h.
#include "vexil/language/lexer.h"

#include <algorithm>
#include <array>

namespace vexil {

namespace {

bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v'; }

int hex_digit(char c) {
  if (is_digit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

bool is_word_operator(std::string_view word) {
  return word == "and" || word == "or" || word == "not" || word == "div" || word == "mod";
}

}  // namespace

bool starts_name(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }

bool continues_name(char c) { return starts_name(c) || is_digit(c); }

void raise_syntax_error(std::string message, std::string_view part) {
  std::vector<Object> objects;
  if (!part.empty()) objects.push_back(make_string(part));
  raise_error(std::move(message), std::move(objects));
}

void Lexer::skip_line() {
  const std::size_t end = text_.find('\n', position_);
  position_ = end == std::string_view::npos ? text_.size() : end;
}

void Lexer::skip_blanks() {
  for (; position_ < text_.size(); ++position_) {
    const char c = text_[position_];
    if (c == '#') {
      while (position_ < text_.size() && text_[position_] != '\n') ++position_;
      if (position_ == text_.size()) return;
    }
    if (text_[position_] == '\n' && open_ > 0) {
      ++line_;
    } else if (!is_blank(text_[position_])) {
      return;
    }
  }
}

Token Lexer::finish(Token token, TokenKind kind) {
  token.kind = kind;
  token.source = text_.substr(token.start, position_ - token.start);
  return token;
}

Token Lexer::next() {
  skip_blanks();
  Token token;
  token.start = position_;
  token.line = line_;
  if (position_ == text_.size()) return finish(std::move(token), TokenKind::End);
  const char c = peek();
  if (c == '\n' || c == ';') {
    ++position_;
    if (c == '\n') ++line_;
    return finish(std::move(token), TokenKind::Separator);
  }
  if (c == '"') return read_string(std::move(token));
  if (c == '`') return read_backquoted(std::move(token));
  if (is_digit(c)) return read_number(std::move(token));
  if (starts_name(c)) return read_word(std::move(token));
  if (c == ':' && (peek(1) == '`' || starts_name(peek(1)))) return read_quoted(std::move(token));
  return read_sign(std::move(token));
}

// After the backslash.
char Lexer::read_escape() {
  const char c = peek();
  ++position_;
  switch (c) {
    case 'n':
      return '\n';
    case 't':
      return '\t';
    case 'r':
      return '\r';
    case '\\':
    case '"':
    case '`':
      return c;
    case 'x': {
      const int high = hex_digit(peek());
      const int low = high < 0 ? -1 : hex_digit(peek(1));
      if (low < 0) raise_syntax_error("\\x must be followed by two hexadecimal digits");
      if (high == 0 && low == 0) raise_syntax_error("a string cannot hold a NUL byte");
      position_ += 2;
      return static_cast<char>(high * 16 + low);
    }
    default:
      raise_syntax_error("unknown escape `\\%1'", std::string_view(&c, 1));
  }
}

Token Lexer::read_string(Token token) {
  for (++position_; position_ < text_.size();) {
    const char c = text_[position_++];
    if (c == '"') return finish(std::move(token), TokenKind::String);
    if (c == '\0') raise_syntax_error("a string cannot hold a NUL byte");
    if (c == '\n') ++line_;
    token.text += c == '\\' ? read_escape() : c;
  }
  raise_syntax_error("the string is not closed");
}

Token Lexer::read_backquoted(Token token) {
  for (++position_; position_ < text_.size();) {
    const char c = text_[position_++];
    if (c == '`') {
      if (token.text.empty()) raise_syntax_error("a name cannot be empty");
      return finish(std::move(token), TokenKind::Name);
    }
    if (c == '\0') raise_syntax_error("a name cannot hold a NUL byte");
    if (c == '\n') ++line_;
    token.text += c == '\\' ? read_escape() : c;
  }
  raise_syntax_error("the name is not closed");
}

Token Lexer::read_quoted(Token token) {
  ++position_;
  const std::size_t start = token.start;
  token = peek() == '`' ? read_backquoted(std::move(token)) : read_word(std::move(token));
  token.start = start;
  return finish(std::move(token), TokenKind::Quoted);
}

Token Lexer::read_number(Token token) {
  const auto skip_digits = [this] {
    while (is_digit(peek())) ++position_;
  };
  TokenKind kind = TokenKind::Integer;
  skip_digits();
  if (peek() == '.' && is_digit(peek(1))) {  // but 1..2 is a range
    kind = TokenKind::Float;
    ++position_;
    skip_digits();
  }
  if (peek() == 'e' || peek() == 'E') {
    const std::size_t sign = peek(1) == '+' || peek(1) == '-' ? 1 : 0;
    if (is_digit(peek(1 + sign))) {
      kind = TokenKind::Float;
      position_ += 1 + sign;
      skip_digits();
    }
  }
  if (continues_name(peek())) raise_syntax_error("a number runs into a name");
  return finish(std::move(token), kind);
}

Token Lexer::read_word(Token token) {
  const std::size_t start = position_;
  while (continues_name(peek())) ++position_;
  token.text = text_.substr(start, position_ - start);
  token.bare = true;
  const TokenKind kind = is_word_operator(token.text) ? TokenKind::Operator : TokenKind::Name;
  return finish(std::move(token), kind);
}

Token Lexer::read_sign(Token token) {
  static constexpr std::array<std::string_view, 6> pairs = {":=", "->", "..", "<=", ">=", "<>"};
  const std::string_view rest = text_.substr(position_);
  const bool is_pair = std::any_of(pairs.begin(), pairs.end(),
                                   [&](std::string_view pair) { return rest.starts_with(pair); });
  if (!is_pair && std::string_view("()[]{},+-*<>=").find(rest[0]) == std::string_view::npos) {
    raise_syntax_error("unexpected character `%1'", rest.substr(0, 1) == std::string_view("\0", 1)
                                                        ? std::string_view("\\x00")
                                                        : rest.substr(0, 1));
  }
  const char c = rest[0];
  if (c == '(' || c == '[' || c == '{') ++open_;
  if ((c == ')' || c == ']' || c == '}') && open_ > 0) --open_;
  position_ += is_pair ? 2 : 1;
  return finish(std::move(token), TokenKind::Operator);
}

void OpenScanner::feed(std::string_view line) {
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (quote_ != '\0') {
      if (c == '\\') {
        ++i;
      } else if (c == quote_) {
        quote_ = '\0';
      }
    } else if (c == '#') {
      i = std::min(line.find('\n', i), line.size()) - 1;
    } else if (c == '"' || c == '`') {
      quote_ = c;
    } else if (c == '(' || c == '[' || c == '{') {
      ++depth_;
    } else if (c == ')' || c == ']' || c == '}') {
      depth_ = std::max(depth_ - 1, 0);
    }
  }
}

}  // namespace vexil
