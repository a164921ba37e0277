// Integers: immediate where 31 bits suffice, else an object with the sign (and the number of limbs)
// in word 1 and 32-bit limbs from word 2 on, lowest first. An integer has one form only, so that
// equal integers are equal words.
#include <limits>

#include "vexil/values/values.h"

namespace vexil {
namespace {

constexpr std::int64_t kMaxImmediate = (std::int64_t{1} << 30) - 1;
constexpr std::int64_t kMinImmediate = -(std::int64_t{1} << 30);

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

Object make_integer(const mpz_class& value) {
  const mpz_srcptr number = value.get_mpz_t();
  const std::size_t count = (mpz_sizeinbase(number, 2) + 31) / 32;
  if (count == 1) {
    const auto magnitude = static_cast<std::int64_t>(mpz_get_ui(number) & 0xffffffffU);
    return make_integer(sgn(value) < 0 ? -magnitude : magnitude);
  }
  if (count > HOST_LENGTH_MASK - 2) raise_out_of_memory();
  const Object object = make_limbs(sgn(value) < 0, count);
  mpz_export(host_words(object) + 2, nullptr, -1, 4, 0, 0, number);
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

mpz_class big_integer(Object object) {
  if (host_is_immediate(object)) return immediate_value(object);
  mpz_class value;
  mpz_import(value.get_mpz_t(), host_length(object) - 2, -1, 4, 0, 0, host_words(object) + 2);
  return signed_limbs(object) < 0 ? mpz_class(-value) : value;
}

}  // namespace vexil
