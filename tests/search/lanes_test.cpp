#include "vorn/search/lanes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "vorn/search/block_program.h"
#include "vorn/search/kernel_check.h"
#include "vorn/semantics/application.h"

namespace vorn::search {
namespace {

struct Format {
  std::size_t e, m;
};

constexpr Format kOwn[] = {{8, 23}, {11, 52}};
constexpr Format kCarried[] = {{2, 1}, {3, 2}, {2, 6},  {4, 3},  {5, 2},  {5, 10}, {7, 10},
                               {8, 7}, {6, 9}, {8, 10}, {9, 11}, {8, 22}, {10, 23}};
constexpr std::size_t kWidths[] = {1, 2, 7, 8, 31, 32, 33, 53, 63, 64};

class LanesTest : public testing::Test {
 protected:
  const Term* variable(const std::string& name, const DataType* type) {
    return mgr.make_constant(mgr.make_unique_symbol(name, type));
  }

  /// Each operation on the format and those that lead to another or from there.
  std::vector<const Term*> make_float_operations(Format f) {
    const DataType* type = mgr.get_fp_type(f.e, f.m);
    const Term* x = variable("x", type);
    const Term* y = variable("y", type);
    const Term* z = variable("z", type);
    std::vector<const Term*> terms = {
        mgr.make_fp_add(mode, x, y),
        mgr.make_fp_sub(mode, x, y),
        mgr.make_fp_mul(mode, x, y),
        mgr.make_fp_div(mode, x, y),
        mgr.make_fp_sqrt(mode, x),
        mgr.make_fp_fma(mode, x, y, z),
        mgr.make_fp_rem(x, y),
        mgr.make_fp_round_to_integral(mode, x),
        mgr.make_fp_min(x, y),
        mgr.make_fp_max(x, y),
        mgr.make_fp_neg(x),
        mgr.make_fp_abs(x),
        mgr.make_fp_equal(x, y),
        mgr.make_fp_lt(x, y),
        mgr.make_fp_le(x, y),
        mgr.make_equal(x, y),
        mgr.make_fp_isnan(x),
        mgr.make_fp_isinf(x),
        mgr.make_fp_iszero(x),
        mgr.make_fp_isnormal(x),
        mgr.make_fp_issubnormal(x),
        mgr.make_fp_isnegative(x),
        mgr.make_fp_ispositive(x),
        mgr.make_fp_to_bits(x),
        mgr.make_term_ite(truth, x, y),
        mgr.make_fp_from_bits(f.e, f.m, bits(1 + f.e + f.m)),
    };
    for (const Format other : {Format{5, 10}, Format{8, 23}, Format{11, 52}, Format{8, 7}}) {
      terms.push_back(mgr.make_fp_cast(other.e, other.m, mode, x));
      const Term* from = variable("w", mgr.get_fp_type(other.e, other.m));
      terms.push_back(mgr.make_fp_cast(f.e, f.m, mode, from));
    }
    for (const std::size_t width : kWidths) {
      terms.push_back(mgr.make_fp_to_sbv(width, mode, x));
      terms.push_back(mgr.make_fp_to_ubv(width, mode, x));
      terms.push_back(mgr.make_fp_from_sbv(f.e, f.m, mode, bits(width)));
      terms.push_back(mgr.make_fp_from_ubv(f.e, f.m, mode, bits(width)));
    }
    return terms;
  }

  const Term* bits(std::size_t width) { return variable("b", mgr.get_bv_type(width)); }

  /// The step of a term, of a program that owns it.
  BlockProgram& compile(const Term* t) {
    const bool is_truth = mgr.is_bool_type(t->get_type());
    const Term* formula = is_truth ? t : mgr.make_equal(t, variable("r", t->get_type()));
    const Term* formulas[] = {mgr.make_or(formula, truth)};
    words = WordProgram::compile(mgr, formulas, 1000);
    program.emplace(*words);
    return *program;
  }
  const LaneStep& find_step(const Term* t) {
    const auto steps = compile(t).get_steps();
    return *std::find_if(steps.begin(), steps.end(),
                         [&](const LaneStep& s) { return s.term == t; });
  }

  TermManager mgr;
  const Term* mode = variable("mode", mgr.get_fprounding_type());
  const Term* truth = variable("truth", mgr.get_bool_type());
  std::optional<WordProgram> words;
  std::optional<BlockProgram> program;
};

class Kernels : public LanesTest, public testing::WithParamInterface<Format> {};

TEST_P(Kernels, AgreeWithExactArithmetic) {
  std::size_t tried = 0;
  for (const Term* t : make_float_operations(GetParam())) {
    const LaneStep& step = find_step(t);
    tried += step.kernel != nullptr ? 1 : 0;
    for (std::uint64_t seed = 1; seed <= 6; ++seed) {
      std::string difference;
      EXPECT_TRUE(is_exact(step, kLanes, seed, &difference)) << t->to_string() << difference;
    }
  }
  EXPECT_GT(tried, 50U);
}

INSTANTIATE_TEST_SUITE_P(Own, Kernels, testing::ValuesIn(kOwn));
INSTANTIATE_TEST_SUITE_P(Carried, Kernels, testing::ValuesIn(kCarried));

TEST_F(LanesTest, BitVectorKernelsAgreeWithExactArithmetic) {
  for (const std::size_t width : kWidths) {
    const Term* x = bits(width);
    const Term* y = bits(width);
    std::vector<const Term*> terms = {mgr.make_bv_not(x),
                                      mgr.make_bv_neg(x),
                                      mgr.make_bv_and(x, y),
                                      mgr.make_bv_or(x, y),
                                      mgr.make_bv_xor(x, y),
                                      mgr.make_bv_add(x, y),
                                      mgr.make_bv_sub(x, y),
                                      mgr.make_bv_mul(x, y),
                                      mgr.make_bv_udiv(x, y),
                                      mgr.make_bv_urem(x, y),
                                      mgr.make_bv_sdiv(x, y),
                                      mgr.make_bv_srem(x, y),
                                      mgr.make_bv_smod(x, y),
                                      mgr.make_bv_lshl(x, y),
                                      mgr.make_bv_lshr(x, y),
                                      mgr.make_bv_ashr(x, y),
                                      mgr.make_bv_comp(x, y),
                                      mgr.make_bv_ult(x, y),
                                      mgr.make_bv_ule(x, y),
                                      mgr.make_bv_slt(x, y),
                                      mgr.make_bv_sle(x, y),
                                      mgr.make_equal(x, y),
                                      mgr.make_term_ite(truth, x, y)};
    for (const std::size_t other : kWidths) {
      if (width + other <= 64) {
        terms.push_back(mgr.make_bv_concat(x, bits(other)));
        terms.push_back(mgr.make_bv_zero_extend(other, x));
        terms.push_back(mgr.make_bv_sign_extend(other, x));
      }
      if (other <= width) {
        terms.push_back(mgr.make_bv_extract(width - 1, other - 1, x));
        terms.push_back(mgr.make_bv_extract(other - 1, 0, x));
      }
    }
    for (const Term* t : terms) {
      if (t == x) continue;
      const LaneStep& step = find_step(t);
      EXPECT_NE(step.kernel, nullptr) << t->to_string();
      for (std::uint64_t seed = 1; seed <= 4; ++seed) {
        std::string difference;
        EXPECT_TRUE(is_exact(step, kLanes, seed, &difference)) << t->to_string() << difference;
      }
    }
  }
}

TEST_F(LanesTest, ConnectivesAgreeWithExactArithmetic) {
  const Term* other = variable("other", mgr.get_bool_type());
  for (const Term* t :
       {mgr.make_not(other), mgr.make_and(truth, other), mgr.make_or(truth, other),
        mgr.make_xor(truth, other), mgr.make_implies(truth, other), mgr.make_iff(truth, other)}) {
    const auto steps = compile(t).get_steps();
    for (const LaneStep& step : steps)
      EXPECT_TRUE(is_exact(step, kLanes, 1)) << t->to_string();
  }
}

/// Blocks as they are run, lanes of different modes and open values included.
class SmallFormats : public LanesTest, public testing::WithParamInterface<Format> {
 protected:
  void try_lanes(const Term* t, std::span<const std::vector<std::uint64_t>> tuples) {
    BlockProgram& blocks = compile(t);
    const auto constants = words->get_constants();
    for (std::size_t i = 0; i < constants.size(); ++i) {
      const auto args = t->get_args();
      const auto found = std::find(args.begin(), args.end(), words->get_term(constants[i]));
      if (found == args.end()) continue;
      const LaneSort& sort = blocks.get_sort(constants[i]);
      for (std::size_t lane = 0; lane < tuples.size(); ++lane) {
        const std::uint64_t value = sort.to_lane(tuples[lane][found - args.begin()]);
        if (sort.lane == 32) {
          blocks.get_lanes<std::uint32_t>(constants[i])[lane] = static_cast<std::uint32_t>(value);
        } else {
          blocks.get_lanes<std::uint64_t>(constants[i])[lane] = value;
        }
      }
      blocks.mark_changed(i);
    }
    blocks.run(tuples.size());
    const auto steps = blocks.get_steps();
    const auto step =
        std::find_if(steps.begin(), steps.end(), [&](const LaneStep& s) { return s.term == t; });
    for (std::size_t lane = 0; lane < tuples.size(); ++lane) {
      std::vector<QNumber> numbers;
      for (const std::uint64_t word : tuples[lane])
        numbers.push_back(to_number(word));
      std::vector<const QNumber*> pointers;
      for (const QNumber& number : numbers)
        pointers.push_back(&number);
      const std::uint64_t expected = to_word(semantics::apply(t, pointers, {}));
      ASSERT_EQ(blocks.get_word(step->slot, lane), expected) << t->to_string() << " lane " << lane;
    }
  }

  /// Every value of the sort, NaN once.
  static std::vector<std::uint64_t> list_values(const DataType* type) {
    if (type->get_kind() == DataType::Kind::rounding_mode) return {0, 1, 2, 3, 4};
    const LaneSort sort = LaneSort::of(type);
    std::vector<std::uint64_t> values;
    for (std::uint64_t word = 0; word < std::uint64_t{1} << sort.width; ++word) {
      if (sort.to_word(sort.to_lane(word)) == word) values.push_back(word);
    }
    return values;
  }
};

TEST_P(SmallFormats, AreRightOnAllOperands) {
  for (const Term* t : make_float_operations(GetParam())) {
    std::vector<std::vector<std::uint64_t>> tuples = {{}};
    for (const Term* arg : t->get_args()) {
      std::vector<std::vector<std::uint64_t>> longer;
      if (LaneSort::of(arg->get_type()).width > 8) {
        longer.clear();
      } else {
        for (const std::uint64_t value : list_values(arg->get_type())) {
          for (std::vector<std::uint64_t> tuple : tuples) {
            tuple.push_back(value);
            longer.push_back(std::move(tuple));
          }
        }
      }
      tuples = std::move(longer);
    }
    // Neighbours in the list differ in the first operand, which is the mode.
    for (std::size_t first = 0; first < tuples.size(); first += kLanes) {
      const std::size_t count = std::min(kLanes, tuples.size() - first);
      try_lanes(t, std::span(tuples).subspan(first, count));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, SmallFormats,
                         testing::Values(Format{2, 1}, Format{2, 2}, Format{3, 2}, Format{2, 3}));

}  // namespace
}  // namespace vorn::search
