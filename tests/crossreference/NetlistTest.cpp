#include <crossreference/Netlist.h>
#include <tests/TestModel.h>

#include <algorithm>
#include <map>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace XRF_RTL2LL {
namespace {

using testing_support::Deadline;
using testing_support::FreshModel;
using testing_support::listed;
using testing_support::Messages;
using Names = std::vector<std::string>;
using Bits = std::vector<Bit*>;

constexpr EdifView thirdView = static_cast<EdifView>(2);

class NetlistTest : public FreshModel {
 protected:
  Module* makeTop(EdifView view, const char* name = "top") {
    Module* top = new Module(name, "top_def", 0);
    m_netlist.registerModule(view, top);
    return top;
  }
  Module* child(EdifView view, Module* parent, const char* name, unsigned int id) {
    Module* module = new Module(name, "sub", id);
    parent->addChild(module);
    m_netlist.registerModule(view, module);
    return module;
  }
  Signal* add(EdifView view, Module* module, const char* name, unsigned int lsb, unsigned int msb) {
    return m_netlist.addSignal(view, module, name, lsb, msb, m_next++);
  }
  static Bit* bitOf(const Signal* signal, unsigned int index) {
    return signal->getBitRef(index)->getBit();
  }
  static void makeConstant(const Signal* signal, unsigned int index, bool value) {
    bitOf(signal, index)->setKind(Bit::CNST);
    bitOf(signal, index)->setValue(value);
  }
  /// A one-bit signal at a bit of its own choice.
  Signal* at(Module* module, const char* name, Bit* bit) {
    Signal* signal = new Signal(module, name, m_next++, 0, 0, true);
    BitRef* ref = new BitRef(signal, 0);
    ref->setBit(bit);
    signal->setBitRef(0, ref);
    module->addSignal(signal);
    return signal;
  }

  Netlist m_netlist;
  unsigned int m_next = 1;
};

TEST_F(NetlistTest, NewNetlistIsEmpty) {
  EXPECT_EQ(m_netlist.getTop(RTL), nullptr);
  EXPECT_EQ(m_netlist.getTop(SYNTH), nullptr);
  EXPECT_EQ(m_netlist.getFamily(), FAMILY_NONE);
  EXPECT_EQ(m_netlist.getPart(), PART_NONE);
  for (const EdifView view : {RTL, SYNTH}) {
    EXPECT_TRUE(m_netlist.getInstances(view).empty());
    EXPECT_EQ(m_netlist.getInstances(view).size(), 0U);
    EXPECT_EQ(m_netlist.getInstances(view).begin(), m_netlist.getInstances(view).end());
    EXPECT_FALSE(m_netlist.getInstances(view).contains({"cell", "/top"}));
  }
  EXPECT_NE(m_netlist.getTokenMap(), nullptr);
}

TEST_F(NetlistTest, FirstFamilyThatIsKnownWins) {
  m_netlist.setFamily(FAMILY_NONE);
  EXPECT_EQ(m_netlist.getFamily(), FAMILY_NONE);
  m_netlist.setFamily(TORVAL7);
  m_netlist.setFamily(static_cast<Family>(2));
  EXPECT_EQ(m_netlist.getFamily(), TORVAL7);
  m_netlist.setFamily(FAMILY_NONE);
  EXPECT_EQ(m_netlist.getFamily(), TORVAL7);
  Netlist other;
  other.setFamily(static_cast<Family>(2));
  other.setFamily(TORVAL7);
  EXPECT_EQ(static_cast<unsigned>(other.getFamily()), 2U);
}

TEST_F(NetlistTest, FirstPartThatIsKnownWins) {
  m_netlist.setPart(PART_NONE);
  EXPECT_EQ(m_netlist.getPart(), PART_NONE);
  m_netlist.setPart(static_cast<Part>(4));
  m_netlist.setPart(static_cast<Part>(2));
  m_netlist.setPart(PART_NONE);
  EXPECT_EQ(static_cast<unsigned>(m_netlist.getPart()), 4U);
  EXPECT_EQ(m_netlist.getFamily(), FAMILY_NONE);
}

TEST_F(NetlistTest, DumpPrintsNothing) {
  makeTop(RTL);
  Messages messages;
  m_netlist.dump();
  EXPECT_TRUE(messages.pieces().empty());
}

TEST_F(NetlistTest, ModulesAreFoundByPathAndNameInTheirView) {
  Module* top = makeTop(RTL);
  Module* u1 = child(RTL, top, "u1", 1);
  EXPECT_EQ(m_netlist.findModule(RTL, "/top"), top);
  EXPECT_EQ(m_netlist.findModule(RTL, "/top/u1"), u1);
  EXPECT_EQ(m_netlist.findModule(SYNTH, "/top"), nullptr);
  for (const char* name : {"top", "/top/", "/top/u", "/top/u11", "/u1", "", "/", "/top//u1"}) {
    EXPECT_EQ(m_netlist.findModule(RTL, name), nullptr) << name;
  }
  EXPECT_EQ(m_netlist.getTop(RTL), nullptr);
}

TEST_F(NetlistTest, OneNameHoldsAModuleOfEachView) {
  Module* rtl = makeTop(RTL);
  Module* synth = makeTop(SYNTH);
  EXPECT_EQ(m_netlist.findModule(RTL, "/top"), rtl);
  EXPECT_EQ(m_netlist.findModule(SYNTH, "/top"), synth);
  Module* later = makeTop(RTL);
  EXPECT_EQ(m_netlist.findModule(RTL, "/top"), later);
  EXPECT_EQ(m_netlist.findModule(SYNTH, "/top"), synth);
}

TEST_F(NetlistTest, SignalsAreFoundByFullNameInTheirView) {
  Module* top = makeTop(RTL);
  Module* u1 = child(RTL, top, "u1", 1);
  Signal* outer = add(RTL, top, "q", 0, 0);
  Signal* inner = add(RTL, u1, "q", 0, 0);
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/q"), outer);
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/u1/q"), inner);
  EXPECT_EQ(m_netlist.findSignal(SYNTH, "/top/q"), nullptr);
  for (const char* name : {"q", "/q", "/top/q ", "/top/", "/top/u1", "/top/u1/", ""}) {
    EXPECT_EQ(m_netlist.findSignal(RTL, name), nullptr) << name;
  }
  EXPECT_EQ(m_netlist.findModule(RTL, "/top/q"), nullptr);
}

TEST_F(NetlistTest, LaterSignalOfOneNameReplacesTheEarlier) {
  Module* top = makeTop(RTL);
  add(RTL, top, "q", 0, 0);
  Signal* synth = add(SYNTH, top, "q", 0, 0);
  Signal* later = add(RTL, top, "q", 0, 3);
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/q"), later);
  EXPECT_EQ(m_netlist.findSignal(SYNTH, "/top/q"), synth);
}

TEST_F(NetlistTest, RootWithoutANameIsFoundUnderASlash) {
  Module* root = makeTop(RTL, "");
  Module* u1 = child(RTL, root, "u1", 1);
  Signal* port = add(RTL, root, "q", 0, 0);
  Signal* inner = add(RTL, u1, "q", 0, 0);
  EXPECT_EQ(m_netlist.findModule(RTL, "/"), root);
  EXPECT_EQ(m_netlist.findModule(RTL, "/u1"), u1);
  EXPECT_EQ(m_netlist.findSignal(RTL, "//q"), port);
  EXPECT_EQ(m_netlist.findSignal(RTL, "/u1/q"), inner);
}

TEST_F(NetlistTest, NamesThatHoldSlashesThemselvesAreFoundByTheirText) {
  Module* top = makeTop(RTL);
  Signal* signal = add(RTL, top, "u1/q", 0, 0);
  Module* module = child(RTL, top, "a/b", 1);
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/u1/q"), signal);
  EXPECT_EQ(m_netlist.findModule(RTL, "/top/a/b"), module);
  Signal* inner = add(RTL, module, "q", 0, 0);
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/a/b/q"), inner);
  // The same text from other pieces is the same name.
  Module* u1 = child(RTL, top, "u1", 2);
  Signal* same = add(RTL, u1, "q", 0, 0);
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/u1/q"), same);
}

TEST_F(NetlistTest, KnownNameInAViewThatDoesNotExistIsOutOfRange) {
  Module* top = makeTop(RTL);
  add(SYNTH, top, "q", 0, 0);
  EXPECT_THROW(m_netlist.findModule(thirdView, "/top"), std::out_of_range);
  EXPECT_THROW(m_netlist.findSignal(thirdView, "/top/q"), std::out_of_range);
  EXPECT_THROW(m_netlist.findSignal(static_cast<EdifView>(0xffffffffU), "/top/q"),
               std::out_of_range);
  EXPECT_EQ(m_netlist.findModule(thirdView, "/nowhere"), nullptr);
  EXPECT_EQ(m_netlist.findSignal(thirdView, "/top/x"), nullptr);
}

TEST_F(NetlistTest, SignalStaysUnderTheNameItWasRegisteredWith) {
  Module* u1 = child(RTL, makeTop(RTL), "u1", 1);
  Signal* signal = add(RTL, u1, "q", 0, 0);
  u1->setPath("/moved");
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/u1/q"), signal);
  EXPECT_EQ(m_netlist.findSignal(RTL, "/moved/u1/q"), nullptr);
  Signal* late = add(RTL, u1, "r", 0, 0);
  EXPECT_EQ(m_netlist.findSignal(RTL, "/moved/u1/r"), late);
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/u1/r"), nullptr);
  Model other;
  ModelScope scope(other);
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/u1/q"), signal);
  EXPECT_EQ(m_netlist.findSignal(RTL, "/moved/u1/r"), late);
}

TEST_F(NetlistTest, ModuleStaysUnderTheNameItWasRegisteredWith) {
  Module* u1 = child(RTL, makeTop(RTL), "u1", 1);
  u1->setPath("/moved");
  EXPECT_EQ(m_netlist.findModule(RTL, "/top/u1"), u1);
  EXPECT_EQ(m_netlist.findModule(RTL, "/moved/u1"), nullptr);
  m_netlist.registerModule(RTL, u1);
  EXPECT_EQ(m_netlist.findModule(RTL, "/moved/u1"), u1);
  EXPECT_EQ(m_netlist.findModule(RTL, "/top/u1"), u1);
}

TEST_F(NetlistTest, ManyNamesAreFound) {
  Module* top = makeTop(RTL);
  std::vector<Signal*> signals;
  for (unsigned int number = 0; number < 100'000; ++number) {
    signals.push_back(add(RTL, top, ("s" + std::to_string(number)).c_str(), 0, 0));
  }
  for (unsigned int number = 0; number < 100'000; ++number) {
    ASSERT_EQ(m_netlist.findSignal(RTL, "/top/s" + std::to_string(number)), signals[number]);
    ASSERT_EQ(m_netlist.findSignal(RTL, "/top/x" + std::to_string(number)), nullptr);
  }
}

TEST_F(NetlistTest, AddSignalMakesAddsAndRegistersASignal) {
  Module* top = makeTop(RTL);
  Signal* signal = m_netlist.addSignal(SYNTH, top, "data", 2, 5, 77);
  EXPECT_STREQ(signal->getName(), "data");
  EXPECT_EQ(signal->getId(), 77U);
  EXPECT_EQ(signal->getLsb(), 2U);
  EXPECT_EQ(signal->getMsb(), 5U);
  EXPECT_EQ(signal->getModule(), top);
  EXPECT_EQ(top->getSignal(77, true), signal);
  EXPECT_TRUE(top->getSignals(false).contains(signal));
  EXPECT_EQ(m_netlist.findSignal(SYNTH, "/top/data"), signal);
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/data"), nullptr);
  for (unsigned int index = 2; index <= 5; ++index) {
    EXPECT_EQ(bitOf(signal, index)->getKind(), Bit::UNKNOWN);
    EXPECT_FALSE(bitOf(signal, index)->isInferred());
  }
}

TEST_F(NetlistTest, AddSignalOfAPresentNumberWidensIt) {
  Module* top = makeTop(RTL);
  Signal* signal = m_netlist.addSignal(RTL, top, "d", 0, 0, 7);
  Bit* bit = bitOf(signal, 0);
  EXPECT_EQ(m_netlist.addSignal(RTL, top, "d", 0, 3, 7), signal);
  EXPECT_EQ(signal->getLsb(), 0U);
  EXPECT_EQ(signal->getMsb(), 3U);
  EXPECT_EQ(bitOf(signal, 0), bit);
  EXPECT_EQ(signal->getInferred(), 0U);
  EXPECT_EQ(m_netlist.addSignal(RTL, top, "d", 1, 2, 7), signal);
  EXPECT_EQ(signal->getWidth(), 4U);
  EXPECT_EQ(Signal::getAllSignals().size(), 1U);
}

TEST_F(NetlistTest, AddSignalGoesByTheNumberNotTheName) {
  Module* top = makeTop(RTL);
  Signal* first = m_netlist.addSignal(RTL, top, "a", 0, 0, 7);
  EXPECT_EQ(m_netlist.addSignal(RTL, top, "b", 0, 0, 7), first);
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/b"), nullptr);
  Signal* second = m_netlist.addSignal(RTL, top, "a", 0, 0, 8);
  EXPECT_NE(second, first);
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/a"), second);
  EXPECT_EQ(listed(top->getSignals(false)), std::vector<Signal*>{first});
}

TEST_F(NetlistTest, AddSignalRegistersAPresentSignalInTheOtherViewToo) {
  Module* top = makeTop(RTL);
  Signal* signal = m_netlist.addSignal(RTL, top, "a", 0, 0, 7);
  m_netlist.addSignal(SYNTH, top, "a", 0, 0, 7);
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/a"), signal);
  EXPECT_EQ(m_netlist.findSignal(SYNTH, "/top/a"), signal);
}

TEST_F(NetlistTest, AddSignalClearsInferredMarksOfItsRangeOnly) {
  Module* top = makeTop(RTL);
  Signal* signal = new Signal(top, "d", 7, 0, 3, false);
  top->addSignal(signal);
  m_netlist.addSignal(RTL, top, "d", 1, 2, 7);
  EXPECT_TRUE(bitOf(signal, 0)->isInferred());
  EXPECT_FALSE(bitOf(signal, 1)->isInferred());
  EXPECT_FALSE(bitOf(signal, 2)->isInferred());
  EXPECT_TRUE(bitOf(signal, 3)->isInferred());
  m_netlist.addSignal(RTL, top, "d", 6, 7, 7);
  EXPECT_TRUE(bitOf(signal, 3)->isInferred());
  EXPECT_TRUE(bitOf(signal, 4)->isInferred());
  EXPECT_TRUE(bitOf(signal, 5)->isInferred());
  EXPECT_FALSE(bitOf(signal, 6)->isInferred());
  EXPECT_FALSE(bitOf(signal, 7)->isInferred());
  EXPECT_EQ(signal->getInferred(), 4U);
}

TEST_F(NetlistTest, SignalOfAGroundOrPowerCellIsConstantAtBitZero) {
  for (const opKind kind : {GND, PWR}) {
    Module* cell = new Module(kind == GND ? "gnd" : "vcc", "cell", 1);
    cell->setKind(kind);
    Signal* signal = add(RTL, cell, "o", 0, 1);
    EXPECT_EQ(bitOf(signal, 0)->getKind(), Bit::CNST);
    EXPECT_EQ(bitOf(signal, 0)->getValue(), kind == PWR);
    EXPECT_EQ(bitOf(signal, 0)->getValueStr(false), "z");
    EXPECT_FALSE(bitOf(signal, 0)->isInferred());
    EXPECT_EQ(bitOf(signal, 1)->getKind(), Bit::UNKNOWN);
  }
}

TEST_F(NetlistTest, SignalsOfOtherCellsAreNotConstant) {
  for (unsigned int kind = 0; kind <= XOR; ++kind) {
    if (kind == GND || kind == PWR) continue;
    Module* cell = new Module("u", "cell", kind);
    cell->setKind(static_cast<opKind>(kind));
    EXPECT_EQ(bitOf(add(RTL, cell, "o", 0, 0), 0)->getKind(), Bit::UNKNOWN) << kind;
  }
}

TEST_F(NetlistTest, OnlyANewSignalOfAPowerCellIsMadeConstant) {
  Module* cell = new Module("vcc", "VCC", 1);
  cell->setKind(PWR);
  Signal* signal = new Signal(cell, "o", 7, 0, 0, false);
  cell->addSignal(signal);
  m_netlist.addSignal(RTL, cell, "o", 0, 1, 7);
  EXPECT_EQ(bitOf(signal, 0)->getKind(), Bit::UNKNOWN);
  EXPECT_EQ(bitOf(signal, 1)->getKind(), Bit::UNKNOWN);
}

TEST_F(NetlistTest, OverloadWithALeadingValueDoesTheSame) {
  Module* top = makeTop(RTL);
  char extra[] = "extra";
  Signal* signal = m_netlist.addSignal(99U, SYNTH, top, "d", 1, 2, 7, extra);
  EXPECT_EQ(signal->getId(), 7U);
  EXPECT_EQ(signal->getLsb(), 1U);
  EXPECT_EQ(signal->getMsb(), 2U);
  EXPECT_EQ(signal->getInferred(), 0U);
  EXPECT_EQ(m_netlist.findSignal(SYNTH, "/top/d"), signal);
  EXPECT_EQ(m_netlist.addSignal(0U, SYNTH, top, "d", 0, 4, 7), signal);
  EXPECT_EQ(signal->getWidth(), 5U);
  Module* power = new Module("vcc", "VCC", 1);
  power->setKind(PWR);
  EXPECT_TRUE(bitOf(m_netlist.addSignal(1U, RTL, power, "o", 0, 0, 1), 0)->getValue());
}

TEST_F(NetlistTest, PostProcessTakesSnapshotsOfTheViewsRegisteredModules) {
  Module* top = makeTop(RTL);
  Module* u1 = child(RTL, top, "u1", 1);
  Module* unregistered = new Module("u2", "sub", 2);
  top->addChild(unregistered);
  Module* synth = makeTop(SYNTH);
  for (Module* module : {top, u1, unregistered, synth}) {
    module->addSignal(new Signal(module, "shown", 1, 0, 0, false));
    Signal* hidden = new Signal(module, "hidden", 2, 0, 0, false);
    hidden->setHidden(true);
    module->addSignal(hidden);
  }
  u1->setHidden();
  m_netlist.postProcess(RTL);
  EXPECT_EQ(testing_support::namesOf(top->getSignals(true)), Names{"shown"});
  EXPECT_EQ(testing_support::namesOf(top->getChildren(true)), Names{"u2"});
  EXPECT_EQ(testing_support::namesOf(u1->getSignals(true)), Names{"shown"});
  EXPECT_TRUE(unregistered->getSignals(true).empty());
  EXPECT_TRUE(synth->getSignals(true).empty());
  m_netlist.postProcess(SYNTH);
  EXPECT_EQ(testing_support::namesOf(synth->getSignals(true)), Names{"shown"});
}

class BufferTest : public NetlistTest {
 protected:
  Signal* port(const char* name, signalKind kind, unsigned int lsb = 0, unsigned int msb = 0) {
    Signal* signal = add(RTL, m_buffer, name, lsb, msb);
    signal->setKind(kind);
    return signal;
  }
  Module* makeBuffer() {
    Module* buffer = child(RTL, m_top, "b", 1);
    buffer->setKind(BUF);
    return buffer;
  }

  Module* m_top = makeTop(RTL);
  Module* m_buffer = makeBuffer();
};

TEST_F(BufferTest, OutputIsMergedIntoTheInput) {
  Signal* out = port("a_out", OUT);
  Signal* in = port("in", IN);
  Bit* survivor = bitOf(in, 0);
  Messages messages;
  m_netlist.postProcess(RTL);
  EXPECT_EQ(bitOf(in, 0), survivor);
  EXPECT_EQ(bitOf(out, 0), survivor);
  EXPECT_EQ(listed(Bit::getAllBits()), Bits{survivor});
  EXPECT_TRUE(messages.pieces().empty());
  EXPECT_EQ(in->getNet(), out->getNet());
}

TEST_F(BufferTest, LastPortOfEachDirectionInNameOrderCounts) {
  Signal* out9 = port("o<9>", OUT);
  Signal* out10 = port("o<10>", OUT);
  Signal* in2 = port("b", IN);
  Signal* in1 = port("a", IN);
  Signal* wire = port("z", WIRE);
  m_netlist.postProcess(RTL);
  EXPECT_EQ(bitOf(out10, 0), bitOf(in2, 0));
  EXPECT_NE(bitOf(out9, 0), bitOf(in2, 0));
  EXPECT_NE(bitOf(out10, 0), bitOf(in1, 0));
  EXPECT_NE(bitOf(wire, 0), bitOf(in2, 0));
  EXPECT_EQ(Bit::getAllBits().size(), 4U);
}

TEST_F(BufferTest, HiddenPortsCountToo) {
  Signal* in = port("i", IN);
  Signal* out = port("o", OUT);
  in->setHidden(true);
  out->setHidden(true);
  m_netlist.postProcess(RTL);
  EXPECT_EQ(bitOf(out, 0), bitOf(in, 0));
}

TEST_F(BufferTest, BufferWithoutOneDirectionIsLeftAlone) {
  port("i", IN);
  port("w", WIRE);
  Messages messages;
  m_netlist.postProcess(RTL);
  EXPECT_EQ(Bit::getAllBits().size(), 2U);
  EXPECT_TRUE(messages.pieces().empty());
}

TEST_F(BufferTest, ConflictOfConstantsIsTracedOnStandardError) {
  Signal* in = port("i", IN);
  Signal* out = port("o", OUT);
  makeConstant(in, 0, true);
  makeConstant(out, 0, false);
  Messages messages;
  m_netlist.postProcess(RTL);
  EXPECT_EQ(messages.output(), "ERROR: Bit conflict! 0: 1 1: 0\n");
  EXPECT_EQ(messages.error(), "BUF: /top/b/i -> /top/b/o\n");
  EXPECT_NE(bitOf(in, 0), bitOf(out, 0));
}

TEST_F(BufferTest, EqualConstantsAreNotTraced) {
  Signal* in = port("i", IN);
  Signal* out = port("o", OUT);
  makeConstant(in, 0, true);
  makeConstant(out, 0, true);
  Messages messages;
  m_netlist.postProcess(RTL);
  EXPECT_TRUE(messages.pieces().empty());
  EXPECT_EQ(bitOf(in, 0), bitOf(out, 0));
}

TEST_F(BufferTest, WideBuffersMergeIndexByIndexAndWarnBeyond) {
  Signal* in = port("i", IN, 0, 2);
  Signal* out = port("o", OUT, 0, 1);
  Messages messages;
  m_netlist.postProcess(RTL);
  EXPECT_EQ(bitOf(in, 0), bitOf(out, 0));
  EXPECT_EQ(bitOf(in, 1), bitOf(out, 1));
  EXPECT_EQ(messages.error(), "WARNING: Illegal index (2) for Signal /top/b/o.\n");
  EXPECT_EQ(messages.output(), "");
}

TEST_F(BufferTest, OnlyBuffersOfTheViewAreMerged) {
  Signal* in = port("i", IN);
  Signal* out = port("o", OUT);
  m_netlist.postProcess(SYNTH);
  EXPECT_NE(bitOf(in, 0), bitOf(out, 0));
  m_buffer->setKind(INV);
  m_netlist.postProcess(RTL);
  EXPECT_NE(bitOf(in, 0), bitOf(out, 0));
  m_buffer->setKind(BUF);
  m_netlist.postProcess(RTL);
  EXPECT_EQ(bitOf(in, 0), bitOf(out, 0));
}

TEST_F(BufferTest, BuffersAreVisitedInByteOrderOfTheirFullNames) {
  port("i", IN);
  port("o", OUT);
  // "-" stands before "/", so b-1 comes before all that is below b.
  std::vector<Module*> modules{child(RTL, m_buffer, "c", 2), child(RTL, m_top, "b-1", 3)};
  for (unsigned int id = 30; id > 10; --id) {
    modules.push_back(child(RTL, m_top, ("u" + std::to_string(id)).c_str(), id));
  }
  Names expected;
  for (Module* module : modules) {
    module->setKind(BUF);
    Signal* in = add(RTL, module, "i", 0, 0);
    in->setKind(IN);
    makeConstant(in, 0, true);
    Signal* out = add(RTL, module, "o", 0, 0);
    out->setKind(OUT);
    makeConstant(out, 0, false);
    expected.push_back("BUF: " + in->getFullName() + " -> " + out->getFullName() + "\n");
  }
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(expected.front(), "BUF: /top/b-1/i -> /top/b-1/o\n");
  Messages messages;
  m_netlist.postProcess(RTL);
  std::string text;
  for (const std::string& line : expected) text += line;
  EXPECT_EQ(messages.error(), text);
}

TEST_F(NetlistTest, SignalsOfEqualBitsShareANet) {
  Module* top = makeTop(RTL);
  Signal* a = add(RTL, top, "a", 0, 1);
  Signal* b = add(RTL, top, "b", 0, 1);
  Signal* swapped = add(RTL, top, "c", 0, 1);
  Signal* half = add(RTL, top, "d", 0, 0);
  a->merge(b, 0U);
  a->merge(swapped, 0, 1);
  a->merge(swapped, 1, 0);
  a->merge(half, 0, 0);
  m_netlist.postProcess(RTL);
  EXPECT_EQ(a->getNet(), b->getNet());
  EXPECT_NE(a->getNet(), swapped->getNet());
  EXPECT_NE(a->getNet(), half->getNet());
  EXPECT_NE(swapped->getNet(), half->getNet());
  EXPECT_EQ(listed(a->getNet()->getSignals()), (std::vector<Signal*>{a, b}));
  EXPECT_EQ(Net::getAllNets().size(), 3U);
}

TEST_F(NetlistTest, SignalsThatNobodyRegisteredAreGroupedToo) {
  Module* top = makeTop(RTL);
  Signal* a = add(RTL, top, "a", 0, 0);
  Signal* b = new Signal(new Module("elsewhere", "d", 0), "b", 1, 0, 0, true);
  BitRef* ref = new BitRef(b, 0);
  ref->setBit(bitOf(a, 0));
  b->setBitRef(0, ref);
  Signal* synth = add(SYNTH, makeTop(SYNTH), "s", 0, 0);
  m_netlist.postProcess(RTL);
  ASSERT_NE(b->getNet(), nullptr);
  EXPECT_EQ(a->getNet(), b->getNet());
  ASSERT_NE(synth->getNet(), nullptr);
  EXPECT_NE(synth->getNet(), a->getNet());
}

TEST_F(NetlistTest, EqualBitsInAnotherRangeAreAnotherNet) {
  Module* top = makeTop(RTL);
  Signal* a = add(RTL, top, "a", 0, 0);
  Signal* b = add(RTL, top, "b", 1, 1);
  a->merge(b, 0, 1);
  m_netlist.postProcess(RTL);
  EXPECT_NE(a->getNet(), b->getNet());
}

TEST_F(NetlistTest, SignalThatLacksAReferenceIsNotOnTheNetOfItsOtherBit) {
  Module* top = makeTop(RTL);
  Bit* bit = new Bit;
  Signal* whole = at(top, "a", bit);
  Signal* half = new Signal(top, "b", m_next++, 0, 1, true);
  BitRef* ref = new BitRef(half, 0);
  ref->setBit(bit);
  half->setBitRef(0, ref);
  m_netlist.postProcess(RTL);
  EXPECT_NE(whole->getNet(), half->getNet());
}

TEST_F(NetlistTest, NetListsTheEldestOfItsSignalsOfOneName) {
  for (const unsigned int msb : {0U, 1U}) {
    std::vector<Signal*> signals;
    for (const char* name : {"z", "m", "a"}) {
      signals.push_back(add(RTL, new Module(name, "d", 0), "q", 0, msb));
    }
    signals[2]->merge(signals[0], 0U);
    signals[2]->merge(signals[1], 0U);
    m_netlist.postProcess(RTL);
    EXPECT_EQ(signals[2]->getNet(), signals[0]->getNet());
    EXPECT_EQ(listed(signals[2]->getNet()->getSignals()), std::vector<Signal*>{signals[0]});
  }
}

TEST_F(NetlistTest, SignalsWithoutBitsOfOneRangeShareANet) {
  Module* top = makeTop(RTL);
  Signal* a = new Signal(top, "a", 1, 0, 1, true);
  Signal* b = new Signal(top, "b", 2, 0, 1, true);
  Signal* c = new Signal(top, "c", 3, 0, 2, true);
  m_netlist.postProcess(RTL);
  EXPECT_EQ(a->getNet(), b->getNet());
  EXPECT_NE(a->getNet(), c->getNet());
}

TEST_F(NetlistTest, NetsAreNumberedInTextOrderOfTheSignatures) {
  Module* top = makeTop(RTL);
  Signal* two = at(top, "two", new Bit(2));
  Signal* ten = at(top, "ten", new Bit(10));
  Signal* one = at(top, "one", new Bit(1));
  Signal* hundred = at(top, "hundred", new Bit(100));
  m_netlist.postProcess(RTL);
  // A digit stands before "_": 0_100_0, 0_10_0, 0_1_0, 0_2_0.
  EXPECT_EQ(hundred->getNet()->getId(), 0U);
  EXPECT_EQ(ten->getNet()->getId(), 1U);
  EXPECT_EQ(one->getNet()->getId(), 2U);
  EXPECT_EQ(two->getNet()->getId(), 3U);
}

TEST_F(NetlistTest, NetsOfWidthsAreNumberedInTextOrderToo) {
  Module* top = makeTop(RTL);
  Signal* bit2 = add(RTL, top, "a", 2, 2);
  Signal* bit10 = add(RTL, top, "b", 10, 10);
  Signal* bit1 = add(RTL, top, "c", 1, 1);
  m_netlist.postProcess(RTL);
  EXPECT_EQ(bit10->getNet()->getId(), 0U);
  EXPECT_EQ(bit1->getNet()->getId(), 1U);
  EXPECT_EQ(bit2->getNet()->getId(), 2U);
}

TEST_F(NetlistTest, RandomSignalsAreGroupedAsAMapOfSignaturesWould) {
  std::mt19937 generator(11);
  const auto random = [&] { return static_cast<unsigned int>(generator()); };
  for (int round = 0; round < 100; ++round) {
    Model model;
    ModelScope scope(model);
    Netlist netlist;
    Module* top = new Module("top", "d", 0);
    netlist.registerModule(RTL, top);
    std::vector<Signal*> signals;
    for (unsigned int id = 0; id < 40; ++id) {
      const unsigned int lsb = random() % 3;
      const unsigned int msb = lsb + (random() % 4 == 0 ? 9 : random() % 3);
      signals.push_back(
          netlist.addSignal(RTL, top, ("s" + std::to_string(id)).c_str(), lsb, msb, id));
      if (random() % 5 == 0) signals.back()->setBitRef(lsb, nullptr);
    }
    Messages quiet;
    for (int step = 0; step < 40; ++step) {
      signals[random() % 40]->merge(signals[random() % 40], 0U);
    }
    std::map<std::string, std::vector<Signal*>> groups;
    for (Signal* signal : signals) groups[signal->getSignature()].push_back(signal);
    netlist.postProcess(RTL);
    ASSERT_EQ(Net::getAllNets().size(), groups.size());
    unsigned int id = 0;
    for (const auto& [signature, members] : groups) {
      for (const Signal* signal : members) ASSERT_EQ(signal->getNet()->getId(), id) << signature;
      ASSERT_EQ(members.front()->getNet()->getSignals().size(), members.size());
      ++id;
    }
  }
}

TEST_F(NetlistTest, EachPostProcessMakesNewNets) {
  Module* top = makeTop(RTL);
  Signal* a = add(RTL, top, "a", 0, 0);
  m_netlist.postProcess(RTL);
  Net* first = a->getNet();
  first->enable();
  Signal* b = add(SYNTH, makeTop(SYNTH), "b", 0, 0);
  m_netlist.postProcess(SYNTH);
  EXPECT_NE(a->getNet(), first);
  EXPECT_EQ(a->getNet()->getId(), 1U);
  EXPECT_EQ(b->getNet()->getId(), 2U);
  EXPECT_EQ(Net::getAllNets().size(), 3U);
  EXPECT_FALSE(a->isEnabled());
  EXPECT_TRUE(first->getSignals().contains(a));
}

TEST_F(NetlistTest, BitsAreNumberedDenselyInCreationOrder) {
  Module* top = makeTop(RTL);
  Bit* loose = new Bit(500);
  Signal* a = add(RTL, top, "a", 0, 1);
  Signal* b = add(RTL, top, "b", 0, 1);
  a->merge(b, 0U);
  Bit* late = new Bit(3);
  const unsigned int next = Bit::getNextId();
  m_netlist.postProcess(RTL);
  EXPECT_EQ(loose->getId(), 0U);
  EXPECT_EQ(bitOf(a, 0)->getId(), 1U);
  EXPECT_EQ(bitOf(a, 1)->getId(), 2U);
  EXPECT_EQ(late->getId(), 3U);
  EXPECT_EQ(Bit::getMaxBitId(), 3U);
  EXPECT_EQ(Bit::getNextId(), next);
  EXPECT_EQ(listed(Bit::getAllBits()), (Bits{loose, bitOf(a, 0), bitOf(a, 1), late}));
}

TEST_F(NetlistTest, NetsAreGroupedByTheIdsBeforeRenumbering) {
  Module* top = makeTop(RTL);
  Signal* late = at(top, "late", new Bit(30));
  Signal* early = at(top, "early", new Bit(4));
  m_netlist.postProcess(RTL);
  EXPECT_EQ(late->getNet()->getId(), 0U);
  EXPECT_EQ(early->getNet()->getId(), 1U);
  EXPECT_EQ(bitOf(late, 0)->getId(), 0U);
  EXPECT_EQ(bitOf(early, 0)->getId(), 1U);
}

TEST_F(NetlistTest, WithoutBitsTheHighestIdIsNotDeclared) {
  Bit::setMaxBitId(7);
  makeTop(RTL);
  m_netlist.postProcess(RTL);
  EXPECT_EQ(Bit::getMaxBitId(), 7U);
}

TEST_F(NetlistTest, ReferencesOutsideSignalsKeepTheirBitsAfterPostProcess) {
  Module* top = makeTop(RTL);
  Signal* a = add(RTL, top, "a", 0, 0);
  BitRef* loose = new BitRef(a, 5);
  Bit* absorbed = new Bit;
  loose->setBit(absorbed);
  bitOf(a, 0)->merge(absorbed);
  m_netlist.postProcess(RTL);
  EXPECT_EQ(loose->getBit(), bitOf(a, 0));
  Bit* fresh = new Bit;
  fresh->merge(bitOf(a, 0));
  m_netlist.postProcess(RTL);
  EXPECT_EQ(loose->getBit(), fresh);
  EXPECT_EQ(bitOf(a, 0), fresh);
  EXPECT_EQ(fresh->getBitRefs().size(), 2U);
}

TEST_F(NetlistTest, RegistryAndMergesWorkOnAfterPostProcess) {
  Module* top = makeTop(RTL);
  Signal* a = add(RTL, top, "a", 0, 3);
  a->merge(a, 0, 2);
  m_netlist.postProcess(RTL);
  Bit* kept = bitOf(a, 0);
  Bit* gone = bitOf(a, 1);
  EXPECT_EQ(kept->merge(gone), 0);
  EXPECT_FALSE(Bit::getAllBits().contains(gone));
  Bit* fresh = new Bit;
  EXPECT_EQ(listed(Bit::getAllBits()), (Bits{kept, bitOf(a, 3), fresh}));
  m_netlist.postProcess(RTL);
  EXPECT_EQ(bitOf(a, 3)->getId(), 1U);
  EXPECT_EQ(fresh->getId(), 2U);
  EXPECT_EQ(Bit::getMaxBitId(), 2U);
}

TEST_F(NetlistTest, PostProcessOfManySignalsOnOneBitStaysFast) {
  Module* top = makeTop(RTL);
  const Deadline deadline(20);
  Bit* shared = new Bit;
  for (unsigned int id = 0; id < 100'000; ++id) {
    at(top, ("s" + std::to_string(id)).c_str(), shared);
  }
  for (int round = 0; round < 3; ++round) m_netlist.postProcess(RTL);
  EXPECT_EQ(Net::getAllNets().size(), 3U);
  EXPECT_FALSE(deadline.passed());
}

class FinalPostProcessTest : public NetlistTest {
 protected:
  struct Pair {
    Signal* rtl;
    Signal* synth;
  };
  Pair pair(const char* name, unsigned int lsb = 0, unsigned int msb = 0) {
    return {add(RTL, m_rtl, name, lsb, msb), add(SYNTH, m_synth, name, lsb, msb)};
  }
  /// An RTL signal that resolves to the bit of another one.
  Signal* alias(const char* name, const Signal* of) {
    Signal* signal = at(m_rtl, name, bitOf(of, 0));
    m_netlist.registerSignal(RTL, signal);
    return signal;
  }

  Module* m_rtl = makeTop(RTL);
  Module* m_synth = makeTop(SYNTH);
};

TEST_F(FinalPostProcessTest, StateIsCopiedIndexByIndex) {
  const auto [rtl, synth] = pair("d", 2, 4);
  synth->addState(2, 1, 2, 3);
  synth->addState(4, 4, 5, 6);
  bitOf(rtl, 2)->setValueStr("1");
  m_netlist.finalPostProcess();
  EXPECT_EQ(bitOf(rtl, 2)->getKind(), Bit::STATE);
  EXPECT_EQ(bitOf(rtl, 2)->getStateLoc1(), 1U);
  EXPECT_EQ(bitOf(rtl, 2)->getStateLoc2(), 2U);
  EXPECT_EQ(bitOf(rtl, 2)->getStateLoc3(), 3U);
  EXPECT_EQ(bitOf(rtl, 2)->getValueStr(false), "z");
  EXPECT_EQ(bitOf(rtl, 3)->getKind(), Bit::UNKNOWN);
  EXPECT_EQ(bitOf(rtl, 4)->getStateLoc1(), 4U);
  EXPECT_NE(bitOf(rtl, 2), bitOf(synth, 2));
}

TEST_F(FinalPostProcessTest, ConstantIsCopiedWithItsValueAndTextZ) {
  for (const bool value : {false, true}) {
    const auto [rtl, synth] = pair(value ? "one" : "zero");
    makeConstant(synth, 0, value);
    bitOf(rtl, 0)->setValue(!value);
    m_netlist.finalPostProcess();
    EXPECT_EQ(bitOf(rtl, 0)->getKind(), Bit::CNST);
    EXPECT_EQ(bitOf(rtl, 0)->getValue(), value);
    EXPECT_EQ(bitOf(rtl, 0)->getValueStr(false), "z");
    EXPECT_EQ(bitOf(synth, 0)->getValueStr(false), value ? "1" : "0");
  }
}

TEST_F(FinalPostProcessTest, UnreadIsCopiedLikeAnyKnownKind) {
  const auto [rtl, synth] = pair("d");
  bitOf(synth, 0)->setKind(Bit::UNREAD);
  bitOf(synth, 0)->setStateLoc(7, 8, 9);
  bitOf(synth, 0)->setValue(true);
  m_netlist.finalPostProcess();
  EXPECT_EQ(bitOf(rtl, 0)->getKind(), Bit::UNREAD);
  EXPECT_EQ(bitOf(rtl, 0)->getStateLoc3(), 9U);
  EXPECT_TRUE(bitOf(rtl, 0)->getValue());
}

TEST_F(FinalPostProcessTest, MarksAreNotCopied) {
  const auto [rtl, synth] = pair("d");
  synth->addState(0, 1, 2, 3);
  synth->setSrcState();
  bitOf(synth, 0)->setInferred(true);
  bitOf(synth, 0)->setChanged(true);
  const unsigned int id = bitOf(rtl, 0)->getId();
  m_netlist.finalPostProcess();
  EXPECT_FALSE(bitOf(rtl, 0)->isSrc());
  EXPECT_FALSE(bitOf(rtl, 0)->isInferred());
  EXPECT_FALSE(bitOf(rtl, 0)->isChanged());
  EXPECT_EQ(bitOf(rtl, 0)->getId(), id);
  EXPECT_FALSE(rtl->isSrcState());
}

TEST_F(FinalPostProcessTest, KnownBitIsNotOverwritten) {
  for (const Bit::BitKind kind : {Bit::STATE, Bit::CNST, Bit::UNREAD}) {
    const auto [rtl, synth] = pair(("d" + std::to_string(kind)).c_str());
    bitOf(rtl, 0)->setKind(kind);
    bitOf(rtl, 0)->setValueStr("mine");
    bitOf(rtl, 0)->setStateLoc(9, 9, 9);
    synth->addState(0, 1, 2, 3);
    m_netlist.finalPostProcess();
    EXPECT_EQ(bitOf(rtl, 0)->getKind(), kind);
    EXPECT_EQ(bitOf(rtl, 0)->getStateLoc1(), 9U);
    EXPECT_EQ(bitOf(rtl, 0)->getValueStr(false), "mine");
  }
}

TEST_F(FinalPostProcessTest, UnknownSynthesizedBitChangesNothing) {
  const auto [rtl, synth] = pair("d");
  bitOf(rtl, 0)->setValue(true);
  bitOf(synth, 0)->setStateLoc(1, 2, 3);
  rtl->setSrcState();
  m_netlist.finalPostProcess();
  EXPECT_EQ(bitOf(rtl, 0)->getKind(), Bit::UNKNOWN);
  EXPECT_EQ(bitOf(rtl, 0)->getValueStr(false), "1");
  EXPECT_EQ(bitOf(rtl, 0)->getStateLoc1(), 0U);
}

TEST_F(FinalPostProcessTest, SynthesizedViewIsNeverChanged) {
  const auto [rtl, synth] = pair("d");
  rtl->addState(0, 1, 2, 3);
  m_netlist.finalPostProcess();
  EXPECT_EQ(bitOf(synth, 0)->getKind(), Bit::UNKNOWN);
  EXPECT_EQ(bitOf(synth, 0)->getStateLoc1(), 0U);
}

TEST_F(FinalPostProcessTest, MissingReferencesAreSkipped) {
  const auto [rtl, synth] = pair("d", 0, 2);
  for (unsigned int index = 0; index <= 2; ++index) synth->addState(index, index + 1, 0, 0);
  rtl->setBitRef(0, nullptr);
  synth->setBitRef(1, nullptr);
  Messages messages;
  m_netlist.finalPostProcess();
  EXPECT_EQ(rtl->getBitRef(0), nullptr);
  EXPECT_EQ(bitOf(rtl, 1)->getKind(), Bit::UNKNOWN);
  EXPECT_EQ(bitOf(rtl, 2)->getStateLoc1(), 3U);
  EXPECT_TRUE(messages.pieces().empty());
}

TEST_F(FinalPostProcessTest, UnequalRangesAreLeftAlone) {
  struct Case {
    const char* name;
    unsigned int lsb, msb;
  };
  for (const Case& unequal : {Case{"wider", 0, 7}, Case{"narrower", 0, 2}, Case{"higher", 1, 3}}) {
    Signal* rtl = add(RTL, m_rtl, unequal.name, 0, 3);
    Signal* synth = add(SYNTH, m_synth, unequal.name, unequal.lsb, unequal.msb);
    for (unsigned int index = unequal.lsb; index <= unequal.msb; ++index) {
      synth->addState(index, 1, 2, 3);
    }
    rtl->setSrcState();
    Messages messages;
    m_netlist.finalPostProcess();
    EXPECT_EQ(rtl->getAvail(), 0U) << unequal.name;
    EXPECT_TRUE(messages.pieces().empty());
  }
}

TEST_F(FinalPostProcessTest, SourceWithoutCounterpartBecomesUnread) {
  Signal* rtl = add(RTL, m_rtl, "d", 0, 4);
  rtl->setSrcState();
  bitOf(rtl, 0)->setValue(true);
  rtl->addState(1, 1, 2, 3);
  makeConstant(rtl, 2, true);
  rtl->setBitRef(3, nullptr);
  m_netlist.finalPostProcess();
  EXPECT_EQ(bitOf(rtl, 0)->getKind(), Bit::UNREAD);
  EXPECT_FALSE(bitOf(rtl, 0)->getValue());
  EXPECT_EQ(bitOf(rtl, 0)->getValueStr(false), "z");
  EXPECT_EQ(bitOf(rtl, 1)->getKind(), Bit::STATE);
  EXPECT_EQ(bitOf(rtl, 2)->getKind(), Bit::CNST);
  EXPECT_TRUE(bitOf(rtl, 2)->getValue());
  EXPECT_EQ(bitOf(rtl, 4)->getKind(), Bit::UNREAD);
}

TEST_F(FinalPostProcessTest, SignalOfTheSameNameInAnotherModuleIsNoCounterpart) {
  Signal* rtl = add(RTL, child(RTL, m_rtl, "u1", 1), "d", 0, 0);
  Signal* synth = add(SYNTH, child(SYNTH, m_synth, "u11", 1), "d", 0, 0);
  synth->addState(0, 1, 2, 3);
  rtl->setSrcState();
  m_netlist.finalPostProcess();
  EXPECT_EQ(bitOf(rtl, 0)->getKind(), Bit::UNREAD);
}

TEST_F(FinalPostProcessTest, OnlySignalsMarkedAsSourcesBecomeUnread) {
  Signal* rtl = add(RTL, m_rtl, "d", 0, 0);
  bitOf(rtl, 0)->setSrc(true);
  Signal* synth = add(SYNTH, m_synth, "s", 0, 0);
  synth->setSrcState();
  m_netlist.finalPostProcess();
  EXPECT_EQ(bitOf(rtl, 0)->getKind(), Bit::UNKNOWN);
  EXPECT_EQ(bitOf(synth, 0)->getKind(), Bit::UNKNOWN);
}

TEST_F(FinalPostProcessTest, UnregisteredSignalsAreNotTouched) {
  Signal* loose = new Signal(m_rtl, "loose", 900, 0, 0, false);
  m_rtl->addSignal(loose);
  loose->setSrcState();
  m_netlist.finalPostProcess();
  EXPECT_EQ(bitOf(loose, 0)->getKind(), Bit::UNKNOWN);
}

// What a shared RTL bit receives is decided by the first of its names.
TEST_F(FinalPostProcessTest, FirstNameInByteOrderDecidesForASharedBit) {
  const auto [b, synthB] = pair("b");
  Signal* a = alias("a", b);
  Signal* synthA = add(SYNTH, m_synth, "a", 0, 0);
  synthB->addState(0, 2, 0, 0);
  synthA->addState(0, 1, 0, 0);
  m_netlist.finalPostProcess();
  EXPECT_EQ(bitOf(a, 0), bitOf(b, 0));
  EXPECT_EQ(bitOf(a, 0)->getStateLoc1(), 1U);
}

TEST_F(FinalPostProcessTest, LaterNameDecidesWhenTheFirstKnowsNothing) {
  const auto [b, synthB] = pair("b");
  Signal* a = alias("a", b);
  add(SYNTH, m_synth, "a", 0, 0);
  synthB->addState(0, 2, 0, 0);
  m_netlist.finalPostProcess();
  EXPECT_EQ(bitOf(a, 0)->getStateLoc1(), 2U);
}

class NameOrderTest : public FinalPostProcessTest,
                      public testing::WithParamInterface<std::pair<const char*, const char*>> {
 protected:
  /// Makes "<path>/<name>" below the top of a view and returns a signal of one bit.
  Signal* place(EdifView view, const std::string& path) {
    Module* module = view == RTL ? m_rtl : m_synth;
    std::size_t begin = 0;
    for (std::size_t slash; (slash = path.find('/', begin)) != std::string::npos;
         begin = slash + 1) {
      module = child(view, module, path.substr(begin, slash - begin).c_str(), m_next++);
    }
    return add(view, module, path.substr(begin).c_str(), 0, 0);
  }
};

TEST_P(NameOrderTest, SmallerNameInByteOrderComesFirst) {
  const auto [small, large] = GetParam();
  ASSERT_LT(std::string(small), std::string(large));
  Signal* late = place(RTL, large);
  Signal* early = place(RTL, small);
  late->merge(early, 0U);
  place(SYNTH, large)->addState(0, 2, 0, 0);
  place(SYNTH, small)->addState(0, 1, 0, 0);
  m_netlist.finalPostProcess();
  EXPECT_EQ(bitOf(late, 0)->getStateLoc1(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Pairs, NameOrderTest,
                         testing::Values(std::pair{"d<10>", "d<2>"}, std::pair{"D", "a"},
                                         std::pair{"a", "a0"}, std::pair{"z", "\xc3\xa9"},
                                         std::pair{"a-b/x", "a/x"}, std::pair{"a!", "a/x"},
                                         std::pair{"a.b/x", "a/b"}, std::pair{"a/x", "a0/x"},
                                         std::pair{"a/z", "ab"}, std::pair{"a/b/x", "a/bb"},
                                         std::pair{"a/b", "a/b/x"}, std::pair{"u10/q", "u2/q"},
                                         std::pair{"u/q", "u[1]/q"}, std::pair{"a b/x", "a/b"}));

TEST_F(FinalPostProcessTest, SourceNameThatComesFirstMarksTheSharedBitUnread) {
  const auto [b, synthB] = pair("b");
  alias("a", b)->setSrcState();
  synthB->addState(0, 2, 0, 0);
  m_netlist.finalPostProcess();
  EXPECT_EQ(bitOf(b, 0)->getKind(), Bit::UNREAD);
}

TEST_F(FinalPostProcessTest, SourceNameThatComesLaterFindsTheSharedBitKnown) {
  const auto [b, synthB] = pair("b");
  alias("c", b)->setSrcState();
  synthB->addState(0, 2, 0, 0);
  m_netlist.finalPostProcess();
  EXPECT_EQ(bitOf(b, 0)->getKind(), Bit::STATE);
}

TEST_F(FinalPostProcessTest, NamesThatCameInBetweenAreOrderedAnew) {
  const auto [b, synthB] = pair("b");
  m_netlist.finalPostProcess();
  alias("a", b);
  add(SYNTH, m_synth, "a", 0, 0)->addState(0, 1, 0, 0);
  synthB->addState(0, 2, 0, 0);
  m_netlist.finalPostProcess();
  EXPECT_EQ(bitOf(b, 0)->getStateLoc1(), 1U);
}

TEST_F(NetlistTest, NetlistActsInTheModelItWasMadeIn) {
  Module* top = makeTop(RTL);
  Model other;
  Signal* signal = nullptr;
  {
    ModelScope scope(other);
    signal = m_netlist.addSignal(RTL, top, "d", 0, 3, 7);
    m_netlist.postProcess(RTL);
    EXPECT_TRUE(Signal::getAllSignals().empty());
    EXPECT_TRUE(Bit::getAllBits().empty());
    EXPECT_TRUE(Net::getAllNets().empty());
    EXPECT_EQ(Bit::getNextId(), 0U);
    EXPECT_EQ(Bit::getMaxBitId(), 0U);
  }
  EXPECT_EQ(listed(Signal::getAllSignals()), std::vector<Signal*>{signal});
  EXPECT_EQ(Bit::getMaxBitId(), 3U);
  EXPECT_EQ(Net::getAllNets().size(), 1U);
}

TEST_F(NetlistTest, ObjectsOutliveTheNetlist) {
  Module* top = new Module("top", "d", 0);
  Signal* signal = nullptr;
  {
    Netlist netlist;
    netlist.registerModule(RTL, top);
    signal = netlist.addSignal(RTL, top, "d", 0, 0, 7);
    netlist.postProcess(RTL);
  }
  EXPECT_EQ(signal->getFullName(), "/top/d");
  EXPECT_EQ(bitOf(signal, 0)->getId(), 0U);
  EXPECT_EQ(listed(Signal::getAllSignals()), std::vector<Signal*>{signal});
}

}  // namespace
}  // namespace XRF_RTL2LL
