#include "vorn/semantics/array_values.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

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

/// The number of indices, if each has a rank.
std::optional<std::uint32_t> count_ranks(const DataType* array, std::uint64_t most) {
  const auto indices = count_values(array->get_index());
  if (!indices || *indices > most) return std::nullopt;
  return static_cast<std::uint32_t>(*indices);
}

QNumber canonical(const DataType* type, const QNumber& value) {
  return type->get_kind() == DataType::Kind::floating_point ? canonical_bits(type, value) : value;
}

/// The bits of plus infinity, the last of the floats without a sign.
std::uint64_t infinity_bits(IEEEFloat::format f) {
  return ((std::uint64_t{1} << f.e) - 1) << f.m;
}

std::uint64_t to_word(const QNumber& value) {
  std::int64_t word = 0;
  value.get_int64(&word);
  return static_cast<std::uint64_t>(word);
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

std::size_t ArrayValues::ArrayHash::operator()(const Array& array) const noexcept {
  const std::uint64_t tree = (std::uint64_t{array.size} << 32) | array.root;
  return mix(mix(0, tree), (std::uint64_t{array.otherwise} << 32) | array.type->get_id());
}

// Tables --------------------------------------------------------------------------------------

const ArrayValues::Array& ArrayValues::find(const QNumber& array) const {
  return arrays.at(to_word(array));
}

// What is numbered comes into its list first: where memory ends before the table has it, a place of
// the list is lost and no more.

std::uint32_t ArrayValues::number(const QNumber& value) {
  const auto found = numbers.find(value);
  if (found != numbers.end()) return found->second;
  if (values.size() == kLeaf) throw std::length_error("too many values in arrays");
  const auto position = static_cast<std::uint32_t>(values.size());
  values.push_back(nullptr);
  values.back() = &numbers.emplace(value, position).first->first;
  return position;
}

QNumber ArrayValues::intern(const Array& array) {
  const auto found = array_table.find(array);
  if (found != array_table.end()) return QNumber::from_integer(found->second);
  if (arrays.size() == kLeaf) throw std::length_error("too many arrays");
  const auto position = static_cast<std::uint32_t>(arrays.size());
  arrays.push_back(array);
  array_table.emplace(array, position);
  return QNumber::from_integer(position);
}

// Positions -----------------------------------------------------------------------------------

/// The position of a value among all of its sort, in the order of list_values.
std::uint64_t ArrayValues::find_rank(const DataType* type, const QNumber& value) const {
  const std::uint64_t word = to_word(value);
  if (type->get_kind() == DataType::Kind::floating_point) {
    // The one NaN follows minus infinity.
    const std::uint64_t infinity = infinity_bits(type->get_format());
    const std::uint64_t sign = std::uint64_t{1} << (type->get_value_width() - 1);
    return word <= infinity ? word : word - sign + infinity + 1;
  }
  if (type->get_kind() != DataType::Kind::array) return word;
  const Array& array = find(value);
  const std::uint64_t elements = *count_values(type->get_element());
  std::uint64_t rank = 0;
  for (std::uint32_t i = array.size; i-- > 0;) {
    const NodeId leaf = find_leaf(array, i);
    rank = rank * elements + find_rank(type->get_element(), element_of(leaf));
  }
  return rank;
}

QNumber ArrayValues::make_ranked(const DataType* type, std::uint64_t rank) {
  if (type->get_kind() == DataType::Kind::floating_point) {
    const std::uint64_t infinity = infinity_bits(type->get_format());
    const std::uint64_t sign = std::uint64_t{1} << (type->get_value_width() - 1);
    return QNumber::from_integer(rank <= infinity ? rank : rank - infinity - 1 + sign);
  }
  if (type->get_kind() != DataType::Kind::array) return QNumber::from_integer(rank);
  const std::uint64_t indices = *count_values(type->get_index());
  const std::uint64_t elements = *count_values(type->get_element());
  QNumber array = make_plain(type);
  for (std::uint64_t i = 0; i < indices; ++i) {
    array = store(array, make_ranked(type->get_index(), i),
                  make_ranked(type->get_element(), rank % elements));
    rank /= elements;
  }
  return array;
}

/// Nothing for an index that was never named, where indices have no ranks.
std::optional<std::uint32_t> ArrayValues::find_position(const Array& array,
                                                        const QNumber& index) const {
  if (array.otherwise == 0) {
    return static_cast<std::uint32_t>(find_rank(array.type->get_index(), index));
  }
  const auto found = numbers.find(index);
  if (found == numbers.end()) return std::nullopt;
  return found->second;
}

// Trees ---------------------------------------------------------------------------------------

/// Where the node is in the table, or is to be.
std::size_t ArrayValues::find_slot(const Node& node) const {
  const std::size_t mask = node_table.size() - 1;
  std::size_t slot = mix(0, (std::uint64_t{node.first} << 32) | node.second) & mask;
  while (node_table[slot] != kLeaf && nodes[node_table[slot]] != node)
    slot = (slot + 1) & mask;
  return slot;
}

void ArrayValues::grow_node_table() {
  node_table.assign(std::max<std::size_t>(64, node_table.size() * 2), kLeaf);
  for (NodeId id = 0; id < nodes.size(); ++id)
    node_table[find_slot(nodes[id])] = id;
}

/// The node over two halves; a leaf where both are that leaf.
ArrayValues::NodeId ArrayValues::join(NodeId first, NodeId second) {
  if (first == second && first >= kLeaf) return first;
  if (nodes.size() * 2 >= node_table.size()) grow_node_table();
  const Node node{first, second};
  NodeId& entry = node_table[find_slot(node)];
  if (entry != kLeaf) return entry;
  if (nodes.size() == kLeaf) throw std::length_error("too many nodes of arrays");
  nodes.push_back(node);
  entry = static_cast<NodeId>(nodes.size() - 1);
  return entry;
}

/// The tree over `size` positions with another leaf at one of them.
ArrayValues::NodeId ArrayValues::replace(NodeId id, std::uint32_t size, std::uint32_t position,
                                         NodeId leaf) {
  if (size == 1 || id == leaf) return leaf;
  const Node node = id >= kLeaf ? Node{id, id} : nodes[id];
  const std::uint32_t half = size - size / 2;
  if (position < half) return join(replace(node.first, half, position, leaf), node.second);
  return join(node.first, replace(node.second, size - half, position - half, leaf));
}

ArrayValues::NodeId ArrayValues::find_leaf(const Array& array, std::uint32_t position) const {
  if (position >= array.size) return array.otherwise;
  NodeId id = array.root;
  for (std::uint32_t size = array.size; id < kLeaf;) {
    const std::uint32_t half = size - size / 2;
    const bool is_first = position < half;
    id = is_first ? nodes[id].first : nodes[id].second;
    position -= is_first ? 0 : half;
    size = is_first ? half : size - half;
  }
  return id;
}

void ArrayValues::visit(NodeId id, std::uint32_t from, std::uint32_t size,
                        const Visitor& visitor) const {
  if (id >= kLeaf) return visitor(from, size, id);
  const std::uint32_t half = size - size / 2;
  visit(nodes[id].first, from, half, visitor);
  visit(nodes[id].second, from + half, size - half, visitor);
}

// Arrays --------------------------------------------------------------------------------------

QNumber ArrayValues::make_constant(const DataType* type, const QNumber& element) {
  const NodeId leaf = number(canonical(type->get_element(), element)) | kLeaf;
  const auto ranks = count_ranks(type, kMostRanks);
  return intern({type, leaf, ranks.value_or(1), ranks ? 0 : leaf});
}

QNumber ArrayValues::store(const QNumber& array, const QNumber& index, const QNumber& element) {
  Array result = find(array);
  const DataType* indices = result.type->get_index();
  const NodeId leaf = number(canonical(result.type->get_element(), element)) | kLeaf;
  const QNumber place = canonical(indices, index);
  if (result.otherwise == 0) {
    const auto position = static_cast<std::uint32_t>(find_rank(indices, place));
    result.root = replace(result.root, result.size, position, leaf);
    return intern(result);
  }
  const std::uint32_t position = number(place);
  // Two arrays with different defaults are different as long as half of the indices have none.
  const auto count = position < kMostRanks / 2 ? std::nullopt : count_values(indices);
  if (count && position >= *count / 2) throw std::length_error("too many values in arrays");
  while (position >= result.size) {
    result.root = join(result.root, result.otherwise);
    result.size *= 2;
  }
  result.root = replace(result.root, result.size, position, leaf);
  while (result.root < kLeaf && nodes[result.root].second == result.otherwise) {
    result.root = nodes[result.root].first;
    result.size /= 2;
  }
  if (result.root == result.otherwise) result.size = 1;
  return intern(result);
}

const QNumber& ArrayValues::select(const QNumber& array, const QNumber& index) const {
  const Array& from = find(array);
  const auto position = find_position(from, canonical(from.type->get_index(), index));
  return element_of(position ? find_leaf(from, *position) : from.otherwise);
}

ArrayValues::NodeId ArrayValues::find_default(const Array& array) const {
  if (array.otherwise != 0) return array.otherwise;
  std::unordered_map<NodeId, std::uint64_t> frequencies;
  visit(array.root, 0, array.size,
        [&](std::uint32_t, std::uint32_t size, NodeId leaf) { frequencies[leaf] += size; });
  const auto is_before = [this](const auto& a, const auto& b) {
    return a.second != b.second ? a.second > b.second : element_of(a.first) < element_of(b.first);
  };
  return std::ranges::min_element(frequencies, is_before)->first;
}

const QNumber& ArrayValues::get_default(const QNumber& array) const {
  return element_of(find_default(find(array)));
}

std::vector<ArrayValues::Entry> ArrayValues::get_entries(const QNumber& number) {
  const Array array = find(number);
  const NodeId otherwise = find_default(array);
  std::vector<std::pair<std::uint32_t, NodeId>> positions;
  visit(array.root, 0, array.size, [&](std::uint32_t from, std::uint32_t size, NodeId leaf) {
    for (std::uint32_t i = 0; leaf != otherwise && i < size; ++i)
      positions.emplace_back(from + i, leaf);
  });
  std::vector<Entry> entries;
  for (const auto& [position, leaf] : positions) {
    const bool is_rank = array.otherwise == 0;
    entries.emplace_back(
        is_rank ? make_ranked(array.type->get_index(), position) : *values[position],
        element_of(leaf));
  }
  std::ranges::sort(entries, {}, [](const Entry& entry) -> const QNumber& { return entry.first; });
  return entries;
}

// Sorts ---------------------------------------------------------------------------------------

std::vector<QNumber> ArrayValues::list_values(const DataType* type) {
  const auto count = count_values(type);
  if (!count) throw std::length_error("the values of " + type->to_string() + " cannot be listed");
  std::vector<QNumber> list;
  for (std::uint64_t rank = 0; rank < *count; ++rank)
    list.push_back(make_ranked(type, rank));
  return list;
}

QNumber ArrayValues::make_plain(const DataType* type) {
  if (type->get_kind() != DataType::Kind::array) return QNumber();
  return make_constant(type, make_plain(type->get_element()));
}

}  // namespace vorn::semantics
