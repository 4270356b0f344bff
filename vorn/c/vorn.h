// The C interface of libvorn: C11, and C++ as well. All of it is in the headers that this one
// includes; vorn/c/types.h says who owns what, and what becomes of errors.
#ifndef VORN_C_VORN_H
#define VORN_C_VORN_H

#include "vorn/c/encoder.h"
#include "vorn/c/kinds.h"
#include "vorn/c/operations.h"
#include "vorn/c/solver.h"
#include "vorn/c/sorts.h"
#include "vorn/c/terms.h"
#include "vorn/c/text.h"
#include "vorn/c/types.h"
#include "vorn/c/values.h"

#endif
