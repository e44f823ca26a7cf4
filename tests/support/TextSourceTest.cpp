#include "tests/TempFile.h"
#include <support/TextSource.h>

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <unistd.h>

namespace XRF_RTL2LL {
namespace {

std::string piece(const TextSource& source, std::uint64_t offset, std::size_t size) {
  std::string text(size, '?');
  text.resize(source.read(offset, text.data(), size));
  return text;
}

void expectTenDigits(const TextSource& source) {
  ASSERT_TRUE(source.isOpen());
  EXPECT_EQ(source.size(), 10U);
  EXPECT_EQ(piece(source, 0, 10), "0123456789");
  EXPECT_EQ(piece(source, 0, 100), "0123456789");
  EXPECT_EQ(piece(source, 7, 2), "78");
  EXPECT_EQ(piece(source, 7, 9), "789");
  EXPECT_EQ(piece(source, 10, 1), "");
  EXPECT_EQ(piece(source, 1'000'000, 1), "");
  EXPECT_EQ(piece(source, 2, 3), "234");
  EXPECT_FALSE(source.failed());
}

TEST(TextSourceTest, RegularFile) {
  const test::TempFile file("0123456789");
  expectTenDigits(TextSource(file.path()));
}

TEST(TextSourceTest, TextInMemory) {
  expectTenDigits(TextSource(std::string_view("0123456789 and more").substr(0, 10)));
}

TEST(TextSourceTest, PipeIsReadOnce) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  std::thread writer([&] {
    ASSERT_EQ(::write(ends[1], "01234", 5), 5);
    ASSERT_EQ(::write(ends[1], "56789", 5), 5);
    ::close(ends[1]);
  });
  const TextSource source("/dev/fd/" + std::to_string(ends[0]));
  writer.join();
  ::close(ends[0]);
  expectTenDigits(source);
}

TEST(TextSourceTest, FileThatTheKernelMakesUp) {
  const TextSource source(std::string("/proc/self/status"));
  ASSERT_TRUE(source.isOpen());
  EXPECT_GT(source.size(), 0U);
  EXPECT_EQ(piece(source, 0, 5), "Name:");
}

TEST(TextSourceTest, EmptyFile) {
  const test::TempFile file("");
  const TextSource source(file.path());
  EXPECT_TRUE(source.isOpen());
  EXPECT_EQ(source.size(), 0U);
  EXPECT_EQ(piece(source, 0, 10), "");
}

TEST(TextSourceTest, DirectoryAndMissingFileAreNotOpen) {
  const test::TempFile file;
  EXPECT_FALSE(TextSource(file.folder()).isOpen());
  EXPECT_FALSE(TextSource(file.missing()).isOpen());
}

TEST(TextSourceTest, FileThatIsGoneIsStillRead) {
  const test::TempFile file("0123456789");
  const TextSource source(file.path());
  std::filesystem::remove(file.path());
  expectTenDigits(source);
}

TEST(TextSourceTest, FileThatShrankEndsEarlier) {
  const test::TempFile file("0123456789");
  const TextSource source(file.path());
  std::filesystem::resize_file(file.path(), 4);
  EXPECT_EQ(piece(source, 0, 10), "0123");
  EXPECT_EQ(piece(source, 6, 10), "");
  EXPECT_FALSE(source.failed());
}

}  // namespace
}  // namespace XRF_RTL2LL
