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
  auto add = [&](char c) {
    out += c;
    column = c == '\n' && style.obeylines ? 0 : column + 1;
  };
  auto break_line = [&] {
    out += '\n';
    column = 0;
  };
  for (std::size_t i = 0; i < s.size(); ++i) {
    bool is_first = i == 0 || is_blank(s[i - 1]) != is_blank(s[i]);
    bool counts_itself = (s[i] == '\t' && (style.countbytes || !style.expandtabs)) ||
                         (s[i] == '\n' && style.obeylines);
    if (!is_blank(s[i])) {
      std::size_t end = i;
      while (end < s.size() && !is_blank(s[end])) ++end;
      bool is_too_wide = is_first && style.width < column + (end - i);
      if (is_too_wide && i != 0 && (style.obeylines || out.back() != '\n')) break_line();
      add(s[i]);
    } else if (counts_itself || !style.obeyspaces) {
      if (counts_itself || is_first) add(s[i]);
    } else {
      do add(s[i] == '\t' ? ' ' : s[i]);
      while (s[i] == '\t' && column % 8 != 0);
      if (column > style.width) break_line();
    }
  }
  return out;
}

inline std::string expanded(Text s, const vstring::TabSetting& setting) {
  std::string out;
  std::size_t column = 0, next = 0;
  const auto& stops = setting.stops;
  for (char c : s) {
    auto is_before_stop = [&] { return column < static_cast<std::size_t>(stops[next]); };
    if (c == '\t') {
      bool is_at_stop = next < stops.size() && !is_before_stop();
      while (!is_at_stop) {
        out += ' ';
        ++column;
        is_at_stop = stops.empty()         ? column % setting.width == 0
                     : next < stops.size() ? !is_before_stop()
                                           : true;
      }
    } else {
      out += c;
      if (c != '\b' || setting.countbytes) ++column;
    }
    if (c == '\n') column = next = 0;
    if (next < stops.size() && column > static_cast<std::size_t>(stops[next])) ++next;
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

}  // namespace reference
