#include "vorn/utils/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <random>
#include <system_error>
#include <utility>

namespace vorn {
namespace {

namespace fs = std::filesystem;

/// As the kernel has it (path_resolution(7)).
constexpr int kMostLinks = 40;

/// Names of temporary files, for the signal handler. Who finds no slot is not removed by it.
constexpr int kSlots = 16;
std::array<std::atomic<const char*>, kSlots> unfinished;
static_assert(std::atomic<const char*>::is_always_lock_free);

int take_slot(const char* name) {
  for (int i = 0; i < kSlots; ++i) {
    const char* free = nullptr;
    if (unfinished[static_cast<std::size_t>(i)].compare_exchange_strong(free, name)) return i;
  }
  return -1;
}

/// errno, or a plain failure where a library has set none.
std::error_code last_error() {
  return {errno == 0 ? EIO : errno, std::generic_category()};
}

std::optional<struct stat> find_status(const std::string& name) {
  struct stat status = {};
  if (::stat(name.c_str(), &status) != 0) return std::nullopt;
  return status;
}

bool is_same(const struct stat& first, const struct stat& second) {
  return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

/// The name behind links, whether or not there is a file yet.
std::string resolve_links(const std::string& name) {
  fs::path path(name);
  std::error_code error;
  for (int i = 0; i < kMostLinks && fs::is_symlink(path, error); ++i) {
    const fs::path next = fs::read_symlink(path, error);
    if (error) break;
    path = path.parent_path() / next;
  }
  return path.string();
}

/// A name in the same folder that nobody can guess in time.
std::string make_temporary_name(const std::string& name) {
  constexpr const char* kDigits = "0123456789abcdefghijklmnopqrstuv";
  std::random_device random;
  std::string text = ".vorn-";
  for (int i = 0; i < 12; ++i)
    text += kDigits[random() % 32];
  return (fs::path(name).parent_path() / (text + ".tmp")).string();
}

}  // namespace

// Buffer ----------------------------------------------------------------------------------------

FileBuffer::FileBuffer(std::FILE* stream, std::string target)
    : file(stream), name(std::move(target)) {}

FileBuffer::int_type FileBuffer::overflow(int_type c) {
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  const char text = traits_type::to_char_type(c);
  xsputn(&text, 1);
  return c;
}

std::streamsize FileBuffer::xsputn(const char* text, std::streamsize length) {
  const auto size = static_cast<std::size_t>(length);
  errno = 0;
  if (std::fwrite(text, 1, size, file) != size) {
    throw std::system_error(last_error(), "cannot write " + name);
  }
  return length;
}

int FileBuffer::sync() {
  errno = 0;
  if (std::fflush(file) != 0) throw std::system_error(last_error(), "cannot write " + name);
  return 0;
}

// File ------------------------------------------------------------------------------------------

OutputFile::OutputFile(std::string file_name, const std::string& content)
    : name(std::move(file_name)),
      target(content + " to " + name),
      file(open()),
      buffer(file, target),
      stream(&buffer) {
  stream.exceptions(std::ios::badbit);
}

OutputFile::~OutputFile() {
  if (file != nullptr) std::fclose(file);
  discard();
}

std::FILE* OutputFile::open() {
  errno = 0;
  const int descriptor = open_descriptor();
  std::FILE* opened = descriptor < 0 ? nullptr : ::fdopen(descriptor, "w");
  if (opened != nullptr) return opened;
  const std::error_code error = last_error();
  if (descriptor >= 0) ::close(descriptor);
  discard();
  throw std::system_error(error, "cannot write " + target);
}

/// A descriptor to write to; -1 and errno where there is none.
int OutputFile::open_descriptor() {
  struct stat present = {};
  if (::stat(name.c_str(), &present) != 0) {
    if (errno != ENOENT) return -1;
    name = resolve_links(name);
    return open_temporary(0);
  }
  if (!S_ISREG(present.st_mode)) return ::open(name.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
  for (const int standard : {STDOUT_FILENO, STDERR_FILENO}) {
    // Its position in the file is shared, so that nothing is overwritten.
    struct stat status = {};
    if (::fstat(standard, &status) == 0 && is_same(present, status)) {
      return ::fcntl(standard, F_DUPFD_CLOEXEC, 0);
    }
  }
  name = resolve_links(name);
  if (::faccessat(AT_FDCWD, name.c_str(), W_OK, AT_EACCESS) != 0) return -1;
  return open_temporary(present.st_mode);
}

/// With the permissions of the file that is to be replaced, or of a new one for 0.
int OutputFile::open_temporary(unsigned mode) {
  int descriptor = -1;
  do {
    release_slot();
    temporary = make_temporary_name(name);
    slot = take_slot(temporary.c_str());
    descriptor = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  } while (descriptor < 0 && errno == EEXIST);
  if (descriptor < 0) {
    // There is nothing to be removed.
    release_slot();
    temporary.clear();
  } else if (mode != 0) {
    // That a file system has no permissions is no reason not to write.
    static_cast<void>(::fchmod(descriptor, mode & 0777U));
  }
  return descriptor;
}

void OutputFile::commit() {
  errno = 0;
  bool complete = std::fflush(file) == 0 && !has_failed();
  std::error_code error = last_error();
  if (std::fclose(std::exchange(file, nullptr)) != 0 && complete) {
    complete = false;
    error = last_error();
  }
  if (complete && !temporary.empty()) {
    complete = std::rename(temporary.c_str(), name.c_str()) == 0;
    error = last_error();
    if (complete) {
      release_slot();
      temporary.clear();
    }
  }
  if (complete) return;
  discard();
  throw std::system_error(error, "cannot write " + target);
}

void OutputFile::discard() {
  if (temporary.empty()) return;
  ::unlink(temporary.c_str());
  release_slot();
  temporary.clear();
}

void OutputFile::release_slot() {
  if (slot >= 0) unfinished[static_cast<std::size_t>(slot)] = nullptr;
  slot = -1;
}

void remove_unfinished_files() {
  for (const std::atomic<const char*>& entry : unfinished) {
    if (const char* name = entry) ::unlink(name);
  }
}

bool is_same_file(const std::string& first, const std::string& second) {
  const std::optional<struct stat> a = find_status(first);
  const std::optional<struct stat> b = find_status(second);
  if (a && b) return is_same(*a, *b);
  if (a || b) return false;
  std::error_code error;
  const auto place = [&error](const std::string& name) {
    return fs::weakly_canonical(fs::absolute(resolve_links(name), error), error);
  };
  return place(first) == place(second);
}

}  // namespace vorn
