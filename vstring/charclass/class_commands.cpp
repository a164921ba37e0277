// The is- and has-commands of the character classes, and expandCharClass.
// Tests: docs/commands/charclass.md, tests/transcripts/charclass/.
#include <optional>

#include "vstring/charclass.h"
#include "vstring/charclass/class_spec.h"
#include "vstring/core/byte_set.h"
#include "vstring/host/commands.h"

namespace vstring {
namespace {

// The part of the text that the range form of a class command examines: without the range's last
// position, and nothing at all for a range of one.
Text examined(Args& args, Text text) {
  Span span = args.span(2, text.size(), "second argument must be a range");
  if (span.first >= span.last) return {};
  return text.substr(static_cast<std::size_t>(span.first),
                     static_cast<std::size_t>(span.last - span.first));
}

// In the range form the first byte of the whole text stands for all of them when it is asked
// whether a byte is ASCII.
bool starts_beyond_ascii(Text text) { return !text.empty() && byte_of(text[0]) >= 128; }

Object is_in_class(Args& args, Host& host, const ByteSet& members) {
  Text text = args.string(1, "argument must be a string");
  if (!args.has(2)) return host.boolean(find_other(text, members) == text.size());
  Text part = examined(args, text);
  if (part.empty()) return host.boolean(true);
  return host.boolean(!starts_beyond_ascii(text) && find_other(part, members) == part.size());
}

Object has_class(Args& args, Host& host, const ByteSet& members) {
  Text text = args.string(1, "argument must be a string");
  if (!args.has(2)) return host.boolean(find_member(text, members) < text.size());
  Text part = examined(args, text);
  return host.boolean(!starts_beyond_ascii(text) && find_member(part, members) < part.size());
}

constexpr ByteSet members_of(std::uint32_t bit, const std::uint32_t (&table)[256]) {
  ByteSet set;
  for (int c = 0; c < 256; ++c) {
    if ((table[c] & bit) != 0) set.add(static_cast<unsigned char>(c));
  }
  return set;
}

template <std::uint32_t Bit>
const ByteSet& class_members() {
  static const ByteSet members = members_of(Bit, cclbm);
  return members;
}

}  // namespace

#define CLASS_COMMANDS(name, bit)                         \
  Object cmd::vstring_is##name(Args& args, Host& host) {  \
    return is_in_class(args, host, class_members<bit>()); \
  }                                                       \
  Object cmd::vstring_has##name(Args& args, Host& host) { \
    return has_class(args, host, class_members<bit>());   \
  }

CLASS_COMMANDS(lower, CCL_LOWER)
CLASS_COMMANDS(upper, CCL_UPPER)
CLASS_COMMANDS(alpha, CCL_ALPHA)
CLASS_COMMANDS(digit, CCL_DIGIT)
CLASS_COMMANDS(bdigit, CCL_BDIGIT)
CLASS_COMMANDS(odigit, CCL_ODIGIT)
CLASS_COMMANDS(xdigit, CCL_XDIGIT)
CLASS_COMMANDS(alphaNumeric, CCL_ALNUM)
CLASS_COMMANDS(graph, CCL_GRAPH)
CLASS_COMMANDS(print, CCL_PRINT)
CLASS_COMMANDS(punct, CCL_PUNCT)
CLASS_COMMANDS(cntrl, CCL_CNTRL)
CLASS_COMMANDS(vowel, CCL_VOWEL)
CLASS_COMMANDS(ident, CCL_IDENT)
CLASS_COMMANDS(ident1, CCL_IDENT1)
CLASS_COMMANDS(dna, CCL_DNA)
CLASS_COMMANDS(space, CCL_SPACE)
CLASS_COMMANDS(ascii, CCL_ASCII)
CLASS_COMMANDS(fence, CCL_FENCE)

#undef CLASS_COMMANDS

Object cmd::vstring_expandCharClass(Args& args, Host& host) {
  Text spec = args.string(1, "argument must be a string");
  std::optional<ByteSet> members = expand_class_spec(spec);
  if (!members) fail("invalid character class specification");
  std::size_t size = 0;
  char bytes[256];
  for (int c = 1; c < 256; ++c) {
    if (members->contains(static_cast<unsigned char>(c))) bytes[size++] = static_cast<char>(c);
  }
  bytes[size] = '\0';  // at most all bytes but NUL come before it
  return host.c_text(bytes);
}

}  // namespace vstring
