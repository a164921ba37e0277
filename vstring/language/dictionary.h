// Dictionaries: sets of words to be asked for one by one or found in a text. Entry points:
// Dictionary, built_in_words. Tests: tests/unit/dictionary_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "vstring/core/text.h"
#include "vstring/search/pattern_set.h"

namespace vstring {

/// Distinct words in ascending order. The first eight bytes of each are a number, the most
/// significant byte first and zeros behind a shorter word, so that numbers compare as words do.
/// The rest of word i is tails[offsets[i] .. offsets[i + 1]).
struct WordTable {
  std::span<const std::uint64_t> keys;
  std::span<const std::uint32_t> offsets;  // one more than keys
  const char* tails;

  std::size_t size() const { return keys.size(); }
  bool contains(Text word) const;
  std::string word(std::size_t i) const;
};

/// English words and the library's own names, in lower case.
const WordTable& built_in_words();

class Dictionary {
 public:
  /// On the built-in words.
  Dictionary() : table_(built_in_words()) {}
  /// On these words; empty ones and repeated ones do not count. Throws std::bad_alloc.
  explicit Dictionary(std::vector<Text> words);
  Dictionary(const Dictionary&) = delete;
  Dictionary& operator=(const Dictionary&) = delete;

  std::size_t size() const { return table_.size(); }
  bool contains(Text word) const { return table_.contains(word); }
  std::string word(std::size_t i) const { return table_.word(i); }

  /// Every occurrence of a word in the text, `value` being the word's number, as PatternSet reports
  /// them. Stops after `limit` or somewhat more. Throws std::bad_alloc.
  std::vector<PatternSet::Report> occurrences(Text text, std::size_t limit);

 private:
  std::vector<std::uint64_t> keys_;
  std::vector<std::uint32_t> offsets_;
  std::string tails_;
  WordTable table_;
  std::unique_ptr<PatternSet> patterns_;  // made when a text is first searched
};

}  // namespace vstring
