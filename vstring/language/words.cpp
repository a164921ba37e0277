// The word counter for other modules.
#include "vstring/language/words.h"

#include <limits>

#include "vstring/language.h"

int CountWords(const char* text, int* lines) {
  if (text == nullptr) return -1;
  vstring::WordCount count = vstring::count_words(text);
  if (lines != nullptr) *lines += static_cast<int>(count.lines);
  constexpr std::size_t kMax = std::numeric_limits<int>::max();
  return static_cast<int>(count.words < kMax ? count.words : kMax);
}
