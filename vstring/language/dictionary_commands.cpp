// Dictionaries as commands. Tests: docs/commands/lookup.md, tests/transcripts/language/lookup.vt.
#include <memory>
#include <string>
#include <vector>

#include "vstring/host/commands.h"
#include "vstring/host/options.h"
#include "vstring/language/dictionary.h"

namespace vstring {
namespace {

// What a handle wraps. Freeing a dictionary leaves this for the handle to dispose of.
struct DictionaryHandle {
  std::unique_ptr<Dictionary> dictionary;  // null when freed
  bool is_built_in;
};

// Tells dictionaries from other handles; never called.
void dictionary_tag() {}

Dictionary& built_in_dictionary() {
  static Dictionary dictionary;
  return dictionary;
}

// For the converter and the disposer, which the host calls without it.
HostKernelVector* current_kernel = nullptr;

DictionaryHandle* wrapped_in(Object handle) {
  return static_cast<DictionaryHandle*>(current_kernel->HostForeignData(handle));
}

void dispose(Object handle) { delete wrapped_in(handle); }

// How a handle shows.
Object convert(Object handle) {
  const DictionaryHandle* wrapped = wrapped_in(handle);
  std::size_t size = wrapped->is_built_in             ? built_in_dictionary().size()
                     : wrapped->dictionary != nullptr ? wrapped->dictionary->size()
                                                      : 0;
  std::string text = "dictionary of " + std::to_string(size) + " words";
  return current_kernel->ToHostString(text.c_str());
}

DictionaryHandle& read_handle(const Args& args) {
  void* data = args.foreign(1, dictionary_tag, "first argument must be a dictionary");
  return *static_cast<DictionaryHandle*>(data);
}

Dictionary& read_dictionary(const Args& args) {
  DictionaryHandle& handle = read_handle(args);
  if (handle.is_built_in) return built_in_dictionary();
  if (handle.dictionary == nullptr) fail("dictionary has been freed");
  return *handle.dictionary;
}

// The answer for a word, or the list of answers for a list of words.
Object answers(const Host& host, const Dictionary& dictionary, Object query, const char* message) {
  if (is_text(query)) return host.boolean(dictionary.contains(text_of(query)));
  if (!is_list(query)) fail(message);
  Elements words(query);
  for (Object word : words) {
    if (!is_text(word)) fail(message);
  }
  List result = host.list(words.size());
  for (std::size_t i = 0; i < words.size(); ++i) {
    result.set(i, host.boolean(dictionary.contains(text_of(words[i]))));
  }
  return result.finish();
}

Object occurrences(const Host& host, Dictionary& dictionary, Text text) {
  auto found = dictionary.occurrences(text, HOST_MAX_ELEMENTS + 1);
  if (found.empty()) return host.nothing();
  Sequence result = host.sequence(found.size());
  for (std::size_t i = 0; i < found.size(); ++i) {
    Object word = host.text(dictionary.word(found[i].value));
    result.set(i, host.pair(host.position(std::size_t{found[i].offset} + 1), word));
  }
  return result.object();
}

struct QueryOptions {
  bool inside = false;
};
constexpr BooleanOption<QueryOptions> kQueryOptions[] = {
    {"inside", &QueryOptions::inside,
     "the `inside' value must be either `true' or `false', but received %1"}};

}  // namespace

Object cmd::vstring_dictcreate(Args& args, Host& host) {
  auto handle = std::make_unique<DictionaryHandle>();
  handle->is_built_in = !args.has(1);
  if (args.has(1)) {
    constexpr const char* kNoList = "first argument must be a list of strings";
    std::vector<Text> words;
    for (Object word : args.collection(1, kNoList)) {
      if (!is_text(word)) fail(kNoList);
      words.push_back(text_of(word));
    }
    handle->dictionary = std::make_unique<Dictionary>(std::move(words));
  }
  current_kernel = host.kernel();
  Object object = host.foreign(handle.get(), dictionary_tag, convert, dispose);
  static_cast<void>(handle.release());  // the handle in the host has it now
  return object;
}

Object cmd::vstring_dictquery(Args& args, Host& host) {
  if (!args.has(2)) {
    return answers(host, built_in_dictionary(), args[1],
                   "first argument must be a string or a list of strings");
  }
  Dictionary& dictionary = read_dictionary(args);
  constexpr const char* kNoQuery = "second argument must be a string or a list of strings";
  if (!args.is_string(2) && !args.is_list(2)) fail(kNoQuery);
  QueryOptions options;
  read_options(args, host, 2, kQueryOptions, options);
  if (options.inside) {
    return occurrences(host, dictionary, args.string(2, "second argument must be a string"));
  }
  return answers(host, dictionary, args[2], kNoQuery);
}

Object cmd::vstring_dictsize(Args& args, Host& host) {
  if (!args.has(1)) return host.position(built_in_dictionary().size());
  return host.position(read_dictionary(args).size());
}

// The built-in words stay.
Object cmd::vstring_dictfree(Args& args, Host& host) {
  read_handle(args).dictionary.reset();
  return host.nothing();
}

}  // namespace vstring
