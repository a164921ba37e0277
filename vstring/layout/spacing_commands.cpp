// trim, squeeze and their relatives; chop, chomp; pad, centre, indent. Tests:
// docs/commands/layout.md, tests/transcripts/layout/spacing.vt.
#include <cstring>
#include <string>

#include "vstring/core/checked.h"
#include "vstring/host/commands.h"
#include "vstring/layout/runs.h"
#include "vstring/layout/spacing.h"

namespace vstring {
namespace {

constexpr const char* kFirstNoString = "first argument must be a string";

// What is left of argument 1, whose text s is.
Object kept(const Args& args, Host& host, Text s, Text piece) {
  return piece.size() == s.size() ? host.unchanged(args[1]) : host.text(piece);
}

// What `trimmed(text, set)` leaves of argument 1, where the set is white space or argument 2.
template <class Trim>
Object trim(const Args& args, Host& host, Trim trimmed) {
  if (!args.has(1) || args.has(3)) fail("expecting one or two arguments");
  Text s = args.string(1, kFirstNoString);
  ByteSet set = args.has(2) ? ByteSet(args.string(2, "second argument must be a string")) : kBlanks;
  return kept(args, host, s, trimmed(s, set));
}

// Argument 2 of the commands that fill up a text to a width.
std::size_t read_width(const Args& args) {
  std::int32_t width = args.integer32(2, "second argument must be a 32-bit integer");
  if (width < 0) fail("second argument must be non-negative");
  return static_cast<std::size_t>(width);
}

// The text with `left` fill characters before it and as many behind it as make up the width.
Object padded(Host& host, Text s, std::size_t width, std::size_t left, char fill) {
  return host.text(width, [=](char* out) {
    std::memset(out, fill, width);
    std::memcpy(out + left, s.data(), s.size());
  });
}

// `left_of(surplus)`: how much of what is missing goes to the left.
template <class LeftOf>
Object pad(const Args& args, Host& host, LeftOf left_of) {
  Text s = args.string(1, kFirstNoString);
  std::size_t width = read_width(args);
  Text fill = args.has(3) ? args.string(3, "third argument must be a string") : " ";
  if (width <= s.size() || fill.empty()) return args[1];
  return padded(host, s, width, left_of(width - s.size()), fill[0]);
}

// Argument 3 of centre.
char read_fill(const Args& args) {
  Object fill = args[3];
  if (host_type(fill) == HOST_TYPE_EQUATION) {
    Object name = host_element(fill, 1);
    if (host_type(name) != HOST_TYPE_NAME) fail("invalid option `%1'", fill);
    if (text_of(name) != "fill") fail("unrecognised option name `%1'", name);
    fill = host_element(fill, 2);
  } else if (!is_text(fill)) {
    fail(
        "third argument must be a fill character, or an equation of the form `fill = "
        "<character>',but received `%1'",
        fill);
  }
  if (!is_text(fill) || text_of(fill).empty()) {
    fail("the `fill' option must specify a non-empty string");
  }
  return text_of(fill)[0];
}

Object indented(const Args& args, Host& host, Text s, std::size_t prefix_length, Text prefix) {
  if (s.empty() || prefix_length == 0) return host.unchanged(args[1]);
  std::size_t added = checked_product(count_lines(s), prefix_length);
  return host.text(checked_sum(s.size(), added), [&](char* out) {
    std::string blanks(prefix.empty() ? prefix_length : 0, ' ');
    write_indented(s, prefix.empty() ? Text(blanks) : prefix, out);
  });
}

}  // namespace

Object cmd::vstring_trimleft(Args& args, Host& host) { return trim(args, host, trimmed_left); }

Object cmd::vstring_trimright(Args& args, Host& host) { return trim(args, host, trimmed_right); }

Object cmd::vstring_trim(Args& args, Host& host) {
  return trim(args, host,
              [](Text s, const ByteSet& set) { return trimmed_right(trimmed_left(s, set), set); });
}

Object cmd::vstring_chop(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  return kept(args, host, s, s.substr(0, s.empty() ? 0 : s.size() - 1));
}

// Always a new string.
Object cmd::vstring_chomp(Args& args, Host& host) {
  constexpr ByteSet line_ends("\r\n");
  Text s = args.string(1, kFirstNoString);
  return host.text(trimmed_right(s, line_ends));
}

Object cmd::vstring_squeeze(Args& args, Host& host) {
  Text s = args.string(1, "argument must be a string");
  return host.rewritten(args[1], s.size(), [s](char* out) { return write_squeezed(s, out); });
}

Object cmd::vstring_delsp(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  return host.rewritten(args[1], s.size(), [s](char* out) { return write_without_blanks(s, out); });
}

Object cmd::vstring_padleft(Args& args, Host& host) {
  return pad(args, host, [](std::size_t surplus) { return surplus; });
}

Object cmd::vstring_padright(Args& args, Host& host) {
  return pad(args, host, [](std::size_t) { return std::size_t{0}; });
}

Object cmd::vstring_centre(Args& args, Host& host) {
  Text s = args.string(1, kFirstNoString);
  std::size_t width = read_width(args);
  char fill = args.has(3) ? read_fill(args) : ' ';
  if (width <= s.size()) return args[1];
  return padded(host, s, width, (width - s.size()) / 2, fill);
}

Object cmd::vstring_indent(Args& args, Host& host) {
  constexpr std::int32_t kDefault = 8;
  Text s = args.string(1, kFirstNoString);
  if (args.has(2) && args.is_string(2)) {
    return indented(args, host, s, args.text(2).size(), args.text(2));
  }
  constexpr const char* kNoPrefix =
      "second argument must be a 32-bit non-negative integer or a string";
  std::int32_t count = args.has(2) ? args.integer32(2, kNoPrefix) : kDefault;
  if (count < 0) fail("second argument must be non-negative");
  return indented(args, host, s, static_cast<std::size_t>(count), "");
}

}  // namespace vstring
