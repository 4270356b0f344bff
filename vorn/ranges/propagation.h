// The ranges of the terms of formulas that hold, each narrowed by all that it is part of.
//
// A formula that is asserted is true, and what that says of its arguments, of theirs, and again of
// everything that they are arguments of, is followed until nothing becomes smaller (Van Hentenryck,
// Michel and Deville, "Numerica", 1997, have this of real numbers). Every set holds all values that
// its term has in a model of the formulas, so an empty one says that there is no model.
#ifndef VORN_RANGES_PROPAGATION_H
#define VORN_RANGES_PROPAGATION_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <unordered_map>
#include <vector>

#include "vorn/ranges/range.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/termination_poll.h"
#include "vorn/utils/trail.h"

namespace vorn::ranges {

/// The ranges of the terms at and below some formulas, level by level.
class Propagation {
 public:
  /// Terms are numbered, arguments before the terms that use them.
  using Slot = std::uint32_t;

  /// Borrows both; the test may be null. Where it says so, members throw Terminated, after which
  /// only pop and the destructor may be called.
  explicit Propagation(const TermManager& manager, const TerminationTest* test = nullptr)
      : mgr(manager), poll(test) {}

  // Formulas and levels -------------------------------------------------------------------------

  /// Asserts a Boolean term on the current level, as far as that can be seen at once.
  void add(const Term* formula);
  /// Takes all values out of the range of a term that are not in the set, on the current level.
  void narrow(Slot slot, const Range& set);
  /// What has not been followed by then is followed on the new level, and forgotten with it: ranges
  /// around it stay larger than they need be.
  void push();
  /// Forgets what came since the matching push.
  void pop();
  std::size_t get_level() const { return changes.get_level(); }

  /// Follows what has changed. An effort of 1 is a look at one term; what it does not suffice for
  /// is left to the next call. Returns the effort that was spent.
  std::uint64_t propagate(std::uint64_t effort);
  /// Whether the formulas have no model.
  bool is_contradiction() const { return empty_level.has_value(); }

  // Ranges --------------------------------------------------------------------------------------

  Slot get_size() const { return static_cast<Slot>(nodes.size()); }
  /// The bits of the values of all terms: a measure of how hard the formulas are.
  std::uint64_t get_bit_count() const { return bit_count; }
  const Term* get_term(Slot slot) const { return nodes[slot].term; }
  const Range& get_range(Slot slot) const { return nodes[slot].range; }
  /// The range of a term; null where no formula has it.
  const Range* find_range(const Term* t) const;
  /// Whether the range of a term follows from those of its arguments.
  bool is_implied(Slot slot);
  Slot get_argument(Slot slot, std::size_t i) const { return nodes[slot].arguments[i]; }

 private:
  /// A range that shrinks at its ends in ever so many steps is left alone after some.
  static constexpr std::uint32_t kMostChanges = 64;

  struct Node {
    const Term* term;
    Range range;
    std::vector<Slot> arguments;
    std::vector<Slot> uses;
    std::uint32_t recent_changes = 0;  // since propagate was called
    bool is_waiting = false;
  };
  struct Change {
    Slot slot;
    Range before;
  };
  /// That an operand is of one of some classes.
  struct ClassTest {
    Slot operand;
    FloatClassSet classes;
  };

  Slot add_term(const Term* t);
  void set(Slot slot, Range range);
  void wait(Slot slot);
  Range look_forward(Slot slot);
  void visit(Slot slot);
  std::optional<ClassTest> find_test(Slot slot, bool truth) const;
  void follow_alternative(Slot slot);
  void stop();
  void forget_changes();

  const TermManager& mgr;
  TerminationPoll poll;
  std::vector<Node> nodes;
  std::uint64_t bit_count = 0;
  std::unordered_map<const Term*, Slot> slots;
  Trail<Change> changes;
  Trail<Slot> added;
  std::deque<Slot> waiting;                // terms whose range, or an argument's, has changed
  std::vector<Range> arguments;            // of the term that is visited
  std::vector<Slot> changed;               // since propagate was called
  std::optional<std::size_t> empty_level;  // the outermost where a range is empty
};

}  // namespace vorn::ranges

#endif
