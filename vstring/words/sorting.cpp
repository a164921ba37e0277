#include "vstring/words/sorting.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "vstring/core/byte_set.h"
#include "vstring/core/histogram.h"
#include "vstring/sort.h"

namespace vstring {
namespace {

// Below this, clearing and reading 256 counters takes longer than the text does.
constexpr std::size_t kLongEnoughToCount = 128;

std::size_t sort_short(Text text, char* out) {
  char bytes[kLongEnoughToCount];
  char* end = std::remove_copy(text.begin(), text.end(), bytes, '\0');
  std::sort(bytes, end, [](char a, char b) { return byte_of(a) < byte_of(b); });
  std::copy(bytes, end, out);
  return static_cast<std::size_t>(end - bytes);
}

}  // namespace

std::size_t sort_bytes(Text text, char* out) {
  if (text.size() < kLongEnoughToCount) return sort_short(text, out);
  Histogram counts = make_histogram(text);
  char* end = out;
  for (std::size_t c = 1; c < counts.size(); ++c) {
    std::memset(end, static_cast<int>(c), counts[c]);
    end += counts[c];
  }
  return static_cast<std::size_t>(end - out);
}

std::string distinct_bytes(Text text) {
  ByteSet seen;
  if (text.size() < kLongEnoughToCount) {
    for (char c : text) seen.add(byte_of(c));
  } else {
    Histogram counts = make_histogram(text);
    for (std::size_t c = 1; c < counts.size(); ++c) {
      if (counts[c] != 0) seen.add(static_cast<unsigned char>(c));
    }
  }
  std::string result;
  for (int i = 0; i < 4; ++i) {
    for (std::uint64_t word = seen.words()[i]; word != 0; word &= word - 1) {
      int c = 64 * i + std::countr_zero(word);
      if (c != 0) result += static_cast<char>(c);
    }
  }
  return result;
}

}  // namespace vstring

void SortString(char* destination, const char* source, int length) {
  std::size_t size = length < 0 ? 0 : static_cast<std::size_t>(length);
  std::size_t written = vstring::sort_bytes({source, size}, destination);
  std::fill(destination + written, destination + size + 1, '\0');
}
