// Runs the statements of a text and tells what came of each. Entry points: Session::run_text,
// Session::execute. Tests: tests/shell/shell_test.py.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "vexil/language/ast.h"
#include "vexil/language/evaluator.h"

namespace vexil {

class Parser;

/// Where what a statement prints goes.
struct Sink {
  std::function<void(std::string_view)> output;
  std::function<void(int level, std::string_view line)> info;
};

/// What came of a statement.
struct Outcome {
  std::optional<HostError> error;
  std::string value;  // rendered; empty when there is nothing to show
  std::size_t line = 1;
};

/// How a value is shown; told whether an assignment made it.
using Render = std::function<std::string(Object value, bool is_assignment)>;
/// Receives each outcome; tells whether to go on.
using Report = std::function<bool(const Outcome&)>;

class Session {
 public:
  Session();
  void set_sink(Sink sink) { sink_ = std::move(sink); }
  const Sink& sink() const { return sink_; }
  Evaluator& evaluator() { return evaluator_; }

  Outcome execute(const Program& program, const Render& render);
  /// False when the report ended it.
  bool run_text(std::string_view text, const Render& render, const Report& report);
  /// Every name loses its value.
  void clear();

 private:
  std::optional<Outcome> run_next(Parser& parser, const Render& render);

  Sink sink_;
  Evaluator evaluator_;
};

/// The printed form and a newline; nothing for an assignment or the empty sequence.
std::string render_text(Object value, bool is_assignment);
/// `error in search: first argument must be a string`.
std::string error_line(const HostError& error);
std::string message_of(const HostError& error);
/// Prints the error's line to standard error, after `sign` and, unless `name` is empty, the place
/// where it happened; says "error: out of memory" when there is no memory for that.
void print_failure(const HostError& error, const std::string& name = {}, std::size_t line = 0,
                   std::string_view sign = {});

}  // namespace vexil
