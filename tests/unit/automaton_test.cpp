// The exported automaton and match lists, the former against the definition of its output order.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "vstring/search.h"

namespace {

struct Report {
  std::string pattern;
  std::size_t offset;
  int value;
  bool operator==(const Report&) const = default;
};

struct Recorder {
  const char* text;
  std::vector<Report> reports;
  std::size_t limit;
};

int record(void* ctx, const char* pattern, const char* start, int32_t value) {
  auto& recorder = *static_cast<Recorder*>(ctx);
  recorder.reports.push_back({pattern, static_cast<std::size_t>(start - recorder.text), value});
  return recorder.reports.size() < recorder.limit ? 1 : 0;
}

// What a node's chain holds, for the node that a word leads to: the chain of its longest proper
// suffix that is a node too, turned round, then its own pattern.
std::vector<std::string> chain_of(const std::string& node,
                                  const std::vector<std::string>& patterns) {
  auto is_node = [&](const std::string& word) {
    return std::any_of(patterns.begin(), patterns.end(),
                       [&](const std::string& pattern) { return pattern.starts_with(word); });
  };
  std::vector<std::string> chain;
  for (std::size_t i = 1; i < node.size(); ++i) {
    if (!is_node(node.substr(i))) continue;
    chain = chain_of(node.substr(i), patterns);
    std::reverse(chain.begin(), chain.end());
    break;
  }
  if (std::find(patterns.begin(), patterns.end(), node) != patterns.end()) chain.push_back(node);
  return chain;
}

std::vector<Report> plain_search(const std::vector<std::string>& patterns,
                                 const std::string& text) {
  std::vector<Report> reports;
  for (std::size_t end = 1; end <= text.size(); ++end) {
    for (std::size_t start = 0; start < end; ++start) {
      std::string word = text.substr(start, end - start);
      bool is_node = std::any_of(patterns.begin(), patterns.end(),
                                 [&](const std::string& p) { return p.starts_with(word); });
      if (!is_node) continue;
      for (const std::string& found : chain_of(word, patterns)) {
        auto index = std::find(patterns.begin(), patterns.end(), found) - patterns.begin();
        reports.push_back({found, end - found.size(), static_cast<int>(index) + 1});
      }
      break;
    }
  }
  return reports;
}

TEST(Automaton, ReportsInTheOrderOfItsChains) {
  std::mt19937 random(3);
  for (int round = 0; round < 3000; ++round) {
    auto word = [&](std::size_t longest) {
      std::string result(1 + random() % longest, 'a');
      for (char& c : result) c = "ab\xff"[random() % 3];
      return result;
    };
    std::vector<std::string> patterns;
    for (std::size_t n = 1 + random() % 6; n > 0; --n) patterns.push_back(word(13));
    std::string text;
    while (text.size() < 40)
      text += random() % 2 != 0 ? word(5) : patterns[random() % patterns.size()];
    AcAutomaton* ac = ac_alloc();
    for (std::size_t i = 0; i < patterns.size(); ++i) {
      ASSERT_EQ(ac_insert(ac, patterns[i].c_str(), static_cast<int>(i) + 1), 1);
    }
    ASSERT_EQ(ac_prep(ac), 1);
    std::vector<Report> expected = plain_search(patterns, text);
    Recorder recorder{text.c_str(), {}, SIZE_MAX};
    EXPECT_EQ(ac_search(ac->root, text.c_str(), record, &recorder),
              static_cast<int>(expected.size()));
    EXPECT_EQ(recorder.reports, expected);
    Recorder first{text.c_str(), {}, 1};
    EXPECT_EQ(ac_search(ac->root, text.c_str(), record, &first), expected.empty() ? 0 : 1);
    ac_free(ac);
    EXPECT_EQ(ac->levels_capacity, -1);
    std::free(ac);
  }
}

TEST(Automaton, EmptyPatternsAndTextsReportNothing) {
  AcAutomaton ac;
  ASSERT_EQ(ac_init(&ac), &ac);
  EXPECT_EQ(ac_insert(&ac, "", 1), 1);
  EXPECT_EQ(ac_insert(nullptr, "a", 1), 0);
  EXPECT_EQ(ac_prep(&ac), 1);
  Recorder recorder{"", {}, SIZE_MAX};
  EXPECT_EQ(ac_search(ac.root, "", record, &recorder), 0);
  EXPECT_EQ(ac_search(ac.root, "abc", record, &recorder), 0);
  ac_free(&ac);
  ac_free(nullptr);
}

TEST(MatchList, TheTailIsNeverFreed) {
  MatchList* list = MatchListCreate();
  for (uint32_t i = 0; i < 5; ++i) ASSERT_EQ(AddMatchToList(list, i, 7), list);
  EXPECT_EQ(list->count, 5);
  MatchRecord* tail = list->tail;
  FreeMatchList(list);
  EXPECT_EQ(tail->position, 4U);  // still readable, as AddressSanitizer would tell
  EXPECT_EQ(tail->next, nullptr);
  MatchListInit(list);
  FreeMatchList(list);
  EXPECT_EQ(AddMatchToList(nullptr, 0, 0), nullptr);
  FreeMatchList(nullptr);
  std::free(list);
}

}  // namespace
