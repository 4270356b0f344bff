// The multipliers by which linear inequalities over a box add up to a contradiction.
#ifndef VORN_REALS_MULTIPLIERS_H
#define VORN_REALS_MULTIPLIERS_H

#include <cstdint>
#include <optional>
#include <vector>

namespace vorn::reals {

/// Rows a x <= b over unknowns with bounds, dense.
struct LinearSystem {
  std::vector<std::vector<double>> rows;  // of as many coefficients as there are unknowns
  std::vector<double> bounds;             // one for each row
  std::vector<double> least;              // of the unknowns
  std::vector<double> greatest;
};

/// Multipliers of the rows, not negative, whose sum exceeds its bound everywhere in the box:
/// Farkas' lemma has it that there are some where no point satisfies all rows. Found by the simplex
/// method with rounding errors, so that who believes them has to add up the rows. None where none
/// are found before `most_work` coefficients were computed; `work` is increased by how many were.
std::optional<std::vector<double>> find_multipliers(const LinearSystem& system,
                                                    std::uint64_t most_work, std::uint64_t* work);

}  // namespace vorn::reals

#endif
