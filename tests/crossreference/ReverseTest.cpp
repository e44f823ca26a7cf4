#include "tests/Edif.h"
#include "tests/crossreference/DesignFilesTest.h"

#include <gmock/gmock.h>
#include <string>
#include <vector>

using namespace XRF_RTL2LL;
using edif::cell;
using edif::instance;
using edif::net;
using edif::pin;
using edif::renamed;
using edif::top;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

using Names = std::vector<std::string>;

/// From a place or a name of the implementation back to the registers of the RTL.
class ReverseTest : public test::DesignFilesTest {
 protected:
  void SetUp() override { subject.setMatching(Matching::Extended); }

  /// At frame 16.
  static std::string location(const std::string& net, unsigned offset) {
    return "Bit 5 0x10 " + std::to_string(offset) + " Block=SLICE_X1Y1 Latch=AQ Net=" + net + "\n";
  }
  static Names named(const Design& design, const std::vector<RegisterBit>& registers) {
    Names names;
    for (const RegisterBit& bit : registers) names.push_back(design.writtenName(bit));
    return names;
  }
  Names at(unsigned frame, unsigned offset, unsigned slr = 0) const {
    return named(subject, subject.registersAt(frame, offset, slr));
  }
  Names of(const std::string& name) const { return of(subject, name); }
  static Names of(const Design& design, const std::string& name) {
    const auto registers = design.registersOf(name);
    return registers ? named(design, *registers) : Names{"no such name"};
  }

  // Registers with brackets, in a scope and in records, in the top and in u.
  static std::string registers() {
    return instance(renamed("r1", "q_reg[3]"), "FDRE") +
           instance(renamed("r2", "q_reg[2]"), "FDRE") +
           instance(renamed("r3", "mem_reg[3][5]"), "FDRE") +
           instance(renamed("r4", "r_reg[tag][valid]"), "FDRE") +
           instance(renamed("r5", "gen[2].cnt_reg[0]"), "FDRE") + instance("on_reg", "FDRE");
  }
  static std::string design(const std::string& more = "", const std::string& inner = "") {
    return top("", instance("u", "sub") + registers() + more, cell("sub", "", registers() + inner));
  }
};

TEST_F(ReverseTest, PlaceTellsTheRegister) {
  readNetlists(design(), design());
  readLocations(location("u/q[3]", 3) + location("mem[3][5]", 4) +
                "Bit 9 0x10 3 SLR1 1 Block=SLICE_X1Y1 Latch=AQ Net=on\n");
  EXPECT_THAT(at(16, 3), ElementsAre("/top/u/q[3]"));
  EXPECT_THAT(at(16, 4), ElementsAre("/top/mem[3][5]"));
  EXPECT_THAT(at(16, 3, 1), ElementsAre("/top/on"));
  EXPECT_THAT(at(16, 4, 1), IsEmpty());
  EXPECT_THAT(at(17, 3), IsEmpty());
  EXPECT_THAT(at(0, 0), IsEmpty());
  const RegisterBit bit = subject.registersAt(16, 4).at(0);
  EXPECT_EQ(bit.signal, signal("/top/mem<3>"));
  EXPECT_EQ(bit.index, 5U);
}

TEST_F(ReverseTest, NamesAreThoseOfTheRtl) {
  readNetlists(design(), design());
  EXPECT_THAT(of("q_reg[3]"), ElementsAre("/top/q[3]"));
  EXPECT_THAT(of("mem_reg[3][5]"), ElementsAre("/top/mem[3][5]"));
  EXPECT_THAT(of("r_reg[tag][valid]"), ElementsAre("/top/r[tag][valid]"));
  EXPECT_THAT(of("on_reg"), ElementsAre("/top/on"));
  // A bus of one bit is still written with its index.
  EXPECT_THAT(of("gen[2].cnt_reg[0]"), ElementsAre("/top/gen[2].cnt[0]"));
}

TEST_F(ReverseTest, NameMayBeAnInstanceItsOutputItsNetOrABusBit) {
  const std::string driven = net(renamed("n", "n_0_q_reg[3]"), pin("Q", "r1"));
  readNetlists(design(), design(driven, driven));
  for (const char* name : {"u/q_reg[3]", "u/q_reg[3]/Q", "u/n_0_q_reg[3]", "u/q[3]",
                           "/top/u/q_reg[3]", "/top/u/q[3]", "/top/u/n_0_q_reg[3]"}) {
    EXPECT_THAT(of(name), ElementsAre("/top/u/q[3]")) << name;
  }
  EXPECT_THAT(of("u/q"), ElementsAre("/top/u/q[2]", "/top/u/q[3]"));
}

TEST_F(ReverseTest, NameThatIsNotThereIsToldFromOneThatIsNoRegister) {
  readNetlists(design(), design(instance("logic", "LUT2") + net("w", pin("O", "logic")) +
                                instance("extra_reg", "FDRE")));
  for (const char* name : {"nosuch", "u/nosuch", "q_reg[4]", "q[4]", "on_reg[3]", "u/on_reg[0]x",
                           "", "/", "/top", "/other/on_reg", "on_reg/Z", "/on_reg"}) {
    EXPECT_FALSE(subject.registersOf(name)) << name;
  }
  for (const char* name : {"u", "logic", "w", "logic/O", "logic/I0", "on_reg/D", "extra_reg"}) {
    ASSERT_TRUE(subject.registersOf(name)) << name;
    EXPECT_THAT(*subject.registersOf(name), IsEmpty()) << name;
  }
}

TEST_F(ReverseTest, MergedRegistersAllLiveInOnePlace) {
  const std::string x = instance("x_reg", "FDRE");
  readNetlists(design(x, x), design());
  readLocations(location("u/q[3]", 3));
  readLog(
      "merging instance 'x_reg' (FD) to 'u/x_reg'\n"
      "merging instance 'u/x_reg' (FD) to 'u/q_reg[3]'\n");
  const auto all = ElementsAre("/top/u/q[3]", "/top/u/x", "/top/x");
  EXPECT_THAT(at(16, 3), all);
  EXPECT_THAT(of("u/q_reg[3]"), all);
}

TEST_F(ReverseTest, ReplicaIsTheRegisterItCopies) {
  readNetlists(design(), design(instance(renamed("c", "q_reg[3]_rep__0"), "FDRE") +
                                net("copied", pin("Q", "c"))));
  EXPECT_THAT(of("q_reg[3]_rep__0"), ElementsAre("/top/q[3]"));
  EXPECT_THAT(of("copied"), ElementsAre("/top/q[3]"));
  readLocations(location("q[3]", 3) + location("copied", 4));
  EXPECT_THAT(at(16, 3), ElementsAre("/top/q[3]"));
  EXPECT_THAT(at(16, 4), ElementsAre("/top/q[3]"));
  EXPECT_EQ(subject.registersAt(16, 4)[0].signal->getBitRef(3)->getBit()->getStateLoc2(), 3U);
}

TEST_F(ReverseTest, FlattenedInstancesAreFound) {
  const std::string inner =
      cell("sub", "",
           instance(renamed("a", "a_reg[1]"), "FDRE") + instance(renamed("b", "b_reg[1]"), "FDRE"));
  readNetlists(top("", instance("u", "sub") + instance("v", "sub"), inner),
               top("", instance(renamed("ua", "u_a_reg[1]"), "FDRE") +
                           instance(renamed("vb", "v/b_reg[1]"), "FDRE")));
  EXPECT_THAT(of("u_a_reg[1]"), ElementsAre("/top/u/a[1]"));
  EXPECT_THAT(of("u/a_reg[1]"), ElementsAre("/top/u/a[1]"));
  EXPECT_THAT(of("u/a_reg[1]/Q"), ElementsAre("/top/u/a[1]"));
  EXPECT_THAT(of("v/b_reg[1]"), ElementsAre("/top/v/b[1]"));
}

TEST_F(ReverseTest, RegisterWhoseInstanceTellsNoBitGoesByItsNet) {
  const std::string odd = instance("odd", "FDRE") + net("value", pin("Q", "odd"));
  readNetlists(design("", odd), design("", odd));
  readLocations(location("u/value", 3));
  EXPECT_THAT(of("u/odd"), ElementsAre("/top/u/value"));
  EXPECT_THAT(of("u/value"), ElementsAre("/top/u/value"));
  EXPECT_THAT(at(16, 3), ElementsAre("/top/u/value"));
}

TEST_F(ReverseTest, ListsEveryRegisterOnce) {
  readNetlists(design(instance("x_reg", "FDRE")), design());
  readLocations(location("u/q[3]", 3) + location("q[2]", 4));
  readLog("merging instance 'x_reg' (FD) to 'u/q_reg[3]'\n");
  const Names inTop{"/top/gen[2].cnt[0]", "/top/mem[3][5]", "/top/on",
                    "/top/q[2]",          "/top/q[3]",      "/top/r[tag][valid]"};
  Names expected = inTop;
  for (const std::string& name : inTop) expected.push_back("/top/u" + name.substr(4));
  expected.emplace_back("/top/x");
  const std::vector<RegisterBit> registers = subject.registers();
  EXPECT_THAT(named(subject, registers), ::testing::UnorderedElementsAreArray(expected));
  EXPECT_EQ(subject.coverage().all.total(), registers.size());
}

TEST_F(ReverseTest, LoadedDesignAnswersAlike) {
  const std::string x = instance("x_reg", "FDRE");
  const std::string driven = net(renamed("n", "n_0_q_reg[3]"), pin("Q", "r1"));
  readNetlists(design(x), design(driven, driven));
  readLocations(location("u/q[3]", 3));
  readLog("merging instance 'x_reg' (FD) to 'u/q_reg[3]'\n");
  const test::TempFile file;
  subject.exportDesign(file.path(), true);
  Model model;
  const ModelScope scope(model);
  Design loaded(Matching::Extended);
  run([&] { loaded.parse_xrf(file.path()); });
  ASSERT_FALSE(fatal) << fatal->text;
  const auto both = ElementsAre("/top/u/q[3]", "/top/x");
  EXPECT_THAT(named(loaded, loaded.registersAt(16, 3)), both);
  for (const char* name : {"u/q_reg[3]", "u/n_0_q_reg[3]", "/top/u/q[3]"}) {
    EXPECT_THAT(of(loaded, name), both) << name;
  }
  EXPECT_THAT(of(loaded, "gen[2].cnt_reg[0]"), ElementsAre("/top/gen[2].cnt[0]"));
  EXPECT_THAT(of(loaded, "r_reg[tag][valid]"), ElementsAre("/top/r[tag][valid]"));
}

TEST_F(ReverseTest, StrictReadingGoesByInstances) {
  subject.setMatching(Matching::Strict);
  const std::string text =
      top("", instance("u", "sub"),
          cell("sub", "", instance("q_reg[3]", "FDRE") + net("q_3_", pin("Q", "q_reg[3]"))));
  readNetlists(text, text);
  readLocations(location("u/q[3]", 3));
  readLog("");
  EXPECT_THAT(at(16, 3), ElementsAre("/top/u/q[3]"));
  EXPECT_THAT(of("u/q_reg[3]"), ElementsAre("/top/u/q[3]"));
  EXPECT_THAT(of("u/q_3_"), ElementsAre("/top/u/q[3]"));
}

}  // namespace
