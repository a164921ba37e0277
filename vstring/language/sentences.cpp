// Where sentences end. A mark with white space behind it ends one, unless the period is that of an
// initial or of an abbreviation.
#include "vstring/language/sentences.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "vstring/charclass.h"
#include "vstring/language/ending.h"

namespace vstring {
namespace {

// Abbreviations without their last periods; "0 in" stands for inches behind a number. None ends in
// another one.
constexpr Ending kAbbreviations[] = {
    // clang-format off
    "0 in", "1 in", "2 in", "3 in", "4 in", "5 in", "6 in", "7 in", "8 in", "9 in", "Alb", "Apr",
    "Aug", "B.C", "Ch", "Co", "Col", "Cpl", "Cres", "Dec", "Dept", "Depts", "Dr", "Drs", "E.g",
    "Eq", "Feb", "Fig", "Figs", "Gen", "Hwy", "I.B.M", "I.e", "Inc", "Jan", "Jr", "Jul", "Jun",
    "L.L.C", "Lieut", "Ltd", "Maj", "Man", "Mar", "Misc", "Mr", "Mrs", "Ms", "N.S", "No", "Nos",
    "Nov", "O.E.C.D", "Oct", "Ont", "P.E.I", "P.Q", "Ph", "Pl", "Prof", "Pvt", "Q.C", "Rd", "Ref",
    "Refs", "Sask", "Sep", "Sept", "Sgt", "St", "U.K", "U.N", "U.S", "U.S.A", "W.O", "a.e", "ch",
    "dB", "dept", "depts", "e.g", "eq", "et al", "etc", "fig", "figs", "ft", "i.e", "jr", "mi",
    "no", "nos", "q.v", "ref", "refs", "viz", "vs", "yr",
    // clang-format on
};
static_assert(std::size(kAbbreviations) == 98);

// The abbreviations by their last byte: the first one, and behind each one the next; 0 is none, so
// they are counted from 1.
class Chains {
 public:
  constexpr explicit Chains(const Ending (&endings)[98]) {
    for (std::size_t i = std::size(endings); i > 0; --i) {
      std::uint8_t& first = first_[endings[i - 1].last() % first_.size()];
      next_[i] = first;
      first = static_cast<std::uint8_t>(i);
    }
  }
  std::size_t first(unsigned char last) const { return first_[last % first_.size()]; }
  std::size_t next(std::size_t i) const { return next_[i]; }

 private:
  std::array<std::uint8_t, 128> first_ = {};
  std::array<std::uint8_t, std::size(kAbbreviations) + 1> next_ = {};
};

constexpr Chains kChains(kAbbreviations);

// The length of the abbreviation that the text ends in, 0 for none.
std::size_t abbreviation_length(Text text) {
  Tail tail(text);
  for (std::size_t i = kChains.first(tail.last()); i != 0; i = kChains.next(i)) {
    if (kAbbreviations[i - 1].ends(tail)) return kAbbreviations[i - 1].size();
  }
  return 0;
}

bool is_space(char c) { return (cclbm[byte_of(c)] & CCL_SPACE) != 0; }
bool is_letter(char c) { return (cclbm[byte_of(c)] & CCL_ALPHA) != 0; }

}  // namespace

bool is_sentence_end(Text text, std::size_t k) {
  // The byte n places before the mark; there are NULs before the text.
  auto before = [&](std::size_t n) { return k >= n ? text[k - n] : '\0'; };
  if (text[k] != '.') return true;
  if (before(1) == '.') return false;
  if (is_letter(before(1)) && is_space(before(2))) return false;  // an initial
  std::size_t length = abbreviation_length(text.substr(0, k));
  if (length == 0 || is_letter(before(length + 1))) return true;
  return k + 2 < text.size() && is_space(text[k + 2]);
}

Text trimmed_sentence(Text sentence) {
  auto start = std::find_if_not(sentence.begin(), sentence.end(), is_space);
  return sentence.substr(static_cast<std::size_t>(start - sentence.begin()));
}

std::size_t count_sentences(Text text) {
  std::size_t count = 1;
  for_each_sentence_end(text, [&](std::size_t) { ++count; });
  return count;
}

}  // namespace vstring
