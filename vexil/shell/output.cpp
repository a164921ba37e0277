// The program's standard output; see output.h.
#include "vexil/shell/output.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace vexil {

namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 17;

[[noreturn]] void end_after_failed_write() {
  if (errno == EPIPE) _exit(0);
  std::fprintf(stderr, "vexil: cannot write: %s\n", std::strerror(errno));
  _exit(1);
}

void write_all(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(file, text.data(), text.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) end_after_failed_write();
    text.remove_prefix(static_cast<std::size_t>(count));
  }
}

}  // namespace

void Output::write(std::string_view text) {
  if (buffer_.size() + text.size() > kBufferSize) flush();
  if (text.size() > kBufferSize) return write_all(STDOUT_FILENO, text);
  if (buffer_.capacity() < kBufferSize) buffer_.reserve(kBufferSize);
  buffer_ += text;
}

void Output::flush() {
  write_all(STDOUT_FILENO, buffer_);
  buffer_.clear();
}

Output& standard_output() {
  static Output output;
  return output;
}

void print_error(std::string_view line) {
  standard_output().flush();
  const std::string whole = std::string(line) + '\n';
  std::fwrite(whole.data(), 1, whole.size(), stderr);
}

}  // namespace vexil
