#include "vstring/words/borders.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace vstring {

BorderTable::BorderTable(Text word) : lengths_(local_) {
  std::size_t n = word.size();
  if (n >= std::size(local_)) {
    heap_ = std::make_unique_for_overwrite<std::int32_t[]>(n + 1);
    lengths_ = heap_.get();
  }
  lengths_[0] = -1;
  std::int32_t border = 0;
  for (std::size_t i = 1; i < n; ++i) {
    lengths_[i] = border;
    while (border >= 0 && word[static_cast<std::size_t>(border)] != word[i]) {
      border = lengths_[border];
    }
    ++border;
  }
  if (n > 0) lengths_[n] = border;
}

std::size_t overlap_length(Text s, Text t) {
  std::size_t shorter = std::min(s.size(), t.size());
  BorderTable borders((s.size() <= t.size() ? t : s).substr(0, shorter));
  std::int32_t matched = 0;
  for (std::size_t i = 0; i < s.size() && static_cast<std::size_t>(matched) < t.size(); ++i) {
    while (matched >= 0 && t[static_cast<std::size_t>(matched)] != s[i]) {
      matched = borders[static_cast<std::size_t>(matched)];
    }
    ++matched;
  }
  return static_cast<std::size_t>(matched);
}

bool has_period(Text word, std::size_t period) {
  return std::memcmp(word.data(), word.data() + period, word.size() - period) == 0;
}

std::size_t root_length(Text word) {
  std::size_t root = word.size();
  std::size_t rest = word.size();  // without the prime factors tried so far
  auto divide_by = [&](std::size_t prime) {
    if (rest % prime != 0) return;
    while (rest % prime == 0) rest /= prime;
    while (root % prime == 0 && has_period(word.substr(0, root), root / prime)) root /= prime;
  };
  divide_by(2);
  for (std::size_t prime = 3; prime * prime <= rest; prime += 2) divide_by(prime);
  if (rest > 1) divide_by(rest);
  return root;
}

}  // namespace vstring
