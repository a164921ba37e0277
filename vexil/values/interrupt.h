// Ctrl-C during a call, and the end of the program by quit(). Entry points: check_interrupt.
#pragma once

#include <csignal>

namespace vexil {

/// Thrown to end the program; nothing catches them but the shell.
struct Interrupted {};
struct Quit {};

/// Set by the signal's handler.
extern volatile std::sig_atomic_t interrupt_requested;
/// Whether a line is being read from a terminal: an interrupt then means that line only.
extern volatile std::sig_atomic_t is_prompting;

/// Sets is_prompting; at its end an interrupt that came meanwhile is over.
class Prompting {
 public:
  Prompting() { is_prompting = 1; }
  ~Prompting() {
    is_prompting = 0;
    interrupt_requested = 0;
  }
  Prompting(const Prompting&) = delete;
  Prompting& operator=(const Prompting&) = delete;
};

/// Called wherever evaluation may take long.
inline void check_interrupt() {
  if (interrupt_requested != 0) throw Interrupted{};
}

}  // namespace vexil
