#include "tests/ranges/small_formula.h"

#include <algorithm>
#include <map>
#include <string>

#include "tests/ranges/small_operation.h"

namespace vorn::ranges {
namespace {

using T = SymbolTag;

constexpr T::tag kClasses[] = {T::fp_isnan,    T::fp_isinf,       T::fp_iszero,
                               T::fp_isnormal, T::fp_issubnormal, T::fp_isnegative};
constexpr T::tag kComparisons[] = {T::fp_lt, T::fp_le, T::fp_equal, T::equal};

}  // namespace

SmallFormulas::SmallFormulas(std::uint64_t seed)
    : random(seed), number(mgr.get_fp_type(2, 2)), bits(mgr.get_bv_type(3)) {
  const auto declare = [this](const std::string& name, const DataType* type) {
    return mgr.make_constant(mgr.make_unique_symbol(name, type));
  };
  floats.push_back(declare("x", number));
  if (below(2) == 0) floats.push_back(declare("y", number));
  if (below(3) == 0) mode = declare("r", mgr.get_fprounding_type());
  if (floats.size() + (mode == nullptr ? 0 : 1) < 3 && below(3) == 0) word = declare("b", bits);
}

const Term* SmallFormulas::make_literal(const DataType* type) {
  const std::vector<QNumber> values = list_values(type);
  return semantics::make_literal(mgr, type, values[random() % values.size()]);
}

const Term* SmallFormulas::make_mode() {
  return mode != nullptr && below(2) == 0 ? mode : mgr.make_fprounding(kRoundingModes[below(5)]);
}

const Term* SmallFormulas::make_rounded(unsigned depth) {
  const Term* r = make_mode();
  const Term* x = make_float(depth);
  switch (below(9)) {
    case 0:
    case 1:
      return mgr.make(T::fp_mul, {r, x, make_float(depth)});
    case 2:
      return mgr.make(T::fp_sub, {r, x, make_float(depth)});
    case 3:
      return mgr.make(T::fp_div, {r, x, make_float(depth)});
    case 4:
      return mgr.make(T::fp_fma, {r, x, make_float(depth), make_float(depth)});
    case 5:
      return mgr.make(T::fp_sqrt, {r, x});
    case 6:
      return mgr.make(T::fp_round_to_integral, {r, x});
    case 7:
      return mgr.make(T::fp_from_sbv, {2, 2}, {r, make_bits(depth)});
    default:
      return mgr.make(T::fp_add, {r, x, make_float(depth)});
  }
}

const Term* SmallFormulas::make_float(unsigned depth) {
  if (depth == 0) return below(4) == 0 ? make_literal(number) : floats[below(floats.size())];
  const Term* x = make_float(depth - 1);
  switch (below(12)) {
    case 0:
      return mgr.make(T::fp_neg, {x});
    case 1:
      return mgr.make(T::fp_abs, {x});
    case 2:
      return mgr.make(T::fp_min, {x, make_float(depth - 1)});
    case 3:
      return mgr.make(T::fp_rem, {x, make_float(depth - 1)});
    case 4:
      return mgr.make(T::ite, {make_atom(depth - 1), x, make_float(depth - 1)});
    default:
      return make_rounded(depth - 1);
  }
}

const Term* SmallFormulas::make_bits(unsigned depth) {
  if (depth == 0) return word != nullptr && below(4) != 0 ? word : make_literal(bits);
  switch (below(4)) {
    case 0:
      return mgr.make(T::bv_add, {make_bits(depth - 1), make_bits(depth - 1)});
    case 1:
      return mgr.make(T::bv_and, {make_bits(depth - 1), make_bits(depth - 1)});
    case 2:
      return mgr.make(T::fp_to_sbv, {3}, {make_mode(), make_float(depth - 1)});
    default:
      return mgr.make(T::bv_neg, {make_bits(depth - 1)});
  }
}

const Term* SmallFormulas::make_atom(unsigned depth) {
  const Term* x = make_float(depth);
  if (word != nullptr && below(3) == 0) {
    return mgr.make(below(2) == 0 ? T::bv_ult : T::bv_sle, {make_bits(depth), make_bits(depth)});
  }
  if (below(4) == 0) return mgr.make(kClasses[below(std::size(kClasses))], {x});
  return mgr.make(kComparisons[below(std::size(kComparisons))],
                  {x, make_float(static_cast<unsigned>(below(2)))});
}

const Term* SmallFormulas::make_formula(unsigned depth) {
  if (depth == 0) return make_atom(static_cast<unsigned>(below(3)));
  const Term* p = make_formula(depth - 1);
  switch (below(5)) {
    case 0:
      return mgr.make(T::bool_not, {p});
    case 1:
      return mgr.make(T::bool_or, {p, make_formula(depth - 1)});
    case 2:
      return mgr.make(T::bool_xor, {p, make_formula(depth - 1)});
    case 3:
      return mgr.make(T::bool_implies, {p, make_formula(depth - 1)});
    default:
      return mgr.make(T::bool_and, {p, make_formula(depth - 1)});
  }
}

std::vector<const Term*> SmallFormulas::make_conjunction() {
  std::vector<const Term*> formulas;
  for (std::size_t count = 2 + below(3); count > 0; --count)
    formulas.push_back(make_formula(static_cast<unsigned>(below(3))));
  return formulas;
}

void SmallFormulas::visit_models(const std::vector<const Term*>& formulas,
                                 const std::function<bool(semantics::Evaluator&)>& visit) {
  std::vector<const Term*> constants = floats;
  for (const Term* t : {mode, word}) {
    if (t != nullptr) constants.push_back(t);
  }
  std::vector<std::vector<QNumber>> domains;
  std::size_t count = 1;
  for (const Term* c : constants)
    count *= domains.emplace_back(list_values(c->get_type())).size();
  for (std::size_t i = 0; i < count; ++i) {
    std::map<const Term*, QNumber> assignment;
    std::size_t rest = i;
    for (std::size_t c = 0; c < constants.size(); ++c) {
      assignment[constants[c]] = domains[c][rest % domains[c].size()];
      rest /= domains[c].size();
    }
    semantics::Evaluator evaluator(mgr, [&](const Term* t) { return assignment.at(t); });
    const bool is_model = std::all_of(formulas.begin(), formulas.end(), [&](const Term* f) {
      return evaluator.evaluate(f).sign() != 0;
    });
    if (is_model && !visit(evaluator)) return;
  }
}

void assert_all(const std::vector<const Term*>& formulas, Propagation* ranges) {
  constexpr std::uint64_t kEnough = 1'000'000;
  for (const Term* f : formulas)
    ranges->add(f);
  ranges->propagate(kEnough);
}

}  // namespace vorn::ranges
