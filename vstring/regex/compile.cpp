// vrx_regcomp: the parsed nodes written as a program, and what its header says to speed the search.
// Tests: tests/unit/regex_test.cpp.
#include <cstdlib>
#include <cstring>
#include <new>

#include "vstring/regex.h"
#include "vstring/regex/parse.h"

namespace vstring::regex {
namespace {

bool has_text(const Node& node) {
  return node.op == kAnyOf || node.op == kAnyBut || node.op == kLiteral;
}

std::size_t size_of(const Node& node) {
  return kNodeHeader + (has_text(node) ? node.operand.size() + 1 : 0);
}

// Tells each node where it stands in the program.
void place(std::vector<Node>& nodes) {
  std::size_t offset = kFirstNode;
  for (Node& node : nodes) {
    node.place = offset;
    offset += size_of(node);
  }
}

std::size_t next_of(const std::vector<Node>& nodes, std::size_t i) {
  return i + static_cast<std::size_t>(static_cast<std::ptrdiff_t>(nodes[i].next));
}

void write(const std::vector<Node>& nodes, unsigned char* program) {
  program[0] = VRX_MAGIC;
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    const Node& node = nodes[i];
    std::size_t next = nodes[next_of(nodes, i)].place;  // that of the node itself when it has none
    std::size_t distance = next > node.place ? next - node.place : node.place - next;
    unsigned char* out = program + node.place;
    out[0] = node.op;
    out[1] = static_cast<unsigned char>(distance >> 8);
    out[2] = static_cast<unsigned char>(distance & 0xff);
    if (has_text(node))
      std::memcpy(out + kNodeHeader, node.operand.c_str(), node.operand.size() + 1);
  }
}

// The hints for a pattern with one alternative: how a match begins, and the longest literal of its
// top level (the last one of equals) where a repetition at the front makes looking for it worth
// while.
void set_hints(RegexpRecord& record, const ParsedPattern& parsed) {
  const std::vector<Node>& nodes = parsed.nodes;
  if (nodes[next_of(nodes, 0)].op != kEnd) return;
  const Node& first = nodes[1];
  if (first.op == kLiteral) record.start_char = byte_of(first.operand[0]);
  if (first.op == kAtStart) record.anchored = 1;
  if (!parsed.starts_with_repetition) return;
  for (std::size_t i = 1; nodes[i].next != 0; i = next_of(nodes, i)) {
    auto length = static_cast<std::int32_t>(nodes[i].operand.size());
    if (nodes[i].op != kLiteral || length < record.must_length) continue;
    record.must_text = reinterpret_cast<const char*>(record.program) + nodes[i].place + kNodeHeader;
    record.must_length = length;
  }
}

RegexpRecord* compile(Text pattern) {
  ParsedPattern parsed = parse(pattern);
  if (parsed.error != Error::None) {
    record_error(parsed.error);
    return nullptr;
  }
  place(parsed.nodes);
  void* block = std::calloc(1, sizeof(RegexpRecord) + parsed.size);
  if (block == nullptr) throw std::bad_alloc();
  auto* record = static_cast<RegexpRecord*>(block);  // all hints and matches unset: zero
  write(parsed.nodes, record->program);
  set_hints(*record, parsed);
  return record;
}

}  // namespace
}  // namespace vstring::regex

RegexpRecord* vrx_regcomp(const char* pattern) {
  using namespace vstring::regex;
  if (pattern == nullptr) {
    record_error(Error::NullArgument);
    return nullptr;
  }
  try {
    return compile(pattern);
  } catch (const std::bad_alloc&) {
    record_error(Error::OutOfSpace);
    return nullptr;
  }
}
