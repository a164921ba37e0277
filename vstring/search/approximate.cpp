// Search with differences. Tests: tests/unit/approximate_test.cpp, docs/commands/approximate.md.
#include "vstring/search/approximate.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "vstring/core/checked.h"

namespace vstring {
namespace {

constexpr std::size_t kWordBits = 64;

// The rows of the pattern at which each byte stands, as bits; only for the bytes that do occur.
class RowsOfBytes {
 public:
  explicit RowsOfBytes(Text pattern) : num_blocks_((pattern.size() + kWordBits - 1) / kWordBits) {
    for (char c : pattern) {
      std::uint32_t& row = rows_[byte_of(c)];
      if (row == 0) row = ++num_rows_;
    }
    bits_.resize(checked_product(num_blocks_, std::size_t{num_rows_} + 1));
    for (std::size_t i = 0; i < pattern.size(); ++i) {
      bits_[rows_[byte_of(pattern[i])] * num_blocks_ + i / kWordBits] |= std::uint64_t{1}
                                                                         << (i % kWordBits);
    }
  }

  std::size_t num_blocks() const { return num_blocks_; }
  /// The words of a byte, one a block.
  const std::uint64_t* of(char c) const { return &bits_[rows_[byte_of(c)] * num_blocks_]; }

 private:
  std::size_t num_blocks_;
  std::array<std::uint32_t, 256> rows_{};  // 0: a row of zeros
  std::uint32_t num_rows_ = 0;
  std::vector<std::uint64_t> bits_;
};

// 64 rows of a column: where the distance grows or falls from one row to the next, and its value in
// the block's last row.
struct Block {
  std::uint64_t grows = ~std::uint64_t{0};
  std::uint64_t falls = 0;
  std::int64_t last_value = 0;

  // Moves on by a byte that stands at the rows `matches`. `change` is how the value above the block
  // changes from column to column; gives the same for the row that `last_row` marks.
  int advance(std::uint64_t matches, int change, std::uint64_t last_row) {
    std::uint64_t vertical = matches | falls;
    if (change < 0) matches |= 1;
    std::uint64_t horizontal = (((matches & grows) + grows) ^ grows) | matches;
    std::uint64_t growth = falls | ~(horizontal | grows);
    std::uint64_t fall = grows & horizontal;
    int result = (growth & last_row) != 0 ? 1 : ((fall & last_row) != 0 ? -1 : 0);
    growth = growth << 1 | (change > 0 ? 1U : 0U);
    fall = fall << 1 | (change < 0 ? 1U : 0U);
    grows = fall | ~(vertical | growth);
    falls = growth & vertical;
    last_value += result;
    return result;
  }
};

// The column of distances between the pattern's prefixes and the text read so far. Blocks below the
// last active one hold nothing but values above k.
class Column {
 public:
  Column(Text pattern, std::size_t k)
      : rows_(pattern),
        k_(static_cast<std::int64_t>(k)),
        length_(pattern.size()),
        blocks_(rows_.num_blocks()) {
    std::size_t last = std::min(k / kWordBits, blocks_.size() - 1);
    for (std::size_t b = 0; b <= last; ++b) add_block(b == 0 ? 0 : blocks_[b - 1].last_value);
  }

  /// Reads a byte; whether the whole pattern is now at most k away.
  bool read(char c) {
    const std::uint64_t* matches = rows_.of(c);
    int change = 0;
    for (std::size_t b = 0; b < num_active_; ++b) {
      change = blocks_[b].advance(matches[b], change, last_row(b));
    }
    while (num_active_ < blocks_.size()) {
      std::int64_t value = blocks_[num_active_ - 1].last_value;
      if (std::min(value, value - change) > k_) break;
      std::size_t b = num_active_;
      add_block(value - change);
      change = blocks_[b].advance(matches[b], change, last_row(b));
    }
    while (num_active_ > 1 && is_beyond(num_active_ - 1)) --num_active_;
    return num_active_ == blocks_.size() && blocks_.back().last_value <= k_;
  }

 private:
  // Rows of block b: 64, or less in the pattern's last block.
  std::size_t height(std::size_t b) const { return std::min(kWordBits, length_ - b * kWordBits); }
  std::uint64_t last_row(std::size_t b) const { return std::uint64_t{1} << (height(b) - 1); }

  bool is_beyond(std::size_t b) const {
    return blocks_[b].last_value >= k_ + static_cast<std::int64_t>(height(b));
  }

  // Makes the next block active, its values growing by one from the value above it.
  void add_block(std::int64_t value_above) {
    Block block;
    block.last_value = value_above + static_cast<std::int64_t>(height(num_active_));
    blocks_[num_active_++] = block;
  }

  RowsOfBytes rows_;
  std::int64_t k_;
  std::size_t length_;
  std::vector<Block> blocks_;
  std::size_t num_active_ = 0;
};

}  // namespace

void approximate_ends(Text pattern, Text text, std::size_t k, const ReportEnd& report) {
  if (pattern.empty()) {
    for (std::size_t end = 1; end <= text.size() && report(end);) ++end;
    return;
  }
  Column column(pattern, k);
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (column.read(text[i]) && !report(i + 1)) return;
  }
}

void prefixed_ends(Text pattern, Text text, std::size_t k, const ReportEnd& report) {
  if (pattern.empty() || pattern.size() > kMaxPrefixedPattern) return;
  std::array<std::uint32_t, 256> rows{};
  for (std::size_t i = 0; i < pattern.size(); ++i) rows[byte_of(pattern[i])] |= 1U << i;
  std::uint32_t whole = 1U << (pattern.size() - 1);
  std::array<std::uint32_t, kMaxPrefixedPattern + 1> states{};
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::uint32_t matches = rows[byte_of(text[i])];
    std::uint32_t above = states[0];  // of one difference less, before this byte
    states[0] = (above << 1 | 1) & matches;
    for (std::size_t d = 1; d <= k; ++d) {
      std::uint32_t old = states[d];
      states[d] = ((old << 1 | 1) & matches) | above | (above << 1 | 1) | states[d - 1] << 1;
      above = old;
    }
    if ((states[k] & whole) != 0 && !report(i + 1)) return;
  }
}

}  // namespace vstring
