// How all benchmarks compare: ours and the peer in turn, in one run, so that the ratio holds when
// the machine's speed drifts. Entry point: compare.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace bench {

template <class Work>
double seconds_of(Work& work) {
  auto start = std::chrono::steady_clock::now();
  benchmark::DoNotOptimize(work());
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline double median(std::vector<double> values) {
  auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// Times `ours` against `peer`, callables that give some value. The row's time is ours; its
/// counters tell the speed of both over `bytes` bytes and how many times as long the peer takes
/// (the median over the pairs). Work that lasts less than a microsecond should repeat itself inside
/// the callable. To be registered with UseManualTime().
template <class Ours, class Peer>
void compare(benchmark::State& state, double bytes, Ours ours, Peer peer) {
  std::vector<double> ours_times, peer_times, ratios;
  for (auto _ : state) {
    double a = seconds_of(ours);
    double b = seconds_of(peer);
    state.SetIterationTime(a);
    ours_times.push_back(a);
    peer_times.push_back(b);
    ratios.push_back(b / a);
  }
  state.counters["GB/s"] = bytes / median(ours_times) / 1e9;
  state.counters["peer_GB/s"] = bytes / median(peer_times) / 1e9;
  state.counters["ratio"] = median(ratios);
}

}  // namespace bench
