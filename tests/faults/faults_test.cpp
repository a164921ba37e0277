// Every command's first example, again and again with the n-th allocation of the library refused,
// until none is: the command raises "out of memory" or does without, and the next call is as good
// as ever.
#include <gtest/gtest.h>

#include <cstdarg>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/faults/failing_malloc.h"
#include "vexil/services/services.h"
#include "vexil/shell/session.h"
#include "vstring/core/random.h"

namespace {

namespace fs = std::filesystem;

// --- The service table with allocations counted as the library's own only outside the services
// ------

HostKernelVector real;

template <auto Member, class Result, class... Parameters>
Result paused(Parameters... parameters) {
  faults::HeapPause pause;
  return (real.*Member)(parameters...);
}

template <auto Member, class Result, class... Parameters>
void pause_service(HostKernelVector& kv, Result (*HostKernelVector::*)(Parameters...)) {
  kv.*Member = paused<Member, Result, Parameters...>;
}

// Those that take any number of arguments: for as many as commands pass.
template <auto Member, class Result, class... Parameters>
void pause_service(HostKernelVector&, Result (*HostKernelVector::*)(Parameters..., ...)) {}

HostObject paused_call(HostObject procedure, int n, ...) {
  faults::HeapPause pause;
  va_list list;
  va_start(list, n);
  HostObject first = va_arg(list, HostObject);
  HostObject second = n > 1 ? va_arg(list, HostObject) : 0;
  va_end(list);
  return real.HostCallProcedure(procedure, n, first, second);
}

HostObject paused_sequence(int n, ...) {
  faults::HeapPause pause;
  va_list list;
  va_start(list, n);
  HostObject elements[2] = {};
  for (int i = 0; i < n && i < 2; ++i) elements[i] = va_arg(list, HostObject);
  va_end(list);
  return real.HostExpSeqOf(n, elements[0], elements[1]);
}

int no_print(const char*, ...) { return 0; }

HostKernelVector make_paused_services() {
  real = vexil::kernel_vector();
  HostKernelVector kv = real;
#define SERVICE(result, name, parameters) \
  pause_service<&HostKernelVector::name>(kv, &HostKernelVector::name);
#include "vstring/kernel_services.def"
#undef SERVICE
  kv.HostCallProcedure = paused_call;
  kv.HostExpSeqOf = paused_sequence;
  kv.HostPrintf = no_print;
  return kv;
}

// --- The commands, called through an entry that refuses an allocation
// ------------------------------

HostKernelVector paused_services;
const HostModuleCommand* under_test = nullptr;
std::size_t refused_allocation = 0;  // 0: none
bool was_refused = false;

template <std::size_t Index>
HostObject faulty_entry(HostKernelVector* kv, HostObject arguments) {
  const HostModuleCommand& command = HostModuleCommands[Index];
  if (&command != under_test || refused_allocation == 0) return command.entry(kv, arguments);
  struct Watch {
    faults::RefusedAllocation refusal{refused_allocation};
    ~Watch() { was_refused = refusal.was_refused(); }
  } watch;
  return command.entry(&paused_services, arguments);
}

template <std::size_t... Index>
std::vector<HostModuleCommand> faulty_commands(std::index_sequence<Index...>) {
  std::vector<HostModuleCommand> rows;
  const HostModuleEntry entries[] = {faulty_entry<Index>...};
  for (std::size_t i = 0; HostModuleCommands[i].name != nullptr; ++i) {
    rows.push_back(HostModuleCommands[i]);
    rows.back().entry = entries[i];
  }
  rows.push_back({});
  return rows;
}

// --- Running examples
// ------------------------------------------------------------------------------

std::vector<std::string> statements_of(const fs::path& page) {
  std::vector<std::string> statements;
  std::ifstream file(page);
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("> ")) statements.push_back(line.substr(2));
  }
  return statements;
}

// Gives -1 when memory runs out.
constexpr std::string_view kQuiet = "asearchb";

class Faults : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    vexil::init_values(std::size_t{256} << 20);
    session = new vexil::Session;
    session->set_sink({[](std::string_view) {}, [](int, std::string_view) {}});
    vexil::init_services({[](HostObject procedure, std::span<const HostObject> arguments) {
                            return session->evaluator().call(procedure, arguments);
                          },
                          [](std::string_view) {}, [](int, std::string_view, std::string_view) {}},
                         vexil::RaiseMode::Exception);
    static const auto rows = faulty_commands(std::make_index_sequence<512>());
    vexil::bind_commands(rows.data());
    paused_services = make_paused_services();
  }
  static void TearDownTestSuite() {
    delete session;
    vexil::shut_values();
  }

  // What the statement prints, or its error. The random generator starts anew each time.
  static std::string run(const std::string& statement) {
    vstring::restart_random(1);
    std::string shown;
    session->run_text(statement, vexil::render_text, [&](const vexil::Outcome& outcome) {
      shown = outcome.error ? vexil::error_line(*outcome.error) : outcome.value;
      return true;
    });
    return shown;
  }

  static void refuse_each(const HostModuleCommand& command, const std::string& statement) {
    std::string expected = run(statement);
    under_test = &command;
    for (refused_allocation = 1;; ++refused_allocation) {
      was_refused = false;
      std::string shown = run(statement);
      if (shown != expected) {
        bool is_told = shown.find("out of memory") != std::string::npos ||
                       shown.find("out of space") != std::string::npos ||
                       (command.name == kQuiet && shown.find("-1") != std::string::npos);
        EXPECT_TRUE(is_told) << statement << " gives " << shown;
      }
      if (!was_refused) break;
      ASSERT_LT(refused_allocation, 10000U) << statement;
    }
    refused_allocation = 0;
    EXPECT_EQ(run(statement), expected) << statement;
  }

  static vexil::Session* session;
};

vexil::Session* Faults::session = nullptr;

TEST_F(Faults, NoRefusedAllocationDoesHarm) {
  std::set<std::string> untried;
  std::map<std::string, const HostModuleCommand*> by_name;
  for (const auto* command = HostModuleCommands; command->name != nullptr; ++command) {
    untried.insert(command->name);
    by_name[command->name] = command;
  }
  for (const auto& page : fs::directory_iterator(VSTRING_PAGES)) {
    session->clear();
    for (const std::string& statement : statements_of(page.path())) {
      std::string name = statement.substr(0, statement.find('('));
      if (untried.erase(name) != 0) refuse_each(*by_name[name], statement);
      run(statement);
    }
  }
  EXPECT_TRUE(untried.empty()) << *untried.begin() << " is called by no example";
}

}  // namespace
