// Prefixes and plurals.
#include "vstring/language/affixes.h"

#include <algorithm>

#include "vstring/charclass.h"

namespace vstring {
namespace {

constexpr std::size_t kMinChanged = 4;  // shorter words stay as they are

// Tried in this order, which users rely on: "deca" and "uni" never get their turn.
constexpr Text kPrefixes[] = {
    "anti", "any",   "apo",  "back", "bi",   "centi", "de",     "deca",  "deci", "dis", "di",
    "epi",  "extra", "giga", "hexa", "kilo", "mega",  "micro",  "milli", "nona", "iso", "octa",
    "octo", "penta", "peta", "pico", "post", "pre",   "quatro", "septa", "tri",  "un",  "uni",
};

bool is_letter(char c) { return ccl_isalpha(byte_of(c)) != 0; }

// The word without the first prefix behind which only letters are left.
Text without_prefix(Text word) {
  auto others = std::find_if_not(word.rbegin(), word.rend(), is_letter);
  auto num_letters = static_cast<std::size_t>(others - word.rbegin());
  for (Text prefix : kPrefixes) {
    std::size_t rest = word.size() - std::min(word.size(), prefix.size());
    if (rest > 0 && rest <= num_letters && word.starts_with(prefix)) {
      return word.substr(prefix.size());
    }
  }
  return word;
}

struct Exception {
  Text plural;
  Text singular;
};

constexpr Exception kExceptions[] = {{"has", "has"}};

bool is_one_of(char c, Text letters) { return letters.find(c) != Text::npos; }

// Takes the e off that stood before the s of the plural, and makes -ies a -y.
void remove_e(std::string& word, bool is_y_wanted) {
  if (!is_one_of(word.back(), "eE") || is_one_of(word[word.size() - 2], "aAeEoO")) return;
  word.pop_back();
  if (!is_y_wanted || !is_one_of(word.back(), "iI")) return;
  if (!is_one_of(word[word.size() - 2], "eEaA")) word.back() = word.back() == 'i' ? 'y' : 'Y';
}

void remove_plural(std::string& word) {
  for (const Exception& exception : kExceptions) {
    if (word == exception.plural) {
      word = exception.singular;
      return;
    }
  }
  std::size_t size = word.size();
  if (size < kMinChanged || !is_one_of(word[size - 1], "sS")) return;
  if (is_one_of(word[size - 2], "uUsS")) return;
  word.pop_back();
  remove_e(word, size != 4);  // "pies" becomes "pi"
}

}  // namespace

Text without_prefixes(Text word) {
  while (word.size() >= kMinChanged) {
    Text rest = without_prefix(word);
    if (rest.size() == word.size()) break;
    word = rest;
  }
  return word;
}

std::string singular(Text word) {
  std::string result(word);
  remove_plural(result);
  remove_plural(result);
  return result;
}

}  // namespace vstring
