// Letter statistics and expanded characters against plain loops.
#include "vstring/commands/statistics.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/reference/statistics.h"
#include "vstring/commands/characters.h"

namespace vstring {
namespace {

std::string random_text(std::mt19937& random, std::size_t length, unsigned first, unsigned range) {
  std::string text(length, ' ');
  for (char& c : text) c = static_cast<char>(first + random() % range);
  return text;
}

void expect_plain_results(const std::string& text) {
  SCOPED_TRACE(text.size());
  EXPECT_EQ(make_histogram(text), reference::histogram(text));
  EXPECT_EQ(num_distinct(text), reference::num_distinct(text));
  EXPECT_EQ(entropy(text), reference::entropy(text));
  EXPECT_EQ(serial_correlation(text), reference::serial_correlation(text));
}

TEST(Statistics, AreThoseOfPlainLoops) {
  std::mt19937 random(1);
  for (std::size_t length = 0; length < 200; ++length) {
    expect_plain_results(random_text(random, length, 1, 255));
    expect_plain_results(random_text(random, length, 'a', 2));
  }
  for (std::size_t length : {511, 512, 513, 2047, 2048, 2055, 5000, 100001}) {
    expect_plain_results(random_text(random, length, 1, 255));
    expect_plain_results(random_text(random, length, 255, 1));
  }
}

// The lanes of a vector hold the products of some 528,000 of the greatest bytes.
TEST(Statistics, SumsOfGreatBytesDoNotOverflow) {
  std::string text(3000000, '\xff');
  expect_plain_results(text);
  text += '\xfe';
  expect_plain_results(text);
}

// The values of a long text that come late are found by a scan.
TEST(Statistics, DistinctBytesMayComeLate) {
  std::string text(2000, 'a');
  for (unsigned c = 1; c < 256; ++c) {
    text.append(c % 50, 'a');
    text += static_cast<char>(c);
    ASSERT_EQ(num_distinct(text), reference::num_distinct(text)) << c;
  }
}

TEST(Kasiski, IsThatOfAllPairsOfRuns) {
  std::mt19937 random(2);
  for (int round = 0; round < 20000; ++round) {
    std::string text = random_text(random, random() % 24, 'a', 1 + random() % 4);
    if (round % 3 == 0) text += text;
    ASSERT_EQ(kasiski_divisor(text), reference::kasiski_divisor(text)) << text;
  }
}

// Runs of bytes of all values share slots; most of these texts have few repetitions or none.
TEST(Kasiski, TellsRunsOfOneSlotApart) {
  std::mt19937 random(3);
  for (int round = 0; round < 300; ++round) {
    std::string text = random_text(random, 1 + random() % 700, 1, 255);
    if (round % 2 == 0) text += text.substr(0, random() % text.size());
    ASSERT_EQ(kasiski_divisor(text), reference::kasiski_divisor(text)) << round;
  }
}

TEST(Characters, InvisibleOnesAreWrittenAsTheRuleReads) {
  std::mt19937 random(4);
  for (std::size_t length = 0; length < 100; ++length) {
    std::string text = random_text(random, length, 1, length % 2 == 0 ? 255 : 120);
    std::string result(visible_size(text), '?');
    write_visible(text, result.data());
    ASSERT_EQ(result, reference::visible(text));
  }
}

}  // namespace
}  // namespace vstring
