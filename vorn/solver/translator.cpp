#include "vorn/solver/translator.h"

#include <stdexcept>
#include <string>

#include "vorn/terms/operations.h"
#include "vorn/terms/post_order.h"

namespace vorn::solver {

const Term* Translator::translate(const Term* formula, Trail<const Term*>* constraints) {
  is_half_done = true;
  try {
    walk_post_order<ArgumentOrder::last_to_first>(
        formula, [this](const Term* t) { return find(t) != nullptr; },
        [&](const Term* t) { finish(t, constraints); });
  } catch (const std::invalid_argument&) {
    is_half_done = false;  // what is refused is so before anything is known of it
    throw;
  }
  is_half_done = false;
  return find(formula);
}

const Term* Translator::translate_result(const Term* t, Trail<const Term*>* constraints) {
  is_half_done = true;
  std::vector<const Term*> args(t->get_args().begin(), t->get_args().end());
  const Term* result = nullptr;
  if (is_fp_term(t)) {
    // The encoder knows `t` as the constant, so it gets the same operation on another operand, of
    // which it is told that it has the same bits.
    const Term* alias = abstraction->get_alias(args.back());
    if (encoder.get_cached(alias) == nullptr) define(alias, find(args.back()));
    args.back() = alias;
    const Term* twin = mgr.rebuild(t, args);
    if (encoder.get_cached(twin) == nullptr) encode(twin, constraints);
    result = encoder.get_cached(twin);
  } else {
    for (const Term*& arg : args)
      arg = find(arg);
    result = mgr.rebuild(t, args);
  }
  is_half_done = false;
  return mgr.make_equal(find(t), result);
}

void Translator::push() {
  theory.push();
  if (abstraction != nullptr) abstraction->push();
  translated.push();
  encoded.push();
}

void Translator::pop() {
  theory.pop();
  if (abstraction != nullptr) abstraction->pop();
  translated.pop([this](const Term* t) { translations.erase(t); });
  encoded.pop([this](const Term* t) { encoder.retract_upto(t); });
}

/// Whether `t` is a float or a rounding mode: what the encoder's cache keeps.
bool Translator::is_fp_term(const Term* t) const {
  return mgr.is_fp_type(t->get_type(), nullptr, nullptr) || mgr.is_fprounding_type(t->get_type());
}

/// Whether `t` is a predicate on such terms or a conversion of one.
bool Translator::reads_fp(const Term* t) const {
  return t->get_arity() != 0 && is_fp_term(t->get_arg(0));
}

const Term* Translator::find(const Term* t) const {
  if (is_fp_term(t)) return encoder.get_cached(t);
  const TermMap::Node* node = translations.find(t);
  return node == nullptr ? nullptr : node->value.second;
}

void Translator::note(const Term* t, const Term* translation) {
  translations.insert({t, translation});
  translated.add(t);
}

/// Makes the constant's translation that of `t`.
void Translator::stand_for(const Term* t, const Term* stand_in, Trail<const Term*>* constraints) {
  if (!is_fp_term(t)) return note(t, stand_in);
  if (encoder.get_cached(stand_in) == nullptr) encode(stand_in, constraints);
  define(t, encoder.get_cached(stand_in));
}

/// Arrays have no bits, and elements of uninterpreted sorts are told apart by some. False if `t`
/// has to do with neither.
bool Translator::finish_theory_term(const Term* t, Trail<const Term*>* constraints) {
  if (theories::is_array(t)) {
    theory.add(t);
    note(t, t);
  } else if (theories::has_stand_in(t)) {
    theory.add(t);
    stand_for(t, theory.get_stand_in(t), constraints);
  } else if (t->get_type()->get_kind() == DataType::Kind::uninterpreted) {
    if (t->get_tag() == SymbolTag::ite) {
      note(t, mgr.make_term_ite(find(t->get_arg(0)), find(t->get_arg(1)), find(t->get_arg(2))));
    } else {
      theory.add(t);
      note(t, theory.get_element(t));
    }
  } else if (t->get_tag() == SymbolTag::equal && !t->get_arg(0)->get_type()->has_bits()) {
    note(t, mgr.make_equal(find(t->get_arg(0)), find(t->get_arg(1))));
  } else {
    return false;
  }
  return true;
}

/// Translates `t`, all of whose arguments are translated.
void Translator::finish(const Term* t, Trail<const Term*>* constraints) {
  if (finish_theory_term(t, constraints)) return;
  if (abstraction != nullptr && abstraction->is_wanted(t)) {
    return stand_for(t, abstraction->add(t), constraints);
  }
  if (is_fp_term(t)) {
    if (t->get_tag() == SymbolTag::ite) {
      define(t, mgr.make_term_ite(find(t->get_arg(0)), find(t->get_arg(1)), find(t->get_arg(2))));
    } else if (t->get_tag() == SymbolTag::fp_from_bits) {
      define(t, read_bits(find(t->get_arg(0)), t->get_type()->get_e(), t->get_type()->get_m()));
    } else {
      encode(t, constraints);
    }
    return;
  }
  const Term* translation = nullptr;
  if (reads_fp(t)) {
    encode(t, constraints);
    translation = encoder.get_cached(t);
  } else {
    std::vector<const Term*> args;
    for (const Term* arg : t->get_args())
      args.push_back(find(arg));
    translation = mgr.rebuild(t, args);
  }
  note(t, translation);
}

void Translator::encode(const Term* t, Trail<const Term*>* constraints) {
  for (const Term* arg : t->get_args()) {
    if (encoder.get_cached(arg) == nullptr) define(arg, find(arg));
  }
  std::vector<const Term*> definitions;
  encoded.add(t);
  try {
    encoder.get_bv_encoding(t, &definitions);
  } catch (const std::invalid_argument& error) {
    if (!encoder.supports(t->get_tag())) throw;
    // The base encoder's circuits have no well-formed widths for some formats.
    throw std::invalid_argument(std::string(find_operation(t->get_tag())->name) + " on " +
                                t->get_arg(t->get_arity() - 1)->get_type()->to_string() +
                                " is not supported by this encoder (" + error.what() + ")");
  }
  for (const Term* definition : definitions)
    constraints->add(definition);
}

void Translator::define(const Term* t, const Term* encoding) {
  encoded.add(t);
  encoder.define_encoding(t, encoding);
}

/// The bits with every NaN pattern replaced by the one NaN, so that equality of bits stays equality
/// of values.
const Term* Translator::read_bits(const Term* bits, std::size_t e, std::size_t m) {
  const Term* max = mgr.make_bv_number(IEEEFloat::format{e, m}.max_exponent(), e);
  const Term* at_max = mgr.make_equal(mgr.make_bv_extract(e + m - 1, m, bits), max);
  const Term* fraction = mgr.make_bv_extract(m - 1, 0, bits);
  const Term* no_fraction = mgr.make_equal(fraction, mgr.make_bv_number(0, m));
  const Term* nan = mgr.make_and(at_max, mgr.make_not(no_fraction));
  QNumber pattern;
  mgr.is_number(mgr.make_fp_nan(e, m), &pattern);
  return mgr.make_term_ite(nan, mgr.make_bv_number(pattern, 1 + e + m), bits);
}

}  // namespace vorn::solver
