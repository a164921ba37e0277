// Replacing all occurrences.
#include "vstring/search/substitution.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

#include "vstring/search/exact.h"

namespace vstring {
namespace {

char* put(char* out, Text piece) {
  std::memcpy(out, piece.data(), piece.size());
  return out + piece.size();
}

}  // namespace

Substitution::Substitution(Text text, Text pattern, Text replacement)
    : text_(text), replacement_(replacement), pattern_length_(pattern.size()) {
  std::int64_t count = 0;
  std::size_t free = 0;
  ExactSearcher(pattern).each(text, [&](std::size_t at) {
    ++count;
    if (at >= free) {
      offsets_.push_back(static_cast<std::uint32_t>(at));
      free = at + pattern_length_;
    }
    return true;
  });
  occurs_ = count > 0;
  auto replaced = static_cast<std::int64_t>(offsets_.size());
  std::int64_t growth =
      static_cast<std::int64_t>(replacement.size()) - static_cast<std::int64_t>(pattern_length_);
  auto size = static_cast<std::int64_t>(text.size());
  std::int64_t length = size + replaced * growth;
  if (static_cast<std::uint64_t>(length) > std::numeric_limits<std::size_t>::max()) {
    throw std::bad_alloc();
  }
  length_ = static_cast<std::size_t>(length);
  // One byte more than the result: the byte for its end counts as room too.
  if (count > replaced && growth < 0) cut(size + count * growth + 1);
}

// Ends the result where a byte of the text finds no room any more.
void Substitution::cut(std::int64_t room) {
  std::int64_t written = 0;
  std::size_t read = 0;
  for (std::size_t i = 0;; ++i) {
    bool is_last = i == offsets_.size();
    std::size_t end = is_last ? text_.size() : offsets_[i];
    auto between = static_cast<std::int64_t>(end - read);
    std::int64_t fits = std::clamp<std::int64_t>(room - written, 0, between);
    if (fits < between) {
      text_ = text_.substr(0, read + static_cast<std::size_t>(fits));
      offsets_.resize(i);
      length_ = static_cast<std::size_t>(written + fits);
    }
    if (fits < between || is_last) return;
    written += between + static_cast<std::int64_t>(replacement_.size());
    read = end + pattern_length_;
  }
}

void Substitution::write(char* out) const {
  std::size_t read = 0;
  for (std::uint32_t at : offsets_) {
    out = put(out, text_.substr(read, at - read));
    out = put(out, replacement_);
    read = at + pattern_length_;
  }
  put(out, text_.substr(read));
}

}  // namespace vstring
