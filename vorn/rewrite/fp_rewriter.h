// Rewriting of formulas over floats and bit-vectors before they are translated.
//
// The walk goes bottom-up: the arguments of a term are rewritten first, the term is built again on
// them, and rules are applied to it until none fits. What a rule makes is rewritten in its turn, so
// rules may be written as if they were alone. The walk keeps its own stack and remembers what has
// become of each term, which depends on nothing but the term.
#ifndef VORN_REWRITE_FP_REWRITER_H
#define VORN_REWRITE_FP_REWRITER_H

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "vorn/rewrite/fp_rules.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/export.h"

namespace vorn::rewrite {

/// Rewrites terms of one manager within that manager.
class FpRewriter {
 public:
  explicit FpRewriter(TermManager& manager);

  /// An equal term, the same for every call.
  const Term* rewrite(const Term* t);
  /// What `t`, which was met in a term given to `rewrite`, became; null for a term that was not.
  const Term* find(const Term* t) const;

  /// How often each rule was applied, the most frequent first: "add-commutes 3, ...".
  std::string describe_counts() const;
  std::uint64_t get_count(const std::string& rule) const;

 private:
  const Term* follow(const Term* t) const;
  bool push_arguments(const Term* t);
  const Term* rebuild(const Term* t);
  const Term* apply_rules(const Term* t);

  TermManager& mgr;
  /// By operation, in their order.
  std::unordered_map<SymbolTag::tag, std::vector<const FpRule*>> rules_of;
  /// What a term is to be replaced by, in one step; itself once nothing is left to do.
  TermMap steps;
  std::vector<const Term*> stack;
  std::unordered_map<std::string, std::uint64_t> counts;
};

}  // namespace vorn::rewrite

#endif
