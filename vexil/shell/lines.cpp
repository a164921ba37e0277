// Reads lines; see lines.h.
#include "vexil/shell/lines.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "vexil/values/interrupt.h"
#include "vstring/object.h"

namespace vexil {

namespace {

constexpr std::size_t kBlockSize = std::size_t{1} << 18;

}  // namespace

FileReader::FileReader(const std::string& name)
    : file_(STDIN_FILENO), name_(name == "-" ? "standard input" : name), block_(kBlockSize) {
  if (name != "-") file_ = open(name.c_str(), O_RDONLY | O_CLOEXEC);
  if (file_ < 0) fail();
}

FileReader::~FileReader() {
  if (file_ != STDIN_FILENO) close(file_);
}

void FileReader::fail() const {
  throw std::runtime_error("cannot read `" + name_ + "': " + std::strerror(errno));
}

bool FileReader::next(std::string_view& block) {
  for (;;) {
    const ssize_t count = ::read(file_, block_.data(), block_.size());
    if (count >= 0) {
      block = {block_.data(), static_cast<std::size_t>(count)};
      return count > 0;
    }
    if (errno != EINTR) fail();
    check_interrupt();
  }
}

void LineReader::keep(std::string_view part) {
  const std::size_t room = HOST_MAX_TEXT + 1 - start_.size();
  start_ += part.substr(0, room);
}

bool LineReader::next(std::string_view& line) {
  start_.clear();
  while (!rest_.empty() || file_.next(rest_)) {
    const std::size_t end = rest_.find('\n');
    if (end == std::string_view::npos) {
      keep(rest_);
      rest_ = {};
      continue;
    }
    line = rest_.substr(0, end);
    if (!start_.empty()) {
      keep(line);
      line = start_;
    }
    rest_.remove_prefix(end + 1);
    return true;
  }
  line = start_;
  return !start_.empty();
}

void LineReader::skip_line() {
  start_ = {};
  while (!rest_.empty() || file_.next(rest_)) {
    const std::size_t end = rest_.find('\n');
    if (end != std::string_view::npos) return rest_.remove_prefix(end + 1);
    rest_ = {};
  }
}

}  // namespace vexil
