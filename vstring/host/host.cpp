// Making results. Tests: all transcripts.
#include "vstring/host/host.h"

#include <algorithm>

namespace vstring {
namespace {

// Writes a NUL behind a piece of a text and takes it back when the host has read the piece, or
// raised.
class LentNul {
 public:
  explicit LentNul(const char* end) {
    lent_place = const_cast<char*>(end);
    lent_byte = *lent_place;
    *lent_place = '\0';
  }
  ~LentNul() { take_back_lent_nul(); }
  LentNul(const LentNul&) = delete;
  LentNul& operator=(const LentNul&) = delete;
};

void refuse_long_sequence(std::size_t size) {
  if (size > HOST_MAX_ELEMENTS) fail(kOutOfMemory);
}

}  // namespace

Sequence::Sequence(HostKernelVector* kv, std::size_t size) {
  refuse_long_sequence(size);
  object_ = kv->HostNewExpSeq(static_cast<int>(size));
}

List::List(HostKernelVector* kv, std::size_t size) : kv_(kv) {
  refuse_long_sequence(size);
  object_ = kv->HostNewList(static_cast<int>(size));
}

Object Host::text(Text text) const {
  return this->text(text.size(), [text](char* out) { std::copy(text.begin(), text.end(), out); });
}

Object Host::piece(Text piece) const {
  if (piece.empty()) return empty_text();
  LentNul terminator(piece.data() + piece.size());
  return kv_->ToHostString(piece.data());
}

Object Host::byte_array(Text bytes) const {
  HostRTableSettings settings;
  kv_->HostRTableGetDefaults(&settings);
  settings.data_type = HOST_RTABLE_INTEGER1;
  settings.num_dimensions = 1;
  const std::int32_t bounds[] = {1, static_cast<std::int32_t>(bytes.size())};
  return kv_->HostRTableCreate(&settings, bytes.data(), bounds);
}

Object Host::whole(std::int64_t value) const {
  auto narrow = static_cast<std::int32_t>(value);
  return narrow == value ? integer(narrow) : number(static_cast<double>(value));
}

// The disposer comes last: when the host raises before, the data is still the caller's.
Object Host::foreign(void* data, HostForeignTagFunction tag, HostForeignConverter convert,
                     HostForeignDisposer dispose) const {
  Object handle = kv_->ToHostForeign(data, tag);
  kv_->HostForeignSetConverter(handle, convert);
  kv_->HostForeignSetDisposer(handle, dispose);
  return handle;
}

Object Host::sequence_of(std::span<const Object> elements) const {
  if (elements.empty()) return nothing();
  Sequence result = sequence(elements.size());
  for (std::size_t i = 0; i < elements.size(); ++i) result.set(i, elements[i]);
  return result.object();
}

Object Host::list_of(std::span<const Object> elements) const {
  List result = list(elements.size());
  for (std::size_t i = 0; i < elements.size(); ++i) result.set(i, elements[i]);
  return result.finish();
}

Object Host::pair(Object a, Object b) const {
  const Object elements[] = {a, b};
  return list_of(elements);
}

void Host::refuse_long_text(std::size_t length) {
  if (length > HOST_MAX_TEXT) fail(kOutOfMemory);
}

}  // namespace vstring
