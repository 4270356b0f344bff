// A session with a stub for a solver: what the tests of the front end share.
#ifndef VORN_TESTS_SMT2_SESSION_H
#define VORN_TESTS_SMT2_SESSION_H

#include <functional>
#include <map>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "vorn/smt2/error.h"
#include "vorn/smt2/interpreter.h"
#include "vorn/terms/engine.h"
#include "vorn/terms/term_manager.h"

namespace vorn::smt2 {

/// Records what it is told and answers what it was given. A constant without a given value has the
/// zero of its sort, a function without one is zero everywhere; other terms are only valued when
/// they are literals.
class FakeEngine : public Engine {
 public:
  explicit FakeEngine(TermManager& manager) : mgr(manager) {}

  void assert_formula(const Term* f) override {
    fail();
    assertions.push_back(f);
  }
  void push() override {
    fail();
    marks.push_back(assertions.size());
    calls += "push ";
  }
  void pop() override {
    fail();
    assertions.resize(marks.back());
    marks.pop_back();
    calls += "pop ";
  }
  Answer check_sat(std::span<const Term* const> given) override {
    fail();
    assumptions.assign(given.begin(), given.end());
    return decide ? decide(given) : answer;
  }
  std::vector<std::size_t> get_unsat_assumptions() override {
    fail();
    return failed;
  }
  void collect_garbage(std::span<const Term* const> kept) override {
    std::vector<const Term*> roots(kept.begin(), kept.end());
    roots.insert(roots.end(), assertions.begin(), assertions.end());
    mgr.collect(roots);
    assumptions.clear();
  }
  void set_seed(std::uint32_t number) override { seed = number; }
  const Term* get_value(const Term* t) override {
    fail();
    const auto found = values.find(t);
    if (found != values.end()) return found->second;
    if (t == mgr.make_true() || mgr.is_number(t, nullptr)) return t;
    return make_zero(t->get_type());
  }
  FunctionValue get_function(const Symbol* function) override {
    fail();
    const auto found = functions.find(function);
    if (found != functions.end()) return found->second;
    return {{}, make_zero(function->get_output_type())};
  }
  std::string get_reason_unknown() const override { return "a \"stub\""; }
  void reset_assertions() override {
    fail();
    assertions.clear();
    marks.clear();
    calls += "reset ";
  }

  TermManager& mgr;
  Answer answer = Answer::sat;
  std::function<Answer(std::span<const Term* const>)> decide;  // in its place, unless it is empty
  std::function<void()> raise;  // throws whatever is asked; none: all goes well
  std::map<const Term*, const Term*> values;
  std::map<const Symbol*, FunctionValue> functions;
  std::vector<const Term*> assertions;
  std::vector<const Term*> assumptions;
  std::vector<std::size_t> failed;  // of the assumptions
  std::uint32_t seed = 0;
  std::vector<std::size_t> marks;
  std::string calls;

 private:
  void fail() const {
    if (raise) raise();
  }
  /// Arrays within arrays are as deep as the test has written them.
  const Term* make_zero(const DataType* type) {
    switch (type->get_kind()) {
      case DataType::Kind::boolean:
        return mgr.make_false();
      case DataType::Kind::rounding_mode:
        return mgr.make_fprounding_even();
      case DataType::Kind::bit_vector:
        return mgr.make_bv_number(0, type->get_width());
      case DataType::Kind::array:
        return mgr.make_const_array(type, make_zero(type->get_element()));
      case DataType::Kind::uninterpreted:
        return mgr.make_element(type, QNumber(0));
      case DataType::Kind::floating_point:
        break;
    }
    return mgr.make_fp_number(QNumber(0), type->get_e(), type->get_m());
  }
};

/// One interpreter with all that it needs.
struct Session {
  explicit Session(bool rewrite = true, const InterpreterOptions& options = {})
      : mgr(rewrite), engine(mgr), interpreter(mgr, engine, out, options) {}

  /// Runs a script that must be right and returns what it printed.
  std::string run(const std::string& text) {
    out.str("");
    interpreter.run(text, "t.smt2");
    return out.str();
  }

  /// Runs a script that must be wrong and returns "LINE:COLUMN: MESSAGE".
  std::string error(const std::string& text) {
    out.str("");
    try {
      interpreter.run(text, "t.smt2");
    } catch (const ScriptError& e) {
      return std::to_string(e.get_line()) + ":" + std::to_string(e.get_column()) + ": " +
             e.get_message();
    }
    return "no error";
  }

  /// The constant that a script declared last under this name.
  const Term* constant(const std::string& name) const {
    return interpreter.get_symbols().find(name)->body;
  }

  TermManager mgr;
  FakeEngine engine;
  std::ostringstream out;
  Interpreter interpreter;
};

inline std::string repeated(const std::string& text, std::size_t n) {
  std::string result;
  for (std::size_t i = 0; i < n; ++i)
    result += text;
  return result;
}

}  // namespace vorn::smt2

#endif
