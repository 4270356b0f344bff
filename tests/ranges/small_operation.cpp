#include "tests/ranges/small_operation.h"

#include <algorithm>
#include <array>

#include "vorn/semantics/application.h"
#include "vorn/terms/bv_number.h"

namespace vorn::ranges {
namespace {

using Indices = std::vector<std::size_t>;

std::size_t below(std::mt19937_64& engine, std::size_t n) {
  return engine() % n;
}

QNumber number(std::size_t value) {
  return QNumber::from_integer(value);
}

std::uint32_t to_word(const QNumber& value) {
  std::int64_t word = 0;
  value.get_int64(&word);
  return static_cast<std::uint32_t>(word);
}

/// Numerals, sorts of arguments.
struct Shape {
  Indices indices;
  std::vector<const DataType*> sorts;
};

/// The sort of a letter of a signature.
const DataType* sort_of(TermManager& mgr, char letter, const DataType* any, IEEEFloat::format f,
                        IEEEFloat::format g) {
  switch (letter) {
    case 'A':
      return any;
    case 'B':
      return mgr.get_bool_type();
    case 'R':
      return mgr.get_fprounding_type();
    case 'F':
      return mgr.get_fp_type(f.e, f.m);
    case 'G':
      return mgr.get_fp_type(g.e, g.m);
    case 'T':
      return mgr.get_bv_type(f.width());
    case 'X':
      return mgr.get_bv_type(5);
    case 'H':
    case 'L':
      return mgr.get_bv_type(letter == 'H' ? 2 : 3);
    default:
      return mgr.get_bv_type(4);
  }
}

/// Which numerals an operation is tried with.
std::vector<Indices> find_indices(const Operation& op, IEEEFloat::format f) {
  switch (op.indexing) {
    case Indexing::extraction:
      return {{2, 1}, {4, 2}, {3, 0}, {4, 0}};
    case Indexing::extension:
      return {{0}, {2}};
    case Indexing::width:
      return {{1}, {2}, {3}};
    case Indexing::format:
      return {{f.e, f.m}};
    default:
      return {{}};
  }
}

std::vector<Shape> find_shapes(TermManager& mgr, const Operation& op, IEEEFloat::format f) {
  const std::string_view letters = op.signature.get_letters();
  std::vector<const DataType*> kinds = {mgr.get_bool_type()};
  if (letters.find('A') != std::string_view::npos) {
    kinds.insert(kinds.end(),
                 {mgr.get_fprounding_type(), mgr.get_bv_type(3), mgr.get_fp_type(f.e, f.m)});
  }
  std::vector<IEEEFloat::format> others = {f};
  if (letters.find('G') != std::string_view::npos) others = {{2, 1}, {2, 3}, {3, 2}, {3, 1}, f};
  std::vector<Shape> shapes;
  for (const Indices& indices : find_indices(op, f)) {
    for (const DataType* any : kinds) {
      for (const IEEEFloat::format g : others) {
        Shape shape{indices, {}};
        for (const char letter : letters)
          shape.sorts.push_back(sort_of(mgr, letter, any, f, g));
        shapes.push_back(std::move(shape));
      }
    }
  }
  return shapes;
}

}  // namespace

std::vector<QNumber> list_values(const DataType* type) {
  std::vector<QNumber> values;
  const std::size_t count = type->get_kind() == DataType::Kind::rounding_mode
                                ? kRoundingModes.size()
                                : std::size_t{1} << type->get_value_width();
  for (std::size_t i = 0; i < count; ++i) {
    const QNumber value = number(i);
    const bool is_float = type->get_kind() == DataType::Kind::floating_point;
    if (!is_float || semantics::canonical_bits(type, value) == value) values.push_back(value);
  }
  return values;
}

Range make_random_range(const DataType* type, std::mt19937_64& engine) {
  const std::vector<QNumber> values = list_values(type);
  const auto pick = [&] { return values[below(engine, values.size())]; };
  if (below(engine, 8) == 0) return make_everything(type);
  if (below(engine, 8) == 0) return make_value(type, pick());
  Range result = make_value(type, pick());
  for (std::size_t count = below(engine, 3) + 1; count > 0; --count)
    result = hull(result, make_value(type, pick()));
  // Sets with gaps, not only hulls of values.
  Range cut = result;
  if (const auto* floats = std::get_if<FloatRange>(&result)) {
    const auto classes = static_cast<FloatClassSet>(engine() | engine());
    cut = floats->restrict_to(classes & kAllClasses);
  } else if (const auto* bits = std::get_if<BitRange>(&result)) {
    const std::uint64_t width = bits->get_width();
    const QNumber ones = BVNumber::modulo(number((engine() & engine() & engine()) >> 8U), width);
    cut = bits->intersect(BitRange::of_bits(width, ones, BVNumber::all_ones(width)));
  }
  return is_empty(cut) ? result : cut;
}

SmallOperation::SmallOperation(TermManager& manager, SymbolTag::tag tag,
                               const std::vector<std::size_t>& indices,
                               const std::vector<const DataType*>& sorts)
    : mgr(manager) {
  std::vector<const Term*> arguments;
  std::size_t combinations = 1;
  for (const DataType* sort : sorts) {
    arguments.push_back(mgr.make_constant(mgr.make_unique_symbol("x", sort)));
    domains.push_back(list_values(sort));
    combinations *= domains.back().size();
  }
  term = mgr.make(tag, indices, arguments);
  results.reserve(combinations);
  for (std::size_t i = 0; i < combinations; ++i)
    results.push_back(compute(i));
}

std::string SmallOperation::get_name() const {
  std::string name(find_operation(term->get_tag())->name);
  for (const Term* arg : term->get_args())
    name += ' ' + arg->get_type()->to_string();
  return name + " -> " + term->get_type()->to_string();
}

std::vector<std::size_t> SmallOperation::split(std::size_t combination) const {
  std::vector<std::size_t> numbers;
  for (const std::vector<QNumber>& domain : domains) {
    numbers.push_back(combination % domain.size());
    combination /= domain.size();
  }
  return numbers;
}

std::vector<std::uint32_t> SmallOperation::compute(std::size_t combination) const {
  std::vector<const QNumber*> args;
  const std::vector<std::size_t> numbers = split(combination);
  for (std::size_t i = 0; i < numbers.size(); ++i)
    args.push_back(&domains[i][numbers[i]]);
  std::size_t choices = 1;
  std::size_t choice = 0;
  const semantics::OpenValue choose = [&](const Term* t, std::span<const QNumber> /*values*/) {
    const bool is_sign = t->get_type()->get_kind() == DataType::Kind::floating_point;
    choices = is_sign ? 2 : list_values(t->get_type()).size();
    return number(choice);
  };
  std::vector<std::uint32_t> found;
  for (; choice < choices; ++choice)
    found.push_back(to_word(semantics::apply(term, args, choose)));
  return found;
}

template <class Visit>
void SmallOperation::visit(const std::vector<Range>& ranges, const Visit& visit) const {
  std::vector<std::vector<std::size_t>> members(domains.size());
  for (std::size_t i = 0; i < domains.size(); ++i) {
    for (std::size_t v = 0; v < domains[i].size(); ++v) {
      if (contains(ranges[i], domains[i][v])) members[i].push_back(v);
    }
    if (members[i].empty()) return;
  }
  std::vector<std::size_t> position(domains.size(), 0);
  std::vector<std::size_t> numbers(domains.size());
  for (;;) {
    std::size_t combination = 0;
    for (std::size_t i = domains.size(); i-- > 0;) {
      numbers[i] = members[i][position[i]];
      combination = combination * domains[i].size() + numbers[i];
    }
    visit(numbers, results[combination]);
    std::size_t i = 0;
    while (i < position.size() && ++position[i] == members[i].size())
      position[i++] = 0;
    if (i == position.size()) return;
  }
}

std::vector<Range> SmallOperation::make_random_ranges(std::mt19937_64& engine) const {
  std::vector<Range> ranges;
  for (const Term* arg : term->get_args())
    ranges.push_back(make_random_range(arg->get_type(), engine));
  return ranges;
}

Range SmallOperation::make_random_result(std::mt19937_64& engine) const {
  const auto pick = [&] {
    const auto& some = results[below(engine, results.size())];
    return make_value(term->get_type(), number(some[below(engine, some.size())]));
  };
  if (below(engine, 2) == 0) return make_random_range(term->get_type(), engine);
  return hull(pick(), pick());
}

std::vector<Range> SmallOperation::get_arguments(std::size_t combination) const {
  const std::vector<std::size_t> numbers = split(combination);
  std::vector<Range> arguments;
  for (std::size_t i = 0; i < numbers.size(); ++i)
    arguments.push_back(make_value(term->get_arg(i)->get_type(), domains[i][numbers[i]]));
  return arguments;
}

Range SmallOperation::get_results(std::size_t combination) const {
  Range found = make_nothing(term->get_type());
  for (const std::uint32_t value : results[combination])
    found = hull(found, make_value(term->get_type(), number(value)));
  return found;
}

Range SmallOperation::find_results(const std::vector<Range>& ranges) const {
  std::vector<bool> seen(std::size_t{1} << term->get_type()->get_value_width());
  visit(ranges, [&](const auto& /*numbers*/, const std::vector<std::uint32_t>& some) {
    for (const std::uint32_t value : some)
      seen[value] = true;
  });
  Range found = make_nothing(term->get_type());
  for (std::size_t value = 0; value < seen.size(); ++value) {
    if (seen[value]) found = hull(found, make_value(term->get_type(), number(value)));
  }
  return found;
}

std::vector<Range> SmallOperation::find_arguments(const std::vector<Range>& ranges,
                                                  const Range& result) const {
  std::vector<bool> wanted(std::size_t{1} << term->get_type()->get_value_width());
  for (std::size_t value = 0; value < wanted.size(); ++value)
    wanted[value] = contains(result, number(value));
  std::vector<std::vector<bool>> seen;
  for (const std::vector<QNumber>& domain : domains)
    seen.emplace_back(domain.size());
  visit(ranges,
        [&](const std::vector<std::size_t>& numbers, const std::vector<std::uint32_t>& some) {
          if (std::none_of(some.begin(), some.end(), [&](std::uint32_t v) { return wanted[v]; }))
            return;
          for (std::size_t i = 0; i < numbers.size(); ++i)
            seen[i][numbers[i]] = true;
        });
  std::vector<Range> found;
  for (std::size_t i = 0; i < seen.size(); ++i) {
    const DataType* type = term->get_arg(i)->get_type();
    found.push_back(make_nothing(type));
    for (std::size_t v = 0; v < seen[i].size(); ++v) {
      if (seen[i][v]) found.back() = hull(found.back(), make_value(type, domains[i][v]));
    }
  }
  return found;
}

std::string SmallOperation::check_forward(const std::vector<Range>& ranges,
                                          const Forward& forward) const {
  const Range range = forward(term, ranges);
  const Range found = find_results(ranges);
  // Sets of this kind that hold all results hold the least of them.
  if (intersect(range, found) == found) return "";
  std::string text = get_name() + " on";
  for (const Range& argument : ranges)
    text += ' ' + to_string(argument);
  return text + " gives " + to_string(range) + " without all of " + to_string(found);
}

std::string SmallOperation::check_backward(const std::vector<Range>& ranges, const Range& result,
                                           const Backward& backward) const {
  std::vector<Range> narrowed = ranges;
  backward(term, result, narrowed);
  const std::vector<Range> found = find_arguments(ranges, result);
  for (std::size_t i = 0; i < ranges.size(); ++i) {
    const bool is_sound = intersect(narrowed[i], found[i]) == found[i];
    const bool is_narrower = intersect(narrowed[i], ranges[i]) == narrowed[i];
    if (is_sound && is_narrower) continue;
    std::string text = get_name() + " on";
    for (const Range& argument : ranges)
      text += ' ' + to_string(argument);
    return text + " with " + to_string(result) + " leaves of argument " + std::to_string(i) + ' ' +
           to_string(narrowed[i]) + ", not " + to_string(found[i]);
  }
  return "";
}

std::vector<SmallOperation> make_small_operations(TermManager& manager, Theory theory,
                                                  std::size_t e, std::size_t m, std::size_t most) {
  std::vector<SmallOperation> operations;
  for (const Operation& op : get_operations()) {
    if (op.theory != theory || op.derive != nullptr || op.signature.get_letters().empty()) continue;
    for (const Shape& shape : find_shapes(manager, op, {e, m})) {
      std::size_t combinations = 1;
      for (const DataType* sort : shape.sorts)
        combinations *= list_values(sort).size();
      if (combinations <= most) {
        operations.emplace_back(manager, op.tag, shape.indices, shape.sorts);
      }
    }
  }
  return operations;
}

std::optional<Range> drop_end(const Range& range, bool greatest) {
  if (const auto* floats = std::get_if<FloatRange>(&range)) {
    if (!floats->has(kNumbers) || floats->get_least() == floats->get_greatest()) return {};
    const QNumber& end = greatest ? floats->get_greatest() : floats->get_least();
    return floats->exclude(float_of_rank(floats->get_format(), end));
  }
  if (const auto* bits = std::get_if<BitRange>(&range)) {
    if (bits->is_empty() || bits->is_value()) return {};
    return bits->without_end(greatest ? bits->get_greatest() : bits->get_least());
  }
  if (const auto* truth = std::get_if<BoolRange>(&range)) {
    if (truth->is_empty() || truth->is_value()) return {};
    return truth->without(BoolRange::of(greatest));
  }
  return {};
}

}  // namespace vorn::ranges
