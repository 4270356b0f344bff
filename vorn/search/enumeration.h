// Deciding formulas by trying every assignment of their constants, where these have few.
//
// A formula over one Float32 has 2^32 assignments, and the processor evaluates some hundreds of
// millions in a second, in vectors; what ranges know of the constants leaves fewer. Constants that
// an equation defines are computed and not tried. Where no assignment is a model there is none:
// each one is counted, and the answer rests on that count and on the processor's arithmetic, which
// is compared with exact arithmetic first.
#ifndef VORN_SEARCH_ENUMERATION_H
#define VORN_SEARCH_ENUMERATION_H

#include <atomic>
#include <cstdint>
#include <exception>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "vorn/ranges/propagation.h"
#include "vorn/search/block_program.h"
#include "vorn/search/domain.h"
#include "vorn/search/word_program.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/termination_test.h"

namespace vorn::search {

/// A search through all assignments that can be interrupted and gone on with.
class Enumeration {
 public:
  using Slot = WordProgram::Slot;
  enum class Outcome : std::uint8_t {
    open,     // some assignments are left
    found,    // no formula is false under this one, or the theory leaves open whether
    refuted,  // every assignment makes a formula false
    unfit,    // the processor does not compute as IEEE 754 has it
  };

  /// A search for a model of all `formulas`; none where that would take more than `most_effort`.
  /// The ranges, which may be null, are those of formulas that hold whenever these do, and are not
  /// needed afterwards. At least one thread.
  static std::optional<Enumeration> prepare(const TermManager& manager,
                                            std::span<const Term* const> formulas,
                                            const ranges::Propagation* known,
                                            std::uint64_t most_effort, unsigned threads = 1);

  /// Goes on until there is an outcome, about `effort` is spent, or the test says so. Null: no
  /// test. An effort of 1 is an operation on one assignment, a fraction of a nanosecond. Not to be
  /// called after an outcome other than open.
  Outcome run(std::uint64_t effort, const TerminationTest* test);

  /// The effort that is still to be spent, if what is left goes as what was tried.
  double estimate() const;
  /// The constants of the formulas that were tried or computed, and their values under the
  /// assignment that was found, in the form of Evaluator.
  std::vector<std::pair<const Term*, QNumber>> get_assignment() const;
  /// The number of assignments, those of them that were tried, and the effort that it took.
  std::uint64_t get_count() const { return count; }
  std::uint64_t get_tried() const { return tried; }
  std::uint64_t get_effort() const;

 private:
  /// A constant; its values change with each `stride` assignments.
  struct Digit {
    Slot slot;
    std::size_t constant;  // its place among the constants
    Domain domain;
    std::uint64_t stride = 1;
  };
  /// What one thread works on.
  struct Worker {
    explicit Worker(const WordProgram& formulas) : program(formulas) {}
    BlockProgram program;
    std::vector<std::uint64_t> values;  // by digit: the number of its value in all lanes
    std::uint64_t tried = 0;
    std::uint64_t first = 0;  // assignments to be tried
    std::uint64_t end = 0;
    std::optional<std::uint64_t> found;  // the number of an assignment
    std::size_t lane = 0;                // that it has
    std::exception_ptr failure;
  };

  explicit Enumeration(WordProgram program) : formulas(std::move(program)) {}
  bool add_digits(const ranges::Propagation* known);
  bool order_digits();
  void fill(Worker& worker, std::uint64_t first) const;
  template <class W>
  void fill_digit(Worker& worker, std::size_t digit, std::uint64_t first) const;
  void work_apart(Worker& worker, std::atomic<bool>* stop) const;
  void work(Worker& worker, const TerminationTest* test, std::atomic<bool>* stop) const;

  WordProgram formulas;
  std::vector<Digit> digits;  // innermost first
  std::vector<Worker> workers;
  std::uint64_t count = 1;
  std::uint64_t tried = 0;  // all assignments before that number
  bool is_checked = false;  // the arithmetic of the processor
  std::size_t finder = 0;   // the worker that has found an assignment
};

}  // namespace vorn::search

#endif
