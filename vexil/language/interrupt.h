// Ctrl-C during a call, and the end of the program by quit(). Entry points: check_interrupt.
#pragma once

#include <csignal>

namespace vexil {

/// Thrown to end the program; nothing catches them but the shell.
struct Interrupted {};
struct Quit {};

/// Set by the signal's handler.
extern volatile std::sig_atomic_t interrupt_requested;

/// Called wherever evaluation may take long.
inline void check_interrupt() {
  if (interrupt_requested != 0) throw Interrupted{};
}

}  // namespace vexil
