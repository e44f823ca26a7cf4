#include "HazardLog.h"

#include "Outcomes.h"
#include "OutputFile.h"
#include "Random.h"
#include "RegisterNames.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace generate {

namespace {

constexpr uint64_t kMessageLimit = 100;

enum class MessageKind : uint8_t { Constant, MergedInstance, MergedRegister };

constexpr size_t kMessageKinds = static_cast<size_t>(MessageKind::MergedRegister) + 1;
constexpr std::array<std::string_view, kMessageKinds> kMessageIds = {"Synth 8-3333", "Synth 8-3886",
                                                                     "Synth 8-4471"};

struct Message {
  MessageKind kind;
  std::string text;
  uint64_t first;  ///< number of the first register it is about
  uint32_t count;  ///< of registers
};

/// What the log says of the registers, in the order in which it is said.
class Messages {
 public:
  explicit Messages(const Design& design) : design_(design) {
    design.visitInstances([this](const Design::Visit& visit) { addModule(visit); });
  }

  const std::vector<Message>& all() const { return messages_; }

  /// How many messages of each kind are written.
  std::array<uint64_t, kMessageKinds> limits() const {
    std::array<uint64_t, kMessageKinds> counts{};
    for (const Message& message : messages_) ++counts[static_cast<size_t>(message.kind)];
    if (!has(Hazard::SuppressedMessages)) return counts;
    // Small designs do not reach the limit of the tool.
    for (uint64_t& count : counts) count = std::min(kMessageLimit, (count + 1) / 2);
    return counts;
  }

 private:
  bool has(Hazard hazard) const { return design_.options().hazards->has(hazard); }

  void addModule(const Design::Visit& visit) {
    const size_t begin = messages_.size();
    for (const Bank& bank : visit.module.banks) addBank(visit, bank);
    // A chain of merged registers is told from either end.
    if ((visit.module.seed & 2) != 0) {
      std::reverse(messages_.begin() + static_cast<std::ptrdiff_t>(begin), messages_.end());
    }
  }

  void addBank(const Design::Visit& visit, const Bank& bank) {
    const Outcome& first = visit.module.outcomes[bank.first];
    const uint64_t number = visit.firstRegister + bank.first;
    // Without a path, registers of a module below may be meant as well if they have these names.
    const bool isClear = !visit.path.empty() || !has(Hazard::ParentNames);
    if (first.fate == Fate::Merged && first.isWhole && bank.width > 1 && isClear) {
      const Bank& target = bankOf(visit.module, first.survivor);
      messages_.push_back({MessageKind::MergedRegister,
                           "merging register '" + element(visit, wholeName(bank), number) +
                               "' into '" + element(visit, wholeName(target), number + 1) + "' [" +
                               visit.module.name + ".v:" + std::to_string(bank.index + 7) + "]",
                           number, bank.size()});
      return;
    }
    for (uint32_t bit = 0; bit < bank.size(); ++bit) addBit(visit, bank, bit, number + bit);
  }

  void addBit(const Design::Visit& visit, const Bank& bank, uint32_t bit, uint64_t number) {
    const Outcome& outcome = visit.module.outcomes[bank.first + bit];
    const std::string name = instanceName(bank, bit);
    if (outcome.fate == Fate::Merged) {
      messages_.push_back({MessageKind::MergedInstance,
                           "merging instance '" + element(visit, name, number) + "' (FDE) to '" +
                               survivorElement(visit, outcome, number) + "'",
                           number, 1});
    }
    if (outcome.fate != Fate::Constant0 && outcome.fate != Fate::Constant1) return;
    const bool hasBlank = !has(Hazard::LogSpellings) || lot(number, 1) % 3 != 0;
    messages_.push_back({MessageKind::Constant,
                         std::string("propagating constant ") +
                             (outcome.fate == Fate::Constant1 ? "1" : "0") +
                             " across sequential element (" + element(visit, name, number) +
                             (hasBlank ? " )" : ")"),
                         number, 1});
  }

  static std::string wholeName(const Bank& bank) {
    const Subscript& range = bank.subscripts.back();
    return bank.base + "_reg[" + std::to_string(range.left) + ':' + std::to_string(range.right) +
           ']';
  }

  std::string survivorElement(const Design::Visit& visit, const Outcome& outcome,
                              uint64_t number) const {
    if (!outcome.isInTwin) {
      const Bank& bank = bankOf(visit.module, outcome.survivor);
      return spelled(visit.path, instanceName(bank, outcome.survivor - bank.first), number + 1);
    }
    const size_t parent = visit.path.rfind('/', visit.path.size() - 2);
    const std::string path = visit.path.substr(0, parent == std::string::npos ? 0 : parent + 1) +
                             visit.module.twin->name + '/';
    Bank bank;
    bank.layout = Layout::Subscripted;
    const BusPort port = design_.ports(visit.module.twin->definition).source;
    bank.base = port.base;
    bank.subscripts = port.subscripts;
    return spelled(path, instanceName(bank, outcome.survivor), number + 1);
  }

  std::string element(const Design::Visit& visit, const std::string& name, uint64_t number) const {
    return spelled(visit.path, name, number);
  }

  uint64_t lot(uint64_t number, uint64_t purpose) const {
    return scramble(design_.options().seed, 33, number, purpose);
  }

  /// A register's name in one of the forms that logs have.
  std::string spelled(const std::string& path, const std::string& name, uint64_t number) const {
    if (!has(Hazard::LogSpellings)) return path + name;
    const uint64_t form = lot(number, 2);
    std::string text = path;
    if ((form >> 8) % 5 == 0) text.insert(0, "i_" + std::to_string(form >> 16 & 7) + '/');
    if ((form >> 24) % 6 == 0 && !text.empty()) text.insert(text.size() - 1, ":");
    switch (form % 4) {
      case 0:
        return text + '\\' + name;
      case 1: {
        const size_t level = text.find('/');
        if (level != std::string::npos) text.insert(level + 1, "\\");
        return text + name;
      }
      case 2:
        return '\\' + text + name;
      default:
        return text + name;
    }
  }

  const Design& design_;
  std::vector<Message> messages_;
};

class HazardLog {
 public:
  HazardLog(const Design& design, const std::string& path)
      : design_(design),
        messages_(design),
        limits_(messages_.limits()),
        out_(path, lineEnd(design)) {}

  void run() {
    out_ << "# Tarvona 2024.1 (64-bit)\n"
         << "Starting RTL Elaboration : Time (s): cpu = 00:00:03 ; elapsed = 00:00:04\n"
         << "Start Cross Boundary and Area Optimization\n";
    for (const Message& message : messages_.all()) write(message);
    out_ << "Finished Cross Boundary and Area Optimization : Time (s): cpu = 00:01:40\n"
         << "synth_design completed successfully\n";
    out_.close();
  }

 private:
  void write(const Message& message) {
    const auto kind = static_cast<size_t>(message.kind);
    if (written_[kind] == limits_[kind]) {
      if (!told_[kind]) {
        out_ << "INFO: [Messages 17-14] Message '" << kMessageIds[kind] << "' appears "
             << written_[kind] << " times; further messages of this kind are suppressed.\n";
      }
      told_[kind] = true;
      return;
    }
    ++written_[kind];
    const bool isBare = design_.options().hazards->has(Hazard::LogSpellings) &&
                        scramble(design_.options().seed, 34, message.first) % 3 == 0;
    out_ << (isBare ? "[" : "INFO: [") << kMessageIds[kind] << "] "
         << std::string_view(message.text) << '\n';
  }

  const Design& design_;
  Messages messages_;
  std::array<uint64_t, kMessageKinds> limits_;
  OutputFile out_;
  std::array<uint64_t, kMessageKinds> written_{};
  std::array<bool, kMessageKinds> told_{};
};

}  // namespace

void writeHazardLog(const Design& design, const std::string& path) {
  HazardLog(design, path).run();
}

std::vector<bool> suppressedRegisters(const Design& design) {
  uint64_t registers = 0;
  design.visitInstances([&registers](const Design::Visit& visit) {
    registers = visit.firstRegister + visit.module.registers;
  });
  std::vector<bool> suppressed(registers);
  const Messages messages(design);
  std::array<uint64_t, kMessageKinds> written{};
  const std::array<uint64_t, kMessageKinds> limits = messages.limits();
  for (const Message& message : messages.all()) {
    if (written[static_cast<size_t>(message.kind)]++ < limits[static_cast<size_t>(message.kind)]) {
      continue;
    }
    std::fill_n(suppressed.begin() + static_cast<std::ptrdiff_t>(message.first), message.count,
                true);
  }
  return suppressed;
}

}  // namespace generate
