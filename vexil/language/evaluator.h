// Evaluates statements. Entry points: Evaluator::run, Evaluator::call. Tests:
// tests/transcripts/vexil/.
#pragma once

#include <functional>
#include <span>
#include <string_view>
#include <vector>

#include "vexil/language/ast.h"
#include "vexil/language/builtins.h"
#include "vexil/values/values.h"

namespace vexil {

/// All values that an evaluation holds stand on one explicit stack, whose entries are roots:
/// whoever keeps an object while something else is evaluated puts it there.
class Evaluator {
 public:
  /// What the built-ins need of the shell.
  struct Hooks {
    std::function<void(std::string_view)> output;
    std::function<void(std::string_view name)> help;
  };

  explicit Evaluator(Hooks hooks);
  ~Evaluator();  // releases all programs: there is one evaluator at a time
  Evaluator(const Evaluator&) = delete;
  Evaluator& operator=(const Evaluator&) = delete;

  /// The value of a statement. Throws HostError, Interrupted or Quit; the stack is then as before.
  Object run(const Program& program);
  /// Calls a procedure, or what a name stands for.
  Object call(Object procedure, std::span<const Object> arguments);
  const Hooks& hooks() const { return hooks_; }

  // What built-ins use.
  void push(Object object);
  /// Pushes the elements of a sequence, however nested, and any other value as it stands.
  void push_flat(Object object);
  std::size_t height() const { return stack_.size(); }
  Object at(std::size_t position) const { return stack_[position]; }
  std::span<const Object> above(std::size_t base) const {
    return {stack_.data() + base, stack_.size() - base};
  }
  Object evaluate(const Node& node);
  /// As evaluate, but an error becomes the equation error = "message".
  Object guarded(const Node& node);

 private:
  // What is called: at most one of these.
  struct Callee {
    Object procedure = 0;
    const HostModuleCommand* command = nullptr;
    const Builtin* builtin = nullptr;
  };

  Object restoring(const Node& node);  // an exception leaves the stack as it was
  Object assign_to(const Node& node);
  Object assign_local(const Node& node);
  Object make_closure(const Node& node);
  Object sequence(const Node& node);
  Object collection(const Node& node);
  Object block(const Node& node);
  Object logic(const Node& node, int decisive);
  Object range(const Node& node);
  Object chain(const Node& node);
  Object index(const Node& node);
  Object call_node(const Node& node);
  void push_arguments(const Node& node, bool flat);
  Callee callee_of(const Node& node);
  Callee callee_of(Object object);
  Object apply(const Callee& callee, std::size_t base);
  Object apply_builtin(const Builtin& builtin, std::size_t base);
  Object apply_procedure(Object object, std::size_t base);

  std::vector<Object> stack_;
  std::size_t frame_ = 0;  // where the locals of the running procedure start
  Hooks hooks_;
};

}  // namespace vexil
