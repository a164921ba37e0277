// The regular-expression engine: the program's format, errors, and matching compared with the plain
// recursive matcher.
#include "vstring/regex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/reference/regex_reference.h"
#include "vstring/regex/match.h"

namespace {

using vstring::regex::Captures;
using vstring::regex::Execution;
using vstring::regex::find_with_threads;
using vstring::regex::Limits;
using vstring::regex::Prepared;

struct Free {
  void operator()(RegexpRecord* record) const { std::free(record); }
};
using Record = std::unique_ptr<RegexpRecord, Free>;

Record compile(const std::string& pattern) { return Record(vrx_regcomp(pattern.c_str())); }

std::string error_of(const std::string& pattern) {
  vrx_regerror("none");
  return compile(pattern) == nullptr ? vrx_regerror(nullptr) : "compiled";
}

// The beginning of a program, two digits a byte.
std::string program_of(const Record& record, std::size_t size) {
  std::string digits;
  for (std::size_t i = 0; i < size; ++i) {
    for (int half : {record->program[i] / 16, record->program[i] % 16}) {
      digits += "0123456789abcdef"[half];
    }
  }
  return digits;
}

TEST(Regex, ProgramsAreWrittenInTheDocumentedFormat) {
  // BRANCH(6) -> END: LITERAL(8) "ab", OPEN_1(21), BRANCH, ANY_OF(4) "xy", CLOSE_1(31), END(0)
  Record record = compile("ab([x-y])");
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(program_of(record, 28), "9c0600180800066162001500030600090400067879001f0003000000");
  EXPECT_EQ(record->start_char, 'a');
  // A complex repetition: BRANCH over group and BACK, BRANCH over EMPTY.
  record = compile("(a)*");
  EXPECT_EQ(program_of(record, 32),
            "9c06001d06001415000306000808000561001f00030700110600030900030000");
}

TEST(Regex, HintsNameTheLongestLiteralOfATopLevelThatStartsWithARepetition) {
  Record record = compile("x*abc.def");
  ASSERT_NE(record->must_text, nullptr);
  EXPECT_EQ(std::string(record->must_text, 3), "def");  // the last one of equals
  EXPECT_EQ(compile("abc.def")->must_text, nullptr);
  EXPECT_EQ(compile("^a")->anchored, 1);
  EXPECT_EQ(compile("^a|b")->anchored, 0);
}

TEST(Regex, ErrorsComeFromLeftToRight) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"a**", "nested *?+"},
      {"a*?", "nested *?+"},
      {"*a", "?+* follows nothing"},
      {"(|*a)", "?+* follows nothing"},
      {"(^)*", "*+ operand could be empty"},
      {"^**", "*+ operand could be empty"},
      {"(a", "unmatched ()"},
      {"a)", "unmatched ()"},
      {"a)*", "unmatched ()"},
      {"[a", "unmatched []"},
      {"[a-", "unmatched []"},
      {"[z-a]", "invalid [] range"},
      {"[b-a]", "compiled"},
      {"a\\", "trailing \\"},
      {"[a-\xff]", "compiled"},
      {"()?", "compiled"},
      {"(((((((((a)))))))))", "compiled"},
      {"(((((((((((*", "too many ()"}};
  for (const auto& [pattern, message] : cases) EXPECT_EQ(error_of(pattern), message) << pattern;
  EXPECT_EQ(error_of(std::string(32755, 'a')), "compiled");
  EXPECT_EQ(error_of(std::string(32756, 'a')), "regexp too big");
  EXPECT_EQ(error_of(std::string(40000, 'a') + "("), "unmatched ()");
  EXPECT_EQ(vrx_regcomp(nullptr), nullptr);
  EXPECT_STREQ(vrx_regerror(nullptr), "NULL argument");
}

TEST(Regex, ExecutionRefusesWhatIsNoProgram) {
  Record record = compile("a");
  EXPECT_EQ(vrx_regexec(record.get(), "ba"), 1);
  EXPECT_EQ(vrx_regexec(record.get(), "b"), 0);
  EXPECT_EQ(record->match_start[0], nullptr);
  EXPECT_EQ(record->match_end[0], nullptr);
  EXPECT_EQ(vrx_regexec(record.get(), nullptr), 0);
  EXPECT_STREQ(vrx_regerror(nullptr), "NULL parameter");
  record->program[4] = 15;
  EXPECT_EQ(vrx_regexec(record.get(), "a"), 0);
  EXPECT_STREQ(vrx_regerror(nullptr), "memory corruption");
  record->program[0] = 0;
  EXPECT_EQ(vrx_regexec(record.get(), "a"), 0);
  EXPECT_STREQ(vrx_regerror(nullptr), "corrupted program");
}

// Random patterns over a small alphabet, mostly well formed.
class PatternMaker {
 public:
  explicit PatternMaker(unsigned seed) : random_(seed) {}

  std::string pattern(int depth) {
    std::string result = sequence(depth);
    while (pick(4) == 0) result.append("|").append(sequence(depth));
    return result;
  }
  std::string text() {
    std::string result;
    for (int n = pick(12); n > 0; --n) result += "abc"[pick(3)];
    return result;
  }

 private:
  int pick(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }

  std::string sequence(int depth) {
    std::string result;
    for (int n = pick(4); n > 0; --n) result += atom(depth) + operators_[pick(6)];
    return result;
  }
  std::string atom(int depth) {
    static const char* const kAtoms[] = {"a", "b", "c", "ab", ".", "[ab]", "[^a]", "^", "$"};
    if (depth > 0 && pick(3) == 0) return std::string("(").append(pattern(depth - 1)).append(")");
    return kAtoms[pick(9)];
  }

  std::mt19937 random_;
  const char* operators_[6] = {"", "", "", "*", "+", "?"};
};

// Limits at their extremes: every way of searching is taken at once, or left again at once.
std::vector<Limits> forced_limits() {
  Limits backtracking;
  backtracking.free_moves = SIZE_MAX / 2;
  Limits noting;  // failures from the first choice on
  noting.choices_per_byte = 0;
  noting.max_memory = 0;
  Limits by_states;
  by_states.free_moves = 0;
  by_states.bytes_per_move = SIZE_MAX;
  Limits by_threads;
  by_threads.max_frames = by_threads.max_note_bits = by_threads.max_memory = 0;
  std::vector<Limits> all{Limits(), backtracking, noting, by_states, by_threads};
  for (std::size_t i = 0; i <= 8; ++i) {
    Limits few_frames = i % 2 == 0 ? noting : Limits();
    few_frames.max_frames = i;
    few_frames.max_memory = 0;  // what runs out of frames works from the end of the text
    all.push_back(few_frames);
    few_frames.max_memory = Limits().max_memory;
    few_frames.max_note_bits = i * 100;
    all.push_back(few_frames);
    Limits few_states = by_states;
    few_states.max_memory = i * 400;
    few_states.worth_pairs = few_states.worth_filter = i / 2 + 1;
    all.push_back(few_states);
    few_states = by_states;
    few_states.free_visits = i * 8;
    few_states.max_rounds = 0;
    few_states.free_bytes = few_states.visits_per_byte = i + 1;
    all.push_back(few_states);
  }
  return all;
}

void expect_match(const Captures& captures, const RegexpRecord& expected, bool has_groups,
                  const std::string& what) {
  for (std::size_t i = 0; i < (has_groups ? VRX_NUM_MATCHES : 1); ++i) {
    ASSERT_EQ(captures.start[i], expected.match_start[i]) << what << ", start of " << i;
    ASSERT_EQ(captures.end[i], expected.match_end[i]) << what << ", end of " << i;
  }
}

// All matches of a text one after the other, each search in the rest as a text of its own: what was
// learnt before must not change later results. `plain` searches by the plain matcher.
void expect_same_searches(const Prepared& prepared, RegexpRecord& plain, const std::string& text,
                          bool wants_groups, const Limits& limits, const std::string& what) {
  Execution execution(prepared, text, wants_groups, limits);
  for (std::size_t from = 0, n = 0; from <= text.size() && n < 4; ++n) {
    Captures captures;
    bool is_match = reference::regexec(plain, text.c_str() + from);
    ASSERT_EQ(execution.search(from, captures), is_match) << what << " from " << from;
    if (n == 0) {
      ASSERT_EQ(execution.search(from, captures), is_match) << what << " again";
    }
    if (!is_match) return;
    expect_match(captures, plain, wants_groups, what);
    if (::testing::Test::HasFatalFailure()) return;
    auto end = static_cast<std::size_t>(captures.end[0] - text.c_str());
    from = std::max(from + 1, end);
  }
}

TEST(Regex, MatchesAreThoseOfThePlainMatcherWhateverTheLimits) {
  PatternMaker maker(1);
  const std::vector<Limits> all_limits = forced_limits();
  int num_compiled = 0;
  for (int round = 0; round < 12000; ++round) {
    std::string pattern = maker.pattern(2);
    Record record = compile(pattern);
    if (record == nullptr) continue;
    ++num_compiled;
    Prepared prepared(*record);
    vstring::regex::StartPairs pairs(prepared);
    std::string text = maker.text();
    std::string what = pattern + " on " + text;
    for (std::size_t i = 0; i < all_limits.size(); ++i) {
      bool wants_groups = (i + static_cast<std::size_t>(round)) % 4 != 0;
      expect_same_searches(prepared, *record, text, wants_groups, all_limits[i],
                           what + ", limits " + std::to_string(i));
      if (HasFatalFailure()) return;
    }
    bool is_match = reference::regexec(*record, text.c_str());
    if (is_match && record->match_end[0] != record->match_start[0]) {
      EXPECT_TRUE(pairs.may_start(record->match_start[0], text.c_str() + text.size())) << what;
    }
    Record filled = compile(pattern);
    ASSERT_EQ(vrx_regexec(filled.get(), text.c_str()) != 0, is_match) << what;
    for (int i = 0; is_match && i < VRX_NUM_MATCHES; ++i) {
      EXPECT_EQ(filled->match_start[i], record->match_start[i]) << what;
      EXPECT_EQ(filled->match_end[i], record->match_end[i]) << what;
    }
  }
  EXPECT_GT(num_compiled, 5000);
}

// Texts long enough for every way of searching to be taken up and left again.
TEST(Regex, LongTextsAreSearchedAsByThreads) {
  PatternMaker maker(3);
  const std::vector<Limits> all_limits = forced_limits();
  for (std::size_t round = 0; round < 1500; ++round) {
    std::string pattern = maker.pattern(2);
    Record record = compile(pattern);
    if (record == nullptr) continue;
    Prepared prepared(*record);
    std::string text;
    while (text.size() < 3000) text.append(maker.text()).append(round % 9, 'd');
    const char* end = text.data() + text.size();
    for (bool wants_groups : {false, true}) {
      Execution execution(prepared, text, wants_groups,
                          all_limits[round % 3 == 0 ? 0 : round % all_limits.size()]);
      std::size_t from = 0;
      for (int n = 0; n < 200 && from < text.size(); ++n) {
        const char* origin = text.data() + from;
        Captures captures, expected;
        bool is_match = find_with_threads(prepared, origin, origin, end, expected);
        ASSERT_EQ(execution.search(from, captures), is_match) << pattern << " at " << from;
        if (!is_match) break;
        for (std::size_t i = 0; i < (wants_groups ? VRX_NUM_MATCHES : 1); ++i) {
          ASSERT_EQ(captures.start[i], expected.start[i]) << pattern << " at " << from;
          ASSERT_EQ(captures.end[i], expected.end[i]) << pattern << " at " << from;
        }
        from = std::max(from + 1, static_cast<std::size_t>(captures.end[0] - text.data()));
      }
    }
  }
}

// What can come first after a loop is known only when the loop has been gone round.
TEST(Regex, AnAlternativeAtTheEndOfALoopMayBeEmpty) {
  for (const char* pattern : {"(a(b*|x))*c", "(a(b?|x))*c", "(a(x|b*))+c"}) {
    for (const char* text : {"ac", "abac", "aac", "xac"}) {
      Record record = compile(pattern);
      Prepared prepared(*record);
      expect_same_searches(prepared, *record, text, true, Limits(), std::string(pattern) + text);
    }
  }
}

// What follows a repetition may lead back to it without a byte between.
TEST(Regex, RepetitionsThatEndALoopAreSearchedFromTheEndToo) {
  const std::vector<std::array<std::string, 3>> cases = {
      {"^(,?[a-z]+)+,$", "ab,cde,", ""},
      {"^( ?[a-z]+)+ [0-9]$", "the quick fox ", "7"},
      {"(a?b+)+", "bbabbbb", "a"}};
  Limits limits;
  limits.max_frames = 4;
  for (const auto& [pattern, repeated, after] : cases) {
    std::string text;
    for (int i = 0; i < 100; ++i) text += repeated;
    text += after;
    Record record = compile(pattern);
    Prepared prepared(*record);
    expect_same_searches(prepared, *record, text, true, limits, pattern);
  }
}

TEST(Regex, NoPatternTakesExponentialOrQuadraticTime) {
  std::string many(10000, 'a');
  for (const char* pattern :
       {"(a+)+b", "(a|aa)+$b", "(a*)b|(a*a*a*a*a*)c", ".*.*.*.*x[^a]", "(aa?a?a?)+b",
        "((a+)|(aa+))+b", "[ab]*[^a]c", "(.*)(.*)(.*)(.*)(.*)[xyz]"}) {
    Record record = compile(pattern);
    ASSERT_NE(record, nullptr) << pattern;
    EXPECT_EQ(vrx_regexec(record.get(), many.c_str()), 0) << pattern;
  }
  for (const char* pattern : {"^(aa|a)*b|a", "^((aa|a)*)b|a", "((aa|a)*)b|a"}) {
    Record record = compile(pattern);
    Prepared prepared(*record);
    std::string text(1'500'000, 'a');  // the second alternative is found at every byte
    Execution execution(prepared, text, true);
    Captures captures;
    std::size_t from = 0;
    for (; execution.search(from, captures) && !captures.is_set(1); ++from)
      ASSERT_EQ(captures.text(0).data(), text.data() + from) << pattern;
    EXPECT_EQ(from, text.size()) << pattern;
  }
  std::string long_text(3'000'000, 'a');
  Record record = compile("((a)|b)*c");
  EXPECT_EQ(vrx_regexec(record.get(), long_text.c_str()), 0);
  record = compile("((a|b)(a|b))*");
  EXPECT_EQ(vrx_regexec(record.get(), long_text.c_str()), 1);
  EXPECT_EQ(record->match_end[0], long_text.c_str() + long_text.size());
}

}  // namespace
