// Searches with differences, with mismatches and with wildcards against their plain rules.
#include "vstring/search/approximate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "tests/reference/wildcard.h"
#include "vstring/search/mismatch.h"
#include "vstring/search/wildcard.h"

namespace vstring {
namespace {

std::string random_text(std::mt19937& random, std::size_t length, const std::string& letters) {
  std::string text(length, ' ');
  for (char& c : text) c = letters[random() % letters.size()];
  return text;
}

// The whole table of distances, a column at a time.
std::vector<std::size_t> plain_ends(const std::string& pattern, const std::string& text,
                                    std::size_t k) {
  std::vector<std::size_t> column(pattern.size() + 1);
  for (std::size_t i = 0; i < column.size(); ++i) column[i] = i;
  std::vector<std::size_t> ends;
  for (std::size_t j = 0; j < text.size(); ++j) {
    std::size_t diagonal = 0;
    for (std::size_t i = 1; i < column.size(); ++i) {
      std::size_t left = column[i];
      bool is_equal = pattern[i - 1] == text[j];
      column[i] = is_equal ? diagonal : 1 + std::min({diagonal, left, column[i - 1]});
      diagonal = left;
    }
    if (column.back() <= k) ends.push_back(j + 1);
  }
  return ends;
}

TEST(Approximate, EndsAreThoseOfTheWholeTable) {
  std::mt19937 random(1);
  for (int round = 0; round < 4000; ++round) {
    std::size_t length = round % 2 != 0 ? random() % 20 : random() % 300;
    std::string pattern = random_text(random, length, "abc");
    std::string text = random_text(random, random() % 150, "abc");
    for (int copies = static_cast<int>(random() % 3); copies > 0; --copies) {
      std::string edited = pattern;
      for (std::size_t i = random() % 7; i < edited.size(); i += 1 + random() % 90) edited[i] = 'c';
      text += edited.substr(random() % 3 % (edited.size() + 1));
    }
    std::size_t k = random() % (pattern.size() + 1);
    if (round % 3 != 0) k = std::min<std::size_t>(k, random() % 8);
    std::vector<std::size_t> ends;
    approximate_ends(pattern, text, k, [&](std::size_t end) {
      ends.push_back(end);
      return true;
    });
    ASSERT_EQ(ends, plain_ends(pattern, text, k)) << pattern << " " << text << " " << k;
  }
}

// The words of states, which begin at 0: bit i of word d is set when the pattern's first i + 1
// bytes end here with at most d differences.
std::vector<std::size_t> plain_prefixed_ends(const std::string& pattern, const std::string& text,
                                             std::size_t k) {
  std::vector<std::uint32_t> states(k + 1);
  std::vector<std::size_t> ends;
  for (std::size_t j = 0; j < text.size(); ++j) {
    std::uint32_t matches = 0;
    for (std::size_t i = 0; i < pattern.size(); ++i)
      matches |= (pattern[i] == text[j] ? 1U : 0) << i;
    std::vector<std::uint32_t> old = states;
    for (std::size_t d = 0; d <= k; ++d) {
      states[d] = (old[d] << 1 | 1) & matches;
      if (d > 0) states[d] |= old[d - 1] | (old[d - 1] << 1 | 1) | states[d - 1] << 1;
    }
    if ((states[k] >> (pattern.size() - 1) & 1) != 0) ends.push_back(j + 1);
  }
  return ends;
}

TEST(Approximate, EndsOfShortPatternsAreThoseOfTheWordsOfStates) {
  std::mt19937 random(4);
  for (int round = 0; round < 20000; ++round) {
    std::string pattern = random_text(random, 1 + random() % (round % 4 != 0 ? 6 : 32), "abc");
    std::string text = random_text(random, random() % 40, "abc");
    std::size_t k = random() % (pattern.size() + 1);
    std::vector<std::size_t> ends;
    prefixed_ends(pattern, text, k, [&](std::size_t end) {
      ends.push_back(end);
      return true;
    });
    ASSERT_EQ(ends, plain_prefixed_ends(pattern, text, k)) << pattern << " " << text << " " << k;
  }
}

TEST(Mismatch, BlocksOfOffsetsAreCountedLikeSingleOnes) {
  std::mt19937 random(2);
  for (int round = 0; round < 3000; ++round) {
    std::string pattern = random_text(random, random() % (round % 9 == 0 ? 600 : 12), "ab");
    std::string text = random_text(random, random() % 900, "ab");
    std::size_t k = random() % (pattern.size() + 1);
    std::vector<std::pair<std::size_t, std::size_t>> expected;
    for (std::size_t i = 0; i + pattern.size() <= text.size(); ++i) {
      std::size_t count = 0;
      for (std::size_t j = 0; j < pattern.size(); ++j) count += text[i + j] != pattern[j] ? 1 : 0;
      if (count <= k) expected.emplace_back(i, count);
    }
    std::vector<std::pair<std::size_t, std::size_t>> found;
    for_each_mismatching(pattern, text, k, [&](std::size_t offset, std::size_t count) {
      found.emplace_back(offset, count);
      return true;
    });
    ASSERT_EQ(found, expected);
  }
}

TEST(Wildcard, MatchesAsThePlainRecursionDoes) {
  std::mt19937 random(3);
  for (int round = 0; round < 200000; ++round) {
    std::string pattern = random_text(random, random() % 9, "aaaabbc***?[]^-\\\xe9");
    std::string text = random_text(random, random() % 10, "aaabbc-\xe9");
    ASSERT_EQ(matches_wildcard(pattern, text),
              reference::matches_wildcard(pattern.c_str(), text.c_str()))
        << pattern << " " << text;
  }
  std::string stars;
  for (int i = 0; i < 3000; ++i) stars += "*a";
  EXPECT_FALSE(matches_wildcard(stars + "b", std::string(20000, 'a')));
  // Quadratic, were the bytes behind the star tried everywhere.
  std::string many(2000000, 'a');
  std::string half(1000000, 'a');
  half.front() = '*';
  EXPECT_TRUE(matches_wildcard(half, many));
  half.back() = 'b';
  EXPECT_FALSE(matches_wildcard(half.append("?*"), many));
}

}  // namespace
}  // namespace vstring
