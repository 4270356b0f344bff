// A node belongs to the stage of the first named value that needs it, in the order in which the
// circuit was built. Literals are written into the nodes that read them, which keeps the picture
// small. Nodes are numbered as they are met, so that one circuit has one picture.
#include "tools/dot.h"

#include <fmt/format.h>

#include <algorithm>
#include <unordered_set>

#include "vorn/terms/printer.h"

namespace vorn::tools {
namespace {

constexpr const char* kHeader =
    "digraph circuit {\n"
    "  graph [fontname=\"Helvetica\", fontsize=12, nodesep=0.15, ranksep=0.3]\n"
    "  node [fontname=\"Helvetica\", fontsize=10, shape=box, style=filled, fillcolor=white, "
    "height=0.2, margin=\"0.06,0.02\"]\n"
    "  edge [fontname=\"Helvetica\", fontsize=9, fontcolor=\"#1040a0\", arrowsize=0.5]\n";

std::string quoted(std::string_view text) {
  std::string out = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') out += '\\';
    out += c;
  }
  return out + '"';
}

bool is_literal(const Term* t) {
  return t->get_arity() == 0 &&
         (t->get_symbol()->get_literal() != nullptr || t->get_tag() == SymbolTag::bool_true ||
          t->get_tag() == SymbolTag::bool_false);
}

bool is_fresh_choice(const Term* t) {
  return t->get_arity() == 0 && t->get_symbol()->get_name().starts_with(".fp.i");
}

/// The operation, and its arguments where some are literals: the others are dots.
std::string operation_text(const Term* t) {
  std::string text = head_text(t->get_symbol());
  if (text.starts_with("(_ ")) text = text.substr(3, text.size() - 4);
  if (std::ranges::none_of(t->get_args(), is_literal)) return text;
  for (const Term* arg : t->get_args())
    text += is_literal(arg) ? " " + head_text(arg->get_symbol()) : " .";
  return text;
}

class Drawing {
 public:
  explicit Drawing(const Picture& drawn) : picture(drawn) {
    for (const Picture::Case& c : picture.cases)
      definitions[c.constant].push_back(&c);
  }

  void write(std::ostream& out) {
    place();
    out << kHeader;
    std::vector<std::vector<const Term*>> members(stages.size() + 1);
    for (const Term* t : order)
      members[clusters.at(t)].push_back(t);
    for (std::size_t i = 0; i < stages.size(); ++i) {
      out << fmt::format(
          "  subgraph cluster_{} {{\n    label={}; style=filled; color=\"#eeeeee\"\n", i,
          quoted(fp::get_stage_name(stages[i])));
      for (const Term* t : members[i])
        out << "  " << node(t);
      for (const std::string& literal : literals[i])
        out << "    " << literal;
      out << "  }\n";
    }
    for (const Term* t : members.back())
      out << node(t);
    for (std::size_t i = 0; i < picture.outputs.size(); ++i) {
      out << fmt::format("  o{} [label={}, shape=ellipse, penwidth=2]\n", i,
                         quoted(picture.outputs[i].first));
    }
    for (const Term* t : order)
      write_edges(out, t);
    for (std::size_t i = 0; i < picture.outputs.size(); ++i)
      write_edge(out, picture.outputs[i].second, fmt::format("o{}", i), "");
    write_unused(out);
    out << "}\n";
  }

 private:
  /// What a node is computed from.
  std::vector<const Term*> get_sources(const Term* t) const {
    std::vector<const Term*> sources(t->get_args().begin(), t->get_args().end());
    if (const auto found = definitions.find(t); found != definitions.end()) {
      for (const Picture::Case* c : found->second) {
        sources.push_back(c->other_case);
        sources.push_back(c->value);
      }
    }
    return sources;
  }

  /// Puts a term, and what it needs that has no place yet, into a cluster. Inputs stay outside.
  void place_below(const Term* root, std::size_t cluster) {
    std::vector<const Term*> stack{root};
    while (!stack.empty()) {
      const Term* t = stack.back();
      stack.pop_back();
      if (is_literal(t)) continue;
      const std::vector<const Term*> sources = get_sources(t);
      if (!clusters.emplace(t, sources.empty() ? kOutside : cluster).second) continue;
      numbers.emplace(t, order.size());
      order.push_back(t);
      for (std::size_t i = sources.size(); i-- > 0;)
        stack.push_back(sources[i]);
    }
  }

  void place() {
    for (const fp::Tie& tie : picture.ties) {
      const fp::Stage stage = fp::find_label(tie.label).stage;
      if (stages.empty() || stages.back() != stage) {
        stages.push_back(stage);
        literals.emplace_back();
      }
      if (is_literal(tie.value)) {
        literals.back().push_back(fmt::format(
            "l{} [label={}, shape=plaintext]\n", literal_count++,
            quoted(fmt::format("{} = {}", tie.label, head_text(tie.value->get_symbol())))));
        continue;
      }
      std::string& name = names[tie.value];
      name += (name.empty() ? "" : "\\n") + tie.label;
      place_below(tie.value, stages.size() - 1);
    }
    for (const auto& [name, term] : picture.outputs)
      place_below(term, kOutside);
    for (auto& [term, cluster] : clusters) {
      if (cluster == kOutside) cluster = stages.size();
    }
  }

  std::string id(const Term* t) const { return fmt::format("n{}", numbers.at(t)); }

  std::string node(const Term* t) const {
    const DataType* type = t->get_type();
    const bool is_bool = type->get_kind() == DataType::Kind::boolean;
    std::string text = operation_text(t);
    std::string shape;
    if (t->get_arity() == 0) {
      const auto known = picture.names.find(t);
      if (known != picture.names.end()) text = known->second;
      if (is_fresh_choice(t)) text = "choice";
      shape = definitions.contains(t) ? ", shape=diamond" : ", shape=ellipse, penwidth=2";
    }
    if (!is_bool) text += fmt::format(" : {}", type->get_width());
    return fmt::format("  {} [label={}{}]\n", id(t), quoted(text), shape);
  }

  void write_edge(std::ostream& out, const Term* from, const std::string& to,
                  const std::string& style) {
    if (is_literal(from)) return;
    out << fmt::format("  {} -> {}", id(from), to);
    std::string attributes = style;
    const auto name = names.find(from);
    if (name != names.end() && shown.insert(from).second) {
      attributes += fmt::format("{}label=\"{}\"", style.empty() ? "" : ", ", name->second);
    }
    out << (attributes.empty() ? "\n" : fmt::format(" [{}]\n", attributes));
  }

  void write_edges(std::ostream& out, const Term* t) {
    for (const Term* arg : t->get_args())
      write_edge(out, arg, id(t), "");
    const auto found = definitions.find(t);
    if (found == definitions.end()) return;
    for (const Picture::Case* c : found->second) {
      write_edge(out, c->value, id(t), "style=dashed");
      write_edge(out, c->other_case, id(t), "style=dotted");
    }
  }

  /// Named values that nothing reads.
  void write_unused(std::ostream& out) {
    for (const Term* t : order) {
      if (!names.contains(t) || shown.contains(t)) continue;
      out << fmt::format("  u{} [shape=point]\n", numbers.at(t));
      write_edge(out, t, fmt::format("u{}", numbers.at(t)), "");
    }
  }

  static constexpr std::size_t kOutside = ~std::size_t{0};

  const Picture& picture;
  std::unordered_map<const Term*, std::vector<const Picture::Case*>> definitions;
  std::vector<fp::Stage> stages;                   // one for each cluster
  std::vector<std::vector<std::string>> literals;  // nodes of named literals, likewise
  std::size_t literal_count = 0;
  std::unordered_map<const Term*, std::size_t> clusters;
  std::unordered_map<const Term*, std::size_t> numbers;
  std::unordered_map<const Term*, std::string> names;  // of intermediate values
  std::vector<const Term*> order;
  std::unordered_set<const Term*> shown;  // those whose name stands at an edge
};

/// A clause that defines a fresh constant; a null constant where it is none.
Picture::Case read_case(const Term* constraint) {
  if (constraint->get_tag() != SymbolTag::bool_or) return {};
  for (const std::size_t i : {1U, 0U}) {
    const Term* definition = constraint->get_arg(i);
    if (definition->get_tag() != SymbolTag::equal) continue;
    for (const std::size_t side : {0U, 1U}) {
      const Term* constant = definition->get_arg(side);
      if (is_fresh_choice(constant)) {
        return {constant, constraint->get_arg(1 - i), definition->get_arg(1 - side)};
      }
    }
  }
  return {};
}

}  // namespace

void add_constraints(Picture& picture, TermManager& manager,
                     std::span<const Term* const> constraints) {
  const auto is_input = [&](const Term* t) { return picture.names.contains(t); };
  for (const Term* constraint : constraints) {
    std::vector<fp::Tie> tie = fp::find_ties(manager, {&constraint, 1}, is_input);
    if (!tie.empty()) {
      picture.ties.push_back(std::move(tie.front()));
    } else if (const Picture::Case c = read_case(constraint); c.constant != nullptr) {
      picture.cases.push_back(c);
    } else {
      picture.outputs.emplace_back("assert", constraint);
    }
  }
}

void write_dot(std::ostream& out, const Picture& picture) {
  Drawing(picture).write(out);
}

}  // namespace vorn::tools
