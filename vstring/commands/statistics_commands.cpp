// The letter statistics as commands. Tests: docs/commands/statistics.md,
// tests/transcripts/commands/statistics.vt.
#include <vector>

#include "vstring/commands/statistics.h"
#include "vstring/host/commands.h"
#include "vstring/host/filters.h"

namespace vstring {

Object cmd::vstring_entropy(Args& args, Host& host) {
  return host.number(entropy(args.string(1, "argument must be a string")));
}

Object cmd::vstring_ioc(Args& args, Host& host) {
  return host.number(index_of_coincidence(args.string(1, "first argument must be a string")));
}

Object cmd::vstring_mioc(Args& args, Host& host) {
  Text s = args.string(1, "first argument must be a string");
  Text t = args.string(2, "second argument must be a string");
  return host.number(mutual_index_of_coincidence(s, t));
}

Object cmd::vstring_amean(Args& args, Host& host) {
  return host.number(mean_byte(args.string(1, "argument must be a string")));
}

Object cmd::vstring_chisq(Args& args, Host& host) {
  ChiSquare result = chi_square(args.string(1, "argument must be a string"));
  HostKernelVector* kv = host.kernel();
  return kv->HostExpSeqOf(2, host.number(result.value), host.number(result.probability));
}

Object cmd::vstring_scc(Args& args, Host& host) {
  return host.number(serial_correlation(args.string(1, "argument must be a string")));
}

Object cmd::vstring_ndc(Args& args, Host& host) {
  return host.integer(num_distinct(args.string(1, "first argument must be a string")));
}

Object cmd::vstring_kasiski(Args& args, Host& host) {
  return host.integer(kasiski_divisor(args.string(1, "first argument must be a string")));
}

Object cmd::vstring_charfreq(Args& args, Host& host) {
  Text text = args.string(1, "first argument must be a string");
  CharClassTest passes = args.has(2) ? read_filter(host.kernel(), args[2]) : nullptr;
  std::vector<Object> result;
  for_each_count(make_histogram(text), [&](unsigned char c, std::uint32_t count) {
    if (passes != nullptr && passes(c) == 0) return;
    result.push_back(host.equation(host.one_char(c), host.position(count)));
  });
  return host.sequence_of(result);
}

}  // namespace vstring
