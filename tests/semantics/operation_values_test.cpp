// The value of every operation of Bool and of bit-vectors, as constants fold, as terms evaluate and
// as circuits compute: on all operands of small widths and on random ones of large widths. What is
// run is the table of operations, so a new row without a value in the oracle fails.
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "tests/oracle/bit_operations.h"
#include "vorn/bv/aig.h"
#include "vorn/bv/bit_blaster.h"
#include "vorn/bv/simulator.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/terms/operations.h"
#include "vorn/terms/term_manager.h"

namespace vorn::semantics {
namespace {

using Indices = std::vector<std::size_t>;
using Values = std::vector<mpz_class>;

bool is_discrete(const Operation& op) {
  const bool has_circuit = op.theory == Theory::core || op.theory == Theory::bit_vectors;
  return has_circuit && !op.signature.get_letters().empty();
}

/// One operation on variables of certain widths; width 0 stands for Bool.
class Case {
 public:
  Case(const Operation& operation, Indices numerals, std::vector<std::size_t> operand_widths)
      : op(operation), indices(std::move(numerals)), widths(std::move(operand_widths)) {
    for (const std::size_t width : widths)
      variables.push_back(mgr.make_constant(mgr.make_unique_symbol("x", sort_of(width))));
    term = mgr.make(op.tag, indices, variables);
    blaster.blast_bool(mgr.make_true());
    const bool is_bool = mgr.is_bool_type(term->get_type());
    const auto bits = is_bool ? std::vector{blaster.blast_bool(term)} : list(term);
    outputs.assign(bits.begin(), bits.end());
    for (const Term* v : variables)
      inputs.push_back(mgr.is_bool_type(v->get_type()) ? std::vector{blaster.blast_bool(v)}
                                                       : list(v));
  }

  const std::vector<std::size_t>& get_widths() const { return widths; }

  void check(const std::vector<Values>& assignments) {
    bv::Simulator simulator(graph, outputs);
    for (std::size_t first = 0; first < assignments.size(); first += bv::Simulator::kLanes) {
      const std::size_t count = std::min(bv::Simulator::kLanes, assignments.size() - first);
      simulate(simulator, std::span(assignments).subspan(first, count));
      for (std::size_t lane = 0; lane < count; ++lane)
        check(simulator, lane, assignments[first + lane]);
    }
  }

 private:
  const DataType* sort_of(std::size_t width) {
    return width == 0 ? mgr.get_bool_type() : mgr.get_bv_type(width);
  }

  std::vector<bv::Lit> list(const Term* t) {
    const auto bits = blaster.blast_bits(t);
    return {bits.begin(), bits.end()};
  }

  void simulate(bv::Simulator& simulator, std::span<const Values> assignments) {
    for (std::size_t v = 0; v < inputs.size(); ++v) {
      for (std::size_t i = 0; i < inputs[v].size(); ++i) {
        bv::Simulator::Block block;
        for (std::size_t lane = 0; lane < assignments.size(); ++lane)
          block.set(lane, mpz_tstbit(assignments[lane][v].get_mpz_t(), i) != 0);
        simulator.set_input(inputs[v][i], block);
      }
    }
    simulator.run();
  }

  void check(const bv::Simulator& simulator, std::size_t lane, const Values& values) {
    std::vector<oracle::BitOperand> operands;
    std::vector<const Term*> literals;
    std::unordered_map<const Term*, QNumber> assignment;
    std::string text;
    for (std::size_t v = 0; v < values.size(); ++v) {
      operands.push_back({values[v], std::max<std::size_t>(1, widths[v])});
      const QNumber number = QNumber::from_mpz(values[v]);
      assignment.emplace(variables[v], number);
      literals.push_back(make_literal(mgr, variables[v]->get_type(), number));
      text += ' ' + literals.back()->to_string();
    }
    const auto wanted = oracle::apply_bit_operation(op.name, indices, operands);
    ASSERT_TRUE(wanted) << "no value is known for " << op.name;
    const QNumber number = QNumber::from_mpz(*wanted);

    const Term* folded = mgr.make(op.tag, indices, literals);
    EXPECT_EQ(folded, make_literal(mgr, term->get_type(), number)) << op.name << text;
    Evaluator evaluator(mgr, [&](const Term* t) { return assignment.at(t); });
    EXPECT_EQ(evaluator.evaluate(term), number) << op.name << text;
    mpz_class computed;
    for (std::size_t i = 0; i < outputs.size(); ++i) {
      if (simulator.get_output(i).get(lane)) mpz_setbit(computed.get_mpz_t(), i);
    }
    EXPECT_EQ(computed, *wanted) << op.name << text;
  }

  const Operation& op;
  Indices indices;
  std::vector<std::size_t> widths;
  TermManager mgr;
  std::vector<const Term*> variables;
  const Term* term = nullptr;
  bv::Aig graph;
  bv::BitBlaster blaster{mgr, graph};
  std::vector<bv::Lit> outputs;
  std::vector<std::vector<bv::Lit>> inputs;
};

/// The numerals to try for an operand of that width.
std::vector<Indices> list_indices(const Operation& op, std::size_t width) {
  std::vector<Indices> all;
  switch (op.indexing) {
    case Indexing::extraction:
      for (std::size_t lsb = 0; lsb < width; lsb += 1 + width / 8) {
        for (std::size_t msb = lsb; msb < width; msb += 1 + width / 8)
          all.push_back({msb, lsb});
      }
      break;
    case Indexing::extension:
      all = {{0}, {1}, {width + 1}};
      break;
    case Indexing::repetition:
      all = {{1}, {2}, {3}, {6}};
      break;
    case Indexing::rotation:
      all = {{0}, {1}, {width - 1}, {width}, {2 * width + 1}};
      break;
    default:
      all = {{}};
  }
  return all;
}

/// The operation on bit-vectors of this width; the lower part of a whole has `low` bits.
std::vector<std::size_t> find_widths(const Operation& op, std::size_t width, std::size_t low) {
  std::vector<std::size_t> widths;
  for (const char letter : op.signature.get_letters()) {
    std::size_t operand = letter == 'L' ? low : width;
    if (letter == 'B') operand = 0;
    if (letter == '1') operand = 1;
    widths.push_back(operand);
  }
  return widths;
}

void for_each_case(std::size_t width, std::size_t low, const std::function<void(Case&)>& action) {
  for (const Operation& op : get_operations()) {
    if (!is_discrete(op)) continue;
    for (const Indices& indices : list_indices(op, width)) {
      Case one(op, indices, find_widths(op, width, low));
      action(one);
    }
  }
}

std::vector<Values> list_assignments(const std::vector<std::size_t>& widths) {
  std::vector<Values> all = {{}};
  for (const std::size_t width : widths) {
    std::vector<Values> longer;
    for (const Values& values : all) {
      for (unsigned long v = 0; v < 1UL << std::max<std::size_t>(1, width); ++v) {
        longer.push_back(values);
        longer.back().emplace_back(v);
      }
    }
    all = std::move(longer);
  }
  return all;
}

TEST(OperationValues, OfAllSmallOperands) {
  for (std::size_t width = 1; width <= 4; ++width) {
    for_each_case(width, 3, [](Case& one) { one.check(list_assignments(one.get_widths())); });
  }
}

/// Numbers at the borders, where carries and overflows are, among others.
mpz_class draw(std::mt19937_64& random, std::size_t width) {
  mpz_class value;
  for (std::size_t i = 0; i < width; i += 32)
    value = (value << 32) + static_cast<unsigned long>(random() & 0xffffffffU);
  mpz_fdiv_r_2exp(value.get_mpz_t(), value.get_mpz_t(), width);
  switch (random() % 6) {
    case 0:
      return value & 3;
    case 1:
      return (mpz_class(1) << width) - 1 - (value & 3);
    case 2:
      return mpz_class(1) << (width - 1);
    case 3:
      return value >> (width / 2);
    default:
      return value;
  }
}

TEST(OperationValues, OfLargeOperands) {
  std::mt19937_64 random(1);
  for (const std::size_t width : {8, 31, 32, 62, 63, 64, 65, 100}) {
    for_each_case(width, 7, [&](Case& one) {
      std::vector<Values> assignments;
      for (int i = 0; i < 60; ++i) {
        Values values;
        for (const std::size_t w : one.get_widths())
          values.push_back(draw(random, std::max<std::size_t>(1, w)));
        assignments.push_back(values);
      }
      one.check(assignments);
    });
  }
}

}  // namespace
}  // namespace vorn::semantics
