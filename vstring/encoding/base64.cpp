// Base64: a plain coder of groups, which also does the ends, and wide ones that take 24 bytes, or
// 32 characters, at a time. A last block may overlap the one before it, so that nothing is read or
// written beyond the ends.
#include "vstring/encoding/base64.h"

#include <array>
#include <cstdint>
#include <cstring>

#include "vstring/core/cpu.h"
#include "vstring/encoding/base64_wide.h"

namespace vstring {
namespace {

constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char kPad = '=';
constexpr unsigned char kNoDigit = 0xff;  // as a digit's value

constexpr std::array<unsigned char, 256> make_digit_values() {
  std::array<unsigned char, 256> values{};
  values.fill(kNoDigit);
  for (unsigned char i = 0; i < 64; ++i) values[byte_of(kDigits[i])] = i;
  return values;
}

constexpr std::array<unsigned char, 256> kDigitValues = make_digit_values();

void encode_group(std::uint32_t bits, char* out) {
  for (int shift = 18; shift >= 0; shift -= 6) *out++ = kDigits[bits >> shift & 63];
}

// The first `count` bytes of a group, in front of zeros.
std::uint32_t group_bits(const char* in, std::size_t count) {
  std::uint32_t bits = static_cast<std::uint32_t>(byte_of(in[0])) << 16;
  if (count > 1) bits |= static_cast<std::uint32_t>(byte_of(in[1])) << 8;
  if (count > 2) bits |= byte_of(in[2]);
  return bits;
}

// The values of `count` digits of a group in front of zeros; above 24 bits when one is no digit.
std::uint32_t digit_bits(const char* in, std::size_t count) {
  std::uint32_t bits = 0;
  std::uint32_t all = 0;
  for (std::size_t i = 0; i < count; ++i) {
    std::uint32_t value = kDigitValues[byte_of(in[i])];
    all |= value;
    bits |= value << (18 - 6 * i);
  }
  return all == kNoDigit ? UINT32_MAX : bits;
}

}  // namespace

void encode_base64(Text bytes, char* out) {
  const char* in = bytes.data();
  std::size_t groups = bytes.size() / 3;
  std::size_t done = encode_groups_wide(in, groups, out);
  for (; done < groups; ++done) encode_group(group_bits(in + 3 * done, 3), out + 4 * done);
  std::size_t rest = bytes.size() % 3;
  if (rest == 0) return;
  encode_group(group_bits(in + 3 * groups, rest), out + 4 * groups);
  std::memset(out + 4 * groups + 1 + rest, kPad, 3 - rest);
}

Text base64_digits(Text coded) {
  if (coded.empty() || coded.size() % 4 != 0) return coded;
  for (int i = 0; i < 2 && coded.back() == kPad; ++i) coded.remove_suffix(1);
  return coded;
}

bool decode_base64(Text digits, char* out) {
  const char* in = digits.data();
  std::size_t groups = digits.size() / 4;
  bool is_valid = true;
  std::size_t done = decode_groups_wide(in, groups, out, is_valid);
  for (; done <= groups; ++done) {  // the last group is short, or empty
    std::size_t count = done < groups ? 4 : digits.size() % 4;
    std::uint32_t bits = digit_bits(in + 4 * done, count);
    if (bits == UINT32_MAX) return false;
    for (std::size_t i = 0; i < decoded_size(count); ++i) {
      out[3 * done + i] = static_cast<char>(bits >> (16 - 8 * i));
    }
  }
  return is_valid;
}

}  // namespace vstring
