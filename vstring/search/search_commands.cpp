// search, searchx, subst, substx. The searches take the pattern first, the substitutions the text
// first. Tests: docs/commands/search.md, tests/transcripts/search/search.vt.
#include <algorithm>
#include <cstdint>
#include <vector>

#include "vstring/host/commands.h"
#include "vstring/search/exact.h"
#include "vstring/search/palindromes.h"
#include "vstring/search/pattern_set.h"
#include "vstring/search/substitution.h"

namespace vstring {
namespace {

// A search that ends at its first report seldom repays the table that a long text would.
constexpr std::size_t kBytesBeforeFirst = 65536;

constexpr const char* kFirstIsNoList = "first argument must be a list of strings";
constexpr const char* kSecondIsNoList = "second argument must be a list of strings";

// The text of an element of a collection.
Text element_text(Object element, const char* message) {
  if (!is_text(element)) fail(message);
  return text_of(element);
}

// The patterns of argument 1, which is a collection, by their 1-based indices.
PatternSet patterns_of(Args& args) {
  if (args.is_collection(2)) fail("at most one argument can be a list of strings");
  PatternSet patterns;
  std::uint32_t index = 0;
  for (Object element : Elements(args[1]))
    patterns.add(element_text(element, kFirstIsNoList), ++index);
  return patterns;
}

std::vector<std::uint32_t> offsets_of(const ExactSearcher& searcher, Text text) {
  std::vector<std::uint32_t> offsets;
  searcher.each(text, [&offsets](std::size_t at) {
    offsets.push_back(static_cast<std::uint32_t>(at));
    return offsets.size() <= HOST_MAX_ELEMENTS;  // one too many is refused by the result
  });
  return offsets;
}

template <class Result>
void set_positions(Host& host, Result& result, const std::vector<std::uint32_t>& offsets) {
  for (std::size_t i = 0; i < offsets.size(); ++i) {
    result.set(i, host.position(std::size_t{offsets[i]} + 1));
  }
}

Object position_sequence(Host& host, const std::vector<std::uint32_t>& offsets) {
  if (offsets.empty()) return host.nothing();
  Sequence result = host.sequence(offsets.size());
  set_positions(host, result, offsets);
  return result.object();
}

Object position_list(Host& host, const std::vector<std::uint32_t>& offsets) {
  List result = host.list(offsets.size());
  set_positions(host, result, offsets);
  return result.finish();
}

// The list of find(text) for the texts of argument 2, which is a collection.
template <class Find>
Object for_each_text(Args& args, Host& host, Find find) {
  Elements texts(args[2]);
  List result = host.list(texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i) {
    result.set(i, find(element_text(texts[i], kSecondIsNoList)));
  }
  return result.finish();
}

// 1-based; 0 when nothing is found.
Object first_position(Host& host, const ExactSearcher& searcher, Text text) {
  std::size_t at = searcher.find(text);
  return host.position(at == Text::npos ? 0 : at + 1);
}

// The list of position and index.
Object report_pair(Host& host, const PatternSet::Report& report) {
  Object position = host.position(std::size_t{report.offset} + 1);
  return host.pair(position, host.position(report.value));
}

Object search_set(Args& args, Host& host) {
  PatternSet patterns = patterns_of(args);
  Text text = args.string(2, "second argument must be a string");
  if (Elements(args[1]).empty()) return host.integer(0);
  patterns.prepare(std::min(text.size(), kBytesBeforeFirst));
  auto found = patterns.first(text);
  if (!found) return host.pair(host.integer(0), host.integer(0));
  return report_pair(host, *found);
}

Object search_set_all(Args& args, Host& host) {
  PatternSet patterns = patterns_of(args);
  Text text = args.string(2, "second argument must be a string");
  patterns.prepare(text.size());
  std::vector<PatternSet::Report> found = patterns.all(text, HOST_MAX_ELEMENTS + 1);
  if (found.empty()) return host.nothing();
  Sequence result = host.sequence(found.size());
  for (std::size_t i = 0; i < found.size(); ++i) {
    result.set(i, report_pair(host, found[i]));
  }
  return result.object();
}

}  // namespace

Object cmd::vstring_search(Args& args, Host& host) {
  if (args.is_collection(1)) return search_set(args, host);
  Text pattern = args.string(1, "first argument must be a string");
  if (args.is_collection(2)) {
    ExactSearcher searcher(pattern);
    return for_each_text(args, host,
                         [&](Text text) { return first_position(host, searcher, text); });
  }
  Text text = args.string(2, "second argument must be a string");
  std::size_t at = find_text(pattern, text);
  return host.position(at == Text::npos ? 0 : at + 1);
}

Object cmd::vstring_searchx(Args& args, Host& host) {
  if (args.is_collection(1)) return search_set_all(args, host);
  Text pattern = args.string(1, "first argument must be a string");
  ExactSearcher searcher(pattern);
  if (args.is_collection(2)) {
    return for_each_text(
        args, host, [&](Text text) { return position_list(host, offsets_of(searcher, text)); });
  }
  Text text = args.string(2, "second argument must be a string");
  return position_sequence(host, offsets_of(searcher, text));
}

Object cmd::vstring_subst(Args& args, Host& host) {
  Text text = args.string(1, "first argument must be a string");
  Text pattern = args.string(2, "second argument must be a string");
  Text replacement = args.string(3, "third argument must be a string");
  if (text.size() < pattern.size()) return args[1];
  std::size_t at = find_text(pattern, text);
  if (at == Text::npos) return host.c_text(text.data());
  Text before = text.substr(0, at), after = text.substr(at + pattern.size());
  return host.text(before.size() + replacement.size() + after.size(), [=](char* out) {
    out = std::copy(before.begin(), before.end(), out);
    out = std::copy(replacement.begin(), replacement.end(), out);
    std::copy(after.begin(), after.end(), out);
  });
}

Object cmd::vstring_substx(Args& args, Host& host) {
  Text text = args.string(1, "first argument must be a string");
  Text pattern = args.string(2, "second argument must be a string");
  Text replacement = args.string(3, "third argument must be a string");
  if (text.size() < pattern.size()) return args[1];
  if (pattern.empty()) return host.c_text(text.data());
  Substitution result(text, pattern, replacement);
  if (result.is_idle()) return host.c_text(text.data());
  return host.text(result.length(), [&result](char* out) { result.write(out); });
}

Object cmd::vstring_palsearch(Args& args, Host& host) {
  Text s = args.string(1, "first argument must be a string");
  Text found = longest_palindrome(s);
  std::size_t position = found.empty() ? 0 : static_cast<std::size_t>(found.data() - s.data()) + 1;
  return host.pair(host.position(position), host.position(found.size()));
}

}  // namespace vstring
