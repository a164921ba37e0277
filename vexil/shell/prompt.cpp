// The prompt: statements from a terminal; see modes.h. Line editing is in editor.h.
#include "vexil/language/lexer.h"
#include "vexil/shell/editor.h"
#include "vexil/shell/modes.h"
#include "vexil/shell/output.h"
#include "vexil/values/interrupt.h"

namespace vexil {

void show(const Outcome& outcome) {
  standard_output().write(outcome.value);
  if (outcome.error) print_failure(*outcome.error);
}

int run_prompt(Session& session, int info_level) {
  session.set_sink(text_sink(info_level));
  Editor editor;
  std::string statement;
  OpenScanner scanner;
  for (;;) {
    std::string line;
    const Editor::Result result = editor.read_line(statement.empty() ? "> " : "... ", line);
    if (result == Editor::Result::End) break;
    if (result == Editor::Result::Abandoned) {
      statement.clear();
      scanner = OpenScanner();
      continue;
    }
    statement += line + '\n';
    scanner.feed(line + '\n');
    if (scanner.is_open()) continue;
    editor.remember(statement);
    session.run_text(statement, render_text, [](const Outcome& outcome) {
      show(outcome);
      return true;
    });
    standard_output().flush();
    statement.clear();
  }
  standard_output().write("\n");
  return 0;
}

}  // namespace vexil
