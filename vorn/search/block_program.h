// Formulas as a program on blocks of assignments, for trying very many of them.
//
// It is a WordProgram with a block of lanes in the place of each word. Only terms that depend on a
// constant whose lanes have changed are computed again, and a block is left as soon as each of its
// assignments makes a formula false. A formula does not count as false in lanes where the theory
// leaves open what one of its terms is.
#ifndef VORN_SEARCH_BLOCK_PROGRAM_H
#define VORN_SEARCH_BLOCK_PROGRAM_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "vorn/search/lanes.h"
#include "vorn/search/word_program.h"

namespace vorn::search {

/// One operation of a program: a term, and where its operands and its result are.
struct LaneStep {
  using Mode = IEEEFloat::rounding_mode;

  const Term* term = nullptr;
  LaneKernel kernel = nullptr;          // null: exactly, lane by lane
  std::vector<WordProgram::Slot> args;  // the rounding mode first where there is one
  WordProgram::Slot slot = 0;
  bool has_mode = false;
  std::optional<Mode> literal_mode;
  bool is_open = false;     // where an operand says so
  std::size_t open = 0;     // place of the lanes that say where, if so
  std::uint64_t needs = 0;  // constants that it depends on
  bool is_due = true;       // to be computed
  LaneCall call;            // complete but for the places and the mode
};

class BlockProgram {
 public:
  using Slot = WordProgram::Slot;

  /// The program of formulas of which the words are. Borrows them.
  explicit BlockProgram(const WordProgram& formulas);

  /// The operations, in the order in which they are computed.
  std::span<const LaneStep> get_steps() const { return steps; }

  /// The lanes of a constant, for values as LaneSort::to_lane has them. Who changes them says so
  /// for the constant with that place among those of the formulas.
  template <class W>
  W* get_lanes(Slot slot) {
    return static_cast<W*>(at(places[slot]));
  }
  const LaneSort& get_sort(Slot slot) const { return sorts[slot]; }
  void mark_changed(std::size_t constant);

  /// Computes what has changed. Returns the first of the first `count` lanes under which no formula
  /// is false, if there is one. Rounding is to nearest afterwards.
  std::optional<std::size_t> run(std::size_t count);
  /// The value of a slot in a lane that run has returned, in the form of Evaluator.
  std::uint64_t get_word(Slot slot, std::size_t lane) const;

  /// What the runs have taken, in operations of the processor on one lane.
  std::uint64_t get_effort() const { return effort; }
  /// About what a run takes in which every constant has changed, and what each of its lanes takes
  /// besides, of operations that the processor lacks.
  std::uint64_t get_block_effort() const;
  std::uint64_t get_lane_effort() const;

 private:
  using Mode = IEEEFloat::rounding_mode;
  struct Root {
    Slot slot;
    std::size_t after;              // steps, by which it is known
    std::vector<std::size_t> open;  // places of lanes that say where it is not
  };
  struct Free {
    void operator()(std::byte* p) const;
  };

  void* at(std::size_t place) const { return memory.get() + place; }
  std::size_t reserve(std::size_t lane_bits);
  void place_leaf(const WordProgram& formulas, Slot slot);
  void add_step(const WordProgram& formulas, Slot slot);
  void add_root(Slot slot);
  void fill(Slot slot, std::uint64_t lane);
  void compute(LaneStep& step);
  void compute_natively(LaneStep& step, Mode mode);
  void compute_in_modes(LaneStep& step);
  void compute_exactly(LaneStep& step, const std::uint32_t* wanted);
  bool narrow(const Root& root);
  std::uint64_t get_lane(Slot slot, std::size_t lane) const;
  void set_lane(Slot slot, std::size_t lane, std::uint64_t value);

  std::vector<LaneSort> sorts;       // by slot
  std::vector<std::size_t> places;   // by slot, in memory: a defined constant has that of its term
  std::vector<std::uint64_t> needs;  // by slot, as in steps
  std::vector<std::vector<std::size_t>> opened;  // by slot: lanes that say where it is open
  std::vector<LaneStep> steps;
  std::vector<Root> roots;  // in the order in which they are known
  std::unique_ptr<std::byte, Free> memory;
  std::size_t used = 0;             // of the memory
  std::size_t lane_count = kLanes;  // of the last run
  std::size_t alive = 0;            // place of the lanes under which no formula is false yet
  std::uint64_t changed = std::numeric_limits<std::uint64_t>::max();  // constants
  std::uint64_t effort = 0;
};

}  // namespace vorn::search

#endif
