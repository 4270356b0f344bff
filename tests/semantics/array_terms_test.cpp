// No rule changes a value: random terms of arrays, functions and uninterpreted sorts, built by a
// manager that rewrites and by one that does not, and both evaluated.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "tests/semantics/array_sorts.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/terms/term_manager.h"

namespace vorn::semantics {
namespace {

using Random = std::mt19937_64;

/// One term in both managers.
struct Twin {
  const Term* rewritten;
  const Term* plain;
};

/// A manager, with evaluation under assignments that depend on names and values alone, so that they
/// are the same for two managers.
class Side {
 public:
  explicit Side(bool rewrite) : mgr(rewrite), sorts(make_test_sorts(mgr)) {
    const std::vector<const DataType*> domain = {sorts[kBits], sorts[kPeople]};
    for (const std::size_t result : {kBits, kPeople})
      functions.emplace(result, mgr.make_unique_symbol("f", domain, sorts[result]));
  }

  void assign(std::uint64_t number) {
    seed = number;
    evaluator = std::make_unique<Evaluator>(
        mgr, [this](const Term* t) { return choose(t->get_symbol()->get_name(), t->get_type()); },
        [this](const Term* t, std::span<const QNumber> args) {
          std::string key = t->get_symbol()->get_name();
          for (std::size_t i = 0; i < args.size(); ++i)
            key += " " + describe(arrays, t->get_arg(i)->get_type(), args[i]);
          return choose(key, t->get_type());
        },
        &arrays);
  }

  std::string evaluate(const Term* t) {
    return describe(arrays, t->get_type(), evaluator->evaluate(t));
  }

  TermManager mgr;
  std::vector<const DataType*> sorts;
  std::map<std::size_t, const Symbol*> functions;  // by the position of their result's sort

 private:
  QNumber choose(const std::string& key, const DataType* type) {
    Random random(std::hash<std::string>()(key) ^ seed);
    return random_value(arrays, type, random);
  }

  ArrayValues arrays;
  std::uint64_t seed = 0;
  std::unique_ptr<Evaluator> evaluator;
};

/// Random terms of every sort, each made of earlier ones.
class Forest {
 public:
  explicit Forest(std::uint64_t seed) : random(seed), pools(rewriting.sorts.size()) {
    for (std::size_t s = 0; s < pools.size(); ++s) {
      for (const std::string name : {"x", "y"}) {
        pools[s].push_back(both(
            [&](Side& side) { return constant(side, name + std::to_string(s), side.sorts[s]); }));
      }
      add_literals(s);
    }
  }

  void grow(int count) {
    for (int n = 0; n < count; ++n)
      add_term();
  }

  void compare(std::uint64_t assignment) {
    rewriting.assign(assignment);
    plain.assign(assignment);
    for (const auto& pool : pools) {
      for (const Twin& twin : pool) {
        ASSERT_EQ(rewriting.evaluate(twin.rewritten), plain.evaluate(twin.plain))
            << twin.plain->to_string() << "\nbecame " << twin.rewritten->to_string();
      }
    }
  }

  /// How many terms the rules have changed.
  std::size_t count_changes() const {
    std::size_t count = 0;
    for (const auto& pool : pools) {
      for (const Twin& twin : pool)
        count += twin.rewritten->to_string() != twin.plain->to_string() ? 1 : 0;
    }
    return count;
  }

 private:
  static const Term* constant(Side& side, const std::string& name, const DataType* type) {
    return side.mgr.make_constant(side.mgr.make_unique_symbol(name, type));
  }
  Twin both(const std::function<const Term*(Side&)>& make) {
    return {make(rewriting), make(plain)};
  }
  /// The same on both sides, of arguments that are theirs.
  using Make = std::function<const Term*(Side&, const std::vector<const Term*>&)>;
  void add(std::size_t sort, const std::vector<Twin>& args, const Make& make) {
    std::vector<const Term*> first;
    std::vector<const Term*> second;
    for (const Twin& arg : args) {
      first.push_back(arg.rewritten);
      second.push_back(arg.plain);
    }
    pools[sort].push_back({make(rewriting, first), make(plain, second)});
  }

  void add_literals(std::size_t s) {
    const DataType* type = plain.sorts[s];
    if (type->get_kind() == DataType::Kind::array) return;
    // All patterns of NaN are among those of floats.
    const bool is_float = type->get_kind() == DataType::Kind::floating_point;
    const std::uint64_t count =
        is_float ? std::uint64_t{1} << type->get_value_width() : count_values(type).value_or(3);
    for (std::uint64_t n = 0; n < count; ++n) {
      pools[s].push_back(both([&](Side& side) {
        return make_literal(side.mgr, side.sorts[s], QNumber(static_cast<std::int64_t>(n)));
      }));
    }
  }

  std::size_t below(std::size_t count) { return random() % count; }
  /// One of the last terms of a sort, half of the time, since chains are long only then.
  Twin pick(std::size_t sort) {
    const auto& pool = pools[sort];
    return pool[below(2) == 0 ? pool.size() - 1 - below(std::min<std::size_t>(4, pool.size()))
                              : below(pool.size())];
  }
  std::size_t find(const DataType* plain_type) const {
    return static_cast<std::size_t>(std::ranges::find(plain.sorts, plain_type) -
                                    plain.sorts.begin());
  }

  void add_term() {
    using Args = const std::vector<const Term*>&;
    const std::size_t s = below(pools.size());
    switch (below(8)) {
      case 0:
        return add(s, {pick(kTruth), pick(s), pick(s)}, [](Side& side, Args args) {
          return side.mgr.make_term_ite(args[0], args[1], args[2]);
        });
      case 1:
        return add(kTruth, {pick(s), pick(s)},
                   [](Side& side, Args args) { return side.mgr.make_equal(args[0], args[1]); });
      case 2:
        return add(kTruth, {pick(kTruth)},
                   [](Side& side, Args args) { return side.mgr.make_not(args[0]); });
      case 3:
        return add(kBits, {pick(kBits), pick(kBits)},
                   [](Side& side, Args args) { return side.mgr.make_bv_add(args[0], args[1]); });
      case 4: {
        const std::size_t result = below(2) == 0 ? kBits : kPeople;
        return add(result, {pick(kBits), pick(kPeople)}, [result](Side& side, Args args) {
          return side.mgr.make_application(side.functions.at(result), args);
        });
      }
      default:
        if (plain.sorts[s]->get_kind() == DataType::Kind::array) add_array_term(s);
    }
  }

  void add_array_term(std::size_t s) {
    using Args = const std::vector<const Term*>&;
    const std::size_t index = find(plain.sorts[s]->get_index());
    const std::size_t element = find(plain.sorts[s]->get_element());
    switch (below(6)) {
      case 0:
        return add(s, {pick(element)}, [s](Side& side, Args args) {
          return side.mgr.make_const_array(side.sorts[s], args[0]);
        });
      case 1:
      case 2:
        return add(element, {pick(s), pick(index)},
                   [](Side& side, Args args) { return side.mgr.make_select(args[0], args[1]); });
      default:
        return add(s, {pick(s), pick(index), pick(element)}, [](Side& side, Args args) {
          return side.mgr.make_store(args[0], args[1], args[2]);
        });
    }
  }

  Random random;
  Side rewriting{true};
  Side plain{false};
  std::vector<std::vector<Twin>> pools;  // by sort
};

TEST(ArrayTerms, KeepTheirValuesWhenRewritten) {
  std::size_t changes = 0;
  for (std::uint64_t seed = 0; seed < 30; ++seed) {
    Forest forest(seed);
    forest.grow(400);
    for (std::uint64_t assignment = 0; assignment < 6; ++assignment)
      ASSERT_NO_FATAL_FAILURE(forest.compare(assignment)) << "seed " << seed;
    changes += forest.count_changes();
  }
  EXPECT_GT(changes, 500U) << "rules have to be met";
}

}  // namespace
}  // namespace vorn::semantics
