#include <crossreference/XrfRecords.h>

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

using namespace XRF_RTL2LL;

namespace {

/// The line with two blanks for each, which is read field by field.
std::string spread(const std::string& line) {
  std::string wide;
  for (const char byte : line) wide.append(byte == ' ' ? 2 : 1, byte);
  return wide;
}

class RandomLine {
 public:
  explicit RandomLine(std::uint32_t seed) : m_random(seed) {}

  std::uint32_t below(std::uint32_t end) { return static_cast<std::uint32_t>(m_random() % end); }
  std::string number() {
    std::string digits;
    for (std::uint32_t left = 1 + below(11); left > 0; --left) digits += pick("0123456789");
    return below(20) == 0 ? pick("+-") + digits : digits;
  }
  std::string word() {
    std::string text;
    for (std::uint32_t left = 1 + below(9); left > 0; --left) {
      text += pick(below(30) == 0 ? ")(\t\x01\x7f=\"" : "abZ_[]09.$<>/");
    }
    return text;
  }
  std::string closing() { return std::string(below(4), ')') + (below(8) == 0 ? "\r" : ""); }

 private:
  std::string pick(const std::string& bytes) {
    return std::string(1, bytes[below(static_cast<std::uint32_t>(bytes.size()))]);
  }

  std::mt19937 m_random;
};

/// The numbers that a signal's record ends in, however it was read.
std::vector<std::string> bitsOf(const SignalRecord& record) {
  std::vector<std::string> bits;
  if (record.isPlain) {
    for (const std::uint32_t bit : record.bits) bits.push_back(std::to_string(bit));
    return bits;
  }
  std::string word;
  for (const char byte : std::string(record.rest) + " ") {
    const bool ends = byte == ' ' || byte == ')' || byte == '\r';
    if (!ends) word += byte;
    if (ends && !word.empty()) bits.push_back(std::to_string(std::stoul(word)));
    if (ends) word.clear();
  }
  return bits;
}

TEST(XrfRecordsTest, SignalsReadAlikeInEitherWay) {
  RandomLine random(7);
  unsigned plain = 0;
  for (unsigned round = 0; round < 20000; ++round) {
    std::string line = "(SIG " + random.word() + " " + random.word() + " " + random.word();
    const std::uint32_t lsb = random.below(5);
    const std::uint32_t width = 1 + random.below(4);
    line += " " + random.number() + " " + random.number() + " " + std::to_string(lsb) + " " +
            std::to_string(lsb + width - 1);
    for (std::uint32_t bit = 0; bit < width; ++bit) line += " " + std::to_string(random.below(99));
    line += random.closing();
    SCOPED_TRACE(line);
    SignalRecord narrow;
    SignalRecord wide;
    const std::string other = spread(line);
    const bool read = narrow.scan(line);
    ASSERT_EQ(read, wide.scan(other));
    ASSERT_FALSE(wide.isPlain);
    plain += narrow.isPlain ? 1 : 0;
    if (!read) continue;
    EXPECT_EQ(narrow.fields, wide.fields);
    EXPECT_EQ(narrow.visibility, wide.visibility);
    EXPECT_EQ(narrow.direction, wide.direction);
    EXPECT_EQ(narrow.name, wide.name);
    EXPECT_EQ(narrow.id, wide.id);
    EXPECT_EQ(narrow.net, wide.net);
    EXPECT_EQ(narrow.lsb, wide.lsb);
    EXPECT_EQ(narrow.msb, wide.msb);
    EXPECT_EQ(narrow.closing, wide.closing);
    EXPECT_EQ(bitsOf(narrow), bitsOf(wide));
  }
  EXPECT_GT(plain, 1000U);
}

TEST(XrfRecordsTest, BitsReadAlikeInEitherWay) {
  RandomLine random(8);
  for (unsigned round = 0; round < 20000; ++round) {
    std::string line = "(BIT " + random.number() + " " + random.word() + " ";
    line += random.below(2) == 0 ? std::string("z") : random.word();
    for (std::uint32_t left = random.below(5); left > 0; --left) line += " " + random.number();
    line += random.closing();
    SCOPED_TRACE(line);
    BitRecord narrow;
    BitRecord wide;
    const std::string other = spread(line);
    const bool read = narrow.scan(line);
    ASSERT_EQ(read, wide.scan(other));
    if (!read) continue;
    EXPECT_EQ(narrow.fields, wide.fields);
    EXPECT_EQ(narrow.id, wide.id);
    EXPECT_EQ(narrow.kind, wide.kind);
    EXPECT_EQ(narrow.value.front(), wide.value.front());
    if (narrow.fields < 5) continue;
    for (unsigned at = 0; at < 3; ++at) EXPECT_EQ(narrow.location[at], wide.location[at]);
  }
}

TEST(XrfRecordsTest, ModulesReadAlikeInEitherWay) {
  RandomLine random(9);
  for (unsigned round = 0; round < 20000; ++round) {
    const std::string line = "(MOD " + random.word() + " " + random.word() + " " + random.word() +
                             " " + random.number() + random.closing();
    SCOPED_TRACE(line);
    ModuleRecord narrow;
    ModuleRecord wide;
    const std::string other = spread(line);
    const bool read = narrow.scan(line);
    ASSERT_EQ(read, wide.scan(other));
    if (!read) continue;
    EXPECT_EQ(narrow.definition, wide.definition);
    EXPECT_EQ(narrow.name, wide.name);
    EXPECT_EQ(narrow.id, wide.id);
    EXPECT_EQ(narrow.closing, wide.closing);
  }
}

}  // namespace
