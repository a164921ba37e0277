// Texts to measure on. Entry points: licence, english.
#pragma once

#include <cstddef>
#include <fstream>
#include <iterator>
#include <string>

namespace bench {

/// The text of the GPL, version 3, as every Debian machine has it.
inline const std::string& licence() {
  static const std::string text = [] {
    std::ifstream file("/usr/share/common-licenses/GPL-3");
    return std::string(std::istreambuf_iterator<char>(file), {});
  }();
  return text;
}

/// The same again and again, up to this length.
inline std::string english(std::size_t length) {
  std::string text;
  text.reserve(length);
  while (text.size() < length) text.append(licence(), 0, length - text.size());
  return text;
}

}  // namespace bench
