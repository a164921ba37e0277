// Porter's stemmer. All conditions ask for the measure of a stem, the number of its changes from
// vowels to consonants, and for the kind of single letters. Both are known for every prefix of the
// word once it is read: a prefix has one of six states.
#include "vstring/language/porter.h"

#include <algorithm>

#include "vstring/language/ending.h"

namespace vstring {
namespace {

enum Kind : std::uint8_t { kConsonant, kVowel, kY };

// A prefix's state: its measure, counted up to 2, twice; plus 1 when its last letter is a vowel.
using State = std::uint8_t;

constexpr State kNext[6][3] = {
    // consonant, vowel, y: a vowel behind a consonant
    {0, 1, 1},  // measure 0, behind a consonant or at the start
    {2, 1, 2},  // measure 0, behind a vowel
    {2, 3, 3},  // measure 1
    {4, 3, 4},  //
    {4, 5, 5},  // measure 2 or more
    {4, 5, 4},  //
};

struct Letter {
  char small;
  Kind kind;  // all bytes that are no letters are consonants
};

constexpr std::array<Letter, 256> make_letters() {
  std::array<Letter, 256> letters = {};
  for (int c = 0; c < 256; ++c) {
    auto small = static_cast<char>('A' <= c && c <= 'Z' ? c + ('a' - 'A') : c);
    Kind kind = kConsonant;
    if (small != '\0' && Text("aeiou").find(small) != Text::npos) kind = kVowel;
    if (small == 'y') kind = kY;
    letters[static_cast<std::size_t>(c)] = {small, kind};
  }
  return letters;
}

constexpr std::array<Letter, 256> kLetters = make_letters();

struct Replacement {
  Ending ending;
  Text with;
};

// As the author's own program has them: -bli in place of the -abli of his paper, and -logi, which
// is not in it.
constexpr Replacement kDoubleSuffixes[] = {
    {"ational", "ate"}, {"tional", "tion"}, {"enci", "ence"}, {"anci", "ance"}, {"izer", "ize"},
    {"bli", "ble"},     {"alli", "al"},     {"entli", "ent"}, {"eli", "e"},     {"ousli", "ous"},
    {"ization", "ize"}, {"ation", "ate"},   {"ator", "ate"},  {"alism", "al"},  {"iveness", "ive"},
    {"fulness", "ful"}, {"ousness", "ous"}, {"aliti", "al"},  {"iviti", "ive"}, {"biliti", "ble"},
    {"logi", "log"},
};

constexpr Replacement kSuffixes[] = {
    {"icate", "ic"}, {"ative", ""}, {"alize", "al"}, {"iciti", "ic"},
    {"ical", "ic"},  {"ful", ""},   {"ness", ""},
};

struct Removal {
  Ending ending;
  Text behind = {};  // letters of which one must stand before the ending; none: any
};

constexpr Removal kRemovals[] = {
    {"al"},  {"ance"},  {"ence"}, {"er"},  {"ic"},        {"able"}, {"ible"},
    {"ant"}, {"ement"}, {"ment"}, {"ent"}, {"ion", "st"}, {"ou"},   {"ism"},
    {"ate"}, {"iti"},   {"ous"},  {"ive"}, {"ize"},
};

constexpr EndingTable kDoubleSuffixTable(kDoubleSuffixes);
constexpr EndingTable kSuffixTable(kSuffixes);
constexpr EndingTable kRemovalTable(kRemovals);

constexpr Ending kSses("sses"), kIes("ies"), kSs("ss"), kEed("eed"), kEd("ed"), kIng("ing"),
    kAt("at"), kBl("bl"), kIz("iz");

class PorterWord {
 public:
  explicit PorterWord(Text word);
  Text letters() const { return {padded_ + Tail::kSize, size_}; }

  void remove_plural();
  void remove_past();
  void replace_y();
  template <class Table>
  void replace_suffix(const Table& table);
  void remove_suffix();
  void remove_e_and_l();

 private:
  char& letter(std::size_t i) { return padded_[Tail::kSize + i]; }
  char letter(std::size_t i) const { return padded_[Tail::kSize + i]; }
  char last() const { return letter(size_ - 1); }
  char last_but_one() const { return letter(size_ - 2); }  // NUL in a word of one letter
  Tail tail() const { return Tail::behind(padded_ + Tail::kSize + size_); }

  // Of the first n letters.
  int measure(std::size_t n) const { return states_[n] / 2; }
  bool has_vowel(std::size_t n) const { return states_[n] != 0; }
  bool ends_in_vowel(std::size_t n) const { return states_[n] % 2 != 0; }
  bool ends_in_short_syllable(std::size_t n) const;
  bool ends_in_double_consonant() const;

  void append(char c);
  void append(Text letters) {
    for (char c : letters) append(c);
  }
  void finish_stem();

  // The bytes before the letters are NUL, so that endings are compared without a look at the size.
  char padded_[Tail::kSize + kMaxPorterWord + 1];
  State states_[kMaxPorterWord + 2];
  std::size_t size_ = 0;
};

PorterWord::PorterWord(Text word) {
  std::fill_n(padded_, Tail::kSize, '\0');
  states_[0] = 0;
  append(word[0]);
  if (last() == 'y') states_[1] = 0;  // a consonant at the start
  append(word.substr(1));
}

void PorterWord::append(char c) {
  Letter added = kLetters[byte_of(c)];
  letter(size_) = added.small;
  states_[size_ + 1] = kNext[states_[size_]][added.kind];
  ++size_;
}

// Consonant, vowel, consonant, the last one not w, x or y.
bool PorterWord::ends_in_short_syllable(std::size_t n) const {
  if (n < 3 || ends_in_vowel(n) || !ends_in_vowel(n - 1) || ends_in_vowel(n - 2)) return false;
  char c = letter(n - 1);
  return c != 'w' && c != 'x' && c != 'y';
}

// Of two y's one is a vowel.
bool PorterWord::ends_in_double_consonant() const {
  return last() == last_but_one() && !ends_in_vowel(size_) && !ends_in_vowel(size_ - 1);
}

void PorterWord::remove_plural() {
  if (last() != 's') return;
  Tail end = tail();
  if (kSses.ends(end) || kIes.ends(end)) {
    size_ -= 2;
  } else if (!kSs.ends(end)) {
    size_ -= 1;
  }
}

void PorterWord::remove_past() {
  if (last() != 'd' && last() != 'g') return;
  Tail end = tail();
  if (kEed.ends(end)) {
    if (measure(size_ - kEed.size()) > 0) size_ -= 1;
    return;
  }
  std::size_t removed = kEd.ends(end) ? kEd.size() : kIng.ends(end) ? kIng.size() : 0;
  if (removed == 0 || !has_vowel(size_ - removed)) return;
  size_ -= removed;
  finish_stem();
}

void PorterWord::finish_stem() {
  if (ends_in_double_consonant()) {
    if (last() != 'l' && last() != 's' && last() != 'z') size_ -= 1;
    return;
  }
  Tail end = tail();
  bool lacks_e = kAt.ends(end) || kBl.ends(end) || kIz.ends(end) ||
                 (measure(size_) == 1 && ends_in_short_syllable(size_));
  if (lacks_e) append('e');
}

void PorterWord::replace_y() {
  if (last() != 'y' || !has_vowel(size_ - 1)) return;
  size_ -= 1;
  append('i');
}

template <class Table>
void PorterWord::replace_suffix(const Table& table) {
  const auto* row = table.find(tail());
  if (row == nullptr || measure(size_ - row->ending.size()) == 0) return;
  size_ -= row->ending.size();
  append(row->with);
}

void PorterWord::remove_suffix() {
  const Removal* row = kRemovalTable.find(tail());
  if (row == nullptr) return;
  std::size_t rest = size_ - row->ending.size();
  if (measure(rest) < 2) return;
  if (!row->behind.empty() && row->behind.find(letter(rest - 1)) == Text::npos) return;
  size_ = rest;
}

void PorterWord::remove_e_and_l() {
  if (last() == 'e') {
    int m = measure(size_ - 1);
    if (m > 1 || (m == 1 && !ends_in_short_syllable(size_ - 1))) size_ -= 1;
  }
  if (last() == 'l' && last_but_one() == 'l' && measure(size_) > 1) size_ -= 1;
}

}  // namespace

std::size_t porter_stem(Text word, char* out) {
  PorterWord stem(word);
  stem.remove_plural();
  stem.remove_past();
  stem.replace_y();
  stem.replace_suffix(kDoubleSuffixTable);
  stem.replace_suffix(kSuffixTable);
  stem.remove_suffix();
  stem.remove_e_and_l();
  return stem.letters().copy(out, kMaxPorterWord);
}

}  // namespace vstring
