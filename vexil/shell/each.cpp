// `vexil each`: one expression for every line of the input; see modes.h.
#include <cstring>
#include <new>

#include "vexil/language/parser.h"
#include "vexil/shell/lines.h"
#include "vexil/shell/modes.h"
#include "vexil/shell/output.h"

namespace vexil {

namespace {

std::string render_line(Object value, bool is_assignment) {
  if (is_assignment || host_type(value) != HOST_TYPE_STRING) {
    return render_text(value, is_assignment);
  }
  std::string text(vexil::text(value));
  return text += '\n';
}

std::vector<std::shared_ptr<Program>> parse(const std::string& expression) {
  std::vector<std::shared_ptr<Program>> programs;
  Parser parser(expression);
  while (auto program = parser.next()) programs.push_back(std::move(program));
  return programs;
}

class LineRunner {
 public:
  LineRunner(Session& session, const Each& each)
      : session_(session), programs_(parse(each.expression)), keep_going_(each.keep_going) {}

  bool run_file(const std::string& name) {
    LineReader reader(name);
    std::size_t in_file = 0;
    for (std::string_view line; reader.next(line);) {
      ++in_file;
      ++number_;
      const std::optional<HostError> error = run_line(line);
      if (!error) continue;
      failed_ = true;
      print_failure(*error, name == "-" ? "stdin" : name, in_file, keep_going_ ? "ERROR " : "");
      if (!keep_going_) return false;
    }
    return true;
  }

  bool failed() const { return failed_; }

 private:
  std::optional<HostError> run_line(std::string_view line) {
    try {
      if (std::memchr(line.data(), 0, line.size()) != nullptr) {
        raise_error("the line holds a NUL byte");
      }
      assign(line_, make_string(line));
      assign(lineno_, make_integer(static_cast<std::int64_t>(number_)));
    } catch (HostError& error) {
      return std::move(error);
    } catch (const std::bad_alloc&) {
      return HostError{"out of memory"};
    }
    for (std::size_t i = 0; i < programs_.size(); ++i) {
      const Outcome outcome = session_.execute(*programs_[i], render_line);
      if (outcome.error) return outcome.error;
      if (i + 1 == programs_.size()) standard_output().write(outcome.value);
    }
    return std::nullopt;
  }

  Session& session_;
  std::vector<std::shared_ptr<Program>> programs_;
  bool keep_going_;
  bool failed_ = false;
  std::size_t number_ = 0;
  Object line_ = make_name("line");
  Object lineno_ = make_name("lineno");
};

}  // namespace

int run_each(Session& session, const Each& each) {
  const std::vector<std::string> standard_input = {"-"};
  std::optional<LineRunner> runner;
  try {
    runner.emplace(session, each);
  } catch (const HostError& error) {
    print_failure(error);
    return 1;
  }
  for (const std::string& name : each.files.empty() ? standard_input : each.files) {
    if (!runner->run_file(name)) break;
  }
  standard_output().flush();
  return runner->failed() ? 1 : 0;
}

}  // namespace vexil
