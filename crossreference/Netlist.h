#pragma once

#include <crossreference/Module.h>
#include <crossreference/TokenMap.h>
#include <crossreference/Types.h>
#include <support/Api.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

namespace XRF_RTL2LL {

class Reading;
struct NetlistState;

/// The instances of one view as (definition name, full path) pairs, ordered by definition name and
/// within one definition by the order in which they were read. Paths are composed on demand.
class XRF_API InstanceRange {
 public:
  using value_type = std::pair<std::string, std::string>;

  class XRF_API iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = InstanceRange::value_type;
    using difference_type = std::ptrdiff_t;
    using pointer = const value_type*;
    using reference = value_type;

    iterator() = default;
    value_type operator*() const;
    iterator& operator++();
    bool operator==(const iterator& other) const;

   private:
    friend class InstanceRange;
    const NetlistState* m_state = nullptr;
    EdifView m_view = RTL;
    const void* m_group = nullptr;
    std::size_t m_position = 0;
  };

  iterator begin() const;
  iterator end() const;
  std::size_t size() const;
  bool empty() const;
  bool contains(const value_type& instance) const;

 private:
  friend class Netlist;
  InstanceRange(const NetlistState* state, EdifView view) : m_state(state), m_view(view) {}
  const NetlistState* m_state;
  EdifView m_view;
};

/// The two views of one design and the registries that find their objects by hierarchical name.
///
/// Bad input is fatal (see Handlers.h). A netlist acts in the model that was current when it was
/// made; its objects live in that model and outlive the netlist.
class XRF_API Netlist {
 public:
  Netlist();
  ~Netlist();
  Netlist(const Netlist&) = delete;
  Netlist& operator=(const Netlist&) = delete;

  /// Read the elaborated, the synthesized netlist (EDIF) or both views from a cross-reference file.
  /// All return 0.
  int parse_rtl(std::string path);
  int parse_synth(std::string path);
  int parse_xrf(std::string path);

  /// The top module of a view, or null before it was read.
  Module* getTop(EdifView view) const;
  /// The first family (part) given wins; FAMILY_NONE (PART_NONE) is ignored.
  void setFamily(Family family);
  Family getFamily() const;
  void setPart(Part part);
  Part getPart() const;

  /// Enter an object under its full name. A later one of the same name replaces it.
  void registerModule(EdifView view, Module* module);
  void registerSignal(EdifView view, Signal* signal);
  /// Makes the signal of number `id` in `module`, or widens it, and registers it.
  Signal* addSignal(EdifView view, Module* module, const char* name, unsigned int lsb,
                    unsigned int msb, unsigned int id, char* extra = nullptr);
  /// The same; the leading value has no effect.
  Signal* addSignal(unsigned int mark, EdifView view, Module* module, const char* name,
                    unsigned int lsb, unsigned int msb, unsigned int id, char* extra = nullptr);
  /// The object registered under a full name, or null. A view that does not exist raises
  /// std::out_of_range for a name that is known.
  Module* findModule(EdifView view, std::string name) const;
  Signal* findSignal(EdifView view, std::string name) const;
  InstanceRange getInstances(EdifView view) const;
  TokenMap* getTokenMap() const;

  /// Merges buffers, groups all signals into nets and numbers the bits; ends the reading of a view.
  void postProcess(EdifView view);
  /// Copies what the synthesized view knows of each bit into the RTL view.
  void finalPostProcess();
  /// Prints nothing.
  void dump();

  /// Clears the token map and seeds it with the fixed words.
  void initializeMap();
  /// The operation kind of a cell. `lutMode` says what a one-input look-up table is: 2 a buffer,
  /// 1 an inverter, else logic.
  opKind getKind(unsigned int cellCode, unsigned int libraryCode, unsigned int lutMode);
  /// Whether the kind is anything but HIER.
  bool isPrimitive(unsigned int cellCode, unsigned int libraryCode, unsigned int lutMode);

 private:
  friend class Design;
  friend class InstanceRange;
  friend class LogicLocationReader;
  friend class SynthesisLogReader;
  friend void readAs(Netlist& netlist, const Reading& reading);
  std::unique_ptr<NetlistState> m_state;
};

/// Decode one field of a cross-reference file by its first character; another one is fatal.
XRF_API void setKind(Bit* bit, const char* text);
XRF_API void setKind(Signal* signal, const char* text);
XRF_API void setValue(Bit* bit, const char* text);

/// Whether a property code names an inverted data input, an inverted set or reset input.
XRF_API bool isDInverted(unsigned int propertyCode);
XRF_API bool isRSTInverted(unsigned int propertyCode);

}  // namespace XRF_RTL2LL
