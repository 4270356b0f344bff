// Values of arrays, and of all sorts: how many there are, and which is the plainest.
//
// An array is a binary tree over the positions of its indices, in which a part that has one element
// throughout is a leaf and equal nodes are one, as in a decision diagram (Bryant, "Graph-Based
// Algorithms for Boolean Function Manipulation", 1986). So equal arrays are one tree, whatever the
// order of the writes that made them, a write costs a path, and arrays are compared by number.
//
// Where indices are few, the position of one is its rank among them, and the tree has as many
// leaves at most. Where they are many or infinitely many it is the number under which the index is
// known here: what is not written has an element of its own then, the default, and the tree is as
// high as the last position that has another one asks for.
#ifndef VORN_SEMANTICS_ARRAY_VALUES_H
#define VORN_SEMANTICS_ARRAY_VALUES_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"
#include "vorn/utils/export.h"

namespace vorn::semantics {

/// The number of values of a sort; nothing where there are infinitely many, or more than fit.
VORN_EXPORT std::optional<std::uint64_t> count_values(const DataType* type);

/// A table of values of arrays. Each is a number, as the values of other sorts are: equal arrays of
/// one sort have one number, and no two sorts share one. Numbers are of use with their table only.
/// Indices and elements are values as an Evaluator has them; any NaN is the one NaN.
///
/// What makes arrays throws std::length_error where the table is full, which memory forbids sooner.
class VORN_EXPORT ArrayValues {
 public:
  /// An index and the element there.
  using Entry = std::pair<QNumber, QNumber>;

  /// The array of sort `type` with one element at every index.
  QNumber make_constant(const DataType* type, const QNumber& element);
  /// `array` with another element at `index`.
  QNumber store(const QNumber& array, const QNumber& index, const QNumber& element);
  /// The element of `array` at `index`.
  const QNumber& select(const QNumber& array, const QNumber& index) const;

  /// The sort of an array, the element that it has at all indices but those of its entries, and
  /// these, by index. Where indices are few no element is more frequent than the default, and none
  /// that is as frequent is less.
  const DataType* get_type(const QNumber& array) const { return find(array).type; }
  const QNumber& get_default(const QNumber& array) const;
  std::vector<Entry> get_entries(const QNumber& array);

  /// A value of any sort: zero, false, to nearest even, the first element, an array of these.
  QNumber make_plain(const DataType* type);
  /// All values of a sort. Throws std::length_error where count_values gives nothing.
  std::vector<QNumber> list_values(const DataType* type);

 private:
  /// An element, by its number and a mark, or a position among the nodes.
  using NodeId = std::uint32_t;
  static constexpr NodeId kLeaf = NodeId{1} << 31U;
  /// Indices of which there are more have no rank.
  static constexpr std::uint64_t kMostRanks = std::uint64_t{1} << 24U;

  /// The first half of the positions, larger by one where they are odd, and the second.
  struct Node {
    NodeId first = 0;
    NodeId second = 0;
    bool operator==(const Node&) const = default;
  };
  struct Array {
    const DataType* type = nullptr;
    NodeId root = 0;
    std::uint32_t size = 0;  // positions of the tree
    NodeId otherwise = 0;    // the leaf of the default; 0 where indices have ranks
    bool operator==(const Array&) const = default;
  };
  struct ArrayHash {
    std::size_t operator()(const Array& array) const noexcept;
  };
  struct NumberHash {
    std::size_t operator()(const QNumber& value) const noexcept { return value.hash(); }
  };
  /// Gets the positions from `from` on, `size` of them, that have the element of a leaf.
  using Visitor = std::function<void(std::uint32_t from, std::uint32_t size, NodeId leaf)>;

  const Array& find(const QNumber& array) const;
  QNumber intern(const Array& array);
  std::uint32_t number(const QNumber& value);
  const QNumber& element_of(NodeId leaf) const { return *values[leaf - kLeaf]; }
  std::optional<std::uint32_t> find_position(const Array& array, const QNumber& index) const;
  std::uint64_t find_rank(const DataType* type, const QNumber& value) const;
  QNumber make_ranked(const DataType* type, std::uint64_t rank);

  NodeId join(NodeId first, NodeId second);
  std::size_t find_slot(const Node& node) const;
  void grow_node_table();
  NodeId replace(NodeId node, std::uint32_t size, std::uint32_t position, NodeId leaf);
  NodeId find_leaf(const Array& array, std::uint32_t position) const;
  NodeId find_default(const Array& array) const;
  void visit(NodeId node, std::uint32_t from, std::uint32_t size, const Visitor& visitor) const;

  std::unordered_map<QNumber, std::uint32_t, NumberHash> numbers;  // of indices and elements
  std::vector<const QNumber*> values;                              // by number; none ever moves
  std::vector<Node> nodes;
  std::vector<NodeId> node_table;  // open addressing, a power of two; kLeaf where there is none
  std::vector<Array> arrays;
  std::unordered_map<Array, std::uint32_t, ArrayHash> array_table;
};

}  // namespace vorn::semantics

#endif
