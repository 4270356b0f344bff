// How a subcommand ends that could not do its work.
#ifndef TOOLS_FAILURE_H
#define TOOLS_FAILURE_H

#include <string>

namespace vorn::tools {

/// Reports the exception that is being handled on standard error, after all answers, and returns
/// the exit status. `place` names what was read, where the exception does not; it may be empty. A
/// defect is reported with the `evidence`.
int report_failure(const std::string& place, const std::string& evidence);

/// The graver of two exit statuses: a defect, then an error, then a limit, then none of these.
int choose_status(int first, int second);

}  // namespace vorn::tools

#endif
