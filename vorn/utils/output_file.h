// Files that are complete, or not there under their name.
//
// What is written goes to a temporary file in the folder of the target, which takes its name by
// rename(2) once everything is written and closed without an error. Whoever reads the name finds
// what was there before or all of the new text, whenever the writer died. Every write can fail, a
// buffered one long after it was asked for: failures are kept until they are reported.
#ifndef VORN_UTILS_OUTPUT_FILE_H
#define VORN_UTILS_OUTPUT_FILE_H

#include <cstdio>
#include <ostream>
#include <streambuf>
#include <string>

namespace vorn {

/// Passes what is written to a C stream. A write that fails throws std::system_error with
/// "cannot write TARGET"; streams pass that on if their exceptions() have std::ios::badbit.
class FileBuffer final : public std::streambuf {
 public:
  /// Borrows the stream, which buffers; `target` names it in errors.
  FileBuffer(std::FILE* stream, std::string target);

 protected:
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* text, std::streamsize length) override;
  int sync() override;

 private:
  std::FILE* file;
  std::string name;
};

/// A file that is written from its beginning to its end.
///
/// What is no regular file, such as a device or a pipe, is written directly, and so is one that is
/// the standard output or error. A symbolic link stays, and what it leads to is written. A file
/// that is replaced hands on its permissions, and has to be writable itself; the folder has to be
/// writable in any case.
class OutputFile {
 public:
  /// Opens the file; `content` says in errors what is written: "the proof". Throws
  /// std::system_error.
  OutputFile(std::string file_name, const std::string& content);
  /// What was not committed is dropped.
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// Where to write, one or the other. What the second is given may fail at any time, with
  /// std::system_error.
  std::FILE* get_file() { return file; }
  std::ostream& get_stream() { return stream; }

  /// Whether a write has failed.
  bool has_failed() const { return std::ferror(file) != 0; }
  /// Ends the file: everything is written, or std::system_error is thrown. To be called once, when
  /// nobody writes any more.
  void commit();

 private:
  std::FILE* open();
  int open_descriptor();
  int open_temporary(unsigned mode);
  void discard();
  void release_slot();

  std::string name;       // the target, links resolved
  std::string target;     // for errors
  std::string temporary;  // empty for none
  int slot = -1;          // among the unfinished files
  std::FILE* file;
  FileBuffer buffer;
  std::ostream stream;
};

/// Removes the temporary files of this process, as far as they are known: for signal handlers that
/// end it, and safe in them.
void remove_unfinished_files();

/// Whether two names stand for one file now, or would if it were created.
bool is_same_file(const std::string& first, const std::string& second);

}  // namespace vorn

#endif
