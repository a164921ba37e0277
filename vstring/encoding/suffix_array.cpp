// Suffix sorting by induction. A suffix is small (S) when it is less than the one that starts
// behind it, else large (L); the last one is large. A small suffix behind a large one is a seed.
// From the seeds in order, one pass from left to right puts all large suffixes in order, for each
// of them is greater than the one behind it, and one from right to left all small ones. The seeds
// themselves are sorted by the same two passes up to their next seed, and where that does not tell
// them apart by sorting the text of their ranks, which is at most half as long.
#include "vstring/encoding/suffix_array.h"

#include <algorithm>
#include <span>

namespace vstring {
namespace {

using Index = std::int32_t;
using Array = std::span<Index>;

std::size_t at(Index i) { return static_cast<std::size_t>(i); }

// One text to sort: bytes at first, ranks of seeds further down. `order` has a place for each of
// its suffixes and is all the working memory but the buckets.
//
// During a pass a place of `order` holds a suffix i from which the one before it, i - 1, is yet to
// be placed by this pass, as i; one that this pass has nothing to do with, as ~i; or 0: nothing, or
// suffix 0, which none is before.
template <class Symbol>
class SuffixSorter {
 public:
  SuffixSorter(std::span<const Symbol> text, Array order, std::size_t alphabet_size)
      : text_(text.data()),
        size_(static_cast<Index>(text.size())),
        order_(order),
        sizes_(alphabet_size, 0),
        bounds_(alphabet_size, 0) {
    for (Symbol c : text) ++sizes_[static_cast<std::size_t>(c)];
  }

  void run() {
    Index num_seeds = place_seeds();
    if (num_seeds > 1) {
      sort_seeds(num_seeds);
      place_sorted_seeds(num_seeds);
    }
    place_large<false>();
    place_small<false>();
  }

 private:
  Symbol symbol(Index i) const { return text_[at(i)]; }
  Index& order(Index i) { return order_[at(i)]; }
  Index& bound(Symbol c) { return bounds_[static_cast<std::size_t>(c)]; }

  template <class Visit>
  void visit_seeds_backwards(Visit visit) const;
  Index place_seeds();
  void place_sorted_seeds(Index num_seeds);
  void sort_seeds(Index num_seeds);
  Index collect_seeds();
  Index rank_seeds(Index num_seeds);
  void sort_ranks(Index num_seeds, Index num_ranks);
  template <bool only_seeds>
  void place_large();
  template <bool only_seeds>
  void place_small();
  void go_to_starts();
  void go_to_ends();

  const Symbol* text_;
  Index size_;
  Array order_;
  std::vector<Index> sizes_;   // of each symbol's bucket
  std::vector<Index> bounds_;  // where its next suffix goes, or behind where
};

template <class Symbol>
void SuffixSorter<Symbol>::go_to_starts() {
  Index sum = 0;
  for (std::size_t c = 0; c < sizes_.size(); ++c) {
    bounds_[c] = sum;
    sum += sizes_[c];
  }
}

template <class Symbol>
void SuffixSorter<Symbol>::go_to_ends() {
  Index sum = 0;
  for (std::size_t c = 0; c < sizes_.size(); ++c) bounds_[c] = sum += sizes_[c];
}

template <class Symbol>
template <class Visit>
void SuffixSorter<Symbol>::visit_seeds_backwards(Visit visit) const {
  bool was_small = false;
  for (Index i = size_ - 2; i >= 0; --i) {
    bool is_small = symbol(i) < symbol(i + 1) || (was_small && symbol(i) == symbol(i + 1));
    if (was_small && !is_small) visit(i + 1);
    was_small = is_small;
  }
}

// Puts all seeds at the ends of their buckets, in any order, and says how many there are.
template <class Symbol>
Index SuffixSorter<Symbol>::place_seeds() {
  std::fill(order_.begin(), order_.end(), 0);
  go_to_ends();
  Index num_seeds = 0;
  visit_seeds_backwards([&](Index i) {
    order(--bound(symbol(i))) = i;
    ++num_seeds;
  });
  return num_seeds;
}

// The same for seeds that are in order at the start of order_.
template <class Symbol>
void SuffixSorter<Symbol>::place_sorted_seeds(Index num_seeds) {
  std::fill(order_.begin() + num_seeds, order_.end(), 0);
  go_to_ends();
  for (Index k = num_seeds - 1; k >= 0; --k) {
    Index seed = order(k);
    order(k) = 0;
    order(--bound(symbol(seed))) = seed;
  }
}

// Places the large suffixes. What the next pass starts from is left as it is, the rest as ~i; when
// only seeds are wanted, as nothing. Which of two entries comes is anybody's guess, so the passes
// choose with masks where a branch would be mispredicted.
template <class Symbol>
template <bool only_seeds>
void SuffixSorter<Symbol>::place_large() {
  go_to_starts();
  auto place = [this](Index i) {
    Symbol c = symbol(i);
    bool has_small_before = symbol(i - (i > 0)) < c;
    order(bound(c)++) = i ^ -static_cast<Index>(has_small_before);
  };
  place(size_ - 1);
  for (Index k = 0; k < size_; ++k) {
    Index i = order(k);
    order(k) = only_seeds ? std::min(i, 0) ^ (i >> 31) : ~i;
    if (i > 0) place(i - 1);
  }
}

// Places the small suffixes over the seeds. At the end all suffixes stand as they are; when only
// seeds are wanted these do, as ~i, and nothing else.
template <class Symbol>
template <bool only_seeds>
void SuffixSorter<Symbol>::place_small() {
  go_to_ends();
  auto place = [this](Index i) {
    Symbol c = symbol(i);
    bool has_large_before = symbol(i - (i > 0)) > c;
    order(--bound(c)) = i ^ -static_cast<Index>(has_large_before);
  };
  for (Index k = size_ - 1; k >= 0; --k) {
    Index i = order(k);
    order(k) = only_seeds ? std::min(i, 0) : i ^ (i >> 31);
    if (i > 0) place(i - 1);
  }
}

// Sorts the seeds to the start of order_.
template <class Symbol>
void SuffixSorter<Symbol>::sort_seeds(Index num_seeds) {
  place_large<true>();
  place_small<true>();
  collect_seeds();
  Index num_ranks = rank_seeds(num_seeds);
  if (num_ranks < num_seeds) sort_ranks(num_seeds, num_ranks);
}

template <class Symbol>
Index SuffixSorter<Symbol>::collect_seeds() {
  Index count = 0;
  for (Index k = 0; k < size_; ++k) {
    Index seed = order(k);
    if (seed < 0) order(count++) = ~seed;
  }
  return count;
}

// Ranks the seeds at the start of order_, which are in order up to the seeds behind them; equal
// ones get one rank. Leaves the rank of seed i at place num_seeds + i / 2, and as ~rank, so that 0
// is nothing: seeds are at least two apart.
template <class Symbol>
Index SuffixSorter<Symbol>::rank_seeds(Index num_seeds) {
  std::fill(order_.begin() + num_seeds, order_.end(), 0);
  Index next = size_;
  visit_seeds_backwards([&](Index i) {
    // The last one goes up to the text's end, which is unlike any symbol.
    order(num_seeds + i / 2) = next == size_ ? 0 : next - i + 1;
    next = i;
  });
  Index rank = -1;
  Index before = 0;
  Index length_before = 0;
  for (Index k = 0; k < num_seeds; ++k) {
    Index seed = order(k);
    Index& place = order(num_seeds + seed / 2);
    Index length = place;
    bool is_equal = k > 0 && length == length_before && length != 0 &&
                    std::equal(text_ + seed, text_ + seed + length, text_ + before);
    if (!is_equal) ++rank;
    place = ~rank;
    before = seed;
    length_before = length;
  }
  return rank + 1;
}

template <class Symbol>
void SuffixSorter<Symbol>::sort_ranks(Index num_seeds, Index num_ranks) {
  Array ranks = order_.last(at(num_seeds));
  Index last = size_;
  for (Index k = size_ - 1; k >= num_seeds; --k) {
    if (order(k) < 0) order(--last) = ~order(k);
  }
  SuffixSorter<Index>(ranks, order_.first(at(num_seeds)), at(num_ranks)).run();
  // The ranks have done their work: the seeds in the text's order take their place.
  auto next = ranks.rbegin();
  visit_seeds_backwards([&](Index i) { *next++ = i; });
  for (Index k = 0; k < num_seeds; ++k) order(k) = ranks[at(order(k))];
}

}  // namespace

std::vector<Index> sort_suffixes(Text text) {
  std::vector<Index> order(text.size());
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  if (!text.empty()) SuffixSorter<unsigned char>({bytes, text.size()}, order, 256).run();
  return order;
}

}  // namespace vstring
