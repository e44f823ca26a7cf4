#pragma once

#include <crossreference/ModelState.h>
#include <crossreference/NameRegistry.h>
#include <crossreference/Netlist.h>
#include <crossreference/Reading.h>

#include <array>
#include <map>
#include <memory>
#include <mutex>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace XRF_RTL2LL {

/// The instances of one definition in the order in which they were read.
struct InstanceGroup {
  std::string_view definition;
  std::vector<Module*> modules;
};
using InstanceIndex = std::map<std::string_view, InstanceGroup>;

/// Counts the modules, signals and bits of a view before they are made. More than the limits allow
/// is fatal.
class ObjectBudget {
 public:
  ObjectBudget() = default;
  explicit ObjectBudget(const Limits& limits);
  /// The same for cells that a netlist of so many words holds.
  ObjectBudget(const Limits& limits, std::uint64_t words);

  void count(std::uint64_t objects) {
    m_made += objects;
    if (m_made > m_most) refuseObjects();
  }
  void countInstance() {
    if (++m_instances > m_most_instances) refuseInstances();
    count(1);
  }
  std::uint64_t made() const { return m_made; }
  std::uint64_t left() const { return m_most - m_made; }

 private:
  [[noreturn]] void refuseObjects() const;
  [[noreturn]] void refuseInstances() const;

  std::uint64_t m_most = 0;
  std::uint64_t m_most_instances = 0;
  std::uint64_t m_words = 0;  // whose number is what bounds the objects, or 0
  std::uint64_t m_made = 0;
  std::uint64_t m_instances = 0;
};

class RegisterPairs;

/// What a netlist knows; its readers fill it.
struct NetlistState {
  explicit NetlistState(ModelState& owner);

  ModelState& model;
  TokenMap* tokens = nullptr;
  std::array<InstanceIndex, 2> instances;
  const std::uint16_t ordinal;  // among the netlists of its model, from 1; 0 beyond the last
  std::array<ModuleRegistry, 2> modules;
  std::array<SignalRegistry, 2> signals;
  std::array<Module*, 2> top{};
  Family family = FAMILY_NONE;
  Part part = PART_NONE;
  Reading reading = Reading::strict();
  std::array<bool, 2> renamed{};  // whether a netlist has other names than its identifiers
  bool loaded = false;            // from a cross-reference file, whose views may share bits
  std::unordered_set<const Signal*> ambiguous;  // of a full name that several signals have
  // Signals of each view that registers were tied to; some may be there twice, or hold none since.
  std::array<std::vector<Signal*>, 2> tied;
  mutable std::mutex pairsLock;
  mutable std::shared_ptr<const RegisterPairs> pairs;  // see RegisterPairs::of
  ObjectBudget* budget = nullptr;                      // while a netlist is read
  std::vector<std::uint8_t> kinds;  // by cell code, counted from 1; 0 is not known yet

  const Word* word(unsigned int code) const { return tokens->wordOf(code); }
  /// `Netlist::addSignal` for a name that the model stores already.
  Signal* addSignal(EdifView view, Module* module, const Word* name, unsigned int lsb,
                    unsigned int msb, unsigned int id);
  void widen(Signal& signal, unsigned int lsb, unsigned int msb);
  /// Enters a module under its full name; returns the one that had it, or null.
  Module* enter(EdifView view, Module* module);
  /// Enters a signal under its full name. `member` tells that its module lists it.
  void enter(EdifView view, Signal* signal, bool member);
  bool isAmbiguous(const Signal& signal) const {
    return !ambiguous.empty() && ambiguous.count(&signal) != 0;
  }
  /// Whether every signal is found by its local name in the module that its full name begins with.
  bool isPlain() const { return signals[RTL].isPlain() && signals[SYNTH].isPlain(); }
  opKind kindOf(unsigned int cellCode, unsigned int lutMode);
  /// The signal of a module by its local name, or null.
  Signal* findByName(EdifView view, const Module& module, std::string_view name) const {
    return signals.at(view).find(module, name);
  }
  Signal* findByName(EdifView view, const Module& module, const Word* name) const {
    return signals.at(view).find(module, name);
  }
  /// A number for a signal of a name: the code of the name, unless something else of the module has
  /// it.
  unsigned int freeNumber(const Module& module, std::string_view name) const;
};

/// Sets the rules by which a netlist and the files beside it are read.
void readAs(Netlist& netlist, const Reading& reading);

/// How strict reading takes the bit of a bus from a name: `base[index]`, an index being a whole
/// decimal number between its own brackets.
struct BusBit {
  std::string_view base;
  std::uint32_t index = 0;
  bool valid = false;

  /// For ports and nets: white space and any text may follow.
  static BusBit ofName(std::string_view name);
};

/// The register bit that an instance name encodes, as in count_reg[3], mem_reg[3][5], valid_reg.
struct RegisterName {
  std::string signal;
  std::uint32_t index = 0;
  bool valid = false;

  static RegisterName decode(std::string_view instance);
};

}  // namespace XRF_RTL2LL
