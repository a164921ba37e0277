// Stems by prefix states, words and sentences by block masks, against plain methods.
#include "tests/reference/language.h"

#include <gtest/gtest.h>

#include <random>

#include "vstring/language.h"
#include "vstring/language/porter.h"
#include "vstring/language/sentences.h"
#include "vstring/language/words.h"

namespace vstring {
namespace {

std::mt19937 random_source(8);

std::string random_text(const std::vector<std::string>& pieces, std::size_t count) {
  std::string text;
  while (count-- > 0) text += pieces[random_source() % pieces.size()];
  return text;
}

TEST(Porter, StemsLikeThePlainMethod) {
  const std::vector<std::string> letters = {"a", "e", "i", "o", "y", "b",
                                            "l", "s", "t", "z", "w", "1"};
  const std::vector<std::string> endings = {
      "ation", "ational", "iz",   "bl",   "at",   "ed",   "eed", "ing", "s",   "ies", "ness",
      "ful",   "ive",     "logi", "iti",  "al",   "ic",   "ent", "ion", "ll",  "e",   "y",
      "able",  "ement",   "ou",   "alli", "enci", "ator", "er",  "ism", "ant", "ous", "ize"};
  for (int round = 0; round < 300000; ++round) {
    std::string word = random_text(letters, random_source() % 6);
    word += random_text(endings, random_source() % 4);
    if (word.size() < 2) continue;
    char stem[kMaxPorterWord];
    std::size_t size = porter_stem(word, stem);
    ASSERT_EQ(Text(stem, size), reference::PorterWord(word).stem()) << word;
  }
}

TEST(Words, AreThoseOfThePlainScan) {
  for (std::size_t length = 0; length < 4500; length += 1 + length / 20) {
    for (unsigned spread : {2, 9}) {
      std::string text(length, 'a');
      for (char& c : text) {
        if (random_source() % spread == 0) c = static_cast<char>(1 + random_source() % 255);
        if (random_source() % spread == 0) c = '\n';
      }
      std::vector<Text> expected, found;
      WordCount count = reference::count_words(text, expected);
      for_each_word(text, [&](Text word) { found.push_back(word); });
      ASSERT_EQ(found, expected) << text;
      ASSERT_EQ(count_words(text).words, count.words);
      int lines = 5;
      ASSERT_EQ(CountWords(text.c_str(), &lines), static_cast<int>(count.words));
      ASSERT_EQ(lines, static_cast<int>(count.lines) + 5) << text;
    }
  }
  EXPECT_EQ(CountWords(nullptr, nullptr), -1);
}

TEST(Sentences, AreThoseOfThePlainScan) {
  for (int round = 0; round < 5000; ++round) {
    std::string text = random_text({"Mr", "etc", "U.S.A", "5 in", "J", "ab", "\xe9", " ", " ", "\n",
                                    ". ", ". ", ".", "?", "!\t", ":"},
                                   random_source() % (round % 50 == 0 ? 2000 : 60));
    std::vector<std::string> found;
    for_each_sentence(text, [&](Text sentence) { found.emplace_back(sentence); });
    ASSERT_EQ(found, reference::sentences(text)) << text;
    ASSERT_EQ(count_sentences(text), found.size());
  }
}

}  // namespace
}  // namespace vstring
