// What is stated of a candidate for a model: theorems that the candidate breaks, and none only if
// it is a model.
#include "vorn/theories/interpretation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <random>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tests/semantics/array_sorts.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/terms/post_order.h"
#include "vorn/terms/term_manager.h"
#include "vorn/theories/theory_terms.h"

namespace vorn::theories {
namespace {

using Terms = std::vector<const Term*>;
using Values = std::unordered_map<const Term*, QNumber>;

/// Random formulas on arrays, functions and elements of small sorts.
class Formulas {
 public:
  explicit Formulas(std::uint64_t seed) : random(seed) {
    for (const DataType* type : semantics::make_test_sorts(mgr)) {
      // An infinite index makes statements that hold for infinite sorts only.
      if (!has_elements_as_indices(type)) sorts.push_back(type);
    }
    for (const DataType* type : sorts) {
      for (const char* name : {"a", "b"})
        constants.push_back(mgr.make_constant(mgr.make_unique_symbol(name, type)));
    }
    for (int i = 0; i < 3; ++i) {
      const std::vector<const DataType*> domain{pick(sorts)};
      functions.push_back(mgr.make_unique_symbol("f", domain, pick(sorts)));
    }
  }

  /// An equality of terms of this depth.
  const Term* make_formula(int depth) {
    const DataType* type = pick(sorts);
    return mgr.make_equal(make(type, depth), make(type, depth));
  }

  TermManager mgr{false};
  std::mt19937_64 random;
  Terms constants;

 private:
  static bool has_elements_as_indices(const DataType* type) {
    if (type->get_kind() != DataType::Kind::array) return false;
    return type->get_index()->get_kind() == DataType::Kind::uninterpreted ||
           has_elements_as_indices(type->get_element());
  }
  template <typename Item>
  const Item& pick(const std::vector<Item>& items) {
    return items[random() % items.size()];
  }

  const Term* make_leaf(const DataType* type) {
    Terms known;
    std::ranges::copy_if(constants, std::back_inserter(known),
                         [&](const Term* t) { return t->get_type() == type; });
    return pick(known);
  }

  const Term* make(const DataType* type, int depth) {
    if (depth == 0) return make_leaf(type);
    const auto choice = random() % 5;
    if (choice == 0) {
      for (const Symbol* f : functions) {
        if (f->get_output_type() != type) continue;
        return mgr.make_application(f, Terms{make(f->get_domain()[0], depth - 1)});
      }
    }
    if (choice == 1) {
      return mgr.make_term_ite(make(mgr.get_bool_type(), depth - 1), make(type, depth - 1),
                               make(type, depth - 1));
    }
    if (type->get_kind() == DataType::Kind::array) {
      const Term* element = make(type->get_element(), depth - 1);
      if (choice == 2) return mgr.make_const_array(type, element);
      return mgr.make_store(make(type, depth - 1), make(type->get_index(), depth - 1), element);
    }
    std::vector<const DataType*> arrays;
    std::ranges::copy_if(sorts, std::back_inserter(arrays), [&](const DataType* array) {
      return array->get_kind() == DataType::Kind::array && array->get_element() == type;
    });
    if (arrays.empty() || choice == 4) return make_leaf(type);
    const DataType* array = pick(arrays);
    return mgr.make_select(make(array, depth - 1), make(array->get_index(), depth - 1));
  }

  std::vector<const DataType*> sorts;
  std::vector<const Symbol*> functions;
};

/// A set of theory terms, and candidates and proper interpretations for them.
class Candidate {
 public:
  Candidate(Formulas& source, const Terms& formulas) : given(source), terms(source.mgr) {
    Terms seen;
    const auto is_seen = [&](const Term* t) { return std::ranges::find(seen, t) != seen.end(); };
    for (const Term* f : formulas) {
      walk_post_order<ArgumentOrder::last_to_first>(f, is_seen, [&](const Term* t) {
        seen.push_back(t);
        if (is_array(t) || has_stand_in(t)) terms.add(t);
      });
    }
  }

  /// Any values of the stand-ins and of constants that have bits, from few, so that some are equal.
  void choose() {
    for (const Term* t : terms.get_terms()) {
      if (!has_stand_in(t)) continue;
      const Term* stand_in = terms.get_stand_in(t);
      const bool has_bits = t->get_type()->has_bits();
      chosen[stand_in] = has_bits ? any(t->get_type()) : QNumber(std::int64_t(given.random() % 3));
    }
    for (const Term* constant : given.constants) {
      if (constant->get_type()->has_bits()) chosen[constant] = any(constant->get_type());
    }
  }

  /// The statements on the values that are chosen.
  Terms interpret() {
    interpretation.clear();
    semantics::Evaluator evaluator(
        given.mgr, [&](const Term* t) { return value_of(t); }, open_value(),
        &interpretation.get_arrays());
    return interpretation.interpret(
        given.mgr, &terms, [&](const Term* t) { return chosen.at(t); }, &evaluator, nullptr);
  }

  /// Whether the interpretation that was found last has the values that the candidate has.
  bool is_model() {
    semantics::Evaluator evaluator(
        given.mgr, [&](const Term* t) { return value_of(t); }, open_value(),
        &interpretation.get_arrays());
    Elements names;
    return std::ranges::all_of(terms.get_terms(), [&](const Term* t) {
      if (!has_stand_in(t)) return true;
      const QNumber& expected = chosen.at(terms.get_stand_in(t));
      const QNumber& value = evaluator.evaluate(t);
      if (t->get_type()->has_bits()) return value == expected;
      return names.emplace(value, expected).first->second == expected;
    });
  }

  /// The value of a statement in an interpretation by random arrays and tables.
  bool holds_in_any(const Term* statement) {
    semantics::ArrayValues arrays;
    Values values;
    Tables tables;
    semantics::Evaluator evaluator(
        given.mgr, [&](const Term* t) { return values.at(t); },
        [&](const Term* t, std::span<const QNumber> arguments) {
          const Key key{t->get_symbol(), {arguments.begin(), arguments.end()}};
          const auto known = tables.find(key);
          if (known != tables.end()) return known->second;
          return tables[key] = semantics::random_value(arrays, t->get_type(), given.random);
        },
        &arrays);
    for (const Term* constant : given.constants)
      values[constant] = semantics::random_value(arrays, constant->get_type(), given.random);
    for (const Term* t : terms.get_terms()) {
      if (t->get_tag() != SymbolTag::equal) continue;
      const Term* witness = terms.get_witness(t);
      values[witness] =
          find_difference(arrays, witness->get_type(), evaluator.evaluate(t->get_arg(0)),
                          evaluator.evaluate(t->get_arg(1)));
    }
    return evaluator.evaluate(statement).sign() != 0;
  }

 private:
  using Elements = std::map<QNumber, QNumber>;
  using Key = std::pair<const Symbol*, std::vector<QNumber>>;
  using Tables = std::map<Key, QNumber>;

  QNumber any(const DataType* type) {
    semantics::ArrayValues none;
    return semantics::random_value(none, type, given.random);
  }
  QNumber value_of(const Term* t) {
    return t->get_type()->has_bits() ? chosen.at(t) : interpretation.get_value(t);
  }
  semantics::OpenValue open_value() {
    return [this](const Term* t, std::span<const QNumber> arguments) {
      return interpretation.apply(t->get_symbol(), arguments);
    };
  }
  /// An index at which two arrays differ; if they do not, any.
  static QNumber find_difference(semantics::ArrayValues& arrays, const DataType* index,
                                 const QNumber& a, const QNumber& b) {
    for (const QNumber& i : arrays.list_values(index)) {
      if (arrays.select(a, i) != arrays.select(b, i)) return i;
    }
    return arrays.make_plain(index);
  }

  Formulas& given;
  TheoryTerms terms;
  Values chosen;
  Interpretation interpretation;
};

TEST(RandomCandidates, GetTheoremsUnlessTheyAreModels) {
  int models = 0;
  int statements = 0;
  for (std::uint64_t seed = 0; seed < 1'500; ++seed) {
    SCOPED_TRACE(seed);
    Formulas formulas(seed);
    Terms given;
    const int depth = 1 + static_cast<int>(seed % 3);
    for (std::uint64_t i = 0; i <= seed % 4; ++i)
      given.push_back(formulas.make_formula(depth));
    Candidate candidate(formulas, given);
    for (int round = 0; round < 4; ++round) {
      candidate.choose();
      const Terms lemmas = candidate.interpret();
      if (lemmas.empty()) {
        ++models;
        ASSERT_TRUE(candidate.is_model());
      }
      for (const Term* lemma : lemmas) {
        ++statements;
        for (int trial = 0; trial < 12; ++trial)
          ASSERT_TRUE(candidate.holds_in_any(lemma));
      }
    }
  }
  EXPECT_GT(models, 500);
  EXPECT_GT(statements, 2'000);
}

}  // namespace
}  // namespace vorn::theories
