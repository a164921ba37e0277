// The plain methods that stems, words and sentences are compared with.
#pragma once

#include <cctype>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "vstring/language/text_masks.h"

namespace reference {

using vstring::Text;

inline bool is_word_byte(char c) {
  return c == '\'' || (vstring::byte_of(c) < 128 && std::isalnum(vstring::byte_of(c)) != 0);
}

// The byte right behind a word is stepped over, also when it is a newline.
inline vstring::WordCount count_words(Text text, std::vector<Text>& words) {
  vstring::WordCount count;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\n') ++count.lines;
    if (!is_word_byte(text[i])) continue;
    std::size_t start = i;
    while (i < text.size() && is_word_byte(text[i])) ++i;
    words.push_back(text.substr(start, i - start));
    ++count.words;
  }
  return count;
}

// Knows the abbreviations that the test writes.
inline std::vector<std::string> sentences(const std::string& text) {
  auto at = [&](std::size_t i) { return i < text.size() ? text[i] : '\0'; };
  auto is_space = [&](char c) { return c != '\0' && std::strchr(" \t\n\v\f\r", c) != nullptr; };
  auto is_letter = [](char c) { return std::isalpha(vstring::byte_of(c)) != 0; };
  std::vector<std::string> result = {""};
  for (std::size_t k = 0; k < text.size(); ++k) {
    if (!result.back().empty() || !is_space(text[k])) result.back() += text[k];
    bool is_end = std::strchr(".?!:", text[k]) != nullptr && is_space(at(k + 1));
    if (is_end && text[k] == '.') {
      if (at(k - 1) == '.' || (is_letter(at(k - 1)) && is_space(at(k - 2)))) is_end = false;
      for (std::string word : {"5 in", "Mr", "U.S.A", "etc"}) {
        std::size_t n = word.size();
        bool is_match = k >= n && text.compare(k - n, n, word) == 0;
        if (is_match && !is_letter(at(k - n - 1)) && !is_space(at(k + 2))) is_end = false;
      }
    }
    if (is_end) result.emplace_back();
  }
  return result;
}

class PorterWord {
 public:
  explicit PorterWord(std::string word) : word_(std::move(word)) {}
  std::string stem() {
    if (ends("sses") || ends("ies")) {
      cut(2);
    } else if (ends("s") && !ends("ss")) {
      cut(1);
    }
    if (ends("eed")) {
      if (measure(3) > 0) cut(1);
    } else if ((ends("ed") && has_vowel(2)) || (ends("ing") && has_vowel(3))) {
      cut(ends("ed") ? 2 : 3);
      finish();
    }
    if (ends("y") && has_vowel(1)) word_.back() = 'i';
    replace({{"ational", "ate"}, {"tional", "tion"}, {"enci", "ence"},   {"anci", "ance"},
             {"izer", "ize"},    {"bli", "ble"},     {"alli", "al"},     {"entli", "ent"},
             {"eli", "e"},       {"ousli", "ous"},   {"ization", "ize"}, {"ation", "ate"},
             {"ator", "ate"},    {"alism", "al"},    {"iveness", "ive"}, {"fulness", "ful"},
             {"ousness", "ous"}, {"aliti", "al"},    {"iviti", "ive"},   {"biliti", "ble"},
             {"logi", "log"}});
    replace({{"icate", "ic"},
             {"ative", ""},
             {"alize", "al"},
             {"iciti", "ic"},
             {"ical", "ic"},
             {"ful", ""},
             {"ness", ""}});
    for (Text ending :
         {"al",  "ance", "ence", "er", "ic",  "able", "ible", "ant", "ement", "ment",
          "ent", "sion", "tion", "ou", "ism", "ate",  "iti",  "ous", "ive",   "ize"}) {
      if (!ends(ending)) continue;
      std::size_t size = ending.substr(1) == "ion" ? 3 : ending.size();
      if (measure(size) > 1) cut(size);
      break;
    }
    if (ends("e") && (measure(1) > 1 || (measure(1) == 1 && !is_short(1)))) cut(1);
    if (ends("ll") && measure(0) > 1) cut(1);
    return word_;
  }

 private:
  using Pairs = std::vector<std::pair<Text, Text>>;
  bool ends(Text ending) const { return word_.ends_with(ending); }
  void cut(std::size_t n) { word_.erase(word_.size() - n); }
  bool is_vowel(std::size_t i) const {
    if (word_[i] == 'y') return i > 0 && !is_vowel(i - 1);
    return Text("aeiou").find(word_[i]) != Text::npos;
  }
  // All of the word without its last n letters.
  int measure(std::size_t n) const {
    int changes = 0;
    for (std::size_t i = 1; i + n < word_.size(); ++i) changes += is_vowel(i - 1) && !is_vowel(i);
    return changes;
  }
  bool has_vowel(std::size_t n) const {
    for (std::size_t i = 0; i + n < word_.size(); ++i) {
      if (is_vowel(i)) return true;
    }
    return false;
  }
  bool is_short(std::size_t n) const {
    if (word_.size() < n + 3) return false;
    std::size_t i = word_.size() - n - 1;
    return !is_vowel(i) && is_vowel(i - 1) && !is_vowel(i - 2) && !std::strchr("wxy", word_[i]);
  }
  void finish() {
    std::size_t n = word_.size();
    bool is_double = n > 1 && word_[n - 1] == word_[n - 2] && !is_vowel(n - 1) && !is_vowel(n - 2);
    if (ends("at") || ends("bl") || ends("iz")) {
      word_ += 'e';
    } else if (is_double) {
      if (!std::strchr("lsz", word_.back())) cut(1);
    } else if (measure(0) == 1 && is_short(0)) {
      word_ += 'e';
    }
  }
  void replace(const Pairs& pairs) {
    for (auto [ending, with] : pairs) {
      if (!ends(ending)) continue;
      if (measure(ending.size()) > 0) cut(ending.size()), word_ += with;
      return;
    }
  }
  std::string word_;
};

}  // namespace reference
