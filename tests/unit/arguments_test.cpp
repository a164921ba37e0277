// The exported argument helpers, with a real host's objects.
#include "vstring/arguments.h"

#include <gtest/gtest.h>

#include <csetjmp>
#include <string>
#include <vector>

#include "vexil/services/services.h"
#include "vstring/containers.h"
#include "vstring/library.h"
#include "vstring/search.h"

namespace {

using vexil::make_equation;
using vexil::make_integer;
using vexil::make_name;
using vexil::make_string;

class Arguments : public testing::Test {
 protected:
  void SetUp() override {
    vexil::init_values(std::size_t{16} << 20);
    vexil::init_services({}, vexil::RaiseMode::Exception);
    kv = const_cast<HostKernelVector*>(&vexil::kernel_vector());
  }
  void TearDown() override { vexil::shut_values(); }

  static HostObject integer(std::int64_t value) { return make_integer(value); }

  // The text of the error that `work` raises; "none" when it raises none.
  template <class Work>
  static std::string error_of(Work work) {
    try {
      work();
    } catch (const vexil::HostError& error) {
      return error.message();
    }
    return "none";
  }

  HostKernelVector* kv = nullptr;
};

TEST_F(Arguments, OnlyNamesAreBooleans) {
  EXPECT_EQ(VexilToBoolean(kv, make_name("true")), 1);
  EXPECT_EQ(VexilToBoolean(kv, make_name("false")), 0);
  EXPECT_EQ(VexilToBoolean(kv, make_name("FAIL")), -1);
  EXPECT_EQ(IsVexilBoolean(kv, make_name("FAIL")), 1);
  EXPECT_EQ(IsVexilTrueFalse(kv, make_name("FAIL")), 0);
  EXPECT_EQ(IsVexilBoolean(kv, make_string("true")), 0);
  EXPECT_EQ(IsVexilBoolean(kv, integer(1)), 0);
  EXPECT_EQ(error_of([&] { VexilToBoolean(kv, make_string("true")); }),
            "cannot convert to boolean: true");
}

TEST_F(Arguments, RangesAreReadLowerEndFirst) {
  int32_t lo = 0;
  int32_t hi = 0;
  EXPECT_EQ(GetRange(kv, vexil::make_range(integer(2), integer(-3)), &lo, &hi), -4);
  EXPECT_EQ(lo, 2);
  EXPECT_EQ(hi, -3);
  EXPECT_EQ(GetRange(kv, vexil::make_range(integer(INT32_MIN), integer(INT32_MAX)), &lo, &hi),
            INT32_MAX);
  HostObject name = make_name("a");
  EXPECT_EQ(error_of([&] { GetRange(kv, vexil::make_range(name, name), &lo, &hi); }),
            "lower endpoint of range must be a small integer");
  EXPECT_EQ(error_of([&] {
              GetRange(kv, vexil::make_range(integer(1), integer(std::int64_t{1} << 31)), &lo, &hi);
            }),
            "upper endpoint of range must be a small integer");
}

TEST_F(Arguments, RangesResolveWithDifferentlyClampedEnds) {
  struct Case {
    int lo, hi, count, first, last;
  };
  for (const Case& c :
       {Case{1, 5, 5, 0, 4}, Case{2, -1, 4, 1, 4}, Case{7, 9, 0, 5, 4}, Case{0, 3, -1, 0, 3},
        Case{4, 2, -1, 4, 2}, Case{-5, -5, 1, 0, 0}, Case{-6, 2, -1, -6, 2}, Case{3, 2, 0, 2, 1},
        Case{1, 0, -1, 1, 0}, Case{INT32_MIN, INT32_MAX, -1, INT32_MIN, INT32_MAX},
        Case{INT32_MAX, INT32_MAX, 0, 5, 4}}) {
    int32_t lo = c.lo;
    int32_t hi = c.hi;
    EXPECT_EQ(NormalRange(5, &lo, &hi), c.count) << c.lo << ".." << c.hi;
    EXPECT_EQ(lo, c.first) << c.lo << ".." << c.hi;
    EXPECT_EQ(hi, c.last) << c.lo << ".." << c.hi;
  }
}

TEST_F(Arguments, IndicesCountFromEitherEnd) {
  EXPECT_EQ(GetStringIndex(kv, 5, integer(5)), 5);
  EXPECT_EQ(GetStringIndex(kv, 5, integer(0)), 0);
  EXPECT_EQ(GetStringIndex(kv, 5, integer(-1)), 4);
  EXPECT_EQ(GetStringIndex(kv, 5, integer(-4)), 1);
  EXPECT_EQ(error_of([&] { GetStringIndex(kv, 5, integer(6)); }), "string index `6' out of range");
  EXPECT_EQ(error_of([&] { GetStringIndex(kv, 5, integer(-5)); }),
            "string index `-5' out of range");
  EXPECT_EQ(error_of([&] { GetStringIndex(kv, 5, make_name("x")); }),
            "expecting an integral (32-bit) string index, but got `x'");
}

TEST_F(Arguments, LaterOptionsOverrideEarlierOnes) {
  OptionEntry table[] = {{"width", 7, 9, 0, 0}, {"countbytes", 7, 9, 2, OPTION_BARE}, {}};
  std::vector<HostObject> arguments = {make_string("width"),
                                       make_equation(make_name("width"), integer(1)),
                                       make_name("countbytes"),
                                       make_equation(make_string("width"), integer(2)),
                                       integer(3),
                                       make_name("width")};
  HostObject sequence = vexil::make_sequence(arguments);
  EXPECT_EQ(GetOptions(kv, table, 1, sequence), 2);
  EXPECT_EQ(table[0].value, integer(2));
  EXPECT_EQ(table[0].position, 4U);
  EXPECT_EQ(table[1].value, make_name("true"));
  EXPECT_EQ(table[1].position, 3U);
  EXPECT_EQ(GetOptions(kv, table, 4, sequence), 0);
  EXPECT_EQ(table[0].value, 0U);
  EXPECT_EQ(GetOption(kv, 0, sequence, "width", 0), integer(1));
  EXPECT_EQ(GetOption(kv, 0, sequence, "width", 1), make_name("true"));
  EXPECT_EQ(GetOption(kv, 4, sequence, "width", 0), 0U);
}

TEST_F(Arguments, StringOptionsAreTextsOrNamedTexts) {
  EXPECT_STREQ(GetStringOption(kv, make_name("abc"), "x"), "abc");
  EXPECT_STREQ(GetStringOption(kv, make_equation(make_name("x"), make_string("v")), "x"), "v");
  EXPECT_EQ(GetStringOption(kv, make_equation(make_name("y"), make_string("v")), "x"), nullptr);
  EXPECT_EQ(GetStringOption(kv, make_equation(make_name("x"), integer(1)), "x"), nullptr);
  EXPECT_EQ(GetStringOption(kv, integer(1), "x"), nullptr);
}

TEST_F(Arguments, FiltersAreClassesOrAlphabets) {
  EXPECT_EQ(error_of([&] { GetFilter(kv, make_name("last")); }),
            "unrecognised character class `last'");
  EXPECT_NE(AlphabetFilter('q'), 0);  // the alphabet at first: all small letters
  EXPECT_EQ(AlphabetFilter('Q'), 0);
  EXPECT_EQ(GetFilter(kv, make_name("letters")), &ccl_isalpha);
  EXPECT_EQ(GetFilter(kv, make_string(std::string(256, 'x'))), &AlphabetFilter);
  EXPECT_NE(AlphabetFilter('x'), 0);
  EXPECT_NE(AlphabetFilter(0), 0);
  EXPECT_EQ(AlphabetFilter('q'), 0);
  EXPECT_EQ(GetFilter(kv, make_name("last")), &ccl_isalpha);
  EXPECT_EQ(GetFilter(kv, make_name("bits")), &ccl_isbdigit);
  EXPECT_EQ(GetFilter(kv, make_name("last")), &ccl_isbdigit);
  EXPECT_EQ(error_of([&] { GetFilter(kv, make_string("")); }), "character class must be nonempty");
  EXPECT_EQ(error_of([&] { GetFilter(kv, make_string(std::string(257, 'x'))); }),
            "alphabet too long (must be at most 255 characters)");
  EXPECT_EQ(error_of([&] { GetFilter(kv, make_name("fence")); }),
            "unrecognised character class `fence'");
  EXPECT_EQ(error_of([&] { GetFilter(kv, integer(3)); }), "unrecognised character class `3'");
}

// Names of filters, which are not those that CharClassNameToTest knows.
TEST_F(Arguments, ListsBecomeSequences) {
  StringList strings;
  sl_init(&strings);
  sl_append(&strings, "a");
  EXPECT_EQ(vexil::printed(sl_toexpseq(kv, &strings, 1)), "\"a\", ()");
  EXPECT_EQ(vexil::elements(sl_toexpseq(kv, &strings, 3)).size(), 3U);
  std::free(sl_free(&strings)->pool);
  IntegerPairList pairs;
  ipl_init(&pairs);
  ipl_append(&pairs, 1, 2);
  ipl_append(&pairs, 3, -4);
  EXPECT_EQ(vexil::printed(ipl_toexpseq(kv, &pairs, 2)), "[1, 2], [3, -4]");
  std::free(ipl_free(&pairs)->pool);
  MatchList* matches = MatchListCreate();
  EXPECT_EQ(vexil::printed(MatchListToList(kv, matches)), "[]");
  EXPECT_EQ(vexil::printed(MatchListToExpSeq(kv, matches)), "");
  AddMatchToList(matches, 0, 5);
  AddMatchToList(matches, 9, 6);
  EXPECT_EQ(vexil::printed(MatchListToExpSeq(kv, matches)), "1, 10");
  EXPECT_EQ(vexil::printed(MatchListToExpSeq2(kv, matches)), "[1, 5], [10, 6]");
  EXPECT_EQ(vexil::printed(MatchListToList(kv, matches)), "[1, 10]");
  FreeMatchList(matches);
  std::free(matches);
}

TEST_F(Arguments, SharedBufferIsLentAgainAfterAJumpOutOfACommand) {
  static std::jmp_buf home;
  HostKernelVector jumping = *kv;
  jumping.ToHostString = [](const char*) -> HostObject { std::longjmp(home, 1); };
  static const HostModuleCommand* subst = HostModuleCommands;
  while (std::string(subst->name) != "subst") ++subst;
  const HostObject texts[] = {make_string("abc"), make_string("b"), make_string("x")};
  HostObject arguments = vexil::make_sequence(texts);
  if (setjmp(home) == 0) subst->entry(&jumping, arguments);
  (*smbuf)[0] = '\0';
  subst->entry(kv, arguments);
  EXPECT_STREQ(*smbuf, "axc");
}

}  // namespace
