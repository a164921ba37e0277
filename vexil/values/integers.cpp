// Integers: immediate where 31 bits suffice, else an object with the sign (and the number of limbs)
// in word 1 and 32-bit limbs from word 2 on, lowest first. An integer has one form only, so that
// equal integers are equal words.
#include "vexil/values/integers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <span>
#include <vector>

#include "vexil/values/interrupt.h"

namespace vexil {
namespace {

constexpr std::int64_t kMaxImmediate = (std::int64_t{1} << 30) - 1;
constexpr std::int64_t kMinImmediate = -(std::int64_t{1} << 30);

// Quotients of more bits, and numbers of more digits, are worth the faster way.
constexpr std::size_t kShortDivision = 2048;
constexpr std::size_t kShortProduct = std::size_t{1} << 18;  // bits; takes milliseconds
constexpr std::size_t kBlockDigits = 300;

std::int32_t immediate_value(Object object) { return static_cast<std::int32_t>(object) >> 1; }

std::int32_t signed_limbs(Object object) {
  return static_cast<std::int32_t>(host_words(object)[1]);
}

Object make_limbs(bool is_negative, std::size_t count) {
  const Object object = heap().allocate(kTypeBigInteger, 2 + count);
  const auto size = static_cast<std::int32_t>(count);
  host_words(object)[1] = static_cast<std::uint32_t>(is_negative ? -size : size);
  return object;
}

std::size_t num_bits(const BigInteger& value) { return value == 0 ? 0 : msb(abs(value)) + 1; }

BigInteger low_bits(const BigInteger& value, std::size_t count) {
  return value & ((BigInteger(1) << count) - 1);
}

// a, b >= 0. Karatsuba's way down to products that take no time.
BigInteger product(const BigInteger& a, const BigInteger& b) {
  const std::size_t length_a = num_bits(a);
  const std::size_t length_b = num_bits(b);
  if (length_a < length_b) return product(b, a);
  if (length_a <= kShortProduct) return a * b;
  check_interrupt();
  const std::size_t half = (length_a / 2 + 63) / 64 * 64;
  const BigInteger high_a = a >> half;
  const BigInteger low_a = low_bits(a, half);
  if (length_b <= half) return (product(high_a, b) << half) + product(low_a, b);
  const BigInteger high_b = b >> half;
  const BigInteger low_b = low_bits(b, half);
  const BigInteger high = product(high_a, high_b);
  const BigInteger low = product(low_a, low_b);
  const BigInteger middle = product(high_a + low_a, high_b + low_b) - high - low;
  return (high << (2 * half)) + (middle << half) + low;
}

// About 2^(bits + num_bits(d)) / d, some units off in the last place; d > 0. By Newton's iteration,
// as the multiplications are faster than long division.
BigInteger reciprocal(const BigInteger& d, std::size_t bits) {
  check_interrupt();
  const std::size_t length = num_bits(d);
  const std::size_t kept = std::min(length, bits + 32);  // more of d makes no difference
  const BigInteger head = d >> (length - kept);
  if (bits <= kShortDivision) return (BigInteger(1) << (bits + kept)) / head;
  const std::size_t half = bits / 2 + 8;
  const BigInteger rough = reciprocal(d, half);
  const BigInteger error = (BigInteger(1) << (half + kept)) - product(head, rough);
  return (rough << (bits - half)) + (multiply(rough, error) >> (2 * half + kept - bits));
}

// Powers of ten by which a number of many digits is split in halves, again and again: 10^n,
// 10^(2 n), 10^(4 n) ... with n = kBlockDigits.
std::vector<BigInteger> splitting_powers(std::size_t num_digits) {
  std::vector<BigInteger> powers{boost::multiprecision::pow(BigInteger(10), kBlockDigits)};
  for (std::size_t n = 2 * kBlockDigits; n < num_digits; n *= 2) {
    check_interrupt();
    powers.push_back(product(powers.back(), powers.back()));
  }
  return powers;
}

// Appends the digits of value >= 0, below the square of the last power; with zeros in front up to
// `width`.
void append_digits(std::string& text, const BigInteger& value, std::span<const BigInteger> powers,
                   std::size_t width) {
  if (powers.empty() || value < powers.front()) {
    const std::string digits = value.str();
    text.append(width - std::min(width, digits.size()), '0').append(digits);
    return;
  }
  const BigInteger& power = powers.back();
  powers = powers.first(powers.size() - 1);
  const std::size_t low_width = kBlockDigits << powers.size();
  if (value < power) return append_digits(text, value, powers, width);
  const auto [high, low] = divide(value, power);
  append_digits(text, high, powers, width - std::min(width, low_width));
  append_digits(text, low, powers, low_width);
}

BigInteger value_of_digits(std::string_view digits, std::span<const BigInteger> powers) {
  check_interrupt();
  if (digits.size() <= kBlockDigits) {
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size() - 1));  // no octal
    return BigInteger(std::string(digits));
  }
  const std::size_t low_width = kBlockDigits << (powers.size() - 1);
  const std::span<const BigInteger> rest = powers.first(powers.size() - 1);
  if (digits.size() <= low_width) return value_of_digits(digits, rest);
  const std::size_t high_width = digits.size() - low_width;
  return product(value_of_digits(digits.substr(0, high_width), rest), powers.back()) +
         value_of_digits(digits.substr(high_width), rest);
}

}  // namespace

Object make_integer(std::int64_t value) {
  if (value >= kMinImmediate && value <= kMaxImmediate) {
    return static_cast<Object>(static_cast<std::uint64_t>(value) << 1 | 1);
  }
  const auto bits = static_cast<std::uint64_t>(value);
  const std::uint64_t magnitude = value < 0 ? 0 - bits : bits;
  const auto high = static_cast<std::uint32_t>(magnitude >> 32);
  const Object object = make_limbs(value < 0, high != 0 ? 2 : 1);
  host_words(object)[2] = static_cast<std::uint32_t>(magnitude);
  if (high != 0) host_words(object)[3] = high;
  return object;
}

Object make_integer(const BigInteger& value) {
  const bool is_negative = value < 0;
  const BigInteger magnitude = is_negative ? BigInteger(-value) : value;
  const std::size_t count = value == 0 ? 1 : msb(magnitude) / 32 + 1;
  if (count == 1) {
    const auto small = static_cast<std::int64_t>(magnitude);
    return make_integer(is_negative ? -small : small);
  }
  if (count > HOST_LENGTH_MASK - 2) raise_out_of_memory();
  const Object object = make_limbs(is_negative, count);
  export_bits(magnitude, host_words(object) + 2, 32, false);
  return object;
}

bool is_integer(Object object) {
  return host_is_immediate(object) || host_type(object) == kTypeBigInteger;
}

bool is_integer32(Object object) {
  if (host_is_immediate(object)) return true;
  if (host_type(object) != kTypeBigInteger) return false;
  const std::uint32_t magnitude = host_words(object)[2];
  const std::int32_t limbs = signed_limbs(object);
  return (limbs == 1 && magnitude <= 0x7fffffffU) || (limbs == -1 && magnitude <= 0x80000000U);
}

std::int32_t integer32(Object object) {
  if (host_is_immediate(object)) return immediate_value(object);
  const std::uint32_t magnitude = host_words(object)[2];
  return static_cast<std::int32_t>(signed_limbs(object) < 0 ? 0 - magnitude : magnitude);
}

BigInteger big_integer(Object object) {
  if (host_is_immediate(object)) return immediate_value(object);
  BigInteger value;
  const std::uint32_t* limbs = host_words(object) + 2;
  import_bits(value, limbs, limbs + (host_length(object) - 2), 32, false);
  return signed_limbs(object) < 0 ? BigInteger(-value) : value;
}

// Of the bits below the 64 highest ones it only matters whether there is any.
double nearest_double(const BigInteger& value) {
  if (value < 0) return -nearest_double(-value);
  const std::size_t num_bits = value == 0 ? 0 : msb(value) + 1;
  if (num_bits <= 64) return static_cast<double>(static_cast<std::uint64_t>(value));
  if (num_bits > 2048) return HUGE_VAL;
  const auto shift = static_cast<unsigned>(num_bits - 64);
  auto high = static_cast<std::uint64_t>(value >> shift);
  if (lsb(value) < shift) high |= 1;
  return std::ldexp(static_cast<double>(high), static_cast<int>(shift));
}

BigInteger multiply(const BigInteger& a, const BigInteger& b) {
  const BigInteger magnitude = product(abs(a), abs(b));
  return (a < 0) != (b < 0) ? BigInteger(-magnitude) : magnitude;
}

// First by the divisor's size, with a remainder that is not negative.
Division divide(const BigInteger& a, const BigInteger& b) {
  const BigInteger divisor = abs(b);
  const std::size_t length_a = num_bits(a);
  const std::size_t length_b = num_bits(b);
  Division result;
  if (length_a <= length_b + kShortDivision || length_b <= 64) {
    divide_qr(a, divisor, result.quotient, result.remainder);
  } else {
    const std::size_t bits = length_a - length_b + 8;
    const std::size_t shift = length_b > 32 ? length_b - 32 : 0;
    const BigInteger scaled = multiply(a >> shift, reciprocal(divisor, bits));
    result.quotient = scaled >> (bits + length_b - shift);
    check_interrupt();
    result.remainder = a - multiply(result.quotient, divisor);
  }
  for (; result.remainder < 0; result.remainder += divisor) --result.quotient;
  for (; result.remainder >= divisor; result.remainder -= divisor) ++result.quotient;
  if (b < 0) {
    result.quotient = -result.quotient;
    if (result.remainder != 0) {
      result.remainder += b;
      --result.quotient;
    }
  }
  return result;
}

std::string integer_text(Object object) {
  if (is_integer32(object)) return std::to_string(integer32(object));
  const BigInteger value = big_integer(object);
  std::string text = value < 0 ? "-" : "";
  append_digits(text, abs(value), splitting_powers(host_length(object) * 10), 0);
  return text;
}

Object read_integer(std::string_view digits) {
  std::int64_t small = 0;
  const char* end = digits.data() + digits.size();
  if (std::from_chars(digits.data(), end, small).ec == std::errc()) return make_integer(small);
  return make_integer(value_of_digits(digits, splitting_powers(digits.size())));
}

}  // namespace vexil
