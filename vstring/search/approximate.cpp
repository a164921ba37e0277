// Search with differences. Tests: tests/unit/approximate_test.cpp, docs/commands/approximate.md.
#include "vstring/search/approximate.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "vstring/core/checked.h"
#include "vstring/search/exact.h"

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
    int result =
        static_cast<int>((growth & last_row) != 0) - static_cast<int>((fall & last_row) != 0);
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

// A pattern that fits into one word. The first byte is compared with the rows `first_rows` alone.
void short_ends(Text pattern, Text text, std::size_t k, std::uint64_t first_rows,
                const ReportEnd& report) {
  std::array<std::uint64_t, 256> rows{};
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    rows[byte_of(pattern[i])] |= std::uint64_t{1} << i;
  }
  std::uint64_t last_row = std::uint64_t{1} << (pattern.size() - 1);
  Block block;
  block.last_value = static_cast<std::int64_t>(pattern.size());
  std::uint64_t compared = first_rows;
  for (std::size_t i = 0; i < text.size(); ++i) {
    block.advance(rows[byte_of(text[i])] & compared, 0, last_row);
    compared = ~std::uint64_t{0};
    if (block.last_value <= static_cast<std::int64_t>(k) && !report(i + 1)) return;
  }
}

void long_ends(Text pattern, Text text, std::size_t k, const ReportEnd& report) {
  Column column(pattern, k);
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (column.read(text[i]) && !report(i + 1)) return;
  }
}

// Reports what is plain to see of a pattern that is not empty; whether that was all.
bool report_plain_ends(Text pattern, Text text, std::size_t k, const ReportEnd& report) {
  if (k == 0) {
    ExactSearcher(pattern).each(
        text, [&](std::size_t offset) { return report(offset + pattern.size()); });
  }
  // Of k differences, at most k bytes of the pattern can be missing.
  return k == 0 || (k < pattern.size() && pattern.size() - k > text.size());
}

}  // namespace

void approximate_ends(Text pattern, Text text, std::size_t k, const ReportEnd& report) {
  if (pattern.empty()) {
    for (std::size_t end = 1; end <= text.size() && report(end);) ++end;
    return;
  }
  if (report_plain_ends(pattern, text, k, report)) return;
  if (pattern.size() <= kWordBits) {
    short_ends(pattern, text, k, ~std::uint64_t{0}, report);
  } else {
    long_ends(pattern, text, k, report);
  }
}

// To begin without any prefix is to begin with infinite distances below row 0. The first byte then
// makes a column that counts up by one from row 1, with 0 there if the byte is the pattern's first
// and 1 otherwise: the column that ordinary distances give when other rows are not compared.
void prefixed_ends(Text pattern, Text text, std::size_t k, const ReportEnd& report) {
  if (pattern.empty() || pattern.size() > kMaxPrefixedPattern) return;
  if (!report_plain_ends(pattern, text, k, report)) short_ends(pattern, text, k, 1, report);
}

}  // namespace vstring
