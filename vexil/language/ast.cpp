// Programs and the table of procedures; see ast.h.
#include "vexil/language/ast.h"

#include <unordered_set>
#include <utility>

namespace vexil {

namespace {

std::unordered_set<const Program*>& programs() {
  static std::unordered_set<const Program*> all;
  return all;
}

// Those with procedures: objects refer to their nodes.
std::vector<std::shared_ptr<const Program>>& kept_programs() {
  static std::vector<std::shared_ptr<const Program>> all;
  return all;
}

std::deque<Procedure>& procedures() {
  static std::deque<Procedure> all;
  return all;
}

}  // namespace

Program::Program() { programs().insert(this); }
Program::~Program() { programs().erase(this); }

void Program::visit_constants(const Heap::Mark& mark) {
  for (const Program* program : programs()) {
    for (const Node& node : program->nodes_) {
      if (node.object != 0) mark(node.object);
    }
  }
}

void keep_program(std::shared_ptr<const Program> program) {
  kept_programs().push_back(std::move(program));
}

void forget_procedures() {
  procedures().clear();
  kept_programs().clear();
}

const Procedure& procedure(std::uint32_t code) { return procedures()[code]; }

std::uint32_t add_procedure(Procedure procedure) {
  procedures().push_back(std::move(procedure));
  return static_cast<std::uint32_t>(procedures().size() - 1);
}

const std::string& procedure_source(std::uint32_t code) { return procedure(code).source; }

}  // namespace vexil
