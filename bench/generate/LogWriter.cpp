#include "LogWriter.h"

#include "OutputFile.h"
#include "Random.h"
#include "RegisterNames.h"

#include <string_view>

namespace generate {

namespace {

constexpr std::string_view kStart =
    "#-----------------------------------------------------------\n"
    "# Tarvona 2024.1 (64-bit)\n"
    "# Started at: Mon Feb 19 01:02:11 2024\n"
    "#-----------------------------------------------------------\n"
    "INFO: [Synth 8-7079] Multithreading enabled for synth_design using a maximum of 4 processes.\n"
    "Starting RTL Elaboration : Time (s): cpu = 00:00:03 ; elapsed = 00:00:04\n";
constexpr std::string_view kOptimization =
    "Finished RTL Elaboration : Time (s): cpu = 00:00:21 ; elapsed = 00:00:24\n"
    "Start Cross Boundary and Area Optimization\n"
    "WARNING: [Synth 8-3936] Found unconnected internal register and it is trimmed\n";
constexpr std::string_view kEnd =
    "Finished Cross Boundary and Area Optimization : Time (s): cpu = 00:01:40\n"
    "INFO: [Project 1-571] Translating synthesized netlist\n"
    "synth_design completed successfully\n";

/// The forms in which tools of several ages write the register's name.
void writeElement(OutputFile& out, const std::string& path, const std::string& name, uint64_t lot) {
  switch (lot % 3) {
    case 0:
      out << '(' << path << '\\' << name << " )";
      break;
    case 1:
      out << '(' << path << name << " )";
      break;
    default:
      out << '(' << path << name << ')';
      break;
  }
}

void writeConstants(OutputFile& out, const Design::Visit& visit) {
  const Module& module = visit.module;
  for (const Bank& bank : module.banks) {
    for (uint32_t bit = 0; bit < bank.size(); ++bit) {
      const Fate fate = module.fate(bank, bit);
      if (fate != Fate::Constant0 && fate != Fate::Constant1) continue;
      out << "INFO: [Synth 8-3333] propagating constant " << (fate == Fate::Constant1 ? '1' : '0')
          << " across sequential element ";
      writeElement(out, visit.path, instanceName(bank, bit), scramble(module.seed, 14, bit));
      out << '\n';
    }
  }
}

}  // namespace

void writeLog(const Design& design, const std::string& path) {
  OutputFile out(path);
  out << kStart;
  for (uint32_t definition = 0; definition < design.definitions(); definition += 16) {
    const std::string name = design.definitionName(definition);
    out << "INFO: [Synth 8-6157] synthesizing module '" << name << "' [" << name << ".v:1]\n";
  }
  out << kOptimization;
  design.visitInstances([&out](const Design::Visit& visit) { writeConstants(out, visit); });
  out << kEnd;
  out.close();
}

}  // namespace generate
