#include "tools/defect.h"

#include <algorithm>
#include <iostream>
#include <system_error>

#include "tools/solve.h"
#include "vorn/terms/engine.h"

namespace vorn::tools {

std::string describe_defect(const std::exception& error) {
  // What other libraries throw names one of their functions at best.
  const bool is_ours = dynamic_cast<const InternalError*>(&error) != nullptr;
  std::string text = std::string(is_ours ? "" : "internal error: ") + error.what();
  std::ranges::replace(text, '\n', ' ');
  return text;
}

int report_defect(const std::exception& error, const std::string& evidence) {
  try {
    std::cout.flush();
  } catch (const std::system_error&) {
    // That answers are lost is the smaller of two failures.
  }
  std::cerr << describe_defect(error) << "\nThis is a defect of vorn. Please report it, "
            << evidence << '\n';
  return kInternalError;
}

}  // namespace vorn::tools
