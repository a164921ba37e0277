// `vexil check`: runs the statements of transcripts and pages, and compares what they print with
// what stands there; see modes.h.
#include <cstdio>

#include "vexil/shell/modes.h"
#include "vexil/shell/output.h"

namespace vexil {

namespace {

struct Example {
  std::size_t line;  // where the statement stands, from 1
  std::string statement;
  std::string expected;
};

std::vector<std::string_view> split_lines(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    lines.push_back(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return lines;
}

// Of a page only the blocks opened by ```vexil count.
std::vector<Example> find_examples(std::string_view text, bool is_page) {
  std::vector<Example> examples;
  bool is_inside = !is_page;
  bool expects_output = false;
  std::size_t number = 0;
  for (std::string_view line : split_lines(text)) {
    ++number;
    if (is_page && line.starts_with("```")) {
      is_inside = !is_inside && line == "```vexil";
      expects_output = false;
    } else if (!is_inside) {
      continue;
    } else if (line.starts_with("> ")) {
      examples.push_back({number, std::string(line.substr(2)), {}});
      expects_output = true;
    } else if (line.empty() || line.starts_with("#")) {
      expects_output = false;
    } else if (expects_output) {
      examples.back().expected.append(line) += '\n';
    } else {
      examples.push_back(
          {number, std::string(line), "a line that is no statement, comment or output\n"});
    }
  }
  return examples;
}

// Everything that a statement prints, in its order.
class Recorder {
 public:
  Recorder(Session& session, int info_level) : session_(session) {
    session_.set_sink({[this](std::string_view text) { printed_ += text; },
                       [this, info_level](int level, std::string_view line) {
                         if (level <= info_level) printed_.append(line) += '\n';
                       }});
  }

  std::string run(const std::string& statement) {
    printed_.clear();
    session_.run_text(statement, render_text, [this](const Outcome& outcome) {
      printed_ += outcome.error ? error_line(*outcome.error) + '\n' : outcome.value;
      return true;
    });
    if (!printed_.empty() && !printed_.ends_with('\n')) printed_ += '\n';
    return printed_;
  }

 private:
  Session& session_;
  std::string printed_;
};

std::string indent(std::string_view text) {
  std::string indented;
  for (std::string_view line : split_lines(text)) indented.append("    ").append(line) += '\n';
  return indented.empty() ? "    (nothing)\n" : indented;
}

void print_difference(const std::string& file, const Example& example, const std::string& got) {
  standard_output().write(file + ':' + std::to_string(example.line) + ": " + example.statement +
                          "\n  expected\n" + indent(example.expected) + "  got\n" + indent(got));
}

}  // namespace

int run_check(Session& session, const std::vector<std::string>& files, int info_level) {
  std::size_t passed = 0;
  std::size_t failed = 0;
  bool has_empty = false;
  Recorder recorder(session, info_level);
  for (const std::string& file : files) {
    session.clear();
    const std::vector<Example> examples = find_examples(load_file(file), file.ends_with(".md"));
    if (examples.empty()) print_error(file + ": no statements");
    has_empty = has_empty || examples.empty();
    for (const Example& example : examples) {
      const std::string got = recorder.run(example.statement);
      got == example.expected ? ++passed : ++failed;
      if (got != example.expected) print_difference(file, example, got);
    }
  }
  standard_output().write(std::to_string(passed) + " passed, " + std::to_string(failed) +
                          " failed\n");
  return failed > 0 || has_empty ? 1 : 0;
}

}  // namespace vexil
