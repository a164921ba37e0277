// Evaluates statements; see evaluator.h. Calls are in calls.cpp.
#include "vexil/language/evaluator.h"

#include "vexil/language/depth.h"
#include "vexil/language/operators.h"
#include "vexil/values/interrupt.h"

namespace vexil {

namespace {

// More than any object could hold.
constexpr std::size_t kMaxStack = 2 * HOST_MAX_ELEMENTS;

// Nodes whose evaluation runs no other code, so that nothing is collected meanwhile.
bool is_plain(const Node& node) {
  return node.kind == NodeKind::Constant || node.kind == NodeKind::Name ||
         node.kind == NodeKind::Local;
}

}  // namespace

Evaluator::Evaluator(Hooks hooks) : hooks_(std::move(hooks)) {
  heap().add_roots([this](const Heap::Mark& mark) {
    for (Object object : stack_) mark(object);
    Program::visit_constants(mark);
  });
  heap().set_finalizer(kTypeProgram, Program::release_keeper);
}

Evaluator::~Evaluator() { release_all_keepers(); }

void Evaluator::push(Object object) {
  if (stack_.size() >= kMaxStack) raise_error("out of memory");
  stack_.push_back(object);
}

void Evaluator::push_flat(Object object) {
  if (host_type(object) != HOST_TYPE_SEQUENCE) {
    push(object);
    return;
  }
  check_depth();
  for (Object element : elements(object)) push_flat(element);
}

Object Evaluator::run(const Program& program) { return restoring(*program.root); }

Object Evaluator::restoring(const Node& node) {
  const std::size_t base = stack_.size();
  const std::size_t frame = frame_;
  try {
    return evaluate(node);
  } catch (...) {
    stack_.resize(base);
    frame_ = frame;
    throw;
  }
}

Object Evaluator::evaluate(const Node& node) {
  check_depth();
  switch (node.kind) {
    case NodeKind::Constant:
      return node.object;
    case NodeKind::Name: {
      const Object value = value_of(node.object);
      return value != 0 ? value : node.object;
    }
    case NodeKind::Local:
      return stack_[frame_ + node.slot];
    case NodeKind::Assign:
      return assign_to(node);
    case NodeKind::AssignLocal:
      return assign_local(node);
    case NodeKind::Procedure:
      return make_closure(node);
    case NodeKind::Sequence:
      return sequence(node);
    case NodeKind::List:
    case NodeKind::Set:
      return collection(node);
    case NodeKind::Block:
      return block(node);
    case NodeKind::Or:
      return logic(node, 1);
    case NodeKind::And:
      return logic(node, 0);
    case NodeKind::Not: {
      const int truth = truth_of(evaluate(*node.children[0]));
      return make_boolean(truth < 0 ? -1 : 1 - truth);
    }
    case NodeKind::Range:
      return range(node);
    case NodeKind::Compare:
    case NodeKind::Sum:
    case NodeKind::Product:
      return chain(node);
    case NodeKind::Negate:
      return negate(evaluate(*node.children[0]));
    case NodeKind::Call:
      return call_node(node);
    case NodeKind::Index:
      return index(node);
  }
  return node.object;
}

Object Evaluator::assign_to(const Node& node) {
  const Object value = evaluate(*node.children[0]);
  // A name that is given itself is without a value again.
  assign(node.object, value == node.object ? 0 : value);
  return value;
}

Object Evaluator::assign_local(const Node& node) {
  const Object value = evaluate(*node.children[0]);
  return stack_[frame_ + node.slot] = value;
}

// The values that a body uses of the procedures around it go along with it.
Object Evaluator::make_closure(const Node& node) {
  const std::size_t base = height();
  const Procedure& code = procedure(node.slot);
  for (std::uint32_t slot : code.captured) push(stack_[frame_ + slot]);
  const Object result = make_procedure(node.slot, code.program->keeper(), above(base));
  stack_.resize(base);
  return result;
}

Object Evaluator::sequence(const Node& node) {
  const std::size_t base = height();
  for (const Node* child : node.children) push_flat(evaluate(*child));
  const Object result = make_sequence(above(base));
  stack_.resize(base);
  return result;
}

Object Evaluator::collection(const Node& node) {
  const std::size_t base = height();
  for (const Node* child : node.children) push_flat(evaluate(*child));
  const Object result =
      node.kind == NodeKind::List ? make_list(above(base)) : make_set(above(base));
  stack_.resize(base);
  return result;
}

Object Evaluator::block(const Node& node) {
  for (std::size_t i = 0; i + 1 < node.children.size(); ++i) {
    evaluate(*node.children[i]);
    check_interrupt();
    heap().safe_point();
  }
  return evaluate(*node.children.back());
}

// The first value that decides ends it; FAIL is neither true nor false.
Object Evaluator::logic(const Node& node, int decisive) {
  int result = 1 - decisive;
  for (const Node* child : node.children) {
    const int truth = truth_of(evaluate(*child));
    if (truth == decisive) return make_boolean(decisive);
    if (truth < 0) result = -1;
  }
  return make_boolean(result);
}

Object Evaluator::range(const Node& node) {
  push(evaluate(*node.children[0]));
  const Object upper = evaluate(*node.children[1]);
  const Object lower = stack_.back();
  stack_.pop_back();
  return make_range(lower, upper);
}

Object Evaluator::chain(const Node& node) {
  Object left = evaluate(*node.children[0]);
  for (std::size_t i = 1; i < node.children.size(); ++i) {
    const Node& child = *node.children[i];
    const bool must_keep = !is_plain(child);
    if (must_keep) push(left);
    const Object right = evaluate(child);
    if (must_keep) stack_.pop_back();
    left = combine(node.operators[i - 1], left, right);
  }
  return left;
}

Object Evaluator::index(const Node& node) {
  const std::size_t base = height();
  push(evaluate(*node.children[0]));
  push_arguments(node, true);
  const Object result = index_value(stack_[base], above(base + 1));
  stack_.resize(base);
  return result;
}

}  // namespace vexil
