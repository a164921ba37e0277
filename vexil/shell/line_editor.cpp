// Lines from a terminal by libedit; see editor.h.
#ifdef VEXIL_LINE_EDITING

#include <histedit.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "vexil/language/lexer.h"
#include "vexil/shell/editor.h"
#include "vexil/values/interrupt.h"

namespace vexil {

struct Editor::State {
  EditLine* edit = nullptr;
  History* history = nullptr;
  std::string history_file;
  const char* prompt = "";
  bool is_abandoned = false;
};

namespace {

constexpr int kHistorySize = 2000;

/// The user's character set counts while a line is edited; elsewhere bytes are bytes.
class EditingLocale {
 public:
  EditingLocale() { std::setlocale(LC_CTYPE, ""); }
  ~EditingLocale() { std::setlocale(LC_CTYPE, "C"); }
  EditingLocale(const EditingLocale&) = delete;
  EditingLocale& operator=(const EditingLocale&) = delete;
};

template <typename State>
State& state_of(EditLine* edit) {
  void* state = nullptr;
  el_get(edit, EL_CLIENTDATA, &state);
  return *static_cast<State*>(state);
}

std::string word_before_cursor(EditLine* edit) {
  const LineInfo* line = el_line(edit);
  const char* start = line->cursor;
  while (start > line->buffer && continues_name(start[-1])) --start;
  return {start, line->cursor};
}

std::string common_start(const std::vector<std::string>& words) {
  std::string common = words.front();
  for (const std::string& word : words) {
    const auto end = std::mismatch(common.begin(), common.end(), word.begin(), word.end()).first;
    common.erase(end, common.end());
  }
  return common;
}

void print_words(const std::vector<std::string>& words) {
  std::string list = "\n";
  for (const std::string& word : words) list += word + "  ";
  std::puts(list.c_str());
}

unsigned char complete(EditLine* edit, int /*key*/) {
  const std::string word = word_before_cursor(edit);
  const std::vector<std::string> words = completions(word);
  if (word.empty() || words.empty()) return CC_ERROR;
  const std::string more = common_start(words).substr(word.size());
  if (!more.empty()) {
    return el_insertstr(edit, more.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
  }
  if (words.size() == 1) return CC_ERROR;
  print_words(words);
  return CC_REDISPLAY;
}

std::string history_path() {
  const char* home = std::getenv("HOME");
  return home == nullptr || *home == '\0' ? "" : std::string(home) + "/.vexil_history";
}

}  // namespace

Editor::Editor() : state_(std::make_unique<State>()) {
  const EditingLocale locale;
  State& state = *state_;
  state.edit = el_init("vexil", stdin, stdout, stderr);
  if (state.edit == nullptr) return;
  el_set(state.edit, EL_CLIENTDATA, &state);
  el_set(state.edit, EL_EDITOR, "emacs");
  char* (*prompt)(EditLine*) = [](EditLine* edit) {
    return const_cast<char*>(state_of<State>(edit).prompt);
  };
  el_set(state.edit, EL_PROMPT, prompt);
  // While a line is edited Ctrl-C is a key, not a signal.
  unsigned char (*abandon)(EditLine*, int) = [](EditLine* edit, int) -> unsigned char {
    state_of<State>(edit).is_abandoned = true;
    std::fputs("^C\n", stdout);
    return CC_NEWLINE;
  };
  el_set(state.edit, EL_SETTY, "-d", "-isig", nullptr);
  el_set(state.edit, EL_ADDFN, "vexil-abandon", "abandon the line", abandon);
  el_set(state.edit, EL_BIND, "^C", "vexil-abandon", nullptr);
  el_set(state.edit, EL_ADDFN, "vexil-complete", "complete a name", &complete);
  el_set(state.edit, EL_BIND, "^I", "vexil-complete", nullptr);
  el_set(state.edit, EL_BIND, "^R", "em-inc-search-prev", nullptr);
  state.history = history_init();
  state.history_file = history_path();
  HistEvent event;
  history(state.history, &event, H_SETSIZE, kHistorySize);
  history(state.history, &event, H_SETUNIQUE, 1);
  if (!state.history_file.empty())
    history(state.history, &event, H_LOAD, state.history_file.c_str());
  el_set(state.edit, EL_HIST, ::history, state.history);
}

Editor::~Editor() {
  if (state_->history != nullptr) history_end(state_->history);
  if (state_->edit != nullptr) el_end(state_->edit);
}

Editor::Result Editor::read_line(const char* prompt, std::string& line) {
  if (state_->edit == nullptr) return Result::End;
  const EditingLocale locale;
  const Prompting prompting;
  state_->prompt = prompt;
  state_->is_abandoned = false;
  int length = 0;
  const char* text = el_gets(state_->edit, &length);
  if (state_->is_abandoned || (text == nullptr && interrupt_requested != 0))
    return Result::Abandoned;
  if (text == nullptr || length <= 0) return Result::End;
  line.assign(text, static_cast<std::size_t>(length));
  if (line.ends_with('\n')) line.pop_back();
  return Result::Line;
}

// A statement of several lines is one entry; saved at once, as the program may be interrupted.
void Editor::remember(const std::string& statement) {
  if (state_->history == nullptr || statement.find_first_not_of(" \t\n") == std::string::npos)
    return;
  const EditingLocale locale;
  std::string entry = statement;
  while (entry.ends_with('\n')) entry.pop_back();
  HistEvent event;
  history(state_->history, &event, H_ENTER, entry.c_str());
  if (!state_->history_file.empty()) {
    history(state_->history, &event, H_SAVE, state_->history_file.c_str());
  }
}

}  // namespace vexil

#endif
