// The command `vorn`: options and subcommands.
#include <CLI/CLI.hpp>
#include <iostream>
#include <string>

#include "tools/solve.h"

namespace {

/// Options that `vorn FILE...` and `vorn solve FILE...` share.
void add_solve_options(CLI::App& app, vorn::tools::SolveOptions& options) {
  app.add_option("FILE", options.files, "SMT-LIB scripts to decide; - is standard input");
  app.add_option("--encoder", options.encoder,
                 "circuits for floating point: base (departs from IEEE 754 where it rounds; "
                 "operations that round need it chosen)")
      ->check(CLI::IsMember({"base"}));
  app.add_option("--time-limit", options.time_limit, "stop a script's search after SECONDS")
      ->type_name("SECONDS")
      ->check(CLI::NonNegativeNumber);
  app.add_flag("--stats", options.statistics, "print statistics on standard error");
  app.add_flag("--verbose", options.verbose, "report progress on standard error");
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Vorn decides SMT-LIB 2.6 scripts over floating-point and bit-vector terms.", "vorn");
  app.set_version_flag("--version", std::string("vorn ") + VORN_VERSION);
  app.footer(
      "Exit status: 0 done, 1 an error in the input, 2 a usage error, 3 a resource limit was hit.");

  vorn::tools::SolveOptions options;
  add_solve_options(app, options);
  CLI::App* solve = app.add_subcommand("solve", "decide SMT-LIB scripts (the default)");
  add_solve_options(*solve, options);

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? vorn::tools::kDone : vorn::tools::kUsageError;
  }
  if (options.files.empty()) {
    std::cerr << "vorn: no file given\nRun with --help for more information.\n";
    return vorn::tools::kUsageError;
  }
  return vorn::tools::solve(options);
}
