// The command line. Entry point: read_options. Tests: tests/shell/shell_test.py.
#pragma once

#include <string>
#include <vector>

#include "vexil/services/services.h"
#include "vexil/shell/modes.h"

namespace vexil {

enum class Mode { Work, Each, Check, Help, List, Exit };

struct Options {
  Mode mode = Mode::Work;
  int exit_status = 0;  // of Mode::Exit
  std::vector<std::string> modules;
  std::size_t heap_size = std::size_t{1} << 30;
  bool gc_stress = false;
  RaiseMode raise_mode = RaiseMode::Exception;
  int info_level = 0;
  Work work;
  std::vector<std::string> arguments;  // of the script
  Each each;
  std::vector<std::string> files;  // to check
  std::string topic;               // of help and list
};

/// Wrong use and requests such as --version are answered here: then the mode is Exit.
Options read_options(int argc, char** argv);

/// The module that lies beside the program or in the installed library folder; "" if there is none.
std::string find_default_module();

}  // namespace vexil
