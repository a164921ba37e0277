// Any bytes as a script: read and evaluated without crashing, and whatever it leaves behind, the
// next statement works.
#include <cstdlib>

#include "fuzz/fuzz_host.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size) {
  fuzzing::FuzzHost& host = fuzzing::fresh_host(size % 16 == 0);
  host.run({reinterpret_cast<const char*>(data), size});
  if (host.run("6 * 7") != "42\n") std::abort();
  return 0;
}
