#include <crossreference/NameRegistry.h>
#include <crossreference/Netlist.h>
#include <tests/TestModel.h>

#include <algorithm>
#include <array>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace XRF_RTL2LL {
namespace {

using testing_support::FreshModel;

class NameRegistryTest : public FreshModel {
 protected:
  Module* child(Netlist& netlist, Module* parent, const char* name) {
    auto* module = new Module(name, "cell", m_next++);
    if (parent != nullptr) parent->addChild(module);
    netlist.registerModule(RTL, module);
    return module;
  }
  Signal* wire(Netlist& netlist, Module* module, const char* name) {
    return netlist.addSignal(RTL, module, name, 0, 0, m_next++);
  }

  Netlist m_netlist;
  unsigned int m_next = 1;
};

TEST_F(NameRegistryTest, LastOfTwoThatSplitOneNameDifferentlyIsFound) {
  Module* top = child(m_netlist, nullptr, "top");
  Module* below = child(m_netlist, top, "a");
  const Signal* inside = wire(m_netlist, below, "q");
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/a/q"), inside);
  const Signal* joined = wire(m_netlist, top, "a/q");
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/a/q"), joined);
  Module* dissolved = child(m_netlist, nullptr, "top/b");
  wire(m_netlist, top, "b/q");
  const Signal* later = wire(m_netlist, dissolved, "q");
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/b/q"), later);
}

TEST_F(NameRegistryTest, SignalsOfAModuleThatLostItsNameAreStillFound) {
  Module* top = child(m_netlist, nullptr, "top");
  Module* first = child(m_netlist, top, "u");
  const Signal* own = wire(m_netlist, first, "own");
  const Signal* shared = wire(m_netlist, first, "shared");
  Module* second = child(m_netlist, top, "u");
  EXPECT_EQ(m_netlist.findModule(RTL, "/top/u"), second);
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/u/own"), own);
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/u/shared"), shared);
  const Signal* replacing = wire(m_netlist, second, "shared");
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/u/shared"), replacing);
  const Signal* late = wire(m_netlist, first, "late");
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/u/late"), late);
}

TEST_F(NameRegistryTest, SignalThatNobodyRegisteredIsNotFound) {
  Module* top = child(m_netlist, nullptr, "top");
  auto* signal = new Signal(top, "q", 7, 0, 0, false);
  top->addSignal(signal);
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/q"), nullptr);
  m_netlist.registerSignal(RTL, signal);
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/q"), signal);
  EXPECT_EQ(m_netlist.findSignal(SYNTH, "/top/q"), nullptr);
}

TEST_F(NameRegistryTest, ModulesFoundTogetherAreThoseFoundOneByOne) {
  ModuleRegistry registry(SYNTH, 1);
  std::vector<const Module*> asked;
  std::vector<Module*> expected;
  // Every third is not there, every fifth of the others was replaced.
  for (unsigned int at = 0; at < ModuleRegistry::mostTogether; ++at) {
    const std::string name = "u" + std::to_string(at);
    const char* path = at % 2 == 0 ? "/top" : "/top/inside";
    const auto make = [&] {
      auto* module = new Module(name.c_str(), "cell", at);
      module->setPath(path);
      return module;
    };
    asked.push_back(make());
    expected.push_back(at % 3 == 0 ? nullptr : make());
    if (expected.back() == nullptr) continue;
    if (at % 5 == 0) registry.enter(make());
    registry.enter(expected.back());
  }
  std::vector<Module*> found(asked.size());
  registry.findTogether(asked, found);
  EXPECT_EQ(found, expected);
  std::fill(found.begin(), found.end(), expected.back());
  ModuleRegistry(SYNTH, 1).findTogether(asked, found);
  EXPECT_EQ(found, std::vector<Module*>(asked.size()));
}

TEST_F(NameRegistryTest, NetlistsOfOneModelKnowTheirOwnNames) {
  Netlist other;
  Module* top = child(m_netlist, nullptr, "top");
  const Signal* first = wire(m_netlist, top, "q");
  Module* otherTop = child(other, nullptr, "top");
  const Signal* second = wire(other, otherTop, "q");
  EXPECT_EQ(m_netlist.findSignal(RTL, "/top/q"), first);
  EXPECT_EQ(other.findSignal(RTL, "/top/q"), second);
  // A module that both know lends the other none of its signals.
  Module* shared = child(m_netlist, top, "u");
  other.registerModule(RTL, shared);
  Signal* inside = wire(m_netlist, shared, "r");
  EXPECT_EQ(other.findSignal(RTL, "/top/u/r"), nullptr);
  other.registerSignal(RTL, inside);
  EXPECT_EQ(other.findSignal(RTL, "/top/u/r"), inside);
}

/// Does at random what hosts and readers do, and keeps a map of full names beside it.
class RandomNames : public NameRegistryTest {
 protected:
  struct View {
    Netlist netlist;
    std::map<std::string, Signal*> signals;
  };

  void SetUp() override {
    NameRegistryTest::SetUp();
    Module* top = child(m_views[0].netlist, nullptr, "top");
    m_views[1].netlist.registerModule(RTL, top);
    m_modules.push_back(top);
  }
  unsigned pick(std::size_t count) { return static_cast<unsigned>(m_random() % count); }
  std::string name() {
    static constexpr std::array<const char*, 7> names = {"a", "b", "a/b", "b/a", "a/", "", "c"};
    return names.at(pick(names.size()));
  }
  void note(View& view, Signal* signal) {
    view.signals[signal->getFullName()] = signal;
    m_made.push_back(signal);
  }
  void step() {
    View& view = m_views.at(pick(2));
    Module* module = m_modules[pick(m_modules.size())];
    switch (pick(8)) {
      case 0:
        m_modules.push_back(child(view.netlist, module, name().c_str()));
        break;
      case 1:
        view.netlist.registerModule(RTL, module);
        break;
      case 2:
        module->setPath(("/" + name()).c_str());
        break;
      case 3: {
        auto* signal = new Signal(module, name().c_str(), m_next++, 0, 0, false);
        module->addSignal(signal);
        m_loose.push_back(signal);
        m_made.push_back(signal);
        break;
      }
      case 4:
        if (m_loose.empty()) break;
        registerAgain(view, m_loose[pick(m_loose.size())]);
        break;
      default:
        note(view, wire(view.netlist, module, name().c_str()));
    }
  }
  void registerAgain(View& view, Signal* signal) {
    view.netlist.registerSignal(RTL, signal);
    note(view, signal);
  }

  std::array<View, 2> m_views;
  std::vector<Module*> m_modules;
  std::vector<Signal*> m_loose;
  std::vector<const Signal*> m_made;
  std::mt19937 m_random;
};

TEST_F(RandomNames, AreFoundAsInAMapOfFullNames) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE(seed);
    m_random.seed(seed);
    for (int count = 0; count < 60; ++count) step();
    for (const View& view : m_views) {
      for (const Signal* made : m_made) {
        const std::string full = made->getFullName();
        const auto known = view.signals.find(full);
        const Signal* expected = known == view.signals.end() ? nullptr : known->second;
        ASSERT_EQ(view.netlist.findSignal(RTL, full), expected) << full;
      }
    }
  }
}

}  // namespace
}  // namespace XRF_RTL2LL
