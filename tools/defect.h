// Where the command finds that it is wrong itself: what it says then.
#ifndef TOOLS_DEFECT_H
#define TOOLS_DEFECT_H

#include <exception>
#include <string>

namespace vorn::tools {

/// An error for which is_internal holds, on one line that begins with "internal error".
std::string describe_defect(const std::exception& error);

/// Says so on standard error, after all answers, and that it is to be reported with the `evidence`.
/// Returns the exit status.
int report_defect(const std::exception& error, const std::string& evidence);

}  // namespace vorn::tools

#endif
