// The command `vorn`: options and subcommands.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "tools/encode.h"
#include "tools/eval.h"
#include "tools/explain.h"
#include "tools/failure.h"
#include "tools/lift.h"
#include "tools/memory.h"
#include "tools/output.h"
#include "tools/script.h"
#include "tools/solve.h"
#include "vorn/utils/output_file.h"
#include "vorn/version.h"

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

/// What is wrong with a limit; empty if nothing is.
std::string is_positive(const std::string& text) {
  double value = 0;
  if (!CLI::detail::lexical_cast(text, value)) return "'" + text + "' is not a number";
  return value > 0 ? "" : "must be more than 0, not " + text;
}

void add_strict_option(CLI::App& app, bool& strict) {
  app.add_flag("--strict", strict,
               "refuse spellings of scripts that the standard does not allow, instead of accepting "
               "those whose meaning is plain");
}

/// Options that `vorn FILE...` and `vorn solve FILE...` share.
void add_solve_options(CLI::App& app, vorn::tools::SolveOptions& options) {
  app.add_option(
      "FILE", options.files,
      "SMT-LIB scripts to decide; - is standard input, each command of which is answered "
      "at once");
  add_encoder_option(app, options.encoder);
  app.add_option("--time-limit", options.time_limit,
                 "end each check-sat after SECONDS with the answer unknown; the first has the "
                 "reading of the script in it")
      ->type_name("SECONDS")
      ->check(is_positive);
  app.add_option("--memory-limit", options.memory_limit,
                 "answer unknown to what needs more than MB megabytes of memory")
      ->type_name("MB")
      ->check(is_positive);
  app.add_flag_callback("--no-local-search", [&options] { options.local_search = false; })
      ->description("do not look for models by trying assignments as well");
  app.add_flag_callback("--no-ranges", [&options] { options.ranges = false; })
      ->description("do not look for refutations by what values terms can have as well");
  app.add_flag_callback("--no-reals", [&options] { options.reals = false; })
      ->description("do not add up comparisons of rounded sums and products for that");
  app.add_flag_callback("--no-enumeration", [&options] { options.enumeration = false; })
      ->description("do not try all assignments where there are few");
  app.add_option("--threads", options.threads,
                 "try assignments in N threads; the rest is done in one")
      ->type_name("N")
      ->check(CLI::Range(1U, 256U));
  app.add_flag_callback("--no-relations", [&options] { options.relations = false; })
      ->description("do not state theorems on the terms of formulas beside them");
  app.add_flag_callback("--no-substitution", [&options] { options.substitution = false; })
      ->description("do not put definitions and truth values in place of what they stand for");
  using vorn::solver::AbstractionKind;
  CLI::Option* all =
      app.add_flag_callback("--abstraction",
                            [&options] { options.abstraction = AbstractionKind::all; })
          ->description("put off the circuits of products and quotients of bit-vectors as well");
  app.add_flag_callback("--no-abstraction",
                        [&options] { options.abstraction = AbstractionKind::none; })
      ->description("put off no circuit until models depend on it")
      ->excludes(all);
  app.add_flag("--check-model")
      ->description("check each model before sat is answered, which is always done");
  app.add_option("--cnf", options.cnf_file,
                 "write the clauses to FILE, in DIMACS; for one script with one check-sat")
      ->type_name("FILE");
  app.add_option("--proof", options.proof_file,
                 "write a proof of unsat that refutes them to FILE, in DRAT; likewise")
      ->type_name("FILE");
  app.add_flag_callback(
      "--no-rewrite", [&options] { options.rewrite = false; },
      "encode operations as they were asserted");
  app.add_flag("--stats", options.statistics, "print statistics on standard error");
  app.add_flag("--verbose", options.verbose,
               "report progress on standard error, and spellings that the standard does not allow");
  add_strict_option(app, options.strict);
}

void add_encode_options(CLI::App& app, vorn::tools::EncodeOptions& options) {
  using Target = vorn::tools::EncodeOptions::Target;
  CLI::Option* file = app.add_option(
      "FILE", options.file, "SMT-LIB script, read up to its first check-sat; - is standard input");
  app.add_option("--op", options.operation,
                 "in place of a script, with --to dot: an operation as in a line of eval, without "
                 "operands, or with _ for those that are left open")
      ->type_name("OPERATION")
      ->excludes(file);
  app.add_option_function<std::string>(
         "--to",
         [&options](const std::string& name) {
           options.target = name == "dimacs"  ? Target::dimacs
                            : name == "aiger" ? Target::aiger
                            : name == "dot"   ? Target::dot
                                              : Target::smt2;
         },
         "format: smt2 (a script over bit-vectors), dimacs (clauses), aiger (a circuit) or dot (a "
         "picture of the terms for Graphviz)")
      ->type_name("FORMAT")
      ->check(CLI::IsMember({"smt2", "dimacs", "aiger", "dot"}))
      ->required();
  app.add_option("-o,--out", options.output,
                 "write to FILE instead of standard output; a circuit is binary if it ends in .aig")
      ->type_name("FILE");
  app.add_flag("--keep-arrays", options.keep_arrays,
               "with --to smt2: keep arrays and functions, over bit-vectors");
  add_encoder_option(app, options.encoder);
  add_strict_option(app, options.strict);
}

void add_explain_options(CLI::App& app, vorn::tools::ExplainOptions& options) {
  app.add_option(
         "OPERATION|FILE", options.words,
         "an operation as in a line of eval, such as add rne 8 23 3f800000 40000000; or, if "
         "it is one word and no such line, an SMT-LIB script, the operations of which are "
         "explained in the model of its first check-sat; - is standard input")
      ->required();
  app.add_flag("--json", options.json, "print one JSON object, for programs");
  add_encoder_option(app, options.encoder);
  add_strict_option(app, options.strict);
}

void add_lift_options(CLI::App& app, vorn::tools::LiftOptions& options) {
  app.add_option("MAP", options.map, "the clauses that were solved, or the comments above them")
      ->required();
  app.add_option("SOLUTION", options.solution,
                 "what the SAT solver printed: lines s and v; - is standard input")
      ->required();
  app.add_option("--check", options.script, "evaluate the assertions of this script on the model")
      ->type_name("FILE");
}

/// Without a file, scripts are read from standard input, unless somebody sits there who would not
/// know that, or there is nothing.
std::vector<std::string> find_default_files() {
  if (::isatty(STDIN_FILENO) != 0) return {};
  if (std::cin.peek() == std::istream::traits_type::eof()) return {};
  return {"-"};
}

/// The usage errors that concern several options; empty if there is none.
std::string find_usage_error(const vorn::tools::SolveOptions& options) {
  if (options.files.empty()) return "no file given";
  const bool traced = !options.cnf_file.empty() || !options.proof_file.empty();
  if (!traced) return "";
  const std::string& input = options.files.front();
  if (options.files.size() != 1 || input == "-") {
    return "--cnf and --proof take one file, not standard input";
  }
  if (vorn::is_same_file(options.cnf_file, options.proof_file)) {
    return "--cnf and --proof name the same file";
  }
  for (const auto& [option, output] :
       {std::pair{"--cnf", options.cnf_file}, std::pair{"--proof", options.proof_file}}) {
    if (vorn::tools::overwrites_input(output, input)) {
      return std::string(option) + " would overwrite the script " + input;
    }
  }
  return "";
}

std::string find_usage_error(const vorn::tools::EncodeOptions& options) {
  const bool is_operation = !options.operation.empty();
  if (!is_operation && options.file.empty()) return "FILE is required";
  if (is_operation && options.target != vorn::tools::EncodeOptions::Target::dot) {
    return "--op goes with --to dot";
  }
  if (options.keep_arrays && options.target != vorn::tools::EncodeOptions::Target::smt2) {
    return "--keep-arrays goes with --to smt2";
  }
  if (!is_operation && vorn::tools::overwrites_input(options.output, options.file)) {
    return "--out would overwrite the script " + vorn::tools::display_name(options.file);
  }
  return "";
}

int report_usage_error(const std::string& error) {
  std::cerr << "vorn: " << error << "\nRun with --help for more information.\n";
  return vorn::tools::kUsageError;
}

int run(int argc, char** argv) {
  CLI::App app("Vorn decides SMT-LIB 2.6 scripts over floating-point and bit-vector terms.",
               "vorn");
  app.set_version_flag("--version", std::string("vorn ") + VORN_VERSION);
  app.footer(
      "Exit status: 0 done, 1 an error, 2 a usage error, 3 a resource limit was hit, "
      "4 an internal error.");

  vorn::tools::SolveOptions options;
  add_solve_options(app, options);
  CLI::App* solve = app.add_subcommand("solve", "decide SMT-LIB scripts (the default)");
  add_solve_options(*solve, options);

  CLI::App* eval = app.add_subcommand(
      "eval", "evaluate operations on bit patterns, one a line of standard input");
  vorn::solver::EncoderKind eval_encoder = vorn::solver::EncoderKind::ieee;
  add_encoder_option(*eval, eval_encoder);

  vorn::tools::EncodeOptions encode_options;
  CLI::App* encode =
      app.add_subcommand("encode", "write what a script decides as a formula for other solvers");
  add_encode_options(*encode, encode_options);
  vorn::tools::ExplainOptions explain_options;
  CLI::App* explain = app.add_subcommand(
      "explain", "show each intermediate value of an operation, or of those of a script");
  add_explain_options(*explain, explain_options);
  vorn::tools::LiftOptions lift_options;
  CLI::App* lift = app.add_subcommand(
      "lift", "turn the answer of a SAT solver to encoded clauses into one to the script");
  add_lift_options(*lift, lift_options);

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? vorn::tools::kDone : vorn::tools::kUsageError;
  }
  if (eval->parsed()) return vorn::tools::evaluate_lines(std::cin, std::cout, eval_encoder);
  if (encode->parsed()) {
    if (const std::string error = find_usage_error(encode_options); !error.empty()) {
      return report_usage_error(error);
    }
    return vorn::tools::encode(encode_options);
  }
  if (explain->parsed()) return vorn::tools::explain(explain_options);
  if (lift->parsed()) return vorn::tools::lift(lift_options);
  if (options.files.empty()) options.files = find_default_files();
  if (const std::string error = find_usage_error(options); !error.empty()) {
    return report_usage_error(error);
  }
  return vorn::tools::solve(options);
}

/// Runs the command and writes out all that it printed.
int run_checked(int argc, char** argv) {
  const vorn::tools::StandardOutput output;
  const int status = run(argc, argv);
  // Where a write has failed, that is in the status.
  if (std::cout) std::cout.flush();
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  vorn::tools::guard_number_memory();
  vorn::tools::prepare_process();
  std::ios::sync_with_stdio(false);
  try {
    return run_checked(argc, argv);
  } catch (const std::exception&) {
    return vorn::tools::report_failure("vorn", "with the command line.");
  }
}
