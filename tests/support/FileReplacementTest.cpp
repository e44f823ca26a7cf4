#include <support/FileReplacement.h>
#include <tests/TempFile.h>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using test::contentOf;
using test::TempFile;
using XRF_RTL2LL::FileReplacement;

namespace {

std::size_t entries(const std::string& folder) {
  std::size_t count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder)) ++count;
  return count;
}

mode_t modeOf(const std::string& path) {
  struct stat status = {};
  EXPECT_EQ(::stat(path.c_str(), &status), 0);
  return status.st_mode & 07777U;
}

}  // namespace

TEST(FileReplacement, PutsTheFileUnderItsNameAtTheEnd) {
  const TempFile file("old");
  ASSERT_EQ(::chmod(file.path().c_str(), 0640), 0);
  FileReplacement replacement(file.path());
  EXPECT_TRUE(replacement.write("new", 3));
  EXPECT_EQ(file.content(), "old");
  EXPECT_TRUE(replacement.commit());
  EXPECT_EQ(file.content(), "new");
  EXPECT_EQ(modeOf(file.path()), 0640U);
  EXPECT_EQ(entries(file.folder()), 1U);
}

TEST(FileReplacement, LeavesNothingWithoutCommit) {
  const TempFile file("old");
  {
    FileReplacement replacement(file.path());
    EXPECT_TRUE(replacement.write("new", 3));
    EXPECT_EQ(entries(file.folder()), 2U);
  }
  EXPECT_EQ(file.content(), "old");
  EXPECT_EQ(entries(file.folder()), 1U);
}

TEST(FileReplacement, MakesAFileAsOthersDo) {
  const TempFile folder;
  FileReplacement replacement(folder.missing());
  EXPECT_TRUE(replacement.write("x", 1));
  EXPECT_TRUE(replacement.commit());
  const mode_t mask = ::umask(0);
  ::umask(mask);
  EXPECT_EQ(modeOf(folder.missing()), 0666U & ~mask);
}

TEST(FileReplacement, ReplacesTheFileThatALinkPointsAt) {
  const TempFile file("old");
  const std::string link = file.folder() + "/link";
  ASSERT_EQ(::symlink("input", link.c_str()), 0);
  FileReplacement replacement(link);
  EXPECT_TRUE(replacement.write("new", 3));
  EXPECT_TRUE(replacement.commit());
  EXPECT_EQ(file.content(), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(link));
}

TEST(FileReplacement, MakesTheFileThatALinkToNowherePointsAt) {
  const TempFile file("other");
  const std::string link = file.folder() + "/link";
  ASSERT_EQ(::symlink("missing", link.c_str()), 0);
  FileReplacement replacement(link);
  EXPECT_TRUE(replacement.write("new", 3));
  EXPECT_TRUE(replacement.commit());
  EXPECT_EQ(contentOf(file.missing()), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(link));
}

TEST(FileReplacement, RefusesLinksThatGoRound) {
  const TempFile file;
  const std::string link = file.folder() + "/link";
  ASSERT_EQ(::symlink("link", link.c_str()), 0);
  FileReplacement replacement(link);
  EXPECT_EQ(replacement.error(), ELOOP);
  EXPECT_FALSE(replacement.write("x", 1));
}

TEST(FileReplacement, HidesWhatReplacesAHiddenFile) {
  const TempFile file("old");
  ASSERT_EQ(::chmod(file.path().c_str(), 0600), 0);
  const FileReplacement replacement(file.path());
  EXPECT_EQ(modeOf(replacement.path()), 0600U);
}

TEST(FileReplacement, TakesWhatIsWrittenAtItsPath) {
  const TempFile file("old");
  FileReplacement replacement(file.path());
  std::ofstream(replacement.path()) << "new";
  EXPECT_EQ(file.content(), "old");
  EXPECT_TRUE(replacement.commit());
  EXPECT_EQ(file.content(), "new");
}

TEST(FileReplacement, RemovesWhatAKilledProcessLeft) {
  const TempFile file("old");
  const pid_t child = ::fork();
  if (child == 0) {
    const FileReplacement replacement(file.path());
    ::kill(::getpid(), SIGKILL);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
  ASSERT_EQ(entries(file.folder()), 2U);
  const FileReplacement replacement(file.missing());
  EXPECT_EQ(entries(file.folder()), 2U);
  EXPECT_TRUE(std::filesystem::exists(replacement.path()));
}

TEST(FileReplacement, LeavesWhatOthersWrite) {
  const TempFile file("old");
  const std::string others = file.folder() + "/.xrf-notes.tmp";
  std::ofstream(others) << "mine";
  FileReplacement first(file.path());
  EXPECT_TRUE(first.write("first", 5));
  FileReplacement second(file.path());
  EXPECT_TRUE(std::filesystem::exists(first.path()));
  EXPECT_NE(first.path(), second.path());
  EXPECT_TRUE(first.commit());
  EXPECT_TRUE(second.write("second", 6));
  EXPECT_TRUE(second.commit());
  EXPECT_EQ(file.content(), "second");
  EXPECT_TRUE(std::filesystem::exists(others));
}

TEST(FileReplacement, WritesToAnOpenDescriptorDirectly) {
  const TempFile file("old");
  const int descriptor = ::open(file.path().c_str(), O_WRONLY);
  ASSERT_GE(descriptor, 0);
  FileReplacement replacement("/dev/fd/" + std::to_string(descriptor));
  EXPECT_TRUE(replacement.isDirect());
  EXPECT_TRUE(replacement.write("new", 3));
  EXPECT_EQ(file.content(), "new");
  EXPECT_TRUE(replacement.commit());
  EXPECT_EQ(entries(file.folder()), 1U);
  ::close(descriptor);
}

TEST(FileReplacement, KeepsTheFirstError) {
  const TempFile file;
  FileReplacement folder(file.folder());
  EXPECT_EQ(folder.error(), EISDIR);
  EXPECT_FALSE(folder.write("x", 1));
  EXPECT_FALSE(folder.commit());
  EXPECT_EQ(folder.error(), EISDIR);
  EXPECT_EQ(FileReplacement("").error(), ENOENT);
  EXPECT_EQ(FileReplacement(file.missing() + "/x").error(), ENOENT);
  FileReplacement full("/dev/full");
  EXPECT_FALSE(full.write("x", 1));
  EXPECT_EQ(full.error(), ENOSPC);
}
