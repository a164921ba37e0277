// The table of built-ins, and those that work on values; see builtins.h.
#include "vexil/language/builtins.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <vector>

#include "vexil/language/evaluator.h"
#include "vexil/language/operators.h"
#include "vexil/services/services.h"
#include "vexil/values/interrupt.h"

namespace vexil {

namespace {

constexpr std::size_t kAny = Builtin::kAny;

constexpr std::array kBuiltins = std::to_array<Builtin>({
    {"array", "array([...])", "an Array of these values, indices 1..n", 1, 1, true, builtin::array,
     nullptr},
    {"bytes", "bytes(n, ...)", "a byte Array of these integers from 0 to 255", 0, kAny, true,
     builtin::bytes, nullptr},
    {"collect", "collect(x -> e, a..b)", "the sequence of the values for a, a + 1, ..., b", 2, 2,
     true, builtin::collect, nullptr},
    {"gc", "gc()", "frees what is no longer reachable", 0, 0, true, builtin::gc, nullptr},
    {"help", "help(\"name\")", "shows the page of a command", 0, 1, true, builtin::help, nullptr},
    {"if", "if(c, a, b)", "a when c holds, else b; only that one is evaluated", 3, 3, false,
     nullptr, builtin::if_value},
    {"lines", "lines(\"file\")", "the list of a file's lines", 1, 1, true, builtin::lines, nullptr},
    {"print", "print(x, ...)", "prints values on one line, strings as their text", 0, kAny, true,
     builtin::print, nullptr},
    {"quit", "quit()", "ends the program", 0, 0, true, builtin::quit, nullptr},
    {"raise", "raise(\"message\", ...)", "raises an error; %1, %2, %3 stand for the values", 1, 4,
     true, builtin::raise, nullptr},
    {"read", "read(\"file\")", "a file's bytes as a string", 1, 1, true, builtin::read, nullptr},
    {"record", "record(name = value, ...)", "a record of these fields", 0, kAny, true,
     builtin::record, nullptr},
    {"same", "same(a, b)", "whether both are one and the same object", 2, 2, false, builtin::same,
     nullptr},
    {"size", "size(x)", "the number of elements", 1, 1, false, builtin::size, nullptr},
    {"time", "time()", "the seconds since the program started", 0, 0, true, builtin::time, nullptr},
    {"try", "try(e)", "the value of e, or on an error the equation error = \"message\"", 1, 1,
     false, nullptr, builtin::try_value},
    {"type", "type(x)", "the type of a value, as a name", 1, 1, false, builtin::type, nullptr},
    {"write", "write(\"file\", s)", "writes a string to a file", 2, 2, true, builtin::write,
     nullptr},
});

}  // namespace

Object Arguments::operator[](std::size_t i) const { return evaluator_.at(base_ + i); }

std::span<const Object> Arguments::all() const { return evaluator_.above(base_).first(count_); }

std::string_view Arguments::string(std::size_t i) const {
  const Object object = (*this)[i];
  if (host_type(object) != HOST_TYPE_STRING)
    raise_error("expecting a string, but got %1", {object});
  return text(object);
}

const Builtin* find_builtin(std::string_view name) {
  const auto* found = std::lower_bound(
      kBuiltins.begin(), kBuiltins.end(), name,
      [](const Builtin& row, std::string_view wanted) { return row.name < wanted; });
  return found != kBuiltins.end() && found->name == name ? found : nullptr;
}

std::span<const Builtin> builtins() { return kBuiltins; }

namespace builtin {

Object if_value(Evaluator& evaluator, const Node& node) {
  if (node.children.size() != 4) raise_error("`if' takes a condition and two values");
  const int truth = truth_of(evaluator.evaluate(*node.children[1]));
  if (truth < 0) raise_error("a condition must be true or false, but is FAIL");
  return evaluator.evaluate(*node.children[truth == 1 ? 2 : 3]);
}

Object try_value(Evaluator& evaluator, const Node& node) {
  if (node.children.size() != 2) raise_error("wrong number of arguments for `try'");
  return evaluator.guarded(*node.children[1]);
}

Object array(Evaluator& /*evaluator*/, Arguments arguments) {
  if (host_type(arguments[0]) != HOST_TYPE_LIST) {
    raise_error("`array' needs a list, but got %1", {arguments[0]});
  }
  return make_array(elements(arguments[0]));
}

Object bytes(Evaluator& /*evaluator*/, Arguments arguments) {
  std::vector<std::uint8_t> values;
  for (Object object : arguments.all()) {
    if (!is_integer32(object) || integer32(object) < -128 || integer32(object) > 255) {
      raise_error("%1 is not a byte", {object});
    }
    values.push_back(static_cast<std::uint8_t>(integer32(object)));
  }
  return make_byte_array(values);
}

Object collect(Evaluator& evaluator, Arguments arguments) {
  if (host_type(arguments[1]) != HOST_TYPE_RANGE) {
    raise_error("`collect' needs a range, but got %1", {arguments[1]});
  }
  const auto [lower, upper] = sides(arguments[1]);
  if (!is_integer32(lower) || !is_integer32(upper)) {
    raise_error("`collect' cannot count through %1", {arguments[1]});
  }
  const std::int64_t last = integer32(upper);
  const std::size_t base = evaluator.height();
  for (std::int64_t i = integer32(lower); i <= last; ++i) {
    const Object argument = make_integer(i);
    evaluator.push_flat(evaluator.call(arguments[0], {&argument, 1}));
  }
  return make_sequence(evaluator.above(base));
}

Object gc(Evaluator& /*evaluator*/, Arguments /*arguments*/) {
  heap().collect();
  return make_sequence({});
}

Object help(Evaluator& evaluator, Arguments arguments) {
  const bool has_name = arguments.size() > 0;
  if (has_name && !host_is_text(arguments[0])) {
    raise_error("expecting a name, but got %1", {arguments[0]});
  }
  evaluator.hooks().help(has_name ? text(arguments[0]) : std::string_view());
  return make_sequence({});
}

Object quit(Evaluator& /*evaluator*/, Arguments /*arguments*/) { throw Quit{}; }

Object print(Evaluator& evaluator, Arguments arguments) {
  std::string line;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (i > 0) line += ' ';
    line += shown(arguments[i]);
  }
  evaluator.hooks().output(line += '\n');
  return make_sequence({});
}

Object raise(Evaluator& /*evaluator*/, Arguments arguments) {
  const auto objects = arguments.all().subspan(1);
  raise_error(std::string(arguments.string(0)), {objects.begin(), objects.end()});
}

Object record(Evaluator& /*evaluator*/, Arguments arguments) {
  std::vector<std::pair<std::string_view, Object>> fields;
  for (Object object : arguments.all()) {
    if (kind_of(object) != Kind::Equation || !host_is_text(sides(object).first)) {
      raise_error("`record' needs equations name = value, but got %1", {object});
    }
    fields.emplace_back(text(sides(object).first), sides(object).second);
  }
  return make_record(fields);
}

Object same(Evaluator& /*evaluator*/, Arguments arguments) {
  return make_boolean(arguments[0] == arguments[1] ? 1 : 0);
}

Object size(Evaluator& /*evaluator*/, Arguments arguments) {
  const Object object = arguments[0];
  switch (kind_of(object)) {
    case Kind::List:
    case Kind::Set:
    case Kind::Sequence:
    case Kind::IndexedName:
      return make_integer(static_cast<std::int64_t>(elements(object).size()));
    case Kind::String:
      return make_integer(static_cast<std::int64_t>(text(object).size()));
    case Kind::Record:
      return make_integer(static_cast<std::int64_t>(fields(object).size()));
    case Kind::Bytes:
      return make_integer(static_cast<std::int64_t>(vexil::bytes(object).size()));
    case Kind::Array:
      return make_integer(kernel_vector().HostRTableNumElements(object));
    case Kind::Equation:
    case Kind::Range:
      return make_integer(2);
    default:
      return make_integer(1);
  }
}

Object time(Evaluator& /*evaluator*/, Arguments /*arguments*/) {
  using Clock = std::chrono::steady_clock;
  static const Clock::time_point start = Clock::now();
  return make_float(std::chrono::duration<double>(Clock::now() - start).count());
}

Object type(Evaluator& /*evaluator*/, Arguments arguments) {
  return make_name(kind_name(kind_of(arguments[0])));
}

}  // namespace builtin

}  // namespace vexil
