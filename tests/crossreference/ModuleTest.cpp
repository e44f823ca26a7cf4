#include <crossreference/Module.h>
#include <tests/TestModel.h>

#include <string>
#include <vector>

namespace XRF_RTL2LL {
namespace {

using testing_support::Deadline;
using testing_support::FreshModel;
using testing_support::listed;
using testing_support::namesOf;
using Modules = std::vector<Module*>;
using Signals = std::vector<Signal*>;
using Names = std::vector<std::string>;

class ModuleTest : public FreshModel {
 protected:
  static Module* child(Module* parent, const char* name, unsigned int id) {
    Module* module = new Module(name, "sub", id);
    parent->addChild(module);
    return module;
  }
  static Signal* signal(Module* module, const char* name, unsigned int id) {
    Signal* made = new Signal(module, name, id, 0, 0, true);
    module->addSignal(made);
    return made;
  }

  Module* m_top = new Module("top", "top_def", 0);
};

TEST_F(ModuleTest, NewModuleIsAVisibleHierarchicalRoot) {
  const Module* module = new Module("u1", "cell", 7);
  EXPECT_STREQ(module->getName(), "u1");
  EXPECT_STREQ(module->getDefName(), "cell");
  EXPECT_EQ(module->getId(), 7U);
  EXPECT_EQ(module->getPath(), "");
  EXPECT_FALSE(module->isHidden());
  EXPECT_EQ(module->getKind(), HIER);
  EXPECT_EQ(module->getInit(), 0UL);
  EXPECT_FALSE(module->getDInverted());
  EXPECT_FALSE(module->getRSTInverted());
  EXPECT_EQ(module->getParent(), nullptr);
  for (const bool visible : {false, true}) {
    EXPECT_TRUE(module->getSignals(visible).empty());
    EXPECT_TRUE(module->getChildren(visible).empty());
  }
}

TEST_F(ModuleTest, KindsHaveTheirFixedValues) {
  const std::vector<opKind> kinds{BUF, EQUAL, GND,     INV,  NOT_EQUAL, LOGIC,
                                  PWR, REG,   WIDE_FD, HIER, XOR};
  for (unsigned int value = 0; value < kinds.size(); ++value) EXPECT_EQ(kinds[value], value);
}

TEST_F(ModuleTest, AccessorsKeepEachFieldApart) {
  Module* module = new Module("u1", "cell", 7);
  module->setDefName("other");
  EXPECT_STREQ(module->getDefName(), "other");
  EXPECT_STREQ(module->getName(), "u1");
  module->setPath("/a/b");
  EXPECT_EQ(module->getPath(), "/a/b");
  module->setKind(XOR);
  EXPECT_EQ(module->getKind(), XOR);
  module->setInit(0xfedcba9876543210UL);
  EXPECT_EQ(module->getInit(), 0xfedcba9876543210UL);
  module->setDInverted(true);
  EXPECT_TRUE(module->getDInverted());
  EXPECT_FALSE(module->getRSTInverted());
  module->setRSTInverted(true);
  module->setDInverted(false);
  EXPECT_FALSE(module->getDInverted());
  EXPECT_TRUE(module->getRSTInverted());
  EXPECT_FALSE(module->isHidden());
  module->setHidden();
  module->setHidden();
  EXPECT_TRUE(module->isHidden());
  module->setParent(m_top);
  EXPECT_EQ(module->getParent(), m_top);
  EXPECT_EQ(module->getPath(), "/a/b");
}

TEST_F(ModuleTest, NamesAreCopiedAndStay) {
  std::string name = "u1";
  std::string cell = "cell";
  Module* module = new Module(name.c_str(), cell.c_str(), 7);
  const char* kept = module->getName();
  name = "xx";
  cell = "xxxx";
  EXPECT_STREQ(module->getName(), "u1");
  EXPECT_STREQ(module->getDefName(), "cell");
  for (int made = 0; made < 20'000; ++made) new Module(std::to_string(made).c_str(), "d", 1);
  EXPECT_STREQ(kept, "u1");
}

TEST_F(ModuleTest, AddChildSetsParentAndPath) {
  Module* u1 = child(m_top, "u1", 1);
  Module* u2 = child(u1, "u2", 1);
  EXPECT_EQ(u1->getPath(), "/top");
  EXPECT_EQ(u2->getPath(), "/top/u1");
  EXPECT_EQ(u1->getParent(), m_top);
  EXPECT_EQ(u2->getParent(), u1);
  EXPECT_EQ(m_top->getParent(), nullptr);
  EXPECT_EQ(m_top->getPath(), "");
}

TEST_F(ModuleTest, UnnamedRootGivesItsChildrenTheEmptyPath) {
  Module* root = new Module("", "def", 0);
  Module* u1 = child(root, "u1", 1);
  EXPECT_EQ(u1->getPath(), "");
  EXPECT_EQ((new Signal(root, "q", 1, 0, 0, true))->getFullName(), "//q");
  EXPECT_EQ((new Signal(u1, "q", 1, 0, 0, true))->getFullName(), "/u1/q");
  EXPECT_EQ(child(u1, "u2", 1)->getPath(), "/u1");
}

TEST_F(ModuleTest, UnnamedModuleWithAPathAddsASlash) {
  Module* unnamed = new Module("", "def", 0);
  unnamed->setPath("/p");
  EXPECT_EQ(child(unnamed, "u1", 1)->getPath(), "/p/");
}

TEST_F(ModuleTest, PathIsFixedWhenTheChildIsAttached) {
  Module* u1 = new Module("u1", "sub", 1);
  Module* early = child(u1, "early", 1);
  m_top->addChild(u1);
  Module* late = child(u1, "late", 2);
  EXPECT_EQ(early->getPath(), "/u1");
  EXPECT_EQ(late->getPath(), "/top/u1");
  u1->setPath("/moved");
  EXPECT_EQ(late->getPath(), "/top/u1");
  EXPECT_EQ(child(u1, "later", 3)->getPath(), "/moved/u1");
}

TEST_F(ModuleTest, AttachingAgainReplacesPathAndParent) {
  Module* other = new Module("other", "def", 9);
  Module* u1 = child(m_top, "u1", 1);
  other->addChild(u1);
  EXPECT_EQ(u1->getPath(), "/other");
  EXPECT_EQ(u1->getParent(), other);
  EXPECT_EQ(m_top->getChild(1, true), u1);
}

TEST_F(ModuleTest, ChildrenAreListedInByteOrderOfTheirNames) {
  for (const char* name : {"u2", "u10", "U", "u<10>", "u<2>", "u"}) {
    child(m_top, name, static_cast<unsigned int>(m_top->getChildren(false).size()));
  }
  EXPECT_EQ(namesOf(m_top->getChildren(false)), (Names{"U", "u", "u10", "u2", "u<10>", "u<2>"}));
}

TEST_F(ModuleTest, ChildrenOfOneNameAreFoundByNumberButOnlyTheFirstIsListed) {
  Module* first = child(m_top, "u", 9);
  Module* second = child(m_top, "u", 2);
  EXPECT_EQ(m_top->getChild(9, true), first);
  EXPECT_EQ(m_top->getChild(2, true), second);
  EXPECT_EQ(listed(m_top->getChildren(false)), Modules{first});
  EXPECT_EQ(m_top->getChildren(false).size(), 1U);
  EXPECT_TRUE(m_top->getChildren(false).contains(first));
  EXPECT_FALSE(m_top->getChildren(false).contains(second));
  m_top->updateVisibleChildren(false);
  EXPECT_EQ(listed(m_top->getChildren(true)), Modules{first});
}

TEST_F(ModuleTest, HiddenFirstOfTwoChildrenOfOneNameIsNotReplacedByTheSecond) {
  child(m_top, "u", 1)->setHidden();
  child(m_top, "u", 2);
  m_top->updateVisibleChildren(false);
  EXPECT_TRUE(m_top->getChildren(true).empty());
}

TEST_F(ModuleTest, MissingChildIsNullOrASilentEnd) {
  child(m_top, "u4", 4);
  child(m_top, "u6", 6);
  EXPECT_EQ(m_top->getChild(5, true), nullptr);
  EXPECT_EQ(m_top->getChild(4, false), m_top->getChild(4, true));
  EXPECT_SILENT_FATAL(m_top->getChild(5, false));
}

TEST_F(ModuleTest, MissingSignalIsNullOrASilentEnd) {
  Signal* found = signal(m_top, "a", 4);
  EXPECT_EQ(m_top->getSignal(4, false), found);
  EXPECT_EQ(m_top->getSignal(4, true), found);
  EXPECT_EQ(m_top->getSignal(3, true), nullptr);
  EXPECT_SILENT_FATAL(m_top->getSignal(3, false));
}

TEST_F(ModuleTest, ChildrenAndSignalsHaveNumbersOfTheirOwn) {
  Module* u = child(m_top, "u", 1);
  Signal* a = signal(m_top, "a", 1);
  EXPECT_EQ(m_top->getChild(1, false), u);
  EXPECT_EQ(m_top->getSignal(1, false), a);
  Module* other = new Module("other", "def", 1);
  EXPECT_EQ(other->getSignal(1, true), nullptr);
  EXPECT_EQ(other->getChild(1, true), nullptr);
}

TEST_F(ModuleTest, NumbersMayBeAnyValue) {
  std::vector<unsigned int> numbers{0, 0xffffffffU, 0x80000000U, 1};
  for (unsigned int step = 0; step < 200; ++step) numbers.push_back(1000 + step * 65'536);
  Signals made;
  for (const unsigned int number : numbers) {
    made.push_back(signal(m_top, ("s" + std::to_string(number)).c_str(), number));
  }
  for (std::size_t at = 0; at < numbers.size(); ++at) {
    EXPECT_EQ(m_top->getSignal(numbers[at], true), made[at]);
    EXPECT_EQ(m_top->getSignal(numbers[at] + 7, true), nullptr);
  }
}

TEST_F(ModuleTest, DuplicateChildNumberIsFatal) {
  child(m_top, "u1", 12);
  EXPECT_FATAL(m_top->addChild(new Module("u2", "sub", 12)),
               "ERROR: (addChild) A child with the id '12' already exists.\n");
  EXPECT_FATAL(m_top->addChild(m_top->getChild(12, false)),
               "ERROR: (addChild) A child with the id '12' already exists.\n");
}

TEST_F(ModuleTest, DuplicateChildNumberIsPrintedSigned) {
  child(m_top, "u1", 0xffffffffU);
  EXPECT_FATAL(m_top->addChild(new Module("u2", "sub", 0xffffffffU)),
               "ERROR: (addChild) A child with the id '-1' already exists.\n");
}

TEST_F(ModuleTest, DuplicateChildNumberIsFoundAmongMany) {
  for (unsigned int id = 0; id < 1000; ++id) child(m_top, ("u" + std::to_string(id)).c_str(), id);
  EXPECT_FATAL(m_top->addChild(new Module("x", "sub", 500)),
               "ERROR: (addChild) A child with the id '500' already exists.\n");
}

TEST_F(ModuleTest, DuplicateSignalNumberEndsSilently) {
  signal(m_top, "a", 3);
  EXPECT_SILENT_FATAL(m_top->addSignal(new Signal(m_top, "b", 3, 0, 0, true)));
  EXPECT_SILENT_FATAL(m_top->addSignal(m_top->getSignal(3, true)));
}

TEST_F(ModuleTest, SignalsOfOneNameAreFoundByNumberButOnlyTheFirstIsListed) {
  Signal* first = signal(m_top, "d", 8);
  Signal* second = signal(m_top, "d", 1);
  EXPECT_EQ(m_top->getSignal(8, false), first);
  EXPECT_EQ(m_top->getSignal(1, false), second);
  EXPECT_EQ(listed(m_top->getSignals(false)), Signals{first});
  EXPECT_FALSE(m_top->getSignals(false).contains(second));
}

TEST_F(ModuleTest, VisibleChildrenAreASnapshot) {
  Module* shown = child(m_top, "shown", 1);
  Module* hidden = child(m_top, "hidden", 2);
  EXPECT_TRUE(m_top->getChildren(true).empty());
  hidden->setHidden();
  m_top->updateVisibleChildren(false);
  EXPECT_EQ(listed(m_top->getChildren(true)), Modules{shown});
  EXPECT_EQ(listed(m_top->getChildren(false)), (Modules{hidden, shown}));
  shown->setHidden();
  Module* late = child(m_top, "late", 3);
  EXPECT_EQ(listed(m_top->getChildren(true)), Modules{shown});
  EXPECT_EQ(m_top->getChildren(true).size(), 1U);
  EXPECT_TRUE(m_top->getChildren(true).contains(shown));
  EXPECT_FALSE(m_top->getChildren(true).contains(late));
  m_top->updateVisibleChildren(false);
  EXPECT_EQ(listed(m_top->getChildren(true)), Modules{late});
}

TEST_F(ModuleTest, VisibleSignalsAreASnapshot) {
  Signal* shown = signal(m_top, "shown", 1);
  Signal* hidden = signal(m_top, "hidden", 2);
  EXPECT_TRUE(m_top->getSignals(true).empty());
  hidden->setHidden(true);
  m_top->updateVisibleSignals(false);
  EXPECT_EQ(listed(m_top->getSignals(true)), Signals{shown});
  hidden->setHidden(false);
  shown->setHidden(true);
  Signal* late = signal(m_top, "a_late_one", 3);
  EXPECT_EQ(listed(m_top->getSignals(true)), Signals{shown});
  EXPECT_EQ(listed(m_top->getSignals(false)), (Signals{late, hidden, shown}));
  EXPECT_EQ(listed(m_top->getSignals(true)), Signals{shown});
  m_top->updateVisibleSignals(false);
  EXPECT_EQ(listed(m_top->getSignals(true)), (Signals{late, hidden}));
}

TEST_F(ModuleTest, UpdateReachesTheSubtreeOnlyWhenRecursive) {
  Module* u1 = child(m_top, "u1", 1);
  Module* u2 = child(u1, "u2", 1);
  child(u2, "u3", 1);
  Signal* deep = signal(u2, "q", 1);
  m_top->updateVisibleChildren(false);
  m_top->updateVisibleSignals(false);
  EXPECT_TRUE(u1->getChildren(true).empty());
  EXPECT_TRUE(u2->getSignals(true).empty());
  m_top->updateVisibleSignals(true);
  EXPECT_EQ(listed(u2->getSignals(true)), Signals{deep});
  EXPECT_TRUE(u1->getChildren(true).empty());
  m_top->updateVisibleChildren(true);
  EXPECT_EQ(listed(u1->getChildren(true)), Modules{u2});
  EXPECT_EQ(u2->getChildren(true).size(), 1U);
}

TEST_F(ModuleTest, UpdateReachesBelowHiddenChildren) {
  Module* u1 = child(m_top, "u1", 1);
  Module* u2 = child(u1, "u2", 1);
  Signal* deep = signal(u2, "q", 1);
  u1->setHidden();
  m_top->updateVisibleChildren(true);
  m_top->updateVisibleSignals(true);
  EXPECT_TRUE(m_top->getChildren(true).empty());
  EXPECT_EQ(listed(u1->getChildren(true)), Modules{u2});
  EXPECT_EQ(listed(u2->getSignals(true)), Signals{deep});
}

TEST_F(ModuleTest, RangesCanBeWalkedMoreThanOnce) {
  for (unsigned int id = 0; id < 5; ++id) signal(m_top, ("s" + std::to_string(id)).c_str(), id);
  const Range<Signal> range = m_top->getSignals(false);
  EXPECT_EQ(listed(range), listed(range));
  auto at = range.begin();
  const auto before = at++;
  EXPECT_STREQ((*before)->getName(), "s0");
  EXPECT_STREQ((*at)->getName(), "s1");
  EXPECT_EQ(std::distance(range.begin(), range.end()), 5);
}

TEST_F(ModuleTest, ManySignalsInAnyOrderStayFast) {
  constexpr unsigned int count = 200'000;
  const Deadline deadline(20);
  for (unsigned int id = count; id-- > 0;) {
    signal(m_top, ("s<" + std::to_string(id) + ">").c_str(), id);
    ASSERT_FALSE(deadline.passed()) << id;
  }
  EXPECT_EQ(m_top->getSignals(false).size(), count);
  unsigned int next = 0;
  for (const Signal* each : m_top->getSignals(false)) ASSERT_EQ(each->getId(), next++);
  for (unsigned int id = 0; id < count; ++id) ASSERT_EQ(m_top->getSignal(id, true)->getId(), id);
  EXPECT_FALSE(deadline.passed());
}

TEST_F(ModuleTest, DepthStepsByOne) {
  EXPECT_EQ(Module::getDepth(), 0U);
  Module::incrDepth();
  Module::incrDepth();
  EXPECT_EQ(Module::getDepth(), 2U);
  Module::decrDepth();
  EXPECT_EQ(Module::getDepth(), 1U);
}

TEST_F(ModuleTest, HiddenObjectsAreShownByDefault) {
  EXPECT_TRUE(Module::getShowHidden());
  Module::setShowHidden(false);
  EXPECT_FALSE(Module::getShowHidden());
  Module::setShowHidden(true);
  EXPECT_TRUE(Module::getShowHidden());
}

TEST_F(ModuleTest, CompareModulesIsByteOrderOfTheNames) {
  const CompareModules less;
  const Module* two = new Module("u<2>", "d", 1);
  const Module* ten = new Module("u<10>", "d", 2);
  EXPECT_TRUE(less(ten, two));
  EXPECT_FALSE(less(two, ten));
  EXPECT_FALSE(less(two, two));
  EXPECT_TRUE(less(new Module("z", "d", 3), new Module("\xc3\xa9", "d", 4)));
}

}  // namespace
}  // namespace XRF_RTL2LL
