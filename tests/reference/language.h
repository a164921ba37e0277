// The plain methods that words and sentences are compared with.
#pragma once

#include <cctype>
#include <cstring>
#include <string>
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

}  // namespace reference
