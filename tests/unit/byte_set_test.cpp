// Scans over byte sets against plain loops.
#include "vstring/core/byte_set.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bitset>
#include <random>
#include <string>

#include "tests/reference/fenced.h"
#include "tests/reference/words.h"

namespace vstring {
namespace {

using reference::random_below;
using Members = std::bitset<256>;

ByteSet set_of(const Members& members) {
  ByteSet set;
  for (std::size_t c = 0; c < 256; ++c) {
    if (members[c]) set.add(static_cast<unsigned char>(c));
  }
  return set;
}

void expect_agreement(Text text, const Members& members, const ByteSet& set) {
  auto is_member = [&](char c) { return members[byte_of(c)]; };
  auto first = std::find_if(text.begin(), text.end(), is_member) - text.begin();
  auto other = std::find_if_not(text.begin(), text.end(), is_member) - text.begin();
  ASSERT_EQ(find_member(text, set), static_cast<std::size_t>(first)) << text.size();
  ASSERT_EQ(find_other(text, set), static_cast<std::size_t>(other)) << text.size();
  ASSERT_EQ(count_members(text, set), std::count_if(text.begin(), text.end(), is_member));
}

// A set in which nothing or everything but one byte is: both scans run to that byte, wherever.
TEST(ByteSet, FindsASingleByteAtEveryPlace) {
  reference::Fenced fence;
  for (std::size_t length = 0; length <= 300; ++length) {
    Members members;
    members[0xe9] = members['x'] = true;
    ByteSet set = set_of(members);
    ByteSet others = set_of(~members);
    for (std::size_t at = 0; at <= length; ++at) {
      std::string text(length, at % 2 != 0 ? '\x69' : '\xf8');  // each a nibble off a member
      if (at < length) text[at] = at % 3 != 0 ? 'x' : '\xe9';
      if (at + 7 < length) text[at + 7] = 'x';
      expect_agreement(fence.at_end(text), members, set);
      expect_agreement(fence.at_start(text), ~members, others);
    }
  }
}

TEST(ByteSet, TellsAllPairsOfBytesApart) {
  std::string bytes(256, '\0');
  for (std::size_t c = 0; c < 256; ++c) bytes[c] = static_cast<char>(c);
  for (std::size_t c = 0; c < 256; ++c) {
    Members members;
    members[c] = true;
    expect_agreement(bytes, members, set_of(members));
    expect_agreement(bytes, ~members, set_of(~members));
  }
}

TEST(ByteSet, AgreesOnRandomTextsAndSetsAtAllAlignments) {
  std::mt19937 random(5);
  std::string buffer(600, '\0');
  for (char& c : buffer) c = static_cast<char>(random());
  for (int round = 0; round < 40000; ++round) {
    Members members;
    for (std::size_t count = std::size_t{1} << random_below(random, 11); count > 0; --count) {
      members[random_below(random, 256)] = true;
    }
    if (round % 2 != 0) members = ~members;
    Text text = Text(buffer).substr(random_below(random, 64), random_below(random, 301));
    expect_agreement(text, members, set_of(members));
  }
}

TEST(ByteSet, AddAllTellsWhetherTheSetHasGrown) {
  ByteSet set("ab");
  EXPECT_FALSE(set.add_all(ByteSet("b")));
  EXPECT_TRUE(set.add_all(ByteSet("b\xff")));
  EXPECT_TRUE(set.contains(0xff));
  EXPECT_FALSE(set.contains('c'));
}

}  // namespace
}  // namespace vstring
