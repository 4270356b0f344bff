// The walk over a term: bottom-up, each subterm once, on an explicit stack, so that the depth of a
// term costs no native stack. What was encoded is kept from call to call and noted on a trail, so
// that an owner who backtracks can have it forgotten in reverse order.
#include <stdexcept>
#include <string>

#include "vorn/fp/fp_bv_encoder.h"
#include "vorn/terms/operations.h"

namespace vorn::fp {
namespace {

/// Throws unless `t` is a term of `manager`, which is the one that the encoder reads or the one
/// that it builds in.
void check_owner(const char* function, const Term* t, const TermManager& manager,
                 const char* which) {
  if (manager.owns(t)) return;
  throw std::invalid_argument(std::string(function) +
                              (t == nullptr
                                   ? ": a term is missing, expected one"
                                   : ": a term belongs to another term manager than the one") +
                              " that the encoder " + which);
}

/// The name of an operation or a constant, or a literal.
std::string name_of(const Term* t) {
  if (const Operation* op = find_operation(t->get_tag())) return std::string(op->name);
  return t->to_string();
}

}  // namespace

const Term* FpBvEncoder::get_bv_encoding(const Term* t, std::vector<const Term*>* out) {
  check_owner("get_bv_encoding", t, *src_mgr, "reads");
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

const Term* FpBvEncoder::append_bv_encoding(const Term* t, std::vector<const Term*>* constraints) {
  std::vector<const Term*> of_this_call;
  const Term* encoding = get_bv_encoding(t, &of_this_call);
  constraints->insert(constraints->end(), of_this_call.begin(), of_this_call.end());
  return encoding;
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
  if (symbol->get_arity() != 0 || src_mgr->is_bool_type(type) || !type->has_bits()) check_leaf(t);
  if (src_mgr->is_fprounding_type(type)) return encode_rounding(t);
  if (src_mgr->is_bv_type(type, nullptr)) return encode_bv_constant(t);
  if (src_mgr->get_number(symbol) != nullptr) return encode_number(t);
  return encode_constant(t);
}

/// Throws unless `t`, which has no circuit, may become a constant. As a constant it is free, so
/// what it stands for would be lost without a word; Booleans have no format and never are one.
void FpBvEncoder::check_leaf(const Term* t) const {
  const DataType* type = t->get_type();
  const Operation* op = find_operation(t->get_tag());
  const bool is_bool = src_mgr->is_bool_type(type);
  if (!type->has_bits()) {
    throw std::invalid_argument(name_of(t) + " of " + type->to_string() +
                                " has no bits to be encoded by");
  }
  if (free_constants && !is_bool) return;
  if (op != nullptr && op->theory == Theory::floating_point && op->tag != SymbolTag::fp_from_bits) {
    throw std::invalid_argument(name_of(t) + " is not supported by this encoder");
  }
  if (is_bool) {
    throw std::invalid_argument(name_of(t) +
                                " is no floating-point atom: the Boolean structure above atoms is "
                                "for the encoder's owner to build on their encodings");
  }
  if (src_mgr->is_bv_type(type, nullptr)) return;
  throw std::invalid_argument(name_of(t) + " of " + type->to_string() +
                              " has no encoding: define_encoding has to give it one first");
}

/// The sort of the target that encodes terms of a sort of the source.
const DataType* FpBvEncoder::find_encoding_type(const DataType* type) {
  switch (type->get_kind()) {
    case DataType::Kind::boolean:
      return dst_mgr->get_bool_type();
    case DataType::Kind::rounding_mode:
      return rm_even_bv->get_type();
    case DataType::Kind::bit_vector:
    case DataType::Kind::floating_point:
      break;
    case DataType::Kind::array:
    case DataType::Kind::uninterpreted:
      throw std::invalid_argument("a term of " + type->to_string() +
                                  " has no bits to be encoded by");
  }
  return dst_mgr->get_bv_type(type->get_value_width());
}

void FpBvEncoder::define_encoding(const Term* t, const Term* encoding) {
  static constexpr const char* kName = "define_encoding";
  check_owner(kName, t, *src_mgr, "reads");
  check_owner(kName, encoding, *dst_mgr, "builds in");
  const DataType* type = find_encoding_type(t->get_type());
  if (encoding->get_type() != type) {
    throw std::invalid_argument(std::string(kName) + ": a term of " + t->get_type()->to_string() +
                                " is encoded by one of " + type->to_string() + ", got one of " +
                                encoding->get_type()->to_string());
  }
  if (get_cached(t) != nullptr) {
    throw std::invalid_argument(std::string(kName) + ": " + name_of(t) + " has an encoding");
  }
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
