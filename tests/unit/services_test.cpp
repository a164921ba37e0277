// The services through the test module, in both raise modes.
#include "vexil/services/services.h"

#include <gtest/gtest.h>

#include "vexil/services/boundary.h"

namespace vexil {
namespace {

class Services : public testing::TestWithParam<RaiseMode> {
 protected:
  void SetUp() override {
    init_values(std::size_t{64} << 20);
    init_services({[this](Object, std::span<const Object> arguments) { return answer(arguments); },
                   [this](std::string_view text) { output_ += text; },
                   [this](int level, std::string_view topic, std::string_view text) {
                     info_ += std::to_string(level) + std::string(topic) + std::string(text);
                   }},
                  GetParam());
    heap().set_gc_stress(true);
    load_module(VEXIL_TEST_MODULE);
  }
  void TearDown() override { shut_values(); }

  Object call(std::string_view name, std::vector<Object> arguments = {}) {
    return call_command(*find_command(name), arguments);
  }
  std::string shown_call(std::string_view name, std::vector<Object> arguments = {}) {
    try {
      return printed(call(name, std::move(arguments)));
    } catch (const HostError& error) {
      return error.command + ": " + error.message();
    }
  }
  // What the procedure gives that is called back: the list of its arguments, or an error.
  Object answer(std::span<const Object> arguments) {
    if (fails_) raise_error("the procedure fails");
    return make_list(arguments);
  }
  static Object integer(int value) { return make_integer(std::int64_t{value}); }

  std::string output_;
  std::string info_;
  bool fails_ = false;
  const Object procedure_ = 1;
};

TEST_P(Services, HandlesAreShownCheckedAndDisposedOfOnce) {
  const int before = integer32(call("disposed"));
  const Object counter = call("new_counter", {integer(5)});
  heap().protect(counter);
  EXPECT_EQ(shown_call("count", {counter}), "6");
  EXPECT_EQ(printed(make_list({&counter, 1})), "[6]");
  EXPECT_EQ(shown_call("count", {call("other_handle")}), "count: expecting a counter, but got ()");
  call("new_counter", {integer(1)});
  heap().collect();
  heap().collect();
  EXPECT_EQ(integer32(call("disposed")), before + 1);
  heap().release(counter);
  heap().collect();
  EXPECT_EQ(integer32(call("disposed")), before + 2);
}

TEST_P(Services, RecordsArraysAndNames) {
  EXPECT_EQ(shown_call("point", {integer(1), make_string("y")}), "record(x = 1, y = \"y\")");
  EXPECT_EQ(shown_call("new_table", {integer(0)}), "array([[10, 11, 12], [20, 21, 22]])");
  EXPECT_EQ(shown_call("new_table", {integer(1)}), "bytes(10, 11, 12, 20, 21, 22)");
  EXPECT_EQ(shown_call("new_table", {integer(2)}),
            "array([[10.0, 11.0, 12.0], [20.0, 21.0, 22.0]])");
  EXPECT_EQ(shown_call("settings_of", {call("new_table", {integer(2)})}), "[2, 2, 1, 2, 0, 2]");
  for (int wrong : {1, 2, 3, 4, 5}) EXPECT_THROW(call("bad_table", {integer(wrong)}), HostError);
  call("set_name", {make_name("n"), integer(9)});
  EXPECT_EQ(value_of(make_name("n")), integer(9));
  EXPECT_EQ(shown_call("unfilled"), "0, 0, 0");
}

TEST_P(Services, ProceduresGetFlatArgumentsButQuotedOnes) {
  EXPECT_EQ(shown_call("call_twice", {procedure_, make_string("x")}), "\"kept\", [[\"x\"]]");
  EXPECT_EQ(shown_call("call_flat", {procedure_}), "[1, 2, 3]");
  EXPECT_EQ(shown_call("call_quoted", {procedure_}), "[(1, 2), 3]");
  const Object nested[] = {make_sequence({&procedure_, 1}), make_string("x")};
  EXPECT_EQ(shown_call("call_twice", {make_sequence(nested)}), "\"kept\", [[\"x\"]]");
}

TEST_P(Services, ErrorsNameTheCommandThatRaisedThem) {
  EXPECT_EQ(shown_call("count", {make_string("x")}), "count: expecting a counter, but got x");
  // A module that holds memory when it raises gets it back only where the host throws.
  for (int i = 0; i < 100 && GetParam() == RaiseMode::Exception; ++i) {
    EXPECT_EQ(shown_call("raise_holding", {integer(22)}),
              "raise_holding: held 1000 bytes, 100% so, for the 22nd time");
  }
  fails_ = true;
  EXPECT_EQ(shown_call("call_twice", {procedure_, integer(1)}), ": the procedure fails");
}

TEST_P(Services, MisuseIsAnErrorAndNothingElse) {
  for (int wrong = 1; wrong <= 12; ++wrong) {
    EXPECT_EQ(shown_call("misuse", {integer(wrong)}).substr(0, 8), "misuse: ") << wrong;
  }
  EXPECT_EQ(shown_call("misuse", {integer(6)}), "misuse: out of memory");
}

TEST_P(Services, OutputAndInformationReachTheHost) {
  call("inform", {integer(3), make_string("text")});
  EXPECT_EQ(info_, "3Testtext");
  EXPECT_EQ(output_, std::string(600, 'x') + ": 7\n");
}

TEST_P(Services, ModulesThatAreNoneAreRefused) {
  EXPECT_THROW(load_module("/nonexistent.so"), std::runtime_error);
  EXPECT_THROW(load_module("libc.so.6"), std::runtime_error);
}

INSTANTIATE_TEST_SUITE_P(BothModes, Services,
                         testing::Values(RaiseMode::Exception, RaiseMode::Longjmp));

}  // namespace
}  // namespace vexil
