// The command `vorn`: options and subcommands.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>

#include "tools/eval.h"
#include "tools/solve.h"

namespace {

void add_encoder_option(CLI::App& app, vorn::solver::EncoderKind& kind) {
  using vorn::solver::EncoderKind;
  app.add_option_function<std::string>(
         "--encoder",
         [&kind](const std::string& name) {
           kind = name == "base" ? EncoderKind::base : EncoderKind::ieee;
         },
         "circuits for floating point: ieee (exact, the default) or base (departs from IEEE 754 "
         "where it rounds)")
      ->type_name("NAME")
      ->check(CLI::IsMember({"ieee", "base"}));
}

/// Options that `vorn FILE...` and `vorn solve FILE...` share.
void add_solve_options(CLI::App& app, vorn::tools::SolveOptions& options) {
  app.add_option(
      "FILE", options.files,
      "SMT-LIB scripts to decide; - is standard input, each command of which is answered "
      "at once");
  add_encoder_option(app, options.encoder);
  app.add_option("--time-limit", options.time_limit,
                 "end each check-sat after SECONDS with the answer unknown")
      ->type_name("SECONDS")
      ->check(CLI::NonNegativeNumber);
  app.add_flag("--check-model")
      ->description("check each model before sat is answered, which is always done");
  app.add_flag("--stats", options.statistics, "print statistics on standard error");
  app.add_flag("--verbose", options.verbose, "report progress on standard error");
}

int run(int argc, char** argv) {
  CLI::App app("Vorn decides SMT-LIB 2.6 scripts over floating-point and bit-vector terms.",
               "vorn");
  app.set_version_flag("--version", std::string("vorn ") + VORN_VERSION);
  app.footer(
      "Exit status: 0 done, 1 an error in the input, 2 a usage error, 3 a resource limit was hit, "
      "4 an internal error.");

  vorn::tools::SolveOptions options;
  add_solve_options(app, options);
  CLI::App* solve = app.add_subcommand("solve", "decide SMT-LIB scripts (the default)");
  add_solve_options(*solve, options);

  CLI::App* eval = app.add_subcommand(
      "eval", "evaluate operations on bit patterns, one a line of standard input");
  vorn::solver::EncoderKind eval_encoder = vorn::solver::EncoderKind::ieee;
  add_encoder_option(*eval, eval_encoder);

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? vorn::tools::kDone : vorn::tools::kUsageError;
  }
  std::ios::sync_with_stdio(false);
  if (eval->parsed()) return vorn::tools::evaluate_lines(std::cin, std::cout, eval_encoder);
  if (options.files.empty()) {
    std::cerr << "vorn: no file given\nRun with --help for more information.\n";
    return vorn::tools::kUsageError;
  }
  return vorn::tools::solve(options);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "vorn: error: %s\n", error.what());
    return vorn::tools::kInputError;
  }
}
