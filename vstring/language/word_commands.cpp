// Words and sentences as commands. Tests: docs/commands/language.md,
// tests/transcripts/language/words.vt.
#include "vstring/host/commands.h"
#include "vstring/language/sentences.h"
#include "vstring/language/words.h"

namespace vstring {

Object cmd::vstring_sent(Args& args, Host& host) {
  Text s = args.string(1, "first argument must be a string");
  Sequence sentences = host.sequence(count_sentences(s));
  std::size_t i = 0;
  for_each_sentence(s, [&](Text sentence) { sentences.set(i++, host.text(sentence)); });
  return sentences.object();
}

Object cmd::vstring_wc(Args& args, Host& host) {
  WordCount count = count_words(args.string(1, "first argument must be a string"));
  Object words = host.position(count.words);
  if (!args.has(2)) return words;
  return host.kernel()->HostCallProcedure(args[2], 2, words, host.position(count.lines));
}

Object cmd::vstring_words(Args& args, Host& host) {
  Text s = args.string(1, "argument must be a string");
  List words = host.list(count_words(s).words);
  std::size_t i = 0;
  for_each_word(s, [&](Text word) { words.set(i++, host.text(word)); });
  return words.finish();
}

}  // namespace vstring
