#include "vorn/utils/output_file.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

namespace vorn {
namespace {

namespace fs = std::filesystem;

/// A folder of its own for each test.
class OutputFileTest : public testing::Test {
 protected:
  OutputFileTest() {
    std::string name = testing::TempDir() + "vorn_output_XXXXXX";
    if (::mkdtemp(name.data()) != nullptr) folder = name;
  }
  ~OutputFileTest() override { fs::remove_all(folder); }

  std::string path(const std::string& name) const { return (folder / name).string(); }
  std::string read(const std::string& name) const {
    std::ifstream in(path(name));
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  }
  void write(const std::string& name, const std::string& text) const {
    std::ofstream(path(name)) << text;
  }
  std::size_t count_files() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
  }
  unsigned mode(const std::string& name) const {
    return static_cast<unsigned>(fs::status(path(name)).permissions());
  }

  fs::path folder;
};

/// The error of writing some text to a file.
std::error_code error_of(const std::string& name, const std::string& text) {
  try {
    OutputFile file(name, "the text");
    file.get_stream() << text;
    file.commit();
  } catch (const std::system_error& error) {
    EXPECT_EQ(std::string(error.what()),
              "cannot write the text to " + name + ": " + error.code().message());
    return error.code();
  }
  return {};
}

TEST_F(OutputFileTest, HasItsNameWhenItIsComplete) {
  {
    OutputFile file(path("a"), "the text");
    file.get_stream() << "some " << 1;
    std::fputs(" text", file.get_file());
    EXPECT_FALSE(fs::exists(path("a")));
    EXPECT_EQ(count_files(), 1U);
    file.commit();
    EXPECT_EQ(read("a"), "some 1 text");
  }
  EXPECT_EQ(count_files(), 1U);
  const mode_t mask = ::umask(0);
  ::umask(mask);
  EXPECT_EQ(mode("a"), 0666U & ~mask);
}

TEST_F(OutputFileTest, LeavesWhatWasThereUntilThen) {
  write("a", "old");
  fs::permissions(path("a"), fs::perms::owner_read | fs::perms::owner_write);
  {
    OutputFile file(path("a"), "the text");
    file.get_stream() << "new" << std::flush;
    EXPECT_EQ(read("a"), "old");
  }
  EXPECT_EQ(read("a"), "old");
  EXPECT_EQ(count_files(), 1U);
  EXPECT_EQ(error_of(path("a"), "new"), std::error_code());
  EXPECT_EQ(read("a"), "new");
  EXPECT_EQ(mode("a"), 0600U);
}

TEST_F(OutputFileTest, GoesWhereLinksLead) {
  fs::create_directory(path("sub"));
  write("sub/target", "old");
  fs::create_symlink("sub/target", path("link"));
  fs::create_symlink("link", path("further"));
  fs::create_symlink("sub/none", path("dangling"));
  EXPECT_EQ(error_of(path("further"), "new"), std::error_code());
  EXPECT_EQ(error_of(path("dangling"), "made"), std::error_code());
  EXPECT_TRUE(fs::is_symlink(path("further")) && fs::is_symlink(path("dangling")));
  EXPECT_EQ(read("sub/target"), "new");
  EXPECT_EQ(read("sub/none"), "made");
  fs::create_symlink("round", path("round"));
  EXPECT_EQ(error_of(path("round"), "x").value(), ELOOP);
  EXPECT_TRUE(fs::is_symlink(path("round")));
}

TEST_F(OutputFileTest, SaysWhyItCannotBeWritten) {
  EXPECT_EQ(error_of(path("none/a"), "x").value(), ENOENT);
  EXPECT_EQ(error_of(path("."), "x").value(), EISDIR);
  write("file", "");
  EXPECT_EQ(error_of(path("file/a"), "x").value(), ENOTDIR);
  EXPECT_EQ(count_files(), 1U);
}

TEST_F(OutputFileTest, NoticesAFullDevice) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "there is no /dev/full";
  EXPECT_EQ(error_of("/dev/full", "x").value(), ENOSPC);
  EXPECT_EQ(error_of("/dev/full", std::string(1U << 20U, 'x')).value(), ENOSPC);
  EXPECT_EQ(error_of("/dev/null", "x"), std::error_code());
  EXPECT_TRUE(fs::is_character_file("/dev/full") && fs::is_character_file("/dev/null"));
  OutputFile file("/dev/full", "the text");
  EXPECT_FALSE(file.has_failed());
  const std::string text(1U << 20U, 'x');
  EXPECT_LT(std::fwrite(text.data(), 1, text.size(), file.get_file()), text.size());
  EXPECT_TRUE(file.has_failed());
  EXPECT_THROW(file.commit(), std::system_error);
}

TEST_F(OutputFileTest, IsRemovedWhileItIsUnfinished) {
  OutputFile first(path("a"), "the text");
  OutputFile second(path("b"), "the text");
  second.commit();
  remove_unfinished_files();
  EXPECT_EQ(count_files(), 1U);
  EXPECT_TRUE(fs::exists(path("b")));
  EXPECT_THROW(first.commit(), std::system_error);
}

TEST_F(OutputFileTest, KnowsOtherNamesOfAFile) {
  write("a", "");
  write("b", "");
  fs::create_hard_link(path("a"), path("c"));
  fs::create_symlink("a", path("d"));
  fs::create_symlink("none", path("e"));
  EXPECT_TRUE(is_same_file(path("a"), path("./a")));
  EXPECT_TRUE(is_same_file(path("a"), path("c")));
  EXPECT_TRUE(is_same_file(path("a"), path("d")));
  EXPECT_TRUE(is_same_file(path("none"), path("e")));
  EXPECT_TRUE(is_same_file(path("none"), path("./none")));
  EXPECT_FALSE(is_same_file(path("a"), path("b")));
  EXPECT_FALSE(is_same_file(path("a"), path("none")));
  EXPECT_FALSE(is_same_file(path("none"), path("nothing")));
}

}  // namespace
}  // namespace vorn
