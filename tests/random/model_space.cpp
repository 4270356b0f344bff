#include "tests/random/model_space.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <span>
#include <vector>

#include "tests/random/collector.h"
#include "tests/random/random.h"
#include "tests/random/session.h"
#include "tests/random/value_space.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/terms/post_order.h"

namespace vorn::random {
namespace {

bool is_uninterpreted(const DataType* type) {
  return type->get_kind() == DataType::Kind::uninterpreted;
}

bool is_array(const DataType* type) {
  return type->get_kind() == DataType::Kind::array;
}

bool names_uninterpreted(const DataType* type) {
  if (!is_array(type)) return is_uninterpreted(type);
  return names_uninterpreted(type->get_index()) || names_uninterpreted(type->get_element());
}

/// The elements that nothing names by which two values may differ: themselves, or for arrays an
/// index and what is there.
std::uint64_t count_differences(const DataType* type) {
  if (is_uninterpreted(type)) return 2;
  if (!is_array(type)) return 0;
  return (is_uninterpreted(type->get_index()) ? 1 : 0) + count_differences(type->get_element());
}

/// As many elements of uninterpreted sorts as the formulas can tell apart.
std::uint64_t count_elements(std::span<const Term* const> terms) {
  std::uint64_t count = 1;
  for (const Term* t : terms) {
    if (is_uninterpreted(t->get_type())) ++count;
    if (t->get_tag() == SymbolTag::equal && is_array(t->get_arg(0)->get_type())) {
      count += count_differences(t->get_arg(0)->get_type());
    }
  }
  return count;
}

/// Whether that many are enough for any model. Cut down to these elements, arrays may become equal
/// that were not, which matters where they are compared without an equality: as indices of arrays
/// and arguments of functions.
bool are_elements_enough(std::span<const Term* const> terms) {
  for (const Term* t : terms) {
    const DataType* type = t->get_type();
    if (is_array(type) && is_array(type->get_index()) && names_uninterpreted(type->get_index())) {
      return false;
    }
    for (const DataType* argument : t->get_symbol()->get_domain()) {
      if (t->get_symbol()->is_function() && is_array(argument) && names_uninterpreted(argument)) {
        return false;
      }
    }
  }
  return true;
}

class ModelSpace {
 public:
  ModelSpace(TermManager& manager, std::vector<const Term*> formulas, std::uint64_t seed)
      : mgr(manager),
        assertions(std::move(formulas)),
        terms(list_post_order(assertions)),
        values(count_elements(terms)),
        random(seed) {
    collect();
    for (const Term* c : constants)
      size = std::min(size * values.count(c->get_type()), kEnumerable + 1);
    for (const Symbol* f : functions) {
      const std::uint64_t tables = values.count_functions(f->get_domain(), f->get_output_type());
      size = std::min(size * tables, kEnumerable + 1);
    }
  }

  Search search(Sampling sampling) {
    Search result;
    result.complete = size <= kEnumerable;
    if (!result.complete && sampling == Sampling::no) return result;
    const std::uint64_t count = result.complete ? size : kSamples;
    for (std::uint64_t i = 0; i < count; ++i) {
      choices.clear();
      if (result.complete) {
        assign(i);
      } else {
        sample();
      }
      if (!holds()) continue;
      result.model = describe();
      break;
    }
    result.exhaustive = result.complete && !has_chosen && are_elements_enough(terms);
    return result;
  }

 private:
  /// Finds what is to have a value, and the literals, which are good candidates for values.
  void collect() {
    for (const Term* t : terms) {
      QNumber literal;
      const Symbol* symbol = t->get_symbol();
      if (mgr.is_number(t, &literal)) {
        literals[t->get_type()].push_back(literal);
      } else if (t->get_arity() == 0 && !symbol->get_name().empty() &&
                 !mgr.is_fprounding(symbol, nullptr)) {
        constants.push_back(t);
      } else if (symbol->is_function() && std::ranges::find(functions, symbol) == functions.end()) {
        functions.push_back(symbol);
      }
    }
    std::ranges::sort(constants, {}, [](const Term* t) { return t->get_id(); });
  }

  /// The assignment of a number below the size of the space.
  void assign(std::uint64_t number) {
    const auto next = [&](const DataType* type) {
      const std::vector<QNumber>& list = values.list(type);
      const QNumber value = list[number % list.size()];
      number /= list.size();
      return value;
    };
    for (const Term* c : constants)
      assignment[c] = next(c->get_type());
    for (const Symbol* f : functions) {
      for (const std::vector<QNumber>& args : values.list_tuples(f->get_domain()))
        choices[key_of(f, args)] = next(f->get_output_type());
    }
  }

  void sample() {
    for (const Term* c : constants) {
      const std::vector<QNumber>& candidates = literals[c->get_type()];
      const bool is_known = !candidates.empty() && random.percent(30);
      assignment[c] = is_known ? random.pick(candidates) : values.sample(c->get_type(), random);
    }
  }

  /// Symbols of conversions have no names, but those of one kind and sort are one object.
  static std::string key_of(const Symbol* symbol, std::span<const QNumber> args) {
    std::string key = symbol->is_function() ? symbol->get_name()
                                            : fmt::format("{}", static_cast<const void*>(symbol));
    for (const QNumber& value : args)
      key += ' ' + value.to_string();
    return key;
  }

  /// What the theory leaves open of an application: a random number, the same wherever the symbol
  /// meets the same values.
  QNumber choose(const Term* t, std::span<const QNumber> args) {
    const auto [entry, is_new] = choices.try_emplace(key_of(t->get_symbol(), args));
    if (is_new) {
      has_chosen = true;
      // The choice between zeros is one of two.
      const bool is_zero = !t->get_symbol()->is_function() &&
                           t->get_type()->get_kind() == DataType::Kind::floating_point;
      entry->second = values.sample(is_zero ? mgr.get_bool_type() : t->get_type(), random);
    }
    return entry->second;
  }

  bool holds() {
    semantics::Evaluator evaluator(
        mgr, [this](const Term* t) { return assignment.at(t); },
        [this](const Term* t, std::span<const QNumber> args) { return choose(t, args); },
        &values.get_arrays());
    return std::all_of(assertions.begin(), assertions.end(),
                       [&evaluator](const Term* f) { return evaluator.evaluate(f).sign() != 0; });
  }

  std::string literal_text(const DataType* type, const QNumber& value) {
    return semantics::make_literal(mgr, type, value, values.get_arrays())->to_string();
  }

  std::string describe() {
    std::string text;
    for (const Term* c : constants) {
      text += fmt::format("{}{} = {}", text.empty() ? "" : ", ", c->to_string(),
                          literal_text(c->get_type(), assignment.at(c)));
    }
    // Values of arguments stand as numbers.
    for (const Symbol* f : functions) {
      for (const auto& [key, value] : choices) {
        if (!key.starts_with(f->get_name() + ' ')) continue;
        text += fmt::format("{}({}) = {}", text.empty() ? "" : ", ", key,
                            literal_text(f->get_output_type(), value));
      }
    }
    return text;
  }

  TermManager& mgr;
  std::vector<const Term*> assertions;
  std::vector<const Term*> terms;
  ValueSpace values;
  Random random;
  std::vector<const Term*> constants;
  std::vector<const Symbol*> functions;
  std::map<const DataType*, std::vector<QNumber>> literals;
  std::map<const Term*, QNumber> assignment;
  std::map<std::string, QNumber> choices;  // of functions as well, by symbol and arguments
  std::uint64_t size = 1;
  bool has_chosen = false;  // whether a value was drawn that an assignment does not have
};

}  // namespace

Search search_models(const Script& script, std::uint64_t seed, Sampling sampling) {
  Configuration plain;
  plain.rewrite = false;
  Collection collection(script, plain);
  return search_models(collection.get_manager(), collection.get_assertions(), seed, sampling);
}

Search search_models(TermManager& manager, const std::vector<const Term*>& assertions,
                     std::uint64_t seed, Sampling sampling) {
  return ModelSpace(manager, assertions, seed).search(sampling);
}

}  // namespace vorn::random
