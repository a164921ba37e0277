// Reads lines; see lines.h.
#include "vexil/shell/lines.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "vexil/values/interrupt.h"
#include "vstring/object.h"

namespace vexil {

LineReader::LineReader(int file) : file_(file), block_(std::size_t{1} << 18) {}

bool LineReader::fill() {
  for (;;) {
    const ssize_t count = ::read(file_, block_.data(), block_.size());
    if (count < 0 && errno == EINTR) {
      check_interrupt();
      continue;
    }
    if (count < 0) throw std::runtime_error(std::string("cannot read: ") + std::strerror(errno));
    rest_ = {block_.data(), static_cast<std::size_t>(count)};
    return count > 0;
  }
}

void LineReader::keep(std::string_view part) {
  const std::size_t room = HOST_MAX_TEXT + 1 - start_.size();
  start_ += part.substr(0, room);
}

bool LineReader::next(std::string_view& line) {
  start_.clear();
  while (!rest_.empty() || fill()) {
    const std::size_t end = rest_.find('\n');
    if (end == std::string_view::npos) {
      keep(rest_);
      rest_ = {};
      continue;
    }
    line = rest_.substr(0, end);
    rest_.remove_prefix(end + 1);
    if (start_.empty()) return true;
    keep(line);
    line = start_;
    return true;
  }
  line = start_;
  return !start_.empty();
}

}  // namespace vexil
