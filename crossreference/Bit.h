#pragma once

#include <crossreference/Types.h>
#include <support/Api.h>
#include <support/Range.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace XRF_RTL2LL {

class Bit;
class Signal;
struct ModelState;
class Word;

/// One index of one signal, pointing at the bit that holds its value.
///
/// Made with `new`; belongs to the current model and lives as long as it does.
class XRF_API BitRef {
 public:
  /// A reference of `signal` at `index`, without a bit yet.
  BitRef(Signal* signal, unsigned int index);

  unsigned int getIndex() const;
  Signal* getSignal() const;
  void setSignal(Signal* signal);
  /// The bit this index resolves to, or null before `setBit`. Follows merges.
  Bit* getBit() const;
  /// Points the reference at `bit` and adds it to that bit's set. The set of the bit that it
  /// pointed at before keeps it.
  void setBit(Bit* bit);
  /// Merges the bit of `other` into this reference's bit; see `Bit::merge`.
  int merge(BitRef* other);

  static void* operator new(std::size_t size);
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  static void operator delete(void*) noexcept {}

 private:
  friend class Bit;
  friend class Signal;
  friend class RegisterTies;
  friend class NetGrouping;
  friend class WriteAhead;
  friend struct ModelState;
  template <class T>
  friend class Registry;
  friend XRF_API void* detail::advance(detail::Cursor&);

  // Most bits that a netlist's ports begin with are merged before anybody has looked at them. Until
  // then a bit is but its number and its place among all bits.
  struct Promise {
    std::uint32_t id;
    std::uint32_t place;
  };

  /// Parts from all that share its bit.
  void leave();

  Signal* m_signal;
  // Brought up to date when a merge is noticed, which in a finished model never happens.
  mutable Bit* m_bit = nullptr;
  union {
    BitRef* m_next = nullptr;  // in the set of its bit
    Promise m_promise;         // of a bit that is promised
  };
  std::uint32_t m_index;
  bool m_member : 1 = false;    // in some bit's set
  bool m_register : 1 = false;  // the signal's index is a register of the design
  bool m_replica : 1 = false;   // known by a copy that synthesis made, for want of the original
  bool m_disputed : 1 = false;  // or would be of several, so that it is none
  bool m_promised : 1 = false;  // its bit is made when it is asked for
};

/// One physical bit: a storage element or constant that signal indices resolve to.
///
///     Bit* bit = design.findSignal(RTL, "/top/u0/cnt")->getBitRef(2)->getBit();
///     if (bit->getKind() == Bit::STATE) show(bit->getStateLoc1(), bit->getStateLoc2());
///
/// Made with `new`; belongs to the current model, which keeps its storage until it is reset, so a
/// pointer to a bit that was absorbed never dangles. Only while a netlist is read, bits that the
/// reader made and merged may be used again.
class XRF_API Bit {
 public:
  enum BitKind : std::uint32_t {
    STATE,    ///< held in a state element whose location is known
    UNKNOWN,  ///< nothing is known yet
    CNST,     ///< a constant, see getValue
    UNREAD    ///< marked as a source but never found in the implementation
  };

  /// A bit of the next free id.
  Bit();
  /// A bit of a given id; later bits never reuse an id below it.
  explicit Bit(unsigned int id);
  Bit(const Bit&) = delete;
  Bit& operator=(const Bit&) = delete;

  unsigned int getId() const;
  void setId(unsigned int id);
  BitKind getKind() const;
  void setKind(BitKind kind);
  bool getValue() const;
  /// Sets the constant value, and the value text to "0" or "1".
  void setValue(bool value);
  /// The value text; with `display`, "s" for a state bit and "u" for an unread one instead.
  std::string getValueStr(bool display) const;
  void setValueStr(const std::string& text);
  bool isChanged() const;
  void setChanged(bool changed);
  bool isSrc() const;
  void setSrc(bool source);
  bool isInferred() const;
  void setInferred(bool inferred);
  /// Frame address of the state element in the configuration memory.
  unsigned int getStateLoc1() const;
  /// Offset in bits within the frame.
  unsigned int getStateLoc2() const;
  /// Index of the super logic region.
  unsigned int getStateLoc3() const;
  void setStateLoc(unsigned int loc1, unsigned int loc2, unsigned int loc3);

  /// Adds a reference to this bit's set; a reference already there changes nothing.
  void addBitRef(BitRef* ref);
  /// The references that resolve to this bit, in the order in which they came to it.
  Range<BitRef> getBitRefs() const;
  /// Absorbs `other`: its references resolve to this bit from now on, and it leaves the registry.
  /// Returns 0, or 1 for two constants of different value, which changes nothing but prints a line
  /// on standard output.
  int merge(Bit* other);

  /// Every live bit of the current model in creation order.
  static Range<Bit> getAllBits();
  static void setMaxBitId(unsigned int id);
  static unsigned int getMaxBitId();
  /// The id that the next bit receives.
  static unsigned int getNextId();

  static void* operator new(std::size_t size);
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  static void operator delete(void*) noexcept {}

 private:
  friend class BitRef;
  friend class Signal;
  friend class NetGrouping;
  friend struct ModelState;
  template <class T>
  friend class Range;
  friend XRF_API void* detail::advance(detail::Cursor&);
  template <class T>
  friend class Registry;

  // The references are chained through themselves, since each is in one set. Where a host puts one
  // into several sets, links of their own hold it.
  struct Link {
    BitRef* ref;
    Link* next;
  };
  union Chain {
    BitRef* ref;
    Link* link;
  };
  enum ValueText : std::uint8_t { TextZ, Text0, Text1, TextOther };

  explicit Bit(ModelState& model);
  explicit Bit(BitRef::Promise promise);
  void begin(unsigned int id);
  bool takePromised(BitRef& ref);
  Bit* survivor();
  int combine(const Bit& other);
  void append(BitRef* ref);
  void remove(BitRef* ref);
  void splice(Bit& other);
  void adoptEach(const Bit& other);
  void link();
  void redirect(Bit* survivor);

  Chain m_first{nullptr};
  Chain m_last{nullptr};
  union {
    Bit* m_survivor;     // of an absorbed bit, what absorbed it
    const Word* m_text;  // of a live bit, its value text where that is none of the usual
  };
  std::uint32_t m_ref_count = 0;
  std::uint32_t m_id = 0;
  std::uint32_t m_state_loc1 = 0;
  std::uint32_t m_state_loc2 = 0;
  std::uint32_t m_state_loc3 = 0;
  std::uint32_t m_place = 0;
  BitKind m_kind : 8;
  ValueText m_value_text : 8;
  bool m_value : 1;
  bool m_src : 1;
  bool m_changed : 1;
  bool m_inferred : 1;
  bool m_absorbed : 1;
  bool m_followed : 1;   // absorbed bits that may still be asked lead here
  bool m_linked : 1;     // its references are held by links
  bool m_irregular : 1;  // holds a reference that resolves elsewhere or that another bit holds too
};

}  // namespace XRF_RTL2LL
