// Metaphone keys: one rule a letter, which sees the letter before it and the three behind it.
#include <algorithm>

#include "vstring/charclass.h"
#include "vstring/language/phonetics.h"

namespace vstring {
namespace {

constexpr std::size_t kMaxLetters = 1023;

bool is_vowel(char c) { return Text("AEIOU").find(c) != Text::npos; }
bool is_front(char c) { return c == 'E' || c == 'I' || c == 'Y'; }

// The capital letters of the text with the silent ones at either end taken off.
std::string sounded_letters(Text text) {
  std::string letters;
  for (char c : text) {
    if (letters.size() == kMaxLetters) break;
    if (ccl_isalpha(byte_of(c)) != 0) letters += static_cast<char>(c & ~0x20);
  }
  for (Text pair : {"AE", "GN", "KN", "PN", "WR"}) {
    if (letters.starts_with(pair)) {
      letters.erase(0, 1);
      break;
    }
  }
  if (letters.starts_with('X')) letters[0] = 'S';
  if (letters.starts_with("WH")) letters.erase(1, 1);
  if (letters.ends_with('S')) letters.pop_back();
  return letters;
}

// One letter at a time with its neighbours; beyond either end there are blanks.
class Speaker {
 public:
  explicit Speaker(Text letters) : letters_(letters) {}

  std::string key() {
    std::string key;
    for (i_ = 0; i_ < letters_.size(); ++i_) key += sound();
    return key;
  }

 private:
  char prev() const { return i_ == 0 ? ' ' : letters_[i_ - 1]; }
  char next(std::size_t k = 1) const { return i_ + k < letters_.size() ? letters_[i_ + k] : ' '; }
  bool is_first() const { return i_ == 0; }
  bool is_last() const { return i_ + 1 == letters_.size(); }
  Text letter() const { return letters_.substr(i_, 1); }

  Text sound() const;
  Text sound_of_c() const;
  Text sound_of_g() const;
  Text sound_of_h() const;
  Text sound_of_s() const;
  Text sound_of_t() const;

  Text letters_;
  std::size_t i_ = 0;
};

Text Speaker::sound() const {
  char c = letters_[i_];
  if (is_first() && is_vowel(c)) return letter();
  if (c == next() || is_vowel(c)) return "";
  switch (c) {
    case 'B':
      return is_last() && prev() == 'M' ? "" : "B";
    case 'C':
      return sound_of_c();
    case 'D':  // the dg of "edge" is a T and that of "edgar" a J: the wrong way round, as ever
      return next() == 'G' && !is_front(next(2)) ? "J" : "T";
    case 'G':
      return sound_of_g();
    case 'H':
      return sound_of_h();
    case 'K':
      return prev() == 'C' ? "" : "K";
    case 'P':
      return next() == 'H' ? "F" : "P";
    case 'Q':
      return "K";
    case 'S':
      return sound_of_s();
    case 'T':
      return sound_of_t();
    case 'V':
      return "F";
    case 'W':
    case 'Y':
      return is_vowel(next()) ? letter() : "";
    case 'X':
      return "KS";
    case 'Z':
      return "S";
    default:  // F J L M N R
      return letter();
  }
}

Text Speaker::sound_of_c() const {
  bool is_behind_s = i_ > 1 && prev() == 'S';
  if (is_behind_s && is_front(next())) return "";
  if (!is_first() && next() == 'I' && next(2) == 'A') return "X";
  if (is_front(next())) return "S";
  if (is_behind_s) return "K";
  if (next() == 'H') return is_first() && !is_vowel(next(2)) ? "K" : "X";
  return prev() == 'C' ? "C" : "K";
}

Text Speaker::sound_of_g() const {
  if (i_ + 2 < letters_.size() && next() == 'H' && !is_vowel(next(2))) return "";
  if (letters_.substr(i_) == "GNED" || letters_.substr(i_) == "GN") return "";
  if (prev() == 'D' && is_front(next())) return "";
  return !is_front(next()) || prev() == 'G' ? "K" : "J";
}

Text Speaker::sound_of_h() const {
  if (Text("CSPTG").find(prev()) != Text::npos) return "";
  return is_vowel(prev()) && !is_vowel(next()) ? "" : "H";
}

Text Speaker::sound_of_s() const {
  if (i_ > 1 && next() == 'I') return next(2) == 'O' || next(2) == 'A' ? "X" : "S";
  return next() == 'H' ? "X" : "S";
}

Text Speaker::sound_of_t() const {
  if (i_ > 1 && next() == 'I') return next(2) == 'O' || next(2) == 'A' ? "X" : "T";
  if (next() == 'H') return is_first() && !is_vowel(next(2)) ? "T" : "0";
  return i_ + 3 < letters_.size() && next() == 'C' && next(2) == 'H' ? "" : "T";
}

}  // namespace

std::string metaphone(Text text) {
  std::string letters = sounded_letters(text);
  std::string key = Speaker(letters).key();
  if (key.size() > 2 && key.back() == 'S') key.pop_back();
  return key;
}

}  // namespace vstring
