// Sorts, in C.
#ifndef VORN_C_SORTS_H
#define VORN_C_SORTS_H

#include "vorn/c/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/// The kinds of sorts.
typedef enum vorn_sort_kind VORN_INT {
  VORN_SORT_BOOL = 0,           // truth values
  VORN_SORT_ROUNDING_MODE = 1,  // the five rounding modes
  VORN_SORT_BIT_VECTOR = 2,     // of one width
  VORN_SORT_FLOAT = 3,          // of one format
  VORN_SORT_ARRAY = 4,          // from sort to sort
  VORN_SORT_UNINTERPRETED = 5,  // declared
} vorn_sort_kind;

/// Store a sort. Widths go from 1 to 2^20.
VORN_EXPORT vorn_status vorn_get_bool_sort(vorn_manager* manager, const vorn_sort** result);
VORN_EXPORT vorn_status vorn_get_rounding_mode_sort(vorn_manager* manager,
                                                    const vorn_sort** result);
VORN_EXPORT vorn_status vorn_get_bv_sort(vorn_manager* manager, size_t width,
                                         const vorn_sort** result);
/// Stores the sort of floats with `eb` bits of exponent and `sb` bits of significand, the hidden
/// bit counted, as (_ FloatingPoint eb sb) in SMT-LIB has them: binary32 is 8 and 24. Both are at
/// least 2, and together no more than 2^20. All of the C interface counts so, other than the
/// classes of C++.
VORN_EXPORT vorn_status vorn_get_fp_sort(vorn_manager* manager, size_t eb, size_t sb,
                                         const vorn_sort** result);
/// Stores the sort of arrays of elements of one sort at indices of another.
VORN_EXPORT vorn_status vorn_get_array_sort(vorn_manager* manager, const vorn_sort* index,
                                            const vorn_sort* element, const vorn_sort** result);
/// Stores the uninterpreted sort of that name applied to `count` sorts; null will do for none. Its
/// first mention declares the name, with that count; another count is an error, and so is a name of
/// a theory.
VORN_EXPORT vorn_status vorn_get_uninterpreted_sort(vorn_manager* manager, const char* name,
                                                    const vorn_sort* const* arguments, size_t count,
                                                    const vorn_sort** result);

/// Stores the kind of a sort.
VORN_EXPORT vorn_status vorn_sort_get_kind(vorn_manager* manager, const vorn_sort* sort,
                                           vorn_sort_kind* result);
/// Stores the width of a bit-vector sort, in bits.
VORN_EXPORT vorn_status vorn_sort_get_width(vorn_manager* manager, const vorn_sort* sort,
                                            size_t* result);
/// Stores the widths of a floating-point sort, as vorn_get_fp_sort has them.
VORN_EXPORT vorn_status vorn_sort_get_format(vorn_manager* manager, const vorn_sort* sort,
                                             size_t* eb, size_t* sb);
/// Stores the sorts of an array's indices and elements.
VORN_EXPORT vorn_status vorn_sort_get_array(vorn_manager* manager, const vorn_sort* sort,
                                            const vorn_sort** index, const vorn_sort** element);
/// Stores the name of an uninterpreted sort, a text of the caller's, and how many sorts it is
/// applied to.
VORN_EXPORT vorn_status vorn_sort_get_name(vorn_manager* manager, const vorn_sort* sort,
                                           char** result, size_t* arguments);
/// Stores the sort that an uninterpreted sort is applied to at a position, from 0.
VORN_EXPORT vorn_status vorn_sort_get_argument(vorn_manager* manager, const vorn_sort* sort,
                                               size_t position, const vorn_sort** result);
/// Stores the sort in SMT-LIB, a text of the caller's.
VORN_EXPORT vorn_status vorn_sort_to_string(vorn_manager* manager, const vorn_sort* sort,
                                            char** result);

#ifdef __cplusplus
}
#endif

#endif
