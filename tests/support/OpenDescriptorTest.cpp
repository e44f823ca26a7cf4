#include <support/FileReplacement.h>
#include <support/OpenDescriptor.h>
#include <tests/TempFile.h>

#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

using test::TempFile;
using XRF_RTL2LL::duplicateForWriting;
using XRF_RTL2LL::FileReplacement;
using XRF_RTL2LL::openDescriptor;

namespace {

class Open {
 public:
  Open(const std::string& path, int flags) : m_number(::open(path.c_str(), flags | O_CLOEXEC)) {}
  ~Open() { ::close(m_number); }
  Open(const Open&) = delete;
  Open& operator=(const Open&) = delete;
  int number() const { return m_number; }
  std::string path() const { return "/dev/fd/" + std::to_string(m_number); }

 private:
  int m_number;
};

}  // namespace

TEST(OpenDescriptor, IsNamedByTheFoldersOfDescriptorsAndLinksToThem) {
  const TempFile file;
  EXPECT_EQ(openDescriptor("/dev/stdout"), 1);
  EXPECT_EQ(openDescriptor("/dev/stderr"), 2);
  EXPECT_EQ(openDescriptor("/dev/fd/7"), 7);
  EXPECT_EQ(openDescriptor("/proc/self/fd/0"), 0);
  EXPECT_EQ(openDescriptor("/proc/" + std::to_string(::getpid()) + "/fd/12"), 12);
  ASSERT_EQ(::symlink("/dev/stdout", file.missing().c_str()), 0);
  EXPECT_EQ(openDescriptor(file.missing()), 1);
}

TEST(OpenDescriptor, IsNothingElse) {
  const TempFile file;
  const std::string loop = file.folder() + "/loop";
  ASSERT_EQ(::symlink("loop", loop.c_str()), 0);
  for (const std::string& path :
       {file.path(), file.missing(), loop, file.missing() + "/deeper", std::string(),
        std::string("/dev/null"), std::string("/dev/fd/x"), std::string("/dev/fd/1x"),
        std::string("/proc/1/fd/1"), std::string("/dev/fd/99999999999")}) {
    EXPECT_EQ(openDescriptor(path), std::nullopt) << path;
  }
}

TEST(OpenDescriptor, IsDuplicatedWhereItMayBeWrittenTo) {
  const TempFile file("text");
  const Open reading(file.path(), O_RDONLY);
  EXPECT_EQ(duplicateForWriting(reading.number()), -1);
  EXPECT_EQ(errno, EBADF);
  const Open writing(file.path(), O_WRONLY);
  const int other = duplicateForWriting(writing.number());
  EXPECT_GE(other, 0);
  EXPECT_NE(other, writing.number());
  ::close(other);
  EXPECT_EQ(duplicateForWriting(other), -1);
  EXPECT_EQ(errno, EBADF);
}

TEST(OpenDescriptor, IsWrittenThroughByAReplacement) {
  const TempFile file("before, ");
  const Open appending(file.path(), O_WRONLY | O_APPEND);
  FileReplacement output(appending.path());
  EXPECT_TRUE(output.isDirect());
  EXPECT_TRUE(output.write("text", 4));
  EXPECT_TRUE(output.commit());
  EXPECT_EQ(file.content(), "before, text");
  EXPECT_EQ(::write(appending.number(), ", after", 7), 7);
  EXPECT_EQ(file.content(), "before, text, after");
}

TEST(OpenDescriptor, ThatMayNotBeWrittenToIsAnErrorOfTheReplacement) {
  const TempFile file("before");
  const Open reading(file.path(), O_RDONLY);
  FileReplacement output(reading.path());
  EXPECT_EQ(output.error(), EBADF);
  EXPECT_FALSE(output.write("text", 4));
  EXPECT_FALSE(output.commit());
  EXPECT_EQ(file.content(), "before");
}
