#include "EdifWriter.h"

#include "Cells.h"
#include "ElaboratedNetlist.h"
#include "OutputFile.h"
#include "Random.h"
#include "RegisterNames.h"
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

CellSet synthesizedCells() {
  CellSet cells;
  for (uint32_t inputs = 1; inputs <= 6; ++inputs) cells.insert(lutCell(inputs));
  for (const CellKind kind :
       {CellKind::Fdre, CellKind::Fdse, CellKind::Fdce, CellKind::Fdpe, CellKind::Carry,
        CellKind::InputBuffer, CellKind::ClockBuffer, CellKind::Ground, CellKind::Power}) {
    cells.insert({kind});
  }
  return cells;
}

CellSet elaboratedCells(const Design& design) {
  CellSet cells;
  cells.insert({CellKind::RtlGround});
  cells.insert({CellKind::RtlPower});
  for (uint32_t definition = 0; definition < design.definitions(); ++definition) {
    const Module module = design.module(definition);
    for (const Bank& bank : module.banks) {
      cells.insert(rtlRegisterCell(module, bank));
      if (bank.operation != Operation::Copy) cells.insert(rtlOperatorCell(module, bank));
    }
  }
  return cells;
}

class EdifWriter {
 public:
  EdifWriter(const Design& design, View view, const std::string& path)
      : design_(design), view_(view), renames_(design.options().renames), out_(path) {}

  void run() {
    out_ << kHeader;
    writePrimitives();
    openLibrary("work");
    for (uint32_t definition = 0; definition < design_.definitions(); ++definition) {
      writeModule(design_.module(definition));
    }
    out_ << " )\n" << kFooter;
    out_.close();
  }

 private:
  void openLibrary(std::string_view name) {
    out_ << " (Library " << name << "\n  (edifLevel 0)\n  (technology (numberDefinition ))\n";
  }

  void openCell(std::string_view name) {
    out_ << "  (cell " << name << " (celltype GENERIC)\n"
         << "   (view netlist (viewtype NETLIST)\n    (interface\n";
  }

  void writePrimitives() {
    openLibrary("prims");
    const CellSet cells = view_ == View::Elaborated ? elaboratedCells(design_) : synthesizedCells();
    cells.visit([this](Cell cell) {
      openCell(cellName(cell));
      for (const Port& port : cellPorts(cell)) writePort(port);
      out_ << "    )\n   )\n  )\n";
    });
    out_ << " )\n";
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
    if (renames_) {
      out_ << "(rename " << arrayName(pin) << " \"" << pinName(pin) << '[' << uint64_t{width - 1}
           << ":0]\")";
    } else {
      out_ << pinName(pin);
    }
    out_ << ' ' << uint64_t{width} << ')';
  }

  /// A module's port array shares its name with the nets of its bits, so its identifier differs.
  std::string_view arrayName(Pin pin) const {
    if (renames_ && pin == Pin::Din) return "din_";
    if (renames_ && pin == Pin::Dout) return "dout_";
    return pinName(pin);
  }

  void writeIdentifier(std::string_view name, bool keepsBrackets) {
    const char first = name.front();
    const bool isLetter = (first >= 'a' && first <= 'z') || (first >= 'A' && first <= 'Z');
    if (!isLetter) out_ << '&';
    if (keepsBrackets && !renames_) {
      out_ << name;
    } else if (name.find_first_of("[].<>") == std::string_view::npos) {
      out_ << name;
    } else {
      out_ << std::string_view(cleaned(name));
    }
  }

  void writeName(std::string_view name, bool keepsBrackets) {
    if (!renames_ || name.find_first_of("[].<>") == std::string_view::npos) {
      writeIdentifier(name, keepsBrackets);
      return;
    }
    out_ << "(rename ";
    writeIdentifier(name, keepsBrackets);
    out_ << " \"" << name << "\")";
  }

  void writeModule(const Module& module) {
    const ModuleNetlist netlist =
        view_ == View::Elaborated ? elaborate(design_, module) : synthesize(design_, module);
    openCell(module.name);
    writeModulePorts(module);
    out_ << "    )\n    (contents\n";
    for (size_t index = 0; index < netlist.instances().size(); ++index) {
      writeInstance(module, netlist, index);
    }
    for (const ModuleNetlist::Net& net : netlist.nets()) {
      if (net.first != ModuleNetlist::kNone) writeNet(netlist, net);
    }
    out_ << "    )\n   )\n  )\n";
  }

  void writeModulePorts(const Module& module) {
    for (const Pin pin : {Pin::Clk, Pin::Rst, Pin::En, Pin::Sel0, Pin::Sel1}) {
      writePort({pin, false});
    }
    writePort({Pin::Din, false, module.inputWidth});
    writePort({Pin::Dout, true, module.outputWidth});
    if (module.hasValid) writePort({Pin::Valid, true});
  }

  void writeInstance(const Module& module, const ModuleNetlist& netlist, size_t index) {
    const ModuleNetlist::Instance& instance = netlist.instances()[index];
    out_ << "     (instance ";
    writeName(netlist.text(instance.name), instance.name.keepsBrackets);
    out_ << " (viewref netlist (cellref ";
    if (instance.module != ModuleNetlist::kNone) {
      out_ << design_.definitionName(instance.module) << " (libraryref work)))\n"
           << "      (property keep_hierarchy (string \"yes (from source)\"))\n     )\n";
      return;
    }
    out_ << cellName(instance.cell) << " (libraryref prims)))";
    writeProperties(instance.cell, scramble(module.seed, 9, index));
    out_ << ")\n";
  }

  void writeProperties(Cell cell, uint64_t lot) {
    switch (cell.kind) {
      case CellKind::Lut:
        writeLutContents(cell.number, lot);
        break;
      case CellKind::Fdre:
      case CellKind::Fdse:
      case CellKind::Fdce:
      case CellKind::Fdpe:
        out_ << "\n      (property INIT (string \"1'b" << ((lot & 1) != 0 ? '1' : '0') << "\"))";
        if ((lot >> 1) % 50 == 0) writeInversion(cell.kind, lot >> 8);
        break;
      case CellKind::Carry:
        out_ << "\n      (property adderStyle (integer 35))"
             << "\n      (property note (string \"\"))";
        break;
      default:
        break;
    }
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

  void writeNet(const ModuleNetlist& netlist, const ModuleNetlist::Net& net) {
    out_ << "     (net ";
    writeName(netlist.text(net.name), net.name.keepsBrackets);
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
    if (connection.member == ModuleNetlist::kNoMember) {
      writeIdentifier(pinName(connection.pin), false);
    } else {
      out_ << "(member " << arrayName(connection.pin) << ' ' << uint64_t{connection.member} << ')';
    }
    if (connection.instance != ModuleNetlist::kModuleItself) {
      const ModuleNetlist::Name name = netlist.instances()[connection.instance].name;
      out_ << " (instanceref ";
      writeIdentifier(netlist.text(name), name.keepsBrackets);
      out_ << ')';
    }
    out_ << ")\n";
  }

  const Design& design_;
  const View view_;
  const bool renames_;
  OutputFile out_;
};

}  // namespace

void writeEdif(const Design& design, View view, const std::string& path) {
  EdifWriter(design, view, path).run();
}

}  // namespace generate
