#include "tests/reference/search.h"

#include <algorithm>

namespace reference {

using vstring::Text;

std::vector<std::size_t> occurrences(Text pattern, Text text) {
  std::vector<std::size_t> found;
  if (pattern.empty()) return found;
  for (std::size_t i = 0; i + pattern.size() <= text.size(); ++i) {
    if (text.substr(i, pattern.size()) == pattern) found.push_back(i);
  }
  return found;
}

namespace {

bool is_prefix_of_any(Text word, const std::vector<std::string>& patterns) {
  return std::any_of(patterns.begin(), patterns.end(),
                     [word](const std::string& p) { return p.starts_with(word); });
}

// The longest suffix of `word` (of fewer than `below` bytes) that some pattern begins with.
Text state_of(Text word, std::size_t below, const std::vector<std::string>& patterns) {
  std::size_t length = std::min(word.size(), below);
  while (!is_prefix_of_any(word.substr(word.size() - length), patterns)) --length;
  return word.substr(word.size() - length);
}

// The indices reported on entering a state: its failure's reversed, then its own.
std::vector<unsigned> chain_of(Text state, const std::vector<std::string>& patterns) {
  if (state.empty()) return {};
  std::vector<unsigned> chain = chain_of(state_of(state, state.size() - 1, patterns), patterns);
  std::reverse(chain.begin(), chain.end());
  auto own = std::find(patterns.begin(), patterns.end(), state);
  if (own != patterns.end()) chain.push_back(static_cast<unsigned>(own - patterns.begin()) + 1);
  return chain;
}

}  // namespace

Reports occurrences_of_set(const std::vector<std::string>& patterns, Text text) {
  Reports reports;
  for (std::size_t end = 1; end <= text.size() && !patterns.empty(); ++end) {
    for (unsigned index : chain_of(state_of(text.substr(0, end), end, patterns), patterns)) {
      reports.emplace_back(end - patterns[index - 1].size(), index);
    }
  }
  return reports;
}

std::string replace_all(Text text, Text pattern, Text replacement) {
  std::vector<std::size_t> found = occurrences(pattern, text);
  auto size = static_cast<long>(text.size()) + 1 +
              static_cast<long>(found.size()) *
                  (static_cast<long>(replacement.size()) - static_cast<long>(pattern.size()));
  std::string out;
  auto next = found.begin();
  for (std::size_t i = 0; i < text.size();) {
    while (next != found.end() && *next < i) ++next;
    if (next != found.end() && *next == i) {
      out += replacement;
      i += pattern.size();
    } else {
      if (static_cast<long>(out.size()) >= size) break;
      out += text[i++];
    }
  }
  return out;
}

}  // namespace reference
