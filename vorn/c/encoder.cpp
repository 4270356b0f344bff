// The encoders. A call on one reads from one manager and builds in another.
#include "vorn/c/encoder.h"

#include <cstdlib>
#include <memory>
#include <unordered_set>

#include "vorn/c/guard.h"
#include "vorn/c/handles.h"
#include "vorn/c/operation.h"
#include "vorn/fp/ieee_bv_encoder.h"
#include "vorn/fp/labels.h"

using namespace vorn::c;
using vorn::Term;
using vorn::fp::FpBvEncoder;
using vorn::fp::Tie;

namespace {

std::unique_ptr<FpBvEncoder> make_encoder(vorn_manager& source, vorn_manager& target,
                                          vorn_encoder_kind kind) {
  if (kind == VORN_ENCODER_BASE) {
    return std::make_unique<FpBvEncoder>(&source.terms, &target.terms);
  }
  if (kind == VORN_ENCODER_IEEE) {
    return std::make_unique<vorn::fp::IeeeBvEncoder>(&source.terms, &target.terms);
  }
  throw std::invalid_argument("there is no encoder " + std::to_string(static_cast<int>(kind)));
}

const Term* get_source_term(const vorn_encoder& encoder, const vorn_term* term) {
  return get(*encoder.owner, term, "the term");
}

/// A reference to a term of the target; null for null.
vorn_term* hold_in_target(const vorn_encoder& encoder, const Term* term) {
  return term == nullptr ? nullptr : encoder.target->hold(term);
}

const Term* encode(vorn_encoder& encoder, const Term* term, std::vector<const Term*>* out) {
  encoder.owner->tidy();
  encoder.target->tidy();
  try {
    return encoder.encoder->get_bv_encoding(term, out);
  } catch (const vorn::Terminated&) {
    encoder.encoder->retract_upto(term);
    encoder.target->stop.clear();
    throw;
  } catch (...) {
    // The constraints of what was encoded on the way are lost.
    encoder.encoder->retract_upto(term);
    throw;
  }
}

/// Gives back what the first ties of a list hold, and its memory.
void empty_ties(vorn_manager& manager, vorn_tie_list* list) {
  for (std::size_t i = 0; i < list->count; ++i) {
    const vorn_tie& tie = list->items[i];
    std::free(tie.label);
    if (tie.constant != nullptr) manager.release(tie.constant);
    if (tie.value != nullptr) manager.release(tie.value);
  }
  std::free(list->items);
  *list = {nullptr, 0};
}

void fill_tie(vorn_manager& manager, const Tie& tie, vorn_tie* filled) {
  const vorn::fp::Label& label = vorn::fp::find_label(tie.label);
  *filled = {};
  filled->label = copy_text(tie.label);
  filled->occurrence = tie.occurrence;
  // Names of both are literals, which end with a zero.
  filled->stage = vorn::fp::get_stage_name(label.stage).data();
  filled->reading = vorn::fp::get_reading_name(label.reading).data();
  filled->constant = manager.hold(tie.constant);
  filled->value = manager.hold(tie.value);
}

void fill_ties(vorn_manager& manager, const std::vector<Tie>& ties, vorn_tie_list* list) {
  if (ties.empty()) return;
  list->items = static_cast<vorn_tie*>(std::calloc(ties.size(), sizeof(vorn_tie)));
  if (list->items == nullptr) throw std::bad_alloc();
  try {
    for (const Tie& tie : ties)
      fill_tie(manager, tie, &list->items[list->count++]);
  } catch (...) {
    empty_ties(manager, list);
    throw;
  }
}

}  // namespace

vorn_status vorn_encoder_create(vorn_manager* source, vorn_manager* target, vorn_encoder_kind kind,
                                vorn_encoder** result) {
  return produce(source, __func__, result, [&] {
    check_pointer(target, "the manager to build in");
    std::unique_ptr<FpBvEncoder> made = make_encoder(*source, *target, kind);
    vorn_encoder* encoder = source->encoder_records.take();
    encoder->owner = source;
    encoder->target = target;
    encoder->encoder = std::move(made);
    ++source->encoders;
    if (target != source) ++target->encoders;
    return encoder;
  });
}

vorn_status vorn_encoder_destroy(vorn_encoder* encoder) {
  return enter(encoder, __func__, [&] {
    encoder->encoder.reset();
    --encoder->owner->encoders;
    if (encoder->target != encoder->owner) --encoder->target->encoders;
    encoder->owner->encoder_records.give_back(encoder);
  });
}

vorn_status vorn_encoder_set_debug(vorn_encoder* encoder, bool on) {
  return enter(encoder, __func__, [&] { encoder->encoder->set_debug_flag(on); });
}

vorn_status vorn_encoder_set_free_constants(vorn_encoder* encoder, bool on) {
  return enter(encoder, __func__, [&] { encoder->encoder->set_free_constants(on); });
}

vorn_status vorn_encoder_encode(vorn_encoder* encoder, vorn_term* term, vorn_term** result,
                                vorn_term_list* constraints) {
  if (constraints != nullptr) *constraints = {nullptr, 0};
  return produce(encoder, __func__, result, [&] {
    check_pointer(constraints, "the place for the constraints");
    const Term* asked = get_source_term(*encoder, term);
    std::vector<const Term*> out;
    const Term* encoding = encode(*encoder, asked, &out);
    try {
      fill_list(*encoder->target, out, constraints);
      return encoder->target->hold(encoding);
    } catch (...) {
      empty_list(*encoder->target, constraints);
      encoder->encoder->retract_upto(asked);
      throw;
    }
  });
}

vorn_status vorn_encoder_get_cached(vorn_encoder* encoder, vorn_term* term, vorn_term** result) {
  return produce(encoder, __func__, result, [&] {
    return hold_in_target(*encoder, encoder->encoder->get_cached(get_source_term(*encoder, term)));
  });
}

vorn_status vorn_encoder_define(vorn_encoder* encoder, vorn_term* term, vorn_term* encoding) {
  return enter(encoder, __func__, [&] {
    const Term* defined = get_source_term(*encoder, term);
    encoder->encoder->define_encoding(defined, get(*encoder->target, encoding, "the encoding"));
  });
}

vorn_status vorn_encoder_supports(vorn_encoder* encoder, vorn_kind kind, bool* result) {
  return answer(encoder, __func__, result,
                [&] { return encoder->encoder->supports(get_operation(kind).tag); });
}

vorn_status vorn_encoder_get_choice(vorn_encoder* encoder, vorn_term* term, vorn_term** result) {
  return produce(encoder, __func__, result, [&] {
    const Term* asked = get_source_term(*encoder, term);
    if (encoder->encoder->get_cached(asked) == nullptr) {
      throw Failure(VORN_WRONG_STATE, "the term has not been encoded");
    }
    return hold_in_target(*encoder, encoder->encoder->get_choice(asked));
  });
}

vorn_status vorn_encoder_retract(vorn_encoder* encoder, vorn_term* term) {
  return enter(encoder, __func__,
               [&] { encoder->encoder->retract_upto(get_source_term(*encoder, term)); });
}

vorn_status vorn_encoder_take_bv_terms(vorn_encoder* encoder, vorn_term_list* result) {
  return list(encoder, __func__, result, [&](vorn_term_list* filled) {
    std::vector<const Term*> terms;
    encoder->encoder->get_new_bv_terms(terms);
    fill_list(*encoder->owner, terms, filled);
  });
}

// Labels --------------------------------------------------------------------------------------

vorn_status vorn_encoder_find_ties(vorn_encoder* encoder, vorn_term* const* constraints,
                                   size_t count, vorn_tie_list* result) {
  if (result != nullptr) *result = {nullptr, 0};
  return enter(encoder, __func__, [&] {
    check_pointer(result, "the place for the result");
    vorn_manager& target = *encoder->target;
    const std::vector<const Term*> given = get_all(target, constraints, count);
    std::unordered_set<const Term*> declared;
    for (const auto& declaration : target.symbols.get_declarations())
      declared.insert(declaration.constant);
    const auto is_input = [&](const Term* t) { return declared.contains(t); };
    fill_ties(target, vorn::fp::find_ties(target.terms, given, is_input), result);
  });
}

vorn_status vorn_release_ties(vorn_encoder* encoder, vorn_tie_list* list) {
  return enter(encoder, __func__, [&] {
    check_pointer(list, "the list");
    for (std::size_t i = 0; i < list->count; ++i) {
      get(*encoder->target, list->items[i].constant, "the constant of tie", i + 1);
      get(*encoder->target, list->items[i].value, "the value of tie", i + 1);
    }
    empty_ties(*encoder->target, list);
  });
}
