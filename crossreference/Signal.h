#pragma once

#include <crossreference/Bit.h>
#include <crossreference/Types.h>
#include <support/Api.h>
#include <support/Range.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace XRF_RTL2LL {

class Module;
class Net;
class Word;

/// A named signal (port or wire) of one module, indexed from its lsb to its msb; each index holds a
/// reference to the bit that carries its value.
///
/// Made with `new`; belongs to the current model and lives as long as it does.
class XRF_API Signal {
 public:
  /// A wire of `module`. Unless `noBits`, every index gets a reference and a new unknown bit.
  /// The name is copied. A range that no netlist can mean is a fatal error.
  Signal(Module* module, const char* name, unsigned int id, unsigned int lsb, unsigned int msb,
         bool noBits);
  Signal(const Signal&) = delete;
  Signal& operator=(const Signal&) = delete;

  unsigned int getId() const;
  /// The local name; lives as long as the model.
  const char* getName() const;
  /// Module path, "/", module name, "/", signal name, as they were when the signal was made.
  std::string getFullName() const;
  Net* getNet() const;
  Module* getModule() const;
  signalKind getKind() const;
  void setKind(signalKind kind);
  unsigned int getLsb() const;
  unsigned int getMsb() const;
  unsigned int getWidth() const;
  bool isHidden() const;
  void setHidden(bool hidden);
  /// Whether the signal was marked as a source by `setSrcState`.
  bool isSrcState() const;

  /// The reference of an index, possibly null. An index outside the range is a fatal error, or with
  /// `quiet` a warning and null.
  BitRef* getBitRef(unsigned int index, bool quiet) const;
  BitRef* getBitRef(unsigned int index) const;
  /// Stores the reference of an index. An index above the msb is a fatal error.
  void setBitRef(unsigned int index, BitRef* ref);

  /// Makes the signal a member of `net`.
  void setNet(Net* net);
  /// The enabled mark belongs to the net: all its signals share it. Without a net it is false.
  bool isEnabled() const;
  void enable();
  void disable();

  /// Marks the signal and each of its bits as a source.
  void setSrcState();
  /// Records where the state of an index lives; a bad index only warns.
  void addState(unsigned int index, unsigned int loc1, unsigned int loc2, unsigned int loc3);
  void addState(unsigned int index, unsigned int loc1, unsigned int loc2);

  /// Number of indices whose bit is not unknown, is unread, is inferred.
  unsigned int getAvail() const;
  unsigned int getUnread() const;
  unsigned int getInferred() const;
  /// True when every index that has a bit is constant 0 (1); true for a signal without bits.
  bool allZeros() const;
  bool allOnes() const;
  /// The value texts of all bits, most significant first.
  std::string getValueStr(bool display) const;
  /// Equal for two signals exactly when they resolve to the same bits in the same order.
  std::string getSignature() const;

  /// Widens the range to cover lsb..msb with new unknown bits; never narrows.
  void expand(unsigned int lsb, unsigned int msb);
  /// Merges index i + offset of `other` into index i, for all of this signal's range. Returns true
  /// after a conflict of constants, which stops further merging.
  bool merge(Signal* other, unsigned int offset);
  /// Merges index `j` of `other` into index `i`. Always returns 0.
  int merge(Signal* other, unsigned int i, unsigned int j);

  /// Every signal of the current model in creation order.
  static Range<Signal> getAllSignals();

  static void* operator new(std::size_t size);
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  static void operator delete(void*) noexcept {}

 private:
  friend class Module;
  friend class Net;
  friend class Netlist;
  friend struct NetlistState;
  friend class NetGrouping;
  friend class EdifReader;
  friend class CellTemplate;
  friend class LeafText;
  friend class XrfReader;
  friend class WriteAhead;
  friend class RegisterTies;
  friend struct ModelState;
  template <class T>
  friend class Range;
  template <class T>
  friend class Registry;
  friend struct NameKey;
  friend class SignalRegistry;

  Signal(ModelState& model, Module* module, const Word* name, unsigned int id, unsigned int lsb,
         unsigned int msb, bool noBits);
  void enter(ModelState& model, bool noBits);
  // The references of the indices from `first` upward.
  struct Entries {
    BitRef** refs;
    std::uint32_t first;
    std::uint32_t count;
  };
  struct Wide;

  Entries entries() const;
  BitRef* entry(std::uint64_t index) const;
  void cover(ModelState& model, std::uint64_t first, std::uint64_t last);
  void store(std::uint32_t index, BitRef* ref);
  void addBit(ModelState& model, unsigned int index);
  // Gives a new signal without bits one for each index, to be made when it is asked for.
  void promiseBits(ModelState& model);
  // Takes the mark from all bits of a new signal, as a netlist does for what it declares.
  void clearInferred();
  template <class Visit>
  void eachBit(Visit visit) const;

  const Word* m_name;
  Module* m_module;
  Net* m_net = nullptr;
  // The one reference that there is, or all in an array.
  union {
    BitRef* one;
    Wide* wide;
  } m_refs;
  std::uint32_t m_id;
  std::uint32_t m_lsb;
  std::uint32_t m_msb;
  signalKind m_kind : 8;
  bool m_wide : 1;
  bool m_hidden : 1;
  bool m_src_state : 1;
  bool m_port : 1;
  bool m_inferred_left : 1;  // bits may be marked inferred that its netlist should have cleared
  bool m_earlier_path : 1;   // its module got another path after the signal was made
  std::uint8_t m_held : 2;   // the views in which the signal's full name finds it
  bool m_dropped : 1;        // another signal took over its full name
};

/// Signals that are electrically one, with the enabled mark they share.
///
/// Made with `new`; belongs to the current model and lives as long as it does.
class XRF_API Net {
 public:
  /// An empty net of the next free id.
  Net();
  Net(const Net&) = delete;
  Net& operator=(const Net&) = delete;

  unsigned int getId() const;
  /// The net's signals in name order; of signals of one name, the first that joined.
  Range<Signal> getSignals() const;
  bool isEnabled() const;
  void enable();
  void disable();
  void addSignal(Signal* signal);

  /// Every net of the current model in creation order.
  static Range<Net> getAllNets();

  static void* operator new(std::size_t size);
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  static void operator delete(void*) noexcept {}

 private:
  friend class Signal;
  friend class NetGrouping;
  friend class XrfReader;
  friend struct ModelState;
  template <class T>
  friend class Range;
  template <class T>
  friend class Registry;

  explicit Net(ModelState& model);

  mutable detail::Members m_signals;
  std::uint32_t m_id;
  bool m_enabled = false;
};

/// The order of signal names: indices written as base<n> compare as numbers, all else as bytes.
/// Negative, zero or positive, like strcmp. Not a strict weak order for names of mixed form, so it
/// must not be handed to a sort that relies on one; sets of signals order such names by a rule of
/// their own.
XRF_API int sigcmp(const char* a, const char* b);

/// The "less" of `sigcmp` on two signals' names.
struct XRF_API CompareSignals {
  bool operator()(const Signal* a, const Signal* b) const;
};

}  // namespace XRF_RTL2LL
