// Statements made of nested calls of all commands, with arguments mostly of the kinds that their
// synopses name, and with procedures that call commands, raise, collect and assign. In both raise
// modes, and with allocations refused: whatever happens, the next statement works.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>
#include <string>

#include "fuzz/fuzz_host.h"
#include "tests/faults/failing_malloc.h"
#include "vexil/services/boundary.h"

namespace {

class StatementMaker {
 public:
  explicit StatementMaker(FuzzedDataProvider& input) : input_(input) {}

  std::string statement() {
    std::string text = below(3) == 0 ? pick(kVariables) + " := " : "";
    return text + call(3) + '\n';
  }

 private:
  static constexpr const char* kVariables[] = {"x", "y", "z"};
  // Of one argument, which is `c`.
  static constexpr const char* kBodies[] = {"c",
                                            "true",
                                            "(gc(); c)",
                                            "raise(\"no %1\", c)",
                                            "(x := c; c)",
                                            "(y := reverse(c); y)",
                                            "cap(\"\", c, \"-\")",
                                            "map(d -> (gc(); d), c)",
                                            "try(search(c, x))",
                                            "[c, c]",
                                            "(c, c)",
                                            "",
                                            "regsubs(\"[a-z]\" = c, \"word\")",
                                            "select(d -> (x := 0; gc(); true), x)",
                                            "1"};

  std::size_t below(std::size_t limit) {
    return input_.ConsumeIntegralInRange<std::size_t>(0, limit - 1);
  }
  template <std::size_t kCount>
  std::string pick(const char* const (&choices)[kCount]) {
    return choices[below(kCount)];
  }

  std::string text() {
    static constexpr const char* kTexts[] = {"\"\"",
                                             "\"a\"",
                                             "\"abracadabra\"",
                                             "\"The cat, and the hat.\"",
                                             "\"([{<>}])\"",
                                             "\"a*b[c-e]+(d|e)\"",
                                             "\"one\\ttwo\\n three\"",
                                             "repeat(\"ab\", 40)",
                                             "fill(\"z\", 100)",
                                             "\"\\xe9\\xff\"",
                                             "\"aGVsbG8=\"",
                                             "alpha",
                                             "x"};
    if (below(4) != 0) return pick(kTexts);
    std::string bytes = input_.ConsumeRandomLengthString(12);
    std::string quoted = "\"";
    for (char c : bytes) {
      if (c != '\0' && c != '"' && c != '\\') quoted += c;
    }
    return quoted + '"';
  }

  std::string integer() {
    static constexpr const char* kIntegers[] = {
        "0",  "1",   "-1",  "2",   "3",    "5",          "8",          "63",
        "64", "100", "255", "256", "8190", "2147483647", "4294967296", "-2147483648"};
    return below(8) == 0 ? pick(kIntegers) : kIntegers[below(11)];
  }

  std::string procedure() { return "(c -> " + non_empty(pick(kBodies)) + ')'; }
  static std::string non_empty(const std::string& body) { return body.empty() ? "()" : body; }

  std::string any(int depth) {
    switch (below(depth > 0 ? 12 : 6)) {
      case 0:
      case 1:
        return text();
      case 2:
        return integer();
      case 3:
        return pick(kVariables);
      case 4:
        return procedure();
      case 5:
        return integer() + ".." + integer();
      case 6:
        return '[' + any(depth - 1) + ", " + any(depth - 1) + ']';
      case 7:
        return '{' + text() + ", " + text() + '}';
      case 8:
        return '(' + text() + " = " + any(depth - 1) + ')';
      case 9:
        return "1.5";
      default:
        return call(depth - 1);
    }
  }

  // By the letter that the synopsis gives the parameter.
  std::string argument(std::string_view parameter, int depth) {
    if (below(8) == 0) return any(depth);
    if (depth > 0 && below(6) == 0) return call(depth - 1);
    if (parameter == "f" || parameter == "p" || parameter == "proc") return procedure();
    if (parameter.find("..") != parameter.npos) return "1.." + integer();
    if (parameter.find('=') != parameter.npos) return '(' + std::string(parameter) + ')';
    if (parameter == "n" || parameter == "k" || parameter == "i" || parameter == "j") {
      return integer();
    }
    if (parameter == "L" || parameter == "words" || parameter == "list") {
      return '[' + text() + ", " + text() + ']';
    }
    return text();
  }

  std::string call(int depth) {
    const auto& commands = vexil::commands();
    const HostModuleCommand& command = commands[below(commands.size())];
    std::string_view synopsis = command.synopses;
    synopsis.remove_prefix(std::min(synopsis.find('(') + 1, synopsis.size()));
    synopsis = synopsis.substr(0, synopsis.find(')'));
    std::string result = std::string(command.name) + '(';
    for (const char* separator = ""; !synopsis.empty(); separator = ", ") {
      const std::size_t end = std::min(synopsis.find(", "), synopsis.size());
      result.append(separator).append(argument(synopsis.substr(0, end), depth));
      synopsis.remove_prefix(std::min(end + 2, synopsis.size()));
    }
    return result + ')';
  }

  FuzzedDataProvider& input_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size) {
  FuzzedDataProvider input(data, size);
  const unsigned mode = input.ConsumeIntegral<std::uint8_t>();
  fuzzing::FuzzHost& host = fuzzing::fresh_host(mode % 16 == 0);
  const bool jumps = mode / 16 % 2 != 0;
  vexil::set_raise_mode(jumps ? vexil::RaiseMode::Longjmp : vexil::RaiseMode::Exception);
  host.run("x := \"some text\"; y := [\"a\", \"b\"]; z := 3");
  StatementMaker maker(input);
  for (int i = 0; i < 4 && input.remaining_bytes() > 0; ++i) {
    const std::string statement = maker.statement();
    if (mode / 32 % 2 != 0) {
      faults::RefusedAllocation refusal(input.ConsumeIntegralInRange<std::size_t>(1, 60));
      host.run(statement);
    } else {
      host.run(statement);
    }
  }
  vexil::set_raise_mode(vexil::RaiseMode::Exception);
  host.run("x := 0; y := 0; z := 0; 0; gc()");  // they, or the last value, may fill the heap
  if (host.run("6 * 7; reverse(\"abc\")") != "42\n\"cba\"\n") std::abort();
  return 0;
}
