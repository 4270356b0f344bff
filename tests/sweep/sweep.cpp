// Every operand of small formats through the exact encoder's circuits, in all five rounding modes.
//
//   sweep [NAME...] [--modes rne,rna] [--from ROW] [--to ROW] [--threads N]
//   sweep [NAME...] --sample N                 N random rows of each operation
//   sweep --list                               the names, and how many rows there are of each
//
// A name is that of an operation, such as binary32.sqrt, or of a format, such as binary32; all
// operations if none is given. Rows are independent, so a sweep that was interrupted goes on where
// it stopped: the progress lines on standard error name the row before which all are done. The
// status is 1 where a circuit and its reference differ.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <iostream>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "tests/sweep/circuit.h"
#include "tests/sweep/operation.h"

namespace vorn::sweep {
namespace {

constexpr std::size_t kMostMismatches = 8;
constexpr std::size_t kReports = 64;  // of progress

struct Plan {
  std::vector<std::string> names;
  std::vector<std::string> mode_names;
  std::uint64_t from = 0;
  std::uint64_t to = std::uint64_t{1} << 32U;
  std::size_t sample = 0;
  unsigned seed = 1;
  unsigned threads = std::max(1U, std::thread::hardware_concurrency());
  bool list = false;

  bool includes(const Operation& operation) const {
    return names.empty() || std::any_of(names.begin(), names.end(), [&](const std::string& name) {
             return operation.is_named(name);
           });
  }

  std::vector<std::uint64_t> get_rows(const Operation& operation) const {
    const std::uint64_t count = operation.get_row_count();
    std::vector<std::uint64_t> rows;
    if (sample > 0) {
      std::mt19937 random(seed);
      while (rows.size() < sample)
        rows.push_back(random() % count);
    } else {
      for (std::uint64_t row = from; row < std::min(to, count); ++row)
        rows.push_back(row);
    }
    return rows;
  }

  std::vector<std::size_t> get_modes(const Operation& operation) const {
    if (!operation.rounded) return {0};
    std::vector<std::size_t> modes;
    for (std::size_t mode = 0; mode < kModes; ++mode) {
      const auto named = std::find(mode_names.begin(), mode_names.end(), kModeNames[mode]);
      if (mode_names.empty() || named != mode_names.end()) modes.push_back(mode);
    }
    return modes;
  }
};

/// Runs the rows of one operation on several threads.
class Sweep {
 public:
  Sweep(const Operation& of, const Plan& plan)
      : operation(of),
        modes(plan.get_modes(of)),
        rows(plan.get_rows(of)),
        in_order(plan.sample == 0) {}

  /// True when everything matches and there was something to match.
  bool run(unsigned thread_count) {
    in_work.assign(thread_count, 0);
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < thread_count; ++i)
      threads.emplace_back([this, i] { work(i); });
    for (std::thread& thread : threads)
      thread.join();
    for (const std::string& mismatch : mismatches)
      std::cout << "MISMATCH " << mismatch << '\n';
    if (rows.empty()) std::cout << operation.name << " has no such rows\n";
    if (mismatches.empty() && !rows.empty()) {
      std::cout << fmt::format(
          "{}: {} cases in {} match, {:.1f} s\n", operation.name, rows.size() * kRowSize,
          modes.size() == 1 ? "one mode" : fmt::format("{} modes", modes.size()), get_seconds());
    }
    std::cout.flush();
    return mismatches.empty() && !rows.empty();
  }

 private:
  void work(unsigned thread) {
    SweptCircuit circuit(operation, modes);
    std::unique_lock<std::mutex> lock(mutex);
    while (next < rows.size() && mismatches.size() < kMostMismatches) {
      in_work[thread] = next++;
      const std::uint64_t row = rows[in_work[thread]];
      lock.unlock();
      const std::vector<std::string> found = circuit.check_row(row, kMostMismatches);
      lock.lock();
      mismatches.insert(mismatches.end(), found.begin(), found.end());
      const std::size_t step = std::max<std::size_t>(rows.size() / kReports, 1);
      if (in_order && in_work[thread] % step == 0) report();
    }
    in_work[thread] = next;
  }

  void report() const {
    const std::size_t done = *std::min_element(in_work.begin(), in_work.end());
    std::cerr << fmt::format("{}: before row {}, {} of {}, {:.0f} s\n", operation.name,
                             rows[std::min(done, rows.size() - 1)], done, rows.size(),
                             get_seconds());
  }

  double get_seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  }

  const Operation& operation;
  const std::vector<std::size_t> modes;
  const std::vector<std::uint64_t> rows;
  const bool in_order;
  const std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
  std::mutex mutex;  // guards what follows
  std::size_t next = 0;
  std::vector<std::size_t> in_work;  // by thread, the position of its row
  std::vector<std::string> mismatches;
};

int run(const Plan& plan) {
  bool known = false;
  bool good = true;
  for (const Operation& operation : get_operations()) {
    if (!plan.includes(operation)) continue;
    known = true;
    if (plan.list) {
      std::cout << operation.name << ' ' << operation.get_row_count() << '\n';
    } else {
      good = Sweep(operation, plan).run(plan.threads) && good;
    }
  }
  if (!known) std::cerr << "no operation has that name; --list shows those that there are\n";
  return known && good ? 0 : 1;
}

}  // namespace
}  // namespace vorn::sweep

int main(int argc, char** argv) {
  using vorn::sweep::kModeNames;
  CLI::App app("Checks the exact encoder on every operand of small formats.");
  vorn::sweep::Plan plan;
  app.add_option("NAME", plan.names, "operations or formats; all of them if not given");
  app.add_option("--modes", plan.mode_names, "rounding modes, with commas; all if not given")
      ->delimiter(',')
      ->check(CLI::IsMember(std::vector<std::string>(kModeNames.begin(), kModeNames.end())));
  app.add_option("--from", plan.from, "first row");
  app.add_option("--to", plan.to, "row after the last");
  app.add_option("--sample", plan.sample, "number of random rows");
  app.add_option("--seed", plan.seed, "for the random rows");
  app.add_option("--threads", plan.threads, "as many as there are processors if not given")
      ->check(CLI::Range(1U, 1024U));
  app.add_flag("--list", plan.list, "show the names and the numbers of rows");
  CLI11_PARSE(app, argc, argv);
  return vorn::sweep::run(plan);
}
