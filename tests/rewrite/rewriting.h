// Terms to rewrite, and the proof by trying out that rewriting kept their values.
#ifndef VORN_TESTS_REWRITE_REWRITING_H
#define VORN_TESTS_REWRITE_REWRITING_H

#include <gtest/gtest.h>

#include <cstdint>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "vorn/semantics/evaluator.h"
#include "vorn/smt2/interpreter.h"
#include "vorn/solver/solver.h"
#include "vorn/terms/post_order.h"

namespace vorn::rewrite {

inline std::uint64_t count_values(const DataType* type) {
  switch (type->get_kind()) {
    case DataType::Kind::boolean:
      return 2;
    case DataType::Kind::rounding_mode:
      return 5;
    default:
      return std::uint64_t{1} << type->get_value_width();
  }
}

/// The uninterpreted constants of a term.
inline std::vector<const Term*> find_constants(const TermManager& mgr, const Term* root) {
  std::vector<const Term*> found;
  for (const Term* t : list_post_order({&root, 1})) {
    const bool is_leaf = t->get_arity() == 0 && t->get_tag() == SymbolTag::none;
    if (is_leaf && !mgr.is_number(t, nullptr) && !mgr.is_fprounding(t->get_symbol(), nullptr)) {
      found.push_back(t);
    }
  }
  return found;
}

/// A function for what the theory leaves open, neither constant nor symmetric.
inline QNumber choose_open(const Term* t, std::span<const QNumber> values) {
  if (t->get_type()->get_kind() == DataType::Kind::bit_vector) {
    return QNumber(values[1].test_bit(0) ? 1 : 0);
  }
  return QNumber(values[0].sign() != 0 ? 1 : 0);
}

/// Expects that two terms over the same constants agree under every `step`-th assignment.
inline void expect_equal_values(const TermManager& mgr, const Term* a, const Term* b,
                                std::uint64_t step = 1) {
  const std::vector<const Term*> constants = find_constants(mgr, a);
  std::uint64_t assignments = 1;
  for (const Term* constant : constants)
    assignments *= count_values(constant->get_type());
  for (std::uint64_t number = 0; number < assignments; number += step) {
    const auto value_of = [&](const Term* wanted) {
      std::uint64_t rest = number;
      for (const Term* constant : constants) {
        const std::uint64_t count = count_values(constant->get_type());
        if (constant == wanted) return QNumber(static_cast<std::int64_t>(rest % count));
        rest /= count;
      }
      return QNumber();
    };
    semantics::Evaluator evaluator(mgr, value_of, choose_open);
    const QNumber& value = evaluator.evaluate(a);
    ASSERT_EQ(value, evaluator.evaluate(b))
        << a->to_string() << " became " << b->to_string() << ", assignment " << number;
  }
}

/// A session whose definitions are terms.
class TermReader {
 public:
  explicit TermReader(const std::string& declarations) { interpreter.run(declarations, "names"); }

  /// The term of that sort.
  const Term* read(const std::string& sort, const std::string& text) {
    const std::string name = "term!" + std::to_string(count++);
    interpreter.run("(define-fun |" + name + "| () " + sort + " " + text + ")", "term");
    return interpreter.get_symbols().find(name)->body;
  }

  TermManager& get_manager() { return mgr; }

 private:
  TermManager mgr;
  solver::Solver engine{mgr};
  std::ostringstream out;
  smt2::Interpreter interpreter{mgr, engine, out};
  int count = 0;
};

}  // namespace vorn::rewrite

#endif
