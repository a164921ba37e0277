// The tree of a statement. Nodes lie in their program's own store and have no owner below it, so a
// tree of any depth is released without recursion. Entry point: Program. Made by parser.h.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "vexil/values/values.h"
#include "vstring/kernel_vector.h"

namespace vexil {

struct Builtin;

enum class NodeKind : std::uint8_t {
  Constant,     // object
  Name,         // object: its value, or itself
  Local,        // slot: a parameter, or what a procedure took along from around it
  Assign,       // object := child
  AssignLocal,  // slot := child
  Procedure,    // code
  Sequence,
  List,
  Set,
  Block,
  Or,
  And,
  Not,
  Compare,  // children joined by operators, from left to right
  Range,
  Sum,      // as Compare
  Product,  // as Compare
  Negate,
  Call,   // the first child is what is called, the others the arguments
  Index,  // the first child is what is indexed
};

enum class Operator : std::uint8_t {
  Equation,
  Less,
  LessEqual,
  Greater,
  GreaterEqual,
  Unequal,
  Add,
  Subtract,
  Multiply,
  Div,
  Mod
};

struct Node {
  NodeKind kind = NodeKind::Constant;
  Object object = 0;
  std::uint32_t slot = 0;  // of a local; the code of a procedure
  std::vector<const Node*> children;
  std::vector<Operator> operators;  // the i-th stands before child i + 1
  // Of a name: what a call of it means unless a procedure is assigned to it.
  const HostModuleCommand* command = nullptr;
  const Builtin* builtin = nullptr;
};

class Program;

/// What an evaluated `->` refers to.
struct Procedure {
  Program* program = nullptr;  // that it is part of
  const Node* body = nullptr;
  std::size_t parameters = 0;
  std::vector<std::uint32_t> captured;  // slots of the procedure around it
  std::string source;
};

/// One statement. It lives as long as somebody runs it or a procedure object that came from it is
/// reachable.
class Program : public std::enable_shared_from_this<Program> {
 public:
  Program();
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  Node& add(NodeKind kind) {
    nodes_.emplace_back().kind = kind;
    return nodes_.back();
  }
  /// Adds a procedure and returns the code that objects name it by, its own as long as the program
  /// lives.
  std::uint32_t add_procedure(Procedure procedure);
  /// The object that keeps the program alive for as long as the collector keeps the object.
  Object keeper();
  /// To be called when a keeper is collected.
  static void release_keeper(Object keeper);
  /// Visits the objects of all programs that exist: they are roots.
  static void visit_constants(const Heap::Mark& mark);

  const Node* root = nullptr;
  std::size_t line = 1;  // where the statement starts

 private:
  std::deque<Node> nodes_;
  std::deque<Procedure> procedures_;
  std::vector<std::uint32_t> codes_;  // of the procedures
  Object keeper_ = 0;                 // 0: there is none
};

const Procedure& procedure(std::uint32_t code);
/// For when no object is left that names a procedure.
void release_all_keepers();
/// The text of a procedure, for its printed form.
const std::string& procedure_source(std::uint32_t code);

}  // namespace vexil
