#include "vstring/formatting/messages.h"

#include <algorithm>
#include <cstdlib>
#include <new>

#include "vstring/core/byte_set.h"

namespace vstring {
namespace {

// What follows a percent sign: how many bytes, and what it asks for.
struct Directive {
  std::size_t length = 0;  // 0 when it is none
  Text inserted;
};

Directive read_directive(Text rest, std::span<const MessageArgument> arguments) {
  if (rest.starts_with('%')) return {1, "%"};
  bool is_ordinal = rest.starts_with('-');
  std::size_t length = is_ordinal ? 2 : 1;
  if (rest.size() < length || rest[length - 1] < '1' || rest[length - 1] > '9') return {};
  auto number = static_cast<std::size_t>(rest[length - 1] - '1');
  if (number >= arguments.size()) return {};
  return {length, is_ordinal ? arguments[number].ordinal : arguments[number].text};
}

constexpr bool is_plain(unsigned char c) { return c >= 0x20 && c <= 0x7e && c != '"' && c != '\\'; }

const ByteSet& escaped_bytes() {
  static const ByteSet set = [] {
    ByteSet bytes;
    for (unsigned c = 0; c < 256; ++c) {
      if (!is_plain(static_cast<unsigned char>(c))) bytes.add(static_cast<unsigned char>(c));
    }
    return bytes;
  }();
  return set;
}

// The letter behind the backslash of a byte that has a short form; 0 when it has none.
char short_escape(char c) {
  switch (c) {
    case '\n':
      return 'n';
    case '\t':
      return 't';
    case '\r':
      return 'r';
    case '"':
    case '\\':
      return c;
    default:
      return '\0';
  }
}

// Visits the stretches that stand as they are and the bytes that do not, in turn.
template <class VisitPlain, class VisitEscaped>
void visit_stretches(Text text, VisitPlain visit_plain, VisitEscaped visit_escaped) {
  while (!text.empty()) {
    std::size_t length = find_member(text, escaped_bytes());
    visit_plain(text.substr(0, length));
    if (length == text.size()) return;
    visit_escaped(text[length]);
    text.remove_prefix(length + 1);
  }
}

}  // namespace

std::string format_message(Text pattern, std::span<const MessageArgument> arguments,
                           std::size_t limit) {
  std::string result;
  auto put = [&result, limit](Text piece) {
    if (piece.size() > limit - result.size()) throw std::bad_alloc();
    result.append(piece);
  };
  for (;;) {
    std::size_t percent = pattern.find('%');
    put(pattern.substr(0, percent));
    if (percent == Text::npos) return result;
    pattern.remove_prefix(percent + 1);
    Directive directive = read_directive(pattern, arguments);
    put(directive.length == 0 ? "%" : directive.inserted);
    pattern.remove_prefix(directive.length);
  }
}

std::string ordinal(std::int32_t number) {
  std::int64_t size = std::abs(std::int64_t{number});
  constexpr const char* kEndings[] = {"th", "st", "nd", "rd"};
  bool is_teen = size % 100 / 10 == 1;
  std::int64_t ending = is_teen || size % 10 > 3 ? 0 : size % 10;
  return std::to_string(number).append(kEndings[ending]);
}

std::size_t escaped_size(Text text) {
  std::size_t size = 0;
  visit_stretches(
      text, [&size](Text plain) { size += plain.size(); },
      [&size](char c) { size += short_escape(c) != '\0' ? 2 : 4; });
  return size;
}

void write_escaped(Text text, char* out) {
  visit_stretches(
      text, [&out](Text plain) { out = std::ranges::copy(plain, out).out; },
      [&out](char c) {
        constexpr Text kDigits = "0123456789abcdef";
        *out++ = '\\';
        if (char letter = short_escape(c); letter != '\0') {
          *out++ = letter;
        } else {
          *out++ = 'x';
          *out++ = kDigits[byte_of(c) / 16];
          *out++ = kDigits[byte_of(c) % 16];
        }
      });
}

}  // namespace vstring
