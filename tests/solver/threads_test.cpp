// Managers share nothing, so each thread may have its own.
#include <gtest/gtest.h>

#include <array>
#include <thread>
#include <vector>

#include "vorn/solver/solver.h"
#include "vorn/terms/ieee_float.h"
#include "vorn/terms/term_manager.h"

namespace vorn::solver {
namespace {

/// 1 / 3 + 1 / 7 by circuits over literals, whose values need GMP, and by the solver: the bits.
QNumber add_thirds_and_sevenths(int variant) {
  constexpr IEEEFloat::format kFormat{15, 112};
  TermManager terms;
  const auto literal = [&](int denominator) {
    IEEEFloat value(kFormat, IEEEFloat::rounding_mode::nearest_even);
    value.self_round(QNumber(1) / QNumber(denominator));
    return terms.make_fp_number(value);
  };
  const Term* x =
      terms.make_constant(terms.make_unique_symbol("x", terms.get_fp_type(kFormat.e, kFormat.m)));
  const Term* sum = terms.make_fp_add(terms.make_fprounding_even(), literal(3), literal(7));
  Solver solver(terms);
  for (int i = 0; i < variant; ++i)  // so that threads are at different things
    terms.make_bv_number(QNumber(i + 1000) / QNumber(1), 200);
  solver.assert_formula(terms.make_equal(x, sum));
  if (solver.check_sat() != Answer::sat) return -1;
  QNumber bits;
  return terms.is_number(solver.get_value(x), &bits) ? bits : QNumber(-2);
}

TEST(Threads, EachWithItsOwnManager) {
  const QNumber expected = add_thirds_and_sevenths(0);
  ASSERT_GT(expected.sign(), 0);
  std::array<std::vector<QNumber>, 4> results;
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < results.size(); ++i) {
    threads.emplace_back([&result = results[i], i] {
      for (int round = 0; round < 10; ++round)
        result.push_back(add_thirds_and_sevenths(static_cast<int>(i) + round));
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  for (const std::vector<QNumber>& result : results)
    EXPECT_EQ(result, std::vector<QNumber>(10, expected));
}

}  // namespace
}  // namespace vorn::solver
