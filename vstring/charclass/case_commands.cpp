// uppercase, lowercase, othercase, capitalise. Tests: docs/commands/case.md.
#include <algorithm>

#include "vstring/charclass/case.h"
#include "vstring/host/commands.h"

namespace vstring {
namespace {

using Convert = void (*)(Text text, char* out);

// The whole text converted, or the positions of a range, its last one included.
Object convert(Args& args, Host& host, Convert write) {
  Text text = args.string(1, "first argument must be a string");
  if (!args.has(2)) return host.text(text.size(), [&](char* out) { write(text, out); });
  Span span = args.span(2, text.size(), "second argument must be a range");
  return host.text(text.size(), [&](char* out) {
    std::copy(text.begin(), text.end(), out);
    auto first = static_cast<std::size_t>(span.first);
    write(text.substr(first, static_cast<std::size_t>(span.count)), out + first);
  });
}

}  // namespace

Object cmd::vstring_uppercase(Args& args, Host& host) { return convert(args, host, write_upper); }
Object cmd::vstring_lowercase(Args& args, Host& host) { return convert(args, host, write_lower); }
Object cmd::vstring_othercase(Args& args, Host& host) {
  return convert(args, host, write_other_case);
}

Object cmd::vstring_capitalise(Args& args, Host& host) {
  Text text = args.string(1, "first argument must be a string");
  return host.text(text.size(), [&](char* out) { write_capitalised(text, out); });
}

}  // namespace vstring
