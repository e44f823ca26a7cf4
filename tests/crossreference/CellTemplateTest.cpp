#include "ReadingTest.h"
#include <tests/Edif.h>

#include <set>
#include <string>

using edif::array;
using edif::cell;
using edif::input;
using edif::instance;
using edif::member;
using edif::net;
using edif::output;
using edif::pin;
using edif::port;
using edif::property;
using XRF_RTL2LL::Bit;
using XRF_RTL2LL::EdifView;
using XRF_RTL2LL::Matching;
using XRF_RTL2LL::Module;
using XRF_RTL2LL::RTL;
using XRF_RTL2LL::Signal;
using XRF_RTL2LL::SYNTH;

namespace {

/// Cells of nothing but ports, whose further instances are copies.
class CellTemplateTest : public test::ReadingTest {
 protected:
  static constexpr unsigned instances = 3;

  /// A design with several instances of the cell "part".
  static std::string several(const std::string& ports, const std::string& contents = "") {
    std::string body;
    for (unsigned number = 0; number < instances; ++number) {
      body += instance("u" + std::to_string(number), "part");
    }
    return edif::top("", body + contents, cell("part", ports));
  }
  Module* part(unsigned number, EdifView view = RTL) const {
    return module("/top/u" + std::to_string(number), view);
  }
  /// The ports in name order, each with all that its cell tells.
  static std::string describe(const Module& instance) {
    std::string text;
    for (const Signal* signal : instance.getSignals(false)) {
      text += std::string(signal->getName()) + " " + std::to_string(signal->getId()) + " " +
              std::to_string(signal->getLsb()) + ".." + std::to_string(signal->getMsb()) + " " +
              std::to_string(signal->getKind()) + (signal->isHidden() ? " hidden" : "") +
              (instance.getSignal(signal->getId(), true) == signal ? "" : " lost") + "\n";
    }
    return text;
  }
  void expectAlike(EdifView view = RTL) const {
    std::set<const Bit*> bits;
    std::size_t indices = 0;
    for (unsigned number = 0; number < instances; ++number) {
      SCOPED_TRACE(number);
      ASSERT_NE(part(number, view), nullptr);
      EXPECT_EQ(describe(*part(number, view)), describe(*part(0, view)));
      EXPECT_NE(describe(*part(number, view)), "");
      EXPECT_EQ(part(number, view)->getSignals(true).size(),
                part(0, view)->getSignals(true).size());
      for (const Signal* signal : part(number, view)->getSignals(false)) {
        EXPECT_EQ(signal->getModule(), part(number, view));
        EXPECT_EQ(netlist.findSignal(view, signal->getFullName()), signal);
        for (unsigned index = signal->getLsb(); index <= signal->getMsb(); ++index) {
          bits.insert(signal->getBitRef(index)->getBit());
          EXPECT_FALSE(signal->getBitRef(index)->getBit()->isInferred());
          ++indices;
        }
      }
    }
    EXPECT_EQ(bits.size(), indices);
    for (const Bit* bit : bits) EXPECT_TRUE(Bit::getAllBits().contains(bit));
  }
};

TEST_F(CellTemplateTest, EveryInstanceHasTheCellsPorts) {
  readRtl(several(input("Z") + port(array("D", "4"), "INPUT") + output("Q") + port("X", "INOUT")));
  expectAlike();
  EXPECT_EQ(range("/top/u2/D"), "0..3");
  EXPECT_EQ(signal("/top/u2/Q")->getKind(), XRF_RTL2LL::OUT);
}

TEST_F(CellTemplateTest, ManyPortsAreFoundByTheirNumbers) {
  std::string ports;
  for (unsigned number = 0; number < 40; ++number) ports += input("p" + std::to_string(number));
  readRtl(several(ports));
  expectAlike();
}

TEST_F(CellTemplateTest, RangesThatAreDeclaredHoldForCopies) {
  subject.setMatching(Matching::Extended);
  const std::string data = array(edif::renamed("d_", "d[4:7]"), "4");
  const std::string joined = net("n", pin(member("d_", "1"), "u2") + pin("c", "u1"));
  readRtl(several(port(data, "INPUT") + input("c"), joined));
  EXPECT_EQ(describe(*part(2)), describe(*part(0)));
  EXPECT_EQ(range("/top/u2/d"), "4..7");
  EXPECT_EQ(bit("/top/u2/d", 5), bit("/top/u1/c"));
}

TEST_F(CellTemplateTest, BitsOfCopiesAreNumberedAsTheirPortsAreMade) {
  readRtl(several(input("A") + output("Q"), net("n", pin("Q", "u2") + pin("A", "u1"))));
  unsigned int number = 0;
  for (const char* port : {"/top/u0/A", "/top/u0/Q", "/top/u1/Q", "/top/u2/A", "/top/u2/Q"}) {
    EXPECT_EQ(bit(port)->getId(), number++) << port;
  }
  EXPECT_EQ(bit("/top/u1/A"), bit("/top/u2/Q"));
  EXPECT_EQ(Bit::getAllBits().size(), number);
}

TEST_F(CellTemplateTest, ReadingThatIsBrokenOffLeavesNoBitThatIsNoneOfTheModel) {
  const std::string joined = net("n", pin("Q", "u2") + pin("A", "u1"));
  read(RTL, several(input("A") + output("Q"), joined + instance("bad", "missing")));
  ASSERT_TRUE(fatal);
  std::size_t found = 0;
  for (const Bit* bit : Bit::getAllBits()) found += bit->getBitRefs().empty() ? 0U : 1U;
  EXPECT_EQ(Bit::getAllBits().size(), found);
  EXPECT_EQ(bit("/top/u1/A"), bit("/top/u2/Q"));
  EXPECT_TRUE(Bit::getAllBits().contains(bit("/top/u2/Q")));
  const XRF_RTL2LL::BitRef* ref = signal("/top/u1/Q")->getBitRef(0);
  ASSERT_NE(ref, nullptr);
  XRF_RTL2LL::Model other;
  const XRF_RTL2LL::ModelScope scope(other);
  EXPECT_EQ(ref->getBit(), nullptr);
  EXPECT_TRUE(Bit::getAllBits().empty());
}

TEST_F(CellTemplateTest, MembersOfACopyCountFromTheDeclaredLeftEnd) {
  subject.setMatching(Matching::Extended);
  const std::string joined = net("n", pin(member("d_", "1"), "u2") + pin("c", "u1"));
  readRtl(several(port(array(edif::renamed("d_", "d[7:4]"), "4"), "INPUT") + input("c"), joined));
  EXPECT_EQ(range("/top/u2/d"), "4..7");
  EXPECT_EQ(bit("/top/u2/d", 6), bit("/top/u1/c"));
}

TEST_F(CellTemplateTest, MembersOfACopyDoNotCountFromWhereABitPortWidenedIt) {
  subject.setMatching(Matching::Extended);
  const std::string joined = net("n", pin(member("d_", "1"), "u2") + pin("c", "u1"));
  readRtl(several(port(array(edif::renamed("d_", "d[3:0]"), "4"), "INPUT") +
                      input(edif::renamed("d_5_", "d[5]")) + input("c"),
                  joined));
  EXPECT_EQ(range("/top/u2/d"), "0..5");
  EXPECT_EQ(bit("/top/u2/d", 2), bit("/top/u1/c"));
}

TEST_F(CellTemplateTest, PortThatIsDeclaredTwiceIsTheSameInEachInstance) {
  readRtl(several(port(array("D", "2"), "INPUT") + input("C") + port(array("D", "4"), "INPUT")));
  expectAlike();
  EXPECT_EQ(range("/top/u1/D"), "0..3");
}

TEST_F(CellTemplateTest, BitPortsAreMergedInEachInstance) {
  readRtl(several(input(edif::renamed("d_0_", "d[0]")) + input(edif::renamed("d_1_", "d[1]"))));
  for (const char* top : {"/top/u0", "/top/u1", "/top/u2"}) {
    EXPECT_EQ(range(std::string(top) + "/d"), "0..1") << top;
    EXPECT_EQ(bit(std::string(top) + "/d", 1), bit(std::string(top) + "/d_1_")) << top;
  }
  EXPECT_NE(bit("/top/u1/d"), bit("/top/u2/d"));
}

TEST_F(CellTemplateTest, PropertyInsideTheCellActsOnEachInstance) {
  readSynth(several(input("C") + property("INIT", "1'b1")));
  for (unsigned number = 0; number < instances; ++number) {
    EXPECT_EQ(part(number, SYNTH)->getInit(), 1U) << number;
  }
}

TEST_F(CellTemplateTest, PropertyOfOneInstanceIsItsOwn) {
  readSynth(edif::top("", instance("u0", "part", property("INIT", "1'b1")) + instance("u1", "part"),
                      cell("part", input("C"))));
  EXPECT_EQ(part(0, SYNTH)->getInit(), 1U);
  EXPECT_EQ(part(1, SYNTH)->getInit(), 0U);
}

TEST_F(CellTemplateTest, NetsOfOneInstanceLeaveTheOthersAlone) {
  readRtl(several(input("A") + output("Q"), net("n", pin("Q", "u0") + pin("A", "u1"))));
  EXPECT_EQ(bit("/top/u0/Q"), bit("/top/u1/A"));
  EXPECT_EQ(bit("/top/n"), bit("/top/u1/A"));
  EXPECT_NE(bit("/top/u2/A"), bit("/top/u1/A"));
  EXPECT_NE(bit("/top/u0/A"), bit("/top/u1/A"));
}

}  // namespace
