// Arithmetic and comparison of values; see operators.h.
#include "vexil/language/operators.h"

#include <cmath>
#include <string>

#include "vexil/values/integers.h"

namespace vexil {

namespace {

bool is_float(Object object) { return kind_of(object) == Kind::Float; }

// Also of an integer.
double number_value(Object object) {
  return is_float(object) ? float_value(object) : nearest_double(big_integer(object));
}

[[noreturn]] void raise_not_numbers(const char* sign, Object a, Object b) {
  raise_error(std::string("`") + sign + "' needs numbers, but got %1", {is_number(a) ? b : a});
}

std::int64_t floor_div(std::int64_t a, std::int64_t b) {
  const std::int64_t quotient = a / b;
  return a % b != 0 && (a < 0) != (b < 0) ? quotient - 1 : quotient;
}

Object combine_small(Operator code, std::int64_t a, std::int64_t b) {
  switch (code) {
    case Operator::Add:
      return make_integer(a + b);
    case Operator::Subtract:
      return make_integer(a - b);
    case Operator::Multiply:
      return make_integer(a * b);
    case Operator::Div:
      return make_integer(floor_div(a, b));
    default:
      return make_integer(a - floor_div(a, b) * b);
  }
}

Object combine_big(Operator code, const BigInteger& a, const BigInteger& b) {
  switch (code) {
    case Operator::Add:
      return make_integer(BigInteger(a + b));
    case Operator::Subtract:
      return make_integer(BigInteger(a - b));
    case Operator::Multiply:
      // What no object holds is not computed.
      if (a != 0 && b != 0 && msb(abs(a)) / 32 + msb(abs(b)) / 32 > HOST_MAX_ELEMENTS) {
        raise_out_of_memory();
      }
      return make_integer(multiply(a, b));
    case Operator::Div:
      return make_integer(divide(a, b).quotient);
    default:
      return make_integer(divide(a, b).remainder);
  }
}

const char* sign_of(Operator code) {
  switch (code) {
    case Operator::Add:
      return "+";
    case Operator::Subtract:
      return "-";
    case Operator::Multiply:
      return "*";
    case Operator::Div:
      return "div";
    case Operator::Mod:
      return "mod";
    case Operator::Less:
      return "<";
    case Operator::LessEqual:
      return "<=";
    case Operator::Greater:
      return ">";
    case Operator::GreaterEqual:
      return ">=";
    case Operator::Unequal:
      return "<>";
    case Operator::Equation:
      return "=";
  }
  return "";
}

Object combine_floats(Operator code, Object a, Object b) {
  const double x = number_value(a);
  const double y = number_value(b);
  switch (code) {
    case Operator::Add:
      return make_float(x + y);
    case Operator::Subtract:
      return make_float(x - y);
    case Operator::Multiply:
      return make_float(x * y);
    default:
      raise_error(std::string("`") + sign_of(code) + "' needs integers, but got %1",
                  {is_float(a) ? a : b});
  }
}

Object calculate(Operator code, Object a, Object b) {
  if (!is_number(a) || !is_number(b)) raise_not_numbers(sign_of(code), a, b);
  if (!is_integer(a) || !is_integer(b)) return combine_floats(code, a, b);
  if ((code == Operator::Div || code == Operator::Mod) && b == make_integer(0)) {
    raise_error("division by zero");
  }
  if (is_integer32(a) && is_integer32(b)) return combine_small(code, integer32(a), integer32(b));
  return combine_big(code, big_integer(a), big_integer(b));
}

// Exactly, whatever the sizes; a and b are no NaN.
std::partial_ordering order_mixed(Object integer, double number) {
  if (is_integer32(integer)) return static_cast<double>(integer32(integer)) <=> number;
  if (std::isinf(number)) return 0.0 <=> number;
  const double whole = std::trunc(number);
  const int order = big_integer(integer).compare(BigInteger(whole));
  return order != 0 ? order <=> 0 : whole <=> number;
}

std::partial_ordering order_numbers(Object a, Object b) {
  if (is_integer32(a) && is_integer32(b)) return integer32(a) <=> integer32(b);
  if (is_integer(a) && is_integer(b)) return big_integer(a).compare(big_integer(b)) <=> 0;
  if (is_float(a) && is_float(b)) return float_value(a) <=> float_value(b);
  const double number = float_value(is_float(a) ? a : b);
  if (std::isnan(number)) return std::partial_ordering::unordered;
  return is_float(b) ? order_mixed(a, number) : 0 <=> order_mixed(b, number);
}

bool is_comparable(Object a, Object b) {
  return (is_number(a) && is_number(b)) ||
         (kind_of(a) == Kind::String && kind_of(b) == Kind::String);
}

bool holds(Operator code, std::partial_ordering order) {
  switch (code) {
    case Operator::Less:
      return order < 0;
    case Operator::LessEqual:
      return order <= 0;
    case Operator::Greater:
      return order > 0;
    case Operator::GreaterEqual:
      return order >= 0;
    default:
      return order != 0;
  }
}

bool compare(Operator code, Object a, Object b) {
  if (!is_comparable(a, b)) {
    if (code == Operator::Unequal) return !is_equal(a, b);
    raise_error("cannot compare %1 and %2", {a, b});
  }
  if (is_number(a)) return holds(code, order_numbers(a, b));
  return holds(code, text(a) <=> text(b));
}

}  // namespace

bool is_number(Object object) { return is_integer(object) || is_float(object); }

Object combine(Operator code, Object a, Object b) {
  switch (code) {
    case Operator::Equation:
      return make_equation(a, b);
    case Operator::Add:
    case Operator::Subtract:
    case Operator::Multiply:
    case Operator::Div:
    case Operator::Mod:
      return calculate(code, a, b);
    default:
      return make_boolean(compare(code, a, b) ? 1 : 0);
  }
}

Object negate(Object object) {
  if (is_integer32(object)) return make_integer(-std::int64_t{integer32(object)});
  if (is_integer(object)) return make_integer(BigInteger(-big_integer(object)));
  if (!is_number(object)) raise_error("`-' needs a number, but got %1", {object});
  return make_float(-float_value(object));
}

int truth_of(Object object) {
  if (object == make_boolean(1)) return 1;
  if (object == make_boolean(0)) return 0;
  if (object == make_boolean(-1)) return -1;
  if (kind_of(object) != Kind::Equation) {
    raise_error("a condition must be true or false, but is %1", {object});
  }
  const auto [left, right] = sides(object);
  return is_equal(left, right) ? 1 : 0;
}

}  // namespace vexil
