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

#include "bench/variables.h"
#include "vorn/bv/aig.h"
#include "vorn/bv/bit_blaster.h"
#include "vorn/bv/cnf.h"
#include "vorn/bv/sat_solver.h"
#include "vorn/fp/ieee_bv_encoder.h"
#include "vorn/terms/term_manager.h"

namespace {

using bench::make_variable;
using vorn::Operation;
using vorn::Term;
using vorn::TermManager;

/// Bits of the exponent and of the trailing significand.
struct Format : vorn::IEEEFloat::format {};

/// Reads "E,M".
std::istream& operator>>(std::istream& in, Format& format) {
  char comma = ' ';
  if (in >> format.e >> comma >> format.m && comma != ',') in.setstate(std::ios::failbit);
  return in;
}

/// In ascending order. A format is converted to its neighbours, those that hold all its values or
/// have no others.
constexpr Format kFormats[] = {{{3, 3}}, {{5, 10}}, {{8, 7}}, {{8, 23}}, {{11, 52}}, {{15, 112}}};

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

/// Significands of a format, m + 1 bits each, to what the circuit of an operation wants of them.
using BuildInteger = std::vector<const Term*> (*)(TermManager& t, const Term* x, const Term* y,
                                                  std::size_t m);

struct Row {
  std::string name;
  const Operation* operation;
  /// What a conversion is into; none where the format has no such operation.
  std::optional<Format> (*find_target)(const Format& format);
  BuildInteger build_integer;
};

std::optional<Format> find_same(const Format& format) {
  return format;
}

BuildInteger find_integer(vorn::SymbolTag::tag tag) {
  using T = vorn::SymbolTag;
  if (tag == T::fp_mul || tag == T::fp_fma) return multiply;
  return tag == T::fp_div ? divide : nullptr;
}

/// All operations; a cast counts as two.
std::vector<Row> list_rows() {
  std::vector<Row> rows;
  for (const Operation* op : bench::list_operations()) {
    if (op->tag == vorn::SymbolTag::fp_cast) {
      rows.push_back({"widen", op, find_larger, nullptr});
      rows.push_back({"narrow", op, find_smaller, nullptr});
    } else {
      rows.push_back({std::string(op->short_name), op, find_same, find_integer(op->tag)});
    }
  }
  return rows;
}

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

/// Nothing where the encoder has no circuit for the operation, or the format no such operation.
template <typename Encoder>
std::optional<Size> measure(const Row& row, const Format& format, const Mode& mode) {
  TermManager mgr;
  Encoder encoder(&mgr, &mgr);
  const std::optional<Format> target = row.find_target(format);
  if (!target || !encoder.supports(row.operation->tag)) return std::nullopt;
  const Term* t = bench::apply_to_variables(mgr, *row.operation, mode.make(mgr), format, *target);
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
std::optional<Size> measure_base(const Row& row, const Format& format, const Mode& mode) {
  try {
    return measure<vorn::fp::FpBvEncoder>(row, format, mode);
  } catch (const std::invalid_argument&) {
    return std::nullopt;
  }
}

std::optional<Size> measure_integer(const Row& row, const Format& format) {
  if (row.build_integer == nullptr) return std::nullopt;
  const std::size_t m = format.m;
  TermManager mgr;
  const Term* x = make_variable(mgr, mgr.get_bv_type(m + 1));
  const Term* y = make_variable(mgr, mgr.get_bv_type(m + 1));
  // One assertion, like that of an operation: clauses depend on what is known to be used.
  const Term* all = mgr.make_true();
  for (const Term* t : row.build_integer(mgr, x, y, m))
    all = mgr.make_and(all, mgr.make_equal(make_variable(mgr, t->get_type()), t));
  return measure(mgr, {all});
}

struct Options {
  std::vector<Format> formats;
  std::vector<std::string> operations;
  bool modes = false;
  bool large = false;
  bool csv = false;

  bool wants(const Row& row) const {
    return operations.empty() || std::ranges::find(operations, row.name) != operations.end();
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

void print_row(const Options& options, const Row& row, const Format& format, const Mode& mode) {
  const auto ieee = measure<vorn::fp::IeeeBvEncoder>(row, format, mode);
  if (!ieee) return;
  const auto base = measure_base(row, format, mode);
  const auto integer = measure_integer(row, format);
  if (options.csv) {
    fmt::print("{},{},{},{},{},{},{},{},{},{}\n", format.e, format.m, row.name, mode.name,
               show(variables_of(base), ""), show(clauses_of(base), ""), ieee->variables,
               ieee->clauses, show(variables_of(integer), ""), show(clauses_of(integer), ""));
    return;
  }
  const auto name = fmt::format("({}, {})", format.e, format.m);
  const auto ratio = base ? fmt::format("{:.2f}", quotient(ieee->clauses, base->clauses)) : "-";
  const auto share =
      integer ? fmt::format("{:.0f}%", 100 * quotient(integer->clauses, ieee->clauses)) : "-";
  fmt::print("{:<10} {:<8} {:<8} {:>9} {:>9} {:>9} {:>9} {:>6} {:>9} {:>6}\n", name, row.name,
             mode.name, show(variables_of(base), "-"), show(clauses_of(base), "-"), ieee->variables,
             ieee->clauses, ratio, show(clauses_of(integer), "-"), share);
}

void print_table(const Options& options, const std::vector<Row>& rows) {
  print_heading(options);
  for (const Format& format : options.formats) {
    for (const Row& row : rows) {
      if (!options.wants(row)) continue;
      if (!row.operation->is_rounded()) {
        print_row(options, row, format, kNoMode);
        continue;
      }
      for (const Mode& mode : kModes) {
        print_row(options, row, format, mode);
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
  const std::vector<Row> rows = list_rows();
  for (const Row& row : rows)
    names.emplace_back(row.name);
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
  print_table(options, rows);
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
