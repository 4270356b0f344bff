#include "vorn/rewrite/fp_rewriter.h"

#include <algorithm>
#include <utility>

#include "vorn/terms/operations.h"

namespace vorn::rewrite {

std::vector<const FpRule*> get_fp_rules() {
  std::vector<const FpRule*> all;
  for (const auto rules : {get_arithmetic_rules(), get_sign_rules(), get_conversion_rules(),
                           get_comparison_rules(), get_class_rules(), get_bit_vector_rules()}) {
    for (const FpRule& rule : rules)
      all.push_back(&rule);
  }
  return all;
}

FpRewriter::FpRewriter(TermManager& manager) : mgr(manager) {
  for (const FpRule* rule : get_fp_rules()) {
    const bool is_for_all = rule->tags.front() == SymbolTag::none;
    for (const Operation& op : get_operations()) {
      const bool is_named = std::ranges::find(rule->tags, op.tag) != rule->tags.end();
      const bool is_on_floats = op.theory == Theory::floating_point || op.tag == SymbolTag::equal;
      if (is_for_all ? is_on_floats : is_named) rules_of[op.tag].push_back(rule);
    }
  }
}

/// The last term that is known of the chain that starts at `t`; null where `t` is new.
const Term* FpRewriter::follow(const Term* t) const {
  const Term* last = nullptr;
  for (const TermMap::Node* node = steps.find(t); node != nullptr; node = steps.find(last)) {
    if (node->value.second == last) break;
    last = node->value.second;
  }
  return last;
}

const Term* FpRewriter::find(const Term* t) const {
  const TermMap::Node* node = steps.find(t);
  return node == nullptr ? nullptr : node->value.second;
}

const Term* FpRewriter::rewrite(const Term* root) {
  stack.assign(1, root);
  while (!stack.empty()) {
    const Term* t = stack.back();
    const Term* last = follow(t);
    if (last != nullptr && find(last) == last) {
      steps.insert({t, last})->value.second = last;  // later walks are short
      stack.pop_back();
      continue;
    }
    if (last != nullptr) {
      stack.push_back(last);
      continue;
    }
    if (push_arguments(t)) continue;
    const Term* next = rebuild(t);
    if (next == t) next = apply_rules(t);
    steps.insert({t, next});
  }
  return find(root);
}

/// Pushes the arguments of `t` that are not rewritten yet; false if there are none.
bool FpRewriter::push_arguments(const Term* t) {
  const std::size_t depth = stack.size();
  for (const Term* arg : t->get_args()) {
    const Term* known = find(arg);
    if (known == nullptr || find(known) != known) stack.push_back(arg);
  }
  return stack.size() > depth;
}

/// The operation of `t` on its rewritten arguments; `t` itself if that is what they are.
const Term* FpRewriter::rebuild(const Term* t) {
  std::vector<const Term*> args;
  for (const Term* arg : t->get_args())
    args.push_back(find(arg));
  return std::ranges::equal(args, t->get_args()) ? t : mgr.rebuild(t, args);
}

const Term* FpRewriter::apply_rules(const Term* t) {
  const auto rules = rules_of.find(t->get_tag());
  if (rules == rules_of.end()) return t;
  for (const FpRule* rule : rules->second) {
    if (const Term* next = rule->apply(mgr, t)) {
      ++counts[rule->name];
      return next;
    }
  }
  return t;
}

std::string FpRewriter::describe_counts() const {
  std::vector<std::pair<std::string, std::uint64_t>> rows(counts.begin(), counts.end());
  std::ranges::sort(rows, [](const auto& a, const auto& b) {
    return a.second != b.second ? a.second > b.second : a.first < b.first;
  });
  std::string text;
  for (const auto& [name, count] : rows)
    text += (text.empty() ? "" : ", ") + name + ' ' + std::to_string(count);
  return text;
}

std::uint64_t FpRewriter::get_count(const std::string& rule) const {
  const auto found = counts.find(rule);
  return found == counts.end() ? 0 : found->second;
}

}  // namespace vorn::rewrite
