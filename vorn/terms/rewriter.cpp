#include "vorn/terms/rewriter.h"

#include <utility>

#include "vorn/terms/bv_number.h"
#include "vorn/terms/folding.h"
#include "vorn/terms/operations.h"
#include "vorn/terms/term_manager.h"

namespace vorn {
namespace {

using T = SymbolTag;

std::size_t width_of(const Term* t) {
  return t->get_type()->get_width();
}

}  // namespace

const Term* Rewriter::rewrite(const Operation& op, const DataType* type, Args args,
                              const Symbol::Indices& indices) {
  const SymbolTag::tag tag = op.tag;
  if (op.theory == Theory::bit_vectors) {
    if (const Term* folded = fold(tag, type, args, indices)) return folded;
  }
  switch (tag) {
    case T::bool_not:
      return negation(args[0]);
    case T::bool_and:
    case T::bool_or:
      return junction(tag, args[0], args[1]);
    case T::bool_xor:
      return exclusive_or(args[0], args[1]);
    case T::bool_implies:
      return mgr.make_or(mgr.make_not(args[0]), args[1]);
    case T::bool_iff:
      return mgr.make_not(mgr.make_xor(args[0], args[1]));
    case T::equal:
      return equality(args[0], args[1]);
    case T::ite:
      return if_then_else(args[0], args[1], args[2]);

    case T::bv_extract:
      return extract(indices[0], indices[1], args[0]);
    case T::bv_concat:
      return concat(args[0], args[1]);
    case T::bv_zero_extend:
    case T::bv_sign_extend:
      return extend(tag, indices[0], args[0]);
    case T::bv_not:
    case T::bv_neg:
      return args[0]->get_tag() == tag ? args[0]->get_arg(0) : nullptr;
    case T::bv_and:
    case T::bv_or:
    case T::bv_xor:
      return bitwise(tag, args[0], args[1]);
    case T::bv_add:
    case T::bv_sub:
    case T::bv_mul:
      return arithmetic(tag, args[0], args[1]);
    case T::bv_udiv:
    case T::bv_urem:
      return division(tag, args[0], args[1]);
    case T::bv_shl:
    case T::bv_lshr:
    case T::bv_ashr:
      return shift(tag, args[0], args[1]);
    case T::bv_comp:
      return compare_bits(args[0], args[1]);
    case T::bv_ult:
    case T::bv_ule:
    case T::bv_slt:
    case T::bv_sle:
      return order(tag, args[0], args[1]);

    case T::array_select:
      return select(args[0], args[1]);
    case T::array_store:
      return store(args[0], args[1], args[2]);
    default:
      break;
  }
  return nullptr;
}

// Constants -----------------------------------------------------------------------------------

const Term* Rewriter::fold(SymbolTag::tag tag, const DataType* type, Args args,
                           const Symbol::Indices& indices) {
  const QNumber* x = mgr.get_number(args.front()->get_symbol());
  const QNumber* y = mgr.get_number(args.back()->get_symbol());
  if (x == nullptr || y == nullptr) return nullptr;
  const QNumber value =
      fold_bv_operation(tag, indices, {*x, width_of(args.front())}, {*y, width_of(args.back())});
  if (mgr.is_bool_type(type)) return mgr.make_bool(value.sign() != 0);
  return mgr.make_bv_number(value, type->get_width());
}

bool Rewriter::is_value(const Term* t, int value) const {
  const QNumber* number = mgr.get_number(t->get_symbol());
  return number != nullptr && *number == QNumber(value);
}

bool Rewriter::is_all_ones(const Term* t) const {
  const QNumber* number = mgr.get_number(t->get_symbol());
  return number != nullptr && *number == BVNumber::all_ones(width_of(t));
}

bool Rewriter::is_complement(SymbolTag::tag negation, const Term* a, const Term* b) const {
  return (a->get_tag() == negation && a->get_arg(0) == b) ||
         (b->get_tag() == negation && b->get_arg(0) == a);
}

const Term* Rewriter::zero(const Term* like) {
  return mgr.make_bv_number(0, width_of(like));
}

const Term* Rewriter::ones(const Term* like) {
  return mgr.make_bv_number(BVNumber::all_ones(width_of(like)), width_of(like));
}

// Booleans ------------------------------------------------------------------------------------

const Term* Rewriter::negation(const Term* a) {
  if (a == mgr.make_true()) return mgr.make_false();
  if (a == mgr.make_false()) return mgr.make_true();
  return a->get_tag() == T::bool_not ? a->get_arg(0) : nullptr;
}

/// Conjunction, or its dual. With `unit` the neutral and `absorber` the absorbing value:
/// a & (a & b) = a & b, a & (a | b) = a, a & (!a & b) = false, a & (!a | b) = a & b.
const Term* Rewriter::junction(SymbolTag::tag tag, const Term* a, const Term* b) {
  const bool conjunction = tag == T::bool_and;
  const SymbolTag::tag dual = conjunction ? T::bool_or : T::bool_and;
  const Term* unit = mgr.make_bool(conjunction);
  const Term* absorber = mgr.make_bool(!conjunction);
  if (a == unit || a == b) return b;
  if (b == unit) return a;
  if (a == absorber || b == absorber || is_complement(T::bool_not, a, b)) return absorber;

  for (const auto& [x, y] : {std::pair(a, b), std::pair(b, a)}) {
    for (std::size_t i = 0; i < 2; ++i) {
      if (y->get_tag() == tag) {
        if (y->get_arg(i) == x) return y;
        if (is_complement(T::bool_not, x, y->get_arg(i))) return absorber;
      } else if (y->get_tag() == dual) {
        if (y->get_arg(i) == x) return x;
        if (is_complement(T::bool_not, x, y->get_arg(i))) {
          const Term* rest = y->get_arg(1 - i);
          return conjunction ? mgr.make_and(x, rest) : mgr.make_or(x, rest);
        }
      }
    }
  }
  return nullptr;
}

const Term* Rewriter::exclusive_or(const Term* a, const Term* b) {
  if (a == b) return mgr.make_false();
  if (is_complement(T::bool_not, a, b)) return mgr.make_true();
  if (a == mgr.make_false()) return b;
  if (b == mgr.make_false()) return a;
  // Negations move out, so that x ^ y and !x ^ y share their exclusive or.
  if (a == mgr.make_true()) return mgr.make_not(b);
  if (b == mgr.make_true()) return mgr.make_not(a);
  if (a->get_tag() == T::bool_not) return mgr.make_not(mgr.make_xor(a->get_arg(0), b));
  if (b->get_tag() == T::bool_not) return mgr.make_not(mgr.make_xor(a, b->get_arg(0)));
  return nullptr;
}

const Term* Rewriter::equality(const Term* a, const Term* b) {
  if (a == b) return mgr.make_true();
  switch (a->get_type()->get_kind()) {
    case DataType::Kind::boolean:
      return mgr.make_iff(a, b);
    case DataType::Kind::rounding_mode:
      if (mgr.is_fprounding(a->get_symbol(), nullptr) &&
          mgr.is_fprounding(b->get_symbol(), nullptr)) {
        return mgr.make_false();
      }
      return nullptr;
    case DataType::Kind::bit_vector:
      if (is_complement(T::bv_not, a, b)) return mgr.make_false();
      if (mgr.is_number(a, nullptr) && mgr.is_number(b, nullptr)) return mgr.make_false();
      return nullptr;
    case DataType::Kind::floating_point:
      // Two different NaN patterns are the same value: nothing can be said of two literals here.
      return nullptr;
    case DataType::Kind::array:
      return array_equality(a, b);
    case DataType::Kind::uninterpreted:
      return are_different(a, b) ? mgr.make_false() : nullptr;
  }
  return nullptr;
}

const Term* Rewriter::if_then_else(const Term* c, const Term* a, const Term* b) {
  if (c == mgr.make_true() || a == b) return a;
  if (c == mgr.make_false()) return b;
  if (c->get_tag() == T::bool_not) return mgr.make_term_ite(c->get_arg(0), b, a);
  if (mgr.is_bool_type(a->get_type())) {
    if (a == mgr.make_true() || a == c) return mgr.make_or(c, b);
    if (a == mgr.make_false()) return mgr.make_and(mgr.make_not(c), b);
    if (b == mgr.make_false() || b == c) return mgr.make_and(c, a);
    if (b == mgr.make_true()) return mgr.make_or(mgr.make_not(c), a);
  }
  return nullptr;
}

// Bit-vectors ---------------------------------------------------------------------------------

const Term* Rewriter::extract(std::size_t msb, std::size_t lsb, const Term* t) {
  // Steps down to the part that holds the bits in a loop: compositions may be nested very deep.
  const Term* const whole = t;
  for (;;) {
    if (lsb == 0 && msb + 1 == width_of(t)) return t;
    const Term* part = nullptr;
    std::size_t offset = 0;  // of the part within t
    switch (t->get_tag()) {
      case T::bv_extract:
        part = t->get_arg(0);
        msb += t->get_symbol()->get_indices()[1];
        lsb += t->get_symbol()->get_indices()[1];
        break;
      case T::bv_concat: {
        const std::size_t low = width_of(t->get_arg(1));
        if (msb < low) part = t->get_arg(1);
        if (lsb >= low) {
          part = t->get_arg(0);
          offset = low;
        }
        break;
      }
      case T::bv_zero_extend:
      case T::bv_sign_extend: {
        const Term* inner = t->get_arg(0);
        const std::size_t width = width_of(inner);
        if (msb < width) part = inner;
        if (lsb < width) break;
        if (t->get_tag() == T::bv_zero_extend) return mgr.make_bv_number(0, msb - lsb + 1);
        if (msb > lsb) {
          const Term* top = mgr.make_bv_extract(width - 1, width - 1, inner);
          return mgr.make_bv_sign_extend(msb - lsb, top);
        }
        part = inner;
        msb = lsb = width - 1;
        break;
      }
      default:
        break;
    }
    // At the end of the way down: fold a literal, or extract from where the walk stopped.
    if (part == nullptr) return t == whole ? nullptr : mgr.make_bv_extract(msb, lsb, t);
    t = part;
    msb -= offset;
    lsb -= offset;
  }
}

const Term* Rewriter::concat(const Term* a, const Term* b) {
  // Neighbouring pieces of one term.
  if (a->get_tag() != T::bv_extract || b->get_tag() != T::bv_extract) return nullptr;
  if (a->get_arg(0) != b->get_arg(0)) return nullptr;
  const Symbol::Indices& high = a->get_symbol()->get_indices();
  const Symbol::Indices& low = b->get_symbol()->get_indices();
  if (high[1] != low[0] + 1) return nullptr;
  return mgr.make_bv_extract(high[0], low[1], a->get_arg(0));
}

const Term* Rewriter::extend(SymbolTag::tag tag, std::size_t n, const Term* t) {
  if (n == 0) return t;
  if (t->get_tag() != tag) return nullptr;
  const std::size_t total = n + t->get_symbol()->get_indices()[0];
  return tag == T::bv_zero_extend ? mgr.make_bv_zero_extend(total, t->get_arg(0))
                                  : mgr.make_bv_sign_extend(total, t->get_arg(0));
}

const Term* Rewriter::bitwise(SymbolTag::tag tag, const Term* a, const Term* b) {
  if (a == b) return tag == T::bv_xor ? zero(a) : a;
  if (is_complement(T::bv_not, a, b)) return tag == T::bv_and ? zero(a) : ones(a);
  for (const auto& [x, y] : {std::pair(a, b), std::pair(b, a)}) {
    if (is_value(x, 0)) return tag == T::bv_and ? x : y;
    if (is_all_ones(x)) {
      if (tag == T::bv_xor) return mgr.make_bv_not(y);
      return tag == T::bv_and ? y : x;
    }
    const bool dual = (tag == T::bv_and && y->get_tag() == T::bv_or) ||
                      (tag == T::bv_or && y->get_tag() == T::bv_and);
    const bool same = tag == y->get_tag() && tag != T::bv_xor;
    if ((dual || same) && (y->get_arg(0) == x || y->get_arg(1) == x)) return dual ? x : y;
  }
  return nullptr;
}

const Term* Rewriter::arithmetic(SymbolTag::tag tag, const Term* a, const Term* b) {
  if (tag == T::bv_sub) {
    if (a == b) return zero(a);
    if (is_value(a, 0)) return mgr.make_bv_neg(b);
    return is_value(b, 0) ? a : nullptr;
  }
  const int neutral = tag == T::bv_add ? 0 : 1;
  for (const auto& [x, y] : {std::pair(a, b), std::pair(b, a)}) {
    if (is_value(x, neutral)) return y;
    if (tag == T::bv_mul && is_value(x, 0)) return x;
  }
  return nullptr;
}

const Term* Rewriter::division(SymbolTag::tag tag, const Term* a, const Term* b) {
  if (is_value(b, 1)) return tag == T::bv_udiv ? a : zero(a);
  if (is_value(b, 0)) return tag == T::bv_udiv ? ones(a) : a;
  return nullptr;
}

const Term* Rewriter::shift(SymbolTag::tag tag, const Term* a, const Term* b) {
  if (is_value(a, 0) || is_value(b, 0)) return a;
  const QNumber* distance = mgr.get_number(b->get_symbol());
  const bool all_out =
      distance != nullptr && *distance >= QNumber(static_cast<std::int64_t>(width_of(a)));
  return all_out && tag != T::bv_ashr ? zero(a) : nullptr;
}

const Term* Rewriter::compare_bits(const Term* a, const Term* b) {
  if (a == b) return mgr.make_bv_number(1, 1);
  if (is_complement(T::bv_not, a, b)) return mgr.make_bv_number(0, 1);
  if (width_of(a) != 1) return nullptr;
  for (const auto& [x, y] : {std::pair(a, b), std::pair(b, a)}) {
    if (is_value(x, 1)) return y;
    if (is_value(x, 0)) return mgr.make_bv_not(y);
  }
  return nullptr;
}

const Term* Rewriter::order(SymbolTag::tag tag, const Term* a, const Term* b) {
  const bool strict = tag == T::bv_ult || tag == T::bv_slt;
  if (a == b) return mgr.make_bool(!strict);
  if (tag == T::bv_ult && is_value(b, 0)) return mgr.make_false();
  if (tag == T::bv_ule && is_value(a, 0)) return mgr.make_true();
  return nullptr;
}

}  // namespace vorn
