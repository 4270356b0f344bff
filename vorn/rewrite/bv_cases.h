// Bit-vector terms case by case: the conditions of their if-then-else terms are Boolean
// combinations of a few atoms, and each assignment of truth values to these is a case. In a case an
// if-then-else is one of its branches, and what the case has as equal is one term.
//
// Some cases can be impossible, since atoms are taken for independent; what holds in all of them
// holds.
#ifndef VORN_REWRITE_BV_CASES_H
#define VORN_REWRITE_BV_CASES_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"

namespace vorn::rewrite {

/// One assignment of truth values to atoms.
class BvCase {
 public:
  /// Bit i of `number` is the value of atom i.
  BvCase(const TermManager& manager, const std::vector<const Term*>& atoms, std::uint32_t number);

  /// What `t` is in this case, as far as its outermost operations and the atoms tell.
  const Term* resolve(const Term* t) const;

 private:
  std::optional<bool> find_value(const Term* condition) const;
  void make_equal(const Term* a, const Term* b);

  const TermManager& mgr;
  std::map<std::size_t, bool> values;                  // of atoms, by identifier
  std::map<std::size_t, const Term*> representatives;  // numbers, or terms of smaller identifiers
};

/// The atoms of conditions, and what there is in each case.
class BvCases {
 public:
  static constexpr std::size_t kMostAtoms = 4;

  explicit BvCases(TermManager& manager) : mgr(manager) {}

  /// Takes the atoms of a Boolean term in. False where there are too many, or where the term is too
  /// large: then these are no cases for it.
  bool add_condition(const Term* condition);
  bool is_empty() const { return atoms.empty(); }

  /// What `evaluate` gives for each case, put together by if-then-else terms over the atoms; null
  /// where it gives null for any. Atoms that make no difference have none.
  const Term* select(const std::function<const Term*(const BvCase&)>& evaluate) const;

 private:
  TermManager& mgr;
  std::vector<const Term*> atoms;
};

}  // namespace vorn::rewrite

#endif
