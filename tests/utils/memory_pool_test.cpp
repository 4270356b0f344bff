#include "vorn/utils/memory_pool.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

namespace vorn {
namespace {

constexpr std::size_t kNodeSize = 24;
using Pool = MemoryPool<kNodeSize>;

// More than the address space holds, yet a product that does not overflow.
constexpr std::uint64_t kTooMany = std::uint64_t{1} << 58;

std::byte* link_of(void* node) {
  return *static_cast<std::byte**>(node);
}

TEST(MemoryPool, ChunksDoubleFrom16NodesAndStayAt8192FromTheTenthOn) {
  Pool pool;
  for (const std::uint64_t nodes :
       {16, 32, 64, 128, 256, 512, 1024, 2048, 4096, 8192, 8192, 8192}) {
    EXPECT_EQ(pool.get_chunk_nodes(), nodes);
    std::uint64_t linked = 0;
    for (void* node = pool.grow_pool(); node != nullptr; node = link_of(node))
      ++linked;
    EXPECT_EQ(linked, nodes);
  }
}

TEST(MemoryPool, AChunkIsLinkedInAddressOrder) {
  Pool pool;
  auto* node = static_cast<std::byte*>(pool.grow_pool());
  for (int i = 0; i < 15; ++i) {
    ASSERT_EQ(link_of(node), node + kNodeSize);
    node += kNodeSize;
  }
  EXPECT_EQ(link_of(node), nullptr);
}

TEST(MemoryPool, AChunkSetAboveTheLimitIsFollowedByOneAtTheLimit) {
  Pool pool;
  pool.set_chunk_nodes(10000);
  pool.grow_pool();
  EXPECT_EQ(pool.get_chunk_nodes(), 8192U);
}

TEST(MemoryPool, HandsOutTheBlocksOfAChunkBeforeGrowing) {
  Pool pool;
  auto* first = static_cast<std::byte*>(pool.allocate());
  for (std::size_t i = 1; i < 16; ++i) {
    EXPECT_EQ(pool.allocate(), first + i * kNodeSize);
    EXPECT_EQ(pool.get_chunk_nodes(), 32U);
  }
  pool.allocate();
  EXPECT_EQ(pool.get_chunk_nodes(), 64U);
}

TEST(MemoryPool, BlocksAreAlignedToAWord) {
  Pool pool;
  for (int i = 0; i < 100; ++i) {
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(pool.allocate()) % alignof(void*), 0U);
  }
}

TEST(MemoryPool, ReusesTheBlockFreedLastFirst) {
  Pool pool;
  void* a = pool.allocate();
  void* b = pool.allocate();
  void* c = pool.allocate();
  pool.release(a);
  pool.release(c);
  pool.release(b);
  EXPECT_EQ(pool.allocate(), b);
  EXPECT_EQ(pool.allocate(), c);
  EXPECT_EQ(pool.allocate(), a);
}

TEST(MemoryPool, FreedBlocksSpareAChunk) {
  Pool pool;
  std::vector<void*> blocks;
  for (int i = 0; i < 16; ++i)
    blocks.push_back(pool.allocate());
  for (void* block : blocks)
    pool.release(block);
  for (int i = 0; i < 16; ++i)
    pool.allocate();
  EXPECT_EQ(pool.get_chunk_nodes(), 32U);
}

TEST(MemoryPool, AChunkThatCannotBeAllocatedThrowsAndChangesNothing) {
  Pool pool;
  void* first = pool.allocate();
  void* second = pool.allocate();
  pool.set_chunk_nodes(kTooMany);
  EXPECT_THROW(pool.grow_pool(), std::bad_alloc);
  EXPECT_EQ(pool.get_chunk_nodes(), kTooMany);
  pool.release(first);
  EXPECT_EQ(pool.allocate(), first);
  EXPECT_EQ(pool.allocate(), static_cast<std::byte*>(second) + kNodeSize);
}

TEST(MemoryPool, AChunkWhoseSizeInBytesOverflowsThrows) {
  Pool pool;
  // Times 24, this wraps to 8 bytes.
  pool.set_chunk_nodes(0x5555555555555556U / 2);
  EXPECT_THROW(pool.allocate(), std::bad_alloc);
  pool.set_chunk_nodes(UINT64_MAX);
  EXPECT_THROW(pool.allocate(), std::bad_alloc);
  pool.set_chunk_nodes(16);
  EXPECT_NE(pool.allocate(), nullptr);
}

TEST(MemoryPool, GoesOnAfterAFailure) {
  Pool pool;
  for (int i = 0; i < 16; ++i)
    pool.allocate();
  pool.set_chunk_nodes(kTooMany);
  EXPECT_THROW(pool.allocate(), std::bad_alloc);
  pool.set_chunk_nodes(32);
  EXPECT_NE(pool.allocate(), nullptr);
  EXPECT_EQ(pool.get_chunk_nodes(), 64U);
}

}  // namespace
}  // namespace vorn
