// Sorts and values that tests of arrays share: small ones, so that few writes reach every index.
#ifndef VORN_TESTS_SEMANTICS_ARRAY_SORTS_H
#define VORN_TESTS_SEMANTICS_ARRAY_SORTS_H

#include <map>
#include <random>
#include <string>
#include <vector>

#include "vorn/semantics/array_values.h"
#include "vorn/terms/term_manager.h"

namespace vorn::semantics {

/// Positions of some of the sorts of make_test_sorts.
inline constexpr std::size_t kTruth = 0;
inline constexpr std::size_t kBits = 2;
inline constexpr std::size_t kPeople = 5;

/// Sorts with the indices and elements of those that are arrays among them.
inline std::vector<const DataType*> make_test_sorts(TermManager& mgr) {
  const DataType* truth = mgr.get_bool_type();
  const DataType* mode = mgr.get_fprounding_type();
  const DataType* bits = mgr.get_bv_type(2);
  const DataType* small = mgr.get_fp_type(2, 1);
  const DataType* larger = mgr.get_fp_type(2, 2);
  const DataType* people = mgr.get_uninterpreted_type("People");
  const auto array = [&](const DataType* index, const DataType* element) {
    return mgr.get_array_type(index, element);
  };
  const DataType* flags = array(truth, truth);
  const DataType* row = array(truth, bits);
  return {truth,
          mode,
          bits,
          small,
          larger,
          people,
          flags,
          row,
          array(bits, truth),
          array(bits, row),
          array(mode, larger),
          array(small, bits),
          array(larger, people),
          array(people, bits),
          array(people, people),
          array(flags, truth),
          array(array(bits, truth), mode)};
}

/// A value in words that do not depend on the table that arrays are numbered by.
inline std::string describe(ArrayValues& arrays, const DataType* type, const QNumber& value) {
  if (type->get_kind() != DataType::Kind::array) return value.to_string();
  std::map<std::string, std::string> entries;
  const auto add = [&](const QNumber& index, const QNumber& element) {
    entries[describe(arrays, type->get_index(), index)] =
        describe(arrays, type->get_element(), element);
  };
  std::string text;
  if (count_values(type->get_index())) {
    for (const QNumber& index : arrays.list_values(type->get_index()))
      add(index, arrays.select(value, index));
  } else {
    for (const auto& [index, element] : arrays.get_entries(value))
      add(index, element);
    text = describe(arrays, type->get_element(), arrays.get_default(value));
  }
  for (const auto& [index, element] : entries)
    text += " " + index + ":" + element;
  return "[" + text + "]";
}

/// Any value, of an uninterpreted sort one of the first three elements.
inline QNumber random_value(ArrayValues& arrays, const DataType* type, std::mt19937_64& random) {
  if (type->get_kind() == DataType::Kind::uninterpreted) {
    return QNumber(static_cast<std::int64_t>(random() % 3));
  }
  if (type->get_kind() != DataType::Kind::array) {
    const std::vector<QNumber> values = arrays.list_values(type);
    return values[random() % values.size()];
  }
  QNumber array = arrays.make_constant(type, random_value(arrays, type->get_element(), random));
  for (auto writes = random() % 8; writes > 0; --writes) {
    const QNumber index = random_value(arrays, type->get_index(), random);
    array = arrays.store(array, index, random_value(arrays, type->get_element(), random));
  }
  return array;
}

}  // namespace vorn::semantics

#endif
