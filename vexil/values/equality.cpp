// Structural equality, and sets, which drop what is equal to an earlier element.
#include <algorithm>
#include <cstring>
#include <functional>
#include <unordered_set>

#include "vexil/values/arrays.h"
#include "vexil/values/values.h"

namespace vexil {
namespace {

constexpr std::size_t kStepsWithoutMemory = 4096;
constexpr std::size_t kHashedParts = 64;

// Compares two values with a stack of pairs that are yet to be compared. From some size on it
// remembers the pairs it has met: values that share their parts again and again (l := [l, l]) stay
// cheap.
class Comparison {
 public:
  bool run(Object a, Object b) {
    push(a, b);
    while (is_equal_ && !pending_.empty()) {
      const auto [left, right] = pending_.back();
      pending_.pop_back();
      compare(left, right);
    }
    return is_equal_;
  }

 private:
  void push(Object a, Object b) {
    if (a == b) return;
    if (++steps_ > kStepsWithoutMemory && !met_.insert(std::uint64_t{a} << 32 | b).second) return;
    pending_.emplace_back(a, b);
  }
  void require(bool holds) { is_equal_ = is_equal_ && holds; }
  void compare(Object a, Object b);
  void compare_all(std::span<const Object> a, std::span<const Object> b);
  void compare_words(Object a, Object b);
  void compare_arrays(Object a, Object b);

  std::vector<std::pair<Object, Object>> pending_;
  std::unordered_set<std::uint64_t> met_;
  std::size_t steps_ = 0;
  bool is_equal_ = true;
};

// The words behind the header of a value that consists of references.
std::span<const Object> parts(Object object) {
  return {host_words(object) + 1, host_length(object) - 1};
}

// The bytes that make up an object which refers to no other. The words in front of a text are not
// part of it.
std::string_view payload(Object object) {
  const std::size_t start = host_is_text(object) ? HOST_TEXT_OFFSET : 4;
  return {reinterpret_cast<const char*>(host_words(object)) + start,
          host_length(object) * 4 - start};
}

void Comparison::compare(Object a, Object b) {
  const Kind kind = kind_of(a);
  if (kind != kind_of(b)) return require(false);
  switch (kind) {
    case Kind::Integer:
      if (host_is_immediate(a) || host_is_immediate(b)) return require(false);
      return compare_words(a, b);
    case Kind::String:
    case Kind::Procedure:
      return compare_words(a, b);
    case Kind::Float:
      // Zeros of either sign are equal, as numbers are; a NaN is equal to a NaN, as values are.
      return require(float_value(a) == float_value(b) ||
                     (float_value(a) != float_value(a) && float_value(b) != float_value(b)));
    case Kind::Name:
    case Kind::Foreign:
      return require(false);  // equal only when they are the same
    case Kind::Array:
    case Kind::Bytes:
      return compare_arrays(a, b);
    case Kind::Sequence:
      return compare_all(elements(a), elements(b));
    default:
      return compare_all(parts(a), parts(b));
  }
}

void Comparison::compare_all(std::span<const Object> a, std::span<const Object> b) {
  require(a.size() == b.size());
  for (std::size_t i = 0; is_equal_ && i < a.size(); ++i) push(a[i], b[i]);
}

void Comparison::compare_words(Object a, Object b) { require(payload(a) == payload(b)); }

void Comparison::compare_arrays(Object a, Object b) {
  const HostRTableSettings left = rtable_settings(a);
  const HostRTableSettings right = rtable_settings(b);
  require(left.num_dimensions == right.num_dimensions &&
          std::memcmp(left.bounds, right.bounds, sizeof left.bounds) == 0);
  if (!is_equal_) return;
  const std::size_t size = rtable_size(a);
  if (kind_of(a) == Kind::Bytes) {
    return require(std::memcmp(rtable_data(a), rtable_data(b), size) == 0);
  }
  for (std::size_t i = 0; i < size; ++i) push(rtable_element(a, i), rtable_element(b, i));
}

void mix(std::size_t& hash, std::size_t value) {
  hash = (hash ^ value) * 0x9e3779b1U;
  hash ^= hash >> 15;
}

// The hash of a value without parts; of an Array only its size.
std::size_t hash_of_atom(Object object) {
  switch (kind_of(object)) {
    case Kind::Integer:
      if (host_is_immediate(object)) return object;
      return std::hash<std::string_view>()(payload(object));
    case Kind::String:
      return std::hash<std::string_view>()(text(object));
    case Kind::Float: {
      // One hash for all NaNs, which are equal; the library's has one for both zeros already.
      const double value = float_value(object);
      return value != value ? 1 : std::hash<double>()(value);
    }
    case Kind::Procedure:
      return procedure_code(object);
    case Kind::Array:
    case Kind::Bytes:
      return rtable_size(object);
    default:
      return object;  // names and handles are equal only to themselves
  }
}

bool has_parts(Kind kind) {
  switch (kind) {
    case Kind::IndexedName:
    case Kind::List:
    case Kind::Set:
    case Kind::Sequence:
    case Kind::Range:
    case Kind::Equation:
    case Kind::Record:
      return true;
    default:
      return false;
  }
}

// Equal values have equal hashes. Of a value with many parts only the first ones count.
std::size_t hash_of(Object object) {
  std::size_t hash = 0;
  std::vector<Object> pending{object};
  for (std::size_t visited = 0; visited < pending.size(); ++visited) {
    const Object part = pending[visited];
    const Kind kind = kind_of(part);
    mix(hash, static_cast<std::size_t>(kind));
    if (!has_parts(kind)) {
      mix(hash, hash_of_atom(part));
      continue;
    }
    const std::span<const Object> all = kind == Kind::Sequence ? elements(part) : parts(part);
    mix(hash, all.size());
    const std::size_t room = kHashedParts - std::min(kHashedParts, pending.size());
    for (Object next : all.first(std::min(room, all.size()))) pending.push_back(next);
  }
  return hash;
}

struct Hash {
  std::size_t operator()(Object object) const { return hash_of(object); }
};
struct Equal {
  bool operator()(Object a, Object b) const { return is_equal(a, b); }
};

}  // namespace

bool is_equal(Object a, Object b) { return Comparison().run(a, b); }

Object make_set(std::span<const Object> elements) {
  std::unordered_set<Object, Hash, Equal> met;
  std::vector<Object> kept;
  for (Object element : elements) {
    if (met.insert(element).second) kept.push_back(element);
  }
  if (kept.size() > HOST_MAX_ELEMENTS) raise_out_of_memory();
  const Object set = heap().allocate(HOST_TYPE_SET, kept.size() + 1);
  std::copy(kept.begin(), kept.end(), host_words(set) + 1);
  return set;
}

}  // namespace vexil
