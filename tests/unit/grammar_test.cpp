// The properties of inferred grammars.
#include "vstring/words/grammar.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

#include "tests/reference/words.h"

namespace vstring {
namespace {

std::string expansion(const Grammar& grammar, std::size_t rule = 0) {
  std::string text;
  for (GrammarSymbol symbol : grammar[rule]) {
    if (symbol % 2 == 1) {
      text += static_cast<char>(symbol / 2);
    } else {
      text += expansion(grammar, symbol / 2);
    }
  }
  return text;
}

void check_grammar(const std::string& text) {
  Grammar grammar = infer_grammar(text);
  std::vector<int> uses(grammar.size());
  std::map<std::pair<GrammarSymbol, GrammarSymbol>, int> pairs;
  for (const auto& right_side : grammar) {
    for (std::size_t i = 0; i < right_side.size(); ++i) {
      if (right_side[i] % 2 == 0) ++uses[right_side[i] / 2];
      if (i == 0) continue;
      // In a row of equal symbols every other pair counts.
      std::size_t run = 1;
      while (run <= i && right_side[i - run] == right_side[i]) ++run;
      if (run < 2 || run % 2 == 0) ++pairs[{right_side[i - 1], right_side[i]}];
    }
  }
  for (std::size_t k = 1; k < grammar.size(); ++k) {
    ASSERT_GE(uses[k], 2) << text;
    ASSERT_GE(grammar[k].size(), 2U) << text;
  }
  for (const auto& [pair, count] : pairs) ASSERT_EQ(count, 1) << text << ' ' << pair.first;
  ASSERT_TRUE(expansion(grammar) == text) << text;
}

TEST(Grammar, HasNoPairTwiceAndNoRuleOnce) {
  for (const std::string& word : reference::all_words(2, 14)) check_grammar(word);
  for (const std::string& word : reference::all_words(3, 9)) check_grammar(word);
  std::mt19937 random(5);
  for (int round = 0; round < 4000; ++round) {
    std::string text;
    while (text.size() < 150) {
      std::string piece = reference::random_word(random, 1 + random() % 4, 1 + random() % 9);
      for (unsigned long times = random() % 4; times > 0; --times) text += piece;
      if (random() % 2 == 0) text += text.substr(random() % (text.size() + 1));
    }
    check_grammar(text);
  }
  check_grammar(std::string(3000, 'a'));
}

TEST(Grammar, OfDeeplyNestedTextNeedsNoStack) {
  // Each pass reads one letter more of the same, so that the last letter closes a chain of rules.
  std::string letters, text;
  for (int i = 0; i < 120; ++i) letters += static_cast<char>(1 + i);
  for (std::size_t length = 2; length <= letters.size(); ++length) {
    text += letters.substr(letters.size() - length) + static_cast<char>(130 + length % 100);
  }
  check_grammar(text);
}

}  // namespace
}  // namespace vstring
