#include <crossreference/Reading.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace XRF_RTL2LL;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

std::string shown(const NamedBits& bits) {
  if (!bits.valid) return "none";
  std::string text = bits.signal + " " + std::to_string(bits.msb);
  if (bits.msb != bits.lsb) text += ".." + std::to_string(bits.lsb);
  return bits.replica ? text + " replica" : text;
}

struct NameCase {
  const char* name;
  const char* decoded;
};

TEST(ReadingNamesTest, RegisterNamesTellSignalAndIndex) {
  const NameCase cases[] = {
      {"valid_reg", "valid 0"},
      {"cnt_reg[3]", "cnt 3"},
      {"gen[2].cnt_reg[3]", "gen[2].cnt 3"},
      {"mem_reg[3][5]", "mem<3> 5"},
      {"m_reg[1][2][3]", "m<1><2> 3"},
      {"r_reg[count][31]", "r<count> 31"},
      {"r_reg[tag][valid]", "r<tag><valid> 0"},
      {"q_reg[7:4]", "q 7..4"},
      {"q_reg[4:7]", "q 7..4"},
      {"u0/core/x_reg[1]", "u0/core/x 1"},
      {"q_reg[-1]", "q[-1] 0"},
      {"mem_reg[3][-1]", "mem[3][-1] 0"},
      {"q_reg[3:-4]", "q 0"},
      {"x_reg[4]_rep", "x 4 replica"},
      {"x_reg[4]_rep__0", "x 4 replica"},
      {"x_reg_rep", "x 0 replica"},
      {"foo_reg_reg", "foo_reg 0"},
      {"pos[3]_reg", "pos[3] 0"},
  };
  for (const NameCase& test : cases) EXPECT_EQ(shown(decodeRegister(test.name)), test.decoded);
}

TEST(ReadingNamesTest, OtherInstanceNamesTellNoRegister) {
  for (const char* name : {"", "_reg", "x", "x_reg_inv", "x_reg[3", "x_reg3]", "x_reg[]", "_reg[3]",
                           "x_regs[3]", "x_reg[3].y", "count_reg_3_"}) {
    EXPECT_EQ(shown(decodeRegister(name)), "none") << name;
  }
}

TEST(ReadingNamesTest, NetNamesAreTakenApartFromTheRight) {
  const NameCase cases[] = {
      {"d[3]", "d 3"},
      {"gen[2].cnt[3]", "gen[2].cnt 3"},
      {"mem[3][5]", "mem<3> 5"},
      {"r[tag][v]", "r<tag><v> 0"},
      {"n_0_x_reg[7]", "n_0_x_reg 7"},
      {"x_reg_n_0_[7]", "x_reg_n_0_ 7"},
      {"gen[2].valid", "none"},
      {"plain", "none"},
      {"a[3:0]", "none"},
      {"q[3]_rep", "none"},
      {"a[99999999999]", "none"},
      {"acc[-1]", "none"},
      {"a[ 3 ]", "none"},
      {"a[+3]", "none"},
  };
  for (const NameCase& test : cases) EXPECT_EQ(shown(decodeBit(test.name)), test.decoded);
}

TEST(ReadingNamesTest, ArraysTakeTheirDeclaredRange) {
  const auto shownRange = [](const char* name, std::uint32_t width) {
    const PortRange range = decodeArray(name, width);
    return range.signal + " " + std::to_string(range.left) + " " + std::to_string(range.right);
  };
  EXPECT_EQ(shownRange("x[15:8]", 8), "x 15 8");
  EXPECT_EQ(shownRange("d[0:7]", 8), "d 0 7");
  EXPECT_EQ(shownRange("cfg[4][tag][31:0]", 32), "cfg<4><tag> 31 0");
  EXPECT_EQ(shownRange("n[3:-2]", 6), "n 5 0");
  EXPECT_EQ(shownRange("w[7:0]", 4), "w 3 0");
  EXPECT_EQ(shownRange("plain", 4), "plain 3 0");
}

TEST(ReadingNamesTest, WhatTheFileFormatCannotCarryIsReplaced) {
  EXPECT_EQ(cleaned("a b(c)\td"), "a_b_c__d");
  EXPECT_EQ(cleaned("gen[2].x$1"), "gen[2].x$1");
}

TEST(ReadingNamesTest, CellsOutsideTheTableThatHoldState) {
  for (const char* cell : {"LD", "LDCE", "LDPE", "FDRE_1", "FD_1", "RTL_LATCH", "RTL_LATCH3"}) {
    EXPECT_TRUE(holdsState(cell)) << cell;
  }
  for (const char* cell : {"FDRE", "LUT6", "LDX", "FDRE_2", "RTL_MUX", ""}) {
    EXPECT_FALSE(holdsState(cell)) << cell;
  }
}

std::vector<std::string> shownAll(const std::vector<NamedBits>& readings) {
  std::vector<std::string> all;
  for (const NamedBits& one : readings) all.push_back(shown(one));
  return all;
}

TEST(ReadingNamesTest, WholeNamesComeBeforeBits) {
  EXPECT_THAT(shownAll(netReadings("u.x/pos[3]")), ElementsAre("u.x/pos[3] 0", "u.x/pos 3"));
  EXPECT_THAT(shownAll(netReadings("u0/busy")), ElementsAre("u0/busy 0"));
  EXPECT_THAT(shownAll(registerReadings("u.x/pos_reg[3]")),
              ElementsAre("u.x/pos[3] 0", "u.x/pos 3"));
  EXPECT_THAT(shownAll(registerReadings("u0/busy_reg")), ElementsAre("u0/busy 0"));
  EXPECT_THAT(registerReadings("u0/busy"), IsEmpty());
}

TEST(ReadingNamesTest, LevelsAreCleanedOrJoinedFromTheInnermostOn) {
  std::vector<std::string> all;
  for (const ChangedLevels& changed : changedLevels("gen[2].u/w/x[3]")) {
    all.push_back(changed.name + " " + changed.joined);
  }
  EXPECT_THAT(all, ElementsAre("gen_2__u/w/x[3] ", "gen[2].u/w_x[3] gen[2].u/w",
                               "gen[2].u_w_x[3] gen[2].u"));
  EXPECT_THAT(changedLevels("x[3]"), IsEmpty());
}

TEST(ReadingNamesTest, PartitionLevelsOfALogAreDropped) {
  const auto names = [](const char* name) {
    std::vector<std::string> all;
    for (const PartitionedName& one : partitionedNames(name)) {
      all.push_back(one.name + " " + one.partition);
    }
    return all;
  };
  EXPECT_THAT(names("part:/x_reg[2]"), ElementsAre("part/x_reg[2] ", "x_reg[2] part"));
  EXPECT_THAT(names("i_0/u0:/x_reg"), ElementsAre("i_0/u0/x_reg ", "u0/x_reg i_0", "x_reg i_0/u0"));
  EXPECT_THAT(names("u0/i_0/x_reg"), ElementsAre("u0/i_0/x_reg "));
}

const char* const kNames[] = {"",
                              "x",
                              "x[3]",
                              "x[3][5]",
                              "x_reg",
                              "x_reg[3]",
                              "_reg",
                              "_reg[3]",
                              "x_reg_rep",
                              "x_reg_rep__7",
                              "x_reg[4]_rep",
                              "x_reg_inv",
                              "x_reg[a]",
                              "r_reg[t][v]",
                              "x_reg[7:4]",
                              "x_reg[-1]",
                              "x[-1][2]",
                              "x[1][t][03]",
                              "x[1][3:2]",
                              "x[1][99999999999]",
                              "x][1][2]",
                              "u/x[1][t]",
                              "x_reg[99999999999]",
                              "x[]",
                              "[3]",
                              "a][3]",
                              "x[3] ",
                              "x[3]y",
                              "x[[3]",
                              "x_reg[a b]",
                              "x_rep",
                              "x_reg_rep_rep",
                              "x[4294967295]",
                              "x[2147483646]",
                              "x[2147483647]"};

TEST(ReadingNamesTest, ShortQuestionAgreesWithDecodingARegister) {
  for (const char* name : kNames) {
    EXPECT_EQ(namesRegister(name), decodeRegister(name).valid) << name;
  }
}

TEST(ReadingNamesTest, SplittingABitAgreesWithDecodingIt) {
  unsigned split = 0;
  for (const char* name : kNames) {
    std::string buffer;
    std::string_view bus;
    std::uint32_t index = 0;
    const NamedBits bit = decodeBit(name);
    ASSERT_EQ(splitBit(name, buffer, bus, index), bit.valid) << name;
    if (!bit.valid) continue;
    EXPECT_EQ(bus, bit.signal) << name;
    EXPECT_EQ(index, bit.lsb) << name;
    ++split;
  }
  EXPECT_EQ(split, 11U);
}

}  // namespace
