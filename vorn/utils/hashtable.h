// A chained hash table whose nodes come from a MemoryPool.
//
// Bucket counts are primes, each about twice the one before, and the table goes up that list one
// step at a time when its load passes 0.7. It never shrinks: the encoder empties its tables and
// fills them again to about the same size. Erased nodes are reused first, so that backtracking and
// going forward again costs no allocation.
#ifndef VORN_UTILS_HASHTABLE_H
#define VORN_UTILS_HASHTABLE_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

#include "vorn/utils/memory_pool.h"

namespace vorn::hsh {

/// Hash functor of a key type; each key type specialises it beside its own definition.
template <typename Key>
struct hash;

/// Key extractor of a pair: its first member.
template <typename Pair>
struct GetKey_pair {
  /// The key of a pair.
  const typename Pair::first_type& operator()(const Pair& pair) const noexcept {
    return pair.first;
  }
};

/// The bucket counts, smallest first.
inline constexpr std::array<std::uint64_t, 28> kBucketCounts = {
    31,       73,        151,       313,       643,        1291,       2593,
    5233,     10501,     21013,     42073,     84181,      168451,     337219,
    674701,   1349473,   2699299,   5398891,   10798093,   21596719,   43193641,
    86387383, 172775299, 345550609, 691101253, 1382202559, 2764405229, 4294867387};

/// Map from `Key` to the rest of `Value`, a pair from which `GetKey` takes the key.
/// Nodes are recycled without running destructors.
template <typename Value, typename GetKey, typename Key, typename Hash = hash<Key>,
          typename Equal = std::equal_to<Key>>
class Hashtable {
  static_assert(std::is_trivially_destructible_v<Value> &&
                std::is_nothrow_copy_constructible_v<Value>);

 public:
  /// An entry.
  struct Node {
    Node* next;   // of the same bucket
    Value value;  // the pair
  };

  Hashtable() : buckets(kBucketCounts.front(), nullptr) {}
  ~Hashtable() = default;  // the pool frees the nodes with their chunks
  Hashtable(const Hashtable&) = delete;
  Hashtable& operator=(const Hashtable&) = delete;

  /// Finds the node of the pair's key or inserts the whole pair. Returns true when the node is new.
  /// `bucket` and `node` receive the key's bucket index and node in both cases.
  /// The load is tested first, so that even a key that is present can make the table grow.
  /// Throws std::bad_alloc (or std::length_error) when memory is short.
  bool do_insert(const Value& value, std::size_t* bucket, Node** node) {
    const float load = static_cast<float>(count) / static_cast<float>(buckets.size());
    if (static_cast<double>(load) > kMaxLoad) rehash(buckets.size() + 1);

    const Key& key = GetKey()(value);
    *bucket = bucket_of(key);
    for (Node* n = buckets[*bucket]; n != nullptr; n = n->next) {
      if (Equal()(GetKey()(n->value), key)) {
        *node = n;
        return false;
      }
    }
    *node = new (pool.allocate()) Node{buckets[*bucket], value};
    buckets[*bucket] = *node;
    ++count;
    return true;
  }

  /// Find-or-insert for callers who need the node only.
  Node* insert(const Value& value) {
    std::size_t bucket = 0;
    Node* node = nullptr;
    do_insert(value, &bucket, &node);
    return node;
  }

  /// The node of `key`, or null. An empty table answers without hashing.
  const Node* find(const Key& key) const {
    if (count == 0) return nullptr;
    for (const Node* n = buckets[bucket_of(key)]; n != nullptr; n = n->next) {
      if (Equal()(GetKey()(n->value), key)) return n;
    }
    return nullptr;
  }

  /// Removes `key`; its node is the next one that an insertion uses. Returns whether it was there.
  bool erase(const Key& key) {
    if (count == 0) return false;
    for (Node** link = &buckets[bucket_of(key)]; *link != nullptr; link = &(*link)->next) {
      Node* node = *link;
      if (!Equal()(GetKey()(node->value), key)) continue;
      *link = node->next;
      --count;
      pool.release(node);
      return true;
    }
    return false;
  }

  /// Makes the bucket count at least `n`: the smallest prime of the list that is, or the largest.
  /// If the new bucket array cannot be allocated the exception passes on and the table, left
  /// without buckets, can only be destroyed.
  void rehash(std::uint64_t n) {
    if (buckets.size() >= n) return;
    const auto* prime = std::lower_bound(kBucketCounts.begin(), kBucketCounts.end(), n);
    const std::uint64_t size = prime == kBucketCounts.end() ? kBucketCounts.back() : *prime;

    const std::vector<Node*> old = std::move(buckets);
    buckets = std::vector<Node*>(size, nullptr);
    for (Node* chain : old) {
      while (chain != nullptr) {
        Node* node = chain;
        chain = node->next;
        Node*& head = buckets[bucket_of(GetKey()(node->value))];
        node->next = head;
        head = node;
      }
    }
  }

  /// Removes all entries and keeps the bucket count. With `renew_buckets` the bucket array itself
  /// is replaced by a fresh one of the same length.
  void clear(bool renew_buckets) {
    if (count != 0) {
      for (Node*& head : buckets) {
        while (head != nullptr) {
          Node* node = head;
          head = node->next;
          pool.release(node);
        }
      }
    }
    count = 0;
    if (renew_buckets) std::vector<Node*>(buckets.size(), nullptr).swap(buckets);
  }

  /// Calls `visit` with each entry, in an order that means nothing.
  template <class Visit>
  void for_each(const Visit& visit) const {
    for (const Node* chain : buckets) {
      for (const Node* n = chain; n != nullptr; n = n->next)
        visit(n->value);
    }
  }

  /// Number of entries, and of buckets.
  std::uint64_t size() const noexcept { return count; }
  std::size_t bucket_count() const noexcept { return buckets.size(); }

 private:
  static constexpr double kMaxLoad = 0.7;

  std::size_t bucket_of(const Key& key) const { return Hash()(key) % buckets.size(); }

  MemoryPool<sizeof(Node)> pool;
  std::vector<Node*> buckets;
  std::uint64_t count = 0;
};

}  // namespace vorn::hsh

#endif
