#include <crossreference/Model.h>
#include <tests/TestModel.h>

#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace XRF_RTL2LL {
namespace {

using testing_support::listed;
using testing_support::Messages;

/// What the counters and registries of the current model hold.
struct Inventory {
  std::size_t bits = Bit::getAllBits().size();
  std::size_t signals = Signal::getAllSignals().size();
  std::size_t nets = Net::getAllNets().size();
  unsigned int nextBit = Bit::getNextId();
  unsigned int maxBit = Bit::getMaxBitId();
  unsigned int depth = Module::getDepth();
  bool showHidden = Module::getShowHidden();

  bool operator==(const Inventory&) const = default;
};

const Inventory empty{0, 0, 0, 0, 0, 0, true};

Signal* fill(Netlist& netlist, unsigned int width = 4) {
  Module* top = new Module("top", "d", 0);
  netlist.registerModule(RTL, top);
  Signal* signal = netlist.addSignal(RTL, top, "q", 0, width - 1, 1);
  netlist.postProcess(RTL);
  return signal;
}

Signal* fill(const Design& design, unsigned int width = 4) {
  return fill(*design.getNetlist(), width);
}

TEST(ModelTest, EachModelCountsFromZero) {
  Model first;
  Model second;
  {
    ModelScope scope(first);
    Netlist netlist;
    fill(netlist);
    Module::incrDepth();
    Module::setShowHidden(false);
    EXPECT_EQ(Inventory(), (Inventory{4, 1, 1, 4, 3, 1, false}));
    EXPECT_EQ((new Net)->getId(), 1U);
  }
  ModelScope scope(second);
  EXPECT_EQ(Inventory(), empty);
  EXPECT_EQ((new Bit)->getId(), 0U);
  EXPECT_EQ((new Net)->getId(), 0U);
}

TEST(ModelTest, ModelKeepsItsObjectsWhileAnotherIsCurrent) {
  Model first;
  Model second;
  Bit* kept = nullptr;
  {
    ModelScope scope(first);
    kept = new Bit;
    kept->setValueStr("kept");
  }
  {
    ModelScope scope(second);
    for (int made = 0; made < 10'000; ++made) new Bit;
  }
  ModelScope scope(first);
  EXPECT_EQ(listed(Bit::getAllBits()), std::vector<Bit*>{kept});
  EXPECT_EQ(kept->getValueStr(false), "kept");
  EXPECT_EQ(Bit::getNextId(), 1U);
}

TEST(ModelTest, ScopesNest) {
  Model outer;
  Model inner;
  ModelScope outerScope(outer);
  new Bit;
  {
    ModelScope innerScope(inner);
    EXPECT_EQ(Bit::getNextId(), 0U);
    {
      ModelScope again(outer);
      EXPECT_EQ(Bit::getNextId(), 1U);
    }
    EXPECT_EQ(Bit::getNextId(), 0U);
  }
  EXPECT_EQ(Bit::getNextId(), 1U);
}

TEST(ModelTest, ScopeEndsWhenAnExceptionLeavesIt) {
  Model outer;
  ModelScope scope(outer);
  new Bit;
  try {
    Model inner;
    ModelScope innerScope(inner);
    throw std::runtime_error("out");
  } catch (const std::runtime_error&) {
  }
  EXPECT_EQ(Bit::getNextId(), 1U);
}

TEST(ModelTest, ScopesActOnTheirOwnThread) {
  Model model;
  ModelScope scope(model);
  new Bit(1'000'000);
  unsigned int seen = 0;
  std::thread other([&] { seen = Bit::getNextId(); });
  other.join();
  EXPECT_NE(seen, Bit::getNextId());
}

TEST(ModelTest, ThreadsShareTheModelOfTheProcess) {
  resetModel();
  new Bit;
  std::thread other([] { new Bit; });
  other.join();
  EXPECT_EQ(Bit::getNextId(), 2U);
  EXPECT_EQ(Bit::getAllBits().size(), 2U);
  resetModel();
}

TEST(ModelTest, ResetEmptiesTheModelAndItsCounters) {
  Model model;
  ModelScope scope(model);
  Netlist netlist;
  fill(netlist);
  Module::incrDepth();
  EXPECT_NE(Inventory(), empty);
  resetModel();
  EXPECT_EQ(Inventory(), empty);
  EXPECT_EQ((new Bit)->getId(), 0U);
  EXPECT_EQ((new Net)->getId(), 0U);
}

TEST(ModelTest, ResetConcernsTheCurrentModelOnly) {
  Model first;
  Model second;
  {
    ModelScope scope(first);
    new Bit;
  }
  {
    ModelScope scope(second);
    new Bit;
    resetModel();
    EXPECT_EQ(Inventory(), empty);
  }
  ModelScope scope(first);
  EXPECT_EQ(Bit::getAllBits().size(), 1U);
}

TEST(ModelTest, ResetWithoutAScopeConcernsTheModelOfTheProcess) {
  Model model;
  new Bit;
  {
    ModelScope scope(model);
    new Bit;
  }
  resetModel();
  EXPECT_EQ(Inventory(), empty);
  ModelScope scope(model);
  EXPECT_EQ(Bit::getNextId(), 1U);
}

TEST(ModelTest, TwoDesignsAreIndependent) {
  Model firstModel;
  Model secondModel;
  ModelScope firstScope(firstModel);
  Design first;
  Signal* signal = fill(first, 2);
  ModelScope secondScope(secondModel);
  Design second;
  EXPECT_EQ(second.findSignal(RTL, "/top/q"), nullptr);
  Signal* other = fill(second, 8);
  EXPECT_EQ(first.findSignal(RTL, "/top/q"), signal);
  EXPECT_EQ(second.findSignal(RTL, "/top/q"), other);
  EXPECT_EQ(signal->getWidth(), 2U);
  EXPECT_EQ(other->getBitRef(7)->getBit()->getId(), 7U);
  EXPECT_EQ(Bit::getMaxBitId(), 7U);
}

TEST(ModelTest, DesignWorksInItsOwnModelWhateverIsCurrent) {
  Model own;
  Model other;
  ModelScope ownScope(own);
  Design design;
  Bit* mine = fill(design)->getBitRef(0)->getBit();
  mine->setValue(true);
  Bit* theirs = nullptr;
  {
    ModelScope otherScope(other);
    theirs = new Bit;
    theirs->setValue(true);
    design.initializeBits();
    EXPECT_EQ(theirs->getValueStr(false), "1");
    EXPECT_EQ(mine->getValueStr(false), "z");
    EXPECT_EQ(design.findSignal(RTL, "/top/q")->getWidth(), 4U);
    // Afterwards the thread's model is what it was.
    new Bit;
    EXPECT_EQ(Bit::getNextId(), 2U);
  }
  EXPECT_EQ(Bit::getNextId(), 4U);
}

TEST(ModelTest, WhatAnObjectTellsDoesNotDependOnTheCurrentModel) {
  Model own;
  Model other;
  Module* module = nullptr;
  Signal* signal = nullptr;
  Bit* bit = nullptr;
  {
    ModelScope scope(own);
    module = new Module("u1", "d", 0);
    signal = new Signal(module, "q", 1, 0, 1, false);
    module->addSignal(signal);
    module->setPath("/moved");
    bit = signal->getBitRef(0)->getBit();
    bit->setValueStr("a text of the host's own");
    bit->merge(signal->getBitRef(1)->getBit());
  }
  ModelScope scope(other);
  EXPECT_EQ(signal->getFullName(), "/u1/q");
  EXPECT_EQ(module->getPath(), "/moved");
  EXPECT_EQ(bit->getValueStr(false), "a text of the host's own");
  EXPECT_EQ(signal->getBitRef(1)->getBit(), bit);
  EXPECT_EQ(bit->getBitRefs().size(), 2U);
  EXPECT_EQ(listed(module->getSignals(false)), std::vector<Signal*>{signal});
  EXPECT_EQ(signal->getSignature(), "1_1_1_0");
}

TEST(ModelTest, DesignsOfOneModelShareItsRegistries) {
  Model model;
  ModelScope scope(model);
  Design first;
  Design second;
  Signal* signal = fill(first);
  EXPECT_EQ(second.findSignal(RTL, "/top/q"), nullptr);
  signal->getBitRef(0)->getBit()->setValue(true);
  second.initializeBits();
  EXPECT_EQ(signal->getBitRef(0)->getBit()->getValueStr(false), "z");
}

TEST(ModelTest, ObjectsOutliveTheirDesign) {
  Model model;
  ModelScope scope(model);
  Signal* signal = nullptr;
  Netlist* netlist = nullptr;
  {
    Design design;
    signal = fill(design);
    netlist = design.getNetlist();
  }
  EXPECT_EQ(signal->getFullName(), "/top/q");
  EXPECT_EQ(netlist->findSignal(RTL, "/top/q"), signal);
  EXPECT_EQ(netlist->getTokenMap()->getCode("("), 0U);
}

class AfterResetTest : public testing::Test {
 protected:
  void SetUp() override {
    fill(m_design);
    resetModel();
  }

  Model m_model;
  ModelScope m_scope{m_model};
  Design m_design;
};

TEST_F(AfterResetTest, EveryOperationOfTheDesignIsAClearFatalError) {
  EXPECT_EXPLAINED_FATAL(m_design.findSignal(RTL, "/top/q"));
  EXPECT_EXPLAINED_FATAL(m_design.findModule(RTL, "/top"));
  EXPECT_EXPLAINED_FATAL(m_design.findBitRef(RTL, "d", "q", 0));
  EXPECT_EXPLAINED_FATAL(m_design.getValidModulePath(RTL, "/top"));
  EXPECT_EXPLAINED_FATAL(m_design.initializeBits());
  EXPECT_EXPLAINED_FATAL(m_design.getNetlist());
  EXPECT_EXPLAINED_FATAL(m_design.getFamily());
  EXPECT_EXPLAINED_FATAL(m_design.coverage());
  EXPECT_EXPLAINED_FATAL(m_design.dump());
  EXPECT_EXPLAINED_FATAL(m_design.exportDesign("/dev/null", true));
}

TEST_F(AfterResetTest, EveryReaderOfTheDesignIsAClearFatalError) {
  EXPECT_EXPLAINED_FATAL(m_design.parse_rtl("/dev/null"));
  EXPECT_EXPLAINED_FATAL(m_design.parse_synth("/dev/null"));
  EXPECT_EXPLAINED_FATAL(m_design.parse_xrf("/dev/null"));
  EXPECT_EXPLAINED_FATAL(m_design.parse_ll("/dev/null"));
  EXPECT_EXPLAINED_FATAL(m_design.parse_log("/dev/null"));
}

TEST_F(AfterResetTest, HostThatThrowsLivesOn) {
  Messages messages;
  const auto onFatal = [](const Fatal& fatal, void*) { throw std::runtime_error(fatal.text); };
  FatalHandlerScope fatalScope(onFatal);
  EXPECT_THROW(m_design.findSignal(RTL, "/top/q"), std::runtime_error);
  EXPECT_EQ(messages.output(), "");
  EXPECT_EQ(messages.error().substr(0, 7), "ERROR: ");
  // The failed call left the thread in its model, and a new design works there.
  Design fresh;
  EXPECT_EQ(fill(fresh)->getBitRef(0)->getBit()->getId(), 0U);
  EXPECT_EQ(fresh.findSignal(RTL, "/top/q")->getWidth(), 4U);
}

TEST_F(AfterResetTest, DesignMadeAfterTheResetIsFineWhileTheOldOneStaysFatal) {
  Design fresh;
  fill(fresh);
  EXPECT_NE(fresh.findSignal(RTL, "/top/q"), nullptr);
  EXPECT_EXPLAINED_FATAL(m_design.findSignal(RTL, "/top/q"));
}

TEST(ModelTest, DesignIsFatalToUseWhenTheProcessesModelWasReset) {
  Design design;
  resetModel();
  EXPECT_EXPLAINED_FATAL(design.findSignal(RTL, "/top/q"));
}

/// Builds a design of some size and tells all that one can see of it.
std::string work(unsigned int seed) {
  Model model;
  ModelScope scope(model);
  Design design;
  Netlist& netlist = *design.getNetlist();
  Module* top = new Module("top", "d", 0);
  netlist.registerModule(RTL, top);
  for (unsigned int round = 0; round < 3; ++round) {
    for (unsigned int id = 0; id < 2000; ++id) {
      const std::string name = "s<" + std::to_string(id) + ">";
      netlist.addSignal(RTL, top, name.c_str(), 0, (id + seed + round) % 5, id);
    }
    for (unsigned int id = 1; id < 2000; id += 2) {
      top->getSignal(id - 1, false)->merge(top->getSignal(id, false), 0, 0);
    }
    netlist.postProcess(RTL);
  }
  std::ostringstream out;
  out << top << Bit::getMaxBitId() << " " << Bit::getNextId() << " " << Net::getAllNets().size();
  for (Bit* bit : Bit::getAllBits()) out << bit;
  return out.str();
}

TEST(ModelTest, TwoThreadsWithAModelEachSeeWhatTheyWouldSeeAlone) {
  const std::string alone[] = {work(0), work(1)};
  EXPECT_NE(alone[0], alone[1]);
  std::string together[2];
  for (int round = 0; round < 3; ++round) {
    std::thread first([&] { together[0] = work(0); });
    std::thread second([&] { together[1] = work(1); });
    first.join();
    second.join();
    EXPECT_EQ(together[0], alone[0]);
    EXPECT_EQ(together[1], alone[1]);
  }
}

TEST(ModelTest, ManyModelsComeAndGo) {
  for (unsigned int round = 0; round < 1000; ++round) {
    Model model;
    ModelScope scope(model);
    Design design;
    ASSERT_EQ(fill(design)->getBitRef(3)->getBit()->getId(), 3U);
  }
}

}  // namespace
}  // namespace XRF_RTL2LL
