// Lists as host sequences: sl_toexpseq, il_toexpseq, ipl_toexpseq. Tests:
// tests/unit/services_test.cpp.
#include "vstring/containers.h"
#include "vstring/host/entry.h"
#include "vstring/host/host.h"

namespace vstring {
namespace {

// A sequence of n slots, filled from the list's head; slots beyond the list stay as the host made
// them.
template <class AnyList, class Make>
Object sequence_of(HostKernelVector* kv, const AnyList* list, int n, Make make) {
  Object sequence = kv->HostNewExpSeq(n);
  if (list == nullptr) return sequence;
  int i = 1;
  for (const auto* node = list->head; node != nullptr && i <= n; node = node->next, ++i) {
    host_words(sequence)[i] = make(*node);
  }
  return sequence;
}

}  // namespace
}  // namespace vstring

HostObject sl_toexpseq(HostKernelVector* kv, const StringList* list, int n) {
  return vstring::sequence_of(kv, list, n, [kv](const StringNode& node) {
    return kv->ToHostString(node.text != nullptr ? node.text : "");
  });
}

HostObject il_toexpseq(HostKernelVector* kv, const IntegerList* list, int n) {
  return vstring::sequence_of(
      kv, list, n, [kv](const IntegerNode& node) { return kv->ToHostInteger32(node.value); });
}

HostObject ipl_toexpseq(HostKernelVector* kv, const IntegerPairList* list, int n) {
  return vstring::sequence_of(kv, list, n, [kv](const IntegerPairNode& node) {
    return vstring::Host(kv).pair(kv->ToHostInteger32(node.first),
                                  kv->ToHostInteger32(node.second));
  });
}
