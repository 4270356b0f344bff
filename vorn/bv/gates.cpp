// Every gate is a conjunction of two negated conjunctions, p and q:
//
//   exclusive or   !(a & b) & !(!a & !b)
//   majority       !(a & b) & !(c & !(!a & !b)), which is the majority of !a, !b, !c
//   if-then-else   !(c & t) & !(!c & e), which is !t where c holds and !e elsewhere
#include "vorn/bv/gates.h"

#include <cassert>

namespace vorn::bv {
namespace {

struct Pair {
  Lit first, second;
};

Pair operands(const Aig& graph, Lit lit) {
  return {graph.get_left(lit.get_node()), graph.get_right(lit.get_node())};
}

bool is_negated_and(const Aig& graph, Lit lit) {
  return lit.is_negated() && graph.is_and(lit.get_node());
}

bool are_complements(Pair p, Pair q) {
  return (p.first == !q.first && p.second == !q.second) ||
         (p.first == !q.second && p.second == !q.first);
}

/// Whether p is a & b and q is c & !(!a & !b).
bool match_majority(const Aig& graph, Pair p, Pair q, Gate* gate) {
  for (const auto& [either, c] : {q, Pair{q.second, q.first}}) {
    if (is_negated_and(graph, either) && are_complements(p, operands(graph, either))) {
      *gate = {GateKind::majority, {!p.first, !p.second, !c}};
      return true;
    }
  }
  return false;
}

/// Whether p is c & t and q is !c & e.
bool match_if_then_else(Pair p, Pair q, Gate* gate) {
  for (const auto& [c, t] : {p, Pair{p.second, p.first}}) {
    if (c == !q.first || c == !q.second) {
      const Lit e = c == !q.first ? q.second : q.first;
      *gate = {GateKind::if_then_else, {c, !t, !e}};
      return true;
    }
  }
  return false;
}

}  // namespace

Gate match_gate(const Aig& graph, std::uint32_t node) {
  assert(graph.is_and(node));
  const Lit left = graph.get_left(node);
  const Lit right = graph.get_right(node);
  Gate gate = {GateKind::conjunction, {left, right}};
  if (!is_negated_and(graph, left) || !is_negated_and(graph, right)) return gate;

  const Pair p = operands(graph, left);
  const Pair q = operands(graph, right);
  if (are_complements(p, q)) return {GateKind::exclusive_or, {p.first, p.second}};
  if (match_majority(graph, p, q, &gate) || match_majority(graph, q, p, &gate)) return gate;
  match_if_then_else(p, q, &gate);
  return gate;
}

}  // namespace vorn::bv
