// Which terms of the formulas at work are for the theories of arrays, functions and sorts.
//
// Circuits know bits only. A read, an application, an equality of arrays and a constant of an
// uninterpreted sort are constants to them, the stand-ins, and what arrays and functions ask of
// these constants is checked on each model and stated where a model breaks it. Arrays themselves
// have no bits at all.
#ifndef VORN_THEORIES_THEORY_TERMS_H
#define VORN_THEORIES_THEORY_TERMS_H

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/trail.h"

namespace vorn::theories {

/// Whether `t` has a stand-in: a read or application, an equality of arrays, a constant of an
/// uninterpreted sort; but for those whose values are arrays.
bool has_stand_in(const Term* t);

/// Whether `t` is of an array sort.
bool is_array(const Term* t);

/// Whether `test` holds for the kind of the sort or, of arrays, of a sort that they are made of.
template <class Test>
bool has_part(const DataType* type, const Test& test) {
  if (type->get_kind() != DataType::Kind::array) return test(type->get_kind());
  return has_part(type->get_index(), test) || has_part(type->get_element(), test);
}

/// The terms that formulas have, level by level, and their stand-ins. What comes back after its
/// level was closed has the same stand-in.
class TheoryTerms {
 public:
  explicit TheoryTerms(TermManager& manager) : mgr(manager) {}

  /// Notes a term of the current level, once: an array, a literal of an uninterpreted sort, or what
  /// has a stand-in.
  void add(const Term* t) { terms.add(t); }
  void push() { terms.push(); }
  void pop() { terms.pop(); }
  /// The terms of all levels, arguments before the terms that use them.
  const std::vector<const Term*>& get_terms() const { return terms.get_items(); }
  bool is_empty() const { return terms.get_size() == 0; }

  /// The constant that stands for `t`, which has_stand_in: of the sort of `t`, or bits that tell
  /// elements of an uninterpreted sort apart. Throws std::length_error where these are too many.
  const Term* get_stand_in(const Term* t);
  /// The bits that stand for `t`, a literal of an uninterpreted sort: its number. Throws
  /// std::length_error where that is too large.
  const Term* get_element(const Term* t);
  /// The index at which two arrays are to differ if this equality of them is false.
  const Term* get_witness(const Term* equality);
  /// That arrays which are not equal differ at the witness.
  const Term* state_difference(const Term* equality);

  /// The bits of an element. A formula without quantifiers needs no more elements of a sort than it
  /// has terms of it.
  static constexpr std::size_t kElementWidth = 16;

 private:
  TermManager& mgr;
  Trail<const Term*> terms;
  std::unordered_map<const Term*, const Term*> stand_ins;
  std::unordered_map<const Term*, const Term*> witnesses;
  std::size_t elements = 0;  // stand-ins of elements
};

}  // namespace vorn::theories

#endif
