// Dictionaries of random words, and the order of the built-in table.
#include "vstring/language/dictionary.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "tests/reference/words.h"

namespace vstring {
namespace {

TEST(Dictionary, HoldsTheWordsItWasMadeOf) {
  std::mt19937 random(3);
  for (int round = 0; round < 200; ++round) {
    std::set<std::string> expected;
    std::vector<std::string> words;
    for (int i = 0; i < 50; ++i) {
      std::string start(reference::random_below(random, 2) * 7, '\xff');
      words.push_back(start +
                      reference::random_word(random, 2, reference::random_below(random, 5)));
      if (!words.back().empty()) expected.insert(words.back());
    }
    Dictionary dictionary(std::vector<Text>(words.begin(), words.end()));
    ASSERT_EQ(dictionary.size(), expected.size());
    std::size_t i = 0;
    for (const std::string& word : expected) {
      ASSERT_EQ(dictionary.word(i++), word);
      ASSERT_TRUE(dictionary.contains(word));
      ASSERT_EQ(dictionary.contains(word + "a"), expected.contains(word + "a"));
    }
  }
}

TEST(Dictionary, BuiltInWordsAscend) {
  const WordTable& table = built_in_words();
  for (std::size_t i = 1; i < table.size(); ++i) {
    ASSERT_LT(table.word(i - 1), table.word(i));
    ASSERT_TRUE(table.contains(table.word(i)));
  }
}

}  // namespace
}  // namespace vstring
