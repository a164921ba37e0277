// The automaton against the plain rules, with rows for all nodes, for some, and for hardly any.
#include "vstring/search/pattern_set.h"

#include <gtest/gtest.h>

#include "tests/reference/fenced.h"
#include "tests/reference/search.h"
#include "tests/reference/words.h"

namespace {

using namespace vstring;
using reference::random_below;
using reference::random_word;

constexpr std::size_t kAll = 1U << 30;

PatternSet made_of(const std::vector<std::string>& patterns, std::size_t text_length) {
  PatternSet set;
  for (std::size_t i = 0; i < patterns.size(); ++i) {
    set.add(patterns[i], static_cast<std::uint32_t>(i) + 1);
  }
  set.prepare(text_length);
  return set;
}

reference::Reports reports_of(const PatternSet& set, Text text) {
  reference::Reports reports;
  for (const auto& report : set.all(text, kAll)) reports.emplace_back(report.offset, report.value);
  return reports;
}

void expect_agreement(const std::vector<std::string>& patterns, Text text, std::size_t length) {
  reference::Reports expected = reference::occurrences_of_set(patterns, text);
  PatternSet set = made_of(patterns, length);
  ASSERT_EQ(reports_of(set, text), expected) << testing::PrintToString(patterns) << " in " << text;
  auto first = set.first(text);
  ASSERT_EQ(first.has_value(), !expected.empty());
  if (first) {
    ASSERT_EQ(first->offset, expected[0].first);
    ASSERT_EQ(first->value, expected[0].second);
  }
}

TEST(PatternSet, AgreesOnAllPairsOfShortWords) {
  std::vector<std::string> words = reference::all_words(2, 4);
  for (const std::string& one : words) {
    for (const std::string& other : words) expect_agreement({one, other}, "abaababbaabbbaaaab", 0);
  }
}

TEST(PatternSet, AgreesOnRandomSets) {
  std::mt19937 random(61);
  for (int round = 0; round < 1500; ++round) {
    std::size_t letters = 1 + random_below(random, 4);
    std::vector<std::string> patterns(random_below(random, 60));
    for (std::string& p : patterns) p = random_word(random, letters, random_below(random, 12));
    expect_agreement(patterns, random_word(random, letters, random_below(random, 80)),
                     random_below(random, 2000));
  }
}

TEST(PatternSet, NeverReadsPastTheText) {
  reference::Fenced fence;
  std::mt19937 random(63);
  for (std::size_t length = 1; length < 200; ++length) {
    std::vector<std::string> patterns(1 + random_below(random, 4));
    for (std::string& p : patterns) p = random_word(random, 5, 1 + random_below(random, 4));
    std::string text = random_word(random, 8, length);
    expect_agreement(patterns, fence.at_end(text), 1000);
    expect_agreement(patterns, fence.at_start(text), 1000);
  }
}

// Chains written out for a, aa, aaa, ... would take gigabytes here.
TEST(PatternSet, KeepsChainsOfSuffixesLinear) {
  std::vector<std::string> patterns;
  std::string word;
  for (int i = 0; i < 5000; ++i) patterns.push_back(word += 'a');
  PatternSet set = made_of(patterns, kAll);
  EXPECT_EQ(set.first(word), (PatternSet::Report{0, 1}));
  EXPECT_EQ(set.all(word, kAll).size(), 5000U * 5001 / 2);
  auto few = set.all(word, 3);
  ASSERT_EQ(few.size(), 3U);
  EXPECT_EQ(few[1],
            (PatternSet::Report{1, 1}));  // of those that end at the second byte "a" is first
  EXPECT_EQ(few[2], (PatternSet::Report{0, 2}));
}

TEST(PatternSet, TakesMoreNodesThanRows) {
  std::mt19937 random(62);
  std::vector<std::string> patterns;
  std::string text;
  for (int i = 0; i < 100000; ++i) {
    patterns.push_back(random_word(random, 26, 12));
    if (i % 100 == 0) text += patterns.back();
  }
  PatternSet rowless = made_of(patterns, 0);
  reference::Reports reports = reports_of(rowless, text);
  EXPECT_GE(reports.size(), 1000U);
  EXPECT_EQ(reports_of(made_of(patterns, kAll), text), reports);
}

}  // namespace
