// Values: integers of all sizes, names, equality, sets, the printed form, messages.
#include "vexil/values/values.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "vexil/values/arrays.h"
#include "vexil/values/integers.h"
#include "vexil/values/interrupt.h"

namespace vexil {
namespace {

class Values : public testing::Test {
 protected:
  void SetUp() override { init_values(std::size_t{256} << 20); }
  void TearDown() override { shut_values(); }
  static Object integer(std::int64_t value) { return make_integer(value); }
  static Object list(std::initializer_list<Object> elements) {
    return make_list({elements.begin(), elements.size()});
  }
  static Object sequence(std::initializer_list<Object> elements) {
    return make_sequence({elements.begin(), elements.size()});
  }
};

TEST_F(Values, IntegersKeepTheirValueAndAreImmediateUpTo31Bits) {
  for (std::int64_t edge : {std::int64_t{0}, std::int64_t{1} << 30, std::int64_t{1} << 31,
                            std::int64_t{1} << 32, std::numeric_limits<std::int64_t>::max()}) {
    for (std::int64_t sign : {-1, 1}) {
      for (std::int64_t offset : {-1, 0}) {
        const std::int64_t value = sign * edge + sign * offset;
        const Object object = integer(value);
        const BigInteger big(value);
        EXPECT_EQ(host_is_immediate(object), value >= -(1 << 30) && value < 1 << 30);
        EXPECT_EQ(is_integer32(object), value >= INT32_MIN && value <= INT32_MAX);
        if (is_integer32(object)) {
          EXPECT_EQ(integer32(object), value);
        }
        EXPECT_EQ(big_integer(object), big);
        EXPECT_TRUE(is_equal(object, make_integer(big)));
        EXPECT_EQ(printed(object), std::to_string(value));
      }
    }
  }
}

TEST_F(Values, LongIntegersAreConvertedExactly) {
  for (unsigned exponent : {12U, 500U, 6000U, 40000U}) {
    const BigInteger huge = boost::multiprecision::pow(BigInteger(7), exponent);
    const BigInteger round = boost::multiprecision::pow(BigInteger(10), exponent);  // all zeros
    for (const BigInteger& value : {huge, round, BigInteger(round - 1), BigInteger(-huge)}) {
      const Object object = make_integer(value);
      EXPECT_EQ(big_integer(object), value);
      EXPECT_FALSE(is_equal(object, make_integer(BigInteger(-value))));
      EXPECT_EQ(printed(object), value.str());
      if (value > 0) {
        EXPECT_TRUE(is_equal(read_integer("000" + value.str()), object));
      }
    }
  }
  std::mt19937_64 random(1);
  for (unsigned round = 0; round < 300; ++round) {
    BigInteger a = 1;
    BigInteger b = 1;
    for (unsigned n = 0; n < round; ++n) a = (a << 64) + random();
    for (auto n = random() % (round + 1); n > 0; --n) b = (b << 64) + random() / (round % 9 + 1);
    if (round % 2 != 0) a = a / b * b - round % 3;
    if (round % 4 < 2) a = -a;
    if (round % 8 < 4) b = -b;
    const BigInteger long_a = a << (1000 * round);
    EXPECT_TRUE(multiply(long_a - 1, b - long_a) == (long_a - 1) * (b - long_a)) << round;
    const Division division = divide(a, b);
    EXPECT_EQ(division.quotient * b + division.remainder, a);
    EXPECT_LT(abs(division.remainder), abs(b));
    EXPECT_TRUE(division.remainder == 0 || (division.remainder < 0) == (b < 0));
  }
  const BigInteger half = BigInteger(1) << 200;  // an even double, and ties around it
  const BigInteger ulp = BigInteger(1) << 148;
  EXPECT_EQ(nearest_double(half + ulp / 2), 0x1p200);
  EXPECT_EQ(nearest_double(half + ulp / 2 + 1), 0x1p200 + 0x1p148);
  EXPECT_EQ(nearest_double(-(half - 1)), -0x1p200);
  EXPECT_EQ(nearest_double(BigInteger(1) << 1024), HUGE_VAL);
  interrupt_requested = 1;
  EXPECT_THROW(printed(make_integer(half << 20000)), Interrupted);
  interrupt_requested = 0;
}

TEST_F(Values, ANameIsOneObjectAndKeepsItsValueAlive) {
  std::vector<Object> names;
  for (int i = 0; i < 5000; ++i) names.push_back(make_name(std::to_string(i) + "n"));
  assign(names[7], list({make_string("value")}));
  heap().set_gc_stress(true);
  heap().collect();
  for (int i = 0; i < 5000; ++i)
    ASSERT_EQ(make_name(std::to_string(i) + "n"), names[static_cast<std::size_t>(i)]);
  EXPECT_EQ(printed(value_of(names[7])), "[\"value\"]");
  EXPECT_EQ(value_of(names[8]), 0U);
  EXPECT_THROW(assign(make_boolean(0), names[7]), HostError);
  EXPECT_EQ(make_boolean(-1), make_name("FAIL"));
}

TEST_F(Values, TextsOfEveryLengthEndInTheirLastWord) {
  for (std::size_t length = 0; length < 40; ++length) {
    const std::string content(length, 'x');
    const Object object = make_string(content);
    EXPECT_EQ(text(object), content);
    EXPECT_EQ(host_length(object), 3 + length / 4 + 1);
  }
  EXPECT_THROW(make_string(std::string(HOST_MAX_TEXT + 1, 'x')), HostError);
}

TEST_F(Values, PrintedFormReadsBack) {
  const Object a = make_name("a");
  const Object range = make_range(integer(-3), integer(-1));
  const Object index[] = {integer(3), make_string("x")};
  const std::pair<std::string_view, Object> record[] = {{"x", integer(1)}, {"div", a}};
  const std::pair<Object, std::string> cases[] = {
      {make_string("a\n\t\r\\\"\x01\x7f\xe9`"), "\"a\\n\\t\\r\\\\\\\"\\x01\\x7f\\xe9`\""},
      {make_name("_a1"), "_a1"},
      {make_name("1a"), "`1a`"},
      {make_name(""), "``"},
      {make_name("_"), "`_`"},
      {make_name("mod"), "`mod`"},
      {make_name("a `b`\n\""), "`a \\`b\\`\\n\"`"},
      {make_float(1), "1.0"},
      {make_float(-0.0), "-0.0"},
      {make_float(0.1), "0.1"},
      {make_float(1e22), "1e22"},
      {make_float(5e-324), "5e-324"},
      {make_float(-INFINITY), "-inf"},
      {make_float(-NAN), "nan"},
      {range, "-3..-1"},
      {make_range(range, a), "(-3..-1)..a"},
      {make_equation(a, range), "a = -3..-1"},
      {make_equation(make_equation(a, a), sequence({a, a})), "(a = a) = (a, a)"},
      {make_range(make_equation(a, a), sequence({})), "(a = a)..()"},
      {list({make_equation(a, a), sequence({a}), list({})}), "[a = a, (a, ()), []]"},
      {sequence({}), ""},
      {sequence({a}), "a, ()"},
      {sequence({a, sequence({a, a})}), "a, (a, a)"},
      {make_set(std::vector<Object>{a, a, integer(2)}), "{a, 2}"},
      {make_indexed_name(a, index), "a[3, \"x\"]"},
      {make_indexed_name(make_indexed_name(a, {}), {index, 1}), "a[][3]"},
      {make_array({}), "array([])"},
      {make_array(index), "array([3, \"x\"])"},
      {make_byte_array(std::vector<std::uint8_t>{255, 65}), "bytes(255, 65)"},
      {make_record(record), "record(x = 1, `div` = a)"},
  };
  for (const auto& [value, expected] : cases) EXPECT_EQ(printed(value), expected);
}

TEST_F(Values, DeepNestingIsPrintedAndCompared) {
  constexpr std::size_t kDepth = 1'000'000;
  Object first = list({});
  Object second = list({});
  for (std::size_t i = 0; i < kDepth; ++i) {
    first = list({first});
    second = list({second});
  }
  EXPECT_EQ(printed(first), std::string(kDepth + 1, '[') + std::string(kDepth + 1, ']'));
  EXPECT_TRUE(is_equal(first, second));
  EXPECT_FALSE(is_equal(first, list({second})));
}

// Both sides share their parts: 2^100 paths, 100 different pairs.
TEST_F(Values, SharedPartsAreComparedOnce) {
  Object first = integer(1);
  Object second = integer(1);
  for (int i = 0; i < 100; ++i) {
    first = list({first, first});
    second = list({second, second});
  }
  EXPECT_TRUE(is_equal(first, second));
}

TEST_F(Values, EqualityIsStructural) {
  const Object a = make_name("a");
  const std::vector<std::pair<Object, Object>> equal = {
      {make_string("abcde"), make_string("abcde")},
      {list({integer(1), make_string("x")}), list({integer(1), make_string("x")})},
      {make_float(0.0), make_float(-0.0)},
      {make_range(integer(1), a), make_range(integer(1), a)},
      {make_array(std::vector<Object>{a}), make_array(std::vector<Object>{a})}};
  const std::vector<std::pair<Object, Object>> different = {
      {make_string("a"), a},
      {make_string("abcd"), make_string("abce")},
      {list({a}), list({a, a})},
      {list({a}), sequence({a})},
      {integer(1), make_float(1)},
      {make_array(std::vector<Object>{}), make_byte_array({})},
      {make_range(a, a), make_equation(a, a)}};
  for (const auto& [x, y] : equal) {
    EXPECT_TRUE(is_equal(x, y)) << printed(x);
    const Object both[] = {x, y};
    EXPECT_EQ(elements(make_set(both)).size(), 1U) << printed(x);
  }
  for (const auto& [x, y] : different) EXPECT_FALSE(is_equal(x, y)) << printed(x);
}

TEST_F(Values, SetsOfManyElementsAreLinear) {
  std::vector<Object> many;
  for (int i = 0; i < 300'000; ++i) many.push_back(list({integer(i % 100'000), make_string("x")}));
  EXPECT_EQ(elements(make_set(many)).size(), 100'000U);
}

TEST_F(Values, MessagesAreFilledIn) {
  const Object text = make_string("a\"b");
  EXPECT_EQ((HostError{"100% of %1 %%", {}}.message()), "100% of %1 %%");
  EXPECT_EQ((HostError{"`%1' %2 %3 %4 100%% %", {text, list({text})}}.message()),
            "`a\"b' [\"a\\\"b\"] %3 %4 100% %");
  for (auto [value, ordinal] : {std::pair{1, "1st"},
                                {2, "2nd"},
                                {3, "3rd"},
                                {4, "4th"},
                                {10, "10th"},
                                {11, "11th"},
                                {12, "12th"},
                                {13, "13th"},
                                {21, "21st"},
                                {112, "112th"}}) {
    EXPECT_EQ((HostError{"%-2", {text, integer(value)}}.message()), ordinal);
  }
}

}  // namespace
}  // namespace vexil
