#include "tests/random/model_space.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <span>
#include <vector>

#include "tests/random/literals.h"
#include "tests/random/random.h"
#include "tests/random/session.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/terms/post_order.h"

namespace vorn::random {
namespace {

/// Keeps the assertions and decides nothing.
class Collector : public Engine {
 public:
  void assert_formula(const Term* f) override { assertions.push_back(f); }
  void push() override {}
  void pop() override {}
  Answer check_sat(std::span<const Term* const> /*assumptions*/) override {
    return Answer::unknown;
  }
  std::vector<std::size_t> get_unsat_assumptions() override { return {}; }
  const Term* get_value(const Term* t) override { return t; }
  FunctionValue get_function(const Symbol* /*function*/) override { return {}; }
  std::string get_reason_unknown() const override { return "nothing is decided here"; }
  void reset_assertions() override { assertions.clear(); }
  void collect_garbage(std::span<const Term* const> /*kept*/) override {}
  void set_seed(std::uint32_t /*seed*/) override {}

  std::vector<const Term*> assertions;
};

Sort sort_of(const DataType* type) {
  switch (type->get_kind()) {
    case DataType::Kind::boolean:
      return kBool;
    case DataType::Kind::rounding_mode:
      return kMode;
    case DataType::Kind::bit_vector:
      return bits_sort(type->get_width());
    default:
      break;
  }
  return float_sort(type->get_e(), type->get_m() + 1);
}

/// Number of values of a constant, with all patterns of NaN; bounded, for it is multiplied.
std::uint64_t size_of(const Sort& sort) {
  if (sort == kBool) return 2;
  if (sort == kMode) return 5;
  return std::uint64_t{1} << std::min<std::size_t>(sort.width(), 20);
}

class ModelSpace {
 public:
  ModelSpace(TermManager& manager, std::vector<const Term*> formulas, std::uint64_t seed)
      : mgr(manager), assertions(std::move(formulas)), random(seed) {
    collect();
    for (const Constant& c : constants)
      size = std::min(size * size_of(c.sort), kEnumerable + 1);
  }

  Search search() {
    Search result;
    result.complete = size <= kEnumerable;
    const std::uint64_t count = result.complete ? size : kSamples;
    for (std::uint64_t i = 0; i < count; ++i) {
      if (result.complete) {
        assign(i);
      } else {
        sample();
      }
      if (!holds()) continue;
      result.model = describe();
      break;
    }
    return result;
  }

 private:
  struct Constant {
    const Term* term;
    Sort sort;
    QNumber value = QNumber();
  };

  /// Finds the constants that occur, and the literals, which are good candidates for values.
  void collect() {
    for (const Term* t : list_post_order(assertions)) {
      QNumber literal;
      if (mgr.is_number(t, &literal)) {
        literals[t->get_type()].push_back(literal);
      } else if (t->get_arity() == 0 && !t->get_symbol()->get_name().empty()) {
        constants.push_back({t, sort_of(t->get_type())});
      }
    }
    const auto earlier = [](const auto& a, const auto& b) {
      return a.term->get_id() < b.term->get_id();
    };
    std::sort(constants.begin(), constants.end(), earlier);
  }

  /// The assignment of a number below the size of the space.
  void assign(std::uint64_t number) {
    for (Constant& c : constants) {
      c.value = QNumber(static_cast<std::int64_t>(number % size_of(c.sort)));
      number /= size_of(c.sort);
    }
  }

  void sample() {
    for (Constant& c : constants) {
      const std::vector<QNumber>& candidates = literals[c.term->get_type()];
      if (c.sort == kBool || c.sort == kMode) {
        c.value = QNumber(static_cast<std::int64_t>(random.below(size_of(c.sort))));
      } else if (!candidates.empty() && random.percent(30)) {
        c.value = random.pick(candidates);
      } else {
        c.value = QNumber::from_mpz(random_pattern(c.sort, random));
      }
    }
  }

  /// What the theory leaves open of an application: a random number, the same wherever the symbol
  /// meets the same values.
  QNumber choose(const Term* t, std::span<const QNumber> values) {
    std::string key = fmt::format("{}", static_cast<const void*>(t->get_symbol()));
    for (const QNumber& value : values)
      key += ' ' + value.to_string();
    const auto [entry, is_new] = choices.try_emplace(key);
    if (is_new) {
      const DataType* type = t->get_type();
      const bool bits = type->get_kind() == DataType::Kind::bit_vector;
      entry->second =
          QNumber::from_mpz(random_pattern(bits_sort(bits ? type->get_width() : 1), random));
    }
    return entry->second;
  }

  bool holds() {
    choices.clear();
    std::map<const Term*, const QNumber*> values;
    for (const Constant& c : constants)
      values.emplace(c.term, &c.value);
    semantics::Evaluator evaluator(
        mgr, [&values](const Term* t) { return *values.at(t); },
        [this](const Term* t, std::span<const QNumber> args) { return choose(t, args); });
    return std::all_of(assertions.begin(), assertions.end(),
                       [&evaluator](const Term* f) { return evaluator.evaluate(f).sign() != 0; });
  }

  std::string describe() const {
    std::string text;
    for (const Constant& c : constants) {
      text += fmt::format("{}{} = {}", text.empty() ? "" : ", ", c.term->to_string(),
                          semantics::make_literal(mgr, c.term->get_type(), c.value)->to_string());
    }
    return text;
  }

  TermManager& mgr;
  std::vector<const Term*> assertions;
  Random random;
  std::vector<Constant> constants;
  std::map<const DataType*, std::vector<QNumber>> literals;
  std::map<std::string, QNumber> choices;
  std::uint64_t size = 1;
};

}  // namespace

Search search_models(const Script& script, std::uint64_t seed) {
  Configuration plain;
  plain.rewrite = false;
  Collector* collector = nullptr;
  Session session(plain, [&collector](TermManager&, const solver::Options&) {
    auto engine = std::make_unique<Collector>();
    collector = engine.get();
    return engine;
  });
  session.run(to_string(script) + "(check-sat)");
  return ModelSpace(session.get_manager(), collector->assertions, seed).search();
}

}  // namespace vorn::random
