// Known stems; words and sentences by block masks, against plain methods.
#include "tests/reference/language.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>

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

// Words whose stems are known, for every ending of the method.
TEST(Porter, StemsKnownWords) {
  std::istringstream words(
      "relational relat conditional condit rational ration valenci valenc hesitanci hesit "
      "digitizer digit conformabli conform radicalli radic differentli differ vileli vile "
      "analogousli analog vietnamization vietnam predication predic operator oper feudalism feudal "
      "decisiveness decis hopefulness hope callousness callous formaliti formal sensitiviti sensit "
      "sensibiliti sensibl geologi geologi archaeologi archaeolog triplicate triplic formative "
      "form "
      "formalize formal electriciti electr electrical electr hopeful hope goodness good revival "
      "reviv allowance allow inference infer airliner airlin gyroscopic gyroscop adjustable adjust "
      "defensible defens irritant irrit replacement replac adjustment adjust dependent depend "
      "adoption adopt homologou homolog communism commun activate activ angulariti angular "
      "homologous homolog effective effect bowdlerize bowdler oscillators oscil generalizations "
      "gener probate probat controll control roll roll caresses caress plastered plaster");
  for (std::string word, stem; words >> word >> stem;) {
    char out[kMaxPorterWord];
    EXPECT_EQ(Text(out, porter_stem(word, out)), stem) << word;
  }
}

// The stem is made of the word's own beginning and at most one other letter at its end, and texts
// of any bytes are stemmed.
TEST(Porter, NeverReachesBeyondTheWord) {
  const std::vector<std::string> pieces = {"a",  "e",   "y",   "b",   "ll",   "ss",    "z",   "1",
                                           "ed", "ing", "ies", "eed", "logi", "ement", "\xe9"};
  for (int round = 0; round < 100000; ++round) {
    std::string word = random_text(pieces, 1 + random_source() % 9);
    if (word.size() < 2) continue;
    word.shrink_to_fit();
    char stem[kMaxPorterWord];
    std::size_t size = porter_stem(word, stem);
    ASSERT_GE(size, 1U);
    ASSERT_LE(size, word.size()) << word;
    ASSERT_EQ(Text(stem, size - 1), Text(word).substr(0, size - 1)) << word;
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
