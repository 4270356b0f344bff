// The assertions of a script as terms.
#ifndef VORN_TESTS_RANDOM_COLLECTOR_H
#define VORN_TESTS_RANDOM_COLLECTOR_H

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "tests/random/script.h"
#include "tests/random/session.h"
#include "vorn/terms/engine.h"

namespace vorn::random {

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

/// A script without levels that was read, and its assertions.
class Collection {
 public:
  Collection(const Script& script, const Configuration& configuration)
      : session(configuration, [this](TermManager&, const solver::Options&) {
          auto engine = std::make_unique<Collector>();
          collector = engine.get();
          return engine;
        }) {
    session.run(to_string(script) + "(check-sat)");
  }

  TermManager& get_manager() { return session.get_manager(); }
  const std::vector<const Term*>& get_assertions() const { return collector->assertions; }

 private:
  Collector* collector = nullptr;
  Session session;
};

}  // namespace vorn::random

#endif
