#include "tests/reference/regex_reference.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace reference {
namespace {

const char* text_start;
const char* input;
RegexpRecord* current;

const unsigned char* next_node(const unsigned char* node) {
  int distance = node[1] << 8 | node[2];
  if (distance == 0) return nullptr;
  return node[0] == 7 ? node - distance : node + distance;
}

long count_repeats(const unsigned char* node) {
  auto operand = reinterpret_cast<const char*>(node + 3);
  switch (node[0]) {
    case 3:
      return static_cast<long>(std::strlen(input));
    case 8:
      return static_cast<long>(std::strspn(input, std::string(operand, 1).c_str()));
    case 4:
      return static_cast<long>(std::strspn(input, operand));
    default:
      return static_cast<long>(std::strcspn(input, operand));
  }
}

bool match(const unsigned char* node);

bool match_repeat(const unsigned char* node) {
  const char* start = input;
  const unsigned char* next = next_node(node);
  long minimum = node[0] == 11 ? 1 : 0;
  for (long n = count_repeats(node + 3); n >= minimum; --n) {
    input = start + n;
    if (match(next)) return true;
  }
  return false;
}

bool match_group(const unsigned char* node, const char** slots) {
  const char* here = input;
  if (!match(next_node(node))) return false;
  const char*& slot = slots[node[0] % 10];
  if (slot == nullptr) slot = here;
  return true;
}

bool match_branches(const unsigned char* node) {
  const char* here = input;
  for (; node != nullptr && node[0] == 6; node = next_node(node)) {
    input = here;
    if (match(node + 3)) return true;
  }
  return false;
}

bool match(const unsigned char* node) {
  auto operand = reinterpret_cast<const char*>(node + 3);
  int op = node[0];
  if (op == 0) return true;
  if (op == 6) return match_branches(node);
  if (op == 10 || op == 11) return match_repeat(node);
  if (op > 20 && op < 30) return match_group(node, current->match_start);
  if (op > 30) return match_group(node, current->match_end);
  if (op == 1 && input != text_start) return false;
  if (op == 2 && *input != '\0') return false;
  if (op == 3 || op == 4 || op == 5) {
    if (*input == '\0') return false;
    if (op != 3 && (std::strchr(operand, *input) != nullptr) != (op == 4)) return false;
    ++input;
  }
  if (op == 8) {
    if (std::strncmp(operand, input, std::strlen(operand)) != 0) return false;
    input += std::strlen(operand);
  }
  return match(next_node(node));
}

}  // namespace

bool regexec(RegexpRecord& record, const char* text) {
  current = &record;
  text_start = text;
  for (const char* start = text;; ++start) {
    std::fill(record.match_start, record.match_start + VRX_NUM_MATCHES, nullptr);
    std::fill(record.match_end, record.match_end + VRX_NUM_MATCHES, nullptr);
    input = start;
    if (match(record.program + 1)) {
      record.match_start[0] = start;
      record.match_end[0] = input;
      return true;
    }
    if (*start == '\0') return false;
  }
}

}  // namespace reference
