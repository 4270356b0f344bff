// One long session, and all that comes of it: what each check is encoded as, its answer, its model.
//
//   long_session ROUNDS BLOCKS
//
// The exit status is 0 if terms were collected at least twice.
//
// A round is a random script on a level of its own, above assertions that stay, and ballast that
// nobody asserts, so that terms are collected on the way. BLOCKS allocations precede everything
// else and are never freed: they move what the session allocates. The session depends on ROUNDS
// alone, and so must the output.
#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "tests/random/generator.h"
#include "tests/random/random.h"
#include "tests/random/script.h"
#include "tests/random/session.h"
#include "vorn/smt2/interpreter.h"
#include "vorn/solver/solver.h"
#include "vorn/terms/script_printer.h"

namespace vorn::random {
namespace {

/// Sums of a round that only fill the manager, each with a literal of its own: a hundred rounds and
/// a half make enough for two collections.
constexpr std::size_t kBallast = 4'000;

/// Prints what it decides before it does so.
class PrintingSolver final : public solver::Solver {
 public:
  PrintingSolver(TermManager& manager, const solver::Options& chosen, Budget& check_budget)
      : Solver(manager, chosen), budget(check_budget) {}

  Answer check_sat(std::span<const Term* const> assumed) override {
    ScriptPrinter(encode(assumed).conjuncts).print(std::cout);
    budget.renew();
    return Solver::check_sat(assumed);
  }
  void collect_garbage(std::span<const Term* const> kept) override {
    ++collections;
    std::cout << "; collection\n";
    Solver::collect_garbage(kept);
  }

  std::size_t get_collections() const { return collections; }

 private:
  Budget& budget;
  std::size_t collections = 0;
};

std::string ballast(std::size_t round) {
  std::string text = "(define-fun ballast () (_ BitVec 32) (bvadd a";
  for (std::size_t i = 0; i < kBallast; ++i)
    text += " (_ bv" + std::to_string(round * kBallast + i + 1) + " 32)";
  return text + "))\n";
}

/// The script of a seed on a level of its own, with questions after each check; empty if it drops
/// the assertions below it.
std::string level(std::size_t seed) {
  const Script script = generate(seed);
  std::string text = "(push)\n";
  std::size_t levels = 1;
  for (const Command& command : script) {
    if (command.kind == Command::Kind::reset_assertions) return "";
    text += to_string(command) + '\n';
    if (command.kind == Command::Kind::push) levels += command.levels;
    if (command.kind == Command::Kind::pop) levels -= command.levels;
    if (command.is_check()) text += "(get-model)(get-unsat-assumptions)\n";
  }
  return text + ballast(seed) + "(pop " + std::to_string(levels) + ")\n";
}

std::string session(std::size_t rounds) {
  std::string text =
      "(declare-const a (_ BitVec 32))(declare-const b Float16)(declare-const c Float16)\n"
      "(declare-const mode RoundingMode)\n"
      "(assert (fp.lt b (fp.add mode c ((_ to_fp 5 11) mode a))))\n";
  for (std::size_t round = 0; round < rounds; ++round)
    text += level(round + 1);
  return text;
}

/// Blocks of many sizes, kept to the end.
std::vector<std::unique_ptr<std::byte[]>> allocate(std::size_t blocks) {
  Random random(blocks);
  std::vector<std::unique_ptr<std::byte[]>> kept;
  for (std::size_t i = 0; i < blocks; ++i)
    kept.push_back(std::make_unique<std::byte[]>(1 + random.below(std::size_t{1} << 14)));
  return kept;
}

/// Whether terms were collected twice, so that what the first one freed was in use and freed again.
bool run(std::size_t rounds) {
  TermManager manager;
  Budget budget;
  solver::Options options;
  options.termination_test = &budget;
  PrintingSolver engine(manager, options, budget);
  smt2::Interpreter interpreter(manager, engine, std::cout);
  std::istringstream commands(session(rounds));
  interpreter.run_interactive(commands, "session");
  std::cout << "; " << engine.get_statistics().checks << " checks, " << engine.get_collections()
            << " collections\n";
  return engine.get_collections() >= 2;
}

}  // namespace
}  // namespace vorn::random

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: long_session ROUNDS BLOCKS\n";
    return 2;
  }
  const auto blocks = vorn::random::allocate(std::strtoul(argv[2], nullptr, 10));
  return vorn::random::run(std::strtoul(argv[1], nullptr, 10)) ? 0 : 1;
}
