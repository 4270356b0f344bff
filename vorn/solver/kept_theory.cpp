#include "vorn/solver/kept_theory.h"

#include <algorithm>
#include <span>
#include <stdexcept>

namespace vorn::solver {
namespace {

/// Whether there are codes that are no value of the sort, or not for certain: of other NaNs, of
/// modes that do not exist, of elements that a model may have or not.
bool has_gaps(const DataType* type) {
  using Kind = DataType::Kind;
  return theories::has_part(type, [](Kind kind) {
    return kind == Kind::floating_point || kind == Kind::rounding_mode ||
           kind == Kind::uninterpreted;
  });
}

/// Whether equal arguments of the sort may have codes that differ.
bool is_loose(const DataType* type) {
  return type->get_kind() == DataType::Kind::array && has_gaps(type);
}

/// Whether arrays of the sort are, or have as elements, such as are indexed by a sort with gaps.
bool has_gaps_as_index(const DataType* type) {
  for (; type->get_kind() == DataType::Kind::array; type = type->get_element()) {
    if (has_gaps(type->get_index())) return true;
  }
  return false;
}

}  // namespace

/// Throws where what codes without a value have in them would be told apart.
void KeptTheory::check() const {
  const std::vector<const Term*>& terms = theory.get_terms();
  const auto is_loose_in = [](const Term* t) {
    const auto is_loose_term = [](const Term* arg) { return is_loose(arg->get_type()); };
    if (t->get_symbol()->is_function()) return std::ranges::any_of(t->get_args(), is_loose_term);
    const bool has_index =
        t->get_tag() == SymbolTag::array_select || t->get_tag() == SymbolTag::array_store;
    return has_index && is_loose_term(t->get_arg(1));
  };
  if (std::ranges::any_of(terms, is_loose_in)) {
    throw std::invalid_argument(
        "arrays of floats, rounding modes or uninterpreted sorts as indices or arguments cannot be "
        "kept");
  }
  const bool has_constants = std::ranges::any_of(terms, [](const Term* t) {
    return t->get_tag() == SymbolTag::array_const && has_gaps_as_index(t->get_type());
  });
  const bool has_equalities = std::ranges::any_of(terms, [](const Term* t) {
    return t->get_tag() == SymbolTag::equal && has_gaps_as_index(t->get_arg(0)->get_type());
  });
  if (has_constants && has_equalities) {
    throw std::invalid_argument(
        "constant arrays over floats, rounding modes or uninterpreted sorts cannot be kept where "
        "such arrays are compared");
  }
}

const DataType* KeptTheory::convert(const DataType* type) {
  switch (type->get_kind()) {
    case DataType::Kind::floating_point:
      return mgr.get_bv_type(type->get_value_width());
    case DataType::Kind::rounding_mode:
      return mgr.get_bv_type(modes);
    case DataType::Kind::uninterpreted:
      return mgr.get_bv_type(theories::TheoryTerms::kElementWidth);
    case DataType::Kind::array:
      return mgr.get_array_type(convert(type->get_index()), convert(type->get_element()));
    default:
      return type;
  }
}

/// The array or function over bits; the same one where its sorts are.
const Symbol* KeptTheory::convert(const Symbol* symbol) {
  const Symbol*& known = converted[symbol];
  if (known != nullptr) return known;
  std::vector<const DataType*> domain;
  for (const DataType* type : symbol->get_domain())
    domain.push_back(convert(type));
  const DataType* type = convert(symbol->get_output_type());
  known = symbol;
  if (type == symbol->get_output_type() && std::ranges::equal(domain, symbol->get_domain())) {
    return known;
  }
  known = mgr.make_unique_symbol(symbol->get_name(), domain, type);
  symbols.emplace_back(symbol, known);
  return known;
}

std::vector<const Term*> KeptTheory::convert_arguments(const Term* t) {
  std::vector<const Term*> args;
  for (const Term* arg : t->get_args())
    args.push_back(convert(arg));
  return args;
}

/// `t` over what its arguments are over bits.
const Term* KeptTheory::apply(const Term* t) {
  const std::vector<const Term*> args = convert_arguments(t);
  if (t->get_symbol()->is_function()) return mgr.make_application(convert(t->get_symbol()), args);
  if (t->get_tag() == SymbolTag::array_const) {
    return mgr.make_const_array(convert(t->get_type()), args[0]);
  }
  return mgr.make(t->get_tag(), std::span<const std::size_t>(), args);
}

/// What stands for `t`: an array that was converted, or bits.
const Term* KeptTheory::convert(const Term* t) {
  const auto array = arrays.find(t);
  return array != arrays.end() ? array->second : translator.translate(t, constraints);
}

void KeptTheory::define(Trail<const Term*>* conjuncts) {
  check();
  constraints = conjuncts;
  // What is translated on the way may add terms, and those more.
  for (std::size_t i = 0; i < theory.get_terms().size(); ++i) {
    const Term* t = theory.get_terms()[i];
    if (theories::is_array(t)) {
      const bool is_constant = t->get_arity() == 0;
      arrays[t] = is_constant ? mgr.make_constant(convert(t->get_symbol())) : apply(t);
    } else if (t->get_tag() == SymbolTag::equal) {
      const Term* same = mgr.make_equal(convert(t->get_arg(0)), convert(t->get_arg(1)));
      conjuncts->add(mgr.make_or(mgr.make_not(convert(t)), same));
      conjuncts->add(convert(theory.state_difference(t)));
    } else if (t->get_arity() != 0) {
      conjuncts->add(mgr.make_equal(convert(t), apply(t)));
    }
  }
}

}  // namespace vorn::solver
