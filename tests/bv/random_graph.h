// Random graphs for tests, together with the truth table of every literal in them.
#ifndef VORN_TESTS_BV_RANDOM_GRAPH_H
#define VORN_TESTS_BV_RANDOM_GRAPH_H

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "vorn/bv/aig.h"

namespace vorn::bv {

/// A literal and its truth table over six inputs: bit v is its value where input i is bit i of v.
struct Function {
  Lit lit;
  std::uint64_t table;
};

/// Grows a graph by random operations on what it has already, constants included.
class RandomGraph {
 public:
  static constexpr std::size_t kInputs = 6;

  explicit RandomGraph(std::uint64_t seed) : random(seed) {
    static constexpr std::uint64_t kTables[kInputs] = {0xaaaaaaaaaaaaaaaaU, 0xccccccccccccccccU,
                                                       0xf0f0f0f0f0f0f0f0U, 0xff00ff00ff00ff00U,
                                                       0xffff0000ffff0000U, 0xffffffff00000000U};
    functions.push_back({kTrue, ~std::uint64_t{0}});
    for (const std::uint64_t table : kTables)
      functions.push_back({graph.make_input(), table});
  }

  /// Adds one function and returns it.
  Function grow() {
    const Function a = pick();
    const Function b = pick();
    const Function c = pick();
    const std::uint64_t either = a.table | b.table;
    switch (random() % 8) {
      case 0:
      case 1:
      case 2:
        return keep({graph.make_and(a.lit, b.lit), a.table & b.table});
      case 3:
        return keep({graph.make_or(a.lit, b.lit), either});
      case 4:
        return keep({graph.make_xor(a.lit, b.lit), a.table ^ b.table});
      case 5:
        return keep(
            {graph.make_ite(a.lit, b.lit, c.lit), (a.table & b.table) | (~a.table & c.table)});
      case 6:
        return keep(
            {graph.make_maj(a.lit, b.lit, c.lit), (a.table & b.table) | (either & c.table)});
      default:
        return keep({graph.make_xor3(a.lit, b.lit, c.lit), a.table ^ b.table ^ c.table});
    }
  }

  /// A function so far, or its negation.
  Function pick() {
    const Function f = functions[random() % functions.size()];
    return (random() & 1U) != 0 ? Function{!f.lit, ~f.table} : f;
  }

  Lit get_input(std::size_t i) const { return functions[1 + i].lit; }
  std::uint64_t draw() { return random(); }

  Aig graph;
  std::vector<Function> functions;  // the constant true, the inputs, then what grew

 private:
  Function keep(Function f) {
    functions.push_back(f);
    return f;
  }

  std::mt19937_64 random;
};

}  // namespace vorn::bv

#endif
