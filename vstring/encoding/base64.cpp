// Base64: a plain coder of groups, which also does the ends, and wide ones that take 24 bytes, or
// 32 characters, at a time. A last block may overlap the one before it, so that nothing is read or
// written beyond the ends.
#include "vstring/encoding/base64.h"

#include <algorithm>
#include <array>

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

void encode_group(const char* in, char* out) {
  unsigned a = byte_of(in[0]);
  unsigned b = byte_of(in[1]);
  unsigned c = byte_of(in[2]);
  out[0] = kDigits[a >> 2];
  out[1] = kDigits[(a & 3) << 4 | b >> 4];
  out[2] = kDigits[(b & 15) << 2 | c >> 6];
  out[3] = kDigits[c & 63];
}

// Puts the padding in front of `end`, over the last digits of as many bytes.
void pad(std::size_t num_bytes, char* end) {
  std::size_t rest = num_bytes % 3;
  if (rest != 0) end[-1] = kPad;
  if (rest == 1) end[-2] = kPad;
}

void encode_plain(Text bytes, char* out) {
  const char* in = bytes.data();
  std::size_t left = bytes.size();
  for (; left >= 3; left -= 3, in += 3, out += 4) encode_group(in, out);
  if (left == 0) return;
  const char group[] = {in[0], left == 2 ? in[1] : '\0', '\0'};
  encode_group(group, out);
  pad(left, out + 4);
}

unsigned value_of(char digit) { return kDigitValues[byte_of(digit)]; }

// False when one of the four is no digit.
bool decode_group(const char* in, char* out) {
  unsigned a = value_of(in[0]);
  unsigned b = value_of(in[1]);
  unsigned c = value_of(in[2]);
  unsigned d = value_of(in[3]);
  out[0] = static_cast<char>(a << 2 | b >> 4);
  out[1] = static_cast<char>(b << 4 | c >> 2);
  out[2] = static_cast<char>(c << 6 | d);
  return (a | b | c | d) != kNoDigit;
}

bool decode_plain(Text digits, char* out) {
  const char* in = digits.data();
  const char* end = in + digits.size() / 4 * 4;
  bool is_valid = true;
  for (; in != end; in += 4, out += 3) is_valid &= decode_group(in, out);
  std::size_t rest = digits.size() % 4;
  if (rest == 0) return is_valid;
  char group[] = {'A', 'A', 'A', 'A'};  // what is missing counts as zeros
  char bytes[3];
  std::copy_n(end, rest, group);
  is_valid &= decode_group(group, bytes);
  std::copy_n(bytes, decoded_size(rest), out);
  return is_valid;
}

#ifdef VSTRING_X86

VSTRING_AVX2 void encode_wide(Text bytes, char* out) {
  std::size_t groups = bytes.size() / 3;
  if (groups < kLeastWideGroups) {
    encode_short_wide(bytes.data(), bytes.size(), out);
    return pad(bytes.size(), out + base64_size(bytes.size()));
  }
  encode_groups_wide(bytes.data(), groups, out);
  encode_plain(bytes.substr(3 * groups), out + 4 * groups);
}

VSTRING_AVX2 bool decode_wide(Text digits, char* out) {
  std::size_t groups = digits.size() / 4;
  if (groups < kLeastWideGroups) return decode_short_wide(digits.data(), digits.size(), out);
  bool is_valid = decode_groups_wide(digits.data(), groups, out);
  return decode_plain(digits.substr(4 * groups), out + 3 * groups) && is_valid;
}

bool is_for_vectors(Text text) { return text.size() >= kLeastShortSize && has_avx2(); }

#endif

}  // namespace

void encode_base64(Text bytes, char* out) {
#ifdef VSTRING_X86
  if (is_for_vectors(bytes)) return encode_wide(bytes, out);
#endif
  encode_plain(bytes, out);
}

Text base64_digits(Text coded) {
  if (coded.empty() || coded.size() % 4 != 0) return coded;
  for (int i = 0; i < 2 && coded.back() == kPad; ++i) coded.remove_suffix(1);
  return coded;
}

bool decode_base64(Text digits, char* out) {
  if (digits.size() % 4 == 1) return false;  // six bits are no byte
#ifdef VSTRING_X86
  if (is_for_vectors(digits)) return decode_wide(digits, out);
#endif
  return decode_plain(digits, out);
}

}  // namespace vstring
