// Lines from a terminal without line editing; see editor.h.
#ifndef VEXIL_LINE_EDITING

#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "vexil/shell/editor.h"
#include "vexil/values/interrupt.h"

namespace vexil {

struct Editor::State {};

Editor::Editor() = default;
Editor::~Editor() = default;

Editor::Result Editor::read_line(const char* prompt, std::string& line) {
  const Prompting prompting;
  std::fputs(prompt, stdout);
  std::fflush(stdout);
  for (;;) {
    char c = 0;
    const ssize_t count = ::read(STDIN_FILENO, &c, 1);
    if (count < 0 && errno == EINTR && interrupt_requested != 0) {
      std::fputs("\n", stdout);
      return Result::Abandoned;
    }
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return line.empty() ? Result::End : Result::Line;
    if (c == '\n') return Result::Line;
    line += c;
  }
}

void Editor::remember(const std::string& /*statement*/) {}

}  // namespace vexil

#endif
