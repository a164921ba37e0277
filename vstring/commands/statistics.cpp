// Letter statistics. Tests: tests/unit/statistics_test.cpp, docs/commands/statistics.md.
#include "vstring/commands/statistics.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <new>
#include <numeric>

namespace vstring {

double entropy(Text text) {
  constexpr double kLog2Of10 = 3.321928094887362;
  auto length = static_cast<double>(text.size());
  double sum = 0.0;
  for (std::uint32_t count : make_histogram(text)) {
    if (count == 0) continue;
    double p = count / length;
    sum += p * (std::log10(p) * kLog2Of10);
  }
  return -sum;
}

double index_of_coincidence(Text text) {
  std::uint32_t pairs = 0;  // wraps for very long texts, as it always has
  for (std::uint32_t count : make_histogram(text)) pairs += count * (count - 1);
  auto length = static_cast<double>(text.size());
  return pairs / (length * (length - 1.0));
}

double mutual_index_of_coincidence(Text s, Text t) {
  Histogram s_counts = make_histogram(s);
  Histogram t_counts = make_histogram(t);
  double pairs = 0.0;
  for (std::size_t c = 0; c < 256; ++c) pairs += static_cast<double>(s_counts[c]) * t_counts[c];
  return pairs / (static_cast<double>(s.size()) * static_cast<double>(t.size()));
}

double mean_byte(Text text) {
  Histogram counts = make_histogram(text);
  double sum = 0.0;
  for (std::size_t c = 1; c < 256; ++c) sum += static_cast<double>(c) * counts[c];
  return sum / static_cast<double>(text.size());
}

ChiSquare chi_square(Text text) {
  struct Row {
    double critical;
    double probability;
  };
  constexpr Row kTable[] = {{3.719, 0.0001}, {3.2905, 0.0005}, {3.0902, 0.001}, {2.5758, 0.005},
                            {2.3263, 0.01},  {1.96, 0.025},    {1.6449, 0.05},  {1.2816, 0.1},
                            {0.6745, 0.25},  {0.0, 0.5}};
  constexpr double kSqrt509 = 22.516660498395403;  // of twice the degrees of freedom, less one
  Histogram counts = make_histogram(text);
  double expected = static_cast<double>(text.size()) / 255.0;
  double value = 0.0;
  for (std::size_t c = 1; c < 256; ++c) {
    double difference = counts[c] - expected;
    value += difference * difference / expected;
  }
  double z = std::sqrt(2.0 * value) - kSqrt509;
  double probability = 0.5;
  for (const Row& row : kTable) {
    if (std::fabs(z) <= row.critical || std::isnan(z)) continue;
    probability = row.probability;
    break;
  }
  return {value, z >= 0.0 ? probability : 1.0 - probability};
}

// The sums of products stay far below 2^53, so integers give what doubles would.
double serial_correlation(Text text) {
  std::uint64_t neighbours = 0;
  std::uint64_t squares = 0;
  std::uint64_t sum = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::uint64_t c = byte_of(text[i]);
    std::uint64_t next = byte_of(text[i + 1 < text.size() ? i + 1 : 0]);
    neighbours += c * next;
    squares += c * c;
    sum += c;
  }
  auto length = static_cast<double>(text.size());
  auto total = static_cast<double>(sum);
  double denominator = length * static_cast<double>(squares) - total * total;
  if (denominator == 0.0) return kNoCorrelation;
  return (length * static_cast<double>(neighbours) - total * total) / denominator;
}

int num_distinct(Text text) {
  bool is_seen[256] = {};
  int count = 0;
  for (char c : text) {
    bool& seen = is_seen[byte_of(c)];
    count += seen ? 0 : 1;
    seen = true;
    if (count == 255) break;  // there is no byte 0 in a text
  }
  return count;
}

namespace {

// Where each run of three bytes was seen first; open addressing, 0 marks a free slot (no run is 0).
class FirstPlaces {
 public:
  explicit FirstPlaces(std::size_t num_runs)
      : mask_(std::bit_ceil(2 * std::min(num_runs, std::size_t{1} << 24)) - 1),
        slots_(static_cast<Slot*>(std::calloc(mask_ + 1, sizeof(Slot))), std::free) {
    if (slots_ == nullptr) throw std::bad_alloc();
  }

  /// The first place of this run, which is now `place` if `may_add` and there was none; else -1.
  std::int32_t find(std::uint32_t run, std::int32_t place, bool may_add) {
    std::size_t i = run * std::size_t{0x9e3779b1} >> 7 & mask_;
    while (slots_[i].run != 0 && slots_[i].run != run) i = (i + 1) & mask_;
    if (slots_[i].run == run) return slots_[i].place;
    if (may_add) slots_[i] = {run, place};
    return -1;
  }

 private:
  struct Slot {
    std::uint32_t run;
    std::int32_t place;
  };
  std::size_t mask_;
  std::unique_ptr<Slot[], decltype(&std::free)> slots_;
};

}  // namespace

// All distances between places of one run are sums and differences of their distances to the first
// place, so those are enough for the divisor.
std::int32_t kasiski_divisor(Text text) {
  if (text.size() < 4) return 0;
  FirstPlaces places(text.size());
  std::int32_t divisor = 0;
  for (std::size_t i = 0; i + 2 < text.size(); ++i) {
    std::uint32_t run = std::uint32_t{byte_of(text[i])} << 16 |
                        std::uint32_t{byte_of(text[i + 1])} << 8 | byte_of(text[i + 2]);
    auto place = static_cast<std::int32_t>(i);
    std::int32_t first = places.find(run, place, i < text.size() / 2);
    if (first < 0) continue;
    divisor = std::gcd(divisor, place - first);
    if (divisor == 1) return 1;
  }
  return divisor;
}

}  // namespace vstring
