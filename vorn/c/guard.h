// The way into the library: what every function of the C interface does with its handles, its
// results, and whatever is thrown behind it.
#ifndef VORN_C_GUARD_H
#define VORN_C_GUARD_H

#include <cstddef>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "vorn/c/handles.h"
#include "vorn/c/types.h"
#include "vorn/terms/term.h"

namespace vorn::c {

/// A call that cannot be, with the status that says so.
class Failure : public std::runtime_error {
 public:
  Failure(vorn_status code, const std::string& text) : std::runtime_error(text), status(code) {}
  vorn_status get_status() const { return status; }

 private:
  vorn_status status;
};

/// Notes the exception that is being handled as the manager's message; its status.
vorn_status report(vorn_manager& manager, const char* function) noexcept;

/// The term, sort or function behind a handle. Throws unless that is there, in use, and one of the
/// manager's; `what` names it, with its number unless that is 0.
const Term* get(const vorn_manager& manager, const vorn_term* record, std::string_view what,
                std::size_t number = 0);
const DataType* get(const vorn_manager& manager, const vorn_sort* record, std::string_view what,
                    std::size_t number = 0);
const Symbol* get(const vorn_manager& manager, const vorn_function* record, std::string_view what);
/// What is behind as many handles; null will do for none.
std::vector<const Term*> get_all(const vorn_manager& manager, vorn_term* const* records,
                                 std::size_t count);
std::vector<const DataType*> get_all(const vorn_manager& manager, const vorn_sort* const* records,
                                     std::size_t count);

/// Throws unless a pointer of the caller's is there.
[[noreturn]] void fail_missing(std::string_view what);
inline void check_pointer(const void* pointer, std::string_view what) {
  if (pointer == nullptr) fail_missing(what);
}
/// The text behind a pointer of the caller's.
std::string_view get_text(const char* text, std::string_view what);
/// A copy of a text for the caller, who hands it back by vorn_free_string.
char* copy_text(std::string_view text);
/// Fills a list, which is empty, with references to terms of a manager: all of them or none.
void fill_list(vorn_manager& manager, std::span<const Term* const> terms, vorn_term_list* list);
/// Hands back what is in a list.
void empty_list(vorn_manager& manager, vorn_term_list* list);

/// Runs the body of a function of the interface. What it throws becomes the manager's message and
/// the status.
template <class Body>
vorn_status enter(vorn_manager* manager, const char* function, const Body& body) noexcept {
  if (manager == nullptr) return VORN_NULL_POINTER;
  manager->message.clear();
  manager->fixed_message = nullptr;
  try {
    body();
    return VORN_OK;
  } catch (...) {
    return report(*manager, function);
  }
}

/// The same for what was made with a manager: a solver or an encoder.
template <class Record, class Body>
vorn_status enter(Record* record, const char* function, const Body& body) noexcept {
  if (record == nullptr) return VORN_NULL_POINTER;
  return enter(record->owner, function, [&] {
    if (!record->is_alive()) throw Failure(VORN_RELEASED_HANDLE, "the handle was destroyed");
    body();
  });
}

/// The same for what stores a pointer, which is null first.
template <class Record, class Result, class Body>
vorn_status produce(Record* record, const char* function, Result** result,
                    const Body& body) noexcept {
  if (result != nullptr) *result = nullptr;
  return enter(record, function, [&] {
    if (result == nullptr) fail_missing("the place for the result");
    *result = body();
  });
}

/// The same for what stores a value, which stays as it was where the call fails.
template <class Record, class Result, class Body>
vorn_status answer(Record* record, const char* function, Result* result,
                   const Body& body) noexcept {
  return enter(record, function, [&] {
    if (result == nullptr) fail_missing("the place for the result");
    *result = body();
  });
}

/// The same for what fills a list.
template <class Record, class Body>
vorn_status list(Record* record, const char* function, vorn_term_list* result,
                 const Body& body) noexcept {
  if (result != nullptr) *result = {nullptr, 0};
  return enter(record, function, [&] {
    if (result == nullptr) fail_missing("the place for the result");
    body(result);
  });
}

}  // namespace vorn::c

#endif
