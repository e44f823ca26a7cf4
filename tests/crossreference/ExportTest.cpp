#include "tests/Edif.h"
#include "tests/crossreference/ReadingTest.h"

#include <signal.h>
#include <string>
#include <sys/resource.h>

using namespace XRF_RTL2LL;

namespace {

/// The writer of cross-reference files.
class ExportTest : public test::ReadingTest {
 protected:
  Module* makeTop(const char* name = "top") { return makeModule(new Module("", "", 0), name, 0); }
  Module* makeModule(Module* parent, const char* name, unsigned int id) {
    auto* made = new Module(name, "def", id);
    parent->addChild(made);
    return made;
  }
  Signal* makeSignal(Module* parent, const char* name, unsigned int id, unsigned int lsb,
                     unsigned int msb) {
    auto* made = new Signal(parent, name, id, lsb, msb, false);
    parent->addSignal(made);
    (new Net)->addSignal(made);
    return made;
  }
  static void declareBits() { Bit::setMaxBitId(Bit::getNextId() - 1); }
  std::string exported(Module* rtl, Module* synth, bool showHidden = true) {
    const test::TempFile file;
    EXPECT_EQ(Export::exportDesign(TORVAL7, rtl, synth, file.path(), showHidden), 0);
    return file.content();
  }
  static void updateVisible(Module* top) {
    top->updateVisibleChildren(true);
    top->updateVisibleSignals(true);
  }
};
using ExportDeathTest = ExportTest;

TEST_F(ExportTest, SmallFile) {
  Module* rtl = makeTop();
  Module* synth = makeTop();
  auto* net = new Net;
  auto* q = new Signal(rtl, "q", 0, 0, 1, false);
  auto* s = new Signal(synth, "q", 0, 0, 0, true);
  s->setBitRef(0, new BitRef(s, 0));
  s->getBitRef(0)->setBit(q->getBitRef(0)->getBit());
  for (Signal* each : {q, s}) {
    each->setKind(OUT);
    net->addSignal(each);
  }
  rtl->addSignal(q);
  synth->addSignal(s);
  q->addState(0, 5, 6);
  declareBits();
  EXPECT_EQ(
      exported(rtl, synth),
      "(VERSION 1)\n(FAMILY TORVAL7)\n(BITS 2)\n(NETS 1)\n(BIT 0 STATE z 5 6 0)\n(BIT 1 ? z)\n"
      "\n(VIEW RTL)\n\n(MOD VISIBLE def top 0\n\n   (SIG VISIBLE OUT q 0 0 0 1 0 1))\n"
      "(VIEW SYNTH)\n\n(MOD VISIBLE def top 0\n\n   (SIG VISIBLE OUT q 0 0 0 0 0))");
}

TEST_F(ExportTest, BitRecordsOfEveryKind) {
  (new Bit)->setKind(Bit::UNREAD);
  Bit* one = new Bit;
  one->setKind(Bit::CNST);
  one->setValue(true);
  one->setValueStr("z");  // a constant shows its value, not its text
  Bit* state = new Bit;
  state->setKind(Bit::STATE);
  state->setStateLoc(4294967295U, 31, 2);
  Bit* unknown = new Bit;
  unknown->setValue(true);  // and any other bit its text
  declareBits();
  const std::string text = exported(nullptr, nullptr);
  EXPECT_NE(text.find("(BITS 4)\n(NETS 0)\n(BIT 0 UNREAD z)\n(BIT 1 CNST 1)\n"
                      "(BIT 2 STATE z 4294967295 31 2)\n(BIT 3 ? 1)\n\n(VIEW RTL)"),
            std::string::npos)
      << text;
}

TEST_F(ExportTest, BitCountIsTheDeclaredOne) {
  new Bit;
  Bit::setMaxBitId(6);
  EXPECT_NE(exported(nullptr, nullptr).find("(BITS 7)\n(NETS 0)\n(BIT 0 ? z)\n\n"),
            std::string::npos);
}

TEST_F(ExportTest, MissingTopsLeaveTheirViewLines) {
  EXPECT_EQ(
      exported(nullptr, nullptr),
      "(VERSION 1)\n(FAMILY TORVAL7)\n(BITS 1)\n(NETS 0)\n\n(VIEW RTL)\n\n\n(VIEW SYNTH)\n\n");
}

TEST_F(ExportTest, MissingSynthesizedTop) {
  const std::string text = exported(makeTop(), nullptr);
  EXPECT_EQ(text.substr(text.find("(VIEW")),
            "(VIEW RTL)\n\n(MOD VISIBLE def top 0)\n(VIEW SYNTH)\n\n");
}

TEST_F(ExportTest, TreeIsIndentedAndClosesAtTheEndOfItsLastLine) {
  Module* top = makeTop();
  Module* u = makeModule(top, "u", 2);
  Module* v = makeModule(u, "v", 3);
  makeModule(top, "a", 4);
  makeSignal(top, "s", 1, 0, 0);
  makeSignal(v, "d", 1, 2, 3);
  makeSignal(v, "c", 2, 0, 0);
  declareBits();
  const std::string text = exported(top, nullptr);
  EXPECT_EQ(text.substr(text.find("(MOD")),
            "(MOD VISIBLE def top 0\n\n   (SIG VISIBLE WIRE s 1 0 0 0 0)\n\n"
            "   (MOD VISIBLE def a 4)\n"
            "   (MOD VISIBLE def u 2\n\n"
            "      (MOD VISIBLE def v 3\n\n"
            "         (SIG VISIBLE WIRE c 2 2 0 0 3)\n"
            "         (SIG VISIBLE WIRE d 1 1 2 3 1 2))))\n"
            "(VIEW SYNTH)\n\n");
  EXPECT_EQ(Module::getDepth(), 0U);
}

TEST_F(ExportTest, MissingReferencesAreWrittenAsNull) {
  Module* top = makeTop();
  auto* s = new Signal(top, "s", 9, 2, 3, true);
  top->addSignal(s);
  (new Net)->addSignal(s);
  s->setBitRef(3, new BitRef(s, 3));
  s->getBitRef(3)->setBit(new Bit);
  const std::string text = exported(top, nullptr);
  EXPECT_NE(text.find("(SIG VISIBLE WIRE s 9 0 2 3 NULL 0))"), std::string::npos) << text;
}

TEST_F(ExportTest, HiddenObjectsAreLeftOutUnlessShown) {
  Module* top = makeTop();
  Module* u = makeModule(top, "u", 2);
  makeModule(top, "v", 3);
  u->setHidden();
  makeSignal(top, "a", 1, 0, 0)->setHidden(true);
  makeSignal(top, "b", 2, 0, 0);
  declareBits();
  updateVisible(top);
  const std::string less = exported(top, nullptr, false);
  EXPECT_EQ(less.substr(less.find("(MOD")),
            "(MOD VISIBLE def top 0\n\n   (SIG VISIBLE WIRE b 2 1 0 0 1)\n\n"
            "   (MOD VISIBLE def v 3))\n(VIEW SYNTH)\n\n");
  const std::string all = exported(top, nullptr, true);
  EXPECT_EQ(all.substr(all.find("(MOD")),
            "(MOD VISIBLE def top 0\n\n   (SIG HIDDEN WIRE a 1 0 0 0 0)\n"
            "   (SIG VISIBLE WIRE b 2 1 0 0 1)\n\n"
            "   (MOD HIDDEN def u 2)\n   (MOD VISIBLE def v 3))\n(VIEW SYNTH)\n\n");
  EXPECT_EQ(less.substr(0, less.find("(MOD")), all.substr(0, all.find("(MOD")))
      << "the bits are written either way";
}

TEST_F(ExportTest, ShowHiddenHasItsEarlierValueAfterwards) {
  for (const bool before : {true, false}) {
    Module::setShowHidden(before);
    exported(nullptr, nullptr, false);
    EXPECT_EQ(Module::getShowHidden(), before);
    exported(nullptr, nullptr, true);
    EXPECT_EQ(Module::getShowHidden(), before);
  }
}

TEST_F(ExportTest, ShowHiddenHasItsEarlierValueAfterAnError) {
  Module::setShowHidden(true);
  const test::TempFile file;
  run([&] { Export::exportDesign(FAMILY_NONE, nullptr, nullptr, file.path(), false); });
  ASSERT_TRUE(fatal);
  EXPECT_TRUE(Module::getShowHidden());
}

TEST_F(ExportTest, EarlierContentIsReplaced) {
  const test::TempFile file(std::string(5000, 'x'));
  Export::exportDesign(TORVAL7, nullptr, nullptr, file.path(), true);
  EXPECT_EQ(file.content(), exported(nullptr, nullptr));
}

TEST_F(ExportDeathTest, PathThatCannotBeOpenedEndsSilently) {
  const std::string bad = test::TempFile().folder() + "/none/out.xrf";
  EXPECT_ENDS_WITH(Export::exportDesign(TORVAL7, nullptr, nullptr, bad, true), "");
  run([&] { Export::exportDesign(TORVAL7, nullptr, nullptr, bad, true); });
  expectSilent();
}

TEST_F(ExportDeathTest, DesignOfNoFamilyEndsSilentlyAfterTheVersion) {
  const test::TempFile file;
  EXPECT_ENDS_WITH(Export::exportDesign(FAMILY_NONE, nullptr, nullptr, file.path(), true), "");
  run([&] { Export::exportDesign(FAMILY_NONE, nullptr, nullptr, file.path(), true); });
  expectSilent();
  EXPECT_EQ(file.content(), "(VERSION 1)\n");
  run([&] { Export::exportDesign(Family(2), nullptr, nullptr, file.path(), true); });
  expectSilent();
}

TEST_F(ExportTest, WriteThatFailsIsFatal) {
  for (int i = 0; i < 20000; ++i) new Bit;
  declareBits();
  const test::TempFile file;
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
  const auto handler = ::signal(SIGXFSZ, SIG_IGN);
  const rlimit small{4096, before.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  run([&] { Export::exportDesign(TORVAL7, nullptr, nullptr, file.path(), true); });
  ::setrlimit(RLIMIT_FSIZE, &before);
  ::signal(SIGXFSZ, handler);
  ASSERT_TRUE(fatal);
  EXPECT_FALSE(fatal->text.empty());
  EXPECT_EQ(fatal->status, 1);
}

TEST_F(ExportTest, SignalWithoutANetIsFatal) {
  Module* top = makeTop();
  top->addSignal(new Signal(top, "s", 1, 0, 0, false));
  const test::TempFile file;
  run([&] { Export::exportDesign(TORVAL7, top, nullptr, file.path(), true); });
  ASSERT_TRUE(fatal);
  EXPECT_FALSE(fatal->text.empty());
}

// Writing what was read

TEST_F(ExportTest, WriteReadWriteIsIdentical) {
  using namespace edif;
  const std::string inner = cell("inner", port(array("d", "12"), "INPUT") + output("q"),
                                 instance("q_reg", "FDRE") + instance("m_reg[3][5]", "FDRE") +
                                     net("a.b", pin("Q", "q_reg") + pin(member("d", "11"))));
  const std::string text =
      top(input("a") + port(array("e", "3"), "OUTPUT"),
          instance("u", "inner") + instance("v", "inner") + instance("w_reg[7]", "FDRE") +
              net("n[4]", pin("q", "u") + pin(member("e", "0"))) +
              net("_const1_", pin("P", "p") + pin("a")) + instance("p", "VCC") +
              net("n[9]", pin("P", "p") + pin(member("d", "3"), "v")),
          inner);
  readRtl(text);
  readSynth(text);
  signal("/top/u/q", SYNTH)->addState(0, 0xffffffffU, 4095, 3);
  netlist.finalPostProcess();
  const test::TempFile first;
  subject.exportDesign(first.path(), true);

  Model model;
  const ModelScope scope(model);
  Design second;
  const test::TempFile again;
  run([&] { second.parse_xrf(first.path()); });
  ASSERT_FALSE(fatal) << fatal->text;
  Bit::setMaxBitId(Bit::getNextId() - 1);
  second.exportDesign(again.path(), true);
  EXPECT_EQ(again.content(), first.content());
  EXPECT_NE(first.content().find("STATE z 4294967295 4095 3)"), std::string::npos);
  EXPECT_NE(first.content().find("CNST 1)"), std::string::npos);
}

}  // namespace
