// Booleans and options: IsVexilBoolean, VexilToBoolean, GetOptions and their relatives.
// Tests: tests/unit/arguments_test.cpp.
#include <cstring>

#include "vstring/arguments.h"
#include "vstring/host/args.h"
#include "vstring/host/entry.h"

namespace vstring {
namespace {

bool is_name(Object object) { return host_type(object) == HOST_TYPE_NAME; }

bool is_text_equal(Object object, const char* text) {
  return is_text(object) && std::strcmp(host_text(object), text) == 0;
}

bool is_equation_of_text(Object object) {
  return host_type(object) == HOST_TYPE_EQUATION && is_text(host_element(object, 1));
}

constexpr int kNoBoolean = 2;

// 1, 0 or -1 for the names true, false, FAIL; kNoBoolean for everything else.
int truth_of(Object object) {
  if (!is_name(object)) return kNoBoolean;
  Text name = text_of(object);
  if (name == "true") return 1;
  if (name == "false") return 0;
  return name == "FAIL" ? -1 : kNoBoolean;
}

// The entry that an equation names, or null.
OptionEntry* find_named(OptionEntry* table, const char* name) {
  for (OptionEntry* entry = table; entry->name != nullptr; ++entry) {
    if (std::strcmp(entry->name, name) == 0) return entry;
  }
  return nullptr;
}

// The entry that a bare name sets, or null.
OptionEntry* find_bare(OptionEntry* table, const char* name) {
  for (OptionEntry* entry = table; entry->name != nullptr; ++entry) {
    if (entry->flags < 0 && std::strcmp(entry->name, name) == 0) return entry;
  }
  return nullptr;
}

void set_option(OptionEntry* entry, Object value, int position) {
  if (entry == nullptr) return;
  entry->value = value;
  entry->position = static_cast<std::uint32_t>(position);
}

}  // namespace
}  // namespace vstring

using namespace vstring;  // NOLINT(google-build-using-namespace): the functions below are C's

int IsVexilBoolean(HostKernelVector*, HostObject obj) {
  return truth_of(obj) != kNoBoolean ? 1 : 0;
}

int IsVexilTrueFalse(HostKernelVector*, HostObject obj) {
  int truth = truth_of(obj);
  return truth == 1 || truth == 0 ? 1 : 0;
}

int VexilToBoolean(HostKernelVector* kv, HostObject obj) {
  return raise_failures(kv, [obj] {
    int truth = truth_of(obj);
    if (truth == kNoBoolean) fail("cannot convert to boolean: %1", obj);
    return truth;
  });
}

int GetOptions(HostKernelVector* kv, OptionEntry* table, int first, HostObject sequence) {
  for (OptionEntry* entry = table; entry->name != nullptr; ++entry) {
    entry->value = 0;
    entry->position = 0;
  }
  Args args(kv, sequence);
  for (int i = first + 1; i <= args.count(); ++i) {
    Object argument = args[i];
    if (is_equation_of_text(argument)) {
      OptionEntry* entry = find_named(table, host_text(host_element(argument, 1)));
      set_option(entry, host_element(argument, 2), i);
    } else if (is_text(argument)) {
      OptionEntry* entry = find_bare(table, host_text(argument));
      if (entry != nullptr) set_option(entry, kv->ToHostBoolean(1), i);
    }
  }
  int num_set = 0;
  for (const OptionEntry* entry = table; entry->name != nullptr; ++entry) {
    if (entry->position != 0) ++num_set;
  }
  return num_set;
}

HostObject GetOption(HostKernelVector* kv, int first, HostObject sequence, const char* name,
                     int allowBare) {
  Args args(kv, sequence);
  for (int i = first + 1; i <= args.count(); ++i) {
    Object argument = args[i];
    if (is_equation_of_text(argument) && is_text_equal(host_element(argument, 1), name)) {
      return host_element(argument, 2);
    }
    if (allowBare != 0 && is_text_equal(argument, name)) return kv->ToHostBoolean(1);
  }
  return 0;
}

const char* GetStringOption(HostKernelVector*, HostObject obj, const char* name) {
  if (is_text(obj)) return host_text(obj);
  if (is_equation_of_text(obj) && is_text_equal(host_element(obj, 1), name) &&
      is_text(host_element(obj, 2))) {
    return host_text(host_element(obj, 2));
  }
  return nullptr;
}
