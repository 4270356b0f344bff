#include "vorn/smt2/sort_parser.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "vorn/smt2/literals.h"
#include "vorn/smt2/operators.h"

namespace vorn::smt2 {
namespace {

struct BuiltinSort {
  std::string_view name;
  std::uint32_t indices = 0;
  const DataType* (*build)(TermManager& mgr, std::span<const std::uint32_t> indices) = nullptr;
  bool is_array = false;

  bool is_supported() const { return build != nullptr || is_array; }
};

using Indices = std::span<const std::uint32_t>;

template <std::uint32_t E, std::uint32_t S>
const DataType* float_sort(TermManager& mgr, Indices) {
  return mgr.get_fp_type(E, S - 1);
}

/// A sort that nothing builds is known, and refused by name.
constexpr BuiltinSort kSorts[] = {
    {"Bool", 0, [](TermManager& mgr, Indices) { return mgr.get_bool_type(); }},
    {"RoundingMode", 0, [](TermManager& mgr, Indices) { return mgr.get_fprounding_type(); }},
    {"BitVec", 1, [](TermManager& mgr, Indices i) { return mgr.get_bv_type(i[0]); }},
    {"FloatingPoint", 2,
     [](TermManager& mgr, Indices i) {
       const IEEEFloat::format f = make_format(i[0], i[1]);
       return mgr.get_fp_type(f.e, f.m);
     }},
    {"Float16", 0, float_sort<5, 11>},
    {"Float32", 0, float_sort<8, 24>},
    {"Float64", 0, float_sort<11, 53>},
    {"Float128", 0, float_sort<15, 113>},
    {"Array", 0, nullptr, true},
    {"Int"},
    {"Real"},
    {"String"},
    {"RegLan"},
};

const BuiltinSort* find_builtin(std::string_view name) {
  for (const BuiltinSort& sort : kSorts) {
    if (sort.name == name) return &sort;
  }
  return nullptr;
}

/// Whether the sort is supported and complete without indices.
bool is_plain_sort(std::string_view name) {
  const BuiltinSort* sort = find_builtin(name);
  return sort != nullptr && sort->build != nullptr && sort->indices == 0;
}

}  // namespace

bool is_builtin_sort(std::string_view name) {
  const BuiltinSort* sort = find_builtin(name);
  return sort != nullptr && sort->is_supported();
}

SortValue SortParser::parse() {
  for (;;) {
    std::optional<SortValue> sort = read_step(tokens.next());
    if (!sort) continue;
    if (frames.empty()) return *std::move(sort);
    args.push_back(*std::move(sort));
  }
}

std::optional<SortValue> SortParser::read_step(const Token& token) {
  switch (token.kind) {
    case Token::Kind::open:
      return open_form();
    case Token::Kind::close:
      return close_form(token);
    default:
      return named(token);
  }
}

std::optional<SortValue> SortParser::open_form() {
  if (tokens.peek().is_word("_")) return indexed();
  const Token head = tokens.expect_symbol("the name of a sort");
  if (is_plain_sort(head.text) && !is_parameter(head) && tokens.at_close()) {
    tokens.next();
    note_parentheses(head);
    return named(head);
  }
  frames.push_back({head, &find(head), args.size()});
  return std::nullopt;
}

SortValue SortParser::close_form(const Token& close) {
  if (frames.empty()) tokens.fail_expected("a sort", close);
  const Frame& frame = frames.back();
  if (args.size() == frame.first_arg && frame.definition->parameters == 0) {
    note_parentheses(frame.head);
  }
  SortValue sort = apply(frame.head, *frame.definition, std::span(args).subspan(frame.first_arg));
  args.resize(frame.first_arg);
  frames.pop_back();
  return sort;
}

SortValue SortParser::named(const Token& name) const {
  if (!name.is_symbol() || is_reserved_word(name)) tokens.fail_expected("a sort", name);
  for (std::uint32_t i = 0; i < parameters.size(); ++i) {
    if (parameters[i].text == name.text) return SortValue::parameter(i);
  }
  const BuiltinSort* builtin = find_builtin(name.text);
  if (builtin == nullptr || builtin->build == nullptr) return apply(name, find(name), {});
  try {
    check_count(name.text, {"index", "indices"}, 0, builtin->indices, builtin->indices);
    return {builtin->build(mgr, {})};
  } catch (const std::invalid_argument& error) {
    tokens.fail(name.position, error.what());
  }
}

SortValue SortParser::indexed() {
  tokens.next();
  const Token name = tokens.expect_symbol("the name of a sort");
  const BuiltinSort* builtin = find_builtin(name.text);
  const bool is_defined = is_parameter(name) || symbols.find_sort(name.text) != nullptr;
  if (builtin == nullptr ? is_defined : builtin->is_array) {
    tokens.fail(name.position, fmt::format("the sort {} takes no indices", name.text));
  }
  if (builtin == nullptr || builtin->build == nullptr) fail_unknown(name);
  std::vector<std::uint32_t> indices;
  while (!tokens.at_close())
    indices.push_back(tokens.expect_index());
  tokens.next();
  try {
    check_count(name.text, {"index", "indices"}, indices.size(), builtin->indices,
                builtin->indices);
    return {builtin->build(mgr, indices)};
  } catch (const std::invalid_argument& error) {
    tokens.fail(name.position, error.what());
  }
}

SortValue SortParser::apply(const Token& head, const SortDefinition& definition,
                            std::span<const SortValue> sorts) const {
  try {
    check_count(head.text, {"sort", "sorts"}, sorts.size(), definition.parameters,
                definition.parameters);
    return apply_sort(mgr, definition, sorts);
  } catch (const std::invalid_argument& error) {
    tokens.fail(head.position, error.what());
  }
}

const SortDefinition& SortParser::find(const Token& name) const {
  static const SortDefinition array{2, {}, SortStep::array()};
  if (is_parameter(name)) fail_applied(name);
  const BuiltinSort* builtin = find_builtin(name.text);
  if (builtin != nullptr && builtin->is_array) return array;
  const SortDefinition* definition = symbols.find_sort(name.text);
  if (definition == nullptr) fail_unknown(name);
  return *definition;
}

void SortParser::fail_unknown(const Token& name) const {
  const BuiltinSort* builtin = find_builtin(name.text);
  if (builtin == nullptr) {
    tokens.fail(name.position, fmt::format("unknown sort '{}'", name.text));
  }
  if (builtin->build == nullptr) {
    tokens.fail(name.position, fmt::format("{} is not supported", name.text));
  }
  fail_applied(name);
}

void SortParser::note_parentheses(const Token& name) const {
  tokens.depart(Departure::sort_in_parentheses, name.position,
                [&] { return fmt::format("the sort {} stands without parentheses", name.text); });
}

void SortParser::fail_applied(const Token& name) const {
  tokens.fail(name.position, fmt::format("the sort {} takes no sorts as arguments", name.text));
}

bool SortParser::is_parameter(const Token& name) const {
  return std::ranges::any_of(parameters, [&](const Token& p) { return p.text == name.text; });
}

}  // namespace vorn::smt2
