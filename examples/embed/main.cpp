// A small debugger around libxrf. It reads commands from standard input:
//
//   open NAME FILE.xrf       open a design under a name
//   close NAME               close it again
//   capture FILE             take the values of a readback
//   print NAME REGISTER      show a register of an open design
//   where NAME FRAME OFFSET  show what lives at a place of the configuration memory
//   kernels META.xml BLOCK   show the kernels of a container
//   quit
//
// A file that is no good is reported, and the session goes on.

#include "Capture.h"
#include "Guest.h"
#include "Kernels.h"
#include "OpenDesign.h"

#include <csignal>
#include <cstdio>
#include <iostream>
#include <map>
#include <sstream>

namespace {

using XRF_RTL2LL::Bit;

struct WrongCommand : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class Debugger {
 public:
  /// Returns false when the session is over.
  bool execute(const std::string& line);

 private:
  const OpenDesign& design(const std::string& name) const;
  void print(const OpenDesign& design, const std::string& name) const;
  char valueOf(const Bit* bit) const;

  std::map<std::string, OpenDesign> m_designs;
  Capture m_capture;
};

const OpenDesign& Debugger::design(const std::string& name) const {
  const auto found = m_designs.find(name);
  if (found == m_designs.end()) throw WrongCommand("no design is open as '" + name + "'");
  return found->second;
}

// "x" stands for a value that nothing tells.
char Debugger::valueOf(const Bit* bit) const {
  if (bit == nullptr) return 'x';
  if (bit->getKind() == Bit::CNST) return bit->getValue() ? '1' : '0';
  if (bit->getKind() != Bit::STATE || !m_capture.isTaken()) return 'x';
  return m_capture.valueAt(bit->getStateLoc1(), bit->getStateLoc2()) ? '1' : '0';
}

void Debugger::print(const OpenDesign& design, const std::string& name) const {
  const OpenDesign::Register found = design.find(name);
  if (found.bits.empty()) throw WrongCommand("no signal is named '" + name + "'");
  std::string value;
  for (const auto& [index, bit] : found.bits) value += valueOf(bit);
  std::printf("%s = %zu'b%s\n", found.name.c_str(), value.size(), value.c_str());
  for (const auto& [index, bit] : found.bits) {
    if (bit == nullptr || bit->getKind() != Bit::STATE) continue;
    std::printf("  [%u] at frame 0x%08x, offset %u\n", index, bit->getStateLoc1(),
                bit->getStateLoc2());
  }
}

bool Debugger::execute(const std::string& line) {
  std::istringstream words(line);
  std::string command;
  std::string first;
  std::string second;
  words >> command >> first >> second;
  Guest::start();
  if (command == "quit") return false;
  if (command == "open") {
    const auto [opened, isNew] = m_designs.try_emplace(first, second);
    std::printf("%s as '%s'\n", isNew ? "open" : "already open", opened->first.c_str());
  } else if (command == "close") {
    if (m_designs.erase(first) == 0) throw WrongCommand("no design is open as '" + first + "'");
  } else if (command == "capture") {
    m_capture = Capture(first);
  } else if (command == "print") {
    print(design(first), second);
  } else if (command == "where") {
    unsigned offset = 0;
    words >> offset;
    for (const std::string& name :
         design(first).registersAt(static_cast<unsigned>(std::stoul(second, nullptr, 0)), offset)) {
      std::printf("%s\n", name.c_str());
    }
  } else if (command == "kernels") {
    showKernels(first, second);
  } else if (!command.empty()) {
    throw WrongCommand("no command is named '" + command + "'");
  }
  return true;
}

}  // namespace

int main() {
  const Guest guest;
  std::signal(SIGINT, [](int) { Guest::cancel(); });
  Debugger debugger;
  std::string line;
  while (std::getline(std::cin, line)) {
    try {
      if (!debugger.execute(line)) break;
    } catch (const BadFile& bad) {
      if (!bad.file.empty()) std::printf("%s:", bad.file.c_str());
      if (bad.line != 0) std::printf("%llu:", static_cast<unsigned long long>(bad.line));
      std::printf(" %s\n", bad.what());
    } catch (const std::exception& error) {
      std::printf("%s\n", error.what());
    }
    std::fflush(stdout);
  }
}
