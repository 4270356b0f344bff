#include "vorn/solver/abstraction.h"

#include <algorithm>
#include <cstddef>

namespace vorn::solver {
namespace {

using T = SymbolTag;

/// Below this width circuits of bit-vectors are not much larger than facts about their results.
constexpr std::size_t kLeastWidth = 6;
/// Lemmas on a term before its circuit. Of 0, 1, 2, 4 and 8 this was the fastest, by little: what
/// one lemma does not settle seldom takes less than the circuit.
constexpr std::uint32_t kMostLemmas = 1;

bool has_literal(const Term* t) {
  return std::ranges::any_of(
      t->get_args(), [](const Term* arg) { return arg->get_symbol()->get_literal() != nullptr; });
}

}  // namespace

bool is_expensive(const Term* t, bool with_bits) {
  switch (t->get_tag()) {
    // Rewriting has made quotients of products by powers of two, whose circuits are small.
    case T::fp_mul:
    case T::fp_sqrt:
    case T::fp_rem:
      return true;
    case T::fp_div:
    case T::fp_fma:
      return !has_literal(t);
    case T::bv_mul:
    case T::bv_udiv:
    case T::bv_urem:
    case T::bv_sdiv:
    case T::bv_srem:
    case T::bv_smod:
      return with_bits && t->get_type()->get_width() >= kLeastWidth && !has_literal(t);
    default:
      return false;
  }
}

bool Abstraction::is_wanted(const Term* t) const {
  if (!is_expensive(t, has_bits)) return false;
  const auto known = entries.find(t);
  return known == entries.end() || !known->second.needs_circuit;
}

const Term* Abstraction::add(const Term* t) {
  terms.make_room();
  Entry& entry = entries[t];
  if (entry.stand_in == nullptr) {
    entry.stand_in = mgr.make_constant(mgr.make_unique_symbol(".result", t->get_type()));
  }
  terms.add(t);
  return entry.stand_in;
}

const Term* Abstraction::get_alias(const Term* operand) {
  const Term*& alias = aliases[operand];
  if (alias == nullptr) {
    alias = mgr.make_constant(mgr.make_unique_symbol(".operand", operand->get_type()));
  }
  return alias;
}

bool Abstraction::take_lemma(const Term* t) {
  Entry& entry = entries.at(t);
  if (entry.lemmas == kMostLemmas) return false;
  ++entry.lemmas;
  return true;
}

void Abstraction::add_circuit(const Term* t) {
  circuits.add(t);
  Entry& entry = entries.at(t);
  entry.has_circuit = true;
  entry.needs_circuit = true;
}

void Abstraction::push() {
  terms.push();
  circuits.push();
}

void Abstraction::pop() {
  circuits.pop([this](const Term* t) { entries.at(t).has_circuit = false; });
  terms.pop();
}

}  // namespace vorn::solver
