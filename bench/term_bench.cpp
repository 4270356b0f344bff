// Construction of terms: how many a second, and how many bytes each takes.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "vorn/terms/term_manager.h"

namespace {

using vorn::Term;
using vorn::TermManager;

constexpr std::size_t kVariables = 1024;

std::vector<const Term*> make_variables(TermManager& mgr) {
  std::vector<const Term*> variables;
  for (std::size_t i = 0; i < kVariables; ++i) {
    variables.push_back(mgr.make_constant(mgr.make_unique_symbol("v", mgr.get_bv_type(32))));
  }
  return variables;
}

/// Every pair of variables, so that no two terms are equal: all misses of the sharing table.
void fresh_binary_terms(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  double bytes_per_term = 0;
  for (auto _ : state) {
    state.PauseTiming();
    TermManager mgr(state.range(1) != 0);
    const std::vector<const Term*> v = make_variables(mgr);
    const std::size_t bytes = mgr.get_term_bytes();
    state.ResumeTiming();
    for (std::size_t i = 0; i < count; ++i) {
      benchmark::DoNotOptimize(mgr.make_bv_sub(v[i % kVariables], v[i / kVariables]));
    }
    bytes_per_term = static_cast<double>(mgr.get_term_bytes() - bytes) / static_cast<double>(count);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.counters["bytes/term"] = bytes_per_term;
}
BENCHMARK(fresh_binary_terms)
    ->ArgsProduct({{10'000, 100'000, 1'000'000}, {0, 1}})
    ->ArgNames({"terms", "rewrite"})
    ->Unit(benchmark::kMillisecond);

/// The same terms again: all hits.
void shared_binary_terms(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  TermManager mgr(false);
  const std::vector<const Term*> v = make_variables(mgr);
  const auto build = [&]() {
    for (std::size_t i = 0; i < count; ++i) {
      benchmark::DoNotOptimize(mgr.make_bv_sub(v[i % kVariables], v[i / kVariables]));
    }
  };
  build();
  for (auto _ : state)
    build();
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(shared_binary_terms)->Arg(10'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
