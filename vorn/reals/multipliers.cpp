#include "vorn/reals/multipliers.h"

#include <algorithm>
#include <limits>

namespace vorn::reals {
namespace {

constexpr double kTolerance = 1e-9;
constexpr std::size_t kStepsForOneLine = 20;

/// The dual problem as a tableau. Its unknowns are a multiplier for each row, and two for the
/// bounds of each unknown, which take away what the rows leave of it: for each unknown, a line says
/// that nothing is left. The last line says that the rows' multipliers add up to 1. What is to
/// become negative is the bound of the sum.
class Tableau {
 public:
  explicit Tableau(const LinearSystem& system)
      : row_count(system.rows.size()),
        unknown_count(system.least.size()),
        width(row_count + 2 * unknown_count + 1),
        lines(unknown_count + 1, std::vector<double>(width)),
        basis(unknown_count + 1),
        cost(width) {
    for (std::size_t i = 0; i < row_count; ++i) {
      for (std::size_t j = 0; j < unknown_count; ++j)
        lines[j][i] = system.rows[i][j];
      lines[unknown_count][i] = 1;
      cost[i] = system.bounds[i];
    }
    for (std::size_t j = 0; j < unknown_count; ++j) {
      lines[j][upper(j)] = 1;
      lines[j][lower(j)] = -1;
      cost[upper(j)] = system.greatest[j];
      cost[lower(j)] = -system.least[j];
    }
    lines[unknown_count][width - 1] = 1;
    start();
  }

  /// Improves the sum until its bound is negative. False where it cannot be.
  bool solve(std::uint64_t most_work, std::uint64_t* work) {
    const std::uint64_t end = *work + most_work;
    for (std::size_t step = 0; step < kStepsForOneLine * lines.size() && *work < end; ++step) {
      // The corner holds the negation of what the basis costs.
      if (cost[width - 1] > kTolerance) return true;
      // Bland's rule, slow and never in a circle, for when the other one has had its time.
      const bool is_careful = step > kStepsForOneLine / 2 * lines.size();
      const std::optional<std::size_t> column = find_column(is_careful);
      if (!column) return false;
      const std::optional<std::size_t> line = find_line(*column);
      if (!line) return false;
      pivot(*line, *column);
      *work += lines.size() * width;
    }
    return false;
  }

  std::vector<double> get_multipliers() const {
    std::vector<double> multipliers(row_count);
    for (std::size_t k = 0; k < lines.size(); ++k) {
      if (basis[k] < row_count) multipliers[basis[k]] = std::max(0.0, lines[k][width - 1]);
    }
    return multipliers;
  }

 private:
  std::size_t upper(std::size_t j) const { return row_count + 2 * j; }
  std::size_t lower(std::size_t j) const { return row_count + 2 * j + 1; }

  /// The first row alone, and of each unknown the bound that it needs.
  void start() {
    const std::vector<double> first = [this] {
      std::vector<double> coefficients;
      for (std::size_t j = 0; j < unknown_count; ++j)
        coefficients.push_back(lines[j][0]);
      return coefficients;
    }();
    pivot(unknown_count, 0);
    for (std::size_t j = 0; j < unknown_count; ++j)
      pivot(j, first[j] > 0 ? lower(j) : upper(j));
  }

  std::optional<std::size_t> find_column(bool is_careful) const {
    std::optional<std::size_t> best;
    double least = -kTolerance;
    for (std::size_t k = 0; k + 1 < width; ++k) {
      if (cost[k] >= least) continue;
      best = k;
      if (is_careful) break;
      least = cost[k];
    }
    return best;
  }

  std::optional<std::size_t> find_line(std::size_t column) const {
    std::optional<std::size_t> best;
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t k = 0; k < lines.size(); ++k) {
      if (lines[k][column] <= kTolerance) continue;
      const double ratio = lines[k][width - 1] / lines[k][column];
      if (ratio > least || (ratio == least && basis[k] > basis[*best])) continue;
      best = k;
      least = ratio;
    }
    return best;
  }

  void pivot(std::size_t line, std::size_t column) {
    const double divisor = lines[line][column];
    for (double& entry : lines[line])
      entry /= divisor;
    for (std::size_t k = 0; k < lines.size(); ++k) {
      if (k != line) subtract(lines[line], column, &lines[k]);
    }
    subtract(lines[line], column, &cost);
    basis[line] = column;
  }

  static void subtract(const std::vector<double>& line, std::size_t column,
                       std::vector<double>* from) {
    const double factor = (*from)[column];
    if (factor == 0) return;
    for (std::size_t k = 0; k < line.size(); ++k)
      (*from)[k] -= factor * line[k];
    (*from)[column] = 0;
  }

  std::size_t row_count;
  std::size_t unknown_count;
  std::size_t width;
  std::vector<std::vector<double>> lines;
  std::vector<std::size_t> basis;  // the column that each line has the value of
  std::vector<double> cost;
};

}  // namespace

std::optional<std::vector<double>> find_multipliers(const LinearSystem& system,
                                                    std::uint64_t most_work, std::uint64_t* work) {
  const std::uint64_t size = system.rows.size() * system.least.size();
  *work += size;
  if (system.rows.empty() || size >= most_work) return std::nullopt;
  Tableau tableau(system);
  if (!tableau.solve(most_work - size, work)) return std::nullopt;
  return tableau.get_multipliers();
}

}  // namespace vorn::reals
