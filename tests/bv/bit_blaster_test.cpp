// Bit-blasting against integer arithmetic: every operation on every pair of small operands, folded,
// simulated and by SAT, and random wide operands against the term library's arithmetic.
#include "vorn/bv/bit_blaster.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "vorn/bv/cnf.h"
#include "vorn/bv/sat_solver.h"
#include "vorn/bv/simulator.h"
#include "vorn/terms/bv_number.h"
#include "vorn/terms/term_manager.h"

namespace vorn::bv {
namespace {

using Word = std::uint64_t;

Word mask(std::size_t width) {
  return (Word{1} << width) - 1;
}
std::int64_t read_signed(Word a, std::size_t w) {
  const auto value = static_cast<std::int64_t>(a);
  return (a >> (w - 1) & 1U) != 0 ? value - (std::int64_t{1} << w) : value;
}
Word as_word(std::int64_t a) {
  return static_cast<Word>(a);
}
std::int64_t quotient(std::int64_t a, std::int64_t b) {
  if (b == 0) return a < 0 ? 1 : -1;
  return a / b;
}
std::int64_t modulus(std::int64_t a, std::int64_t b) {
  if (b == 0) return a;
  const std::int64_t r = a % b;
  return r != 0 && (r < 0) != (b < 0) ? r + b : r;
}

/// A binary operation: how to build it, what it computes on words (the result is read modulo its
/// width), and what it computes on numbers.
struct Operation {
  const char* name;
  const Term* (TermManager::*make)(const Term*, const Term*);
  Word (*compute)(Word a, Word b, std::size_t w);
  QNumber (*compute_wide)(const QNumber& a, const QNumber& b, std::size_t w);
};

namespace N = BVNumber;
using TM = TermManager;
using Q = QNumber;
using S = std::size_t;

QNumber truth(bool value) {
  return {value ? 1 : 0};
}

const Operation kOperations[] = {
    {"bvand", &TM::make_bv_and, [](Word a, Word b, S) { return a & b; },
     [](const Q& a, const Q& b, S) { return N::bv_and(a, b); }},
    {"bvor", &TM::make_bv_or, [](Word a, Word b, S) { return a | b; },
     [](const Q& a, const Q& b, S) { return N::bv_or(a, b); }},
    {"bvxor", &TM::make_bv_xor, [](Word a, Word b, S) { return a ^ b; },
     [](const Q& a, const Q& b, S) { return N::bv_xor(a, b); }},
    {"bvadd", &TM::make_bv_add, [](Word a, Word b, S) { return a + b; },
     [](const Q& a, const Q& b, S w) { return N::bv_add(a, b, w); }},
    {"bvsub", &TM::make_bv_sub, [](Word a, Word b, S) { return a - b; },
     [](const Q& a, const Q& b, S w) { return N::bv_sub(a, b, w); }},
    {"bvmul", &TM::make_bv_mul, [](Word a, Word b, S) { return a * b; },
     [](const Q& a, const Q& b, S w) { return N::bv_mul(a, b, w); }},
    {"bvudiv", &TM::make_bv_udiv, [](Word a, Word b, S w) { return b == 0 ? mask(w) : a / b; },
     [](const Q& a, const Q& b, S w) { return N::bv_udiv(a, b, w); }},
    {"bvurem", &TM::make_bv_urem, [](Word a, Word b, S) { return b == 0 ? a : a % b; },
     [](const Q& a, const Q& b, S) { return N::bv_urem(a, b); }},
    {"bvsdiv", &TM::make_bv_sdiv,
     [](Word a, Word b, S w) { return as_word(quotient(read_signed(a, w), read_signed(b, w))); },
     [](const Q& a, const Q& b, S w) { return N::bv_sdiv(a, b, w); }},
    {"bvsrem", &TM::make_bv_srem,
     [](Word a, Word b, S w) {
       return b == 0 ? a : as_word(read_signed(a, w) % read_signed(b, w));
     },
     [](const Q& a, const Q& b, S w) { return N::bv_srem(a, b, w); }},
    {"bvsmod", &TM::make_bv_smod,
     [](Word a, Word b, S w) { return as_word(modulus(read_signed(a, w), read_signed(b, w))); },
     [](const Q& a, const Q& b, S w) { return N::bv_smod(a, b, w); }},
    {"bvshl", &TM::make_bv_lshl, [](Word a, Word b, S w) { return b >= w ? 0 : a << b; },
     [](const Q& a, const Q& b, S w) { return N::bv_shl(a, b, w); }},
    {"bvlshr", &TM::make_bv_lshr, [](Word a, Word b, S w) { return b >= w ? 0 : a >> b; },
     [](const Q& a, const Q& b, S w) { return N::bv_lshr(a, b, w); }},
    {"bvashr", &TM::make_bv_ashr,
     [](Word a, Word b, S w) { return as_word(read_signed(a, w) >> std::min<Word>(b, 63)); },
     [](const Q& a, const Q& b, S w) { return N::bv_ashr(a, b, w); }},
    {"bvcomp", &TM::make_bv_comp, [](Word a, Word b, S) { return Word{a == b}; },
     [](const Q& a, const Q& b, S) { return truth(a == b); }},
    {"=", &TM::make_equal, [](Word a, Word b, S) { return Word{a == b}; },
     [](const Q& a, const Q& b, S) { return truth(a == b); }},
    {"bvult", &TM::make_bv_ult, [](Word a, Word b, S) { return Word{a < b}; },
     [](const Q& a, const Q& b, S) { return truth(a < b); }},
    {"bvule", &TM::make_bv_ule, [](Word a, Word b, S) { return Word{a <= b}; },
     [](const Q& a, const Q& b, S) { return truth(a <= b); }},
    {"bvslt", &TM::make_bv_slt,
     [](Word a, Word b, S w) { return Word{read_signed(a, w) < read_signed(b, w)}; },
     [](const Q& a, const Q& b, S w) { return truth(N::bv_slt(a, b, w)); }},
    {"bvsle", &TM::make_bv_sle,
     [](Word a, Word b, S w) { return Word{read_signed(a, w) <= read_signed(b, w)}; },
     [](const Q& a, const Q& b, S w) { return truth(!N::bv_slt(b, a, w)); }},
};

/// A manager that keeps terms as they are asked for, and a graph of them.
struct Fixture {
  TermManager mgr{false};
  Aig graph;
  BitBlaster blaster{mgr, graph};

  std::vector<Lit> blast(const Term* t) {
    if (t->get_type() == mgr.get_bool_type()) return {blaster.blast_bool(t)};
    const auto bits = blaster.blast_bits(t);
    return {bits.begin(), bits.end()};
  }
  const Term* number(Word value, std::size_t width) {
    return mgr.make_bv_number(QNumber(static_cast<std::int64_t>(value)), width);
  }
  const Term* variable(const std::string& name, std::size_t width) {
    return mgr.make_constant(mgr.make_unique_symbol(name, mgr.get_bv_type(width)));
  }
  const Term* proposition(const std::string& name) {
    return mgr.make_constant(mgr.make_unique_symbol(name, mgr.get_bool_type()));
  }
};

/// The number that constant bits spell; fails where a bit is not constant.
QNumber read_constant(std::span<const Lit> bits) {
  QNumber value;
  for (std::size_t i = 0; i < bits.size(); ++i) {
    EXPECT_TRUE(bits[i].is_constant());
    if (bits[i] == kTrue) value += BVNumber::power_of_two(i);
  }
  return value;
}

QNumber random_number(std::mt19937_64& random, std::size_t width) {
  QNumber value;
  for (std::size_t i = 0; i < width; ++i) {
    if ((random() & 1U) != 0) value += BVNumber::power_of_two(i);
  }
  return BVNumber::modulo(value, 1 + random() % width);  // all magnitudes alike
}

/// Checks f, a term over `arguments`, on every assignment of theirs, at most 64 bits together.
template <class Expected>
void expect_function(Fixture& fix, const Term* f, const std::vector<const Term*>& arguments,
                     Expected expected, const std::string& what) {
  std::vector<Lit> inputs;
  for (const Term* argument : arguments) {
    for (const Lit bit : fix.blast(argument))
      inputs.push_back(bit);
  }
  const std::vector<Lit> outputs = fix.blast(f);
  Simulator simulator(fix.graph, outputs);
  for (Word first = 0; first < Word{1} << inputs.size(); first += Simulator::kLanes) {
    for (std::size_t i = 0; i < inputs.size(); ++i) {
      simulator.set_input(inputs[i], Simulator::count_from(first, i));
    }
    simulator.run();
    for (std::size_t lane = 0; lane < Simulator::kLanes; ++lane) {
      Word value = 0;
      for (std::size_t i = 0; i < outputs.size(); ++i) {
        value |= Word{simulator.get_output(i).get(lane)} << i;
      }
      const Word assignment = (first + lane) & mask(inputs.size());
      ASSERT_EQ(value, expected(assignment) & mask(outputs.size())) << what << ' ' << assignment;
    }
  }
}

TEST(BitBlaster, FoldsEveryOperationOnSmallConstants) {
  for (const Operation& op : kOperations) {
    Fixture fix;
    for (std::size_t w = 1; w <= 5; ++w) {
      for (Word a = 0; a <= mask(w); ++a) {
        for (Word b = 0; b <= mask(w); ++b) {
          const Term* t = (fix.mgr.*op.make)(fix.number(a, w), fix.number(b, w));
          const auto bits = fix.blast(t);
          const auto expected = static_cast<std::int64_t>(op.compute(a, b, w) & mask(bits.size()));
          ASSERT_EQ(read_constant(bits), QNumber(expected))
              << op.name << ' ' << a << ' ' << b << " width " << w;
        }
      }
    }
    EXPECT_EQ(fix.graph.get_and_count(), 0U) << op.name;
  }
}

TEST(BitBlaster, ComputesEveryOperationOnSmallSymbolicOperands) {
  for (const Operation& op : kOperations) {
    for (std::size_t w = 1; w <= 5; ++w) {
      Fixture fix;
      const Term* a = fix.variable("a", w);
      const Term* b = fix.variable("b", w);
      const auto expected = [&](Word ab) { return op.compute(ab & mask(w), ab >> w, w); };
      expect_function(fix, (fix.mgr.*op.make)(a, b), {a, b}, expected,
                      op.name + std::string(" width ") + std::to_string(w));
    }
  }
}

TEST(BitBlaster, ComputesEveryOperationWithOneConstantOperand) {
  constexpr std::size_t kWidth = 5;
  for (const Operation& op : kOperations) {
    for (Word value = 0; value <= mask(kWidth); ++value) {
      Fixture fix;
      const Term* x = fix.variable("x", kWidth);
      const Term* number = fix.number(value, kWidth);
      expect_function(
          fix, (fix.mgr.*op.make)(x, number), {x},
          [&](Word a) { return op.compute(a, value, kWidth); }, op.name);
      expect_function(
          fix, (fix.mgr.*op.make)(number, x), {x},
          [&](Word a) { return op.compute(value, a, kWidth); }, op.name);
    }
  }
}

TEST(BitBlaster, ComputesExtendedOperandsWithinTheirSignificantBits) {
  constexpr std::size_t kWidth = 8;
  for (const Operation& op : kOperations) {
    Fixture fix;
    const Term* x = fix.variable("x", 4);
    const Term* y = fix.variable("y", 3);
    const Term* a =
        fix.mgr.make_bv_concat(fix.number(0, 2), fix.mgr.make_bv_concat(x, fix.number(0, 2)));
    const Term* b = fix.mgr.make_bv_zero_extend(kWidth - 3, y);
    const auto expected = [&](Word xy) { return op.compute((xy & mask(4)) << 2, xy >> 4, kWidth); };
    expect_function(fix, (fix.mgr.*op.make)(a, b), {x, y}, expected, op.name);
    const auto swapped = [&](Word xy) { return op.compute(xy >> 4, (xy & mask(4)) << 2, kWidth); };
    expect_function(fix, (fix.mgr.*op.make)(b, a), {x, y}, swapped, op.name);
  }
}

TEST(BitBlaster, ClausesOfEveryOperationAllowItsResultAndNoOther) {
  for (const Operation& op : kOperations) {
    for (std::size_t w = 1; w <= 4; ++w) {
      Fixture fix;
      const auto solver = make_cadical_solver();
      Cnf cnf(fix.graph, *solver);
      const auto a_bits = fix.blast(fix.variable("a", w));
      const auto b_bits = fix.blast(fix.variable("b", w));
      const Term* t = (fix.mgr.*op.make)(fix.blaster.get_inputs()[0].constant,
                                         fix.blaster.get_inputs()[1].constant);
      const auto bits = fix.blast(t);
      for (Word ab = 0; ab < Word{1} << (2 * w); ++ab) {
        const Word value = op.compute(ab & mask(w), ab >> w, w);
        std::vector<Lit> same;
        for (std::size_t i = 0; i < bits.size(); ++i) {
          same.push_back(bits[i] ^ ((value >> i & 1U) == 0));
        }
        const Lit right = fix.graph.make_and(same);
        for (const Lit goal : {right, !right}) {
          for (std::size_t i = 0; i < w; ++i) {
            solver->assume(cnf.literal(a_bits[i] ^ ((ab >> i & 1U) == 0)));
            solver->assume(cnf.literal(b_bits[i] ^ ((ab >> (w + i) & 1U) == 0)));
          }
          solver->assume(cnf.literal(goal, Cnf::Polarity::positive));
          ASSERT_EQ(solver->solve(),
                    goal == right ? SatSolver::Result::sat : SatSolver::Result::unsat)
              << op.name << ' ' << ab << " width " << w;
        }
      }
    }
  }
}

TEST(BitBlaster, AgreesWithNumbersOnWideConstants) {
  std::mt19937_64 random(1);
  for (const std::size_t w : {33U, 64U, 65U, 129U}) {
    Fixture fix;
    for (int round = 0; round < 40; ++round) {
      const QNumber a = random_number(random, w);
      const QNumber b = random_number(random, w);
      const Term* ta = fix.mgr.make_bv_number(a, w);
      const Term* tb = fix.mgr.make_bv_number(b, w);
      for (const Operation& op : kOperations) {
        ASSERT_EQ(read_constant(fix.blast((fix.mgr.*op.make)(ta, tb))), op.compute_wide(a, b, w))
            << op.name << ' ' << a.to_string() << ' ' << b.to_string() << " width " << w;
      }
    }
  }
}

TEST(BitBlaster, AgreesWithNumbersOnWideSymbolicOperands) {
  constexpr std::size_t kSamples = 64;
  std::mt19937_64 random(2);
  for (const std::size_t w : {33U, 64U, 65U, 129U}) {
    std::vector<QNumber> a;
    std::vector<QNumber> b;
    for (std::size_t i = 0; i < kSamples; ++i) {
      a.push_back(random_number(random, w));
      b.push_back(random_number(random, w));
    }
    for (const Operation& op : kOperations) {
      Fixture fix;
      const Term* ta = fix.variable("a", w);
      const Term* tb = fix.variable("b", w);
      const auto outputs = fix.blast((fix.mgr.*op.make)(ta, tb));
      Simulator simulator(fix.graph, outputs);
      for (std::size_t i = 0; i < w; ++i) {
        Simulator::Block a_block;
        Simulator::Block b_block;
        for (std::size_t lane = 0; lane < kSamples; ++lane) {
          a_block.set(lane, a[lane].test_bit(i));
          b_block.set(lane, b[lane].test_bit(i));
        }
        simulator.set_input(fix.blast(ta)[i], a_block);
        simulator.set_input(fix.blast(tb)[i], b_block);
      }
      simulator.run();
      for (std::size_t lane = 0; lane < kSamples; ++lane) {
        QNumber value;
        for (std::size_t i = 0; i < outputs.size(); ++i) {
          if (simulator.get_output(i).get(lane)) value += BVNumber::power_of_two(i);
        }
        ASSERT_EQ(value, op.compute_wide(a[lane], b[lane], w))
            << op.name << ' ' << a[lane].to_string() << ' ' << b[lane].to_string() << ' ' << w;
      }
    }
  }
}

TEST(BitBlaster, ComputesUnaryOperationsAndRearrangements) {
  for (std::size_t w = 1; w <= 5; ++w) {
    Fixture fix;
    TermManager& mgr = fix.mgr;
    const Term* x = fix.variable("x", w);
    expect_function(
        fix, mgr.make_bv_not(x), {x}, [](Word a) { return ~a; }, "bvnot");
    expect_function(
        fix, mgr.make_bv_neg(x), {x}, [](Word a) { return 0 - a; }, "bvneg");
    expect_function(
        fix, mgr.make_bv_zero_extend(3, x), {x}, [](Word a) { return a; }, "zero_extend");
    expect_function(
        fix, mgr.make_bv_sign_extend(3, x), {x}, [&](Word a) { return as_word(read_signed(a, w)); },
        "sign_extend");
    expect_function(
        fix, mgr.make_bv_concat(x, mgr.make_bv_not(x)), {x},
        [&](Word a) { return a << w | (~a & mask(w)); }, "concat");
    for (std::size_t msb = 0; msb < w; ++msb) {
      for (std::size_t lsb = 0; lsb <= msb; ++lsb) {
        expect_function(
            fix, mgr.make_bv_extract(msb, lsb, x), {x}, [&](Word a) { return a >> lsb; },
            "extract");
      }
    }
  }
}

TEST(BitBlaster, ComputesBooleanStructure) {
  Fixture fix;
  TermManager& mgr = fix.mgr;
  const Term* p = fix.proposition("p");
  const Term* q = fix.proposition("q");
  const Term* r = fix.proposition("r");
  const auto check = [&](const Term* t, bool (*expected)(bool, bool, bool)) {
    expect_function(
        fix, t, {p, q, r},
        [&](Word x) { return Word{expected((x & 1U) != 0, (x & 2U) != 0, (x & 4U) != 0)}; },
        t->to_string());
  };
  check(mgr.make_true(), [](bool, bool, bool) { return true; });
  check(mgr.make_false(), [](bool, bool, bool) { return false; });
  check(mgr.make_not(p), [](bool a, bool, bool) { return !a; });
  check(mgr.make_and(p, q), [](bool a, bool b, bool) { return a && b; });
  check(mgr.make_or(p, q), [](bool a, bool b, bool) { return a || b; });
  check(mgr.make_xor(p, q), [](bool a, bool b, bool) { return a != b; });
  check(mgr.make_implies(p, q), [](bool a, bool b, bool) { return !a || b; });
  check(mgr.make_iff(p, q), [](bool a, bool b, bool) { return a == b; });
  check(mgr.make_equal(p, q), [](bool a, bool b, bool) { return a == b; });
  check(mgr.make_term_ite(p, q, r), [](bool a, bool b, bool c) { return a ? b : c; });
}

TEST(BitBlaster, SelectsBetweenBitVectors) {
  Fixture fix;
  const Term* p = fix.proposition("p");
  const Term* x = fix.variable("x", 3);
  const Term* y = fix.variable("y", 3);
  expect_function(
      fix, fix.mgr.make_term_ite(p, x, y), {p, x, y},
      [](Word v) { return (v & 1U) != 0 ? v >> 1 & 7U : v >> 4 & 7U; }, "ite");
}

/// Of four choices between x and -x, those with the same value are the same bits.
TEST(BitBlaster, ChoosesSignsAsSignedDivisionDoes) {
  TermManager mgr;
  Aig graph;
  BitBlaster blaster(mgr, graph);
  const Term* x = mgr.make_constant(mgr.make_unique_symbol("x", mgr.get_bv_type(5)));
  const Term* y = mgr.make_constant(mgr.make_unique_symbol("y", mgr.get_bv_type(5)));
  const auto magnitude = [&mgr](const Term* t) {
    const Term* is_negative =
        mgr.make_equal(mgr.make_bv_extract(4, 4, t), mgr.make_bv_number(1, 1));
    return mgr.make_term_ite(is_negative, mgr.make_bv_neg(t), t);
  };
  const Term* rest = mgr.make_bv_urem(magnitude(x), magnitude(y));
  const Term* is_positive = mgr.make_equal(mgr.make_bv_extract(4, 4, x), mgr.make_bv_number(0, 1));
  const Term* choice = mgr.make_term_ite(is_positive, rest, mgr.make_bv_neg(rest));
  const auto bits = blaster.blast_bits(choice);
  EXPECT_TRUE(std::ranges::equal(bits, blaster.blast_bits(mgr.make_bv_srem(x, y))));
}

TEST(BitBlaster, GivesTheSameBitsAfterItForgotThem) {
  TermManager mgr;
  Aig graph;
  BitBlaster blaster(mgr, graph);
  const Term* x = mgr.make_constant(mgr.make_unique_symbol("x", mgr.get_bv_type(8)));
  const Term* y = mgr.make_constant(mgr.make_unique_symbol("y", mgr.get_bv_type(8)));
  const Term* product = mgr.make_bv_mul(x, mgr.make_bv_add(y, x));
  const Term* part = mgr.make_bv_extract(6, 2, product);
  const auto copy = [&](const Term* t) {
    const std::span<const Lit> bits = blaster.blast_bits(t);
    return std::vector<Lit>(bits.begin(), bits.end());
  };
  const std::vector<Lit> bits = copy(product);
  EXPECT_EQ(copy(part), std::vector<Lit>(bits.begin() + 2, bits.begin() + 7));
  const std::vector<Lit> input = copy(x);
  const std::uint32_t nodes = graph.get_node_count();
  blaster.release_bits();
  graph.release_table();
  EXPECT_EQ(copy(part), std::vector<Lit>(bits.begin() + 2, bits.begin() + 7));
  EXPECT_EQ(copy(product), bits);
  EXPECT_EQ(copy(x), input);
  EXPECT_EQ(graph.get_node_count(), nodes);
  EXPECT_EQ(blaster.get_inputs().size(), 2U);
}

TEST(BitBlaster, SharesOneDividerBetweenQuotientAndRemainder) {
  Fixture fix;
  const Term* a = fix.variable("a", 16);
  const Term* b = fix.variable("b", 16);
  fix.blast(fix.mgr.make_bv_udiv(a, b));
  const auto nodes = fix.graph.get_node_count();
  fix.blast(fix.mgr.make_bv_urem(a, b));
  EXPECT_EQ(fix.graph.get_node_count(), nodes);
}

TEST(BitBlaster, ComputesEveryOperationOnOneOperandTwice) {
  for (std::size_t width = 1; width <= 9; ++width) {
    for (const Operation& op : kOperations) {
      Fixture fix;
      const Term* x = fix.variable("x", width);
      expect_function(
          fix, (fix.mgr.*op.make)(x, x), {x}, [&](Word v) { return op.compute(v, v, width); },
          op.name + std::string(" on width ") + std::to_string(width));
    }
  }
}

TEST(BitBlaster, SquaresWithHalfTheAdders) {
  const auto count = [](bool squares) {
    Fixture fix;
    const Term* a = fix.mgr.make_bv_zero_extend(24, fix.variable("a", 24));
    const Term* b = fix.mgr.make_bv_zero_extend(24, fix.variable("b", 24));
    fix.blast(fix.mgr.make_bv_mul(a, squares ? a : b));
    return fix.graph.get_and_count();
  };
  EXPECT_LT(10 * count(true), 6 * count(false));
}

TEST(BitBlaster, SquaresWhatHasConstantBits) {
  Fixture fix;
  const Term* x = fix.variable("x", 4);
  const Term* y = fix.variable("y", 2);
  const Term* a =
      fix.mgr.make_bv_concat(fix.mgr.make_bv_concat(fix.number(0, 3), x),
                             fix.mgr.make_bv_concat(fix.number(2, 2), y));  // 000xxxx10yy
  expect_function(
      fix, fix.mgr.make_bv_mul(a, a), {x, y},
      [](Word v) {
        const Word value = (v & mask(4)) << 4 | 2 << 2 | v >> 4;
        return value * value;
      },
      "a square");
}

TEST(BitBlaster, MultipliesZeroExtendedOperandsWithoutUselessAdders) {
  Fixture fix;
  const Term* a = fix.variable("a", 8);
  const Term* b = fix.variable("b", 8);
  const auto product = [&](std::size_t n) {
    return fix.mgr.make_bv_mul(fix.mgr.make_bv_zero_extend(n, a),
                               fix.mgr.make_bv_zero_extend(n, b));
  };
  fix.blast(product(8));
  const auto nodes = fix.graph.get_node_count();
  const auto bits = fix.blast(product(100));
  EXPECT_EQ(fix.graph.get_node_count(), nodes);
  EXPECT_EQ(count_significant(bits), 16U);
}

TEST(BitBlaster, ListsInputsInTheOrderInWhichItMeetsThem) {
  Fixture fix;
  const Term* x = fix.variable("x", 3);
  const Term* p = fix.proposition("p");
  fix.blast(x);
  fix.blast(p);
  fix.blast(x);
  const auto& inputs = fix.blaster.get_inputs();
  ASSERT_EQ(inputs.size(), 2U);
  EXPECT_EQ(inputs[0].constant, x);
  EXPECT_EQ(inputs[0].bits.size(), 3U);
  EXPECT_EQ(inputs[1].constant, p);
  EXPECT_EQ(inputs[1].bits.size(), 1U);
  EXPECT_TRUE(fix.graph.is_input(inputs[0].bits[0].get_node()));
}

TEST(BitBlaster, KeepsEarlierBitsValidWhileItGrows) {
  Fixture fix;
  const auto first = fix.blaster.blast_bits(fix.variable("x", 7));
  const std::vector<Lit> copy(first.begin(), first.end());
  for (int i = 0; i < 1000; ++i)
    fix.blast(fix.variable("y", 100));
  EXPECT_TRUE(std::equal(first.begin(), first.end(), copy.begin(), copy.end()));
}

TEST(BitBlaster, RefusesFloatingPointTermsByName) {
  Fixture fix;
  TermManager& mgr = fix.mgr;
  const Term* f = mgr.make_constant(mgr.make_unique_symbol("my_float", mgr.get_fp_type(3, 4)));
  const Term* rm = mgr.make_constant(mgr.make_unique_symbol("mode", mgr.get_fprounding_type()));
  const Term* cases[] = {mgr.make_fp_isnan(f), mgr.make_equal(f, f), mgr.make_equal(rm, rm),
                         mgr.make_not(mgr.make_fp_lt(f, f))};
  for (const Term* t : cases) {
    EXPECT_THROW(fix.blaster.blast_bool(t), std::invalid_argument) << t->to_string();
  }
  try {
    fix.blaster.blast_bool(mgr.make_equal(f, f));
  } catch (const std::invalid_argument& error) {
    EXPECT_NE(std::string(error.what()).find("my_float"), std::string::npos) << error.what();
  }
  EXPECT_THROW(fix.blaster.blast_bits(f), std::invalid_argument);
}

TEST(BitBlaster, RefusesTermsOfTheOtherSort) {
  Fixture fix;
  EXPECT_THROW(fix.blaster.blast_bool(fix.variable("x", 1)), std::invalid_argument);
  EXPECT_THROW(fix.blaster.blast_bits(fix.proposition("p")), std::invalid_argument);
}

TEST(BitBlaster, WorksOnAfterARefusal) {
  Fixture fix;
  TermManager& mgr = fix.mgr;
  const Term* f = mgr.make_constant(mgr.make_unique_symbol("f", mgr.get_fp_type(3, 4)));
  const Term* p = fix.proposition("p");
  EXPECT_THROW(fix.blaster.blast_bool(mgr.make_and(p, mgr.make_fp_isnan(f))),
               std::invalid_argument);
  expect_function(
      fix, mgr.make_not(p), {p}, [](Word a) { return ~a; }, "not");
}

TEST(BitBlaster, BlastsDeepTermsWithoutNativeRecursion) {
  constexpr int kDepth = 200'000;
  Fixture fix;
  const auto solver = make_cadical_solver();
  Cnf cnf(fix.graph, *solver);
  const Term* chain = fix.proposition("p");
  const Term* bits = fix.variable("x", 2);
  const Term* y = fix.variable("y", 2);
  for (int i = 0; i < kDepth; ++i) {
    const Term* p = fix.proposition("p");
    chain = i % 2 == 0 ? fix.mgr.make_and(p, chain) : fix.mgr.make_or(p, chain);
    bits = i % 2 == 0 ? fix.mgr.make_bv_add(bits, y) : fix.mgr.make_bv_and(y, bits);
  }
  const Lit top = fix.blaster.blast_bool(chain);
  const Lit low = fix.blaster.blast_bits(bits)[0];
  cnf.assert_true(top);
  cnf.literal(top);
  cnf.literal(low);
  const Simulator simulator(fix.graph, std::array{top, low});
  EXPECT_GT(simulator.get_instruction_count(), 1000U);
  EXPECT_EQ(solver->solve(), SatSolver::Result::sat);
}

}  // namespace
}  // namespace vorn::bv
