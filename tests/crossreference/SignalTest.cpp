#include <crossreference/Signal.h>
#include <tests/TestModel.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace XRF_RTL2LL {
namespace {

using testing_support::FreshModel;
using testing_support::listed;
using testing_support::Messages;
using testing_support::namesOf;
using Names = std::vector<std::string>;

class SignalTest : public FreshModel {
 protected:
  Signal* make(const char* name, unsigned int lsb, unsigned int msb, bool noBits = false) {
    return new Signal(m_module, name, m_next++, lsb, msb, noBits);
  }
  static Bit* bitOf(const Signal* signal, unsigned int index) {
    return signal->getBitRef(index)->getBit();
  }
  static void makeConstant(const Signal* signal, unsigned int index, bool value) {
    bitOf(signal, index)->setKind(Bit::CNST);
    bitOf(signal, index)->setValue(value);
  }
  static std::vector<unsigned int> ids(const Signal* signal) {
    std::vector<unsigned int> all;
    for (unsigned int at = signal->getLsb(); at <= signal->getMsb(); ++at) {
      all.push_back(bitOf(signal, at)->getId());
    }
    return all;
  }

  Module* m_module = new Module("top", "top_def", 0);

 private:
  unsigned int m_next = 1;
};

std::string warningFor(const char* index, const char* name) {
  return std::string("WARNING: Illegal index (") + index + ") for Signal " + name + ".\n";
}

std::string errorFor(const char* index, const char* name) {
  return std::string("ERROR: Illegal index (") + index + ") for Signal " + name + ".\n";
}

TEST_F(SignalTest, NewSignalIsAVisibleWireWithoutANet) {
  const Signal* signal = new Signal(m_module, "data", 42, 3, 6, false);
  EXPECT_EQ(signal->getKind(), WIRE);
  EXPECT_EQ(signal->getId(), 42U);
  EXPECT_STREQ(signal->getName(), "data");
  EXPECT_EQ(signal->getModule(), m_module);
  EXPECT_EQ(signal->getLsb(), 3U);
  EXPECT_EQ(signal->getMsb(), 6U);
  EXPECT_EQ(signal->getWidth(), 4U);
  EXPECT_EQ(signal->getNet(), nullptr);
  EXPECT_FALSE(signal->isHidden());
  EXPECT_FALSE(signal->isSrcState());
  EXPECT_FALSE(signal->isEnabled());
}

TEST_F(SignalTest, NewSignalHasAFreshUnknownBitPerIndexInIndexOrder) {
  new Bit(4);
  const Signal* signal = make("data", 2, 4);
  EXPECT_EQ(ids(signal), (std::vector<unsigned int>{5, 6, 7}));
  for (unsigned int index = 2; index <= 4; ++index) {
    const BitRef* ref = signal->getBitRef(index);
    EXPECT_EQ(ref->getIndex(), index);
    EXPECT_EQ(ref->getSignal(), signal);
    EXPECT_EQ(ref->getBit()->getKind(), Bit::UNKNOWN);
    EXPECT_EQ(listed(ref->getBit()->getBitRefs()),
              (std::vector<BitRef*>{signal->getBitRef(index)}));
  }
  EXPECT_EQ(Bit::getAllBits().size(), 4U);
}

TEST_F(SignalTest, NameIsCopied) {
  std::string name = "data";
  const Signal* signal = make(name.c_str(), 0, 0);
  name = "xxxx";
  EXPECT_STREQ(signal->getName(), "data");
  EXPECT_EQ(signal->getFullName(), "/top/data");
}

TEST_F(SignalTest, SignalWithoutBitsHasNullEntriesUntilFilled) {
  Signal* signal = make("data", 0, 2, true);
  Messages messages;
  EXPECT_TRUE(Bit::getAllBits().empty());
  for (unsigned int index = 0; index <= 2; ++index) {
    EXPECT_EQ(signal->getBitRef(index), nullptr);
  }
  BitRef* ref = new BitRef(signal, 1);
  signal->setBitRef(1, ref);
  EXPECT_EQ(signal->getBitRef(1), ref);
  EXPECT_EQ(signal->getBitRef(0), nullptr);
  EXPECT_EQ(signal->getBitRef(2), nullptr);
  signal->setBitRef(1, nullptr);
  EXPECT_EQ(signal->getBitRef(1), nullptr);
  EXPECT_TRUE(messages.pieces().empty());
}

TEST_F(SignalTest, RegistryListsSignalsInCreationOrder) {
  Signal* b = make("b", 0, 0);
  Signal* a = make("a", 0, 0, true);
  EXPECT_EQ(listed(Signal::getAllSignals()), (std::vector<Signal*>{b, a}));
  EXPECT_TRUE(Signal::getAllSignals().contains(a));
}

TEST_F(SignalTest, FullNameHoldsThePathOfTheModule) {
  Module* child = new Module("u1", "sub", 1);
  m_module->addChild(child);
  EXPECT_EQ((new Signal(child, "q", 1, 0, 0, false))->getFullName(), "/top/u1/q");
}

TEST_F(SignalTest, FullNameOfAnUnnamedRootBeginsWithTwoSlashes) {
  Module* root = new Module("", "def", 0);
  EXPECT_EQ((new Signal(root, "q", 1, 0, 0, false))->getFullName(), "//q");
}

TEST_F(SignalTest, FullNameIsFixedWhenTheSignalIsMade) {
  Module* child = new Module("u1", "sub", 1);
  const Signal* early = new Signal(child, "q", 1, 0, 0, false);
  m_module->addChild(child);
  const Signal* late = new Signal(child, "r", 2, 0, 0, false);
  EXPECT_EQ(early->getFullName(), "/u1/q");
  EXPECT_EQ(late->getFullName(), "/top/u1/r");
  child->setPath("/elsewhere");
  EXPECT_EQ(early->getFullName(), "/u1/q");
  EXPECT_EQ(late->getFullName(), "/top/u1/r");
  EXPECT_EQ((new Signal(child, "s", 3, 0, 0, false))->getFullName(), "/elsewhere/u1/s");
  child->setPath("");
  EXPECT_EQ(early->getFullName(), "/u1/q");
  EXPECT_EQ(late->getFullName(), "/top/u1/r");
}

TEST_F(SignalTest, FullNameOfSignalsAddedToTheModuleSurvivesRenaming) {
  Module* child = new Module("u1", "sub", 1);
  Signal* signal = new Signal(child, "q", 1, 0, 0, false);
  child->addSignal(signal);
  Messages messages;
  m_module->addChild(child);
  EXPECT_EQ(signal->getFullName(), "/u1/q");
  signal->getBitRef(1, true);
  EXPECT_EQ(messages.error(), warningFor("1", "/u1/q"));
}

TEST_F(SignalTest, IndexOutsideWarnsAndGivesNull) {
  const Signal* signal = make("data", 4, 7);
  for (const auto& [index, text] : std::vector<std::pair<unsigned int, const char*>>{
           {0, "0"}, {2, "2"}, {3, "3"}, {8, "8"}, {0xffffffffU, "-1"}}) {
    Messages messages;
    EXPECT_EQ(signal->getBitRef(index, true), nullptr);
    EXPECT_EQ(messages.error(), warningFor(text, "/top/data"));
    EXPECT_EQ(messages.output(), "");
  }
  Messages messages;
  EXPECT_NE(signal->getBitRef(4, true), nullptr);
  EXPECT_NE(signal->getBitRef(7, true), nullptr);
  EXPECT_TRUE(messages.pieces().empty());
}

TEST_F(SignalTest, IndexOutsideIsFatalWhenStrict) {
  const Signal* signal = make("data", 4, 7);
  EXPECT_FATAL(signal->getBitRef(8, false), errorFor("8", "/top/data"));
  EXPECT_FATAL(signal->getBitRef(3, false), errorFor("3", "/top/data"));
  EXPECT_FATAL(signal->getBitRef(8), errorFor("8", "/top/data"));
  EXPECT_FATAL(signal->getBitRef(0xffffffffU), errorFor("-1", "/top/data"));
}

TEST_F(SignalTest, SetBitRefAboveTheMsbIsFatal) {
  Signal* signal = make("data", 4, 7);
  EXPECT_EXPLAINED_FATAL(signal->setBitRef(8, nullptr));
  EXPECT_EXPLAINED_FATAL(signal->setBitRef(0xffffffffU, nullptr));
}

TEST_F(SignalTest, RangeBeyondAnyNetlistIsFatal) {
  EXPECT_EXPLAINED_FATAL(new Signal(m_module, "data", 1, 0, 0xfffffffeU, true));
  EXPECT_EXPLAINED_FATAL(new Signal(m_module, "data", 1, 0, 0xffffffffU, false));
}

TEST_F(SignalTest, HighNarrowRangeCostsNoMemoryPerIndexBelow) {
  const Signal* signal = make("data", 2'000'000'000, 2'000'000'001);
  EXPECT_EQ(Bit::getAllBits().size(), 2U);
  EXPECT_EQ(signal->getWidth(), 2U);
  EXPECT_EQ(signal->getSignature(), "2000000001_0_1_2000000000");
}

TEST_F(SignalTest, EntryBelowTheLsbIsStoredAndCountedButNotReachedByIndex) {
  Signal* signal = make("data", 4, 5);
  Bit* low = new Bit(77);
  low->setKind(Bit::UNREAD);
  low->setValueStr("1");
  BitRef* ref = new BitRef(signal, 1);
  ref->setBit(low);
  signal->setBitRef(1, ref);
  Messages messages;
  EXPECT_EQ(signal->getBitRef(1, true), nullptr);
  EXPECT_EQ(messages.error(), warningFor("1", "/top/data"));
  EXPECT_EQ(signal->getLsb(), 4U);
  EXPECT_EQ(signal->getSignature(), "5_77_0_1_4");
  EXPECT_EQ(signal->getValueStr(false), "zz1");
  EXPECT_EQ(signal->getAvail(), 1U);
  EXPECT_EQ(signal->getUnread(), 1U);
  EXPECT_EQ(signal->getInferred(), 3U);
  EXPECT_FALSE(signal->allZeros());
  EXPECT_EQ(signal->getBitRef(4)->getIndex(), 4U);
  EXPECT_EQ(signal->getBitRef(5)->getIndex(), 5U);
}

TEST_F(SignalTest, EntriesBelowTheLsbAreSkipped) {
  const Signal* signal = make("data", 4, 7);
  EXPECT_EQ(signal->getValueStr(false), "zzzz");
  EXPECT_EQ(signal->getInferred(), 4U);
  EXPECT_EQ(signal->getAvail(), 0U);
}

TEST_F(SignalTest, CountersCountBitsByKindAndMark) {
  const Signal* signal = make("data", 0, 5);
  bitOf(signal, 0)->setKind(Bit::STATE);
  bitOf(signal, 1)->setKind(Bit::UNREAD);
  bitOf(signal, 2)->setKind(Bit::CNST);
  bitOf(signal, 3)->setKind(Bit::UNREAD);
  bitOf(signal, 1)->setInferred(false);
  bitOf(signal, 5)->setInferred(false);
  EXPECT_EQ(signal->getAvail(), 4U);
  EXPECT_EQ(signal->getUnread(), 2U);
  EXPECT_EQ(signal->getInferred(), 4U);
}

TEST_F(SignalTest, CountersSkipMissingReferences) {
  Signal* signal = make("data", 0, 2);
  signal->setBitRef(1, nullptr);
  EXPECT_EQ(signal->getInferred(), 2U);
  EXPECT_EQ(signal->getValueStr(false), "zz");
  EXPECT_EQ(signal->getSignature(), "2_0_2_0");
}

TEST_F(SignalTest, AllZerosAndAllOnesHoldForASignalWithoutReferences) {
  const Signal* signal = make("data", 0, 3, true);
  EXPECT_TRUE(signal->allZeros());
  EXPECT_TRUE(signal->allOnes());
}

TEST_F(SignalTest, AllZerosAndAllOnesNeedEveryBitConstant) {
  Signal* signal = make("data", 0, 1);
  EXPECT_FALSE(signal->allZeros());
  EXPECT_FALSE(signal->allOnes());
  makeConstant(signal, 0, false);
  EXPECT_FALSE(signal->allZeros());
  makeConstant(signal, 1, false);
  EXPECT_TRUE(signal->allZeros());
  EXPECT_FALSE(signal->allOnes());
  makeConstant(signal, 1, true);
  EXPECT_FALSE(signal->allZeros());
  EXPECT_FALSE(signal->allOnes());
  makeConstant(signal, 0, true);
  EXPECT_TRUE(signal->allOnes());
  EXPECT_FALSE(signal->allZeros());
  bitOf(signal, 0)->setKind(Bit::STATE);
  EXPECT_FALSE(signal->allOnes());
  signal->setBitRef(0, nullptr);
  EXPECT_TRUE(signal->allOnes());
}

TEST_F(SignalTest, AllZerosLooksAtTheValueNotTheText) {
  Signal* signal = make("data", 0, 0);
  makeConstant(signal, 0, true);
  bitOf(signal, 0)->setValueStr("0");
  EXPECT_FALSE(signal->allZeros());
  EXPECT_TRUE(signal->allOnes());
}

TEST_F(SignalTest, ValueTextBeginsWithTheMostSignificantBit) {
  const Signal* signal = make("data", 0, 3);
  makeConstant(signal, 3, true);
  makeConstant(signal, 2, false);
  bitOf(signal, 1)->setKind(Bit::STATE);
  bitOf(signal, 0)->setKind(Bit::UNREAD);
  EXPECT_EQ(signal->getValueStr(false), "10zz");
  EXPECT_EQ(signal->getValueStr(true), "10su");
}

TEST_F(SignalTest, SignatureIsMsbThenIdsFromLowThenLsb) {
  new Bit(9);
  const Signal* signal = make("data", 0, 3);
  EXPECT_EQ(signal->getSignature(), "3_10_11_12_13_0");
  EXPECT_EQ(make("none", 2, 5, true)->getSignature(), "5_2");
  const Signal* high = make("high", 4, 5);
  EXPECT_EQ(high->getSignature(), "5_14_15_4");
}

TEST_F(SignalTest, SignaturesOfEqualBitsAreEqualAndOrderMatters) {
  Signal* a = make("a", 0, 1);
  Signal* b = make("b", 0, 1);
  Signal* swapped = make("c", 0, 1);
  a->merge(b, 0U);
  EXPECT_EQ(a->getSignature(), "1_2_3_0");
  EXPECT_EQ(b->getSignature(), a->getSignature());
  a->merge(swapped, 0, 1);
  a->merge(swapped, 1, 0);
  EXPECT_NE(swapped->getSignature(), a->getSignature());
  EXPECT_EQ(b->getSignature(), a->getSignature());
}

TEST_F(SignalTest, SignatureShowsTheFullUnsignedId) {
  const Signal* signal = make("a", 0, 0);
  bitOf(signal, 0)->setId(4294967295U);
  EXPECT_EQ(signal->getSignature(), "0_4294967295_0");
}

TEST_F(SignalTest, NetsCountUpFromZeroInCreationOrder) {
  Net* first = new Net;
  Net* second = new Net;
  EXPECT_EQ(first->getId(), 0U);
  EXPECT_EQ(second->getId(), 1U);
  EXPECT_EQ(listed(Net::getAllNets()), (std::vector<Net*>{first, second}));
  EXPECT_FALSE(first->isEnabled());
  EXPECT_TRUE(first->getSignals().empty());
}

TEST_F(SignalTest, SetNetAndAddSignalTieBothSides) {
  Net* net = new Net;
  Signal* a = make("a", 0, 0);
  Signal* b = make("b", 0, 0);
  b->setNet(net);
  net->addSignal(a);
  EXPECT_EQ(a->getNet(), net);
  EXPECT_EQ(b->getNet(), net);
  EXPECT_EQ(listed(net->getSignals()), (std::vector<Signal*>{a, b}));
  net->addSignal(a);
  b->setNet(net);
  EXPECT_EQ(net->getSignals().size(), 2U);
  EXPECT_TRUE(net->getSignals().contains(a));
  EXPECT_FALSE(net->getSignals().contains(make("a", 0, 0)));
}

TEST_F(SignalTest, SignalThatChangesItsNetStaysListedInTheOldOne) {
  Net* old = new Net;
  Net* net = new Net;
  Signal* signal = make("a", 0, 0);
  signal->setNet(old);
  signal->setNet(net);
  EXPECT_EQ(signal->getNet(), net);
  EXPECT_TRUE(old->getSignals().contains(signal));
  EXPECT_TRUE(net->getSignals().contains(signal));
}

TEST_F(SignalTest, NetListsTheFirstOfTwoSignalsOfOneNameButBothBelongToIt) {
  Net* net = new Net;
  Signal* first = make("q", 0, 0);
  Signal* second = new Signal(new Module("u1", "sub", 1), "q", 1, 0, 0, false);
  net->addSignal(first);
  net->addSignal(second);
  EXPECT_EQ(listed(net->getSignals()), (std::vector<Signal*>{first}));
  EXPECT_EQ(net->getSignals().size(), 1U);
  EXPECT_EQ(second->getNet(), net);
  second->enable();
  EXPECT_TRUE(first->isEnabled());
}

TEST_F(SignalTest, EnabledMarkIsSharedByTheNet) {
  Net* net = new Net;
  Signal* a = make("a", 0, 0);
  Signal* b = make("b", 0, 0);
  Signal* alone = make("c", 0, 0);
  a->setNet(net);
  b->setNet(net);
  a->enable();
  EXPECT_TRUE(b->isEnabled());
  EXPECT_TRUE(net->isEnabled());
  EXPECT_FALSE(alone->isEnabled());
  b->disable();
  EXPECT_FALSE(a->isEnabled());
  net->enable();
  EXPECT_TRUE(a->isEnabled());
  net->disable();
  EXPECT_FALSE(a->isEnabled());
}

TEST_F(SignalTest, EnablingASignalWithoutANetDoesNothing) {
  Signal* signal = make("a", 0, 0);
  signal->enable();
  EXPECT_FALSE(signal->isEnabled());
  signal->setNet(new Net);
  EXPECT_FALSE(signal->isEnabled());
  signal->disable();
  EXPECT_FALSE(signal->isEnabled());
}

TEST_F(SignalTest, SetSrcStateMarksTheSignalAndItsBits) {
  Signal* signal = make("a", 0, 2);
  Signal* other = make("b", 0, 0);
  signal->setBitRef(1, nullptr);
  signal->setSrcState();
  EXPECT_TRUE(signal->isSrcState());
  EXPECT_TRUE(bitOf(signal, 0)->isSrc());
  EXPECT_TRUE(bitOf(signal, 2)->isSrc());
  EXPECT_FALSE(bitOf(other, 0)->isSrc());
  EXPECT_FALSE(other->isSrcState());
}

TEST_F(SignalTest, SetSrcStateLeavesBitsBelowTheLsb) {
  Signal* signal = make("a", 4, 4);
  Bit* low = new Bit;
  BitRef* ref = new BitRef(signal, 0);
  ref->setBit(low);
  signal->setBitRef(0, ref);
  signal->setSrcState();
  EXPECT_FALSE(low->isSrc());
  EXPECT_TRUE(bitOf(signal, 4)->isSrc());
}

TEST_F(SignalTest, AddStateRecordsTheLocationOfOneIndex) {
  Signal* signal = make("a", 2, 4);
  signal->addState(3, 10, 20, 30);
  EXPECT_EQ(bitOf(signal, 3)->getKind(), Bit::STATE);
  EXPECT_EQ(bitOf(signal, 3)->getStateLoc1(), 10U);
  EXPECT_EQ(bitOf(signal, 3)->getStateLoc2(), 20U);
  EXPECT_EQ(bitOf(signal, 3)->getStateLoc3(), 30U);
  EXPECT_EQ(bitOf(signal, 2)->getKind(), Bit::UNKNOWN);
  EXPECT_EQ(bitOf(signal, 4)->getKind(), Bit::UNKNOWN);
}

TEST_F(SignalTest, AddStateOverridesAConstantAndAnEarlierLocation) {
  Signal* signal = make("a", 0, 0);
  makeConstant(signal, 0, true);
  signal->addState(0, 1, 2, 3);
  EXPECT_EQ(bitOf(signal, 0)->getKind(), Bit::STATE);
  EXPECT_TRUE(bitOf(signal, 0)->getValue());
  EXPECT_EQ(bitOf(signal, 0)->getValueStr(false), "1");
  signal->addState(0, 4, 5);
  EXPECT_EQ(bitOf(signal, 0)->getStateLoc1(), 4U);
  EXPECT_EQ(bitOf(signal, 0)->getStateLoc2(), 5U);
  EXPECT_EQ(bitOf(signal, 0)->getStateLoc3(), 0U);
}

TEST_F(SignalTest, AddStateWithABadIndexOnlyWarns) {
  Signal* signal = make("a", 2, 4);
  Messages messages;
  signal->addState(1, 10, 20, 30);
  signal->addState(5, 10, 20);
  EXPECT_EQ(messages.error(), warningFor("1", "/top/a") + warningFor("5", "/top/a"));
  EXPECT_EQ(messages.output(), "");
  EXPECT_EQ(signal->getAvail(), 0U);
}

TEST_F(SignalTest, AddStateAtAMissingReferenceIsQuiet) {
  Signal* signal = make("a", 0, 1, true);
  Messages messages;
  signal->addState(1, 10, 20, 30);
  EXPECT_TRUE(messages.pieces().empty());
  EXPECT_EQ(signal->getBitRef(1), nullptr);
}

TEST_F(SignalTest, ExpandMakesUpperBitsFirstThenLowerOnes) {
  Signal* signal = make("a", 4, 7);
  const std::vector<unsigned int> before = ids(signal);
  BitRef* kept = signal->getBitRef(5);
  signal->expand(2, 9);
  EXPECT_EQ(signal->getLsb(), 2U);
  EXPECT_EQ(signal->getMsb(), 9U);
  EXPECT_EQ(ids(signal), (std::vector<unsigned int>{6, 7, 0, 1, 2, 3, 4, 5}));
  EXPECT_EQ(before, (std::vector<unsigned int>{0, 1, 2, 3}));
  EXPECT_EQ(signal->getBitRef(5), kept);
  for (const unsigned int index : {2U, 3U, 8U, 9U}) {
    EXPECT_EQ(signal->getBitRef(index)->getIndex(), index);
    EXPECT_EQ(signal->getBitRef(index)->getSignal(), signal);
    EXPECT_EQ(bitOf(signal, index)->getKind(), Bit::UNKNOWN);
    EXPECT_TRUE(bitOf(signal, index)->isInferred());
    EXPECT_EQ(bitOf(signal, index)->getBitRefs().size(), 1U);
  }
}

TEST_F(SignalTest, ExpandNeverNarrows) {
  Signal* signal = make("a", 2, 6);
  signal->expand(3, 5);
  signal->expand(6, 6);
  EXPECT_EQ(signal->getLsb(), 2U);
  EXPECT_EQ(signal->getMsb(), 6U);
  EXPECT_EQ(Bit::getAllBits().size(), 5U);
}

TEST_F(SignalTest, ExpandOnOneSideClosesTheGap) {
  Signal* up = make("a", 2, 3);
  up->expand(6, 6);
  EXPECT_EQ(up->getLsb(), 2U);
  EXPECT_EQ(up->getMsb(), 6U);
  EXPECT_EQ(ids(up), (std::vector<unsigned int>{0, 1, 2, 3, 4}));
  Signal* down = make("b", 5, 5);
  down->expand(2, 3);
  EXPECT_EQ(down->getLsb(), 2U);
  EXPECT_EQ(down->getMsb(), 5U);
  EXPECT_EQ(ids(down), (std::vector<unsigned int>{6, 7, 8, 5}));
}

TEST_F(SignalTest, ExpandLeavesTheSignalsOwnGapsAlone) {
  Signal* signal = make("a", 1, 2, true);
  signal->expand(0, 3);
  EXPECT_EQ(signal->getBitRef(1), nullptr);
  EXPECT_EQ(signal->getBitRef(2), nullptr);
  EXPECT_EQ(bitOf(signal, 3)->getId(), 0U);
  EXPECT_EQ(bitOf(signal, 0)->getId(), 1U);
}

TEST_F(SignalTest, ExpandManyTimesByOneKeepsEveryBit) {
  Signal* up = make("a", 0, 0);
  for (unsigned int msb = 1; msb < 5000; ++msb) up->expand(msb, msb);
  Signal* down = make("b", 5000, 5000);
  for (unsigned int lsb = 5000; lsb-- > 0;) down->expand(lsb, lsb);
  for (unsigned int index = 0; index < 5000; ++index) {
    ASSERT_EQ(bitOf(up, index)->getId(), index);
    ASSERT_EQ(up->getBitRef(index)->getIndex(), index);
    ASSERT_EQ(bitOf(down, index)->getId(), 10'000 - index);
  }
}

TEST_F(SignalTest, MergeMapsIndexToIndexPlusOffset) {
  Signal* bus = make("bus", 0, 1);
  Signal* wide = make("wide", 3, 6);
  EXPECT_FALSE(bus->merge(wide, 4U));
  EXPECT_EQ(bitOf(bus, 0), bitOf(wide, 4));
  EXPECT_EQ(bitOf(bus, 1), bitOf(wide, 5));
  EXPECT_NE(bitOf(bus, 0), bitOf(wide, 3));
  EXPECT_NE(bitOf(bus, 1), bitOf(wide, 6));
  EXPECT_EQ(Bit::getAllBits().size(), 4U);
}

TEST_F(SignalTest, MergeKeepsTheBitsOfTheSignalMergedInto) {
  Signal* a = make("a", 0, 0);
  Signal* b = make("b", 0, 0);
  Bit* survivor = bitOf(a, 0);
  a->merge(b, 0U);
  EXPECT_EQ(bitOf(b, 0), survivor);
  EXPECT_EQ(listed(Bit::getAllBits()), (std::vector<Bit*>{survivor}));
  EXPECT_EQ(listed(survivor->getBitRefs()),
            (std::vector<BitRef*>{a->getBitRef(0), b->getBitRef(0)}));
}

TEST_F(SignalTest, MergeWarnsForEachIndexThatTheOtherLacks) {
  Signal* wide = make("wide", 0, 3);
  Signal* narrow = make("narrow", 1, 2);
  Messages messages;
  EXPECT_FALSE(wide->merge(narrow, 0U));
  EXPECT_EQ(messages.error(), warningFor("0", "/top/narrow") + warningFor("3", "/top/narrow"));
  EXPECT_EQ(messages.output(), "");
  EXPECT_EQ(bitOf(wide, 1), bitOf(narrow, 1));
  EXPECT_EQ(bitOf(wide, 2), bitOf(narrow, 2));
}

TEST_F(SignalTest, MergeSkipsMissingReferencesOnEitherSideWithoutAWord) {
  Signal* a = make("a", 0, 2);
  Signal* b = make("b", 0, 2);
  a->setBitRef(0, nullptr);
  b->setBitRef(1, nullptr);
  Bit* lone = bitOf(a, 1);
  Messages messages;
  EXPECT_FALSE(a->merge(b, 0U));
  EXPECT_TRUE(messages.pieces().empty());
  EXPECT_EQ(bitOf(a, 1), lone);
  EXPECT_EQ(bitOf(a, 2), bitOf(b, 2));
  EXPECT_EQ(a->getBitRef(0), nullptr);
}

TEST_F(SignalTest, MergeDoesNotAskTheOtherWhereItHasNoReferenceItself) {
  Signal* a = make("a", 0, 1, true);
  Signal* b = make("b", 5, 5);
  Messages messages;
  EXPECT_FALSE(a->merge(b, 0U));
  EXPECT_TRUE(messages.pieces().empty());
}

TEST_F(SignalTest, MergeStopsAtTheFirstConflictButStillWarns) {
  Signal* a = make("a", 0, 3);
  Signal* b = make("b", 0, 2);
  makeConstant(a, 1, false);
  makeConstant(b, 1, true);
  makeConstant(a, 2, true);
  makeConstant(b, 2, false);
  Messages messages;
  EXPECT_TRUE(a->merge(b, 0U));
  EXPECT_EQ(messages.output(), "ERROR: Bit conflict! 0: 0 1: 1\n");
  EXPECT_EQ(messages.error(), warningFor("3", "/top/b"));
  EXPECT_EQ(bitOf(a, 0), bitOf(b, 0));
  EXPECT_NE(bitOf(a, 2), bitOf(b, 2));
}

TEST_F(SignalTest, MergeAfterAConflictLeavesUnknownBitsApart) {
  Signal* a = make("a", 0, 1);
  Signal* b = make("b", 0, 1);
  makeConstant(a, 0, true);
  makeConstant(b, 0, false);
  Messages messages;
  EXPECT_TRUE(a->merge(b, 0U));
  EXPECT_NE(bitOf(a, 1), bitOf(b, 1));
  EXPECT_EQ(Bit::getAllBits().size(), 4U);
}

TEST_F(SignalTest, MergeOfSharedBitsIsNoConflict) {
  Signal* a = make("a", 0, 0);
  Signal* b = make("b", 0, 0);
  makeConstant(a, 0, true);
  EXPECT_FALSE(a->merge(b, 0U));
  EXPECT_FALSE(b->merge(a, 0U));
  EXPECT_FALSE(a->merge(a, 0U));
  EXPECT_EQ(Bit::getAllBits().size(), 1U);
}

TEST_F(SignalTest, IndexMergeJoinsOneBitOfEach) {
  Signal* bus = make("bus", 0, 3);
  Signal* bit = make("bit", 7, 7);
  Bit* survivor = bitOf(bus, 2);
  EXPECT_EQ(bus->merge(bit, 2, 7), 0);
  EXPECT_EQ(bitOf(bit, 7), survivor);
  EXPECT_EQ(bitOf(bus, 2), survivor);
  EXPECT_EQ(bitOf(bus, 1)->getBitRefs().size(), 1U);
  EXPECT_EQ(bitOf(bus, 3)->getBitRefs().size(), 1U);
}

TEST_F(SignalTest, IndexMergeIgnoresTheConflict) {
  Signal* a = make("a", 0, 0);
  Signal* b = make("b", 0, 0);
  makeConstant(a, 0, true);
  makeConstant(b, 0, false);
  Messages messages;
  EXPECT_EQ(a->merge(b, 0, 0), 0);
  EXPECT_EQ(messages.output(), "ERROR: Bit conflict! 0: 1 1: 0\n");
  EXPECT_EQ(messages.error(), "");
  EXPECT_NE(bitOf(a, 0), bitOf(b, 0));
}

TEST_F(SignalTest, IndexMergeOfOneBitWithItselfIsQuiet) {
  Signal* a = make("a", 0, 1);
  makeConstant(a, 0, true);
  Messages messages;
  EXPECT_EQ(a->merge(a, 0, 0), 0);
  EXPECT_TRUE(messages.pieces().empty());
}

TEST_F(SignalTest, IndexMergeIsStrictForItsOwnIndexAndQuietForTheOther) {
  Signal* a = make("a", 0, 1);
  Signal* b = make("b", 0, 1);
  Messages messages;
  EXPECT_EQ(a->merge(b, 1, 2), 0);
  EXPECT_EQ(messages.error(), warningFor("2", "/top/b"));
  EXPECT_EQ(Bit::getAllBits().size(), 4U);
}

TEST_F(SignalTest, IndexMergeOutsideItsOwnRangeIsFatal) {
  Signal* a = make("a", 0, 1);
  Signal* b = make("b", 0, 3);
  EXPECT_FATAL(a->merge(b, 2, 1), errorFor("2", "/top/a"));
}

TEST_F(SignalTest, IndexMergeWithAMissingReferenceDoesNothing) {
  Signal* a = make("a", 0, 0);
  Signal* b = make("b", 0, 0, true);
  Messages messages;
  EXPECT_EQ(a->merge(b, 0, 0), 0);
  EXPECT_TRUE(messages.pieces().empty());
  EXPECT_EQ(b->getBitRef(0), nullptr);
}

TEST_F(SignalTest, OneSetListsD3AndD03Once) {
  Signal* first = make("d<03>", 0, 0);
  Signal* second = make("d<3>", 0, 0);
  Net* net = new Net;
  net->addSignal(first);
  net->addSignal(second);
  m_module->addSignal(first);
  m_module->addSignal(second);
  EXPECT_EQ(listed(net->getSignals()), (std::vector<Signal*>{first}));
  EXPECT_EQ(listed(m_module->getSignals(false)), (std::vector<Signal*>{first}));
}

TEST_F(SignalTest, SetsOrderIndicesAsNumbers) {
  for (const char* name : {"d<10>", "e", "d<2>", "d", "D", "d_x", "d<1>", "c<11>"}) {
    m_module->addSignal(make(name, 0, 0));
  }
  EXPECT_EQ(namesOf(m_module->getSignals(false)),
            (Names{"D", "c<11>", "d", "d<1>", "d<2>", "d<10>", "d_x", "e"}));
}

TEST_F(SignalTest, NamesOfMixedFormAreKeptOnceInOneOrderHoweverTheyCome) {
  Names names{"d<10>", "d<2>x", "d<5>", "d<05>", "d<2><1>", "d"};
  std::sort(names.begin(), names.end());
  Names expected;
  do {
    Net* net = new Net;
    for (const std::string& name : names) net->addSignal(make(name.c_str(), 0, 0, true));
    Names found = namesOf(net->getSignals());
    ASSERT_EQ(found.size(), 5U);
    for (std::string& name : found) {
      if (name == "d<05>") name = "d<5>";
    }
    if (expected.empty()) expected = found;
    ASSERT_EQ(found, expected);
  } while (std::next_permutation(names.begin(), names.end()));
}

TEST_F(SignalTest, RandomNameSetsAgreeWithAnOrderedSet) {
  struct Less {
    bool operator()(const std::string& a, const std::string& b) const {
      return sigcmp(a.c_str(), b.c_str()) < 0;
    }
  };
  std::mt19937 random(7);
  const Names bases{"a", "b", "ab", "a1", "A", "a_b", "a.b", "a$", "\xc3\xa9", "a b"};
  for (int round = 0; round < 300; ++round) {
    Module* module = new Module("m", "d", 0);
    std::set<std::string, Less> expected;
    for (unsigned int id = 0; id < 60; ++id) {
      std::string name = bases[random() % (bases.size() - 1)];
      if (random() % 3 != 0) {
        name +=
            "<" + std::string(random() % 4 == 0 ? "0" : "") + std::to_string(random() % 30) + ">";
      }
      expected.insert(name);
      module->addSignal(new Signal(module, name.c_str(), id, 0, 0, true));
      // Looked at halfway too: a set goes on growing after it was ordered.
      if (id == 30) {
        ASSERT_EQ(namesOf(module->getSignals(false)), Names(expected.begin(), expected.end()));
      }
    }
    ASSERT_EQ(namesOf(module->getSignals(false)), Names(expected.begin(), expected.end()));
    ASSERT_EQ(module->getSignals(false).size(), expected.size());
  }
}

int sign(int value) { return (value > 0) - (value < 0); }

void expectOrder(const char* a, const char* b, int expected) {
  EXPECT_EQ(sign(sigcmp(a, b)), expected) << a << " and " << b;
  EXPECT_EQ(sign(sigcmp(b, a)), -expected) << b << " and " << a;
}

TEST(SigcmpTest, PlainNamesCompareAsBytes) {
  expectOrder("a", "b", -1);
  expectOrder("a", "a", 0);
  expectOrder("", "a", -1);
  expectOrder("", "", 0);
  expectOrder("a10", "a2", -1);
  expectOrder("Z", "a", -1);
  expectOrder("z", "\xc3\xa9", -1);
  expectOrder("a<10", "a<2", -1);
}

TEST(SigcmpTest, IndicesOfOneBaseCompareAsNumbers) {
  EXPECT_EQ(sigcmp("d<2>", "d<10>"), -8);
  EXPECT_EQ(sigcmp("d<10>", "d<2>"), 8);
  EXPECT_EQ(sigcmp("d<3>", "d<3>"), 0);
  EXPECT_EQ(sigcmp("d<3>", "d<03>"), 0);
  EXPECT_EQ(sigcmp("d<-1>", "d<1>"), -2);
  EXPECT_EQ(sigcmp("d<+3>", "d<3>"), 0);
  EXPECT_EQ(sigcmp("d< 3 >", "d<3>"), 0);
}

TEST(SigcmpTest, IndicesOfDifferentBasesCompareAsBytes) {
  expectOrder("d<2>", "e<1>", -1);
  expectOrder("d<2>", "D<10>", 1);
  expectOrder("d<2>", "d1<1>", 1);
  expectOrder("d<9>", "da<1>", -1);
}

TEST(SigcmpTest, MixedFormsCompareAsBytes) {
  expectOrder("d", "d<3>", -1);
  expectOrder("d<10>x", "d<2>x", -1);
  expectOrder("d<10>x", "d<2>", -1);
  expectOrder("d<3><10>", "d<3><4>", -1);
  expectOrder("d<10>", "d<2>x", -1);
  expectOrder("d<x>", "d<a>", 1);
  expectOrder("<10>", "<2>", -1);
  expectOrder("d<>", "d<3>", 1);
  expectOrder("d<10y>", "d<2>", -1);
  expectOrder("d<0x10>", "d<2>", -1);
}

TEST(SigcmpTest, OneNameWithAnAngleBracketIsEnoughToLookForIndices) {
  EXPECT_EQ(sigcmp("d<3", "d<10>"), -7);
  EXPECT_EQ(sigcmp("d<10>", "d<3"), 7);
  EXPECT_EQ(sigcmp("d 3", "d<10>"), -7);
  EXPECT_EQ(sigcmp("d>3", "d<10"), -7);
}

TEST(SigcmpTest, LongNamesAreReadWhole) {
  const std::string base(2000, 'n');
  EXPECT_EQ(sigcmp((base + "<2>").c_str(), (base + "<10>").c_str()), -8);
  expectOrder((base + "a<2>").c_str(), (base + "b<1>").c_str(), -1);
  expectOrder(("d<2>" + base).c_str(), "d<10>", 1);
  expectOrder(base.c_str(), (base + "<1>").c_str(), -1);
  const std::string brackets(100'000, '>');
  expectOrder(brackets.c_str(), (brackets + ">").c_str(), -1);
}

TEST(SigcmpTest, NumbersBeyond32BitsDoNoHarm) {
  for (const char* number : {"2147483647", "2147483648", "-2147483648", "4294967295", "4294967296",
                             "99999999999999999999999999", "-99999999999999999999999999"}) {
    const std::string name = std::string("d<") + number + ">";
    EXPECT_EQ(sigcmp(name.c_str(), name.c_str()), 0) << name;
    sigcmp(name.c_str(), "d<1>");
    sigcmp("d<-1>", name.c_str());
  }
  EXPECT_GT(sigcmp("d<2147483647>", "d<1>"), 0);
}

TEST_F(SignalTest, CompareSignalsIsTheLessOfSigcmp) {
  const CompareSignals less;
  const Signal* two = make("d<2>", 0, 0);
  const Signal* ten = make("d<10>", 0, 0);
  EXPECT_TRUE(less(two, ten));
  EXPECT_FALSE(less(ten, two));
  EXPECT_FALSE(less(two, two));
  EXPECT_FALSE(less(two, make("d<02>", 0, 0)));
}

}  // namespace
}  // namespace XRF_RTL2LL
