// The walk over terms and the table of operations: which circuit each kind stands for.
#include "vorn/bv/bit_blaster.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "vorn/terms/post_order.h"
#include "vorn/terms/qnumber.h"

namespace vorn::bv {
namespace {

constexpr std::size_t kChunkBits = 1U << 14U;

/// An operation and the bits of its operands; a Boolean operand is one bit.
struct Operands {
  const Symbol* symbol;
  std::array<BitsView, 3> args;

  BitsView a() const { return args[0]; }
  BitsView b() const { return args[1]; }
  BitsView c() const { return args[2]; }
  std::size_t get_index(std::size_t i) const { return symbol->get_indices()[i]; }
};

using Circuit = Bits (*)(Circuits&, const Operands&);

// Bit by bit ------------------------------------------------------------------------------------

template <Lit (*gate)(Aig&, Lit, Lit)>
Bits bitwise(Circuits& circuits, const Operands& x) {
  Bits result(x.a().size());
  for (std::size_t i = 0; i < result.size(); ++i) {
    result[i] = gate(circuits.get_graph(), x.a()[i], x.b()[i]);
  }
  return result;
}

Lit and_gate(Aig& graph, Lit a, Lit b) {
  return graph.make_and(a, b);
}
Lit or_gate(Aig& graph, Lit a, Lit b) {
  return graph.make_or(a, b);
}
Lit xor_gate(Aig& graph, Lit a, Lit b) {
  return graph.make_xor(a, b);
}
Lit iff_gate(Aig& graph, Lit a, Lit b) {
  return graph.make_iff(a, b);
}
Lit implies_gate(Aig& graph, Lit a, Lit b) {
  return graph.make_or(!a, b);
}

Bits invert(Circuits& /*circuits*/, const Operands& x) {
  Bits result(x.a().begin(), x.a().end());
  for (Lit& bit : result)
    bit = !bit;
  return result;
}

// Rearrangements of bits ------------------------------------------------------------------------

Bits concat(Circuits& /*circuits*/, const Operands& x) {
  Bits result(x.b().begin(), x.b().end());
  result.insert(result.end(), x.a().begin(), x.a().end());
  return result;
}

Bits extend(const Operands& x, Lit bit) {
  Bits result(x.a().begin(), x.a().end());
  result.resize(result.size() + x.get_index(0), bit);
  return result;
}

// Choices between x and -x ----------------------------------------------------------------------

bool is_choice_of_sign(const Term* t) {
  if (t->get_tag() != SymbolTag::ite) return false;
  const auto negates = [t](std::size_t i) {
    const Term* branch = t->get_arg(i);
    return branch->get_tag() == SymbolTag::bv_neg && branch->get_arg(0) == t->get_arg(3 - i);
  };
  return negates(1) || negates(2);
}

/// Negates under a condition, which takes no selection, and is how signed division gets magnitudes.
Bits choose_sign(Circuits& circuits, const Term* t, const Operands& x) {
  const bool is_negated =
      t->get_arg(1)->get_tag() == SymbolTag::bv_neg && t->get_arg(1)->get_arg(0) == t->get_arg(2);
  const Lit condition = x.a()[0];
  return is_negated ? circuits.negate_if(condition, x.c()) : circuits.negate_if(!condition, x.b());
}

// The table -------------------------------------------------------------------------------------

struct Row {
  SymbolTag::tag tag;
  Circuit circuit;
};

using T = SymbolTag;
using C = Circuits;
using X = Operands;

constexpr Row kRows[] = {
    {T::bool_true, [](C&, const X&) { return Bits{kTrue}; }},
    {T::bool_false, [](C&, const X&) { return Bits{kFalse}; }},
    {T::bool_not, invert},
    {T::bool_and, bitwise<and_gate>},
    {T::bool_or, bitwise<or_gate>},
    {T::bool_xor, bitwise<xor_gate>},
    {T::bool_implies, bitwise<implies_gate>},
    {T::bool_iff, bitwise<iff_gate>},
    {T::equal, [](C& c, const X& x) { return Bits{c.equal(x.a(), x.b())}; }},
    {T::ite, [](C& c, const X& x) { return c.select(x.a()[0], x.b(), x.c()); }},
    {T::bv_concat, concat},
    {T::bv_zero_extend, [](C&, const X& x) { return extend(x, kFalse); }},
    {T::bv_sign_extend, [](C&, const X& x) { return extend(x, x.a().back()); }},
    {T::bv_not, invert},
    {T::bv_neg, [](C& c, const X& x) { return c.negate_if(kTrue, x.a()); }},
    {T::bv_and, bitwise<and_gate>},
    {T::bv_or, bitwise<or_gate>},
    {T::bv_xor, bitwise<xor_gate>},
    {T::bv_add, [](C& c, const X& x) { return c.add(x.a(), x.b(), kFalse); }},
    {T::bv_sub, [](C& c, const X& x) { return c.subtract(x.a(), x.b()); }},
    {T::bv_mul, [](C& c, const X& x) { return c.multiply(x.a(), x.b()); }},
    {T::bv_udiv, [](C& c, const X& x) { return c.divide(x.a(), x.b()).quotient; }},
    {T::bv_urem, [](C& c, const X& x) { return c.divide(x.a(), x.b()).remainder; }},
    {T::bv_sdiv, [](C& c, const X& x) { return c.signed_quotient(x.a(), x.b()); }},
    {T::bv_srem, [](C& c, const X& x) { return c.signed_remainder(x.a(), x.b()); }},
    {T::bv_smod, [](C& c, const X& x) { return c.signed_modulus(x.a(), x.b()); }},
    {T::bv_shl, [](C& c, const X& x) { return c.shift_left(x.a(), x.b()); }},
    {T::bv_lshr, [](C& c, const X& x) { return c.shift_right(x.a(), x.b(), kFalse); }},
    {T::bv_ashr, [](C& c, const X& x) { return c.shift_right(x.a(), x.b(), x.a().back()); }},
    {T::bv_comp, [](C& c, const X& x) { return Bits{c.equal(x.a(), x.b())}; }},
    {T::bv_ult, [](C& c, const X& x) { return Bits{c.borrow(x.a(), x.b(), kFalse)}; }},
    {T::bv_ule, [](C& c, const X& x) { return Bits{c.borrow(x.a(), x.b(), kTrue)}; }},
    {T::bv_slt, [](C& c, const X& x) { return Bits{c.signed_borrow(x.a(), x.b(), kFalse)}; }},
    {T::bv_sle, [](C& c, const X& x) { return Bits{c.signed_borrow(x.a(), x.b(), kTrue)}; }},
};

/// The circuit of a kind; null for kinds that are not of Booleans and bit-vectors.
Circuit find_circuit(SymbolTag::tag tag) {
  static constexpr auto kByTag = [] {
    std::array<Circuit, T::kLimit> circuits = {};
    for (const Row& row : kRows)
      circuits[row.tag] = row.circuit;
    return circuits;
  }();
  return tag < kByTag.size() ? kByTag[tag] : nullptr;
}

[[noreturn]] void reject(const Term* t) {
  throw std::invalid_argument("bit-blasting: " + t->to_string() + " of sort " +
                              t->get_type()->to_string() +
                              " is no term over Booleans and bit-vectors of this manager");
}

}  // namespace

Lit BitBlaster::blast_bool(const Term* t) {
  if (!mgr.is_bool_type(t->get_type())) {
    throw std::invalid_argument("bit-blasting: " + t->to_string() + " is not Boolean");
  }
  return blast(t).front();
}

std::span<const Lit> BitBlaster::blast_bits(const Term* t) {
  if (!mgr.is_bv_type(t->get_type(), nullptr)) {
    throw std::invalid_argument("bit-blasting: " + t->to_string() + " is not a bit-vector");
  }
  return blast(t);
}

void BitBlaster::release_bits() {
  of_others = {};
  cache = {};
  for (const Input& input : inputs)
    note(input.constant, input.bits.data());
}

std::span<const Lit> BitBlaster::blast(const Term* root) {
  walk_post_order<ArgumentOrder::last_to_first>(
      root, [this](const Term* t) { return find(t) != nullptr; },
      [this](const Term* t) {
        t->get_tag() == SymbolTag::none ? blast_leaf(t) : blast_operation(t);
      });
  return {find(root), get_width(root)};
}

/// Bits of a term: 1 for a Boolean.
std::size_t BitBlaster::get_width(const Term* t) const {
  std::size_t width = 1;
  if (!mgr.is_bool_type(t->get_type()) && !mgr.is_bv_type(t->get_type(), &width)) reject(t);
  return width;
}

/// Literals become constants, uninterpreted constants become inputs.
void BitBlaster::blast_leaf(const Term* t) {
  Bits bits(get_width(t));
  const QNumber* value = mgr.get_number(t->get_symbol());
  if (t->get_arity() != 0 || t->get_symbol()->get_literal() != value) reject(t);
  if (value != nullptr) {
    for (std::size_t i = 0; i < bits.size(); ++i)
      bits[i] = kFalse ^ value->test_bit(i);
    store(t, bits, &of_others);
    return;
  }
  for (Lit& bit : bits)
    bit = circuits.get_graph().make_input();
  inputs.push_back({t, store(t, bits, &of_inputs)});
}

/// An operation whose operands are done.
void BitBlaster::blast_operation(const Term* t) {
  if (t->get_tag() == SymbolTag::bv_extract) {
    // Some of the bits that are there already: no copy.
    note(t, find(t->get_arg(0)) + t->get_symbol()->get_indices()[1]);
    return;
  }
  const Circuit circuit = find_circuit(t->get_tag());
  if (circuit == nullptr) reject(t);
  Operands operands = {t->get_symbol(), {}};
  assert(t->get_arity() <= operands.args.size());
  for (std::size_t i = 0; i < t->get_arity(); ++i) {
    operands.args[i] = {find(t->get_arg(i)), get_width(t->get_arg(i))};
  }
  const Bits bits =
      is_choice_of_sign(t) ? choose_sign(circuits, t, operands) : circuit(circuits, operands);
  assert(bits.size() == get_width(t));
  store(t, bits, &of_others);
}

std::span<const Lit> BitBlaster::store(const Term* t, std::span<const Lit> bits, Storage* storage) {
  if (storage->empty() || storage->back().capacity() - storage->back().size() < bits.size()) {
    storage->emplace_back().reserve(std::max(kChunkBits, bits.size()));
  }
  std::vector<Lit>& chunk = storage->back();
  const std::size_t first = chunk.size();
  chunk.insert(chunk.end(), bits.begin(), bits.end());
  note(t, chunk.data() + first);
  return {chunk.data() + first, bits.size()};
}

void BitBlaster::note(const Term* t, const Lit* bits) {
  if (t->get_id() >= cache.size()) cache.resize(std::max(t->get_id() + 1, mgr.get_term_count()));
  cache[t->get_id()] = bits;
}

}  // namespace vorn::bv
