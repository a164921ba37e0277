// The four kinds of linked list: of words, strings, integers and integer pairs.
// Tests: tests/unit/containers_test.cpp.
#include <cstdio>
#include <cstdlib>
#include <new>

#include "vstring/containers.h"

namespace {

template <class AnyList>
AnyList* init(AnyList* list) {
  if (list == nullptr) return nullptr;
  *list = AnyList{};
  list->pool = pool_create();
  return list->pool == nullptr ? nullptr : list;
}

template <class AnyList>
AnyList* create() {
  void* block = std::malloc(sizeof(AnyList));
  auto* list = block == nullptr ? nullptr : new (block) AnyList;
  if (init(list) == nullptr) {
    std::free(block);
    return nullptr;
  }
  return list;
}

// Releases the nodes. The pool's handle is the caller's, who finds it where it was.
template <class AnyList>
AnyList* release(AnyList* list) {
  if (list == nullptr) return nullptr;
  Pool* pool = list->pool;
  pool_destroy(pool);
  *list = AnyList{};
  list->pool = pool;
  return list;
}

template <class Node>
Node* new_node(Pool* pool, const Node& node) {
  void* place = pool_alloc(pool, sizeof(Node));
  return place == nullptr ? nullptr : new (place) Node(node);
}

// Links a node at the tail; a null one is out of memory and leaves the list as it is.
template <class AnyList, class Node>
AnyList* link_last(AnyList* list, Node* node) {
  if (node == nullptr) return nullptr;
  (list->head == nullptr ? list->head : list->tail->next) = node;
  list->tail = node;
  return list;
}

template <class AnyList, class Node>
AnyList* append_counted(AnyList* list, const Node& node) {
  if (list == nullptr || link_last(list, new_node(list->pool, node)) == nullptr) return nullptr;
  ++list->count;
  return list;
}

// Calls visit(node) from the head: 0 as soon as a call gives 0, else 1.
template <class AnyList, class Visit>
uint32_t each(const AnyList* list, Visit visit) {
  for (const auto* node = list->head; node != nullptr; node = node->next) {
    if (visit(*node) == 0) return 0;
  }
  return 1;
}

}  // namespace

List* list_create() { return create<List>(); }
List* list_init(List* list) { return init(list); }
List* list_free(List* list) { return release(list); }
uint32_t list_size(const List* list) { return list == nullptr ? LIST_NO_LIST : list->count; }

List* list_append(List* list, uintptr_t value) {
  return append_counted(list, ListNode{nullptr, value});
}

// The count stays: users of the count have always meant the appended values.
List* list_prepend(List* list, uintptr_t value) {
  if (list == nullptr) return nullptr;
  ListNode* node = new_node(list->pool, ListNode{list->head, value});
  if (node == nullptr) return nullptr;
  list->head = node;
  if (list->tail == nullptr) list->tail = node;
  return list;
}

uint32_t list_iter(const List* list, int (*function)(uintptr_t, void*), void* data) {
  if (list == nullptr || function == nullptr) return LIST_NO_LIST;
  return each(list, [=](const ListNode& node) { return function(node.value, data); });
}

StringList* sl_create() { return create<StringList>(); }
StringList* sl_init(StringList* list) { return init(list); }
StringList* sl_free(StringList* list) { return release(list); }

StringList* sl_append(StringList* list, const char* text) {
  if (list == nullptr) return nullptr;
  char* copy = pool_strdup(list->pool, text);
  if (copy == nullptr) return nullptr;
  return link_last(list, new_node(list->pool, StringNode{nullptr, copy}));
}

uint32_t sl_iter(const StringList* list, int (*function)(const char*, void*), void* data) {
  if (list == nullptr || function == nullptr) return LIST_NO_LIST;
  return each(list, [=](const StringNode& node) { return function(node.text, data); });
}

StringList* sl_dump(FILE* stream, StringList* list) {
  if (list == nullptr) return nullptr;
  each(list, [=](const StringNode& node) {
    return std::fprintf(stream, ">>|%s|\n", node.text) < 0 ? 0 : 1;
  });
  return list;
}

IntegerList* il_create() { return create<IntegerList>(); }
IntegerList* il_init(IntegerList* list) { return init(list); }
IntegerList* il_free(IntegerList* list) { return release(list); }

IntegerList* il_append(IntegerList* list, int32_t value) {
  return append_counted(list, IntegerNode{nullptr, value});
}

uint32_t il_iter(const IntegerList* list, int (*function)(int32_t, void*), void* data) {
  if (list == nullptr || function == nullptr) return LIST_NO_LIST;
  return each(list, [=](const IntegerNode& node) { return function(node.value, data); });
}

IntegerList* il_dump(FILE* stream, IntegerList* list) {
  if (list == nullptr) return nullptr;
  each(list, [=](const IntegerNode& node) {
    return std::fprintf(stream, ">>|%d|\n", node.value) < 0 ? 0 : 1;
  });
  return list;
}

IntegerPairList* ipl_create() { return create<IntegerPairList>(); }
IntegerPairList* ipl_init(IntegerPairList* list) { return init(list); }
IntegerPairList* ipl_free(IntegerPairList* list) { return release(list); }

IntegerPairList* ipl_append(IntegerPairList* list, int32_t first, int32_t second) {
  return append_counted(list, IntegerPairNode{nullptr, first, second});
}

IntegerPairList* ipl_appendv(IntegerPairList* list, const int32_t* pair) {
  return pair == nullptr ? nullptr : ipl_append(list, pair[0], pair[1]);
}

uint32_t ipl_iter(const IntegerPairList* list, int (*function)(int32_t, int32_t, void*),
                  void* data) {
  if (list == nullptr || function == nullptr) return LIST_NO_LIST;
  return each(list,
              [=](const IntegerPairNode& node) { return function(node.first, node.second, data); });
}

IntegerPairList* ipl_dump(FILE* stream, IntegerPairList* list) {
  if (list == nullptr) return nullptr;
  each(list, [=](const IntegerPairNode& node) {
    return std::fprintf(stream, ">>|%d,%d|\n", node.first, node.second) < 0 ? 0 : 1;
  });
  return list;
}
