#include "vorn/bv/aiger.h"

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

namespace vorn::bv {
namespace {

void check_name(const std::string& name) {
  if (name.find('\n') != std::string::npos) {
    throw std::invalid_argument("AIGER: the name '" + name + "' is more than a line");
  }
}

/// The numbers that nodes have in the file; see the head of the header.
class Numbering {
 public:
  Numbering(const Aig& aig, std::span<const AigerInput> inputs, Lit output)
      : graph(aig), numbers(aig.get_node_count(), kUnneeded) {
    numbers[0] = 0;
    for (const AigerInput& input : inputs) {
      check_name(input.name);
      const std::uint32_t node = input.lit.get_node();
      if (input.lit.is_negated() || !graph.is_input(node) || numbers[node] != kUnneeded) {
        throw std::invalid_argument("AIGER: '" + input.name +
                                    "' is no input of the graph, or one that is listed twice");
      }
      numbers[node] = ++count;
    }
    mark(output);
    for (std::uint32_t node = 0; node < graph.get_node_count(); ++node) {
      if (numbers[node] != kNeeded) continue;
      ands.push_back(node);
      numbers[node] = ++count;
    }
  }

  const std::vector<std::uint32_t>& get_ands() const { return ands; }
  std::uint32_t get_count() const { return count; }
  std::uint32_t get_code(Lit lit) const {
    return 2 * numbers[lit.get_node()] + (lit.is_negated() ? 1U : 0U);
  }

 private:
  static constexpr std::uint32_t kUnneeded = ~std::uint32_t{0};
  static constexpr std::uint32_t kNeeded = kUnneeded - 1;

  void mark(Lit output) {
    std::vector<std::uint32_t> stack = {output.get_node()};
    while (!stack.empty()) {
      const std::uint32_t node = stack.back();
      stack.pop_back();
      if (numbers[node] != kUnneeded) continue;
      if (graph.is_input(node)) {
        throw std::invalid_argument("AIGER: the output depends on an input that is not listed");
      }
      numbers[node] = kNeeded;
      stack.push_back(graph.get_left(node).get_node());
      stack.push_back(graph.get_right(node).get_node());
    }
  }

  const Aig& graph;
  std::vector<std::uint32_t> numbers;  // by node
  std::vector<std::uint32_t> ands;     // those that are needed, in topological order
  std::uint32_t count = 0;
};

/// Seven bits a byte, the lowest first; the top bit says that more follow.
void write_delta(std::ostream& out, std::uint32_t delta) {
  for (; delta >= 0x80U; delta >>= 7U)
    out.put(static_cast<char>((delta & 0x7fU) | 0x80U));
  out.put(static_cast<char>(delta));
}

}  // namespace

void write_aiger(std::ostream& out, const Aig& graph, std::span<const AigerInput> inputs,
                 Lit output, const std::string& output_name, AigerFormat format) {
  check_name(output_name);
  const Numbering numbering(graph, inputs, output);
  const bool ascii = format == AigerFormat::ascii;
  out << (ascii ? "aag " : "aig ") << numbering.get_count() << ' ' << inputs.size() << " 0 1 "
      << numbering.get_ands().size() << '\n';
  if (ascii) {
    for (const AigerInput& input : inputs)
      out << numbering.get_code(input.lit) << '\n';
  }
  out << numbering.get_code(output) << '\n';
  for (const std::uint32_t node : numbering.get_ands()) {
    const std::uint32_t code = numbering.get_code({node, false});
    auto [small, large] = std::minmax(
        {numbering.get_code(graph.get_left(node)), numbering.get_code(graph.get_right(node))});
    if (ascii) {
      out << code << ' ' << large << ' ' << small << '\n';
    } else {
      write_delta(out, code - large);
      write_delta(out, large - small);
    }
  }
  for (std::size_t i = 0; i < inputs.size(); ++i)
    out << 'i' << i << ' ' << inputs[i].name << '\n';
  out << "o0 " << output_name << '\n';
}

}  // namespace vorn::bv
