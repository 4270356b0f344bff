// Encodings: how many a second, and how many terms each takes.
//
// Names are encoder/operation/format/mode; the argument is the number of operations, each on fresh
// variables, that one encoder is asked for: times should grow as the argument does.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

#include "bench/variables.h"
#include "vorn/fp/ieee_bv_encoder.h"
#include "vorn/terms/term_manager.h"

namespace {

using vorn::Operation;
using vorn::Term;
using vorn::TermManager;

/// What a conversion of the format is into; an integer becomes a float of the format itself.
vorn::IEEEFloat::format find_target(const Operation& op, vorn::IEEEFloat::format f) {
  return op.tag == vorn::SymbolTag::fp_cast ? vorn::IEEEFloat::format{f.e - 3, f.m / 2} : f;
}

template <typename Encoder>
bool is_supported(const Operation& op) {
  TermManager mgr;
  return Encoder(&mgr, &mgr).supports(op.tag);
}

template <typename Encoder>
void encode_fresh(benchmark::State& state, const Operation& op, vorn::IEEEFloat::format f,
                  bool symbolic_mode) {
  const auto count = static_cast<std::size_t>(state.range(0));
  double terms = 0;
  for (auto _ : state) {
    state.PauseTiming();
    TermManager mgr;
    Encoder encoder(&mgr, &mgr);
    std::vector<const Term*> operations;
    for (std::size_t i = 0; i < count; ++i) {
      const Term* rm = symbolic_mode ? bench::make_variable(mgr, mgr.get_fprounding_type())
                                     : mgr.make_fprounding_even();
      operations.push_back(bench::apply_to_variables(mgr, op, rm, f, find_target(op, f)));
    }
    const std::uint64_t before = mgr.get_term_count();
    std::vector<const Term*> out;
    state.ResumeTiming();
    for (const Term* operation : operations) {
      benchmark::DoNotOptimize(encoder.get_bv_encoding(operation, &out));
    }
    terms = static_cast<double>(mgr.get_term_count() - before) / static_cast<double>(count);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.counters["terms/encoding"] = terms;
}

template <typename Encoder>
void register_rows(const std::string& encoder) {
  constexpr vorn::IEEEFloat::format kFormats[] = {{8, 23}, {11, 52}};
  for (const Operation* op : bench::list_operations()) {
    if (!is_supported<Encoder>(*op)) continue;
    for (const vorn::IEEEFloat::format& f : kFormats) {
      for (const bool symbolic : {false, true}) {
        if (symbolic && !op->is_rounded()) continue;
        const std::string name = encoder + "/" + std::string(op->short_name) + "/" +
                                 std::to_string(f.e) + "," + std::to_string(f.m) +
                                 (symbolic ? "/symbolic" : "/constant");
        benchmark::RegisterBenchmark(name.c_str(),
                                     [op, f, symbolic](benchmark::State& state) {
                                       encode_fresh<Encoder>(state, *op, f, symbolic);
                                     })
            ->Arg(100)
            ->Arg(1000)
            ->Unit(benchmark::kMillisecond);
      }
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  register_rows<vorn::fp::FpBvEncoder>("base");
  register_rows<vorn::fp::IeeeBvEncoder>("ieee");
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
