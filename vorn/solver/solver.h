// The solver: assertions in, answers and models out.
//
// It owns one encoder and one back end over one term manager. Formulas are simplified by each other
// (vorn/rewrite/top_level.h) and translated when they are decided, or as they are when they are
// asserted, turned into an and-inverter graph and clauses when they are decided. Every model is
// checked by evaluating the original assertions on it before "sat" is answered.
//
// The assertions and their levels are what a solver is; all else can be made again from them. So
// where time or memory is up, in the midst of whatever, what was under way is dropped, the answer
// is unknown, and the next check goes on with what was asserted. A translation that came to such an
// end is left to the next check.
//
// Clauses of a level hold as long as its activation literal is assumed. What popped levels leave
// behind in the SAT solver is dropped, by starting a new one, when it outgrows what is alive.
//
// A conversion to an integer that no integer of its width is right for has a free value, but equal
// arguments must give equal values. Models seldom break that rule, so it is not asserted but
// checked on each model, and stated for the pairs that broke it.
//
// A read of an array and an application of a function are constants too. What arrays and functions
// ask of them is checked on each model, and stated where the model breaks it (vorn/theories).
//
// A check can leave traces: its clauses and a proof. Both must speak of one formula, so levels and
// assumptions are clauses like all others then, equal results are stated beforehand, a check
// without traces finds out what is to be stated of arrays and functions, and there is one check
// only.
#ifndef VORN_SOLVER_SOLVER_H
#define VORN_SOLVER_SOLVER_H

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "vorn/fp/fp_bv_encoder.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/solver/encoding.h"
#include "vorn/terms/engine.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/export.h"
#include "vorn/utils/logger.h"
#include "vorn/utils/termination_test.h"
#include "vorn/utils/trail.h"

namespace vorn::theories {
class Interpretation;
}

namespace vorn::solver {

/// Which circuits stand for floating-point operations. Answers by the base encoder hold for its
/// circuits, which depart from IEEE 754 where they round, and for its four rounding modes.
enum class EncoderKind : std::uint8_t { ieee, base };

/// Operations whose circuits are large: none of them; products, quotients, roots and remainders of
/// floats; those of bit-vectors too.
enum class AbstractionKind : std::uint8_t { none, floats, all };

/// An encoder within one manager.
VORN_EXPORT std::unique_ptr<fp::FpBvEncoder> make_encoder(EncoderKind kind, TermManager& manager);

/// How a solver works.
struct VORN_EXPORT Options {
  /// Which circuits it uses.
  EncoderKind encoder = EncoderKind::ieee;
  /// Whether formulas are rewritten before the exact encoder gets them; the base encoder gets what
  /// was asserted in any case.
  bool rewrite = true;
  /// Whether definitions among the assertions are substituted, and formulas that hold are true
  /// where others mention them, with the exact encoder and without traces. Formulas are translated
  /// when they are decided then, since what comes later may define what is in them.
  bool substitution = true;
  /// Of the searches; not negative.
  int seed = 0;
  /// Whether models are looked for by trying assignments too, with the exact encoder.
  bool local_search = true;
  /// Whether refutations are looked for by what values terms can have, with the exact encoder and
  /// without traces.
  bool ranges = true;
  /// Whether these are helped by what comparisons of rounded sums and products add up to.
  bool reals = true;
  /// Whether all assignments are tried where there are few, with the exact encoder and without
  /// traces; and by how many threads.
  bool enumeration = true;
  unsigned threads = 1;
  /// Whether theorems on the terms of the assertions are stated beside them, with the exact encoder
  /// and without traces.
  bool relations = true;
  /// Of which operations circuits are put off until candidates for models ask for them, with the
  /// exact encoder and without traces and labels.
  AbstractionKind abstraction = AbstractionKind::floats;
  /// Asked during the search; borrowed, may be null.
  const TerminationTest* termination_test = nullptr;
  /// Whether the constraints tie each named intermediate value of a circuit to a constant of its
  /// name.
  bool debug_labels = false;
  /// Told about each step; borrowed, may be null.
  Logger* logger = nullptr;
  /// Where the clauses of the one check go, in DIMACS, and the proof that refutes them, in DRAT;
  /// empty for nowhere.
  std::string cnf_file;
  std::string proof_file;

  /// Whether a check leaves traces.
  bool is_traced() const { return !cnf_file.empty() || !proof_file.empty(); }
  /// Whether definitions are substituted.
  bool substitutes() const { return substitution && encoder == EncoderKind::ieee && !is_traced(); }
};

/// What a solver has done so far.
struct VORN_EXPORT Statistics {
  std::uint64_t checks = 0;        // calls of check_sat
  std::uint64_t terms = 0;         // terms in the manager
  std::uint64_t aig_nodes = 0;     // conjunctions in the graph
  std::uint64_t variables = 0;     // SAT variables
  std::uint64_t clauses = 0;       // SAT clauses
  double translation_seconds = 0;  // terms to bit-vector terms
  double search_seconds = 0;       // local search, clauses, SAT search, and checks of models
  std::uint64_t tried_models = 0;  // models that local search found
  std::uint64_t refutations = 0;   // that ranges found
  std::uint64_t convictions = 0;   // of cases, or all at once, by adding up comparisons
  std::uint64_t enumerations = 0;  // checks that were decided by trying all assignments
  std::uint64_t assignments = 0;   // that were tried there, and where this had no outcome
  double assignment_seconds = 0;   // of trying them
  std::uint64_t lemmas = 0;        // statements on arrays and functions
  std::uint64_t definitions = 0;   // constants that gave way to terms
  std::uint64_t truths = 0;        // formulas that gave way to their truth values
  std::uint64_t abstracted = 0;    // operations whose circuits were put off
  std::uint64_t refinements = 0;   // results of these that were excluded
  std::uint64_t circuits = 0;      // of these operations that were made after all
  bool interrupted = false;        // a check was ended by the termination test or lack of room
};

/// Decides Boolean combinations of atoms over floats, bit-vectors, arrays, uninterpreted functions
/// and sorts.
class VORN_EXPORT Solver : public Engine {
 public:
  /// Borrows the manager, which owns all terms that the solver is given, and what the options point
  /// to.
  explicit Solver(TermManager& manager, const Options& options = {});
  ~Solver() override;

  /// Throws std::invalid_argument where `f` is not Boolean or the encoder does not support it. (If
  /// the termination test or lack of memory kept that from being seen, or formulas are translated
  /// when they are decided, the next check throws it.)
  void assert_formula(const Term* f) override;
  void push() override;
  /// Throws std::logic_error without a matching push.
  void pop() override;
  /// Throws InternalError should a model fail the check, which is a defect of the solver;
  /// with the base encoder, whose models IEEE 754 may reject, the answer is then
  /// unknown. With traces, throws std::invalid_argument from the second call on and
  /// std::system_error where a file cannot be written. A file has its name once it is complete,
  /// at the latest when there is an answer; a check that ends before it has clauses writes none.
  Answer check_sat(std::span<const Term* const> assumptions) override;
  Answer check_sat() { return check_sat({}); }
  /// Throws std::logic_error unless the last check answered unsat and nothing was asserted since.
  std::vector<std::size_t> get_unsat_assumptions() override;
  /// Throws std::logic_error unless the last check answered sat and nothing was asserted since.
  const Term* get_value(const Term* t) override;
  /// Likewise.
  FunctionValue get_function(const Symbol* function) override;
  std::string get_reason_unknown() const override { return reason_unknown; }
  /// Frees what a check that was told to stop has left for the next one to take down.
  void free_discarded();
  void reset_assertions() override;
  void collect_garbage(std::span<const Term* const> kept) override;
  /// Keeps nothing but the assertions of what it has made of them, models included: what an owner
  /// of several solvers asks of each before terms are collected, and holds the assertions.
  void forget_terms();
  /// Of the SAT solver; its upper two bits are ignored.
  void set_seed(std::uint32_t seed) override;

  /// What check_sat with these assumptions would decide, as a formula without floats. The solver is
  /// then as after a check without a model, and substitutes no definitions from there on. With
  /// Theories::lemmas, which make a check of their own, throws Terminated where that has no answer,
  /// and std::invalid_argument where what it has found holds only for infinite sorts; with
  /// Theories::kept, std::invalid_argument where arrays over bits would not do.
  Encoding encode(std::span<const Term* const> assumed, Theories theories = Theories::lemmas);
  /// The constant that stands for a constant of the assertions in their encoding; null for a float
  /// or rounding mode that none of them mentions.
  const Term* get_encoding(const Term* constant) const;
  /// How often each rule was applied since terms were last collected, as text; empty for never.
  std::string describe_rewriting() const;

  /// Of all checks since the solver was made.
  Statistics get_statistics() const;

 private:
  struct BackEnd;
  struct Assumption {
    const Term* translated = nullptr;
    int literal = 0;  // in the SAT solver
  };
  /// When to look for a model before there are circuits.
  struct ShortSearch {
    unsigned wait = 0;       // checks without it
    unsigned next_wait = 1;  // should it be in vain
  };
  /// Values that the model gives to what the theory leaves open of conversions, by symbol and
  /// values of the arguments, and a term that has each value.
  struct OpenConversion {
    const Term* witness;
    QNumber value;
  };
  using OpenKey = std::pair<const Symbol*, std::vector<QNumber>>;

  void leave_assumptions();
  void enter_assumptions(std::span<const Term* const> assumed);
  void pop_level();
  void find_lemmas();
  void start_traces();
  void write_cnf() const;
  BackEnd& get_back_end() const;
  void drop_back_end();
  void discard(bool keep_translation);
  void translate_new();
  void simplify_level(std::size_t level);
  void translate_formula(std::size_t index);
  void state_facts();
  void state_relations();
  const Term* encoded_form(const Term* t) const;
  std::vector<const Term*> get_encoded_assertions() const;
  Answer decide();
  Answer decide_by_search();
  Answer decide_traced();
  Answer search();
  bool try_shortly();
  bool has_local_search();
  bool try_assignments(std::uint64_t effort);
  std::optional<std::vector<const Term*>> find_formulas_of_bits();
  void enter_enumeration();
  Answer try_all(std::uint64_t effort);
  Answer try_all_shortly();
  bool is_enumerated_without(const std::vector<bool>& left_out, std::uint64_t effort) const;
  std::vector<std::size_t> get_enumerated_assumptions() const;
  void enter_ranges();
  void leave_ranges();
  void drop_ranges();
  bool try_short_refutation();
  bool try_refutation(std::uint64_t effort, std::uint64_t most);
  bool is_refuted_without(const std::vector<bool>& left_out, std::uint64_t effort);
  std::vector<std::size_t> get_refuted_assumptions();
  Answer give_up(const char* reason);
  void replace_garbage();
  void write_clauses();
  void write_trail(const Trail<const Term*>& conjuncts, std::size_t* written);
  void write_conjunct(const Term* conjunct, std::size_t level);
  void read_model();
  void read_found_model(std::span<const std::pair<const Term*, QNumber>> values);
  semantics::Evaluator evaluate_model();
  bool model_holds();
  std::vector<const Term*> interpret_model();
  /// What became of a model that was checked against the theories of arrays and functions.
  enum class Refinement : std::uint8_t { none, stated, repeated };
  Refinement refine();
  /// A result that a candidate for a model has and the operation has not.
  struct WrongResult {
    const Term* term;
    std::vector<QNumber> operands;
    QNumber value;      // of the operation on these
    QNumber candidate;  // the wrong one
  };
  bool candidate_holds();
  std::vector<WrongResult> find_wrong_results();
  bool refine_results();
  bool separate_conversions();
  const Term* model_key(const Term* constant) const;
  QNumber value_of(const Term* constant);
  QNumber bits_of(const Term* constant) const;
  QNumber open_value(const Term* t, std::span<const QNumber> values);
  void log(const std::string& message) const;

  TermManager& mgr;
  Options options;
  mutable std::unique_ptr<BackEnd> back_end;  // null: to be made when it is needed
  std::unique_ptr<BackEnd> discarded;         // one that is of no use, until the next check
  bool is_deferred = false;       // new assertions are left to the next check to be translated
  Trail<const Term*> assertions;  // as given, assumptions among them
  std::vector<Assumption> assumptions;  // of the last check
  bool in_assumptions = false;          // the last level holds what belongs to them
  ShortSearch short_search;
  bool may_search_locally = false;  // in the current check
  bool may_refute = false;          // by ranges, in the current check
  bool is_refuted = false;          // what was unsat in the last check was so by ranges, or
  bool is_enumerated = false;       // by trying all assignments
  bool has_model = false;
  bool is_unsat = false;  // the last check answered unsat, and nothing has changed since
  std::unordered_map<const Term*, QNumber> model;  // values of bit-vector and Boolean constants
  std::map<OpenKey, OpenConversion> open_conversions;
  std::unique_ptr<theories::Interpretation> interpretation;  // of arrays and functions
  std::unordered_set<const Term*> stated;                    // lemmas of the current check
  /// Conversions of equal values for which the last model has different results.
  std::vector<std::pair<const Term*, const Term*>> clashes;
  std::string reason_unknown;
  Statistics statistics;
};

}  // namespace vorn::solver

#endif
