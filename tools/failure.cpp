#include "tools/failure.h"

#include <algorithm>
#include <array>
#include <exception>
#include <iostream>
#include <new>
#include <stdexcept>
#include <system_error>

#include "tools/defect.h"
#include "tools/solve.h"
#include "vorn/smt2/error.h"
#include "vorn/terms/engine.h"

namespace vorn::tools {

int report_failure(const std::string& place, const std::string& evidence) {
  const std::string prefix = place.empty() ? "" : place + ": ";
  try {
    throw;
  } catch (const std::system_error& error) {
    // It tells the name of what could not be written.
    std::cerr << "vorn: error: " << error.what() << '\n';
    return kInputError;
  } catch (const std::length_error& error) {
    std::cerr << prefix << "error: " << error.what() << '\n';
    return kLimitReached;
  } catch (const std::bad_alloc&) {
    std::cerr << prefix << "error: out of memory\n";
    return kLimitReached;
  } catch (const smt2::LimitError& error) {
    std::cerr << error.what() << '\n';
    return kLimitReached;
  } catch (const std::exception& error) {
    if (is_internal(error)) return report_defect(error, evidence);
    std::cerr << error.what() << '\n';
    return kInputError;
  }
}

int choose_status(int first, int second) {
  static constexpr std::array kGravest = {kInternalError, kUsageError, kInputError, kLimitReached,
                                          kDone};
  return *std::ranges::find_if(kGravest, [&](int s) { return s == first || s == second; });
}

}  // namespace vorn::tools
