// A recursive-descent parser for patterns; recursion is bounded by the nine groups a pattern may
// have. Tests: tests/unit/regex_test.cpp.
#include "vstring/regex/parse.h"

#include <algorithm>

#include "vstring/regex.h"

namespace vstring::regex {
namespace {

constexpr Text kSpecials = "^$.[()|?+*\\";

constexpr std::size_t kUsualNodes = 8;  // what most patterns need

bool is_repetition(char c) { return c == '*' || c == '+' || c == '?'; }

// Thrown by the parser, caught where it was started.
struct Failed {
  Error error;
};

[[noreturn]] void stop(Error error) { throw Failed{error}; }

// What is known of a piece of pattern.
struct Piece {
  std::size_t first = 0;                // its first node
  bool has_width = false;               // cannot match the empty string
  bool is_simple = false;               // one node that matches exactly one byte
  bool starts_with_repetition = false;  // its first atom may repeat
};

// Members of a set beyond what a program can hold are not kept: the program is too big as it is.
void add_member(std::string& members, char c) {
  if (members.size() < VRX_MAX_PROGRAM) members += c;
}

class Parser {
 public:
  explicit Parser(Text pattern) : pattern_(pattern) { nodes_.reserve(kUsualNodes); }

  ParsedPattern run() {
    ParsedPattern result;
    try {
      Piece whole = expression(0);
      result.starts_with_repetition = whole.starts_with_repetition;
      result.size = size_;
      if (size_ >= VRX_MAX_PROGRAM) stop(Error::TooBig);
      result.nodes = std::move(nodes_);
    } catch (const Failed& failed) {
      result.error = failed.error;
    }
    return result;
  }

 private:
  bool at_end() const { return position_ == pattern_.size(); }
  char peek() const { return at_end() ? '\0' : pattern_[position_]; }

  // Nodes of a program that is too big already are counted but not kept.
  bool is_kept() const { return size_ < VRX_MAX_PROGRAM; }

  std::size_t add(int op, Text operand = {}) {
    bool has_text = op == kAnyOf || op == kAnyBut || op == kLiteral;
    size_ += kNodeHeader + (has_text ? operand.size() + 1 : 0);
    if (is_kept()) {
      Node& node = nodes_.emplace_back();
      node.op = static_cast<std::uint8_t>(op);
      node.operand = operand;
    }
    return nodes_.empty() ? 0 : nodes_.size() - 1;
  }

  void insert_before(std::size_t node, int op) {
    size_ += kNodeHeader;
    if (!is_kept()) return;
    auto place = nodes_.begin() + static_cast<std::ptrdiff_t>(node);
    nodes_.insert(place, {static_cast<std::uint8_t>(op), 0, {}, 0});
  }

  void set_next(std::size_t from, std::size_t to) {
    if (!is_kept()) return;
    nodes_[from].next = static_cast<std::int32_t>(to) - static_cast<std::int32_t>(from);
  }

  // Makes `to` the next node of the last node in the chain that starts at `from`.
  void append(std::size_t from, std::size_t to) {
    if (!is_kept()) return;
    while (nodes_[from].next != 0) from += static_cast<std::size_t>(nodes_[from].next);
    set_next(from, to);
  }

  Piece expression(int group);
  Piece branch();
  Piece repeated();
  Piece atom();
  Piece group();
  Piece set();
  Piece literal();
  void set_range(std::string& members);

  Text pattern_;
  std::size_t position_ = 0;
  std::vector<Node> nodes_;
  std::size_t size_ = kFirstNode;
  int num_groups_ = 0;
};

// Alternatives up to the end of the group (0: of the pattern), all joined at the closing node.
Piece Parser::expression(int group) {
  Piece result{0, true, false, false};
  std::size_t open = group != 0 ? add(kOpen + group) : 0;
  std::vector<std::size_t> branches;
  for (;;) {
    Piece alternative = branch();
    if (!branches.empty()) set_next(branches.back(), alternative.first);
    if (is_kept() || branches.empty()) branches.push_back(alternative.first);
    result.has_width = result.has_width && alternative.has_width;
    result.starts_with_repetition =
        result.starts_with_repetition || alternative.starts_with_repetition;
    if (peek() != '|') break;
    ++position_;
  }
  std::size_t end = add(group != 0 ? kClose + group : kEnd);
  set_next(branches.back(), end);
  for (std::size_t alternative : branches) append(alternative + 1, end);
  result.first = branches.front();
  if (group != 0) {
    set_next(open, branches.front());
    result.first = open;
    if (peek() != ')') stop(Error::UnmatchedGroup);
    ++position_;
  } else if (!at_end()) {
    stop(peek() == ')' ? Error::UnmatchedGroup : Error::JunkOnEnd);
  }
  return result;
}

Piece Parser::branch() {
  Piece result{add(kBranch), false, false, false};
  bool is_first = true;
  std::size_t previous = 0;
  while (!at_end() && peek() != '|' && peek() != ')') {
    Piece piece = repeated();
    result.has_width = result.has_width || piece.has_width;
    if (is_first) {
      result.starts_with_repetition = piece.starts_with_repetition;
    } else {
      append(previous, piece.first);
    }
    is_first = false;
    previous = piece.first;
  }
  if (is_first) add(kEmpty);
  return result;
}

// An atom with the operator behind it, if there is one.
Piece Parser::repeated() {
  Piece piece = atom();
  char op = peek();
  if (!is_repetition(op)) return piece;
  if (!piece.has_width && op != '?') stop(Error::EmptyOperand);
  std::size_t first = piece.first;
  if (op != '?' && piece.is_simple) {
    insert_before(first, op == '*' ? kStar : kPlus);
  } else if (op == '*') {  // either x and back to the choice, or nothing
    insert_before(first, kBranch);
    std::size_t back = add(kBack);
    append(first + 1, back);
    set_next(back, first);
    std::size_t otherwise = add(kBranch);
    set_next(first, otherwise);
    set_next(otherwise, add(kEmpty));
  } else if (op == '+') {  // x, then either back to x or nothing
    std::size_t again = add(kBranch);
    append(first, again);
    set_next(add(kBack), first);
    std::size_t otherwise = add(kBranch);
    set_next(again, otherwise);
    set_next(otherwise, add(kEmpty));
  } else {  // either x or nothing
    insert_before(first, kBranch);
    std::size_t otherwise = add(kBranch);
    set_next(first, otherwise);
    std::size_t join = add(kEmpty);
    set_next(otherwise, join);
    append(first + 1, join);
  }
  ++position_;
  if (is_repetition(peek())) stop(Error::NestedRepetition);
  return {first, op == '+', false, op != '+'};
}

Piece Parser::atom() {
  switch (pattern_[position_]) {
    case '^':
      ++position_;
      return {add(kAtStart), false, false, false};
    case '$':
      ++position_;
      return {add(kAtEnd), false, false, false};
    case '.':
      ++position_;
      return {add(kAnyChar), true, true, false};
    case '[':
      return set();
    case '(':
      return group();
    case '*':
    case '+':
    case '?':
      stop(Error::NothingToRepeat);
    case '|':
    case ')':
      stop(Error::InternalUrp);  // a branch ends before these
    case '\\':
      if (++position_ == pattern_.size()) stop(Error::TrailingBackslash);
      return {add(kLiteral, pattern_.substr(position_++, 1)), true, true, false};
    default:
      return literal();
  }
}

Piece Parser::group() {
  ++position_;
  if (num_groups_ == kMaxGroups) stop(Error::TooManyGroups);
  return expression(++num_groups_);
}

Piece Parser::set() {
  ++position_;
  bool is_negated = peek() == '^';
  if (is_negated) ++position_;
  std::string members;
  if (peek() == ']' || peek() == '-') members += pattern_[position_++];
  while (!at_end() && peek() != ']') {
    if (peek() == '-') {
      set_range(members);
    } else {
      add_member(members, pattern_[position_++]);
    }
  }
  if (at_end()) stop(Error::UnmatchedSet);
  ++position_;
  return {add(is_negated ? kAnyBut : kAnyOf, members), true, true, false};
}

// At a "-" inside a set: the byte before it, also one that ended another range, starts the range.
void Parser::set_range(std::string& members) {
  ++position_;
  if (at_end() || peek() == ']') {
    add_member(members, '-');
    return;
  }
  int start = byte_of(pattern_[position_ - 2]);
  int end = byte_of(pattern_[position_++]);
  if (start > end + 1) stop(Error::InvalidRange);
  for (int c = start + 1; c <= end; ++c) add_member(members, static_cast<char>(c));
}

// A run of ordinary bytes; an operator behind it takes the last one for itself.
Piece Parser::literal() {
  std::size_t end = std::min(pattern_.find_first_of(kSpecials, position_), pattern_.size());
  if (end - position_ > 1 && end < pattern_.size() && is_repetition(pattern_[end])) --end;
  if (end == position_) stop(Error::InternalDisaster);  // special bytes have atoms of their own
  std::size_t kept = std::min<std::size_t>(end - position_, VRX_MAX_PROGRAM);
  Text run = pattern_.substr(position_, kept);
  position_ = end;
  bool is_single = run.size() == 1;
  return {add(kLiteral, run), true, is_single, false};
}

}  // namespace

ParsedPattern parse(Text pattern) { return Parser(pattern).run(); }

}  // namespace vstring::regex
