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

#ifdef __x86_64__
#include <immintrin.h>
#endif

namespace vstring {
namespace {

using Word = std::uint64_t;
constexpr std::size_t kWordBits = 64;

std::size_t num_words(std::size_t num_bits) { return (num_bits + kWordBits - 1) / kWordBits; }

// The sum of two words and a carry, which becomes that of the sum.
inline Word add(Word a, Word b, unsigned char& carry) {
#ifdef __x86_64__
  unsigned long long sum = 0;
  carry = _addcarry_u64(carry, a, b, &sum);
  return sum;
#else
  Word sum = 0;
  bool first = __builtin_add_overflow(a, b, &sum);
  bool second = __builtin_add_overflow(sum, Word{carry}, &sum);
  carry = first || second ? 1 : 0;
  return sum;
#endif
}

// A strip of columns of the table, taken through all rows at once: one word's rows wait for each
// other, several words side by side do not.
template <std::size_t kWords>
struct Strip {
  static constexpr std::size_t kColumns = kWords * kWordBits;
  // The differences along a row, a bit a column, are 0 where the length grows.
  using Row = std::array<Word, kWords>;

  static std::size_t count(Text columns) { return (columns.size() + kColumns - 1) / kColumns; }
  static Text columns(Text all, std::size_t i) { return all.substr(i * kColumns, kColumns); }

  // Bit i of the carries is what passes from one strip to the next in row i: `carry_in` comes from
  // the strip before, `carry_out`, which may be the same, takes what goes to the next. The rows go
  // to `rows`, when that is not null. Returns the last one.
  static Row cross(Text columns, Text row_bytes, const Word* carry_in, Word* carry_out, Row* rows) {
    Row masks[256] = {};
    for (std::size_t i = 0; i < columns.size(); ++i) {
      masks[byte_of(columns[i])][i / kWordBits] |= Word{1} << (i % kWordBits);
    }
    Row same;
    same.fill(~Word{0});
    for (std::size_t start = 0; start < row_bytes.size(); start += kWordBits) {
      Word in = *carry_in++;
      Word out = 0;
      std::size_t end = std::min(start + kWordBits, row_bytes.size());
      for (std::size_t i = start; i < end; ++i) {
        const Row& mask = masks[byte_of(row_bytes[i])];
        auto carry = static_cast<unsigned char>(in >> (i % kWordBits) & 1);
        for (std::size_t w = 0; w < kWords; ++w) {
          Word matching = same[w] & mask[w];
          same[w] = add(same[w], matching, carry) | (same[w] ^ matching);
          if (rows != nullptr) rows[i][w] = same[w];
        }
        out |= Word{carry} << (i % kWordBits);
      }
      *carry_out++ = out;
    }
    return same;
  }
};

using Narrow = Strip<1>;
using Wide = Strip<4>;

template <class Strip>
std::size_t subsequence_length(Text s, Text t) {
  std::vector<Word> carry(num_words(s.size()));
  std::size_t length = 0;
  for (std::size_t i = 0; i < Strip::count(t); ++i) {
    Text columns = Strip::columns(t, i);
    for (Word word : Strip::cross(columns, s, carry.data(), carry.data(), nullptr)) {
      length += static_cast<std::size_t>(std::popcount(~word));
    }
  }
  return length;
}

// The table of all pairs of suffixes: row i belongs to s[i ..], column j to t[j ..]. What is kept
// is what passes between strips; the rows of a strip are made of that again when they are asked
// for.
template <class Strip>
class SuffixTable {
 public:
  SuffixTable(Text s, Text t)
      : row_bytes_(s.rbegin(), s.rend()),
        columns_(t.rbegin(), t.rend()),
        carry_size_(num_words(s.size())),
        strip_(Strip::count(t) - 1),
        rows_(s.size()) {
    carries_ = std::make_unique_for_overwrite<Word[]>(checked_product(strip_ + 2, carry_size_));
    std::fill_n(carries_.get(), carry_size_, 0);
    for (std::size_t i = 0; i < strip_; ++i) cross(i, row_bytes_, nullptr);
    cross(strip_, row_bytes_, rows_.data());
  }

  /// Whether nothing is lost when t advances. From call to call i and j do not fall.
  bool may_leave_column(std::size_t i, std::size_t j) {
    std::size_t row = row_bytes_.size() - 1 - i;
    std::size_t column = columns_.size() - 1 - j;
    if (column / Strip::kColumns != strip_) {
      strip_ = column / Strip::kColumns;
      cross(strip_, Text(row_bytes_).substr(0, row + 1), rows_.data());
    }
    std::size_t bit = column % Strip::kColumns;
    return (rows_[row][bit / kWordBits] >> (bit % kWordBits) & 1) != 0;
  }

 private:
  Word* carry(std::size_t i) { return carries_.get() + i * carry_size_; }

  // When it comes to a strip again, the carries behind it are no longer needed.
  void cross(std::size_t i, Text row_bytes, typename Strip::Row* rows) {
    Strip::cross(Strip::columns(columns_, i), row_bytes, carry(i), carry(i + 1), rows);
  }

  std::string row_bytes_;
  std::string columns_;
  std::size_t carry_size_;
  std::unique_ptr<Word[]> carries_;  // into the first strip, into the second one, ...
  std::size_t strip_;                // whose rows are at hand, at first the last one
  std::vector<typename Strip::Row> rows_;
};

template <class Strip>
void append_subsequence(Text s, Text t, std::string& result) {
  SuffixTable<Strip> table(s, t);
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
  bool is_narrow = t.size() <= Narrow::kColumns;
  return ends.prefix + ends.suffix +
         (is_narrow ? subsequence_length<Narrow>(s, t) : subsequence_length<Wide>(s, t));
}

std::string longest_common_subsequence(Text s, Text t) {
  Text whole = s;
  CommonEnds ends = strip_common_ends(s, t);
  std::string result(whole.substr(0, ends.prefix));
  if (!s.empty() && !t.empty()) {
    bool is_narrow = t.size() <= Narrow::kColumns;
    (is_narrow ? append_subsequence<Narrow> : append_subsequence<Wide>)(s, t, result);
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
