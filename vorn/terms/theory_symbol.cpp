#include "vorn/terms/theory_symbol.h"

#include <algorithm>
#include <array>
#include <unordered_set>

#include "vorn/terms/operations.h"

namespace vorn {
namespace {

using Names = std::unordered_set<std::string_view>;

/// What is no operation of the table, by the names of the standard; numbers are the reader's.
constexpr std::array<std::string_view, 22> kForms = {"RNE",
                                                     "RNA",
                                                     "RTP",
                                                     "RTN",
                                                     "RTZ",
                                                     "roundNearestTiesToEven",
                                                     "roundNearestTiesToAway",
                                                     "roundTowardPositive",
                                                     "roundTowardNegative",
                                                     "roundTowardZero",
                                                     "fp",
                                                     "NaN",
                                                     "+oo",
                                                     "-oo",
                                                     "+zero",
                                                     "-zero",
                                                     "to_fp",
                                                     "to_fp_unsigned",
                                                     "-",
                                                     "/",
                                                     "+",
                                                     "*"};

constexpr std::array<std::string_view, 9> kSorts = {"Bool",          "RoundingMode", "BitVec",
                                                    "FloatingPoint", "Float16",      "Float32",
                                                    "Float64",       "Float128",     "Array"};

/// A name that stands with a sort only, as const in (as const S), is nobody's alone.
Names collect_names() {
  Names names(kForms.begin(), kForms.end());
  for (const Operation& operation : get_operations()) {
    if (operation.indexing != Indexing::sort) names.insert(operation.name);
  }
  return names;
}

}  // namespace

bool is_theory_symbol(std::string_view name) {
  static const Names names = collect_names();
  return names.contains(name);
}

bool is_theory_sort(std::string_view name) {
  return std::ranges::find(kSorts, name) != kSorts.end();
}

}  // namespace vorn
