#include "vstring/similarity/common_subsequence.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "vstring/core/checked.h"
#include "vstring/core/common_ends.h"

namespace vstring {
namespace {

using Word = std::uint64_t;
constexpr std::size_t kWordBits = 64;

// Runs up to 64 columns of the table over all rows. The differences along a row, a bit a column,
// are 0 where the length grows; each goes to `rows`, when that is not null. carry[i] takes what
// passes from one block of columns to the next in row i. Returns the differences of the last row.
Word cross_columns(Text columns, Text row_bytes, std::uint8_t* carry, Word* rows) {
  Word masks[256] = {};
  for (std::size_t i = 0; i < columns.size(); ++i) masks[byte_of(columns[i])] |= Word{1} << i;
  Word same = ~Word{0};
  for (std::size_t i = 0; i < row_bytes.size(); ++i) {
    Word matching = same & masks[byte_of(row_bytes[i])];
    Word sum = 0;
    bool first = __builtin_add_overflow(same, matching, &sum);
    bool second = __builtin_add_overflow(sum, Word{carry[i]}, &sum);
    carry[i] = first || second ? 1 : 0;
    same = sum | (same ^ matching);
    if (rows != nullptr) rows[i] = same;
  }
  return same;
}

std::size_t num_blocks(Text columns) { return (columns.size() + kWordBits - 1) / kWordBits; }

// The rows of differences of the table of all pairs of suffixes, as bits. Row i belongs to s[i ..],
// bit j to t[j ..].
class SuffixTable {
 public:
  SuffixTable(Text s, Text t) : height_(s.size()), width_(t.size()) {
    std::size_t size = checked_product(height_, num_blocks(t));
    words_ = std::make_unique_for_overwrite<Word[]>(size);
    std::string rows(s.rbegin(), s.rend());
    std::string columns(t.rbegin(), t.rend());
    std::vector<std::uint8_t> carry(height_);
    for (std::size_t b = 0; b < num_blocks(t); ++b) {
      Text block = Text(columns).substr(b * kWordBits, kWordBits);
      cross_columns(block, rows, carry.data(), words_.get() + b * height_);
    }
  }

  /// Whether nothing is lost when t advances.
  bool may_leave_column(std::size_t i, std::size_t j) const {
    std::size_t column = width_ - 1 - j;
    Word word = words_[column / kWordBits * height_ + (height_ - 1 - i)];
    return (word >> (column % kWordBits) & 1) != 0;
  }

 private:
  std::size_t height_;
  std::size_t width_;
  std::unique_ptr<Word[]> words_;
};

constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

// The end of the leftmost way to read s as a subsequence of t; kNowhere when there is none.
std::size_t subsequence_end(Text s, Text t) {
  std::size_t at = 0;
  for (char c : s) {
    if (at == t.size()) return kNowhere;
    if (t[at] != c) {
      const void* place = std::memchr(t.data() + at, byte_of(c), t.size() - at);
      if (place == nullptr) return kNowhere;
      at = static_cast<std::size_t>(static_cast<const char*>(place) - t.data());
    }
    ++at;
  }
  return at;
}

// The first and last position, 1-based, of each byte in t behind its first `skipped` bytes; 0 when
// there is none.
struct Places {
  Places(Text t, std::size_t skipped) {
    for (std::size_t j = skipped; j < t.size(); ++j) {
      if (first[byte_of(t[j])] == 0) first[byte_of(t[j])] = j + 1;
      last[byte_of(t[j])] = j + 1;
    }
  }
  std::array<std::size_t, 256> first = {};
  std::array<std::size_t, 256> last = {};
};

// The threshold method where the lengths m and n of the texts differ by two or more. Only the last
// entry, m, ever exceeds the mark m + 1, and only while the entry below it is m + 1 or, once all
// but the last byte of s have been found in order, the end of that way.
std::size_t length_beyond_mark(Text s, Text t,
                               const std::function<void(const ThresholdBug&)>& report) {
  std::size_t m = s.size();
  Text near = t.substr(0, m);
  Places beyond(t, m + 1);
  std::size_t end = subsequence_end(s.substr(0, m - 1), near);
  bool is_far = false;
  std::size_t top = m + 1;
  for (std::size_t i = 0; i < m; ++i) {
    unsigned char c = byte_of(s[i]);
    if (beyond.last[c] == 0) continue;
    is_far = true;
    std::size_t below = i == m - 1 && end != kNowhere ? end : m + 1;
    if (beyond.last[c] > top) report({below, top, beyond.last[c], m});
    top = beyond.first[c];
  }
  if (end == kNowhere) return is_far ? m : common_subsequence_length(s, near);
  if (near.find(s[m - 1], end) != Text::npos) return m;
  if (s[m - 1] == t[m]) return m - 1;
  return is_far ? m : m - 1;
}

}  // namespace

bool is_subsequence(Text s, Text t) { return subsequence_end(s, t) != kNowhere; }

std::size_t common_subsequence_length(Text s, Text t) {
  CommonEnds ends = strip_common_ends(s, t);
  std::vector<std::uint8_t> carry(s.size());
  std::size_t length = ends.prefix + ends.suffix;
  for (std::size_t b = 0; b < num_blocks(t); ++b) {
    Text block = t.substr(b * kWordBits, kWordBits);
    length +=
        static_cast<std::size_t>(std::popcount(~cross_columns(block, s, carry.data(), nullptr)));
  }
  return length;
}

std::string longest_common_subsequence(Text s, Text t) {
  Text whole = s;
  CommonEnds ends = strip_common_ends(s, t);
  std::string result(whole.substr(0, ends.prefix));
  if (!s.empty() && !t.empty()) {
    SuffixTable table(s, t);
    for (std::size_t i = 0, j = 0; i < s.size() && j < t.size();) {
      if (s[i] == t[j]) {
        result += s[i];
        ++i;
        ++j;
      } else if (table.may_leave_column(i, j)) {
        ++j;
      } else {
        ++i;
      }
    }
  }
  return result.append(whole.substr(whole.size() - ends.suffix));
}

std::size_t threshold_length(Text s, Text t,
                             const std::function<void(const ThresholdBug&)>& report) {
  if (s.size() > t.size()) std::swap(s, t);
  std::size_t m = s.size();
  std::size_t n = t.size();
  if (m == 0) return 0;
  if (m == 1) return t.find(s[0]) != Text::npos ? 1 : 0;
  if (3 * m <= 2 * n && is_subsequence(s, t)) return m;
  if (n >= m + 2) return length_beyond_mark(s, t, report);
  return common_subsequence_length(s, t.substr(0, m));
}

}  // namespace vstring
