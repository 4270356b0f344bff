#include "vorn/semantics/array_values.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <map>

#include "vorn/semantics/application.h"

namespace vorn::semantics {
namespace {

std::size_t mix(std::size_t h, std::uint64_t word) {
  h = (h ^ word) * 0x9E3779B97F4A7C15U;
  return h ^ (h >> 32);
}

std::optional<std::uint64_t> power_of_two(std::size_t exponent) {
  if (exponent >= 64) return std::nullopt;
  return std::uint64_t{1} << exponent;
}

/// Keys below a node agree in the bits above its own.
std::uint32_t prefix(std::uint32_t key, std::uint32_t bit) {
  return key & ~(2 * bit - 1);
}

}  // namespace

std::optional<std::uint64_t> count_values(const DataType* type) {
  switch (type->get_kind()) {
    case DataType::Kind::boolean:
      return 2;
    case DataType::Kind::rounding_mode:
      return 5;
    case DataType::Kind::bit_vector:
      return power_of_two(type->get_width());
    case DataType::Kind::floating_point: {
      // Of the patterns with all ones in the exponent, two infinities and one NaN are values.
      const auto [e, m] = type->get_format();
      const auto patterns = power_of_two(1 + e + m);
      if (!patterns) return std::nullopt;
      return *patterns - *power_of_two(m + 1) + 3;
    }
    case DataType::Kind::array: {
      const auto elements = count_values(type->get_element());
      const auto indices = count_values(type->get_index());
      if (!elements || !indices) return std::nullopt;
      std::uint64_t product = 1;
      for (std::uint64_t i = 0; i < *indices; ++i) {
        if (product > std::numeric_limits<std::uint64_t>::max() / *elements) return std::nullopt;
        product *= *elements;
      }
      return product;
    }
    case DataType::Kind::uninterpreted:
      break;
  }
  return std::nullopt;
}

std::size_t ArrayValues::NodeHash::operator()(const Node& node) const noexcept {
  return mix(mix(0, (std::uint64_t{node.bit} << 32) | node.key),
             (std::uint64_t{node.left} << 32) | node.right);
}

std::size_t ArrayValues::ArrayHash::operator()(const Array& array) const noexcept {
  const std::uint64_t entries = (std::uint64_t{array.otherwise} << 32) | array.root;
  return mix(mix(0, entries), array.type->get_id());
}

// Tables --------------------------------------------------------------------------------------

const ArrayValues::Array& ArrayValues::find(const QNumber& array) const {
  std::int64_t position = 0;
  array.get_int64(&position);
  return arrays.at(static_cast<std::size_t>(position));
}

std::optional<std::uint32_t> ArrayValues::find_number(const QNumber& value) const {
  const auto found = numbers.find(value);
  if (found == numbers.end()) return std::nullopt;
  return found->second;
}

std::uint32_t ArrayValues::number(const QNumber& value) {
  const auto [entry, fresh] = numbers.try_emplace(value, static_cast<std::uint32_t>(values.size()));
  if (fresh) values.push_back(value);
  return entry->second;
}

ArrayValues::NodeId ArrayValues::add_node(const Node& node) {
  const auto [entry, fresh] = node_table.try_emplace(node, static_cast<NodeId>(nodes.size()));
  if (fresh) nodes.push_back(node);
  return entry->second;
}

QNumber ArrayValues::intern(const Array& array) {
  const auto [entry, fresh] =
      array_table.try_emplace(array, static_cast<std::uint32_t>(arrays.size()));
  if (fresh) arrays.push_back(array);
  return QNumber(static_cast<std::int64_t>(entry->second));
}

// Tries ---------------------------------------------------------------------------------------

/// A node over two that have no key in common; `key_a` and `key_b` are one key of each.
ArrayValues::NodeId ArrayValues::join(NodeId a, std::uint32_t key_a, NodeId b,
                                      std::uint32_t key_b) {
  const std::uint32_t bit = std::bit_floor(key_a ^ key_b);
  const bool is_first = (key_a & bit) == 0;
  return add_node({bit, prefix(key_a, bit), is_first ? a : b, is_first ? b : a});
}

ArrayValues::NodeId ArrayValues::insert(NodeId id, std::uint32_t key, std::uint32_t element) {
  const Node leaf{0, key, element, 0};
  if (id == kEmpty) return add_node(leaf);
  const Node node = nodes[id];
  if (node.bit == 0) {
    return node.key == key ? add_node(leaf) : join(id, node.key, add_node(leaf), key);
  }
  if (prefix(key, node.bit) != node.key) return join(id, node.key, add_node(leaf), key);
  const bool goes_left = (key & node.bit) == 0;
  const NodeId child = insert(goes_left ? node.left : node.right, key, element);
  return add_node(
      {node.bit, node.key, goes_left ? child : node.left, goes_left ? node.right : child});
}

/// Without the entry of `key`, which is there.
ArrayValues::NodeId ArrayValues::erase(NodeId id, std::uint32_t key) {
  const Node node = nodes[id];
  if (node.bit == 0) return kEmpty;
  const bool goes_left = (key & node.bit) == 0;
  const NodeId child = erase(goes_left ? node.left : node.right, key);
  if (child == kEmpty) return goes_left ? node.right : node.left;
  return add_node(
      {node.bit, node.key, goes_left ? child : node.left, goes_left ? node.right : child});
}

ArrayValues::NodeId ArrayValues::find_leaf(NodeId id, std::uint32_t key) const {
  while (id != kEmpty && nodes[id].bit != 0) {
    id = (key & nodes[id].bit) == 0 ? nodes[id].left : nodes[id].right;
  }
  return id != kEmpty && nodes[id].key == key ? id : kEmpty;
}

void ArrayValues::collect(NodeId id, std::vector<Entry>* entries) const {
  if (id == kEmpty) return;
  const Node& node = nodes[id];
  if (node.bit == 0) {
    entries->emplace_back(values[node.key], values[node.left]);
    return;
  }
  collect(node.left, entries);
  collect(node.right, entries);
}

// Arrays --------------------------------------------------------------------------------------

/// The one form of an array. Where entries are few the default is what most indices have. Where
/// indices are few as well that takes a count: the most frequent element becomes the default, of
/// several the least.
ArrayValues::Array ArrayValues::normalise(Array array) {
  const auto indices = count_values(array.type->get_index());
  if (!indices || array.count < *indices - array.count) return array;
  std::vector<Entry> entries;
  collect(array.root, &entries);
  std::map<QNumber, std::uint64_t> frequencies;
  for (const auto& [index, element] : entries)
    ++frequencies[element];
  const QNumber old = values[array.otherwise];
  if (*indices > array.count) frequencies[old] = *indices - array.count;
  const auto best = std::ranges::max_element(
      frequencies, [](const auto& a, const auto& b) { return a.second < b.second; });
  if (best->first == old) return array;
  // The indices that had the old default have it as an entry now, those of the new one none.
  Array result{array.type, number(best->first), kEmpty, 0};
  const auto add = [&](std::uint32_t key, std::uint32_t element) {
    if (element == result.otherwise) return;
    result.root = insert(result.root, key, element);
    ++result.count;
  };
  for (const auto& [index, element] : entries)
    add(number(index), number(element));
  if (*indices == array.count) return result;
  for (const QNumber& index : list_values(array.type->get_index())) {
    const std::uint32_t key = number(index);
    if (find_leaf(array.root, key) == kEmpty) add(key, array.otherwise);
  }
  return result;
}

QNumber ArrayValues::make_constant(const DataType* type, const QNumber& element) {
  return intern({type, number(element), kEmpty, 0});
}

QNumber ArrayValues::store(const QNumber& array, const QNumber& index, const QNumber& element) {
  Array result = find(array);
  const std::uint32_t key = number(index);
  const std::uint32_t value = number(element);
  const bool was_entry = find_leaf(result.root, key) != kEmpty;
  const bool is_entry = value != result.otherwise;
  if (is_entry) {
    result.root = insert(result.root, key, value);
  } else if (was_entry) {
    result.root = erase(result.root, key);
  }
  result.count = result.count + (is_entry ? 1 : 0) - (was_entry ? 1 : 0);
  return intern(normalise(result));
}

const QNumber& ArrayValues::select(const QNumber& array, const QNumber& index) const {
  const Array& from = find(array);
  const auto key = find_number(index);
  const NodeId leaf = key ? find_leaf(from.root, *key) : kEmpty;
  return values[leaf == kEmpty ? from.otherwise : nodes[leaf].left];
}

const QNumber& ArrayValues::get_default(const QNumber& array) const {
  return values[find(array).otherwise];
}

std::vector<ArrayValues::Entry> ArrayValues::get_entries(const QNumber& array) const {
  std::vector<Entry> entries;
  collect(find(array).root, &entries);
  std::ranges::sort(entries, {}, [](const Entry& entry) -> const QNumber& { return entry.first; });
  return entries;
}

std::vector<QNumber> ArrayValues::list_values(const DataType* type) {
  std::vector<QNumber> list;
  if (type->get_kind() == DataType::Kind::array) {
    list.push_back(make_plain(type));
    const std::vector<QNumber> elements = list_values(type->get_element());
    for (const QNumber& index : list_values(type->get_index())) {
      std::vector<QNumber> longer;
      for (const QNumber& array : list) {
        for (const QNumber& element : elements)
          longer.push_back(store(array, index, element));
      }
      list = std::move(longer);
    }
    return list;
  }
  const std::uint64_t patterns = type->get_kind() == DataType::Kind::floating_point
                                     ? *power_of_two(type->get_value_width())
                                     : *count_values(type);
  for (std::uint64_t i = 0; i < patterns; ++i) {
    const QNumber value(static_cast<std::int64_t>(i));
    const bool is_float = type->get_kind() == DataType::Kind::floating_point;
    if (!is_float || canonical_bits(type, value) == value) list.push_back(value);
  }
  return list;
}

QNumber ArrayValues::make_plain(const DataType* type) {
  if (type->get_kind() != DataType::Kind::array) return QNumber();
  return make_constant(type, make_plain(type->get_element()));
}

}  // namespace vorn::semantics
