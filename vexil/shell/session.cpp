// Runs statements; see session.h.
#include "vexil/shell/session.h"

#include <new>

#include "vexil/language/parser.h"
#include "vexil/shell/pages.h"

namespace vexil {

namespace {

HostError out_of_memory() {
  HostError error;
  error.format = "out of memory";
  return error;
}

bool is_assignment(const Program& program) {
  return program.root->kind == NodeKind::Assign || program.root->kind == NodeKind::AssignLocal;
}

bool is_empty(Object value) {
  return host_type(value) == HOST_TYPE_SEQUENCE && host_num_elements(value) == 0;
}

}  // namespace

Session::Session()
    : evaluator_({[this](std::string_view text) { sink_.output(text); },
                  [this](std::string_view name) { sink_.output(help_text(name)); }}) {}

Outcome Session::execute(const Program& program, const Render& render) {
  Outcome outcome;
  outcome.line = program.line;
  heap().safe_point();
  try {
    const Object value = evaluator_.run(program);
    outcome.value = render(value, is_assignment(program));
    if (!is_assignment(program) && !is_empty(value)) assign(make_name("_"), value);
  } catch (const HostError& error) {
    outcome.error = error;
  } catch (const std::bad_alloc&) {
    outcome.error = out_of_memory();
  } catch (const std::length_error&) {
    outcome.error = out_of_memory();
  }
  return outcome;
}

bool Session::run_text(std::string_view text, const Render& render, const Report& report) {
  Parser parser(text);
  for (;;) {
    Outcome outcome;
    try {
      const std::shared_ptr<Program> program = parser.next();
      if (program == nullptr) return true;
      outcome = execute(*program, render);
    } catch (const HostError& error) {
      outcome.error = error;
      outcome.line = parser.statement_line();
      parser.skip_statement();
    } catch (const std::bad_alloc&) {
      outcome.error = out_of_memory();
      outcome.line = parser.statement_line();
      parser.skip_statement();
    }
    if (!report(outcome)) return false;
  }
}

void Session::clear() {
  std::vector<Object> names;
  for_each_name([&](Object name) {
    if (value_of(name) != 0) names.push_back(name);
  });
  for (Object name : names) assign(name, 0);
  heap().collect();
}

std::string render_text(Object value, bool is_assignment) {
  if (is_assignment || is_empty(value)) return {};
  return printed(value) += '\n';
}

std::string message_of(const HostError& error) {
  try {
    return error.message();
  } catch (const HostError&) {  // the objects' text is beyond all bounds
    return error.format;
  }
}

std::string error_line(const HostError& error) {
  const std::string place = error.command.empty() ? "error: " : "error in " + error.command + ": ";
  return place + message_of(error);
}

}  // namespace vexil
