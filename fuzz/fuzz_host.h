// A host to fuzz in: new for every input, with a small heap and the library's commands. It reads
// and writes no files and prints nothing. Entry point: FuzzHost.
#pragma once

#include <sys/time.h>

#include <csignal>
#include <optional>
#include <string>

#include "vexil/language/depth.h"
#include "vexil/services/services.h"
#include "vexil/shell/session.h"
#include "vexil/values/interrupt.h"
#include "vstring/library.h"

namespace fuzzing {

class FuzzHost {
 public:
  /// gc_stress: a collection at every safe point, which finds more and takes longer.
  explicit FuzzHost(bool gc_stress) {
    [[maybe_unused]] static const bool is_set_up = set_up_process();
    vexil::init_values(std::size_t{8} << 20);
    vexil::heap().set_gc_stress(gc_stress);
    session_.emplace();
    session_->set_sink({[](std::string_view) {}, [](int, std::string_view) {}});
    vexil::init_services({[this](HostObject procedure, std::span<const HostObject> arguments) {
                            return evaluator().call(procedure, arguments);
                          },
                          [](std::string_view) {}, [](int, std::string_view, std::string_view) {}},
                         vexil::RaiseMode::Exception);
    run("ana(\"\", [])");  // the list that the library remembers is one of this host
  }
  ~FuzzHost() {
    vexil::shut_values();
    session_.reset();
  }
  FuzzHost(const FuzzHost&) = delete;
  FuzzHost& operator=(const FuzzHost&) = delete;

  vexil::Evaluator& evaluator() { return session_->evaluator(); }

  /// Runs statements, for a third of a second at most; what they give together.
  std::string run(std::string_view text) {
    std::string shown;
    vexil::interrupt_requested = 0;
    set_timer(300'000);
    try {
      session_->run_text(text, vexil::render_text, [&](const vexil::Outcome& outcome) {
        shown += outcome.error ? vexil::error_line(*outcome.error) : outcome.value;
        return true;
      });
    } catch (const vexil::Interrupted&) {
    } catch (const vexil::Quit&) {
    }
    set_timer(0);
    return shown;
  }

 private:
  static HostObject no_file(HostKernelVector* kv, HostObject /*arguments*/) {
    kv->HostRaiseError("no files here", 0, 0, 0);
    return 0;
  }

  static bool set_up_process() {
    // A command goes before the built-in of its name, and before an earlier command.
    static constexpr HostModuleCommand kNoFiles[] = {{"wildTest", no_file, 0, "", "", ""},
                                                     {"read", no_file, 0, "", "", ""},
                                                     {"lines", no_file, 0, "", "", ""},
                                                     {"write", no_file, 0, "", "", ""},
                                                     {}};
    vexil::check_depth();  // measures the stack from here
    vexil::bind_commands(HostModuleCommands);
    vexil::bind_commands(kNoFiles);
    std::signal(SIGVTALRM, [](int) { vexil::interrupt_requested = 1; });
    return vstringInit() != 0;
  }

  static void set_timer(int microseconds) {
    const itimerval time = {{}, {0, microseconds}};
    setitimer(ITIMER_VIRTUAL, &time, nullptr);
  }

  std::optional<vexil::Session> session_;
};

}  // namespace fuzzing
