// Making results. Tests: all transcripts.
#include "vstring/host/host.h"

#include <algorithm>

namespace vstring {
namespace {

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

Object Host::text(Text text, std::size_t most_shared) const {
  auto copy = [text](char* out) { std::copy(text.begin(), text.end(), out); };
  return this->text(text.size(), copy, most_shared);
}

// Never by writing a NUL into the text: it may be shared, read-only, or gone when the host jumps.
Object Host::piece(Text piece) const {
  if (piece.empty()) return empty_text();
  if (*(piece.data() + piece.size()) == '\0') return c_text(piece.data());
  char copy[1024];
  if (piece.size() >= sizeof copy) return text(piece, 0);
  *std::copy(piece.begin(), piece.end(), copy) = '\0';
  return c_text(copy);
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
