// Literals in, values out.
#include <math.h>

#include "tests/c/check.h"

static const vorn_sort* fp(vorn_manager* manager, size_t eb, size_t sb) {
  const vorn_sort* sort = NULL;
  OK(vorn_get_fp_sort(manager, eb, sb, &sort));
  return sort;
}

static void test_bit_vectors(vorn_manager* manager) {
  vorn_term *a, *b;
  OK(vorn_make_bv_int64(manager, 8, -1, &a));
  OK(vorn_make_bv_uint64(manager, 8, 255, &b));
  CHECK(a == b);
  OK(vorn_make_bv_binary(manager, "11111111", &b));
  CHECK(a == b);
  OK(vorn_make_bv_decimal(manager, 8, "-1", &b));
  CHECK(a == b);
  char* text = NULL;
  TEXT(vorn_value_get_binary(manager, a, &text), "11111111");
  TEXT(vorn_value_get_integer(manager, a, true, &text), "-1");
  TEXT(vorn_value_get_integer(manager, a, false, &text), "255");
  uint64_t number = 0;
  OK(vorn_value_get_uint64(manager, a, &number));
  CHECK(number == 255);
  OK(vorn_make_bv_decimal(manager, 100, "1267650600228229401496703205375", &a));
  TEXT(vorn_value_get_integer(manager, a, true, &text), "-1");
  FAILS(vorn_value_get_uint64(manager, a, &number), VORN_LIMIT_REACHED, "64 bits");
  OK(vorn_make_bv_int64(manager, 64, INT64_MIN, &a));
  OK(vorn_value_get_uint64(manager, a, &number));
  CHECK(number == (uint64_t)1 << 63);
  OK(vorn_make_bv_uint64(manager, 64, UINT64_MAX, &a));
  OK(vorn_value_get_uint64(manager, a, &number));
  CHECK(number == UINT64_MAX);

  FAILS(vorn_make_bv_uint64(manager, 8, 256, &a), VORN_INVALID_ARGUMENT, "256 does not fit");
  FAILS(vorn_make_bv_int64(manager, 8, -129, &a), VORN_INVALID_ARGUMENT, "-129 does not fit");
  FAILS(vorn_make_bv_uint64(manager, 0, 0, &a), VORN_INVALID_ARGUMENT, "width 0");
  FAILS(vorn_make_bv_uint64(manager, ((size_t)1 << 20) + 1, 0, &a), VORN_INVALID_ARGUMENT,
        "widths go");
  FAILS(vorn_make_bv_decimal(manager, 8, "1x", &a), VORN_INVALID_ARGUMENT, "\"1x\"");
  FAILS(vorn_make_bv_decimal(manager, 8, "", &a), VORN_INVALID_ARGUMENT, "integer");
  FAILS(vorn_make_bv_binary(manager, "102", &a), VORN_INVALID_ARGUMENT, "\"102\"");
  FAILS(vorn_make_bv_binary(manager, "", &a), VORN_INVALID_ARGUMENT, "0 and 1");
  FAILS(vorn_make_bv_binary(manager, NULL, &a), VORN_NULL_POINTER, "bits");
  CHECK(a == NULL);
}

/// A number, its mode, and the bits of the half-precision float that it is.
typedef struct row {
  const char* text;
  vorn_rounding_mode mode;
  uint64_t bits;
} row;

static void test_texts(vorn_manager* manager) {
  static const row rows[] = {
      {"1", VORN_RNE, 0x3c00},        {"-1.5", VORN_RNE, 0xbe00},
      {"+0.5e1", VORN_RNE, 0x4500},   {"1E-1", VORN_RNE, 0x2e66},
      {"0.1", VORN_RTP, 0x2e67},      {"0.1", VORN_RTZ, 0x2e66},
      {"-0.1", VORN_RTP, 0xae66},     {"-0.1", VORN_RTN, 0xae67},
      {"1/3", VORN_RNE, 0x3555},      {"-1/3", VORN_RTN, 0xb556},
      {"0x1.8p1", VORN_RNE, 0x4200},  {"0x.8", VORN_RNE, 0x3800},
      {"-0X1p-24", VORN_RNE, 0x8001}, {"0x1p-25", VORN_RNE, 0x0000},
      {"0x1p-25", VORN_RNA, 0x0001},  {"65520", VORN_RNE, 0x7c00},
      {"65520", VORN_RTZ, 0x7bff},    {"1e100", VORN_RTZ, 0x7bff},
      {"-1e-1000", VORN_RTZ, 0x8000}, {"0x1p-99999999999999999999", VORN_RTP, 0x0001},
      {"-0", VORN_RNE, 0x8000},       {"-0.0e7", VORN_RTP, 0x8000},
      {"0", VORN_RTN, 0x0000},        {"NaN", VORN_RNE, 0xfc01},
      {"+oo", VORN_RNE, 0x7c00},      {"-inf", VORN_RNE, 0xfc00},
      {"2049", VORN_RNE, 0x6800},     {"2049", VORN_RNA, 0x6801},
  };
  const vorn_sort* half = fp(manager, 5, 11);
  for (size_t i = 0; i < sizeof rows / sizeof *rows; ++i) {
    vorn_term* term;
    uint64_t bits = 0;
    OK(vorn_make_fp_string(manager, half, rows[i].mode, rows[i].text, &term));
    OK(vorn_value_get_uint64(manager, term, &bits));
    if (bits != rows[i].bits) fprintf(stderr, "%s: %llx\n", rows[i].text, (unsigned long long)bits);
    CHECK(bits == rows[i].bits);
  }
  static const char* const wrong[] = {"",      "-",   "1/0", "1/",   "e1",    "1e",  "0x",   "0xg",
                                      "1.2.3", "--1", "1 ",  "0x1p", "1/2/3", "oo1", "1/-3", "."};
  for (size_t i = 0; i < sizeof wrong / sizeof *wrong; ++i) {
    vorn_term* term;
    FAILS(vorn_make_fp_string(manager, half, VORN_RNE, wrong[i], &term), VORN_INVALID_ARGUMENT,
          "is no number");
  }
  vorn_term* term;
  FAILS(vorn_make_fp_string(manager, half, VORN_RNE, "1e100001", &term), VORN_LIMIT_REACHED,
        "100000");
  FAILS(vorn_make_fp_string(manager, half, (vorn_rounding_mode)5, "1", &term),
        VORN_INVALID_ARGUMENT, "rounding mode 5");
}

static void test_machine_numbers(vorn_manager* manager) {
  const vorn_sort *single = fp(manager, 8, 24), *twice = fp(manager, 11, 53);
  static const double values[] = {0.0, -0.0, 1.5, -1e300, 5e-324, 0.1};
  for (size_t i = 0; i < sizeof values / sizeof *values; ++i) {
    vorn_term* term;
    double back = 7;
    OK(vorn_make_fp_double(manager, twice, VORN_RNE, values[i], &term));
    OK(vorn_value_get_double(manager, term, &back));
    CHECK(memcmp(&back, &values[i], sizeof back) == 0);
    char *decimal = NULL, *hexadecimal = NULL;
    vorn_term* again;
    OK(vorn_value_get_decimal(manager, term, &decimal));
    OK(vorn_make_fp_string(manager, twice, VORN_RNE, decimal, &again));
    CHECK(again == term);
    OK(vorn_value_get_hexadecimal(manager, term, &hexadecimal));
    OK(vorn_make_fp_string(manager, twice, VORN_RTZ, hexadecimal, &again));
    CHECK(again == term);
    vorn_free_string(decimal);
    vorn_free_string(hexadecimal);
  }
  vorn_term *term, *other;
  double back = 0;
  OK(vorn_make_fp_double(manager, single, VORN_RNE, (double)NAN, &term));
  OK(vorn_value_get_double(manager, term, &back));
  CHECK(isnan(back));
  char* text = NULL;
  TEXT(vorn_value_get_decimal(manager, term, &text), "NaN");
  OK(vorn_make_fp_double(manager, single, VORN_RNE, -(double)INFINITY, &term));
  OK(vorn_value_get_double(manager, term, &back));
  CHECK(isinf(back) && back < 0);
  OK(vorn_make_fp_double(manager, single, VORN_RTP, 0.1, &term));
  OK(vorn_make_fp_float(manager, single, VORN_RNE, 0.1F, &other));
  CHECK(term == other);
  TEXT(vorn_value_get_decimal(manager, term, &text), "0.1");
  TEXT(vorn_value_get_hexadecimal(manager, term, &text), "0x1.99999ap-4");
  OK(vorn_make_fp_int64(manager, single, VORN_RTZ, -16777217, &term));
  TEXT(vorn_value_get_decimal(manager, term, &text), "-16777216.0");
  OK(vorn_make_fp_uint64(manager, single, VORN_RTP, UINT64_MAX, &term));
  TEXT(vorn_value_get_hexadecimal(manager, term, &text), "0x1p+64");
  OK(vorn_make_fp_binary(manager, single, "01000000010010010000111111011011", &term));
  OK(vorn_make_fp_bits(manager, single, 0x40490fdb, &other));
  CHECK(term == other);
  OK(vorn_value_get_double(manager, term, &back));
  CHECK((float)back == 3.14159274F);
  OK(vorn_make_fp_bits(manager, single, 0x7fc00000, &term));
  OK(vorn_make_fp_string(manager, single, VORN_RNE, "NaN", &other));
  CHECK(term == other);
  FAILS(vorn_make_fp_binary(manager, single, "0101", &term), VORN_INVALID_ARGUMENT, "4 bits");
  FAILS(vorn_make_fp_bits(manager, single, (uint64_t)1 << 32, &term), VORN_INVALID_ARGUMENT,
        "do not fit");
  const vorn_sort* wide = fp(manager, 30, 40);
  OK(vorn_make_fp_string(manager, wide, VORN_RNE, "0x1p100000000", &term));
  FAILS(vorn_value_get_decimal(manager, term, &text), VORN_LIMIT_REACHED, "2^16");
  TEXT(vorn_value_get_hexadecimal(manager, term, &text), "0x1p+100000000");
}

static void test_other_values(vorn_manager* manager) {
  const vorn_sort *object, *single = fp(manager, 8, 24);
  OK(vorn_get_uninterpreted_sort(manager, "Object", NULL, 0, &object));
  vorn_term *yes, *mode, *element, *one;
  OK(vorn_make_bool(manager, true, &yes));
  OK(vorn_make_rounding_mode(manager, VORN_RNA, &mode));
  OK(vorn_make_element(manager, object, 3, &element));
  OK(vorn_make_fp_int64(manager, single, VORN_RNE, 1, &one));
  bool truth = false;
  OK(vorn_value_get_bool(manager, yes, &truth));
  CHECK(truth);
  vorn_rounding_mode read = VORN_RNE;
  OK(vorn_value_get_rounding_mode(manager, mode, &read));
  CHECK(read == VORN_RNA);
  char* text = NULL;
  TEXT(vorn_value_get_binary(manager, mode, &text), "100");
  TEXT(vorn_value_get_binary(manager, yes, &text), "1");
  uint64_t number = 0;
  OK(vorn_value_get_uint64(manager, element, &number));
  CHECK(number == 3);

  vorn_term* x;
  OK(vorn_declare_constant(manager, "unknown", single, &x));
  FAILS(vorn_value_get_binary(manager, x, &text), VORN_INVALID_ARGUMENT, "expected a literal");
  FAILS(vorn_value_get_binary(manager, element, &text), VORN_INVALID_ARGUMENT, "of bits");
  FAILS(vorn_value_get_bool(manager, one, &truth), VORN_INVALID_ARGUMENT, "(_ FloatingPoint 8 24)");
  FAILS(vorn_value_get_double(manager, yes, &(double){0}), VORN_INVALID_ARGUMENT, "a float");
  FAILS(vorn_value_get_integer(manager, one, true, &text), VORN_INVALID_ARGUMENT, "a bit-vector");
  FAILS(vorn_make_element(manager, single, 0, &element), VORN_INVALID_ARGUMENT, "uninterpreted");
}

int main(void) {
  vorn_manager* manager;
  STATUS(vorn_manager_create(true, &manager), VORN_OK);
  test_bit_vectors(manager);
  test_texts(manager);
  test_machine_numbers(manager);
  test_other_values(manager);
  STATUS(vorn_manager_destroy(manager), VORN_OK);
  return check_end();
}
