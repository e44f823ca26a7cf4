#include "tests/crossreference/ReadingTest.h"
#include <crossreference/LeafText.h>
#include <crossreference/ModelText.h>

#include <sstream>
#include <string>
#include <vector>

using namespace XRF_RTL2LL;

namespace {

const std::string kClock = "   (SIG VISIBLE IN C 10 0 0 0 0)\n";
const std::string kData = "   (SIG VISIBLE IN D 11 1 0 0 1)\n";
const std::string kOutput = "   (SIG VISIBLE OUT Q 12 2 0 0 2))\n";
const std::string kPorts = kClock + kData + kOutput;

/// Modules whose lines are those of another instance of their cell, and some that nearly are.
class LeafTextTest : public test::ReadingTest {
 protected:
  /// Two instances of a cell, a third one with the ports given, and one after it.
  static std::string file(const std::string& ports) {
    std::string text =
        "(VERSION 1)\n(FAMILY TORVAL7)\n(BITS 5)\n(NETS 4)\n(BIT 0 ? z)\n(BIT 1 ? z)\n"
        "(BIT 2 STATE z 7 8 0)\n(BIT 3 CNST 1)\n(VIEW RTL)\n(MOD VISIBLE top top 0\n"
        "   (SIG VISIBLE IN clk 1 0 0 0 0)\n";
    const std::vector<std::string> each{kPorts, kPorts, ports, kPorts};
    for (std::size_t number = 0; number < each.size(); ++number) {
      const std::string digit = std::to_string(number);
      text += "   (MOD HIDDEN FDRE u" + digit + " 2" + digit + "\n" + each[number];
    }
    return text + "   (MOD HIDDEN LUT1 v 30\n   (SIG VISIBLE OUT O 31 3 0 0 3)))\n(VIEW SYNTH)\n";
  }
  /// All that reading a text makes of it, or where and why it ends.
  std::string told(const std::string& text) {
    resetModel();
    Netlist alone;
    const test::TempFile design(text, "design.xrf");
    run([&] { alone.parse_xrf(design.path()); });
    if (fatal) {
      test::replaceAll(fatal->text, design.path(), "");
      test::replaceAll(fatal->text, "\r", "");
      return fatal->text + " " + std::to_string(fatal->line);
    }
    std::ostringstream all;
    all << alone.getTop(RTL);
    for (Signal* signal : Signal::getAllSignals()) {
      const std::string name = signal->getFullName();
      all << name << (alone.findSignal(RTL, name) == signal ? " found " : " lost ")
          << (signal->getModule()->getSignal(signal->getId(), true) == signal) << signal << "\n";
    }
    for (const Net* net : Net::getAllNets()) {
      for (const Signal* signal : net->getSignals()) all << signal->getFullName() << " ";
      all << "\n";
    }
    return all.str();
  }
  /// Lines that end in CRLF are never taken for those of another instance.
  static std::string taughtNothing(std::string text) {
    test::replaceAll(text, "\n", "\r\n");
    return text;
  }
};

TEST_F(LeafTextTest, TakesTheNumbersOfTheNextInstanceFromItsLines) {
  const test::TempFile design(file(kPorts), "design.xrf");
  run([&] { netlist.parse_xrf(design.path()); });
  const std::optional<LeafText> leaf = LeafText::of(*module("/top/u0"));
  ASSERT_TRUE(leaf);
  const std::string lines =
      "(SIG VISIBLE IN C 10 3 0 0 4)\n\n  (SIG VISIBLE IN D 11 0 0 0 1)\n"
      "         (SIG VISIBLE OUT Q 12 1 0 0 123456789)))\n";
  std::vector<LeafText::Place> places;
  const LeafText::Passed passed = leaf->scan(lines + "(VIEW SYNTH)\n", places);
  EXPECT_EQ(passed.bytes, lines.size());
  EXPECT_EQ(passed.lines, 4U);
  EXPECT_EQ(passed.closing, 2);
  ASSERT_EQ(places.size(), 3U);
  EXPECT_EQ(places[0].net, 3U);
  EXPECT_EQ(places[0].bit, 4U);
  EXPECT_EQ(places[2].bit, 123456789U);
  EXPECT_EQ(leaf->scan(lines.substr(0, lines.size() - 1), places).bytes, 0U);
  EXPECT_FALSE(LeafText::of(*module("/top")));
}

TEST_F(LeafTextTest, WhatNearlyIsAnotherInstanceIsReadAsItStands) {
  const std::string whole = told(file(kPorts));
  EXPECT_NE(whole.find("/top/u2/Q found 1"), std::string::npos) << whole;
  for (const std::string& ports : {
           kPorts,
           "   (SIG VISIBLE IN C 10 3 0 0 3)\n" + kData + kOutput,
           "   (SIG HIDDEN IN C 10 0 0 0 0)\n" + kData + kOutput,
           "   (SIG VISIBLE OUT C 10 0 0 0 0)\n" + kData + kOutput,
           "   (SIG VISIBLE IN C 13 0 0 0 0)\n" + kData + kOutput,
           "   (SIG VISIBLE IN CE 10 0 0 0 0)\n" + kData + kOutput,
           "   (SIG VISIBLE IN C/E 10 0 0 0 0)\n" + kData + kOutput,
           "   (SIG VISIBLE IN C 10 0 1 1 0)\n" + kData + kOutput,
           "   (SIG VISIBLE IN C 10 0 0 1 0 1)\n" + kData + kOutput,
           "   (SIG VISIBLE IN C 10 0 0 0  0)\n" + kData + kOutput,
           "\n \t\n" + kClock + kData + "\n" + kOutput,
           kData + kClock + kOutput,
           kClock + kClock + kData + kOutput,
           kClock + kOutput,
           kOutput,
           kClock + kData +
               "   (SIG VISIBLE OUT Q 12 2 0 0 2)\n   (SIG VISIBLE IN R 13 0 0 0 0))\n",
           kClock + kData + "   (SIG VISIBLE OUT Q 12 2 0 0 2)\n   (MOD HIDDEN FDRE w 5\n" +
               kPorts + "   (SIG VISIBLE IN R 13 0 0 0 0))\n",
           kClock + "   (SIG VISIBLE IN D 11 1 0 0 1))\n" + kOutput,
           kClock + kData + "   (SIG VISIBLE OUT Q 12 2 0 0 2)))\n",
           kClock + kData + "   (SIG VISIBLE OUT Q 12 2 0 0 2)))))\n",
           kClock + kData + "   (SIG VISIBLE OUT Q 12 2 0 0 4))\n",
           kClock + kData + "   (SIG VISIBLE OUT Q 12 2 0 0 9))\n",
           kClock + kData + "   (SIG VISIBLE OUT Q 12 9 0 0 2))\n",
           kClock + kData + "   (SIG VISIBLE OUT Q 12 2 0 0)\n",
           kClock + "rubbish\n" + kOutput,
       }) {
    SCOPED_TRACE(ports);
    EXPECT_EQ(told(file(ports)), told(taughtNothing(file(ports))));
    EXPECT_EQ(told(file(ports)) == whole, ports == kPorts ||
                                              ports.find("\t") != std::string::npos ||
                                              ports.find("  0)") != std::string::npos);
  }
}

// Parentheses end modules wherever they stand in a line, in a name, too.
TEST_F(LeafTextTest, AClosingParenthesisInANameCounts) {
  std::string text =
      "(VERSION 1)\n(FAMILY TORVAL7)\n(BITS 2)\n(NETS 2)\n(BIT 0 ? z)\n(BIT 1 ? z)\n(VIEW RTL)\n"
      "(MOD VISIBLE top top 0\n(MOD VISIBLE H h 1\n(SIG VISIBLE WIRE s 1 0 0 0 0)\n";
  int id = 2;
  for (const char* const end : {")", "))", "))"}) {
    const std::string number = std::to_string(id++);
    text += "(MOD VISIBLE C u" + number + " " + number + "\n(SIG VISIBLE WIRE a)b 1 1 0 0 1" + end +
            "\n";
  }
  text += "(VIEW SYNTH)\n";
  EXPECT_EQ(told(text), told(taughtNothing(text)));
}

}  // namespace
