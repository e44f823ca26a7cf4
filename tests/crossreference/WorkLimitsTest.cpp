#include "tests/Edif.h"
#include "tests/crossreference/ReadingTest.h"

#include <algorithm>
#include <chrono>
#include <string>

using namespace XRF_RTL2LL;
using edif::array;
using edif::cell;
using edif::input;
using edif::instance;
using edif::net;
using edif::pin;
using edif::port;
using edif::top;

namespace {

/// Input that is small, or merely large, must not cost time or memory out of proportion. Each of
/// these took minutes or gigabytes in a reader that walked or made too much.
class WorkLimitsTest : public test::ReadingTest {
 protected:
  WorkLimitsTest() : m_began(std::chrono::steady_clock::now()) {}

  // Generous for a loaded machine and a sanitizer, far below what quadratic work takes.
  ~WorkLimitsTest() override {
    const auto spent = std::chrono::steady_clock::now() - m_began;
    EXPECT_LT(std::chrono::duration_cast<std::chrono::seconds>(spent).count(), 60);
  }

  static std::string busNets(unsigned count, bool downward) {
    std::string nets;
    for (unsigned at = 0; at < count; ++at) {
      const unsigned index = downward ? count - 1 - at : at;
      nets += net("bus[" + std::to_string(index) + "]", pin("a"));
    }
    return nets;
  }

  void readXrf(const std::string& text) {
    const test::TempFile file(text, "model.xrf");
    path = file.path();
    run([&] { netlist.parse_xrf(path); });
  }

 private:
  std::chrono::steady_clock::time_point m_began;
};

constexpr unsigned busWidth = 200'000;

TEST_F(WorkLimitsTest, BusMayGrowUpwardBitByBit) {
  readRtl(top(input("a"), busNets(busWidth, false)));
  EXPECT_EQ(range("/top/bus"), "0.." + std::to_string(busWidth - 1));
  EXPECT_EQ(signal("/top/bus")->getInferred(), 0U);
}

TEST_F(WorkLimitsTest, BusMayGrowDownwardBitByBit) {
  readRtl(top(input("a"), busNets(busWidth, true)));
  EXPECT_EQ(range("/top/bus"), "0.." + std::to_string(busWidth - 1));
  EXPECT_EQ(signal("/top/bus")->getInferred(), 0U);
}

TEST_F(WorkLimitsTest, CellMayHaveManyPorts) {
  constexpr unsigned count = 200'000;
  std::string ports;
  for (unsigned at = 0; at < count; ++at) ports += input("p" + std::to_string(at));
  readRtl(top(ports, ""));
  EXPECT_NE(signal("/top/p" + std::to_string(count - 1)), nullptr);
}

TEST_F(WorkLimitsTest, NameMayBeGivenAgainAndAgain) {
  constexpr unsigned count = 200'000;
  std::string text =
      "(VERSION 1)\n(FAMILY TORVAL7)\n(BITS 1)\n(NETS 1)\n(BIT 0 ? z)\n(VIEW RTL)\n"
      "(MOD VISIBLE top top 0\n(SIG VISIBLE WIRE b 1 0 0 0 0)\n";
  for (unsigned at = 2; at < count; ++at) {
    text += "(SIG VISIBLE WIRE a " + std::to_string(at) + " 0 0 0 0)\n";
  }
  readXrf(text + "(SIG VISIBLE WIRE a " + std::to_string(count) + " 0 0 0 0))\n(VIEW SYNTH)\n");
  EXPECT_EQ(signal("/top/a")->getId(), count);
  EXPECT_EQ(signal("/top/b")->getId(), 1U);
  EXPECT_EQ(module("/top")->getSignal(77'777, true)->getId(), 77'777U);
}

// The last that was registered under a name is the one that the name finds.
TEST_F(WorkLimitsTest, NameThatWentRoundComesBack) {
  readRtl(top(input("a"), ""));
  Module* holder = module("/top");
  std::vector<Signal*> all;
  for (unsigned at = 0; at < 50; ++at) {
    all.push_back(new Signal(holder, "twin", 1000 + at, 0, 0, false));
    holder->addSignal(all.back());
    netlist.registerSignal(RTL, all.back());
    EXPECT_EQ(signal("/top/twin"), all.back());
  }
  for (unsigned at : {0U, 7U, 49U, 20U, 0U}) {
    netlist.registerSignal(RTL, all[at]);
    EXPECT_EQ(signal("/top/twin"), all[at]) << at;
  }
  holder->updateVisibleSignals(false);
  EXPECT_EQ(signal("/top/twin"), all[0]);
  EXPECT_EQ(holder->getSignal(1020, true), all[20]);
}

TEST_F(WorkLimitsTest, BitsThatARegisterPassesOverStayInferredUntilTheirOwnName) {
  readRtl(top(input("a"), instance("r_reg[3]", "RTL_REG") + instance("r_reg[0]", "RTL_REG")));
  EXPECT_EQ(range("/top/r"), "0..3");
  EXPECT_TRUE(bit("/top/r", 1)->isInferred());
  EXPECT_TRUE(bit("/top/r", 2)->isInferred());
  EXPECT_FALSE(bit("/top/r", 0)->isInferred());
  EXPECT_FALSE(bit("/top/r", 3)->isInferred());
}

TEST_F(WorkLimitsTest, NetUpToAnIndexClearsTheMarkOfAllBelow) {
  readRtl(top(input("a"), instance("r_reg[3]", "RTL_REG") + instance("r_reg[0]", "RTL_REG") +
                              net("r[2]", pin("a"))));
  EXPECT_EQ(signal("/top/r")->getInferred(), 0U);
}

TEST_F(WorkLimitsTest, ArrayThatNoFileCanMeanIsRefusedBeforeItIsMade) {
  read(RTL, top(port(array("a", "16777216"), "INPUT"), ""));
  ASSERT_TRUE(fatal);
  EXPECT_EQ(fatal->file, path);
  EXPECT_EQ(Bit::getAllBits().size(), 0U);
}

TEST_F(WorkLimitsTest, CellsThatHoldMoreThanTheyMakeAreRefused) {
  std::string junk;
  for (int at = 0; at < 2000; ++at) junk += "(a (b c)) ";
  std::string leaves;
  for (int at = 0; at < 40'000; ++at)
    leaves += "(instance u" + std::to_string(at) + " (cellref j))";
  read(RTL, top("", leaves, cell("j", "", junk)));
  ASSERT_TRUE(fatal);
  EXPECT_EQ(fatal->file, path);
}

TEST_F(WorkLimitsTest, PathsThatGrowOutOfProportionAreRefused) {
  const std::string name(1000, 'n');
  std::string cells = cell("c0", "");
  for (int level = 1; level <= 400; ++level) {
    const std::string below = "c" + std::to_string(level - 1);
    cells += cell("c" + std::to_string(level), "", instance(name, below));
  }
  read(RTL, top("", instance("u", "c400"), cells));
  ASSERT_TRUE(fatal);
  EXPECT_EQ(fatal->file, path);
}

TEST_F(WorkLimitsTest, RepeatedCountsOfNetsAddUp) {
  std::string text = "(VERSION 1)\n(FAMILY TORVAL7)\n(BITS 1)\n";
  for (int at = 0; at < 100; ++at) text += "(NETS 1000000)\n";
  readXrf(text);
  ASSERT_TRUE(fatal);
  EXPECT_EQ(fatal->line, 5U);
  EXPECT_LE(Net::getAllNets().size(), 1'100'000U);
}

TEST_F(WorkLimitsTest, DeclaredWidthsAddUp) {
  std::string text = "(VERSION 1)\n(FAMILY TORVAL7)\n(BITS 1)\n(NETS 1)\n(BIT 0 ? z)\n(VIEW RTL)\n";
  text += "(MOD VISIBLE t t 0\n";
  for (int at = 0; at < 60; ++at) {
    text += "(SIG VISIBLE WIRE s" + std::to_string(at) + " " + std::to_string(at) +
            " 0 0 16777214 0 0)\n";
  }
  readXrf(text);
  ASSERT_TRUE(fatal);
  EXPECT_EQ(fatal->line, 8U);
}

TEST_F(WorkLimitsTest, LocationOfManyLevelsIsNoWork) {
  readRtl(top(input("a"), net("n", pin("a"))));
  std::string levels;
  for (int at = 0; at < 300'000; ++at) levels += "/a";
  const test::TempFile file("Bit 1 0x10 2 Block=SLICE_X0Y0 Latch=AQ Net=" + levels + "\n", "x.ll");
  // The facade reads locations only after a netlist of its own.
  const test::TempFile rtl(top(input("a"), ""), "rtl.edf");
  run([&] {
    subject.parse_rtl(rtl.path());
    subject.parse_ll(file.path());
  });
  ASSERT_FALSE(fatal) << fatal->text;
  EXPECT_EQ(subject.locationReport().unmatched, 1U);
}

TEST_F(WorkLimitsTest, AbsorbedBitStandsForItsSurvivor) {
  auto* kept = new Bit;
  auto* gone = new Bit;
  auto* third = new Bit;
  gone->setValueStr("odd");
  auto* ref = new BitRef(nullptr, 0);
  ref->setBit(gone);
  EXPECT_EQ(kept->merge(gone), 0);
  gone->setValueStr("text");
  EXPECT_EQ(ref->getBit(), kept);
  EXPECT_EQ(kept->getValueStr(false), "z");
  EXPECT_EQ(gone->merge(third), 0);
  EXPECT_FALSE(Bit::getAllBits().contains(third));
  EXPECT_TRUE(Bit::getAllBits().contains(kept));
}

TEST_F(WorkLimitsTest, FinalCopyFollowsBitsThatBothViewsShare) {
  readXrf(
      "(VERSION 1)\n(FAMILY TORVAL7)\n(BITS 3)\n(NETS 4)\n(BIT 0 ? z)\n(BIT 1 ? z)\n"
      "(BIT 2 CNST 1)\n\n(VIEW RTL)\n\n(MOD VISIBLE t t 0\n\n"
      "   (SIG VISIBLE WIRE a 1 0 0 0 0)\n   (SIG VISIBLE WIRE b 2 1 0 0 1))\n(VIEW SYNTH)\n\n"
      "(MOD VISIBLE t t 0\n\n   (SIG VISIBLE WIRE a 1 2 0 0 2)\n   (SIG VISIBLE WIRE b 2 3 0 0 "
      "0))");
  ASSERT_FALSE(fatal) << fatal->text;
  netlist.finalPostProcess();
  EXPECT_EQ(bit("/t/a")->getKind(), Bit::CNST);
  EXPECT_EQ(bit("/t/b")->getKind(), Bit::CNST);
}

}  // namespace
