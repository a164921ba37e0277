// vexil: the substitute host's program. Reads the command line, sets the host up and runs what is
// asked for.
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <new>

#include "vexil/language/depth.h"
#include "vexil/shell/modes.h"
#include "vexil/shell/options.h"
#include "vexil/shell/output.h"
#include "vexil/shell/pages.h"
#include "vexil/values/interrupt.h"

namespace vexil {

namespace {

constexpr int kInterrupted = 130;

void end_at_once(int /*signal*/) { _exit(kInterrupted); }

// Evaluation looks at the flag; a command that runs on for more than a second does not.
void request_interrupt(int /*signal*/) {
  interrupt_requested = 1;
  if (is_prompting == 0) alarm(1);
}

void handle(int signal_number, void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  sigaction(signal_number, &action, nullptr);
}

void set_signals() {
  handle(SIGINT, request_interrupt);
  handle(SIGALRM, end_at_once);
  handle(SIGPIPE, SIG_IGN);
}

// Where one of them is closed, what is opened next would be taken for it.
void open_standard_files() {
  for (int file = 0; file <= 2; ++file) {
    if (fcntl(file, F_GETFD) < 0) open("/dev/null", O_RDWR);
  }
}

void load_modules(Options& options) {
  if (options.modules.empty()) options.modules.push_back(find_default_module());
  if (options.modules[0].empty()) {
    throw std::runtime_error("libvstring.so is not there; tell where with --module");
  }
  for (const std::string& path : options.modules) {
    load_module(path);
    add_page_folders(path);
  }
}

void set_services(Session& session, RaiseMode mode) {
  init_services({[&session](Object procedure, std::span<const Object> arguments) {
                   return session.evaluator().call(procedure, arguments);
                 },
                 [&session](std::string_view text) { session.sink().output(text); },
                 [&session](int level, std::string_view topic, std::string_view text) {
                   std::string line(topic);
                   session.sink().info(level, line.append(": ").append(text));
                 }},
                mode);
  set_procedure_printer([](Object object) { return procedure_source(procedure_code(object)); });
}

void set_arguments(const Options& options) {
  std::vector<Object> strings;
  for (const std::string& argument : options.arguments) strings.push_back(make_string(argument));
  assign(make_name("ARGS"), make_list(strings));
}

int show_text(std::string (*make)(std::string_view), const std::string& topic) {
  try {
    standard_output().write(make(topic));
    return 0;
  } catch (const HostError& error) {
    print_error("vexil: " + error.message());
    return 1;
  }
}

int run_mode(Session& session, const Options& options) {
  switch (options.mode) {
    case Mode::Each:
      return run_each(session, options.each);
    case Mode::Check:
      return run_check(session, options.files, options.info_level);
    case Mode::Help:
      return show_text(help_text, options.topic);
    case Mode::List:
      return show_text(list_text, options.topic);
    default:
      break;
  }
  const Work& work = options.work;
  const bool has_input = work.expressions.empty() && work.script.empty();
  if (has_input && !work.reads_input && !work.json && isatty(STDIN_FILENO) != 0) {
    return run_prompt(session, options.info_level);
  }
  return run_work(session, work);
}

int run_session(Options& options) {
  init_values(options.heap_size);
  heap().set_gc_stress(options.gc_stress);
  Session session;
  session.set_sink(text_sink(options.info_level));
  set_services(session, options.raise_mode);
  load_modules(options);
  set_arguments(options);
  int status = 0;
  try {
    status = run_mode(session, options);
  } catch (const Quit&) {
    status = 0;
  } catch (const Interrupted&) {
    status = kInterrupted;
  }
  standard_output().flush();
  shut_values();
  return status;
}

}  // namespace

}  // namespace vexil

int main(int argc, char** argv) {
  vexil::check_depth();  // measures the stack from here
  vexil::open_standard_files();
  vexil::set_signals();
  vexil::Options options = vexil::read_options(argc, argv);
  if (options.mode == vexil::Mode::Exit) return options.exit_status;
  options.work.info_level = options.info_level;
  try {
    return vexil::run_session(options);
  } catch (const vexil::HostError& error) {
    vexil::print_error("vexil: " + error.message());
  } catch (const std::bad_alloc&) {
    vexil::print_error("vexil: out of memory");
    return 1;
  } catch (const std::exception& error) {
    vexil::print_error(std::string("vexil: ") + error.what());
  }
  return 2;
}
