#include "EdifWriter.h"

#include "Cells.h"
#include "ElaboratedNetlist.h"
#include "HazardPorts.h"
#include "Identifiers.h"
#include "OutputFile.h"
#include "Random.h"
#include "SynthesizedNetlist.h"

#include <algorithm>
#include <array>
#include <vector>

namespace generate {

namespace {

constexpr std::string_view kHeader =
    "(edif top\n"
    " (edifversion 2 0 0)\n"
    " (edifLevel 0)\n"
    " (keywordmap (keywordlevel 0))\n"
    " (status\n"
    "  (written\n"
    "   (timeStamp 2024 02 19 01 09 41)\n"
    "   (program \"Tarvona\" (version \"2024.1\"))\n"
    "   (comment \"Built on 'Mon Feb 19 01:09:41 2024'\")\n"
    "   (comment \"a generated design (not a real one)\")\n"
    "  )\n"
    " )\n";

constexpr std::string_view kFooter =
    " (comment \"Reference to the cell of highest level\")\n"
    " (design top\n"
    "  (cellref top (libraryref work))\n"
    "  (property part (string \"tv7k325-2\"))\n"
    "  (property buildSeed (integer -31))\n"
    "  (property flattened (boolean (false)))\n"
    " )\n"
    ")\n";

/// Which numbered cells of each kind a netlist uses.
class CellSet {
 public:
  CellSet() : used_(kCellKinds * kCellNumbers) {}
  void insert(Cell cell) { used_[index(cell)] = true; }

  template <class Visitor>
  void visit(Visitor visitor) const {
    for (uint32_t cell = 0; cell < used_.size(); ++cell) {
      if (!used_[cell]) continue;
      visitor(Cell{static_cast<CellKind>(cell / kCellNumbers),
                   static_cast<uint16_t>(cell % kCellNumbers)});
    }
  }

 private:
  static uint32_t index(Cell cell) {
    return static_cast<uint32_t>(cell.kind) * kCellNumbers + cell.number;
  }
  std::vector<bool> used_;
};

/// The cell that is declared for another that differs in its contents alone.
Cell declaredCell(Cell cell) {
  const bool isLut = cell.kind == CellKind::BufferLut || cell.kind == CellKind::InverterLut;
  return isLut ? lutCell(1) : cell;
}

CellSet synthesizedCells(Shape shape) {
  CellSet cells;
  for (uint32_t inputs = 1; inputs <= 6; ++inputs) cells.insert(lutCell(inputs));
  for (const CellKind kind :
       {CellKind::Fdre, CellKind::Fdse, CellKind::Fdce, CellKind::Fdpe, CellKind::Carry,
        CellKind::InputBuffer, CellKind::ClockBuffer, CellKind::Ground, CellKind::Power}) {
    cells.insert({kind});
  }
  if (shape == Shape::Field) {
    cells.insert({CellKind::BlockMemory});
    cells.insert({CellKind::Multiplier});
  }
  return cells;
}

CellSet implementedCells(const Design& design, const Implementation& implementation) {
  CellSet cells;
  for (uint32_t definition = 0; definition < design.definitions(); ++definition) {
    for (const ModuleNetlist::Instance& instance : implementation.netlist(definition).instances()) {
      if (instance.module == ModuleNetlist::kNone) cells.insert(declaredCell(instance.cell));
    }
  }
  return cells;
}

void insertRegisterCells(CellSet& cells, const Module& module, const Bank& bank) {
  switch (bank.grouping) {
    case Grouping::Bits:
      cells.insert(rtlRegisterCell(module, bank));
      break;
    case Grouping::Whole:
    case Grouping::Unprinted:
      cells.insert(rtlWideRegisterCell(bank.width));
      break;
    case Grouping::TwoSlices:
      cells.insert(rtlWideRegisterCell(bank.width / 2));
      cells.insert(rtlWideRegisterCell(bank.width - bank.width / 2));
      break;
  }
  if (bank.inverts && bank.operation == Operation::Copy) cells.insert({CellKind::RtlInverter});
}

CellSet elaboratedCells(const Design& design) {
  CellSet cells;
  cells.insert({CellKind::RtlGround});
  cells.insert({CellKind::RtlPower});
  for (uint32_t definition = 0; definition < design.definitions(); ++definition) {
    const Module module = design.module(definition);
    for (const Bank& bank : module.banks) {
      insertRegisterCells(cells, module, bank);
      if (bank.operation != Operation::Copy) cells.insert(rtlOperatorCell(module, bank));
    }
  }
  return cells;
}

class EdifWriter {
 public:
  EdifWriter(const Design& design, const Implementation* implementation, View view,
             const std::string& path)
      : design_(design),
        implementation_(implementation),
        view_(view),
        renames_(design.options().renames),
        out_(path, lineEnd(design)) {
    if (implementation_ == nullptr) return;
    for (uint32_t definition = 0; definition < design.definitions(); ++definition) {
      ports_.push_back(design.ports(definition));
    }
  }

  void run() {
    out_ << kHeader;
    writePrimitives();
    openLibrary("work");
    if (hasShells()) {
      openCell("shell");
      out_ << "    )\n    (contents\n    )\n   )\n  )\n";
    }
    for (uint32_t definition = 0; definition < design_.definitions(); ++definition) {
      if (isWritten(definition)) writeModule(design_.module(definition), definition);
    }
    out_ << " )\n" << kFooter;
    out_.close();
  }

 private:
  bool isWritten(uint32_t definition) const {
    return implementation_ == nullptr || view_ == View::Elaborated ||
           implementation_->isUsed(definition);
  }

  bool hasShells() const {
    return implementation_ != nullptr && design_.options().hazards->has(Hazard::Shells);
  }

  void openLibrary(std::string_view name) {
    out_ << " (Library " << name << "\n  (edifLevel 0)\n  (technology (numberDefinition ))\n";
  }

  void openCell(std::string_view name) {
    out_ << "  (cell " << name << " (celltype GENERIC)\n"
         << "   (view netlist (viewtype NETLIST)\n    (interface\n";
  }

  void writePrimitives() {
    openLibrary("prims");
    usedCells().visit([this](Cell cell) {
      openCell(cellName(cell));
      for (const Port& port : cellPorts(cell)) writePort(port);
      out_ << "    )\n   )\n  )\n";
    });
    out_ << " )\n";
  }

  CellSet usedCells() const {
    if (view_ == View::Elaborated) return elaboratedCells(design_);
    return implementation_ == nullptr ? synthesizedCells(design_.options().shape)
                                      : implementedCells(design_, *implementation_);
  }

  void writePort(const Port& port) {
    out_ << "     (port ";
    const std::string_view name = pinName(port.pin);
    if (port.width == 0) {
      writeName(name, false);
    } else {
      writeArray(port.pin, port.width);
    }
    out_ << (port.isOutput ? " (direction OUTPUT))\n" : " (direction INPUT))\n");
  }

  void writeArray(Pin pin, uint32_t width) {
    out_ << "(array ";
    if (renames_ || implementation_ != nullptr) {
      out_ << "(rename " << std::string_view(arrayName(pin)) << " \"" << pinName(pin) << '['
           << uint64_t{width - 1} << ":0]\")";
    } else {
      out_ << pinName(pin);
    }
    out_ << ' ' << uint64_t{width} << ')';
  }

  /// An array shares its name with the nets of its bits, so its identifier differs as a rule.
  std::string arrayName(Pin pin, uint32_t owner = ModuleNetlist::kNone) const {
    std::string name(pinName(pin));
    const bool isModules = pin == Pin::Din || pin == Pin::Dout;
    const bool keepsName = isModules && implementation_ != nullptr &&
                           design_.options().hazards->has(Hazard::PortRanges) && owner % 2 == 0;
    const bool differs = isModules ? renames_ && !keepsName : implementation_ != nullptr;
    return differs ? name + '_' : name;
  }

  void writeIdentifier(std::string_view name, bool keepsBrackets) {
    writePrefix(name);
    if ((keepsBrackets && !renames_) || !needsIdentifier(name)) {
      out_ << name;
    } else {
      out_ << std::string_view(identifierOf(name));
    }
  }

  /// Identifiers that do not begin with a letter are marked.
  void writePrefix(std::string_view identifier) {
    const char first = identifier.front();
    const bool isLetter = (first >= 'a' && first <= 'z') || (first >= 'A' && first <= 'Z');
    if (!isLetter) out_ << '&';
  }

  void writeName(std::string_view name, bool keepsBrackets) {
    if (!renames_ || !needsIdentifier(name)) {
      writeIdentifier(name, keepsBrackets);
      return;
    }
    out_ << "(rename ";
    writeIdentifier(name, keepsBrackets);
    out_ << " \"" << name << "\")";
  }

  void writeNamed(std::string_view identifier, std::string_view name) {
    if (identifier == name) {
      writePrefix(identifier);
      out_ << identifier;
      return;
    }
    out_ << "(rename ";
    writePrefix(identifier);
    out_ << identifier << " \"" << name << "\")";
  }

  ModuleNetlist netlistOf(const Module& module, uint32_t definition) const {
    if (view_ == View::Elaborated) return elaborate(design_, module);
    return implementation_ == nullptr ? synthesize(design_, module)
                                      : implementation_->netlist(definition);
  }

  void writeModule(const Module& module, uint32_t definition) {
    const ModuleNetlist netlist = netlistOf(module, definition);
    definition_ = definition;
    if (implementation_ != nullptr) chooseIdentifiers(netlist);
    openCell(module.name);
    writeModulePorts(module);
    out_ << "    )\n    (contents\n";
    if (hasShells()) {
      out_ << "     (instance a_shell (viewref netlist (cellref shell (libraryref work))))\n";
    }
    for (size_t index = 0; index < netlist.instances().size(); ++index) {
      writeInstance(module, netlist, index);
    }
    for (size_t index = 0; index < netlist.nets().size(); ++index) {
      if (netlist.nets()[index].first != ModuleNetlist::kNone) writeNet(netlist, index);
    }
    out_ << "    )\n   )\n  )\n";
  }

  void chooseIdentifiers(const ModuleNetlist& netlist) {
    std::vector<std::string_view> names;
    for (const ModuleNetlist::Instance& instance : netlist.instances()) {
      names.push_back(netlist.text(instance.name));
    }
    instanceIdentifiers_ = identifiersOf(names);
    names.clear();
    for (const ModuleNetlist::Net& net : netlist.nets()) names.push_back(netlist.text(net.name));
    netIdentifiers_ = identifiersOf(names);
  }

  void writeBusPort(const BusPort& bus, Pin pin, uint32_t width, bool isOutput) {
    const std::string_view direction =
        isOutput ? " (direction OUTPUT))\n" : " (direction INPUT))\n";
    if (!bus.isBits) {
      out_ << "     (port (array ";
      writeNamed(arrayName(pin, definition_), portArrayName(bus));
      out_ << ' ' << uint64_t{width} << ')' << direction;
      return;
    }
    for (uint32_t place = width; place-- > 0;) {
      const std::string name = portBitName(bus, place);
      out_ << "     (port ";
      writeNamed(identifierOf(name), name);
      out_ << direction;
    }
  }

  void writeModulePorts(const Module& module) {
    for (const Pin pin : {Pin::Clk, Pin::Rst, Pin::En, Pin::Sel0, Pin::Sel1}) {
      writePort({pin, false});
    }
    if (implementation_ != nullptr) {
      writeBusPort(module.ports.din, Pin::Din, module.inputWidth, false);
      writeBusPort(module.ports.dout, Pin::Dout, module.outputWidth, true);
      if (!module.hasValid) return;
      out_ << "     (port ";
      writeNamed(identifierOf(module.ports.valid), module.ports.valid);
      out_ << " (direction OUTPUT))\n";
      return;
    }
    writePort({Pin::Din, false, module.inputWidth});
    writePort({Pin::Dout, true, module.outputWidth});
    if (module.hasValid) writePort({Pin::Valid, true});
  }

  void writeInstance(const Module& module, const ModuleNetlist& netlist, size_t index) {
    const ModuleNetlist::Instance& instance = netlist.instances()[index];
    out_ << "     (instance ";
    if (implementation_ != nullptr) {
      writeNamed(instanceIdentifiers_[index], netlist.text(instance.name));
    } else {
      writeName(netlist.text(instance.name), instance.name.keepsBrackets);
    }
    out_ << " (viewref netlist (cellref ";
    if (instance.module != ModuleNetlist::kNone) {
      out_ << design_.definitionName(instance.module) << " (libraryref work)))\n"
           << "      (property keep_hierarchy (string \"yes (from source)\"))\n     )\n";
      return;
    }
    out_ << cellName(instance.cell) << " (libraryref prims)))";
    const uint64_t lot = scramble(module.seed, 9, index);
    writeProperties(instance.cell, lot);
    if (view_ == View::Synthesized && design_.options().shape == Shape::Field) writeOrigin(lot);
    out_ << ")\n";
  }

  void writeProperties(Cell cell, uint64_t lot) {
    switch (cell.kind) {
      case CellKind::Lut:
        writeLutContents(cell.number, lot);
        break;
      case CellKind::BufferLut:
        out_ << "\n      (property INIT (string \"2'h2\"))";
        break;
      case CellKind::InverterLut:
        out_ << "\n      (property INIT (string \"2'h1\"))";
        break;
      case CellKind::Fdre:
      case CellKind::Fdse:
      case CellKind::Fdce:
      case CellKind::Fdpe:
        out_ << "\n      (property INIT (string \"1'b" << ((lot & 1) != 0 ? '1' : '0') << "\"))";
        if ((lot >> 1) % 50 == 0) writeInversion(cell.kind, lot >> 8);
        break;
      case CellKind::FdreFalling:
      case CellKind::FdseFalling:
      case CellKind::FdceFalling:
      case CellKind::FdpeFalling:
        out_ << "\n      (property INIT (string \"1'b" << ((lot & 1) != 0 ? '1' : '0') << "\"))";
        break;
      case CellKind::Carry:
        out_ << "\n      (property adderStyle (integer 35))"
             << "\n      (property note (string \"\"))";
        break;
      default:
        break;
    }
  }

  /// What tools note of an instance for themselves.
  void writeOrigin(uint64_t lot) {
    out_ << "\n      (property box_type (string \"primitive\"))"
         << "\n      (property lut_pair (string \"soft_pair_" << lot % 100'000 << "\"))"
         << "\n      (property source (string \"rtl/datapath/stage_" << lot % 37
         << ".v:" << lot % 997 << "\"))";
  }

  void writeLutContents(uint32_t inputs, uint64_t lot) {
    const uint32_t bits = 1U << inputs;
    const uint64_t mask = bits == 64 ? UINT64_MAX : (uint64_t{1} << bits) - 1;
    std::string digits;
    appendHex(digits, lot & mask, std::max(1U, bits / 4));
    // Readers take a small "b" for the mark of a binary literal.
    for (char& digit : digits) {
      if (digit >= 'a') digit = static_cast<char>(digit - 'a' + 'A');
    }
    out_ << "\n      (property INIT (string \"" << uint64_t{bits} << "'h"
         << std::string_view(digits) << "\"))";
  }

  void writeInversion(CellKind kind, uint64_t lot) {
    static constexpr std::array<std::string_view, 4> kControls = {
        "IS_R_INVERTED", "IS_S_INVERTED", "IS_CLR_INVERTED", "IS_PRE_INVERTED"};
    const auto place = static_cast<size_t>(kind) - static_cast<size_t>(CellKind::Fdre);
    const std::array<std::string_view, 3> names = {"IS_C_INVERTED", "IS_D_INVERTED",
                                                   kControls[place]};
    out_ << "\n      (property " << names[lot % names.size()] << " (string \"1'b"
         << ((lot & 64) != 0 ? '1' : '0') << "\"))";
  }

  void writeNet(const ModuleNetlist& netlist, size_t place) {
    const ModuleNetlist::Net& net = netlist.nets()[place];
    out_ << "     (net ";
    if (implementation_ != nullptr) {
      writeNamed(netIdentifiers_[place], netlist.text(net.name));
    } else {
      writeName(netlist.text(net.name), net.name.keepsBrackets);
    }
    out_ << " (joined\n";
    for (uint32_t index = net.first; index != ModuleNetlist::kNone;) {
      const ModuleNetlist::Connection& connection = netlist.connection(index);
      writeReference(netlist, connection);
      index = connection.next;
    }
    out_ << "      )\n     )\n";
  }

  void writeReference(const ModuleNetlist& netlist, const ModuleNetlist::Connection& connection) {
    out_ << "      (portref ";
    if (const std::string port = specialPort(netlist, connection); !port.empty()) {
      writePrefix(port);
      out_ << std::string_view(port);
    } else if (connection.member == ModuleNetlist::kNoMember) {
      writeIdentifier(pinName(connection.pin), false);
    } else {
      out_ << "(member " << arrayName(connection.pin, ownerOf(netlist, connection)) << ' '
           << uint64_t{connection.member} << ')';
    }
    if (connection.instance != ModuleNetlist::kModuleItself) {
      const ModuleNetlist::Name name = netlist.instances()[connection.instance].name;
      out_ << " (instanceref ";
      if (implementation_ != nullptr) {
        writePrefix(instanceIdentifiers_[connection.instance]);
        out_ << std::string_view(instanceIdentifiers_[connection.instance]);
      } else {
        writeIdentifier(netlist.text(name), name.keepsBrackets);
      }
      out_ << ')';
    }
    out_ << ")\n";
  }

  /// The module whose port a connection is of, if it is not a primitive's.
  uint32_t ownerOf(const ModuleNetlist& netlist,
                   const ModuleNetlist::Connection& connection) const {
    const bool isOwn = connection.instance == ModuleNetlist::kModuleItself;
    return isOwn ? definition_ : netlist.instances()[connection.instance].module;
  }

  /// The identifier of a module's port that hazards made another than usual, else nothing.
  std::string specialPort(const ModuleNetlist& netlist,
                          const ModuleNetlist::Connection& connection) const {
    if (implementation_ == nullptr) return "";
    const uint32_t owner = ownerOf(netlist, connection);
    if (owner == ModuleNetlist::kNone) return "";
    const Ports& ports = ports_[owner];
    if (connection.pin == Pin::Valid) return identifierOf(ports.valid);
    if (connection.pin != Pin::Din && connection.pin != Pin::Dout) return "";
    const BusPort& bus = connection.pin == Pin::Din ? ports.din : ports.dout;
    if (!bus.isBits) return "";
    return identifierOf(portBitName(bus, bus.subscripts.back().size() - 1 - connection.member));
  }

  const Design& design_;
  const Implementation* implementation_;
  const View view_;
  const bool renames_;
  OutputFile out_;
  std::vector<Ports> ports_;
  uint32_t definition_ = 0;  ///< of the module in hand, as are the identifiers
  std::vector<std::string> instanceIdentifiers_;
  std::vector<std::string> netIdentifiers_;
};

}  // namespace

void writeEdif(const Design& design, View view, const std::string& path) {
  EdifWriter(design, nullptr, view, path).run();
}

void writeEdif(const Design& design, const Implementation& implementation, View view,
               const std::string& path) {
  EdifWriter(design, &implementation, view, path).run();
}

}  // namespace generate
