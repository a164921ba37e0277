// The exported automaton: nodes with chains of edges, everything in one pool. The commands use a
// table of their own (pattern_set.h). Tests: tests/unit/automaton_test.cpp.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "vstring/core/text.h"
#include "vstring/search.h"

namespace {

using vstring::byte_of;

constexpr int32_t kInitialLevels = 10;

// A zero-filled record from the pool, or null.
template <class Record>
Record* new_record(AcAutomaton* ac) {
  void* place = pool_alloc(ac->pool, sizeof(Record));
  return place == nullptr ? nullptr : new (place) Record{};
}

AcNode* find_target(const AcNode* node, unsigned char byte) {
  for (const AcEdge* edge = node->edges; edge != nullptr; edge = edge->next) {
    if (edge->byte == byte && edge->target != nullptr) return edge->target;
  }
  return nullptr;
}

// Makes levels[depth] usable.
bool reserve_level(AcAutomaton* ac, int32_t depth) {
  if (depth < ac->levels_capacity) return true;
  auto capacity = static_cast<std::size_t>(ac->levels_capacity) * 2;
  auto** levels = static_cast<AcNode**>(pool_alloc0(ac->pool, capacity, sizeof(AcNode*)));
  if (levels == nullptr) return false;
  std::copy(ac->levels, ac->levels + ac->levels_capacity, levels);
  ac->levels = levels;
  ac->levels_capacity = static_cast<int32_t>(capacity);
  return true;
}

// A new node at this depth, or null.
AcNode* new_node(AcAutomaton* ac, int32_t depth) {
  if (!reserve_level(ac, depth)) return nullptr;
  AcNode* node = new_record<AcNode>(ac);
  if (node == nullptr) return nullptr;
  node->level_next = ac->levels[depth];
  ac->levels[depth] = node;
  return node;
}

AcNode* add_target(AcAutomaton* ac, AcNode* node, unsigned char byte, int32_t depth,
                   int32_t terminal_value) {
  AcNode* target = new_node(ac, depth);
  AcEdge* edge = target == nullptr ? nullptr : new_record<AcEdge>(ac);
  if (edge == nullptr) return nullptr;
  *edge = {node->edges, target, byte, terminal_value};
  node->edges = edge;
  return target;
}

// Puts an output in front of the node's chain.
bool add_output(AcAutomaton* ac, AcNode* node, char* pattern, int32_t value, uint32_t length) {
  AcOutput* output = new_record<AcOutput>(ac);
  if (pattern == nullptr || output == nullptr) return false;
  *output = {node->outputs, pattern, value, length};
  node->outputs = output;
  return true;
}

// Where the automaton goes on at `byte` when it has failed from `node` on; null: the root.
AcNode* follow(AcNode* const* root, const AcNode* node, unsigned char byte) {
  for (; node != nullptr; node = node->failure) {
    if (AcNode* target = find_target(node, byte)) return target;
  }
  return root[byte];
}

bool link_child(AcAutomaton* ac, const AcNode* parent, unsigned char byte, AcNode* child) {
  child->failure = follow(ac->root, parent->failure, byte);
  if (child->failure == nullptr) return true;
  for (const AcOutput* output = child->failure->outputs; output != nullptr; output = output->next) {
    if (!add_output(ac, child, output->pattern, output->value, output->length)) return false;
  }
  return true;
}

}  // namespace

AcAutomaton* ac_init(AcAutomaton* ac) {
  if (ac == nullptr) return nullptr;
  *ac = AcAutomaton{};
  ac->pool = pool_create();
  if (ac->pool == nullptr) return nullptr;
  ac->levels_capacity = kInitialLevels;
  ac->levels = static_cast<AcNode**>(pool_alloc0(ac->pool, kInitialLevels, sizeof(AcNode*)));
  if (ac->levels == nullptr) {
    ac_free(ac);
    return nullptr;
  }
  return ac;
}

AcAutomaton* ac_alloc() {
  auto* ac = static_cast<AcAutomaton*>(std::calloc(1, sizeof(AcAutomaton)));
  if (ac_init(ac) == nullptr) {
    std::free(ac);
    return nullptr;
  }
  return ac;
}

int ac_insert(AcAutomaton* ac, const char* pattern, int32_t value) {
  if (ac == nullptr || ac->pool == nullptr || pattern == nullptr) return 0;
  AcNode*& first = ac->root[byte_of(pattern[0])];
  if (first == nullptr) first = new_node(ac, 1);
  AcNode* node = first;
  std::size_t length = std::strlen(pattern);
  if (length > INT32_MAX / 2) return 0;
  for (std::size_t i = 1; i < length && node != nullptr; ++i) {
    AcNode* target = find_target(node, byte_of(pattern[i]));
    if (target == nullptr) {
      target = add_target(ac, node, byte_of(pattern[i]), static_cast<int32_t>(i) + 1,
                          i + 1 == length ? value : 0);
    }
    node = target;
  }
  if (node == nullptr) return 0;
  if (node->outputs != nullptr) return 1;
  char* copy = pool_strdup(ac->pool, pattern);
  return add_output(ac, node, copy, value, static_cast<uint32_t>(length)) ? 1 : 0;
}

// Breadth first, so that a failure node is finished before the nodes that fail to it.
int ac_prep(AcAutomaton* ac) {
  if (ac == nullptr || ac->pool == nullptr) return 0;
  for (int32_t depth = 1; depth < ac->levels_capacity; ++depth) {
    for (const AcNode* node = ac->levels[depth]; node != nullptr; node = node->level_next) {
      for (const AcEdge* edge = node->edges; edge != nullptr; edge = edge->next) {
        auto byte = static_cast<unsigned char>(edge->byte);
        if (!link_child(ac, node, byte, edge->target)) return 0;
      }
    }
  }
  return 1;
}

int ac_search(AcNode* const* root, const char* text, AcReport report, void* ctx) {
  int calls = 0;
  const AcNode* state = nullptr;
  for (; *text != '\0'; ++text) {
    state = follow(root, state, byte_of(*text));
    if (state == nullptr) continue;
    for (const AcOutput* output = state->outputs; output != nullptr; output = output->next) {
      ++calls;
      if (report(ctx, output->pattern, text + 1 - output->length, output->value) == 0) return calls;
    }
  }
  return calls;
}

void ac_free(AcAutomaton* ac) {
  if (ac == nullptr) return;
  pool_destroy(ac->pool);
  std::free(ac->pool);
  ac->levels = nullptr;
  ac->pool = nullptr;
  ac->levels_capacity = -1;
}
