// The commands of a script: what is declared, asserted and asked, and which scopes are open.
//
// A random formula is nearly always satisfiable. What makes a good part of the checks unsat is
// small sorts, many assertions at a time, and atoms that come back, half of them negated. In some
// scripts constants have bounds, and claims are made about terms. One assertion in five equates a
// constant with a term.
#include "tests/random/generator.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "tests/random/bounds.h"
#include "tests/random/operators.h"
#include "tests/random/random.h"
#include "tests/random/term_generator.h"

namespace vorn::random {
namespace {

/// How large a script and its circuits may become.
struct Profile {
  std::vector<std::size_t> widths;
  std::vector<Sort> floats;
  std::size_t variables;  // of each sort at the start
  std::uint64_t cost;     // of all terms together, about gates
};

/// What a term may cost late in a script, when the others have used up what there was.
constexpr std::uint64_t kLeastCost = 500;

const Profile kTiny = {{1, 2, 3, 4},
                       {float_sort(2, 2), float_sort(2, 3), float_sort(3, 3), float_sort(3, 2)},
                       1,
                       60000};
const Profile kSmall = {{1, 2, 3, 4, 5, 6, 7, 8},
                        {float_sort(2, 2), float_sort(2, 3), float_sort(3, 3), float_sort(3, 5),
                         float_sort(4, 4), float_sort(4, 3), float_sort(2, 6)},
                        2,
                        60000};
const Profile kLarge = {
    {8, 16, 32, 64},
    {float_sort(5, 11), float_sort(5, 11), float_sort(8, 24), float_sort(8, 8), float_sort(11, 53)},
    2,
    40000};

class ScriptGenerator {
 public:
  ScriptGenerator(std::uint64_t seed, bool with_arrays) : random(seed) {
    choose_palette();
    if (with_arrays) choose_arrays();
    is_bounded = random.percent(40);
  }

  Script run() {
    declare_all();
    const std::size_t steps = random.percent(10) ? 20 + random.below(30) : 4 + random.below(14);
    for (std::size_t i = 0; i < steps; ++i)
      step();
    add(Command::Kind::check, "check-sat");
    return std::move(script);
  }

 private:
  void choose_palette() {
    const std::size_t size = random.below(100);
    const Profile& chosen = size < 50 ? kTiny : size < 88 ? kSmall : kLarge;
    profile = &chosen;
    const std::size_t logic = random.below(100);
    const auto fill = [this](auto* to, const auto& from) {
      const std::size_t count = 1 + random.below(2);
      for (std::size_t i = 0; i < count; ++i)
        to->push_back(random.pick(from));
    };
    if (logic < 70) fill(&palette.floats, chosen.floats);
    if (logic >= 35) fill(&palette.widths, chosen.widths);
    // Sometimes a bit-vector as wide as a float, to go from one to the other.
    if (logic >= 35 && logic < 70 && random.percent(50)) {
      palette.widths.push_back(palette.floats[0].width());
    }
    budget = chosen.cost;
  }

  /// Few sorts, so that reads and writes meet.
  void choose_arrays() {
    palette.has_people = random.percent(40);
    // Without wide sorts beside them all assignments can be tried.
    if (random.percent(40)) {
      palette.floats.clear();
      palette.widths.assign(1, 1 + random.below(2));
    }
    const std::size_t count = random.percent(15) ? 0 : 1 + random.below(2);
    for (std::size_t i = 0; i < count; ++i) {
      const Sort index = random.percent(25) ? bits_sort(1) : palette.random_sort(random);
      palette.arrays.push_back(array_sort(index, palette.random_sort(random)));
    }
    has_functions = random.percent(60);
  }

  Command& add(Command::Kind kind, std::string keyword) {
    script.push_back({kind, std::move(keyword), {}, {}, {}, {}, 0});
    return script.back();
  }

  std::string fresh_name() {
    const std::size_t number = scope.fresh++;
    return number % 7 == 6 ? fmt::format("|x {}|", number) : fmt::format("x{}", number);
  }

  void declare(const Sort& sort) {
    Command& command =
        add(Command::Kind::declare, random.percent(70) ? "declare-const" : "declare-fun");
    command.name = fresh_name();
    command.sort = sort;
    scope.names.push_back({command.name, sort, {}});
    if (is_bounded && has_bounds(sort) && random.percent(60)) {
      script.push_back(make_assertion(random_bounds(use(scope.names.back()), random)));
    }
  }

  /// A function of one to three arguments.
  void declare_function() {
    Command& command = add(Command::Kind::declare, "declare-fun");
    command.name = fresh_name();
    command.sort = palette.random_sort(random);
    const std::size_t count = 1 + random.below(3);
    for (std::size_t i = 0; i < count; ++i)
      command.parameters.push_back({fmt::format("p{}", i), palette.random_sort(random)});
    scope.names.push_back({command.name, command.sort, command.parameters});
  }

  void declare_all() {
    declare(kBool);
    if (palette.has_people) add(Command::Kind::declare_sort, "declare-sort").sort = kPeople;
    for (std::size_t i = 0; palette.has_people && i < 2; ++i)
      declare(kPeople);
    for (const Sort& sort : palette.arrays)
      declare(sort);
    for (std::size_t i = 0; has_functions && i < 2; ++i)
      declare_function();
    if (!palette.floats.empty() && random.percent(60)) declare(kMode);
    for (std::size_t i = 0; i < profile->variables; ++i) {
      for (const std::size_t width : palette.widths)
        declare(bits_sort(width));
      for (const Sort& sort : palette.floats)
        declare(sort);
    }
  }

  Expression make_term(const Sort& sort, std::size_t depth) {
    const std::uint64_t cost = std::max(budget / 4, kLeastCost);
    budget -= std::min(budget, cost);
    return random_term(sort, {depth, cost}, scope, palette, random);
  }

  static Expression use(const Name& name) {
    return {Expression::Kind::name, name.text, name.sort, {}, {}};
  }

  /// Bounds of a constant, or a claim about a term.
  Expression make_bounded() {
    if (palette.floats.empty() && palette.widths.empty()) return make_formula();
    const bool is_float = palette.widths.empty() || (!palette.floats.empty() && random.percent(70));
    const Sort sort =
        is_float ? random.pick(palette.floats) : bits_sort(random.pick(palette.widths));
    const bool is_claim = random.percent(75);
    const Expression term = make_term(sort, is_claim ? 1 + random.below(4) / 2 : 0);
    Expression formula = is_claim ? random_claim(term, random) : random_bounds(term, random);
    remember(formula);
    return formula;
  }

  Expression make_formula() {
    if (random.percent(is_bounded ? 50 : 5)) return make_bounded();
    if (random.percent(20)) {
      if (std::optional<Expression> old = old_formula()) return *old;
    }
    Expression formula = make_term(kBool, 2 + random.below(3));
    remember(formula);
    return formula;
  }

  void step() {
    const std::size_t choice = random.below(100);
    if (choice < 50) {
      assert_formula();
    } else if (choice < 62) {
      add(Command::Kind::check, "check-sat");
    } else if (choice < 70) {
      check_assuming();
    } else if (choice < 79) {
      push();
    } else if (choice < 86) {
      pop();
    } else if (choice < 94) {
      define();
    } else if (choice < 99) {
      if (has_functions && random.percent(40)) return declare_function();
      declare(palette.random_sort(random));
    } else {
      add(Command::Kind::reset_assertions, "reset-assertions");
      scope = {};
      levels.clear();
      declare_all();
    }
  }

  void assert_formula() {
    Expression formula = random.percent(5)    ? make_congruence()
                         : random.percent(20) ? make_definition()
                                              : make_formula();
    if (random.percent(12)) {
      const std::string label = fresh_name();
      formula = {Expression::Kind::named, label, kBool, {formula}, {}};
      scope.names.push_back({label, kBool, {}});
    } else if (random.percent(12)) {
      name_subterm(&formula);
    }
    script.push_back(make_assertion(std::move(formula)));
  }

  /// Equates a constant with a term, in which it may occur, or with a literal or another constant.
  Expression make_definition() {
    std::vector<const Name*> constants;
    for (const Name& name : scope.names) {
      if (name.parameters.empty()) constants.push_back(&name);
    }
    if (constants.empty()) return make_formula();
    const Expression constant = use(*random.pick(constants));
    const Expression term = make_term(constant.sort, random.below(3));
    std::vector<Expression> sides = {constant, term};
    if (random.percent(50)) std::swap(sides[0], sides[1]);
    Expression equation = {Expression::Kind::theory, "=", kBool, std::move(sides), {}};
    remember(equation);
    if (random.percent(75)) return equation;
    return {Expression::Kind::theory, "and", kBool, {equation, make_formula()}, {}};
  }

  /// Asks, in one case of two beside another way out, for equal operands with different results.
  Expression make_congruence() {
    const Expression one = make_term(palette.random_sort(random), 1 + random.below(2));
    const bool operation = one.kind == Expression::Kind::theory && !one.args.empty();
    const std::size_t i = operation ? random.below(one.args.size()) : 0;
    if (!operation || one.args[i].sort == kReal) return make_formula();
    Expression two = one;
    two.args[i] = make_term(one.args[i].sort, random.below(2));
    const Expression equal = {Expression::Kind::theory, "=", kBool, {one.args[i], two.args[i]}, {}};
    const Expression different = {Expression::Kind::theory, "distinct", kBool, {one, two}, {}};
    const Expression both = {Expression::Kind::theory, "and", kBool, {equal, different}, {}};
    if (random.percent(50)) return both;
    return {Expression::Kind::theory, "or", kBool, {both, make_formula()}, {}};
  }

  /// Labels an argument; no variable can occur in those of the topmost operator.
  void name_subterm(Expression* formula) {
    if (formula->kind != Expression::Kind::theory || formula->args.empty()) return;
    Expression& arg = formula->args[random.below(formula->args.size())];
    if (arg.sort == kReal) return;
    const std::string label = fresh_name();
    scope.names.push_back({label, arg.sort, {}});
    const Sort sort = arg.sort;
    arg = {Expression::Kind::named, label, sort, {std::move(arg)}, {}};
  }

  void check_assuming() {
    Command& command = add(Command::Kind::check_assuming, "check-sat-assuming");
    const std::size_t count = random.below(4);
    for (std::size_t i = 0; i < count; ++i)
      command.terms.push_back(random.percent(50) ? make_literal() : make_formula());
  }

  Expression make_literal() {
    Expression literal = random_term(kBool, {0, 0}, scope, palette, random);
    if (random.percent(50)) return literal;
    return {Expression::Kind::theory, "not", kBool, {literal}, {}};
  }

  void push() {
    Command& command = add(Command::Kind::push, "push");
    command.levels = random.percent(15) ? 2 : 1;
    levels.insert(levels.end(), command.levels, scope);
  }

  void pop() {
    if (levels.empty()) return;
    const std::size_t count = std::min<std::size_t>(levels.size(), random.percent(15) ? 2 : 1);
    add(Command::Kind::pop, "pop").levels = count;
    // Names come back after a pop, often with another sort; at times they do not.
    const std::size_t fresh = scope.fresh;
    scope = levels[levels.size() - count];
    levels.resize(levels.size() - count);
    if (random.percent(50)) scope.fresh = fresh;
  }

  void define() {
    const Sort sort = palette.random_sort(random);
    std::vector<Parameter> parameters;
    std::vector<Name> names;
    const std::size_t count = random.below(3);
    for (std::size_t i = 0; i < count; ++i) {
      const bool hiding = i == 0 && random.percent(20) && !scope.names.empty();
      const std::string name = hiding ? scope.names[0].text : fmt::format("p{}", i);
      parameters.push_back({name, palette.random_sort(random)});
      names.push_back({name, parameters.back().sort, {}});
    }
    const std::uint64_t cost = budget / 8;
    budget -= cost;
    Expression body = random_term(sort, {1 + random.below(2), cost}, scope, palette, random, names);
    const bool constant = parameters.empty() && random.percent(40);
    Command& command = add(Command::Kind::define, constant ? "define-const" : "define-fun");
    command.name = fresh_name();
    command.sort = sort;
    command.parameters = parameters;
    command.terms.push_back(std::move(body));
    scope.names.push_back({command.name, sort, parameters});
  }

  // Terms that come back

  std::optional<Expression> old_formula() {
    std::vector<const Expression*> formulas;
    for (const Expression& e : scope.closed) {
      if (e.sort == kBool) formulas.push_back(&e);
    }
    if (formulas.empty()) return std::nullopt;
    const Expression& old = *random.pick(formulas);
    if (random.percent(55)) return old;
    return Expression{Expression::Kind::theory, "not", kBool, {old}, {}};
  }

  /// Keeps the formula and the arguments of its topmost operator, which contain no variables.
  void remember(const Expression& formula) {
    scope.closed.push_back(formula);
    if (formula.kind == Expression::Kind::let) return;
    for (const Expression& arg : formula.args) {
      if (!arg.args.empty()) scope.closed.push_back(arg);
    }
  }

  Random random;
  const Profile* profile = nullptr;
  Palette palette;
  bool has_functions = false;
  bool is_bounded = false;  // whether there are bounds of most constants, and many claims
  Scope scope;
  std::vector<Scope> levels;  // the scope at each push
  std::uint64_t budget = 0;
  Script script;
};

}  // namespace

Script generate(std::uint64_t seed, bool with_arrays) {
  return ScriptGenerator(seed, with_arrays).run();
}

}  // namespace vorn::random
