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

// One or two bytes, as if zeros stood behind them.
void encode_end(const char* in, std::size_t count, char* out) {
  const char group[] = {in[0], count == 2 ? in[1] : '\0', '\0'};
  encode_group(group, out);
  if (count == 1) out[2] = kPad;
  out[3] = kPad;
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

// Up to three digits, as if A, which is 0, stood behind them.
bool decode_end(const char* in, std::size_t count, char* out) {
  char group[] = {'A', 'A', 'A', 'A'};
  char bytes[3];
  std::copy_n(in, count, group);
  bool is_valid = decode_group(group, bytes);
  std::copy_n(bytes, decoded_size(count), out);
  return is_valid;
}

}  // namespace

void encode_base64(Text bytes, char* out) {
  const char* in = bytes.data();
  std::size_t groups = bytes.size() / 3;
  std::size_t done = groups < kLeastWideGroups ? 0 : encode_groups_wide(in, groups, out);
  for (; done < groups; ++done) encode_group(in + 3 * done, out + 4 * done);
  std::size_t rest = bytes.size() % 3;
  if (rest != 0) encode_end(in + 3 * groups, rest, out + 4 * groups);
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
  std::size_t done = groups < kLeastWideGroups ? 0 : decode_groups_wide(in, groups, out, is_valid);
  for (; done < groups; ++done) is_valid &= decode_group(in + 4 * done, out + 3 * done);
  std::size_t rest = digits.size() % 4;
  if (rest != 0) is_valid &= decode_end(in + 4 * groups, rest, out + 3 * groups);
  return is_valid;
}

}  // namespace vstring
