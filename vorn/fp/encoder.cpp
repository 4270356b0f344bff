// The encoder object: dispatch table, cache, configuration and debug tracking.
#include "vorn/fp/fp_bv_encoder.h"

#include <locale>
#include <memory>
#include <string>

namespace vorn::fp {

FpBvEncoder::FpBvEncoder(TermManager* src, TermManager* dst) : FpBvEncoder(src, dst, 2) {}

FpBvEncoder::FpBvEncoder(TermManager* src, TermManager* dst, std::size_t mode_width)
    : src_mgr(src),
      dst_mgr(dst),
      logger(nullptr),
      own_logger(true),
      debug(false),
      termtest(nullptr) {
  name_buf.imbue(std::locale::classic());  // counters are plain digits whatever the user's locale
  // Until the constructor has finished, the logger belongs to this pointer: an exception on the way
  // must not leak it.
  auto own = std::make_unique<Logger>();
  logger = own.get();

  const DispatchRow rows[] = {
      {SymbolTag::equal, &FpBvEncoder::encode_equality},
      {SymbolTag::fp_equal, &FpBvEncoder::encode_fp_equal},
      {SymbolTag::fp_lt, &FpBvEncoder::encode_lt},
      {SymbolTag::fp_le, &FpBvEncoder::encode_le},
      {SymbolTag::fp_neg, &FpBvEncoder::encode_neg},
      {SymbolTag::fp_add, &FpBvEncoder::encode_add},
      {SymbolTag::fp_sub, &FpBvEncoder::encode_sub},
      {SymbolTag::fp_mul, &FpBvEncoder::encode_mul},
      {SymbolTag::fp_div, &FpBvEncoder::encode_div},
      {SymbolTag::fp_cast, &FpBvEncoder::encode_cast},
      {SymbolTag::fp_from_sbv, &FpBvEncoder::encode_from_sbv},
      {SymbolTag::fp_from_ubv, &FpBvEncoder::encode_from_ubv},
      {SymbolTag::fp_isnan, &FpBvEncoder::encode_isnan},
      {SymbolTag::fp_isinf, &FpBvEncoder::encode_isinf},
      {SymbolTag::fp_iszero, &FpBvEncoder::encode_iszero},
  };
  for (const DispatchRow& row : rows)
    dispatch.insert(row);

  rm_even_bv = seed_rounding_mode(0, mode_width, src_mgr->make_fprounding_even());
  rm_zero_bv = seed_rounding_mode(1, mode_width, src_mgr->make_fprounding_zero());
  rm_plus_inf_bv = seed_rounding_mode(2, mode_width, src_mgr->make_fprounding_plus_inf());
  rm_minus_inf_bv = seed_rounding_mode(3, mode_width, src_mgr->make_fprounding_minus_inf());

  rounding_counter = const_counter = ite_counter = spare_counter = 1;
  holder = std::make_shared<const TermManager::Holder>(
      [this](std::vector<const Term*>* terms) { append_held_terms(terms); });
  src_mgr->add_holder(holder);
  if (dst_mgr != src_mgr) dst_mgr->add_holder(holder);
  static_cast<void>(own.release());
}

FpBvEncoder::~FpBvEncoder() {
  if (logger != nullptr && own_logger) delete logger;
}

const Term* FpBvEncoder::seed_rounding_mode(int code, std::size_t width, const Term* mode) {
  const Term* number = dst_mgr->make_bv_number(code, width);
  cache.insert({mode, number});
  return number;
}

void FpBvEncoder::set_method(SymbolTag::tag kind, EncodeMethod method) {
  dispatch.insert({kind, method})->value.second = method;
}

void FpBvEncoder::append_held_terms(std::vector<const Term*>* terms) const {
  terms->insert(terms->end(), {rm_even_bv, rm_zero_bv, rm_plus_inf_bv, rm_minus_inf_bv});
  cache.for_each([&](const auto& entry) {
    terms->insert(terms->end(), {entry.first, entry.second});
  });
  // What was retracted out of turn is still mentioned, and looked up when its turn comes.
  terms->insert(terms->end(), trail.begin(), trail.end());
  terms->insert(terms->end(), new_bv_terms.begin(), new_bv_terms.end());
}

void FpBvEncoder::set_logger(Logger* l) {
  if (logger != nullptr && own_logger) delete logger;
  logger = l;
  own_logger = false;
}

void FpBvEncoder::set_termination_test(const TerminationTest* t) {
  termtest = t;
}

void FpBvEncoder::set_debug_flag(bool on) {
  debug = on;
}

void FpBvEncoder::set_free_constants(bool on) {
  free_constants = on;
}

const Term* FpBvEncoder::get_cached(const Term* t) const {
  if (t == nullptr) return nullptr;
  const TermMap::Node* node = cache.find(t);
  return node == nullptr ? nullptr : node->value.second;
}

void FpBvEncoder::debug_track_term(const Term* t, const char* name) {
  // A stage may have no value under its label: rounding without extra bits makes no correction bit.
  if (!debug || t == nullptr) return;
  const DataType* type = t->get_symbol()->get_output_type();
  const Term* c = dst_mgr->make_constant(dst_mgr->make_unique_symbol(name, type));
  const bool is_bool = type == dst_mgr->get_bool_type();
  add_side_constraint(is_bool ? dst_mgr->make_iff(t, c) : dst_mgr->make_equal(t, c));
}

void FpBvEncoder::debug_track_part(const char* prefix, const char* part, std::size_t number,
                                   const Term* t) {
  if (!debug) return;
  debug_track_term(t, (std::string(prefix) + part + std::to_string(number)).c_str());
}

}  // namespace vorn::fp
