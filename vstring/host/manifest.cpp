// The manifest's rows turned into entry points and into the table of commands that the host binds.
// A row without a body does not link.
#include <string_view>

#include "vstring/export.h"
#include "vstring/host/commands.h"
#include "vstring/host/entry.h"

#define COMMAND(entry, required, synopses, summary)                          \
  VSTRING_API HostObject entry(HostKernelVector* kv, HostObject arguments) { \
    return vstring::run(kv, arguments, required, vstring::cmd::entry);       \
  }
#include "vstring/commands.def"
#undef COMMAND

namespace {

// In the host a command goes by its entry's name without "vstring_".
constexpr const char* command_name(const char* entry) {
  constexpr std::string_view kPrefix = "vstring_";
  return std::string_view(entry).starts_with(kPrefix) ? entry + kPrefix.size() : entry;
}

}  // namespace

const int HostModuleServices = HOST_NUM_SERVICES;

const HostModuleCommand HostModuleCommands[] = {
#define COMMAND(entry, required, synopses, summary) \
  {command_name(#entry), entry, required, synopses, summary, FAMILY},
#include "vstring/commands.def"
#undef COMMAND
    {nullptr, nullptr, 0, nullptr, nullptr, nullptr}};
