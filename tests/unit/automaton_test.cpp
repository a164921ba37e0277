// The exported automaton: its reports against the rule of their order, its records, and what
// happens when memory runs out.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/faults/failing_malloc.h"
#include "tests/reference/search.h"
#include "tests/reference/words.h"
#include "vstring/search.h"

namespace {

using Patterns = std::vector<std::string>;
using reference::random_below;
using reference::Reports;

struct Recorder {
  const char* text;
  const Patterns& patterns;
  Reports reports;
  std::size_t limit;
};

int record(void* ctx, const char* pattern, const char* start, int32_t value) {
  auto& recorder = *static_cast<Recorder*>(ctx);
  auto index = static_cast<unsigned>(value);
  EXPECT_EQ(recorder.patterns[index - 1], pattern);
  recorder.reports.emplace_back(start - recorder.text, index);
  return recorder.reports.size() < recorder.limit ? 1 : 0;
}

// Inserts the patterns with their 1-based indices as far as there is memory; the number inserted.
std::size_t insert(AcAutomaton* ac, const Patterns& patterns) {
  std::size_t i = 0;
  while (i < patterns.size() && ac_insert(ac, patterns[i].c_str(), static_cast<int>(i) + 1) == 1) {
    ++i;
  }
  return i;
}

Reports reports_of(const AcAutomaton& ac, const Patterns& patterns, const std::string& text,
                   std::size_t limit = SIZE_MAX) {
  Recorder recorder{text.c_str(), patterns, {}, limit};
  int calls = ac_search(ac.root, text.c_str(), record, &recorder);
  EXPECT_EQ(static_cast<std::size_t>(calls), recorder.reports.size());
  return recorder.reports;
}

void expect_agreement(const Patterns& patterns, const std::string& text) {
  AcAutomaton* ac = ac_alloc();
  ASSERT_EQ(insert(ac, patterns), patterns.size());
  ASSERT_EQ(ac_prep(ac), 1);
  Reports expected = reference::occurrences_of_set(patterns, text);
  EXPECT_EQ(reports_of(*ac, patterns, text), expected) << testing::PrintToString(patterns) << text;
  if (expected.size() > 2) expected.resize(2);
  EXPECT_EQ(reports_of(*ac, patterns, text, 2), expected);
  ac_free(ac);
  std::free(ac);
}

TEST(Automaton, AgreesOnRandomSets) {
  std::mt19937 random(3);
  for (int round = 0; round < 1500; ++round) {
    std::size_t letters = 1 + random_below(random, 3);
    Patterns patterns(random_below(random, 30));
    for (std::string& p : patterns)
      p = reference::random_word(random, letters, random_below(random, 25));
    std::string text = reference::random_word(random, letters, random_below(random, 60));
    for (const std::string& p : patterns) text += random_below(random, 4) == 0 ? p : "";
    for (char& c : text) c = static_cast<char>(c == 'c' ? '\xff' : c);
    for (std::string& p : patterns) {
      for (char& c : p) c = static_cast<char>(c == 'c' ? '\xff' : c);
    }
    expect_agreement(patterns, text);
  }
}

TEST(Automaton, ReportsWhatEndsTogetherInTheOrderOfTheChain) {
  Patterns patterns{"she", "he", "e"};
  AcAutomaton ac;
  ASSERT_EQ(ac_init(&ac), &ac);
  insert(&ac, patterns);
  ASSERT_EQ(ac_prep(&ac), 1);
  // chain(he) = e, he; chain(she) = he, e, she.
  EXPECT_EQ(reports_of(ac, patterns, "she"), (Reports{{1, 2}, {2, 3}, {0, 1}}));
  ac_free(&ac);
}

TEST(Automaton, KeepsItsRecordsAsDocumented) {
  AcAutomaton ac;
  ASSERT_EQ(ac_init(&ac), &ac);
  EXPECT_EQ(ac.levels_capacity, 10);
  EXPECT_EQ(insert(&ac, {"ab", "ac", "b", "ab", ""}), 5U);
  const AcNode* a = ac.root['a'];
  EXPECT_EQ(ac.levels[1], ac.root[0]);  // the newest comes first
  EXPECT_EQ(ac.levels[1]->level_next, ac.root['b']);
  ASSERT_NE(a->edges, nullptr);
  EXPECT_EQ(a->edges->byte, static_cast<uint32_t>('c'));
  EXPECT_EQ(a->edges->terminal_value, 2);
  const AcEdge* to_ab = a->edges->next;
  EXPECT_EQ(to_ab->terminal_value, 1);
  EXPECT_EQ(to_ab->target->outputs->value, 1);  // inserted again with 4
  EXPECT_EQ(to_ab->target->outputs->length, 2U);
  EXPECT_EQ(insert(&ac, {"0123456789"}), 1U);
  EXPECT_EQ(ac.levels_capacity, 20);
  ASSERT_EQ(ac_prep(&ac), 1);
  EXPECT_EQ(to_ab->target->failure, ac.root['b']);
  EXPECT_STREQ(to_ab->target->outputs->pattern, "b");
  EXPECT_STREQ(to_ab->target->outputs->next->pattern, "ab");
  EXPECT_EQ(ac_search(ac.root, "", nullptr, nullptr), 0);
  ac_free(&ac);
  EXPECT_EQ(ac.levels_capacity, -1);
  EXPECT_EQ(ac.levels, nullptr);
  EXPECT_EQ(ac.pool, nullptr);
  EXPECT_EQ(ac_insert(&ac, "a", 1), 0);
  EXPECT_EQ(ac_init(nullptr), nullptr);
  ac_free(nullptr);
}

TEST(Automaton, GivesUpInOrderWithoutMemory) {
  Patterns patterns{"needle", "need", "e"};
  for (char c = 'a'; c <= 'h'; ++c) patterns.push_back(std::string(70, c) + "needle");
  std::string text = "needles " + patterns.back();
  faults::Refusals seen = faults::refuse_each([&] {
    AcAutomaton* ac = ac_alloc();
    if (ac == nullptr) return;
    std::size_t num_inserted = insert(ac, patterns);
    if (ac_prep(ac) == 1) {
      faults::Counting off(false);
      Patterns inserted(patterns.begin(), patterns.begin() + static_cast<long>(num_inserted));
      // The beginning of a pattern that was given up may stand between others and turn chains
      // round.
      Reports found = reports_of(*ac, patterns, text);
      Reports expected = reference::occurrences_of_set(inserted, text);
      EXPECT_TRUE(
          std::is_permutation(found.begin(), found.end(), expected.begin(), expected.end()));
    }
    ac_free(ac);
    std::free(ac);
  });
  EXPECT_GE(seen.num_refused, 6U);
  EXPECT_EQ(seen.first_leak, 0U);
}

}  // namespace
