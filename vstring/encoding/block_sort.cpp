// Block sorting. The least rotation of a text that is no power is less than all its own suffixes:
// its rotations are in the order of its suffixes, which can be sorted in linear time.
#include "vstring/encoding/block_sort.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "vstring/core/histogram.h"
#include "vstring/core/least_rotation.h"
#include "vstring/encoding/suffix_array.h"

namespace vstring {
namespace {

// The length of the shortest text of which this one, the least of its rotations, is a power
// (J.-P. Duval, 1983).
std::size_t least_root(Text least) {
  std::size_t period = 1;
  for (std::size_t i = 1; i < least.size(); ++i) {
    if (byte_of(least[i - period]) != byte_of(least[i])) period = i + 1;
  }
  return period;
}

// Where in the sorted text the next row of each row is: the rotation that starts one further on.
// Entries hold the next row and, in their low bits, the character that it stands for.
template <class Entry>
void follow_rows(Text sorted, std::size_t row, char* out) {
  std::vector<Entry> next(sorted.size());
  Histogram places = make_histogram(sorted);
  std::uint32_t sum = 0;
  for (std::uint32_t& place : places) {
    std::uint32_t count = place;
    place = sum;
    sum += count;
  }
  for (std::size_t i = 0; i < sorted.size(); ++i) {
    unsigned char c = byte_of(sorted[i]);
    next[places[c]++] = static_cast<Entry>(i) << 8 | c;
  }
  *out++ = sorted[row];
  for (std::size_t i = 1; i < sorted.size(); ++i) {
    Entry entry = next[row];
    row = static_cast<std::size_t>(entry >> 8);
    *out++ = static_cast<char>(entry & 0xff);
  }
}

}  // namespace

std::size_t block_sort(Text text, char* out) {
  if (text.empty()) return 0;
  std::size_t start = least_rotation(text);
  std::string rotation(text.substr(start));
  rotation.append(text.substr(0, start));
  Text root = Text(rotation).substr(0, least_root(rotation));
  std::size_t exponent = text.size() / root.size();

  // The row and the transform of the root; each of its rows stands `exponent` times for the text.
  std::size_t second = (root.size() - start % root.size() + 1) % root.size();
  std::size_t row = 0;
  std::vector<std::int32_t> order = sort_suffixes(root);
  for (std::size_t k = 0; k < order.size(); ++k) {
    auto place = static_cast<std::size_t>(order[k]);
    if (place == second) row = k * exponent;
    out[k] = place == 0 ? root.back() : root[place - 1];
  }
  if (exponent > 1) {
    for (std::size_t k = root.size(); k-- > 0;) std::fill_n(out + k * exponent, exponent, out[k]);
  }
  // The rotations of a power of one byte are all equal: offset 1 is the second of them.
  return root.size() == 1 && text.size() > 1 ? 1 : row;
}

void undo_block_sort(Text sorted, std::size_t row, char* out) {
  if (sorted.empty()) return;
  row = std::min(row, sorted.size() - 1);
  if (sorted.size() <= std::size_t{1} << 24) {
    follow_rows<std::uint32_t>(sorted, row, out);
  } else {
    follow_rows<std::uint64_t>(sorted, row, out);
  }
}

}  // namespace vstring
