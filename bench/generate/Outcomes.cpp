#include "Outcomes.h"

#include "Random.h"

#include <algorithm>

namespace generate {

namespace {

class Decision {
 public:
  explicit Decision(Module& module) : module_(module), random_(scramble(module.seed, 25)) {}

  void run() {
    module_.outcomes.assign(module_.registers, {});
    for (const Bank& bank : module_.banks) {
      if (bank.isPort || bank.isLive || decideWhole(bank)) continue;
      for (uint32_t bit = 0; bit < bank.size(); ++bit) {
        module_.outcomes[bank.first + bit] = decideBit(bank);
      }
    }
  }

 private:
  bool has(Hazard hazard) const { return module_.has(hazard); }

  bool decideWhole(const Bank& bank) {
    const uint32_t lot = random_.below(100);
    if (bank.isStateMachine) {
      setAll(bank, {Fate::Removed, true});
    } else if (lot < 4 && has(Hazard::Constants)) {
      setAll(bank, {(lot & 1) != 0 ? Fate::Constant1 : Fate::Constant0, true});
    } else if (lot < 7 && has(Hazard::Removed)) {
      setAll(bank, {Fate::Removed, true});
    } else if (lot < (bank.isAlike ? 70U : 22U) && has(Hazard::Merged)) {
      return mergeWhole(bank);
    } else {
      // Some stay whole, so that others can merge into them.
      return lot < 40 && has(Hazard::Merged);
    }
    return true;
  }

  void setAll(const Bank& bank, Outcome outcome) {
    std::fill_n(module_.outcomes.begin() + bank.first, bank.size(), outcome);
  }

  bool mergeWhole(const Bank& bank) {
    if (bank.subscripts.size() > 1) return false;
    for (uint32_t index = bank.index; index-- > 0;) {
      const Bank& target = module_.banks[index];
      if (!canAbsorb(bank, target)) continue;
      for (uint32_t bit = 0; bit < bank.size(); ++bit) {
        module_.outcomes[bank.first + bit] = {Fate::Merged, true, false, target.first + bit};
      }
      return true;
    }
    return false;
  }

  bool canAbsorb(const Bank& bank, const Bank& target) const {
    if (target.layout != bank.layout || target.subscripts.size() != bank.subscripts.size() ||
        target.size() != bank.size() || target.storage != bank.storage) {
      return false;
    }
    for (uint32_t reg = target.first; reg < target.first + target.size(); ++reg) {
      if (!canSurvive(reg)) return false;
    }
    return true;
  }

  bool canSurvive(uint32_t reg) const {
    const Fate fate = module_.outcomes[reg].fate;
    return (fate == Fate::Live || fate == Fate::Merged) && !bankOf(module_, reg).isLive;
  }

  Outcome decideBit(const Bank& bank) {
    const uint32_t lot = random_.below(100);
    if (lot < 4 && has(Hazard::Constants)) {
      return {(lot & 1) != 0 ? Fate::Constant1 : Fate::Constant0};
    }
    if (lot < 7 && has(Hazard::Removed)) return {Fate::Removed};
    if (lot < 12 && has(Hazard::Inverted)) return {Fate::Inverted};
    if (lot < 18 && has(Hazard::Merged)) return mergeBit(bank);
    return {};
  }

  Outcome mergeBit(const Bank& bank) {
    if (module_.twin && random_.percent(30)) {
      return {Fate::Merged, false, true, random_.below(module_.twin->width)};
    }
    for (uint32_t tries = 0; tries < 4 && bank.first > 0; ++tries) {
      const uint32_t reg = random_.below(bank.first);
      if (canSurvive(reg) && bankOf(module_, reg).storage == bank.storage) {
        return {Fate::Merged, false, false, reg};
      }
    }
    return {};
  }

  Module& module_;
  Random random_;
};

}  // namespace

void decideOutcomes(Module& module) { Decision(module).run(); }

const Bank& bankOf(const Module& module, uint32_t reg) {
  const auto after =
      std::upper_bound(module.banks.begin(), module.banks.end(), reg,
                       [](uint32_t number, const Bank& bank) { return number < bank.first; });
  return *(after - 1);
}

}  // namespace generate
