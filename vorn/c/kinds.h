// The kinds of terms, in C: one for each operation of the theories.
#ifndef VORN_C_KINDS_H
#define VORN_C_KINDS_H

#include "vorn/c/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/// The operations. The numbers stay, and are those of SymbolTag in C++. Those from VORN_DISTINCT on
/// are defined by others: they can be made, but the terms that come of it are of other kinds.
typedef enum vorn_kind VORN_INT {
  VORN_LEAF = 0,  // literals, constants and applications of uninterpreted functions

  // Boolean structure
  VORN_TRUE = 1,
  VORN_FALSE = 2,
  VORN_NOT = 3,
  VORN_AND = 4,
  VORN_OR = 5,
  VORN_XOR = 6,
  VORN_IMPLIES = 7,
  VORN_IFF = 8,
  VORN_EQUAL = 11,
  VORN_ITE = 12,

  // Bit-vectors
  VORN_BV_EXTRACT = 13,
  VORN_BV_CONCAT = 14,
  VORN_BV_ZERO_EXTEND = 15,
  VORN_BV_SIGN_EXTEND = 16,
  VORN_BV_NOT = 17,
  VORN_BV_NEG = 18,
  VORN_BV_AND = 19,
  VORN_BV_OR = 20,
  VORN_BV_XOR = 21,
  VORN_BV_ADD = 22,
  VORN_BV_SUB = 23,
  VORN_BV_MUL = 24,
  VORN_BV_UDIV = 25,
  VORN_BV_UREM = 26,
  VORN_BV_SDIV = 27,
  VORN_BV_SREM = 28,
  VORN_BV_SMOD = 29,
  VORN_BV_SHL = 30,
  VORN_BV_LSHR = 31,
  VORN_BV_ASHR = 32,
  VORN_BV_COMP = 33,
  VORN_BV_ULT = 34,
  VORN_BV_ULE = 35,
  VORN_BV_SLT = 36,
  VORN_BV_SLE = 37,

  // Floating point
  VORN_FP_FROM_BITS = 40,
  VORN_FP_EQUAL = 42,
  VORN_FP_LT = 43,
  VORN_FP_LE = 44,
  VORN_FP_NEG = 45,
  VORN_FP_ADD = 46,
  VORN_FP_SUB = 47,
  VORN_FP_MUL = 48,
  VORN_FP_DIV = 49,
  VORN_FP_CAST = 50,
  VORN_FP_FROM_SBV = 51,
  VORN_FP_FROM_UBV = 52,
  VORN_FP_TO_SBV = 53,
  VORN_FP_TO_UBV = 54,
  VORN_FP_ISNAN = 55,
  VORN_FP_ISINF = 56,
  VORN_FP_ISZERO = 57,
  VORN_FP_ABS = 58,
  VORN_FP_MIN = 59,
  VORN_FP_MAX = 60,
  VORN_FP_SQRT = 61,
  VORN_FP_FMA = 62,
  VORN_FP_REM = 63,
  VORN_FP_ROUND_TO_INTEGRAL = 64,
  VORN_FP_ISNORMAL = 65,
  VORN_FP_ISSUBNORMAL = 66,
  VORN_FP_ISNEGATIVE = 67,
  VORN_FP_ISPOSITIVE = 68,
  VORN_FP_TO_BITS = 69,

  // Arrays
  VORN_SELECT = 70,
  VORN_STORE = 71,
  VORN_CONST_ARRAY = 72,

  // Operations that are defined by others: names without terms
  VORN_DISTINCT = 81,
  VORN_BV_REPEAT = 82,
  VORN_BV_ROTATE_LEFT = 83,
  VORN_BV_ROTATE_RIGHT = 84,
  VORN_BV_NAND = 85,
  VORN_BV_NOR = 86,
  VORN_BV_XNOR = 87,
  VORN_BV_UGT = 88,
  VORN_BV_UGE = 89,
  VORN_BV_SGT = 90,
  VORN_BV_SGE = 91,
  VORN_BV_NEGO = 92,
  VORN_BV_UADDO = 93,
  VORN_BV_SADDO = 94,
  VORN_BV_USUBO = 95,
  VORN_BV_SSUBO = 96,
  VORN_BV_UMULO = 97,
  VORN_BV_SMULO = 98,
  VORN_BV_SDIVO = 99,
  VORN_BV_REDOR = 100,
  VORN_BV_REDAND = 101,
  VORN_BV_REDXOR = 102,
  VORN_BV_ITE = 103,
  VORN_FP_GT = 104,
  VORN_FP_GE = 105,
} vorn_kind;

/// Stores the name of an operation in SMT-LIB, a constant text.
VORN_EXPORT vorn_status vorn_kind_get_name(vorn_manager* manager, vorn_kind kind,
                                           const char** result);
/// Stores the kind of the operation of that name in SMT-LIB. Several operations share `to_fp`,
/// which `position` tells apart, from 0 in the order of their numbers: bits read as a float,
/// another float, a signed integer. VORN_UNKNOWN_NAME where there is none at that position.
VORN_EXPORT vorn_status vorn_find_kind(vorn_manager* manager, const char* name, size_t position,
                                       vorn_kind* result);
/// Stores how many indices and arguments an operation takes; the most is SIZE_MAX where there may
/// be any number.
VORN_EXPORT vorn_status vorn_kind_get_counts(vorn_manager* manager, vorn_kind kind, size_t* indices,
                                             size_t* least_arguments, size_t* most_arguments);

#ifdef __cplusplus
}
#endif

#endif
