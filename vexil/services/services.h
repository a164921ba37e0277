// The service table as this host fills it, and the modules that are called through it. Entry
// points: load_module, call_command. Tests: tests/transcripts/vexil/services.vt with the test
// module.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "vexil/values/values.h"
#include "vstring/kernel_vector.h"

namespace vexil {

/// How HostRaiseError leaves a module.
enum class RaiseMode { Exception, Longjmp };

/// What the services need of the rest of the host.
struct ServiceHooks {
  std::function<Object(Object procedure, std::span<const Object> arguments)> call_procedure;
  std::function<void(std::string_view)> output;                                   // HostPrintf
  std::function<void(int level, std::string_view topic, std::string_view)> info;  // HostUserInfo
};

void init_services(ServiceHooks hooks, RaiseMode mode);
const HostKernelVector& kernel_vector();

/// Loads a module, binds its commands (a later module overrides) and calls its vstringInit if it
/// has one. Throws std::runtime_error with what is wrong.
void load_module(const std::string& path);

/// Binds a table of commands, which stays where it is: what load_module does with a module's own.
void bind_commands(const HostModuleCommand* rows);

/// The command with this name, or null; and all of them in the order of their modules.
const HostModuleCommand* find_command(std::string_view name);
const std::vector<HostModuleCommand>& commands();

/// Calls a command. Its arguments are kept from collection meanwhile. Throws HostError.
Object call_command(const HostModuleCommand& command, std::span<const Object> arguments);

/// The value that a foreign handle's converter gives; the empty sequence when it has none.
Object foreign_value(Object handle);

}  // namespace vexil
