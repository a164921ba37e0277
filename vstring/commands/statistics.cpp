// Letter statistics. Tests: tests/unit/statistics_test.cpp, docs/commands/statistics.md.
#include "vstring/commands/statistics.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <new>
#include <numeric>

#include "vstring/commands/neighbour_sums.h"
#include "vstring/core/byte_set.h"

namespace vstring {

double entropy(Text text) {
  constexpr double kLog2Of10 = 3.321928094887362;
  auto length = static_cast<double>(text.size());
  double sum = 0.0;
  for_each_count(make_histogram(text), [&](unsigned char, std::uint32_t count) {
    double p = count / length;
    sum += p * (std::log10(p) * kLog2Of10);
  });
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
  return static_cast<double>(byte_sum(text)) / static_cast<double>(text.size());
}

ChiSquare chi_square(Text text) {
  struct Row {
    double critical;
    double probability;
  };
  constexpr Row kTable[] = {{3.719, 0.0001}, {3.2905, 0.0005}, {3.0902, 0.001},
                            {2.5758, 0.005}, {2.3263, 0.01},   {1.96, 0.025},
                            {1.6449, 0.05},  {1.2816, 0.1},    {0.6745, 0.25}};
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

double serial_correlation(Text text) {
  NeighbourSums sums = neighbour_sums(text);
  auto length = static_cast<double>(text.size());
  auto total = static_cast<double>(sums.bytes);
  double denominator = length * static_cast<double>(sums.squares) - total * total;
  if (denominator == 0.0) return kNoCorrelation;
  return (length * static_cast<double>(sums.products) - total * total) / denominator;
}

// A long text soon holds most values it ever will, so what follows its beginning is scanned for the
// next new one.
int num_distinct(Text text) {
  constexpr std::size_t kBeginning = 1024;
  bool is_seen[256] = {};
  int count = 0;
  for (char c : text.substr(0, kBeginning)) {
    count += is_seen[byte_of(c)] ? 0 : 1;
    is_seen[byte_of(c)] = true;
  }
  if (text.size() <= kBeginning) return count;
  ByteSet seen;
  for (std::size_t c = 0; c < 256; ++c) {
    if (is_seen[c]) seen.add(static_cast<unsigned char>(c));
  }
  // There is no byte 0 in a text.
  for (std::size_t at = kBeginning; at < text.size() && count < 255; ++at) {
    at += find_other(text.substr(at), seen);
    if (at == text.size()) break;
    seen.add(byte_of(text[at]));
    ++count;
  }
  return count;
}

namespace {

// Where each run of three bytes was seen first: chains of places by a hash of the run. The hash
// spreads the 2^24 runs evenly over at least as many slots as the text has bytes, so all chains
// together are walked in at most 2^24 steps, whatever the text. Where each run has a slot of its
// own there are no chains.
class FirstPlaces {
 public:
  explicit FirstPlaces(Text text)
      : text_(text),
        num_bits_(std::min(kRunBits, static_cast<int>(std::bit_width(text.size())))),
        heads_(zeros(std::size_t{1} << num_bits_)),
        next_(zeros(num_bits_ < kRunBits ? text.size() / 2 : 1)) {}

  /// Where the run at `place` was seen first, one more than the place; 0 when it is new.
  std::uint32_t find(std::uint32_t place) const {
    std::uint32_t link = heads_[slot(place)];
    while (link != 0 && run(link - 1) != run(place)) link = next_[link - 1];
    return link;
  }

  /// Notes a place in the first half of the text whose run is new.
  void add(std::uint32_t place) {
    std::uint32_t& head = heads_[slot(place)];
    if (head != 0) next_[place] = head;
    head = place + 1;
  }

 private:
  static constexpr int kRunBits = 24;
  using Links = std::unique_ptr<std::uint32_t[], decltype(&std::free)>;  // place + 1; 0: none

  // From calloc, so that of a long text that is soon done with only a few pages are ever touched.
  static Links zeros(std::size_t size) {
    Links links(static_cast<std::uint32_t*>(std::calloc(size, sizeof(std::uint32_t))), std::free);
    if (links == nullptr) throw std::bad_alloc();
    return links;
  }

  std::uint32_t run(std::uint32_t place) const {
    const char* at = text_.data() + place;
    return std::uint32_t{byte_of(at[0])} << 16 | std::uint32_t{byte_of(at[1])} << 8 |
           byte_of(at[2]);
  }

  std::size_t slot(std::uint32_t place) const {
    std::uint32_t mixed = run(place) * 0x9e3779b1U & ((1U << kRunBits) - 1);
    return mixed >> (kRunBits - num_bits_);
  }

  Text text_;
  int num_bits_;
  Links heads_;
  Links next_;
};

}  // namespace

// All distances between places of one run are sums and differences of their distances to the first
// place, so those are enough for the divisor.
std::int32_t kasiski_divisor(Text text) {
  if (text.size() < 4) return 0;
  FirstPlaces places(text);
  auto end = static_cast<std::uint32_t>(text.size()) - 2;
  std::uint32_t divisor = 0;
  for (std::uint32_t place = 0; place < end; ++place) {
    std::uint32_t first = places.find(place);
    if (first == 0) {
      if (place < text.size() / 2) places.add(place);
      continue;
    }
    std::uint32_t distance = place + 1 - first;
    if (divisor != 0 && distance % divisor == 0) continue;
    divisor = std::gcd(divisor, distance);
    if (divisor == 1) return 1;
  }
  return static_cast<std::int32_t>(divisor);
}

}  // namespace vstring
