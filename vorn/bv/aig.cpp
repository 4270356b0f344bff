// Construction of and-inverter graphs. A conjunction goes through three kinds of rules: those that
// settle it as a literal that is already there, those that replace an operand by an older one and
// start over, and the hash table. Since replacement always goes to an older node, it ends.
#include "vorn/bv/aig.h"

#include <algorithm>
#include <cassert>
#include <stdexcept>
#include <utility>

namespace vorn::bv {
namespace {

constexpr std::uint32_t kStepsBetweenTests = 1U << 12U;

constexpr std::size_t kFirstTableSize = 64;

// A graph of millions of nodes spends its time waiting for the table's memory, unless slots follow
// the order of nodes: new conjunctions are mostly over new operands, so most lookups then stay
// within the window of slots that the last ones were in. A node with more uses than fit there has
// the rest of them anywhere. There are between three and four and a half slots for two nodes.
//
// Where all nodes of a range have more uses than fit, as the inputs of a comparison have, the slots
// of the range are all taken: one that is looked for anywhere must not walk along them, so it
// jumps. It finds a free slot within this number of jumps but for one case in billions.
constexpr std::size_t kWindow = 1U << 10U;
constexpr std::size_t kProbesInWindow = 32;
constexpr std::size_t kJumps = 64;

std::uint64_t mix(std::uint64_t h) {
  h *= 0x9e3779b97f4a7c15U;
  return h ^ (h >> 32U);
}

std::uint64_t hash_pair(Lit left, Lit right) {
  return mix((std::uint64_t{left.get_code()} << 32U) | right.get_code());
}

}  // namespace

Aig::Aig() : nodes(1), table(kFirstTableSize, 0) {}

Lit Aig::make_input() {
  const Lit input = add_node(kFalse, kFalse);
  ++input_count;
  return input;
}

Lit Aig::make_and(Lit a, Lit b) {
  // A single wide multiplication takes longer than anyone waits: even one operation must end.
  if (++steps % kStepsBetweenTests == 0 && termtest != nullptr && termtest->terminate()) {
    throw Terminated();
  }
  Lit result;
  do {
    if (b < a) std::swap(a, b);
    if (settle(a, b, &result)) return result;
  } while (reduce(&b, a) || reduce(&a, b));
  return find_or_add(a, b);
}

Lit Aig::make_xor(Lit a, Lit b) {
  if (a == b) return kFalse;
  if (a == !b) return kTrue;
  if (a.is_constant()) return b ^ (a == kTrue);
  if (b.is_constant()) return a ^ (b == kTrue);
  const bool flip = a.is_negated() != b.is_negated();
  a = a ^ a.is_negated();
  b = b ^ b.is_negated();
  return make_and(!make_and(a, b), !make_and(!a, !b)) ^ flip;
}

Lit Aig::make_ite(Lit c, Lit t, Lit e) {
  if (c.is_negated()) {
    c = !c;
    std::swap(t, e);
  }
  if (c == kFalse || t == e) return e;
  if (t == !e) return make_xor(c, e);
  if (t == kTrue || t == c) return make_or(c, e);
  if (t == kFalse || t == !c) return make_and(!c, e);
  if (e == kTrue || e == !c) return make_or(!c, t);
  if (e == kFalse || e == c) return make_and(c, t);
  return !make_and(!make_and(c, t), !make_and(!c, e));
}

Lit Aig::make_xor3(Lit a, Lit b, Lit c) {
  const std::array<Lit, 3> in = order_adder_inputs(a, b, c);
  return make_xor(make_xor(in[0], in[1]), in[2]);
}

Lit Aig::make_maj(Lit a, Lit b, Lit c) {
  const std::array<Lit, 3> in = order_adder_inputs(a, b, c);
  if (in[0] == in[1]) return in[0];
  if (in[0] == !in[1]) return in[2];
  return make_or(make_and(in[0], in[1]), make_and(in[2], make_or(in[0], in[1])));
}

Lit Aig::make_and(std::span<const Lit> lits) {
  if (lits.empty()) return kTrue;
  std::vector<Lit> level(lits.begin(), lits.end());
  while (level.size() > 1) {
    const std::size_t pairs = level.size() / 2;
    for (std::size_t i = 0; i < pairs; ++i)
      level[i] = make_and(level[2 * i], level[2 * i + 1]);
    if (level.size() % 2 != 0) level[pairs] = level.back();
    level.resize(level.size() - pairs);
  }
  return level.front();
}

Lit Aig::make_or(std::span<const Lit> lits) {
  std::vector<Lit> negated(lits.begin(), lits.end());
  for (Lit& lit : negated)
    lit = !lit;
  return !make_and(std::span<const Lit>(negated));
}

/// The inputs of a full adder such that its sum and its carry share the conjunctions of the first
/// two: these are one node or constant, so that the rest folds, or else of one sign, since parity
/// is built from the unnegated nodes and majority from the literals.
std::array<Lit, 3> Aig::order_adder_inputs(Lit a, Lit b, Lit c) const {
  std::array<Lit, 3> in = {a, b, c};
  std::sort(in.begin(), in.end());
  if (in[0].get_node() == in[1].get_node()) return in;
  if (in[1].get_node() == in[2].get_node()) return {in[1], in[2], in[0]};
  if (in[0].is_constant()) return {in[1], in[2], in[0]};
  if (in[0].is_negated() == in[1].is_negated()) return in;
  if (in[0].is_negated() == in[2].is_negated()) return {in[0], in[2], in[1]};
  return {in[1], in[2], in[0]};
}

// Rules ---------------------------------------------------------------------------------------

/// Stores the conjunction of a and b when it is a constant or a literal at hand.
bool Aig::settle(Lit a, Lit b, Lit* result) const {
  if (a == kFalse || b == kFalse || a == !b) {
    *result = kFalse;
    return true;
  }
  if (a == kTrue || a == b) {
    *result = b;
    return true;
  }
  if (b == kTrue) {
    *result = a;
    return true;
  }
  return settle_by_operand(a, b, result) || settle_by_operand(b, a, result) ||
         settle_by_operands(a, b, result);
}

/// One level below a: idempotence and contradiction, or subsumption when a is negated.
bool Aig::settle_by_operand(Lit a, Lit b, Lit* result) const {
  if (!is_and(a.get_node())) return false;
  const auto [left, right] = nodes[a.get_node()];
  if (b == !left || b == !right) {
    *result = a.is_negated() ? b : kFalse;
    return true;
  }
  if (!a.is_negated() && (b == left || b == right)) {
    *result = a;
    return true;
  }
  return false;
}

/// One level below both: contradiction, subsumption, resolution.
bool Aig::settle_by_operands(Lit a, Lit b, Lit* result) const {
  if (!is_and(a.get_node()) || !is_and(b.get_node())) return false;
  const auto [a0, a1] = nodes[a.get_node()];
  const auto [b0, b1] = nodes[b.get_node()];
  if (a.is_negated() && b.is_negated()) {
    const bool common0 = (a0 == b0 && a1 == !b1) || (a0 == b1 && a1 == !b0);
    const bool common1 = (a1 == b0 && a0 == !b1) || (a1 == b1 && a0 == !b0);
    if (!common0 && !common1) return false;
    *result = common0 ? !a0 : !a1;
    return true;
  }
  if (a0 != !b0 && a0 != !b1 && a1 != !b0 && a1 != !b1) return false;
  if (!a.is_negated() && !b.is_negated()) {
    *result = kFalse;
  } else {
    *result = a.is_negated() ? b : a;
  }
  return true;
}

/// Replaces a by an operand of a where b makes the other one redundant: substitution when a is
/// negated, idempotence when it is not.
bool Aig::reduce(Lit* a, Lit b) const {
  if (!is_and(a->get_node())) return false;
  const auto [left, right] = nodes[a->get_node()];
  const auto implied = [&](Lit operand) {
    if (operand == b) return true;
    if (b.is_negated() || !is_and(b.get_node())) return false;
    return operand == nodes[b.get_node()].left || operand == nodes[b.get_node()].right;
  };
  const bool negated = a->is_negated();
  if (implied(left)) {
    *a = right ^ negated;
  } else if (implied(right)) {
    *a = left ^ negated;
  } else {
    return false;
  }
  return true;
}

// Storage -------------------------------------------------------------------------------------

Lit Aig::add_node(Lit left, Lit right) {
  if (nodes.size() >= kMaxNodes) throw std::length_error("and-inverter graph: too many nodes");
  const auto node = static_cast<std::uint32_t>(nodes.size());
  nodes.push_back({left, right});
  return {node, false};
}

Lit Aig::find_or_add(Lit left, Lit right) {
  assert(!left.is_constant() && left.get_node() < right.get_node());
  if (nodes.size() + nodes.size() / 2 >= table.size()) grow_table();
  const std::size_t slot = find_slot(left, right);
  if (table[slot] != 0) return {table[slot], false};
  const Lit result = add_node(left, right);
  table[slot] = result.get_node();
  return result;
}

/// The slot of the conjunction, or the free slot where it belongs.
std::size_t Aig::find_slot(Lit left, Lit right) const {
  const std::size_t size = table.size();
  const std::size_t hash = hash_pair(left, right);
  const auto is_found = [&](std::size_t slot) {
    if (table[slot] == 0) return true;
    const Node& node = nodes[table[slot]];
    return node.left == left && node.right == right;
  };
  const std::size_t node = right.get_node();
  std::size_t slot = node + node / 2 + hash % kWindow;
  if (slot >= size) slot %= size;
  for (std::size_t i = 0; i < kProbesInWindow; ++i) {
    if (is_found(slot)) return slot;
    if (++slot == size) slot = 0;
  }
  std::size_t jump = hash;
  for (std::size_t i = 0; i < kJumps; ++i) {
    jump = mix(jump);
    slot = jump % size;
    if (is_found(slot)) return slot;
  }
  while (!is_found(slot)) {
    if (++slot == size) slot = 0;
  }
  return slot;
}

void Aig::release_table() {
  table = {};
}

void Aig::grow_table() {
  // With both tables at once a large graph would have its peak here.
  const std::size_t size = std::max(kFirstTableSize, 9 * (nodes.size() / 4));
  table = {};
  table.assign(size, 0);
  for (std::uint32_t node = 1; node < get_node_count(); ++node) {
    if (is_and(node)) table[find_slot(nodes[node].left, nodes[node].right)] = node;
  }
}

}  // namespace vorn::bv
