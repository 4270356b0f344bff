// Rules for arrays: reads through writes at other indices, and what writes leave of each other.
//
// Programs write memory at addresses that are known, or known up to a base. A read passes by the
// writes that are surely elsewhere when it is built, so that such memory costs nothing later.
#include "vorn/terms/bv_number.h"
#include "vorn/terms/ieee_float.h"
#include "vorn/terms/rewriter.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/termination_poll.h"

namespace vorn {
namespace {

using T = SymbolTag;

}  // namespace

/// A bit-vector as a base and a distance from it.
Rewriter::Offset Rewriter::split_offset(const Term* t) const {
  if (const QNumber* number = mgr.get_number(t->get_symbol())) return {nullptr, *number};
  if (t->get_tag() == T::bv_add) {
    for (const std::size_t i : {0U, 1U}) {
      const QNumber* number = mgr.get_number(t->get_arg(i)->get_symbol());
      if (number != nullptr) return {t->get_arg(1 - i), *number};
    }
  }
  return {t, QNumber(0)};
}

/// Whether two terms of one sort have different values whatever the values of constants are, as
/// far as that can be seen at a glance.
bool Rewriter::are_different(const Term* a, const Term* b) const {
  const QNumber* x = mgr.get_number(a->get_symbol());
  const QNumber* y = mgr.get_number(b->get_symbol());
  switch (a->get_type()->get_kind()) {
    case DataType::Kind::boolean:
      return is_complement(T::bool_not, a, b) ||
             (a->get_arity() == 0 && b->get_arity() == 0 && a->get_tag() != b->get_tag() &&
              a->get_tag() != T::none && b->get_tag() != T::none);
    case DataType::Kind::rounding_mode:
      return a != b && mgr.is_fprounding(a->get_symbol(), nullptr) &&
             mgr.is_fprounding(b->get_symbol(), nullptr);
    case DataType::Kind::bit_vector: {
      if (x != nullptr && y != nullptr) return *x != *y;
      const Offset first = split_offset(a);
      const Offset second = split_offset(b);
      return first.base == second.base && first.distance != second.distance;
    }
    case DataType::Kind::floating_point: {
      if (x == nullptr || y == nullptr || *x == *y) return false;
      const IEEEFloat::format f = a->get_type()->get_format();
      return !IEEEFloat::from_bits(f, *x).is_nan() || !IEEEFloat::from_bits(f, *y).is_nan();
    }
    case DataType::Kind::uninterpreted:
      return x != nullptr && y != nullptr && *x != *y;
    case DataType::Kind::array:
      break;
  }
  return false;
}

const Term* Rewriter::select(const Term* a, const Term* i) {
  // Chains of writes may be as long as memory allows: a read alone can take milliseconds.
  TerminationPoll poll(mgr.get_termination_test());
  const Term* const whole = a;
  while (a->get_tag() == T::array_store) {
    if (poll.is_over()) throw Terminated();
    if (a->get_arg(1) == i) return a->get_arg(2);
    if (!are_different(a->get_arg(1), i)) break;
    a = a->get_arg(0);
  }
  if (a->get_tag() == T::array_const) return a->get_arg(0);
  return a == whole ? nullptr : mgr.make_select(a, i);
}

const Term* Rewriter::store(const Term* a, const Term* i, const Term* v) {
  // What was there, or is there no longer.
  if (v->get_tag() == T::array_select && v->get_arg(0) == a && v->get_arg(1) == i) return a;
  if (a->get_tag() == T::array_const && a->get_arg(0) == v) return a;
  if (a->get_tag() != T::array_store || a->get_arg(1) != i) return nullptr;
  return mgr.make_store(a->get_arg(0), i, v);
}

/// Every sort has a value, so arrays of one value each are equal where these are.
const Term* Rewriter::array_equality(const Term* a, const Term* b) {
  if (a->get_tag() == T::array_const && b->get_tag() == T::array_const) {
    return mgr.make_equal(a->get_arg(0), b->get_arg(0));
  }
  const bool are_alike = a->get_tag() == T::array_store && b->get_tag() == T::array_store &&
                         a->get_arg(0) == b->get_arg(0) && a->get_arg(1) == b->get_arg(1);
  return are_alike ? mgr.make_equal(a->get_arg(2), b->get_arg(2)) : nullptr;
}

}  // namespace vorn
