// Commands on the characters of a string. Tests: tests/transcripts/commands/characters.vt,
// docs/commands/characters.md.
#include "vstring/commands/characters.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "vstring/charclass.h"
#include "vstring/core/byte_set.h"
#include "vstring/language.h"

namespace vstring {
namespace {

// What the Latin-1 letters 0xc0 .. 0xff become; "" for the two signs among them, which stay.
constexpr const char* kUnaccented[64] = {
    "A", "A", "A", "A", "A", "A", "AE", "C", "E", "E", "E", "E", "I", "I", "I",  "I",
    "D", "N", "O", "O", "O", "O", "O",  "",  "O", "U", "U", "U", "U", "Y", "TH", "ss",
    "a", "a", "a", "a", "a", "a", "ae", "c", "e", "e", "e", "e", "i", "i", "i",  "i",
    "d", "n", "o", "o", "o", "o", "o",  "",  "o", "u", "u", "u", "u", "y", "th", "y"};

// The replacement of one byte.
Text unaccented(const char& c) {
  if (byte_of(c) < 0xc0) return {&c, 1};
  const char* letters = kUnaccented[byte_of(c) - 0xc0];
  return *letters != '\0' ? Text(letters) : Text(&c, 1);
}

char escape_letter(char c) {
  switch (c) {
    case '\\':
      return '\\';
    case '\t':
      return 't';
    case '\n':
      return 'n';
    case '\r':
      return 'r';
    default:
      return '\0';
  }
}

bool is_printable(char c) { return (cclbm[byte_of(c)] & CCL_PRINT) != 0; }

std::size_t visible_width(char c) {
  if (escape_letter(c) != '\0') return 2;
  return is_printable(c) ? 1 : 4;
}

char hex_digit(int value) { return "0123456789abcdef"[value]; }

bool is_vowel(char c) { return c != '\0' && std::strchr("aeiouyAEIOUY", c) != nullptr; }

}  // namespace

std::size_t unaccented_size(Text text) {
  std::size_t size = 0;
  for (const char& c : text) size += unaccented(c).size();
  return size;
}

void write_unaccented(Text text, char* out) {
  for (const char& c : text) {
    Text letters = unaccented(c);
    out = std::copy(letters.begin(), letters.end(), out);
  }
}

std::size_t visible_size(Text text) {
  std::size_t size = 0;
  for (char c : text) size += visible_width(c);
  return size;
}

void write_visible(Text text, char* out) {
  for (char c : text) {
    char letter = escape_letter(c);
    if (letter == '\0' && is_printable(c)) {
      *out++ = c;
      continue;
    }
    *out++ = '\\';
    *out++ = letter != '\0' ? letter : 'x';
    if (letter != '\0') continue;
    *out++ = hex_digit(byte_of(c) >> 4);
    *out++ = hex_digit(byte_of(c) & 15);
  }
}

bool is_balanced(Text text, Text open, Text close) {
  std::array<char, 256> closing{};  // by opening character
  ByteSet closers(close);
  for (std::size_t i = 0; i < open.size(); ++i) closing[byte_of(open[i])] = close[i];
  std::string expected;  // closing characters still to come, the innermost last
  for (char c : text) {
    if (closing[byte_of(c)] != '\0') {
      expected += closing[byte_of(c)];
    } else if (closers.contains(byte_of(c))) {
      if (expected.empty() || expected.back() != c) return false;
      expected.pop_back();
    }
  }
  return expected.empty();
}

bool is_repetition_free(Text text) {
  if (text.size() > 255) return false;
  ByteSet seen;
  for (char c : text) {
    if (seen.contains(byte_of(c))) return false;
    seen.add(byte_of(c));
  }
  return true;
}

}  // namespace vstring

int SyllableLength(const char* word) {
  std::size_t length = std::strlen(word);
  int groups = 0;
  for (std::size_t i = 0; i < length; ++i) {
    if (ccl_isalpha(vstring::byte_of(word[i])) == 0) return -1;
    bool is_start = i == 0 || !vstring::is_vowel(word[i - 1]);
    if (is_start && vstring::is_vowel(word[i])) ++groups;
  }
  if (length == 0) return 0;
  char last = word[length - 1];
  bool ends_in_e =
      length >= 2 && (last == 'e' || last == 'E') && !vstring::is_vowel(word[length - 2]);
  bool ends_in_le = ends_in_e && length >= 3 &&
                    (word[length - 2] == 'l' || word[length - 2] == 'L') &&
                    !vstring::is_vowel(word[length - 3]);
  if (ends_in_e && !ends_in_le) --groups;
  return std::max(groups, 1);
}
