// Calls of procedures, commands and built-ins; see evaluator.h.
#include "vexil/language/depth.h"
#include "vexil/language/evaluator.h"
#include "vexil/services/services.h"
#include "vexil/values/interrupt.h"

namespace vexil {

namespace {

// A name may stand for a name, but not in a circle.
constexpr int kMaxAliases = 100;

}  // namespace

void Evaluator::push_arguments(const Node& node, bool flat) {
  for (std::size_t i = 1; i < node.children.size(); ++i) {
    const Object value = evaluate(*node.children[i]);
    flat ? push_flat(value) : push(value);
  }
}

// A name's value counts when it is a procedure or another name; else its command, then its
// built-in.
Evaluator::Callee Evaluator::callee_of(const Node& node) {
  if (node.kind != NodeKind::Name && node.kind != NodeKind::Local) return callee_of(evaluate(node));
  const Object value =
      node.kind == NodeKind::Local ? stack_[frame_ + node.slot] : value_of(node.object);
  if (value != 0 && host_type(value) == kTypeProcedure) return {value, nullptr, nullptr};
  if (value != 0 && host_type(value) == HOST_TYPE_NAME && value != node.object) {
    return callee_of(value);
  }
  if (node.command != nullptr) return {0, node.command, nullptr};
  if (node.builtin != nullptr) return {0, nullptr, node.builtin};
  raise_error("`%1' is not a procedure, command or built-in", {make_string(text(node.object))});
}

Evaluator::Callee Evaluator::callee_of(Object object) {
  for (int aliases = 0; aliases < kMaxAliases; ++aliases) {
    if (host_type(object) == kTypeProcedure) return {object, nullptr, nullptr};
    if (host_type(object) != HOST_TYPE_NAME) raise_error("%1 cannot be called", {object});
    const Object value = value_of(object);
    const int type = value == 0 ? -1 : host_type(value);
    if (type == kTypeProcedure) return {value, nullptr, nullptr};
    if (type != HOST_TYPE_NAME) break;
    object = value;
  }
  if (const auto* command = find_command(text(object))) return {0, command, nullptr};
  if (const auto* builtin = find_builtin(text(object))) return {0, nullptr, builtin};
  raise_error("`%1' is not a procedure, command or built-in", {make_string(text(object))});
}

Object Evaluator::call_node(const Node& node) {
  check_interrupt();
  const std::size_t base = height();
  Callee callee = callee_of(*node.children[0]);
  if (callee.builtin != nullptr && callee.builtin->special != nullptr) {
    return callee.builtin->special(*this, node);
  }
  if (callee.procedure != 0) push(callee.procedure);
  const std::size_t arguments = height();
  push_arguments(node, callee.builtin == nullptr || callee.builtin->flat);
  const Object result = apply(callee, arguments);
  stack_.resize(base);
  return result;
}

Object Evaluator::apply(const Callee& callee, std::size_t base) {
  if (callee.command != nullptr) return call_command(*callee.command, above(base));
  if (callee.builtin != nullptr) return apply_builtin(*callee.builtin, base);
  return apply_procedure(callee.procedure, base);
}

Object Evaluator::apply_builtin(const Builtin& builtin, std::size_t base) {
  const std::size_t count = height() - base;
  if (builtin.call == nullptr) {
    raise_error("`%1' must be called by its name", {make_string(builtin.name)});
  }
  if (count < builtin.least || count > builtin.most) {
    raise_error("wrong number of arguments for `%1'", {make_string(builtin.name)});
  }
  return builtin.call(*this, Arguments(*this, base, count));
}

Object Evaluator::apply_procedure(Object object, std::size_t base) {
  const Procedure& code = procedure(procedure_code(object));
  const std::size_t count = height() - base;
  if (count != code.parameters) {
    raise_error("the procedure takes %1 arguments, but got %2",
                {make_integer(static_cast<std::int64_t>(code.parameters)),
                 make_integer(static_cast<std::int64_t>(count))});
  }
  for (Object value : captured_values(object)) push(value);
  const std::size_t frame = frame_;
  frame_ = base;
  const Object result = evaluate(*code.body);
  frame_ = frame;
  return result;
}

Object Evaluator::call(Object callable, std::span<const Object> arguments) {
  check_depth();
  check_interrupt();
  const std::size_t base = height();
  push(callable);
  for (Object argument : arguments) push(argument);
  heap().safe_point();
  const Callee callee = callee_of(callable);
  // A name may lose its value while the procedure runs.
  if (callee.procedure != 0) stack_[base] = callee.procedure;
  const Object result = apply(callee, base + 1);
  stack_.resize(base);
  return result;
}

Object Evaluator::guarded(const Node& node) {
  std::string message;
  try {
    return restoring(node);
  } catch (const HostError& error) {
    message = error.message();
  } catch (const std::bad_alloc&) {
    message = "out of memory";
  }
  return make_equation(make_name("error"), make_string(message));
}

}  // namespace vexil
