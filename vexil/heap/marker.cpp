// Following references with a stack of its own.
#include "vexil/heap/marker.h"

#include <algorithm>
#include <new>
#include <span>

#include "vexil/heap/types.h"

namespace vexil {
namespace {

// The words of an object that are references.
std::span<const Object> references(Object object) {
  const std::uint32_t* words = host_words(object);
  const std::size_t length = host_length(object);
  switch (host_type(object)) {
    case HOST_TYPE_NAME:
      return {words + 1, 1};  // its value
    case HOST_TYPE_EQUATION:
    case HOST_TYPE_SEQUENCE:
    case HOST_TYPE_LIST:
    case HOST_TYPE_RANGE:
    case HOST_TYPE_SET:
    case HOST_TYPE_INDEXED_NAME:
    case kTypeRecord:
    case kTypeQuoted:
      return {words + 1, length - 1};
    case kTypeProcedure:
      return {words + 2, length - 2};
    case HOST_TYPE_ARRAY:
      if (words[kArrayDataType] != HOST_RTABLE_ANY) return {};
      return {words + words[kArrayDataStart], length - words[kArrayDataStart]};
    default:
      return {};
  }
}

}  // namespace

Marker::Marker(const Arena& arena)
    : base_(arena.base()),
      size_(arena.size()),
      // Not a vector: the pages of a large heap's marks are only touched where there are objects.
      bits_(static_cast<std::uint64_t*>(std::calloc(size_ / 512, sizeof(std::uint64_t)))) {
  if (bits_ == nullptr) throw std::bad_alloc();
}

void Marker::mark(Object object) {
  reach(object);
  while (!pending_.empty()) {
    const Object next = pending_.back();
    pending_.pop_back();
    for (Object reference : references(next)) reach(reference);
  }
}

void Marker::reach(Object object) {
  if (object % 8 != 0 || Arena::Address{object} - base_ >= size_) return;
  const std::size_t bit = bit_of(object);
  const std::uint64_t mask = std::uint64_t{1} << (bit % 64);
  if ((bits_[bit / 64] & mask) != 0) return;
  bits_[bit / 64] |= mask;
  if (!references(object).empty()) pending_.push_back(object);
}

bool Marker::has_marks(Arena::Address address, std::size_t bytes) const {
  const std::uint64_t* first = bits_.get() + bit_of(address) / 64;
  return std::any_of(first, first + bytes / 512, [](std::uint64_t word) { return word != 0; });
}

void Marker::clear(Arena::Address address, std::size_t bytes) {
  std::uint64_t* first = bits_.get() + bit_of(address) / 64;
  std::fill(first, first + bytes / 512, 0);
}

void Marker::clear_all() {
  pending_.clear();
  clear(base_, size_);
}

void Marker::clear_one(Arena::Address address) {
  const std::size_t bit = bit_of(address);
  bits_[bit / 64] &= ~(std::uint64_t{1} << (bit % 64));
}

}  // namespace vexil
