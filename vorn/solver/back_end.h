// What a Solver keeps between its formulas and the SAT solver; of use to nobody else.
#ifndef VORN_SOLVER_BACK_END_H
#define VORN_SOLVER_BACK_END_H

#include <chrono>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

#include "vorn/bv/aig.h"
#include "vorn/bv/bit_blaster.h"
#include "vorn/bv/cnf.h"
#include "vorn/bv/dimacs.h"
#include "vorn/bv/sat_solver.h"
#include "vorn/ranges/propagation.h"
#include "vorn/ranges/splitting.h"
#include "vorn/rewrite/fp_rewriter.h"
#include "vorn/rewrite/relations.h"
#include "vorn/rewrite/top_level.h"
#include "vorn/search/enumeration.h"
#include "vorn/search/local_search.h"
#include "vorn/solver/abstraction.h"
#include "vorn/solver/solver.h"
#include "vorn/solver/translator.h"
#include "vorn/theories/theory_terms.h"

namespace vorn::solver {

/// Adds the time of its life to a total, in seconds.
class Stopwatch {
 public:
  explicit Stopwatch(double* sum) : total(sum), start(std::chrono::steady_clock::now()) {}
  ~Stopwatch() {
    *total += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  }
  Stopwatch(const Stopwatch&) = delete;
  Stopwatch& operator=(const Stopwatch&) = delete;

 private:
  double* total;
  std::chrono::steady_clock::time_point start;
};

/// Has the term manager ask a test as long as it lives.
class TestedTerms {
 public:
  TestedTerms(TermManager& manager, const TerminationTest* test)
      : mgr(manager), outer(manager.get_termination_test()) {
    mgr.set_termination_test(test);
  }
  ~TestedTerms() { mgr.set_termination_test(outer); }
  TestedTerms(const TestedTerms&) = delete;
  TestedTerms& operator=(const TestedTerms&) = delete;

 private:
  TermManager& mgr;
  const TerminationTest* outer;
};

/// Encodings and translations follow the levels. The circuits and the SAT solver only grow.
struct Solver::BackEnd {
  /// Everything from the graph down.
  struct Circuits {
    Circuits(TermManager& manager, const Options& options, bool traced = false)
        : blaster(manager, aig),
          is_traced(traced),
          sat(make_solver(options, traced)),
          cnf(aig, *sat) {
      aig.set_termination_test(options.termination_test);
      sat->set_termination_test(options.termination_test);
      cnf.set_termination_test(options.termination_test);
    }

    std::unique_ptr<bv::SatSolver> make_solver(const Options& wanted, bool traced) {
      if (!traced) return bv::make_cadical_solver(wanted.seed);
      auto solver = bv::make_cadical_solver(wanted.seed, wanted.proof_file);
      if (wanted.cnf_file.empty()) return solver;
      auto with_clauses = std::make_unique<bv::ClauseRecorder>(std::move(solver));
      recorder = with_clauses.get();
      return with_clauses;
    }

    /// Gives up what a long first search can do without. Later ones are those of a session, which
    /// would pay for it each time.
    void save_memory() {
      static constexpr std::uint32_t kLargeGraph = 1U << 20U;
      if (!is_searched && aig.get_node_count() > kLargeGraph) {
        aig.release_table();
        blaster.release_bits();
      }
      is_searched = true;
    }

    bv::Aig aig;
    bv::BitBlaster blaster;
    const bool is_traced;
    const bv::ClauseRecorder* recorder = nullptr;  // the solver, where clauses are to be written
    std::unique_ptr<bv::SatSolver> sat;
    bv::Cnf cnf;

    std::size_t written = 0;         // conjuncts that are clauses already
    std::size_t written_lemmas = 0;  // lemmas likewise
    /// By level, the SAT variable that turns its clauses on; 0, or beyond the end, for none yet.
    std::vector<int> activations;
    bool is_searched = false;
    bool has_garbage = false;  // a level whose clauses were written is gone
    /// Number of clauses from which on garbage is worth a new start.
    std::uint64_t rebuild_limit = kLeastRebuildLimit;

    /// Below this number of clauses, dropping garbage is not worth the time.
    static constexpr std::uint64_t kLeastRebuildLimit = 8'000;
  };

  BackEnd(TermManager& manager, const Options& options)
      : encoder(make_encoder(options.encoder, manager)),
        theory(manager),
        abstraction(make_abstraction(manager, options)),
        translator(manager, *encoder, theory, abstraction.get()) {
    encoder->set_termination_test(options.termination_test);
    encoder->set_debug_flag(options.debug_labels);
    if (options.substitutes()) top_level.emplace(manager, options.termination_test);
    if (options.rewrite && options.encoder == EncoderKind::ieee) rewriter.emplace(manager);
    const bool is_exact = options.encoder == EncoderKind::ieee;
    if (options.relations && is_exact && !options.is_traced()) relations.emplace(manager);
  }

  static std::unique_ptr<Abstraction> make_abstraction(TermManager& manager,
                                                       const Options& options) {
    // Models and lemmas are of IEEE 754, and whoever looks at circuits wants all of them.
    const bool is_wanted = options.abstraction != AbstractionKind::none &&
                           options.encoder == EncoderKind::ieee && !options.is_traced() &&
                           !options.debug_labels;
    if (!is_wanted) return nullptr;
    return std::make_unique<Abstraction>(manager, options.abstraction == AbstractionKind::all);
  }

  std::optional<rewrite::TopLevel> top_level;
  std::size_t simplified = 0;  // how many of the assertions are, with all levels that they are on
  /// What they became: as they are without substitution, and assumptions one by one, the last ones.
  Trail<const Term*> formulas;
  std::optional<rewrite::FpRewriter> rewriter;
  std::unique_ptr<fp::FpBvEncoder> encoder;
  theories::TheoryTerms theory;
  std::unique_ptr<Abstraction> abstraction;  // null where every operation has its circuit
  Translator translator;
  std::size_t translated = 0;    // how many of the formulas are
  Trail<const Term*> conjuncts;  // what they became, and the constraints that go with them
  std::optional<rewrite::Relations> relations;
  std::size_t related = 0;     // how many of the encoded terms they have
  std::size_t abstracted = 0;  // how many of the terms that were put off have facts stated
  Trail<const Term*> lemmas;   // their translations: theorems, which no encoding of a formula needs
  /// The number of conjuncts before the first that holds only for infinite sorts.
  std::size_t first_of_infinity = std::numeric_limits<std::size_t>::max();
  std::unique_ptr<Circuits> circuits;               // null: to be made when they are needed
  std::unique_ptr<Circuits> discarded;              // such as are of no use, until the next check
  std::optional<search::LocalSearch> local_search;  // of the current check
  std::optional<search::Enumeration> enumeration;   // likewise
  std::optional<ranges::Propagation> ranges;        // of the assertions, level by level
  std::size_t ranged = 0;                           // how many of the formulas it has
  std::optional<ranges::Splitting> splitting;       // of the current check; on levels of its own
};

}  // namespace vorn::solver

#endif
