// asearch, asearchx, asearchb, asearchxb, isana, ana. Tests: docs/commands/approximate.md,
// tests/transcripts/search/approximate.vt.
#include <algorithm>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "vstring/host/commands.h"
#include "vstring/search/anagrams.h"
#include "vstring/search/approximate.h"
#include "vstring/search/bounded_commands.h"

namespace vstring {
namespace {

enum class Method { ByLength = 0, BitParallel = 1, Column = 2, Table = 3 };

struct Query : BoundedQuery {
  Method method = Method::ByLength;
};

Query read_query(const Args& args) { return {read_bounded_query(args)}; }

// With a method as argument 4.
Query read_query_by_method(const Args& args) {
  Query query = read_query(args);
  std::int32_t method = args.integer32(4, "fourth argument must be 1, 2 or 3");
  if (method < 1 || method > 3) fail("fourth argument must be 1, 2 or 3");
  query.method = static_cast<Method>(method);
  return query;
}

// The column and the table of distances report the same ends, so one algorithm stands for both.
void for_each_end(const Query& query, const ReportEnd& report) {
  bool is_short = query.pattern.size() <= kMaxPrefixedPattern;
  bool is_bit_parallel =
      query.method == Method::BitParallel || (query.method == Method::ByLength && is_short);
  auto search = is_bit_parallel ? prefixed_ends : approximate_ends;
  search(query.pattern, query.text, query.k, report);
}

Object first_end(const Query& query, Host& host) {
  std::size_t first = 0;
  for_each_end(query, [&](std::size_t end) {
    first = end;
    return false;
  });
  return host.position(first);
}

Object all_ends(const Query& query, Host& host) {
  std::vector<Object> ends;
  for_each_end(query, [&](std::size_t end) {
    ends.push_back(host.position(end));
    return true;
  });
  return host.sequence_of(ends);
}

// The words of the list that ana was given last, by key. The list is protected from the collector,
// so that another list can never stand at its place.
class AnagramIndex {
 public:
  /// Makes the index of another list; it is empty when that fails.
  void set_list(const Host& host, Object list) {
    if (list == list_) return;
    HostKernelVector* kv = host.kernel();
    if (list_ != 0) kv->HostGcAllow(std::exchange(list_, 0));
    words_.clear();
    for (Object word : Elements(list)) {
      if (!is_text(word)) fail("second argument must be a list of strings");
    }
    std::vector<Word> words;
    for (Object word : Elements(list)) words.push_back({anagram_key(text_of(word)), word});
    std::stable_sort(words.begin(), words.end(),
                     [](const Word& a, const Word& b) { return a.key < b.key; });
    kv->HostGcProtect(list);
    list_ = list;
    words_ = std::move(words);
  }

  /// The words with this key, in the order of the list.
  std::vector<Object> find(const std::string& key) const {
    std::vector<Object> found;
    auto word = std::lower_bound(words_.begin(), words_.end(), key,
                                 [](const Word& a, const std::string& b) { return a.key < b; });
    for (; word != words_.end() && word->key == key; ++word) found.push_back(word->object);
    return found;
  }

 private:
  struct Word {
    std::string key;
    Object object;
  };
  Object list_ = 0;
  std::vector<Word> words_;
};

}  // namespace

Object cmd::vstring_asearch(Args& args, Host& host) { return first_end(read_query(args), host); }

Object cmd::vstring_asearchx(Args& args, Host& host) { return all_ends(read_query(args), host); }

// Memory that the working columns cannot have is -1 here, where the other commands raise.
Object cmd::vstring_asearchb(Args& args, Host& host) {
  Query query = read_query_by_method(args);
  try {
    return first_end(query, host);
  } catch (const std::bad_alloc&) {
    return host.integer(-1);
  }
}

Object cmd::vstring_asearchxb(Args& args, Host& host) {
  return all_ends(read_query_by_method(args), host);
}

Object cmd::vstring_isana(Args& args, Host& host) {
  Text s = args.string(1, "first argument must be a string");
  Text t = args.string(2, "second argument must be a string");
  return host.boolean(args[1] == args[2] || are_anagrams(s, t));
}

Object cmd::vstring_ana(Args& args, Host& host) {
  static AnagramIndex index;
  Text s = args.string(1, "first argument must be a string");
  if (!args.is_list(2)) fail("second argument must be a list of strings");
  index.set_list(host, args[2]);
  return host.sequence_of(index.find(anagram_key(s)));
}

}  // namespace vstring
