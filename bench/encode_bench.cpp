// Encodings: how many a second, and how many terms each takes.
//
// Names are encoder/operation/format/mode; the argument is the number of operations, each on fresh
// variables, that one encoder is asked for: times should grow as the argument does.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

#include "vorn/fp/ieee_bv_encoder.h"
#include "vorn/terms/term_manager.h"

namespace {

using vorn::Term;
using vorn::TermManager;

/// Fresh operands: a rounding mode, two floats, an integer of 32 bits.
struct Operands {
  const Term* rm;
  const Term* x;
  const Term* y;
  const Term* v;
};

struct Row {
  const char* name;
  bool rounds;
  const Term* (*build)(TermManager& t, const Operands& o, std::size_t e, std::size_t m);
};

const Row kRows[] = {
    {"eq", false,
     [](TermManager& t, const Operands& o, std::size_t, std::size_t) {
       return t.make_fp_equal(o.x, o.y);
     }},
    {"lt", false,
     [](TermManager& t, const Operands& o, std::size_t, std::size_t) {
       return t.make_fp_lt(o.x, o.y);
     }},
    {"le", false,
     [](TermManager& t, const Operands& o, std::size_t, std::size_t) {
       return t.make_fp_le(o.x, o.y);
     }},
    {"neg", false,
     [](TermManager& t, const Operands& o, std::size_t, std::size_t) {
       return t.make_fp_neg(o.x);
     }},
    {"isnan", false,
     [](TermManager& t, const Operands& o, std::size_t, std::size_t) {
       return t.make_fp_isnan(o.x);
     }},
    {"add", true,
     [](TermManager& t, const Operands& o, std::size_t, std::size_t) {
       return t.make_fp_add(o.rm, o.x, o.y);
     }},
    {"sub", true,
     [](TermManager& t, const Operands& o, std::size_t, std::size_t) {
       return t.make_fp_sub(o.rm, o.x, o.y);
     }},
    {"mul", true,
     [](TermManager& t, const Operands& o, std::size_t, std::size_t) {
       return t.make_fp_mul(o.rm, o.x, o.y);
     }},
    {"div", true,
     [](TermManager& t, const Operands& o, std::size_t, std::size_t) {
       return t.make_fp_div(o.rm, o.x, o.y);
     }},
    {"cast", true,
     [](TermManager& t, const Operands& o, std::size_t e, std::size_t m) {
       return t.make_fp_cast(e - 3, m / 2, o.rm, o.x);
     }},
    {"from_sbv", true,
     [](TermManager& t, const Operands& o, std::size_t e, std::size_t m) {
       return t.make_fp_from_sbv(e, m, o.rm, o.v);
     }},
    {"from_ubv", true,
     [](TermManager& t, const Operands& o, std::size_t e, std::size_t m) {
       return t.make_fp_from_ubv(e, m, o.rm, o.v);
     }},
};

template <typename Encoder>
void encode_fresh(benchmark::State& state, const Row& row, std::size_t e, std::size_t m,
                  bool symbolic_mode) {
  const auto count = static_cast<std::size_t>(state.range(0));
  double terms = 0;
  for (auto _ : state) {
    state.PauseTiming();
    TermManager mgr;
    Encoder encoder(&mgr, &mgr);
    const auto variable = [&](const vorn::DataType* type) {
      return mgr.make_constant(mgr.make_unique_symbol("v", type));
    };
    const vorn::DataType* type = mgr.get_fp_type(e, m);
    std::vector<const Term*> operations;
    for (std::size_t i = 0; i < count; ++i) {
      Operands o{};
      o.rm = symbolic_mode ? variable(mgr.get_fprounding_type()) : mgr.make_fprounding_even();
      o.x = variable(type);
      o.y = variable(type);
      o.v = variable(mgr.get_bv_type(32));
      operations.push_back(row.build(mgr, o, e, m));
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
  constexpr std::size_t kFormats[][2] = {{8, 23}, {11, 52}};
  for (const Row& row : kRows) {
    for (const auto& [e, m] : kFormats) {
      for (const bool symbolic : {false, true}) {
        if (symbolic && !row.rounds) continue;
        const std::string name = encoder + "/" + row.name + "/" + std::to_string(e) + "," +
                                 std::to_string(m) + (symbolic ? "/symbolic" : "/constant");
        benchmark::RegisterBenchmark(name.c_str(),
                                     [&row, e = e, m = m, symbolic](benchmark::State& state) {
                                       encode_fresh<Encoder>(state, row, e, m, symbolic);
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
