#include "HazardBanks.h"

#include "Banks.h"
#include "Words.h"

#include <algorithm>
#include <utility>

namespace generate {

namespace {

constexpr uint32_t kEchoWidth = 2;

class HazardBankMaker {
 public:
  HazardBankMaker(Module& module, std::string_view prefix)
      : module_(module), random_(module.seed), prefix_(prefix) {
    chooseDeclarators();
  }

  void run() {
    const uint32_t valid = module_.hasValid ? 1 : 0;
    uint32_t left = module_.registers - module_.outputWidth - valid;
    if (module_.has(Hazard::FlattenCollisions)) left -= declareEchoes(left);
    if (module_.ports.valid == "valid.o" && left > 0) left -= add("valid_o", {});
    uint32_t turn = random_.below(static_cast<uint32_t>(declarators_.size()));
    while (left > 0) {
      uint32_t used = (this->*declarators_[turn++ % declarators_.size()])(left);
      if (used == 0) used = declareScalar(left);
      left -= used;
    }
    if (module_.hasValid) addPort(module_.ports.valid, {});
    addPort(module_.ports.source.base, module_.ports.source.subscripts);
  }

 private:
  /// Declares a register or two of one kind and returns how many bits they have, at most `limit`;
  /// 0 where that does not suffice.
  using Declarator = uint32_t (HazardBankMaker::*)(uint32_t limit);

  void chooseDeclarators() {
    declarators_ = {&HazardBankMaker::declareScalar, &HazardBankMaker::declareVector};
    const auto choose = [this](Hazard hazard, Declarator declarator) {
      if (module_.has(hazard)) declarators_.push_back(declarator);
    };
    choose(Hazard::Records, &HazardBankMaker::declareRecord);
    choose(Hazard::Arrays, &HazardBankMaker::declareArray);
    choose(Hazard::EscapedNames, &HazardBankMaker::declareEscaped);
    choose(Hazard::EscapedNames, &HazardBankMaker::declareEscapedBit);
    choose(Hazard::RegSuffix, &HazardBankMaker::declareRegSuffix);
    choose(Hazard::Blanks, &HazardBankMaker::declareBlank);
    choose(Hazard::Merged, &HazardBankMaker::declareAlike);
    choose(Hazard::StateMachines, &HazardBankMaker::declareStateMachine);
    choose(Hazard::CleanedCollisions, &HazardBankMaker::declareCollision);
  }

  uint32_t declareScalar(uint32_t /*limit*/) { return add(scope() + scalarName(), {}); }

  uint32_t declareVector(uint32_t limit) {
    if (limit < 2) return 0;
    return add(scope() + vectorName(), {range(vectorWidth(limit))});
  }

  /// Three of one width, so that whole registers can merge.
  uint32_t declareAlike(uint32_t limit) {
    if (limit < 12) return 0;
    uint32_t used = 0;
    for (uint32_t copy = 0; copy < 3; ++copy) {
      used += add(vectorName(), {range(4)});
      module_.banks.back().isAlike = copy > 0;
    }
    return used;
  }

  uint32_t declareStateMachine(uint32_t limit) {
    if (limit < 3) return 0;
    const uint32_t used = add(vectorName() + "_state", {{"", 2, 0}});
    module_.banks.back().isStateMachine = true;
    module_.banks.back().storage = Storage::FlipFlop;
    return used;
  }

  uint32_t declareRecord(uint32_t limit) {
    const std::string base = scope() + prefix_ + records_.next();
    const std::string field(kFields[random_.below(kFields.size())]);
    const uint32_t width = std::min(2 + random_.below(7), limit);
    switch (random_.below(4)) {
      case 0:
        return add(base, {{field, 0, 0}});
      case 1:
        return add(base, {{field, 0, 0}, {"valid", 0, 0}});
      case 2:
        return add(base, {{field, 0, 0}, {"", 3, 3}, range(width)});
      default:
        return add(base, {{field, 0, 0}, range(width)});
    }
  }

  uint32_t declareArray(uint32_t limit) {
    const uint32_t rows = 2 + random_.below(3);
    const uint32_t planes = random_.percent(50) ? 2 : 1;
    const uint32_t width = std::min(2 + random_.below(5), limit / (rows * planes));
    if (width == 0) return 0;
    const std::string base = scope() + prefix_ + matrices_.next();
    std::vector<Subscript> subscripts{range(rows), range(width)};
    if (planes > 1) subscripts.insert(subscripts.begin(), range(planes));
    return add(base, std::move(subscripts));
  }

  /// Names that are one once brackets, dots and dollar signs are underscores.
  uint32_t declareEscaped(uint32_t limit) {
    const uint32_t width = limit >= 12 && random_.percent(50) ? 4 : 1;
    if (limit < 3 * width) return 0;
    const std::string word = vectorName();
    for (const char* infix : {".bar", "_bar", "$bar"}) {
      add(word + infix,
          width > 1 ? std::vector<Subscript>{range(width)} : std::vector<Subscript>{});
    }
    return 3 * width;
  }

  uint32_t declareEscapedBit(uint32_t limit) {
    if (limit < 2) return 0;
    const std::string word = scalarName();
    return add(word + "[3]", {}) + add(word + "_3_", {});
  }

  uint32_t declareRegSuffix(uint32_t limit) {
    const bool isVector = limit >= 8 && random_.percent(50);
    if (limit < 2) return 0;
    const std::string base = scope() + (isVector ? vectorName() : scalarName());
    std::vector<Subscript> subscripts;
    if (isVector) subscripts.push_back(range(4));
    return add(base, subscripts) + add(base + "_reg", subscripts);
  }

  uint32_t declareBlank(uint32_t limit) {
    const std::string base = scalarName() + (random_.percent(50) ? " q" : "(2)");
    if (limit < 4 || random_.percent(50)) return add(base, {});
    return add(base, {range(4)});
  }

  uint32_t declareCollision(uint32_t limit) {
    const uint32_t width = limit >= 8 && random_.percent(50) ? 4 : 1;
    if (limit < 2 * width) return 0;
    const std::string word = scalarName();
    const bool hasBlank = random_.percent(50);
    std::vector<Subscript> subscripts;
    if (width > 1) subscripts.push_back({"", 3, 0});
    return addLive(word + (hasBlank ? " in" : "(1)"), subscripts) +
           addLive(word + (hasBlank ? "_in" : "_1_"), subscripts);
  }

  /// Registers whose names meet those of a flattened child.
  uint32_t declareEchoes(uint32_t limit) {
    uint32_t used = 0;
    const std::vector<Subscript> subscripts{{"", kEchoWidth - 1, 0}};
    if (!module_.isTop && used + kEchoWidth <= limit) used += addLive("echo", subscripts);
    for (const Child& child : module_.children) {
      if (child.flattening != Flattening::Underscore || used + kEchoWidth > limit) continue;
      used += addLive(child.name + "_echo", subscripts);
    }
    return used;
  }

  void addPort(const std::string& base, const std::vector<Subscript>& subscripts) {
    Bank bank = shaped(base, subscripts);
    bank.isPort = true;
    decorate(bank);
    appendBank(module_, random_, std::move(bank));
  }

  uint32_t add(const std::string& base, const std::vector<Subscript>& subscripts) {
    Bank bank = shaped(base, subscripts);
    decorate(bank);
    const uint32_t size = bank.size();
    appendBank(module_, random_, std::move(bank));
    if (module_.has(Hazard::OneInputLuts)) module_.banks.back().inverts = random_.percent(30);
    return size;
  }

  uint32_t addLive(const std::string& base, const std::vector<Subscript>& subscripts) {
    Bank bank = shaped(base, subscripts);
    bank.isLive = true;
    const uint32_t size = bank.size();
    appendBank(module_, random_, std::move(bank));
    return size;
  }

  static Bank shaped(const std::string& base, const std::vector<Subscript>& subscripts) {
    Bank bank;
    bank.base = base;
    if (subscripts.empty()) return bank;
    bank.layout = Layout::Subscripted;
    bank.subscripts = subscripts;
    bank.width = subscripts.back().size();
    for (const Subscript& subscript : subscripts) bank.rows *= subscript.size();
    bank.rows /= bank.width;
    return bank;
  }

  /// Chooses the cells that hold a register.
  void decorate(Bank& bank) {
    if (module_.has(Hazard::Latches) && random_.percent(15)) {
      bank.storage = Storage::Latch;
      return;
    }
    if (module_.has(Hazard::FallingEdges) && random_.percent(20)) {
      bank.storage = Storage::FallingEdge;
    }
    if (!module_.has(Hazard::Wide) || bank.width < 2 || !random_.percent(50)) return;
    const Subscript& range = bank.subscripts.back();
    const bool isPlain =
        bank.subscripts.size() == 1 && range.right == 0 && range.left > range.right;
    const uint32_t choice = random_.below(3);
    if (choice == 0 && isPlain) {
      bank.grouping = Grouping::Unprinted;
    } else {
      bank.grouping = choice == 1 && bank.width >= 4 ? Grouping::TwoSlices : Grouping::Whole;
    }
  }

  Subscript range(uint32_t width) {
    const auto last = static_cast<int32_t>(width) - 1;
    if (!module_.has(Hazard::Ranges)) return {"", last, 0};
    const auto offset = static_cast<int32_t>(1 + random_.below(16));
    switch (random_.below(4)) {
      case 0:
        return {"", 0, last};
      case 1:
        return {"", last + offset, offset};
      case 2:
        return {"", offset, last + offset};
      default:
        return {"", last, 0};
    }
  }

  /// The generate scope that a register is declared in, with the dot after it.
  std::string scope() {
    if (!module_.has(Hazard::Scopes) || !random_.percent(40)) return "";
    const std::string index = std::to_string(random_.below(4));
    switch (random_.below(4)) {
      case 0:
        return "gen[" + index + "].";
      case 1:
        return "gen[" + index + "].lane[" + std::to_string(random_.below(2)) + "].";
      case 2:
        return "gen[" + index + "].blk.";
      default:
        return "slot_reg[" + index + "].";
    }
  }

  std::string scalarName() { return prefix_ + scalars_.next(); }
  std::string vectorName() { return prefix_ + vectors_.next(); }
  uint32_t vectorWidth(uint32_t limit) {
    return std::min(kVectorWidths[random_.below(kVectorWidths.size())], limit);
  }

  Module& module_;
  Random random_;
  std::string prefix_;
  std::vector<Declarator> declarators_;
  WordSource<kScalarWords.size()> scalars_{kScalarWords, random_.below(kScalarWords.size())};
  WordSource<kVectorWords.size()> vectors_{kVectorWords, random_.below(kVectorWords.size())};
  WordSource<kMatrixWords.size()> matrices_{kMatrixWords, random_.below(kMatrixWords.size())};
  WordSource<kRecordWords.size()> records_{kRecordWords, random_.below(kRecordWords.size())};
};

}  // namespace

void addHazardBanks(Module& module, std::string_view prefix) {
  HazardBankMaker(module, prefix).run();
}

}  // namespace generate
