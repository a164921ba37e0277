// Phonetic codes as commands. Tests: docs/commands/language.md,
// tests/transcripts/language/phonetics.vt.
#include "vstring/host/commands.h"
#include "vstring/language/phonetics.h"

namespace vstring {

Object cmd::vstring_soundex(Args& args, Host& host) {
  Text s = args.string(1, "argument must be a string");
  return host.c_text(soundex(s).data());
}

Object cmd::vstring_metaphone(Args& args, Host& host) {
  Text s = args.string(1, "first argument must be a string");
  return host.text(metaphone(s));
}

}  // namespace vstring
