// What a manager keeps for its handles, and when it drops terms.
//
// Terms are not counted by their users in the library, so references only say what is to be kept.
// Everything else is found by marking, now and then, when there is enough of it. A collection takes
// models and refutations from solvers, so none comes by itself where one of them was just asked.
#include <algorithm>
#include <new>

#include "vorn/c/handles.h"

vorn_manager::vorn_manager(bool rewrite)
    : terms(rewrite),
      holder(std::make_shared<const vorn::TermManager::Holder>(
          [this](std::vector<const vorn::Term*>* held) { append_held(held); })) {
  terms.add_holder(holder);
  terms.set_termination_test(&stop);
}

vorn_term* vorn_manager::hold(const vorn::Term* term) {
  const std::uint64_t id = term->get_id();
  if (id >= held_terms.size()) held_terms.resize(std::max(id + 1, 2 * id), nullptr);
  vorn_term*& record = held_terms[id];
  if (record == nullptr) {
    vorn_term* taken = term_records.take();
    taken->owner = this;
    taken->term = term;
    record = taken;
  }
  ++record->references;
  return record;
}

vorn_function* vorn_manager::hold(const vorn::Symbol* symbol, const vorn::Term* application) {
  vorn_function*& record = held_functions[symbol->get_name()];
  if (record == nullptr) {
    vorn_function* taken = function_records.take();
    taken->owner = this;
    taken->symbol = symbol;
    taken->application = application;
    record = taken;
  }
  ++record->references;
  return record;
}

void vorn_manager::release(vorn_term* record) {
  // A list of the caller's may have the last reference twice.
  if (record->references == 0 || --record->references != 0) return;
  held_terms[record->term->get_id()] = nullptr;
  term_records.give_back(record);
}

void vorn_manager::release(vorn_function* record) {
  if (--record->references != 0) return;
  held_functions.erase(record->symbol->get_name());
  function_records.give_back(record);
}

const vorn_sort* vorn_manager::find_sort(const vorn::DataType* type) {
  const std::size_t id = type->get_id();
  if (id >= sorts.size()) sorts.resize(id + 1, nullptr);
  if (sorts[id] == nullptr) sorts[id] = &sort_records.emplace_back(vorn_sort{this, type});
  return sorts[id];
}

void vorn_manager::append_held(std::vector<const vorn::Term*>* held) const {
  for (const vorn_term* record : held_terms) {
    if (record != nullptr) held->push_back(record->term);
  }
  for (const auto& [name, record] : held_functions) {
    if (record != nullptr) held->push_back(record->application);
  }
  symbols.append_terms(held);
  for (const vorn_solver* solver : solvers) {
    for (const vorn::c::Asserted& asserted : solver->assertions.get_items())
      held->push_back(asserted.term);
  }
}

void vorn_manager::tidy() {
  if (terms.get_live_count() < garbage_limit) return;
  const auto may_be_asked = [](const vorn_solver* s) { return s->answer.has_value(); };
  if (std::ranges::any_of(solvers, may_be_asked)) return;
  try {
    collect();
  } catch (const std::bad_alloc&) {
    return;  // it takes memory to free some; the garbage stays for another time
  }
  garbage_limit = std::max(kLeastGarbageLimit, 2 * terms.get_live_count());
}

void vorn_manager::collect() {
  for (vorn_solver* solver : solvers) {
    solver->forget_answer();
    if (solver->engine) solver->engine->forget_terms();
  }
  terms.collect({});
}
