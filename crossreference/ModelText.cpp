#include <crossreference/MemberSet.h>
#include <crossreference/ModelState.h>
#include <crossreference/ModelText.h>
#include <crossreference/TextOut.h>
#include <support/Prefetch.h>
#include <support/Report.h>

#include <algorithm>
#include <ostream>

namespace XRF_RTL2LL {

/// Fetches the memory of what a module's text goes on with: the objects lie all over memory, and
/// each leads to the next one. Which are listed is of no matter here.
class WriteAhead {
 public:
  explicit WriteAhead(const Module& module)
      : m_signals(module.m_signals), m_children(module.children()) {}

  /// Before each signal. Those of small modules were asked for beside them.
  void askForSignals() {
    const std::uint32_t at = m_signal++;
    if (m_signals.count <= members::unindexed) return;
    const auto ask = [&](std::uint64_t distance, void (*fetch)(const Signal&)) {
      const std::uint64_t next = at + distance;
      if (next < m_signals.count) fetch(*members::object<Signal>(m_signals.slots[next]));
    };
    ask(12, prefetchWhole<Signal>);
    ask(8, askForPlaces);
    ask(4, askForBit);
  }
  /// Before each child.
  void askForChildren() {
    const std::uint32_t at = m_child++;
    const auto ask = [&](std::uint64_t distance, void (*fetch)(const Module&)) {
      const std::uint64_t next = at + distance;
      if (next < m_children.count) fetch(*members::object<Module>(m_children.slots[next]));
    };
    ask(5, [](const Module& child) {
      __builtin_prefetch(&child);
      __builtin_prefetch(&child.m_signals.slots);
      __builtin_prefetch(&child.m_id);
    });
    ask(4, [](const Module& child) {
      __builtin_prefetch(child.m_signals.slots);
      __builtin_prefetch(child.m_name);
    });
    ask(3, [](const Module& child) { eachSignal(child, prefetchWhole<Signal>); });
    ask(2, [](const Module& child) { eachSignal(child, askForPlaces); });
    ask(1, [](const Module& child) { eachSignal(child, askForBit); });
  }

 private:
  static void eachSignal(const Module& module, void (*fetch)(const Signal&)) {
    const std::uint32_t count = std::min(module.m_signals.count, members::unindexed);
    for (std::uint32_t at = 0; at < count; ++at) {
      fetch(*members::object<Signal>(module.m_signals.slots[at]));
    }
  }
  static void askForPlaces(const Signal& signal) {
    __builtin_prefetch(signal.m_name);
    if (signal.m_net != nullptr) prefetchWhole(*signal.m_net);
    __builtin_prefetch(signal.m_refs.one);
  }
  static void askForBit(const Signal& signal) {
    if (signal.m_wide || signal.m_refs.one == nullptr) return;
    const Bit* bit = signal.m_refs.one->m_bit;
    if (bit != nullptr) prefetchWhole(*bit);
  }

  const detail::Members& m_signals;
  const detail::Members& m_children;
  std::uint32_t m_signal = 0;
  std::uint32_t m_child = 0;
};

namespace {

const char* kindName(Bit::BitKind kind) {
  switch (kind) {
    case Bit::STATE:
      return "STATE";
    case Bit::UNKNOWN:
      return "?";
    case Bit::CNST:
      return "CNST";
    case Bit::UNREAD:
      return "UNREAD";
  }
  fatal("Unknown BitKind!\n");
}

const char* kindName(signalKind kind) {
  switch (kind) {
    case IN:
      return "IN";
    case OUT:
      return "OUT";
    case WIRE:
      return "WIRE";
  }
  fatal("Unknown SignalKind!\n");
}

void writeIndent(TextOut& out, std::size_t depth) {
  constexpr std::string_view blanks = "                                                ";
  std::size_t left = 3 * depth;
  for (; left > blanks.size(); left -= blanks.size()) out << blanks;
  out << blanks.substr(0, left);
}

template <class Object>
std::ostream& print(std::ostream& out, const Object& object,
                    void (*write)(TextOut&, const Object&)) {
  const auto sink = [](std::string_view text, void* stream) {
    static_cast<std::ostream*>(stream)->write(text.data(),
                                              static_cast<std::streamsize>(text.size()));
  };
  TextOut text(sink, &out);
  write(text, object);
  text.flush();
  out.flush();
  if (text.failed()) out.setstate(std::ios_base::badbit);
  return out;
}

}  // namespace

void writeBit(TextOut& out, const Bit& bit) {
  out << "(BIT " << bit.getId() << " " << kindName(bit.getKind()) << " ";
  if (bit.getKind() == Bit::CNST) {
    out << (bit.getValue() ? "1" : "0");
  } else {
    out << bit.getValueStr(false);
  }
  if (bit.getKind() == Bit::STATE) {
    out << " " << bit.getStateLoc1() << " " << bit.getStateLoc2() << " " << bit.getStateLoc3();
  }
  out << ")";
}

namespace {

void write(TextOut& out, const Signal& signal, std::size_t depth) {
  const Net* net = signal.getNet();
  if (net == nullptr) {
    fatalHere("Signal %s belongs to no net and cannot be written.", signal.getFullName().c_str());
  }
  writeIndent(out, depth);
  out << "(SIG " << (signal.isHidden() ? "HIDDEN " : "VISIBLE ") << kindName(signal.getKind())
      << " ";
  out.name(ModelState::nameOf(&signal));
  out << " " << signal.getId() << " " << net->getId() << " " << signal.getLsb() << " "
      << signal.getMsb();
  const std::uint64_t last = signal.getMsb();
  for (std::uint64_t index = signal.getLsb(); index <= last; ++index) {
    const BitRef* ref = signal.getBitRef(static_cast<std::uint32_t>(index), true);
    const Bit* bit = ref == nullptr ? nullptr : ref->getBit();
    if (bit == nullptr) {
      out << " NULL";
    } else {
      out << " " << bit->getId();
    }
  }
  out << ")";
}

void write(TextOut& out, const Module& module, std::size_t depth) {
  writeIndent(out, depth);
  out << "(MOD " << (module.isHidden() ? "HIDDEN " : "VISIBLE ");
  out.name(ModelState::definitionOf(&module));
  out << " ";
  out.name(ModelState::nameOf(&module));
  out << " " << module.getId();
  const bool onlyVisible = !Module::getShowHidden();
  WriteAhead ahead(module);
  const Range<Signal> signals = module.getSignals(onlyVisible);
  if (!signals.empty()) out << "\n";
  for (const Signal* signal : signals) {
    ahead.askForSignals();
    out << "\n";
    write(out, *signal, depth + 1);
  }
  const Range<Module> children = module.getChildren(onlyVisible);
  if (!children.empty()) out << "\n";
  for (const Module* child : children) {
    ahead.askForChildren();
    out << "\n";
    write(out, *child, depth + 1);
  }
  out << ")";
}

}  // namespace

void writeSignal(TextOut& out, const Signal& signal) { write(out, signal, Module::getDepth()); }

void writeModule(TextOut& out, const Module& module) { write(out, module, Module::getDepth()); }

std::ostream& addIndent(std::ostream& out) {
  for (unsigned level = Module::getDepth(); level > 0; --level) out << "   ";
  return out;
}

std::ostream& operator<<(std::ostream& out, Bit::BitKind kind) { return out << kindName(kind); }

std::ostream& operator<<(std::ostream& out, signalKind kind) { return out << kindName(kind); }

std::ostream& operator<<(std::ostream& out, Bit* bit) { return print(out, *bit, writeBit); }

std::ostream& operator<<(std::ostream& out, Signal* signal) {
  return print(out, *signal, writeSignal);
}

std::ostream& operator<<(std::ostream& out, Module* module) {
  return print(out, *module, writeModule);
}

}  // namespace XRF_RTL2LL
