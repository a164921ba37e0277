// Every example of the pages, again and again with one thing that goes wrong: the n-th allocation
// of the library refused, or the n-th call of a service left by an exception or by a jump. The
// command raises the error or does without, harms nobody else's texts, and the next call is as good
// as ever.
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <clocale>
#include <cstdarg>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/faults/failing_malloc.h"
#include "vexil/services/boundary.h"
#include "vexil/services/services.h"
#include "vexil/shell/session.h"
#include "vstring/core/random.h"

#define COMMAND(entry, required, synopses, summary) \
  extern "C" HostObject entry(HostKernelVector* kv, HostObject arguments);
#include "vstring/commands.def"
#undef COMMAND

namespace {

namespace fs = std::filesystem;

// What is to go wrong.
std::size_t failing_service = 0;  // number of the call; 0: none
std::size_t num_services = 0;     // called since the statement began
long num_protections = 0;         // that commands hold

// The service table, in which only what is allocated outside the services counts as the library's.
HostKernelVector real;

void count_service() {
  if (++num_services != failing_service) return;
  faults::Counting::stop();
  vexil::serve([] { vexil::raise_error("service refused"); });
}

template <auto Member, class Result, class... Parameters>
Result watched(Parameters... parameters) {
  count_service();
  faults::Counting off(false);
  return (real.*Member)(parameters...);
}

template <auto Member, class Result, class... Parameters>
void watch_service(HostKernelVector& kv, Result (*HostKernelVector::*)(Parameters...)) {
  kv.*Member = watched<Member, Result, Parameters...>;
}

// Those that take any number of arguments: for as many as commands pass.
template <auto Member, class Result, class... Parameters>
void watch_service(HostKernelVector&, Result (*HostKernelVector::*)(Parameters..., ...)) {}

HostObject watched_call(HostObject procedure, int n, ...) {
  count_service();
  faults::Counting off(false);
  va_list list;
  va_start(list, n);
  HostObject first = va_arg(list, HostObject);
  HostObject second = n > 1 ? va_arg(list, HostObject) : 0;
  va_end(list);
  return real.HostCallProcedure(procedure, n, first, second);
}

HostObject watched_sequence(int n, ...) {
  count_service();
  faults::Counting off(false);
  va_list list;
  va_start(list, n);
  HostObject elements[2] = {};
  for (int i = 0; i < n && i < 2; ++i) elements[i] = va_arg(list, HostObject);
  va_end(list);
  return real.HostExpSeqOf(n, elements[0], elements[1]);
}

void watched_protect(HostObject object) {
  watched<&HostKernelVector::HostGcProtect, void>(object);
  ++num_protections;
}

void watched_allow(HostObject object) {
  --num_protections;
  faults::Counting off(false);
  real.HostGcAllow(object);
}

void stop_and_raise(const char* message, HostObject x1, HostObject x2, HostObject x3) {
  faults::Counting::stop();
  real.HostRaiseError(message, x1, x2, x3);
}

int no_print(const char*, ...) {
  count_service();
  return 0;
}

HostKernelVector make_watched_services() {
  real = vexil::kernel_vector();
  HostKernelVector kv = real;
#define SERVICE(result, name, parameters) \
  watch_service<&HostKernelVector::name>(kv, &HostKernelVector::name);
#include "vstring/kernel_services.def"
#undef SERVICE
  kv.HostCallProcedure = watched_call;
  kv.HostExpSeqOf = watched_sequence;
  kv.HostPrintf = no_print;
  kv.HostGcProtect = watched_protect;
  kv.HostGcAllow = watched_allow;
  kv.HostRaiseError = stop_and_raise;
  return kv;
}

HostKernelVector watched_services;

// The strings among arguments, copied to pages of their own that nobody may write to.
class ReadOnlyTexts {
 public:
  ~ReadOnlyTexts() { unlock(); }

  HostObject copy_of(HostObject object) {
    if (host_is_immediate(object)) return object;
    HostObject& copy = copies_[object];
    if (copy != 0) return copy;
    switch (host_type(object)) {
      case HOST_TYPE_STRING:
        return copy = locked_string(object);
      case HOST_TYPE_SEQUENCE:
      case HOST_TYPE_LIST:
      case HOST_TYPE_EQUATION: {
        copy = vexil::heap().allocate(host_type(object), host_length(object));
        for (std::size_t i = 1; i < host_length(object); ++i) {
          host_words(copies_[object])[i] = copy_of(host_words(object)[i]);
        }
        return copies_[object];
      }
      default:
        return copy = object;
    }
  }

  // The heap will write to the pages when it uses them again.
  void unlock() {
    for (auto [start, size] : pages_) mprotect(start, size, PROT_READ | PROT_WRITE);
    pages_.clear();
    copies_.clear();
  }

 private:
  HostObject locked_string(HostObject object) {
    std::size_t words = host_length(object), room = (words + 1023) / 1024 * 1024;
    HostObject copy = vexil::heap().allocate(HOST_TYPE_STRING, room);
    std::copy_n(host_words(object), words, host_words(copy));
    EXPECT_EQ(copy % 4096, 0U);
    mprotect(host_words(copy), room * 4, PROT_READ);
    pages_.emplace_back(host_words(copy), room * 4);
    return copy;
  }

  std::map<HostObject, HostObject> copies_;
  std::vector<std::pair<void*, std::size_t>> pages_;
};

ReadOnlyTexts read_only;
bool has_read_only_texts = false;

// What is called in the place of a command.
template <HostModuleEntry Entry>
HostObject watched_entry(HostKernelVector*, HostObject arguments) {
  if (has_read_only_texts) arguments = read_only.copy_of(arguments);
  faults::Counting on(true);
  return Entry(&watched_services, arguments);
}

constexpr const char* command_name(const char* entry) {
  std::string_view name(entry);
  return name.starts_with("vstring_") ? entry + 8 : entry;
}

const HostModuleCommand kWatchedCommands[] = {
#define COMMAND(entry, required, synopses, summary) \
  {command_name(#entry), watched_entry<entry>, required, synopses, summary, FAMILY},
#include "vstring/commands.def"
#undef COMMAND
    {}};

// What commands give where they do not raise when memory runs out.
const std::map<std::string, std::string> kQuiet = {
    {"asearchb", "-1"}, {"borderlen", "-1"}, {"minconj", "\"\""}, {"randperm", ""}};

class Faults : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    vexil::init_values(std::size_t{256} << 20);
    session = make_session();
    watched_services = make_watched_services();
    vexil::bind_commands(kWatchedCommands);
  }
  static void TearDownTestSuite() {
    delete session;
    vexil::shut_values();
  }
  static vexil::Session* make_session() {
    auto* made = new vexil::Session;
    made->set_sink({[](std::string_view) {}, [](int, std::string_view) {}});
    vexil::init_services({[](HostObject procedure, std::span<const HostObject> arguments) {
                            return session->evaluator().call(procedure, arguments);
                          },
                          [](std::string_view) {}, [](int, std::string_view, std::string_view) {}},
                         vexil::RaiseMode::Exception);
    return made;
  }
  void TearDown() override {
    vexil::set_raise_mode(vexil::RaiseMode::Exception);
    has_read_only_texts = false;
    std::setlocale(LC_ALL, "C");
  }

  // What the statement prints, or its error. The random generator starts anew each time.
  static std::string run(const std::string& statement) {
    vstring::restart_random(1);
    num_services = 0;
    std::string shown;
    session->run_text(statement, vexil::render_text, [&](const vexil::Outcome& outcome) {
      faults::Counting off(false);
      shown = outcome.error ? vexil::error_line(*outcome.error) : outcome.value;
      return true;
    });
    read_only.unlock();
    return shown;
  }

  static std::string run_refused(const std::string& statement, std::size_t n, bool* was_refused) {
    faults::RefusedAllocation refusal(n);
    faults::Counting off(false);
    std::string shown = run(statement);
    *was_refused = refusal.was_refused();
    return shown;
  }

  static std::string name_in(const std::string& statement) {
    return statement.substr(0, statement.find('('));
  }

  static bool tells_of_memory(const std::string& statement, const std::string& shown) {
    if (shown.find("out of memory") != std::string::npos) return true;
    if (shown.find("out of space") != std::string::npos) return true;
    auto quiet = kQuiet.find(name_in(statement));
    return quiet != kQuiet.end() && shown == quiet->second + (quiet->second.empty() ? "" : "\n");
  }

  static void refuse_each(const std::string& statement) {
    std::string expected = run(statement);
    bool was_refused = true;
    for (std::size_t n = 1; was_refused; ++n) {
      std::string shown = run_refused(statement, n, &was_refused);
      if (was_refused && shown != expected) {
        EXPECT_TRUE(tells_of_memory(statement, shown)) << statement << " gives " << shown;
      }
      ASSERT_LT(n, 10000U) << statement;
    }
    expect_again(statement, expected);
  }

  static void expect_again(const std::string& statement, const std::string& expected) {
    std::string shown = run(statement);
    bool assigns = statement.find(":=") != std::string::npos;
    EXPECT_TRUE(assigns || shown == expected) << statement << " gives " << shown;
  }

  // The arguments' texts are read-only meanwhile, and the locale is not the library's own.
  static void fail_each_service(const std::string& statement) {
    if (statement.find("same(") != std::string::npos) return;  // arguments are copies
    std::string expected = run(statement);
    std::string locale = std::setlocale(LC_ALL, "C.UTF-8");
    has_read_only_texts = true;
    for (failing_service = 1;; ++failing_service) {
      run(statement);
      if (num_services < failing_service) break;
      ASSERT_EQ(std::setlocale(LC_ALL, nullptr), locale) << statement << failing_service;
      std::size_t failed = std::exchange(failing_service, 0);
      run("length(\"\")");                                   // releases what a jump left
      ASSERT_LE(num_protections, 1) << statement << failed;  // `ana` keeps its index's list
      failing_service = failed;
      ASSERT_LT(failed, 10000U) << statement;
    }
    failing_service = 0;
    has_read_only_texts = false;
    std::setlocale(LC_ALL, "C");
    expect_again(statement, expected);
  }

  // Calls `work` for every example; those around it run as they are.
  static void for_each_example(const std::function<void(const std::string&)>& work) {
    std::map<std::string, bool> is_tried;
    for (const auto& page : fs::directory_iterator(VSTRING_PAGES)) {
      session->clear();
      std::ifstream file(page.path());
      for (std::string line; std::getline(file, line);) {
        if (!line.starts_with("> ")) continue;
        std::string statement = line.substr(2);
        is_tried[name_in(statement)] = true;
        work(statement);
        if (HasFatalFailure()) return;
      }
    }
    for (const auto* row = kWatchedCommands; row->name != nullptr; ++row) {
      EXPECT_TRUE(is_tried[row->name]) << row->name << " is called by no example";
    }
  }

  static vexil::Session* session;
};

vexil::Session* Faults::session = nullptr;

TEST_F(Faults, NoRefusedAllocationDoesHarm) { for_each_example(refuse_each); }

// Long enough for tables on the heap.
TEST_F(Faults, CommandsWithoutAnErrorForItAreQuietWhenMemoryRunsOut) {
  const std::map<std::string, std::string> quiet_answers = {
      {"borderlen(repeat(\"ab\", 300))", "-1\n"},
      {"period(repeat(\"ab\", 300))", "601\n"},
      {"minconj(repeat(\"ba\", 5000))", "\"\"\n"},
      {"primroot(repeat(cap(fill(\"a\", 9000), \"\", \"b\"), 2))", "\"\"\n"},
      {"randperm(3000)", ""}};
  for (const auto& [statement, quiet] : quiet_answers) {
    std::string expected = run(statement);
    bool was_refused = false;
    bool is_quiet = false;
    for (std::size_t n = 1; n == 1 || was_refused; ++n) {
      std::string shown = run_refused(statement, n, &was_refused);
      is_quiet = is_quiet || shown == quiet;
      if (shown != quiet && shown != expected) {
        EXPECT_NE(shown.find("out of memory"), std::string::npos) << statement << shown;
      }
    }
    EXPECT_TRUE(is_quiet) << statement;
  }
}

TEST_F(Faults, NoExceptionOutOfAServiceDoesHarm) { for_each_example(fail_each_service); }

// The host's own allocations, each refused once: the statement ends with an error or does without,
// and afterwards the whole heap is there again.
TEST_F(Faults, NoRefusedAllocationOfTheHostCostsHeap) {
  vexil::bind_commands(HostModuleCommands);
  const std::string statement =
      "x := [collect(k -> [k, repeat(\"y\", 20 * k)], 1..40)]; f := (a -> b -> a)(x); gc(); "
      "y := record(a = f(1), b = 123456789012345678901, c = {\"x\", `a b`, 1..2, 1.5}, d = "
      "bytes(1, 2)); gc(); "
      "z := fill(\"a\", 3000000); g := vbm_new(100); try(raise(\"no %1\", x)); gc(); y";
  const std::string most =
      "x := 0; y := 0; z := 0; g := 0; f := 0; 1; gc(); length(fill(\"a\", 6000000))";
  for (std::size_t n = 1; n < 3000; ++n) {  // in a host whose tables have yet to grow
    delete session;
    vexil::shut_values();
    vexil::init_values(std::size_t{8} << 20);
    session = make_session();
    faults::RefusedAllocation refusal(n);
    const std::string shown = run(statement);
    faults::Counting off(false);
    ASSERT_EQ(run(most), "6000000\n") << n;
    if (refusal.was_refused()) continue;
    EXPECT_EQ(shown.substr(0, 10), "record(a =");
    break;
  }
  vexil::bind_commands(kWatchedCommands);
}

class Jumps : public Faults {
 protected:
  void SetUp() override { vexil::set_raise_mode(vexil::RaiseMode::Longjmp); }
};

TEST_F(Jumps, NoJumpOutOfAServiceDoesHarm) { for_each_example(fail_each_service); }

TEST_F(Jumps, LeaveNoBlockOfTheCommandsOwn) {
  faults::RefusedAllocation counter(0);
  faults::Counting off(false);
  for (int i = 0; i < 100; ++i) {
    failing_service = 1;
    num_services = 0;
    run("reverse(fill(\"a\", 100000))");
    failing_service = 0;
    run("length(\"\")");
  }
  EXPECT_EQ(counter.num_left(), 0);
}

}  // namespace
