// A host inside the fuzzer: the library's commands bound, everything printed thrown away.
#pragma once

#include "vexil/services/services.h"
#include "vexil/shell/session.h"

namespace fuzz {

inline vexil::Session& session() {
  static vexil::Session* session = [] {
    vexil::init_values(std::size_t{64} << 20);
    auto* made = new vexil::Session;
    made->set_sink({[](std::string_view) {}, [](int, std::string_view) {}});
    vexil::init_services({[made](HostObject procedure, std::span<const HostObject> arguments) {
                            return made->evaluator().call(procedure, arguments);
                          },
                          [](std::string_view) {}, [](int, std::string_view, std::string_view) {}},
                         vexil::RaiseMode::Exception);
    vexil::bind_commands(HostModuleCommands);
    return made;
  }();
  return *session;
}

}  // namespace fuzz
