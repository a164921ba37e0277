// Layout as its rules read, character by character.
#pragma once

#include <cctype>
#include <string>
#include <vector>

#include "vstring/layout/tabs.h"
#include "vstring/layout/wrap.h"

namespace reference {

using vstring::Text;

inline bool is_blank(char c) { return std::isspace(vstring::byte_of(c)) != 0; }

inline std::string wrapped(Text s, const vstring::WrapStyle& style) {
  std::string out;
  std::size_t column = 0;
  for (std::size_t i = 0; i < s.size(); ++i) {
    bool is_first = i == 0 || is_blank(s[i - 1]) != is_blank(s[i]);
    if (!is_blank(s[i])) {
      std::size_t end = i;
      while (end < s.size() && !is_blank(s[end])) ++end;
      bool breaks = is_first && style.width < column + (end - i) && i != 0;
      if (breaks && (style.obeylines || out.back() != '\n')) {
        out += '\n';
        column = 0;
      }
      out += s[i];
      ++column;
    } else if (s[i] == '\t' && (style.countbytes || !style.expandtabs)) {
      out += s[i];
      ++column;
    } else if (s[i] == '\n' && style.obeylines) {
      out += s[i];
      column = 0;
    } else if (!style.obeyspaces) {
      if (!is_first) continue;
      out += s[i];
      ++column;
    } else {
      do {
        out += s[i] == '\t' ? ' ' : s[i];
        ++column;
      } while (s[i] == '\t' && column % 8 != 0);
      if (column > style.width) {
        out += '\n';
        column = 0;
      }
    }
  }
  return out;
}

inline std::string expanded(Text s, const vstring::TabSetting& setting) {
  std::string out;
  std::size_t column = 0, next = 0;
  const auto& stops = setting.stops;
  auto stop = [&] { return static_cast<std::size_t>(stops[next]); };
  auto add_blank = [&] {
    out += ' ';
    ++column;
  };
  for (char c : s) {
    if (c == '\t' && stops.empty()) {
      do {
        add_blank();
      } while (column % setting.width != 0);
    } else if (c == '\t' && next < stops.size()) {
      while (column < stop()) add_blank();
    } else if (c == '\t') {
      add_blank();
    } else {
      out += c;
      if (c != '\b' || setting.countbytes) ++column;
    }
    if (c == '\n') {
      column = 0;
      next = 0;
    } else if (next < stops.size() && column > stop()) {
      ++next;
    }
  }
  return out;
}

/// quote 0: none.
inline std::vector<std::string> fields(Text s, Text separators, char quote) {
  std::vector<std::string> result{""};
  bool is_quoted = false;
  for (std::size_t i = 0; i < s.size(); ++i) {
    if (quote != 0 && s[i] == quote) {
      is_quoted = !is_quoted && s.find(quote, i + 1) != Text::npos;
    } else if (!is_quoted && separators.find(s[i]) != Text::npos) {
      result.emplace_back();
      continue;
    }
    result.back() += s[i];
  }
  return result;
}

inline std::string squeezed(Text s, Text instead) {
  std::string out;
  for (std::size_t i = 0; i < s.size(); ++i) {
    if (!is_blank(s[i])) out += s[i];
    if (is_blank(s[i]) && (i == 0 || !is_blank(s[i - 1]))) out += instead;
  }
  return out;
}

}  // namespace reference
