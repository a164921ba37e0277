// Match lists as host values. Tests: tests/unit/match_list_test.cpp.
#include "vstring/host/host.h"
#include "vstring/search.h"

namespace vstring {
namespace {

bool is_empty(const MatchList* list) {
  return list == nullptr || list->count < 1 || list->head == nullptr;
}

Object position_of(const Host& host, const MatchRecord& record) {
  return host.position(std::size_t{record.position} + 1);
}

// A sequence with an element for each record.
template <class Make>
Object sequence_of(const Host& host, const MatchList* list, Make make) {
  if (is_empty(list)) return host.nothing();
  Object sequence = host.kernel()->HostNewExpSeq(list->count);
  int i = 1;
  for (const MatchRecord* record = list->head; record != nullptr && i <= list->count;
       record = record->next, ++i) {
    host_words(sequence)[i] = make(*record);
  }
  return sequence;
}

}  // namespace
}  // namespace vstring

using vstring::Host;

HostObject MatchListToExpSeq(HostKernelVector* kv, const MatchList* list) {
  Host host(kv);
  return vstring::sequence_of(
      host, list, [&](const MatchRecord& record) { return vstring::position_of(host, record); });
}

HostObject MatchListToExpSeq2(HostKernelVector* kv, const MatchList* list) {
  Host host(kv);
  return vstring::sequence_of(host, list, [&](const MatchRecord& record) {
    return host.pair(vstring::position_of(host, record), host.integer(record.value));
  });
}

HostObject MatchListToList(HostKernelVector* kv, const MatchList* list) {
  Host host(kv);
  if (vstring::is_empty(list)) return kv->HostNewList(0);
  HostObject result = kv->HostNewList(list->count);
  int i = 1;
  for (const MatchRecord* record = list->head; record != nullptr && i <= list->count;
       record = record->next, ++i) {
    kv->HostListAssign(result, i, vstring::position_of(host, *record));
  }
  return kv->HostFinishList(result);
}
