// The script is read as for a decision, up to its first check. What the solver would decide there
// is written in the form that was asked for, with the names of the script beside it.
#include "tools/encode.h"

#include <fmt/format.h>

#include <exception>
#include <iostream>
#include <span>
#include <sstream>
#include <stdexcept>
#include <unordered_map>
#include <vector>

#include "tools/dot.h"
#include "tools/failure.h"
#include "tools/operation.h"
#include "tools/script.h"
#include "tools/solve.h"
#include "vorn/bv/aig.h"
#include "vorn/bv/aiger.h"
#include "vorn/bv/bit_blaster.h"
#include "vorn/bv/cnf.h"
#include "vorn/bv/dimacs.h"
#include "vorn/smt2/command_reader.h"
#include "vorn/solver/encoding.h"
#include "vorn/terms/post_order.h"
#include "vorn/terms/printer.h"
#include "vorn/terms/script_printer.h"
#include "vorn/utils/output_file.h"

namespace vorn::tools {
namespace {

/// The logic of Boolean and bit-vector formulas with these arrays and functions. Those of arrays
/// have them from bit-vectors to bit-vectors, and other solvers keep to that.
std::string name_logic(std::span<const Term* const> formulas) {
  bool has_arrays = false;
  bool has_functions = false;
  const auto is_vector = [](const DataType* type) {
    return type->get_kind() == DataType::Kind::bit_vector;
  };
  for (const Term* t : list_post_order(formulas)) {
    const DataType* type = t->get_type();
    has_functions = has_functions || t->get_symbol()->is_function();
    if (type->get_kind() != DataType::Kind::array) continue;
    has_arrays = true;
    const bool is_plain = is_vector(type->get_index()) && is_vector(type->get_element());
    if (!is_plain || t->get_tag() == SymbolTag::array_const) return "ALL";
  }
  return fmt::format("QF_{}{}BV", has_arrays ? "A" : "", has_functions ? "UF" : "");
}

void write_script(std::ostream& out, const FirstCheck& check) {
  const ScriptPrinter printer(check.encoding.conjuncts);
  for (const auto& [name, constant] : check.constants) {
    const Term* encoding = check.engine->get_encoding(constant);
    const std::string symbol = encoding == nullptr ? "" : printer.get_name(encoding);
    if (symbol.empty() || symbol == quote_symbol(name)) continue;
    out << fmt::format("; {} {} is {}\n", solver::line_symbol(name),
                       constant->get_type()->to_string(), symbol);
  }
  for (const auto& [symbol, kept] : check.encoding.kept) {
    out << fmt::format("; {} {} is {}\n", solver::line_symbol(symbol->get_name()),
                       symbol->get_output_type()->to_string(), printer.get_name(kept));
  }
  out << fmt::format("(set-logic {})\n", name_logic(check.encoding.conjuncts));
  printer.print(out);
  out << "(check-sat)\n";
}

/// The circuits of the formula and the bits of its constants.
class Circuits {
 public:
  Circuits(const TermManager& manager, const FirstCheck& check) : blaster(manager, graph) {
    for (const Term* conjunct : check.encoding.conjuncts)
      conjuncts.push_back(blaster.blast_bool(conjunct));
    for (const bv::BitBlaster::Input& input : blaster.get_inputs())
      bits.emplace(input.constant, input.bits);
  }

  bv::Aig& get_graph() { return graph; }
  const std::vector<bv::Lit>& get_conjuncts() const { return conjuncts; }
  const std::vector<bv::BitBlaster::Input>& get_inputs() const { return blaster.get_inputs(); }
  /// The bits of a constant, the least significant first; none for one that does not occur.
  std::span<const bv::Lit> get_bits(const Term* constant) const {
    const auto found = bits.find(constant);
    return found == bits.end() ? std::span<const bv::Lit>() : found->second;
  }

 private:
  bv::Aig graph;
  bv::BitBlaster blaster;
  std::vector<bv::Lit> conjuncts;
  std::unordered_map<const Term*, std::span<const bv::Lit>> bits;
};

/// Every bit that occurs gets a variable, so that the map does not depend on which clauses are left
/// of it.
std::vector<int> map_bits(std::span<const bv::Lit> bits, std::size_t width, bv::Cnf& cnf) {
  std::vector<int> literals;
  for (std::size_t i = bits.size(); i-- > 0;)
    literals.push_back(cnf.literal(bits[i]));
  if (bits.empty()) literals.assign(width, solver::kFalseBit);
  return literals;
}

void write_clauses(std::ostream& out, const TermManager& manager, const FirstCheck& check) {
  Circuits circuits(manager, check);
  bv::ClauseRecorder recorder;
  bv::Cnf cnf(circuits.get_graph(), recorder);
  for (const bv::Lit conjunct : circuits.get_conjuncts())
    cnf.assert_true(conjunct);

  solver::SymbolMap map;
  for (const auto& [name, constant] : check.constants) {
    const DataType* type = constant->get_type();
    const Term* encoding = check.engine->get_encoding(constant);
    const auto bits = circuits.get_bits(encoding);
    map.constants.push_back({name, type, map_bits(bits, type->get_value_width(), cnf)});
  }
  for (const Term* choice : check.encoding.choices) {
    const DataType* type = choice == nullptr ? nullptr : choice->get_type();
    const std::size_t width = type == nullptr ? 0 : type->get_width();
    map.choices.push_back({"", type, map_bits(circuits.get_bits(choice), width, cnf)});
  }
  map.variables = recorder.get_variable_count();
  bv::write_dimacs(out, recorder, solver::write_symbol_map(map));
}

void write_circuit(std::ostream& out, const TermManager& manager, const FirstCheck& check,
                   bv::AigerFormat format) {
  Circuits circuits(manager, check);
  const bv::Lit output = circuits.get_graph().make_and(circuits.get_conjuncts());
  // What no name of the script stands for keeps the name that it has here.
  std::unordered_map<const Term*, std::string> names;
  for (const auto& [name, constant] : check.constants)
    names.emplace(check.engine->get_encoding(constant), name);
  std::vector<bv::AigerInput> inputs;
  for (const bv::BitBlaster::Input& input : circuits.get_inputs()) {
    const auto known = names.find(input.constant);
    const std::string name = solver::line_symbol(
        known == names.end() ? input.constant->get_symbol()->get_name() : known->second);
    const bool is_bool = input.constant->get_type()->get_kind() == DataType::Kind::boolean;
    for (std::size_t i = 0; i < input.bits.size(); ++i)
      inputs.push_back({input.bits[i], is_bool ? name : fmt::format("{}[{}]", name, i)});
  }
  bv::write_aiger(out, circuits.get_graph(), inputs, output, "assertions", format);
}

void write_picture(std::ostream& out, TermManager& manager, const FirstCheck& check) {
  Picture picture;
  for (const auto& [name, constant] : check.constants) {
    if (const Term* encoding = check.engine->get_encoding(constant)) {
      picture.names.emplace(encoding, quote_symbol(name));
    }
  }
  add_constraints(picture, manager, check.encoding.conjuncts);
  write_dot(out, picture);
}

/// The circuit of one operation, the operands of which may be free.
Picture draw_operation(TermManager& manager, const EncodeOptions& options) {
  std::vector<std::string> words;
  std::istringstream split(options.operation);
  for (std::string word; split >> word;)
    words.push_back(word);
  const Term* operation = read_operation(manager, words, Operands::free);
  const auto encoder = solver::make_encoder(options.encoder, manager);
  if (!encoder->supports(operation->get_tag())) {
    throw std::invalid_argument("not supported by this encoder");
  }
  encoder->set_debug_flag(true);
  for (const Term* arg : operation->get_args()) {
    // Left to itself, the encoder would ask of a float that it is no NaN or the canonical one.
    const DataType* type = arg->get_type();
    if (type->get_kind() == DataType::Kind::bit_vector) {
      encoder->define_encoding(arg, arg);
    } else if (type->get_kind() == DataType::Kind::floating_point &&
               !manager.is_number(arg, nullptr)) {
      const DataType* bits = manager.get_bv_type(type->get_value_width());
      encoder->define_encoding(arg, manager.make_constant(manager.make_unique_symbol("in", bits)));
    }
  }
  std::vector<const Term*> constraints;
  const Term* encoding = nullptr;
  try {
    encoding = encoder->get_bv_encoding(operation, &constraints);
  } catch (const std::invalid_argument& error) {
    throw std::invalid_argument(fmt::format("not supported by this encoder: {}", error.what()));
  }
  Picture picture;
  for (const Term* arg : operation->get_args())
    picture.names.emplace(encoder->get_cached(arg), arg->get_symbol()->get_name());
  picture.outputs.emplace_back("result", encoding);
  add_constraints(picture, manager, constraints);
  return picture;
}

void write(std::ostream& out, TermManager& manager, const FirstCheck& check,
           const EncodeOptions& options) {
  switch (options.target) {
    case EncodeOptions::Target::smt2:
      write_script(out, check);
      return;
    case EncodeOptions::Target::dimacs:
      write_clauses(out, manager, check);
      return;
    case EncodeOptions::Target::dot:
      write_picture(out, manager, check);
      return;
    case EncodeOptions::Target::aiger:
      // The suffix tells the variants apart, as in the tools of the format.
      const bool binary = options.output.ends_with(".aig");
      write_circuit(out, manager, check, binary ? bv::AigerFormat::binary : bv::AigerFormat::ascii);
      return;
  }
}

/// Hands the stream that the options ask for to `writer`.
template <class Writer>
void write_output(const EncodeOptions& options, const Writer& writer) {
  if (options.output.empty()) {
    writer(std::cout);
    std::cout.flush();
    return;
  }
  OutputFile file(options.output, "the formula");
  writer(file.get_stream());
  file.commit();
}

void encode_operation(const EncodeOptions& options) {
  try {
    TermManager manager;
    const Picture picture = draw_operation(manager, options);
    write_output(options, [&](std::ostream& out) { write_dot(out, picture); });
  } catch (const std::invalid_argument& error) {
    throw std::runtime_error(fmt::format("{}: error: {}", options.operation, error.what()));
  }
}

void encode_script(const EncodeOptions& options) {
  const std::string text = read_all(options.file);
  TermManager manager;
  solver::Options solver_options;
  solver_options.encoder = options.encoder;
  solver_options.enumeration = false;
  solver_options.relations = false;
  solver_options.abstraction = solver::AbstractionKind::none;
  solver_options.debug_labels = options.target == EncodeOptions::Target::dot;
  ReadingOptions reading;
  reading.strict = options.strict;
  reading.theories = options.keep_arrays ? solver::Theories::kept : solver::Theories::lemmas;
  const FirstCheck check = read_first_check(manager, text, options.file, solver_options, reading);
  if (const std::size_t checks = smt2::count_checks(text, options.file); checks > 1) {
    std::cerr << fmt::format("{}: note: only the first of {} checks is encoded\n",
                             display_name(options.file), checks);
  }
  write_output(options, [&](std::ostream& out) { write(out, manager, check, options); });
}

}  // namespace

int encode(const EncodeOptions& options) {
  const bool is_script = options.operation.empty();
  try {
    is_script ? encode_script(options) : encode_operation(options);
  } catch (const std::exception&) {
    return report_failure(is_script ? display_name(options.file) : options.operation,
                          "with what was encoded.");
  }
  return kDone;
}

}  // namespace vorn::tools
