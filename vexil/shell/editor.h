// Lines from a terminal, with editing, history and completion where the program was built with
// them. Entry point: Editor. Tests: tests/shell/terminal_test.py.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vexil {

class Editor {
 public:
  enum class Result { Line, Abandoned, End };

  Editor();
  ~Editor();
  Editor(const Editor&) = delete;
  Editor& operator=(const Editor&) = delete;

  /// Abandoned: by Ctrl-C. The line comes without its newline.
  Result read_line(const char* prompt, std::string& line);
  /// Adds a statement to the history, and to its file in the user's home.
  void remember(const std::string& statement);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// The commands, built-ins and variables that start with a text, in alphabetical order.
std::vector<std::string> completions(std::string_view start);

}  // namespace vexil
