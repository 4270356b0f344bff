// Commands that change names and assertions.
#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <new>
#include <utility>
#include <vector>

#include "vorn/smt2/interpreter.h"

namespace vorn::smt2 {
namespace {

/// Bound of open levels: a slip in a numeral is an error and does not eat the memory.
constexpr std::size_t kMaxLevels = std::size_t{1} << 20;

}  // namespace

// Names -----------------------------------------------------------------------------------------

void Interpreter::declare(const Token& name, std::span<const DataType* const> domain,
                          const DataType* type) {
  const Symbol* symbol = mgr.make_unique_symbol(make_term_name(name.text), domain, type);
  if (domain.empty()) return symbols.declare(name.text, mgr.make_constant(symbol));
  std::vector<const Term*> parameters;
  for (const DataType* sort : domain)
    parameters.push_back(mgr.make_constant(mgr.make_unique_symbol(".parameter", sort)));
  const Term* body = mgr.make_application(symbol, parameters);
  symbols.declare(name.text, {std::move(parameters), body, symbol});
}

void Interpreter::declare_const(Parser& parser, const Token& /*command*/) {
  const Token name = parser.read_new_symbol();
  const DataType* type = parser.read_sort();
  parser.close_command();
  declare(name, {}, type);
}

void Interpreter::declare_fun(Parser& parser, const Token& /*command*/) {
  const Token name = parser.read_new_symbol();
  const std::vector<const DataType*> domain = parser.read_sorts();
  const DataType* type = parser.read_sort();
  parser.close_command();
  try {
    declare(name, domain, type);
  } catch (const std::invalid_argument& error) {
    parser.fail(name.position, error.what());
  }
}

void Interpreter::define(Parser& parser, std::span<const Parameter> parameters, const Token& name) {
  const DataType* type = parser.read_sort();
  const ParsedTerm body = parser.read_body(parameters);
  parser.close_command();
  if (body.term->get_type() != type) {
    parser.fail(body.position,
                fmt::format("the definition of '{}' must be of {}, got a term of {}", name.text,
                            type->to_string(), body.term->get_type()->to_string()));
  }
  Function function{{}, body.term};
  for (const Parameter& p : parameters)
    function.parameters.push_back(p.constant);
  symbols.define(name.text, function);
}

void Interpreter::define_const(Parser& parser, const Token& /*command*/) {
  define(parser, {}, parser.read_new_symbol());
}

void Interpreter::define_fun(Parser& parser, const Token& /*command*/) {
  const Token name = parser.read_new_symbol();
  define(parser, parser.read_parameters(), name);
}

void Interpreter::declare_sort(Parser& parser, const Token& /*command*/) {
  const Token name = parser.read_new_sort_symbol();
  const std::uint32_t arity = parser.get_tokens().expect_index();
  parser.close_command();
  symbols.define_sort(name.text, {arity, {}, SortStep::declared(make_term_name(name.text), arity)});
}

void Interpreter::define_sort(Parser& parser, const Token& /*command*/) {
  const Token name = parser.read_new_sort_symbol();
  const SortDefinition definition = parser.read_sort_definition();
  parser.close_command();
  symbols.define_sort(name.text, definition);
}

// Assertions ------------------------------------------------------------------------------------

void Interpreter::assert_formula(Parser& parser, const Token& /*command*/) {
  const ParsedTerm formula = parser.read_formula("an assertion");
  parser.close_command();
  last_answer.reset();
  const bool is_assumed =
      formula.name.has_value() && options.produce_unsat_cores && options.has_cores;
  assertions.add({formula.text, script, formula.term, formula.position,
                  is_assumed ? formula.name : std::nullopt});
  if (is_assumed) return;
  try {
    ask_engine(parser, formula.position, [&] { engine.assert_formula(formula.term); });
  } catch (const std::exception& error) {
    // The report of a defect shows what was under way.
    if (!is_internal(error)) {
      assertions.retract(assertions.get_size() - 1, [](const Assertion&) {});
    }
    throw;
  }
}

/// The number of levels; one when none is given.
std::uint32_t Interpreter::read_count(Parser& parser, const Token& command) {
  TokenStream& tokens = parser.get_tokens();
  if (!tokens.at_close()) return tokens.expect_index();
  tokens.depart(Departure::level_count, command.position,
                [&] { return fmt::format("{} takes a number of levels", command.text); });
  return 1;
}

void Interpreter::push(Parser& parser, const Token& command) {
  const std::uint32_t count = read_count(parser, command);
  parser.close_command();
  if (count > kMaxLevels - assertions.get_level()) {
    parser.fail(command.position,
                fmt::format("push {}: no more than {} levels can be open", count, kMaxLevels));
  }
  last_answer.reset();
  const std::size_t level = assertions.get_level();
  try {
    for (std::uint32_t i = 0; i < count; ++i) {
      ask_engine(parser, command.position, [&] { engine.push(); });
      try {
        symbols.push();
        assertions.push();
      } catch (...) {
        engine.pop();
        if (symbols.get_level() > assertions.get_level()) symbols.pop();
        throw;
      }
    }
  } catch (...) {
    pop_to(level);
    throw;
  }
}

/// Closes levels until so many are open, in all that has them.
void Interpreter::pop_to(std::size_t level) {
  while (assertions.get_level() > level) {
    assertions.pop();
    symbols.pop();
    engine.pop();
  }
}

void Interpreter::pop(Parser& parser, const Token& command) {
  const std::uint32_t count = read_count(parser, command);
  parser.close_command();
  if (count > assertions.get_level()) {
    parser.fail_state(command.position, fmt::format("pop {}: the number of open levels is {}",
                                                    count, assertions.get_level()));
  }
  last_answer.reset();
  for (std::uint32_t i = 0; i < count; ++i) {
    assertions.pop();
    symbols.pop();
    ask_engine(parser, command.position, [&] { engine.pop(); });
  }
  drop_garbage();
}

/// Terms are not counted by their users: now and then, when what is left is a small part of what
/// was made, everything that no name and no assertion needs is dropped.
void Interpreter::drop_garbage() {
  if (mgr.get_live_count() < garbage_limit) return;
  assumptions.clear();
  try {
    std::vector<const Term*> kept;
    symbols.append_terms(&kept);
    for (const Assertion* assertion : list_core_candidates())
      kept.push_back(assertion->term);
    engine.collect_garbage(kept);
  } catch (const std::bad_alloc&) {
    return;  // it takes memory to free some; the garbage stays for another time
  }
  garbage_limit = std::max(kLeastGarbageLimit, 2 * mgr.get_live_count());
}

/// Declarations and definitions leave with the assertions unless :global-declarations is true
/// (SMT-LIB 2.6, section 4.2.2).
void Interpreter::reset_assertions(Parser& parser, const Token& command) {
  parser.close_command();
  assertions.clear();
  assumptions.clear();
  symbols.clear_levels();
  last_answer.reset();
  ask_engine(parser, command.position, [&] { engine.reset_assertions(); });
  drop_garbage();
}

void Interpreter::reset(Parser& parser, const Token& command) {
  InterpreterOptions first = defaults;  // takes memory, which has to be there before anything goes
  reset_assertions(parser, command);
  symbols.clear();
  options = std::move(first);
  engine.set_seed(options.random_seed);
  stated_answer.reset();
  has_logic = false;
  checks = 0;
}

}  // namespace vorn::smt2
