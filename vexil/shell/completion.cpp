// What a name at the prompt can become; see editor.h.
#include <set>

#include "vexil/language/builtins.h"
#include "vexil/services/services.h"
#include "vexil/shell/editor.h"

namespace vexil {

std::vector<std::string> completions(std::string_view start) {
  std::set<std::string> found;
  const auto offer = [&](std::string_view name) {
    if (name.starts_with(start)) found.emplace(name);
  };
  for (const HostModuleCommand& command : commands()) offer(command.name);
  for (const Builtin& builtin : builtins()) offer(builtin.name);
  for_each_name([&](Object name) {
    if (value_of(name) != 0) offer(text(name));
  });
  return {found.begin(), found.end()};
}

}  // namespace vexil
