#include "tests/Edif.h"
#include "tests/crossreference/ReadingTest.h"

#include <string>
#include <vector>

using namespace XRF_RTL2LL;
using edif::array;
using edif::cell;
using edif::input;
using edif::instance;
using edif::member;
using edif::net;
using edif::output;
using edif::pin;
using edif::port;
using edif::renamed;
using edif::top;

namespace {

/// Ports, references to them, and the nets that join them.
class EdifNetsTest : public test::ReadingTest {
 protected:
  static std::string bus(const std::string& name, const std::string& width) {
    return port(array(name, width), "INPUT");
  }
  /// Whether two existing bits are one.
  bool joined(const Bit* a, const Bit* b) const { return a != nullptr && a == b; }
  /// Number of signals of a module of the RTL view.
  std::size_t signalCount(const std::string& name) const {
    return module(name)->getSignals(false).size();
  }
};

// Ports

TEST_F(EdifNetsTest, ScalarPortIsAOneBitSignalOfItsIdentifier) {
  readRtl(top(port(renamed("a_b", "a.b"), "INPUT"), ""));
  const Signal* a = signal("/top/a_b");
  ASSERT_NE(a, nullptr);
  EXPECT_EQ(range("/top/a_b"), "0..0");
  EXPECT_EQ(a->getId(), code("a_b"));
  EXPECT_EQ(a->getModule(), netlist.getTop(RTL));
  EXPECT_EQ(a->getInferred(), 0U);
  EXPECT_FALSE(a->isHidden());
  EXPECT_EQ(signal("/top/a.b"), nullptr);
  EXPECT_EQ(netlist.getTop(RTL)->getSignal(code("a_b"), true), a);
}

TEST_F(EdifNetsTest, DirectionSetsTheKind) {
  readRtl(top(input("a") + output("b") + port("c", "INOUT") + port("d", "input") +
                  port(array("e", "2"), "INPUT") + port(array("f", "2"), "OUTPUT") + "(port g)",
              ""));
  EXPECT_EQ(signal("/top/a")->getKind(), IN);
  EXPECT_EQ(signal("/top/b")->getKind(), OUT);
  EXPECT_EQ(signal("/top/c")->getKind(), WIRE);
  EXPECT_EQ(signal("/top/d")->getKind(), WIRE);
  EXPECT_EQ(signal("/top/e")->getKind(), IN);
  EXPECT_EQ(signal("/top/f")->getKind(), OUT);
  EXPECT_EQ(signal("/top/g")->getKind(), WIRE);
}

TEST_F(EdifNetsTest, PortArrayCoversItsWidthUnderItsIdentifier) {
  readRtl(top(bus(renamed("d_", "d[15:8]"), "8") + bus("one", "1"), ""));
  EXPECT_EQ(range("/top/d_"), "0..7");
  EXPECT_EQ(signal("/top/d_")->getId(), code("d_"));
  EXPECT_EQ(signal("/top/d_")->getInferred(), 0U);
  EXPECT_EQ(range("/top/one"), "0..0");
  EXPECT_EQ(range("/top/d"), "none");
}

TEST_F(EdifNetsTest, BitPortSharesTheBitOfItsBus) {
  readRtl(top(port(renamed("data_3_", "data[3]"), "OUTPUT"), ""));
  EXPECT_EQ(range("/top/data"), "3..3");
  EXPECT_EQ(range("/top/data_3_"), "0..0");
  EXPECT_TRUE(joined(bit("/top/data_3_"), bit("/top/data", 3)));
  EXPECT_EQ(signal("/top/data_3_")->getKind(), OUT);
  EXPECT_EQ(signal("/top/data")->getId(), code("data"));
  EXPECT_EQ(signal("/top/data_3_")->getId(), code("data_3_"));
}

TEST_F(EdifNetsTest, BitPortsWidenTheirBusOnEitherSide) {
  readRtl(top(port(renamed("d_5_", "d[5]"), "INPUT") + port(renamed("d_7_", "d[7]"), "INPUT") +
                  port(renamed("d_2_", "d[2]"), "INPUT"),
              ""));
  EXPECT_EQ(range("/top/d"), "2..7");
  EXPECT_TRUE(joined(bit("/top/d", 5), bit("/top/d_5_")));
  EXPECT_TRUE(joined(bit("/top/d", 7), bit("/top/d_7_")));
  EXPECT_TRUE(joined(bit("/top/d", 2), bit("/top/d_2_")));
  EXPECT_NE(bit("/top/d", 4), nullptr);
  EXPECT_NE(bit("/top/d", 5), bit("/top/d", 2));
}

TEST_F(EdifNetsTest, BitOfTheBusSurvivesTheBitPort) {
  readRtl(top(port(renamed("d_5_", "d[5]"), "INPUT") + port(renamed("d_7_", "d[7]"), "INPUT"), ""));
  // Made in the order d_7_, d[6], d[7]: had the port's bit survived, it would come first.
  EXPECT_LT(idOf("/top/d", 6), idOf("/top/d", 7));
}

TEST_F(EdifNetsTest, PlainIdentifierWithBracketsIsNoBitPort) {
  readRtl(top(input("d[3]"), ""));
  EXPECT_EQ(range("/top/d[3]"), "0..0");
  EXPECT_EQ(range("/top/d"), "none");
}

// References

TEST_F(EdifNetsTest, ReferencesJoinPortsAndInstancePorts) {
  const std::string inner = cell("inner", input("a") + output("b"));
  readRtl(top(input("a") + input("b"),
              instance("u", "inner") + instance("v", "inner") + net("n", pin("a") + pin("a", "u")) +
                  net("m", pin("b") + pin("a", "v")),
              inner));
  EXPECT_TRUE(joined(bit("/top/a"), bit("/top/u/a")));
  EXPECT_TRUE(joined(bit("/top/n"), bit("/top/a")));
  EXPECT_TRUE(joined(bit("/top/b"), bit("/top/v/a")));
  EXPECT_NE(bit("/top/a"), bit("/top/v/a"));
  EXPECT_NE(bit("/top/a"), bit("/top/b"));
  EXPECT_NE(bit("/top/u/b"), bit("/top/v/b"));
}

TEST_F(EdifNetsTest, MembersCountFromTheMostSignificantEnd) {
  readRtl(top(bus("d", "8") + bus("d2", "8"), net("n", pin(member("d", "2")))));
  EXPECT_TRUE(joined(bit("/top/n"), bit("/top/d", 5)));
  EXPECT_NE(bit("/top/n"), bit("/top/d", 2));
  EXPECT_NE(bit("/top/n"), bit("/top/d2", 5));
}

TEST_F(EdifNetsTest, FirstAndLastMember) {
  readRtl(
      top(bus("d", "4"), net("first", pin(member("d", "0"))) + net("last", pin(member("d", "3")))));
  EXPECT_TRUE(joined(bit("/top/first"), bit("/top/d", 3)));
  EXPECT_TRUE(joined(bit("/top/last"), bit("/top/d", 0)));
  EXPECT_EQ(err, "");
}

TEST_F(EdifNetsTest, MemberWithInstanceIsLookedUpInTheInstance) {
  const std::string inner = cell("inner", bus("d", "4"));
  readRtl(
      top(bus("d", "8"),
          instance("u", "inner") + instance("v", "inner") + net("n", pin(member("d", "1"), "u")),
          inner));
  EXPECT_TRUE(joined(bit("/top/n"), bit("/top/u/d", 2)));
  EXPECT_NE(bit("/top/n"), bit("/top/v/d", 2));
  for (unsigned int i = 0; i < 8; ++i) EXPECT_NE(bit("/top/n"), bit("/top/d", i)) << i;
}

TEST_F(EdifNetsTest, MemberOnlyInTheInstanceIsFoundThere) {
  const std::string inner = cell("inner", bus("e", "4"));
  readRtl(top(input("a"), instance("u", "inner") + net("n", pin("a") + pin(member("e", "3"), "u")),
              inner));
  EXPECT_TRUE(joined(bit("/top/a"), bit("/top/u/e", 0)));
}

TEST_F(EdifNetsTest, MemberOutsideTheSignalWarnsAndCountsAsMissing) {
  readRtl(top(bus("d", "8") + input("a"), net("n", pin(member("d", "9")) + pin("a"))));
  EXPECT_EQ(err, "WARNING: Illegal index (-2) for Signal /top/d.\n");
  EXPECT_TRUE(joined(bit("/top/n"), bit("/top/a")));
  for (unsigned int i = 0; i < 8; ++i) EXPECT_NE(bit("/top/n"), bit("/top/d", i)) << i;
}

TEST_F(EdifNetsTest, MemberBelowTheSignalWarnsAndCountsAsMissing) {
  readRtl(top(port(renamed("d_5_", "d[5]"), "INPUT") + port(renamed("d_7_", "d[7]"), "INPUT"),
              net("n", pin(member("d", "3")))));
  EXPECT_EQ(err, "WARNING: Illegal index (4) for Signal /top/d.\n");
  EXPECT_EQ(range("/top/n"), "none");
}

TEST_F(EdifNetsTest, ReferenceToMissingSignalIsPassedOver) {
  readRtl(top(input("a"), net("n", pin("none") + pin(member("none", "3")) + pin("a"))));
  EXPECT_TRUE(joined(bit("/top/n"), bit("/top/a")));
  EXPECT_EQ(range("/top/none"), "none");
}

TEST_F(EdifNetsTest, ReferenceToMissingInstanceIsPassedOver) {
  readRtl(top(input("a") + output("Q"),
              net("n", pin("Q", "none") + pin(member("Q", "0"), "none") + pin("a"))));
  EXPECT_TRUE(joined(bit("/top/n"), bit("/top/a")));
  EXPECT_NE(bit("/top/n"), bit("/top/Q"));
}

TEST_F(EdifNetsTest, ReferenceToSignalWithoutBit0IsPassedOver) {
  readRtl(top(port(renamed("d_5_", "d[5]"), "INPUT") + input("a"), net("n", pin("d") + pin("a"))));
  EXPECT_TRUE(joined(bit("/top/n"), bit("/top/a")));
  EXPECT_NE(bit("/top/n"), bit("/top/d", 5));
}

// References are looked up many at once, other forms among them one by one.
TEST_F(EdifNetsTest, AllOfManyReferencesJoin) {
  constexpr unsigned int instances = 50;
  std::string body;
  std::string pins = pin("a");
  for (unsigned int number = 0; number < instances; ++number) {
    const std::string name = "u" + std::to_string(number);
    body += instance(name, "inner");
    pins += pin("a", name);
    if (number % 20 == 10) pins += pin(member("d", "1"), name) + pin("none", name) + "(comment x) ";
  }
  readRtl(top(input("a"), body + net("n", pins), cell("inner", input("a") + bus("d", "2"))));
  for (unsigned int number = 0; number < instances; ++number) {
    const std::string name = "/top/u" + std::to_string(number);
    EXPECT_TRUE(joined(bit("/top/n"), bit(name + "/a"))) << name;
    EXPECT_EQ(bit("/top/n") == bit(name + "/d", 0), number % 20 == 10) << name;
    EXPECT_NE(bit("/top/n"), bit(name + "/d", 1)) << name;
  }
}

TEST_F(EdifNetsTest, JoinedFormWithinAnotherOneJoinsNoneOfIts) {
  readRtl(top(input("a") + input("b") + input("c") + input("d"),
              net("n", pin("a") + "(foo (joined " + pin("c") + pin("d") + ")) " + pin("b"))));
  EXPECT_TRUE(joined(bit("/top/n"), bit("/top/a")));
  EXPECT_TRUE(joined(bit("/top/a"), bit("/top/b")));
  EXPECT_TRUE(joined(bit("/top/c"), bit("/top/d")));
  EXPECT_NE(bit("/top/a"), bit("/top/c"));
}

TEST_F(EdifNetsTest, JoinedFormOutsideAnyCellIsPassedOver) {
  readRtl("(edif e (joined) (program \"Tarvona\")" + cell("c", input("a")) +
          edif::design("top", "c") + ")");
  EXPECT_EQ(range("/top/a"), "0..0");
}

TEST_F(EdifNetsTest, ReferenceToABusMeansItsBit0) {
  readRtl(top(bus("d", "4"), net("n", pin("d"))));
  EXPECT_TRUE(joined(bit("/top/n"), bit("/top/d", 0)));
}

TEST_F(EdifNetsTest, InstancesAreReferredToByIdentifier) {
  const std::string inner = cell("inner", input("a"));
  readRtl(top("",
              instance(renamed("u_1_", "u[1]"), "inner") + net("n", pin("a", "u_1_")) +
                  net("m", pin("a", "u[1]")),
              inner));
  EXPECT_TRUE(joined(bit("/top/n"), bit("/top/u[1]/a")));
  EXPECT_EQ(range("/top/m"), "none");
}

// Joining

TEST_F(EdifNetsTest, FirstReferenceOfAJoinedNetSurvives) {
  readRtl(top(input("a") + input("x") + input("b"), "(joined " + pin("b") + pin("a") + ")"));
  ASSERT_TRUE(joined(bit("/top/a"), bit("/top/b")));
  EXPECT_EQ(idOf("/top/x"), 0);
  EXPECT_EQ(idOf("/top/a"), 1);
}

TEST_F(EdifNetsTest, SignalOfTheNetSurvivesItsReferences) {
  readRtl(top(input("a") + input("x"), net("n", pin("a"))));
  ASSERT_TRUE(joined(bit("/top/a"), bit("/top/n")));
  EXPECT_EQ(idOf("/top/x"), 0);
  EXPECT_EQ(idOf("/top/n"), 1);
}

TEST_F(EdifNetsTest, BusBitSurvivesTheReferencesOfItsNet) {
  readRtl(top(input("a") + input("x"), net("q[3]", pin("a"))));
  ASSERT_TRUE(joined(bit("/top/a"), bit("/top/q", 3)));
  EXPECT_EQ(idOf("/top/x"), 0);
  EXPECT_EQ(idOf("/top/q", 3), 1);
}

TEST_F(EdifNetsTest, NetWithoutReferencesCreatesNothing) {
  readRtl(top(input("a"), net("n", "") + net("q[3]", "") + net("m", pin("none"))));
  EXPECT_EQ(signalCount("/top"), 1U);
}

TEST_F(EdifNetsTest, NetOfAnExistingSignalOnlyJoinsItsReferences) {
  readRtl(top(input("a") + input("b") + input("c"), net("a", pin("b") + pin("c"))));
  EXPECT_TRUE(joined(bit("/top/b"), bit("/top/c")));
  EXPECT_NE(bit("/top/a"), bit("/top/b"));
  EXPECT_EQ(signalCount("/top"), 3U);
}

TEST_F(EdifNetsTest, ExistingSignalIsRecognisedByTheNetsIdentifier) {
  readRtl(top(input("a") + input("b"), net(renamed("a", "other"), pin("b"))));
  EXPECT_EQ(range("/top/other"), "none");
  EXPECT_NE(bit("/top/a"), bit("/top/b"));
}

TEST_F(EdifNetsTest, ConstantNetsCreateNoSignals) {
  readRtl(top(input("a") + input("b"),
              instance("g", "GND") + instance("v", "VCC") +
                  net(renamed("&_const0_", "<const0>"), pin("G", "g") + pin("a")) +
                  net("_const1_", pin("P", "v") + pin("b"))));
  EXPECT_EQ(signalCount("/top"), 2U);
  EXPECT_TRUE(joined(bit("/top/a"), bit("/top/g/G")));
  EXPECT_TRUE(joined(bit("/top/b"), bit("/top/v/P")));
  EXPECT_EQ(bit("/top/a")->getKind(), Bit::CNST);
  EXPECT_FALSE(bit("/top/a")->getValue());
  EXPECT_EQ(bit("/top/b")->getKind(), Bit::CNST);
  EXPECT_TRUE(bit("/top/b")->getValue());
}

TEST_F(EdifNetsTest, OnlyTheIdentifierMakesAConstantNet) {
  readRtl(top(input("a"), net(renamed("c", "_const0_"), pin("a"))));
  EXPECT_EQ(range("/top/_const0_"), "0..0");
}

TEST_F(EdifNetsTest, GroundAndPowerDriveConstants) {
  readSynth(top("", instance("g", "GND") + instance("v", "VCC")));
  const Bit* ground = bit("/top/g/G", 0, SYNTH);
  const Bit* power = bit("/top/v/P", 0, SYNTH);
  EXPECT_EQ(ground->getKind(), Bit::CNST);
  EXPECT_FALSE(ground->getValue());
  EXPECT_EQ(ground->getValueStr(false), "z");
  EXPECT_EQ(power->getKind(), Bit::CNST);
  EXPECT_TRUE(power->getValue());
  EXPECT_EQ(power->getValueStr(false), "z");
}

TEST_F(EdifNetsTest, RtlOperatorsDriveConstantsToo) {
  const std::string cells = cell("RTL_GND", output("O")) + cell("RTL_PWR", output("O"));
  readRtl(top("", instance("g", "RTL_GND") + instance("v", "RTL_PWR"), cells));
  EXPECT_EQ(bit("/top/g/O")->getKind(), Bit::CNST);
  EXPECT_TRUE(bit("/top/v/O")->getValue());
}

// Names of nets

TEST_F(EdifNetsTest, BitNetBelongsToABusNumberedByItsOwnName) {
  readRtl(top(input("a"), net(renamed("q_3_", "q[3]"), pin("a"))));
  EXPECT_EQ(range("/top/q"), "3..3");
  EXPECT_TRUE(joined(bit("/top/q", 3), bit("/top/a")));
  EXPECT_EQ(signal("/top/q")->getId(), code("q"));
  EXPECT_FALSE(signal("/top/q")->isHidden());
  EXPECT_EQ(signal("/top/q_3_"), nullptr);
  EXPECT_EQ(signalCount("/top"), 2U);
}

TEST_F(EdifNetsTest, BitNetWidensAOneBitSignal) {
  readRtl(top(input("d") + input("a"), net(renamed("d_3_", "d[3]"), pin("a"))));
  EXPECT_EQ(range("/top/d"), "0..3");
  EXPECT_TRUE(joined(bit("/top/d", 3), bit("/top/a")));
  EXPECT_NE(bit("/top/d", 0), bit("/top/a"));
  EXPECT_NE(bit("/top/d", 2), bit("/top/a"));
}

TEST_F(EdifNetsTest, BitNetWithAFurtherWordStillCountsAsThatBit) {
  readRtl(top(input("d") + input("a"), net(renamed("d_3_", "d[3] x"), pin("a"))));
  EXPECT_EQ(range("/top/d"), "0..3");
  EXPECT_TRUE(joined(bit("/top/d", 3), bit("/top/a")));
  EXPECT_EQ(signalCount("/top"), 2U);
}

TEST_F(EdifNetsTest, BitNetsWidenTheirBusOnEitherSide) {
  readRtl(top(input("a") + input("b") + input("c"),
              net("q[5]", pin("a")) + net("q[8]", pin("b")) + net("q[2]", pin("c"))));
  EXPECT_EQ(range("/top/q"), "2..8");
  EXPECT_TRUE(joined(bit("/top/q", 5), bit("/top/a")));
  EXPECT_TRUE(joined(bit("/top/q", 8), bit("/top/b")));
  EXPECT_TRUE(joined(bit("/top/q", 2), bit("/top/c")));
}

TEST_F(EdifNetsTest, BusesOfACommonPrefixStayApart) {
  readRtl(top(input("a") + input("b") + input("c"),
              net("q[1]", pin("a")) + net("qq[1]", pin("b")) + net("q1[1]", pin("c"))));
  EXPECT_EQ(range("/top/q"), "1..1");
  EXPECT_TRUE(joined(bit("/top/q", 1), bit("/top/a")));
  EXPECT_TRUE(joined(bit("/top/qq", 1), bit("/top/b")));
  EXPECT_TRUE(joined(bit("/top/q1", 1), bit("/top/c")));
  EXPECT_NE(bit("/top/q", 1), bit("/top/qq", 1));
}

TEST_F(EdifNetsTest, OneBitNetHasThePrintableNameAndTheIdentifiersCode) {
  readRtl(top(input("a"), net(renamed("n_x", "n.x"), pin("a"))));
  const Signal* n = signal("/top/n.x");
  ASSERT_NE(n, nullptr);
  EXPECT_EQ(n->getId(), code("n_x"));
  EXPECT_EQ(n->getKind(), WIRE);
  EXPECT_EQ(n->getInferred(), 0U);
  EXPECT_EQ(range("/top/n_x"), "none");
}

struct NetName {
  const char* printable;
  const char* bus;  // null for a one-bit signal of the full name
  unsigned int index;
};

class EdifNetNameTest : public EdifNetsTest, public ::testing::WithParamInterface<NetName> {
 protected:
  std::size_t expected() const { return GetParam().bus == nullptr ? 0U : 1U; }
  std::string busPath() const { return "/top/" + std::string(GetParam().bus); }
};

TEST_P(EdifNetNameTest, NetIsABitOfABusOrASignalOfItsOwn) {
  readRtl(top(input("in"), net(renamed("id", GetParam().printable), pin("in"))));
  const std::string full = std::string("/top/") + GetParam().printable;
  EXPECT_EQ(signalCount("/top"), 2U);
  if (GetParam().bus == nullptr) {
    EXPECT_EQ(range(full), "0..0");
    EXPECT_TRUE(joined(bit(full), bit("/top/in")));
    return;
  }
  const std::string index = std::to_string(GetParam().index);
  EXPECT_EQ(range(busPath()), index + ".." + index);
  EXPECT_TRUE(joined(bit(busPath(), GetParam().index), bit("/top/in")));
}

TEST_P(EdifNetNameTest, PortIsScannedByTheSameRule) {
  readRtl(top(port(renamed("id", GetParam().printable), "INPUT"), ""));
  EXPECT_EQ(range("/top/id"), "0..0");
  EXPECT_EQ(signalCount("/top"), 1U + expected());
  if (GetParam().bus != nullptr) {
    EXPECT_TRUE(joined(bit(busPath(), GetParam().index), bit("/top/id")));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Names, EdifNetNameTest,
    ::testing::Values(NetName{"d[3]", "d", 3}, NetName{"d[0]", "d", 0}, NetName{"d[031]", "d", 31},
                      NetName{"d[3] x", "d", 3}, NetName{"d.e$f[12]", "d.e$f", 12},
                      NetName{"mem[3][5]", nullptr, 0}, NetName{"gen[2].valid", nullptr, 0},
                      NetName{"gen[2].v[3]", nullptr, 0}, NetName{"q[3]_rep", nullptr, 0},
                      NetName{"q[3]_rep__0", nullptr, 0}, NetName{"a[3:0]", nullptr, 0},
                      NetName{"acc[-1]", nullptr, 0}, NetName{"a[x]", nullptr, 0},
                      NetName{"a[3x]", nullptr, 0}, NetName{"a[]", nullptr, 0},
                      NetName{"r[count][31]", nullptr, 0}, NetName{"plain", nullptr, 0},
                      NetName{"a3", nullptr, 0}, NetName{"a<3>", nullptr, 0}));

TEST_F(EdifNetsTest, DoubtfulIndicesAreReadAlikeForNetsAndPorts) {
  for (const std::string name : {"a[+3]", "a[ 3 ]", "a[0x3]", "a[3 ]"}) {
    const auto fresh = readAlone(
        RTL, top(port(renamed("p", name), "INPUT"), net(renamed("n", "b" + name), pin("p"))));
    const Signal* port = fresh->findSignal(RTL, "/top/a");
    const Signal* bus = fresh->findSignal(RTL, "/top/ba");
    const Signal* whole = fresh->findSignal(RTL, "/top/b" + name);
    EXPECT_EQ(port == nullptr, bus == nullptr) << name;
    EXPECT_NE(bus == nullptr, whole == nullptr) << name;
    if (bus != nullptr) {
      EXPECT_EQ(bus->getLsb(), 3U) << name;
      EXPECT_EQ(bus->getMsb(), 3U) << name;
    }
  }
}

TEST_F(EdifNetsTest, IndexBeyondAllNumbersNeverBecomesAnotherIndex) {
  for (const std::string name : {"a[99999999999]", "a[4294967299]", "a[18446744073709551619]"}) {
    const std::string text = top(input("in"), "\n" + net(renamed("n", name), pin("in")));
    const auto fresh = readAlone(RTL, text);
    EXPECT_EQ(fresh->findSignal(RTL, "/top/a"), nullptr) << name;
    if (fatal)
      expectFatalAt(test::lineOf(text, "(net (rename"));
    else
      EXPECT_NE(fresh->findSignal(RTL, "/top/" + name), nullptr) << name;
  }
}

// Hidden marks

TEST_F(EdifNetsTest, NetsWithToolCharactersAreHidden) {
  readRtl(top(input("a"), net("a$b", pin("a")) + net(renamed("a_c", "a.c"), pin("a")) +
                              net(renamed("m_3__5_", "m[3][5]"), pin("a")) +
                              net("n_0+_x+_i", pin("a")) + net("n_0+_x+_i__1+", pin("a"))));
  EXPECT_TRUE(signal("/top/a$b")->isHidden());
  EXPECT_TRUE(signal("/top/a.c")->isHidden());
  EXPECT_TRUE(signal("/top/m[3][5]")->isHidden());
  EXPECT_TRUE(signal("/top/n_0+_x+_i")->isHidden());
  EXPECT_TRUE(signal("/top/n_0+_x+_i__1+")->isHidden());
}

TEST_F(EdifNetsTest, OtherNetsAreVisible) {
  readRtl(top(input("a"), net("n_0_count_i", pin("a")) + net("x]", pin("a")) + net("n", pin("a")) +
                              net("m_0+_x+_i", pin("a")) + net(renamed("y_z", "y/z"), pin("a"))));
  for (const char* name : {"n_0_count_i", "x]", "n", "m_0+_x+_i", "y/z"}) {
    const Signal* visible = signal(std::string("/top/") + name);
    ASSERT_NE(visible, nullptr) << name;
    EXPECT_FALSE(visible->isHidden()) << name;
  }
}

TEST_F(EdifNetsTest, HiddenMarkGoesByThePrintableName) {
  readRtl(top(input("a"), net(renamed("a$b", "plain"), pin("a"))));
  EXPECT_FALSE(signal("/top/plain")->isHidden());
}

TEST_F(EdifNetsTest, ToolAddedNamesNeedTheFamily) {
  readRtl(top(input("a"), net("n_0+_x+_i", pin("a")) + net("a$b", pin("a")), "", "Drumlane"));
  EXPECT_FALSE(signal("/top/n_0+_x+_i")->isHidden());
  EXPECT_TRUE(signal("/top/a$b")->isHidden());
}

TEST_F(EdifNetsTest, BusesAreNeverHiddenByTheirBits) {
  readRtl(top(input("a"), net("a.b[3]", pin("a")) + net("c$d[0]", pin("a"))));
  EXPECT_FALSE(signal("/top/a.b")->isHidden());
  EXPECT_FALSE(signal("/top/c$d")->isHidden());
}

TEST_F(EdifNetsTest, VisibleSetsAreCurrentAfterReading) {
  readRtl(top(input("a"), net("a$b", pin("a")) + net("n", pin("a")) + instance("r", "RTL_REG")));
  EXPECT_EQ(netlist.getTop(RTL)->getSignals(true).size(), 3U);
  EXPECT_EQ(netlist.getTop(RTL)->getSignals(false).size(), 4U);
  EXPECT_TRUE(netlist.getTop(RTL)->getChildren(true).empty());
}

// Buffers

TEST_F(EdifNetsTest, BuffersJoinTheirTwoSides) {
  const std::string text = top("", instance("b", "BUFG") + instance("l", "LUT1"));
  readRtl(text);
  readSynth(text);
  EXPECT_TRUE(joined(bit("/top/b/I"), bit("/top/b/O")));
  EXPECT_TRUE(joined(bit("/top/l/I0"), bit("/top/l/O")));
  EXPECT_TRUE(joined(bit("/top/b/I", 0, SYNTH), bit("/top/b/O", 0, SYNTH)));
  EXPECT_NE(bit("/top/l/I0", 0, SYNTH), bit("/top/l/O", 0, SYNTH));
  EXPECT_EQ(err, "");
}

TEST_F(EdifNetsTest, BufferBetweenTwoConstantsIsTraced) {
  readRtl(top("", instance("b", "BUFG") + instance("g", "GND") + instance("v", "VCC") +
                      net("n", pin("G", "g") + pin("I", "b")) +
                      net("m", pin("P", "v") + pin("O", "b"))));
  EXPECT_EQ(out, "ERROR: Bit conflict! 0: 0 1: 1\n");
  EXPECT_EQ(err, "BUF: /top/b/I -> /top/b/O\n");
  EXPECT_NE(bit("/top/b/I"), bit("/top/b/O"));
}

// The numbers that reading gives

TEST_F(EdifNetsTest, BitsAreNumberedDenselyAfterEachView) {
  const std::string text =
      top(bus("d", "3") + input("a"), instance("r", "FDRE") + net("n", pin("a") + pin("D", "r")));
  readRtl(text);
  EXPECT_EQ(Bit::getMaxBitId() + 1, Bit::getAllBits().size());
  readSynth(text);
  EXPECT_EQ(Bit::getMaxBitId() + 1, Bit::getAllBits().size());
  unsigned int expected = 0;
  for (const Bit* each : Bit::getAllBits()) EXPECT_EQ(each->getId(), expected++);
}

TEST_F(EdifNetsTest, SignalsOfTheSameBitsAreOneNet) {
  readRtl(top(input("a") + input("b"), net("n", pin("a"))));
  EXPECT_EQ(signal("/top/a")->getNet(), signal("/top/n")->getNet());
  EXPECT_NE(signal("/top/a")->getNet(), signal("/top/b")->getNet());
  EXPECT_EQ(Net::getAllNets().size(), 2U);
  signal("/top/n")->enable();
  EXPECT_TRUE(signal("/top/a")->isEnabled());
  EXPECT_FALSE(signal("/top/b")->isEnabled());
}

TEST_F(EdifNetsTest, NetsAreNumberedInTheTextOrderOfSignatures) {
  readRtl(top(bus("d", "9") + input("x") + input("y") + input("z"), ""));
  // Bits 0 to 8 are d; x, y and z are 9, 10 and 11. "0_10_0" precedes "0_11_0", "0_9_0", "8_0_…".
  EXPECT_EQ(signal("/top/y")->getNet()->getId(), 0U);
  EXPECT_EQ(signal("/top/z")->getNet()->getId(), 1U);
  EXPECT_EQ(signal("/top/x")->getNet()->getId(), 2U);
  EXPECT_EQ(signal("/top/d")->getNet()->getId(), 3U);
}

TEST_F(EdifNetsTest, SecondViewRegroupsTheSignalsOfTheFirst) {
  readRtl(top(input("a"), ""));
  EXPECT_EQ(signal("/top/a")->getNet()->getId(), 0U);
  readSynth(top(input("a"), ""));
  EXPECT_EQ(signal("/top/a", RTL)->getNet()->getId(), 1U);
  EXPECT_EQ(signal("/top/a", SYNTH)->getNet()->getId(), 2U);
  EXPECT_EQ(Net::getAllNets().size(), 3U);
}

}  // namespace
