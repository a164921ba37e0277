#include "vstring/language/dictionary.h"

#include <algorithm>

namespace vstring {
namespace {

constexpr std::size_t kKeyBytes = 8;

std::uint64_t key_of(Text word) {
  std::uint64_t key = 0;
  for (std::size_t i = 0; i < kKeyBytes; ++i) {
    key = key << 8 | (i < word.size() ? byte_of(word[i]) : 0);
  }
  return key;
}

Text tail_of(Text word) { return word.substr(std::min(word.size(), kKeyBytes)); }

}  // namespace

bool WordTable::contains(Text word) const {
  std::uint64_t key = key_of(word);
  Text tail = tail_of(word);
  auto tail_at = [this](std::size_t i) {
    return Text(tails + offsets[i], offsets[i + 1] - offsets[i]);
  };
  std::size_t low = 0;
  for (std::size_t count = size(); count > 0;) {
    std::size_t half = count / 2;
    std::size_t middle = low + half;
    if (keys[middle] < key || (keys[middle] == key && tail_at(middle) < tail)) {
      low = middle + 1;
      count -= half + 1;
    } else {
      count = half;
    }
  }
  return low < size() && keys[low] == key && tail_at(low) == tail;
}

std::string WordTable::word(std::size_t i) const {
  std::string result;
  for (int shift = 56; shift >= 0; shift -= 8) {
    char c = static_cast<char>(keys[i] >> shift);
    if (c != '\0') result += c;
  }
  return result.append(tails + offsets[i], offsets[i + 1] - offsets[i]);
}

Dictionary::Dictionary(std::vector<Text> words) : offsets_{0} {
  std::sort(words.begin(), words.end());
  words.erase(std::unique(words.begin(), words.end()), words.end());
  for (Text word : words) {
    if (word.empty()) continue;
    keys_.push_back(key_of(word));
    tails_.append(tail_of(word));
    offsets_.push_back(static_cast<std::uint32_t>(tails_.size()));
  }
  table_ = {keys_, offsets_, tails_.data()};
}

std::vector<PatternSet::Report> Dictionary::occurrences(Text text, std::size_t limit) {
  if (patterns_ == nullptr) {
    auto patterns = std::make_unique<PatternSet>();
    std::vector<std::string> words(size());
    for (std::size_t i = 0; i < words.size(); ++i) {
      words[i] = word(i);
      patterns->add(words[i], static_cast<std::uint32_t>(i));
    }
    // Later texts may be long: the table is to be worth its making.
    constexpr std::size_t kExpectedBytes = 1 << 20;
    patterns->prepare(std::max(text.size(), kExpectedBytes));
    patterns_ = std::move(patterns);
  }
  return patterns_->all(text, limit);
}

}  // namespace vstring
