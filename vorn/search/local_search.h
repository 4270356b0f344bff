// Looking for a model by trying out assignments, where a formula of numeric code has many models
// and bits are a poor way to find one: a polynomial's value says in which direction to go.
//
// At every other start, the floats of violated comparisons move together, as they would for linear
// ones. Otherwise the search changes one constant at a time. It tries a few values, steps of
// powers of two in the order of floats, literals of the formula and random ones, and keeps the one
// that brings the assertions nearest to holding; where none does, what is violated weighs more from
// then on. The cost that it minimises is that of WordProgram. Random numbers come from a seed and
// effort is counted in operations, so that a search always goes the same way.
#ifndef VORN_SEARCH_LOCAL_SEARCH_H
#define VORN_SEARCH_LOCAL_SEARCH_H

#include <cstdint>
#include <optional>
#include <random>
#include <span>
#include <vector>

#include "vorn/search/word_program.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/termination_test.h"

namespace vorn::search {

class LocalSearch {
 public:
  /// A search for a model of all `assertions`; none where they have no constant, or terms that are
  /// too wide or too many for it.
  static std::optional<LocalSearch> prepare(const TermManager& manager,
                                            std::span<const Term* const> assertions,
                                            std::uint64_t seed);

  /// Looks until an assignment seems to be a model, operations worth `effort` were evaluated, or
  /// the test says so. Null: no test. Another call goes on from a new start.
  bool run(std::uint64_t effort, const TerminationTest* test);

  /// The constants of the assertions, and after a successful search their values in the form of
  /// Evaluator.
  std::vector<WordProgram::Slot> get_constants() const;
  const Term* get_term(WordProgram::Slot slot) const { return program.get_term(slot); }
  QNumber get_value(WordProgram::Slot slot) const { return program.get_number(slot); }
  /// The number of operations in the assertions.
  std::uint64_t get_size() const { return all.size(); }

 private:
  using Slot = WordProgram::Slot;
  struct Variable {
    Slot slot;
    std::size_t width;
    std::size_t fraction_width;        // of a float; else 0
    std::vector<Slot> cone;            // what depends on it, in order
    std::vector<std::uint32_t> roots;  // the assertions that do
    std::vector<std::uint64_t> pool;   // literals of its sort
    std::uint64_t effort = 1;          // of computing the cone
    bool is_mode = false;
  };
  struct Root {
    Slot slot;
    double weight = 1;
    std::vector<std::uint32_t> variables;
  };
  struct Saved {
    std::uint64_t value;
    WordProgram::Cost cost;
  };

  /// An atom, and whether it is to be true or false.
  struct Aim {
    Slot atom;
    bool truth;
  };

  LocalSearch(WordProgram compiled, std::uint64_t seed);
  bool find_cones();
  enum class Descent : std::uint8_t { holds, stuck, is_over };

  void restart(bool at_zero);
  Descent descend(bool is_projecting, int moves, std::uint64_t effort, const TerminationTest* test);
  const Root* pick_violated();
  Aim find_aim(const Root& root) const;
  std::optional<double> get_excess(const Aim& aim) const;
  double get_slope(const Variable& v, const Aim& aim, double excess, double scale);
  bool project(const Root& root);
  void improve(const Variable& v);
  double get_cost(const Variable& v) const;
  double try_value(const Variable& v, std::uint64_t value);
  void save(const Variable& v);
  void restore(const Variable& v);
  void go_on(const Variable& v, std::int64_t step, double cost);
  std::uint64_t propose(const Variable& v, std::int64_t* step);
  std::uint64_t pick_random(const Variable& v);
  std::uint64_t add(const Variable& v, std::uint64_t value, std::int64_t step) const;
  std::uint64_t draw(std::uint64_t bound) { return random() % bound; }

  WordProgram program;
  std::mt19937_64 random;
  std::vector<Variable> variables;
  std::vector<Root> roots;
  std::vector<Slot> all;     // every operation
  std::vector<Saved> saved;  // of the cone that is being tried
  std::uint64_t spent = 0;   // operations evaluated
};

}  // namespace vorn::search

#endif
