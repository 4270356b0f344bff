#include "tools/memory.h"

#include <gmp.h>
#ifdef VORN_MIMALLOC
#include <mimalloc.h>
#else
#include <malloc.h>
#endif

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace vorn::tools {
namespace {

// Half of what a check takes are clauses of three and four literals and lists of a few words. The
// system's allocator has a word of its own in front of each block, and rounds up to sixteen bytes.
#ifdef VORN_MIMALLOC
void* get_block(std::size_t size) {
  return mi_malloc(size);
}
void* move_block(void* block, std::size_t size) {
  return mi_realloc(block, size);
}
void free_block(void* block) {
  mi_free(block);
}
std::size_t get_size(void* block) {
  return mi_usable_size(block);
}
#else
void* get_block(std::size_t size) {
  return std::malloc(size);
}
void* move_block(void* block, std::size_t size) {
  return std::realloc(block, size);
}
void free_block(void* block) {
  std::free(block);
}
std::size_t get_size(void* block) {
  return malloc_usable_size(block);
}
#endif

std::atomic<std::uint64_t> limit = 0;  // bytes; 0 is none
/// Blocks that were allocated before the limit was set may be freed after, so it can go below zero
/// by the little that a command has at its start.
std::atomic<std::int64_t> used = 0;

constexpr double kMostMegabytes = 1e9;
/// Below, there would be no room to say that memory has ended.
constexpr std::uint64_t kLeastLimit = std::uint64_t{1} << 16;  // bytes

constexpr std::uint64_t kReservedPart = 16;  // one of so many is left where long work stops

std::uint64_t get_used() {
  const std::int64_t bytes = used.load(std::memory_order_relaxed);
  return bytes < 0 ? 0 : static_cast<std::uint64_t>(bytes);
}

bool is_limited() {
  return limit.load(std::memory_order_relaxed) != 0;
}

bool has_room(std::size_t size) {
  const std::uint64_t bound = limit.load(std::memory_order_relaxed);
  return bound == 0 || (size <= bound && get_used() <= bound - size);
}

/// The block counts with the size that the system gave it.
void count(void* block, std::int64_t sign) {
  if (!is_limited()) return;
  used.fetch_add(sign * static_cast<std::int64_t>(get_size(block)), std::memory_order_relaxed);
}

void* allocate(std::size_t size) {
  if (!has_room(size)) throw std::bad_alloc();
  void* block = get_block(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  count(block, 1);
  return block;
}

void release(void* block) {
  if (block == nullptr) return;
  count(block, -1);
  free_block(block);
}

void* allocate_number(std::size_t size) {
  return allocate(size);
}

void* reallocate_number(void* block, std::size_t old_size, std::size_t new_size) {
  if (new_size > old_size && !has_room(new_size - old_size)) throw std::bad_alloc();
  count(block, -1);
  void* moved = move_block(block, new_size);
  count(moved == nullptr ? block : moved, 1);
  if (moved == nullptr) throw std::bad_alloc();
  return moved;
}

void release_number(void* block, std::size_t /*size*/) {
  release(block);
}

}  // namespace

void guard_number_memory() {
  mp_set_memory_functions(allocate_number, reallocate_number, release_number);
}

void limit_memory(double megabytes) {
  if (megabytes > kMostMegabytes) return;
  used.store(0, std::memory_order_relaxed);
  limit.store(std::max(kLeastLimit, static_cast<std::uint64_t>(megabytes * 1e6)),
              std::memory_order_relaxed);
}

bool is_memory_short() {
  const std::uint64_t bound = limit.load(std::memory_order_relaxed);
  return bound != 0 && get_used() > bound - bound / kReservedPart;
}

}  // namespace vorn::tools

// The other forms of new and delete come down to these; to the sanitizers each is one of their own,
// so what is released here has to be allocated here.

void* operator new(std::size_t size) {
  return vorn::tools::allocate(size);
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  try {
    return vorn::tools::allocate(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void operator delete(void* block) noexcept {
  vorn::tools::release(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept {
  vorn::tools::release(block);
}
