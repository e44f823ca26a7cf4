#include <crossreference/TokenMap.h>
#include <tests/TestModel.h>

#include <array>
#include <stdexcept>
#include <string>
#include <string_view>

namespace XRF_RTL2LL {
namespace {

using testing_support::FreshModel;

class TokenMapTest : public FreshModel {
 protected:
  TokenMap m_map;
};

constexpr std::array<const char*, 51> fixedWords{"(",
                                                 ")",
                                                 "array",
                                                 "cell",
                                                 "cellref",
                                                 "design",
                                                 "direction",
                                                 "instance",
                                                 "instanceref",
                                                 "INIT",
                                                 "joined",
                                                 "Library",
                                                 "libraryref",
                                                 "LUT1",
                                                 "LUT2",
                                                 "LUT3",
                                                 "LUT4",
                                                 "LUT5",
                                                 "LUT6",
                                                 "member",
                                                 "net",
                                                 "port",
                                                 "portref",
                                                 "property",
                                                 "Q",
                                                 "q",
                                                 "rename",
                                                 "string",
                                                 "program",
                                                 "_const0_",
                                                 "_const1_",
                                                 "FD",
                                                 "FDC",
                                                 "FDCE",
                                                 "FDE",
                                                 "FDP",
                                                 "FDPE",
                                                 "FDR",
                                                 "FDRE",
                                                 "FDS",
                                                 "FDSE",
                                                 "INPUT",
                                                 "OUTPUT",
                                                 "Tarvona",
                                                 "Drumlane",
                                                 "part",
                                                 "IS_CLR_INVERTED",
                                                 "IS_D_INVERTED",
                                                 "IS_PRE_INVERTED",
                                                 "IS_R_INVERTED",
                                                 "IS_S_INVERTED"};

TEST_F(TokenMapTest, NewMapHandsOutCodesFromZero) {
  EXPECT_EQ(m_map.getCode("b"), 0U);
  EXPECT_EQ(m_map.getCode("a"), 1U);
  EXPECT_EQ(m_map.getCode("b"), 0U);
  EXPECT_EQ(m_map.getCode("c"), 2U);
  EXPECT_EQ(m_map.getToken(0), "b");
  EXPECT_EQ(m_map.getToken(1), "a");
}

TEST_F(TokenMapTest, NetlistSeedsEveryFixedWordUnderItsCode) {
  Netlist netlist;
  TokenMap* map = netlist.getTokenMap();
  for (unsigned int code = 0; code < fixedWords.size(); ++code) {
    EXPECT_EQ(map->getToken(code), fixedWords[code]);
    EXPECT_EQ(map->getCode(fixedWords[code]), code) << fixedWords[code];
  }
}

TEST_F(TokenMapTest, NamedCodesAreThoseOfTheirWords) {
  EXPECT_EQ(static_cast<unsigned>(token::Count), fixedWords.size());
  EXPECT_EQ(static_cast<unsigned>(token::Open), 0U);
  EXPECT_EQ(static_cast<unsigned>(token::Lut1), 13U);
  EXPECT_EQ(static_cast<unsigned>(token::UpperQ), 24U);
  EXPECT_EQ(static_cast<unsigned>(token::Fd), 31U);
  EXPECT_EQ(static_cast<unsigned>(token::Fdse), 40U);
  EXPECT_EQ(static_cast<unsigned>(token::IsDInverted), 47U);
  EXPECT_EQ(static_cast<unsigned>(token::IsSInverted), 50U);
}

TEST_F(TokenMapTest, FirstUnknownWordOfASeededMapReceives51) {
  Netlist netlist;
  TokenMap* map = netlist.getTokenMap();
  EXPECT_EQ(map->getCode("("), 0U);
  EXPECT_EQ(map->getCode(")"), 1U);
  EXPECT_EQ(map->getCode("first"), 51U);
  EXPECT_EQ(map->getCode("second"), 52U);
  EXPECT_EQ(map->getCode("first"), 51U);
}

TEST_F(TokenMapTest, CaseMatters) {
  Netlist netlist;
  TokenMap* map = netlist.getTokenMap();
  EXPECT_EQ(map->getCode("Q"), 24U);
  EXPECT_EQ(map->getCode("q"), 25U);
  EXPECT_EQ(map->getCode("Library"), 11U);
  EXPECT_EQ(map->getCode("library"), 51U);
  EXPECT_EQ(map->getCode("fd"), 52U);
}

TEST_F(TokenMapTest, EmptyWordIsAWordLikeAnyOther) {
  EXPECT_EQ(m_map.getCode("a"), 0U);
  EXPECT_EQ(m_map.getCode(""), 1U);
  EXPECT_EQ(m_map.getCode(std::string()), 1U);
  EXPECT_EQ(m_map.getToken(1), "");
  EXPECT_EQ(m_map.getCode("b"), 2U);
}

TEST_F(TokenMapTest, EveryFormOfTheWordGivesTheSameCode) {
  EXPECT_EQ(m_map.getCode(std::string("x")), 0U);
  EXPECT_EQ(m_map.getCode("y"), 1U);
  EXPECT_EQ(m_map.getCode(std::string_view("zebra").substr(0, 1)), 2U);
  EXPECT_EQ(m_map.getCode(std::string_view("x")), 0U);
  EXPECT_EQ(m_map.getCode(std::string("y")), 1U);
  EXPECT_EQ(m_map.getCode("z"), 2U);
}

TEST_F(TokenMapTest, WordsCompareByteByByte) {
  const std::string longer("a\0b", 3);
  EXPECT_EQ(m_map.getCode("a"), 0U);
  EXPECT_EQ(m_map.getCode(longer), 1U);
  EXPECT_EQ(m_map.getToken(1), longer);
  EXPECT_EQ(m_map.getCode("a "), 2U);
  EXPECT_EQ(m_map.getCode(" a"), 3U);
}

TEST_F(TokenMapTest, WordIsCopied) {
  std::string word = "abc";
  m_map.getCode(word);
  word = "xyz";
  EXPECT_EQ(m_map.getToken(0), "abc");
}

TEST_F(TokenMapTest, NullIsALogicError) {
  EXPECT_THROW(m_map.getCode(static_cast<const char*>(nullptr)), std::logic_error);
  EXPECT_EQ(m_map.getCode("a"), 0U);
}

TEST_F(TokenMapTest, UnknownCodeIsFatal) {
  EXPECT_FATAL(m_map.getToken(0), "ERROR: no token for code: 0\n");
  EXPECT_FATAL(m_map.getToken(0xffffffffU), "ERROR: no token for code: -1\n");
}

TEST_F(TokenMapTest, FirstFreeCodeOfASeededMapIsFatalUntilHandedOut) {
  Netlist netlist;
  EXPECT_FATAL(netlist.getTokenMap()->getToken(51), "ERROR: no token for code: 51\n");
  netlist.getTokenMap()->getCode("word");
  EXPECT_EQ(netlist.getTokenMap()->getToken(51), "word");
}

TEST_F(TokenMapTest, SkippedCodesHaveNoWord) {
  m_map.seed("a", 5);
  EXPECT_EQ(m_map.getToken(5), "a");
  EXPECT_FATAL(m_map.getToken(4), "ERROR: no token for code: 4\n");
  EXPECT_FATAL(m_map.getToken(6), "ERROR: no token for code: 6\n");
}

TEST_F(TokenMapTest, SeedRaisesTheNextCode) {
  Netlist netlist;
  TokenMap* map = netlist.getTokenMap();
  map->seed("hundred", 100);
  EXPECT_EQ(map->getCode("next"), 101U);
  EXPECT_EQ(map->getCode("hundred"), 100U);
}

TEST_F(TokenMapTest, SeedBelowTheNextCodeLeavesIt) {
  m_map.seed("high", 10);
  m_map.seed("low", 3);
  EXPECT_EQ(m_map.getCode("low"), 3U);
  EXPECT_EQ(m_map.getCode("next"), 11U);
}

TEST_F(TokenMapTest, SeedOfAPresentWordKeepsItsCode) {
  m_map.seed("a", 2);
  m_map.seed("a", 7);
  EXPECT_EQ(m_map.getCode("a"), 2U);
  EXPECT_EQ(m_map.getToken(2), "a");
  EXPECT_EQ(m_map.getCode("next"), 8U);
}

TEST_F(TokenMapTest, SeedOfATakenCodeKeepsItsWord) {
  m_map.seed("a", 2);
  m_map.seed("b", 2);
  EXPECT_EQ(m_map.getToken(2), "a");
  EXPECT_EQ(m_map.getCode("a"), 2U);
  EXPECT_EQ(m_map.getCode("b"), 2U);
  EXPECT_EQ(m_map.getCode("next"), 3U);
}

TEST_F(TokenMapTest, SeedOfACodeThatWasHandedOutKeepsItsWord) {
  EXPECT_EQ(m_map.getCode("a"), 0U);
  m_map.seed("b", 0);
  EXPECT_EQ(m_map.getToken(0), "a");
  EXPECT_EQ(m_map.getCode("b"), 0U);
  EXPECT_EQ(m_map.getCode("c"), 1U);
  EXPECT_EQ(m_map.getToken(1), "c");
}

TEST_F(TokenMapTest, CodesHandedOutMeetSeededOnes) {
  m_map.seed("two", 2);
  m_map.seed("zero", 0);
  m_map.seed("one", 1);
  EXPECT_EQ(m_map.getCode("three"), 3U);
  EXPECT_EQ(m_map.getToken(0), "zero");
  EXPECT_EQ(m_map.getToken(1), "one");
  EXPECT_EQ(m_map.getToken(2), "two");
  EXPECT_EQ(m_map.getToken(3), "three");
}

TEST_F(TokenMapTest, ClearForgetsEveryWord) {
  m_map.seed("a", 40);
  m_map.getCode("b");
  m_map.clear();
  EXPECT_EQ(m_map.getCode("b"), 0U);
  EXPECT_EQ(m_map.getCode("a"), 1U);
  EXPECT_FATAL(m_map.getToken(40), "ERROR: no token for code: 40\n");
}

TEST_F(TokenMapTest, InitializeMapForgetsWordsAndSeedsAgain) {
  Netlist netlist;
  TokenMap* map = netlist.getTokenMap();
  map->getCode("mine");
  netlist.initializeMap();
  EXPECT_EQ(netlist.getTokenMap(), map);
  EXPECT_EQ(map->getCode("IS_S_INVERTED"), 50U);
  EXPECT_EQ(map->getCode("other"), 51U);
}

TEST_F(TokenMapTest, NetlistsHaveMapsOfTheirOwn) {
  Netlist first;
  Netlist second;
  EXPECT_EQ(first.getTokenMap()->getCode("a"), 51U);
  EXPECT_EQ(second.getTokenMap()->getCode("b"), 51U);
  EXPECT_EQ(first.getTokenMap()->getToken(51), "a");
}

TEST_F(TokenMapTest, WordsStayWhereTheyAreWhileTheMapGrows) {
  const std::string& first = m_map.getToken(m_map.getCode("first"));
  const std::string* place = &first;
  for (unsigned int number = 1; number <= 200'000; ++number) {
    ASSERT_EQ(m_map.getCode(std::to_string(number)), number);
  }
  EXPECT_EQ(first, "first");
  EXPECT_EQ(&m_map.getToken(0), place);
  for (unsigned int number = 1; number <= 200'000; ++number) {
    ASSERT_EQ(m_map.getCode(std::to_string(number)), number);
    ASSERT_EQ(m_map.getToken(number), std::to_string(number));
  }
}

TEST_F(TokenMapTest, WordOfAMegabyteIsInterned) {
  const std::string word(1 << 20, 'w');
  EXPECT_EQ(m_map.getCode(word), 0U);
  EXPECT_EQ(m_map.getCode(word + "w"), 1U);
  EXPECT_EQ(m_map.getToken(0), word);
}

}  // namespace
}  // namespace XRF_RTL2LL
