#include <crossreference/Reading.h>

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

using namespace XRF_RTL2LL;

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

TEST(ReadingNamesTest, RawNamesComeBeforeChangedOnes) {
  const auto candidates = netCandidates("top", "u.x/pos[3]");
  ASSERT_GE(candidates.size(), 4U);
  EXPECT_EQ(candidates[0].signal, "/top/u.x/pos[3]");
  EXPECT_EQ(candidates[1].signal, "/top/u.x/pos");
  EXPECT_EQ(candidates[1].lsb, 3U);
  EXPECT_EQ(candidates[2].signal, "/top/u_x/pos[3]");
  EXPECT_EQ(candidates[3].signal, "/top/u_x/pos");
}

TEST(ReadingNamesTest, PartitionLevelsOfALogAreDropped) {
  const auto named = [](const char* name, const char* signal) {
    const auto candidates = registerCandidates("top", name);
    return std::any_of(candidates.begin(), candidates.end(),
                       [&](const NamedBits& bits) { return bits.signal == signal; });
  };
  EXPECT_TRUE(named("part:/x_reg[2]", "/top/x"));
  EXPECT_TRUE(named("i_0/u0/x_reg", "/top/u0/x"));
  EXPECT_FALSE(named("u0/x_reg", "/top/x"));
}

}  // namespace
