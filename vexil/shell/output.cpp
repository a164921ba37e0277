// The program's standard output; see output.h.
#include "vexil/shell/output.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace vexil {

namespace {

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
  if (used_ + text.size() > kBufferSize) flush();
  if (text.size() > kBufferSize) return write_all(STDOUT_FILENO, text);
  text.copy(buffer_ + used_, text.size());
  used_ += text.size();
}

void Output::flush() {
  write_all(STDOUT_FILENO, {buffer_, used_});
  used_ = 0;
}

Output& standard_output() {
  static Output output;
  return output;
}

void print_error(std::string_view line) {
  standard_output().flush();
  std::fwrite(line.data(), 1, line.size(), stderr);
  std::fputc('\n', stderr);
}

}  // namespace vexil
