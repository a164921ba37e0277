// Text: how all algorithms see a byte string.
#pragma once

#include <string_view>

namespace vstring {

/// Bytes read in place. Used everywhere, stored nowhere: it lives as long as what it looks at.
using Text = std::string_view;

/// The byte as an index into tables of 256 entries.
constexpr unsigned char byte_of(char c) { return static_cast<unsigned char>(c); }

}  // namespace vstring
