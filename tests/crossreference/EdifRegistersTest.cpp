#include "tests/Edif.h"
#include "tests/crossreference/ReadingTest.h"

#include <string>

using namespace XRF_RTL2LL;
using edif::cell;
using edif::input;
using edif::instance;
using edif::net;
using edif::output;
using edif::pin;
using edif::renamed;
using edif::top;

namespace {

/// Register instances and the signals that their names stand for.
class EdifRegistersTest : public test::ReadingTest {
 protected:
  /// A synthesized design of one register.
  void readRegister(const std::string& name, const std::string& program = "Tarvona") {
    readSynth(top("", instance(name, "FDRE"), "", program));
  }
  /// Range of a signal of the top of the synthesized view.
  std::string synth(const std::string& name) const { return range("/top/" + name, SYNTH); }
  Bit* synthBit(const std::string& name, unsigned int index = 0) const {
    return bit("/top/" + name, index, SYNTH);
  }
  std::size_t signalCount() const { return module("/top", SYNTH)->getSignals(false).size(); }
};

TEST_F(EdifRegistersTest, IndexedRegisterIsABitOfItsBus) {
  readRegister("count_reg[3]");
  EXPECT_EQ(synth("count"), "3..3");
  ASSERT_NE(synthBit("count", 3), nullptr);
  EXPECT_EQ(synthBit("count", 3), synthBit("count_reg[3]/Q"));
  EXPECT_EQ(signal("/top/count", SYNTH)->getId(), code("count"));
  EXPECT_EQ(signal("/top/count", SYNTH)->getInferred(), 0U);
}

TEST_F(EdifRegistersTest, TwoDimensionalRegisterIsABitOfItsWord) {
  readRegister("mem_reg[3][5]");
  EXPECT_EQ(synth("mem<3>"), "5..5");
  ASSERT_NE(synthBit("mem<3>", 5), nullptr);
  EXPECT_EQ(synthBit("mem<3>", 5), synthBit("mem_reg[3][5]/Q"));
  EXPECT_EQ(signal("/top/mem<3>", SYNTH)->getId(), code("mem<3>"));
  EXPECT_EQ(synth("mem"), "none");
}

TEST_F(EdifRegistersTest, OneBitRegisterIsASignalOfItsName) {
  readRegister("valid_reg");
  EXPECT_EQ(synth("valid"), "0..0");
  ASSERT_NE(synthBit("valid"), nullptr);
  EXPECT_EQ(synthBit("valid"), synthBit("valid_reg/Q"));
}

TEST_F(EdifRegistersTest, ThreeDimensionalRegistersShareTheSecondIndex) {
  readRegister("m_reg[1][2][3]");
  EXPECT_EQ(synth("m<1>"), "2..2");
  EXPECT_EQ(synthBit("m<1>", 2), synthBit("m_reg[1][2][3]/Q"));
}

TEST_F(EdifRegistersTest, OneBitRegisterMayHoldBracketsBeforeItsEnding) {
  readRegister("gen[2].valid_reg");
  EXPECT_EQ(synth("gen[2].valid"), "0..0");
  EXPECT_EQ(synthBit("gen[2].valid"), synthBit("gen[2].valid_reg/Q"));
  EXPECT_EQ(synth("gen"), "none");
}

TEST_F(EdifRegistersTest, RegistersWidenTheirBusOnEitherSide) {
  readSynth(top("", instance("c_reg[4]", "FDRE") + instance("c_reg[6]", "FDRE") +
                        instance("c_reg[1]", "FDRE")));
  EXPECT_EQ(synth("c"), "1..6");
  for (const unsigned int i : {1U, 4U, 6U}) {
    ASSERT_NE(synthBit("c", i), nullptr) << i;
    EXPECT_EQ(synthBit("c", i), synthBit("c_reg[" + std::to_string(i) + "]/Q")) << i;
  }
  EXPECT_NE(synthBit("c", 5), synthBit("c", 4));
  EXPECT_FALSE(synthBit("c", 5)->isSrc());
}

TEST_F(EdifRegistersTest, BusesOfACommonPrefixStayApart) {
  readSynth(top("", instance("c_reg[1]", "FDRE") + instance("cc_reg[1]", "FDRE") +
                        instance("c_reg_reg[1]", "FDRE")));
  EXPECT_EQ(synthBit("c", 1), synthBit("c_reg[1]/Q"));
  EXPECT_EQ(synthBit("cc", 1), synthBit("cc_reg[1]/Q"));
  EXPECT_EQ(synthBit("c_reg", 1), synthBit("c_reg_reg[1]/Q"));
  EXPECT_NE(synthBit("c", 1), synthBit("c_reg", 1));
}

TEST_F(EdifRegistersTest, RegisterOfAPortsNameUsesThePort) {
  readSynth(top(output("q"), instance("q_reg", "FDRE")));
  EXPECT_EQ(synth("q"), "0..0");
  ASSERT_NE(synthBit("q"), nullptr);
  EXPECT_EQ(synthBit("q"), synthBit("q_reg/Q"));
  EXPECT_EQ(signal("/top/q", SYNTH)->getKind(), OUT);
}

TEST_F(EdifRegistersTest, RegisterBelongsToTheModuleThatHoldsIt) {
  const std::string sub = cell("sub", "", instance("q_reg", "FDRE"));
  readSynth(top("", instance("u", "sub") + instance("v", "sub"), sub));
  EXPECT_EQ(synth("q"), "none");
  EXPECT_EQ(synth("u/q"), "0..0");
  EXPECT_EQ(synthBit("u/q"), synthBit("u/q_reg/Q"));
  EXPECT_NE(synthBit("u/q"), synthBit("v/q_reg/Q"));
}

class EdifNoRegisterTest : public EdifRegistersTest,
                           public ::testing::WithParamInterface<const char*> {};

TEST_P(EdifNoRegisterTest, NameStandsForNoSignalButItsOwn) {
  readRegister(GetParam());
  EXPECT_EQ(signalCount(), 1U);
  EXPECT_EQ(synth(GetParam()), "0..0");
  EXPECT_EQ(synthBit(GetParam()), synthBit(std::string(GetParam()) + "/Q"));
}

INSTANTIATE_TEST_SUITE_P(Names, EdifNoRegisterTest,
                         ::testing::Values("count", "count[3]", "mem[3][5]", "_reg", "reg", "g",
                                           "x_reg[7]_rep", "x_reg_rep", "x_reg_inv", "count_REG",
                                           "gen[2].cnt_reg[3]", "r_reg[count][31]",
                                           "r_reg[tag][valid]", "_reg[3]", "FSM_reg_state"));

// The alias of the instance's own name

TEST_F(EdifRegistersTest, AliasOfTheInstanceNameIsMadeInTheParent) {
  readRegister("valid_reg");
  const Signal* alias = signal("/top/valid_reg", SYNTH);
  ASSERT_NE(alias, nullptr);
  EXPECT_EQ(synth("valid_reg"), "0..0");
  EXPECT_EQ(alias->getId(), code("valid_reg"));
  EXPECT_EQ(synthBit("valid_reg"), synthBit("valid"));
  EXPECT_FALSE(alias->isHidden());
  EXPECT_EQ(signalCount(), 2U);
}

TEST_F(EdifRegistersTest, RenamedRegisterHasNoAlias) {
  readRegister(renamed("valid_reg", "valid_reg_"));
  EXPECT_EQ(synth("valid_reg"), "none");
  EXPECT_EQ(synth("valid_reg_"), "none");
  EXPECT_EQ(synth("valid"), "0..0");
  EXPECT_EQ(signalCount(), 1U);
}

TEST_F(EdifRegistersTest, RenameToTheSameNameIsNoRename) {
  readRegister(renamed("valid_reg", "valid_reg"));
  EXPECT_EQ(synth("valid_reg"), "0..0");
  EXPECT_EQ(synth("valid"), "0..0");
}

TEST_F(EdifRegistersTest, OnlyTheIdentifierIsDecoded) {
  readRegister(renamed("count_reg_3_", "count_reg[3]"));
  EXPECT_EQ(synth("count"), "none");
  EXPECT_EQ(signalCount(), 0U);
}

TEST_F(EdifRegistersTest, OtherFamiliesHaveNoRegisterSignals) {
  for (const char* name : {"count_reg[3]", "mem_reg[3][5]", "valid_reg"}) {
    const auto fresh = readAlone(SYNTH, top("", instance(name, "FDRE"), "", "Drumlane"));
    ASSERT_FALSE(fatal);
    EXPECT_TRUE(fresh->getTop(SYNTH)->getSignals(false).empty()) << name;
    EXPECT_TRUE(fresh->findSignal(SYNTH, std::string("/top/") + name + "/Q")
                    ->getBitRef(0)
                    ->getBit()
                    ->isSrc());
  }
}

// Output and survivors

TEST_F(EdifRegistersTest, OutputIsMarkedAsSource) {
  readRegister("valid_reg");
  EXPECT_TRUE(signal("/top/valid_reg/Q", SYNTH)->isSrcState());
  EXPECT_FALSE(signal("/top/valid_reg/D", SYNTH)->isSrcState());
  EXPECT_FALSE(signal("/top/valid", SYNTH)->isSrcState());
  EXPECT_TRUE(synthBit("valid")->isSrc());
  EXPECT_FALSE(synthBit("valid_reg/D")->isSrc());
}

TEST_F(EdifRegistersTest, LowerCaseOutputServesToo) {
  const std::string cells = cell("RTL_FDx", input("D") + output("q"));
  readRtl(top("", instance("a_reg", "RTL_FDx"), cells));
  ASSERT_NE(bit("/top/a"), nullptr);
  EXPECT_EQ(bit("/top/a"), bit("/top/a_reg/q"));
  EXPECT_TRUE(signal("/top/a_reg/q")->isSrcState());
}

TEST_F(EdifRegistersTest, UpperCaseOutputIsPreferred) {
  const std::string cells = cell("RTL_FDx", output("q") + output("Q"));
  readRtl(top("", instance("a_reg", "RTL_FDx"), cells));
  EXPECT_EQ(bit("/top/a"), bit("/top/a_reg/Q"));
  EXPECT_NE(bit("/top/a"), bit("/top/a_reg/q"));
  EXPECT_FALSE(signal("/top/a_reg/q")->isSrcState());
}

TEST_F(EdifRegistersTest, RegisterWithoutOutputMergesNothing) {
  const std::string cells = cell("RTL_REG_odd", input("D") + output("Z"));
  readRtl(top("", instance("a_reg", "RTL_REG_odd") + instance("w", "RTL_REG"), cells));
  EXPECT_NE(module("/top/w"), nullptr);
  EXPECT_FALSE(bit("/top/a_reg/Z")->isSrc());
  if (signal("/top/a") != nullptr) {
    EXPECT_NE(bit("/top/a"), bit("/top/a_reg/Z"));
    EXPECT_NE(bit("/top/a"), bit("/top/a_reg/D"));
  }
}

TEST_F(EdifRegistersTest, SignalNamedForTheRegisterSurvivesItsOutput) {
  readRtl(top(output("a") + output("x"), instance("a_reg", "RTL_REG")));
  ASSERT_EQ(bit("/top/a"), bit("/top/a_reg/Q"));
  EXPECT_EQ(idOf("/top/a"), 0);
  EXPECT_EQ(idOf("/top/x"), 1);
}

TEST_F(EdifRegistersTest, AliasOfTheInstanceNameSurvivesItsOutput) {
  const std::string cells = cell("RTL_REG_qd", output("Q") + input("D"));
  readRtl(top("", instance("r", "RTL_REG_qd"), cells));
  ASSERT_EQ(bit("/top/r"), bit("/top/r/Q"));
  EXPECT_EQ(idOf("/top/r/D"), 0);
  EXPECT_EQ(idOf("/top/r"), 1);
}

TEST_F(EdifRegistersTest, RegistersOfTheElaboratedNetlistAreDecodedToo) {
  const std::string cells = cell("RTL_REG_SYNC__BREG_12", input("D") + output("Q"));
  readRtl(top("", instance("cnt_reg[2]", "RTL_REG_SYNC__BREG_12"), cells));
  EXPECT_EQ(range("/top/cnt"), "2..2");
  EXPECT_EQ(bit("/top/cnt", 2), bit("/top/cnt_reg[2]/Q"));
  EXPECT_TRUE(bit("/top/cnt", 2)->isSrc());
}

TEST_F(EdifRegistersTest, OtherPrimitivesStandForNoRegister) {
  readSynth(top("", instance("a_reg", "LUT2") + instance("b_reg", "BUFG")));
  EXPECT_EQ(signalCount(), 0U);
}

TEST_F(EdifRegistersTest, NetOfARegistersOutputFindsTheRegistersSignal) {
  readSynth(top(output("o"), instance("cnt_reg[2]", "FDRE") + instance("cnt_reg[1]", "FDRE") +
                                 net("cnt[2]", pin("Q", "cnt_reg[2]")) +
                                 net("far", pin("Q", "cnt_reg[1]") + pin("o"))));
  EXPECT_EQ(synth("cnt"), "1..2");
  EXPECT_EQ(synthBit("cnt", 2), synthBit("cnt_reg[2]/Q"));
  EXPECT_EQ(synthBit("far"), synthBit("cnt", 1));
  EXPECT_EQ(synthBit("o"), synthBit("cnt", 1));
  EXPECT_NE(synthBit("cnt", 1), synthBit("cnt", 2));
}

TEST_F(EdifRegistersTest, RegisterBitsOfTheViewsStayApart) {
  const std::string text = top("", instance("a_reg", "FDRE"));
  readRtl(text);
  readSynth(text);
  EXPECT_NE(bit("/top/a", 0, RTL), bit("/top/a", 0, SYNTH));
}

// Wide registers

TEST_F(EdifRegistersTest, WideRegisterIsASignalOfItsPrintableName) {
  readRtl(top("", instance(renamed("w_reg_i", "word"), "RTL_wide_fd")));
  EXPECT_EQ(range("/top/word"), "0..3");
  EXPECT_EQ(signal("/top/word")->getId(), code("word"));
  for (unsigned int i = 0; i < 4; ++i) {
    ASSERT_NE(bit("/top/word", i), nullptr);
    EXPECT_EQ(bit("/top/word", i), bit("/top/word/Q", i)) << i;
    EXPECT_TRUE(bit("/top/word", i)->isSrc()) << i;
  }
  EXPECT_NE(bit("/top/word", 0), bit("/top/word", 1));
  EXPECT_TRUE(signal("/top/word/Q")->isSrcState());
  EXPECT_EQ(range("/top/w"), "none");
  EXPECT_EQ(range("/top/w_reg_i"), "none");
  EXPECT_EQ(module("/top")->getSignals(false).size(), 1U);
}

TEST_F(EdifRegistersTest, WideRegisterWithoutRenameOnlyMarksItsOutput) {
  readRtl(top("", instance("word_reg", "RTL_wide_fd")));
  EXPECT_TRUE(module("/top")->getSignals(false).empty());
  EXPECT_TRUE(signal("/top/word_reg/Q")->isSrcState());
  EXPECT_EQ(module("/top/word_reg")->getKind(), WIDE_FD);
}

TEST_F(EdifRegistersTest, WideRegisterWithoutOutputMergesNothing) {
  const std::string cells = cell("RTL_wide_fd_odd", input("D"));
  readRtl(
      top("", instance(renamed("w", "word"), "RTL_wide_fd_odd") + instance("r", "RTL_REG"), cells));
  EXPECT_NE(module("/top/r"), nullptr);
}

TEST_F(EdifRegistersTest, WideRegisterNeedsNoFamily) {
  readRtl(top("", instance(renamed("w", "word"), "RTL_wide_fd"), "", "Drumlane"));
  EXPECT_EQ(range("/top/word"), "0..3");
}

}  // namespace
