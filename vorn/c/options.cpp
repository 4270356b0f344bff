// One row an option: its name, and where its value is.
#include "vorn/c/options.h"

#include <array>
#include <charconv>
#include <stdexcept>

#include "vorn/c/guard.h"

namespace vorn::c {
namespace {

using solver::EncoderKind;
using solver::Options;

struct Row {
  std::string_view name;
  bool Options::*flag = nullptr;
  std::string Options::*file = nullptr;
};

constexpr std::string_view kEncoder = "encoder";
constexpr std::string_view kSeed = "seed";
constexpr std::string_view kTimeLimit = "time-limit";

constexpr std::array kRows = {
    Row{kEncoder},
    Row{kSeed},
    Row{kTimeLimit},
    Row{"rewrite", &Options::rewrite},
    Row{"local-search", &Options::local_search},
    Row{"ranges", &Options::ranges},
    Row{"relations", &Options::relations},
    Row{"debug-labels", &Options::debug_labels},
    Row{"cnf-file", nullptr, &Options::cnf_file},
    Row{"proof-file", nullptr, &Options::proof_file},
};

const Row& find_row(std::string_view name) {
  for (const Row& row : kRows) {
    if (row.name == name) return row;
  }
  throw Failure(VORN_UNKNOWN_NAME, "there is no option '" + std::string(name) + "'");
}

[[noreturn]] void fail(std::string_view name, std::string_view wanted, std::string_view value) {
  throw std::invalid_argument("option " + std::string(name) + ": expected " + std::string(wanted) +
                              ", got '" + std::string(value) + "'");
}

/// The number that is all of a text.
template <class Number>
bool read_number(std::string_view text, Number* number) {
  const char* end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, *number);
  return error == std::errc() && last == end;
}

void set_seed(vorn_solver& solver, std::string_view value) {
  int seed = 0;
  if (!read_number(value, &seed) || seed < 0 || seed >= 1 << 30) {
    fail(kSeed, "a number from 0 to 2^30 - 1", value);
  }
  solver.options.seed = seed;
  if (!solver.engine) return;
  solver.forget_answer();
  solver.engine->set_seed(static_cast<std::uint32_t>(seed));
}

void set_time_limit(vorn_solver& solver, std::string_view value) {
  double seconds = 0;
  // Not a number is neither.
  if (!read_number(value, &seconds) || !(seconds >= 0)) fail(kTimeLimit, "seconds from 0", value);
  solver.time_limit = seconds;
  if (solver.engine) solver.engine->set_time_limit(seconds);
}

void set_encoder(vorn_solver& solver, std::string_view value) {
  if (value != "ieee" && value != "base") fail(kEncoder, "ieee or base", value);
  solver.options.encoder = value == "ieee" ? EncoderKind::ieee : EncoderKind::base;
}

}  // namespace

void set_option(vorn_solver& solver, std::string_view name, std::string_view value) {
  const Row& row = find_row(name);
  if (name == kSeed) return set_seed(solver, value);
  if (name == kTimeLimit) return set_time_limit(solver, value);
  if (solver.engine) {
    throw Failure(VORN_WRONG_STATE,
                  "option " + std::string(name) + " is set before the solver begins to work");
  }
  if (name == kEncoder) return set_encoder(solver, value);
  if (row.flag != nullptr) {
    if (value != "true" && value != "false") fail(name, "true or false", value);
    solver.options.*row.flag = value == "true";
    return;
  }
  solver.options.*row.file = std::string(value);
}

std::string get_option(const vorn_solver& solver, std::string_view name) {
  const Row& row = find_row(name);
  const Options& options = solver.options;
  if (name == kSeed) return std::to_string(options.seed);
  if (name == kEncoder) return options.encoder == EncoderKind::ieee ? "ieee" : "base";
  if (row.flag != nullptr) return options.*row.flag ? "true" : "false";
  if (row.file != nullptr) return options.*row.file;
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.begin(), digits.end(), solver.time_limit).ptr;
  return {digits.begin(), end};
}

}  // namespace vorn::c
