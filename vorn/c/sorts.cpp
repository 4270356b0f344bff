#include "vorn/c/sorts.h"

#include <stdexcept>

#include "vorn/c/guard.h"
#include "vorn/c/handles.h"
#include "vorn/c/names.h"
#include "vorn/smt2/sort_value.h"

using namespace vorn::c;
using vorn::DataType;

namespace {

/// Stores the sort that `find` gives.
template <class Find>
vorn_status get_sort(vorn_manager* manager, const char* function, const vorn_sort** result,
                     const Find& find) {
  return produce(manager, function, result, [&] { return manager->find_sort(find()); });
}

/// The sort behind a handle, which has to be of that kind.
const DataType* get_of_kind(const vorn_manager& manager, const vorn_sort* sort, DataType::Kind kind,
                            const char* wanted) {
  const DataType* type = get(manager, sort, "the sort");
  if (type->get_kind() == kind) return type;
  throw std::invalid_argument(std::string("expected ") + wanted + ", got " + type->to_string());
}

const DataType* get_uninterpreted(const vorn_manager& manager, const vorn_sort* sort) {
  return get_of_kind(manager, sort, DataType::Kind::uninterpreted, "an uninterpreted sort");
}

}  // namespace

vorn_status vorn_get_bool_sort(vorn_manager* manager, const vorn_sort** result) {
  return get_sort(manager, __func__, result, [&] { return manager->terms.get_bool_type(); });
}

vorn_status vorn_get_rounding_mode_sort(vorn_manager* manager, const vorn_sort** result) {
  return get_sort(manager, __func__, result, [&] { return manager->terms.get_fprounding_type(); });
}

vorn_status vorn_get_bv_sort(vorn_manager* manager, size_t width, const vorn_sort** result) {
  return get_sort(manager, __func__, result, [&] { return manager->terms.get_bv_type(width); });
}

vorn_status vorn_get_fp_sort(vorn_manager* manager, size_t eb, size_t sb,
                             const vorn_sort** result) {
  return get_sort(manager, __func__, result,
                  [&] { return manager->terms.get_fp_type(eb, uncount_hidden_bit(sb)); });
}

vorn_status vorn_get_array_sort(vorn_manager* manager, const vorn_sort* index,
                                const vorn_sort* element, const vorn_sort** result) {
  return get_sort(manager, __func__, result, [&] {
    const DataType* indices = get(*manager, index, "the sort of indices");
    return manager->terms.get_array_type(indices, get(*manager, element, "the sort of elements"));
  });
}

vorn_status vorn_get_uninterpreted_sort(vorn_manager* manager, const char* name,
                                        const vorn_sort* const* arguments, size_t count,
                                        const vorn_sort** result) {
  return get_sort(manager, __func__, result, [&] {
    const std::string text(get_text(name, "the name"));
    const std::vector<const DataType*> sorts = get_all(*manager, arguments, count);
    const vorn::smt2::SortDefinition* known = manager->symbols.find_sort(text);
    if (known != nullptr && (!known->is_declared() || known->parameters != count)) {
      throw std::invalid_argument("the sort " + text + " is declared with " +
                                  std::to_string(known->parameters) + " arguments, got " +
                                  std::to_string(count));
    }
    const DataType* type = manager->terms.get_uninterpreted_type(text, sorts);
    if (known == nullptr) declare_sort_name(*manager, text, count);
    return type;
  });
}

vorn_status vorn_sort_get_kind(vorn_manager* manager, const vorn_sort* sort,
                               vorn_sort_kind* result) {
  return answer(manager, __func__, result, [&] {
    return static_cast<vorn_sort_kind>(get(*manager, sort, "the sort")->get_kind());
  });
}

vorn_status vorn_sort_get_width(vorn_manager* manager, const vorn_sort* sort, size_t* result) {
  return answer(manager, __func__, result, [&] {
    return get_of_kind(*manager, sort, DataType::Kind::bit_vector, "a bit-vector sort")
        ->get_width();
  });
}

vorn_status vorn_sort_get_format(vorn_manager* manager, const vorn_sort* sort, size_t* eb,
                                 size_t* sb) {
  return enter(manager, __func__, [&] {
    check_pointer(eb, "the place for eb");
    check_pointer(sb, "the place for sb");
    const DataType* type =
        get_of_kind(*manager, sort, DataType::Kind::floating_point, "a floating-point sort");
    *eb = type->get_e();
    *sb = type->get_m() + 1;
  });
}

vorn_status vorn_sort_get_array(vorn_manager* manager, const vorn_sort* sort,
                                const vorn_sort** index, const vorn_sort** element) {
  if (index != nullptr) *index = nullptr;
  if (element != nullptr) *element = nullptr;
  return enter(manager, __func__, [&] {
    check_pointer(index, "the place for the sort of indices");
    check_pointer(element, "the place for the sort of elements");
    const DataType* type = get_of_kind(*manager, sort, DataType::Kind::array, "an array sort");
    const vorn_sort* found = manager->find_sort(type->get_index());
    *element = manager->find_sort(type->get_element());
    *index = found;
  });
}

vorn_status vorn_sort_get_name(vorn_manager* manager, const vorn_sort* sort, char** result,
                               size_t* arguments) {
  return produce(manager, __func__, result, [&] {
    check_pointer(arguments, "the place for the number of arguments");
    const DataType* type = get_uninterpreted(*manager, sort);
    char* name = copy_text(type->get_name());
    *arguments = type->get_arguments().size();
    return name;
  });
}

vorn_status vorn_sort_get_argument(vorn_manager* manager, const vorn_sort* sort, size_t position,
                                   const vorn_sort** result) {
  return get_sort(manager, __func__, result, [&] {
    const DataType* type = get_uninterpreted(*manager, sort);
    check_position(position, type->get_arguments().size(), "arguments");
    return type->get_arguments()[position];
  });
}

vorn_status vorn_sort_to_string(vorn_manager* manager, const vorn_sort* sort, char** result) {
  return produce(manager, __func__, result,
                 [&] { return copy_text(get(*manager, sort, "the sort")->to_string()); });
}
