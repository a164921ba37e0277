// Exact search for one pattern. Entry points: find_text, count_occurrences, ExactSearcher (prepared
// once, used often). Tests: tests/unit/exact_search_test.cpp.
//
// An empty pattern occurs nowhere. Occurrences may overlap. Everything is linear in the text, the
// worst cases included.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vstring/core/text.h"
#include "vstring/search/candidates.h"
#include "vstring/search/two_way.h"

namespace vstring {

class ExactSearcher {
 public:
  /// `pattern` must outlive the searcher.
  explicit ExactSearcher(Text pattern);

  std::size_t length() const { return pattern_.size(); }

  /// 0-based offset of the leftmost occurrence that starts at `from` or later; Text::npos if none.
  std::size_t find(Text text, std::size_t from = 0) const;

  /// Calls visit(offset) for every occurrence in increasing order, until it returns false.
  template <class Visit>
  void each(Text text, Visit visit) const;

  /// How many occurrences there are.
  std::size_t count(Text text) const;

 private:
  class Scan;
  friend std::size_t find_text(Text pattern, Text text, std::size_t from);
  ExactSearcher(Text pattern, Anchors anchors);

  bool occurs_at(const char* at) const;

  Text pattern_;
  Anchors anchors_;
  std::uint64_t head_ = 0;  // the first and the last bytes, 2, 4 or 8 of them: cheap to compare
  std::uint64_t tail_ = 0;
};

/// The occurrences of a pattern in a text, some at a time.
class ExactSearcher::Scan {
 public:
  Scan(const ExactSearcher& searcher, Text text, std::size_t from = 0);

  /// Writes the offsets of the next occurrences to `out`, at most `capacity` of them (at least
  /// one); returns how many. Fewer than `capacity` means that there are no more.
  std::size_t fill(std::size_t* out, std::size_t capacity);

 private:
  void load_block();
  void check_block(std::size_t*& out, const std::size_t* end);
  bool pay_for_check(std::size_t at);
  void run_stretch(std::size_t*& out, const std::size_t* end);

  const ExactSearcher& searcher_;
  Text text_;
  std::size_t starts_;  // offsets at which an occurrence may start: 0 .. starts_ - 1
  CandidateBlock block_{0, 0, 0};
  std::size_t credit_;           // what checks of a long pattern may still cost
  std::size_t stretch_;          // length of the next stretch of two-way search: longer each time
  std::size_t stretch_end_ = 0;  // where the stretch under way ends; 0: none is
  TwoWay two_way_;
  TwoWay::Position two_way_at_;
};

template <class Visit>
void ExactSearcher::each(Text text, Visit visit) const {
  constexpr std::size_t kBatch = 128;
  std::size_t offsets[kBatch];
  Scan scan(*this, text);
  std::size_t filled = kBatch;
  while (filled == kBatch) {
    filled = scan.fill(offsets, kBatch);
    for (std::size_t i = 0; i < filled; ++i) {
      if (!visit(offsets[i])) return;
    }
  }
}

/// 0-based offset of the leftmost occurrence of `pattern` that starts at `from` or later;
/// Text::npos if none.
std::size_t find_text(Text pattern, Text text, std::size_t from = 0);

/// How often `pattern` occurs in `text`, overlapping occurrences included.
std::size_t count_occurrences(Text pattern, Text text);

}  // namespace vstring
