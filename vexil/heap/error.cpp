// Raising errors that no command raised.
#include "vexil/heap/error.h"

#include <utility>

namespace vexil {

void raise_error(std::string format, std::vector<Object> objects) {
  throw HostError{std::move(format), std::move(objects)};
}

void raise_out_of_memory() { raise_error("out of memory"); }

}  // namespace vexil
