#include "tests/random/value_space.h"

#include <algorithm>
#include <utility>

#include "tests/random/literals.h"

namespace vorn::random {
namespace {

constexpr std::uint64_t kMore = ValueSpace::kMost + 1;

std::uint64_t multiply(std::uint64_t a, std::uint64_t b) {
  return std::min(a * b, kMore);  // both are small
}

std::uint64_t power(std::uint64_t base, std::uint64_t exponent) {
  std::uint64_t result = 1;
  for (std::uint64_t i = 0; i < exponent && base > 1 && result < kMore; ++i)
    result = multiply(result, base);
  return result;
}

}  // namespace

std::uint64_t ValueSpace::count(const DataType* type) const {
  if (type->get_kind() == DataType::Kind::uninterpreted) return std::min(elements, kMore);
  if (type->get_kind() == DataType::Kind::array) {
    return power(count(type->get_element()), count(type->get_index()));
  }
  return std::min(semantics::count_values(type).value_or(kMore), kMore);
}

std::uint64_t ValueSpace::count_tuples(std::span<const DataType* const> types) const {
  std::uint64_t tuples = 1;
  for (const DataType* type : types)
    tuples = multiply(tuples, count(type));
  return tuples;
}

std::uint64_t ValueSpace::count_functions(std::span<const DataType* const> domain,
                                          const DataType* result) const {
  return power(count(result), count_tuples(domain));
}

const std::vector<QNumber>& ValueSpace::list(const DataType* type) {
  const auto known = lists.find(type);
  if (known != lists.end()) return known->second;
  std::vector<QNumber> values;
  if (type->get_kind() == DataType::Kind::array) {
    values = list_arrays(type);
  } else if (type->get_kind() == DataType::Kind::uninterpreted) {
    for (std::uint64_t i = 0; i < elements; ++i)
      values.push_back(QNumber::from_integer(i));
  } else {
    values = arrays.list_values(type);
  }
  return lists.emplace(type, std::move(values)).first->second;
}

std::vector<QNumber> ValueSpace::list_arrays(const DataType* type) {
  std::vector<QNumber> found = {arrays.make_plain(type)};
  for (const QNumber& index : list(type->get_index())) {
    std::vector<QNumber> longer;
    for (const QNumber& array : found) {
      for (const QNumber& element : list(type->get_element()))
        longer.push_back(arrays.store(array, index, element));
    }
    found = std::move(longer);
  }
  return found;
}

std::vector<std::vector<QNumber>> ValueSpace::list_tuples(std::span<const DataType* const> types) {
  std::vector<std::vector<QNumber>> tuples = {{}};
  for (const DataType* type : types) {
    std::vector<std::vector<QNumber>> longer;
    for (const std::vector<QNumber>& tuple : tuples) {
      for (const QNumber& value : list(type)) {
        longer.push_back(tuple);
        longer.back().push_back(value);
      }
    }
    tuples = std::move(longer);
  }
  return tuples;
}

QNumber ValueSpace::sample(const DataType* type, Random& random) {
  switch (type->get_kind()) {
    case DataType::Kind::boolean:
    case DataType::Kind::rounding_mode:
    case DataType::Kind::uninterpreted:
      return QNumber::from_integer(random.below(count(type)));
    case DataType::Kind::bit_vector:
      return QNumber::from_mpz(random_pattern(bits_sort(type->get_width()), random));
    case DataType::Kind::floating_point:
      return QNumber::from_mpz(
          random_pattern(float_sort(type->get_e(), type->get_m() + 1), random));
    case DataType::Kind::array:
      break;
  }
  QNumber array = arrays.make_plain(type);
  // Where indices are all known the elements that are not written may be any.
  if (semantics::count_values(type->get_index())) {
    array = arrays.make_constant(type, sample(type->get_element(), random));
  }
  for (std::size_t writes = random.below(6); writes > 0; --writes) {
    const QNumber index = sample(type->get_index(), random);
    array = arrays.store(array, index, sample(type->get_element(), random));
  }
  return array;
}

}  // namespace vorn::random
