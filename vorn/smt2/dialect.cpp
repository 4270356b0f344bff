#include "vorn/smt2/dialect.h"

#include <fmt/format.h>

namespace vorn::smt2 {

bool Dialect::is_first(Departure kind, const std::string& file) {
  std::uint32_t& kinds = seen[file];
  const std::uint32_t bit = std::uint32_t{1} << static_cast<unsigned>(kind);
  const bool first = (kinds & bit) == 0;
  kinds |= bit;
  return first;
}

void Dialect::warn(const std::string& file, Position place, const std::string& message) const {
  sink(fmt::format("{}:{}:{}: warning: {}; further ones of this kind are not shown", file,
                   place.line, place.column, message));
}

}  // namespace vorn::smt2
