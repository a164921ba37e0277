// Runs statements; see session.h.
#include "vexil/shell/session.h"

#include <new>

#include "vexil/language/parser.h"
#include "vexil/shell/output.h"
#include "vexil/shell/pages.h"

namespace vexil {

namespace {

constexpr const char* kOutOfMemory = "out of memory";  // short enough for a string without a block

HostError out_of_memory() {
  HostError error;
  error.format = kOutOfMemory;
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
  try {
    heap().safe_point();
    const Object value = evaluator_.run(program);
    outcome.value = render(value, is_assignment(program));
    if (!is_assignment(program) && !is_empty(value)) assign(make_name("_"), value);
  } catch (HostError& error) {
    outcome.error = std::move(error);
  } catch (const std::bad_alloc&) {
    outcome.error = out_of_memory();
  } catch (const std::length_error&) {
    outcome.error = out_of_memory();
  }
  return outcome;
}

// Nothing at the end of the text.
std::optional<Outcome> Session::run_next(Parser& parser, const Render& render) {
  Outcome outcome;
  try {
    const std::shared_ptr<Program> program = parser.next();
    if (program == nullptr) return std::nullopt;
    return execute(*program, render);
  } catch (HostError& error) {
    outcome.error = std::move(error);
  } catch (const std::bad_alloc&) {
    outcome.error = out_of_memory();
  }
  outcome.line = parser.statement_line();
  parser.skip_statement();
  return outcome;
}

bool Session::run_text(std::string_view text, const Render& render, const Report& report) {
  Parser parser(text);
  while (std::optional<Outcome> outcome = run_next(parser, render)) {
    if (!report(*outcome)) return false;
  }
  return true;
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
  } catch (const std::bad_alloc&) {
    return kOutOfMemory;
  }
}

std::string error_line(const HostError& error) {
  const std::string place = error.command.empty() ? "error: " : "error in " + error.command + ": ";
  return place + message_of(error);
}

void print_failure(const HostError& error, const std::string& name, std::size_t line,
                   std::string_view sign) {
  try {
    std::string place(sign);
    if (!name.empty()) place.append(name).append(":").append(std::to_string(line)).append(": ");
    print_error(place + error_line(error));
  } catch (const std::bad_alloc&) {
    print_error("error: out of memory");
  }
}

}  // namespace vexil
