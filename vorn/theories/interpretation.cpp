#include "vorn/theories/interpretation.h"

#include <algorithm>

#include "vorn/theories/array_graph.h"

namespace vorn::theories {
namespace {

/// How deep array sorts are nested in a sort.
std::size_t get_depth(const DataType* type) {
  if (type->get_kind() != DataType::Kind::array) return 0;
  return 1 + std::max(get_depth(type->get_index()), get_depth(type->get_element()));
}

/// The terms that tell of arrays of one sort.
struct ArrayTerms {
  const DataType* type = nullptr;
  std::size_t depth = 0;
  std::vector<const Term*> arrays;
  std::vector<const Term*> reads;
  std::vector<const Term*> equalities;
};

/// By sort, those that others have as indices or elements first.
std::vector<ArrayTerms> sort_out(const std::vector<const Term*>& terms) {
  std::vector<ArrayTerms> groups;
  std::unordered_map<const DataType*, std::size_t> positions;
  const auto group_of = [&](const Term* array) -> ArrayTerms& {
    const DataType* type = array->get_type();
    const auto [entry, fresh] = positions.try_emplace(type, groups.size());
    if (fresh) groups.push_back({type, get_depth(type), {}, {}, {}});
    return groups[entry->second];
  };
  for (const Term* t : terms) {
    if (is_array(t)) group_of(t).arrays.push_back(t);
    if (t->get_tag() == SymbolTag::array_select) group_of(t->get_arg(0)).reads.push_back(t);
    if (t->get_tag() == SymbolTag::equal) group_of(t->get_arg(0)).equalities.push_back(t);
  }
  std::ranges::stable_sort(groups, {}, &ArrayTerms::depth);
  return groups;
}

/// That a function gives equal values for equal arguments.
const Term* state_congruence(TermManager& mgr, const Term* a, const Term* b) {
  const Term* statement = mgr.make_equal(a, b);
  for (std::size_t i = 0; i < a->get_arity(); ++i) {
    const Term* same = mgr.make_equal(a->get_arg(i), b->get_arg(i));
    statement = mgr.make_or(mgr.make_not(same), statement);
  }
  return statement;
}

}  // namespace

void Interpretation::clear() {
  arrays = {};
  constants.clear();
  functions.clear();
  elements.clear();
}

/// The candidate's bits tell elements apart; how they do it is nobody's business.
QNumber Interpretation::number_element(const DataType* type, const QNumber& bits) {
  Elements& known = elements[type->get_id()];
  const auto found = known.numbers.find(bits);
  if (found != known.numbers.end()) return found->second;
  // Numbers of literals are taken; their bits are the same number.
  const auto is_literal = [&](const QNumber& number) {
    const auto literal = known.numbers.find(number);
    return literal != known.numbers.end() && literal->second == number;
  };
  while (is_literal(QNumber(known.next)))
    ++known.next;
  return known.numbers.emplace(bits, QNumber(known.next++)).first->second;
}

void Interpretation::assume_stand_ins(TheoryTerms* terms, const StandInValue& stand_in_value,
                                      semantics::Evaluator* candidate) {
  for (const Term* t : terms->get_terms()) {
    const QNumber* literal = t->get_symbol()->get_literal();
    if (literal != nullptr) elements[t->get_type()->get_id()].numbers.emplace(*literal, *literal);
  }
  for (const Term* t : terms->get_terms()) {
    if (!has_stand_in(t)) continue;
    QNumber value = stand_in_value(terms->get_stand_in(t));
    const DataType* type = t->get_type();
    if (!type->has_bits()) value = number_element(type, value);
    candidate->assume(t, value);
    if (t->get_arity() == 0) constants.insert_or_assign(t, value);
  }
}

/// Fills the tables of functions.
void Interpretation::compare_applications(TermManager& mgr, const Terms& terms,
                                          semantics::Evaluator* candidate, Terms* lemmas) {
  std::map<std::pair<std::uint64_t, std::vector<QNumber>>, const Term*> first;
  std::unordered_map<const Symbol*, std::uint64_t> numbers;
  for (const Term* t : terms) {
    if (!t->get_symbol()->is_function()) continue;
    std::vector<QNumber> arguments;
    for (const Term* arg : t->get_args())
      arguments.push_back(candidate->evaluate(arg));
    const QNumber& value = candidate->evaluate(t);
    const std::uint64_t number = numbers.try_emplace(t->get_symbol(), numbers.size()).first->second;
    const auto [entry, fresh] = first.try_emplace({number, arguments}, t);
    if (fresh) {
      FunctionTable& table =
          functions.try_emplace(t->get_symbol(), FunctionTable{{}, value}).first->second;
      if (value != table.otherwise) table.entries.emplace(std::move(arguments), value);
    } else if (candidate->evaluate(entry->second) != value) {
      lemmas->push_back(state_congruence(mgr, entry->second, t));
    }
  }
}

std::vector<const Term*> Interpretation::interpret(TermManager& manager, TheoryTerms* terms,
                                                   const StandInValue& stand_in_value,
                                                   semantics::Evaluator* candidate,
                                                   const TerminationTest* test) {
  std::vector<const Term*> lemmas;
  is_infinity_assumed = false;
  assume_stand_ins(terms, stand_in_value, candidate);
  for (const ArrayTerms& group : sort_out(terms->get_terms())) {
    ArrayGraph graph(manager, *candidate, test);
    for (const Term* t : group.arrays)
      graph.add_array(t);
    for (const Term* t : group.reads)
      graph.add_read(t);
    for (const Term* t : group.equalities)
      graph.add_equality(t);
    graph.find_conflicts(&lemmas);
    is_infinity_assumed = graph.assumes_infinity();
    if (!lemmas.empty()) return lemmas;  // arrays of these arrays have no values yet
    graph.assume_values(&arrays);
    for (const Term* t : group.arrays) {
      if (t->get_arity() == 0) constants.insert_or_assign(t, candidate->evaluate(t));
    }
    for (const Term* t : group.equalities) {
      const bool are_equal =
          candidate->evaluate(t->get_arg(0)) == candidate->evaluate(t->get_arg(1));
      if (are_equal && candidate->evaluate(t).sign() == 0) {
        lemmas.push_back(terms->state_difference(t));
      }
    }
    if (!lemmas.empty()) return lemmas;
  }
  compare_applications(manager, terms->get_terms(), candidate, &lemmas);
  return lemmas;
}

QNumber Interpretation::get_value(const Term* constant) {
  const auto found = constants.find(constant);
  return found != constants.end() ? found->second : arrays.make_plain(constant->get_type());
}

QNumber Interpretation::apply(const Symbol* function, std::span<const QNumber> arguments) {
  const FunctionTable* table = find_function(function);
  if (table == nullptr) return arrays.make_plain(function->get_output_type());
  const auto found = table->entries.find({arguments.begin(), arguments.end()});
  return found != table->entries.end() ? found->second : table->otherwise;
}

const FunctionTable* Interpretation::find_function(const Symbol* function) const {
  const auto found = functions.find(function);
  return found != functions.end() ? &found->second : nullptr;
}

}  // namespace vorn::theories
