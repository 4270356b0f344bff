// Statuses, managers, and what is handed back.
#include "vorn/c/types.h"

#include <gmp.h>

#include <cstdlib>
#include <memory>
#include <new>

#include "vorn/c/guard.h"
#include "vorn/c/handles.h"
#include "vorn/version.h"

using namespace vorn::c;

namespace {

constexpr const char* kStatusTexts[] = {
    "all went well",
    "a pointer is missing",
    "a handle was released",
    "a handle of another manager",
    "an argument that does not fit",
    "an unknown name",
    "not allowed in this state",
    "a script that is wrong",
    "a limit was reached",
    "interrupted",
    "not enough memory",
    "a file cannot be written",
    "an internal error",
};

// GMP's functions are C to it: it is told by an exception, which its frames let pass, and what it
// was computing with is lost to the process.
void* allocate(std::size_t size) {
  void* block = std::malloc(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void* reallocate(void* block, std::size_t /*before*/, std::size_t size) {
  void* moved = std::realloc(block, size);
  if (moved == nullptr) throw std::bad_alloc();
  return moved;
}

void give_back(void* block, std::size_t /*size*/) {
  std::free(block);
}

}  // namespace

const char* vorn_status_text(vorn_status status) {
  const auto row = static_cast<std::size_t>(status);
  return row < std::size(kStatusTexts) ? kStatusTexts[row] : "no status";
}

const char* vorn_last_error(const vorn_manager* manager) {
  if (manager == nullptr) return "there is no manager";
  return manager->fixed_message != nullptr ? manager->fixed_message : manager->message.c_str();
}

const char* vorn_version(void) {
  return VORN_VERSION;
}

vorn_status vorn_manager_create(bool rewrite, vorn_manager** result) {
  if (result == nullptr) return VORN_NULL_POINTER;
  *result = nullptr;
  try {
    *result = std::make_unique<vorn_manager>(rewrite).release();
    return VORN_OK;
  } catch (const std::bad_alloc&) {
    return VORN_OUT_OF_MEMORY;
  } catch (...) {
    return VORN_INTERNAL_ERROR;
  }
}

vorn_status vorn_manager_destroy(vorn_manager* manager) {
  const vorn_status status = enter(manager, __func__, [&] {
    const std::size_t solvers = manager->solvers.size();
    if (solvers == 0 && manager->encoders == 0) return;
    throw Failure(VORN_WRONG_STATE, "the manager is in use: solvers " + std::to_string(solvers) +
                                        ", encoders " + std::to_string(manager->encoders));
  });
  if (status == VORN_OK) const std::unique_ptr<vorn_manager> destroyed(manager);
  return status;
}

vorn_status vorn_manager_collect(vorn_manager* manager) {
  return enter(manager, __func__, [&] { manager->collect(); });
}

vorn_status vorn_manager_count_terms(vorn_manager* manager, uint64_t* result) {
  return answer(manager, __func__, result, [&] { return manager->terms.get_live_count(); });
}

vorn_status vorn_manager_interrupt(vorn_manager* manager) {
  if (manager == nullptr) return VORN_NULL_POINTER;
  manager->stop.request();
  return VORN_OK;
}

void vorn_free_string(char* text) {
  std::free(text);
}

vorn_status vorn_release_list(vorn_manager* manager, vorn_term_list* list) {
  return enter(manager, __func__, [&] {
    check_pointer(list, "the list");
    // All are looked at before any is released, and none of that takes memory.
    for (std::size_t i = 0; i < list->count; ++i)
      get(*manager, list->items[i], "term", i + 1);
    empty_list(*manager, list);
  });
}

void vorn_catch_gmp_memory(void) {
  mp_set_memory_functions(allocate, reallocate, give_back);
}
