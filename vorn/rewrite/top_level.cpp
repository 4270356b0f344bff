#include "vorn/rewrite/top_level.h"

#include <algorithm>
#include <utility>

#include "vorn/rewrite/fp_patterns.h"

namespace vorn::rewrite {
namespace {

// A round walks over all of the group. Few formulas have anything left after four.
constexpr int kMostRounds = 10;
// What cycles may waste of a walk is as much as it does, and this, so that small ones are all cut.
constexpr std::size_t kLeastWaste = 1'000;

/// A formula without its negations, and the truth value that it has where `f` holds.
std::pair<const Term*, bool> strip_negations(const Term* f) {
  bool holds = true;
  for (; has_tag(f, SymbolTag::bool_not); f = f->get_arg(0))
    holds = !holds;
  return {f, holds};
}

}  // namespace

// Groups --------------------------------------------------------------------------------------

std::vector<const Term*> TopLevel::simplify(std::span<const Term* const> assertions) {
  const std::size_t first = definitions.get_size();
  stated.clear();
  flatten(assertions);
  for (int round = 1; run_round() && round < kMostRounds; ++round) {
    const std::vector<const Term*> changed = std::move(items);
    flatten(changed);
  }
  keep_definitions(first);
  keep_asserted();
  settle();
  stated.insert(stated.end(), items.begin(), items.end());
  return stated;
}

const Term* TopLevel::simplify_assumption(const Term* f) {
  const Term* result = simplify(f);
  settle();
  return result;
}

/// Makes the conjuncts of the assertions the items, each once.
void TopLevel::flatten(std::span<const Term* const> assertions) {
  items.clear();
  TermSet seen;
  for (const Term* assertion : assertions) {
    stack.assign(1, assertion);
    while (!stack.empty()) {
      const Term* f = stack.back();
      stack.pop_back();
      if (!seen.insert(f)) continue;
      const auto [core, holds] = strip_negations(f);
      if (!has_tag(core, holds ? SymbolTag::bool_and : SymbolTag::bool_or)) {
        if (f != mgr.make_true()) items.push_back(f);
        continue;
      }
      for (std::size_t i = core->get_arity(); i-- > 0;)
        stack.push_back(holds ? core->get_arg(i) : mgr.make_not(core->get_arg(i)));
    }
  }
}

/// False where nothing has changed that more could follow from.
bool TopLevel::run_round() {
  forget_results();
  collect();
  define_candidates();
  return simplify_items();
}

/// Finds out what the items say of others.
void TopLevel::collect() {
  asserted.clear();
  candidates.clear();
  candidate_order.clear();
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (poll.is_over()) throw Terminated();
    if (collect_equation(i)) continue;
    const auto [core, holds] = strip_negations(items[i]);
    if (core->get_arity() == 0 || facts.find(core) != nullptr) continue;
    asserted.try_emplace(core, Asserted{mgr.make_bool(holds), i});
  }
}

bool TopLevel::collect_equation(std::size_t item) {
  for (const Definition& equation : read_definitions(mgr, items[item])) {
    if (facts.find(equation.constant) != nullptr) continue;
    const bool is_new = settled.find(equation.constant) == nullptr;
    if (is_new ? add_candidate(equation, item) : state(equation, item)) return true;
  }
  return false;
}

bool TopLevel::add_candidate(const Definition& equation, std::size_t item) {
  const auto [known, is_new] =
      candidates.try_emplace(equation.constant, Candidate{equation.value, item});
  if (is_new) {
    candidate_order.push_back(equation.constant);
    return true;
  }
  if (is_literal(mgr, known->second.value) || !is_literal(mgr, equation.value)) return false;
  known->second = {equation.value, item};
  return true;
}

/// A constant that was stated before is a literal from here on.
bool TopLevel::state(const Definition& equation, std::size_t item) {
  if (!is_literal(mgr, equation.value)) return false;
  add_fact(equation.constant, equation.value);
  stated.push_back(items[item]);
  items[item] = nullptr;
  return true;
}

/// Candidates that do not lead back to themselves become definitions.
void TopLevel::define_candidates() {
  wasted = 0;
  for (const Term* constant : candidate_order)
    simplify(constant);
  for (const Term* constant : candidate_order) {
    const Candidate& candidate = candidates.at(constant);
    if (candidate.state != Candidate::State::closed) continue;
    const Term* value = find_result(constant);
    add_fact(constant, value);
    definitions.add({constant, value});
    ++defined;
    items[candidate.item] = nullptr;
  }
}

/// Whether `f` is what the item asserts to be true or false, so that the item cannot do without it.
bool TopLevel::is_asserted_by(const Term* f, std::size_t item) const {
  const auto found = asserted.find(f);
  return found != asserted.end() && found->second.item == item;
}

/// Whether any of them has changed.
bool TopLevel::simplify_items() {
  bool is_changed = false;
  for (std::size_t i = 0; i < items.size(); ++i) {
    const Term* f = items[i];
    if (f == nullptr) continue;
    const auto [core, holds] = strip_negations(f);
    if (is_asserted_by(core, i)) {
      for (const Term* arg : core->get_args())
        simplify(arg);
      const Term* simple = rebuild(core);
      if (simple != core) items[i] = holds ? simple : mgr.make_not(simple);
    } else {
      items[i] = simplify(f);
    }
    is_changed = is_changed || items[i] != f;
  }
  std::erase(items, nullptr);
  std::erase(items, mgr.make_true());
  return is_changed;
}

/// Later groups see what this one asserts.
void TopLevel::keep_asserted() {
  for (const Term* item : items) {
    const auto [core, holds] = strip_negations(item);
    if (core->get_arity() == 0 || facts.find(core) != nullptr) continue;
    add_fact(core, mgr.make_bool(holds));
  }
}

/// Values of later rounds are put into the definitions of earlier ones.
void TopLevel::keep_definitions(std::size_t first) {
  std::vector<Definition> final_ones;
  for (const Definition& definition : std::span(get_definitions()).subspan(first))
    final_ones.push_back({definition.constant, simplify(definition.constant)});
  definitions.retract(first, [](const Definition&) {});
  for (const Definition& definition : final_ones) {
    definitions.add(definition);
    facts.insert({definition.constant, definition.value})->value.second = definition.value;
  }
}

/// What became of the terms of a group is what becomes of them on this level.
void TopLevel::settle() {
  for (const Term* t : result_keys) {
    const Term* result = results.find(t)->value.second;
    std::size_t bucket = 0;
    TermMap::Node* node = nullptr;
    if (settled.do_insert({t, result}, &bucket, &node)) settled_keys.add(t);
  }
  forget_results();
  asserted.clear();
  candidates.clear();
  candidate_order.clear();
}

/// One by one: a table that was large once takes as long to clear as it is large.
void TopLevel::forget_results() {
  for (const Term* t : result_keys)
    results.erase(t);
  result_keys.clear();
}

void TopLevel::push() {
  fact_keys.push();
  definitions.push();
  settled_keys.push();
}

void TopLevel::pop() {
  fact_keys.pop([this](const Term* t) { facts.erase(t); });
  definitions.pop();
  settled_keys.pop([this](const Term* t) { settled.erase(t); });
}

void TopLevel::add_fact(const Term* t, const Term* replacement) {
  facts.insert({t, replacement});
  fact_keys.add(t);
}

// Walks ---------------------------------------------------------------------------------------

/// What `root` is where all that is asserted holds.
const Term* TopLevel::simplify(const Term* root) {
  stack.assign(1, root);
  while (!stack.empty()) {
    if (poll.is_over()) throw Terminated();
    const Term* t = stack.back();
    if (find_result(t) != nullptr) {
      stack.pop_back();
      continue;
    }
    const auto candidate = candidates.find(t);
    const bool is_candidate = candidate != candidates.end();
    if (is_candidate && candidate->second.state == Candidate::State::untried) {
      open(t, &candidate->second);
    } else if (is_candidate && candidate->second.state == Candidate::State::open) {
      const bool is_own = candidate->second.depth + 1 == stack.size();
      const Term* value = is_own ? find_result(candidate->second.value) : nullptr;
      if (value == nullptr) {
        cut_cycle();
        continue;
      }
      candidate->second.state = Candidate::State::closed;
      opened.pop_back();
      note(t, value);
    } else if (const Term* replacement = find_replacement(t)) {
      const Term* value = find_result(replacement);
      if (value == nullptr) {
        stack.push_back(replacement);
      } else {
        propagated += t->get_arity() != 0 ? 1 : 0;
        note(t, value);
      }
    } else if (!push_arguments(t)) {
      const Term* simple = rebuild(t);
      const Term* truth = find_truth(simple);
      const Term* result = truth == nullptr ? simple : truth;
      note(t, result);
      note(simple, result);
    }
  }
  return find_result(root);
}

/// What is known of `t`; null where it is to be walked.
const Term* TopLevel::find_result(const Term* t) const {
  if (const TermMap::Node* node = results.find(t)) return node->value.second;
  if (facts.find(t) != nullptr || asserted.contains(t)) return nullptr;
  const TermMap::Node* node = settled.find(t);
  return node == nullptr ? nullptr : node->value.second;
}

/// What is to be walked in place of `t`; null for `t` itself.
const Term* TopLevel::find_replacement(const Term* t) {
  if (const TermMap::Node* node = facts.find(t)) return node->value.second;
  return find_truth(t);
}

/// The truth value of a formula that is asserted, or whose negation is; null for others.
const Term* TopLevel::find_truth(const Term* t) const {
  if (const auto found = asserted.find(t); found != asserted.end()) return found->second.truth;
  const TermMap::Node* node = facts.find(t);
  if (node == nullptr || !is_literal(mgr, node->value.second)) return nullptr;
  return node->value.second;
}

/// Pushes the arguments of `t` that are to be walked; false if there are none.
bool TopLevel::push_arguments(const Term* t) {
  const std::size_t depth = stack.size();
  for (const Term* arg : t->get_args()) {
    if (find_result(arg) == nullptr) stack.push_back(arg);
  }
  return stack.size() > depth;
}

/// Goes on with the value of a candidate.
void TopLevel::open(const Term* constant, Candidate* candidate) {
  candidate->state = Candidate::State::open;
  candidate->depth = stack.size() - 1;
  opened.push_back(constant);
  stack.push_back(candidate->value);
}

/// A constant came up in the midst of its own value, so that one on the way is not replaced: the
/// innermost, which the least has been walked for. What was begun for it is taken back. Where
/// cycles take back more than was walked, none of the constants left is replaced.
void TopLevel::cut_cycle() {
  const auto drop_innermost = [this] {
    Candidate& innermost = candidates.at(opened.back());
    innermost.state = Candidate::State::dropped;
    wasted += stack.size() - innermost.depth;
    stack.resize(innermost.depth + 1);
    opened.pop_back();
  };
  drop_innermost();
  if (wasted <= kLeastWaste + result_keys.size()) return;
  while (!opened.empty())
    drop_innermost();
  for (auto& [constant, candidate] : candidates) {
    if (candidate.state == Candidate::State::untried) candidate.state = Candidate::State::dropped;
  }
}

/// `t` on what its arguments became.
const Term* TopLevel::rebuild(const Term* t) {
  std::vector<const Term*> args;
  for (const Term* arg : t->get_args())
    args.push_back(find_result(arg));
  return std::ranges::equal(args, t->get_args()) ? t : mgr.rebuild(t, args);
}

void TopLevel::note(const Term* t, const Term* result) {
  std::size_t bucket = 0;
  TermMap::Node* node = nullptr;
  if (results.do_insert({t, result}, &bucket, &node)) result_keys.push_back(t);
}

}  // namespace vorn::rewrite
