// What the tests of the C interface share: each is a program of C that counts what is wrong.
#ifndef VORN_TESTS_C_CHECK_H
#define VORN_TESTS_C_CHECK_H

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "vorn/c/vorn.h"

static int check_count = 0;
static int check_failures = 0;

static inline void check_that(bool holds, const char* text, const char* file, int line) {
  ++check_count;
  if (holds) return;
  ++check_failures;
  fprintf(stderr, "%s:%d: failed: %s\n", file, line, text);
}

static inline void check_status(vorn_status got, vorn_status wanted, const vorn_manager* manager,
                                const char* text, const char* file, int line) {
  check_that(got == wanted, text, file, line);
  if (got == wanted) return;
  fprintf(stderr, "  status %d (%s), expected %d\n  %s\n", (int)got, vorn_status_text(got),
          (int)wanted, manager == NULL ? "" : vorn_last_error(manager));
}

/// The text is handed back.
static inline void check_text(char* got, const char* wanted, const char* file, int line) {
  check_that(got != NULL && strcmp(got, wanted) == 0, wanted, file, line);
  if (got != NULL && strcmp(got, wanted) != 0) fprintf(stderr, "  got %s\n", got);
  vorn_free_string(got);
}

/// The end of a test: its exit status.
static inline int check_end(void) {
  printf("%d checks, %d failed\n", check_count, check_failures);
  return check_count > 0 && check_failures == 0 ? 0 : 1;
}

#define CHECK(condition) check_that((condition), #condition, __FILE__, __LINE__)
// A call that has to succeed, and one that has to fail with a message of that manager in which a
// text occurs.
#define OK(call) check_status((call), VORN_OK, manager, #call, __FILE__, __LINE__)
#define FAILS(call, status, part)                                                          \
  do {                                                                                     \
    check_status((call), (status), manager, #call, __FILE__, __LINE__);                    \
    check_that(strstr(vorn_last_error(manager), (part)) != NULL, vorn_last_error(manager), \
               __FILE__, __LINE__);                                                        \
  } while (0)
// Likewise where there is no manager that a message could be asked of.
#define STATUS(call, status) check_status((call), (status), NULL, #call, __FILE__, __LINE__)
// A text that a call stores in `text`.
#define TEXT(call, wanted)                          \
  do {                                              \
    OK(call);                                       \
    check_text(text, (wanted), __FILE__, __LINE__); \
  } while (0)

#endif
