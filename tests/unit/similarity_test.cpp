// Bit-parallel distances, subsequences and the suffix automaton against plain tables.
#include "tests/reference/similarity.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/reference/words.h"
#include "vstring/core/common_ends.h"
#include "vstring/similarity/byte_sums.h"
#include "vstring/similarity/common_substring.h"
#include "vstring/similarity/edit_distance.h"

namespace vstring {
namespace {

std::mt19937 random_source(4);

std::string random_word(std::size_t length, int letters) {
  return reference::random_word(random_source, static_cast<std::size_t>(letters), length);
}

std::string edited(std::string word, std::size_t edits) {
  for (; edits > 0 && !word.empty(); --edits) {
    std::size_t place = random_source() % word.size();
    switch (random_source() % 3) {
      case 0:
        word.erase(place, 1);
        break;
      case 1:
        word.insert(place, 1, 'x');
        break;
      default:
        word[place] = 'y';
    }
  }
  return word;
}

TEST(EditDistance, IsThatOfTheTable) {
  for (int round = 0; round < 4000; ++round) {
    std::string s = random_word(random_source() % 90, 1 + round % 5);
    std::string t = round % 2 == 0 ? random_word(random_source() % 200, 3) : edited(s, 5);
    ASSERT_EQ(edit_distance(s, t), reference::edit_distance(s, t)) << s << ' ' << t;
  }
}

TEST(EditDistance, IsThatOfTheTableForLongTextsNearAndFar) {
  for (std::size_t edits : {0, 3, 90, 140, 200, 300, 500, 900}) {
    for (std::size_t length : {256, 700, 1300, 2048}) {
      std::string s = random_word(length, 4);
      std::string t = edited(s, edits) + random_word(random_source() % 300, 4);
      ASSERT_EQ(edit_distance(s, t), reference::edit_distance(s, t)) << length << ' ' << edits;
      ASSERT_EQ(edit_distance(t, s), edit_distance(s, t));
    }
  }
}

TEST(Subsequence, IsThatOfTheTable) {
  for (int round = 0; round < 1500; ++round) {
    std::size_t limit = round % 50 == 0 ? 1200 : 150;
    std::string s = random_word(random_source() % limit, 1 + round % 4);
    std::string t = round % 3 != 0 ? random_word(random_source() % limit, 3) : edited(s, 9);
    std::string expected = reference::common_subsequence(s, t);
    ASSERT_EQ(longest_common_subsequence(s, t), expected) << s << ' ' << t;
    ASSERT_EQ(common_subsequence_length(s, t), expected.size());
    ASSERT_EQ(is_subsequence(s, t), expected == s);
  }
}

TEST(Subsequence, ThresholdMethodIsThePlainOneToItsLines) {
  auto key = [](const ThresholdBug& b) { return std::array{b.below, b.entry, b.position, b.hi}; };
  for (int round = 0; round < 200000; ++round) {
    std::string s = random_word(random_source() % 9, 1 + round % 4);
    std::string t = random_word(random_source() % 14, 1 + round % 5);
    std::vector<ThresholdBug> expected, found;
    std::size_t length = reference::threshold_length(s, t, expected);
    ASSERT_EQ(threshold_length(s, t, [&](const ThresholdBug& b) { found.push_back(b); }), length)
        << s << ' ' << t;
    ASSERT_TRUE(std::ranges::equal(found, expected, {}, key, key)) << s << ' ' << t;
  }
}

TEST(Substring, IsTheLeftmostOfTheTable) {
  for (int round = 0; round < 20000; ++round) {
    std::string s = random_word(random_source() % 20, 1 + round % 4);
    std::string t = random_word(random_source() % 20, 1 + round % 4);
    Text found = longest_common_substring(s, t);
    Text expected = reference::common_substring(s, t);
    ASSERT_EQ(found, expected) << s << ' ' << t;
    ASSERT_TRUE(found.empty() || found.data() == expected.data()) << s << ' ' << t;
  }
}

// A byte followed by some 180 others is a state of the automaton with as many edges.
TEST(Substring, IsTheLeftmostWhereEveryLetterFollowsOne) {
  auto with_hubs = [](std::string word) {
    for (std::size_t i = 0; i < word.size(); i += 2) word[i] = 'a';
    return word;
  };
  std::string s = with_hubs(random_word(900, 200)), t = with_hubs(random_word(800, 200));
  EXPECT_EQ(longest_common_substring(s, t).data(), reference::common_substring(s, t).data());
  EXPECT_EQ(longest_common_substring(t, s), reference::common_substring(t, s));
}

TEST(ByteSums, AreThoseOfPlainLoops) {
  for (std::size_t length = 0; length < 200; ++length) {
    std::string s(length, ' '), t(length, ' ');
    for (char& c : s) c = static_cast<char>(random_source());
    for (char& c : t)
      c = random_source() % 2 ? s[std::size_t(&c - t.data())] : char(random_source());
    std::size_t differing = 3, prefix = 0, suffix = 0;
    std::uint64_t weight = 0, distance = 0;
    for (std::size_t i = 0; i < length; ++i) {
      int d = byte_of(static_cast<char>(s[i] - t[i]));
      differing += s[i] != t[i];
      weight += static_cast<unsigned>(std::min<int>(byte_of(s[i]), 256 - byte_of(s[i])));
      distance += static_cast<unsigned>(std::min(d, 256 - d));
    }
    while (prefix < length && s[prefix] == t[prefix]) ++prefix;
    while (suffix < length && s[length - 1 - suffix] == t[length - 1 - suffix]) ++suffix;
    EXPECT_EQ(hamming_distance(s, t + "abc"), differing);
    EXPECT_EQ(lee_weight(s), weight);
    EXPECT_EQ(lee_distance(s, t), distance);
    EXPECT_EQ(common_prefix(s, t), prefix);
    EXPECT_EQ(common_suffix(s, t), suffix);
  }
}

}  // namespace
}  // namespace vstring
