// A fixed-block allocator.
//
// Blocks come from chunks that double in size, so that a small table stays small and a large one
// allocates rarely. A freed block goes onto an intrusive free list (its own first word is the
// link) and is handed out again before any fresh one. Chunks return to the system only when the
// pool dies, which is what makes handing out a block a two-instruction affair.
#ifndef VORN_UTILS_MEMORY_POOL_H
#define VORN_UTILS_MEMORY_POOL_H

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <new>

namespace vorn {

/// Allocator of blocks of `NodeSize` bytes, aligned to 8 bytes. Not thread-safe.
template <std::size_t NodeSize>
class MemoryPool {
  static_assert(NodeSize >= sizeof(void*) && NodeSize % alignof(void*) == 0,
                "a block must hold the free-list link and keep its successor aligned");

 public:
  MemoryPool() = default;
  ~MemoryPool() {
    while (chunks != nullptr) {
      void* chunk = chunks;
      chunks = next_of(chunk);
      std::free(chunk);
    }
  }
  MemoryPool(const MemoryPool&) = delete;
  MemoryPool& operator=(const MemoryPool&) = delete;

  /// One block: the one freed last or, if none is free, the first of a fresh chunk.
  /// Throws std::bad_alloc and leaves the pool as it was when memory is exhausted.
  void* allocate() {
    void* node = free;
    if (node == nullptr) node = grow_pool();
    // The analyzer does not follow the links that grow_pool writes.
    free = next_of(node);  // NOLINT(clang-analyzer-core.uninitialized.Assign)
    return node;
  }

  /// Gives back a block that `allocate` returned.
  void release(void* node) noexcept { free = ::new (node) void*(free); }

  /// Allocates one chunk and returns its first block; the blocks of the chunk are linked in address
  /// order, the last one to null. Throws std::bad_alloc and changes nothing when memory is short.
  void* grow_pool() {
    const std::uint64_t k = chunk_nodes;
    if (k > (std::numeric_limits<std::size_t>::max() - kHeader) / NodeSize) throw std::bad_alloc();
    void* chunk = std::malloc(k * NodeSize + kHeader);
    if (chunk == nullptr) throw std::bad_alloc();
    next_of(chunk) = chunks;
    chunks = chunk;

    const auto grown = static_cast<std::uint64_t>(static_cast<float>(k) * growth);
    chunk_nodes = max_chunk_nodes != 0 && grown > max_chunk_nodes ? max_chunk_nodes : grown;

    auto* first = static_cast<std::byte*>(chunk) + kHeader;
    auto* last = first + (k - 1) * NodeSize;
    for (auto* node = first; node != last; node += NodeSize)
      next_of(node) = node + NodeSize;
    next_of(last) = nullptr;
    return first;
  }

  /// Number of blocks that the next chunk will hold: 16, 32, ..., 8192, 8192, ...
  std::uint64_t get_chunk_nodes() const noexcept { return chunk_nodes; }

  /// Sets the size of the next chunk in blocks (at least 1).
  void set_chunk_nodes(std::uint64_t n) noexcept {
    assert(n > 0);
    chunk_nodes = n;
  }

 private:
  static constexpr std::size_t kHeader = sizeof(void*);  // link to the chunk allocated before

  static void*& next_of(void* block) noexcept { return *static_cast<void**>(block); }

  std::uint64_t chunk_nodes = 16;        // blocks in the next chunk
  float growth = 2.0F;                   // factor from one chunk to the next
  std::uint64_t max_chunk_nodes = 8192;  // upper limit of chunk_nodes; 0: no limit
  void* chunks = nullptr;                // all chunks, newest first
  void* free = nullptr;                  // free blocks
};

}  // namespace vorn

#endif
