// Programs and the table of procedures; see ast.h.
#include "vexil/language/ast.h"

#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace vexil {

namespace {

std::unordered_set<const Program*>& programs() {
  static std::unordered_set<const Program*> all;
  return all;
}

// Those that procedure objects refer to, by their keepers.
std::unordered_map<Object, std::shared_ptr<Program>>& kept_programs() {
  static std::unordered_map<Object, std::shared_ptr<Program>> all;
  return all;
}

// By code; null for codes that are free.
std::vector<const Procedure*>& procedures() {
  static std::vector<const Procedure*> all;
  return all;
}

std::vector<std::uint32_t>& free_codes() {
  static std::vector<std::uint32_t> all;
  return all;
}

template <class Element>
void make_room(std::vector<Element>& list, std::size_t size) {
  if (list.capacity() < size) list.reserve(2 * size);
}

}  // namespace

Program::Program() { programs().insert(this); }

Program::~Program() {
  programs().erase(this);
  for (std::uint32_t code : codes_) {
    procedures()[code] = nullptr;
    free_codes().push_back(code);  // there is room for all
  }
}

std::uint32_t Program::add_procedure(Procedure procedure) {
  make_room(codes_, codes_.size() + 1);
  procedures_.push_back(std::move(procedure));
  if (free_codes().empty()) {
    make_room(free_codes(), procedures().size() + 1);
    procedures().push_back(nullptr);
    free_codes().push_back(static_cast<std::uint32_t>(procedures().size() - 1));
  }
  codes_.push_back(free_codes().back());
  free_codes().pop_back();
  procedures_.back().program = this;
  procedures()[codes_.back()] = &procedures_.back();
  return codes_.back();
}

Object Program::keeper() {
  if (keeper_ == 0) {
    const Object object = heap().allocate(kTypeProgram, 2);
    kept_programs().emplace(object, shared_from_this());
    keeper_ = object;
  }
  return keeper_;
}

void Program::release_keeper(Object keeper) {
  const auto kept = kept_programs().find(keeper);
  if (kept == kept_programs().end()) return;
  kept->second->keeper_ = 0;
  kept_programs().erase(kept);
}

void Program::visit_constants(const Heap::Mark& mark) {
  for (const Program* program : programs()) {
    for (const Node& node : program->nodes_) {
      if (node.object != 0) mark(node.object);
    }
  }
}

void release_all_keepers() { kept_programs().clear(); }

const Procedure& procedure(std::uint32_t code) { return *procedures()[code]; }

const std::string& procedure_source(std::uint32_t code) { return procedure(code).source; }

}  // namespace vexil
