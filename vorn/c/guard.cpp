#include "vorn/c/guard.h"

#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
#include <system_error>

#include "vorn/smt2/error.h"
#include "vorn/terms/engine.h"
#include "vorn/utils/termination_test.h"

namespace vorn::c {
namespace {

constexpr const char* kNoMemory = "not enough memory";

vorn_status note(vorn_manager& manager, const char* function, std::string_view text,
                 vorn_status status) noexcept {
  try {
    manager.message.assign(function).append(": ").append(text);
  } catch (const std::bad_alloc&) {
    manager.fixed_message = vorn_status_text(status);
  }
  return status;
}

vorn_status note_interrupt(vorn_manager& manager, const char* function) noexcept {
  manager.stop.clear();
  return note(manager, function, "the call was told to stop", VORN_INTERRUPTED);
}

}  // namespace

vorn_status report(vorn_manager& manager, const char* function) noexcept {
  const auto as = [&](vorn_status status, const std::exception& error) {
    return note(manager, function, error.what(), status);
  };
  try {
    throw;
  } catch (const Failure& error) {
    return as(error.get_status(), error);
  } catch (const std::bad_alloc&) {
    manager.fixed_message = kNoMemory;
    return VORN_OUT_OF_MEMORY;
  } catch (const Terminated&) {
    return note_interrupt(manager, function);
  } catch (const smt2::LimitError&) {
    return note_interrupt(manager, function);
  } catch (const smt2::ScriptError& error) {
    return as(VORN_SCRIPT_ERROR, error);
  } catch (const std::system_error& error) {
    return as(VORN_FILE_ERROR, error);
  } catch (const std::invalid_argument& error) {
    return as(VORN_INVALID_ARGUMENT, error);
  } catch (const std::length_error& error) {
    return as(VORN_LIMIT_REACHED, error);
  } catch (const std::exception& error) {
    return as(VORN_INTERNAL_ERROR, error);
  } catch (...) {
    return note(manager, function, "an exception of an unknown kind", VORN_INTERNAL_ERROR);
  }
}

// Handles -------------------------------------------------------------------------------------

namespace {

[[noreturn]] void fail(vorn_status status, std::string_view what, std::size_t number,
                       std::string_view complaint) {
  std::string text(what);
  if (number != 0) text += " " + std::to_string(number);
  throw Failure(status, text.append(complaint));
}

template <class Record>
void check_owner(const vorn_manager& manager, const Record* record, std::string_view what,
                 std::size_t number) {
  if (record == nullptr) fail(VORN_NULL_POINTER, what, number, " is missing");
  if (record->owner != &manager) {
    fail(VORN_FOREIGN_HANDLE, what, number, " belongs to another manager");
  }
}

template <class Record>
void check_alive(const vorn_manager& manager, const Record* record, std::string_view what,
                 std::size_t number) {
  check_owner(manager, record, what, number);
  if (!record->is_alive()) fail(VORN_RELEASED_HANDLE, what, number, " was released");
}

}  // namespace

const Term* get(const vorn_manager& manager, const vorn_term* record, std::string_view what,
                std::size_t number) {
  check_alive(manager, record, what, number);
  return record->term;
}

const DataType* get(const vorn_manager& manager, const vorn_sort* record, std::string_view what,
                    std::size_t number) {
  check_owner(manager, record, what, number);
  return record->type;
}

const Symbol* get(const vorn_manager& manager, const vorn_function* record, std::string_view what) {
  check_alive(manager, record, what, 0);
  return record->symbol;
}

std::vector<const Term*> get_all(const vorn_manager& manager, vorn_term* const* records,
                                 std::size_t count) {
  if (count != 0) check_pointer(records, "the list of terms");
  std::vector<const Term*> terms;
  for (std::size_t i = 0; i < count; ++i)
    terms.push_back(get(manager, records[i], "term", i + 1));
  return terms;
}

std::vector<const DataType*> get_all(const vorn_manager& manager, const vorn_sort* const* records,
                                     std::size_t count) {
  if (count != 0) check_pointer(records, "the list of sorts");
  std::vector<const DataType*> types;
  for (std::size_t i = 0; i < count; ++i)
    types.push_back(get(manager, records[i], "sort", i + 1));
  return types;
}

// What is the caller's ------------------------------------------------------------------------

void fail_missing(std::string_view what) {
  throw Failure(VORN_NULL_POINTER, std::string(what) + " is missing");
}

std::string_view get_text(const char* text, std::string_view what) {
  check_pointer(text, what);
  return text;
}

char* copy_text(std::string_view text) {
  // The caller is C, which has no delete.
  auto* copy = static_cast<char*>(std::malloc(text.size() + 1));
  if (copy == nullptr) throw std::bad_alloc();
  std::memcpy(copy, text.data(), text.size());
  copy[text.size()] = '\0';
  return copy;
}

void fill_list(vorn_manager& manager, std::span<const Term* const> terms, vorn_term_list* list) {
  if (terms.empty()) return;
  list->items = static_cast<vorn_term**>(std::malloc(terms.size() * sizeof(vorn_term*)));
  if (list->items == nullptr) throw std::bad_alloc();
  try {
    for (const Term* term : terms) {
      list->items[list->count] = manager.hold(term);
      ++list->count;
    }
  } catch (...) {
    empty_list(manager, list);
    throw;
  }
}

void empty_list(vorn_manager& manager, vorn_term_list* list) {
  for (std::size_t i = 0; i < list->count; ++i)
    manager.release(list->items[i]);
  std::free(list->items);
  *list = {nullptr, 0};
}

}  // namespace vorn::c
