#include <crossreference/Utils.h>

#include <gtest/gtest.h>

namespace XRF_RTL2LL {
namespace {

using utils::isAddedQuellonNetName;

TEST(UtilsTest, EnumeratorsHaveTheirFixedValues) {
  EXPECT_EQ(static_cast<unsigned>(RTL), 0U);
  EXPECT_EQ(static_cast<unsigned>(SYNTH), 1U);
  EXPECT_EQ(static_cast<unsigned>(FAMILY_NONE), 0U);
  EXPECT_EQ(static_cast<unsigned>(TORVAL7), 1U);
  EXPECT_EQ(static_cast<unsigned>(PART_NONE), 0U);
  EXPECT_EQ(static_cast<unsigned>(IN), 0U);
  EXPECT_EQ(static_cast<unsigned>(OUT), 1U);
  EXPECT_EQ(static_cast<unsigned>(WIRE), 2U);
}

TEST(UtilsTest, EveryDeviceTextIsPartFour) {
  for (const char* text : {"", "anything", "4", static_cast<const char*>(nullptr)}) {
    EXPECT_EQ(static_cast<unsigned>(utils::getPart(text)), 4U);
  }
}

TEST(UtilsTest, NoPartHasSeveralRegions) {
  EXPECT_EQ(utils::getSLRSize(static_cast<Part>(4)), 0U);
  EXPECT_EQ(utils::getSLRSize(PART_NONE), 0U);
  EXPECT_EQ(utils::getSLRSize(static_cast<Part>(0xffffffffU)), 0U);
}

TEST(UtilsTest, FormatVersionIsOne) { EXPECT_EQ(utils::getVersion(), 1U); }

TEST(UtilsTest, AddedNetNameHasLiteralPlusSigns) {
  EXPECT_TRUE(isAddedQuellonNetName(TORVAL7, "n_5+_q+_i"));
  EXPECT_TRUE(isAddedQuellonNetName(TORVAL7, "n_0+_x+_i"));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "n_5_q_i"));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "n_0_count_i"));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "n_5+_q_i"));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "n_5_q+_i"));
}

TEST(UtilsTest, AddedNetNameMayEndInANumberedSuffix) {
  EXPECT_TRUE(isAddedQuellonNetName(TORVAL7, "n_5+_q+_i__3+"));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "n_5+_q+_i__3"));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "n_5+_q+_i__33+"));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "n_5+_q+_i__x+"));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "n_5+_q+_i_3+"));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "n_5+_q+_i__3+x"));
}

TEST(UtilsTest, AddedNetNameMatchesAsAWhole) {
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "m_5+_q+_i"));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "N_5+_q+_i"));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "n-5+_q+_i"));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "nn_5+_q+_i"));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "n_5+_q+_ii"));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "n_5+_q+_I"));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "n_5+_q+_i "));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "n_5+_q+"));
}

TEST(UtilsTest, AddedNetNameHasOneDigitAndOneCharacter) {
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "n_55+_q+_i"));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "n_x+_q+_i"));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "n_+_q+_i"));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "n_5+_qq+_i"));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "n_5+_+_i"));
  EXPECT_TRUE(isAddedQuellonNetName(TORVAL7, "n_5+_++_i"));
  EXPECT_TRUE(isAddedQuellonNetName(TORVAL7, "n_5+__+_i"));
  EXPECT_TRUE(isAddedQuellonNetName(TORVAL7, "n_9+_ +_i"));
}

TEST(UtilsTest, ShortNamesAreNotReadBeyondTheirEnd) {
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, ""));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "n"));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "n_"));
  EXPECT_FALSE(isAddedQuellonNetName(TORVAL7, "_"));
}

TEST(UtilsTest, NamesOfOtherFamiliesAreNeverAdded) {
  for (const char* name : {"n_5+_q+_i", "n_5+_q+_i__3+", "", "q"}) {
    EXPECT_FALSE(isAddedQuellonNetName(FAMILY_NONE, name));
    EXPECT_FALSE(isAddedQuellonNetName(static_cast<Family>(2), name));
  }
}

}  // namespace
}  // namespace XRF_RTL2LL
