// How these examples take errors: a program that cannot go on says why and ends.
#ifndef EXAMPLE_H
#define EXAMPLE_H

#include <stdio.h>
#include <stdlib.h>

#include "vorn/c/vorn.h"

// A call that has to succeed. `manager` is who knows what was wrong.
#define DO(call)                                         \
  do {                                                   \
    if ((call) != VORN_OK) {                             \
      fprintf(stderr, "%s\n", vorn_last_error(manager)); \
      exit(1);                                           \
    }                                                    \
  } while (0)

#endif
