// Terms: operations of any kind, references, and what a term is made of.
#include "vorn/c/terms.h"

#include <array>
#include <stdexcept>
#include <utility>

#include "vorn/c/guard.h"
#include "vorn/c/handles.h"
#include "vorn/c/names.h"
#include "vorn/c/operation.h"
#include "vorn/terms/operations.h"

using namespace vorn::c;
using vorn::Indexing;
using vorn::Operation;
using vorn::Term;

namespace {

/// Arguments of the usual operations, and of others, without an allocation for the former.
class Arguments {
 public:
  Arguments(const vorn_manager& manager, std::span<vorn_term* const> records) {
    if (records.size() > few.size()) many.resize(records.size());
    const std::span<const Term*> all = many.empty() ? std::span(few).first(records.size()) : many;
    for (std::size_t i = 0; i < records.size(); ++i)
      all[i] = get(manager, records[i], "argument", i + 1);
    terms = all;
  }
  std::span<const Term* const> get_terms() const { return terms; }

 private:
  std::array<const Term*, 4> few = {};
  std::vector<const Term*> many;
  std::span<const Term* const> terms;
};

const Term* make_term(vorn_manager& manager, vorn_kind kind, std::span<const std::size_t> indices,
                      std::span<const Term* const> arguments) {
  const Operation& op = get_operation(kind);
  vorn::TermManager& terms = manager.terms;
  if (op.indexing != Indexing::format || indices.size() != 2) {
    return terms.make(op.tag, indices, arguments);
  }
  const std::array format = {indices[0], uncount_hidden_bit(indices[1])};
  return terms.make(op.tag, format, arguments);
}

const Term* get_term(const vorn_manager& manager, const vorn_term* record) {
  return get(manager, record, "the term");
}

/// The indices of the name of an operation, as SMT-LIB has them.
std::vector<std::size_t> list_indices(const Term* term) {
  const Operation* op = vorn::find_operation(term->get_tag());
  if (op == nullptr) return {};
  if (op->indexing == Indexing::format) {
    return {term->get_type()->get_e(), term->get_type()->get_m() + 1};
  }
  const vorn::Symbol::Indices& kept = term->get_symbol()->get_indices();
  return {kept.begin(), kept.begin() + static_cast<std::ptrdiff_t>(op->get_index_count())};
}

bool is_literal(const vorn_manager& manager, const Term* term) {
  const vorn::Symbol* symbol = term->get_symbol();
  return symbol->get_literal() != nullptr || manager.terms.is_fprounding(symbol, nullptr) ||
         term == manager.terms.make_true() || term == manager.terms.make_false();
}

}  // namespace

namespace vorn::c {

vorn_status make(vorn_manager* manager, const char* function, vorn_kind kind,
                 std::span<const std::size_t> indices, std::span<vorn_term* const> arguments,
                 vorn_term** result) {
  return produce(manager, function, result, [&] {
    manager->tidy();
    const Arguments given(*manager, arguments);
    return manager->hold(make_term(*manager, kind, indices, given.get_terms()));
  });
}

}  // namespace vorn::c

// References ----------------------------------------------------------------------------------

vorn_status vorn_term_retain(vorn_manager* manager, vorn_term* term) {
  return enter(manager, __func__, [&] {
    get_term(*manager, term);
    ++term->references;
  });
}

vorn_status vorn_function_retain(vorn_manager* manager, vorn_function* function) {
  return enter(manager, __func__, [&] {
    get(*manager, function, "the function");
    ++function->references;
  });
}

vorn_status vorn_term_release(vorn_manager* manager, vorn_term* term) {
  return enter(manager, __func__, [&] {
    get_term(*manager, term);
    manager->release(term);
  });
}

vorn_status vorn_function_release(vorn_manager* manager, vorn_function* function) {
  return enter(manager, __func__, [&] {
    get(*manager, function, "the function");
    manager->release(function);
  });
}

// Construction --------------------------------------------------------------------------------

vorn_status vorn_make(vorn_manager* manager, vorn_kind kind, const size_t* indices,
                      size_t index_count, vorn_term* const* arguments, size_t count,
                      vorn_term** result) {
  // A null list is reported like every other error, and must not become a span before.
  if ((indices == nullptr && index_count != 0) || (arguments == nullptr && count != 0)) {
    return produce(manager, __func__, result, [&]() -> vorn_term* {
      throw Failure(VORN_NULL_POINTER, "the list of indices or arguments is missing");
    });
  }
  return make(manager, __func__, kind, {indices, index_count}, {arguments, count}, result);
}

vorn_status vorn_make_const_array(vorn_manager* manager, const vorn_sort* sort, vorn_term* element,
                                  vorn_term** result) {
  return produce(manager, __func__, result, [&] {
    manager->tidy();
    const vorn::DataType* type = get(*manager, sort, "the sort");
    const Term* value = get(*manager, element, "the element");
    return manager->hold(manager->terms.make_const_array(type, value));
  });
}

vorn_status vorn_apply(vorn_manager* manager, vorn_function* function, vorn_term* const* arguments,
                       size_t count, vorn_term** result) {
  return produce(manager, __func__, result, [&] {
    manager->tidy();
    const vorn::Symbol* symbol = get(*manager, function, "the function");
    const std::vector<const Term*> terms = get_all(*manager, arguments, count);
    return manager->hold(manager->terms.make_application(symbol, terms));
  });
}

// Inspection ----------------------------------------------------------------------------------

vorn_status vorn_term_get_kind(vorn_manager* manager, vorn_term* term, vorn_kind* result) {
  return answer(manager, __func__, result,
                [&] { return static_cast<vorn_kind>(get_term(*manager, term)->get_tag()); });
}

vorn_status vorn_term_get_sort(vorn_manager* manager, vorn_term* term, const vorn_sort** result) {
  return produce(manager, __func__, result,
                 [&] { return manager->find_sort(get_term(*manager, term)->get_type()); });
}

vorn_status vorn_term_count_arguments(vorn_manager* manager, vorn_term* term, size_t* result) {
  return answer(manager, __func__, result, [&] { return get_term(*manager, term)->get_arity(); });
}

vorn_status vorn_term_get_argument(vorn_manager* manager, vorn_term* term, size_t position,
                                   vorn_term** result) {
  return produce(manager, __func__, result, [&] {
    const Term* t = get_term(*manager, term);
    check_position(position, t->get_arity(), "arguments");
    return manager->hold(t->get_arg(position));
  });
}

vorn_status vorn_term_get_indices(vorn_manager* manager, vorn_term* term, size_t indices[2],
                                  size_t* count) {
  return enter(manager, __func__, [&] {
    check_pointer(indices, "the place for indices");
    check_pointer(count, "the place for their number");
    const std::vector<std::size_t> found = list_indices(get_term(*manager, term));
    for (std::size_t i = 0; i < found.size(); ++i)
      indices[i] = found[i];
    *count = found.size();
  });
}

vorn_status vorn_term_get_name(vorn_manager* manager, vorn_term* term, char** result) {
  return produce(manager, __func__, result, [&] {
    const Term* t = get_term(*manager, term);
    if (const Operation* op = vorn::find_operation(t->get_tag())) return copy_text(op->name);
    if (t->get_symbol()->get_literal() == nullptr) return copy_text(t->get_symbol()->get_name());
    throw std::invalid_argument("a literal has no name: " + t->to_string());
  });
}

vorn_status vorn_term_get_function(vorn_manager* manager, vorn_term* term, vorn_function** result) {
  return produce(manager, __func__, result, [&] {
    const Term* t = get_term(*manager, term);
    if (t->get_symbol()->is_function()) return manager->hold(t->get_symbol(), t);
    throw std::invalid_argument("no application of a function");
  });
}

vorn_status vorn_term_is_literal(vorn_manager* manager, vorn_term* term, bool* result) {
  return answer(manager, __func__, result,
                [&] { return is_literal(*manager, get_term(*manager, term)); });
}

vorn_status vorn_term_get_id(vorn_manager* manager, vorn_term* term, uint64_t* result) {
  return answer(manager, __func__, result, [&] { return get_term(*manager, term)->get_id(); });
}

vorn_status vorn_term_to_string(vorn_manager* manager, vorn_term* term, char** result) {
  return produce(manager, __func__, result,
                 [&] { return copy_text(get_term(*manager, term)->to_string()); });
}
