#include "tests/sweep/circuit.h"

#include <fmt/format.h>

#include "vorn/fp/ieee_bv_encoder.h"

namespace vorn::sweep {

using bv::Simulator;

// Halves of the rows and columns change places, then quarters, down to single bits (Warren,
// "Hacker's Delight", 2nd edition, section 7-3).
void transpose(Matrix& matrix) {
  std::uint64_t mask = 0x00000000ffffffffU;
  for (unsigned half = 32; half != 0; half /= 2, mask ^= mask << half) {
    for (unsigned k = 0; k < 64; k = ((k | half) + 1) & ~half) {
      for (std::size_t w = 0; w < Simulator::kWords; ++w) {
        std::uint64_t& upper = matrix[k].words[w];
        std::uint64_t& lower = matrix[k | half].words[w];
        const std::uint64_t changed = (upper >> half ^ lower) & mask;
        upper ^= changed << half;
        lower ^= changed;
      }
    }
  }
}

SweptCircuit::SweptCircuit(const Operation& of, std::span<const std::size_t> wanted)
    : operation(of), modes(wanted.begin(), wanted.end()), blaster(mgr, aig) {
  fp::IeeeBvEncoder encoder(&mgr, &mgr);
  const IEEEFloat::format f = operation.format;
  std::vector<const Term*> operands;
  for (std::size_t i = 0; i < operation.arity; ++i) {
    operands.push_back(mgr.make_constant(mgr.make_unique_symbol("x", mgr.get_fp_type(f.e, f.m))));
    const Term* bits = mgr.make_constant(mgr.make_unique_symbol("b", mgr.get_bv_type(f.width())));
    encoder.define_encoding(operands.back(), bits);
    const std::span<const bv::Lit> literals = blaster.blast_bits(bits);
    index_bits.insert(index_bits.begin(), literals.begin(), literals.end());
  }
  std::vector<bv::Lit> outputs;
  std::vector<const Term*> constraints;
  for (const std::size_t mode : modes) {
    const Term* rm = mgr.make_fprounding(static_cast<IEEEFloat::rounding_mode>(mode));
    const Term* t = operation.build(mgr, rm, operands);
    const auto bits = blaster.blast_bits(encoder.get_bv_encoding(t, &constraints));
    result_width = bits.size();
    outputs.insert(outputs.end(), bits.begin(), bits.end());
    if (const Term* choice = encoder.get_choice(t)) {
      open_values.push_back(blaster.blast_bits(choice));
    }
  }
  simulator = std::make_unique<Simulator>(aig, outputs);
}

void SweptCircuit::set_inputs(std::uint64_t first) {
  for (std::size_t bit = 0; bit < index_bits.size(); ++bit) {
    const Simulator::Block block = Simulator::count_from(first, bit);
    simulator->set_input(index_bits[bit], block);
    Simulator::Block complement;  // get_open_value
    for (std::size_t w = 0; w < Simulator::kWords; ++w)
      complement.words[w] = ~block.words[w];
    for (const std::span<const bv::Lit> value : open_values) {
      if (bit < value.size()) simulator->set_input(value[bit], complement);
    }
  }
}

bool SweptCircuit::matches(std::size_t output, const std::array<std::uint64_t, kLanes>& wanted) {
  for (std::size_t bit = 0; bit < results.size(); ++bit) {
    results[bit] = bit < result_width ? simulator->get_output(output * result_width + bit)
                                      : Simulator::Block();
  }
  transpose(results);
  std::uint64_t difference = 0;
  for (std::size_t i = 0; i < 64; ++i) {
    for (std::size_t w = 0; w < Simulator::kWords; ++w)
      difference |= results[i].words[w] ^ wanted[64 * w + i];
  }
  return difference == 0;
}

std::vector<std::string> SweptCircuit::check_row(std::uint64_t row, std::size_t most) {
  std::vector<std::string> mismatches;
  const std::uint64_t end = (row + 1) * kRowSize;
  for (std::uint64_t first = row * kRowSize; first < end; first += kLanes) {
    set_inputs(first);
    simulator->run();
    operation.fill(first, expected);
    for (std::size_t i = 0; i < modes.size(); ++i) {
      const std::size_t mode = modes[i];
      if (matches(i, expected[mode])) continue;
      for (std::size_t lane = 0; lane < kLanes && mismatches.size() < most; ++lane) {
        const std::uint64_t got = results[lane % 64].words[lane / 64];
        const std::uint64_t wanted = expected[mode][lane];
        if (got != wanted) mismatches.push_back(describe(first + lane, mode, got, wanted));
      }
    }
    if (mismatches.size() >= most) break;
  }
  return mismatches;
}

std::string SweptCircuit::describe(std::uint64_t index, std::size_t mode, std::uint64_t got,
                                   std::uint64_t wanted) const {
  const std::size_t width = operation.format.width();
  std::string text = fmt::format("{} {}", operation.name, kModeNames[mode]);
  for (std::size_t i = operation.arity; i-- > 0;) {
    const std::uint64_t mask = (std::uint64_t{1} << width) - 1;
    text += fmt::format(" {:0{}x}", index >> (i * width) & mask, (width + 3) / 4);
  }
  return text + fmt::format(": {:x}, expected {:x}", got, wanted);
}

}  // namespace vorn::sweep
