// The built-in word list, as tools/make_words.py has written it: constants without relocations, so
// that it costs nothing until it is asked.
#include "vstring/language/dictionary.h"

namespace vstring {
namespace {

#define WORD(key, tail_end, tail) key,
constexpr std::uint64_t kKeys[] = {
#include "data/words.inc"
};
#undef WORD

#define WORD(key, tail_end, tail) tail_end,
constexpr std::uint32_t kOffsets[] = {
    0,
#include "data/words.inc"
};
#undef WORD

#define WORD(key, tail_end, tail) tail
constexpr char kTails[] =
#include "data/words.inc"
    ;
#undef WORD

}  // namespace

const WordTable& built_in_words() {
  static constexpr WordTable kTable = {kKeys, kOffsets, kTails};
  return kTable;
}

}  // namespace vstring
