#include "tests/TempFile.h"
#include <support/FileLines.h>
#include <support/LineReader.h>

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace XRF_RTL2LL {
namespace {

struct Line {
  std::string text;
  bool terminated = true;
  std::uint64_t offset = 0;  // of what follows

  bool operator==(const Line& other) const {
    return text == other.text && terminated == other.terminated && offset == other.offset;
  }
};

std::vector<Line> linesOf(std::string_view text) {
  std::vector<Line> lines;
  for (std::size_t at = 0; at < text.size(); at = lines.back().offset) {
    const std::size_t feed = std::min(text.find('\n', at), text.size());
    const bool terminated = feed < text.size();
    lines.push_back({std::string(text.substr(at, feed - at)), terminated, feed + terminated});
  }
  return lines;
}

// Walks over all lines and looks at everything there is to each.
void expectLines(const TextSource& source, std::string_view text, std::size_t piece) {
  ASSERT_TRUE(source.isOpen());
  LineReader reader(source, piece);
  EXPECT_EQ(reader.size(), text.size());
  EXPECT_EQ(reader.number(), 0U);
  EXPECT_EQ(reader.offset(), 0U);
  const std::vector<Line> lines = linesOf(text);
  for (std::size_t at = 0; at < lines.size(); ++at) {
    ASSERT_TRUE(reader.next()) << "line " << at + 1;
    const Line line{std::string(reader.line()), reader.terminated(), reader.offset()};
    ASSERT_TRUE(line == lines[at]) << "line " << at + 1;
    ASSERT_EQ(reader.number(), at + 1);
    const std::string_view follows = text.substr(lines[at].offset);
    ASSERT_GE(reader.rest().size(), std::min(follows.size(), LineReader::ahead));
    ASSERT_TRUE(follows.starts_with(reader.rest())) << "line " << at + 1;
  }
  EXPECT_FALSE(reader.next());
  EXPECT_FALSE(reader.next());
  EXPECT_EQ(reader.offset(), text.size());
  EXPECT_FALSE(reader.failed());
}

void expectLines(const std::string& text, std::size_t piece = LineReader::usualPiece) {
  const test::TempFile file(text);
  expectLines(TextSource(file.path()), text, piece);
  expectLines(TextSource(std::string_view(text)), text, piece);
}

// Lines of all lengths from nothing to what a few pieces hold, the short ones most often.
std::string mixedLines(std::size_t size) {
  std::string text;
  for (std::size_t number = 0; text.size() < size; ++number) {
    const std::size_t length = number % 97 == 96 ? number * 131 % 90'000 : number * number % 53;
    text.append(length, static_cast<char>('a' + number % 26));
    text += number % 5 == 0 ? "\r\n" : "\n";
  }
  return text;
}

TEST(LineReaderTest, ShortTexts) {
  for (const char* text : {"", "\n", "a", "a\n", "\n\n", "a\nb", "a\r\nb\r\n\r", "\n\na\n\n"}) {
    SCOPED_TRACE(text);
    expectLines(text);
    expectLines(text, 1);
  }
}

TEST(LineReaderTest, LinesAcrossTheBordersOfPieces) {
  const std::string text = mixedLines(1'500'000);
  expectLines(text);
  expectLines(text + "without a line feed");
  for (const std::size_t piece : {std::size_t{1}, LineReader::ahead, LineReader::ahead * 2 + 1}) {
    expectLines(text.substr(0, 400'000), piece);
  }
}

TEST(LineReaderTest, EveryPlaceOfALineFeedAtABorder) {
  constexpr std::size_t piece = 2 * LineReader::ahead;
  for (const std::size_t border : {LineReader::ahead, piece}) {
    for (std::size_t length = border - 3; length <= border + 3; ++length) {
      SCOPED_TRACE(length);
      expectLines(std::string(length, 'x') + "\n" + mixedLines(3 * piece), piece);
      expectLines(std::string(length, 'x') + "\n", piece);
      expectLines(std::string(length, 'x'), piece);
      expectLines(std::string(length, '\n'), piece);
    }
  }
}

TEST(LineReaderTest, LinesLongerThanAPiece) {
  const std::string line(3 * LineReader::usualPiece + 7, 'y');
  expectLines(line);
  expectLines("first\n" + line + "\nlast");
  expectLines(line + "\n" + line + "\n" + mixedLines(100'000));
}

TEST(LineReaderTest, ByteOrderMarkIsNoPartOfTheText) {
  const std::string text = mixedLines(600'000);
  const test::TempFile file("\xEF\xBB\xBF" + text);
  expectLines(TextSource(file.path()), text, LineReader::usualPiece);
}

TEST(LineReaderTest, NulBytesAreText) { expectLines(std::string("a\0b\n\0\nc", 7)); }

TEST(LineReaderTest, Pipe) {
  const std::string text = mixedLines(700'000);
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  std::thread writer([&] {
    for (std::size_t at = 0; at < text.size();) {
      const ssize_t done = ::write(ends[1], text.data() + at, text.size() - at);
      if (done < 0) break;
      at += static_cast<std::size_t>(done);
    }
    ::close(ends[1]);
  });
  const TextSource source("/dev/fd/" + std::to_string(ends[0]));
  writer.join();
  ::close(ends[0]);
  expectLines(source, text, LineReader::usualPiece);
}

TEST(LineReaderTest, SkippedLinesCount) {
  std::string text;
  for (int number = 1; number <= 100'000; ++number) text += std::to_string(number) + "\n";
  const test::TempFile file(text);
  const TextSource source(file.path());
  LineReader reader(source);
  while (reader.next()) {
    ASSERT_EQ(reader.line(), std::to_string(reader.number()));
    const std::size_t feed = reader.rest().find('\n');
    if (feed != std::string_view::npos && reader.number() % 3 == 0) reader.skip(feed + 1, 1);
  }
  EXPECT_EQ(reader.number(), 100'000U);
  EXPECT_EQ(reader.offset(), text.size());
}

TEST(LineReaderTest, FileThatIsCutWhileItIsReadEndsEarlier) {
  const std::string text = mixedLines(2'000'000);
  const test::TempFile file(text);
  const TextSource source(file.path());
  LineReader reader(source);
  ASSERT_TRUE(reader.next());
  std::filesystem::resize_file(file.path(), 1'000'000);
  while (reader.next()) ASSERT_EQ(text.substr(reader.offset()).find(reader.rest()), 0U);
  EXPECT_EQ(reader.offset(), 1'000'000U);
  EXPECT_EQ(reader.size(), text.size());
  EXPECT_FALSE(reader.failed());
}

TEST(LineReaderTest, FileThatGrowsWhileItIsReadEndsWhereItDid) {
  const std::string text = mixedLines(600'000);
  const test::TempFile file(text);
  const TextSource source(file.path());
  file.write(text + text);
  expectLines(source, text, LineReader::usualPiece);
}

// A file whose reading fails from some moment on.
class FailingFile {
 public:
  explicit FailingFile(const std::string& path)
      : m_number(nextNumber()), m_folder(std::filesystem::path(path).parent_path()), source(path) {}

  // A folder takes the place of the open file: it cannot be read.
  void fail() const {
    const int folder = ::open(m_folder.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::dup2(folder, m_number), m_number);
    ::close(folder);
  }

 private:
  static int nextNumber() {
    const int number = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    ::close(number);
    return number;
  }

  int m_number;
  std::string m_folder;

 public:
  TextSource source;
};

TEST(LineReaderTest, LineThatFailsInTheMiddleIsNone) {
  const std::string text = "first\n" + std::string(LineReader::usualPiece * 2, 'z') + "\nlast\n";
  const test::TempFile file(text);
  const FailingFile failing(file.path());
  LineReader reader(failing.source);
  failing.fail();
  EXPECT_FALSE(reader.next());
  EXPECT_TRUE(reader.failed());
}

void throwFatal(const Fatal& fatal, void* /*context*/) { throw std::runtime_error(fatal.text); }
void ignoreMessage(int /*stream*/, const char* /*text*/, void* /*context*/) {}

TEST(LineReaderTest, FileThatFailsBeforeItsEndIsFatal) {
  const FatalHandlerScope fatals(throwFatal);
  const MessageHandlerScope messages(ignoreMessage);
  const std::string text = mixedLines(2'000'000);
  const test::TempFile file(text);
  const FailingFile failing(file.path());
  FileLines lines(file.path(), failing.source, "Reading");
  ASSERT_TRUE(lines.next());
  failing.fail();
  std::string reason;
  std::vector<Line> whole = linesOf(text);
  std::size_t met = 1;
  try {
    for (; lines.next(); ++met) ASSERT_EQ(lines.line(), whole.at(met).text);
  } catch (const std::runtime_error& error) {
    reason = error.what();
  }
  EXPECT_NE(reason.find("The file cannot be read to its end."), std::string::npos) << reason;
  EXPECT_GT(met, 1U);
  EXPECT_LT(met, whole.size());
}

}  // namespace
}  // namespace XRF_RTL2LL
