// Calls commands with arguments of all types, well chosen and not. The bytes tell which.
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/fuzz_host.h"

namespace {

using vexil::Object;

class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : data_(data), end_(data + size) {}

  bool is_empty() const { return data_ == end_; }
  int byte() { return is_empty() ? 0 : *data_++; }

  std::string text() {
    std::string result(static_cast<std::size_t>(byte() % 40), 'a');
    for (char& c : result) {
      int value = byte();
      c = static_cast<char>(value != 0 ? value : 'b');
    }
    // Now and then a long one, which takes other ways through the code.
    if (byte() % 8 == 0 && !result.empty()) {
      while (result.size() < 9000) result += result;
    }
    return result;
  }

  std::int64_t integer() {
    switch (byte() % 6) {
      case 0:
        return byte() - 128;
      case 1:
        return INT32_MIN + byte() % 2;
      case 2:
        return INT32_MAX - byte() % 2;
      case 3:
        return std::int64_t{byte()} << 33;
      default:
        return byte() % 12;
    }
  }

  Object value(int depth) {
    static const char* const kNames[] = {"true", "FAIL", "digit", "last", "abc", "base64"};
    switch (byte() % (depth > 0 ? 11 : 6)) {
      case 0:
      case 1:
      case 2:
        return vexil::make_string(text());
      case 3:
        return vexil::make_integer(integer());
      case 4:
        return vexil::make_name(kNames[byte() % 6]);
      case 5:
        return vexil::make_float(byte() / 3.0);
      case 6:
        return vexil::make_range(value(0), value(0));
      case 7:
        return vexil::make_range(vexil::make_integer(integer()), vexil::make_integer(integer()));
      case 8:
        return vexil::make_equation(value(0), value(0));
      case 9:
        return vexil::make_set(values(depth - 1));
      default:
        return vexil::make_list(values(depth - 1));
    }
  }

  std::vector<Object> values(int depth) {
    std::vector<Object> result;
    for (int n = byte() % 6; n > 0; --n) result.push_back(value(depth));
    return result;
  }

 private:
  const std::uint8_t* data_;
  const std::uint8_t* end_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::session();
  Input input(data, size);
  const auto& commands = vexil::commands();
  while (!input.is_empty()) {
    const auto& command = commands[static_cast<std::size_t>(input.byte()) % commands.size()];
    try {
      vexil::call_command(command, input.values(2));
    } catch (const vexil::HostError&) {  // that is what commands do with bad arguments
    }
    vexil::heap().safe_point();
  }
  return 0;
}
