// The boolean options of a command: a table beside the command, read in one go. Entry point:
// read_options. Tests: docs/commands/layout.md (wrap).
#pragma once

#include <cstddef>
#include <cstdint>

#include "vstring/arguments.h"
#include "vstring/host/args.h"
#include "vstring/host/host.h"

namespace vstring {

/// An option `name = true`, `name = false` or, with the same meaning as the first, bare `name`.
template <class Options>
struct BooleanOption {
  const char* name;
  bool Options::*value;
  const char* message;  // what a value that is neither raises; %1 is that value
};

/// Sets those of the table's options that stand among the arguments behind the first `first` ones;
/// the last one of a name counts. Values are checked in the order of the table.
template <class Options, std::size_t Size>
void read_options(const Args& args, const Host& host, int first,
                  const BooleanOption<Options> (&table)[Size], Options& options) {
  OptionEntry entries[Size + 1] = {};
  for (std::size_t i = 0; i < Size; ++i) {
    entries[i] = {table[i].name, 0, 0, OPTION_BOOLEAN, OPTION_BARE};
  }
  if (GetOptions(host.kernel(), entries, first, args.sequence()) == 0) return;
  for (std::size_t i = 0; i < Size; ++i) {
    if (entries[i].position == 0) continue;
    Object value = entries[i].value;
    if (IsVexilTrueFalse(host.kernel(), value) == 0) fail(table[i].message, value);
    options.*table[i].value = VexilToBoolean(host.kernel(), value) == 1;
  }
}

}  // namespace vstring
