#include <crossreference/Bit.h>
#include <tests/TestModel.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <tuple>
#include <vector>

namespace XRF_RTL2LL {
namespace {

using testing_support::Deadline;
using testing_support::FreshModel;
using testing_support::listed;
using testing_support::Messages;
using Bits = std::vector<Bit*>;
using Refs = std::vector<BitRef*>;

class BitTest : public FreshModel {
 protected:
  BitRef* makeRef(unsigned int index = 0) { return new BitRef(m_signal, index); }
  BitRef* makeRef(Bit* bit) {
    BitRef* ref = makeRef();
    ref->setBit(bit);
    return ref;
  }

  Module* m_module = new Module("top", "top_def", 0);
  Signal* m_signal = new Signal(m_module, "s", 1, 0, 0, true);
};

Bit* constant(bool value) {
  Bit* bit = new Bit;
  bit->setKind(Bit::CNST);
  bit->setValue(value);
  return bit;
}

Bit* ofKind(Bit::BitKind kind) {
  Bit* bit = new Bit;
  bit->setKind(kind);
  return bit;
}

TEST_F(BitTest, FreshBitIsUnknownInferredAndReadsZ) {
  const Bit* bit = new Bit;
  EXPECT_EQ(bit->getKind(), Bit::UNKNOWN);
  EXPECT_FALSE(bit->getValue());
  EXPECT_EQ(bit->getValueStr(false), "z");
  EXPECT_EQ(bit->getValueStr(true), "z");
  EXPECT_FALSE(bit->isSrc());
  EXPECT_FALSE(bit->isChanged());
  EXPECT_TRUE(bit->isInferred());
  EXPECT_EQ(bit->getStateLoc1(), 0U);
  EXPECT_EQ(bit->getStateLoc2(), 0U);
  EXPECT_EQ(bit->getStateLoc3(), 0U);
  EXPECT_TRUE(bit->getBitRefs().empty());
}

TEST_F(BitTest, EnumeratorsHaveTheirFixedValues) {
  EXPECT_EQ(static_cast<unsigned>(Bit::STATE), 0U);
  EXPECT_EQ(static_cast<unsigned>(Bit::UNKNOWN), 1U);
  EXPECT_EQ(static_cast<unsigned>(Bit::CNST), 2U);
  EXPECT_EQ(static_cast<unsigned>(Bit::UNREAD), 3U);
}

TEST_F(BitTest, IdsCountUpFromZero) {
  EXPECT_EQ(Bit::getNextId(), 0U);
  EXPECT_EQ((new Bit)->getId(), 0U);
  EXPECT_EQ((new Bit)->getId(), 1U);
  EXPECT_EQ(Bit::getNextId(), 2U);
}

TEST_F(BitTest, BitOfGivenIdMovesTheNextIdOnlyUpwards) {
  for (int made = 0; made < 3; ++made) new Bit;
  EXPECT_EQ((new Bit(7))->getId(), 7U);
  EXPECT_EQ(Bit::getNextId(), 8U);
  EXPECT_EQ((new Bit(2))->getId(), 2U);
  EXPECT_EQ(Bit::getNextId(), 8U);
  EXPECT_EQ((new Bit(8))->getId(), 8U);
  EXPECT_EQ(Bit::getNextId(), 9U);
  EXPECT_EQ((new Bit)->getId(), 9U);
}

TEST_F(BitTest, MaxBitIdIsWhatWasDeclaredLast) {
  EXPECT_EQ(Bit::getMaxBitId(), 0U);
  new Bit(40);
  EXPECT_EQ(Bit::getMaxBitId(), 0U);
  Bit::setMaxBitId(17);
  EXPECT_EQ(Bit::getMaxBitId(), 17U);
  Bit::setMaxBitId(3);
  EXPECT_EQ(Bit::getMaxBitId(), 3U);
  EXPECT_EQ(Bit::getNextId(), 41U);
}

TEST_F(BitTest, RegistryListsBitsInCreationOrderNotById) {
  Bit* third = new Bit(9);
  Bit* first = new Bit(1);
  Bit* last = new Bit;
  EXPECT_EQ(listed(Bit::getAllBits()), (Bits{third, first, last}));
  EXPECT_EQ(Bit::getAllBits().size(), 3U);
  EXPECT_TRUE(Bit::getAllBits().contains(first));
  EXPECT_FALSE(Bit::getAllBits().contains(nullptr));
}

TEST_F(BitTest, SetValueReplacesTheText) {
  Bit* bit = new Bit;
  bit->setValue(true);
  EXPECT_TRUE(bit->getValue());
  EXPECT_EQ(bit->getValueStr(false), "1");
  bit->setValue(false);
  EXPECT_FALSE(bit->getValue());
  EXPECT_EQ(bit->getValueStr(false), "0");
  EXPECT_EQ(bit->getKind(), Bit::UNKNOWN);
}

TEST_F(BitTest, SetValueStrLeavesTheValue) {
  Bit* bit = constant(true);
  Bit* other = constant(true);
  bit->setValueStr("z");
  EXPECT_TRUE(bit->getValue());
  EXPECT_EQ(bit->getValueStr(false), "z");
  bit->setValueStr("a longer text of the host's own");
  EXPECT_EQ(bit->getValueStr(false), "a longer text of the host's own");
  EXPECT_EQ(other->getValueStr(false), "1");
  bit->setValueStr("");
  EXPECT_EQ(bit->getValueStr(false), "");
  bit->setValue(false);
  EXPECT_EQ(bit->getValueStr(false), "0");
}

TEST_F(BitTest, DisplayTextDependsOnTheKindForStateAndUnreadOnly) {
  const std::array<std::pair<Bit::BitKind, const char*>, 4> cases{
      {{Bit::STATE, "s"}, {Bit::UNKNOWN, "1"}, {Bit::CNST, "1"}, {Bit::UNREAD, "u"}}};
  for (const auto& [kind, text] : cases) {
    Bit* bit = ofKind(kind);
    bit->setValue(true);
    EXPECT_EQ(bit->getValueStr(true), text) << kind;
    EXPECT_EQ(bit->getValueStr(false), "1") << kind;
  }
}

TEST_F(BitTest, AccessorsKeepEachFieldApart) {
  Bit* bit = new Bit;
  bit->setStateLoc(0xffffffffU, 2, 3);
  EXPECT_EQ(bit->getStateLoc1(), 0xffffffffU);
  EXPECT_EQ(bit->getStateLoc2(), 2U);
  EXPECT_EQ(bit->getStateLoc3(), 3U);
  EXPECT_EQ(bit->getKind(), Bit::UNKNOWN);
  bit->setChanged(true);
  EXPECT_TRUE(bit->isChanged());
  EXPECT_FALSE(bit->isSrc());
  bit->setSrc(true);
  bit->setChanged(false);
  EXPECT_FALSE(bit->isChanged());
  EXPECT_TRUE(bit->isSrc());
  bit->setInferred(false);
  EXPECT_FALSE(bit->isInferred());
  bit->setInferred(true);
  EXPECT_TRUE(bit->isInferred());
  bit->setId(0xfffffffeU);
  EXPECT_EQ(bit->getId(), 0xfffffffeU);
}

TEST_F(BitTest, ReferenceHasNoBitUntilSet) {
  BitRef* ref = makeRef(5);
  EXPECT_EQ(ref->getIndex(), 5U);
  EXPECT_EQ(ref->getSignal(), m_signal);
  EXPECT_EQ(ref->getBit(), nullptr);
  Signal* other = new Signal(m_module, "t", 2, 0, 0, true);
  ref->setSignal(other);
  EXPECT_EQ(ref->getSignal(), other);
  EXPECT_EQ(ref->getIndex(), 5U);
}

TEST_F(BitTest, SetBitAddsTheReferenceToTheSet) {
  Bit* bit = new Bit;
  BitRef* ref = makeRef(bit);
  EXPECT_EQ(ref->getBit(), bit);
  EXPECT_EQ(listed(bit->getBitRefs()), Refs{ref});
  ref->setBit(bit);
  EXPECT_EQ(listed(bit->getBitRefs()), Refs{ref});
}

TEST_F(BitTest, AddBitRefTwiceKeepsOneEntryAndLeavesTheReferencesBit) {
  Bit* bit = new Bit;
  BitRef* ref = makeRef();
  BitRef* second = makeRef();
  bit->addBitRef(ref);
  bit->addBitRef(second);
  bit->addBitRef(ref);
  EXPECT_EQ(listed(bit->getBitRefs()), (Refs{ref, second}));
  EXPECT_EQ(bit->getBitRefs().size(), 2U);
  EXPECT_EQ(ref->getBit(), nullptr);
}

TEST_F(BitTest, SetBitLeavesTheReferenceInTheSetOfTheOldBit) {
  Bit* old = new Bit;
  Bit* bit = new Bit;
  BitRef* ref = makeRef(old);
  ref->setBit(bit);
  EXPECT_EQ(ref->getBit(), bit);
  EXPECT_EQ(listed(old->getBitRefs()), Refs{ref});
  EXPECT_EQ(listed(bit->getBitRefs()), Refs{ref});
  EXPECT_TRUE(old->getBitRefs().contains(ref));
}

TEST_F(BitTest, RangeOfReferencesKnowsItsMembers) {
  Bit* bit = new Bit;
  Bit* other = new Bit;
  BitRef* in = makeRef(bit);
  BitRef* out = makeRef(other);
  EXPECT_TRUE(bit->getBitRefs().contains(in));
  EXPECT_FALSE(bit->getBitRefs().contains(out));
  EXPECT_FALSE(bit->getBitRefs().contains(nullptr));
  EXPECT_FALSE((new Bit)->getBitRefs().contains(nullptr));
}

TEST_F(BitTest, MergingABitWithItselfChangesNothing) {
  Bit* bit = constant(true);
  bit->setValueStr("z");
  BitRef* ref = makeRef(bit);
  Messages messages;
  EXPECT_EQ(bit->merge(bit), 0);
  EXPECT_EQ(listed(Bit::getAllBits()), Bits{bit});
  EXPECT_EQ(listed(bit->getBitRefs()), Refs{ref});
  EXPECT_EQ(bit->getValueStr(false), "z");
  EXPECT_TRUE(messages.pieces().empty());
}

TEST_F(BitTest, MergeMovesReferencesAndTakesTheOtherOutOfTheRegistry) {
  Bit* before = new Bit;
  Bit* survivor = new Bit;
  Bit* other = new Bit;
  Bit* after = new Bit;
  BitRef* own = makeRef(survivor);
  BitRef* first = makeRef(other);
  BitRef* second = makeRef(other);
  EXPECT_EQ(survivor->merge(other), 0);
  EXPECT_EQ(first->getBit(), survivor);
  EXPECT_EQ(second->getBit(), survivor);
  EXPECT_EQ(own->getBit(), survivor);
  EXPECT_EQ(listed(survivor->getBitRefs()), (Refs{own, first, second}));
  EXPECT_EQ(listed(Bit::getAllBits()), (Bits{before, survivor, after}));
  EXPECT_EQ(Bit::getAllBits().size(), 3U);
  EXPECT_FALSE(Bit::getAllBits().contains(other));
  EXPECT_TRUE(Bit::getAllBits().contains(survivor));
}

TEST_F(BitTest, SurvivorKeepsItsPlaceInTheRegistryEvenWhenYounger) {
  Bit* other = new Bit;
  Bit* middle = new Bit;
  Bit* survivor = new Bit;
  survivor->merge(other);
  EXPECT_EQ(listed(Bit::getAllBits()), (Bits{middle, survivor}));
  Bit* late = new Bit;
  EXPECT_EQ(listed(Bit::getAllBits()), (Bits{middle, survivor, late}));
}

TEST_F(BitTest, MergedIdIsTheLargerOfTheTwoWhicheverSurvives) {
  Bit* low = new Bit(3);
  low->merge(new Bit(11));
  EXPECT_EQ(low->getId(), 11U);
  Bit* high = new Bit(20);
  high->merge(new Bit(4));
  EXPECT_EQ(high->getId(), 20U);
  EXPECT_EQ(Bit::getNextId(), 21U);
}

TEST_F(BitTest, MergedBitIsASourceIfEitherIs) {
  for (const bool mine : {false, true}) {
    for (const bool theirs : {false, true}) {
      Bit* bit = new Bit;
      Bit* other = new Bit;
      bit->setSrc(mine);
      other->setSrc(theirs);
      bit->merge(other);
      EXPECT_EQ(bit->isSrc(), mine || theirs);
    }
  }
}

TEST_F(BitTest, MergedBitStaysInferredOnlyIfBothAre) {
  for (const bool mine : {false, true}) {
    for (const bool theirs : {false, true}) {
      Bit* bit = new Bit;
      Bit* other = new Bit;
      bit->setInferred(mine);
      other->setInferred(theirs);
      bit->merge(other);
      EXPECT_EQ(bit->isInferred(), mine && theirs);
    }
  }
}

TEST_F(BitTest, MergeLeavesTheChangedMarkAndText) {
  for (const bool mine : {false, true}) {
    Bit* bit = new Bit;
    Bit* other = new Bit;
    bit->setChanged(mine);
    bit->setValueStr("mine");
    other->setChanged(!mine);
    other->setValueStr("theirs");
    bit->merge(other);
    EXPECT_EQ(bit->isChanged(), mine);
    EXPECT_EQ(bit->getValueStr(false), "mine");
  }
}

TEST_F(BitTest, MergeCombinesEveryPairOfKinds) {
  constexpr auto S = Bit::STATE;
  constexpr auto U = Bit::UNKNOWN;
  constexpr auto C = Bit::CNST;
  constexpr auto N = Bit::UNREAD;
  const std::vector<std::tuple<Bit::BitKind, Bit::BitKind, Bit::BitKind>> cases{
      {S, S, S}, {S, U, S}, {S, C, C}, {S, N, S}, {U, S, S}, {U, U, U}, {U, C, C}, {U, N, U},
      {C, S, C}, {C, U, C}, {C, C, C}, {C, N, C}, {N, S, S}, {N, U, N}, {N, C, C}, {N, N, N}};
  for (const auto& [mine, theirs, merged] : cases) {
    Bit* bit = ofKind(mine);
    EXPECT_EQ(bit->merge(ofKind(theirs)), 0);
    EXPECT_EQ(bit->getKind(), merged) << mine << " with " << theirs;
  }
}

TEST_F(BitTest, MergeTakesTheConstantOfTheOther) {
  for (const bool value : {false, true}) {
    Bit* bit = ofKind(Bit::STATE);
    bit->setStateLoc(1, 2, 3);
    bit->setValue(!value);
    Bit* other = constant(value);
    other->setValueStr("z");
    EXPECT_EQ(bit->merge(other), 0);
    EXPECT_EQ(bit->getKind(), Bit::CNST);
    EXPECT_EQ(bit->getValue(), value);
    EXPECT_EQ(bit->getValueStr(false), value ? "1" : "0");
    EXPECT_EQ(bit->getStateLoc1(), 1U);
  }
}

TEST_F(BitTest, MergeOfEqualConstantsSpellsTheValue) {
  for (const bool value : {false, true}) {
    Bit* bit = constant(value);
    bit->setValueStr("z");
    EXPECT_EQ(bit->merge(constant(value)), 0);
    EXPECT_EQ(bit->getKind(), Bit::CNST);
    EXPECT_EQ(bit->getValue(), value);
    EXPECT_EQ(bit->getValueStr(false), value ? "1" : "0");
  }
}

TEST_F(BitTest, MergeLeavesTheValueOfAConstantThatMeetsAnyOtherKind) {
  for (const Bit::BitKind kind : {Bit::STATE, Bit::UNKNOWN, Bit::UNREAD}) {
    Bit* bit = constant(true);
    bit->setValueStr("z");
    Bit* other = ofKind(kind);
    other->setValue(false);
    EXPECT_EQ(bit->merge(other), 0);
    EXPECT_TRUE(bit->getValue());
    EXPECT_EQ(bit->getValueStr(false), "z");
  }
}

TEST_F(BitTest, ConstantThatAbsorbsAStateStaysConstantAndTakesItsReferences) {
  Bit* bit = constant(false);
  Bit* state = ofKind(Bit::STATE);
  state->setStateLoc(4, 5, 6);
  BitRef* ref = makeRef(state);
  EXPECT_EQ(bit->merge(state), 0);
  EXPECT_EQ(bit->getKind(), Bit::CNST);
  EXPECT_EQ(ref->getBit(), bit);
  EXPECT_EQ(bit->getId(), 1U);
  EXPECT_EQ(bit->getStateLoc1(), 0U);
}

TEST_F(BitTest, UnknownThatAbsorbsAStateDoesNotTakeItsLocation) {
  Bit* bit = new Bit;
  Bit* state = ofKind(Bit::STATE);
  state->setStateLoc(4, 5, 6);
  state->setValue(true);
  EXPECT_EQ(bit->merge(state), 0);
  EXPECT_EQ(bit->getKind(), Bit::STATE);
  EXPECT_EQ(bit->getStateLoc1(), 0U);
  EXPECT_EQ(bit->getStateLoc2(), 0U);
  EXPECT_EQ(bit->getStateLoc3(), 0U);
  EXPECT_FALSE(bit->getValue());
  EXPECT_EQ(bit->getValueStr(false), "z");
}

TEST_F(BitTest, StateThatAbsorbsAStateKeepsItsOwnLocation) {
  Bit* bit = ofKind(Bit::STATE);
  bit->setStateLoc(1, 2, 3);
  Bit* other = ofKind(Bit::STATE);
  other->setStateLoc(4, 5, 6);
  bit->merge(other);
  EXPECT_EQ(bit->getStateLoc1(), 1U);
  EXPECT_EQ(bit->getStateLoc2(), 2U);
  EXPECT_EQ(bit->getStateLoc3(), 3U);
}

TEST_F(BitTest, ConflictingConstantsPrintOnStandardOutputAndChangeNothing) {
  for (const bool value : {false, true}) {
    Bit* bit = constant(value);
    Bit* other = constant(!value);
    other->setSrc(true);
    other->setInferred(false);
    const unsigned int id = bit->getId();
    BitRef* own = makeRef(bit);
    BitRef* theirs = makeRef(other);
    const std::size_t count = Bit::getAllBits().size();
    Messages messages;
    EXPECT_EQ(bit->merge(other), 1);
    const std::string text = std::string("ERROR: Bit conflict! 0: ") + (value ? "1" : "0") +
                             " 1: " + (value ? "0" : "1") + "\n";
    EXPECT_EQ(messages.output(), text);
    EXPECT_EQ(messages.error(), "");
    EXPECT_EQ(Bit::getAllBits().size(), count);
    EXPECT_TRUE(Bit::getAllBits().contains(other));
    EXPECT_EQ(own->getBit(), bit);
    EXPECT_EQ(theirs->getBit(), other);
    EXPECT_EQ(listed(bit->getBitRefs()), Refs{own});
    EXPECT_EQ(listed(other->getBitRefs()), Refs{theirs});
    EXPECT_EQ(bit->getValue(), value);
    EXPECT_EQ(other->getValue(), !value);
    EXPECT_EQ(bit->getId(), id);
    EXPECT_FALSE(bit->isSrc());
    EXPECT_TRUE(bit->isInferred());
  }
}

TEST_F(BitTest, ConflictReachesTheProcessesStandardOutput) {
  Bit* bit = constant(false);
  Bit* other = constant(true);
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  bit->merge(other);
  std::fflush(stdout);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "ERROR: Bit conflict! 0: 0 1: 1\n");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(BitTest, ConstantsWhoseTextsDifferButValuesAgreeDoNotConflict) {
  Bit* bit = constant(true);
  Bit* other = constant(true);
  other->setValueStr("0");
  Messages messages;
  EXPECT_EQ(bit->merge(other), 0);
  EXPECT_TRUE(messages.pieces().empty());
}

TEST_F(BitTest, ReferencesFollowAChainOfMerges) {
  Bit* first = new Bit;
  Bit* second = new Bit;
  Bit* third = new Bit;
  BitRef* ref = makeRef(first);
  second->merge(first);
  EXPECT_EQ(ref->getBit(), second);
  BitRef* late = makeRef(second);
  third->merge(second);
  EXPECT_EQ(ref->getBit(), third);
  EXPECT_EQ(late->getBit(), third);
  EXPECT_EQ(listed(third->getBitRefs()), (Refs{ref, late}));
  EXPECT_EQ(listed(Bit::getAllBits()), Bits{third});
}

TEST_F(BitTest, ReferencesComeInTheOrderInWhichTheyArrived) {
  Bit* a = new Bit;
  Bit* b = new Bit;
  Bit* c = new Bit;
  BitRef* b1 = makeRef(b);
  BitRef* c1 = makeRef(c);
  BitRef* a1 = makeRef(a);
  BitRef* c2 = makeRef(c);
  b->merge(c);
  BitRef* b2 = makeRef(b);
  a->merge(b);
  BitRef* a2 = makeRef(a);
  EXPECT_EQ(listed(a->getBitRefs()), (Refs{a1, b1, c1, c2, b2, a2}));
  EXPECT_EQ(a->getBitRefs().size(), 6U);
}

TEST_F(BitTest, MergeRepointsAReferenceThatAnotherSetHoldsToo) {
  Bit* old = new Bit;
  Bit* bit = new Bit;
  Bit* survivor = new Bit;
  BitRef* ref = makeRef(old);
  ref->setBit(bit);
  // The old bit's set still holds the reference, so absorbing the old bit takes the reference away
  // from the bit it was pointed at since.
  survivor->merge(old);
  EXPECT_EQ(ref->getBit(), survivor);
  EXPECT_EQ(listed(survivor->getBitRefs()), Refs{ref});
  EXPECT_EQ(listed(bit->getBitRefs()), Refs{ref});
  // And again, for the set that was left behind now.
  Bit* last = new Bit;
  last->merge(bit);
  EXPECT_EQ(ref->getBit(), last);
  EXPECT_TRUE(survivor->getBitRefs().contains(ref));
}

TEST_F(BitTest, MergeOfTwoBitsThatHoldOneReferenceKeepsItOnce) {
  Bit* old = new Bit;
  Bit* bit = new Bit;
  BitRef* before = makeRef(old);
  BitRef* ref = makeRef(old);
  ref->setBit(bit);
  BitRef* after = makeRef(bit);
  old->merge(bit);
  EXPECT_EQ(ref->getBit(), old);
  EXPECT_EQ(listed(old->getBitRefs()), (Refs{before, ref, after}));
  EXPECT_EQ(old->getBitRefs().size(), 3U);
}

TEST_F(BitTest, MergePointsAReferenceThatWasOnlyAddedToTheSet) {
  Bit* bit = new Bit;
  Bit* survivor = new Bit;
  BitRef* ref = makeRef();
  bit->addBitRef(ref);
  survivor->merge(bit);
  EXPECT_EQ(ref->getBit(), survivor);
  EXPECT_EQ(listed(survivor->getBitRefs()), Refs{ref});
}

TEST_F(BitTest, MergeOfReferencesMergesTheirBits) {
  Bit* bit = new Bit;
  Bit* other = new Bit;
  BitRef* ref = makeRef(bit);
  BitRef* theirs = makeRef(other);
  EXPECT_EQ(ref->merge(theirs), 0);
  EXPECT_EQ(ref->getBit(), bit);
  EXPECT_EQ(theirs->getBit(), bit);
  EXPECT_EQ(ref->merge(theirs), 0);
  EXPECT_EQ(listed(Bit::getAllBits()), Bits{bit});
}

TEST_F(BitTest, MergeOfReferencesReportsTheConflict) {
  BitRef* ref = makeRef(constant(true));
  BitRef* theirs = makeRef(constant(false));
  Messages messages;
  EXPECT_EQ(ref->merge(theirs), 1);
  EXPECT_EQ(messages.output(), "ERROR: Bit conflict! 0: 1 1: 0\n");
  EXPECT_NE(ref->getBit(), theirs->getBit());
}

TEST_F(BitTest, HundredThousandReferencesMergedIntoFreshBitsAgainAndAgain) {
  constexpr unsigned int count = 100'000;
  Bit* bit = new Bit;
  Refs refs;
  for (unsigned int index = 0; index < count; ++index) refs.push_back(makeRef(bit));
  const Deadline deadline(20);
  for (unsigned int round = 0; round < count; ++round) {
    Bit* fresh = new Bit;
    ASSERT_EQ(fresh->merge(bit), 0);
    bit = fresh;
    ASSERT_EQ(bit->getBitRefs().size(), count);
    if (round % 1000 == 0) {
      ASSERT_EQ(refs[round]->getBit(), bit);
    }
    ASSERT_FALSE(deadline.passed()) << "after " << round << " merges";
  }
  EXPECT_EQ(refs.front()->getBit(), bit);
  EXPECT_EQ(refs.back()->getBit(), bit);
  EXPECT_EQ(listed(bit->getBitRefs()), refs);
  EXPECT_EQ(Bit::getAllBits().size(), 1U);
}

TEST_F(BitTest, HundredThousandBitsMergedIntoOne) {
  constexpr unsigned int count = 100'000;
  Bit* bit = new Bit;
  Refs refs;
  const Deadline deadline(20);
  for (unsigned int index = 0; index < count; ++index) {
    Bit* other = new Bit;
    refs.push_back(makeRef(other));
    ASSERT_EQ(bit->merge(other), 0);
    ASSERT_FALSE(deadline.passed());
  }
  EXPECT_EQ(listed(bit->getBitRefs()), refs);
  EXPECT_EQ(bit->getId(), count);
}

TEST_F(BitTest, LongChainOfAbsorbedBitsIsFollowedFromItsFarEnd) {
  constexpr unsigned int count = 200'000;
  Bit* bit = new Bit;
  BitRef* ref = makeRef(bit);
  for (unsigned int round = 0; round < count; ++round) {
    Bit* fresh = new Bit;
    fresh->merge(bit);
    bit = fresh;
  }
  EXPECT_EQ(ref->getBit(), bit);
  EXPECT_EQ(ref->getBit(), bit);
}

// The model by its plain rules: sets of references that merges walk one by one.
struct PlainBit {
  Bit* real;
  unsigned int id;
  Bit::BitKind kind = Bit::UNKNOWN;
  bool value = false;
  std::string text = "z";
  bool src = false;
  bool inferred = true;
  bool changed = false;
  unsigned int loc = 0;
  bool live = true;
  std::vector<std::size_t> refs{};
};

class PlainModel {
 public:
  explicit PlainModel(Signal* signal, unsigned int seed) : m_signal(signal), m_random(seed) {}

  void step() {
    switch (pick(10)) {
      case 0:
        return makeBit();
      case 1:
        return makeRef();
      case 2:
        return pointRef();
      case 3:
        return enterRef();
      case 4:
      case 5:
        return changeBit();
      default:
        return mergeBits();
    }
  }

  void check() const {
    Bits live;
    for (const PlainBit& bit : m_bits) {
      if (!bit.live) continue;
      live.push_back(bit.real);
      ASSERT_EQ(bit.real->getId(), bit.id);
      ASSERT_EQ(bit.real->getKind(), bit.kind);
      ASSERT_EQ(bit.real->getValue(), bit.value);
      ASSERT_EQ(bit.real->getValueStr(false), bit.text);
      ASSERT_EQ(bit.real->isSrc(), bit.src);
      ASSERT_EQ(bit.real->isInferred(), bit.inferred);
      ASSERT_EQ(bit.real->isChanged(), bit.changed);
      ASSERT_EQ(bit.real->getStateLoc1(), bit.loc);
      Refs refs;
      for (const std::size_t ref : bit.refs) refs.push_back(m_refs[ref].first);
      ASSERT_EQ(listed(bit.real->getBitRefs()), refs);
      ASSERT_EQ(bit.real->getBitRefs().size(), refs.size());
    }
    ASSERT_EQ(listed(Bit::getAllBits()), live);
    ASSERT_EQ(Bit::getAllBits().size(), live.size());
    ASSERT_EQ(Bit::getNextId(), m_next);
    for (const auto& [ref, bit] : m_refs) {
      ASSERT_EQ(ref->getBit(), bit == none ? nullptr : m_bits[bit].real);
    }
  }

 private:
  static constexpr std::size_t none = ~std::size_t{0};

  unsigned int pick(std::size_t count) { return static_cast<unsigned int>(m_random() % count); }
  std::size_t pickLive() {
    std::vector<std::size_t> live;
    for (std::size_t at = 0; at < m_bits.size(); ++at) {
      if (m_bits[at].live) live.push_back(at);
    }
    return live.empty() ? none : live[pick(live.size())];
  }
  void makeBit() {
    if (pick(3) != 0) {
      m_bits.push_back({new Bit, m_next});
      ++m_next;
      return;
    }
    // Only unused ids: two bits of one id are nothing that a reader makes.
    const unsigned int id = m_next + pick(5);
    m_bits.push_back({new Bit(id), id});
    m_next = id + 1;
  }
  void makeRef() { m_refs.emplace_back(new BitRef(m_signal, 0), none); }
  void enter(std::size_t bit, std::size_t ref) {
    std::vector<std::size_t>& refs = m_bits[bit].refs;
    if (std::find(refs.begin(), refs.end(), ref) == refs.end()) refs.push_back(ref);
  }
  void pointRef() {
    const std::size_t bit = pickLive();
    if (bit == none || m_refs.empty()) return;
    const std::size_t ref = pick(m_refs.size());
    // Mostly first placements, as readers do; now and then a reference moves on.
    if (m_refs[ref].second != none && pick(4) != 0) return;
    m_refs[ref].first->setBit(m_bits[bit].real);
    m_refs[ref].second = bit;
    enter(bit, ref);
  }
  void enterRef() {
    const std::size_t bit = pickLive();
    if (bit == none || m_refs.empty() || pick(4) != 0) return;
    const std::size_t ref = pick(m_refs.size());
    m_bits[bit].real->addBitRef(m_refs[ref].first);
    enter(bit, ref);
  }
  void changeBit() {
    const std::size_t at = pickLive();
    if (at == none) return;
    PlainBit& bit = m_bits[at];
    bit.kind = static_cast<Bit::BitKind>(pick(4));
    bit.src = pick(2) != 0;
    bit.inferred = pick(2) != 0;
    bit.changed = pick(2) != 0;
    bit.loc = pick(1000);
    bit.real->setKind(bit.kind);
    bit.real->setSrc(bit.src);
    bit.real->setInferred(bit.inferred);
    bit.real->setChanged(bit.changed);
    bit.real->setStateLoc(bit.loc, 0, 0);
    if (pick(2) == 0) return;
    bit.value = pick(2) != 0;
    bit.text = bit.value ? "1" : "0";
    bit.real->setValue(bit.value);
    if (pick(3) != 0) return;
    bit.text = std::vector<std::string>{"z", "0", "1", "other"}[pick(4)];
    bit.real->setValueStr(bit.text);
  }
  int mergePlain(PlainBit& bit, std::size_t at, PlainBit& other) {
    if (&bit == &other) return 0;
    const bool constant = other.kind == Bit::CNST;
    if (constant && bit.kind == Bit::CNST && bit.value != other.value) return 1;
    if (constant) {
      bit.kind = Bit::CNST;
      bit.value = other.value;
      bit.text = other.value ? "1" : "0";
    } else if (other.kind == Bit::STATE && bit.kind != Bit::CNST) {
      bit.kind = Bit::STATE;
    }
    for (const std::size_t ref : other.refs) {
      m_refs[ref].second = at;
      enter(at, ref);
    }
    bit.id = std::max(bit.id, other.id);
    bit.src = bit.src || other.src;
    bit.inferred = bit.inferred && other.inferred;
    other.live = false;
    return 0;
  }
  void mergeBits() {
    const std::size_t bit = pickLive();
    const std::size_t other = pickLive();
    if (bit == none) return;
    Messages messages;
    const int result = m_bits[bit].real->merge(m_bits[other].real);
    ASSERT_EQ(result, mergePlain(m_bits[bit], bit, m_bits[other]));
    ASSERT_EQ(messages.output().empty(), result == 0);
  }

  Signal* m_signal;
  std::mt19937 m_random;
  unsigned int m_next = 0;
  std::vector<PlainBit> m_bits;
  std::vector<std::pair<BitRef*, std::size_t>> m_refs;
};

TEST_F(BitTest, RandomMergesAgreeWithAPlainModelOfSets) {
  for (unsigned int seed = 0; seed < 200; ++seed) {
    SCOPED_TRACE(seed);
    Model model;
    ModelScope scope(model);
    PlainModel plain(new Signal(new Module("m", "d", 0), "s", 1, 0, 0, true), seed);
    for (int step = 0; step < 200; ++step) {
      plain.step();
      ASSERT_NO_FATAL_FAILURE(plain.check()) << "step " << step;
    }
  }
}

}  // namespace
}  // namespace XRF_RTL2LL
