// Approximate, mismatch and wildcard search beside the plain column of distances, the plain count
// of mismatches and fnmatch.
#include <fnmatch.h>

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string>
#include <vector>

#include "bench/ratio.h"
#include "bench/texts.h"
#include "vstring/search/approximate.h"
#include "vstring/search/mismatch.h"
#include "vstring/search/wildcard.h"

namespace {

using bench::licence;
using vstring::Text;

Text start_of_licence(std::size_t length) { return Text(licence()).substr(100, length); }

std::size_t count_by_column(Text pattern, Text text, std::size_t k) {
  std::vector<unsigned> column(pattern.size() + 1);
  std::iota(column.begin(), column.end(), 0U);
  std::size_t last = std::min(k + 1, pattern.size());
  std::size_t count = 0;
  for (char c : text) {
    unsigned diagonal = 0;
    for (std::size_t i = 1; i <= last; ++i) {
      unsigned left = column[i];
      column[i] = pattern[i - 1] == c ? diagonal : 1 + std::min({diagonal, left, column[i - 1]});
      diagonal = left;
    }
    while (column[last] > k) --last;
    if (last == pattern.size()) {
      ++count;
    } else {
      ++last;
    }
  }
  return count;
}

using Ends = void(Text, Text, std::size_t, const vstring::ReportEnd&);

void approximate(benchmark::State& state, Ends* ends, std::size_t length, std::size_t k) {
  Text pattern = start_of_licence(length);
  auto ours = [=] {
    std::size_t count = 0;
    ends(pattern, licence(), k, [&](std::size_t) { return ++count != 0; });
    return count;
  };
  auto peer = [=] { return count_by_column(pattern, licence(), k); };
  bench::compare(state, static_cast<double>(licence().size()), ours, peer);
}

std::size_t count_mismatching(Text pattern, Text text, std::size_t k) {
  std::size_t found = 0;
  for (std::size_t i = 0; i + pattern.size() <= text.size(); ++i) {
    std::size_t count = 0;
    for (std::size_t j = 0; j < pattern.size() && count <= k; ++j) {
      count += text[i + j] != pattern[j] ? 1 : 0;
    }
    found += count <= k ? 1 : 0;
  }
  return found;
}

void mismatch(benchmark::State& state, std::size_t length, std::size_t k) {
  Text pattern = start_of_licence(length);
  auto ours = [=] {
    std::size_t found = 0;
    vstring::for_each_mismatching(pattern, licence(), k,
                                  [&](std::size_t, std::size_t) { return ++found != 0; });
    return found;
  };
  auto peer = [=] { return count_mismatching(pattern, licence(), k); };
  bench::compare(state, static_cast<double>(licence().size()), ours, peer);
}

void wildcard(benchmark::State& state, const std::string& pattern, const std::string& text) {
  auto ours = [&] { return vstring::matches_wildcard(pattern, text); };
  auto peer = [&] { return fnmatch(pattern.c_str(), text.c_str(), 0) == 0; };
  bench::compare(state, static_cast<double>(text.size()), ours, peer);
}

const std::string many_a(5000, 'a');

std::string many_stars() {
  std::string pattern;
  for (int i = 0; i < 200; ++i) pattern += "*a";
  return pattern + "b";
}

BENCHMARK_CAPTURE(approximate, asearch 11 bytes k = 0 / column, vstring::prefixed_ends, 11, 0)
    ->UseManualTime();
BENCHMARK_CAPTURE(approximate, asearch 11 bytes k = 2 / column, vstring::prefixed_ends, 11, 2)
    ->UseManualTime();
BENCHMARK_CAPTURE(approximate, asearch 30 bytes k = 12 / column, vstring::prefixed_ends, 30, 12)
    ->UseManualTime();
BENCHMARK_CAPTURE(approximate, asearch 60 bytes k = 5 / column, vstring::approximate_ends, 60, 5)
    ->UseManualTime();
BENCHMARK_CAPTURE(approximate, asearch 1000 bytes k = 5 / column, vstring::approximate_ends, 1000,
                  5)
    ->UseManualTime();
BENCHMARK_CAPTURE(approximate, asearch 1000 bytes k = 400 / column, vstring::approximate_ends, 1000,
                  400)
    ->UseManualTime();
BENCHMARK_CAPTURE(mismatch, hsearch 8 bytes k = 2 / plain, 8, 2)->UseManualTime();
BENCHMARK_CAPTURE(mismatch, hsearch 100 bytes k = 5 / plain, 100, 5)->UseManualTime();
BENCHMARK_CAPTURE(mismatch, hsearch 1000 bytes k = 2 / plain, 1000, 2)->UseManualTime();
BENCHMARK_CAPTURE(mismatch, hsearch 1000 bytes k = 500 / plain, 1000, 500)->UseManualTime();
BENCHMARK_CAPTURE(wildcard, wild word / fnmatch, "*warranty*", licence())->UseManualTime();
BENCHMARK_CAPTURE(wildcard, wild words / fnmatch, "*free*soft?are*[A-C]opy*", licence())
    ->UseManualTime();
BENCHMARK_CAPTURE(wildcard, wild absent / fnmatch, "*nowhere to be found*", licence())
    ->UseManualTime();
BENCHMARK_CAPTURE(wildcard, wild stars / fnmatch, many_stars(), many_a)->UseManualTime();

}  // namespace
