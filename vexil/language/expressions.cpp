// The operators of the language, from the loosest to the tightest; see parser.h.
//
// Operators of one level make one node with many children: a sum of a hundred thousand terms is no
// deeper than a sum of two.
#include <charconv>
#include <optional>

#include "vexil/language/depth.h"
#include "vexil/language/operators.h"
#include "vexil/language/parser.h"
#include "vexil/values/integers.h"

namespace vexil {

namespace {

struct Sign {
  std::string_view text;
  Operator code;
  NodeKind level;
};

constexpr Sign kSigns[] = {
    {"=", Operator::Equation, NodeKind::Compare},
    {"<", Operator::Less, NodeKind::Compare},
    {"<=", Operator::LessEqual, NodeKind::Compare},
    {">", Operator::Greater, NodeKind::Compare},
    {">=", Operator::GreaterEqual, NodeKind::Compare},
    {"<>", Operator::Unequal, NodeKind::Compare},
    {"+", Operator::Add, NodeKind::Sum},
    {"-", Operator::Subtract, NodeKind::Sum},
    {"*", Operator::Multiply, NodeKind::Product},
    {"div", Operator::Div, NodeKind::Product},
    {"mod", Operator::Mod, NodeKind::Product},
};

std::optional<Operator> find_operator(const Token& token, NodeKind level) {
  if (token.kind != TokenKind::Operator) return std::nullopt;
  for (const Sign& sign : kSigns) {
    if (sign.level == level && sign.text == token.source) return sign.code;
  }
  return std::nullopt;
}

}  // namespace

const Node* Parser::chain(NodeKind kind, const Node* (Parser::*operand)()) {
  const Node* first = (this->*operand)();
  std::optional<Operator> code = find_operator(token_, kind);
  if (!code) return first;
  Node& node = program_->add(kind);
  node.children.push_back(first);
  for (; code; code = find_operator(token_, kind)) {
    advance();
    node.operators.push_back(*code);
    node.children.push_back((this->*operand)());
  }
  return &node;
}

const Node* Parser::words(NodeKind kind, std::string_view word, const Node* (Parser::*operand)()) {
  const Node* first = (this->*operand)();
  if (!at(word)) return first;
  Node& node = program_->add(kind);
  node.children.push_back(first);
  while (accept(word)) node.children.push_back((this->*operand)());
  return &node;
}

const Node* Parser::disjunction() { return words(NodeKind::Or, "or", &Parser::conjunction); }
const Node* Parser::conjunction() { return words(NodeKind::And, "and", &Parser::negation); }
const Node* Parser::comparison() { return chain(NodeKind::Compare, &Parser::range); }
const Node* Parser::sum() { return chain(NodeKind::Sum, &Parser::product); }
const Node* Parser::product() { return chain(NodeKind::Product, &Parser::unary); }

const Node* Parser::negation() {
  if (!at("not")) return comparison();
  check_depth();
  advance();
  Node& node = program_->add(NodeKind::Not);
  node.children.push_back(negation());
  return &node;
}

const Node* Parser::range() {
  const Node* lower = sum();
  if (!accept("..")) return lower;
  Node& node = program_->add(NodeKind::Range);
  node.children = {lower, sum()};
  return &node;
}

// A minus sign before a number belongs to the number.
const Node* Parser::unary() {
  if (!at("-")) return postfix();
  check_depth();
  advance();
  const Node* operand = unary();
  if (operand->kind == NodeKind::Constant && is_number(operand->object)) {
    return constant(negate(operand->object));
  }
  Node& node = program_->add(NodeKind::Negate);
  node.children.push_back(operand);
  return &node;
}

const Node* Parser::postfix() {
  const Node* left = primary();
  while (at("(") || at("[")) {
    const bool is_call = at("(");
    Node& node = program_->add(is_call ? NodeKind::Call : NodeKind::Index);
    node.children.push_back(left);
    advance();
    elements(node, is_call ? ")" : "]");
    left = &node;
  }
  return left;
}

const Node* Parser::primary() {
  std::vector<std::string> parameters;
  if ((token_.kind == TokenKind::Name || at("(")) && is_procedure_ahead(parameters)) {
    return procedure(token_.start, std::move(parameters));
  }
  const Token token = token_;
  switch (token.kind) {
    case TokenKind::Name:
      return name();
    case TokenKind::Integer:
    case TokenKind::Float:
      return number();
    case TokenKind::Quoted:
      advance();
      return constant(make_name(token.text));
    case TokenKind::String:
      advance();
      return constant(make_string(token.text));
    default:
      break;
  }
  if (at("(")) return parenthesis();
  if (at("[")) return collection(NodeKind::List, "]");
  if (at("{")) return collection(NodeKind::Set, "}");
  fail_here();
}

const Node* Parser::collection(NodeKind kind, std::string_view close) {
  check_depth();
  advance();
  Node& node = program_->add(kind);
  elements(node, close);
  return &node;
}

const Node* Parser::number() {
  const Token token = token_;
  advance();
  const char* end = token.source.data() + token.source.size();
  if (token.kind == TokenKind::Float) {
    double value = 0;
    const auto result = std::from_chars(token.source.data(), end, value);
    if (result.ec == std::errc::result_out_of_range) {
      raise_syntax_error("the number %1 is out of range", token.source);
    }
    return constant(make_float(value));
  }
  return constant(read_integer(token.source));
}

}  // namespace vexil
