#include <crossreference/ModelText.h>
#include <tests/TestModel.h>

#include <sstream>
#include <string>

namespace XRF_RTL2LL {
namespace {

using testing_support::FreshModel;
using testing_support::Messages;

class ModelTextTest : public FreshModel {
 protected:
  static Module* child(Module* parent, const char* name, unsigned int id) {
    Module* module = new Module(name, "sub", id);
    parent->addChild(module);
    return module;
  }
  static Signal* signal(Module* module, const char* name, unsigned int id, Net* net) {
    Signal* made = new Signal(module, name, id, 0, 0, false);
    module->addSignal(made);
    made->setNet(net);
    return made;
  }

  Module* m_top = new Module("top", "def", 4);
};

template <class T>
std::string textOf(T object) {
  std::ostringstream out;
  out << object;
  return out.str();
}

std::string indent() {
  std::ostringstream out;
  addIndent(out);
  return out.str();
}

TEST_F(ModelTextTest, IndentIsThreeBlanksPerLevel) {
  EXPECT_EQ(indent(), "");
  Module::incrDepth();
  EXPECT_EQ(indent(), "   ");
  Module::incrDepth();
  EXPECT_EQ(indent(), "      ");
  std::ostringstream out;
  addIndent(out) << "x";
  EXPECT_EQ(out.str(), "      x");
}

TEST_F(ModelTextTest, BitKindsHaveTheirNames) {
  EXPECT_EQ(textOf(Bit::STATE), "STATE");
  EXPECT_EQ(textOf(Bit::UNKNOWN), "?");
  EXPECT_EQ(textOf(Bit::CNST), "CNST");
  EXPECT_EQ(textOf(Bit::UNREAD), "UNREAD");
}

TEST_F(ModelTextTest, SignalKindsHaveTheirNames) {
  EXPECT_EQ(textOf(IN), "IN");
  EXPECT_EQ(textOf(OUT), "OUT");
  EXPECT_EQ(textOf(WIRE), "WIRE");
}

TEST_F(ModelTextTest, UnknownKindsAreFatal) {
  EXPECT_FATAL(textOf(static_cast<Bit::BitKind>(4)), "Unknown BitKind!\n");
  EXPECT_FATAL(textOf(static_cast<signalKind>(3)), "Unknown SignalKind!\n");
}

TEST_F(ModelTextTest, UnknownBitShowsItsText) {
  Bit* bit = new Bit(12);
  EXPECT_EQ(textOf(bit), "(BIT 12 ? z)");
  bit->setValue(true);
  EXPECT_EQ(textOf(bit), "(BIT 12 ? 1)");
}

TEST_F(ModelTextTest, ConstantBitShowsItsValueNotItsText) {
  Bit* bit = new Bit;
  bit->setKind(Bit::CNST);
  bit->setValue(true);
  bit->setValueStr("z");
  EXPECT_EQ(textOf(bit), "(BIT 0 CNST 1)");
  bit->setValue(false);
  EXPECT_EQ(textOf(bit), "(BIT 0 CNST 0)");
}

TEST_F(ModelTextTest, OnlyAStateBitShowsItsLocation) {
  Bit* bit = new Bit(5);
  bit->setStateLoc(4194560, 33, 4294967295U);
  EXPECT_EQ(textOf(bit), "(BIT 5 ? z)");
  bit->setKind(Bit::UNREAD);
  EXPECT_EQ(textOf(bit), "(BIT 5 UNREAD z)");
  bit->setKind(Bit::STATE);
  EXPECT_EQ(textOf(bit), "(BIT 5 STATE z 4194560 33 4294967295)");
  bit->setKind(Bit::CNST);
  EXPECT_EQ(textOf(bit), "(BIT 5 CNST 0)");
}

TEST_F(ModelTextTest, NumbersAreUnsignedDecimal) {
  Bit* bit = new Bit(3'000'000'000U);
  EXPECT_EQ(textOf(bit), "(BIT 3000000000 ? z)");
}

TEST_F(ModelTextTest, BitRecordIsNotIndented) {
  Module::incrDepth();
  EXPECT_EQ(textOf(new Bit(1)), "(BIT 1 ? z)");
}

TEST_F(ModelTextTest, SignalRecordNamesNetRangeAndBits) {
  new Net;
  new Bit(9);
  Signal* signal = new Signal(m_top, "data", 77, 2, 4, false);
  signal->setNet(new Net);
  EXPECT_EQ(textOf(signal), "(SIG VISIBLE WIRE data 77 1 2 4 10 11 12)");
  signal->setKind(IN);
  signal->setHidden(true);
  EXPECT_EQ(textOf(signal), "(SIG HIDDEN IN data 77 1 2 4 10 11 12)");
}

TEST_F(ModelTextTest, SignalRecordIsIndented) {
  Signal* made = signal(m_top, "a", 1, new Net);
  Module::incrDepth();
  EXPECT_EQ(textOf(made), "   (SIG VISIBLE WIRE a 1 0 0 0 0)");
}

TEST_F(ModelTextTest, MissingReferenceIsWrittenAsNullWithoutAWarning) {
  Signal* signal = new Signal(m_top, "data", 8, 2, 3, true);
  BitRef* ref = new BitRef(signal, 3);
  ref->setBit(new Bit(17));
  signal->setBitRef(3, ref);
  signal->setNet(new Net);
  Messages messages;
  EXPECT_EQ(textOf(signal), "(SIG VISIBLE WIRE data 8 0 2 3 NULL 17)");
  EXPECT_TRUE(messages.pieces().empty());
}

TEST_F(ModelTextTest, SignalRecordShowsTheBitThatSurvived) {
  Net* net = new Net;
  Signal* a = signal(m_top, "a", 1, net);
  Signal* b = signal(m_top, "b", 2, net);
  a->merge(b, 0U);
  EXPECT_EQ(textOf(a), "(SIG VISIBLE WIRE a 1 0 0 0 1)");
  EXPECT_EQ(textOf(b), "(SIG VISIBLE WIRE b 2 0 0 0 1)");
}

TEST_F(ModelTextTest, EntriesBelowTheLsbAreNotWritten) {
  Signal* signal = new Signal(m_top, "data", 8, 2, 2, false);
  BitRef* ref = new BitRef(signal, 0);
  ref->setBit(new Bit(50));
  signal->setBitRef(0, ref);
  signal->setNet(new Net);
  EXPECT_EQ(textOf(signal), "(SIG VISIBLE WIRE data 8 0 2 2 0)");
}

TEST_F(ModelTextTest, SignalWithoutANetIsFatal) {
  Signal* signal = new Signal(m_top, "data", 8, 0, 0, false);
  EXPECT_EXPLAINED_FATAL(textOf(signal));
}

TEST_F(ModelTextTest, EmptyModuleIsOneLine) {
  EXPECT_EQ(textOf(new Module("inst", "def", 4)), "(MOD VISIBLE def inst 4)");
  m_top->setHidden();
  EXPECT_EQ(textOf(m_top), "(MOD HIDDEN def top 4)");
}

TEST_F(ModelTextTest, ModuleWithASignalHasABlankLineBeforeIt) {
  signal(m_top, "a", 1, new Net);
  EXPECT_EQ(textOf(m_top), "(MOD VISIBLE def top 4\n\n   (SIG VISIBLE WIRE a 1 0 0 0 0))");
}

TEST_F(ModelTextTest, ModuleWithAChildHasABlankLineBeforeIt) {
  child(m_top, "u1", 1);
  EXPECT_EQ(textOf(m_top), "(MOD VISIBLE def top 4\n\n   (MOD VISIBLE sub u1 1))");
}

TEST_F(ModelTextTest, TreeIsWrittenInNameOrderAndClosesAtTheEndOfTheLastLine) {
  Net* net = new Net;
  signal(m_top, "d<10>", 1, net);
  signal(m_top, "d<2>", 2, net);
  Module* u2 = child(m_top, "u2", 1);
  Module* u10 = child(m_top, "u10", 2);
  signal(u10, "q", 1, net);
  child(u2, "deep", 1);
  EXPECT_EQ(textOf(m_top),
            "(MOD VISIBLE def top 4\n"
            "\n"
            "   (SIG VISIBLE WIRE d<2> 2 0 0 0 1)\n"
            "   (SIG VISIBLE WIRE d<10> 1 0 0 0 0)\n"
            "\n"
            "   (MOD VISIBLE sub u10 2\n"
            "\n"
            "      (SIG VISIBLE WIRE q 1 0 0 0 2))\n"
            "   (MOD VISIBLE sub u2 1\n"
            "\n"
            "      (MOD VISIBLE sub deep 1)))");
}

TEST_F(ModelTextTest, TreeStartsAtTheCurrentDepthAndComesBackToIt) {
  signal(m_top, "a", 1, new Net);
  child(m_top, "u1", 1);
  Module::incrDepth();
  EXPECT_EQ(textOf(m_top),
            "   (MOD VISIBLE def top 4\n\n      (SIG VISIBLE WIRE a 1 0 0 0 0)\n\n"
            "      (MOD VISIBLE sub u1 1))");
  EXPECT_EQ(Module::getDepth(), 1U);
}

TEST_F(ModelTextTest, HiddenObjectsAreListedUnlessToldOtherwise) {
  Net* net = new Net;
  signal(m_top, "a", 1, net)->setHidden(true);
  signal(m_top, "b", 2, net);
  child(m_top, "u1", 1)->setHidden();
  child(m_top, "u2", 2);
  m_top->updateVisibleChildren(true);
  m_top->updateVisibleSignals(true);
  EXPECT_EQ(textOf(m_top),
            "(MOD VISIBLE def top 4\n\n   (SIG HIDDEN WIRE a 1 0 0 0 0)\n"
            "   (SIG VISIBLE WIRE b 2 0 0 0 1)\n\n"
            "   (MOD HIDDEN sub u1 1)\n   (MOD VISIBLE sub u2 2))");
  Module::setShowHidden(false);
  EXPECT_EQ(textOf(m_top),
            "(MOD VISIBLE def top 4\n\n   (SIG VISIBLE WIRE b 2 0 0 0 1)\n\n"
            "   (MOD VISIBLE sub u2 2))");
}

TEST_F(ModelTextTest, ModuleWhoseObjectsAreAllHiddenHasNoBlankLine) {
  signal(m_top, "a", 1, new Net)->setHidden(true);
  child(m_top, "u1", 1)->setHidden();
  m_top->updateVisibleChildren(true);
  m_top->updateVisibleSignals(true);
  Module::setShowHidden(false);
  EXPECT_EQ(textOf(m_top), "(MOD VISIBLE def top 4)");
}

TEST_F(ModelTextTest, WithoutHiddenObjectsTheSnapshotIsWritten) {
  Signal* a = signal(m_top, "a", 1, new Net);
  Module::setShowHidden(false);
  EXPECT_EQ(textOf(m_top), "(MOD VISIBLE def top 4)");
  m_top->updateVisibleSignals(false);
  a->setHidden(true);
  EXPECT_EQ(textOf(m_top), "(MOD VISIBLE def top 4\n\n   (SIG HIDDEN WIRE a 1 0 0 0 0))");
}

TEST_F(ModelTextTest, HiddenRootIsWrittenAllTheSame) {
  m_top->setHidden();
  Module::setShowHidden(false);
  EXPECT_EQ(textOf(m_top), "(MOD HIDDEN def top 4)");
}

TEST_F(ModelTextTest, MissingNameFailsTheStream) {
  std::ostringstream cell;
  cell << new Module("inst", nullptr, 4);
  EXPECT_TRUE(cell.fail());
  EXPECT_EQ(cell.str(), "(MOD VISIBLE ");
  std::ostringstream name;
  name << new Module(nullptr, "def", 4);
  EXPECT_TRUE(name.fail());
  EXPECT_EQ(name.str(), "(MOD VISIBLE def ");
  std::ostringstream good;
  good << m_top;
  EXPECT_TRUE(good.good());
}

TEST_F(ModelTextTest, FailedStreamTakesNothingAndKeepsTheDepth) {
  std::ostringstream out;
  out.setstate(std::ios::failbit);
  out << m_top;
  EXPECT_EQ(out.str(), "");
  EXPECT_EQ(Module::getDepth(), 0U);
}

}  // namespace
}  // namespace XRF_RTL2LL
