// The walk over a term: bottom-up, each subterm once, on an explicit stack, so that the depth of a
// term costs no native stack. What was encoded is kept from call to call and noted on a trail, so
// that an owner who backtracks can have it forgotten in reverse order.
#include <cassert>

#include "vorn/fp/fp_bv_encoder.h"

namespace vorn::fp {

const Term* FpBvEncoder::get_bv_encoding(const Term* t, std::vector<const Term*>* out) {
  side_constraints.clear();
  ite_cache.clear(false);
  work_stack.clear();
  work_stack.push_back(t);
  // The root opens the call's stretch of the trail, even if it is cached already: retracting it
  // takes back all that the call encoded.
  trail.push_back(t);

  while (!work_stack.empty()) {
    const Term* u = work_stack.back();
    if (get_cached(u) != nullptr) {
      work_stack.pop_back();
      continue;
    }
    if (push_missing_args(u)) continue;
    work_stack.pop_back();
    const Term* encoding = encode(u);
    cache.insert({u, encoding})->value.second = encoding;
    if (u != t) trail.push_back(u);
  }

  const Term* result = cache.insert({t, nullptr})->value.second;
  side_constraints.swap(*out);
  return result;
}

/// Pushes the arguments of `t` that have no encoding yet; false if there are none to wait for.
/// If-then-else, bits read as a float and uninterpreted symbols are encoded whole.
bool FpBvEncoder::push_missing_args(const Term* t) {
  const Symbol* symbol = t->get_symbol();
  SymbolTag::tag kind = SymbolTag::none;
  if (symbol->get_arity() == 0 || !src_mgr->get_symbol_kind(symbol, &kind)) return false;
  if (kind == SymbolTag::none || kind == SymbolTag::ite || kind == SymbolTag::fp_from_bits) {
    return false;
  }
  bool pushed = false;
  for (const Term* arg : t->get_args()) {
    if (get_cached(arg) != nullptr) continue;
    work_stack.push_back(arg);
    pushed = true;
  }
  return pushed;
}

/// Encodes `t`, whose arguments are cached if its kind asks for them.
const Term* FpBvEncoder::encode(const Term* t) {
  const Symbol* symbol = t->get_symbol();
  SymbolTag::tag kind = SymbolTag::none;
  src_mgr->get_symbol_kind(symbol, &kind);
  if (const DispatchTable::Node* row = dispatch.find(kind)) return (this->*row->value.second)(t);

  const DataType* type = symbol->get_output_type();
  if (src_mgr->is_fprounding_type(type)) return encode_rounding(t);
  if (src_mgr->is_bv_type(type, nullptr)) return encode_bv_constant(t);
  if (src_mgr->get_number(symbol) != nullptr) return encode_number(t);
  return encode_constant(t);
}

void FpBvEncoder::define_encoding(const Term* t, const Term* encoding) {
  assert(get_cached(t) == nullptr);
  cache.insert({t, encoding});
  trail.push_back(t);
}

void FpBvEncoder::retract_upto(const Term* t) {
  while (!trail.empty()) {
    const Term* v = trail.back();
    trail.pop_back();
    cache.erase(v);
    if (v == t) return;
  }
}

bool FpBvEncoder::get_new_bv_terms(std::vector<const Term*>& out) {
  if (new_bv_terms.empty()) return false;
  new_bv_terms.swap(out);
  new_bv_terms.clear();
  return true;
}

}  // namespace vorn::fp
