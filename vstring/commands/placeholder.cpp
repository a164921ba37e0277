#include "vstring/commands/placeholder.h"

#include <iterator>

namespace vstring {
namespace {

constexpr Text kOpeningWords[] = {"Lorem", "ipsum", "dolor", "sit", "amet"};

// A prime number of words, so that every step but a whole round visits all of them.
constexpr Text kVocabulary[] = {
    "aqua",  "arbor", "aurum",  "avis",   "bonus",  "campus",  "canis",  "caput",  "carmen",
    "causa", "civis", "corpus", "cum",    "dies",   "domus",   "dum",    "ego",    "equus",
    "et",    "fama",  "fides",  "filia",  "flumen", "forma",   "hora",   "hortus", "ignis",
    "in",    "iter",  "labor",  "lex",    "liber",  "littera", "locus",  "luna",   "lux",
    "magna", "manus", "mare",   "mens",   "mons",   "natura",  "navis",  "nomen",  "nox",
    "opus",  "ordo",  "pars",   "pax",    "per",    "porta",   "ratio",  "rosa",   "saxum",
    "sed",   "silva", "sol",    "tempus", "terra",  "umbra",   "verbum",
};
static_assert(std::size(kVocabulary) == 61);

}  // namespace

Text placeholder_word(std::size_t i) {
  if (i < std::size(kOpeningWords)) return kOpeningWords[i];
  // Each round through the vocabulary takes another step, so that rounds differ.
  std::size_t round = i / std::size(kVocabulary);
  std::size_t step = 7 + round % (std::size(kVocabulary) - 8);
  return kVocabulary[i % std::size(kVocabulary) * step % std::size(kVocabulary)];
}

}  // namespace vstring
