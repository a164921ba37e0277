// A module that calls the services which no string command uses, or not in this way. Its commands
// are driven by tests/unit/services_test.cpp and tests/transcripts/vexil/services.vt.
#include <cstdlib>
#include <memory>
#include <string>

#include "vstring/kernel_vector.h"
#include "vstring/object.h"

namespace {

HostKernelVector* kernel = nullptr;  // for the converter and the disposer, which get no table
int disposed_counters = 0;

HostObject argument(HostObject arguments, std::size_t i) { return host_element(arguments, i); }

// A counter in C memory, behind a handle.
struct Counter {
  int value;
};

void counter_tag() {}
void other_tag() {}

HostObject show_counter(HostObject handle) {
  const auto* counter = static_cast<Counter*>(kernel->HostForeignData(handle));
  return kernel->ToHostInteger32(counter->value);
}

void dispose_of_counter(HostObject handle) {
  delete static_cast<Counter*>(kernel->HostForeignData(handle));
  ++disposed_counters;
}

HostObject new_counter(HostKernelVector* kv, HostObject arguments) {
  kernel = kv;
  auto* counter = new Counter{kv->HostToInteger32(argument(arguments, 1))};
  const HostObject handle = kv->ToHostForeign(counter, counter_tag);
  kv->HostForeignSetConverter(handle, show_counter);
  kv->HostForeignSetDisposer(handle, dispose_of_counter);
  return handle;
}

HostObject count(HostKernelVector* kv, HostObject arguments) {
  const HostObject handle = argument(arguments, 1);
  if (!kv->IsHostForeign(handle) || kv->HostForeignTag(handle) != counter_tag) {
    kv->HostRaiseError("expecting a counter, but got %1", handle, 0, 0);
  }
  return kv->ToHostInteger32(++static_cast<Counter*>(kv->HostForeignData(handle))->value);
}

HostObject other_handle(HostKernelVector* kv, HostObject) {
  return kv->ToHostForeign(nullptr, other_tag);
}

HostObject disposed(HostKernelVector* kv, HostObject) {
  return kv->ToHostInteger32(disposed_counters);
}

HostObject point(HostKernelVector* kv, HostObject arguments) {
  return kv->HostNewRecord(2, "x", argument(arguments, 1), "y", argument(arguments, 2));
}

// A table of the given type with i * 10 + j at row i, column j; rows 1..2, columns 0..2.
HostObject new_table(HostKernelVector* kv, HostObject arguments) {
  HostRTableSettings settings;
  kv->HostRTableGetDefaults(&settings);
  settings.data_type = kv->HostToInteger32(argument(arguments, 1));
  settings.num_dimensions = 2;
  const int32_t bounds[] = {1, 2, 0, 2};
  const HostObject table = kv->HostRTableCreate(&settings, nullptr, bounds);
  void* data = kv->HostRTableData(table);
  for (int k = 0; k < kv->HostRTableNumElements(table); ++k) {
    const int value = (k / 3 + 1) * 10 + k % 3;
    switch (settings.data_type) {
      case HOST_RTABLE_INTEGER1:
        static_cast<int8_t*>(data)[k] = static_cast<int8_t>(value);
        break;
      case HOST_RTABLE_FLOAT8:
        static_cast<double*>(data)[k] = value;
        break;
      default:
        static_cast<HostObject*>(data)[k] = kv->ToHostInteger32(value);
    }
  }
  return table;
}

// Data type, number of dimensions, then all bounds.
HostObject settings_of(HostKernelVector* kv, HostObject arguments) {
  HostRTableSettings settings;
  kv->HostRTableGetSettings(&settings, argument(arguments, 1));
  const int size = 2 + 2 * settings.num_dimensions;
  const HostObject result = kv->HostNewList(size);
  kv->HostListAssign(result, 1, kv->ToHostInteger32(settings.data_type));
  kv->HostListAssign(result, 2, kv->ToHostInteger32(settings.num_dimensions));
  for (int i = 3; i <= size; ++i) {
    kv->HostListAssign(result, i, kv->ToHostInteger32(settings.bounds[i - 3]));
  }
  return kv->HostFinishList(result);
}

// Arrays from wrong settings: the argument says which.
HostObject bad_table(HostKernelVector* kv, HostObject arguments) {
  HostRTableSettings settings;
  kv->HostRTableGetDefaults(&settings);
  int32_t bounds[] = {1, 3, 1, INT32_MAX};
  switch (kv->HostToInteger32(argument(arguments, 1))) {
    case 1:
      settings.data_type = 9;
      break;
    case 2:
      settings.num_dimensions = 9;
      break;
    case 3:
      bounds[1] = -5;
      break;
    case 4:
      settings.num_dimensions = 2;
      break;
    default:
      settings.storage = 3;
  }
  return kv->HostRTableCreate(&settings, nullptr, bounds);
}

HostObject set_name(HostKernelVector* kv, HostObject arguments) {
  kv->HostAssign(argument(arguments, 1), argument(arguments, 2));
  return kv->HostNull();
}

// p(p(x)), with a fresh string kept over both calls.
HostObject call_twice(HostKernelVector* kv, HostObject arguments) {
  const HostObject procedure = argument(arguments, 1);
  const HostObject kept = kv->ToHostString("kept");
  kv->HostGcProtect(kept);
  HostObject once = kv->HostCallProcedure(procedure, 1, argument(arguments, 2));
  HostObject twice = kv->HostCallProcedure(procedure, 1, once);
  kv->HostGcAllow(kept);
  return kv->HostExpSeqOf(2, kept, twice);
}

// p((1, 2), 3) with the sequence flattened, and passed as it stands.
HostObject call_flat(HostKernelVector* kv, HostObject arguments) {
  const HostObject pair = kv->HostExpSeqOf(2, kv->ToHostInteger32(1), kv->ToHostInteger32(2));
  return kv->HostCallProcedure(argument(arguments, 1), 2, pair, kv->ToHostInteger32(3));
}

HostObject call_quoted(HostKernelVector* kv, HostObject arguments) {
  const HostObject pair = kv->HostExpSeqOf(2, kv->ToHostInteger32(1), kv->ToHostInteger32(2));
  return kv->HostCallProcedure(argument(arguments, 1), 2, kv->HostQuote(pair),
                               kv->ToHostInteger32(3));
}

HostObject inform(HostKernelVector* kv, HostObject arguments) {
  kv->HostUserInfo(kv->HostToInteger32(argument(arguments, 1)), "Test",
                   host_text(argument(arguments, 2)));
  kv->HostPrintf("%s: %d\n", std::string(600, 'x').c_str(), 7);
  return kv->HostNull();
}

// Raises while it holds memory, which is released where the host throws.
HostObject raise_holding(HostKernelVector* kv, HostObject arguments) {
  const auto held = std::make_unique<std::string>(1000, 'x');
  kv->HostRaiseError("held %1 bytes, 100%% so, for the %-2 time",
                     kv->ToHostInteger32(static_cast<int32_t>(held->size())),
                     argument(arguments, 1), 0);
  return kv->HostNull();
}

// Uses of services that must end in an error: the argument says which.
HostObject misuse(HostKernelVector* kv, HostObject arguments) {
  const HostObject one = kv->ToHostInteger32(1);
  switch (kv->HostToInteger32(argument(arguments, 1))) {
    case 1:
      kv->HostListAssign(kv->HostNewList(2), 3, one);
      break;
    case 2:
      kv->HostListAssign(kv->HostNewList(2), 0, one);
      break;
    case 3:
      kv->HostListAssign(arguments, 1, one);
      break;
    case 4:
      kv->HostForeignData(kv->ToHostString("text"));
      break;
    case 5:
      kv->HostNewList(-1);
      break;
    case 6:
      kv->HostNewExpSeq(INT32_MAX);
      break;
    case 7:
      kv->HostAssign(kv->ToHostBoolean(1), one);
      break;
    case 8:
      kv->HostNumArgs(one);
      break;
    case 9:
      kv->HostRTableData(one);
      break;
    case 10:
      kv->HostNewBinaryOp("+", one, one);
      break;
    case 11:
      kv->HostExpSeqOf(1, HostObject{0});
      break;
    default:
      return 0;
  }
  return kv->HostNull();
}

HostObject unfilled(HostKernelVector* kv, HostObject) { return kv->HostNewExpSeq(3); }

}  // namespace

#define ROW(entry, required, synopses) \
  { #entry, entry, required, synopses, "a test", "test" }
const HostModuleCommand HostModuleCommands[] = {ROW(new_counter, 1, "new_counter(n)"),
                                                ROW(count, 1, "count(counter)"),
                                                ROW(other_handle, 0, "other_handle()"),
                                                ROW(disposed, 0, "disposed()"),
                                                ROW(point, 2, "point(x, y)"),
                                                ROW(new_table, 1, "new_table(type)"),
                                                ROW(settings_of, 1, "settings_of(array)"),
                                                ROW(bad_table, 1, "bad_table(case)"),
                                                ROW(set_name, 2, "set_name(name, x)"),
                                                ROW(call_twice, 2, "call_twice(p, x)"),
                                                ROW(call_flat, 1, "call_flat(p)"),
                                                ROW(call_quoted, 1, "call_quoted(p)"),
                                                ROW(inform, 2, "inform(level, text)"),
                                                ROW(raise_holding, 1, "raise_holding(n)"),
                                                ROW(misuse, 1, "misuse(case)"),
                                                ROW(unfilled, 0, "unfilled()"),
                                                {nullptr, nullptr, 0, nullptr, nullptr, nullptr}};
