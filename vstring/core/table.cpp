// The hash table. Tests: tests/unit/containers_test.cpp.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "vstring/containers.h"

namespace {

// The entry of a key in its chain, or null.
TableEntry* find_in_chain(TableEntry* entry, const char* key) {
  while (entry != nullptr && std::strcmp(entry->key, key) != 0) entry = entry->next;
  return entry;
}

uint32_t chain_length(const TableEntry* entry) {
  uint32_t length = 0;
  for (; entry != nullptr; entry = entry->next) ++length;
  return length;
}

}  // namespace

// Bytes enter as signed, and what is shifted out at the top comes back at bit 5: tables written by
// this function depend on it.
uint32_t table_hash(const char* key) {
  uint32_t hash = 0;
  const auto* byte = reinterpret_cast<const signed char*>(key);
  for (int i = 0; i < 4 && *byte != 0; ++i, ++byte) {
    hash = hash << 8 | static_cast<uint32_t>(int32_t{*byte});
  }
  for (; *byte != 0; ++byte) {
    hash = (hash << 1 | hash >> 27) ^ static_cast<uint32_t>(int32_t{*byte});
  }
  return hash;
}

Table* table_new(uint32_t size) {
  uint32_t num_buckets = 0;
  if (__builtin_add_overflow(size, size % 2 == 1 ? 5U : 6U, &num_buckets)) return nullptr;
  void* block = std::malloc(sizeof(Table));
  if (block == nullptr) return nullptr;
  auto* table = new (block) Table{nullptr, num_buckets, 0, pool_create()};
  table->buckets =
      static_cast<TableEntry**>(pool_alloc0(table->pool, num_buckets, sizeof(TableEntry*)));
  if (table->buckets == nullptr) {
    table_free(table);
    return nullptr;
  }
  return table;
}

TableEntry* table_search(const Table* table, const char* key) {
  if (table == nullptr || key == nullptr) return nullptr;
  return find_in_chain(table->buckets[table_hash(key) % table->num_buckets], key);
}

TableEntry* table_insert(Table* table, const char* key, uintptr_t value) {
  if (table == nullptr || key == nullptr) return nullptr;
  TableEntry*& chain = table->buckets[table_hash(key) % table->num_buckets];
  if (TableEntry* known = find_in_chain(chain, key)) {
    known->value = value;
    return known;
  }
  void* place = pool_alloc(table->pool, sizeof(TableEntry));
  if (place == nullptr) return nullptr;
  chain = new (place) TableEntry{chain, 0, key, value};
  ++table->num_entries;
  return chain;
}

uint32_t table_iter(const Table* table, int (*function)(const char*, uintptr_t)) {
  if (table == nullptr || function == nullptr) return 0;
  for (uint32_t i = 0; i < table->num_buckets; ++i) {
    for (const TableEntry* entry = table->buckets[i]; entry != nullptr; entry = entry->next) {
      if (function(entry->key, entry->value) == 0) return 0;
    }
  }
  return 1;
}

int table_stats(const Table* table, uint32_t* used_buckets, uint32_t* longest_chain,
                double* average_chain) {
  if (table == nullptr || used_buckets == nullptr || longest_chain == nullptr ||
      average_chain == nullptr) {
    return 0;
  }
  *used_buckets = 0;
  *longest_chain = 0;
  double total = 0.0;
  for (uint32_t i = 0; i < table->num_buckets; ++i) {
    uint32_t length = chain_length(table->buckets[i]);
    if (length > 0) ++*used_buckets;
    *longest_chain = std::max(*longest_chain, length);
    total += length;
  }
  *average_chain = total / table->num_buckets;
  return 1;
}

void table_free(Table* table) {
  if (table == nullptr) return;
  pool_destroy(table->pool);
  std::free(table->pool);
  std::free(table);
}
