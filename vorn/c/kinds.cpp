#include "vorn/c/kinds.h"

#include "vorn/c/guard.h"
#include "vorn/c/handles.h"
#include "vorn/c/operation.h"
#include "vorn/terms/operations.h"

using namespace vorn::c;
using vorn::Operation;

namespace vorn::c {

const Operation& get_operation(vorn_kind kind) {
  // An enumerator of C may be any number.
  const auto number = static_cast<std::uint32_t>(kind);
  const Operation* op = find_operation(static_cast<SymbolTag::tag>(number));
  if (op != nullptr) return *op;
  throw std::invalid_argument("there is no operation of the kind " + std::to_string(number));
}

}  // namespace vorn::c

vorn_status vorn_kind_get_name(vorn_manager* manager, vorn_kind kind, const char** result) {
  // Names are literals, which end with a zero.
  return produce(manager, __func__, result, [&] { return get_operation(kind).name.data(); });
}

vorn_status vorn_find_kind(vorn_manager* manager, const char* name, size_t position,
                           vorn_kind* result) {
  return answer(manager, __func__, result, [&] {
    const std::string_view wanted = get_text(name, "the name");
    size_t left = position;
    for (const Operation& row : vorn::get_operations()) {
      if (row.name != wanted || row.is_printed_only) continue;
      if (left-- == 0) return static_cast<vorn_kind>(row.tag);
    }
    throw Failure(VORN_UNKNOWN_NAME, "no operation '" + std::string(wanted) + "' at position " +
                                         std::to_string(position));
  });
}

vorn_status vorn_kind_get_counts(vorn_manager* manager, vorn_kind kind, size_t* indices,
                                 size_t* least_arguments, size_t* most_arguments) {
  return enter(manager, __func__, [&] {
    check_pointer(indices, "the place for the number of indices");
    check_pointer(least_arguments, "the place for the least number of arguments");
    check_pointer(most_arguments, "the place for the most arguments");
    const Operation& op = get_operation(kind);
    *indices = op.get_index_count();
    *least_arguments = op.get_least_arguments();
    *most_arguments = op.get_most_arguments();
  });
}
