#pragma once

#include <crossreference/Signal.h>
#include <crossreference/Types.h>
#include <support/Api.h>
#include <support/Range.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace XRF_RTL2LL {

/// One instance of the design hierarchy: its signals, its children and its place in the tree.
/// Build the tree from the top down: a module's path is fixed when it is attached to its parent.
///
/// Made with `new`; belongs to the current model and lives as long as it does.
class XRF_API Module {
 public:
  /// The names are copied.
  Module(const char* name, const char* defName, unsigned int id);
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;

  unsigned int getId() const;
  /// The instance's and the definition's name; they live as long as the model.
  const char* getName() const;
  const char* getDefName() const;
  void setDefName(const char* defName);
  /// The parent's path and name; "" for a root.
  std::string getPath() const;
  void setPath(const char* path);
  bool isHidden() const;
  /// Hides the module; there is no way back.
  void setHidden();
  opKind getKind() const;
  void setKind(opKind kind);
  /// Initial value of a register cell.
  unsigned long getInit() const;
  void setInit(unsigned long init);
  bool getDInverted() const;
  void setDInverted(bool inverted);
  bool getRSTInverted() const;
  void setRSTInverted(bool inverted);
  Module* getParent() const;
  void setParent(Module* parent);

  /// Signals and children in name order; of objects of one name, the first that was added. With
  /// `visible`, those that were not hidden at the last `updateVisible…`.
  Range<Signal> getSignals(bool visible) const;
  Range<Module> getChildren(bool visible) const;
  /// The object of a number. A missing one gives null with `quiet`, else it is fatal, silently.
  Signal* getSignal(unsigned int id, bool quiet) const;
  Module* getChild(unsigned int id, bool quiet) const;

  /// Attaches a child and fixes its path. A number already in use is a fatal error.
  void addChild(Module* child);
  /// Adds a signal. A number already in use is a fatal error, silently.
  void addSignal(Signal* signal);
  /// Take the visible sets anew, with `recursive` for the whole subtree.
  void updateVisibleChildren(bool recursive);
  void updateVisibleSignals(bool recursive);

  /// Indentation depth of the text form.
  static unsigned int getDepth();
  static void incrDepth();
  static void decrDepth();
  /// Whether the text form lists hidden signals and children.
  static bool getShowHidden();
  static void setShowHidden(bool show);

  static void* operator new(std::size_t size);
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  static void operator delete(void*) noexcept {}

 private:
  friend class Signal;
  friend class Netlist;
  friend class EdifReader;
  friend class CellTemplate;
  friend class LeafText;
  friend class XrfReader;
  friend class WriteAhead;
  friend struct ModelState;
  friend struct NameKey;
  friend class ModuleRegistry;
  friend class SignalRegistry;
  template <class T>
  friend struct RegisteredName;
  template <class T>
  friend class Range;

  Module(const Word* name, const Word* defName, unsigned int id);
  // The path that a signal's full name holds.
  const Word* pathOf(const Signal& signal) const;
  void setPathWord(const Word* path);
  const Word* childPath();

  const Word* m_name;
  const Word* m_def_name;
  const Word* m_path;
  Module* m_parent = nullptr;
  // Signals that were made before the module got another path.
  struct EarlierPath {
    const Signal* signal;
    const Word* path;
    EarlierPath* next;
  };
  // What primitives, most of all modules, do without.
  struct Inside {
    detail::Members children;
    const Word* childPath = nullptr;
    EarlierPath* earlierPaths = nullptr;
  };
  Inside& inside();
  const detail::Members& children() const;
  Inside* m_inside = nullptr;
  std::uint64_t m_init = 0;
  mutable detail::Members m_signals;
  std::uint32_t m_id;
  opKind m_kind : 8;
  bool m_hidden : 1;
  bool m_d_inverted : 1;
  bool m_rst_inverted : 1;
  bool m_named_signals : 1;     // signals were made whose full names hold this path
  std::uint8_t m_entered : 2;   // the views in which the module's own name finds it
  std::uint16_t m_netlist = 0;  // the first netlist that it was entered in, counted from 1
};

/// The "less" of two modules: byte order of their names.
struct XRF_API CompareModules {
  bool operator()(const Module* a, const Module* b) const;
};

}  // namespace XRF_RTL2LL
