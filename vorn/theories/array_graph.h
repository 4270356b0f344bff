// The arrays of one sort in a candidate for a model, and how they hang together.
//
// An array is a node. It agrees with the array that it is written over at all indices but one, with
// the branch that the candidate takes, and with those that the candidate holds for equal to it. So
// what is read or written at one node holds at its neighbours too, unless it is at the index of the
// write between them (Brummayer and Biere, "Lemmas on Demand for the Extensional Theory of Arrays",
// 2009). An access that meets another one at its index must agree with it; if it does not, the way
// that both have come is a reason why it should.
#ifndef VORN_THEORIES_ARRAY_GRAPH_H
#define VORN_THEORIES_ARRAY_GRAPH_H

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "vorn/semantics/evaluator.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/termination_poll.h"

namespace vorn::theories {

/// A graph for one sort and one candidate.
class ArrayGraph {
 public:
  /// The evaluator gives the candidate's values of indices, elements and conditions. The test is
  /// borrowed and may be null; where it says so, members throw Terminated.
  ArrayGraph(TermManager& manager, semantics::Evaluator& candidate, const TerminationTest* test)
      : mgr(manager), evaluator(candidate), poll(test) {}

  // What the graph has: each term once, arrays before what is said of them.
  void add_array(const Term* array);
  void add_read(const Term* read);
  void add_equality(const Term* equality);

  /// Appends formulas that hold for all arrays, and that the candidate breaks; none if all accesses
  /// agree.
  void find_conflicts(std::vector<const Term*>* lemmas);
  /// Whether one of them holds only if a sort has infinitely many elements, or more than can be
  /// counted, which is open for uninterpreted ones.
  bool assumes_infinity() const { return is_infinity_assumed; }
  /// Then: gives each array that is not made of others its value.
  void assume_values(semantics::ArrayValues* values);

 private:
  using Position = std::uint32_t;
  static constexpr Position kNone = 0xffffffff;

  struct Edge {
    Position to;
    const Term* reason;  // the write, the if-then-else, or the equality
    bool is_down;        // from an array to what it is made of
    Position hidden;     // number of the index that a write hides
  };
  struct Node {
    const Term* array;
    std::vector<Edge> edges;
    Position component;      // the node that stands for it, by way of others
    Position first = kNone;  // the first arrival of an access at the present index
  };
  /// That an element is at an index.
  struct Access {
    const Term* index;
    const Term* element;
    Position node;
    Position index_value;  // numbers of values
    Position element_value;
  };
  /// An access at a node, and the arrival and edge by which it came there.
  struct Arrival {
    Position node;
    Position access;
    Position from;
    const Term* reason;
  };
  /// An index as a base, null for zero, and a distance from it.
  struct Offset {
    const Term* base;
    QNumber distance;
  };
  /// What a component has.
  struct Component {
    std::uint64_t writes = 0;
    bool has_equality = false;
    std::vector<Position> constants;
  };

  Position find_component(Position node);
  void connect(Position a, Position b, const Term* reason, bool is_equal);
  void connect_all();
  Position number_of(const Term* t);
  void start_access(Position node, const Term* index, const Term* element);
  void start_accesses();
  void seed_small_domain(const Component& component);
  void propagate(std::vector<const Term*>* lemmas);
  void arrive(Position next, std::vector<const Term*>* lemmas);
  Offset split_offset(const Term* index) const;
  const Term* state_equal(const Term* i, const Term* j);
  const Term* condition(const Term* reason, const Term* index);
  const Term* state(Position a, Position b);
  const Term* explain(Position arrival, const Term* otherwise);
  void compare_constants(const Component& component, std::vector<const Term*>* lemmas);
  const Term* state_constants(Position a, Position b);

  TermManager& mgr;
  semantics::Evaluator& evaluator;
  TerminationPoll poll;
  bool is_infinity_assumed = false;
  std::vector<Node> nodes;
  std::unordered_map<const Term*, Position> positions;
  std::vector<const Term*> reads;
  std::vector<const Term*> equalities;
  std::unordered_map<Position, Component> components;
  std::vector<Position> component_order;
  std::vector<QNumber> values;  // of indices and elements
  struct NumberHash {
    std::size_t operator()(const QNumber& value) const noexcept { return value.hash(); }
  };
  std::unordered_map<QNumber, Position, NumberHash> numbers;
  std::unordered_map<const Term*, std::uint64_t> base_uses;  // indices at each base
  std::vector<Access> accesses;
  std::unordered_map<Position, std::size_t> group_of;  // by number of the index
  std::vector<std::vector<Position>> groups;           // accesses at one index
  std::vector<Arrival> arrivals;
};

}  // namespace vorn::theories

#endif
