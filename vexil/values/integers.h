// Integers beyond 64 bits, and integers as decimal text. Entry points: BigInteger, big_integer,
// integer_text, read_integer. Tests: tests/unit/values_test.cpp.
#pragma once

#include <boost/multiprecision/cpp_int.hpp>
#include <string>
#include <string_view>

#include "vexil/values/values.h"

namespace vexil {

/// Exact at any size; throws std::bad_alloc when memory runs out.
using BigInteger = boost::multiprecision::number<boost::multiprecision::cpp_int_backend<>,
                                                 boost::multiprecision::et_off>;

Object make_integer(const BigInteger& value);
/// The value of an is_integer object.
BigInteger big_integer(Object object);
/// The nearest double, an infinity beyond the largest one.
double nearest_double(const BigInteger& value);

BigInteger multiply(const BigInteger& a, const BigInteger& b);

struct Division {
  BigInteger quotient;   // rounded down
  BigInteger remainder;  // 0, or of the divisor's sign
};
/// Divides by b, which is not 0. What takes long ends with Interrupted when that is asked for:
/// divisions, products, and conversions of long numbers.
Division divide(const BigInteger& a, const BigInteger& b);

/// The decimal form of an is_integer object.
std::string integer_text(Object object);
/// The integer of one or more decimal digits.
Object read_integer(std::string_view digits);

}  // namespace vexil
