// The class table against lists of the members; class specifications and
// case conversion against their plain twins.
#include "vstring/charclass.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/reference/case.h"
#include "tests/reference/class_spec.h"
#include "tests/reference/fenced.h"
#include "tests/reference/words.h"
#include "vstring/charclass/case.h"
#include "vstring/charclass/class_spec.h"

namespace vstring {
namespace {

const std::string kLower = "abcdefghijklmnopqrstuvwxyz";
const std::string kUpper = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
const std::string kDigits = "0123456789";
const std::string kPunct = "!\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~";
const std::string kControl = std::string("\0", 1) +
                             "\x01\x02\x03\x04\x05\x06\x07\x08\t\n\x0b\x0c\r\x0e\x0f\x10\x11\x12"
                             "\x13\x14\x15\x16\x17\x18\x19\x1a\x1b\x1c\x1d\x1e\x1f\x7f";
const std::string kGraph = kLower + kUpper + kDigits + kPunct;

struct Class {
  int bit;
  CharClassTest test;
  std::string members;
};

const Class kClasses[] = {
    {0x1, ccl_islower, kLower},
    {0x2, ccl_isupper, kUpper},
    {0x4, ccl_isalpha, kLower + kUpper},
    {0x8, ccl_isdigit, kDigits},
    {0x10, ccl_isbdigit, "01"},
    {0x20, ccl_isodigit, "01234567"},
    {0x40, ccl_isxdigit, kDigits + "ABCDEFabcdef"},
    {0x80, ccl_isalnum, kDigits + kLower + kUpper},
    {0x100, ccl_isgraph, kGraph},
    {0x200, ccl_isprint, kGraph + " "},
    {0x400, ccl_ispunct, kPunct},
    {0x800, ccl_iscntrl, kControl},
    {0x1000, ccl_isvowel, "AEIOUaeiou"},
    {0x2000, ccl_isident, kDigits + kLower + kUpper + "?_"},
    {0x4000, ccl_isident1, kLower + kUpper + "%_"},
    {0x8000, ccl_isdna, "ACGT"},
    {0x10000, ccl_isspace, "\t\n\x0b\x0c\r "},
    {0x20000, ccl_isascii, kGraph + " " + kControl},
    {0x100000, ccl_isfence, "()[]{}"},
};

TEST(CharClass, TableHoldsTheMembersAndNothingElse) {
  for (int c = 0; c < 256; ++c) {
    std::uint32_t bits = 0;
    for (const Class& one : kClasses) {
      int expected = one.members.find(static_cast<char>(c)) != std::string::npos ? one.bit : 0;
      EXPECT_EQ(one.test(c), expected) << one.bit << " " << c;
      bits |= static_cast<std::uint32_t>(expected);
    }
    EXPECT_EQ(cclbm[c], bits) << c;
  }
}

// Every specification of up to six bytes that have a meaning.
TEST(ClassSpec, ExpandsAsTheRulesRead) {
  for (std::string spec : reference::all_words(8, 6)) {
    for (char& c : spec) c = "[]:^-\\ac"[c - 'a'];
    std::optional<std::string> expected = reference::expand(spec.c_str(), spec.size());
    std::optional<ByteSet> members = expand_class_spec(spec);
    ASSERT_EQ(members.has_value(), expected.has_value()) << spec;
    if (!expected) continue;
    for (int c = 1; c < 256; ++c) {
      bool is_member = expected->find(static_cast<char>(c)) != std::string::npos;
      ASSERT_EQ(members->contains(static_cast<unsigned char>(c)), is_member) << spec << " " << c;
    }
  }
}

TEST(Case, ConvertsAsTheRulesRead) {
  reference::Fenced fence;
  std::mt19937 random(4);
  const std::string common = "aZ1 \xe9";
  for (std::size_t length = 0; length <= 300; ++length) {
    std::string text(length, ' ');
    for (char& c : text) {
      c = random() % 2 != 0 ? common[random() % common.size()] : static_cast<char>(random());
    }
    std::string out(length + 1, '#');
    auto written = [&](void (*write)(Text, char*)) {
      write(fence.at_end(text), out.data());
      EXPECT_EQ(out.back(), '#');
      return out.substr(0, length);
    };
    EXPECT_EQ(written(write_upper), reference::upper(text));
    EXPECT_EQ(written(write_lower), reference::lower(text));
    EXPECT_EQ(written(write_other_case), reference::other_case(text));
    EXPECT_EQ(written(write_capitalised), reference::capitalised(text));
  }
}

}  // namespace
}  // namespace vstring
