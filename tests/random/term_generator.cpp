#include "tests/random/term_generator.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "tests/random/literals.h"

namespace vorn::random {
namespace {

class TermGenerator {
 public:
  TermGenerator(const Palette& sorts, const Scope& names, Random& source)
      : palette(sorts), scope(names), random(source) {}

  Expression make(const Sort& sort, const Limits& limits, std::vector<Name> parameters) {
    locals = std::move(parameters);
    budget = limits.cost;
    return term(sort, limits.depth);
  }

 private:
  Expression term(const Sort& sort, std::size_t depth) {
    if (depth == 0 || budget == 0 || sort == kReal || random.percent(6)) return leaf(sort);
    const std::size_t choice = random.below(100);
    if (choice < 6) return let(sort, depth);
    if (choice < 14 && !scope.closed.empty()) {
      if (const Expression* old = again(sort)) return *old;
    }
    if (sort == kBool && choice < 18 && !palette.floats.empty()) return related();
    if (choice < 26) {
      if (const Name* function = find(sort, true)) return call(*function, depth);
    }
    return operation(sort, depth);
  }

  const Expression* again(const Sort& sort) {
    if (hides_names()) return nullptr;
    std::vector<const Expression*> fitting;
    for (const Expression& e : scope.closed) {
      if (e.sort == sort) fitting.push_back(&e);
    }
    return fitting.empty() ? nullptr : random.pick(fitting);
  }

  // Names and constants

  const Name* find(const Sort& sort, bool function) {
    std::vector<const Name*> fitting;
    const auto search = [&](const std::vector<Name>& names) {
      for (const Name& name : names) {
        if (name.sort == sort && name.parameters.empty() != function && !is_hidden(name)) {
          fitting.push_back(&name);
        }
      }
    };
    // Variables first: a term that does not use what it binds is a waste.
    search(locals);
    if (fitting.empty() || random.percent(40)) search(scope.names);
    return fitting.empty() ? nullptr : random.pick(fitting);
  }

  /// Whether a variable of the term has the name of another thing.
  bool is_hidden(const Name& name) const {
    for (std::size_t i = locals.size(); i-- > 0;) {
      if (&locals[i] == &name) return false;
      if (locals[i].text == name.text) return true;
    }
    return false;
  }

  bool hides_names() const {
    return std::any_of(scope.names.begin(), scope.names.end(),
                       [this](const Name& name) { return is_hidden(name); });
  }

  static Expression use(const Name& name) {
    return {Expression::Kind::name, name.text, name.sort, {}, {}};
  }

  Expression leaf(const Sort& sort) {
    const Name* name = random.percent(80) ? find(sort, false) : nullptr;
    if (name != nullptr) return use(*name);
    if (sort.kind == Sort::Kind::bits && random.percent(70)) return adapted(sort);
    // Of a sort without literals the script keeps a constant in sight.
    if (!has_literals(sort)) return use(*find(sort, false));
    return random_literal(sort, random);
  }

  /// A variable of another width, cut or extended: else terms of odd widths would be constant.
  Expression adapted(const Sort& sort) {
    if (palette.widths.empty()) return random_literal(sort, random);
    const Sort other = bits_sort(random.pick(palette.widths));
    const Name* name = find(other, false);
    if (name == nullptr || name->sort == sort) return random_literal(sort, random);
    std::string head;
    if (other.w0 > sort.w0) {
      const std::size_t low = random.below(other.w0 - sort.w0 + 1);
      head = fmt::format("(_ extract {} {})", low + sort.w0 - 1, low);
    } else {
      head = fmt::format("(_ {} {})", random.percent(50) ? "zero_extend" : "sign_extend",
                         sort.w0 - other.w0);
    }
    return {Expression::Kind::theory, head, sort, {use(*name)}, {}};
  }

  // Forms

  Expression call(const Name& function, std::size_t depth) {
    Expression e = use(function);
    const std::vector<Parameter> parameters = function.parameters;  // locals may move meanwhile
    for (const Parameter& p : parameters)
      e.args.push_back(term(p.sort, depth - 1));
    return e;
  }

  Expression let(const Sort& sort, std::size_t depth) {
    Expression e = {Expression::Kind::let, "let", sort, {}, {}};
    const std::size_t count = random.percent(25) ? 2 : 1;
    std::vector<Name> bound;
    for (std::size_t i = 0; i < count; ++i) {
      const Sort value = palette.random_sort(random);
      e.args.push_back(term(value, depth - 1));
      bound.push_back({variable(i), value, {}});
      e.bound.push_back(bound.back().text);
    }
    if (count == 2 && e.bound[0] == e.bound[1]) {
      e.bound[1] = bound[1].text = "other";
    }
    const std::size_t before = locals.size();
    locals.insert(locals.end(), bound.begin(), bound.end());
    e.args.push_back(term(sort, depth - 1));
    locals.erase(locals.begin() + static_cast<std::ptrdiff_t>(before), locals.end());
    return e;
  }

  /// Mostly a name of its own; at times one that hides a name of the script.
  std::string variable(std::size_t i) {
    if (random.percent(15) && !scope.names.empty()) {
      const Name& hidden = random.pick(scope.names);
      if (has_literals(hidden.sort)) return hidden.text;
    }
    return fmt::format("v{}", locals.size() + i);
  }

  Expression operation(const Sort& sort, std::size_t depth) {
    std::optional<Application> chosen = choose(sort);
    if (!chosen) return leaf(sort);
    budget -= chosen->cost;
    Expression e = {Expression::Kind::theory, chosen->head, sort, {}, {}};
    for (const Sort& arg : chosen->args)
      e.args.push_back(term(arg, depth - 1));
    return e;
  }

  /// Results with operands in common: theorems speak of them, and operators that are chosen one by
  /// one seldom make them.
  Expression related() {
    const Sort sort = random.pick(palette.floats);
    const std::uint64_t cost = 40 * (sort.w0 + sort.w1) * (sort.w0 + sort.w1);
    if (cost > budget) return leaf(kBool);
    budget -= cost;
    const Expression a = leaf(sort);
    const Expression b = leaf(sort);
    const Expression c = leaf(sort);
    const Expression m = leaf(kMode);
    const auto make = [&sort](const char* head, std::vector<Expression> args) {
      return Expression{Expression::Kind::theory, head, sort, std::move(args), {}};
    };
    const auto compare = [this](const Expression& x, const Expression& y) {
      const char* const head = random.percent(60) ? "fp.lt" : "fp.leq";
      return Expression{Expression::Kind::theory, head, kBool, {x, y}, {}};
    };
    const auto rounded = [&](const char* mode) {
      return make("fp.roundToIntegral", {{Expression::Kind::theory, mode, kMode, {}, {}}, a});
    };
    const auto both = [](const Expression& x, const Expression& y) {
      return Expression{Expression::Kind::theory, "and", kBool, {x, y}, {}};
    };
    const char* const operators[] = {"fp.add", "fp.sub", "fp.mul", "fp.div"};
    const char* const head = operators[random.below(4)];
    switch (random.below(6)) {
      case 0:
        return compare(make(head, {m, a, b}), make(head, {m, c, b}));
      case 1:
        return compare(make(head, {m, a, b}), make(head, {m, a, c}));
      case 2:
        return both(compare(c, make("fp.add", {m, a, b})), compare(b, make("fp.sub", {m, c, a})));
      case 3:
        return both(compare(c, make("fp.div", {m, a, b})), compare(a, make("fp.mul", {m, b, c})));
      case 4:
        return both(compare(rounded("RTN"), rounded("RTZ")), compare(rounded("RTP"), b));
      default:
        return compare(make("fp.sub", {m, a, rounded("RTN")}),
                       make("fp.sub", {m, rounded(random.percent(50) ? "RTP" : "RNA"), a}));
    }
  }

  std::optional<Application> choose(const Sort& sort) {
    std::vector<const Operator*> fitting;
    std::size_t weight = 0;
    for (const Operator& op : get_operators()) {
      if (!can_make(op, sort, palette)) continue;
      fitting.push_back(&op);
      weight += op.weight;
    }
    for (std::size_t attempt = 0; attempt < 4 && weight > 0; ++attempt) {
      std::size_t place = random.below(weight);
      std::size_t i = 0;
      for (; place >= fitting[i]->weight; ++i)
        place -= fitting[i]->weight;
      std::optional<Application> chosen = apply(*fitting[i], sort, palette, random);
      if (chosen && chosen->cost <= budget) return chosen;
    }
    return std::nullopt;
  }

  const Palette& palette;
  const Scope& scope;
  Random& random;
  std::vector<Name> locals;
  std::uint64_t budget = 0;
};

}  // namespace

Expression random_term(const Sort& sort, const Limits& limits, const Scope& scope,
                       const Palette& palette, Random& random,
                       const std::vector<Name>& parameters) {
  return TermGenerator(palette, scope, random).make(sort, limits, parameters);
}

}  // namespace vorn::random
