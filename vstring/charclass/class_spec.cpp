// Class specifications. Tests: tests/unit/charclass_test.cpp.
#include "vstring/charclass/class_spec.h"

#include "vstring/charclass.h"

namespace vstring {
namespace {

struct NamedMembers {
  Text name;
  std::uint32_t bit;
};

// Names of their own: no second spellings, and no fences.
constexpr NamedMembers kNames[] = {
    {"alpha", CCL_ALPHA},   {"alnum", CCL_ALNUM}, {"ascii", CCL_ASCII},   {"bdigit", CCL_BDIGIT},
    {"binary", CCL_BDIGIT}, {"cntrl", CCL_CNTRL}, {"digit", CCL_DIGIT},   {"dna", CCL_DNA},
    {"graph", CCL_GRAPH},   {"ident", CCL_IDENT}, {"ident1", CCL_IDENT1}, {"lower", CCL_LOWER},
    {"odigit", CCL_ODIGIT}, {"print", CCL_PRINT}, {"punct", CCL_PUNCT},   {"space", CCL_SPACE},
    {"upper", CCL_UPPER},   {"vowel", CCL_VOWEL}, {"xdigit", CCL_XDIGIT}};

// Empty for a name that is no class.
ByteSet named_members(Text name) {
  ByteSet members;
  for (const NamedMembers& named : kNames) {
    if (named.name != name) continue;
    for (int c = 1; c < 256; ++c) {
      if ((cclbm[c] & named.bit) != 0) members.add(static_cast<unsigned char>(c));
    }
  }
  return members;
}

bool is_framed(Text spec, char open, char close) {
  return spec.size() >= 2 && spec.front() == open && spec.back() == close &&
         spec[spec.size() - 2] != '\\';
}

// The single bytes and ranges from `start` up to, but not including, offset `end`. A range's last
// byte may stand at `end` or behind it: the text goes on there with the brackets that were taken
// off.
bool add_items(Text whole, std::size_t start, std::size_t end, ByteSet& members) {
  for (std::size_t k = start; k < end; ++k) {
    unsigned char c = byte_of(whole[k]);
    bool has_next = k + 1 < whole.size();
    if (c == '\\') {
      if (has_next) members.add(byte_of(whole[++k]));
    } else if (!has_next || whole[k + 1] != '-') {
      members.add(c);
    } else if (k + 2 >= whole.size()) {
      members.add(c);
      members.add('-');
      return true;
    } else {
      unsigned char last = byte_of(whole[k + 2]);
      if (c > last) return false;
      for (int member = c; member <= last; ++member) {
        members.add(static_cast<unsigned char>(member));
      }
      k += 2;
    }
  }
  return true;
}

}  // namespace

std::optional<ByteSet> expand_class_spec(Text spec) {
  Text inner = spec;
  while (is_framed(inner, '[', ']')) inner = inner.substr(1, inner.size() - 2);
  std::size_t start = static_cast<std::size_t>(inner.data() - spec.data());
  std::size_t end = start + inner.size();
  if (is_framed(inner, ':', ':')) {
    // A name is compared up to the end of the whole text, so brackets around it make it unknown.
    return end == spec.size() ? named_members(inner.substr(1, inner.size() - 2)) : ByteSet();
  }
  bool is_complement = !inner.empty() && inner.front() == '^';
  ByteSet members;
  if (!add_items(spec, is_complement ? start + 1 : start, end, members)) return std::nullopt;
  if (!is_complement) return members;
  ByteSet others;
  for (int c = 1; c < 256; ++c) {
    if (!members.contains(static_cast<unsigned char>(c))) others.add(static_cast<unsigned char>(c));
  }
  return others;
}

}  // namespace vstring
