#include <crossreference/ModelState.h>
#include <crossreference/ModelText.h>
#include <crossreference/TextOut.h>
#include <support/Report.h>

#include <ostream>

namespace XRF_RTL2LL {

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

void writeIndent(TextOut& out) {
  constexpr std::string_view blanks = "                                                ";
  std::size_t left = std::size_t{3} * Module::getDepth();
  for (; left > blanks.size(); left -= blanks.size()) out << blanks;
  out << blanks.substr(0, left);
}

// Raises the depth while the members of a module are written.
class DeeperIndent {
 public:
  DeeperIndent() { Module::incrDepth(); }
  ~DeeperIndent() { Module::decrDepth(); }
  DeeperIndent(const DeeperIndent&) = delete;
  DeeperIndent& operator=(const DeeperIndent&) = delete;
};

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

void writeSignal(TextOut& out, const Signal& signal) {
  const Net* net = signal.getNet();
  if (net == nullptr) {
    fatalHere("Signal %s belongs to no net and cannot be written.", signal.getFullName().c_str());
  }
  writeIndent(out);
  out << "(SIG " << (signal.isHidden() ? "HIDDEN " : "VISIBLE ") << kindName(signal.getKind())
      << " ";
  out.name(signal.getName());
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

void writeModule(TextOut& out, const Module& module) {
  writeIndent(out);
  out << "(MOD " << (module.isHidden() ? "HIDDEN " : "VISIBLE ");
  out.name(module.getDefName());
  out << " ";
  out.name(module.getName());
  out << " " << module.getId();
  const bool onlyVisible = !Module::getShowHidden();
  const DeeperIndent deeper;
  const Range<Signal> signals = module.getSignals(onlyVisible);
  if (!signals.empty()) out << "\n";
  for (const Signal* signal : signals) {
    out << "\n";
    writeSignal(out, *signal);
  }
  const Range<Module> children = module.getChildren(onlyVisible);
  if (!children.empty()) out << "\n";
  for (const Module* child : children) {
    out << "\n";
    writeModule(out, *child);
  }
  out << ")";
}

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
