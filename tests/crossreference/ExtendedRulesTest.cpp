#include "tests/Edif.h"
#include "tests/crossreference/DesignFilesTest.h"

#include <gmock/gmock.h>
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
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

/// Extended reading of small designs, whose netlists give identifiers and printable names.
class ExtendedRulesTest : public test::DesignFilesTest {
 protected:
  ExtendedRulesTest() { subject.setMatching(Matching::Extended); }

  /// Identifiers say nothing, so each name gets one that is like no other.
  static std::string id() {
    static unsigned next = 0;
    return "n" + std::to_string(next++) + "z";
  }
  static std::string named(const std::string& name) { return renamed(id(), name); }

  /// Registers of one bit with their output nets, each as "instance net", in the given cells.
  static std::string registers(const std::string& cellName,
                               const std::vector<std::pair<std::string, std::string>>& names) {
    std::string instances;
    std::string nets;
    for (const auto& [name, netName] : names) {
      const std::string identifier = id();
      instances += instance(renamed(identifier, name), cellName);
      if (!netName.empty()) nets += net(named(netName), pin("Q", identifier));
    }
    return instances + nets;
  }
  /// Elaborated registers whose nets do not matter.
  static std::string elaborated(const std::vector<std::string>& names) {
    std::vector<std::pair<std::string, std::string>> both;
    for (const std::string& name : names) both.emplace_back(name, "");
    return registers("RTL_REG", both);
  }

  void readDesign(const std::string& rtl, const std::string& synth) {
    readNetlists(top("", rtl), top("", synth));
  }

  /// A location line: frame 16.
  static std::string line(const std::string& net, unsigned offset,
                          const std::string& latch = "AQ") {
    return "Bit 5 0x00000010 " + std::to_string(offset) + " Block=SLICE_X1Y2 Latch=" + latch +
           " Net=" + net + "\n";
  }
  /// One for each net, with offsets 1, 2, 3, ... in their order.
  void locate(const std::vector<std::string>& nets, const std::string& latch = "AQ") {
    std::string text = "Revision 3\n";
    unsigned offset = 0;
    for (const std::string& name : nets) text += line(name, ++offset, latch);
    readLocations(text);
  }
  static std::string constant(const std::string& element, const std::string& value = "1") {
    return "INFO: [Synth 8-3333] propagating constant " + value + " across sequential element (" +
           element + " )\n";
  }
  static std::string merged(const std::string& gone, const std::string& survivor) {
    return "INFO: [Synth 8-3886] merging instance '" + gone + "' (FDE) to '" + survivor + "'\n";
  }

  /// The offset at which a bit is located, "constant V", or "unread", "unknown", "no bit".
  std::string at(const std::string& name, unsigned index = 0, EdifView view = RTL) const {
    const Bit* found = bit("/top/" + name, index, view);
    if (found == nullptr) return "no bit";
    switch (found->getKind()) {
      case Bit::STATE:
        return std::to_string(found->getStateLoc2());
      case Bit::CNST:
        return found->getValue() ? "constant 1" : "constant 0";
      case Bit::UNREAD:
        return "unread";
      case Bit::UNKNOWN:
        break;
    }
    return "unknown";
  }
};

TEST_F(ExtendedRulesTest, RegistersAreKnownByTheirInstancesAlone) {
  const std::vector<std::string> names = {
      "cnt_reg[3]",     "gen[2].cnt_reg[3]", "mem_reg[3][5]",     "m_reg[1][2][3]",
      "m_reg[1][2][0]", "r_reg[count][31]",  "r_reg[tag][valid]", "valid_reg"};
  std::vector<std::pair<std::string, std::string>> synthesized;
  std::vector<std::string> nets;
  for (const std::string& name : names) {
    nets.push_back("n_0_" + name);
    synthesized.emplace_back(name, nets.back());
  }
  readDesign(elaborated(names), registers("FDRE", synthesized));
  locate(nets);
  EXPECT_EQ(at("cnt", 3), "1");
  EXPECT_EQ(at("gen[2].cnt", 3), "2");
  EXPECT_EQ(at("mem<3>", 5), "3");
  EXPECT_EQ(at("m<1><2>", 3), "4");
  EXPECT_EQ(at("m<1><2>", 0), "5");
  EXPECT_EQ(at("r<count>", 31), "6");
  EXPECT_EQ(at("r<tag><valid>"), "7");
  EXPECT_EQ(at("valid"), "8");
  EXPECT_EQ(subject.locationReport().used, 8U);
}

TEST_F(ExtendedRulesTest, TheOriginalBeatsItsReplicas) {
  readDesign(elaborated({"a_reg[0]", "b_reg"}), registers("FDRE", {{"a_reg[0]_rep", "a_rep"},
                                                                   {"a_reg[0]_rep__0", "a_rep__0"},
                                                                   {"a_reg[0]", "a"},
                                                                   {"b_reg_rep__1", "b_rep"}}));
  locate({"a_rep", "a_rep__0", "a", "b_rep"});
  EXPECT_EQ(at("a", 0), "3");
  EXPECT_EQ(at("b"), "4");
}

TEST_F(ExtendedRulesTest, AnInvertedRegisterStaysUnmatched) {
  readDesign(elaborated({"a_reg"}), registers("FDRE", {{"a_reg_inv", "n_0_a"}}));
  locate({"n_0_a"});
  EXPECT_EQ(at("a"), "unknown");
  subject.getNetlist()->finalPostProcess();
  EXPECT_EQ(at("a"), "unread");
}

TEST_F(ExtendedRulesTest, ARegisterNamedLikeAnInstanceIsNotItsAlias) {
  const auto view = [](const std::string& cellName) {
    return instance("foo_reg", cellName) + instance("foo_reg_reg", cellName) +
           net("foo", pin("Q", "foo_reg")) + net("foo_reg", pin("Q", "foo_reg_reg"));
  };
  readDesign(view("RTL_REG"), view("FDRE"));
  locate({"foo", "foo_reg"});
  EXPECT_EQ(at("foo"), "1");
  EXPECT_EQ(at("foo_reg"), "2");
}

TEST_F(ExtendedRulesTest, AReplicaTakesItsPlaceBeforeAnAliasDoes) {
  readDesign(elaborated({"foo_reg", "foo_reg_reg"}),
             instance("foo_reg", "FDRE") + instance("foo_reg_reg_rep", "FDRE") +
                 net("foo", pin("Q", "foo_reg")) + net("n_0", pin("Q", "foo_reg_reg_rep")));
  locate({"foo", "n_0"});
  EXPECT_EQ(at("foo"), "1");
  EXPECT_EQ(at("foo_reg"), "2");
}

TEST_F(ExtendedRulesTest, MembersCountFromTheDeclaredLeftEnd) {
  const std::string ports = port(array(renamed("x", "x[15:8]"), "8"), "OUTPUT") +
                            port(array(renamed("y", "y[0:3]"), "4"), "OUTPUT");
  const auto view = [&](const std::string& cellName) {
    return top(ports, instance(renamed("x8", "x_reg[8]"), cellName) +
                          instance(renamed("y0", "y_reg[0]"), cellName) +
                          net(renamed("x_8_", "x[8]"), pin(member("x", "7")) + pin("Q", "x8")) +
                          net(renamed("y_0_", "y[0]"), pin(member("y", "0")) + pin("Q", "y0")));
  };
  parse(RTL, view("RTL_REG"));
  parse(SYNTH, view("FDRE"));
  EXPECT_EQ(range("/top/x"), "8..15");
  EXPECT_EQ(range("/top/y"), "0..3");
  locate({"x[8]", "y[0]"});
  EXPECT_EQ(at("x", 8), "1");
  EXPECT_EQ(at("x", 15), "unknown");
  EXPECT_EQ(at("y", 0), "2");
  EXPECT_EQ(at("y", 3), "unknown");
}

// The model has no negative indices, so the array keeps 5 to 0 and its bits go by whole names.
TEST_F(ExtendedRulesTest, BitsOfAPortWithANegativeBoundGoByTheirWholeNames) {
  const std::string ports = port(array(renamed("q", "q[1:-2]"), "4"), "OUTPUT");
  const auto view = [&](const std::string& cellName) {
    std::string contents;
    const std::vector<std::string> indices = {"1", "0", "-1", "-2"};
    for (std::size_t k = 0; k < indices.size(); ++k) {
      const std::string place = std::to_string(k);
      contents += instance(renamed("r" + place, "q_reg[" + indices[k] + "]"), cellName);
      contents += net(renamed("q" + place, "q[" + indices[k] + "]"),
                      pin(member("q", place)) + pin("Q", "r" + place));
    }
    return top(ports, contents);
  };
  parse(RTL, view("RTL_REG"));
  parse(SYNTH, view("FDRE"));
  locate({"q[1]", "q[0]", "q[-1]", "q[-2]"});
  EXPECT_EQ(at("q[1]"), "1");
  EXPECT_EQ(at("q[0]"), "2");
  EXPECT_EQ(at("q[-1]"), "3");
  EXPECT_EQ(at("q[-2]"), "4");
  EXPECT_EQ(at("q", 3), "1");
  EXPECT_EQ(at("q", 0), "4");
}

TEST_F(ExtendedRulesTest, APortIsAskedForAsWritten) {
  const std::string ports = output(renamed("valid_o", "valid.o"));
  const auto view = [&](const std::string& cellName) {
    return top(ports, instance("r0", cellName) + instance("valid_o_reg", cellName) +
                          net(renamed("valid_o", "valid.o"), pin("valid_o") + pin("Q", "r0")) +
                          net(renamed("valid_o_0", "valid_o"), pin("Q", "valid_o_reg")));
  };
  parse(RTL, view("RTL_REG"));
  parse(SYNTH, view("FDRE"));
  locate({"valid.o", "valid_o"});
  EXPECT_EQ(at("valid.o"), "1");
  EXPECT_EQ(at("valid_o"), "2");
}

TEST_F(ExtendedRulesTest, BlanksAndParenthesesAreUnderscoresOnBothSides) {
  readDesign(elaborated({"a b_reg", "x(2)_reg"}),
             registers("FDRE", {{"a b_reg", "a b"}, {"x(2)_reg", "x(2)"}}));
  locate({"a b", "x(2)"});
  EXPECT_EQ(at("a_b"), "1");
  EXPECT_EQ(at("x_2_"), "2");
  EXPECT_NE(subject.findSignal(RTL, "/top/a b"), nullptr);
}

TEST_F(ExtendedRulesTest, NamesThatAreOneOnceCleanedStayUnmatched) {
  readDesign(elaborated({"a b_reg", "a_b_reg"}),
             registers("FDRE", {{"a b_reg", "a b"}, {"a_b_reg", "a_b"}}));
  locate({"a b", "a_b"});
  EXPECT_EQ(at("a_b"), "unknown");
  EXPECT_EQ(subject.locationReport().unmatched, 2U);
  EXPECT_THAT(subject.locationReport().unmatchedNames, ElementsAre("a b", "a_b"));
}

TEST_F(ExtendedRulesTest, RegistersOfModulesThatAreOneOnceCleanedStayUnmatched) {
  const auto view = [](const std::string& cellName) {
    const std::string sub = cell("sub", "", registers(cellName, {{"x_reg", "x"}}));
    return top("",
               instance(named("u 0"), "sub") + instance(named("u_0"), "sub") + instance("v", "sub"),
               sub);
  };
  parse(RTL, view("RTL_REG"));
  parse(SYNTH, view("FDRE"));
  const test::TempFile file("", "design.xrf");
  subject.exportDesign(file.path(), true);
  locate({"u 0/x", "v/x"});
  EXPECT_EQ(at("u_0/x"), "unknown");
  EXPECT_EQ(at("v/x"), "2");
  EXPECT_THAT(subject.locationReport().unmatchedNames, ElementsAre("u 0/x"));

  resetModel();
  Design loaded(Matching::Extended);
  run([&] { loaded.parse_xrf(file.path()); });
  const test::TempFile locations(
      "Bit 5 0x10 7 Block=SLICE_X1Y2 Latch=AQ Net=u_0/x\n"
      "Bit 5 0x10 8 Block=SLICE_X1Y2 Latch=AQ Net=v/x\n");
  run([&] { loaded.parse_ll(locations.path()); });
  EXPECT_EQ(loaded.findSignal(RTL, "/top/u_0/x")->getBitRef(0)->getBit()->getKind(), Bit::UNKNOWN);
  EXPECT_EQ(loaded.findSignal(RTL, "/top/v/x")->getBitRef(0)->getBit()->getStateLoc2(), 8U);
}

TEST_F(ExtendedRulesTest, RawNamesWinOverCleanedOnes) {
  readDesign(elaborated({"pos_reg[3]", "pos_3__reg"}),
             registers("FDRE", {{"pos_reg[3]", "pos[3]"}, {"pos_3__reg", "pos_3_"}}));
  locate({"pos[3]", "pos_3_"});
  EXPECT_EQ(at("pos", 3), "1");
  EXPECT_EQ(at("pos_3_"), "2");
}

TEST_F(ExtendedRulesTest, AnEscapedNameWithBracketsIsNoBitOfTheNameBeforeThem) {
  readDesign(registers("RTL_REG", {{"u_reg", "u"}, {"u[0]_reg", "u[0]"}}),
             registers("FDRE", {{"u_reg", "n_0"}, {"u[0]_reg", "u[0]"}}));
  locate({"n_0", "u[0]"});
  EXPECT_EQ(at("u"), "1");
  EXPECT_EQ(at("u[0]"), "2");
}

TEST_F(ExtendedRulesTest, FlattenedNamesAreFoundUnderTheirLevels) {
  const std::string sub = cell("sub", "", instance("x_reg", "RTL_REG"));
  parse(RTL, top("", instance("u0", "sub") + instance(renamed("u1", "gen[1].u"), "sub"), sub));
  parse(SYNTH, top("", registers("FDRE", {{"u0_x_reg", "u0_x"}, {"gen_1__u_x_reg", "gen_x"}})));
  locate({"u0/x", "gen_x"});
  EXPECT_EQ(at("u0/x"), "1");
  EXPECT_EQ(at("gen[1].u/x"), "2");
}

TEST_F(ExtendedRulesTest, NoLevelIsJoinedThatIsAModuleStill) {
  const auto view = [](const std::string& cellName) {
    const std::string sub = cell("sub", "", instance("kept_reg", cellName));
    return top(
        "",
        instance("u0", "sub") + instance("u0_x_reg", cellName) + net("u0_x", pin("Q", "u0_x_reg")),
        sub);
  };
  parse(RTL, view("RTL_REG"));
  parse(SYNTH, view("FDRE"));
  locate({"u0/x"});
  EXPECT_EQ(at("u0_x"), "unknown");
  EXPECT_THAT(subject.locationReport().unmatchedNames, ElementsAre("u0/x"));
}

TEST_F(ExtendedRulesTest, PlaceThatIsToldTwiceStands) {
  readDesign(elaborated({"a_reg"}), registers("FDRE", {{"a_reg", "a"}}));
  const std::string line = "Bit 5 0x00000010 7 Block=SLICE_X1Y2 Latch=AQ Net=a\n";
  readLocations("Revision 3\n" + line + line);
  EXPECT_EQ(subject.locationReport().lines, 2U);
  EXPECT_EQ(subject.locationReport().used, 2U);
  EXPECT_EQ(subject.locationReport().unmatched, 0U);
  EXPECT_EQ(bit("/top/a")->getKind(), Bit::STATE);
  EXPECT_EQ(bit("/top/a")->getStateLoc2(), 7U);
}

TEST_F(ExtendedRulesTest, TwoRegistersThatMayHaveOneFlattenedNameStayUnmatched) {
  const std::string sub = cell("sub", "", instance("x_reg", "RTL_REG"));
  parse(RTL, top("", instance("u0", "sub") + instance("u0_x_reg", "RTL_REG"), sub));
  parse(SYNTH, top("", registers("FDRE", {{"u0_x_reg", "u0_x"}})));
  locate({"u0_x"});
  EXPECT_EQ(at("u0/x"), "unknown");
  EXPECT_EQ(at("u0_x"), "unknown");
}

TEST_F(ExtendedRulesTest, ANameIsItsOwnWhereTheLevelsOfTheOtherWereNotJoined) {
  const std::string sub = cell("sub", "", elaborated({"x_reg", "y_reg"}));
  parse(RTL, top("",
                 instance("u0", "sub") + instance("u1", "sub") +
                     elaborated({"u0_x_reg", "u1_x_reg", "a_b_reg", "a.b_reg"}),
                 sub));
  // Of u0, something is left under its own level; u1 was dissolved with "/".
  parse(SYNTH, top("",
                   instance("u0", "sub") + registers("FDRE", {{"u0_x_reg", "n0"},
                                                              {"u1_x_reg", "n1"},
                                                              {"u1/y_reg", "n2"},
                                                              {"a_b_reg", "n3"}}),
                   cell("sub", "", instance("y_reg", "FDRE"))));
  locate({"n0", "n1", "n2", "n3"});
  EXPECT_EQ(at("u0_x"), "1");
  EXPECT_EQ(at("u1_x"), "2");
  EXPECT_EQ(at("u1/y"), "3");
  EXPECT_EQ(at("a_b"), "4");
  EXPECT_EQ(at("u0/x"), "unknown");
  EXPECT_EQ(at("a.b"), "unknown");
}

TEST_F(ExtendedRulesTest, LinesThatContradictEachOtherCountForNothing) {
  readDesign(elaborated({"a_reg"}), registers("FDRE", {{"a_reg", "a"}}));
  locate({"a", "a"});
  EXPECT_EQ(at("a"), "unknown");
  EXPECT_EQ(subject.locationReport().used, 0U);
  EXPECT_EQ(subject.locationReport().unmatched, 2U);
}

TEST_F(ExtendedRulesTest, AllLinesThatSaidTheSameAreWithdrawn) {
  readDesign(elaborated({"a_reg"}), registers("FDRE", {{"a_reg", "a"}}));
  readLocations(line("a", 1) + line("a", 1) + line("a", 2));
  EXPECT_EQ(at("a"), "unknown");
  EXPECT_EQ(subject.locationReport().used, 0U);
  EXPECT_EQ(subject.locationReport().unmatched, 3U);
}

TEST_F(ExtendedRulesTest, TheRegistersOwnLatchIsSurerThanATap) {
  struct Case {
    std::string lines;
    std::string offset;
    unsigned used;
    unsigned skipped;
    unsigned unmatched;
  };
  const std::string tap1 = line("a", 1, "AMUX");
  const std::string tap2 = line("a", 2, "AMUX");
  const std::vector<Case> cases = {{tap1 + line("a", 3), "3", 1, 0, 1},
                                   {line("a", 3) + tap1, "3", 1, 1, 0},
                                   {tap1 + tap2 + line("a", 3), "3", 1, 0, 2},
                                   {tap1 + line("a", 3) + line("a", 4), "unknown", 0, 0, 3},
                                   {tap1 + tap2 + tap1, "unknown", 0, 0, 3}};
  readDesign(elaborated({"a_reg"}), registers("FDRE", {{"a_reg", "a"}}));
  LocationReport before = subject.locationReport();
  for (const Case& test : cases) {
    readLocations(test.lines);
    const LocationReport& report = subject.locationReport();
    EXPECT_EQ(at("a"), test.offset) << test.lines;
    EXPECT_EQ(report.used - before.used, test.used) << test.lines;
    EXPECT_EQ(report.skippedLatches - before.skippedLatches, test.skipped) << test.lines;
    EXPECT_EQ(report.unmatched - before.unmatched, test.unmatched) << test.lines;
    before = report;
  }
}

TEST_F(ExtendedRulesTest, TheNameAsItStandsIsSurerThanOneThatWasChanged) {
  readNetlists(top("", elaborated({"u0_x_reg"})),
               top("", registers("FDRE", {{"u0_x_reg", "u0_x"}})));
  readLocations(line("u0/x", 1) + line("u0_x", 2));
  EXPECT_EQ(at("u0_x", 0, SYNTH), "2");
  readLocations(line("u0_x", 2) + line("u0/x", 1));
  EXPECT_EQ(at("u0_x", 0, SYNTH), "2");
}

TEST_F(ExtendedRulesTest, EachOfAModulesManyLinesFindsItsOwnRegister) {
  constexpr unsigned count = 50;
  std::vector<std::string> inside;
  std::vector<std::pair<std::string, std::string>> synthesized;
  for (unsigned index = 0; index < count; ++index) {
    const std::string number = std::to_string(index);
    for (const std::string& name :
         {"bus_reg[" + number + "]", "one" + number + "_reg", "mem_reg[" + number + "][1]"}) {
      inside.push_back(name);
      std::string netName = name;
      netName.erase(netName.find("_reg"), 4);
      synthesized.emplace_back(name, netName);
    }
  }
  readNetlists(top("", instance("u0", "sub"), cell("sub", "", elaborated(inside))),
               top("", instance("u0", "sub"), cell("sub", "", registers("FDRE", synthesized))));
  std::vector<std::string> nets;
  for (unsigned index = 0; index < count; ++index) {
    const std::string number = std::to_string(index * 7 % count);
    for (const std::string& name : {"one" + number, "gone" + number, "bus[" + number + "]",
                                    "mem[" + number + "][1]", "other/one" + number}) {
      nets.push_back(name.starts_with("other") ? name : "u0/" + name);
    }
  }
  locate(nets);
  for (unsigned index = 0; index < count; ++index) {
    const std::string number = std::to_string(index * 7 % count);
    const unsigned first = index * 5 + 1;
    EXPECT_EQ(at("u0/one" + number), std::to_string(first));
    EXPECT_EQ(at("u0/bus", index * 7 % count), std::to_string(first + 2));
    EXPECT_EQ(at("u0/mem<" + number + ">", 1), std::to_string(first + 3));
  }
  EXPECT_EQ(subject.locationReport().used, 3U * count);
  EXPECT_EQ(subject.locationReport().unmatched, 2U * count);
}

TEST_F(ExtendedRulesTest, LinesOfADissolvedModuleFindItsRegisters) {
  const std::string sub = cell("sub", "", elaborated({"x_reg", "y_reg", "b_reg[2]"}));
  parse(RTL, top("", instance("u0", "sub"), sub));
  parse(
      SYNTH,
      top("", registers("FDRE",
                        {{"u0_x_reg", "u0_x"}, {"u0_y_reg", "u0_y"}, {"u0_b_reg[2]", "u0_b[2]"}})));
  locate({"u0/y", "u0/z", "u0/x", "u0/b[2]"});
  EXPECT_EQ(at("u0/y"), "1");
  EXPECT_EQ(at("u0/x"), "3");
  EXPECT_EQ(at("u0/b", 2), "4");
  EXPECT_EQ(subject.locationReport().unmatched, 1U);
}

TEST_F(ExtendedRulesTest, WhatIsJoinedAtTheTopIsNoIndexOfNothing) {
  readDesign(elaborated({"<a_b>_reg"}), registers("FDRE", {{"<a_b>_reg", "n"}}));
  locate({"[a/b]", "[a/b][3]"});
  EXPECT_EQ(at("<a_b>"), "unknown");
  EXPECT_EQ(subject.locationReport().unmatched, 2U);
}

TEST_F(ExtendedRulesTest, AFrameThatFitsNoDeviceKeepsItsTurn) {
  readDesign(elaborated({"a_reg"}), registers("FDRE", {{"a_reg", "a"}}));
  readLocations(line("x", 1) + "Bit 5 0x123456789 7 Block=SLICE_X1Y2 Latch=AMUX Net=a\n" +
                line("z", 1) + line("a", 2));
  EXPECT_THAT(subject.locationReport().unmatchedNames, ElementsAre("x", "a", "z"));
  EXPECT_EQ(at("a"), "2");
}

TEST_F(ExtendedRulesTest, LinesBeforeAReaderIsStoppedCount) {
  readDesign(elaborated({"a_reg"}), registers("FDRE", {{"a_reg", "a"}}));
  const MessageHandlerScope scope(
      [](int, const char*, void*) { throw std::runtime_error("stop"); });
  const test::TempFile file(line("a", 3) + "Bit 5 0x00000010 7 Block=A Latch=AQ Net=x\n",
                            "design.ll");
  EXPECT_THROW(subject.parse_ll(file.path()), std::runtime_error);
  EXPECT_EQ(at("a", 0, SYNTH), "3");
  EXPECT_EQ(subject.locationReport().used, 1U);
}

TEST_F(ExtendedRulesTest, UnmatchedNamesAreToldInTheOrderOfTheirLines) {
  readDesign(elaborated({"a_reg"}), registers("FDRE", {{"a_reg", "a"}}));
  locate({"u1/x", "u0/y", "a", "z", "u1/a", "a", "u0/(b", "u1/c"});
  EXPECT_THAT(subject.locationReport().unmatchedNames,
              ElementsAre("u1/x", "u0/y", "z", "u1/a", "a", "u0/(b", "u1/c"));
  EXPECT_EQ(subject.locationReport().unmatched, 8U);
}

TEST_F(ExtendedRulesTest, LinesFarApartAreHeldAgainstEachOther) {
  readDesign(elaborated({"a_reg", "b_reg", "c_reg"}),
             registers("FDRE", {{"a_reg", "a"}, {"b_reg", "b"}, {"c_reg", "c"}}));
  std::string text = line("a", 1) + line("b", 2) + line("b", 2) + line("c", 3);
  constexpr unsigned between = 600'000;
  for (unsigned at = 0; at < between; ++at) text += line("u/x", 4);
  readLocations(text + line("a", 5) + line("b", 2));
  EXPECT_EQ(at("a"), "unknown");
  EXPECT_EQ(at("b"), "2");
  EXPECT_EQ(at("c"), "3");
  EXPECT_EQ(subject.locationReport().lines, between + 6U);
  EXPECT_EQ(subject.locationReport().used, 4U);
  EXPECT_EQ(subject.locationReport().unmatched, between + 2U);
}

TEST_F(ExtendedRulesTest, RegistersOfSeveralBitsMeetThoseOfOne) {
  const std::string wide = id();
  readDesign(instance(renamed(wide, "q_reg[7:4]"), "RTL_wide_fd"),
             registers("FDRE", {{"q_reg[7]", "n7"}, {"q_reg[6]", "n6"}, {"q_reg[4]", "n4"}}));
  locate({"n7", "n6", "n4"});
  EXPECT_EQ(range("/top/q"), "4..7");
  EXPECT_EQ(at("q", 7), "1");
  EXPECT_EQ(at("q", 6), "2");
  EXPECT_EQ(at("q", 5), "unknown");
  EXPECT_EQ(at("q", 4), "3");
}

TEST_F(ExtendedRulesTest, TheLeftEndOfARangeThatCountsUpIsTheHighestBit) {
  readDesign(instance(renamed(id(), "q_reg[0:3]"), "RTL_wide_fd"),
             registers("FDRE", {{"q_reg[0]", "n0"}, {"q_reg[3]", "n3"}}));
  const BitRef* left = signal("/top/q_reg[0:3]/Q")->getBitRef(3);
  EXPECT_EQ(left->getBit(), bit("/top/q", 0));
  locate({"n0", "n3"});
  EXPECT_EQ(at("q", 0), "1");
  EXPECT_EQ(at("q", 3), "2");
}

TEST_F(ExtendedRulesTest, ANetOfTheNameDoesNotOverwriteARegister) {
  // Synthesis dropped the register "a" and gave its name to the output net of "b".
  readDesign(elaborated({"a_reg", "b_reg"}), registers("FDRE", {{"b_reg", "a"}}));
  locate({"a"});
  EXPECT_EQ(at("b"), "1");
  EXPECT_EQ(at("a"), "unknown");
}

TEST_F(ExtendedRulesTest, AConstantIsTheRegistersOwn) {
  readDesign(elaborated({"u_reg[1]", "foo_reg", "foo_reg_reg"}), "");
  readLog(constant("u_reg[1]") + constant("foo_reg", "0"));
  EXPECT_EQ(at("u", 1), "constant 1");
  EXPECT_EQ(at("foo"), "constant 0");
  EXPECT_EQ(at("foo_reg"), "unread");
  EXPECT_EQ(subject.logReport().used, 2U);
}

TEST_F(ExtendedRulesTest, ALogThatContradictsALocationIsNotBelieved) {
  const std::vector<std::pair<std::string, std::string>> names = {{"foo_reg", "foo"},
                                                                  {"foo_reg_reg", "n_0"}};
  readDesign(elaborated({"foo_reg", "foo_reg_reg"}), registers("FDRE", names));
  locate({"foo"});
  readLog(constant("foo_reg"));
  EXPECT_EQ(at("foo"), "1");
  EXPECT_EQ(at("foo_reg"), "unknown");
  EXPECT_THAT(subject.logReport().unmatchedNames, ElementsAre("foo_reg"));
}

TEST_F(ExtendedRulesTest, AWholeRegisterMayBeConstant) {
  readDesign(elaborated({"a_reg[2]", "a_reg[1]", "a_reg[0]"}),
             registers("FDRE", {{"a_reg[2]", "a2"}}));
  readLog(constant("a_reg[1:0]", "0"));
  EXPECT_EQ(at("a", 0), "constant 0");
  EXPECT_EQ(at("a", 1), "constant 0");
  EXPECT_EQ(at("a", 2), "unknown");
}

TEST_F(ExtendedRulesTest, MarksOfALogAreNoPartOfANameUnlessTheDesignHasThem) {
  const std::string sub = cell("sub", "", instance("x_reg", "RTL_REG"));
  parse(RTL, top("",
                 instance("i_1", "sub") + instance("u0", "sub") + instance("x_reg", "RTL_REG") +
                     instance(named("gen[0].u"), "sub") + instance("y_reg", "RTL_REG"),
                 sub));
  parse(SYNTH, top("", ""));
  readLog(constant("i_0/u0:/\\x_reg") + constant("i_1/x_reg", "0") + constant("part:/\\y_reg") +
          constant("i_0/\\gen[0].u /x_reg", "0"));
  EXPECT_EQ(at("gen[0].u/x"), "constant 0");
  EXPECT_EQ(at("u0/x"), "constant 1");
  EXPECT_EQ(at("i_1/x"), "constant 0");
  EXPECT_EQ(at("y"), "constant 1");
  EXPECT_EQ(at("x"), "unread");
}

TEST_F(ExtendedRulesTest, AMergedRegisterShowsItsSurvivor) {
  readDesign(elaborated({"a_reg", "b_reg", "c_reg"}), registers("FDRE", {{"c_reg", "c"}}));
  locate({"c"});
  readLog(merged("a_reg", "b_reg") + merged("b_reg", "c_reg"));
  EXPECT_EQ(at("c"), "1");
  EXPECT_EQ(at("b"), "1");
  EXPECT_EQ(at("a"), "1");
  EXPECT_EQ(bit("/top/a"), bit("/top/c"));
  EXPECT_EQ(subject.logReport().used, 2U);
}

TEST_F(ExtendedRulesTest, WholeRegistersMergeFromLeftToLeft) {
  readDesign(elaborated({"x_reg[0]", "x_reg[1]", "y_reg[9]", "y_reg[8]"}),
             registers("FDRE", {{"y_reg[9]", "y9"}, {"y_reg[8]", "y8"}}));
  locate({"y9", "y8"});
  readLog("INFO: [Synth 8-4471] merging register 'x_reg[0:1]' into 'y_reg[9:8]' [top.v:41]\n");
  EXPECT_EQ(at("x", 0), "1");
  EXPECT_EQ(at("x", 1), "2");
}

TEST_F(ExtendedRulesTest, AMergeOfALocatedRegisterIsNotBelieved) {
  readDesign(elaborated({"a_reg", "b_reg"}), registers("FDRE", {{"a_reg", "a"}, {"b_reg", "b"}}));
  locate({"a", "b"});
  readLog(merged("a_reg", "b_reg") + merged("nobody_reg", "b_reg"));
  EXPECT_EQ(at("a"), "1");
  EXPECT_EQ(at("b"), "2");
  EXPECT_THAT(subject.logReport().unmatchedNames, ElementsAre("nobody_reg", "a_reg"));
}

TEST_F(ExtendedRulesTest, ALogThatWasCutShortIsKnown) {
  readDesign("", "");
  readLog("INFO: a message\n");
  EXPECT_FALSE(subject.logReport().suppressed);
  readLog(
      "INFO: [Common 17-14] Message 'Synth 8-3333' appears 100 times and further instances of "
      "the messages will be disabled.\n");
  EXPECT_TRUE(subject.logReport().suppressed);
}

TEST_F(ExtendedRulesTest, TheRegionOfALineIsTheThirdNumber) {
  readDesign(elaborated({"a_reg"}), registers("FDRE", {{"a_reg", "a"}}));
  readLocations(
      "Revision 4\n"
      "Bit   30594158 0x0004640c  878 SLR2 0 Block=SLICE_X49Y78 Latch=AQ2 Net=a\n");
  EXPECT_EQ(at("a"), "878");
  EXPECT_EQ(bit("/top/a")->getStateLoc3(), 2U);
}

TEST_F(ExtendedRulesTest, BlocksWithoutRegistersAreSkipped) {
  readDesign(elaborated({"a_reg"}), registers("FDRE", {{"a_reg", "a"}}));
  readLocations(
      "Bit 1 0x10 1 Block=RAMB36_X2Y0 Latch=DOBU15 Net=a\n"
      "Bit 1 0x10 2 Block=B9 Latch=I Net=a\n"
      "Bit 1 0x10 3 Block=SOMETHING Latch=AQ Net=a\n"
      "Bit 1 0x10 4 Block=SLICE_X1Y1 Latch=AQ Net=a\n");
  EXPECT_EQ(at("a"), "4");
  EXPECT_EQ(subject.locationReport().lines, 4U);
  EXPECT_EQ(subject.locationReport().skippedBlocks, 3U);
  EXPECT_EQ(subject.locationReport().used, 1U);
}

TEST_F(ExtendedRulesTest, AMultiplexersTapCountsOnlyWhereARegisterDrives) {
  readDesign(elaborated({"a_reg"}), registers("FDRE", {{"a_reg", "a"}}) + instance("lut", "LUT2") +
                                        net("logic", pin("O", "lut")));
  locate({"a", "logic"}, "AMUX");
  EXPECT_EQ(at("a"), "1");
  EXPECT_EQ(at("logic", 0, SYNTH), "unknown");
  EXPECT_EQ(subject.locationReport().skippedLatches, 1U);
}

TEST_F(ExtendedRulesTest, LatchesAndFallingEdgesCount) {
  const std::string ports = input("D") + output("Q");
  const auto view = [&](const std::string& first, const std::string& second) {
    return top("", registers(first, {{"a_reg", "a"}}) + registers(second, {{"b_reg", "b"}}),
               cell(first, ports) + cell(second, ports));
  };
  parse(RTL, view("RTL_LATCH7", "RTL_REG_SYNC__BREG_3"));
  parse(SYNTH, view("LDCE", "FDRE_1"));
  locate({"a", "b"});
  EXPECT_EQ(at("a"), "1");
  EXPECT_EQ(at("b"), "2");
}

TEST_F(ExtendedRulesTest, AModuleNamedLikeALatchIsNone) {
  const std::string own = cell("LD", "", instance("x_reg", "RTL_REG"));
  parse(RTL, top("", instance("a_reg", "LD"), own));
  EXPECT_EQ(at("a"), "no bit");
  EXPECT_EQ(at("a_reg/x"), "unknown");
}

TEST_F(ExtendedRulesTest, AnUnreadRegisterTakesWhatArrivesLater) {
  readDesign(elaborated({"a_reg"}), registers("FDRE", {{"a_reg", "a"}}));
  bit("/top/a")->setKind(Bit::UNREAD);
  locate({"a"});
  EXPECT_EQ(at("a"), "1");
}

TEST_F(ExtendedRulesTest, ALocationFileReplacesAnEarlierOne) {
  readDesign(elaborated({"a_reg", "b_reg"}), registers("FDRE", {{"a_reg", "a"}, {"b_reg", "b"}}));
  locate({"a", "b"});
  locate({"b"});
  EXPECT_EQ(at("a"), "unknown");
  EXPECT_EQ(at("a", 0, SYNTH), "unknown");
  EXPECT_EQ(at("b"), "1");
}

TEST_F(ExtendedRulesTest, ALocationFileThatPlacesNothingLeavesTheEarlierOne) {
  readDesign(elaborated({"a_reg"}), registers("FDRE", {{"a_reg", "a"}}));
  locate({"a"});
  readLocations("Bit 1 0x10 7 Block=RAMB36_X2Y0 Latch=DOBU15 Net=a\n");
  EXPECT_EQ(at("a"), "1");
}

TEST_F(ExtendedRulesTest, ANetMayBeNamedLikeARegisterThatDoesNotDriveIt) {
  readDesign(elaborated({"cnt_reg[3]", "cnt_reg_reg[3]", "x_reg", "y_reg"}),
             registers("FDRE", {{"cnt_reg[3]", "cnt_reg[3]"},
                                {"cnt_reg_reg[3]", "q[3]"},
                                {"x_reg", "y"},
                                {"y_reg", "y_reg_n_0"}}));
  locate({"cnt_reg[3]", "q[3]", "y", "y_reg_n_0"});
  EXPECT_EQ(at("cnt", 3), "1");
  EXPECT_EQ(at("cnt_reg", 3), "2");
  EXPECT_EQ(at("x"), "3");
  EXPECT_EQ(at("y"), "4");
}

TEST_F(ExtendedRulesTest, ASavedModelKeepsSuchNetsApart) {
  readDesign(elaborated({"x_reg", "y_reg"}),
             registers("FDRE", {{"x_reg", "y"}, {"y_reg", "y_reg_n_0"}}));
  const test::TempFile file("", "design.xrf");
  subject.exportDesign(file.path(), true);
  resetModel();
  Design loaded(Matching::Extended);
  run([&] { loaded.parse_xrf(file.path()); });
  const test::TempFile locations("Bit 5 0x10 7 Block=SLICE_X1Y2 Latch=AQ Net=y\n");
  run([&] { loaded.parse_ll(locations.path()); });
  EXPECT_EQ(loaded.findSignal(RTL, "/top/x")->getBitRef(0)->getBit()->getStateLoc2(), 7U);
  EXPECT_EQ(loaded.findSignal(RTL, "/top/y")->getBitRef(0)->getBit()->getKind(), Bit::UNKNOWN);
}

TEST_F(ExtendedRulesTest, LogicOnANetOfARegistersNameDoesNotLocateTheRegister) {
  readDesign(elaborated({"y_reg"}), registers("FDRE", {{"y_reg", "y_reg_n_0"}}) +
                                        instance("lut", "LUT2") + net("y", pin("O", "lut")));
  locate({"y"}, "AMUX");
  EXPECT_EQ(at("y"), "unknown");
  EXPECT_EQ(subject.locationReport().skippedLatches, 1U);
}

TEST_F(ExtendedRulesTest, WhatIsDisputedTakesNothingFromANetOfTheName) {
  readDesign(elaborated({"a b_reg", "a_b_reg"}), registers("FDRE", {{"a_b_reg", "a_b"}}));
  locate({"a_b"});
  EXPECT_EQ(at("a_b", 0, SYNTH), "1");
  EXPECT_EQ(at("a_b"), "unknown");
  EXPECT_EQ(subject.coverage().all.located, 0U);
}

TEST_F(ExtendedRulesTest, OneNameOfSeveralObjectsTellsNothing) {
  const std::string sub = cell("sub", "", registers("RTL_REG", {{"x_reg", "x"}}));
  parse(RTL, top("", instance("u0", "sub") + elaborated({"a_reg"}), sub));
  parse(SYNTH, top("", instance("u0", "sub") + registers("FDRE", {{"a_reg", "u0/x"}}),
                   cell("sub", "", registers("FDRE", {{"x_reg", "x"}}))));
  locate({"u0/x"});
  EXPECT_EQ(at("a"), "unknown");
  EXPECT_EQ(at("u0/x"), "unknown");
  EXPECT_EQ(subject.locationReport().unmatched, 1U);
}

TEST_F(ExtendedRulesTest, EqualSignsArePartOfNetNames) {
  readDesign(elaborated({"a=b_reg", "a_b_reg"}),
             registers("FDRE", {{"a=b_reg", "a=b"}, {"a_b_reg", "n_0"}}));
  locate({"a=b"});
  EXPECT_EQ(at("a=b"), "1");
  EXPECT_EQ(at("a_b"), "unknown");
}

TEST_F(ExtendedRulesTest, TheOutputOfAWideCellIsKnownByItsPrintableName) {
  const std::string wide =
      cell("RTL_wide_fd4", input("C") + port(array(renamed("Q_", "Q[3:0]"), "4"), "OUTPUT"));
  parse(RTL, top("", instance(renamed(id(), "q_reg[3:0]"), "RTL_wide_fd4"), wide));
  parse(SYNTH, top("", registers("FDRE", {{"q_reg[2]", "n_2"}})));
  locate({"n_2"});
  EXPECT_EQ(at("q", 2), "1");
  EXPECT_EQ(subject.coverage().all.total(), 4U);
}

TEST_F(ExtendedRulesTest, WhatHasAFlipFlopIsNeitherConstantNorMerged) {
  readDesign(elaborated({"a_reg", "b_reg", "c_reg"}),
             registers("FDRE", {{"a_reg", "a"}, {"b_reg", "b"}, {"c_reg", "c"}}));
  readLog(constant("a_reg") + merged("b_reg", "c_reg"));
  EXPECT_EQ(at("a"), "unknown");
  EXPECT_NE(bit("/top/b"), bit("/top/c"));
  EXPECT_THAT(subject.logReport().unmatchedNames, ElementsAre("a_reg", "b_reg"));
}

TEST_F(ExtendedRulesTest, ARegisterIsMergedIntoOneOtherOnly) {
  readDesign(elaborated({"a_reg", "b_reg", "c_reg"}),
             registers("FDRE", {{"b_reg", "b"}, {"c_reg", "c"}}));
  readLog(merged("a_reg", "b_reg") + merged("a_reg", "c_reg"));
  EXPECT_NE(bit("/top/b"), bit("/top/c"));
  EXPECT_EQ(subject.logReport().used, 1U);
  EXPECT_EQ(subject.logReport().unmatched, 1U);
}

TEST_F(ExtendedRulesTest, BitsThatAreOneConstantDoNotSpoilAMerge) {
  readDesign(elaborated({"x_reg[1]", "x_reg[0]", "y_reg[1]", "y_reg[0]"}),
             registers("FDRE", {{"y_reg[0]", "y0"}}));
  readLog(constant("x_reg[1]", "0") + constant("y_reg[1]", "0") +
          "INFO: [Synth 8-4471] merging register 'x_reg[1:0]' into 'y_reg[1:0]'\n");
  EXPECT_EQ(bit("/top/x", 0), bit("/top/y", 0));
  EXPECT_EQ(at("x", 1), "constant 0");
  EXPECT_EQ(subject.logReport().used, 3U);
}

/// A register pair in the top and in a module of one kind or another.
class LocalMergeTest : public ExtendedRulesTest {
 protected:
  void read(bool topHasThem) {
    const std::string sub = cell("sub", "", elaborated({"x_reg", "y_reg"}));
    parse(RTL, top("",
                   instance("u", "sub") + instance("v", "sub") +
                       (topHasThem ? elaborated({"x_reg", "y_reg"}) : ""),
                   sub));
    parse(SYNTH, top("", instance("u", "sub") + instance("v", "sub"),
                     cell("sub", "", registers("FDRE", {{"y_reg", "y"}}))));
    readLog("INFO: [Synth 8-4471] merging register 'x_reg' into 'y_reg' [sub.v:41]\n");
  }
};

TEST_F(LocalMergeTest, NamesWithoutAPathAreThoseOfTheirModule) {
  read(false);
  EXPECT_EQ(bit("/top/u/x"), bit("/top/u/y"));
  EXPECT_EQ(bit("/top/v/x"), bit("/top/v/y"));
  EXPECT_NE(bit("/top/u/x"), bit("/top/v/x"));
}

TEST_F(LocalMergeTest, NamesThatModulesOfTwoKindsHaveTellNothing) {
  read(true);
  EXPECT_NE(bit("/top/x"), bit("/top/y"));
  EXPECT_NE(bit("/top/u/x"), bit("/top/u/y"));
  EXPECT_EQ(subject.logReport().unmatched, 1U);
}

TEST_F(ExtendedRulesTest, AWordBeforeAColonMayBeWhatAModuleIsDefinedAs) {
  const std::string sub = cell("sub", "", elaborated({"x_reg"}));
  parse(RTL, top("", instance("u", "sub") + elaborated({"x_reg"}), sub));
  parse(SYNTH, top("", instance("u", "sub"), cell("sub", "", instance("lut", "LUT2"))));
  readLog(constant("sub:/\\x_reg"));
  EXPECT_EQ(at("u/x"), "constant 1");
  EXPECT_EQ(at("x"), "unread");
}

TEST_F(ExtendedRulesTest, ANetThatIsNamedLikeAnInstanceIsNoRegister) {
  readDesign(registers("RTL_REG", {{"bar_reg", "foo_reg"}}), "");
  readLog(constant("foo_reg"));
  EXPECT_EQ(at("bar"), "unread");
  EXPECT_EQ(subject.logReport().unmatched, 1U);
}

TEST_F(ExtendedRulesTest, AModuleNamedLikeARegisterCellIsNone) {
  const std::string bank = cell("RTL_REGFILE", output("Q"), instance("x_reg", "RTL_REG"));
  parse(RTL, top("", instance("bank_reg", "RTL_REGFILE"), bank));
  EXPECT_EQ(subject.coverage().all.total(), 1U);
}

TEST_F(ExtendedRulesTest, ANameOfVeryManyLevelsCostsNoMemory) {
  readDesign(elaborated({"a_reg"}), registers("FDRE", {{"a_reg", "a"}}));
  const std::string levels = test::repeat("i_0/", 50000);
  locate({levels + "a"});
  readLog(constant(levels + "a_reg"));
  EXPECT_EQ(at("a"), "unknown");
}

TEST_F(ExtendedRulesTest, AnEmptyNameIsAnUnderscore) {
  readDesign(elaborated({""}), "");
  const test::TempFile file("", "design.xrf");
  subject.exportDesign(file.path(), true);
  resetModel();
  Design loaded(Matching::Extended);
  run([&] { loaded.parse_xrf(file.path()); });
  EXPECT_FALSE(fatal);
  EXPECT_NE(loaded.findModule(RTL, "/top/_"), nullptr);
}

}  // namespace
