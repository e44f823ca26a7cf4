#pragma once

#include <crossreference/Model.h>
#include <crossreference/Module.h>
#include <crossreference/NamePool.h>
#include <support/Arena.h>
#include <support/Limits.h>
#include <support/PageArray.h>
#include <support/Range.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace XRF_RTL2LL {

class Netlist;
class TokenMap;

/// All objects of one class in creation order. An object that leaves keeps its slot, marked, until
/// the registry is compacted. Bits may have a slot before they are made.
template <class T>
class Registry {
 public:
  void add(T* object);
  void remove(const T* object);
  /// Gives the next slot to the bit that a reference is promised.
  void promise(BitRef& ref, std::uint32_t id);
  /// The promised bit was made, or will not be.
  void keep(const BitRef::Promise& promise, T* made);
  void drop(const BitRef::Promise& promise);
  /// Calls `visit` with each reference whose bit is promised.
  template <class Visit>
  void eachPromised(Visit visit) const;
  /// Drops the slots of objects that left. Returns the place from which on those stand now that
  /// stood from `place` on.
  std::size_t compact(std::size_t place = 0);
  /// Whether the next object would make room for many that are gone.
  bool isLoose() const {
    return m_slots.size() == m_slots.capacity() && m_live * 2 < m_slots.size();
  }
  bool contains(const T* object) const;
  Range<T> range() const;
  std::size_t size() const { return m_live; }
  /// The place of the next object.
  std::size_t nextPlace() const { return m_slots.size(); }
  /// The object of a place; null where none is, or where it left.
  T* at(std::size_t place) const {
    if (place >= m_slots.size() || (m_slots[place] & marks) != 0) return nullptr;
    return reinterpret_cast<T*>(m_slots[place]);  // NOLINT(performance-no-int-to-ptr)
  }

  /// Calls `visit` with each object; what it adds meanwhile is not visited.
  template <class Visit>
  void each(Visit visit) const {
    const std::size_t count = m_slots.size();
    for (std::size_t at = 0; at < count; ++at) {
      if ((m_slots[at] & marks) == 0) visit(reinterpret_cast<T*>(m_slots[at]));  // NOLINT
    }
  }

 private:
  // Marks in the low bits of a slot: that its object left, or that it leads to a reference which is
  // promised an object.
  static constexpr std::uintptr_t gone = 1;
  static constexpr std::uintptr_t promised = 2;
  static constexpr std::uintptr_t marks = gone | promised;

  static BitRef& promisedBy(std::uintptr_t slot) {
    return *reinterpret_cast<BitRef*>(slot & ~marks);  // NOLINT(performance-no-int-to-ptr)
  }
  static void setPlace(T& object, std::size_t place);
  static void movePlace(std::uintptr_t slot, std::size_t place);

  PageArray<std::uintptr_t> m_slots;
  std::size_t m_live = 0;
};

template <class T>
template <class Visit>
void Registry<T>::eachPromised(Visit visit) const {
  for (const std::uintptr_t slot : m_slots) {
    if ((slot & marks) == promised) visit(promisedBy(slot));
  }
}

/// What belongs to one model.
struct ModelState : std::enable_shared_from_this<ModelState> {
  ModelState();
  ~ModelState();

  Limits limits;
  Arena arena;
  NamePool names;
  Registry<Bit> bits;
  Registry<Signal> signals;
  Registry<Net> nets;
  std::uint32_t nextBitId = 0;
  std::uint32_t maxBitId = 0;
  std::uint32_t nextNetId = 0;
  std::uint16_t netlistCount = 0;
  std::uint32_t moduleDepth = 0;
  bool showHidden = true;
  /// The place from which on bits are made by the netlist reader that runs; beyond all without one.
  std::size_t firstPassing = std::numeric_limits<std::size_t>::max();
  PageArray<void*> freeBits;
  /// Taken up by the paths of modules that have children.
  std::uint64_t pathBytes = 0;
  /// Netlists and token maps are never released by whoever made them.
  std::vector<std::unique_ptr<Netlist>> netlists;
  std::vector<std::unique_ptr<TokenMap>> tokenMaps;

  /// The calling thread's current model.
  static ModelState& current();
  static const Word* nameOf(const Signal* signal) { return signal->m_name; }
  static const Word* nameOf(const Module* module) { return module->m_name; }
  static const Word* definitionOf(const Module* module) { return module->m_def_name; }
  /// Where a live bit stands among all bits.
  static std::size_t placeOf(const Bit& bit) { return bit.m_place; }
  /// Whether a signal's full name finds another one in every view that had it.
  static bool lostName(const Signal& signal) { return signal.m_dropped && signal.m_held == 0; }

  /// Sorts all sets of a module and of those below it, so that look-ups change nothing.
  static void settleTree(const Module& module);
  void enter(Bit* bit);
  /// Promises a bit without an inferred mark, while a netlist is read.
  void promiseBit(BitRef& ref);
  void makePromised(BitRef& ref);
  /// Makes all bits that are promised.
  void makePromised();
  /// Leaves the references of all promised bits without one, as reading that was broken off does.
  void breakPromises();
  /// Storage for a bit.
  void* takeBit();
  /// Whether a bit that is absorbed can be forgotten at once: a reader made it a moment ago, and
  /// few references have to be told.
  bool isPassing(const Bit& bit) const {
    return bit.m_place >= firstPassing && bit.m_ref_count <= 4 && !bit.m_followed &&
           !bit.m_irregular;
  }
  void giveBack(Bit* bit) { freeBits.push_back(bit); }
  /// Makes room for a bit among all bits.
  void loosen();

  /// Points every reference at the bit that survives, and forgets the bits that were absorbed.
  void settleBits();
  /// Numbers the bits 0, 1, 2, ... in creation order.
  void renumberBits();
};

/// Makes the state of a model current for a scope, whatever the thread's model is.
class StateScope {
 public:
  explicit StateScope(ModelState& state);
  ~StateScope();
  StateScope(const StateScope&) = delete;
  StateScope& operator=(const StateScope&) = delete;

 private:
  ModelState* m_previous;
};

}  // namespace XRF_RTL2LL
