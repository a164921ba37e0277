// Messages, escapes, lists of strings and hashes as commands. Tests: docs/commands/formatting.md,
// tests/transcripts/formatting/formatting.vt.
#include <string>
#include <vector>

#include "vstring/containers.h"
#include "vstring/core/byte_set.h"
#include "vstring/formatting/messages.h"
#include "vstring/host/commands.h"

namespace vstring {
namespace {

constexpr const char* kFirstNoString = "first argument must be a string";

MessageArgument message_argument(const Args& args, const Host& host, int i) {
  if (args.is_string(i)) return {std::string(args.text(i)), std::string(args.text(i))};
  if (!args.is_integer32(i)) {
    fail("expecting argument %1 to be a string or an integer, but got %2", host.integer(i),
         args[i]);
  }
  std::int32_t value = host.kernel()->HostToInteger32(args[i]);
  return {std::to_string(value), ordinal(value)};
}

std::string distinct_characters(Text text) {
  ByteSet seen;
  std::string result;
  for (char c : text) {
    if (seen.contains(byte_of(c))) continue;
    seen.add(byte_of(c));
    result += c;
    if (result.size() == 255) break;
  }
  return result;
}

// base to the power of exponent; anything above the limit when it is above that.
std::size_t bounded_power(std::size_t base, std::size_t exponent, std::size_t limit) {
  std::size_t power = 1;
  for (; exponent > 0 && base > 1 && power <= limit; --exponent) power *= base;
  return base == 0 && exponent > 0 ? 0 : power;
}

// Steps to the next string over the letters, the last position fastest.
void step_to_next(std::string& text, const std::string& letters) {
  for (std::size_t i = text.size(); i-- > 0;) {
    std::size_t digit = letters.find(text[i]) + 1;
    text[i] = letters[digit % letters.size()];
    if (digit < letters.size()) return;
  }
}

}  // namespace

Object cmd::vstring_fmtmsg(Args& args, Host& host) {
  Text pattern = args.string(1, kFirstNoString);
  std::vector<MessageArgument> arguments;
  for (int i = 2; i <= args.count(); ++i) arguments.push_back(message_argument(args, host, i));
  return host.text(format_message(pattern, arguments, HOST_MAX_TEXT));
}

Object cmd::vstring_escape(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  return host.text(escaped_size(s), [s](char* out) { write_escaped(s, out); });
}

Object cmd::vstring_gen(Args& args, Host& host) {
  constexpr const char* kNoLength = "argument %1 must be a non-negative integer, but received %2";
  if (!args.is_integer32(1)) fail(kNoLength, host.integer(1), args[1]);
  std::int32_t length = host.kernel()->HostToInteger32(args[1]);
  if (length < 0) fail(kNoLength, host.integer(1), args[1]);
  std::string letters = distinct_characters(args.string(2, "second argument must be a string"));
  auto size = static_cast<std::size_t>(length);
  std::size_t count = bounded_power(letters.size(), size, HOST_MAX_ELEMENTS);
  if (count > HOST_MAX_ELEMENTS || (count > 0 && size > HOST_MAX_TEXT)) fail(kOutOfMemory);
  List result = host.list(count);
  std::string text(count > 0 ? size : 0, letters.empty() ? ' ' : letters[0]);
  for (std::size_t i = 0; i < count; ++i) {
    result.set(i, host.c_text(text.c_str()));
    step_to_next(text, letters);
  }
  return result.finish();
}

Object cmd::vstring_hash(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  std::uint32_t hash = table_hash(s.data());
  if (!args.has(2)) return host.position(hash & 0x7fffffffU);
  std::int32_t modulus = args.integer32(2, "second argument must be a 32-bit integer");
  if (modulus < 1) fail("second argument must be positive");
  return host.position(hash % static_cast<std::uint32_t>(modulus));
}

Object cmd::vstring_support(Args& args, Host& host) {
  return host.text(Text(distinct_characters(args.string(1, kFirstNoString))));
}

}  // namespace vstring
