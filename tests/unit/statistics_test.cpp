// Histogram, Kasiski divisor, edits and case conversion against plain loops.
#include "vstring/commands/statistics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <numeric>
#include <random>
#include <string>

#include "vstring/charclass.h"
#include "vstring/charclass/case.h"
#include "vstring/commands/editing.h"
#include "vstring/core/byte_set.h"
#include "vstring/core/histogram.h"

namespace vstring {
namespace {

std::string random_text(std::mt19937& random, std::size_t length, unsigned first, unsigned range) {
  std::string text(length, ' ');
  for (char& c : text) c = static_cast<char>(first + random() % range);
  return text;
}

template <class Write>
std::string written(std::size_t size, Write write) {
  std::string out(size, '?');
  write(out.data());
  return out;
}

TEST(Histogram, CountsEveryByteOfTextsOfAllLengths) {
  std::mt19937 random(1);
  for (std::size_t length : {0, 1, 7, 1023, 1024, 1025, 1031, 5000}) {
    std::string text = random_text(random, length, 1, 255);
    Histogram expected{};
    for (char c : text) ++expected[byte_of(c)];
    EXPECT_EQ(make_histogram(text), expected) << length;
  }
}

int plain_kasiski(const std::string& s) {
  int divisor = 0;
  for (std::size_t i = 0; i < s.size() / 2; ++i) {
    for (std::size_t j = i + 1; j < s.size(); ++j) {
      std::size_t run = 0;
      while (j + run < s.size() && s[i + run] == s[j + run]) ++run;
      if (run >= 3) divisor = std::gcd(divisor, static_cast<int>(j - i));
      if (divisor == 1) return 1;
    }
  }
  return divisor;
}

TEST(Kasiski, IsThatOfAllPairsOfRuns) {
  std::mt19937 random(2);
  for (int round = 0; round < 20000; ++round) {
    std::string text = random_text(random, random() % 24, 'a', 1 + random() % 4);
    if (round % 3 == 0) text += text;
    ASSERT_EQ(kasiski_divisor(text), plain_kasiski(text)) << text;
  }
}

TEST(Editing, LongAndShortTextsAreEditedAlike) {
  std::mt19937 random(3);
  for (std::size_t length = 0; length < 200; ++length) {
    std::string text = random_text(random, length, 1, 255);
    EXPECT_EQ(written(length, [&](char* out) { write_reversed(text, out); }),
              std::string(text.rbegin(), text.rend()));
    std::string from = random_text(random, random() % 9, 'a', 26);
    std::string to = random_text(random, from.size() + 2, 'a', 26);
    std::string letters = random_text(random, length, 'a', 26);
    std::string expected = letters;
    for (char& c : expected) {
      if (from.find(c) != std::string::npos) c = to[from.find(c)];
    }
    EXPECT_EQ(written(length, [&](char* out) { write_translated(from, to, letters, out); }),
              expected);
    std::size_t count = random() % 7;
    std::string repeated;
    for (std::size_t i = 0; i < count; ++i) repeated += text;
    EXPECT_EQ(written(repeated.size(), [&](char* out) { write_repeated(text, count, out); }),
              repeated);
  }
}

TEST(Case, OnlyAsciiLettersChange) {
  std::mt19937 random(4);
  for (std::size_t length = 0; length < 150; ++length) {
    std::string text = random_text(random, length, 1, 255);
    std::string upper = text;
    std::string other = text;
    for (char& c : upper) c = static_cast<char>(std::toupper(byte_of(c)));
    for (char& c : other) {
      c = static_cast<char>(std::isupper(byte_of(c)) ? std::tolower(byte_of(c))
                                                     : std::toupper(byte_of(c)));
    }
    EXPECT_EQ(written(length, [&](char* out) { write_upper(text, out); }), upper);
    EXPECT_EQ(written(length, [&](char* out) { write_other_case(text, out); }), other);
  }
}

// The table by another way: what ctype says in the C locale, and the classes it does not know.
TEST(CharClass, TableAgreesWithTheLocaleFreeDefinitions) {
  for (int c = 0; c < 256; ++c) {
    bool is_ascii = c < 128;
    EXPECT_EQ(ccl_isalpha(c) != 0, is_ascii && std::isalpha(c)) << c;
    EXPECT_EQ(ccl_isalnum(c) != 0, is_ascii && std::isalnum(c)) << c;
    EXPECT_EQ(ccl_isupper(c) != 0, is_ascii && std::isupper(c)) << c;
    EXPECT_EQ(ccl_islower(c) != 0, is_ascii && std::islower(c)) << c;
    EXPECT_EQ(ccl_ispunct(c) != 0, is_ascii && std::ispunct(c)) << c;
    EXPECT_EQ(ccl_isspace(c) != 0, is_ascii && std::isspace(c)) << c;
    EXPECT_EQ(ccl_isprint(c) != 0, is_ascii && std::isprint(c)) << c;
    EXPECT_EQ(ccl_isgraph(c) != 0, is_ascii && std::isgraph(c)) << c;
    EXPECT_EQ(ccl_iscntrl(c), is_ascii && std::iscntrl(c) ? 0x800 : 0) << c;
    EXPECT_EQ(ccl_isxdigit(c), is_ascii && std::isxdigit(c) ? 0x40 : 0) << c;
    EXPECT_EQ(ccl_isascii(c), is_ascii ? 0x20000 : 0) << c;
    EXPECT_EQ(cclbm[c] & ~0x13ffffU, 0U) << c;
  }
  EXPECT_EQ(CharClassNameToTest("hexadecimal"), &ccl_isxdigit);
  EXPECT_EQ(CharClassNameToTest("letters"), nullptr);
  EXPECT_EQ(CharClassNameToTest("Alpha"), nullptr);
  EXPECT_EQ(CharClassNameToTest(""), nullptr);
}

TEST(ByteSet, ScansFindWhatPlainLoopsFind) {
  std::mt19937 random(5);
  for (int round = 0; round < 20000; ++round) {
    std::string text = random_text(random, random() % 200, 1, 255);
    ByteSet set(random_text(random, random() % 4, 1, 255));
    if (round % 2 != 0) set = ByteSet(random_text(random, 600, 1, 255));
    std::size_t first = 0;
    while (first < text.size() && !set.contains(byte_of(text[first]))) ++first;
    std::size_t other = 0;
    while (other < text.size() && set.contains(byte_of(text[other]))) ++other;
    ASSERT_EQ(find_member(text, set), first);
    ASSERT_EQ(find_other(text, set), other);
    auto is_member = [&](char c) { return set.contains(byte_of(c)); };
    ASSERT_EQ(count_members(text, set),
              static_cast<std::size_t>(std::count_if(text.begin(), text.end(), is_member)));
  }
}

}  // namespace
}  // namespace vstring
