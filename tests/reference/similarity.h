// The plain tables that the fast similarity algorithms are compared with.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "vstring/core/text.h"
#include "vstring/similarity/common_subsequence.h"

namespace reference {

using vstring::Text;
using Table = std::vector<std::vector<unsigned>>;

inline Table zero_table(Text s, Text t) {
  return Table(s.size() + 1, std::vector<unsigned>(t.size() + 1));
}

inline std::size_t edit_distance(Text s, Text t) {
  std::vector<unsigned> above(t.size() + 1), row(t.size() + 1);
  for (std::size_t j = 0; j <= t.size(); ++j) row[j] = static_cast<unsigned>(j);
  for (std::size_t i = 1; i <= s.size(); ++i) {
    above.swap(row);
    row[0] = static_cast<unsigned>(i);
    for (std::size_t j = 1; j <= t.size(); ++j) {
      row[j] = std::min({above[j] + 1, row[j - 1] + 1, above[j - 1] + (s[i - 1] != t[j - 1])});
    }
  }
  return row[t.size()];
}

inline std::string common_subsequence(Text s, Text t) {
  Table length = zero_table(s, t);
  for (std::size_t i = s.size(); i-- > 0;) {
    for (std::size_t j = t.size(); j-- > 0;) {
      length[i][j] =
          s[i] == t[j] ? 1 + length[i + 1][j + 1] : std::max(length[i + 1][j], length[i][j + 1]);
    }
  }
  std::string result;
  for (std::size_t i = 0, j = 0; i < s.size() && j < t.size();) {
    if (s[i] == t[j]) {
      result += s[i];
      ++i, ++j;
    } else {
      ++(length[i][j + 1] >= length[i + 1][j] ? j : i);
    }
  }
  return result;
}

inline Text common_substring(Text s, Text t) {
  Table length = zero_table(s, t);
  std::size_t best = 0, start = 0;
  for (std::size_t i = s.size(); i-- > 0;) {
    for (std::size_t j = t.size(); j-- > 0;) {
      length[i][j] = s[i] == t[j] ? 1 + length[i + 1][j + 1] : 0;
      if (length[i][j] >= best) best = length[i][j], start = i;
    }
  }
  return s.substr(start, best);
}

inline std::size_t threshold_length(Text s, Text t, std::vector<vstring::ThresholdBug>& bugs) {
  if (s.size() > t.size()) std::swap(s, t);
  std::size_t m = s.size();
  if (m == 0) return 0;
  if (m == 1) return t.find(s[0]) != Text::npos;
  if (3 * m <= 2 * t.size() && common_subsequence(s, t).size() == m) return m;
  std::vector<std::size_t> entries(m + 1, m + 1);
  entries[0] = 0;
  for (char c : s) {
    for (std::size_t j = t.size(); j > 0; --j) {
      if (t[j - 1] != c) continue;
      std::size_t lo = 0, hi = m;
      while (lo < hi) {
        std::size_t middle = (lo + hi) / 2;
        entries[middle] >= j ? hi = middle : lo = middle + 1;
      }
      if (entries[hi - 1] >= j || entries[hi] < j) {
        bugs.push_back({entries[hi - 1], entries[hi], j, hi});
      }
      entries[hi] = j;
    }
  }
  while (m > 0 && entries[m] == s.size() + 1) --m;
  return m;
}

}  // namespace reference
