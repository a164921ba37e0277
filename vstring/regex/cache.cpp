// The cache of compiled patterns. Programs that it has given out are never freed while the library
// lives: their users keep pointers to them. Tests: tests/unit/regex_test.cpp.
#include "vstring/regex/cache.h"

#include <cstdlib>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <unordered_map>

#include "vstring/regex/errors.h"

namespace vstring::regex {
namespace {

struct FreeRecord {
  void operator()(RegexpRecord* record) const { std::free(record); }
};

using Programs = std::unordered_map<std::string, std::unique_ptr<RegexpRecord, FreeRecord>>;

Programs& programs() {
  static Programs all;
  return all;
}

// The pattern asked for last; the only one that is kept prepared.
struct Current {
  std::string pattern;
  std::optional<Prepared> prepared;
};

Current& current() {
  static Current entry;
  return entry;
}

RegexpRecord* find_program(const std::string& pattern) {
  auto known = programs().find(pattern);
  if (known != programs().end()) return known->second.get();
  std::unique_ptr<RegexpRecord, FreeRecord> compiled(vrx_regcomp(pattern.c_str()));
  if (compiled == nullptr) return nullptr;
  return programs().emplace(pattern, std::move(compiled)).first->second.get();
}

}  // namespace

const Prepared* find_compiled(Text pattern) {
  Current& entry = current();
  if (entry.prepared && entry.pattern == pattern) return &*entry.prepared;
  entry.prepared.reset();
  entry.pattern = pattern;
  const RegexpRecord* record = find_program(entry.pattern);
  if (record == nullptr) return nullptr;
  return &entry.prepared.emplace(*record);
}

}  // namespace vstring::regex

RegexpRecord* RegexCacheLookup(const char* pattern) {
  using namespace vstring::regex;
  if (pattern == nullptr) {
    record_error(Error::NullArgument);
    return nullptr;
  }
  try {
    const Prepared* compiled = find_compiled(pattern);
    return compiled == nullptr ? nullptr : find_program(std::string(pattern));
  } catch (const std::bad_alloc&) {
    record_error(Error::OutOfSpace);
    return nullptr;
  }
}
