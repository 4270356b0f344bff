#include "tests/random/checker.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <stdexcept>

#include "tests/random/congruence.h"
#include "tests/random/model_space.h"
#include "tests/random/model_text.h"

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
  second.local_search = seed / std::size(configurations) % 2 == 1;
  return second;
}

std::string describe(const Configuration& c) {
  return fmt::format("{} rewriting, {}, seed {}{}{}", c.rewrite ? "with" : "without",
                     c.incremental ? "one solver" : "a solver for each check", c.seed,
                     c.collecting ? ", dropping terms" : "",
                     c.local_search ? ", local search" : "");
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
  if (!terms.empty()) add("(get-value (" + terms + "))");
}

void Checker::ask_core(Session& session, const LiveCommands& live, const Command& check,
                       Result* result) {
  Command core = check;
  core.terms.clear();
  for (const std::string& text : split_list(session.run("(get-unsat-assumptions)"))) {
    const auto is_meant = [&text](const Expression& e) { return random::to_string(e) == text; };
    const auto found = std::find_if(check.terms.begin(), check.terms.end(), is_meant);
    if (found == check.terms.end()) throw std::runtime_error("this was not assumed: " + text);
    core.terms.push_back(*found);
  }
  result->core = live.at(core);
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
    result.answer = parse_answer(session.run(random::to_string(command)));
    if (result.answer == Answer::sat) ask_model(session, live, &result);
    if (result.answer == Answer::unsat) ask_core(session, live, command, &result);
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

void Checker::judge_core(const Result& result, Report* report) {
  const std::string text = random::to_string(*result.core);
  if (decide_plainly(text) != Answer::sat) return;
  report->failure = {Failure::Kind::bad_core, "the assumptions named are not unsat:\n" + text};
}

void Checker::judge(const Result& result, std::uint64_t seed, Report* report) {
  switch (result.answer) {
    case Answer::sat:
      ++report->sat;
      judge_model(result, report);
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
    const std::vector<Result> second = run(script, other);
    for (std::size_t i = 0; i < first.size() && !report.failure; ++i) {
      ++report.checks;
      const Answer a = first[i].answer;
      const Answer b = second[i].answer;
      // What only the second run decided is judged all the same.
      judge(a == Answer::unknown ? second[i] : first[i], seed + i, &report);
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
