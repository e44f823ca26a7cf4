#include <crossreference/EdifBytes.h>

#include <gtest/gtest.h>
#include <random>
#include <string>

namespace XRF_RTL2LL {
namespace {

/// A text followed by what the functions rely on.
std::string guarded(std::string text) { return text += std::string(edifMargin + 1, '"'); }

void expectSameEverywhere(const std::string& text) {
  const std::string all = guarded(text);
  for (std::size_t at = 0; at <= text.size(); ++at) {
    const char* from = all.data() + at;
    ASSERT_EQ(passBlanks(from), edif_single::passBlanks(from)) << at;
    ASSERT_EQ(findWordStop(from), edif_single::findWordStop(from)) << at;
    ASSERT_EQ(findStringStop(from), edif_single::findStringStop(from)) << at;
  }
}

TEST(EdifBytesTest, ClassesAreThoseOfTheFormat) {
  for (int value = 0; value < 256; ++value) {
    const char byte = static_cast<char>(value);
    const bool blank = byte == ' ' || (value >= 9 && value <= 13);
    const bool stringStop = byte == '"' || byte == '\\' || value == 0;
    EXPECT_EQ(isEdif(EdifBlank, byte), blank) << value;
    EXPECT_EQ(isEdif(EdifStringStop, byte), stringStop) << value;
    EXPECT_EQ(isEdif(EdifWordStop, byte), blank || stringStop || byte == '(' || byte == ')')
        << value;
  }
}

TEST(EdifBytesTest, EveryByteAtEveryPlaceOfABlock) {
  for (int value = 0; value < 256; ++value) {
    for (std::size_t at = 0; at < 34; ++at) {
      for (const char filler : {'a', ' '}) {
        std::string text(34, filler);
        text[at] = static_cast<char>(value);
        const std::string all = guarded(text);
        ASSERT_EQ(passBlanks(all.data()), edif_single::passBlanks(all.data())) << value;
        ASSERT_EQ(findWordStop(all.data()), edif_single::findWordStop(all.data())) << value;
        ASSERT_EQ(findStringStop(all.data()), edif_single::findStringStop(all.data())) << value;
      }
    }
  }
}

TEST(EdifBytesTest, RandomBytes) {
  std::mt19937 random(5);
  for (int round = 0; round < 100; ++round) {
    std::string text(random() % 100, ' ');
    const unsigned most = round % 2 == 0 ? 256 : 64;
    for (char& byte : text) byte = static_cast<char>(random() % most);
    expectSameEverywhere(text);
  }
}

}  // namespace
}  // namespace XRF_RTL2LL
