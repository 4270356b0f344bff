// Encodings: how many a second, and how many terms each takes.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

#include "vorn/fp/fp_bv_encoder.h"
#include "vorn/terms/term_manager.h"

namespace {

using vorn::Term;
using vorn::TermManager;

using Operation = const Term* (*)(TermManager&, const Term* rm, const Term* x, const Term* y);

struct Row {
  const char* name;
  Operation build;
};

const Row kRows[] = {
    {"eq", [](TermManager& t, const Term*, const Term* x,
              const Term* y) { return t.make_fp_equal(x, y); }},
    {"lt",
     [](TermManager& t, const Term*, const Term* x, const Term* y) { return t.make_fp_lt(x, y); }},
    {"le",
     [](TermManager& t, const Term*, const Term* x, const Term* y) { return t.make_fp_le(x, y); }},
    {"neg",
     [](TermManager& t, const Term*, const Term* x, const Term*) { return t.make_fp_neg(x); }},
    {"isnan",
     [](TermManager& t, const Term*, const Term* x, const Term*) { return t.make_fp_isnan(x); }},
    {"add", [](TermManager& t, const Term* rm, const Term* x,
               const Term* y) { return t.make_fp_add(rm, x, y); }},
    {"mul", [](TermManager& t, const Term* rm, const Term* x,
               const Term* y) { return t.make_fp_mul(rm, x, y); }},
    {"div", [](TermManager& t, const Term* rm, const Term* x,
               const Term* y) { return t.make_fp_div(rm, x, y); }},
};

/// Encodes `count` operations on fresh variables with one encoder.
void encode_fresh(benchmark::State& state, const Row& row, std::size_t e, std::size_t m,
                  bool symbolic_mode) {
  const auto count = static_cast<std::size_t>(state.range(0));
  double terms = 0;
  for (auto _ : state) {
    state.PauseTiming();
    TermManager mgr;
    vorn::fp::FpBvEncoder encoder(&mgr, &mgr);
    const auto variable = [&](const vorn::DataType* type) {
      return mgr.make_constant(mgr.make_unique_symbol("v", type));
    };
    const Term* rm =
        symbolic_mode ? variable(mgr.get_fprounding_type()) : mgr.make_fprounding_even();
    std::vector<const Term*> operations;
    for (std::size_t i = 0; i < count; ++i) {
      const Term* x = variable(mgr.get_fp_type(e, m));
      operations.push_back(row.build(mgr, rm, x, variable(mgr.get_fp_type(e, m))));
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

void register_all() {
  constexpr std::size_t kFormats[][2] = {{8, 23}, {11, 52}};
  for (const Row& row : kRows) {
    const bool rounds = std::string(row.name).size() == 3 && row.name != std::string("neg");
    for (const auto& [e, m] : kFormats) {
      for (const bool symbolic : {false, true}) {
        if (symbolic && !rounds) continue;
        const std::string name = std::string(row.name) + "/" + std::to_string(e) + "," +
                                 std::to_string(m) + (symbolic ? "/symbolic_rm" : "");
        benchmark::RegisterBenchmark(name.c_str(),
                                     [&row, e = e, m = m, symbolic](benchmark::State& state) {
                                       encode_fresh(state, row, e, m, symbolic);
                                     })
            ->Arg(100)
            ->Arg(1000)
            ->Arg(10'000)
            ->Unit(benchmark::kMillisecond);
      }
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  register_all();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
