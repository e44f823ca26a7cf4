#include "Banks.h"

#include "OutputFile.h"
#include "Words.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

namespace generate {

namespace {

/// What comes from beyond the module's own registers.
Operand outside(const Module& module, Random& random, bool last) {
  const auto children = static_cast<uint32_t>(module.children.size());
  if (children == 0) return {};
  return {Operand::Kind::Link, last ? children - 1 : random.below(children)};
}

/// Invents the banks of one module.
class BankMaker {
 public:
  BankMaker(Module& module, std::string_view prefix, bool renames)
      : module_(module), random_(module.seed), prefix_(prefix), renames_(renames) {}

  void fill(uint32_t registers) {
    while (registers > 0) {
      Bank bank = declare(registers);
      registers -= bank.size();
      add(std::move(bank));
    }
  }

  void addPort(std::string_view name, Layout layout, uint32_t width) {
    Bank bank;
    bank.base = name;
    bank.layout = layout;
    bank.width = width;
    bank.isPort = true;
    if (layout == Layout::Vector && random_.percent(20)) bank.naming = Naming::BracketInstances;
    add(std::move(bank));
  }

 private:
  Bank declare(uint32_t limit) {
    const uint32_t choice = random_.below(100);
    if (limit < 2 || choice < 22) return declareScalar();
    if (limit >= 16 && choice < 34) return declareMatrix(limit);
    if (choice < 42) return declareRecord(limit);
    return declareVector(limit);
  }

  Bank declareScalar() {
    Bank bank;
    bank.base = scoped(bank, scalars_.next());
    return bank;
  }

  Bank declareVector(uint32_t limit) {
    Bank bank;
    bank.layout = Layout::Vector;
    bank.width = std::min(kVectorWidths[random_.below(kVectorWidths.size())], limit);
    bank.base = scoped(bank, vectors_.next());
    if (!bank.isScoped) {
      if (bank.width <= 8 && random_.below(250) == 0) {
        bank.naming = Naming::BracketNets;
      } else if (random_.percent(20)) {
        bank.naming = Naming::BracketInstances;
      }
    }
    return bank;
  }

  Bank declareMatrix(uint32_t limit) {
    Bank bank;
    bank.layout = Layout::Matrix;
    bank.rows = 2 + random_.below(3);
    bank.width = std::min(4 + random_.below(5), limit / bank.rows);
    bank.base = prefix_ + matrices_.next();
    if (random_.percent(20)) bank.naming = Naming::BracketInstances;
    return bank;
  }

  Bank declareRecord(uint32_t limit) {
    Bank bank;
    bank.base = prefix_ + records_.next();
    bank.field = kFields[random_.below(kFields.size())];
    bank.layout = random_.percent(30) ? Layout::RecordScalar : Layout::Record;
    if (bank.layout == Layout::Record) bank.width = std::min(2 + random_.below(7), limit);
    return bank;
  }

  std::string scoped(Bank& bank, std::string name) {
    name.insert(0, prefix_);
    if (!random_.percent(8)) return name;
    bank.isScoped = true;
    std::string scope = "lane[";
    appendNumber(scope, random_.below(4));
    return scope + "]." + name;
  }

  void add(Bank bank) {
    // Printable names say it all where they exist, so the choice is one of identifiers alone.
    if (renames_) bank.naming = Naming::Cleaned;
    appendBank(module_, random_, std::move(bank));
  }

  Module& module_;
  Random random_;
  std::string prefix_;
  bool renames_;
  WordSource<kScalarWords.size()> scalars_{kScalarWords, random_.below(kScalarWords.size())};
  WordSource<kVectorWords.size()> vectors_{kVectorWords, random_.below(kVectorWords.size())};
  WordSource<kMatrixWords.size()> matrices_{kMatrixWords, random_.below(kMatrixWords.size())};
  WordSource<kRecordWords.size()> records_{kRecordWords, random_.below(kRecordWords.size())};
};

}  // namespace

void appendBank(Module& module, Random& random, Bank bank) {
  static constexpr std::array<Operation, 10> kOperations = {
      Operation::Copy, Operation::Copy, Operation::Add,       Operation::Add, Operation::Subtract,
      Operation::And,  Operation::Or,   Operation::Multiplex, Operation::Xor, Operation::Xor};
  bank.index = static_cast<uint32_t>(module.banks.size());
  if (bank.index > 0) bank.first = module.banks.back().first + module.banks.back().size();
  bank.operation = kOperations[random.below(kOperations.size())];
  bank.control = static_cast<Control>(random.below(5));
  bank.enabled = random.percent(50);
  bank.a =
      bank.index > 0 ? Operand{Operand::Kind::Bank, bank.index - 1} : outside(module, random, true);
  bank.b = bank.index > 1 && random.percent(60)
               ? Operand{Operand::Kind::Bank, random.below(bank.index)}
               : outside(module, random, false);
  module.banks.push_back(std::move(bank));
}

void addPlainBanks(Module& module, std::string_view prefix, bool renames) {
  BankMaker maker(module, prefix, renames);
  const uint32_t valid = module.hasValid ? 1 : 0;
  maker.fill(module.registers - module.outputWidth - valid);
  if (module.hasValid) maker.addPort("valid", Layout::Scalar, 1);
  maker.addPort("dout", Layout::Vector, module.outputWidth);
}

}  // namespace generate
