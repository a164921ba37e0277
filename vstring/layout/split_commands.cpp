// split, casesplit, lensplit, explode: a text taken apart. Tests: docs/commands/layout.md,
// tests/transcripts/layout/split.vt.
#include <array>
#include <cstring>

#include "vstring/host/commands.h"
#include "vstring/layout/fields.h"

namespace vstring {
namespace {

bool is_name(Object object, Text name) {
  return host_type(object) == HOST_TYPE_NAME && text_of(object) == name;
}

// Whether an object is an equation name = value; a string is no option's name.
bool is_option(Object object, Text name) {
  return host_type(object) == HOST_TYPE_EQUATION && is_name(host_element(object, 1), name);
}

char read_quote(Object value) {
  if (is_name(value, "true")) return '"';
  if (is_name(value, "false")) return Splitter::kNoQuote;
  if (is_text(value) && text_of(value) == "single") return '\'';
  if (is_text(value) && text_of(value) == "double") return '"';
  fail(
      "right hand side of the `obeyquotes' option must be either `true' or `false' or one of the "
      "names `single' and `double', but received `%1'",
      value);
}

void refuse_quote_as_separator(const Splitter& splitter) {
  if (splitter.quote == Splitter::kNoQuote) return;
  if (!splitter.separators.contains(byte_of(splitter.quote))) return;
  if (splitter.quote == '"') {
    fail(
        "the `obeyquotes' option is incompatible with the presence of the quote character (\") "
        "among the splitting characters");
  }
  fail(
      "the `obeyquotes' option is incompatible with the presence of the quote character (') "
      "among the splitting characters");
}

// From argument 2 on; the last separators and the last option count.
Splitter read_splitter(const Args& args) {
  Splitter splitter;
  for (int i = 2; i <= args.count(); ++i) {
    if (args.is_string(i)) {
      splitter.separators = ByteSet(args.text(i));
    } else if (is_option(args[i], "obeyquotes")) {
      splitter.quote = read_quote(host_element(args[i], 2));
    } else {
      fail("unrecognised option: %1", args[i]);
    }
  }
  refuse_quote_as_separator(splitter);
  return splitter;
}

std::size_t count_capitalised(Text s) {
  std::size_t count = 0;
  each_capitalised(s, [&count](Text) { ++count; });
  return count;
}

// A piece with `pad` behind it up to `length` bytes.
Object padded(Host& host, Text piece, std::size_t length, char pad) {
  return host.text(length, [&](char* out) {
    std::memcpy(out, piece.data(), piece.size());
    std::memset(out + piece.size(), pad, length - piece.size());
  });
}

// The value of the option in argument 3.
char read_pad(const Args& args) {
  if (!is_option(args[3], "pad")) {
    fail("optional third argument must be of the form `pad = char', but received %1", args[3]);
  }
  Object value = host_element(args[3], 2);
  if (!is_text(value) || text_of(value).size() != 1) {
    fail("the value of the `pad' option must be a character, but received %1", value);
  }
  return text_of(value)[0];
}

// Gives the string of a character, made once.
class Characters {
 public:
  explicit Characters(const Host& host) : host_(host) {}
  Object operator[](char c) {
    Object& object = made_[byte_of(c)];
    if (object == 0) object = host_.one_char(byte_of(c));
    return object;
  }

 private:
  const Host& host_;
  std::array<Object, 256> made_{};
};

}  // namespace

Object cmd::vstring_split(Args& args, Host& host) {
  Text s = args.string(1, "first argument must be a string");
  Splitter splitter = read_splitter(args);
  std::size_t count = splitter.count_fields(s);
  if (count > HOST_MAX_ELEMENTS) fail("cannot split");
  List fields = host.list(count);
  std::size_t i = 0;
  splitter.each_field(s, [&](Text field) { fields.set(i++, host.text(field)); });
  return fields.finish();
}

Object cmd::vstring_casesplit(Args& args, Host& host) {
  Text s = args.string(1, "argument must be a string");
  if (s.empty()) return host.nothing();
  Sequence pieces = host.sequence(count_capitalised(s));
  std::size_t i = 0;
  each_capitalised(s, [&](Text piece) { pieces.set(i++, host.text(piece)); });
  return pieces.object();
}

Object cmd::vstring_lensplit(Args& args, Host& host) {
  Text s = args.string(1, "first argument must be a string");
  std::int32_t n = args.integer32(2, "second argument must be a 32-bit integer");
  if (n < 1) fail("second argument must be a positive integer, but received %1", args[2]);
  bool is_padded = args.has(3);
  char pad = is_padded ? read_pad(args) : '\0';
  if (s.empty()) return host.nothing();
  auto length = static_cast<std::size_t>(n);
  std::size_t last = (s.size() - 1) / length;
  Sequence pieces = host.sequence(last + 1);
  for (std::size_t i = 0; i < last; ++i) pieces.set(i, host.text(s.substr(i * length, length)));
  Text rest = s.substr(last * length);
  pieces.set(last, is_padded ? padded(host, rest, length, pad) : host.text(rest));
  return pieces.object();
}

Object cmd::vstring_explode(Args& args, Host& host) {
  Text s = args.string(1, "first argument must be a string");
  if (args.has(2)) {
    Span span = args.span(2, s.size(), "second argument must be a range");
    s = s.substr(static_cast<std::size_t>(span.first), static_cast<std::size_t>(span.count));
  }
  List result = host.list(s.size());
  Characters characters(host);
  for (std::size_t i = 0; i < s.size(); ++i) result.set(i, characters[s[i]]);
  return result.finish();
}

}  // namespace vstring
