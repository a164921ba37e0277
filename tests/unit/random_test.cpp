// Random numbers against the generator's rule, one value at a time.
#include "vstring/random.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "tests/reference/words.h"
#include "vstring/core/random.h"

namespace vstring {
namespace {

std::uint32_t carry_step(std::uint32_t multiplier, std::uint32_t x) {
  return multiplier * (x & 0xffff) + (x >> 16);
}

class SerialRule {
 public:
  explicit SerialRule(std::uint32_t seed) {
    std::uint32_t x[4];
    for (int k = 0; k < 4; ++k) {
      std::uint32_t nibble = seed >> (8 * k) & 15;
      x[k] = nibble == 0 ? 2U * static_cast<unsigned>(k) + 1 : nibble | 1;
      carry_ += x[k];
    }
    constexpr std::uint32_t kMultipliers[] = {18273, 23163, 24984, 28854};
    for (int entry = 0; entry < 127; ++entry) {
      for (int k = 0; k < 4; ++k) x[k] = carry_step(kMultipliers[k], x[k]);
      table_[entry] = ((x[0] << 16) + (x[1] & 0xffff) + (x[2] << 16) + (x[3] & 0xffff)) | 1;
    }
  }
  std::uint32_t draw() {
    --index_;
    std::uint32_t value = table_[(index_ + 99) & 127] * table_[(index_ + 33) & 127];
    table_[index_ & 127] = value;
    carry_ = carry_step(30903, carry_);
    return value + carry_;
  }
  std::string draw_bytes(std::size_t size) {
    std::string bytes;
    while (bytes.size() < size) {
      std::uint32_t value = draw();
      for (int k = 0; k < 4; ++k) {
        auto c = static_cast<char>(value >> (8 * k) & 255);
        if (c != '\0') bytes += c;
      }
    }
    return bytes.substr(0, size);
  }

 private:
  std::uint32_t table_[128] = {};
  std::uint32_t index_ = 0;
  std::uint32_t carry_ = 0;
};

TEST(Random, BlocksGiveTheValuesOfTheSerialRule) {
  std::mt19937 random(1);
  for (std::uint32_t seed : {1U, 0xffffffffU, 0x0f0e0d0cU, 0xf0U}) {
    restart_random(seed);
    SerialRule rule(seed);
    for (int i = 0; i < 300; ++i) {
      std::vector<std::uint32_t> values(reference::random_below(random, 200));
      draw_random(values);
      for (std::uint32_t value : values) ASSERT_EQ(value, rule.draw());
      std::string bytes(reference::random_below(random, 700), ' ');
      write_random_bytes(bytes.size(), bytes.data());
      ASSERT_EQ(bytes, rule.draw_bytes(bytes.size()));
      ASSERT_EQ(rand32(), rule.draw());
    }
  }
}

TEST(Random, MembersAndPermutationsTakeOneValueEach) {
  restart_random(5);
  SerialRule rule(5);
  std::string members(1000, ' ');
  write_random_members("abcbz", members.size(), members.data());
  for (char c : members) ASSERT_EQ(c, "abcbz"[rule.draw() % 5]);
  std::vector<std::uint32_t> order(500);
  write_permutation(order);
  std::vector<std::uint32_t> expected(order.size());
  for (std::uint32_t i = 0; i < expected.size(); ++i) expected[i] = i;
  for (std::uint32_t k = 0; k < expected.size(); ++k) {
    std::swap(expected[k], expected[k + rule.draw() % (expected.size() - k)]);
  }
  EXPECT_EQ(order, expected);
}

}  // namespace
}  // namespace vstring
