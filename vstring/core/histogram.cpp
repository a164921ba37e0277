// Histograms. Equal bytes in a row would make each count wait for the one before; long texts are
// counted in four tables in turn.
#include "vstring/core/histogram.h"

#include <cstring>

namespace vstring {
namespace {

constexpr std::size_t kTablesThreshold = 2048;  // below it one table is faster

void count_words(const char* text, std::size_t num_words, Histogram (&tables)[4]) {
  for (std::size_t i = 0; i < num_words; ++i) {
    std::uint64_t word = 0;
    std::memcpy(&word, text + 8 * i, 8);
    for (int k = 0; k < 8; ++k) ++tables[k % 4][word >> (8 * k) & 0xff];
  }
}

}  // namespace

Histogram make_histogram(Text text) {
  Histogram counts{};
  std::size_t done = 0;
  if (text.size() >= kTablesThreshold) {
    Histogram tables[4] = {};
    count_words(text.data(), text.size() / 8, tables);
    done = text.size() / 8 * 8;
    for (std::size_t c = 0; c < 256; ++c) {
      counts[c] = tables[0][c] + tables[1][c] + tables[2][c] + tables[3][c];
    }
  }
  for (; done < text.size(); ++done) ++counts[byte_of(text[done])];
  return counts;
}

}  // namespace vstring
