// Every pair of binary16 operands through the exact encoder's circuits, in all five rounding modes.
//
//   binary16_sweep [OPERATION] [--from X] [--to X]    rows X of first operands, 0 to 65536
//   binary16_sweep [OPERATION] --sample N             N random rows
//
// The five encodings of an operation share one graph, which runs on 512 second operands at a time;
// results are compared bit by bit with a reference on machine integers. Rows are independent, so a
// sweep that was interrupted goes on where it stopped: the progress line names the row.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <atomic>
#include <chrono>
#include <functional>
#include <iostream>
#include <memory>
#include <mutex>
#include <numeric>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "tests/sweep/binary16_reference.h"
#include "vorn/bv/aig.h"
#include "vorn/bv/bit_blaster.h"
#include "vorn/bv/simulator.h"
#include "vorn/fp/ieee_bv_encoder.h"
#include "vorn/terms/term_manager.h"

namespace vorn::sweep {
namespace {

using Block = bv::Simulator::Block;

constexpr std::size_t kModes = 5;
constexpr std::size_t kBits = 16;
constexpr std::size_t kPatterns = std::size_t{1} << kBits;

struct Operation {
  const char* name;
  const Term* (TermManager::*build)(const Term* rm, const Term* a, const Term* b);
  Results (*reference)(std::uint16_t, std::uint16_t);
};

constexpr Operation kOperations[] = {{"add", &TermManager::make_fp_add, add},
                                     {"sub", &TermManager::make_fp_sub, sub},
                                     {"mul", &TermManager::make_fp_mul, mul},
                                     {"div", &TermManager::make_fp_div, div}};

/// One operation in five modes as one compiled circuit.
class Circuit {
 public:
  explicit Circuit(const Operation& op) : operation(op), blaster(mgr, aig) {
    fp::IeeeBvEncoder encoder(&mgr, &mgr);
    const Term* operands[2];
    for (std::size_t i = 0; i < 2; ++i) {
      operands[i] = mgr.make_constant(mgr.make_unique_symbol("x", mgr.get_fp_type(5, 10)));
      const Term* bits = mgr.make_constant(mgr.make_unique_symbol("b", mgr.get_bv_type(kBits)));
      encoder.define_encoding(operands[i], bits);
      inputs[i] = blaster.blast_bits(bits);
    }
    std::vector<bv::Lit> outputs;
    std::vector<const Term*> constraints;
    for (std::size_t mode = 0; mode < kModes; ++mode) {
      const Term* rm = mgr.make_fprounding(static_cast<IEEEFloat::rounding_mode>(mode));
      const Term* t = (mgr.*operation.build)(rm, operands[0], operands[1]);
      const auto bits = blaster.blast_bits(encoder.get_bv_encoding(t, &constraints));
      outputs.insert(outputs.end(), bits.begin(), bits.end());
    }
    simulator = std::make_unique<bv::Simulator>(aig, outputs);
  }

  /// Checks all pairs with first operand `x`; the first mismatch found, or nothing.
  std::string check_row(std::uint16_t x) {
    for (std::size_t bit = 0; bit < kBits; ++bit) {
      Block block;
      block.words.fill((x >> bit & 1U) != 0 ? ~std::uint64_t{0} : 0);
      simulator->set_input(inputs[0][bit], block);
    }
    for (std::size_t y = 0; y < kPatterns; y += bv::Simulator::kLanes) {
      for (std::size_t bit = 0; bit < kBits; ++bit) {
        simulator->set_input(inputs[1][bit], bv::Simulator::count_from(y, bit));
      }
      simulator->run();
      if (!matches(x, y)) return describe(x, y);
    }
    return "";
  }

 private:
  bool matches(std::uint16_t x, std::size_t first) {
    for (std::vector<Block>& mode : expected)
      mode.assign(kBits, Block());
    for (std::size_t word = 0; word < bv::Simulator::kWords; ++word) {
      for (std::size_t i = 0; i < 64; ++i) {
        const auto y = static_cast<std::uint16_t>(first + 64 * word + i);
        const Results results = operation.reference(x, y);
        for (std::size_t mode = 0; mode < kModes; ++mode)
          lanes[mode][i] = results[mode];
      }
      for (std::size_t mode = 0; mode < kModes; ++mode) {
        for (std::size_t bit = 0; bit < kBits; ++bit) {
          std::uint64_t column = 0;
          for (std::size_t i = 0; i < 64; ++i) {
            column |= std::uint64_t{lanes[mode][i] >> bit & 1U} << i;
          }
          expected[mode][bit].words[word] = column;
        }
      }
    }
    for (std::size_t mode = 0; mode < kModes; ++mode) {
      for (std::size_t bit = 0; bit < kBits; ++bit) {
        if (simulator->get_output(mode * kBits + bit) != expected[mode][bit]) return false;
      }
    }
    return true;
  }

  std::string describe(std::uint16_t x, std::size_t first) {
    for (std::size_t lane = 0; lane < bv::Simulator::kLanes; ++lane) {
      const auto y = static_cast<std::uint16_t>(first + lane);
      const Results results = operation.reference(x, y);
      for (std::size_t mode = 0; mode < kModes; ++mode) {
        unsigned got = 0;
        for (std::size_t bit = 0; bit < kBits; ++bit) {
          got |= simulator->get_output(mode * kBits + bit).get(lane) ? 1U << bit : 0U;
        }
        if (got == results[mode]) continue;
        return fmt::format("{} mode {} {:04x} {:04x}: {:04x}, expected {:04x}", operation.name,
                           mode, x, y, got, results[mode]);
      }
    }
    return "a mismatch that is gone";
  }

  const Operation& operation;
  TermManager mgr;
  bv::Aig aig;
  bv::BitBlaster blaster;
  std::array<std::span<const bv::Lit>, 2> inputs;
  std::unique_ptr<bv::Simulator> simulator;
  std::array<std::vector<Block>, kModes> expected;
  std::array<std::array<std::uint32_t, 64>, kModes> lanes = {};
};

/// Checks `rows` on all processors; true when everything matches.
bool sweep(const Operation& operation, const std::vector<std::uint16_t>& rows) {
  std::atomic<std::size_t> next = 0;
  std::mutex output;
  std::string mismatch;
  const auto start = std::chrono::steady_clock::now();
  const auto seconds = [&start] {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  };
  const auto work = [&] {
    Circuit circuit(operation);
    for (std::size_t i = next++; i < rows.size(); i = next++) {
      const std::string error = circuit.check_row(rows[i]);
      const std::lock_guard<std::mutex> lock(output);
      if (!error.empty()) {
        mismatch = error;
        next = rows.size();
      }
      if (i % 512 == 511) {
        std::cerr << fmt::format("{}: row {:#x}, {} of {}, {:.0f} s\n", operation.name, rows[i],
                                 i + 1, rows.size(), seconds());
      }
    }
  };
  std::vector<std::thread> threads;
  for (unsigned i = 0; i < std::max(1U, std::thread::hardware_concurrency()); ++i) {
    threads.emplace_back(work);
  }
  for (std::thread& thread : threads)
    thread.join();
  if (mismatch.empty()) {
    std::cout << fmt::format("{}: {} pairs in 5 modes match, {:.1f} s\n", operation.name,
                             rows.size() * kPatterns, seconds());
  } else {
    std::cout << "MISMATCH " << mismatch << '\n';
  }
  return mismatch.empty();
}

}  // namespace
}  // namespace vorn::sweep

int main(int argc, char** argv) {
  using namespace vorn::sweep;
  CLI::App app("Checks the exact encoder on every pair of binary16 operands.");
  std::string name;
  std::size_t from = 0;
  std::size_t to = kPatterns;
  std::size_t sample = 0;
  unsigned seed = 1;
  app.add_option("OPERATION", name, "add, sub, mul or div; all of them if not given");
  app.add_option("--from", from, "first row")->check(CLI::Range(std::size_t{0}, kPatterns));
  app.add_option("--to", to, "row after the last")->check(CLI::Range(std::size_t{0}, kPatterns));
  app.add_option("--sample", sample, "number of random rows");
  app.add_option("--seed", seed, "for the random rows");
  CLI11_PARSE(app, argc, argv);

  std::vector<std::uint16_t> rows;
  if (sample > 0) {
    std::mt19937 random(seed);
    while (rows.size() < sample)
      rows.push_back(static_cast<std::uint16_t>(random()));
  } else {
    for (std::size_t row = from; row < to; ++row)
      rows.push_back(static_cast<std::uint16_t>(row));
  }
  bool known = false;
  bool good = true;
  for (const Operation& operation : kOperations) {
    if (!name.empty() && name != operation.name) continue;
    known = true;
    good = sweep(operation, rows) && good;
  }
  if (!known) std::cerr << "unknown operation " << name << '\n';
  return known && good ? 0 : 1;
}
