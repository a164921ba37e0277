// Every command's first example, again and again with the n-th allocation of the library refused,
// until none is: the command raises "out of memory" or does without, and the next call is as good
// as ever.
#include <gtest/gtest.h>

#include <cstdarg>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "tests/faults/failing_malloc.h"
#include "vexil/services/services.h"
#include "vexil/shell/session.h"
#include "vstring/core/random.h"

namespace {

namespace fs = std::filesystem;

// The service table, in which only what is allocated outside the services counts as the library's.
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

HostKernelVector paused_services;
HostModuleCommand under_test;
std::size_t refused_allocation = 0;  // 0: none
bool was_refused = false;

// What is called in the place of the command under test.
HostObject faulty_entry(HostKernelVector* kv, HostObject arguments) {
  if (refused_allocation == 0) return under_test.entry(kv, arguments);
  struct Watch {
    faults::RefusedAllocation refusal{refused_allocation};
    ~Watch() { was_refused = refusal.was_refused(); }
  } watch;
  return under_test.entry(&paused_services, arguments);
}

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
    vexil::bind_commands(HostModuleCommands);
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

  static void refuse_each(const std::string& statement) {
    std::string expected = run(statement);
    HostModuleCommand rows[] = {under_test, {}};
    rows[0].entry = faulty_entry;
    vexil::bind_commands(rows);
    for (refused_allocation = 1;; ++refused_allocation) {
      was_refused = false;
      std::string shown = run(statement);
      if (shown != expected) {
        bool is_told = shown.find("out of memory") != std::string::npos ||
                       shown.find("out of space") != std::string::npos ||
                       (under_test.name == kQuiet && shown.find("-1") != std::string::npos);
        EXPECT_TRUE(is_told) << statement << " gives " << shown;
      }
      if (!was_refused) break;
      ASSERT_LT(refused_allocation, 10000U) << statement;
    }
    refused_allocation = 0;
    vexil::bind_commands(HostModuleCommands);
    EXPECT_EQ(run(statement), expected) << statement;
  }

  static vexil::Session* session;
};

vexil::Session* Faults::session = nullptr;

TEST_F(Faults, NoRefusedAllocationDoesHarm) {
  std::map<std::string, HostModuleCommand> untried;
  for (const auto* row = HostModuleCommands; row->name != nullptr; ++row) untried[row->name] = *row;
  for (const auto& page : fs::directory_iterator(VSTRING_PAGES)) {
    session->clear();
    for (const std::string& statement : statements_of(page.path())) {
      auto command = untried.extract(statement.substr(0, statement.find('(')));
      if (!command.empty()) {
        under_test = command.mapped();
        refuse_each(statement);
      }
      run(statement);
    }
  }
  EXPECT_TRUE(untried.empty()) << untried.begin()->first << " is called by no example";
}

}  // namespace
