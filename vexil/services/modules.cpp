// Loading modules and finding their commands.
#include <dlfcn.h>

#include <algorithm>
#include <stdexcept>
#include <unordered_map>

#include "vexil/services/services.h"

namespace vexil {
namespace {

// Rows stay where their module has them: modules are never unloaded.
std::unordered_map<std::string_view, const HostModuleCommand*> rows_by_name;
std::vector<HostModuleCommand> all_rows;

// A command of an earlier module gives way in its place.
void bind(const HostModuleCommand& row) {
  if (rows_by_name.insert_or_assign(row.name, &row).second) {
    all_rows.push_back(row);
    return;
  }
  const auto same_name = [&](const HostModuleCommand& other) {
    return std::string_view(other.name) == row.name;
  };
  *std::find_if(all_rows.begin(), all_rows.end(), same_name) = row;
}

std::string last_error() {
  const char* error = dlerror();  // NOLINT(concurrency-mt-unsafe): one thread
  return error != nullptr ? error : "unknown error";
}

}  // namespace

void bind_commands(const HostModuleCommand* rows) {
  for (; rows->name != nullptr; ++rows) {
    if (rows->entry == nullptr) {
      throw std::runtime_error("the module lacks an entry point: " + std::string(rows->name));
    }
    bind(*rows);
  }
}

void load_module(const std::string& path) {
  void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) throw std::runtime_error("cannot load the module: " + last_error());
  const auto* num_services = static_cast<const int*>(dlsym(module, "HostModuleServices"));
  if (num_services != nullptr && *num_services > HOST_NUM_SERVICES) {
    throw std::runtime_error("the module needs " + std::to_string(*num_services) +
                             " services, but there are " + std::to_string(HOST_NUM_SERVICES));
  }
  const auto* row = static_cast<const HostModuleCommand*>(dlsym(module, "HostModuleCommands"));
  if (row == nullptr) throw std::runtime_error("no module of commands: " + path);
  bind_commands(row);
  const auto init = reinterpret_cast<int (*)()>(dlsym(module, "vstringInit"));
  if (init != nullptr) init();
}

const HostModuleCommand* find_command(std::string_view name) {
  const auto row = rows_by_name.find(name);
  return row == rows_by_name.end() ? nullptr : row->second;
}

const std::vector<HostModuleCommand>& commands() { return all_rows; }

}  // namespace vexil
