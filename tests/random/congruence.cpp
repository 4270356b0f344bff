#include "tests/random/congruence.h"

#include <algorithm>

namespace vorn::random {
namespace {

constexpr std::size_t kPairs = 40;

bool is_open(const Expression& e) {
  if (e.kind != Expression::Kind::theory || e.args.size() != 2) return false;
  return e.head == "fp.min" || e.head == "fp.max" || e.head.starts_with("(_ fp.to_ubv ") ||
         e.head.starts_with("(_ fp.to_sbv ");
}

Expression without_labels(const Expression& e) {
  if (e.kind == Expression::Kind::named) return without_labels(e.args[0]);
  Expression result = e;
  for (Expression& arg : result.args)
    arg = without_labels(arg);
  return result;
}

/// Collects open applications outside of what variables are bound in.
void collect(const Expression& e, std::vector<Expression>* found) {
  if (e.kind == Expression::Kind::let) {
    for (std::size_t i = 0; i + 1 < e.args.size(); ++i)
      collect(e.args[i], found);
    return;
  }
  if (is_open(e)) {
    Expression plain = without_labels(e);
    if (std::find(found->begin(), found->end(), plain) == found->end()) {
      found->push_back(std::move(plain));
    }
  }
  for (const Expression& arg : e.args)
    collect(arg, found);
}

Expression apply(const char* head, std::vector<Expression> args) {
  return {Expression::Kind::theory, head, kBool, std::move(args), {}};
}

}  // namespace

Script make_congruences(const Script& script) {
  std::vector<Expression> found;
  for (const Command& command : script) {
    if (!command.parameters.empty()) continue;
    for (const Expression& term : command.terms)
      collect(term, &found);
  }
  Script assertions;
  for (std::size_t i = 0; i < found.size(); ++i) {
    for (std::size_t k = 0; k < i && assertions.size() < kPairs; ++k) {
      const Expression& a = found[i];
      const Expression& b = found[k];
      if (a.head != b.head || a.args[0].sort != b.args[0].sort ||
          a.args[1].sort != b.args[1].sort) {
        continue;
      }
      const Expression same_operands =
          apply("and", {apply("=", {a.args[0], b.args[0]}), apply("=", {a.args[1], b.args[1]})});
      assertions.push_back(make_assertion(apply("=>", {same_operands, apply("=", {a, b})})));
    }
  }
  return assertions;
}

}  // namespace vorn::random
