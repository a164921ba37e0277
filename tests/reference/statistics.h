// Letter statistics as their rules read: one byte after the other, sums in doubles, all pairs of
// runs.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <numeric>
#include <string>

#include "vstring/core/histogram.h"
#include "vstring/core/text.h"

namespace reference {

using vstring::byte_of;
using vstring::Text;

inline vstring::Histogram histogram(Text text) {
  vstring::Histogram counts{};
  for (char c : text) ++counts[byte_of(c)];
  return counts;
}

inline double entropy(Text text) {
  double sum = 0.0;
  for (std::uint32_t count : histogram(text)) {
    double p = count / static_cast<double>(text.size());
    if (count > 0) sum += p * (std::log10(p) * 3.321928094887362);
  }
  return -sum;
}

inline double serial_correlation(Text text) {
  double t1 = 0.0, t2 = 0.0, t3 = 0.0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    double x = byte_of(text[i]);
    double next = byte_of(i + 1 < text.size() ? text[i + 1] : text[0]);
    t1 += x * next;
    t2 += x * x;
    t3 += x;
  }
  auto n = static_cast<double>(text.size());
  double denominator = n * t2 - t3 * t3;
  return denominator == 0.0 ? -100000.0 : (n * t1 - t3 * t3) / denominator;
}

inline int num_distinct(Text text) {
  bool is_seen[256] = {};
  int count = 0;
  for (char c : text) {
    count += is_seen[byte_of(c)] ? 0 : 1;
    is_seen[byte_of(c)] = true;
  }
  return count;
}

inline std::int32_t kasiski_divisor(Text s) {
  std::int32_t divisor = 0;
  for (std::size_t i = 0; i < s.size() / 2; ++i) {
    for (std::size_t j = i + 1; j < s.size(); ++j) {
      std::size_t run = 0;
      while (run < 3 && j + run < s.size() && s[i + run] == s[j + run]) ++run;
      if (run == 3) divisor = std::gcd(divisor, static_cast<std::int32_t>(j - i));
      if (divisor == 1) return 1;
    }
  }
  return divisor;
}

inline std::string visible(Text text) {
  std::string result;
  for (char c : text) {
    std::size_t special = Text("\\\t\n\r").find(c);
    char escape[5];
    if (special != Text::npos) {
      result += {'\\', "\\tnr"[special]};
    } else if (c >= ' ' && c <= '~') {
      result += c;
    } else {
      std::snprintf(escape, sizeof escape, "\\x%02x", unsigned{byte_of(c)});
      result += escape;
    }
  }
  return result;
}

}  // namespace reference
