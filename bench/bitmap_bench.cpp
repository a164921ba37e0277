// Bitmaps beside memcpy and a loop over bytes.
#include <bit>
#include <cstddef>
#include <cstring>
#include <vector>

#include "bench/ratio.h"
#include "vstring/bitmap.h"

namespace {

constexpr std::uint32_t kBits = 1U << 30;
constexpr std::size_t kBytes = kBits / 8;

void combine(benchmark::State& state) {
  Bitmap* a = bm_rand(kBits);
  Bitmap* b = bm_rand(kBits);
  bench::compare(
      state, kBytes, [&] { return bm_oreq(a, b); },
      [&] { return std::memcpy(a->data, b->data, kBytes); });
  bm_free(a);
  bm_free(b);
}
BENCHMARK(combine)->Name("bitmap/or of 2^30 bits/memcpy")->UseManualTime()->Iterations(5);

void count(benchmark::State& state) {
  Bitmap* a = bm_rand(kBits);
  bench::compare(
      state, kBytes, [&] { return bm_count_bits(a); },
      [&] {
        std::size_t sum = 0;
        for (std::size_t i = 0; i < kBytes; ++i) {
          sum += static_cast<std::size_t>(std::popcount(a->data[i]));
        }
        return sum;
      });
  bm_free(a);
}
BENCHMARK(count)->Name("bitmap/count of 2^30 bits/bytes")->UseManualTime()->Iterations(5);

}  // namespace
