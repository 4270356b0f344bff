// What a step of propagation costs: one term's result from its arguments, or one argument's range
// from the result and the others. Ranges are random intervals, of all magnitudes or near one, and
// modes either one or any.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "vorn/ranges/transfer.h"
#include "vorn/terms/term_manager.h"

namespace {

using vorn::IEEEFloat;
using vorn::QNumber;
using vorn::SymbolTag;
using vorn::Term;
using vorn::TermManager;
using vorn::ranges::FloatRange;
using vorn::ranges::Range;
using vorn::ranges::RoundingModeSet;

/// A term of an operation on two floats of the format (e, m), and ranges for its arguments.
struct Steps {
  Steps(SymbolTag::tag tag, std::size_t e, std::size_t m, bool is_near_one, bool any_mode) {
    const auto make = [&](const vorn::DataType* type) {
      return mgr.make_constant(mgr.make_unique_symbol("x", type));
    };
    const vorn::DataType* type = mgr.get_fp_type(e, m);
    term = mgr.make(tag, {make(mgr.get_fprounding_type()), make(type), make(type)});
    std::mt19937_64 engine(1);
    for (int i = 0; i < 256; ++i) {
      const RoundingModeSet modes =
          any_mode ? RoundingModeSet::everything()
                   : RoundingModeSet::of(IEEEFloat::rounding_mode::nearest_even);
      arguments.push_back(
          {modes, make_range(type, is_near_one, engine), make_range(type, is_near_one, engine)});
      results.push_back(vorn::ranges::intersect(vorn::ranges::forward(mgr, term, arguments.back()),
                                                make_range(type, is_near_one, engine)));
    }
  }

  static FloatRange make_range(const vorn::DataType* type, bool is_near_one,
                               std::mt19937_64& engine) {
    const IEEEFloat::format f = type->get_format();
    const auto make_value = [&] {
      IEEEFloat x(f, IEEEFloat::rounding_mode::nearest_even);
      const QNumber numerator(static_cast<int>(engine() % 20001) - 10000);
      const int scale = is_near_one ? 0 : static_cast<int>(engine() % 60) - 30;
      x.self_round(numerator / QNumber(1000), scale);
      return FloatRange::of_value(x);
    };
    return make_value().hull(make_value());
  }

  TermManager mgr;
  const Term* term;
  std::vector<std::vector<Range>> arguments;
  std::vector<Range> results;
};

void forward(benchmark::State& state, SymbolTag::tag tag, std::size_t e, std::size_t m,
             bool is_near_one, bool any_mode) {
  const Steps steps(tag, e, m, is_near_one, any_mode);
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        vorn::ranges::forward(steps.mgr, steps.term, steps.arguments[i++ % 256]));
  }
  state.SetItemsProcessed(state.iterations());
}

void backward(benchmark::State& state, SymbolTag::tag tag, std::size_t e, std::size_t m,
              bool is_near_one, bool any_mode) {
  const Steps steps(tag, e, m, is_near_one, any_mode);
  std::size_t i = 0;
  for (auto _ : state) {
    std::vector<Range> arguments = steps.arguments[i % 256];
    vorn::ranges::backward(steps.term, steps.results[i % 256], arguments);
    benchmark::DoNotOptimize(arguments);
    ++i;
  }
  state.SetItemsProcessed(state.iterations());
}

}  // namespace

BENCHMARK_CAPTURE(forward, add32, SymbolTag::fp_add, 8, 23, false, false);
BENCHMARK_CAPTURE(forward, add64, SymbolTag::fp_add, 11, 52, false, false);
BENCHMARK_CAPTURE(forward, add64_near_one, SymbolTag::fp_add, 11, 52, true, false);
BENCHMARK_CAPTURE(forward, add64_any_mode, SymbolTag::fp_add, 11, 52, false, true);
BENCHMARK_CAPTURE(forward, add128, SymbolTag::fp_add, 15, 112, false, false);
BENCHMARK_CAPTURE(forward, mul32, SymbolTag::fp_mul, 8, 23, false, false);
BENCHMARK_CAPTURE(forward, mul64, SymbolTag::fp_mul, 11, 52, false, false);
BENCHMARK_CAPTURE(forward, mul64_any_mode, SymbolTag::fp_mul, 11, 52, false, true);
BENCHMARK_CAPTURE(backward, add32, SymbolTag::fp_add, 8, 23, false, false);
BENCHMARK_CAPTURE(backward, add64, SymbolTag::fp_add, 11, 52, false, false);
BENCHMARK_CAPTURE(backward, mul32, SymbolTag::fp_mul, 8, 23, false, false);
BENCHMARK_CAPTURE(backward, mul64, SymbolTag::fp_mul, 11, 52, false, false);

BENCHMARK_MAIN();
