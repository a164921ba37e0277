// The library as a whole: start-up, version, configuration report, debugging helpers.
// Tests: tests/transcripts/host/library.vt.
#include "vstring/library.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "vstring/host/commands.h"

namespace {

constexpr int kMajorVersion = 6;
constexpr int kMinorVersion = 0;

}  // namespace

int vstringInit() {
  static bool is_initialised = false;
  if (is_initialised) return 0;
  is_initialised = true;
  return std::setlocale(LC_ALL, "C") != nullptr ? 1 : 0;
}

void* print_malloc(size_t size) {
  std::fprintf(stderr, "ALLOC %u BYTES ... ", static_cast<unsigned>(size));
  void* block = std::malloc(size);
  std::fprintf(stderr, block != nullptr ? "OK\n" : "FAILED\n");
  return block;
}

void* print_realloc(void* pointer, size_t size) {
  std::fprintf(stderr, "REALLOC %u BYTES at %p ... ", static_cast<unsigned>(size), pointer);
  void* block = std::realloc(pointer, size);
  std::fprintf(stderr, block != nullptr ? "OK\n" : "FAILED\n");
  return block;
}

void dumpstr(const char* label, const char* text, size_t n) {
  std::fprintf(stderr, "%s[%u]:\n", label, static_cast<unsigned>(n));
  for (size_t i = 0; i < n; ++i) {
    std::fprintf(stderr, "%u:%c:0x%.2x\n", static_cast<unsigned>(i), text[i],
                 static_cast<unsigned>(static_cast<unsigned char>(text[i])));
  }
}

namespace vstring {

Object cmd::vstringVersion(Args&, Host& host) { return host.integer(kMajorVersion); }

// The report is read by scripts of old: its lines say what they have always said, the byte sex and
// the directives included, whatever machine this is.
Object cmd::vstring_config(Args&, Host& host) {
  HostKernelVector* kv = host.kernel();
  kv->HostPrintf("Package: %s-%d.%d\n", "vstring", kMajorVersion, kMinorVersion);
  kv->HostPrintf("Word Size: %d\n", 32);
  kv->HostPrintf("Byte Sex: LITTLEENDIAN\n");
  kv->HostPrintf("SMALL_BUFFER_BASE_SIZE = %u\n", static_cast<unsigned>(SMALL_BUFFER_BASE_SIZE));
  kv->HostPrintf("TMP_CHAR_MASK = %u\n", static_cast<unsigned>(TMP_CHAR_MASK));
  kv->HostPrintf("TMP_CHAR_SHIFT = %u\n", static_cast<unsigned>(TMP_CHAR_SHIFT));
  kv->HostPrintf("Preprocessor Directives: ");
  kv->HostPrintf("HAVE_INTTYPES_H ");
  kv->HostPrintf("HAVE_SETLOCALE ");
  kv->HostPrintf("NEED_STRPTIME ");
  kv->HostPrintf("\n");
  return kv->HostNull();
}

}  // namespace vstring
