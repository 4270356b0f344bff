#include "vorn/utils/hashtable.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <random>
#include <unordered_map>
#include <utility>
#include <vector>

namespace {

std::size_t allocations = 0;    // calls of operator new
bool allocations_fail = false;  // whether it throws

}  // namespace

// The bucket arrays come from here; the nodes come from malloc. Inlined, these would make the
// compiler see memory that `free` takes and `new` gave.
[[gnu::noinline]] void* operator new(std::size_t size) {
  ++allocations;
  if (allocations_fail) throw std::bad_alloc();
  if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* p) noexcept {
  std::free(p);
}
[[gnu::noinline]] void operator delete(void* p, std::size_t) noexcept {
  std::free(p);
}

namespace vorn::hsh {
namespace {

std::size_t hashed = 0;  // keys hashed so far

/// Keys hash to themselves, so that a test chooses buckets.
struct Identity {
  std::size_t operator()(std::uint64_t key) const noexcept {
    ++hashed;
    return key;
  }
};

using Pair = std::pair<std::uint64_t, std::uint64_t>;
using Table = Hashtable<Pair, GetKey_pair<Pair>, std::uint64_t, Identity>;
static_assert(sizeof(Table::Node) == 24);

enum class Kind : std::uint32_t { a, b };
using Method = void (Table::*)();
using MethodPair = std::pair<Kind, Method>;
static_assert(sizeof(Hashtable<MethodPair, GetKey_pair<MethodPair>, Kind, Identity>::Node) == 32);

// The pool of a table, which is private: an explicit instantiation may name it.
template <auto member>
struct PoolAccess {
  friend auto& pool_of(Table& table) { return table.*member; }
};
template struct PoolAccess<&Table::pool>;
auto& pool_of(Table& table);

/// While it lives, operator new throws.
class OutOfMemory {
 public:
  OutOfMemory() { allocations_fail = true; }
  ~OutOfMemory() { allocations_fail = false; }
  OutOfMemory(const OutOfMemory&) = delete;
  OutOfMemory& operator=(const OutOfMemory&) = delete;
};

template <typename Action>
bool throws_bad_alloc(Action action) {
  try {
    action();
  } catch (const std::bad_alloc&) {
    return true;
  }
  return false;
}

void fill(Table& table, std::uint64_t n) {
  for (std::uint64_t key = 0; key < n; ++key)
    table.insert({key, key + 1000});
}

void expect_filled(const Table& table, std::uint64_t n) {
  ASSERT_EQ(table.size(), n);
  for (std::uint64_t key = 0; key < n; ++key) {
    const Table::Node* node = table.find(key);
    ASSERT_NE(node, nullptr) << key;
    EXPECT_EQ(node->value, Pair(key, key + 1000));
  }
  EXPECT_EQ(table.find(n), nullptr);
}

TEST(Hashtable, StartsWith31Buckets) {
  const Table table;
  EXPECT_EQ(table.bucket_count(), 31U);
  EXPECT_EQ(table.size(), 0U);
}

TEST(Hashtable, BucketCountsAreThePrimesOfTheList) {
  for (std::size_t i = 0; i < kBucketCounts.size(); ++i) {
    const std::uint64_t n = kBucketCounts[i];
    for (std::uint64_t d = 2; d * d <= n; ++d)
      ASSERT_NE(n % d, 0U) << n;
    if (i > 0) {
      EXPECT_GT(n, kBucketCounts[i - 1]);
    }
  }
  EXPECT_EQ(kBucketCounts.back(), 0xFFFE79BBU);
}

TEST(Hashtable, InsertReportsWhetherTheKeyIsNewWithItsBucketAndNode) {
  Table table;
  std::size_t bucket = 0;
  Table::Node* node = nullptr;
  EXPECT_TRUE(table.do_insert({40, 7}, &bucket, &node));
  EXPECT_EQ(bucket, 9U);
  EXPECT_EQ(node->value, Pair(40, 7));

  std::size_t again = 0;
  Table::Node* same = nullptr;
  EXPECT_FALSE(table.do_insert({40, 8}, &again, &same));
  EXPECT_EQ(again, 9U);
  EXPECT_EQ(same, node);
  EXPECT_EQ(node->value.second, 7U) << "a key that is present keeps its value";
  EXPECT_EQ(table.size(), 1U);
}

TEST(Hashtable, CallersOverwriteTheValueInTheNode) {
  Table table;
  table.insert({1, 0})->value.second = 5;
  EXPECT_EQ(table.find(1)->value.second, 5U);
}

TEST(Hashtable, GrowsTo73BucketsBeforeThe23rdKey) {
  Table table;
  fill(table, 22);
  EXPECT_EQ(table.bucket_count(), 31U);
  std::size_t bucket = 0;
  Table::Node* node = nullptr;
  EXPECT_TRUE(table.do_insert({72, 0}, &bucket, &node));
  EXPECT_EQ(table.bucket_count(), 73U);
  EXPECT_EQ(bucket, 72U) << "the bucket is that of the grown table";
  EXPECT_EQ(table.size(), 23U);
}

TEST(Hashtable, APresentKeyCanMakeTheTableGrow) {
  Table table;
  fill(table, 22);
  std::size_t bucket = 0;
  Table::Node* node = nullptr;
  EXPECT_FALSE(table.do_insert({3, 0}, &bucket, &node));
  EXPECT_EQ(table.bucket_count(), 73U);
  expect_filled(table, 22);
}

TEST(Hashtable, LookupAndEraseNeverGrow) {
  Table table;
  fill(table, 22);
  table.find(3);
  table.erase(100);
  EXPECT_EQ(table.bucket_count(), 31U);
}

TEST(Hashtable, GrowsOneStepAtATimeWhereTheLoadPassesSevenTenths) {
  Table table;
  std::size_t step = 0;
  for (std::uint64_t key = 0; key < 30000; ++key) {
    const double load = static_cast<float>(table.size()) / static_cast<float>(table.bucket_count());
    if (load > 0.7) ++step;
    table.insert({key, key + 1000});
    ASSERT_EQ(table.bucket_count(), kBucketCounts[step]) << key;
  }
  EXPECT_EQ(table.bucket_count(), 84181U);
  expect_filled(table, 30000);
}

TEST(Hashtable, RehashTakesTheSmallestPrimeThatSuffices) {
  Table table;
  fill(table, 5);
  table.rehash(31);
  EXPECT_EQ(table.bucket_count(), 31U);
  table.rehash(32);
  EXPECT_EQ(table.bucket_count(), 73U);
  table.rehash(151);
  EXPECT_EQ(table.bucket_count(), 151U);
  table.rehash(1000);
  EXPECT_EQ(table.bucket_count(), 1291U);
  table.rehash(31);
  EXPECT_EQ(table.bucket_count(), 1291U) << "a table never shrinks";
  expect_filled(table, 5);
}

TEST(Hashtable, RehashKeepsTheNodes) {
  Table table;
  const Table::Node* node = table.insert({5, 6});
  table.rehash(1000);
  EXPECT_EQ(table.find(5), node);
}

TEST(Hashtable, AnEmptyTableAnswersWithoutHashing) {
  Table table;
  table.insert({1, 1});
  table.erase(1);
  hashed = 0;
  EXPECT_EQ(table.find(1), nullptr);
  EXPECT_FALSE(table.erase(1));
  EXPECT_EQ(hashed, 0U);
}

TEST(Hashtable, ClearKeepsTheBucketCountAndTheArray) {
  Table table;
  fill(table, 100);
  const std::size_t before = allocations;
  table.clear(false);
  EXPECT_EQ(allocations, before);
  EXPECT_EQ(table.bucket_count(), 151U);
  EXPECT_EQ(table.size(), 0U);
  EXPECT_EQ(table.find(5), nullptr);
  fill(table, 100);
  expect_filled(table, 100);
}

TEST(Hashtable, ClearWithRenewalReplacesTheArrayByOneOfTheSameLength) {
  Table table;
  fill(table, 100);
  const std::size_t before = allocations;
  table.clear(true);
  EXPECT_EQ(allocations, before + 1);
  EXPECT_EQ(table.bucket_count(), 151U);
  EXPECT_EQ(table.size(), 0U);
  EXPECT_EQ(table.find(5), nullptr);
  fill(table, 100);
  expect_filled(table, 100);
}

TEST(Hashtable, ClearingAnEmptyTableIsHarmless) {
  Table table;
  table.clear(false);
  table.clear(true);
  EXPECT_EQ(table.bucket_count(), 31U);
  fill(table, 3);
  expect_filled(table, 3);
}

TEST(Hashtable, ClearedNodesAreReusedBeforeFreshOnes) {
  Table table;
  fill(table, 16);
  EXPECT_EQ(pool_of(table).get_chunk_nodes(), 32U);
  table.clear(false);
  fill(table, 16);
  EXPECT_EQ(pool_of(table).get_chunk_nodes(), 32U);
}

TEST(Hashtable, ClearFreesEachChainFromItsHead) {
  Table table;
  const Table::Node* first = table.insert({0, 0});
  const Table::Node* second = table.insert({31, 0});
  const Table::Node* third = table.insert({1, 0});
  table.clear(false);
  // Bucket 0 held the second node before the first, bucket 1 the third.
  EXPECT_EQ(table.insert({5, 0}), third);
  EXPECT_EQ(table.insert({6, 0}), first);
  EXPECT_EQ(table.insert({7, 0}), second);
}

TEST(Hashtable, RehashPushesTheNodesOfTheOldBucketsInOrder) {
  Table table;
  const Table::Node* later = table.insert({73, 0});  // bucket 11 of 31, 0 of 73
  const Table::Node* earlier = table.insert({0, 0});
  table.rehash(73);
  table.clear(false);
  // The node of the higher old bucket came to the head, and so was freed first.
  EXPECT_EQ(table.insert({5, 0}), earlier);
  EXPECT_EQ(table.insert({6, 0}), later);
}

TEST(Hashtable, TheNextInsertionReusesTheErasedNode) {
  Table table;
  fill(table, 10);
  const Table::Node* node = table.find(4);
  EXPECT_TRUE(table.erase(4));
  EXPECT_EQ(table.size(), 9U);
  EXPECT_EQ(table.find(4), nullptr);
  EXPECT_EQ(table.insert({99, 1}), node);
  EXPECT_EQ(node->value, Pair(99, 1));
  EXPECT_EQ(table.find(99), node);
}

TEST(Hashtable, ErasesAnywhereInAChain) {
  // The chain of bucket 0 is 93, 62, 31, 0.
  for (const std::uint64_t victim : {93, 62, 31, 0}) {
    Table table;
    for (const std::uint64_t key : {0, 31, 62, 93})
      table.insert({key, key});
    EXPECT_TRUE(table.erase(victim));
    EXPECT_FALSE(table.erase(victim));
    EXPECT_EQ(table.size(), 3U);
    for (const std::uint64_t key : {0, 31, 62, 93}) {
      EXPECT_EQ(table.find(key) != nullptr, key != victim) << key << " after erasing " << victim;
    }
  }
}

TEST(Hashtable, VisitsEachEntryOnce) {
  Table table;
  fill(table, 500);
  table.erase(17);
  std::unordered_map<std::uint64_t, std::uint64_t> visited;
  table.for_each([&](const Pair& entry) { EXPECT_TRUE(visited.insert(entry).second); });
  EXPECT_EQ(visited.size(), 499U);
  EXPECT_FALSE(visited.contains(17));
  EXPECT_EQ(visited.at(499), 1499U);
}

TEST(Hashtable, ErasingAnAbsentKeyChangesNothing) {
  Table table;
  fill(table, 10);
  EXPECT_FALSE(table.erase(31)) << "an absent key of a bucket in use";
  EXPECT_FALSE(table.erase(20)) << "an absent key of an empty bucket";
  expect_filled(table, 10);
}

TEST(Hashtable, ErasesByTheKeyInTheNodeItself) {
  Table table;
  fill(table, 3);
  EXPECT_TRUE(table.erase(table.find(1)->value.first));
  EXPECT_EQ(table.size(), 2U);
}

TEST(Hashtable, APoolThatCannotGrowThrowsAndLeavesTheTableAsItWas) {
  Table table;
  fill(table, 16);
  pool_of(table).set_chunk_nodes(std::uint64_t{1} << 58);
  EXPECT_THROW(table.insert({16, 0}), std::bad_alloc);
  EXPECT_EQ(table.bucket_count(), 31U);
  expect_filled(table, 16);
  EXPECT_NO_THROW(table.insert({3, 0})) << "a present key needs no node";

  pool_of(table).set_chunk_nodes(16);
  fill(table, 17);
  expect_filled(table, 17);
}

TEST(Hashtable, ARehashWithoutMemoryLeavesATableThatCanBeDestroyed) {
  Table table;
  fill(table, 22);
  const bool threw = throws_bad_alloc([&] {
    const OutOfMemory guard;
    table.insert({22, 0});
  });
  EXPECT_TRUE(threw);
  EXPECT_EQ(table.bucket_count(), 0U);
}

TEST(Hashtable, ARehashThatIsNotNeededAllocatesNothing) {
  Table table;
  fill(table, 22);
  const bool threw = throws_bad_alloc([&] {
    const OutOfMemory guard;
    table.rehash(31);
  });
  EXPECT_FALSE(threw);
  expect_filled(table, 22);
}

TEST(Hashtable, AgreesWithAnotherMapUnderRandomOperations) {
  std::mt19937_64 random(1);
  Table table;
  std::unordered_map<std::uint64_t, std::uint64_t> model;
  for (int i = 0; i < 200000; ++i) {
    const std::uint64_t key = random() % 3000 * 31;
    switch (random() % 20) {
      case 0:
        if (random() % 500 == 0) {
          table.clear(random() % 2 == 0);
          model.clear();
        }
        break;
      case 1:
      case 2:
      case 3:
      case 4:
      case 5:
      case 6:
      case 7:
        ASSERT_EQ(table.erase(key), model.erase(key) == 1);
        break;
      case 8:
      case 9:
      case 10: {
        const Table::Node* node = table.find(key);
        const auto entry = model.find(key);
        ASSERT_EQ(node != nullptr, entry != model.end());
        if (node != nullptr) {
          ASSERT_EQ(node->value.second, entry->second);
        }
        break;
      }
      default: {
        std::size_t bucket = 0;
        Table::Node* node = nullptr;
        const std::uint64_t value = random();
        ASSERT_EQ(table.do_insert({key, value}, &bucket, &node),
                  model.try_emplace(key, value).second);
        ASSERT_EQ(node->value, Pair(key, model[key]));
        ASSERT_EQ(bucket, key % table.bucket_count());
      }
    }
    ASSERT_EQ(table.size(), model.size());
  }
}

}  // namespace
}  // namespace vorn::hsh
