#include "vstring/commands/fences.h"

#include <string>

#include "vstring/core/byte_set.h"

namespace vstring {
namespace {

constexpr Text kOpening = "([{";
constexpr Text kClosing = ")]}";

const ByteSet& fences() {
  static const ByteSet set("()[]{}");
  return set;
}

// From an opening fence on: each opening one awaits its partner, each closing one must be the
// partner awaited last.
std::size_t partner_to_the_right(Text text, std::size_t at) {
  std::string awaited;
  for (; at < text.size(); at = find_fence(text, at + 1)) {
    std::size_t kind = kOpening.find(text[at]);
    if (kind != Text::npos) {
      awaited += kClosing[kind];
    } else {
      if (awaited.back() != text[at]) return Text::npos;
      awaited.pop_back();
      if (awaited.empty()) return at;
    }
  }
  return Text::npos;
}

// The same from a closing fence back.
std::size_t partner_to_the_left(Text text, std::size_t at) {
  std::string awaited;
  for (std::size_t i = at + 1; i-- > 0;) {
    if (!fences().contains(byte_of(text[i]))) continue;
    std::size_t kind = kClosing.find(text[i]);
    if (kind != Text::npos) {
      awaited += kOpening[kind];
    } else {
      if (awaited.back() != text[i]) return Text::npos;
      awaited.pop_back();
      if (awaited.empty()) return i;
    }
  }
  return Text::npos;
}

}  // namespace

std::size_t find_fence(Text text, std::size_t from) {
  if (from >= text.size()) return Text::npos;
  std::size_t offset = find_member(text.substr(from), fences());
  return from + offset < text.size() ? from + offset : Text::npos;
}

std::size_t matching_fence(Text text, std::size_t at) {
  if (kOpening.find(text[at]) != Text::npos) return partner_to_the_right(text, at);
  if (kClosing.find(text[at]) != Text::npos) return partner_to_the_left(text, at);
  return Text::npos;
}

}  // namespace vstring
