// Distances and common parts of texts as commands. Tests: docs/commands/similarity.md,
// tests/transcripts/similarity/similarity.vt.
#include <cstdio>

#include "vstring/core/common_ends.h"
#include "vstring/host/commands.h"
#include "vstring/similarity/byte_sums.h"
#include "vstring/similarity/common_subsequence.h"
#include "vstring/similarity/common_substring.h"
#include "vstring/similarity/edit_distance.h"

namespace vstring {
namespace {

struct TwoTexts {
  explicit TwoTexts(const Args& args)
      : s(args.string(1, "first argument must be a string")),
        t(args.string(2, "second argument must be a string")) {}
  Text s, t;
};

using CommonLength = std::size_t(Text, Text);

Text numbered_text(const Args& args, int i) {
  if (!args.is_string(i)) fail_numbered("argument %d is not a string", i);
  return args.text(i);
}

// The least length that an argument has in common with the one that gave the least before it.
// Arguments behind one that has nothing in common are not looked at.
Object common_length(const Args& args, const Host& host, CommonLength* common) {
  if (args.count() == 0) return host.integer(0);
  Text reference = numbered_text(args, 1);
  std::size_t least = reference.size();
  for (int i = 2; i <= args.count() && (i == 2 || least > 0); ++i) {
    Text next = numbered_text(args, i);
    std::size_t length = common(reference, next);
    if (i > 2 && length < least) reference = next;
    least = std::min(least, length);
  }
  return host.position(least);
}

// The answer of lcsubseq and lcsubstr when a text has at most one byte: that byte when the other
// text holds it.
Object short_common_text(const Host& host, Text s, Text t) {
  if (s.size() > t.size()) std::swap(s, t);
  return s.empty() || t.find(s[0]) == Text::npos ? host.empty_text() : host.piece(s);
}

}  // namespace

Object cmd::vstring_levenshtein(Args& args, Host& host) {
  TwoTexts texts(args);
  if (args[1] == args[2]) return host.integer(0);
  return host.position(edit_distance(texts.s, texts.t));
}

// Not a distance but what the texts keep of each other; users know it by this name. Texts of very
// unequal lengths would give less than nothing, which is the error that they know too.
Object cmd::vstring_editdist(Args& args, Host& host) {
  TwoTexts texts(args);
  std::size_t lengths = texts.s.size() + texts.t.size();
  std::size_t distance = edit_distance(texts.s, texts.t);
  if (2 * distance > lengths) fail(kOutOfMemory);
  return host.position(lengths - 2 * distance);
}

Object cmd::vstring_hd(Args& args, Host& host) {
  TwoTexts texts(args);
  return host.position(hamming_distance(texts.s, texts.t));
}

Object cmd::vstring_prefixdist(Args& args, Host& host) {
  TwoTexts texts(args);
  return host.position(texts.s.size() + texts.t.size() - 2 * common_prefix(texts.s, texts.t));
}

Object cmd::vstring_suffixdist(Args& args, Host& host) {
  TwoTexts texts(args);
  return host.position(texts.s.size() + texts.t.size() - 2 * common_suffix(texts.s, texts.t));
}

Object cmd::vstring_leewt(Args& args, Host& host) {
  std::uint64_t weight = lee_weight(args.string(1, "argument must be a string"));
  return host.whole(static_cast<std::int64_t>(weight));
}

Object cmd::vstring_leedist(Args& args, Host& host) {
  TwoTexts texts(args);
  if (texts.s.size() != texts.t.size()) fail("strings must be of equal length");
  return host.whole(static_cast<std::int64_t>(lee_distance(texts.s, texts.t)));
}

Object cmd::vstring_lcp(Args& args, Host& host) { return common_length(args, host, common_prefix); }

Object cmd::vstring_lcs(Args& args, Host& host) { return common_length(args, host, common_suffix); }

Object cmd::vstring_lcsubseq(Args& args, Host& host) {
  TwoTexts texts(args);
  if (texts.s.size() < 2 || texts.t.size() < 2) return short_common_text(host, texts.s, texts.t);
  return host.text(longest_common_subsequence(texts.s, texts.t));
}

// The lines go to the standard error stream, where scripts look for them.
Object cmd::vstring_lcsubseqlen(Args& args, Host& host) {
  TwoTexts texts(args);
  auto report = [](const ThresholdBug& bug) {
    std::fprintf(stderr, "BUG: kk[hi-1]=%zu, kk[hi]=%zu, j = %zu, hi = %zu\n", bug.below, bug.entry,
                 bug.position, bug.hi);
  };
  return host.position(threshold_length(texts.s, texts.t, report));
}

Object cmd::vstring_lcsubstr(Args& args, Host& host) {
  TwoTexts texts(args);
  if (args[1] == args[2]) return args[1];
  if (texts.s.size() < 2 || texts.t.size() < 2) return short_common_text(host, texts.s, texts.t);
  // Its NUL may come after what other texts use of the shared buffer.
  return host.text(longest_common_substring(texts.s, texts.t), kMostShared + 1);
}

Object cmd::vstring_subseqp(Args& args, Host& host) {
  TwoTexts texts(args);
  return host.boolean(is_subsequence(texts.s, texts.t));
}

}  // namespace vstring
