// Explanations against folded encodings, and intermediate values against arithmetic on integers.
#include "vorn/solver/explanation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/fp/tracked_labels.h"
#include "tests/oracle/random_operands.h"
#include "vorn/fp/ieee_bv_encoder.h"
#include "vorn/fp/labels.h"

namespace vorn::solver {
namespace {

using oracle::Format;
using Mode = IEEEFloat::rounding_mode;
using Terms = std::vector<const Term*>;

/// Builds an operation; `to` is a second format, or {width, 0}.
using Build = const Term* (*)(TermManager& t, const Term* rm, const Terms& x, Format to);

struct Operation {
  const char* name;
  std::size_t arity;
  bool in_base;
  bool has_bits;  // its operand is a bit-vector of the width `to.e`
  Build build;
};

using T = TermManager;

const Operation kOperations[] = {
    {"add", 2, true, false,
     [](T& t, const Term* rm, const Terms& x, Format) { return t.make_fp_add(rm, x[0], x[1]); }},
    {"sub", 2, true, false,
     [](T& t, const Term* rm, const Terms& x, Format) { return t.make_fp_sub(rm, x[0], x[1]); }},
    {"mul", 2, true, false,
     [](T& t, const Term* rm, const Terms& x, Format) { return t.make_fp_mul(rm, x[0], x[1]); }},
    {"div", 2, true, false,
     [](T& t, const Term* rm, const Terms& x, Format) { return t.make_fp_div(rm, x[0], x[1]); }},
    {"fma", 3, false, false,
     [](T& t, const Term* rm, const Terms& x, Format) {
       return t.make_fp_fma(rm, x[0], x[1], x[2]);
     }},
    {"sqrt", 1, false, false,
     [](T& t, const Term* rm, const Terms& x, Format) { return t.make_fp_sqrt(rm, x[0]); }},
    {"rem", 2, false, false,
     [](T& t, const Term*, const Terms& x, Format) { return t.make_fp_rem(x[0], x[1]); }},
    {"rti", 1, false, false,
     [](T& t, const Term* rm, const Terms& x, Format) {
       return t.make_fp_round_to_integral(rm, x[0]);
     }},
    {"min", 2, false, false,
     [](T& t, const Term*, const Terms& x, Format) { return t.make_fp_min(x[0], x[1]); }},
    {"max", 2, false, false,
     [](T& t, const Term*, const Terms& x, Format) { return t.make_fp_max(x[0], x[1]); }},
    {"cast", 1, true, false,
     [](T& t, const Term* rm, const Terms& x, Format to) {
       return t.make_fp_cast(to.e, to.m, rm, x[0]);
     }},
    {"to_sbv", 1, false, false,
     [](T& t, const Term* rm, const Terms& x, Format to) {
       return t.make_fp_to_sbv(to.e, rm, x[0]);
     }},
    {"to_ubv", 1, false, false,
     [](T& t, const Term* rm, const Terms& x, Format to) {
       return t.make_fp_to_ubv(to.e, rm, x[0]);
     }},
    {"from_sbv", 1, true, true,
     [](T& t, const Term* rm, const Terms& x, Format) {
       return t.make_fp_from_sbv(5, 10, rm, x[0]);
     }},
    {"from_ubv", 1, true, true,
     [](T& t, const Term* rm, const Terms& x, Format) {
       return t.make_fp_from_ubv(5, 10, rm, x[0]);
     }},
    {"lt", 2, true, false,
     [](T& t, const Term*, const Terms& x, Format) { return t.make_fp_lt(x[0], x[1]); }},
    {"le", 2, true, false,
     [](T& t, const Term*, const Terms& x, Format) { return t.make_fp_le(x[0], x[1]); }},
    {"eq", 2, true, false,
     [](T& t, const Term*, const Terms& x, Format) { return t.make_fp_equal(x[0], x[1]); }},
    {"neg", 1, true, false,
     [](T& t, const Term*, const Terms& x, Format) { return t.make_fp_neg(x[0]); }},
    {"abs", 1, false, false,
     [](T& t, const Term*, const Terms& x, Format) { return t.make_fp_abs(x[0]); }},
    {"isnan", 1, true, false,
     [](T& t, const Term*, const Terms& x, Format) { return t.make_fp_isnan(x[0]); }},
    {"isnormal", 1, false, false,
     [](T& t, const Term*, const Terms& x, Format) { return t.make_fp_isnormal(x[0]); }},
    {"isnegative", 1, false, false,
     [](T& t, const Term*, const Terms& x, Format) { return t.make_fp_isnegative(x[0]); }},
    {"to_bits", 1, false, false,
     [](T& t, const Term*, const Terms& x, Format) { return t.make_fp_to_bits(x[0]); }},
};

/// Of a second format: a wider one, a narrower one, one of each kind.
Format other_format(Format f, unsigned choice) {
  switch (choice % 4) {
    case 0:
      return {f.e + 1, f.m + 2};
    case 1:
      return {std::max(2U, f.e - 1), std::max(2U, f.m - 1)};
    case 2:
      return {f.e, std::max(2U, f.m - 1)};
    default:
      return {f.e + 2, std::max(2U, f.m - 1)};
  }
}

/// An operation on operands: as a term over literals, and what its encoding folds into.
class Instance {
 public:
  Instance(const Operation& of, Format f, Format to, Mode mode, const std::vector<mpz_class>& bits,
           EncoderKind kind)
      : encoder(make_encoder(kind, mgr)) {
    Terms args;
    for (const mpz_class& x : bits) {
      const QNumber value = QNumber::from_mpz(x);
      args.push_back(of.has_bits ? mgr.make_bv_number(value, to.e)
                                 : mgr.make_fp_number(value, f.e, f.m));
      if (of.has_bits) encoder->define_encoding(args.back(), args.back());
    }
    term = of.build(mgr, mgr.make_fprounding(mode), args, to);
  }

  /// None where the result is left open. Throws where the encoder does not support it.
  std::optional<QNumber> fold() {
    Terms constraints;
    const Term* encoding = encoder->get_bv_encoding(term, &constraints);
    if (mgr.is_bool_type(encoding->get_type())) {
      return QNumber(encoding == mgr.make_true() ? 1 : 0);
    }
    QNumber value;
    if (!mgr.is_number(encoding, &value)) return std::nullopt;
    return value;
  }

  Explanation explain(EncoderKind kind, const QNumber* model_value = nullptr) {
    return solver::explain(mgr, term, read_literals(mgr, term->get_args()), kind, model_value);
  }

  TermManager mgr;
  std::unique_ptr<fp::FpBvEncoder> encoder;
  const Term* term = nullptr;
};

/// The labels that an encoder of the test's own tracks.
fp::Labels tracked_labels(const Operation& of, Format f, Format to, Mode mode, EncoderKind kind) {
  TermManager source;
  TermManager target(false);
  std::unique_ptr<fp::FpBvEncoder> encoder;
  if (kind == EncoderKind::base) {
    encoder = std::make_unique<fp::FpBvEncoder>(&source, &target);
  } else {
    encoder = std::make_unique<fp::IeeeBvEncoder>(&source, &target);
  }
  encoder->set_debug_flag(true);
  const DataType* type = of.has_bits ? source.get_bv_type(to.e) : source.get_fp_type(f.e, f.m);
  Terms args;
  for (std::size_t i = 0; i < of.arity; ++i) {
    args.push_back(source.make_constant(source.make_unique_symbol("x", type)));
    if (!of.has_bits) continue;
    const Symbol* bits = target.make_unique_symbol("x", target.get_bv_type(to.e));
    encoder->define_encoding(args.back(), target.make_constant(bits));
  }
  Terms constraints;
  encoder->get_bv_encoding(of.build(source, source.make_fprounding(mode), args, to), &constraints);
  return fp::Tracked(target, constraints).labels;
}

/// One operand, taken apart without any circuit.
struct Parts {
  Parts(Format f, const mpz_class& bits) {
    const mpz_class hidden = mpz_class(1) << f.m;
    const mpz_class field = (bits >> f.m) & ((1L << f.e) - 1);
    fraction = bits & (hidden - 1);
    negative = mpz_tstbit(bits.get_mpz_t(), f.e + f.m) != 0;
    special = field == (1L << f.e) - 1;
    exponent = (field == 0 ? 1 : field.get_si()) - f.bias();
    significand = field == 0 || special ? fraction : mpz_class(fraction + hidden);
  }
  bool is_nan() const { return special && fraction != 0; }
  bool is_inf() const { return special && fraction == 0; }
  bool is_zero() const { return !special && significand == 0; }

  mpz_class fraction, significand;
  bool negative, special;
  long exponent;
};

/// Intermediate values by name.
class Values {
 public:
  explicit Values(const Explanation& of) : explanation(of) {}

  const Intermediate* find(const std::string& label, std::size_t occurrence = 1) const {
    for (const Intermediate& value : explanation.intermediates) {
      if (value.label == label && value.occurrence == occurrence) return &value;
    }
    return nullptr;
  }
  mpz_class get(const std::string& label) const {
    const Intermediate* value = find(label);
    if (value == nullptr) throw std::out_of_range(label);
    return value->value.get_numerator();
  }
  mpz_class get_signed(const std::string& label) const {
    const std::size_t width = find(label)->width;
    const mpz_class bits = get(label);
    return mpz_tstbit(bits.get_mpz_t(), width - 1) != 0 ? mpz_class(bits - (mpz_class(1) << width))
                                                        : bits;
  }
  /// A significand with its point behind the first `integer_bits`, times 2^exponent.
  mpq_class scaled(const std::string& label, std::size_t integer_bits, long exponent) const {
    const auto width = static_cast<long>(find(label)->width);
    return times_power(get(label), exponent + static_cast<long>(integer_bits) - width);
  }
  static mpq_class times_power(const mpq_class& x, long n) {
    mpq_class out;
    if (n < 0) {
      mpq_div_2exp(out.get_mpq_t(), x.get_mpq_t(), static_cast<unsigned long>(-n));
    } else {
      mpq_mul_2exp(out.get_mpq_t(), x.get_mpq_t(), static_cast<unsigned long>(n));
    }
    return out;
  }

 private:
  const Explanation& explanation;
};

mpq_class value_of(const Parts& x, Format f) {
  const mpq_class magnitude =
      Values::times_power(x.significand, x.exponent - static_cast<long>(f.m));
  return x.negative ? mpq_class(-magnitude) : magnitude;
}

void check_operand(const Values& values, const std::string& prefix, unsigned number,
                   const Parts& x) {
  const std::string n = std::to_string(number);
  if (values.find(prefix + "exp" + n) == nullptr) return;
  if (!x.special) {
    EXPECT_EQ(values.get_signed(prefix + "exp" + n), x.exponent) << prefix << n;
  }
  EXPECT_EQ(values.get(prefix + "mant" + n), x.significand) << prefix << n;
  if (values.find(prefix + "nan" + n) == nullptr) return;
  EXPECT_EQ(values.get(prefix + "sign" + n), x.negative ? 1 : 0) << prefix << n;
  EXPECT_EQ(values.get(prefix + "nan" + n), x.is_nan() ? 1 : 0) << prefix << n;
  EXPECT_EQ(values.get(prefix + "inf" + n), x.is_inf() ? 1 : 0) << prefix << n;
  if (values.find(prefix + "zero" + n) == nullptr) return;
  EXPECT_EQ(values.get(prefix + "zero" + n), x.is_zero() ? 1 : 0) << prefix << n;
}

/// What is exact before rounding, for finite operands.
void check_exact_part(const std::string& name, const Values& v, const std::vector<Parts>& x,
                      Format f) {
  if (std::ranges::any_of(x, [](const Parts& p) { return p.special; })) return;
  std::vector<mpq_class> exact;
  for (const Parts& p : x)
    exact.push_back(value_of(p, f));
  const auto magnitude = [](const mpq_class& q) { return mpq_class(abs(q)); };
  if (name == "add" || name == "sub") {
    const mpq_class second = name == "add" ? exact[1] : mpq_class(-exact[1]);
    const mpq_class sum = exact[0] + second;
    const long exp = v.get_signed("add_exp_bigger").get_si();
    EXPECT_EQ(exp, std::max(x[0].exponent, x[1].exponent));
    EXPECT_LE(v.get("add_distance"), std::abs(x[0].exponent - x[1].exponent));
    const mpq_class found = v.scaled("add_mant_res", 3, exp);
    if (v.get("add_sticky_bit") == 0) {
      EXPECT_EQ(found, magnitude(sum));
    } else {
      const mpq_class unit = Values::times_power(1, exp - static_cast<long>(f.m) - 3);
      EXPECT_LT(magnitude(found - magnitude(sum)), unit);
    }
  } else if (name == "mul") {
    EXPECT_EQ(v.get("mul_mant"), x[0].significand * x[1].significand);
    EXPECT_EQ(v.get_signed("mul_exp"), x[0].exponent + x[1].exponent + 1);
  } else if (name == "div" && !x[1].is_zero()) {
    EXPECT_EQ(v.get("div_mant1_pad"), v.get("div_div") * v.get("div_mant2_pad") + v.get("div_rem"));
    EXPECT_LT(v.get("div_rem"), v.get("div_mant2_pad"));
  } else if (name == "fma") {
    const mpq_class product = v.scaled("fma_product", 2, v.get_signed("fma_product_exp").get_si());
    EXPECT_EQ(product, magnitude(exact[0] * exact[1]));
    const long exp = v.get_signed("fma_exp").get_si();
    const mpq_class unit = Values::times_power(1, exp - 2 * static_cast<long>(f.m) - 3);
    EXPECT_LT(magnitude(v.scaled("fma_sum", 3, exp) - magnitude(exact[0] * exact[1] + exact[2])),
              unit);
  } else if (name == "sqrt" && !x[0].negative) {
    const long exp = v.get_signed("sqrt_exp").get_si();
    const mpq_class root = v.scaled("sqrt_root", 1, exp);
    const mpq_class next = root + Values::times_power(1, exp - static_cast<long>(f.m) - 1);
    EXPECT_LE(root * root, exact[0]);
    if (!x[0].is_zero()) {
      EXPECT_GT(next * next, exact[0]);
      EXPECT_EQ(v.get("sqrt_sticky_bit"), root * root == exact[0] ? 0 : 1);
    }
  }
}

/// Whether a mode goes away from zero, from IEEE 754-2019, clause 4.3.
bool goes_up(Mode mode, bool negative, bool least, bool half, bool rest) {
  switch (mode) {
    case Mode::nearest_even:
      return half && (rest || least);
    case Mode::nearest_away:
      return half;
    case Mode::toward_zero:
      return false;
    case Mode::plus_inf:
      return !negative && (half || rest);
    case Mode::minus_inf:
      return negative && (half || rest);
  }
  return false;
}

void check_rounding(const Values& v, Mode mode) {
  if (v.find("round_increment") == nullptr) return;
  if (v.get("pack_nan") != 0 || v.get("pack_inf") != 0) return;
  EXPECT_EQ(v.get("round_increment") != 0,
            goes_up(mode, v.get("pack_res_sign") != 0, v.get("round_rounding_least") != 0,
                    v.get("round_rounding_bit") != 0, v.get("round_sticky_bit") != 0));
  if (const Intermediate* kept = v.find("round_kept")) {
    EXPECT_EQ(v.get("round_body"), v.get("round_kept") + v.get("round_increment"));
    EXPECT_EQ(kept->width + 1, v.find("round_ret")->width);
  } else if (v.get("round_overflow") == 0) {
    EXPECT_EQ(v.get("mant_round_mant"), v.get("round_mant_after_chop") + v.get("round_increment"));
  }
}

struct Configuration {
  EncoderKind kind;
  Format format;
};

class ExplanationTest : public testing::TestWithParam<Configuration> {
 protected:
  static constexpr int kRounds = 40;

  std::vector<Mode> modes() const {
    std::vector<Mode> all = {Mode::nearest_even, Mode::toward_zero, Mode::plus_inf,
                             Mode::minus_inf};
    if (GetParam().kind == EncoderKind::ieee) all.push_back(Mode::nearest_away);
    return all;
  }
  static Format second(const Operation& of, Format f, unsigned choice) {
    const bool is_width = of.has_bits || std::string(of.name).starts_with("to_");
    return is_width ? Format{1 + choice % 9, 0} : other_format(f, choice);
  }
  std::vector<mpz_class> operands(const Operation& of, Format f, Format to) {
    if (of.has_bits) return {random.bits(to.e)};
    std::vector<mpz_class> x{random.float_pattern(f)};
    if (of.arity > 1) x.push_back(random.partner(f, x[0]));
    if (of.arity > 2) x.push_back(random.third(f, x[0], x[1]));
    return x;
  }

  oracle::RandomOperands random{7};
};

TEST_P(ExplanationTest, ResultsAreThoseOfFoldedEncodingsAndValuesObeyArithmetic) {
  const auto [kind, f] = GetParam();
  std::size_t compared = 0;
  for (const Operation& of : kOperations) {
    if (kind == EncoderKind::base && !of.in_base) continue;
    for (unsigned round = 0; round < kRounds; ++round) {
      const Format to = second(of, f, round);
      const std::vector<Mode> all = modes();
      const Mode mode = all[round % all.size()];
      const std::vector<mpz_class> x = operands(of, f, to);
      std::string context = of.name;
      for (const mpz_class& bits : x)
        context += " " + bits.get_str(16);
      SCOPED_TRACE(context + " mode " + std::to_string(static_cast<int>(mode)) + " to " +
                   std::to_string(to.e) + " " + std::to_string(to.m));
      Instance instance(of, f, to, mode, x, kind);
      std::optional<QNumber> folded;
      try {
        folded = instance.fold();
      } catch (const std::invalid_argument&) {
        EXPECT_THROW(instance.explain(kind), std::invalid_argument);
        continue;
      }
      const Explanation explanation = instance.explain(kind);
      EXPECT_EQ(explanation.is_open, !folded.has_value());
      if (folded) {
        EXPECT_EQ(explanation.result, *folded);
        ++compared;
      }
      if (kind == EncoderKind::ieee) {
        EXPECT_FALSE(explanation.is_excluded);
        EXPECT_FALSE(explanation.is_folded);
      }
      const Values values(explanation);
      for (const char* label :
           {"add_sub_result", "mul_result", "div_result", "cast_result", "fma_result",
            "sqrt_result", "rem_result", "integral_result", "select_result", "to_int_result"}) {
        if (values.find(label) != nullptr) {
          EXPECT_EQ(values.get(label), explanation.result.get_numerator());
        }
      }
      if (of.has_bits) continue;
      std::vector<Parts> parts;
      for (const mpz_class& bits : x)
        parts.emplace_back(f, bits);
      for (const char* prefix : {"add_", "mul_", "div_", "cast_", "fma_", "sqrt_", "rem_",
                                 "integral_", "compare_", "select_"}) {
        for (unsigned i = 0; i < x.size(); ++i)
          check_operand(values, prefix, i + 1, parts[i]);
      }
      if (!explanation.is_folded) {
        check_exact_part(of.name, values, parts, f);
        check_rounding(values, mode);
      }
    }
  }
  EXPECT_GT(compared, 300U);
}

TEST_P(ExplanationTest, LabelsAreThoseOfTheEncoderInItsOrderAndAllAreKnown) {
  const auto [kind, f] = GetParam();
  std::size_t labels = 0;
  for (const Operation& of : kOperations) {
    if (kind == EncoderKind::base && !of.in_base) continue;
    for (unsigned round = 0; round < 8; ++round) {
      const Format to = second(of, f, round);
      const Mode mode = round % 2 == 0 ? Mode::nearest_even : Mode::minus_inf;
      const std::vector<mpz_class> x = operands(of, f, to);
      SCOPED_TRACE(of.name);
      Instance instance(of, f, to, mode, x, kind);
      fp::Labels expected;
      try {
        expected = tracked_labels(of, f, to, mode, kind);
      } catch (const std::invalid_argument&) {
        continue;
      }
      fp::Labels found;
      for (const Intermediate& value : instance.explain(kind).intermediates) {
        EXPECT_NE(fp::find_label(value.label).stage, fp::Stage::other);
        found.emplace_back(value.label, value.width);
      }
      // Booleans have width 0 there.
      for (std::size_t i = 0; i < std::min(expected.size(), found.size()); ++i) {
        if (expected[i].second == 0) expected[i].second = 1;
      }
      EXPECT_EQ(found, expected);
      labels += found.size();
    }
  }
  EXPECT_GT(labels, 500U);
}

std::string name_of(const testing::TestParamInfo<Configuration>& tested) {
  const Format f = tested.param.format;
  const char* encoder = tested.param.kind == EncoderKind::base ? "base_" : "ieee_";
  return encoder + std::to_string(f.e) + "_" + std::to_string(f.m);
}

constexpr Configuration kConfigurations[] = {
    {EncoderKind::ieee, {3, 3}},   {EncoderKind::ieee, {2, 1}},  {EncoderKind::ieee, {5, 10}},
    {EncoderKind::ieee, {2, 12}},  {EncoderKind::ieee, {8, 3}},  {EncoderKind::ieee, {8, 23}},
    {EncoderKind::ieee, {11, 52}}, {EncoderKind::base, {3, 3}},  {EncoderKind::base, {5, 10}},
    {EncoderKind::base, {4, 2}},   {EncoderKind::base, {8, 23}}, {EncoderKind::base, {11, 52}}};

INSTANTIATE_TEST_SUITE_P(Formats, ExplanationTest, testing::ValuesIn(kConfigurations), name_of);

const Operation& operation(const std::string& name) {
  return *std::ranges::find_if(kOperations, [&](const Operation& o) { return name == o.name; });
}

TEST(ExplanationCase, SumsOfOppositeZeroSignAreExcludedByTheBaseEncoder) {
  Instance instance(operation("add"), {3, 3}, {}, Mode::nearest_even, {0x58, 0x18},
                    EncoderKind::base);
  const Explanation explanation = instance.explain(EncoderKind::base);
  EXPECT_EQ(explanation.result, QNumber(0));
  EXPECT_TRUE(explanation.is_excluded);
}

TEST(ExplanationCase, FormatsWithoutACircuitOfVariablesAreFolded) {
  Instance instance(operation("div"), {4, 2}, {}, Mode::nearest_even, {0x1d, 0x1e},
                    EncoderKind::base);
  const std::optional<QNumber> folded = instance.fold();
  const Explanation explanation = instance.explain(EncoderKind::base);
  EXPECT_TRUE(explanation.is_folded);
  EXPECT_FALSE(explanation.intermediates.empty());
  EXPECT_EQ(explanation.result, folded.value());
}

TEST(ExplanationCase, WhatIsOpenIsDecidedByTheModel) {
  Instance conversion(operation("to_ubv"), {3, 3}, {8, 0}, Mode::nearest_even, {0x38},
                      EncoderKind::ieee);
  const QNumber any(0xa5);
  const Explanation converted = conversion.explain(EncoderKind::ieee, &any);
  EXPECT_TRUE(converted.is_open);
  EXPECT_EQ(converted.result, any);
  for (const long zero : {0x00L, 0x40L}) {
    Instance smaller(operation("min"), {3, 3}, {}, Mode::nearest_even, {0x40, 0x00},
                     EncoderKind::ieee);
    const QNumber value(zero);
    const Explanation explanation = smaller.explain(EncoderKind::ieee, &value);
    EXPECT_TRUE(explanation.is_open);
    EXPECT_EQ(explanation.result, value);
  }
}

TEST(ExplanationCase, ASolverWithLabelsTiesThemAndAnswersTheSame) {
  for (const EncoderKind kind : {EncoderKind::ieee, EncoderKind::base}) {
    TermManager mgr;
    Options options;
    options.encoder = kind;
    options.debug_labels = true;
    Solver solver(mgr, options);
    const DataType* type = mgr.get_fp_type(3, 3);
    const Term* x = mgr.make_constant(mgr.make_unique_symbol("mul_mant", type));
    const Term* product = mgr.make_fp_mul(mgr.make_fprounding_even(), x, x);
    solver.assert_formula(mgr.make_equal(product, mgr.make_fp_number(QNumber(0x21), 3, 3)));
    const auto no_input = [](const Term*) { return false; };
    const std::vector<fp::Tie> ties = fp::find_ties(mgr, solver.encode({}).conjuncts, no_input);
    EXPECT_EQ(std::ranges::count(ties, std::string("mul_mant"), &fp::Tie::label), 1);
    EXPECT_EQ(ties.back().label, "mul_result");
    EXPECT_EQ(solver.check_sat(), smt2::Answer::sat);
    EXPECT_EQ(solver.get_value(product), mgr.make_fp_number(QNumber(0x21), 3, 3));
  }
}

TEST(ExplanationCase, RefusesWhatTheEncoderDoesNotHave) {
  Instance root(operation("sqrt"), {3, 3}, {}, Mode::nearest_even, {0x18}, EncoderKind::ieee);
  EXPECT_THROW(root.explain(EncoderKind::base), std::invalid_argument);
  Instance away(operation("add"), {3, 3}, {}, Mode::nearest_away, {0x18, 0x18}, EncoderKind::ieee);
  EXPECT_THROW(away.explain(EncoderKind::base), std::invalid_argument);
  const std::vector<QNumber> none;
  EXPECT_THROW(explain(root.mgr, root.term, none, EncoderKind::ieee), std::invalid_argument);
  const Term* free =
      root.mgr.make_constant(root.mgr.make_unique_symbol("x", root.mgr.get_bv_type(2)));
  EXPECT_THROW(read_literals(root.mgr, {&free, 1}), std::invalid_argument);
}

}  // namespace
}  // namespace vorn::solver
