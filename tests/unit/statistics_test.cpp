// Histogram, Kasiski divisor and edits against plain loops.
#include "vstring/commands/statistics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <string>

#include "vstring/commands/editing.h"
#include "vstring/core/histogram.h"

namespace vstring {
namespace {

std::string random_text(std::mt19937& random, std::size_t length, unsigned first, unsigned range) {
  std::string text(length, ' ');
  for (char& c : text) c = static_cast<char>(first + random() % range);
  return text;
}

template <class Write>
std::string written(std::size_t size, Write write) {
  std::string out(size, '?');
  write(out.data());
  return out;
}

TEST(Histogram, CountsEveryByteOfTextsOfAllLengths) {
  std::mt19937 random(1);
  for (std::size_t length : {0, 1, 7, 1023, 1024, 1025, 1031, 5000}) {
    std::string text = random_text(random, length, 1, 255);
    Histogram expected{};
    for (char c : text) ++expected[byte_of(c)];
    EXPECT_EQ(make_histogram(text), expected) << length;
  }
}

int plain_kasiski(const std::string& s) {
  int divisor = 0;
  for (std::size_t i = 0; i < s.size() / 2; ++i) {
    for (std::size_t j = i + 1; j < s.size(); ++j) {
      std::size_t run = 0;
      while (j + run < s.size() && s[i + run] == s[j + run]) ++run;
      if (run >= 3) divisor = std::gcd(divisor, static_cast<int>(j - i));
      if (divisor == 1) return 1;
    }
  }
  return divisor;
}

TEST(Kasiski, IsThatOfAllPairsOfRuns) {
  std::mt19937 random(2);
  for (int round = 0; round < 20000; ++round) {
    std::string text = random_text(random, random() % 24, 'a', 1 + random() % 4);
    if (round % 3 == 0) text += text;
    ASSERT_EQ(kasiski_divisor(text), plain_kasiski(text)) << text;
  }
}

}  // namespace
}  // namespace vstring
