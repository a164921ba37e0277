// Exact search: candidates by two anchors, each checked. Patterns of up to 64 bytes are checked in
// constant time; the checks of longer ones are paid for by the bytes passed, and when they cost
// more the two-way search goes on for a while.
#include "vstring/search/exact.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace vstring {
namespace {

constexpr std::size_t kCheapLength = 64;
constexpr std::size_t kBytesACheck = 4;  // passed bytes that pay for one cheap check
constexpr std::size_t kFirstCredit = 64;
constexpr std::size_t kFirstStretch = 4096;
constexpr std::size_t kWorthAnchors = 512;  // the text length that repays the choice of anchors

template <class Word>
std::uint64_t load(const char* at) {
  Word word;
  std::memcpy(&word, at, sizeof word);
  return word;
}

// Whether `length` bytes begin and end with these words, which may overlap.
template <class Word>
bool ends_are(const char* at, std::size_t length, std::uint64_t head, std::uint64_t tail) {
  return load<Word>(at) == head && load<Word>(at + length - sizeof(Word)) == tail;
}

}  // namespace

ExactSearcher::ExactSearcher(Text pattern)
    : ExactSearcher(pattern, pattern.empty() ? Anchors{} : rarest_anchors(pattern)) {}

ExactSearcher::ExactSearcher(Text pattern, Anchors anchors) : pattern_(pattern), anchors_(anchors) {
  const char* first = pattern.data();
  const char* past = first + pattern.size();
  if (pattern.size() >= 8) {
    head_ = load<std::uint64_t>(first);
    tail_ = load<std::uint64_t>(past - 8);
  } else if (pattern.size() >= 4) {
    head_ = load<std::uint32_t>(first);
    tail_ = load<std::uint32_t>(past - 4);
  } else if (pattern.size() >= 2) {
    head_ = load<std::uint16_t>(first);
    tail_ = load<std::uint16_t>(past - 2);
  }
}

bool ExactSearcher::occurs_at(const char* at) const {
  std::size_t m = pattern_.size();
  if (m < 4) return m < 3 || ends_are<std::uint16_t>(at, m, head_, tail_);
  if (m < 8) return ends_are<std::uint32_t>(at, m, head_, tail_);
  if (!ends_are<std::uint64_t>(at, m, head_, tail_)) return false;
  return m <= 16 || std::memcmp(at + 8, pattern_.data() + 8, m - 16) == 0;
}

std::size_t ExactSearcher::find(Text text, std::size_t from) const {
  std::size_t offset = 0;
  return Scan(*this, text, from).fill(&offset, 1) == 1 ? offset : Text::npos;
}

std::size_t ExactSearcher::count(Text text) const {
  std::size_t count = 0;
  if (length() > 2 || length() > text.size()) {
    each(text, [&count](std::size_t) { return ++count != 0; });
    return count;
  }
  std::size_t starts = length() == 0 ? 0 : text.size() - length() + 1;
  CandidateBlock block{0, 0, 0};
  do {
    block = next_candidates(anchors_, text.data(), block.end, starts);
    count += static_cast<std::size_t>(std::popcount(block.mask));
  } while (block.end < starts);
  return count;
}

ExactSearcher::Scan::Scan(const ExactSearcher& searcher, Text text, std::size_t from)
    : searcher_(searcher), text_(text), starts_(0), credit_(kFirstCredit), stretch_(kFirstStretch) {
  std::size_t m = searcher.length();
  if (m > 0 && m <= text.size()) starts_ = text.size() - m + 1;
  block_.end = std::min(from, starts_);
}

std::size_t ExactSearcher::Scan::fill(std::size_t* out, std::size_t capacity) {
  std::size_t* next = out;
  const std::size_t* end = out + capacity;
  while (next != end) {
    if (stretch_end_ != 0) {
      run_stretch(next, end);
    } else if (block_.mask != 0) {
      check_block(next, end);
    } else if (block_.end < starts_) {
      load_block();
    } else {
      break;
    }
  }
  return static_cast<std::size_t>(next - out);
}

void ExactSearcher::Scan::load_block() {
  std::size_t before = block_.end;
  block_ = next_candidates(searcher_.anchors_, text_.data(), before, starts_);
  credit_ += (block_.end - before) / kBytesACheck;
}

void ExactSearcher::Scan::check_block(std::size_t*& out, const std::size_t* end) {
  const bool is_cheap = searcher_.length() <= kCheapLength;
  while (block_.mask != 0 && out != end) {
    std::size_t at = block_.start + static_cast<std::size_t>(std::countr_zero(block_.mask));
    if (!is_cheap && !pay_for_check(at)) return;
    block_.mask &= block_.mask - 1;
    if (searcher_.occurs_at(text_.data() + at)) *out++ = at;
  }
}

// A check whose first and last bytes agree may have to compare all of them. Without the credit for
// it a stretch of two-way search begins at the candidate.
bool ExactSearcher::Scan::pay_for_check(std::size_t at) {
  std::size_t m = searcher_.length();
  std::size_t cost = 1;
  const char* here = text_.data() + at;
  if (ends_are<std::uint64_t>(here, m, searcher_.head_, searcher_.tail_)) cost += m / 16;
  if (cost <= credit_) {
    credit_ -= cost;
    return true;
  }
  if (!two_way_.is_ready()) two_way_ = TwoWay(searcher_.pattern_);
  two_way_at_ = {at, 0};
  stretch_ = std::max(stretch_, m);
  stretch_end_ = stretch_ < starts_ - at ? at + stretch_ : starts_;
  return false;
}

void ExactSearcher::Scan::run_stretch(std::size_t*& out, const std::size_t* end) {
  while (out != end) {
    std::size_t at = two_way_.next(text_, two_way_at_, stretch_end_);
    if (at == Text::npos) {
      block_ = {0, std::min(two_way_at_.start, starts_), 0};
      credit_ = kFirstCredit;
      stretch_ *= 2;
      stretch_end_ = 0;
      return;
    }
    *out++ = at;
  }
}

std::size_t find_text(Text pattern, Text text, std::size_t from) {
  if (pattern.empty() || pattern.size() > text.size()) return Text::npos;
  bool is_long = text.size() - pattern.size() >= kWorthAnchors;
  Anchors anchors = is_long ? rarest_anchors(pattern) : end_anchors(pattern);
  return ExactSearcher(pattern, anchors).find(text, from);
}

std::size_t count_occurrences(Text pattern, Text text) {
  return ExactSearcher(pattern).count(text);
}

}  // namespace vstring
