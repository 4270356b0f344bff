// Which assertions are definitions: equations of constants, Boolean ones among them.
#include <utility>

#include "vorn/rewrite/fp_patterns.h"
#include "vorn/rewrite/top_level.h"

namespace vorn::rewrite {
namespace {

/// Whether fp.eq with `t` is equality: a literal other than zero, of which there are two, and NaN.
bool is_unique_number(const Term* t) {
  const OptionalFloat value = float_literal(t);
  return value && !value->is_nan() && !value->is_zero();
}

/// The definitions that a = b may be read as.
std::vector<Definition> read_equation(const TermManager& mgr, const Term* a, const Term* b) {
  std::vector<Definition> found;
  if (a == b) return found;
  // Of two constants the younger goes: it is the one that a front end or a user has added.
  if (is_bit_constant(mgr, b) && (!is_bit_constant(mgr, a) || a->get_id() < b->get_id())) {
    std::swap(a, b);
  }
  if (is_bit_constant(mgr, a)) found.push_back({a, b});
  if (is_bit_constant(mgr, b)) found.push_back({b, a});
  return found;
}

}  // namespace

bool is_literal(const TermManager& mgr, const Term* t) {
  return t == mgr.make_true() || t == mgr.make_false() || mgr.is_number(t, nullptr) ||
         mgr.is_fprounding(t->get_symbol(), nullptr);
}

bool is_bit_constant(const TermManager& mgr, const Term* t) {
  return t->get_tag() == SymbolTag::none && t->get_arity() == 0 && t->get_type()->has_bits() &&
         !is_literal(mgr, t);
}

std::vector<Definition> read_definitions(TermManager& mgr, const Term* formula) {
  bool holds = true;
  for (; has_tag(formula, SymbolTag::bool_not); formula = formula->get_arg(0))
    holds = !holds;
  if (is_bit_constant(mgr, formula)) return {{formula, mgr.make_bool(holds)}};
  if (formula->get_arity() != 2) return {};
  const Term* a = formula->get_arg(0);
  const Term* b = formula->get_arg(1);
  switch (formula->get_tag()) {
    case SymbolTag::bool_xor:
      holds = !holds;
      break;
    case SymbolTag::bool_iff:
    case SymbolTag::equal:
      break;
    case SymbolTag::fp_equal:
      if (!holds || (!is_unique_number(a) && !is_unique_number(b))) return {};
      break;
    default:
      return {};
  }
  std::vector<Definition> found;
  if (!holds && !mgr.is_bool_type(a->get_type())) return found;
  found = read_equation(mgr, a, b);
  if (holds) return found;
  for (Definition& definition : found)
    definition.value = mgr.make_not(definition.value);
  return found;
}

}  // namespace vorn::rewrite
