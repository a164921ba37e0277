// Layout against its plain twins: texts of every length around a vector and a block of marks, with
// white space sparse and dense, in heap blocks of exact length.
#include "tests/reference/layout.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/reference/words.h"
#include "vstring/layout/fields.h"

namespace {

using namespace vstring;
using reference::random_below;

// A text in which one character in `rarity` is one of `special`.
std::vector<char> random_text(std::mt19937& random, Text special, std::size_t rarity,
                              std::size_t length) {
  std::vector<char> text(length);
  for (char& c : text) {
    c = random_below(random, rarity) == 0 ? special[random_below(random, special.size())] : 'x';
  }
  return text;
}

// Calls check(random, text) with texts of such characters.
template <class Check>
void with_texts(Text special, Check check) {
  std::mt19937 random(5);
  for (std::size_t round = 0; round < 600; ++round) {
    std::size_t length = round < 200 ? round : random_below(random, round < 580 ? 300 : 10000);
    for (std::size_t rarity : {1, 2, 6, 40}) {
      std::vector<char> bytes = random_text(random, special, rarity, length);
      check(random, Text(bytes.data(), bytes.size()));
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

template <class Write>
std::string written(std::size_t room, Write write) {
  std::vector<char> out(room);
  return {out.data(), write(out.data())};
}

TEST(Layout, Wraps) {
  with_texts(" \t\n\n\r\b", [](std::mt19937& random, Text text) {
    for (unsigned options = 0; options < 16; ++options) {
      WrapStyle style{1 + random_below(random, random() % 2 == 0 ? 12 : 100), (options & 1) != 0,
                      (options & 2) != 0, (options & 4) != 0, (options & 8) != 0};
      std::size_t room = room_for_wrapped(text, style);
      ASSERT_EQ(written(room, [&](char* out) { return write_wrapped(text, style, out, room); }),
                reference::wrapped(text, style))
          << options;
    }
  });
}

TabSetting random_setting(std::mt19937& random) {
  TabSetting setting;
  setting.width = 1 + random_below(random, 12);
  setting.countbytes = random() % 2 == 0;
  std::int32_t stop = 0;
  for (std::size_t left = random_below(random, 5); left > 0; --left) {
    setting.stops.push_back(stop += 1 + static_cast<std::int32_t>(random_below(random, 6)));
  }
  return setting;
}

TEST(Layout, ExpandsTabs) {
  with_texts("\t\t\n\b", [](std::mt19937& random, Text text) {
    TabSetting setting = random_setting(random);
    std::size_t room = room_for_expanded(text, setting);
    ASSERT_EQ(written(room, [&](char* out) { return write_expanded(text, setting, out, room); }),
              reference::expanded(text, setting));
  });
}

// Results that are measured first, as the estimate would be too large: no byte of room is left.
TEST(Layout, MeasuresWhatCouldBeTooLong) {
  TabSetting setting;
  setting.stops = {3, 1 << 30};
  std::size_t room = room_for_expanded("a\tb\n\tc", setting);
  EXPECT_EQ(room, 9U);
  EXPECT_EQ(
      written(room, [&](char* out) { return write_expanded("a\tb\n\tc", setting, out, room); }),
      "a  b\n   c");
  setting.stops = {1 << 30};
  EXPECT_EQ(room_for_expanded("\t", setting), std::size_t{1} << 30);
  EXPECT_EQ(room_for_expanded("\b\t\n", setting), (std::size_t{1} << 30) + 2);
}

TEST(Layout, Splits) {
  with_texts(" ,\"';", [](std::mt19937& random, Text text) {
    Text separators = Text(", ;\xff").substr(0, random_below(random, 5));
    for (char quote : {'\0', '"', '\''}) {
      Splitter splitter{ByteSet(separators), quote};
      std::vector<std::string> fields;
      splitter.each_field(text, [&](Text field) { fields.emplace_back(field); });
      ASSERT_EQ(fields, reference::fields(text, separators, quote));
      ASSERT_EQ(splitter.count_fields(text), fields.size());
    }
  });
}

}  // namespace
