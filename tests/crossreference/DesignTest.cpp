#include "tests/Edif.h"
#include "tests/crossreference/ReadingTest.h"

#include <stdexcept>
#include <string>
#include <thread>

using namespace XRF_RTL2LL;
using edif::cell;
using edif::input;
using edif::instance;
using edif::net;
using edif::output;
using edif::pin;
using edif::port;
using edif::property;
using edif::renamed;
using edif::top;

namespace {

/// The facade: reading, look-ups by name, models.
class DesignTest : public test::ReadingTest {
 protected:
  void parseRtl(const std::string& text) {
    const test::TempFile file(text);
    path = file.path();
    run([&] { EXPECT_EQ(subject.parse_rtl(path), 0); });
    ASSERT_FALSE(fatal) << fatal->text;
  }
  void parseSynth(const std::string& text) {
    const test::TempFile file(text);
    path = file.path();
    run([&] { EXPECT_EQ(subject.parse_synth(path), 0); });
    ASSERT_FALSE(fatal) << fatal->text;
  }
  /// A module of a given path, known to the design without any tree.
  Module* registerModule(EdifView view, const char* modulePath, const char* name,
                         opKind kind = HIER) {
    auto* made = new Module(name, "def", 1);
    made->setPath(modulePath);
    made->setKind(kind);
    netlist.registerModule(view, made);
    return made;
  }
  Signal* registerSignal(EdifView view, Module* owner, const char* name, unsigned int lsb = 0,
                         unsigned int msb = 0) {
    auto* made = new Signal(owner, name, 1, lsb, msb, false);
    netlist.registerSignal(view, made);
    return made;
  }
  /// Runs an action that must find the design's model gone.
  template <class Action>
  void expectGone(Action action) {
    run(action);
    ASSERT_TRUE(fatal);
    EXPECT_FALSE(fatal->text.empty());
    EXPECT_EQ(fatal->status, 1);
  }
};
using DesignDeathTest = DesignTest;

const char* const kNoTop = "(edif netlist (status (written (program \"Tarvona\"))))";

// Reading

TEST_F(DesignTest, FreshDesignKnowsNothing) {
  EXPECT_EQ(subject.getFamily(), FAMILY_NONE);
  EXPECT_EQ(subject.findModule(RTL, "/top"), nullptr);
  EXPECT_EQ(subject.findSignal(RTL, "/top/a"), nullptr);
  EXPECT_EQ(subject.getInUseBitCount(), 0U);
  EXPECT_EQ(subject.findModule(7U), nullptr);
  EXPECT_NE(subject.getNetlist(), nullptr);
}

TEST_F(DesignTest, FamilyIsTheNetlists) {
  parseRtl(top(input("a"), ""));
  EXPECT_EQ(subject.getFamily(), TORVAL7);
}

TEST_F(DesignTest, UnusedLookUpsStayEmpty) {
  parseRtl(top(input("a"), ""));
  parseSynth(top(input("a"), ""));
  for (const unsigned int id : {0U, 7U, code("top")}) EXPECT_EQ(subject.findModule(id), nullptr);
  EXPECT_EQ(subject.getInUseBitCount(), 0U);
  run([&] { subject.dump(); });
  EXPECT_EQ(out + err, "");
}

TEST_F(DesignDeathTest, RtlWithoutATop) {
  const test::TempFile file(kNoTop);
  EXPECT_ENDS_WITH(subject.parse_rtl(file.path()), "ERROR: Top module not found\n");
  run([&] { subject.parse_rtl(file.path()); });
  expectPrinted("ERROR: Top module not found\n");
  EXPECT_EQ(fatal->file, file.path());
}

TEST_F(DesignDeathTest, SynthesizedNetlistWithoutATopEndsSilently) {
  const test::TempFile file(kNoTop);
  EXPECT_ENDS_WITH(subject.parse_synth(file.path()), "");
  run([&] { subject.parse_synth(file.path()); });
  expectSilent();
}

TEST_F(DesignTest, CrossReferenceFileNeedsNoTop) {
  const test::TempFile file(
      "(VERSION 1)\n(FAMILY TORVAL7)\n(BITS 2)\n(BIT 0 CNST 1)\n(BIT 1 ? 1)\n");
  run([&] { EXPECT_EQ(subject.parse_xrf(file.path()), 0); });
  ASSERT_FALSE(fatal);
  EXPECT_EQ(subject.getFamily(), TORVAL7);
  for (const Bit* each : Bit::getAllBits()) {
    EXPECT_EQ(each->getValueStr(false), "z");
    EXPECT_TRUE(each->getValue());
  }
}

TEST_F(DesignTest, InitializeBitsChangesTheTextOnly) {
  Bit* one = new Bit;
  one->setKind(Bit::CNST);
  one->setValue(true);
  Bit* other = new Bit;
  other->setValueStr("odd");
  other->setKind(Bit::STATE);
  other->setStateLoc(1, 2, 3);
  EXPECT_EQ(subject.initializeBits(), 0);
  EXPECT_EQ(one->getValueStr(false), "z");
  EXPECT_TRUE(one->getValue());
  EXPECT_EQ(one->getKind(), Bit::CNST);
  EXPECT_EQ(other->getValueStr(false), "z");
  EXPECT_EQ(other->getKind(), Bit::STATE);
  EXPECT_EQ(other->getStateLoc3(), 3U);
}

// findModule

TEST_F(DesignTest, ModuleIsFoundByItsNormalisedName) {
  Module* u = registerModule(RTL, "top", "gen_0__u");
  EXPECT_EQ(subject.findModule(RTL, "top/gen[0].u"), u);
  EXPECT_EQ(subject.findModule(RTL, "top/gen[0]$u"), u);
  EXPECT_EQ(subject.findModule(RTL, "top/gen_0__u"), u);
  EXPECT_EQ(subject.findModule(SYNTH, "top/gen[0].u"), nullptr);
  EXPECT_EQ(subject.findModule(RTL, "top/gen[1].u"), nullptr);
}

TEST_F(DesignTest, RawModuleNameComesFirst) {
  Module* normal = registerModule(RTL, "/top", "g_0_");
  Module* raw = registerModule(RTL, "/top", "g[0]");
  EXPECT_EQ(subject.findModule(RTL, "/top/g[0]"), raw);
  EXPECT_EQ(subject.findModule(RTL, "/top/g_0_"), normal);
}

TEST_F(DesignTest, ModuleNameIsNormalisedAsAWhole) {
  Module* u = registerModule(RTL, "/t_p", "u_1_");
  EXPECT_EQ(subject.findModule(RTL, "/t.p/u[1]"), u);
  registerModule(RTL, "/t_p", "u[2]");
  EXPECT_EQ(subject.findModule(RTL, "/t.p/u[2]"), nullptr);
}

TEST_F(DesignTest, ModuleKnownInTheOtherViewIsNotFound) {
  registerModule(SYNTH, "/top", "u");
  EXPECT_EQ(subject.findModule(RTL, "/top/u"), nullptr);
}

TEST_F(DesignTest, ModuleKnownByItsRawNameInTheOtherViewOnlyIsFoundByItsNormalisedOne) {
  registerModule(SYNTH, "/top", "u[1]");
  Module* u = registerModule(RTL, "/top", "u_1_");
  EXPECT_EQ(subject.findModule(RTL, "/top/u[1]"), u);
}

// findSignal

TEST_F(DesignTest, OnlyTheModulePartOfASignalIsNormalised) {
  Module* u = registerModule(RTL, "top", "u_x");
  Signal* sig = registerSignal(RTL, u, "sig[3]");
  Signal* plain = registerSignal(RTL, u, "sig_4_");
  EXPECT_EQ(subject.findSignal(RTL, "top/u.x/sig[3]"), sig);
  EXPECT_EQ(subject.findSignal(RTL, "top/u.x/sig_4_"), plain);
  EXPECT_EQ(subject.findSignal(RTL, "top/u.x/sig[4]"), nullptr);
  EXPECT_EQ(subject.findSignal(RTL, "top/u.x/sig_3_"), nullptr);
  EXPECT_EQ(subject.findSignal(SYNTH, "top/u.x/sig[3]"), nullptr);
}

TEST_F(DesignTest, RawSignalNameComesFirst) {
  Signal* raw = registerSignal(RTL, registerModule(RTL, "/top", "u.x"), "a");
  Signal* normal = registerSignal(RTL, registerModule(RTL, "/top", "u_x"), "a");
  EXPECT_EQ(subject.findSignal(RTL, "/top/u.x/a"), raw);
  EXPECT_EQ(subject.findSignal(RTL, "/top/u_x/a"), normal);
}

TEST_F(DesignTest, UnknownSignalWithoutASlashIsOutOfRange) {
  parseRtl(top(input("a"), ""));
  EXPECT_THROW(subject.findSignal(RTL, "a"), std::out_of_range);
  EXPECT_THROW(subject.findSignal(SYNTH, ""), std::out_of_range);
  try {
    subject.findSignal(RTL, "a");
  } catch (const std::out_of_range& error) {
    EXPECT_NE(std::string(error.what()).find("basic_string::substr"), std::string::npos);
  }
  EXPECT_NE(subject.findSignal(RTL, "/top/a"), nullptr);
  EXPECT_EQ(subject.findSignal(RTL, "/a"), nullptr);
  EXPECT_EQ(subject.findSignal(RTL, "/"), nullptr);
}

// findBitRef

TEST_F(DesignTest, BitReferenceOfTheFirstInstanceThatHasTheIndex) {
  const std::string cells = cell("sub", port(renamed("d_5_", "d[5]"), "INPUT")) +
                            cell("other", port(edif::array("d", "9"), "INPUT"));
  const std::string text =
      top(port(edif::array("d", "9"), "INPUT"),
          instance("z", "sub") + instance("a", "sub") + instance("o", "other"), cells);
  parseRtl(text);
  parseSynth(text);
  const BitRef* ref = subject.findBitRef(SYNTH, "sub", "d", 5);
  ASSERT_NE(ref, nullptr);
  EXPECT_EQ(ref->getSignal(), signal("/top/z/d", SYNTH));
  EXPECT_EQ(ref->getIndex(), 5U);
  EXPECT_EQ(subject.findBitRef(SYNTH, "sub", "d", 4), nullptr);
  EXPECT_EQ(subject.findBitRef(SYNTH, "sub", "d", 6), nullptr);
  EXPECT_EQ(subject.findBitRef(SYNTH, "sub", "e", 5), nullptr);
  EXPECT_EQ(subject.findBitRef(SYNTH, "none", "d", 5), nullptr);
  EXPECT_EQ(subject.findBitRef(SYNTH, "top", "d", 8)->getSignal(), signal("/top/d", SYNTH));
  EXPECT_EQ(subject.findBitRef(SYNTH, "top", "d", 9), nullptr);
  EXPECT_EQ(subject.findBitRef(RTL, "sub", "d", 5)->getSignal(), signal("/top/z/d", RTL));
}

TEST_F(DesignTest, InstanceWithoutTheIndexIsPassedOver) {
  const std::string cells = cell("sub", port(edif::array("d", "2"), "INPUT"));
  parseSynth(top("", instance("u", "sub") + instance("v", "sub"), cells));
  signal("/top/v/d", SYNTH)->expand(0, 6);
  const BitRef* ref = subject.findBitRef(SYNTH, "sub", "d", 6);
  ASSERT_NE(ref, nullptr);
  EXPECT_EQ(ref->getSignal(), signal("/top/v/d", SYNTH));
  EXPECT_EQ(subject.findBitRef(SYNTH, "sub", "d", 1)->getSignal(), signal("/top/u/d", SYNTH));
}

TEST_F(DesignTest, InstancesOfTheRtlViewAreNotAsked) {
  parseRtl(top("", instance("u", "sub"), cell("sub", input("a"))));
  EXPECT_EQ(subject.findBitRef(RTL, "sub", "a", 0), nullptr);
}

TEST_F(DesignTest, InstancePathsAreNormalisedLikeAnyModulePath) {
  parseRtl(top("", instance("u_1_", "sub"), cell("sub", input("a"))));
  parseSynth(top("", instance(renamed("u_1_", "u[1]"), "sub"), cell("sub", input("a"))));
  const BitRef* ref = subject.findBitRef(RTL, "sub", "a", 0);
  ASSERT_NE(ref, nullptr);
  EXPECT_EQ(ref->getSignal(), signal("/top/u_1_/a", RTL));
}

// getValidModulePath

class ValidModulePathTest : public DesignTest {
 protected:
  ValidModulePathTest() {
    registerModule(RTL, "", "a");
    registerModule(RTL, "/a", "b");
    registerModule(RTL, "/a/b", "c");
    registerModule(RTL, "/a", "r", REG);
    registerModule(RTL, "/a/r", "deep");
  }
  std::string valid(const std::string& modulePath, EdifView view = RTL) {
    return subject.getValidModulePath(view, modulePath);
  }
};

TEST_F(ValidModulePathTest, ComponentsThatNameNoModuleAreDropped) {
  EXPECT_EQ(valid("/a/x/b"), "/a/b");
  EXPECT_EQ(valid("/a/x/y/b/z/c"), "/a/b/c");
  EXPECT_EQ(valid("/x/a/b"), "/a/b");
  EXPECT_EQ(valid("/a/b/x"), "/a/b");
}

TEST_F(ValidModulePathTest, WholePathsStay) {
  EXPECT_EQ(valid("/a"), "/a");
  EXPECT_EQ(valid("/a/b/c"), "/a/b/c");
  EXPECT_EQ(valid("/a/b/"), "/a/b");
}

TEST_F(ValidModulePathTest, NothingValidGivesTheEmptyPath) {
  EXPECT_EQ(valid(""), "");
  EXPECT_EQ(valid("/x/y"), "");
  EXPECT_EQ(valid("/a/b", SYNTH), "");
}

TEST_F(ValidModulePathTest, PrimitivesAreNoModulesOfAPath) {
  EXPECT_EQ(valid("/a/r"), "/a");
  EXPECT_EQ(valid("/a/r/b"), "/a/b");
  EXPECT_EQ(valid("/a/r/deep"), "/a");
}

TEST_F(ValidModulePathTest, NamesAreNotNormalised) {
  registerModule(RTL, "/a", "g_1_");
  EXPECT_EQ(valid("/a/g[1]/b"), "/a/b");
}

TEST_F(ValidModulePathTest, RelativePathsStartAtAModuleOfThatName) {
  registerModule(RTL, "a", "b");
  EXPECT_EQ(valid("a/b"), "") << "a alone names no module, so its child stands alone";
}

// Export

TEST_F(DesignTest, RtlAloneExportsWithoutASynthesizedTree) {
  parseRtl(top(input("a"), ""));
  const test::TempFile file;
  EXPECT_EQ(subject.exportDesign(file.path(), true), 0);
  const std::string text = file.content();
  EXPECT_NE(text.find("(VIEW RTL)\n\n(MOD VISIBLE top top "), std::string::npos);
  EXPECT_EQ(text.substr(text.find("(VIEW SYNTH)")), "(VIEW SYNTH)\n\n");
}

TEST_F(DesignDeathTest, DesignOfNoFamilyIsNotExported) {
  const test::TempFile file;
  EXPECT_ENDS_WITH(subject.exportDesign(file.path(), true), "");
}

// Models

std::string designText(const std::string& name) {
  return top(input(name) + output("q"),
             instance("q_reg", "FDRE") + net("q", pin("q") + pin("Q", "q_reg")) +
                 net("n_" + name + "[2]", pin(name) + pin("D", "q_reg")));
}

void load(Design& design, const std::string& name) {
  const test::TempFile netlistFile(designText(name));
  const test::TempFile log("\n");
  design.parse_rtl(netlistFile.path());
  design.parse_synth(netlistFile.path());
  const test::TempFile locations("Bit 1 0x10 3 Block=SLICE_X1Y2 Latch=AQ Net=q\n");
  design.parse_ll(locations.path());
  design.parse_log(log.path());
}

std::string exported(const Design& design) {
  const test::TempFile file;
  design.exportDesign(file.path(), true);
  return file.content();
}

std::string exportedAlone(const std::string& name) {
  Model model;
  const ModelScope scope(model);
  Design design;
  load(design, name);
  return exported(design);
}

TEST_F(DesignTest, TwoDesignsInTwoModelsExportAsEachAlone) {
  const test::Recorder quiet;
  const std::string first = exportedAlone("a");
  const std::string second = exportedAlone("b");
  EXPECT_NE(first, second);
  EXPECT_NE(first.find("STATE z 16 3 0)"), std::string::npos);

  Model one;
  Model two;
  std::optional<Design> designOne;
  std::optional<Design> designTwo;
  {
    const ModelScope scope(one);
    designOne.emplace();
  }
  {
    const ModelScope scope(two);
    designTwo.emplace();
  }
  // The designs act in their own models, whichever is current.
  const test::TempFile netlistOne(designText("a"));
  const test::TempFile netlistTwo(designText("b"));
  const test::TempFile locations("Bit 1 0x10 3 Block=SLICE_X1Y2 Latch=AQ Net=q\n");
  const test::TempFile log("\n");
  designOne->parse_rtl(netlistOne.path());
  designTwo->parse_rtl(netlistTwo.path());
  designTwo->parse_synth(netlistTwo.path());
  designOne->parse_synth(netlistOne.path());
  for (Design* each : {&*designTwo, &*designOne}) each->parse_ll(locations.path());
  for (Design* each : {&*designOne, &*designTwo}) each->parse_log(log.path());
  EXPECT_EQ(exported(*designOne), first);
  EXPECT_EQ(exported(*designTwo), second);
  EXPECT_TRUE(Bit::getAllBits().empty()) << "the current model was not touched";
}

TEST_F(DesignTest, TwoThreadsMayReadTwoDesigns) {
  const test::Recorder quiet;
  const std::string first = exportedAlone("a");
  const std::string second = exportedAlone("b");
  for (int round = 0; round < 20; ++round) {
    std::string one;
    std::string two;
    std::thread other([&] { one = exportedAlone("a"); });
    two = exportedAlone("b");
    other.join();
    EXPECT_EQ(one, first);
    EXPECT_EQ(two, second);
  }
}

TEST_F(DesignTest, SameInputGivesTheSameBytesAgain) {
  const test::Recorder quiet;
  EXPECT_EQ(exportedAlone("a"), exportedAlone("a"));
}

TEST_F(DesignTest, SameInputGivesTheSameBytesAfterAReset) {
  const test::Recorder quiet;
  resetModel();
  Design fresh;
  load(fresh, "a");
  const std::string first = exported(fresh);
  resetModel();
  Design again;
  load(again, "a");
  EXPECT_EQ(exported(again), first);
}

TEST_F(DesignTest, ObjectsOutliveTheirDesign) {
  Signal* a = nullptr;
  {
    Design passing;
    const test::TempFile file(top(input("a"), ""));
    passing.parse_rtl(file.path());
    a = passing.findSignal(RTL, "/top/a");
  }
  ASSERT_NE(a, nullptr);
  EXPECT_EQ(a->getFullName(), "/top/a");
  EXPECT_FALSE(Signal::getAllSignals().empty());
}

TEST_F(DesignTest, DesignOfAResetModelIsAFatalError) {
  parseRtl(top(input("a"), ""));
  const test::TempFile file(top(input("a"), ""));
  resetModel();
  expectGone([&] { subject.findModule(RTL, "/top"); });
  expectGone([&] { subject.findSignal(RTL, "/top/a"); });
  expectGone([&] { subject.findBitRef(RTL, "top", "a", 0); });
  expectGone([&] { (void)subject.getValidModulePath(RTL, "/top"); });
  expectGone([&] { subject.parse_rtl(file.path()); });
  expectGone([&] { subject.parse_synth(file.path()); });
  expectGone([&] { subject.parse_xrf(file.path()); });
  expectGone([&] { subject.parse_ll(file.path()); });
  expectGone([&] { subject.parse_log(file.path()); });
  expectGone([&] { subject.initializeBits(); });
  expectGone([&] { subject.exportDesign(file.path(), true); });
  expectGone([&] { (void)subject.coverage(); });
  expectGone([&] { (void)subject.registersAt(0, 0); });
  expectGone([&] { (void)subject.registersOf("a"); });
  expectGone([&] { (void)subject.writtenName({nullptr, 0}); });
}

TEST_F(DesignTest, DesignOfADestroyedModelIsAFatalError) {
  std::optional<Design> late;
  {
    Model model;
    const ModelScope scope(model);
    late.emplace();
    const test::TempFile file(top(input("a"), ""));
    late->parse_rtl(file.path());
  }
  expectGone([&] { late->findSignal(RTL, "/top/a"); });
}

// From the netlists to the cross-reference file

/// Three registers of the bit "c[1]", of "v" and of "u/y"; "v" loads what "c[1]" holds.
std::string smallNetlist(const std::string& registerCell) {
  std::string text = R"((edif e (program "Tarvona")
(Library p
(cell REGISTER (port D (direction INPUT)) (port Q (direction OUTPUT))))
(Library w
(cell sub (port d (direction INPUT)) (port y (direction OUTPUT))
(instance y_reg (cellref REGISTER (libraryref p)))
(net d (joined (portref d) (portref D (instanceref y_reg))))
(net y (joined (portref y) (portref Q (instanceref y_reg)))))
(cell top (port d (direction INPUT))
(instance u (cellref sub (libraryref w)))
(instance c_reg[1] (cellref REGISTER (libraryref p)))
(instance v_reg (cellref REGISTER (libraryref p)))
(net c[1] (joined (portref Q (instanceref c_reg[1])) (portref D (instanceref v_reg))))
(net d (joined (portref d) (portref d (instanceref u)) (portref D (instanceref c_reg[1]))))))
(design top (cellref top (libraryref w))))
)";
  test::replaceAll(text, "REGISTER", registerCell);
  return text;
}

// Words are numbered from 51: edif e p RTL_REG D w sub d y y_reg top u c_reg[1] v_reg c[1], then
// the names c and v that only registers bring. Of the bits that each view makes, these four
// survive: d, y, c[1] and v. The first view makes five nets. The second regroups all signals,
// ordered by the text of their signatures: SYNTH bits were still numbered above all RTL ones.
const char* const kSmallDesign =
    R"((VERSION 1)
(FAMILY TORVAL7)
(BITS 8)
(NETS 15)
(BIT 0 ? z)
(BIT 1 STATE z 4194560 33 0)
(BIT 2 ? z)
(BIT 3 CNST 1)
(BIT 4 ? z)
(BIT 5 STATE z 4194560 33 0)
(BIT 6 ? z)
(BIT 7 ? z)

(VIEW RTL)

(MOD VISIBLE top top 61

   (SIG VISIBLE WIRE c 66 14 1 1 2)
   (SIG VISIBLE WIRE c_reg[1] 63 11 0 0 2)
   (SIG VISIBLE IN d 58 5 0 0 0)
   (SIG VISIBLE WIRE v 67 12 0 0 3)
   (SIG VISIBLE WIRE v_reg 64 12 0 0 3)

   (MOD HIDDEN RTL_REG c_reg[1] 63

      (SIG VISIBLE IN D 55 5 0 0 0)
      (SIG VISIBLE OUT Q 24 11 0 0 2))
   (MOD VISIBLE sub u 62

      (SIG VISIBLE IN d 58 5 0 0 0)
      (SIG VISIBLE OUT y 59 7 0 0 1)
      (SIG VISIBLE WIRE y_reg 60 7 0 0 1)

      (MOD HIDDEN RTL_REG y_reg 60

         (SIG VISIBLE IN D 55 5 0 0 0)
         (SIG VISIBLE OUT Q 24 7 0 0 1)))
   (MOD HIDDEN RTL_REG v_reg 64

      (SIG VISIBLE IN D 55 11 0 0 2)
      (SIG VISIBLE OUT Q 24 12 0 0 3)))
(VIEW SYNTH)

(MOD VISIBLE top top 61

   (SIG VISIBLE WIRE c 66 13 1 1 6)
   (SIG VISIBLE WIRE c_reg[1] 63 9 0 0 6)
   (SIG VISIBLE IN d 58 8 0 0 4)
   (SIG VISIBLE WIRE v 67 10 0 0 7)
   (SIG VISIBLE WIRE v_reg 64 10 0 0 7)

   (MOD HIDDEN FDRE c_reg[1] 63

      (SIG VISIBLE IN D 55 8 0 0 4)
      (SIG VISIBLE OUT Q 24 9 0 0 6))
   (MOD VISIBLE sub u 62

      (SIG VISIBLE IN d 58 8 0 0 4)
      (SIG VISIBLE OUT y 59 6 0 0 5)
      (SIG VISIBLE WIRE y_reg 60 6 0 0 5)

      (MOD HIDDEN FDRE y_reg 60

         (SIG VISIBLE IN D 55 8 0 0 4)
         (SIG VISIBLE OUT Q 24 6 0 0 5)))
   (MOD HIDDEN FDRE v_reg 64

      (SIG VISIBLE IN D 55 9 0 0 6)
      (SIG VISIBLE OUT Q 24 10 0 0 7))))";

TEST_F(DesignTest, SmallDesignGivesTheseBytes) {
  const test::TempFile rtl(smallNetlist("RTL_REG"));
  const test::TempFile synth(smallNetlist("FDRE"));
  const test::TempFile locations(
      "Revision 3\n; comment\nBit 10 0x00400100 33 Block=SLICE_X3Y140 Latch=AQ Net=u/y\n");
  const test::TempFile log(
      "INFO: [Synth 8-3333] propagating constant 1 across sequential element (\\v_reg )\n");
  const test::TempFile result;
  run([&] {
    subject.parse_rtl(rtl.path());
    subject.parse_synth(synth.path());
    subject.parse_ll(locations.path());
    subject.parse_log(log.path());
    subject.exportDesign(result.path(), true);
  });
  ASSERT_FALSE(fatal) << fatal->text;
  EXPECT_EQ(err, "");
  EXPECT_EQ(result.content(), kSmallDesign);
}

}  // namespace
