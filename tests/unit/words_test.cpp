// Combinatorics of words against their definitions, over all short words of three letters and
// random longer ones.
#include "tests/reference/words.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <random>
#include <string>
#include <vector>

#include "vstring/core/least_rotation.h"
#include "vstring/search/palindromes.h"
#include "vstring/words/borders.h"
#include "vstring/words/factorisation.h"
#include "vstring/words/repetitions.h"
#include "vstring/words/shape.h"

namespace vstring {
namespace {

std::string rotated(const std::string& word, std::size_t start) {
  return word.substr(start) + word.substr(0, start);
}

std::string least_rotated(const std::string& word) {
  std::string least = word;
  for (std::size_t i = 0; i < word.size(); ++i) least = std::min(least, rotated(word, i));
  return least;
}

std::size_t plain_border(const std::string& word) {
  std::size_t length = word.size() - 1;
  while (!word.ends_with(word.substr(0, length))) --length;
  return length;
}

std::size_t plain_root(const std::string& word) {
  std::size_t shift = 1;
  while (rotated(word, shift % word.size()) != word) ++shift;
  return shift;
}

bool is_mirrored(Text word) { return std::equal(word.begin(), word.end(), word.rbegin()); }

Text plain_longest_palindrome(Text word) {
  for (std::size_t length = word.size(); length > 0; --length) {
    for (std::size_t start = 0; start + length <= word.size(); ++start) {
      if (is_mirrored(word.substr(start, length))) return word.substr(start, length);
    }
  }
  return word;
}

std::vector<std::size_t> plain_repeats(const std::string& word) {
  std::vector<std::size_t> all;
  for (std::size_t d = word.size(); d >= 2; --d) {
    for (std::size_t j = 0, length = 0; j + d <= word.size(); ++j) {
      if (j + d < word.size() && word[j] == word[j + d]) {
        ++length;
      } else if (length > 0) {
        all.insert(all.end(), {j - length, j - length + d, length});
        length = 0;
      }
    }
  }
  return all;
}

void check_rotations_and_periods(const std::string& word) {
  ASSERT_EQ(rotated(word, least_rotation(word)), least_rotated(word)) << word;
  ASSERT_EQ(root_length(word), plain_root(word)) << word;
  ASSERT_EQ(BorderTable(word)[word.size()], static_cast<int>(plain_border(word))) << word;
  ASSERT_EQ(is_palindrome(word), is_mirrored(word)) << word;
  Text palindrome = longest_palindrome(word), expected = plain_longest_palindrome(word);
  ASSERT_EQ(palindrome.data(), expected.data()) << word;
  ASSERT_EQ(palindrome.size(), expected.size()) << word;
}

void check_repeats(const std::string& word) {
  std::vector<std::size_t> found;
  visit_repeats(word, [&](const Repeat& r) {
    found.insert(found.end(), {r.first, r.second, r.length});
  });
  ASSERT_EQ(found, plain_repeats(word)) << word;
  ASSERT_EQ(count_repeats(word, found.size()), found.size() / 3) << word;
}

// The factors are Lyndon words that do not rise: there is only one such way to cut a word.
void check_lyndon_factors(const std::string& word) {
  std::size_t start = 0;
  std::string before;
  for (std::uint32_t end : lyndon_factors(word)) {
    std::string factor = word.substr(start, end - start);
    ASSERT_EQ(least_rotated(factor), factor) << word;
    ASSERT_EQ(plain_root(factor), factor.size()) << word;
    ASSERT_TRUE(start == 0 || factor <= before) << word;
    before = factor;
    start = end;
  }
  ASSERT_EQ(start, word.size());
}

TEST(Words, KeepTheirDefinitionsOverAllShortWords) {
  for (const std::string& word : reference::all_words(3, 8)) {
    if (word.empty()) continue;
    check_rotations_and_periods(word);
    check_lyndon_factors(word);
    check_repeats(word);
  }
}

TEST(Words, KeepTheirDefinitionsOverLongWords) {
  std::mt19937 random(7);
  for (int round = 0; round < 300; ++round) {
    std::string word(1 + random() % 90, 'a');
    for (char& c : word) c = static_cast<char>(random() % 8 == 0 ? 'b' : 'a');
    std::size_t times = 1 + random() % 8;
    std::string power;
    for (std::size_t i = 0; i < times; ++i) power += word;
    if (round % 3 == 0) power += std::string(power.rbegin(), power.rend());
    if (round % 5 == 0) power[random() % power.size()] = '\xff';
    check_rotations_and_periods(power);
    check_repeats(power);
  }
  check_repeats(std::string(4096 + 64, 'a'));
}

TEST(Words, FirstFallAndRiseAreFoundAtEveryPlace) {
  for (std::size_t length = 2; length < 140; length += 3) {
    for (std::size_t place = 1; place < length; ++place) {
      std::string word(place, '\x7f');
      word.resize(length, '\x80');
      EXPECT_EQ(first_rise(word), place);
      EXPECT_EQ(first_fall(word), length);
      std::reverse(word.begin(), word.end());
      EXPECT_EQ(first_fall(word), length - place);
      EXPECT_EQ(first_rise(word), length);
    }
  }
}

TEST(Words, ThueMorseLettersCountOnes) {
  std::string word(1000, ' ');
  write_thue_morse(word.size(), 'a', 'b', word.data());
  for (std::size_t i = 0; i < word.size(); ++i) {
    ASSERT_EQ(word[i], std::popcount(i) % 2 == 0 ? 'a' : 'b') << i;
  }
}

}  // namespace
}  // namespace vstring
