// How many assignments are tried in a second: a formula of ten operations on one Float32 or
// Float64, which no assignment fulfils, and a program of a polynomial on a small format. Items are
// assignments.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "vorn/search/enumeration.h"
#include "vorn/terms/term_manager.h"

namespace {

using vorn::IEEEFloat;
using vorn::QNumber;
using vorn::Term;
using vorn::TermManager;
using vorn::search::Enumeration;

/// A polynomial of degree four by Horner's rule is above a bound and not above it: eight sums and
/// products and two comparisons.
void try_polynomial(benchmark::State& state, std::size_t e, std::size_t m) {
  TermManager mgr;
  const Term* rne = mgr.make_fprounding(IEEEFloat::rounding_mode::nearest_even);
  const Term* x = mgr.make_constant(mgr.make_unique_symbol("x", mgr.get_fp_type(e, m)));
  const auto number = [&](int bits) {
    return mgr.make_fp_cast(e, m, rne, mgr.make_fp_number(QNumber(bits), 5, 10));
  };
  const Term* value = number(0x3555);
  for (int i = 1; i <= 4; ++i)
    value = mgr.make_fp_add(rne, mgr.make_fp_mul(rne, value, x), number(0x3c00 + 77 * i));
  const Term* bound = number(0x4900);
  const Term* formulas[] = {
      mgr.make_or(mgr.make_fp_lt(bound, value), mgr.make_fp_lt(bound, mgr.make_fp_neg(value))),
      mgr.make_fp_le(value, bound), mgr.make_fp_le(mgr.make_fp_neg(bound), value)};
  const auto threads = static_cast<unsigned>(state.range(0));
  std::uint64_t tried = 0;
  for (auto _ : state) {
    state.PauseTiming();
    auto enumeration =
        Enumeration::prepare(mgr, formulas, nullptr, std::uint64_t{1} << 62U, threads);
    state.ResumeTiming();
    enumeration->run(2'000'000'000, nullptr);
    tried += enumeration->get_tried();
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(tried));
}

void float16(benchmark::State& state) {
  try_polynomial(state, 5, 10);
}
void float32(benchmark::State& state) {
  try_polynomial(state, 8, 23);
}
void bfloat16(benchmark::State& state) {
  try_polynomial(state, 8, 7);
}

BENCHMARK(float32)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(float16)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(bfloat16)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
