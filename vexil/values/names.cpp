// Names: one object for each text, found through a hash table whose chains run through the objects
// themselves (word 2); word 1 is the name's value. A name stays for good: code refers to it
// anywhere.
#include "vexil/values/names.h"

#include <array>
#include <functional>
#include <vector>

namespace vexil {
namespace {

constexpr std::size_t kValue = 1;
constexpr std::size_t kNextInChain = 2;

struct Table {
  std::vector<Object> chains = std::vector<Object>(1024, 0);
  std::size_t size = 0;
  std::array<Object, 3> constants{};  // FAIL, false, true: what make_boolean(truth) gives, from -1
};
Table table;

Object& chain_of(std::string_view text) {
  return table.chains[std::hash<std::string_view>()(text) % table.chains.size()];
}

void link(Object name) {
  Object& chain = chain_of(text(name));
  host_words(name)[kNextInChain] = chain;
  chain = name;
}

void grow() {
  std::vector<Object> old(table.chains.size() * 2, 0);
  old.swap(table.chains);
  for (Object first : old) {
    for (Object name = first; name != 0;) {
      const Object next = host_words(name)[kNextInChain];
      link(name);
      name = next;
    }
  }
}

bool is_constant(Object name) {
  for (Object constant : table.constants) {
    if (name == constant) return true;
  }
  return false;
}

}  // namespace

void init_names() {
  table = Table();
  table.constants = {make_name("FAIL"), make_name("false"), make_name("true")};
  heap().add_roots([](const Heap::Mark& mark) { for_each_name(mark); });
}

void shut_names() { table = Table(); }

Object make_name(std::string_view text) {
  for (Object name = chain_of(text); name != 0; name = host_words(name)[kNextInChain]) {
    if (vexil::text(name) == text) return name;
  }
  if (table.size >= table.chains.size()) grow();
  const Object name = make_text(HOST_TYPE_NAME, text);
  link(name);
  ++table.size;
  return name;
}

Object make_boolean(int truth) { return table.constants[truth < 0 ? 0U : truth == 0 ? 1U : 2U]; }

void for_each_name(const std::function<void(Object)>& visit) {
  for (Object first : table.chains) {
    for (Object name = first; name != 0; name = host_words(name)[kNextInChain]) visit(name);
  }
}

Object value_of(Object name) { return host_words(name)[kValue]; }

void assign(Object name, Object value) {
  if (host_type(name) != HOST_TYPE_NAME) raise_error("cannot assign to %1", {name});
  if (is_constant(name)) raise_error("cannot assign to the constant %1", {name});
  host_words(name)[kValue] = value;
}

}  // namespace vexil
