// What theorems of IEEE 754 say of several results of operations at once.
//
// Each operation has a circuit of its own, and that the result of one is never below that of
// another is a long way through both of them for a SAT solver. Said once more, as a comparison of
// terms that the formula has anyway, it costs next to nothing. A lemma holds under every
// assignment, so it may be stated beside any formula; it brings no operation but comparisons, tests
// of classes and Boolean ones.
//
// Terms are handed over one by one, arguments first, level by level. Kinds of lemmas look for
// partners of a term among the last few that share an operand with it, so their number is linear in
// that of the terms; a lemma on two results is stated only if a comparison asks for one of them.
#ifndef VORN_REWRITE_RELATIONS_H
#define VORN_REWRITE_RELATIONS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/trail.h"

namespace vorn::rewrite {

class Relations;

/// A kind of lemmas.
struct RelationKind {
  static constexpr std::size_t kMaxTags = 12;

  const char* name;
  /// The operations that it looks at, `none` behind them.
  std::array<SymbolTag::tag, kMaxTags> tags;
  /// States what it knows of `t` and of terms that came before.
  void (*find)(Relations& relations, const Term* t);
};

/// All of them.
std::span<const RelationKind> get_relation_kinds();

/// The lemmas on the terms of some formulas. Holds for IEEE 754 and every format with e >= 2 and
/// m >= 1, not for circuits that depart from it.
class Relations {
 public:
  /// Borrows the manager, which makes the lemmas.
  explicit Relations(TermManager& manager);

  /// Takes note of a float or a predicate on floats, all of whose arguments came before, on the
  /// current level.
  void add(const Term* t);
  /// The lemmas that have come up since the last call: Boolean terms that are true under every
  /// assignment, none of them twice on one level or on one around it.
  std::vector<const Term*> take_lemmas();
  void push();
  /// Forgets what came since the matching push.
  void pop();
  /// How many lemmas of each kind have come up, as text: "integral-order 3, ...".
  std::string describe_counts() const;
  std::uint64_t get_count(const std::string& kind) const;

  // For the kinds -------------------------------------------------------------------------------

  TermManager& get_manager() { return mgr; }
  /// The last operations that have `operand` as an argument; none for literals.
  std::vector<const Term*> get_uses(const Term* operand) const;
  /// The last functions that differ from `t` in `operand` alone, where that is its only argument
  /// that is not constant.
  std::vector<const Term*> get_alike(const Term* t, const Term* operand) const;
  /// Whether a comparison has these two sides.
  bool is_compared(const Term* a, const Term* b) const;
  /// Whether a comparison has this side.
  bool is_compared(const Term* t) const;
  void state(const Term* lemma);

 private:
  /// Operation, sorts of result and operand, mode, constant, and which argument the operand is,
  /// unless that is all the same.
  using Function = std::array<std::uint64_t, 6>;

  void add_use(const Term* operand, const Term* t);
  void add_comparison(const Term* t);
  void find_lemmas(const Term* t);
  static Function get_function(const Term* t, const Term* operand);

  TermManager& mgr;
  std::unordered_map<const Term*, std::vector<const Term*>> uses;
  std::map<Function, std::vector<const Term*>> alike;
  std::unordered_set<std::uint64_t> compared;  // pairs of identifiers, and single ones
  std::unordered_set<const Term*> stated;

  Trail<const Term*> users;  // keys of `uses`, one for each item
  Trail<Function> functions;
  Trail<std::uint64_t> comparisons;
  Trail<const Term*> lemmas;
  std::size_t taken = 0;  // lemmas that were handed out
  std::size_t noted = 0;  // terms
  std::map<std::string, std::uint64_t> counts;
  const char* current_kind = nullptr;
};

/// The operand of a function of one argument, all others of which are constant: literals and
/// whatever rounding mode; null for other terms.
const Term* find_only_operand(const Term* t);

}  // namespace vorn::rewrite

#endif
