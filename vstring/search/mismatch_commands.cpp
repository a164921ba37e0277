// hsearch, hsearchx, psearch, psearchx. Tests: docs/commands/mismatch.md,
// tests/transcripts/search/mismatch.vt.
#include <vector>

#include "vstring/host/commands.h"
#include "vstring/search/bounded_commands.h"
#include "vstring/search/exact.h"
#include "vstring/search/mismatch.h"

namespace vstring {
namespace {

// With k = 0 this is plain search, for which an empty pattern occurs nowhere; with k > 0 it fits at
// once.
Object first_mismatching(Args& args, Host& host) {
  BoundedQuery query = read_bounded_query(args);
  if (host.kernel()->HostToInteger32(args[3]) == 0) {
    return host.position(find_text(query.pattern, query.text) + 1);  // npos + 1 is 0: not found
  }
  std::size_t position = 0;
  for_each_mismatching(query.pattern, query.text, query.k, [&](std::size_t offset, std::size_t) {
    position = offset + 1;
    return false;
  });
  return host.position(position);
}

Object all_mismatching(Args& args, Host& host) {
  BoundedQuery query = read_bounded_query(args);
  std::vector<Object> found;
  for_each_mismatching(
      query.pattern, query.text, query.k, [&](std::size_t offset, std::size_t mismatches) {
        found.push_back(host.pair(host.position(offset + 1), host.position(mismatches)));
        return true;
      });
  return host.sequence_of(found);
}

}  // namespace

Object cmd::vstring_hsearch(Args& args, Host& host) { return first_mismatching(args, host); }
Object cmd::vstring_hsearchx(Args& args, Host& host) { return all_mismatching(args, host); }
Object cmd::vstring_psearch(Args& args, Host& host) { return first_mismatching(args, host); }
Object cmd::vstring_psearchx(Args& args, Host& host) { return all_mismatching(args, host); }

}  // namespace vstring
