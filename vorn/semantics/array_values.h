// Values of arrays, and of all sorts: how many there are, and which is the plainest.
//
// An array is a default and the elements that differ from it. It is kept as a Patricia trie over
// the numbers of its indices, whose nodes are shared by all arrays (Okasaki and Gill, "Fast
// Mergeable Integer Maps", 1998): the shape depends on the entries alone, so equal arrays are one
// trie, a chain of writes costs a path for each, and arrays are compared by number.
#ifndef VORN_SEMANTICS_ARRAY_VALUES_H
#define VORN_SEMANTICS_ARRAY_VALUES_H

#include <cstddef>
#include <cstdint>
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
  /// these, by index.
  const DataType* get_type(const QNumber& array) const { return find(array).type; }
  const QNumber& get_default(const QNumber& array) const;
  std::vector<Entry> get_entries(const QNumber& array) const;

  /// A value of any sort: zero, false, to nearest even, the first element, an array of these.
  QNumber make_plain(const DataType* type);
  /// All values of a sort of which there are few enough to be listed.
  std::vector<QNumber> list_values(const DataType* type);

 private:
  /// Position of a node; the first one stands for no entries.
  using NodeId = std::uint32_t;
  static constexpr NodeId kEmpty = 0;

  /// A leaf has a key and the number of its element; another node the bit in which the keys below
  /// it differ first, the bits above, and two children.
  struct Node {
    std::uint32_t bit = 0;  // 0: a leaf
    std::uint32_t key = 0;
    std::uint32_t left = 0;  // of a leaf, the element
    std::uint32_t right = 0;
    bool operator==(const Node&) const = default;
  };
  struct NodeHash {
    std::size_t operator()(const Node& node) const noexcept;
  };
  struct Array {
    const DataType* type = nullptr;
    std::uint32_t otherwise = 0;
    NodeId root = kEmpty;
    std::uint32_t count = 0;  // of entries
    bool operator==(const Array&) const = default;
  };
  struct ArrayHash {
    std::size_t operator()(const Array& array) const noexcept;
  };
  struct NumberHash {
    std::size_t operator()(const QNumber& value) const noexcept { return value.hash(); }
  };

  const Array& find(const QNumber& array) const;
  std::optional<std::uint32_t> find_number(const QNumber& value) const;
  std::uint32_t number(const QNumber& value);
  NodeId add_node(const Node& node);
  NodeId join(NodeId a, std::uint32_t key_a, NodeId b, std::uint32_t key_b);
  NodeId insert(NodeId node, std::uint32_t key, std::uint32_t element);
  NodeId erase(NodeId node, std::uint32_t key);
  NodeId find_leaf(NodeId node, std::uint32_t key) const;
  void collect(NodeId node, std::vector<Entry>* entries) const;
  Array normalise(Array array);
  QNumber intern(const Array& array);

  std::vector<QNumber> values;  // of indices and elements, by number
  std::unordered_map<QNumber, std::uint32_t, NumberHash> numbers;
  std::vector<Node> nodes{{}};
  std::unordered_map<Node, NodeId, NodeHash> node_table;
  std::vector<Array> arrays;
  std::unordered_map<Array, std::uint32_t, ArrayHash> array_table;
};

}  // namespace vorn::semantics

#endif
