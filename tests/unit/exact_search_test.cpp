// Exact search against the plain scan: every kernel, the two-way search alone, and both together.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/reference/fenced.h"
#include "tests/reference/search.h"
#include "tests/reference/words.h"
#include "vstring/search.h"
#include "vstring/search/exact.h"
#include "vstring/search/substitution.h"

namespace {

using namespace vstring;
using reference::random_below;
using reference::random_word;
using Offsets = std::vector<std::size_t>;

Offsets found_by(const ExactSearcher& searcher, Text text) {
  Offsets found;
  searcher.each(text, [&](std::size_t at) { return found.push_back(at), true; });
  return found;
}

Offsets found_by_two_way(Text pattern, Text text) {
  Offsets found;
  if (pattern.empty() || pattern.size() > text.size()) return found;
  TwoWay two_way(pattern);
  TwoWay::Position at;
  std::size_t limit = text.size() - pattern.size() + 1;
  for (std::size_t i; (i = two_way.next(text, at, limit)) != Text::npos;) found.push_back(i);
  return found;
}

void expect_agreement(Text pattern, Text text) {
  Offsets expected = reference::occurrences(pattern, text);
  ExactSearcher searcher(pattern);
  ASSERT_EQ(found_by(searcher, text), expected) << pattern << " in " << text;
  ASSERT_EQ(found_by_two_way(pattern, text), expected) << pattern << " in " << text;
  ASSERT_EQ(searcher.count(text), expected.size()) << pattern << " in " << text;
  std::size_t first = expected.empty() ? Text::npos : expected.front();
  ASSERT_EQ(find_text(pattern, text), first) << pattern << " in " << text;
  for (std::size_t from : {std::size_t{1}, text.size() / 2, text.size()}) {
    auto next = std::lower_bound(expected.begin(), expected.end(), from);
    ASSERT_EQ(searcher.find(text, from), next == expected.end() ? Text::npos : *next);
  }
}

TEST(ExactSearch, AgreesOnAllShortWords) {
  std::vector<std::string> texts = reference::all_words(2, 9);
  for (const std::string& pattern : reference::all_words(2, 6)) {
    for (const std::string& text : texts) expect_agreement(pattern, text);
  }
}

// Patterns cut from the text, often periodic ones, of all the lengths that are checked differently.
TEST(ExactSearch, AgreesOnRandomTexts) {
  std::mt19937 random(51);
  for (int round = 0; round < 4000; ++round) {
    std::size_t letters = 1 + random_below(random, 3);
    std::size_t length = round % 50 == 0 ? 30000 : 700;  // the long ones leave the two-way search
    std::string text = random_word(random, letters, random_below(random, length));
    std::string unit = random_word(random, letters, 1 + random_below(random, 90));
    while (unit.size() < length && random_below(random, 4) != 0) unit += unit;
    text.insert(random_below(random, text.size() + 1), unit);
    std::size_t start = random_below(random, text.size());
    std::string pattern = text.substr(start, 1 + random_below(random, 200));
    if (random_below(random, 4) == 0) pattern.back() = 'z';
    expect_agreement(pattern, text);
  }
}

// The result's size and where it is cut, on words in which occurrences overlap.
TEST(Substitution, AgreesOnAllShortWords) {
  std::vector<std::string> texts = reference::all_words(2, 10);
  for (const std::string& pattern : reference::all_words(2, 4)) {
    for (const std::string& text : texts) {
      for (Text replacement : {"", "x", "xy", "xyz", "abaab"}) {
        if (pattern.empty() || text.empty()) continue;
        Substitution substitution(text, pattern, replacement);
        ASSERT_EQ(substitution.is_idle(), text.find(pattern) == std::string::npos);
        std::string result(substitution.length(), '?');
        substitution.write(result.data());
        ASSERT_EQ(result, reference::replace_all(text, pattern, replacement))
            << pattern << " in " << text;
      }
    }
  }
}

TEST(ExactSearch, ExportedFormCountsFromOne) {
  EXPECT_EQ(Search("cd", 2, "abcdcd", 6), 3U);
  EXPECT_EQ(Search("cd", 2, "abcd", 3), 0U);
  EXPECT_EQ(Search("", 0, "abc", 3), 0U);
  EXPECT_EQ(Search("a", 1, "", 0), 0U);
}

// Quadratic work would take minutes here.
TEST(ExactSearch, IsLinearOnPeriodicTexts) {
  const std::size_t n = 4000000, m = 1000000;
  std::string text(n, 'a');
  EXPECT_EQ(count_occurrences(std::string(m, 'a'), text), n - m + 1);
  std::string with_b = std::string(m, 'a') + 'b' + std::string(m, 'a');
  EXPECT_EQ(count_occurrences(with_b, text), 0U);
  EXPECT_EQ(count_occurrences('b' + std::string(m, 'a'), text), 0U);
  EXPECT_EQ(count_occurrences(std::string(m, 'a') + 'b', text), 0U);
  std::string twos, zeros;
  for (std::size_t i = 0; i < 2000; ++i) twos += std::string(999, 'a') + 'b';
  EXPECT_EQ(count_occurrences(twos.substr(0, m), twos), 1001U);
  EXPECT_EQ(count_occurrences(std::string(999, 'a') + "ba", twos), 1999U);
  EXPECT_EQ(count_occurrences(twos.substr(0, m) + 'b', twos), 0U);
}

TEST(ExactSearch, NeverReadsPastTheText) {
  reference::Fenced fence;
  std::mt19937 random(52);
  for (std::size_t length = 1; length < 300; ++length) {
    std::string text = random_word(random, 2, length);
    std::string pattern = text.substr(length - std::min(length, 1 + random_below(random, 100)));
    expect_agreement(pattern, fence.at_end(text));
    expect_agreement(pattern, fence.at_start(text));
    expect_agreement(fence.at_end(pattern), text);
  }
}

// The vectors of other machines too, on texts long enough for each.
TEST(ExactSearch, KernelsFindTheSameCandidates) {
  reference::Fenced fence;
  std::mt19937 random(53);
  for (std::size_t starts = 64; starts < 330; ++starts) {
    std::size_t length = 1 + random_below(random, 40);
    Text text = fence.at_end(random_word(random, 3, starts + length - 1));
    std::string pattern = random_word(random, 3, length);
    for (const Anchors& anchors : {end_anchors(pattern), rarest_anchors(pattern)}) {
      Offsets expected;
      std::size_t from = random_below(random, starts);
      for (std::size_t i = from; i < starts; ++i) {
        if (text[i + anchors.first] == anchors.first_byte &&
            text[i + anchors.second] == anchors.second_byte) {
          expected.push_back(i);
        }
      }
      for (const CandidateKernel& kernel : candidate_kernels()) {
        Offsets found;
        for (CandidateBlock block{0, from, 0}; block.end < starts;) {
          block = kernel.next(anchors, text.data(), block.end, starts);
          for (std::size_t bit = 0; bit < 64; ++bit) {
            if ((block.mask >> bit & 1) != 0) found.push_back(block.start + bit);
          }
        }
        ASSERT_EQ(found, expected);
      }
    }
  }
}

}  // namespace
