// The Lancaster stemmer and its rules.
#include "vstring/language/lancaster.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "vstring/charclass.h"
#include "vstring/language/ending.h"

namespace vstring {
namespace {

// A rule is written as its ending; "*" when it is for words that no rule has changed yet; how many
// letters it removes; what it appends; "." when stemming ends with it, ">" when it goes on.
class Rule {
 public:
  constexpr Rule(const char* notation) : Rule(Text(notation)) {}  // NOLINT: the table lists texts

  constexpr unsigned char last_letter() const { return ending_.last(); }
  bool fits(Tail tail, bool is_intact) const {
    return (is_intact || !is_for_intact_) && ending_.ends(tail);
  }
  bool is_final() const { return is_final_; }
  std::string applied(Text word) const {
    std::string candidate(word.substr(0, word.size() - std::min(word.size(), num_removed_)));
    return candidate.append(appended_);
  }

 private:
  constexpr explicit Rule(Text notation)
      : ending_(notation.substr(0, notation.find_first_of("*0123456789"))),
        is_for_intact_(notation[ending_.size()] == '*'),
        is_final_(notation.back() == '.') {
    Text rest = notation.substr(ending_.size() + (is_for_intact_ ? 1 : 0));
    num_removed_ = static_cast<std::size_t>(rest[0] - '0');
    appended_ = rest.substr(1, rest.size() - 2);
  }

  Ending ending_;
  bool is_for_intact_;
  bool is_final_;
  std::size_t num_removed_ = 0;
  Text appended_;
};

// Grouped by the last letter of the ending. Some rules can never be reached, as one before them
// takes all their words; they stay, so that the table is the one that is known.
constexpr Rule kRules[] = {
    // clang-format off
    "ia*2.", "a*1.",
    "bb1.",
    "ytic3s.", "ic2>", "nc1t>",
    "dd1.", "ied3y>", "ceed2ss.", "eed1.", "ed2>", "hood4>",
    "e1>",
    "lief1v.", "if2>",
    "ing3>", "iag3y.", "ag2>", "gg1.",
    "th*2.", "guish5ct.", "ish3>",
    "i*1.", "i1y>",
    "ij1d.", "fuj1s.", "uj1d.", "oj1d.", "hej1r.", "verj1t.", "misj1t.", "nj1d.", "j1s.",
    "ifiabl6.", "iabl4y.", "abl3>", "ibl3.", "bil2l>", "cl1.", "iful4y.", "ful3>", "ul2.", "ial3>",
    "ual3>", "al2>", "ll1.",
    "ium3.", "um*2.", "ism3>", "mm1.",
    "sion4j>", "xion4ct.", "ion3>", "ian3>", "an2>", "een0.", "en2>", "nn1.",
    "ship4>", "pp1.",
    "er2>", "ear0.", "ar2.", "or2>", "ur2>", "rr1.", "tr1>", "ier3y>",
    "ies3y>", "sis2.", "is2>", "ness4>", "ss0.", "ous3>", "us*2.", "s*1>", "s0.",
    "plicat4y.", "at2>", "ment4>", "ent3>", "ant3>", "ript2b.", "orpt2b.", "duct1.", "sumpt2.",
    "cept2iv.", "olut2v.", "sist0.", "ist3>", "tt1.",
    "iqu3.", "ogu1.",
    "siv3j>", "eiv0.", "iv2>",
    "bly1>", "ily3y>", "ply0.", "ly2>", "ogy1.", "phy1.", "omy1.", "opy1.", "ity3>", "ety3>",
    "lty2.", "istry5.", "ary3>", "ory3>", "ify3.", "ncy2t>", "acy3>",
    "iz2>", "yz1s.",
    // clang-format on
};
static_assert(std::size(kRules) == 115);

struct Group {
  const Rule* begin = nullptr;
  const Rule* end = nullptr;
};

constexpr std::array<Group, 256> make_groups() {
  std::array<Group, 256> groups = {};
  for (const Rule& rule : kRules) {
    Group& group = groups[rule.last_letter()];
    if (group.begin == nullptr) group.begin = &rule;
    group.end = &rule + 1;
  }
  return groups;
}

constexpr std::array<Group, 256> kGroups = make_groups();

bool is_vowel(char c) { return Text("aeiou").find(c) != Text::npos; }

bool is_acceptable(Text candidate) {
  if (candidate.empty()) return false;
  if (is_vowel(candidate[0])) return candidate.size() >= 2;
  if (candidate.size() < 3) return false;
  return candidate[0] == 'y' || candidate.find_first_of("aeiouy", 1) != Text::npos;
}

// The word in small letters, NUL in the place of every other byte.
std::string letters_of(Text word) {
  std::string letters(word.size(), '\0');
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (ccl_isalpha(byte_of(word[i]))) letters[i] = static_cast<char>(word[i] | 0x20);
  }
  return letters;
}

class LancasterWord {
 public:
  LancasterWord(Text word, std::FILE* trace) : letters_(letters_of(word)), trace_(trace) {}

  // The word up to its first byte that is no letter.
  const char* text() const { return letters_.c_str(); }

  // Applies the first rule with an acceptable outcome; tells whether to go on.
  bool change() {
    Tail tail(letters_);
    Group group = kGroups[tail.last()];
    for (const Rule* rule = group.begin; rule != group.end; ++rule) {
      if (!rule->fits(tail, is_intact_)) continue;
      std::string candidate = rule->applied(text());
      if (trace_ != nullptr) {
        std::fprintf(trace_, "[\"%s\" -> \"%s\"]", text(), candidate.c_str());
      }
      if (!is_acceptable(candidate)) continue;
      letters_ = std::move(candidate);
      is_intact_ = false;
      return !rule->is_final();
    }
    return false;
  }

 private:
  std::string letters_;
  std::FILE* trace_;
  bool is_intact_ = true;
};

}  // namespace

std::string lancaster_stem(Text word, std::FILE* trace) {
  LancasterWord stem(word, trace);
  if (trace != nullptr) std::fprintf(trace, "%s  ", stem.text());
  while (stem.change()) {
  }
  if (trace != nullptr) std::fprintf(trace, " %s\n", stem.text());
  return stem.text();
}

}  // namespace vstring
