// A host to fuzz in, with a small heap and the library's commands: a new one now and then, for to
// make one takes longer than most inputs do. It reads and writes no files and prints nothing. Entry
// point: fresh_host.
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
  FuzzHost() {
    [[maybe_unused]] static const bool is_set_up = set_up_process();
    vexil::init_values(kHeapSize);
    session_.emplace();
    session_->set_sink({[](std::string_view) {}, [](int, std::string_view) {}});
    vexil::init_services({[this](HostObject procedure, std::span<const HostObject> arguments) {
                            return evaluator().call(procedure, arguments);
                          },
                          [](std::string_view) {}, [](int, std::string_view, std::string_view) {}},
                         vexil::RaiseMode::Exception);
    run("ana(\"\", [])");  // the list that the library remembers is one of this host
    run("p := [x -> x, x -> true, x -> isvowel(x), (x, y) -> x < y, () -> \"text\", x -> (x, x), "
        "x -> [x, x], x -> (), x -> raise(x), x -> cap(x, x, x)]");
    procedures_ = vexil::value_of(vexil::make_name("p"));
    vexil::heap().protect(procedures_);
  }
  ~FuzzHost() {
    vexil::shut_values();
    session_.reset();
  }
  FuzzHost(const FuzzHost&) = delete;
  FuzzHost& operator=(const FuzzHost&) = delete;

  vexil::Evaluator& evaluator() { return session_->evaluator(); }

  /// Begins an input: no name has a value. gc_stress: a collection at every safe point, which finds
  /// more and takes longer.
  void start(bool gc_stress) {
    constexpr int kBetweenCollections = 16;
    vexil::heap().set_gc_stress(false);
    if (gc_stress || ++num_inputs_ % kBetweenCollections == 0) {
      session_->clear();
      is_crowded_ = vexil::heap().bytes_in_use() > kHeapSize / 16;  // by names, which stay
    } else {
      vexil::for_each_name([](HostObject name) {
        if (vexil::value_of(name) != 0) vexil::assign(name, 0);
      });
    }
    vexil::heap().set_gc_stress(gc_stress);
  }
  /// Some procedures of one argument, or of others.
  std::span<const HostObject> procedures() const { return vexil::elements(procedures_); }
  bool is_crowded() const { return is_crowded_ || vexil::heap().bytes_in_use() > kHeapSize / 2; }

  /// Runs statements, for a fiftieth of a second or so; what they give together.
  std::string run(std::string_view text) {
    std::string shown;
    vexil::interrupt_requested = 0;
    set_timer(20'000);
    try {
      session_->run_text(text, vexil::render_text, [&](const vexil::Outcome& outcome) {
        try {
          shown += outcome.error ? vexil::error_line(*outcome.error) : outcome.value;
        } catch (const std::bad_alloc&) {  // a refused allocation of this function's own
          shown.clear();
        }
        return true;
      });
    } catch (const vexil::Interrupted&) {
    } catch (const vexil::Quit&) {
    }
    set_timer(0);
    return shown;
  }

 private:
  static constexpr std::size_t kHeapSize = std::size_t{1} << 20;

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
  int num_inputs_ = 0;
  bool is_crowded_ = false;
  HostObject procedures_ = 0;
};

/// The host for the next input; another one when names have filled the last one's heap.
inline FuzzHost& fresh_host(bool gc_stress) {
  static auto& host = *new std::optional<FuzzHost>;  // never released: static data may go first
  if (host) host->start(gc_stress);
  if (!host || host->is_crowded()) {
    host.reset();
    host.emplace();
    host->start(gc_stress);
  }
  return *host;
}

}  // namespace fuzzing
