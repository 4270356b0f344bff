// Faults of trying all assignments, for random scripts to find. The linker sends the calls here
// (--wrap); the variable FAULT of the environment says what goes wrong.
#include <optional>
#include <vector>

#include "tests/defects/wrap.h"
#include "vorn/search/block_program.h"
#include "vorn/search/domain.h"
#include "vorn/search/lanes.h"
#include "vorn/solver/solver.h"

namespace vorn::search {

using defects::is_wanted;

namespace {

using Lane = std::optional<std::size_t>;

/// What the kernel with a fault does first.
LaneKernel right_kernel = nullptr;

/// Has wrong truth values in every other lane.
void wrong_kernel(const LaneCall& call) {
  right_kernel(call);
  for (std::size_t lane = 1; lane < kLanes; lane += 2)
    static_cast<std::uint32_t*>(call.out)[lane] ^= ~std::uint32_t{0};
}

}  // namespace

VORN_WRAP(real_run, wrong_run, "_ZN4vorn6search12BlockProgram3runEm", Lane, BlockProgram* self,
          std::size_t count);
VORN_WRAP(real_make, wrong_make,
          "_ZN4vorn6search6Domain4makeEPKNS_8DataTypeEPKSt7variantIJSt9monostateNS_6ranges9Finit"
          "eSetIbLj2EEENS8_INS_9IEEEFloat13rounding_modeELj5EEENS7_8BitRangeENS7_10FloatRangeEEE",
          std::optional<Domain>, const DataType* type, const ranges::Range* range);
VORN_WRAP(real_find, wrong_find, "_ZN4vorn6search11find_kernelEPKNS_4TermE", LaneKernel,
          const Term* t);
VORN_WRAP(real_check, wrong_check, "_ZN4vorn6search8is_exactERKNS0_12BlockProgramE", bool,
          const BlockProgram& program);

/// Of the last lanes of a block nothing is heard, nor of every other block.
Lane wrong_run(BlockProgram* self, std::size_t count) {
  static bool is_odd = false;
  const Lane lane = real_run(self, count);
  is_odd = !is_odd;
  if (is_wanted("block_skipped") && is_odd) return std::nullopt;
  if (is_wanted("lane_lost") && lane && *lane + 1 == count) return std::nullopt;
  return lane;
}

/// Leaves out the greatest value.
std::optional<Domain> wrong_make(const DataType* type, const ranges::Range* range) {
  if (!is_wanted("domain_short") || range == nullptr || ranges::is_value(*range)) {
    return real_make(type, range);
  }
  ranges::Range part = *range;
  if (const auto* floats = std::get_if<ranges::FloatRange>(range)) {
    part = floats->at_most(floats->get_greatest() - 1);
  } else if (const auto* bits = std::get_if<ranges::BitRange>(range)) {
    part = bits->without_end(bits->get_greatest());
  }
  return real_make(type, &part);
}

LaneKernel wrong_find(const Term* t) {
  LaneKernel kernel = real_find(t);
  const bool is_wrong = is_wanted("kernel_lane") || is_wanted("kernel_unchecked");
  if (!is_wrong || t->get_tag() != SymbolTag::fp_le || kernel == nullptr) return kernel;
  if (right_kernel != nullptr && right_kernel != kernel) return nullptr;
  right_kernel = kernel;
  return wrong_kernel;
}

bool wrong_check(const BlockProgram& program) {
  return is_wanted("kernel_unchecked") || real_check(program);
}

}  // namespace vorn::search

namespace vorn::solver {

using Places = std::vector<std::size_t>;

VORN_WRAP(real_blame, wrong_blame, "_ZNK4vorn6solver6Solver26get_enumerated_assumptionsEv", Places,
          const Solver* self);

Places wrong_blame(const Solver* self) {
  Places blamed = real_blame(self);
  if (defects::is_wanted("blame_short") && !blamed.empty()) blamed.pop_back();
  return blamed;
}

}  // namespace vorn::solver
