// Stemmers as commands. Tests: docs/commands/language.md, tests/transcripts/language/stems.vt.
#include <algorithm>
#include <cstdio>

#include "vstring/arguments.h"
#include "vstring/host/commands.h"
#include "vstring/language/affixes.h"
#include "vstring/language/lancaster.h"
#include "vstring/language/porter.h"

namespace vstring {
namespace {

constexpr const char* kWordTooLong = "word is too long";

// Set by stem() for all that follows.
bool is_lancaster_traced = false;

using Stemmer = Object(Host& host, Object word);

Object porter(Host& host, Object word) {
  Text text = text_of(word);
  if (text.size() > kMaxPorterWord) fail(kWordTooLong);
  if (text.size() < 2) return word;
  char stem[kMaxPorterWord];
  std::size_t size = porter_stem(text, stem);
  return host.text(Text(stem, size));
}

Object lancaster(Host& host, Object word) {
  Text text = text_of(word);
  if (text.size() > kMaxLancasterWord) fail(kWordTooLong);
  return host.text(lancaster_stem(text, is_lancaster_traced ? stderr : nullptr));
}

Object plural(Host& host, Object word) {
  Text text = text_of(word);
  if (text.size() > kMaxAffixedWord) fail(kWordTooLong);
  return host.text(singular(text));
}

Object prefix(Host& host, Object word) {
  Text text = text_of(word);
  if (text.size() > kMaxAffixedWord) fail(kWordTooLong);
  return host.piece(without_prefixes(text));
}

struct NamedStemmer {
  Text name;  // in small letters
  Stemmer* stemmer;
};

constexpr NamedStemmer kStemmers[] = {{"lancaster", lancaster},
                                      {"paice", lancaster},
                                      {"porter", porter},
                                      {"prefix", prefix},
                                      {"plural", plural}};

char lowered(char c) { return static_cast<char>(ccl_isupper(byte_of(c)) != 0 ? c | 0x20 : c); }

// The stemmer of a name, or null. For "s" and what begins with it, the one that takes an s off.
Stemmer* find_stemmer(Text name) {
  if (name.starts_with('s') || name.starts_with('S')) return plural;
  for (const NamedStemmer& named : kStemmers) {
    if (std::ranges::equal(name, named.name, {}, lowered)) return named.stemmer;
  }
  return nullptr;
}

void set_trace(Text setting) {
  if (setting == "trace_rules") is_lancaster_traced = true;
  if (setting == "no_trace_rules") is_lancaster_traced = false;
}

// The stemmer that the second argument asks for, as its name or as an option.
Stemmer* chosen_stemmer(const Args& args, const Host& host) {
  const char* name = GetStringOption(host.kernel(), args[2], "stemmer");
  if (name == nullptr) return porter;
  Stemmer* stemmer = find_stemmer(name);
  if (stemmer != nullptr) return stemmer;
  fail("unrecognised stemmer `%1'", args.is_string(2) ? args[2] : host_element(args[2], 2));
}

}  // namespace

Object cmd::vstring_porter(Args& args, Host& host) {
  args.string(1, "first argument must be a string");
  return porter(host, args[1]);
}

Object cmd::vstring_lancaster(Args& args, Host& host) {
  args.string(1, "argument must be a string");
  return lancaster(host, args[1]);
}

Object cmd::vstring_pstem(Args& args, Host& host) {
  args.string(1, "argument must be a string");
  return plural(host, args[1]);
}

Object cmd::vstring_prestem(Args& args, Host& host) {
  args.string(1, "argument must be a string");
  return prefix(host, args[1]);
}

Object cmd::vstring_stem(Args& args, Host& host) {
  args.string(1, "first argument must be a string");
  if (args.has(3) && args.is_string(3)) set_trace(args.text(3));
  Stemmer* stemmer = args.has(2) ? chosen_stemmer(args, host) : porter;
  return stemmer(host, args[1]);
}

}  // namespace vstring
