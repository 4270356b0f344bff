// The first check ends the session by an exception that the interpreter lets through: what stands
// behind the check may depend on its answer, which there will not be.
#include "tools/script.h"

#include <fmt/format.h>

#include <cerrno>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "vorn/smt2/command_reader.h"
#include "vorn/smt2/error.h"
#include "vorn/smt2/interpreter.h"
#include "vorn/smt2/lexer.h"

namespace vorn::tools {
namespace {

class Reached final : public std::exception {};

/// An encoding is of all assertions as they are.
solver::Options without_substitution(solver::Options options) {
  options.substitution = false;
  return options;
}

/// Translates as the solver does, and decides nothing unless it is told to.
class CapturingSolver final : public solver::Solver {
 public:
  CapturingSolver(TermManager& manager, const solver::Options& chosen,
                  const ReadingOptions& reading_options)
      : Solver(manager, without_substitution(chosen)), reading(reading_options) {}

  Answer check_sat(std::span<const Term* const> assumed) override {
    encoding = encode(assumed, reading.theories);
    if (reading.decide) answer = Solver::check_sat(assumed);
    throw Reached();
  }
  solver::Encoding take_encoding() { return std::move(encoding); }
  std::optional<Answer> get_answer() const { return answer; }

 private:
  ReadingOptions reading;
  solver::Encoding encoding;
  std::optional<Answer> answer;
};

}  // namespace

std::string display_name(const std::string& file) {
  return file == "-" ? "<stdin>" : file;
}

std::string read_all(const std::string& file) {
  if (file == "-") {
    return {std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>()};
  }
  std::error_code error;
  if (std::filesystem::is_directory(file, error)) {
    throw std::runtime_error(fmt::format("{}: error: is a directory", file));
  }
  std::ifstream stream(file, std::ios::binary);
  if (!stream) {
    throw std::runtime_error(fmt::format("{}: error: cannot read the file: {}", file,
                                         std::generic_category().message(errno)));
  }
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

FirstCheck read_first_check(TermManager& manager, const std::string& text, const std::string& file,
                            const solver::Options& options, const ReadingOptions& reading) {
  auto engine = std::make_unique<CapturingSolver>(manager, options, reading);
  std::ostringstream answers;
  smt2::InterpreterOptions session;
  session.strict = reading.strict;
  session.has_cores = false;  // nobody asks behind the check
  smt2::Interpreter interpreter(manager, *engine, answers, session);
  const std::string name = display_name(file);
  try {
    interpreter.run(text, name);
  } catch (const Reached&) {
    FirstCheck check;
    check.encoding = engine->take_encoding();
    check.answer = engine->get_answer();
    check.symbols = interpreter.get_symbols();
    for (const smt2::SymbolTable::Declaration& d : check.symbols.get_declarations()) {
      const bool has_bits = d.constant->get_arity() == 0 && d.constant->get_type()->has_bits();
      if (has_bits) check.constants.push_back(d);
    }
    check.engine = std::move(engine);
    return check;
  }
  throw std::runtime_error(fmt::format("{}: error: the script has no check-sat", name));
}

}  // namespace vorn::tools
