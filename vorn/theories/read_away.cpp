#include "vorn/theories/read_away.h"

#include <algorithm>
#include <unordered_map>

#include "vorn/terms/post_order.h"

namespace vorn::theories {
namespace {

/// Whether equal values of a sort are one literal: NaN has several.
bool is_unique_literal(const TermManager& mgr, const Term* t) {
  switch (t->get_type()->get_kind()) {
    case DataType::Kind::boolean:
      return t == mgr.make_true() || t == mgr.make_false();
    case DataType::Kind::rounding_mode:
      return mgr.is_fprounding(t->get_symbol(), nullptr);
    case DataType::Kind::bit_vector:
      return mgr.is_number(t, nullptr);
    default:
      return false;
  }
}

/// Whether any value of `t` goes with any values of all other such terms.
bool is_free(const TermManager& mgr, const Term* t) {
  std::span<const Term* const> literals = t->get_args();
  if (t->get_tag() == SymbolTag::array_select) {
    if (t->get_arg(0)->get_arity() != 0) return false;
    literals = literals.subspan(1);
  } else if (!t->get_symbol()->is_function()) {
    return false;
  }
  return t->get_type()->has_bits() && std::ranges::all_of(literals, [&](const Term* arg) {
           return is_unique_literal(mgr, arg);
         });
}

}  // namespace

std::optional<std::vector<const Term*>> read_away(TermManager& mgr, TheoryTerms* terms,
                                                  std::span<const Term* const> formulas) {
  std::unordered_map<const Term*, const Term*> plain;
  for (const Term* t : list_post_order(formulas)) {
    const bool is_base = is_array(t) && t->get_arity() == 0;
    if (is_base) continue;
    if (has_stand_in(t)) {
      if (!is_free(mgr, t)) return std::nullopt;
      plain.emplace(t, terms->get_stand_in(t));
      continue;
    }
    if (!t->get_type()->has_bits()) return std::nullopt;
    std::vector<const Term*> args;
    for (const Term* arg : t->get_args())
      args.push_back(plain.at(arg));
    plain.emplace(t, mgr.rebuild(t, args));
  }
  std::vector<const Term*> result;
  for (const Term* formula : formulas)
    result.push_back(plain.at(formula));
  return result;
}

}  // namespace vorn::theories
