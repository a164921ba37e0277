// Distances and common parts beside the plain tables and edlib.
#include <edlib.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include "bench/ratio.h"
#include "tests/reference/similarity.h"
#include "vstring/similarity/byte_sums.h"
#include "vstring/similarity/common_subsequence.h"
#include "vstring/similarity/common_substring.h"
#include "vstring/similarity/edit_distance.h"

namespace {

using vstring::Text;

std::string letters(std::size_t length, unsigned seed) {
  std::mt19937 random(seed);
  std::string text(length, ' ');
  for (char& c : text) c = static_cast<char>('a' + random() % 4);
  return text;
}

// The text with one letter in fifty changed.
std::string edited(std::string text) {
  for (std::size_t i = 0; i < text.size(); i += 50) text[i] = 'x';
  return text;
}

int distance_by_edlib(Text s, Text t) {
  EdlibAlignResult result = edlibAlign(s.data(), static_cast<int>(s.size()), t.data(),
                                       static_cast<int>(t.size()), edlibDefaultAlignConfig());
  int distance = result.editDistance;
  edlibFreeAlignResult(result);
  return distance;
}

template <class Peer>
void distance(benchmark::State& state, Peer peer, const std::string& s, const std::string& t,
              int times) {
  auto repeated = [times](auto work) {
    return [=] {
      std::size_t sum = 0;
      for (int i = 0; i < times; ++i) sum += static_cast<std::size_t>(work());
      return sum;
    };
  };
  bench::compare(state, static_cast<double>(s.size()) * times,
                 repeated([&] { return vstring::edit_distance(s, t); }),
                 repeated([&] { return peer(s, t); }));
}

// Length of the common part by one row of a table; what a cell is, `cell` says.
std::size_t substring_by_rows(Text s, Text t) {
  std::vector<std::uint32_t> row(t.size() + 1);
  std::uint32_t best = 0;
  for (std::size_t i = s.size(); i-- > 0;) {
    for (std::size_t j = 0; j < t.size(); ++j) {
      row[j] = s[i] == t[j] ? 1 + row[j + 1] : 0;
      best = std::max(best, row[j]);
    }
  }
  return best;
}

std::size_t subsequence_by_rows(Text s, Text t) {
  std::vector<std::uint32_t> above(t.size() + 1), row(t.size() + 1);
  for (char c : s) {
    above.swap(row);
    for (std::size_t j = 1; j <= t.size(); ++j) {
      row[j] = c == t[j - 1] ? above[j - 1] + 1 : std::max(above[j], row[j - 1]);
    }
  }
  return row[t.size()];
}

int add_rows() {
  auto add = [](const char* name, auto row) {
    benchmark::RegisterBenchmark(name, row)->UseManualTime();
  };
  for (bool is_edlib : {false, true}) {
    auto peer = [is_edlib](Text s, Text t) {
      return is_edlib ? static_cast<std::size_t>(distance_by_edlib(s, t))
                      : reference::edit_distance(s, t);
    };
    std::string end = is_edlib ? "edlib" : "rows";
    auto add_distance = [&](const std::string& what, std::string s, std::string t, int times) {
      add(("similarity/levenshtein " + what + "/" + end).c_str(),
          [=](benchmark::State& state) { distance(state, peer, s, t, times); });
    };
    add_distance("8", letters(8, 1), letters(8, 2), 10000);
    add_distance("60", letters(60, 1), letters(60, 2), 1000);
    add_distance("1k", letters(1000, 1), letters(1000, 2), 1);
    add_distance("10k", letters(10000, 1), letters(10000, 2), 1);
    add_distance("10k near", letters(10000, 1), edited(letters(10000, 1)), 1);
  }
  static const std::string s = letters(10000, 1), t = letters(10000, 2);
  add("similarity/lcsubseq/rows of lengths", [](benchmark::State& state) {
    bench::compare(
        state, 1e4, [] { return vstring::longest_common_subsequence(s, t).size(); },
        [] { return subsequence_by_rows(s, t); });
  });
  add("similarity/lcsubseqlen/rows of lengths", [](benchmark::State& state) {
    bench::compare(
        state, 1e4, [] { return vstring::common_subsequence_length(s, t); },
        [] { return subsequence_by_rows(s, t); });
  });
  add("similarity/lcsubstr/rows of runs", [](benchmark::State& state) {
    bench::compare(
        state, 1e4, [] { return vstring::longest_common_substring(s, t).size(); },
        [] { return substring_by_rows(s, t); });
  });
  static const std::string long_s = letters(1 << 20, 3), long_t = letters(1 << 20, 4);
  add("similarity/hd/loop", [](benchmark::State& state) {
    bench::compare(
        state, double(1 << 20), [] { return vstring::hamming_distance(long_s, long_t); },
        [] {
          std::size_t sum = 0;
          for (std::size_t i = 0; i < long_s.size(); ++i) sum += long_s[i] != long_t[i] ? 1U : 0U;
          return sum;
        });
  });
  add("similarity/leewt/loop", [](benchmark::State& state) {
    bench::compare(
        state, double(1 << 20), [] { return vstring::lee_weight(long_s); },
        [] {
          std::size_t sum = 0;
          for (char c : long_s) {
            unsigned byte = vstring::byte_of(c);
            sum += std::min(byte, 256 - byte);
          }
          return sum;
        });
  });
  return 0;
}

const int rows_added = add_rows();

}  // namespace
