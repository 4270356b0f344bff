// Simplification at construction: constant folding and local rules.
//
// A rule looks at an operation and at most one level below it, and costs a few lookups. That is
// enough for an encoding of literals to collapse into a literal and for the obvious redundancy of
// circuits to vanish; deeper reasoning is the business of the and-inverter graph below.
#ifndef VORN_TERMS_REWRITER_H
#define VORN_TERMS_REWRITER_H

#include <cstddef>
#include <span>

#include "vorn/terms/term.h"

namespace vorn {

class TermManager;
struct Operation;

/// Applies the rules to one operation that is about to be built.
class Rewriter {
 public:
  using Args = std::span<const Term* const>;

  explicit Rewriter(TermManager& manager) : mgr(manager) {}

  /// A simpler equal term, or null when no rule applies. Operands have been checked; those of
  /// commutative operations are in the order of their identifiers.
  const Term* rewrite(const Operation& op, const DataType* type, Args args,
                      const Symbol::Indices& indices);

 private:
  const Term* fold(SymbolTag::tag tag, const DataType* type, Args args,
                   const Symbol::Indices& indices);

  const Term* negation(const Term* a);
  const Term* junction(SymbolTag::tag tag, const Term* a, const Term* b);
  const Term* exclusive_or(const Term* a, const Term* b);
  const Term* equality(const Term* a, const Term* b);
  const Term* if_then_else(const Term* c, const Term* a, const Term* b);

  const Term* extract(std::size_t msb, std::size_t lsb, const Term* t);
  const Term* concat(const Term* a, const Term* b);
  const Term* extend(SymbolTag::tag tag, std::size_t n, const Term* t);
  const Term* bitwise(SymbolTag::tag tag, const Term* a, const Term* b);
  const Term* arithmetic(SymbolTag::tag tag, const Term* a, const Term* b);
  const Term* division(SymbolTag::tag tag, const Term* a, const Term* b);
  const Term* shift(SymbolTag::tag tag, const Term* a, const Term* b);
  const Term* compare_bits(const Term* a, const Term* b);
  const Term* order(SymbolTag::tag tag, const Term* a, const Term* b);

  const Term* select(const Term* a, const Term* i);
  const Term* store(const Term* a, const Term* i, const Term* v);
  const Term* array_equality(const Term* a, const Term* b);
  bool are_different(const Term* a, const Term* b) const;

  bool is_value(const Term* t, int value) const;
  bool is_all_ones(const Term* t) const;
  bool is_complement(SymbolTag::tag negation, const Term* a, const Term* b) const;
  struct Offset {
    const Term* base;  // null: zero
    QNumber distance;
  };
  Offset split_offset(const Term* t) const;
  const Term* zero(const Term* like);
  const Term* ones(const Term* like);

  TermManager& mgr;
};

}  // namespace vorn

#endif
