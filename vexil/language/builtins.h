// The built-ins of the language. Entry points: find_builtin, builtins. Tests:
// tests/transcripts/vexil/builtins.vt.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "vexil/values/values.h"

namespace vexil {

class Evaluator;
struct Node;

/// The arguments of a built-in. They stay on the evaluator's stack during the call.
class Arguments {
 public:
  Arguments(Evaluator& evaluator, std::size_t base, std::size_t count)
      : evaluator_(evaluator), base_(base), count_(count) {}
  std::size_t size() const { return count_; }
  /// Counted from 0.
  Object operator[](std::size_t i) const;
  /// Valid until something else is evaluated.
  std::span<const Object> all() const;
  /// A string's text; raises an error otherwise.
  std::string_view string(std::size_t i) const;

 private:
  Evaluator& evaluator_;
  std::size_t base_;
  std::size_t count_;
};

struct Builtin {
  static constexpr std::size_t kAny = static_cast<std::size_t>(-1);

  const char* name;
  const char* synopsis;
  const char* summary;
  std::size_t least;  // arguments
  std::size_t most;
  bool flat;  // sequences are flattened into the arguments
  Object (*call)(Evaluator& evaluator, Arguments arguments);
  Object (*special)(Evaluator& evaluator, const Node& node);  // evaluates its arguments by itself
};

/// The built-in with this name, or null.
const Builtin* find_builtin(std::string_view name);
/// All of them in alphabetical order.
std::span<const Builtin> builtins();

// What they do; the rows are in builtins.cpp.
namespace builtin {
Object if_value(Evaluator& evaluator, const Node& node);
Object try_value(Evaluator& evaluator, const Node& node);
Object array(Evaluator& evaluator, Arguments arguments);
Object bytes(Evaluator& evaluator, Arguments arguments);
Object collect(Evaluator& evaluator, Arguments arguments);
Object gc(Evaluator& evaluator, Arguments arguments);
Object help(Evaluator& evaluator, Arguments arguments);
Object lines(Evaluator& evaluator, Arguments arguments);
Object print(Evaluator& evaluator, Arguments arguments);
Object quit(Evaluator& evaluator, Arguments arguments);
Object raise(Evaluator& evaluator, Arguments arguments);
Object read(Evaluator& evaluator, Arguments arguments);
Object record(Evaluator& evaluator, Arguments arguments);
Object same(Evaluator& evaluator, Arguments arguments);
Object size(Evaluator& evaluator, Arguments arguments);
Object time(Evaluator& evaluator, Arguments arguments);
Object type(Evaluator& evaluator, Arguments arguments);
Object write(Evaluator& evaluator, Arguments arguments);
}  // namespace builtin

}  // namespace vexil
