// An operation of the table on fresh variables, as the benchmarks measure it.
#ifndef BENCH_VARIABLES_H
#define BENCH_VARIABLES_H

#include <cstddef>
#include <vector>

#include "vorn/terms/ieee_float.h"
#include "vorn/terms/operations.h"
#include "vorn/terms/term_manager.h"

namespace bench {

/// Of the integers that are converted.
inline constexpr std::size_t kIntegerWidth = 32;

inline const vorn::Term* make_variable(vorn::TermManager& mgr, const vorn::DataType* type) {
  return mgr.make_constant(mgr.make_unique_symbol("v", type));
}

/// `op` in the rounding mode `rm`, on variables of the format `of`; its result, if its name says
/// which, is of the format `to`.
inline const vorn::Term* apply_to_variables(vorn::TermManager& mgr, const vorn::Operation& op,
                                            const vorn::Term* rm, vorn::IEEEFloat::format of,
                                            vorn::IEEEFloat::format to) {
  std::vector<std::size_t> indices;
  if (op.indexing == vorn::Indexing::format) indices = {to.e, to.m};
  if (op.indexing == vorn::Indexing::width) indices = {kIntegerWidth};
  std::vector<const vorn::Term*> args;
  for (const char letter : op.signature.get_letters()) {
    if (letter == 'R') {
      args.push_back(rm);
    } else {
      const bool is_integer = letter == 'W';
      args.push_back(make_variable(
          mgr, is_integer ? mgr.get_bv_type(kIntegerWidth) : mgr.get_fp_type(of.e, of.m)));
    }
  }
  return mgr.make(op.tag, indices, args);
}

/// The operations on floats that have a circuit and a short name.
inline std::vector<const vorn::Operation*> list_operations() {
  std::vector<const vorn::Operation*> all;
  for (const vorn::Operation& op : vorn::get_operations()) {
    if (!op.short_name.empty()) all.push_back(&op);
  }
  return all;
}

}  // namespace bench

#endif
