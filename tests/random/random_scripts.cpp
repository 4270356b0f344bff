// Random scripts through the whole solver.
//
//   random_scripts --seed N --count K     scripts of the seeds N to N + K - 1
//
// The first script on which the checker finds a failure is shrunk and printed, and the exit status
// is 1. A seed always means the same script and the same checks.
#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <chrono>
#include <csignal>
#include <fstream>
#include <iostream>
#include <string>

#include "tests/random/checker.h"
#include "tests/random/generator.h"
#include "tests/random/shrinker.h"

namespace vorn::random {
namespace {

constexpr const char* kKinds[] = {"exception", "disagreement", "wrong model", "wrong unsat",
                                  "wrong core"};

std::string report_text(const Script& script, std::uint64_t seed, const Failure& failure) {
  std::string detail = failure.detail;
  for (std::size_t at = 0; (at = detail.find('\n', at)) != std::string::npos;)
    detail.replace(at, 1, " ");
  return fmt::format("; seed {}: {}: {}\n(set-logic ALL)\n{}", seed,
                     kKinds[static_cast<std::size_t>(failure.kind)], detail, to_string(script));
}

void report_failure(const Checker& checker, std::uint64_t seed, bool with_arrays,
                    const Failure& failure, const std::string& file) {
  std::cerr << fmt::format("seed {}: {}: {}\nshrinking\n", seed,
                           kKinds[static_cast<std::size_t>(failure.kind)], failure.detail);
  const Script script = shrink(generate(seed, with_arrays), [&](const Script& candidate) {
    const Report report = checker.check(candidate, seed);
    return report.failure && report.failure->kind == failure.kind;
  });
  const Report report = checker.check(script, seed);
  const std::string text = report_text(script, seed, report.failure.value_or(failure));
  std::cout << text;
  if (!file.empty() && !(std::ofstream(file) << text)) {
    std::cerr << "cannot write " << file << '\n';
  }
}

/// Names the seed when the program dies; what is written was put together before.
class LastWords {
 public:
  LastWords() {
    for (const int signal : {SIGABRT, SIGSEGV, SIGFPE, SIGBUS})
      std::signal(signal, speak);
  }
  void set_seed(std::uint64_t seed) {
    const auto end = fmt::format_to_n(text, sizeof text, "the program died of seed {}\n", seed);
    length = end.size;
  }

 private:
  static void speak(int signal) {
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text, length);
    std::signal(signal, SIG_DFL);
    std::raise(signal);
  }

  static inline char text[64] = {};
  static inline std::size_t length = 0;
};

struct Total {
  std::size_t scripts = 0;
  Report sum;

  void add(const Report& report) {
    ++scripts;
    sum.checks += report.checks;
    sum.sat += report.sat;
    sum.unsat += report.unsat;
    sum.undecided += report.undecided;
    sum.enumerated += report.enumerated;
    sum.found += report.found;
    sum.cores += report.cores;
    sum.ranged += report.ranged;
    sum.refuted += report.refuted;
    sum.split += report.split;
    sum.tried += report.tried;
    sum.refined += report.refined;
  }
};

}  // namespace
}  // namespace vorn::random

int main(int argc, char** argv) {
  using namespace vorn::random;
  CLI::App app("Checks the solver on random scripts.");
  std::uint64_t seed = 1;
  std::uint64_t count = 1000;
  std::string file;
  bool with_arrays = false;
  bool verbose = false;
  bool print = false;
  bool keep_going = false;
  app.add_option("--seed", seed, "of the first script");
  app.add_option("--count", count, "number of scripts");
  app.add_option("--out", file, "file for the shrunk script of a failure");
  app.add_flag("--arrays", with_arrays, "with arrays, functions and an uninterpreted sort");
  app.add_flag("--verbose", verbose, "a line for each script");
  app.add_flag("--print", print, "print the scripts and check nothing");
  app.add_flag("--keep-going", keep_going, "go on after a failure");
  CLI11_PARSE(app, argc, argv);

  const auto start = std::chrono::steady_clock::now();
  const auto seconds = [&start] {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  };
  LastWords last_words;
  const Checker checker;
  Total total;
  std::size_t failures = 0;
  for (; count > 0 && (failures == 0 || keep_going); --count, ++seed) {
    const Script script = generate(seed, with_arrays);
    if (print) {
      std::cout << "; seed " << seed << '\n' << to_string(script);
      continue;
    }
    last_words.set_seed(seed);
    if (verbose) std::cerr << fmt::format("{:8.2f} s, seed {}\n", seconds(), seed);
    const Report report = checker.check(script, seed);
    total.add(report);
    if (!report.failure) continue;
    ++failures;
    report_failure(checker, seed, with_arrays, *report.failure, file);
  }
  if (!print) {
    std::cout << fmt::format(
        "{} scripts, {} checks: {} sat and {} unsat ({} and {} of them by all assignments as "
        "well), "
        "{} undecided, {} cores, {} of {} unsat refuted by ranges, {} of them by cases, "
        "{} checks by enumeration, {} with results excluded, {} failures, {:.1f} s\n",
        total.scripts, total.sum.checks, total.sum.sat, total.sum.unsat, total.sum.found,
        total.sum.enumerated, total.sum.undecided, total.sum.cores, total.sum.refuted,
        total.sum.ranged, total.sum.split, total.sum.tried, total.sum.refined, failures, seconds());
  }
  return failures == 0 ? 0 : 1;
}
