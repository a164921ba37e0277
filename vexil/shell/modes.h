// The ways to run the program, each its exit status. Entry points: below; called by main.cpp.
// Tests: tests/shell/shell_test.py, the transcripts (by run_check).
#pragma once

#include <string>
#include <vector>

#include "vexil/shell/session.h"

namespace vexil {

/// Runs expressions, then a script when there is one, then, when neither is there or it is asked
/// for by "-", standard input.
struct Work {
  std::vector<std::string> expressions;
  std::string script;  // "" for none
  bool reads_input = false;
  bool json = false;
  int info_level = 0;
};
int run_work(Session& session, const Work& work);

/// `vexil each`.
struct Each {
  std::string expression;
  std::vector<std::string> files;  // none: standard input
  bool keep_going = false;
};
int run_each(Session& session, const Each& each);

/// `vexil check`: runs transcripts and compares.
int run_check(Session& session, const std::vector<std::string>& files, int info_level);

/// The prompt: statements from a terminal.
int run_prompt(Session& session, int info_level);

/// What goes to standard output, and information up to this level to standard error.
Sink text_sink(int info_level);
/// Shows an outcome as at the prompt.
void show(const Outcome& outcome);
/// The bytes of a file, "-" for standard input; throws std::runtime_error.
std::string load_file(const std::string& path);

}  // namespace vexil
