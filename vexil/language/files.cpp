// The built-ins that read and write files; see builtins.h.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "vexil/language/builtins.h"

namespace vexil::builtin {

namespace {

struct Close {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Close>;

[[noreturn]] void raise_file_error(std::string_view action, std::string_view name) {
  const std::string reason = std::strerror(errno);
  raise_error("cannot " + std::string(action) + " `%1': %2",
              {make_string(name), make_string(reason)});
}

// Stops at the first NUL byte and at what no string holds, so that endless files end too.
std::string read_file(std::string_view name) {
  const File file(std::fopen(std::string(name).c_str(), "rb"));
  if (!file) raise_file_error("read", name);
  std::string bytes;
  std::vector<char> block(1U << 18);
  while (const std::size_t count = std::fread(block.data(), 1, block.size(), file.get())) {
    if (std::memchr(block.data(), 0, count) != nullptr) {
      raise_error("`%1' holds a NUL byte", {make_string(name)});
    }
    bytes.append(block.data(), count);
    if (bytes.size() > HOST_MAX_TEXT) raise_error("out of memory");
  }
  if (std::ferror(file.get()) != 0) raise_file_error("read", name);
  return bytes;
}

}  // namespace

Object read(Evaluator& /*evaluator*/, Arguments arguments) {
  return make_string(read_file(arguments.string(0)));
}

Object lines(Evaluator& /*evaluator*/, Arguments arguments) {
  const std::string bytes = read_file(arguments.string(0));
  std::vector<Object> lines;
  std::string_view rest = bytes;
  while (!rest.empty()) {
    const std::size_t end = rest.find('\n');
    lines.push_back(make_string(rest.substr(0, end)));
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  }
  return make_list(lines);
}

Object write(Evaluator& /*evaluator*/, Arguments arguments) {
  const std::string_view name = arguments.string(0);
  const std::string_view bytes = arguments.string(1);
  std::FILE* file = std::fopen(std::string(name).c_str(), "wb");
  if (file == nullptr) raise_file_error("write", name);
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  if (std::fclose(file) != 0 || !written) raise_file_error("write", name);
  return make_sequence({});
}

}  // namespace vexil::builtin
