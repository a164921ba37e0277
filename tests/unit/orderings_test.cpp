// Orderings against their definitions; sorting beside the standard library's.
#include "vstring/words/orderings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "tests/reference/words.h"
#include "vstring/sort.h"
#include "vstring/words/sorting.h"

namespace vstring {
namespace {

using reference::all_words;

// The letters of the highest level first, then the stretches between them from the left.
int wreath_by_levels(const std::string& s, const std::string& t, const Weights& weights) {
  std::int32_t top = -1;
  for (char c : s + t) top = std::max(top, weights[byte_of(c)]);
  if (top < 0) return 0;
  auto split = [&](const std::string& word) {
    std::vector<std::string> stretches(1);
    std::string letters;
    for (char c : word) {
      if (weights[byte_of(c)] == top) {
        letters += c;
        stretches.emplace_back();
      } else {
        stretches.back() += c;
      }
    }
    return std::pair(letters, stretches);
  };
  auto [s_letters, s_stretches] = split(s);
  auto [t_letters, t_stretches] = split(t);
  if (s_letters.size() != t_letters.size()) return s_letters.size() < t_letters.size() ? -1 : 1;
  if (int order = compare_lex(s_letters, t_letters); order != 0) return order;
  for (std::size_t i = 0; i < s_stretches.size(); ++i) {
    int order = wreath_by_levels(s_stretches[i], t_stretches[i], weights);
    if (order != 0) return order;
  }
  return 0;
}

TEST(Orderings, WreathProductIsThatOfItsLevels) {
  const std::vector<std::string> words = all_words(3, 4);
  for (int levels = 0; levels < 27; ++levels) {
    Weights weights = {};
    weights['a'] = levels % 3;
    weights['b'] = levels / 3 % 3;
    weights['c'] = levels / 9;
    for (const std::string& s : words) {
      for (const std::string& t : words) {
        ASSERT_EQ(compare_wreath(s, t, weights), wreath_by_levels(s, t, weights)) << s << ' ' << t;
      }
    }
  }
}

TEST(Orderings, PathOrderingIsAWreathProductOfGrowingLevels) {
  Weights weights = {};
  weights['a'] = 1;
  weights['b'] = 5;
  weights['c'] = 6;
  const std::vector<std::string> words = all_words(3, 5);
  for (const std::string& s : words) {
    for (const std::string& t : words) {
      ASSERT_EQ(compare_lrpo(s, t), compare_wreath(s, t, weights)) << s << ' ' << t;
      std::string s_back(s.rbegin(), s.rend()), t_back(t.rbegin(), t.rend());
      ASSERT_EQ(compare_rrpo(s_back, t_back), compare_lrpo(s, t)) << s << ' ' << t;
    }
  }
}

TEST(Sorting, IsThatOfTheStandardLibrary) {
  std::mt19937 random(6);
  for (std::size_t length : {0, 1, 5, 127, 128, 300, 5000}) {
    std::string text(length, ' ');
    for (char& c : text) c = static_cast<char>(random());
    std::string expected = text;
    std::erase(expected, '\0');
    std::ranges::sort(expected, {}, byte_of);
    std::string sorted = text;
    SortString(sorted.data(), sorted.c_str(), static_cast<int>(length));
    EXPECT_EQ(sorted, expected + std::string(length - expected.size(), '\0'));
    expected.erase(std::unique(expected.begin(), expected.end()), expected.end());
    EXPECT_EQ(distinct_bytes(text), expected);
  }
}

}  // namespace
}  // namespace vstring
