// Letter statistics beside the plain loops that compute the same: one table of counters, sums in
// doubles, a flag a byte value, all pairs of runs. Rows end in the size of the text.
#include <algorithm>
#include <random>
#include <string>

#include "bench/ratio.h"
#include "bench/texts.h"
#include "tests/reference/statistics.h"
#include "vstring/commands/characters.h"
#include "vstring/commands/statistics.h"

namespace {

using bench::english;
using vstring::Text;

std::string equal_bytes(std::size_t size) { return std::string(size, 'a'); }

std::string random_bytes(std::size_t size) {
  std::mt19937 random(1);
  std::string text(size, ' ');
  for (char& c : text) c = static_cast<char>(1 + random() % 255);
  return text;
}

// Work on a short text is repeated until a round has handled about this many bytes.
constexpr std::size_t kRoundBytes = 1 << 17;

using MakeText = std::string (*)(std::size_t size);

template <class Ours, class Peer>
void compare_on(benchmark::State& state, MakeText make, Ours ours, Peer peer) {
  auto size = static_cast<std::size_t>(state.range(0));
  std::string text = make(size);
  std::size_t rounds = std::max<std::size_t>(1, kRoundBytes / (size + 64));
  auto repeat = [&](auto& measure) {
    for (std::size_t i = 0; i < rounds; ++i) {
      auto result = measure(Text(text));
      benchmark::DoNotOptimize(result);
      benchmark::ClobberMemory();
    }
    return text.size();
  };
  bench::compare(
      state, static_cast<double>(rounds * size), [&] { return repeat(ours); },
      [&] { return repeat(peer); });
}

void BM_histogram(benchmark::State& state, MakeText make) {
  compare_on(state, make, vstring::make_histogram, reference::histogram);
}

void BM_entropy(benchmark::State& state, MakeText make) {
  compare_on(state, make, vstring::entropy, reference::entropy);
}

void BM_scc(benchmark::State& state, MakeText make) {
  compare_on(state, make, vstring::serial_correlation, reference::serial_correlation);
}

void BM_ndc(benchmark::State& state, MakeText make) {
  compare_on(state, make, vstring::num_distinct, reference::num_distinct);
}

// No run of a text under a key that is as long as the text itself ends the search early: here the
// only repetitions are those of one long period.
std::string periodic(std::size_t size) {
  std::string period = random_bytes(size / 3 + 1);
  return (period + period + period).substr(0, size);
}

void BM_kasiski(benchmark::State& state, MakeText make) {
  compare_on(state, make, vstring::kasiski_divisor, reference::kasiski_divisor);
}

std::string visible(Text text) {
  std::string result(vstring::visible_size(text), ' ');
  vstring::write_visible(text, result.data());
  return result;
}

void BM_vis(benchmark::State& state, MakeText make) {
  compare_on(state, make, visible, reference::visible);
}

constexpr int kSizes[] = {16, 256, 4096, 1 << 20};

void texts(benchmark::internal::Benchmark* row) {
  for (int size : kSizes) row->Arg(size);
  row->UseManualTime();
}

#define STATISTICS_ROWS(what)                        \
  BENCHMARK_CAPTURE(BM_##what, english, english)     \
      ->Name("statistics/" #what "/plain/english")   \
      ->Apply(texts);                                \
  BENCHMARK_CAPTURE(BM_##what, equal, equal_bytes)   \
      ->Name("statistics/" #what "/plain/equal")     \
      ->Apply(texts);                                \
  BENCHMARK_CAPTURE(BM_##what, random, random_bytes) \
      ->Name("statistics/" #what "/plain/random")    \
      ->Apply(texts)

STATISTICS_ROWS(histogram);
STATISTICS_ROWS(entropy);
STATISTICS_ROWS(scc);
STATISTICS_ROWS(ndc);
STATISTICS_ROWS(vis);
BENCHMARK_CAPTURE(BM_kasiski, periodic, periodic)
    ->Name("statistics/kasiski/all-pairs/periodic")
    ->Arg(64)
    ->Arg(4096)
    ->Arg(16384)
    ->UseManualTime();

}  // namespace
