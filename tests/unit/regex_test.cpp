// The regular-expression engine: the program's format, errors, and matching compared with the plain
// recursive matcher.
#include "vstring/regex.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/reference/regex_reference.h"
#include "vstring/regex/match.h"

namespace {

using vstring::regex::Dfa;

struct Free {
  void operator()(RegexpRecord* record) const { std::free(record); }
};
using Record = std::unique_ptr<RegexpRecord, Free>;

Record compile(const std::string& pattern) { return Record(vrx_regcomp(pattern.c_str())); }

std::string error_of(const std::string& pattern) {
  vrx_regerror("none");
  return compile(pattern) == nullptr ? vrx_regerror(nullptr) : "compiled";
}

std::string bytes(const char* text, std::size_t length) { return {text, length}; }

TEST(Regex, ProgramsAreWrittenInTheDocumentedFormat) {
  // BRANCH(6) -> END: LITERAL(8) "ab", OPEN_1(21), BRANCH, ANY_OF(4) "xy", CLOSE_1(31), END(0)
  Record record = compile("ab([x-y])");
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(bytes(reinterpret_cast<char*>(record->program), 28), bytes("\x9c"
                                                                       "\x06\x00\x18"
                                                                       "\x08\x00\x06"
                                                                       "ab\0"
                                                                       "\x15\x00\x03"
                                                                       "\x06\x00\x09"
                                                                       "\x04\x00\x06xy\0"
                                                                       "\x1f\x00\x03"
                                                                       "\x00\x00\x00",
                                                                       28));
  EXPECT_EQ(record->start_char, 'a');
  // A complex repetition: BRANCH over group and BACK, BRANCH over EMPTY.
  record = compile("(a)*");
  EXPECT_EQ(bytes(reinterpret_cast<char*>(record->program), 32), bytes("\x9c"
                                                                       "\x06\x00\x1d"
                                                                       "\x06\x00\x14"
                                                                       "\x15\x00\x03"
                                                                       "\x06\x00\x08"
                                                                       "\x08\x00\x05"
                                                                       "a\0"
                                                                       "\x1f\x00\x03"
                                                                       "\x07\x00\x11"
                                                                       "\x06\x00\x03"
                                                                       "\x09\x00\x03"
                                                                       "\x00",
                                                                       32));
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

void expect_equal_matches(const RegexpRecord& record, const RegexpRecord& expected,
                          const std::string& pattern, const std::string& text) {
  for (int i = 0; i < VRX_NUM_MATCHES; ++i) {
    EXPECT_EQ(record.match_start[i], expected.match_start[i])
        << pattern << " on " << text << " " << i;
    EXPECT_EQ(record.match_end[i], expected.match_end[i]) << pattern << " on " << text << " " << i;
  }
}

TEST(Regex, MatchesAreThoseOfThePlainMatcher) {
  PatternMaker maker(1);
  int num_compiled = 0;
  for (int round = 0; round < 30000; ++round) {
    std::string pattern = maker.pattern(2);
    Record record = compile(pattern);
    if (record == nullptr) continue;
    ++num_compiled;
    Record expected = compile(pattern);
    vstring::regex::Prepared prepared(*record);
    vstring::regex::StartPairs pairs(prepared);
    for (int n = 0; n < 4; ++n) {
      std::string text = maker.text();
      bool is_match = reference::regexec(*expected, text.c_str());
      ASSERT_EQ(vrx_regexec(record.get(), text.c_str()) != 0, is_match)
          << pattern << " on " << text;
      if (is_match) expect_equal_matches(*record, *expected, pattern, text);
      vstring::regex::Captures threads;
      const char* begin = text.c_str();
      ASSERT_EQ(
          vstring::regex::find_with_threads(prepared, begin, begin, begin + text.size(), threads),
          is_match)
          << pattern << " on " << text;
      if (!is_match) continue;
      if (expected->match_end[0] != expected->match_start[0]) {
        EXPECT_TRUE(pairs.may_start(expected->match_start[0], begin + text.size())) << pattern;
      }
      RegexpRecord by_threads = *record;
      std::copy(threads.start.begin(), threads.start.end(), by_threads.match_start);
      std::copy(threads.end.begin(), threads.end.end(), by_threads.match_end);
      expect_equal_matches(by_threads, *expected, pattern, text);
    }
  }
  EXPECT_GT(num_compiled, 10000);
}

// One subject searched again and again, by all ways of searching: what was learnt before must not
// change later results.
TEST(Regex, SearchesOfOneSubjectAreIndependent) {
  PatternMaker maker(2);
  for (int round = 0; round < 3000; ++round) {
    std::string pattern = maker.pattern(2);
    Record record = compile(pattern);
    if (record == nullptr) continue;
    vstring::regex::Prepared prepared(*record);
    std::string text;
    while (text.size() < 60) text += maker.text();
    vstring::regex::Execution execution(prepared, text, true);
    vstring::regex::StartFinder starts(prepared, text);
    Dfa dfa(prepared, text);
    for (std::size_t from = 0; from < text.size(); from += 7) {
      vstring::regex::Captures captures;
      const char* origin = text.c_str() + from;
      bool is_match = reference::regexec(*record, origin);
      ASSERT_EQ(execution.search(from, captures), is_match) << pattern << " on " << text << from;
      Dfa::Span span{};
      auto outcome = is_match ? Dfa::Outcome::Match : Dfa::Outcome::NoMatch;
      if (record->anchored == 0) {
        ASSERT_EQ(dfa.search(origin, origin, starts, span), outcome) << pattern << " on " << text;
      }
      if (!is_match) continue;
      if (record->anchored == 0) {
        EXPECT_EQ(span.start, record->match_start[0]) << pattern << " on " << text << from;
        EXPECT_EQ(span.end, record->match_end[0]) << pattern << " on " << text << from;
      }
      EXPECT_EQ(captures.start[0], record->match_start[0]) << pattern << " on " << text << from;
      EXPECT_EQ(captures.end[0], record->match_end[0]) << pattern << " on " << text << from;
    }
  }
}

// Texts long enough for every way of searching to be taken up and left again.
TEST(Regex, LongTextsAreSearchedAsByThreads) {
  PatternMaker maker(3);
  for (int round = 0; round < 1500; ++round) {
    std::string pattern = maker.pattern(2);
    Record record = compile(pattern);
    if (record == nullptr) continue;
    vstring::regex::Prepared prepared(*record);
    std::string text;
    while (text.size() < 3000)
      text.append(maker.text()).append(static_cast<std::size_t>(round % 9), 'd');
    const char* end = text.data() + text.size();
    using vstring::regex::Execution;
    std::size_t max_frames =
        round % 3 == 0 ? static_cast<std::size_t>(round % 7) : Execution::kMaxFrames;
    for (bool wants_groups : {false, true}) {
      Execution execution(prepared, text, wants_groups, max_frames);
      std::size_t from = 0;
      for (int n = 0; n < 200 && from < text.size(); ++n) {
        const char* origin = text.data() + from;
        vstring::regex::Captures captures, expected;
        bool is_match = find_with_threads(prepared, origin, origin, end, expected);
        ASSERT_EQ(execution.search(from, captures), is_match) << pattern << " at " << from;
        if (!is_match) break;
        std::size_t compared = wants_groups ? VRX_NUM_MATCHES : 1;
        for (std::size_t i = 0; i < compared; ++i) {
          ASSERT_EQ(captures.text(i).data(), expected.text(i).data()) << pattern << " at " << from;
          ASSERT_EQ(captures.end[i], expected.end[i]) << pattern << " at " << from;
        }
        from = std::max(from + 1, static_cast<std::size_t>(captures.end[0] - text.data()));
      }
    }
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
    vstring::regex::Prepared prepared(*record);
    std::string text(1'500'000, 'a');  // the second alternative is found at every byte
    vstring::regex::Execution execution(prepared, text, true);
    vstring::regex::Captures captures;
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
