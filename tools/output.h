// What the command prints and how it notices that nobody gets it. See vorn/utils/output_file.h for
// the files that it writes.
#ifndef TOOLS_OUTPUT_H
#define TOOLS_OUTPUT_H

#include <streambuf>
#include <string>

#include "vorn/utils/output_file.h"

namespace vorn::tools {

/// To be called before anything is opened or written. Sees to it that what is opened later is
/// never taken for a standard stream, that a file beyond the limit of its size is an error instead
/// of the end, and that a signal that ends the command leaves no temporary file.
void prepare_process();

/// While it lives, std::cout throws std::system_error as soon as something cannot be written.
class StandardOutput {
 public:
  StandardOutput();
  ~StandardOutput();
  StandardOutput(const StandardOutput&) = delete;
  StandardOutput& operator=(const StandardOutput&) = delete;

 private:
  FileBuffer buffer;
  std::streambuf* previous;
};

/// Whether writing `output` would destroy the regular file `input`, which may be "-".
bool overwrites_input(const std::string& output, const std::string& input);

}  // namespace vorn::tools

#endif
