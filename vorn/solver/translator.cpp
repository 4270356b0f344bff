#include "vorn/solver/translator.h"

#include <stdexcept>
#include <string>

#include "vorn/terms/operations.h"

namespace vorn::solver {

Translator::Translator(TermManager& manager, fp::FpBvEncoder& fp_encoder, bool rounding)
    : mgr(manager), encoder(fp_encoder), allow_rounding(rounding) {}

const Term* Translator::translate(const Term* formula, std::vector<const Term*>* constraints) {
  out = constraints;
  const Term* result = walk(formula);
  // Defining a leaf may meet further leaves. They wait here instead of on the native stack, since
  // conditions may nest as deep as the input likes.
  while (!pending.empty()) {
    const Term* leaf = pending.back();
    pending.pop_back();
    define(leaf);
  }
  return result;
}

void Translator::push() {
  marks.push_back({translated.size(), noted.size(), roots.size(), rounding_variables});
}

void Translator::pop() {
  const Mark mark = marks.back();
  marks.pop_back();
  for (; translated.size() > mark.translated; translated.pop_back()) {
    translations.erase(translated.back());
  }
  for (; noted.size() > mark.noted; noted.pop_back()) noted_leaves.erase(noted.back());
  for (; roots.size() > mark.roots; roots.pop_back()) encoder.retract_upto(roots.back());
  rounding_variables = mark.rounding_variables;
}

/// Whether `t` is a predicate on floating-point or rounding-mode operands.
bool Translator::is_fp_atom(const Term* t) const {
  if (!mgr.is_bool_type(t->get_type()) || t->get_arity() == 0) return false;
  const DataType* first = t->get_arg(0)->get_type();
  return mgr.is_fp_type(first, nullptr, nullptr) || mgr.is_fprounding_type(first);
}

const Term* Translator::walk(const Term* root) {
  std::vector<const Term*> stack{root};
  std::vector<const Term*> args;
  while (!stack.empty()) {
    const Term* t = stack.back();
    if (translations.find(t) != nullptr) {
      stack.pop_back();
      continue;
    }
    if (is_fp_atom(t)) {
      stack.pop_back();
      remember(t, encode(t));
      continue;
    }
    args.clear();
    bool ready = true;
    for (const Term* arg : t->get_args()) {
      const TermMap::Node* node = translations.find(arg);
      if (node == nullptr) {
        stack.push_back(arg);
        ready = false;
      } else {
        args.push_back(node->value.second);
      }
    }
    if (!ready) continue;
    stack.pop_back();
    remember(t, mgr.rebuild(t, args));
  }
  return translations.find(root)->value.second;
}

void Translator::remember(const Term* t, const Term* translation) {
  translations.insert({t, translation});
  translated.push_back(t);
}

/// The encoding of a floating-point term or atom. A term that is cached is not asked for again: it
/// may have been encoded in an earlier level, and a later pop must not forget it.
const Term* Translator::encode(const Term* t) {
  note_leaves(t);
  if (const Term* known = encoder.get_cached(t)) return known;
  std::vector<const Term*> constraints;
  roots.push_back(t);
  const Term* encoding = encoder.get_bv_encoding(t, &constraints);
  out->insert(out->end(), constraints.begin(), constraints.end());
  std::vector<const Term*> replaced;
  if (encoder.get_new_bv_terms(replaced)) {
    pending.insert(pending.end(), replaced.begin(), replaced.end());
  }
  return encoding;
}

/// Finds the leaves below `root` whose meaning is defined here, each once.
void Translator::note_leaves(const Term* root) {
  std::vector<const Term*> stack{root};
  while (!stack.empty()) {
    const Term* t = stack.back();
    stack.pop_back();
    if (noted_leaves.find(t) != nullptr) continue;
    note(t);
    const SymbolTag::tag tag = t->get_tag();
    if (tag == SymbolTag::ite || tag == SymbolTag::fp_from_bits) {
      pending.push_back(t);
      continue;
    }
    for (const Term* arg : t->get_args()) {
      if (!mgr.is_bv_type(arg->get_type(), nullptr)) stack.push_back(arg);
    }
  }
}

void Translator::check_supported(const Term* t) const {
  const SymbolTag::tag tag = t->get_tag();
  if (tag >= SymbolTag::fp_add && tag <= SymbolTag::fp_from_ubv && !allow_rounding) {
    throw std::invalid_argument(std::string(find_operation(tag)->name) +
                                " rounds, and the only encoder so far departs from IEEE 754 in "
                                "rounding; choose it with --encoder base to accept that");
  }
  if (t == mgr.make_fprounding_away()) {
    throw std::invalid_argument("roundNearestTiesToAway is not supported by the base encoder");
  }
}

void Translator::note(const Term* t) {
  check_supported(t);
  noted_leaves.insert({t, t});
  noted.push_back(t);
  if (t->get_arity() == 0 && mgr.is_fprounding_type(t->get_type()) &&
      !mgr.is_fprounding(t->get_symbol(), nullptr)) {
    ++rounding_variables;
  }
}

void Translator::define(const Term* leaf) {
  const Term* k = encoder.get_cached(leaf);
  if (mgr.is_bv_type(leaf->get_type(), nullptr)) {
    out->push_back(mgr.make_equal(k, walk(leaf)));
  } else if (leaf->get_tag() == SymbolTag::ite) {
    define_ite(leaf, k);
  } else {
    define_from_bits(leaf, k);
  }
}

void Translator::define_ite(const Term* leaf, const Term* k) {
  const Term* c = walk(leaf->get_arg(0));
  const Term* a = encode(leaf->get_arg(1));
  const Term* b = encode(leaf->get_arg(2));
  out->push_back(mgr.make_or(mgr.make_not(c), mgr.make_equal(k, a)));
  out->push_back(mgr.make_or(c, mgr.make_equal(k, b)));
}

void Translator::define_from_bits(const Term* leaf, const Term* k) {
  const Term* v = walk(leaf->get_arg(0));
  std::size_t e = 0;
  std::size_t m = 0;
  mgr.is_fp_type(leaf->get_type(), &e, &m);
  // Every NaN pattern reads as the one NaN, so equality of bits stays equality of values.
  const Term* max = mgr.make_bv_number(IEEEFloat::format{e, m}.max_exponent(), e);
  const Term* at_max = mgr.make_equal(mgr.make_bv_extract(e + m - 1, m, v), max);
  const Term* fraction = mgr.make_bv_extract(m - 1, 0, v);
  const Term* no_fraction = mgr.make_equal(fraction, mgr.make_bv_number(0, m));
  const Term* nan = mgr.make_and(at_max, mgr.make_not(no_fraction));
  QNumber pattern;
  mgr.is_number(mgr.make_fp_nan(e, m), &pattern);
  const Term* canonical = mgr.make_bv_number(pattern, 1 + e + m);
  out->push_back(mgr.make_or(nan, mgr.make_equal(k, v)));
  out->push_back(mgr.make_or(mgr.make_not(nan), mgr.make_equal(k, canonical)));
}

}  // namespace vorn::solver
