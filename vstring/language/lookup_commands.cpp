// Words of a text by position and number, and n-grams, as commands. Tests: docs/commands/lookup.md,
// tests/transcripts/language/lookup.vt.
#include <string>
#include <vector>

#include "vstring/arguments.h"
#include "vstring/host/commands.h"
#include "vstring/language/word_lookup.h"
#include "vstring/language/words.h"

namespace vstring {
namespace {

constexpr const char* kFirstNoString = "first argument must be a string";
constexpr const char* kSecondNoInteger = "second argument must be a 32-bit integer";

// A word of the text s by the 1-based position of its first and of its last byte.
std::size_t first_position(Text s, Text word) {
  return static_cast<std::size_t>(word.data() - s.data()) + 1;
}
std::size_t last_position(Text s, Text word) { return first_position(s, word) + word.size() - 1; }

// The word that holds the byte of argument 2; empty when it is in none.
Text indexed_word(const Args& args, Text s) {
  std::size_t index = args.index(2, s.size());
  return index == 0 ? Text() : word_around(s, index - 1);
}

// A text with more words than a sequence holds is refused before anything is made of it.
void refuse_many_words(Text s) {
  if (count_words(s).words > HOST_MAX_ELEMENTS) fail(kOutOfMemory);
}

// The position that `position` tells of the word at argument 2, or of all words.
Object word_positions(const Args& args, const Host& host, std::size_t (*position)(Text, Text)) {
  Text s = args.string(1, kFirstNoString);
  if (args.has(2)) {
    Text word = indexed_word(args, s);
    return host.position(word.empty() ? 0 : position(s, word));
  }
  refuse_many_words(s);
  std::vector<std::uint32_t> positions;
  for_each_word(
      s, [&](Text word) { positions.push_back(static_cast<std::uint32_t>(position(s, word))); });
  if (positions.empty()) return host.nothing();
  Sequence result = host.sequence(positions.size());
  for (std::size_t i = 0; i < positions.size(); ++i) result.set(i, host.position(positions[i]));
  return result.object();
}

// A word of argument 1: that very object when the word is all of it.
Object word_object(const Args& args, const Host& host, Text word) {
  return word.size() == args.text(1).size() ? args[1] : host.text(word);
}

// The words with one blank between them, and where each begins and ends.
struct JoinedWords {
  explicit JoinedWords(Text s) {
    for_each_word(s, [this](Text word) {
      if (!text.empty()) text += ' ';
      starts.push_back(static_cast<std::uint32_t>(text.size()));
      text.append(word);
      ends.push_back(static_cast<std::uint32_t>(text.size()));
    });
  }
  std::string text;
  std::vector<std::uint32_t> starts;
  std::vector<std::uint32_t> ends;
};

Object word_grams(const Host& host, Text s, std::size_t n) {
  refuse_many_words(s);
  JoinedWords words(s);
  if (n > words.starts.size()) return host.list(0).finish();
  List result = host.list(words.starts.size() - n + 1);
  for (std::size_t i = 0; i + n <= words.starts.size(); ++i) {
    std::size_t length = words.ends[i + n - 1] - words.starts[i];
    result.set(i, host.text(Text(words.text).substr(words.starts[i], length)));
  }
  return result.finish();
}

Object byte_grams(const Host& host, Text s, std::size_t n) {
  if (n > s.size()) return host.list(0).finish();
  List result = host.list(s.size() - n + 1);
  for (std::size_t i = 0; i + n <= s.size(); ++i) result.set(i, host.text(s.substr(i, n)));
  return result.finish();
}

// Whether the option asks for grams of bytes.
bool asks_for_bytes(const Args& args, const Host& host) {
  Object unit = GetOption(host.kernel(), 2, args.sequence(), "unit", 0);
  if (unit == 0) return false;
  bool is_char = is_text(unit) && text_of(unit) == "char";
  if (!is_char && !(is_text(unit) && text_of(unit) == "word")) {
    fail("the `unit' value must be either `word' or `char', but received %1", unit);
  }
  return is_char;
}

}  // namespace

Object cmd::vstring_wordstart(Args& args, Host& host) {
  return word_positions(args, host, first_position);
}

Object cmd::vstring_wordend(Args& args, Host& host) {
  return word_positions(args, host, last_position);
}

Object cmd::vstring_wordcont(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  return word_object(args, host, indexed_word(args, s));
}

Object cmd::vstring_nthword(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  return word_object(args, host, nth_word(s, args.integer32(2, kSecondNoInteger)));
}

Object cmd::vstring_ngram(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  std::int32_t n = args.integer32(2, kSecondNoInteger);
  if (n < 1) fail("second argument must be positive");
  auto size = static_cast<std::size_t>(n);
  return asks_for_bytes(args, host) ? byte_grams(host, s, size) : word_grams(host, s, size);
}

}  // namespace vstring
