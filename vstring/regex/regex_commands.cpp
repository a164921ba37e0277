// regmatch, regsub, regsubs, regsplit. Tests: docs/commands/regex.md, tests/transcripts/regex/.
#include <clocale>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "vstring/host/commands.h"
#include "vstring/library.h"
#include "vstring/regex/cache.h"
#include "vstring/regex/errors.h"
#include "vstring/regex/expand.h"
#include "vstring/regex/match.h"

namespace vstring {
namespace {

using regex::Captures;
using regex::Execution;
using regex::Prepared;

// The C locale for as long as the object lives.
class PlainLocale {
 public:
  PlainLocale() {
    const char* current = std::setlocale(LC_ALL, nullptr);
    if (current == nullptr || std::strcmp(current, "C") == 0) return;
    saved_ = current;
    std::setlocale(LC_ALL, "C");
  }
  ~PlainLocale() {
    if (!saved_.empty()) std::setlocale(LC_ALL, saved_.c_str());
  }
  PlainLocale(const PlainLocale&) = delete;
  PlainLocale& operator=(const PlainLocale&) = delete;

 private:
  std::string saved_;
};

// Raises a message that ends with the engine's own.
[[noreturn]] void fail_engine(const char* format) {
  static char message[320];
  const char* reason = regex::last_error();
  std::snprintf(message, sizeof message, format, *reason != '\0' ? reason : "undiagnosed error");
  fail(message);
}

const Prepared& compile(Text pattern) {
  const Prepared* compiled = regex::find_compiled(pattern);
  if (compiled == nullptr) fail_engine("cannot compile regular expression: %s");
  return *compiled;
}

// A subject text for repeated searches that raise what goes wrong.
class Subject {
 public:
  Subject(const Prepared& pattern, Text text, bool wants_groups)
      : execution_(pattern, text, wants_groups) {}

  bool search(std::size_t from, Captures& captures) {
    regex::clear_error();
    if (execution_.search(from, captures)) return true;
    if (*regex::last_error() != '\0') {
      fail_engine("cannot execute compiled regular expression: %s");
    }
    return false;
  }

 private:
  Execution execution_;
};

// Whether there is a match. The locale is the caller's again afterwards: a host may jump out of
// what is then asked of it.
bool find_first(Text pattern, Text text, bool wants_groups, Captures& captures) {
  PlainLocale locale;
  return Subject(compile(pattern), text, wants_groups).search(0, captures);
}

// Arguments of regmatch that can receive a sub-match, and those that are looked at at all.
constexpr int kFirstName = 3;
constexpr int kLastAssigned = 9;
constexpr int kLastName = 12;

// Appends to a result, which must not outgrow a host string.
void append(std::string& result, Text piece) {
  if (piece.size() > HOST_MAX_TEXT - result.size()) fail(kOutOfMemory);
  result.append(piece);
}

// Bytes of the filled template, which must not be more than there is room for.
std::size_t expansion_size(Text pattern, const Captures& captures, std::size_t room) {
  std::uint64_t size = regex::expanded_size(pattern, captures);
  if (size > room) fail(kOutOfMemory);
  return static_cast<std::size_t>(size);
}

void append_expansion(std::string& result, Text pattern, const Captures& captures) {
  std::size_t old_size = result.size();
  std::size_t size = expansion_size(pattern, captures, HOST_MAX_TEXT - old_size);
  result.resize(old_size + size);
  regex::expand(pattern, captures, result.data() + old_size);
}

struct Replaced {
  std::string text;
  std::size_t counted;  // bytes of the text, and once more the subject's where a match is all of it
};

// After every match the rest counts as a text of its own: `^` matches at its start again.
Replaced replace_all(Text pattern, Text text, Text replacement) {
  PlainLocale locale;
  Subject subject(compile(pattern), text, regex::needs_groups(replacement));
  Replaced result{};
  Captures match;
  std::size_t position = 0;
  do {
    if (!subject.search(position, match)) {
      if (text.empty()) fail("cannot replace an empty match");
      append(result.text, text.substr(position));
      break;
    }
    Text matched = match.text(0);
    if (matched.empty()) fail("cannot replace an empty match");
    auto start = static_cast<std::size_t>(matched.data() - text.data());
    append(result.text, text.substr(position, start - position));
    append_expansion(result.text, replacement, match);
    position = start + matched.size();
    if (matched.size() == text.size()) result.counted = text.size();
  } while (position < text.size());
  result.counted += result.text.size();
  return result;
}

// The parts of a text between the matches; nothing after a match at its end.
std::vector<Text> split_at_all(Text pattern, Text text) {
  PlainLocale locale;
  Subject subject(compile(pattern), text, false);
  std::vector<Text> pieces;
  Captures match;
  std::size_t position = 0;
  while (position < text.size()) {
    if (pieces.size() == HOST_MAX_ELEMENTS) fail(kOutOfMemory);
    if (!subject.search(position, match)) {
      pieces.push_back(text.substr(position));
      break;
    }
    Text matched = match.text(0);
    if (matched.empty()) fail("cannot split");
    auto start = static_cast<std::size_t>(matched.data() - text.data());
    pieces.push_back(text.substr(position, start - position));
    position = start + matched.size();
  }
  return pieces;
}

// A piece of a split text, by way of the shared buffer. A piece that does not fit leaves the buffer
// as it is and comes out as what stands there: the short piece before it.
Object buffered_piece(Host& host, Text piece) {
  char* buffer = *smbuf;
  if (piece.size() + 1 <= kMostShared) {
    std::memcpy(buffer, piece.data(), piece.size());
    buffer[piece.size()] = '\0';
  }
  buffer[SMALL_BUFFER_BASE_SIZE - 1] = '\0';
  return host.c_text(buffer);
}

}  // namespace

Object cmd::vstring_regmatch(Args& args, Host& host) {
  if (args.count() > kLastName) {
    host.kernel()->HostUserInfo(3, "vstring",
                                "WARNING: arguments after the twelfth will be ignored");
  }
  Text pattern = args.string(1, "first argument (pattern) must be a string");
  Text text = args.string(2, "second argument (text) must be a string");
  for (int i = kFirstName; i <= kLastName && args.has(i); ++i) {
    if (host_type(args[i]) != HOST_TYPE_NAME) fail("optional arguments must be symbols");
  }
  Captures captures;
  if (!find_first(pattern, text, args.has(kFirstName), captures)) return host.boolean(false);
  // All texts are taken before the first assignment: it may let go of the subject.
  std::vector<std::pair<Object, Object>> values;
  for (int i = kFirstName; i <= kLastAssigned && args.has(i); ++i) {
    auto group = static_cast<std::size_t>(i - kFirstName);
    if (captures.is_set(group)) values.emplace_back(args[i], host.piece(captures.text(group)));
  }
  for (const auto& [name, value] : values) host.kernel()->HostAssign(name, value);
  return host.boolean(true);
}

Object cmd::vstring_regsub(Args& args, Host& host) {
  Text pattern = args.string(1, "first argument must be a string");
  Text text = args.string(2, "second argument must be a string");
  Text filled = args.string(3, "third argument must be a string");
  Captures captures;
  if (!find_first(pattern, text, regex::needs_groups(filled), captures)) return host.fail_value();
  return host.text(
      expansion_size(filled, captures, HOST_MAX_TEXT),
      [&](char* out) { regex::expand(filled, captures, out); }, 0);
}

Object cmd::vstring_regsubs(Args& args, Host& host) {
  if (host_type(args[1]) != HOST_TYPE_EQUATION) {
    fail("first argument must be an equation of the form PATTERN = REPLACEMENT");
  }
  Object left = host_element(args[1], 1);
  Object right = host_element(args[1], 2);
  if (!is_text(left)) fail("left hand side of first argument must be a string");
  if (!is_text(right)) fail("right hand side of first argument must be a string");
  Text text = args.string(2, "second argument must be a string");
  Replaced replaced = replace_all(text_of(left), text, text_of(right));
  // What is counted for a match of the whole text counts the text too, and decides how the result
  // is made.
  bool is_shared = replaced.counted + 1 <= kMostShared;
  return host.text(replaced.text, is_shared ? kMostShared : 0);
}

Object cmd::vstring_regsplit(Args& args, Host& host) {
  Text pattern = args.string(1, "first argument must be a string");
  Text text = args.string(2, "second argument must be a string");
  if (text.empty()) return host.nothing();
  std::vector<Text> pieces = split_at_all(pattern, text);
  if (pieces.empty()) return host.nothing();
  Sequence result = host.sequence(pieces.size());
  for (std::size_t i = 0; i < pieces.size(); ++i) result.set(i, buffered_piece(host, pieces[i]));
  return result.object();
}

}  // namespace vstring
