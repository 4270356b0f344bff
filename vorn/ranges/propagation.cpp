#include "vorn/ranges/propagation.h"

#include <utility>

#include "vorn/ranges/predicates.h"
#include "vorn/ranges/transfer.h"
#include "vorn/terms/post_order.h"

namespace vorn::ranges {
namespace {

std::uint64_t count_bits(const Term* t) {
  return t->get_type()->has_bits() ? t->get_type()->get_value_width() : 0;
}

}  // namespace

// Formulas and levels ---------------------------------------------------------------------------

/// Notes `t`, whose arguments are noted.
Propagation::Slot Propagation::add_term(const Term* t) {
  const auto slot = static_cast<Slot>(nodes.size());
  Node& node = nodes.emplace_back();
  node.term = t;
  arguments.clear();
  for (const Term* arg : t->get_args()) {
    const Slot argument = slots.at(arg);
    node.arguments.push_back(argument);
    arguments.push_back(nodes[argument].range);
  }
  node.range = forward(mgr, t, arguments);
  for (const Slot argument : node.arguments)
    nodes[argument].uses.push_back(slot);
  slots.emplace(t, slot);
  added.add(slot);
  bit_count += count_bits(t);
  return slot;
}

void Propagation::add(const Term* formula) {
  walk_post_order<ArgumentOrder::first_to_last>(
      formula, [this](const Term* t) { return slots.contains(t); },
      [this](const Term* t) {
        if (poll.is_over()) throw Terminated();
        add_term(t);
      });
  narrow(slots.at(formula), BoolRange::of(true));
}

void Propagation::narrow(Slot slot, const Range& set) {
  Range smaller = intersect(nodes[slot].range, set);
  if (smaller != nodes[slot].range) this->set(slot, std::move(smaller));
}

void Propagation::push() {
  changes.push();
  added.push();
}

/// What waits is forgotten: it follows from what is taken back, if nothing waited at the push.
void Propagation::pop() {
  stop();
  forget_changes();
  changes.pop([this](const Change& change) { nodes[change.slot].range = change.before; });
  added.pop([this](Slot slot) {
    for (const Slot argument : nodes[slot].arguments)
      nodes[argument].uses.pop_back();
    bit_count -= count_bits(nodes[slot].term);
    slots.erase(nodes[slot].term);
    nodes.pop_back();
  });
  if (empty_level > changes.get_level()) empty_level.reset();
}

const Range* Propagation::find_range(const Term* t) const {
  const auto found = slots.find(t);
  return found == slots.end() ? nullptr : &nodes[found->second].range;
}

// Propagation -----------------------------------------------------------------------------------

void Propagation::set(Slot slot, Range range) {
  if (is_empty(range) && !empty_level) empty_level = changes.get_level();
  Node& node = nodes[slot];
  changes.make_room();
  changes.add({slot, std::exchange(node.range, std::move(range))});
  if (node.recent_changes++ == 0) changed.push_back(slot);
  if (node.recent_changes > kMostChanges) return;
  wait(slot);
  for (const Slot use : node.uses)
    wait(use);
}

void Propagation::wait(Slot slot) {
  if (std::exchange(nodes[slot].is_waiting, true)) return;
  waiting.push_back(slot);
}

/// The range that a term has by its arguments, the ranges of which are in `arguments` then.
Range Propagation::look_forward(Slot slot) {
  arguments.clear();
  for (const Slot argument : nodes[slot].arguments)
    arguments.push_back(nodes[argument].range);
  return forward(mgr, nodes[slot].term, arguments);
}

bool Propagation::is_implied(Slot slot) {
  return look_forward(slot) == nodes[slot].range;
}

/// Brings a term and its arguments into line.
void Propagation::visit(Slot slot) {
  const Term* t = nodes[slot].term;
  if (t->get_arity() == 0) return;
  narrow(slot, look_forward(slot));
  if (empty_level) return;
  backward(t, nodes[slot].range, arguments);
  for (std::size_t i = 0; i < arguments.size(); ++i)
    narrow(nodes[slot].arguments[i], arguments[i]);
  if (t->get_arity() == 2 && is_value(nodes[slot].range)) follow_alternative(slot);
}

/// What it means for the operand of a classification, or the negation of one, that it has that
/// truth value.
std::optional<Propagation::ClassTest> Propagation::find_test(Slot slot, bool truth) const {
  if (nodes[slot].term->get_tag() == SymbolTag::bool_not) {
    slot = nodes[slot].arguments[0];
    truth = !truth;
  }
  const FloatClassSet classes = classes_of(nodes[slot].term->get_tag());
  if (classes == 0) return std::nullopt;
  return ClassTest{nodes[slot].arguments[0], truth ? classes : kAllClasses & ~classes};
}

/// Of a term that is of some classes or of others no argument need be decided: comparisons with
/// zero, as they are rewritten, are of this kind.
void Propagation::follow_alternative(Slot slot) {
  const SymbolTag::tag tag = nodes[slot].term->get_tag();
  const bool is_or = tag == SymbolTag::bool_or || tag == SymbolTag::bool_implies;
  if (!is_or && tag != SymbolTag::bool_and) return;
  if (!is_truth(nodes[slot].range, is_or)) return;
  const bool first = is_or && tag != SymbolTag::bool_implies;
  const std::optional<ClassTest> a = find_test(nodes[slot].arguments[0], first);
  const std::optional<ClassTest> b = find_test(nodes[slot].arguments[1], is_or);
  if (!a || !b || a->operand != b->operand) return;
  const auto& x = std::get<FloatRange>(nodes[a->operand].range);
  narrow(a->operand, x.restrict_to(a->classes | b->classes));
}

std::uint64_t Propagation::propagate(std::uint64_t effort) {
  std::uint64_t spent = 0;
  for (; spent < effort && !waiting.empty() && !empty_level; ++spent) {
    if (poll.is_over()) throw Terminated();
    const Slot slot = waiting.front();
    waiting.pop_front();
    nodes[slot].is_waiting = false;
    visit(slot);
  }
  if (empty_level) stop();
  forget_changes();
  return spent;
}

void Propagation::forget_changes() {
  for (const Slot slot : changed)
    nodes[slot].recent_changes = 0;
  changed.clear();
}

/// Forgets what waits.
void Propagation::stop() {
  for (const Slot slot : waiting)
    nodes[slot].is_waiting = false;
  waiting.clear();
}

}  // namespace vorn::ranges
