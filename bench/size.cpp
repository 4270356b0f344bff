// Variables and clauses of one operation on variables whose result is a further variable: what a
// formula pays for it, side conditions of all leaves included.
//
//   size [--format E,M] [--op NAME] [--modes] [--large] [--csv]
//
// One line for each format and operation, the two encoders side by side. Where an operation rests
// on one of integers, that of the significands alone stands beside it: what is left is the price of
// floating point.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <istream>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "vorn/bv/aig.h"
#include "vorn/bv/bit_blaster.h"
#include "vorn/bv/cnf.h"
#include "vorn/bv/sat_solver.h"
#include "vorn/fp/ieee_bv_encoder.h"
#include "vorn/terms/term_manager.h"

namespace {

using vorn::DataType;
using vorn::Term;
using vorn::TermManager;

/// Bits of the exponent and of the trailing significand.
struct Format {
  std::size_t e, m;
  bool operator==(const Format&) const = default;
};

/// Reads "E,M".
std::istream& operator>>(std::istream& in, Format& format) {
  char comma = ' ';
  if (in >> format.e >> comma >> format.m && comma != ',') in.setstate(std::ios::failbit);
  return in;
}

/// In ascending order. A format is converted to its neighbours, those that hold all its values or
/// have no others.
constexpr Format kFormats[] = {{3, 3}, {5, 10}, {8, 7}, {8, 23}, {11, 52}, {15, 112}};
constexpr std::size_t kIntegerWidth = 32;

bool contains(const Format& large, const Format& small) {
  return large != small && large.e >= small.e && large.m >= small.m;
}

std::optional<Format> find_larger(const Format& format) {
  for (const Format& other : kFormats)
    if (contains(other, format)) return other;
  return std::nullopt;
}

std::optional<Format> find_smaller(const Format& format) {
  std::optional<Format> found;
  for (const Format& other : kFormats)
    if (contains(format, other)) found = other;
  return found;
}

struct Operands {
  const Term* rm;
  const Term* x;
  const Term* y;
  const Term* z;
  const Term* v;  // of kIntegerWidth bits
};

/// Builds an operation; null where the format has none.
using Build = const Term* (*)(TermManager& t, const Operands& o, const Format& format);

struct Operation {
  const char* name;
  bool rounds;
  Build build;
  /// Significands of a format, m + 1 bits each, to what the circuit of the operation wants of them.
  std::vector<const Term*> (*build_integer)(TermManager& t, const Term* x, const Term* y,
                                            std::size_t m);
};

std::vector<const Term*> multiply(TermManager& t, const Term* x, const Term* y, std::size_t m) {
  return {t.make_bv_mul(t.make_bv_zero_extend(m + 1, x), t.make_bv_zero_extend(m + 1, y))};
}

/// The m + 5 bits of the quotient that count, and the remainder.
std::vector<const Term*> divide(TermManager& t, const Term* x, const Term* y, std::size_t m) {
  const Term* dividend = t.make_bv_concat(x, t.make_bv_number(0, m + 4));
  const Term* divisor = t.make_bv_zero_extend(m + 4, y);
  const Term* quotient = t.make_bv_udiv(dividend, divisor);
  return {t.make_bv_extract(m + 4, 0, quotient), t.make_bv_urem(dividend, divisor)};
}

const Operation kOperations[] = {
    {"add", true,
     [](TermManager& t, const Operands& o, const Format&) { return t.make_fp_add(o.rm, o.x, o.y); },
     nullptr},
    {"sub", true,
     [](TermManager& t, const Operands& o, const Format&) { return t.make_fp_sub(o.rm, o.x, o.y); },
     nullptr},
    {"mul", true,
     [](TermManager& t, const Operands& o, const Format&) { return t.make_fp_mul(o.rm, o.x, o.y); },
     multiply},
    {"div", true,
     [](TermManager& t, const Operands& o, const Format&) { return t.make_fp_div(o.rm, o.x, o.y); },
     divide},
    {"fma", true,
     [](TermManager& t, const Operands& o, const Format&) {
       return t.make_fp_fma(o.rm, o.x, o.y, o.z);
     },
     multiply},
    {"sqrt", true,
     [](TermManager& t, const Operands& o, const Format&) { return t.make_fp_sqrt(o.rm, o.x); },
     nullptr},
    {"rem", false,
     [](TermManager& t, const Operands& o, const Format&) { return t.make_fp_rem(o.x, o.y); },
     nullptr},
    {"rti", true,
     [](TermManager& t, const Operands& o, const Format&) {
       return t.make_fp_round_to_integral(o.rm, o.x);
     },
     nullptr},
    {"to_sbv", true,
     [](TermManager& t, const Operands& o, const Format&) {
       return t.make_fp_to_sbv(kIntegerWidth, o.rm, o.x);
     },
     nullptr},
    {"to_ubv", true,
     [](TermManager& t, const Operands& o, const Format&) {
       return t.make_fp_to_ubv(kIntegerWidth, o.rm, o.x);
     },
     nullptr},
    {"from_sbv", true,
     [](TermManager& t, const Operands& o, const Format& f) {
       return t.make_fp_from_sbv(f.e, f.m, o.rm, o.v);
     },
     nullptr},
    {"widen", true,
     [](TermManager& t, const Operands& o, const Format& f) {
       const auto to = find_larger(f);
       return to ? t.make_fp_cast(to->e, to->m, o.rm, o.x) : nullptr;
     },
     nullptr},
    {"narrow", true,
     [](TermManager& t, const Operands& o, const Format& f) {
       const auto to = find_smaller(f);
       return to ? t.make_fp_cast(to->e, to->m, o.rm, o.x) : nullptr;
     },
     nullptr},
    {"lt", false,
     [](TermManager& t, const Operands& o, const Format&) { return t.make_fp_lt(o.x, o.y); },
     nullptr},
    {"min", false,
     [](TermManager& t, const Operands& o, const Format&) { return t.make_fp_min(o.x, o.y); },
     nullptr},
};

struct Mode {
  const char* name;
  const Term* (*make)(TermManager& t);
};

const Mode kModes[] = {
    {"symbolic",
     [](TermManager& t) {
       return t.make_constant(t.make_unique_symbol("rm", t.get_fprounding_type()));
     }},
    {"RNE", [](TermManager& t) { return t.make_fprounding_even(); }},
    {"RTZ", [](TermManager& t) { return t.make_fprounding_zero(); }},
};
/// Of an operation that does not round.
const Mode kNoMode = {"-", kModes[0].make};

/// Counts what a SAT solver would be given, and keeps nothing of it.
class Counter final : public vorn::bv::SatSolver {
 public:
  int new_variable() override { return ++variables; }
  using SatSolver::add_clause;
  void add_clause(std::span<const int> /*literals*/) override { ++clauses; }
  void assume(int /*literal*/) override {}
  Result solve() override { return Result::unknown; }
  void limit_conflicts(int) override {}
  bool value(int /*literal*/) const override { throw std::logic_error("there is no model"); }
  bool failed(int /*literal*/) const override { throw std::logic_error("there is no core"); }
  void set_termination_test(const vorn::TerminationTest* /*test*/) override {}
  std::uint64_t get_variable_count() const override { return static_cast<unsigned>(variables); }
  std::uint64_t get_clause_count() const override { return clauses; }

 private:
  int variables = 0;
  std::uint64_t clauses = 0;
};

struct Size {
  std::uint64_t variables, clauses;
};

/// The size of all these Boolean terms asserted together.
Size measure(const TermManager& mgr, const std::vector<const Term*>& assertions) {
  vorn::bv::Aig aig;
  vorn::bv::BitBlaster blaster(mgr, aig);
  Counter counter;
  vorn::bv::Cnf cnf(aig, counter);
  for (const Term* assertion : assertions)
    cnf.assert_true(blaster.blast_bool(assertion));
  return {counter.get_variable_count(), counter.get_clause_count()};
}

const Term* make_variable(TermManager& mgr, const DataType* type) {
  return mgr.make_constant(mgr.make_unique_symbol("v", type));
}

/// Nothing where the encoder has no circuit for the operation, or the format no such operation.
template <typename Encoder>
std::optional<Size> measure(const Operation& operation, const Format& format, const Mode& mode) {
  TermManager mgr;
  Encoder encoder(&mgr, &mgr);
  const DataType* type = mgr.get_fp_type(format.e, format.m);
  const Operands operands = {mode.make(mgr), make_variable(mgr, type), make_variable(mgr, type),
                             make_variable(mgr, type),
                             make_variable(mgr, mgr.get_bv_type(kIntegerWidth))};
  const Term* t = operation.build(mgr, operands, format);
  if (t == nullptr || !encoder.supports(t->get_tag())) return std::nullopt;
  const Term* result = make_variable(mgr, t->get_type());
  std::vector<const Term*> assertions;
  if (mgr.is_fp_type(t->get_type(), nullptr, nullptr)) {
    const Term* encoding = encoder.get_bv_encoding(mgr.make_equal(result, t), &assertions);
    assertions.push_back(encoding);
  } else {
    const Term* encoding = encoder.get_bv_encoding(t, &assertions);
    assertions.push_back(mgr.make_equal(result, encoding));
  }
  return measure(mgr, assertions);
}

/// The base encoder throws for formats in which its circuits have no well-formed widths.
std::optional<Size> measure_base(const Operation& operation, const Format& format,
                                 const Mode& mode) {
  try {
    return measure<vorn::fp::FpBvEncoder>(operation, format, mode);
  } catch (const std::invalid_argument&) {
    return std::nullopt;
  }
}

std::optional<Size> measure_integer(const Operation& operation, const Format& format) {
  if (operation.build_integer == nullptr) return std::nullopt;
  const std::size_t m = format.m;
  TermManager mgr;
  const Term* x = make_variable(mgr, mgr.get_bv_type(m + 1));
  const Term* y = make_variable(mgr, mgr.get_bv_type(m + 1));
  // One assertion, like that of an operation: clauses depend on what is known to be used.
  const Term* all = mgr.make_true();
  for (const Term* t : operation.build_integer(mgr, x, y, m))
    all = mgr.make_and(all, mgr.make_equal(make_variable(mgr, t->get_type()), t));
  return measure(mgr, {all});
}

struct Options {
  std::vector<Format> formats;
  std::vector<std::string> operations;
  bool modes = false;
  bool large = false;
  bool csv = false;

  bool wants(const Operation& operation) const {
    return operations.empty() ||
           std::find(operations.begin(), operations.end(), operation.name) != operations.end();
  }
};

void print_heading(const Options& options) {
  if (options.csv) {
    fmt::print(
        "e,m,op,mode,base_variables,base_clauses,ieee_variables,ieee_clauses,"
        "integer_variables,integer_clauses\n");
  } else {
    fmt::print("{:<10} {:<8} {:<8} {:>9} {:>9} {:>9} {:>9} {:>6} {:>9} {:>6}\n", "format", "op",
               "mode", "base vars", "clauses", "ieee vars", "clauses", "ratio", "integer", "share");
  }
}

std::string show(const std::optional<std::uint64_t>& number, const char* none) {
  return number ? std::to_string(*number) : none;
}

std::optional<std::uint64_t> variables_of(const std::optional<Size>& size) {
  return size ? std::optional(size->variables) : std::nullopt;
}

std::optional<std::uint64_t> clauses_of(const std::optional<Size>& size) {
  return size ? std::optional(size->clauses) : std::nullopt;
}

double quotient(std::uint64_t a, std::uint64_t b) {
  return static_cast<double>(a) / static_cast<double>(b);
}

void print_row(const Options& options, const Operation& operation, const Format& format,
               const Mode& mode) {
  const auto ieee = measure<vorn::fp::IeeeBvEncoder>(operation, format, mode);
  if (!ieee) return;
  const auto base = measure_base(operation, format, mode);
  const auto integer = measure_integer(operation, format);
  if (options.csv) {
    fmt::print("{},{},{},{},{},{},{},{},{},{}\n", format.e, format.m, operation.name, mode.name,
               show(variables_of(base), ""), show(clauses_of(base), ""), ieee->variables,
               ieee->clauses, show(variables_of(integer), ""), show(clauses_of(integer), ""));
    return;
  }
  const auto name = fmt::format("({}, {})", format.e, format.m);
  const auto ratio = base ? fmt::format("{:.2f}", quotient(ieee->clauses, base->clauses)) : "-";
  const auto share =
      integer ? fmt::format("{:.0f}%", 100 * quotient(integer->clauses, ieee->clauses)) : "-";
  fmt::print("{:<10} {:<8} {:<8} {:>9} {:>9} {:>9} {:>9} {:>6} {:>9} {:>6}\n", name, operation.name,
             mode.name, show(variables_of(base), "-"), show(clauses_of(base), "-"), ieee->variables,
             ieee->clauses, ratio, show(clauses_of(integer), "-"), share);
}

void print_table(const Options& options) {
  print_heading(options);
  for (const Format& format : options.formats) {
    for (const Operation& operation : kOperations) {
      if (!options.wants(operation)) continue;
      if (!operation.rounds) {
        print_row(options, operation, format, kNoMode);
        continue;
      }
      for (const Mode& mode : kModes) {
        print_row(options, operation, format, mode);
        if (!options.modes) break;
      }
    }
  }
}

int run(int argc, char** argv) {
  CLI::App app("Variables and clauses of each floating-point operation.");
  app.footer(
      "ratio: clauses of the exact encoder for one of the base. integer: clauses of the "
      "multiplier or divider of the significands alone; share: in relation to the exact encoder's. "
      "widen, narrow: conversion to the next format of the table; integers have 32 bits.");
  Options options;
  std::vector<std::string> names;
  for (const Operation& operation : kOperations)
    names.emplace_back(operation.name);
  app.add_option("--format", options.formats, "only this format, any: bits of exponent, fraction")
      ->type_name("E,M");
  app.add_option("--op", options.operations, "only this operation")
      ->type_name("NAME")
      ->check(CLI::IsMember(names));
  app.add_flag("--modes", options.modes, "constant rounding modes RNE and RTZ as well");
  app.add_flag("--large", options.large, "the format of 128 bits as well");
  app.add_flag("--csv", options.csv, "print comma-separated values");
  CLI11_PARSE(app, argc, argv);
  if (options.formats.empty()) {
    for (const Format& format : kFormats)
      if (options.large || format.m <= 52) options.formats.push_back(format);
  }
  print_table(options);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    fmt::print(stderr, "size: error: {}\n", error.what());
    return 1;
  }
}
