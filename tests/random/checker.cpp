#include "tests/random/checker.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <span>
#include <stdexcept>

#include "tests/random/collector.h"
#include "tests/random/congruence.h"
#include "tests/random/model_space.h"
#include "tests/random/model_text.h"
#include "vorn/ranges/propagation.h"
#include "vorn/rewrite/fp_rewriter.h"

namespace vorn::random {
namespace {

Answer parse_answer(const std::string& text) {
  if (text == "sat\n") return Answer::sat;
  if (text == "unsat\n") return Answer::unsat;
  if (text == "unknown\n") return Answer::unknown;
  throw std::runtime_error("a check printed: " + text);
}

const char* to_string(Answer answer) {
  return answer == Answer::sat ? "sat" : answer == Answer::unsat ? "unsat" : "unknown";
}

/// What the second run does differently.
Configuration second_configuration(std::uint64_t seed) {
  const int sat_seed = 1 + static_cast<int>(seed % 1000);
  const Configuration configurations[] = {{false, true, 0, false, false},
                                          {true, true, sat_seed, false, false},
                                          {true, false, 0, false, false},
                                          {false, false, sat_seed, false, false},
                                          {true, true, 0, true, false}};
  Configuration second = configurations[seed % std::size(configurations)];
  const std::uint64_t rest = seed / std::size(configurations);
  second.local_search = rest % 2 == 1;
  second.cores = rest / 2 % 2 == 1;
  second.minimal_cores = second.cores && rest / 4 % 2 == 1;
  second.ranges = rest / 8 % 4 != 0;
  second.reals = rest % 3 != 0;
  second.relations = rest / 32 % 4 != 3;
  second.enumeration = seed % 3 != 0;
  second.substitution = seed % 4 != 3;
  using solver::AbstractionKind;
  const AbstractionKind kinds[] = {AbstractionKind::all, AbstractionKind::floats,
                                   AbstractionKind::none};
  // Where ranges decide, few candidates are refined.
  second.abstraction = second.ranges ? kinds[rest / 16 % std::size(kinds)] : AbstractionKind::all;
  return second;
}

std::string describe(const Configuration& c) {
  return fmt::format("{} rewriting, {}, seed {}{}{}{}{}{}{}{}{}{}", c.rewrite ? "with" : "without",
                     c.incremental ? "one solver" : "a solver for each check", c.seed,
                     c.collecting ? ", dropping terms" : "", c.local_search ? ", local search" : "",
                     c.cores ? ", cores" : "", c.ranges ? ", ranges" : "", c.reals ? ", reals" : "",
                     c.relations ? ", relations" : "", c.enumeration ? ", enumeration" : "",
                     c.substitution ? ", substitution" : "",
                     c.abstraction == solver::AbstractionKind::none     ? ""
                     : c.abstraction == solver::AbstractionKind::floats ? ", abstraction of floats"
                                                                        : ", abstraction");
}

/// Those whose values are asked for after a sat.
constexpr std::size_t kAccesses = 6;

/// Takes what it says from each assertion but those of the labels, and leaves labels and names.
void drop_assertions(const std::vector<std::string>& kept, std::size_t count, Script* script) {
  for (Command& command : std::span(*script).first(count)) {
    if (command.kind != Command::Kind::assertion) continue;
    Expression& formula = command.terms[0];
    if (std::find(kept.begin(), kept.end(), formula.head) != kept.end()) continue;
    const Expression truth = {Expression::Kind::theory, "true", kBool, {}, {}};
    formula = {Expression::Kind::theory, "or", kBool, {truth, std::move(formula)}, {}};
  }
}

/// Whether ranges refute the assertions without cases.
bool is_refuted_at_once(const Script& live, const Configuration& configuration) {
  Collection collection(live, configuration);
  rewrite::FpRewriter rewriter(collection.get_manager());
  ranges::Propagation propagation(collection.get_manager());
  for (const Term* f : collection.get_assertions())
    propagation.add(configuration.rewrite ? rewriter.rewrite(f) : f);
  propagation.propagate(20ULL * propagation.get_size());
  return propagation.is_contradiction();
}

/// The answer of a solver that has nothing to do with the one under test.
Answer decide_plainly(const std::string& text) {
  Configuration plain;
  plain.rewrite = false;
  Session session(plain, make_solver);
  return parse_answer(session.run(text + "(check-sat)"));
}

}  // namespace

std::unique_ptr<Engine> make_solver(TermManager& manager, const solver::Options& options) {
  return std::make_unique<solver::Solver>(manager, options);
}

// Runs ------------------------------------------------------------------------------------------

void Checker::ask_model(Session& session, const LiveCommands& live, Result* result) {
  const std::string model = session.run("(get-model)");
  result->equations = read_model(model, live.get_declared());
  result->functions = read_functions(model);
  const auto add = [result, &session](const std::string& command) {
    for (const std::string& equation : read_values(session.run(command)))
      result->equations.push_back(equation);
  };
  add("(get-assignment)");
  std::string terms;
  for (const std::string& name : live.get_defined())
    terms += ' ' + name;
  const std::vector<std::string> accesses = live.get_accesses();
  for (std::size_t i = 0; i < std::min(accesses.size(), kAccesses); ++i)
    terms += ' ' + accesses[i];
  if (!terms.empty()) add("(get-value (" + terms + "))");
}

void Checker::ask_core(Session& session, const LiveCommands& live, const Command& check,
                       bool of_assertions, Result* result) {
  Command core = check;
  core.terms.clear();
  for (const std::string& text : split_list(session.run("(get-unsat-assumptions)"))) {
    const auto is_meant = [&text](const Expression& e) { return random::to_string(e) == text; };
    const auto found = std::find_if(check.terms.begin(), check.terms.end(), is_meant);
    if (found == check.terms.end()) throw std::runtime_error("this was not assumed: " + text);
    core.terms.push_back(*found);
  }
  result->core = live.at(core);
  if (!of_assertions) return;
  result->has_assertions = true;
  const std::vector<std::string> labels = split_list(session.run("(get-unsat-core)"));
  const std::size_t count = result->core->size() - core.terms.size();
  drop_assertions(labels, count, &*result->core);
}

std::vector<Checker::Result> Checker::run(const Script& script,
                                          const Configuration& configuration) const {
  std::vector<Result> results;
  LiveCommands live;
  Session whole(configuration, make_engine);
  for (const Command& command : script) {
    if (!command.is_check()) {
      if (configuration.incremental) whole.run(random::to_string(command));
      live.execute(command);
      continue;
    }
    Result result;
    result.live = live.at(command);
    std::optional<Session> fresh;
    if (!configuration.incremental) {
      fresh.emplace(configuration, make_engine);
      for (const Command& earlier : live.at(make_check()))
        fresh->run(random::to_string(earlier));
    }
    Session& session = fresh ? *fresh : whole;
    if (configuration.collecting) session.collect_garbage();
    const std::uint64_t refutations = session.count_refutations();
    const std::uint64_t refinements = session.get_statistics().refinements;
    const std::uint64_t enumerations = session.count_enumerations();
    result.answer = parse_answer(session.run(random::to_string(command)));
    result.is_refuted = session.count_refutations() != refutations;
    result.is_tried = session.count_enumerations() != enumerations;
    result.is_refined = session.get_statistics().refinements != refinements;
    if (result.answer == Answer::sat) ask_model(session, live, &result);
    if (result.answer == Answer::unsat) {
      ask_core(session, live, command, configuration.cores, &result);
    }
    results.push_back(result);
  }
  return results;
}

// Judgement -------------------------------------------------------------------------------------

void Checker::judge_model(const Result& result, Report* report) {
  // A function cannot be equated with its value: it is defined in place of being declared.
  std::string text;
  std::string model;
  for (const Command& command : result.live) {
    const auto definition = result.functions.find(command.name);
    const bool is_defined = command.is_function() && definition != result.functions.end();
    text += (is_defined ? definition->second : random::to_string(command)) + '\n';
    if (is_defined) model += ' ' + definition->second;
  }
  text += random::to_string(make_congruences(result.live));
  for (const std::string& equation : result.equations) {
    text += "(assert " + equation + ")\n";
    model += ' ' + equation;
  }
  if (decide_plainly(text) != Answer::unsat) return;
  report->failure = {Failure::Kind::bad_model, "the model is refuted:" + model};
}

void Checker::judge_sat(const Result& result, std::uint64_t seed, Report* report) {
  const Search search = search_models(result.live, seed, Sampling::no);
  report->found += search.exhaustive && search.model ? 1 : 0;
  if (search.exhaustive && !search.model) {
    report->failure = {Failure::Kind::bad_model, "sat, but no assignment is a model"};
  } else {
    judge_model(result, report);
  }
}

void Checker::judge_core(const Result& result, Report* report) {
  report->cores += result.has_assertions ? 1 : 0;
  const std::string text = random::to_string(*result.core);
  if (decide_plainly(text) != Answer::sat) return;
  report->failure = {Failure::Kind::bad_core, "what was blamed is not unsat:\n" + text};
}

void Checker::count_refutation(const Result& result, const Configuration& configuration,
                               Report* report) {
  if (!configuration.ranges || result.answer != Answer::unsat) return;
  ++report->ranged;
  if (!result.is_refuted) return;
  ++report->refuted;
  report->split += is_refuted_at_once(result.live, configuration) ? 0 : 1;
}

void Checker::judge(const Result& result, std::uint64_t seed, Report* report) {
  switch (result.answer) {
    case Answer::sat:
      ++report->sat;
      judge_sat(result, seed, report);
      break;
    case Answer::unsat: {
      ++report->unsat;
      const Search search = search_models(result.live, seed);
      report->enumerated += search.complete ? 1 : 0;
      if (search.model) {
        report->failure = {Failure::Kind::bad_unsat, "unsat, but a model is: " + *search.model};
      } else if (result.core) {
        judge_core(result, report);
      }
      break;
    }
    case Answer::unknown:
      ++report->undecided;
      break;
  }
}

Report Checker::check(const Script& script, std::uint64_t seed) const {
  Report report;
  try {
    const std::vector<Result> first = run(script, {});
    const Configuration other = second_configuration(seed);
    const std::vector<Result> second = run(other.cores ? name_assertions(script) : script, other);
    for (std::size_t i = 0; i < first.size() && !report.failure; ++i) {
      ++report.checks;
      count_refutation(second[i], other, &report);
      report.tried += second[i].is_tried ? 1 : 0;
      report.refined += second[i].is_refined ? 1 : 0;
      const Answer a = first[i].answer;
      const Answer b = second[i].answer;
      // What only the second run decided is judged all the same.
      judge(a == Answer::unknown ? second[i] : first[i], seed + i, &report);
      const bool is_judged = a == Answer::unknown;
      if (!report.failure && !is_judged && second[i].has_assertions) judge_core(second[i], &report);
      if (report.failure || a == b || a == Answer::unknown || b == Answer::unknown) continue;
      report.failure = {Failure::Kind::disagreement,
                        fmt::format("check {} is {}, but {} {}", i + 1, to_string(a), to_string(b),
                                    describe(other))};
    }
  } catch (const std::exception& error) {
    report.failure = {Failure::Kind::exception, error.what()};
  }
  return report;
}

}  // namespace vorn::random
