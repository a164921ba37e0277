// Words for exhaustive and random comparisons.
#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace reference {

/// All words of up to `longest` letters over the first `letters` letters, the empty word first.
inline std::vector<std::string> all_words(char letters, std::size_t longest) {
  std::vector<std::string> words{""};
  for (std::size_t i = 0; i < words.size() && words[i].size() < longest; ++i) {
    for (char c = 0; c < letters; ++c) words.push_back(words[i] + static_cast<char>('a' + c));
  }
  return words;
}

inline std::size_t random_below(std::mt19937& random, std::size_t limit) {
  return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
}

inline std::string random_word(std::mt19937& random, std::size_t letters, std::size_t length) {
  std::string word(length, 'a');
  for (char& c : word) c = static_cast<char>('a' + random_below(random, letters));
  return word;
}

}  // namespace reference
