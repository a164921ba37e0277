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

// What each byte becomes: one to kMaxWidth bytes.
constexpr std::size_t kMaxWidth = 4;
struct Expansions {
  std::array<std::array<char, kMaxWidth>, 256> bytes{};
  std::array<unsigned char, 256> widths{};
  ByteSet changing;

  constexpr void set(std::size_t c, Text replacement) {
    for (std::size_t i = 0; i < replacement.size(); ++i) bytes[c][i] = replacement[i];
    widths[c] = static_cast<unsigned char>(replacement.size());
    if (replacement.size() > 1 || byte_of(replacement[0]) != c) {
      changing.add(static_cast<unsigned char>(c));
    }
  }
};

constexpr Expansions make_identity() {
  Expansions identity;
  for (std::size_t c = 0; c < 256; ++c) {
    const char byte = static_cast<char>(c);
    identity.set(c, Text(&byte, 1));
  }
  return identity;
}

constexpr Expansions make_unaccented() {
  // The Latin-1 letters 0xc0 .. 0xff; "" for the two signs among them, which stay.
  constexpr Text kLetters[64] = {
      "A", "A", "A", "A", "A", "A", "AE", "C", "E", "E", "E", "E", "I", "I", "I",  "I",
      "D", "N", "O", "O", "O", "O", "O",  "",  "O", "U", "U", "U", "U", "Y", "TH", "ss",
      "a", "a", "a", "a", "a", "a", "ae", "c", "e", "e", "e", "e", "i", "i", "i",  "i",
      "d", "n", "o", "o", "o", "o", "o",  "",  "o", "u", "u", "u", "u", "y", "th", "y"};
  Expansions table = make_identity();
  for (std::size_t i = 0; i < 64; ++i) {
    if (!kLetters[i].empty()) table.set(0xc0 + i, kLetters[i]);
  }
  return table;
}

constexpr Expansions make_visible() {
  constexpr Text kDigits = "0123456789abcdef";
  Expansions table = make_identity();
  for (std::size_t c = 0; c < 256; ++c) {
    if (c >= 0x20 && c <= 0x7e) continue;
    const char escape[] = {'\\', 'x', kDigits[c >> 4], kDigits[c & 15]};
    table.set(c, Text(escape, kMaxWidth));
  }
  table.set('\\', "\\\\");
  table.set('\t', "\\t");
  table.set('\n', "\\n");
  table.set('\r', "\\r");
  return table;
}

constexpr Expansions kUnaccented = make_unaccented();
constexpr Expansions kVisible = make_visible();

// Bytes that change tend to stand close together; behind one of them so many are looked up one by
// one before the next run that stays is sought.
constexpr std::size_t kNear = 16;

// Calls keep(run) for runs that stay as they are, and change(rest) for the byte behind each run and
// those near it, which stand at the front of `rest`; from the first byte of the text to the last.
template <class Keep, class Change>
void for_each_run(Text text, const ByteSet& changing, Keep keep, Change change) {
  while (!text.empty()) {
    std::size_t run = find_member(text, changing);
    keep(text.substr(0, run));
    text.remove_prefix(run);
    for (std::size_t i = 0; i < kNear && !text.empty(); ++i, text.remove_prefix(1)) change(text);
  }
}

std::size_t expanded_size(Text text, const Expansions& table) {
  std::size_t size = 0;
  for_each_run(
      text, table.changing, [&](Text run) { size += run.size(); },
      [&](Text rest) { size += table.widths[byte_of(rest[0])]; });
  return size;
}

void write_expanded(Text text, const Expansions& table, char* out) {
  for_each_run(
      text, table.changing, [&](Text run) { out = std::copy(run.begin(), run.end(), out); },
      [&](Text rest) {
        const auto& bytes = table.bytes[byte_of(rest[0])];
        std::size_t width = table.widths[byte_of(rest[0])];
        // What is written too much the bytes behind it overwrite, if there are enough of them.
        std::memcpy(out, bytes.data(), rest.size() >= kMaxWidth ? kMaxWidth : width);
        out += width;
      });
}

bool is_vowel(char c) { return c != '\0' && std::strchr("aeiouyAEIOUY", c) != nullptr; }

}  // namespace

std::size_t unaccented_size(Text text) { return expanded_size(text, kUnaccented); }

void write_unaccented(Text text, char* out) { write_expanded(text, kUnaccented, out); }

std::size_t visible_size(Text text) { return expanded_size(text, kVisible); }

void write_visible(Text text, char* out) { write_expanded(text, kVisible, out); }

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
