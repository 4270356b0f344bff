#include "tools/output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <system_error>

namespace vorn::tools {
namespace {

extern "C" void handle_end(int signal) {
  remove_unfinished_files();
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

/// Closed standard streams would be given to the next files that are opened. In their place is what
/// can be read, as nothing, and cannot be written.
void open_standard_streams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(stream, F_GETFD) != -1 || errno != EBADF) continue;
    // The lowest free number, which is this one.
    ::open(stream == STDIN_FILENO ? "/dev/null" : "/", O_RDONLY);
  }
}

}  // namespace

void prepare_process() {
  open_standard_streams();
  std::signal(SIGXFSZ, SIG_IGN);
  for (const int signal : {SIGHUP, SIGINT, SIGPIPE, SIGTERM, SIGXCPU}) {
    // What is ignored, as by nohup, stays so.
    if (std::signal(signal, handle_end) == SIG_IGN) std::signal(signal, SIG_IGN);
  }
}

StandardOutput::StandardOutput()
    : buffer(stdout, "standard output"), previous(std::cout.rdbuf(&buffer)) {
  // Neither reading nor a message is to fail with what it would flush: whoever prints answers
  // flushes them.
  std::cin.tie(nullptr);
  std::cerr.tie(nullptr);
  std::cout.exceptions(std::ios::badbit);
}

StandardOutput::~StandardOutput() {
  std::cout.exceptions(std::ios::goodbit);
  std::cout.rdbuf(previous);
}

bool overwrites_input(const std::string& output, const std::string& input) {
  std::error_code error;
  return std::filesystem::is_regular_file(output, error) &&
         is_same_file(output, input == "-" ? "/dev/stdin" : input);
}

}  // namespace vorn::tools
