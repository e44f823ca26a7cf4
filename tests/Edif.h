#pragma once

#include <string>

/// Pieces of EDIF text, to be joined into netlists.
namespace edif {

using Text = std::string;

/// A whole netlist around libraries and a design.
inline Text netlist(const Text& body, const Text& program = "Tarvona") {
  return "(edif netlist (edifversion 2 0 0) (edifLevel 0) (keywordmap (keywordlevel 0))\n"
         "(status (written (timeStamp 2024 02 19 01 09 41) (program \"" +
         program + "\" (version \"1\"))))\n" + body + ")\n";
}

inline Text library(const Text& name, const Text& cells) {
  return "(Library " + name + " (edifLevel 0) (technology (numberDefinition))\n" + cells + ")\n";
}

inline Text cell(const Text& name, const Text& interface, const Text& contents = "") {
  return "(cell " + name + " (celltype GENERIC) (view netlist (viewtype NETLIST)\n(interface " +
         interface + ")" + (contents.empty() ? "" : "\n(contents\n" + contents + ")") + "))\n";
}

inline Text renamed(const Text& identifier, const Text& printable) {
  return "(rename " + identifier + " \"" + printable + "\")";
}

inline Text port(const Text& name, const Text& direction) {
  return "(port " + name + " (direction " + direction + "))\n";
}
inline Text input(const Text& name) { return port(name, "INPUT"); }
inline Text output(const Text& name) { return port(name, "OUTPUT"); }
inline Text array(const Text& name, const Text& width) {
  return "(array " + name + " " + width + ")";
}

inline Text instance(const Text& name, const Text& cellName, const Text& rest = "") {
  return "(instance " + name + " (viewref netlist (cellref " + cellName + " (libraryref cells))) " +
         rest + ")\n";
}

inline Text property(const Text& name, const Text& value) {
  return "(property " + name + " (string \"" + value + "\"))";
}

inline Text member(const Text& name, const Text& index) {
  return "(member " + name + " " + index + ")";
}

/// A reference to a port of the cell itself, or of one of its instances.
inline Text pin(const Text& name, const Text& instanceName = "") {
  return "(portref " + name + (instanceName.empty() ? "" : " (instanceref " + instanceName + ")") +
         ") ";
}

inline Text net(const Text& name, const Text& pins) {
  return "(net " + name + " (joined " + pins + "))\n";
}

inline Text design(const Text& name, const Text& cellName, const Text& rest = "") {
  return "(design " + name + " (cellref " + cellName + " (libraryref work)) " + rest + ")\n";
}

/// The primitive cells that the tests use.
inline Text primitives() {
  const Text registerPorts = input("C") + input("D") + output("Q");
  return library("cells", cell("RTL_REG", registerPorts) + cell("FDRE", registerPorts) +
                              cell("RTL_wide_fd", input("C") + port(array("D", "4"), "INPUT") +
                                                      port(array("Q", "4"), "OUTPUT")) +
                              cell("GND", output("G")) + cell("VCC", output("P")) +
                              cell("BUFG", input("I") + output("O")) +
                              cell("LUT1", input("I0") + output("O")) +
                              cell("LUT2", input("I0") + input("I1") + output("O")));
}

/// A netlist of further cells and a design "top" of the given ports and contents.
inline Text top(const Text& interface, const Text& contents, const Text& cells = "",
                const Text& program = "Tarvona") {
  return netlist(primitives() + library("work", cells + cell("top", interface, contents)) +
                     design("top", "top"),
                 program);
}

}  // namespace edif
