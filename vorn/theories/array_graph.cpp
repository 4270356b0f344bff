#include "vorn/theories/array_graph.h"

#include <algorithm>

#include "vorn/semantics/array_values.h"
#include "vorn/theories/theory_terms.h"
#include "vorn/utils/termination_test.h"

namespace vorn::theories {
namespace {

/// Whether the number of values of a sort is left open.
bool has_open_size(const DataType* type) {
  return has_part(type, [](DataType::Kind kind) { return kind == DataType::Kind::uninterpreted; });
}

/// Comparisons of two indices from which on a subtraction of their bases takes fewer gates: it is
/// twice as large as a comparison, after which each distance is a comparison with a number.
constexpr std::uint64_t kFewComparisons = 8;

bool is_store(const Term* t) {
  return t->get_tag() == SymbolTag::array_store;
}

}  // namespace

// The graph -----------------------------------------------------------------------------------

void ArrayGraph::add_array(const Term* array) {
  const auto position = static_cast<Position>(nodes.size());
  if (!positions.try_emplace(array, position).second) return;
  nodes.push_back({array, {}, position});
}

void ArrayGraph::add_read(const Term* read) {
  reads.push_back(read);
}

void ArrayGraph::add_equality(const Term* equality) {
  equalities.push_back(equality);
}

ArrayGraph::Position ArrayGraph::find_component(Position node) {
  while (nodes[node].component != node) {
    nodes[node].component = nodes[nodes[node].component].component;
    node = nodes[node].component;
  }
  return node;
}

/// `b` is what `a` is made of, unless they are equal.
void ArrayGraph::connect(Position a, Position b, const Term* reason, bool is_equal) {
  const Position hidden = is_store(reason) ? number_of(reason->get_arg(1)) : kNone;
  nodes[a].edges.push_back({b, reason, !is_equal, hidden});
  nodes[b].edges.push_back({a, reason, false, hidden});
  nodes[find_component(a)].component = find_component(b);
}

void ArrayGraph::connect_all() {
  for (Position i = 0; i < nodes.size(); ++i) {
    const Term* array = nodes[i].array;
    if (is_store(array)) {
      connect(i, positions.at(array->get_arg(0)), array, false);
    } else if (array->get_tag() == SymbolTag::ite) {
      const bool holds = evaluator.evaluate(array->get_arg(0)).sign() != 0;
      connect(i, positions.at(array->get_arg(holds ? 1 : 2)), array, false);
    }
  }
  std::erase_if(equalities,
                [&](const Term* equality) { return evaluator.evaluate(equality).sign() == 0; });
  for (const Term* equality : equalities) {
    connect(positions.at(equality->get_arg(0)), positions.at(equality->get_arg(1)), equality, true);
  }
  for (Position i = 0; i < nodes.size(); ++i) {
    const auto [entry, fresh] = components.try_emplace(find_component(i));
    if (fresh) component_order.push_back(entry->first);
    if (is_store(nodes[i].array)) ++entry->second.writes;
    if (nodes[i].array->get_tag() == SymbolTag::array_const) entry->second.constants.push_back(i);
  }
  for (const Term* equality : equalities)
    components.at(find_component(positions.at(equality->get_arg(0)))).has_equality = true;
}

/// The number of the value of `t`.
ArrayGraph::Position ArrayGraph::number_of(const Term* t) {
  const QNumber& value = evaluator.evaluate(t);
  const auto [entry, fresh] = numbers.try_emplace(value, static_cast<Position>(values.size()));
  if (fresh) values.push_back(value);
  return entry->second;
}

// Accesses ------------------------------------------------------------------------------------

void ArrayGraph::start_access(Position node, const Term* index, const Term* element) {
  const Position index_value = number_of(index);
  const auto [group, fresh] = group_of.try_emplace(index_value, groups.size());
  if (fresh) groups.emplace_back();
  groups[group->second].push_back(static_cast<Position>(accesses.size()));
  accesses.push_back({index, element, node, index_value, number_of(element)});
  ++base_uses[split_offset(index).base];
}

/// Writes come first: a write hides what is below it, so no other access at its index passes.
void ArrayGraph::start_accesses() {
  for (Position i = 0; i < nodes.size(); ++i) {
    const Term* array = nodes[i].array;
    if (is_store(array)) start_access(i, array->get_arg(1), array->get_arg(2));
  }
  for (const Position representative : component_order)
    seed_small_domain(components.at(representative));
  for (const Term* read : reads)
    start_access(positions.at(read->get_arg(0)), read->get_arg(1), read);
}

/// Where writes may cover all indices, arrays of one element each need not have one in common, and
/// every index tells something of them.
void ArrayGraph::seed_small_domain(const Component& component) {
  if (!component.has_equality || component.constants.empty()) return;
  const DataType* index = nodes.front().array->get_type()->get_index();
  const auto count = semantics::count_values(index);
  if (!count || *count > component.writes) return;
  semantics::ArrayValues& table_of_arrays = evaluator.get_array_values();
  for (const QNumber& value : table_of_arrays.list_values(index)) {
    const Term* literal = semantics::make_literal(mgr, index, value, table_of_arrays);
    for (const Position node : component.constants)
      start_access(node, literal, nodes[node].array->get_arg(0));
  }
}

/// Accesses at different indices know nothing of each other, so one index follows the other.
void ArrayGraph::propagate(std::vector<const Term*>* lemmas) {
  for (const std::vector<Position>& group : groups) {
    const std::size_t begin = arrivals.size();
    for (const Position access : group)
      arrivals.push_back({accesses[access].node, access, kNone, nullptr});
    for (std::size_t next = begin; next < arrivals.size(); ++next) {
      if (poll.is_over()) throw Terminated();
      arrive(static_cast<Position>(next), lemmas);
    }
    for (std::size_t next = begin; next < arrivals.size(); ++next)
      nodes[arrivals[next].node].first = kNone;
  }
}

/// Compares an arrival with the first one at its node, or goes on from there.
void ArrayGraph::arrive(Position next, std::vector<const Term*>* lemmas) {
  const Arrival arrival = arrivals[next];
  const Access& access = accesses[arrival.access];
  Node& node = nodes[arrival.node];
  if (node.first != kNone) {
    const Access& first = accesses[arrivals[node.first].access];
    if (first.element_value != access.element_value) lemmas->push_back(state(node.first, next));
    return;
  }
  node.first = next;
  if (node.array->get_tag() == SymbolTag::array_const &&
      number_of(node.array->get_arg(0)) != access.element_value) {
    const Term* same = mgr.make_equal(access.element, node.array->get_arg(0));
    lemmas->push_back(explain(next, same));
    return;
  }
  const bool goes_up = components.at(find_component(arrival.node)).has_equality;
  for (const Edge& edge : node.edges) {
    const bool is_open = edge.is_down || goes_up;
    if (!is_open || edge.hidden == access.index_value) continue;
    arrivals.push_back({edge.to, arrival.access, next, edge.reason});
  }
}

// Reasons -------------------------------------------------------------------------------------

ArrayGraph::Offset ArrayGraph::split_offset(const Term* index) const {
  Offset offset{index, QNumber(0)};
  QNumber number;
  if (index->get_type()->get_kind() != DataType::Kind::bit_vector) return offset;
  while (offset.base->get_tag() == SymbolTag::bv_add) {
    const bool is_first = mgr.is_number(offset.base->get_arg(0), &number);
    if (!is_first && !mgr.is_number(offset.base->get_arg(1), &number)) return offset;
    offset.distance = offset.distance + number;
    offset.base = offset.base->get_arg(is_first ? 1 : 0);
  }
  if (mgr.is_number(offset.base, &number)) return {nullptr, offset.distance + number};
  return offset;
}

/// That two indices are equal. Addresses are mostly distances from few bases, which are subtracted
/// once, however many distances are compared.
const Term* ArrayGraph::state_equal(const Term* i, const Term* j) {
  Offset a = split_offset(i);
  Offset b = split_offset(j);
  const bool are_bits = i->get_type()->get_kind() == DataType::Kind::bit_vector;
  if (!are_bits || (a.distance.sign() == 0 && b.distance.sign() == 0)) return mgr.make_equal(i, j);
  if (a.base == nullptr || (b.base != nullptr && b.base->get_id() < a.base->get_id())) {
    std::swap(a, b);
  }
  const Term* distance = mgr.make_bv_number(b.distance - a.distance, i->get_type()->get_width());
  if (a.base == b.base) {
    return mgr.make_equal(distance, mgr.make_bv_number(0, i->get_type()->get_width()));
  }
  if (b.base == nullptr) return mgr.make_equal(a.base, distance);
  if (base_uses[a.base] * base_uses[b.base] < kFewComparisons) return mgr.make_equal(i, j);
  return mgr.make_equal(mgr.make_bv_sub(a.base, b.base), distance);
}

/// What lets an access at `index` pass an edge.
const Term* ArrayGraph::condition(const Term* reason, const Term* index) {
  if (is_store(reason)) return mgr.make_not(state_equal(index, reason->get_arg(1)));
  if (reason->get_tag() != SymbolTag::ite) return reason;
  const Term* choice = reason->get_arg(0);
  return evaluator.evaluate(choice).sign() != 0 ? choice : mgr.make_not(choice);
}

/// That `otherwise` holds unless the access could not come to where it arrived.
const Term* ArrayGraph::explain(Position position, const Term* otherwise) {
  const Term* index = accesses[arrivals[position].access].index;
  for (; arrivals[position].from != kNone; position = arrivals[position].from) {
    const Term* holds = condition(arrivals[position].reason, index);
    otherwise = mgr.make_or(mgr.make_not(holds), otherwise);
  }
  return otherwise;
}

/// That two accesses which arrived at one node agree if their indices do.
const Term* ArrayGraph::state(Position a, Position b) {
  const Access& first = accesses[arrivals[a].access];
  const Access& second = accesses[arrivals[b].access];
  const Term* agree = mgr.make_equal(first.element, second.element);
  const Term* differ = mgr.make_not(state_equal(first.index, second.index));
  return explain(a, explain(b, mgr.make_or(differ, agree)));
}

/// Two arrays of one element each that are connected agree at an index that no write between them
/// is at, and there is one unless the indices are few.
void ArrayGraph::compare_constants(const Component& component, std::vector<const Term*>* lemmas) {
  if (!component.has_equality || component.constants.size() < 2) return;
  const auto count = semantics::count_values(nodes.front().array->get_type()->get_index());
  if (count && *count <= component.writes) return;
  const Position first = component.constants.front();
  for (const Position other : component.constants) {
    if (number_of(nodes[first].array->get_arg(0)) == number_of(nodes[other].array->get_arg(0))) {
      continue;
    }
    lemmas->push_back(state_constants(first, other));
    is_infinity_assumed = has_open_size(nodes.front().array->get_type()->get_index());
    return;
  }
}

/// That two such arrays have the same element if they are connected as they are.
const Term* ArrayGraph::state_constants(Position a, Position b) {
  std::unordered_map<Position, const Edge*> ways{{a, nullptr}};
  std::unordered_map<Position, Position> sources;
  std::vector<Position> queue{a};
  for (std::size_t next = 0; !ways.contains(b); ++next) {
    for (const Edge& edge : nodes[queue[next]].edges) {
      if (!ways.try_emplace(edge.to, &edge).second) continue;
      sources[edge.to] = queue[next];
      queue.push_back(edge.to);
    }
  }
  const Term* lemma = mgr.make_equal(nodes[a].array->get_arg(0), nodes[b].array->get_arg(0));
  for (Position node = b; node != a; node = sources.at(node)) {
    const Term* reason = ways.at(node)->reason;
    if (is_store(reason)) continue;
    lemma = mgr.make_or(mgr.make_not(condition(reason, nullptr)), lemma);
  }
  return lemma;
}

// Results -------------------------------------------------------------------------------------

void ArrayGraph::find_conflicts(std::vector<const Term*>* lemmas) {
  connect_all();
  start_accesses();
  propagate(lemmas);
  for (const Position representative : component_order)
    compare_constants(components.at(representative), lemmas);
}

/// What no access tells of is the same in a component, so that its arrays agree there.
void ArrayGraph::assume_values(semantics::ArrayValues* values_of_arrays) {
  std::unordered_map<Position, QNumber> built;
  const auto is_base = [&](Position i) {
    const Term* array = nodes[i].array;
    return array->get_tag() == SymbolTag::none || array->get_tag() == SymbolTag::array_select;
  };
  for (Position i = 0; i < nodes.size(); ++i) {
    if (!is_base(i)) continue;
    const DataType* type = nodes[i].array->get_type();
    const Component& component = components.at(find_component(i));
    const QNumber otherwise =
        component.constants.empty()
            ? values_of_arrays->make_plain(type->get_element())
            : evaluator.evaluate(nodes[component.constants.front()].array->get_arg(0));
    built.emplace(i, values_of_arrays->make_constant(type, otherwise));
  }
  for (Position next = 0; next < arrivals.size(); ++next) {
    const auto array = built.find(arrivals[next].node);
    if (array == built.end()) continue;
    const Access& access = accesses[arrivals[next].access];
    array->second = values_of_arrays->store(array->second, values[access.index_value],
                                            values[access.element_value]);
  }
  for (const auto& [node, value] : built)
    evaluator.assume(nodes[node].array, value);
}

}  // namespace vorn::theories
