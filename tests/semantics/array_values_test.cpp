// Values of arrays against maps that list every index.
#include "vorn/semantics/array_values.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "tests/semantics/array_sorts.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/terms/term_manager.h"

namespace vorn::semantics {
namespace {

/// An array as what it has at every index, those that were never named as one.
struct Model {
  std::map<std::string, std::string> elements;  // in words, see describe
  std::string otherwise;
  bool operator==(const Model&) const = default;
};

class ArrayValuesTest : public testing::Test {
 protected:
  /// The arrays that there are over these sorts, and a model of each.
  struct Pool {
    std::vector<QNumber> numbers;
    std::vector<Model> models;
  };

  std::string text(const DataType* type, const QNumber& value) {
    return describe(arrays, type, value);
  }

  void add_constant(const DataType* type, const QNumber& element, Pool* pool) {
    Model model;
    const std::string name = text(type->get_element(), element);
    if (count_values(type->get_index())) {
      for (const QNumber& index : arrays.list_values(type->get_index()))
        model.elements[text(type->get_index(), index)] = name;
    } else {
      model.otherwise = name;
    }
    pool->numbers.push_back(arrays.make_constant(type, element));
    pool->models.push_back(model);
  }

  void add_store(const DataType* type, std::size_t from, const QNumber& index,
                 const QNumber& element, Pool* pool) {
    Model model = pool->models[from];
    const std::string place = text(type->get_index(), index);
    model.elements[place] = text(type->get_element(), element);
    if (model.elements[place] == model.otherwise) model.elements.erase(place);
    pool->numbers.push_back(arrays.store(pool->numbers[from], index, element));
    pool->models.push_back(model);
  }

  /// The numbers of arrays are equal where their models are, and what they tell is in their models.
  void check(const DataType* type, const Pool& pool) {
    for (std::size_t i = 0; i < pool.numbers.size(); ++i) {
      for (std::size_t j = 0; j < i; ++j)
        RC_ASSERT((pool.numbers[i] == pool.numbers[j]) == (pool.models[i] == pool.models[j]));
      check_one(type, pool.numbers[i], pool.models[i]);
    }
  }

  void check_one(const DataType* type, const QNumber& array, const Model& model) {
    RC_ASSERT(arrays.get_type(array) == type);
    const std::string otherwise = text(type->get_element(), arrays.get_default(array));
    const auto entries = arrays.get_entries(array);
    RC_ASSERT(std::ranges::is_sorted(entries, {}, [](const auto& e) { return e.first; }));
    std::map<std::string, std::string> listed;
    for (const auto& [index, element] : entries) {
      RC_ASSERT(arrays.select(array, index) == element);
      RC_ASSERT(element != arrays.get_default(array));
      listed[text(type->get_index(), index)] = text(type->get_element(), element);
    }
    RC_ASSERT(listed.size() == entries.size());
    if (!count_values(type->get_index())) {
      RC_ASSERT(otherwise == model.otherwise);
      RC_ASSERT(listed == model.elements);
      return;
    }
    std::map<std::string, std::size_t> frequencies;
    for (const auto& [index, element] : model.elements) {
      RC_ASSERT((listed.contains(index) ? listed[index] : otherwise) == element);
      ++frequencies[element];
    }
    for (const auto& [element, frequency] : frequencies)
      RC_ASSERT(frequency <= frequencies[otherwise]);
  }

  TermManager mgr;
  ArrayValues arrays;
};

TEST_F(ArrayValuesTest, EqualArraysHaveEqualNumbersWhateverWasWrittenInWhichOrder) {
  const std::vector<const DataType*> sorts = make_test_sorts(mgr);
  const bool holds = rc::check("arrays of one sort are their maps", [&](std::uint64_t seed) {
    std::mt19937_64 random(seed);
    const DataType* type = nullptr;
    while (type == nullptr || type->get_kind() != DataType::Kind::array)
      type = sorts[random() % sorts.size()];
    // Two elements only, half of the time, so that the most frequent one changes often.
    std::vector<QNumber> few = {random_value(arrays, type->get_element(), random),
                                random_value(arrays, type->get_element(), random)};
    const auto element = [&] {
      return random() % 2 == 0 ? few[random() % 2]
                               : random_value(arrays, type->get_element(), random);
    };
    Pool pool;
    add_constant(type, few[0], &pool);
    add_constant(type, few[1], &pool);
    for (int n = 0; n < 60; ++n) {
      const std::size_t last = pool.numbers.size() - 1;
      const std::size_t from = random() % 4 == 0 ? random() % pool.numbers.size() : last;
      const QNumber index = random_value(arrays, type->get_index(), random);
      add_store(type, from, index, element(), &pool);
    }
    check(type, pool);
  });
  ASSERT_TRUE(holds);
}

TEST_F(ArrayValuesTest, EveryArrayOfASmallSortHasOneNumber) {
  for (const std::size_t width : {1U, 2U, 3U}) {
    const DataType* type = mgr.get_array_type(mgr.get_bv_type(width), mgr.get_bool_type());
    const std::vector<QNumber> all = arrays.list_values(type);
    EXPECT_EQ(all.size(), *count_values(type));
    for (std::size_t i = 0; i < all.size(); ++i) {
      // Filled from the other end, over the other element.
      QNumber again = arrays.make_constant(type, QNumber(static_cast<int>(i % 2)));
      for (std::size_t bit = std::size_t{1} << width; bit-- > 0;) {
        const QNumber index(static_cast<std::int64_t>(bit));
        again = arrays.store(again, index, arrays.select(all[i], index));
      }
      EXPECT_EQ(again, all[i]);
      for (std::size_t j = 0; j < i; ++j)
        EXPECT_NE(all[i], all[j]);
    }
  }
}

TEST_F(ArrayValuesTest, NoTwoSortsShareANumber) {
  const DataType* first = mgr.get_array_type(mgr.get_bool_type(), mgr.get_bool_type());
  const DataType* second = mgr.get_array_type(mgr.get_bv_type(1), mgr.get_bool_type());
  EXPECT_NE(arrays.make_constant(first, QNumber(0)), arrays.make_constant(second, QNumber(0)));
}

TEST_F(ArrayValuesTest, AnyNaNIsTheOneNaN) {
  const DataType* small = mgr.get_fp_type(2, 2);
  for (const DataType* type :
       {mgr.get_array_type(small, small), mgr.get_array_type(mgr.get_fp_type(8, 23), small)}) {
    const DataType* index = type->get_index();
    const QNumber quiet =
        QNumber::from_integer(index == small ? std::int64_t{0b0'11'10} : std::int64_t{0x7fc00000});
    const QNumber one = canonical_bits(index, quiet);
    ASSERT_NE(quiet, one);
    const QNumber base = arrays.make_constant(type, QNumber(0));
    const QNumber array = arrays.store(base, quiet, QNumber(0b0'11'10));
    EXPECT_EQ(array, arrays.store(base, one, QNumber(0b1'11'11)));
    EXPECT_EQ(arrays.select(array, quiet), canonical_bits(small, QNumber(0b0'11'10)));
    EXPECT_EQ(arrays.get_entries(array).front().first, one);
    EXPECT_EQ(arrays.make_constant(type, QNumber(0b0'11'10)),
              arrays.make_constant(type, QNumber(0b1'11'01)));
  }
}

TEST_F(ArrayValuesTest, WritesMayHaveWhatTheTableGaveAsIndexAndElement) {
  // The references must outlive what the write adds to the table.
  const DataType* word = mgr.get_bv_type(32);
  const DataType* type = mgr.get_array_type(word, word);
  QNumber array = arrays.make_constant(type, QNumber(0));
  for (int n = 1; n < 5'000; ++n) {
    array = arrays.store(array, QNumber(n), arrays.select(array, QNumber(n - 1)));
    array = arrays.store(array, QNumber(n), QNumber(n));
  }
  for (int n = 0; n < 5'000; ++n)
    EXPECT_EQ(arrays.select(array, QNumber(n)), QNumber(n));
}

TEST_F(ArrayValuesTest, WritesToMostOfManyIndicesTakeAPathEach) {
  // Elements all differ: no default is of any use.
  const DataType* half = mgr.get_bv_type(16);
  const DataType* type = mgr.get_array_type(half, half);
  QNumber up = arrays.make_constant(type, QNumber(0));
  QNumber down = arrays.make_constant(type, QNumber(1));
  for (int n = 0; n < 1 << 16; ++n) {
    up = arrays.store(up, QNumber(n), QNumber(n ^ 0x5555));
    const int m = (1 << 16) - 1 - n;
    down = arrays.store(down, QNumber(m), QNumber(m ^ 0x5555));
  }
  EXPECT_EQ(up, down);
  EXPECT_EQ(arrays.get_default(up), QNumber(0));
  EXPECT_EQ(arrays.get_entries(up).size(), (1U << 16U) - 1);
  // Back and forth over the point at which another element is the most frequent.
  const DataType* flags = mgr.get_array_type(half, mgr.get_bool_type());
  QNumber array = arrays.make_constant(flags, QNumber(0));
  for (int n = 0; n < 1 << 15; ++n)
    array = arrays.store(array, QNumber(n), QNumber(1));
  EXPECT_EQ(arrays.get_default(array), QNumber(0)) << "the least of two";
  const QNumber tie = array;
  for (int n = 0; n < 10'000; ++n) {
    array = arrays.store(array, QNumber(65535), QNumber(1 - n % 2));
    EXPECT_EQ(array == tie, n % 2 == 1);
  }
  array = arrays.store(tie, QNumber(65535), QNumber(1));
  EXPECT_EQ(arrays.get_default(array), QNumber(1));
}

TEST_F(ArrayValuesTest, SortsHaveAsManyValuesAsThereAre) {
  using Count = std::optional<std::uint64_t>;
  const DataType* truth = mgr.get_bool_type();
  const auto bits = [&](std::size_t width) { return mgr.get_bv_type(width); };
  const auto array = [&](const DataType* index, const DataType* element) {
    return mgr.get_array_type(index, element);
  };
  const DataType* people = mgr.get_uninterpreted_type("People");
  const std::vector<std::pair<const DataType*, Count>> rows = {
      {truth, 2},
      {mgr.get_fprounding_type(), 5},
      {bits(1), 2},
      {bits(63), std::uint64_t{1} << 63U},
      {bits(64), std::nullopt},
      {bits(100'000), std::nullopt},
      {mgr.get_fp_type(2, 1), 15},
      {mgr.get_fp_type(2, 2), 27},
      {mgr.get_fp_type(5, 10), 65536 - 2048 + 3},
      {mgr.get_fp_type(8, 23), (std::uint64_t{1} << 32U) - (1U << 24U) + 3},
      {mgr.get_fp_type(11, 52), std::nullopt},
      {people, std::nullopt},
      {array(truth, truth), 4},
      {array(truth, mgr.get_fprounding_type()), 25},
      {array(mgr.get_fprounding_type(), truth), 32},
      {array(bits(5), bits(1)), std::uint64_t{1} << 32U},
      {array(bits(6), truth), std::nullopt},
      {array(bits(3), bits(7)), std::uint64_t{1} << 56U},
      {array(bits(3), bits(8)), std::nullopt},
      {array(bits(63), truth), std::nullopt},
      {array(truth, people), std::nullopt},
      {array(people, truth), std::nullopt},
      {array(array(truth, truth), truth), 16},
      {array(truth, array(truth, truth)), 16}};
  for (const auto& [type, count] : rows)
    EXPECT_EQ(count_values(type), count) << type->to_string();
}

TEST_F(ArrayValuesTest, ListsEveryValueOnce) {
  for (const DataType* type : make_test_sorts(mgr)) {
    const auto count = count_values(type);
    if (!count) {
      EXPECT_THROW(arrays.list_values(type), std::length_error) << type->to_string();
      continue;
    }
    if (*count > 100'000) continue;
    std::vector<QNumber> list = arrays.list_values(type);
    EXPECT_EQ(list.size(), *count) << type->to_string();
    if (type->get_kind() == DataType::Kind::floating_point) {
      for (const QNumber& bits : list)
        EXPECT_EQ(canonical_bits(type, bits), bits) << type->to_string();
    }
    EXPECT_NE(std::ranges::find(list, arrays.make_plain(type)), list.end());
    std::ranges::sort(list);
    EXPECT_EQ(std::ranges::adjacent_find(list), list.end()) << type->to_string();
  }
}

TEST_F(ArrayValuesTest, PlainValuesAreZerosThroughout) {
  const DataType* row = mgr.get_array_type(mgr.get_bv_type(8), mgr.get_fp_type(8, 23));
  const DataType* table = mgr.get_array_type(mgr.get_uninterpreted_type("People"), row);
  EXPECT_EQ(arrays.make_plain(row), arrays.make_constant(row, QNumber(0)));
  EXPECT_EQ(arrays.make_plain(table), arrays.make_constant(table, arrays.make_plain(row)));
  EXPECT_EQ(arrays.make_plain(mgr.get_fprounding_type()), QNumber(0));
  // Nested as deep as sorts can be.
  const DataType* deep = mgr.get_bool_type();
  for (int n = 0; n < 499; ++n)
    deep = mgr.get_array_type(mgr.get_bv_type(64), deep);
  EXPECT_EQ(arrays.make_plain(deep), arrays.make_plain(deep));
  EXPECT_EQ(count_values(deep), std::nullopt);
}

TEST_F(ArrayValuesTest, NumbersThatAreNoArraysAreRefused) {
  EXPECT_THROW(arrays.get_default(QNumber(0)), std::out_of_range);
  const DataType* type = mgr.get_array_type(mgr.get_bool_type(), mgr.get_bool_type());
  arrays.make_plain(type);
  EXPECT_EQ(arrays.get_default(QNumber(0)), QNumber(0));
  EXPECT_THROW(arrays.select(QNumber(1), QNumber(0)), std::out_of_range);
}

}  // namespace
}  // namespace vorn::semantics
