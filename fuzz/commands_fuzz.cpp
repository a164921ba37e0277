// Any calls of any commands, with arguments of all types and the results of earlier calls: each
// gives a value or raises an error, and leaves its arguments' texts as they were.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "fuzz/fuzz_host.h"
#include "vexil/services/services.h"
#include "vstring/object.h"

namespace {

using vexil::Object;

class Calls {
 public:
  Calls(const unsigned char* data, size_t size)
      : input_(data, size),
        host_(fuzzing::fresh_host(input_.ConsumeIntegral<std::uint8_t>() % 16 == 0)) {}

  ~Calls() {
    for (Object result : results_) vexil::heap().release(result);
  }

  void run() {
    constexpr int kMostCalls = 8;
    try {
      for (int i = 0; i < kMostCalls && input_.remaining_bytes() > 0; ++i) call();
    } catch (const vexil::HostError& error) {  // results have left no room for more arguments
      static_cast<void>(error.message());
    }
  }

 private:
  size_t below(size_t limit) { return input_.ConsumeIntegralInRange<size_t>(0, limit - 1); }

  void call() {
    const auto& command = vexil::commands()[below(vexil::commands().size())];
    std::vector<Object> arguments(below(static_cast<size_t>(command.required) + 4));
    for (Object& argument : arguments) argument = any_value(2);
    const std::string texts = texts_of(arguments);
    try {
      const Object result = host_.evaluator().call(vexil::make_name(command.name), arguments);
      static_cast<void>(vexil::printed(result));  // every word of it is looked at
      vexil::heap().protect(result);
      results_.push_back(result);
    } catch (const vexil::HostError& error) {
      static_cast<void>(error.message());
    }
    if (texts_of(arguments) != texts) std::abort();
  }

  static std::string texts_of(const std::vector<Object>& objects) {
    std::string texts;
    for (Object object : objects) {
      if (host_is_text(object)) texts.append(vexil::text(object)).push_back('\0');
    }
    return texts;
  }

  std::string any_text() {
    // Mostly short; now and then beyond what the shared buffer holds.
    const size_t longest = below(16) == 0 ? 9000 : 400;
    std::string unit = input_.ConsumeRandomLengthString(64);
    std::erase(unit, '\0');
    if (unit.empty() || !input_.ConsumeBool()) return unit;
    std::string text;
    for (size_t n = below(longest / unit.size()); n > 0; --n) text += unit;
    return text;
  }

  Object any_integer() {
    constexpr std::int64_t kEdges[] = {0,         1,         -1,         255,         8191,
                                       8192,      INT32_MAX, INT32_MIN,  1LL << 26,   1LL << 30,
                                       1LL << 31, 1LL << 32, -1LL << 30, -(1LL << 31)};
    if (below(16) == 0) return vexil::make_integer(input_.PickValueInArray(kEdges));
    return vexil::make_integer(std::int64_t{input_.ConsumeIntegral<std::int16_t>()});
  }

  Object element_of(std::span<const Object> objects) {
    return objects.empty() ? vexil::make_sequence({}) : objects[below(objects.size())];
  }

  std::vector<Object> any_values(int nested) {
    std::vector<Object> values(below(7));
    for (Object& value : values) value = any_value(nested);
    return values;
  }

  // Texts more often than the rest: they lead furthest.
  Object any_value(int nested) {
    switch (below(nested > 0 ? 12 : 6)) {
      default:
        return vexil::make_string(any_text());
      case 3:
        return vexil::make_name(any_text());
      case 4:
        return any_integer();
      case 5:
        return element_of(results_);
      case 6:
        return vexil::make_range(any_integer(), any_integer());
      case 7:
        return vexil::make_list(any_values(nested - 1));
      case 8:
        return vexil::make_set(any_values(nested - 1));
      case 9:
        return vexil::make_equation(vexil::make_name(any_text()), any_value(nested - 1));
      case 10:
        return vexil::make_array(any_values(nested - 1));
      case 11:
        return element_of(host_.procedures());
    }
  }

  FuzzedDataProvider input_;
  fuzzing::FuzzHost& host_;
  std::vector<Object> results_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size) {
  Calls(data, size).run();
  return 0;
}
