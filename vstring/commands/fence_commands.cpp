// Fences and placeholder text as commands. Tests: docs/commands/fences.md,
// tests/transcripts/commands/fences.vt.
#include <algorithm>

#include "vstring/commands/fences.h"
#include "vstring/commands/placeholder.h"
#include "vstring/host/commands.h"

namespace vstring {
namespace {

// The position of an offset, 0 for none.
Object position_of(const Host& host, std::size_t offset) {
  return host.position(offset == Text::npos ? 0 : offset + 1);
}

// Argument i as the position of a character.
std::size_t character_index(const Args& args, int i, Text text) {
  std::size_t index = args.index(i, text.size());
  if (index == 0) fail("string index `%1' out of range", args[i]);
  return index;
}

constexpr const char* kFirstNoString = "first argument must be a string";
constexpr std::int32_t kDefaultWords = 69;

}  // namespace

Object cmd::vstring_matchfence(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  return position_of(host, matching_fence(s, character_index(args, 2, s) - 1));
}

Object cmd::vstring_findfence(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  std::size_t index = args.has(2) ? character_index(args, 2, s) : 1;
  return position_of(host, find_fence(s, index - 1));
}

Object cmd::vstring_ipsum(Args& args, Host& host) {
  std::int32_t count = kDefaultWords;
  if (args.has(1)) count = args.integer32(1, "first argument must be a 32-bit integer");
  if (count < 0) fail("first argument must be non-negative");
  if (count == 0) return host.empty_text();
  auto num_words = static_cast<std::size_t>(count);
  std::size_t length = num_words - 1;
  for (std::size_t i = 0; i < num_words && length <= HOST_MAX_TEXT; ++i) {
    length += placeholder_word(i).size();
  }
  return host.text(length, [num_words](char* out) {
    for (std::size_t i = 0; i < num_words; ++i) {
      if (i > 0) *out++ = ' ';
      out = std::ranges::copy(placeholder_word(i), out).out;
    }
  });
}

}  // namespace vstring
