// Character filters: a class name or an alphabet as a test. Tests: tests/unit/arguments_test.cpp.
#include "vstring/host/filters.h"

#include <cstring>

#include "vstring/arguments.h"
#include "vstring/host/args.h"
#include "vstring/host/entry.h"

namespace vstring {
namespace {

constexpr std::size_t kMaxAlphabet = 256;

char alphabet[kMaxAlphabet + 1] = "abcdefghijklmnopqrstuvwxyz";

// The class test looked up last, which the name "last" asks for again; null before the first
// look-up.
CharClassTest last_filter = nullptr;

struct NamedFilter {
  Text name;
  CharClassTest test;
};

// The names of filters are a family of their own, wider here and narrower there than those that
// CharClassNameToTest knows.
constexpr NamedFilter kFilters[] = {
    {"alnum", ccl_isalnum},       {"alpha", ccl_isalpha},     {"alphanumeric", ccl_isalnum},
    {"ASCII", ccl_isascii},       {"ascii", ccl_isascii},     {"binary", ccl_isbdigit},
    {"bits", ccl_isbdigit},       {"cntrl", ccl_iscntrl},     {"control", ccl_iscntrl},
    {"digit", ccl_isdigit},       {"DNA", ccl_isdna},         {"dna", ccl_isdna},
    {"graph", ccl_isgraph},       {"graphic", ccl_isgraph},   {"hex", ccl_isxdigit},
    {"ident", ccl_isident},       {"ident1", ccl_isident1},   {"identifier", ccl_isident},
    {"letters", ccl_isalpha},     {"lower", ccl_islower},     {"lowercase", ccl_islower},
    {"numeric", ccl_isdigit},     {"octal", ccl_isodigit},    {"odigit", ccl_isodigit},
    {"print", ccl_isprint},       {"printable", ccl_isprint}, {"punct", ccl_ispunct},
    {"punctuation", ccl_ispunct}, {"space", ccl_isspace},     {"upper", ccl_isupper},
    {"uppercase", ccl_isupper},   {"vowel", ccl_isvowel},     {"whitespace", ccl_isspace},
    {"xdigit", ccl_isxdigit},
};

// Null for a name that is no class, and for "last" before any class was looked up.
CharClassTest find_class(Text name) {
  if (name == "last") return last_filter;
  for (const NamedFilter& filter : kFilters) {
    if (filter.name == name) return last_filter = filter.test;
  }
  return nullptr;
}

}  // namespace

CharClassTest read_filter(HostKernelVector* kv, Object object) {
  if (kv->IsHostString(object)) {
    Text text = text_of(object);
    if (text.empty()) fail("character class must be nonempty");
    // One character more than the message says is accepted.
    if (text.size() > kMaxAlphabet) {
      fail("alphabet too long (must be at most 255 characters)");
    }
    SetFilterAlphabet(text.data());
    return AlphabetFilter;
  }
  CharClassTest test = kv->IsHostName(object) ? find_class(text_of(object)) : nullptr;
  if (test == nullptr) fail("unrecognised character class `%1'", object);
  return test;
}

}  // namespace vstring

void SetFilterAlphabet(const char* text) {
  std::size_t length = strnlen(text, vstring::kMaxAlphabet);
  std::memcpy(vstring::alphabet, text, length);
  vstring::alphabet[length] = '\0';
}

// The search includes the alphabet's terminator: character 0 always passes.
int AlphabetFilter(int ch) { return std::strchr(vstring::alphabet, ch) != nullptr ? 1 : 0; }

CharClassTest GetFilter(HostKernelVector* kv, HostObject obj) {
  return vstring::raise_failures(kv, [=] { return vstring::read_filter(kv, obj); });
}
