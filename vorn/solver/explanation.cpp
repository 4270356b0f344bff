#include "vorn/solver/explanation.h"

#include <memory>
#include <stdexcept>
#include <unordered_map>
#include <utility>

#include "vorn/fp/ieee_bv_encoder.h"
#include "vorn/fp/labels.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/semantics/open_terms.h"
#include "vorn/terms/bv_number.h"
#include "vorn/terms/operations.h"

namespace vorn::solver {
namespace {

enum class Inputs : std::uint8_t { variables, literals };

/// One operation's circuit in a manager of its own, and the values in it.
class Circuit {
 public:
  Circuit(TermManager& manager, const Term* operation, std::span<const QNumber> operands,
          EncoderKind kind, Inputs inputs)
      : target(inputs == Inputs::literals),
        encoder(make(kind, manager)),
        evaluator(make_evaluator(known)) {
    if (!encoder->supports(operation->get_tag())) {
      throw std::invalid_argument("not supported by this encoder");
    }
    encoder->set_debug_flag(true);
    std::vector<const Term*> args;
    for (std::size_t i = 0; i < operands.size(); ++i)
      args.push_back(make_operand(manager, operation->get_arg(i)->get_type(), operands[i], inputs));
    // The operands are new constants, so this is a new term.
    const Term* t = manager.rebuild(operation, args);
    try {
      encoding = encoder->get_bv_encoding(t, &constraints);
    } catch (const std::invalid_argument& error) {
      throw std::invalid_argument(std::string("not supported by this encoder: ") + error.what());
    }
    choice = encoder->get_choice(t);
  }

  /// Decides what the theory leaves open.
  void choose(const QNumber& value) {
    if (choice != nullptr) known[choice] = value;
  }

  std::vector<Intermediate> evaluate() {
    for (const Term* constraint : constraints)
      define(constraint);
    std::vector<Intermediate> intermediates;
    const auto is_input = [this](const Term* t) { return known.contains(t); };
    for (fp::Tie& tie : fp::find_ties(target, constraints, is_input)) {
      const QNumber& value = evaluator.evaluate(tie.value);
      known.emplace(tie.constant, value);
      intermediates.push_back({std::move(tie.label), tie.occurrence,
                               tie.constant->get_type()->get_value_width(), value});
    }
    return intermediates;
  }

  QNumber get_result() { return evaluator.evaluate(encoding); }

  bool is_consistent() {
    for (const Term* constraint : constraints) {
      if (evaluator.evaluate(constraint).sign() == 0) return false;
    }
    return true;
  }

  /// Whether the result depends on what the theory leaves open.
  bool is_open() {
    if (choice == nullptr) return false;
    Values zeros = known;
    Values ones = known;
    zeros[choice] = QNumber();
    ones[choice] = BVNumber::all_ones(choice->get_type()->get_width());
    return make_evaluator(zeros).evaluate(encoding) != make_evaluator(ones).evaluate(encoding);
  }

 private:
  using Values = std::unordered_map<const Term*, QNumber>;

  std::unique_ptr<fp::FpBvEncoder> make(EncoderKind kind, TermManager& manager) {
    if (kind == EncoderKind::base) return std::make_unique<fp::FpBvEncoder>(&manager, &target);
    return std::make_unique<fp::IeeeBvEncoder>(&manager, &target);
  }

  semantics::Evaluator make_evaluator(const Values& values) {
    return semantics::Evaluator(target, [&values](const Term* t) { return values.at(t); });
  }

  const Term* make_operand(TermManager& manager, const DataType* type, const QNumber& value,
                           Inputs inputs) {
    if (manager.is_fprounding_type(type)) return semantics::make_literal(manager, type, value);
    const Term* arg = manager.make_constant(manager.make_unique_symbol(".operand", type));
    const std::size_t width = type->get_value_width();
    if (inputs == Inputs::literals) {
      encoder->define_encoding(arg, target.make_bv_number(value, width));
      return arg;
    }
    const Symbol* symbol = target.make_unique_symbol(".operand", target.get_bv_type(width));
    const Term* input = target.make_constant(symbol);
    encoder->define_encoding(arg, input);
    known.emplace(input, value);
    return arg;
  }

  /// Takes the value of a constant from a clause that defines it, "not this case, or that value".
  void define(const Term* constraint) {
    if (constraint->get_tag() != SymbolTag::bool_or) return;
    const Term* other_case = constraint->get_arg(0);
    const Term* definition = constraint->get_arg(1);
    if (definition->get_tag() != SymbolTag::equal) return;
    const Term* constant = definition->get_arg(0);
    if (constant->get_tag() != SymbolTag::none || target.is_number(constant, nullptr)) return;
    // Where cases overlap, the first counts, as it does where literals are folded.
    if (known.contains(constant) || evaluator.evaluate(other_case).sign() != 0) return;
    known.emplace(constant, evaluator.evaluate(definition->get_arg(1)));
  }

  TermManager target;
  std::unique_ptr<fp::FpBvEncoder> encoder;
  Values known;  // of constants
  semantics::Evaluator evaluator;
  std::vector<const Term*> constraints;
  const Term* encoding = nullptr;
  const Term* choice = nullptr;
};

/// The choice that gives the operation that value.
QNumber choice_for(const Term* operation, const QNumber& value) {
  if (!semantics::is_selection(operation)) return value;
  return semantics::make_zero_choice(operation->get_type(), value);
}

Explanation explain(TermManager& manager, const Term* operation, std::span<const QNumber> operands,
                    EncoderKind kind, const QNumber* model_value, Inputs inputs) {
  Circuit circuit(manager, operation, operands, kind, inputs);
  circuit.choose(model_value == nullptr ? QNumber() : choice_for(operation, *model_value));
  Explanation out;
  out.encoder = kind;
  out.operation = operation;
  out.operands.assign(operands.begin(), operands.end());
  out.intermediates = circuit.evaluate();
  out.result = circuit.get_result();
  out.is_open = circuit.is_open();
  out.is_excluded = !circuit.is_consistent();
  out.is_folded = inputs == Inputs::literals;
  return out;
}

}  // namespace

Explanation explain(TermManager& manager, const Term* operation, std::span<const QNumber> operands,
                    EncoderKind kind, const QNumber* model_value) {
  if (operands.size() != operation->get_arity()) {
    throw std::invalid_argument("the operation has another number of operands");
  }
  try {
    return explain(manager, operation, operands, kind, model_value, Inputs::variables);
  } catch (const std::invalid_argument&) {
    // Literals can do without stages whose widths do not fit in some formats.
    return explain(manager, operation, operands, kind, model_value, Inputs::literals);
  }
}

std::vector<QNumber> read_literals(const TermManager& manager, std::span<const Term* const> terms) {
  std::vector<QNumber> values;
  for (const Term* t : terms) {
    QNumber value;
    if (!semantics::read_literal(manager, t, &value)) {
      throw std::invalid_argument("not a literal: " + t->to_string());
    }
    values.push_back(std::move(value));
  }
  return values;
}

bool is_explainable(const Term* t) {
  const Operation* operation = find_operation(t->get_tag());
  return operation != nullptr && operation->is_explained;
}

}  // namespace vorn::solver
