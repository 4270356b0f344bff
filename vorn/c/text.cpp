// SMT-LIB in and out: terms and sorts in the context of a manager's names, and whole scripts.
#include "vorn/c/text.h"

#include <sstream>
#include <string>

#include "vorn/c/guard.h"
#include "vorn/c/handles.h"
#include "vorn/smt2/interpreter.h"
#include "vorn/smt2/parser.h"
#include "vorn/terms/script_printer.h"
#include "vorn/utils/termination_poll.h"

using namespace vorn::c;
using vorn::Term;
using vorn::smt2::Parser;

namespace {

/// What `read` makes of all of a text. Names that the text has given are taken back where it turns
/// out to be wrong.
template <class Read>
auto read_all(vorn_manager& manager, const char* text, const Read& read) {
  const std::string_view script = get_text(text, "the text");
  const vorn::smt2::SymbolTable::Mark mark = manager.symbols.get_mark();
  vorn::TerminationPoll poll(&manager.stop);
  try {
    Parser parser(manager.terms, manager.symbols, script, "text", {}, {nullptr, &poll});
    const auto result = read(parser);
    const vorn::smt2::Token& next = parser.get_tokens().peek();
    if (!parser.get_tokens().at_end()) parser.fail(next.position, "expected the end of the text");
    return result;
  } catch (...) {
    manager.symbols.retract(mark);
    throw;
  }
}

}  // namespace

vorn_status vorn_read_term(vorn_manager* manager, const char* text, vorn_term** result) {
  return produce(manager, __func__, result, [&] {
    manager->tidy();
    const auto read = [](Parser& parser) { return parser.read_term().term; };
    return manager->hold(read_all(*manager, text, read));
  });
}

vorn_status vorn_read_sort(vorn_manager* manager, const char* text, const vorn_sort** result) {
  return produce(manager, __func__, result, [&] {
    const auto read = [](Parser& parser) { return parser.read_sort(); };
    return manager->find_sort(read_all(*manager, text, read));
  });
}

vorn_status vorn_write_script(vorn_manager* manager, vorn_term* const* assertions, size_t count,
                              char** result) {
  return produce(manager, __func__, result, [&] {
    const std::vector<const Term*> formulas = get_all(*manager, assertions, count);
    for (const Term* formula : formulas) {
      if (manager->terms.is_bool_type(formula->get_type())) continue;
      throw std::invalid_argument("expected formulas of Bool, got a term of " +
                                  formula->get_type()->to_string());
    }
    std::ostringstream out;
    vorn::ScriptPrinter(formulas).print(out);
    return copy_text(out.view());
  });
}

vorn_status vorn_run_script(vorn_solver* solver, const char* text, char** output, bool* went_well) {
  return produce(solver, __func__, output, [&] {
    check_pointer(went_well, "the place for whether it went well");
    const std::string script(get_text(text, "the text"));
    vorn::TermManager terms;
    terms.set_termination_test(&solver->stop);
    vorn::solver::Options options = solver->options;
    options.termination_test = &solver->stop;
    TimedSolver engine(terms, options, solver->stop, solver->time_limit);
    vorn::smt2::InterpreterOptions session;
    session.termination_test = &solver->stop;
    std::ostringstream out;
    vorn::smt2::Interpreter interpreter(terms, engine, out, session);
    const bool is_well = interpreter.run_script(script, "text");
    char* printed = copy_text(out.view());
    *went_well = is_well;
    // An interrupt has ended the script.
    solver->stop.clear();
    return printed;
  });
}
