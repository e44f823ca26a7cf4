#include <crossreference/ModelState.h>
#include <crossreference/TokenMap.h>
#include <support/Report.h>

#include <algorithm>
#include <map>
#include <stdexcept>

namespace XRF_RTL2LL {

// Words live in the model's pool, so a name outlives the map it was read with.
struct TokenMap::Words {
  struct Slot {
    const std::string* word = nullptr;
    std::uint32_t hash = 0;
    std::uint32_t code = 0;
  };

  explicit Words(NamePool& names) : pool(names), slots(256) {}

  Slot& slotOf(std::string_view token, std::uint32_t hash) {
    std::size_t at = hash & (slots.size() - 1);
    while (slots[at].word != nullptr && (slots[at].hash != hash || *slots[at].word != token)) {
      at = (at + 1) & (slots.size() - 1);
    }
    return slots[at];
  }

  void reserveOne() {
    if ((used + 1) * 4 < slots.size() * 3) return;
    std::vector<Slot> before(slots.size() * 2);
    before.swap(slots);
    for (const Slot& slot : before) {
      if (slot.word != nullptr) slotOf(*slot.word, slot.hash) = slot;
    }
  }

  const std::string* wordOf(std::uint32_t code) const {
    if (code < dense.size()) return dense[code];
    const auto found = sparse.find(code);
    return found == sparse.end() ? nullptr : found->second;
  }

  // Codes come one after another, but a seed may lie anywhere.
  void enterCode(std::uint32_t code, const std::string* word) {
    if (wordOf(code) != nullptr) return;
    if (code < dense.size()) {
      dense[code] = word;
    } else if (code == dense.size()) {
      dense.push_back(word);
    } else {
      sparse.emplace(code, word);
    }
  }

  NamePool& pool;
  std::vector<Slot> slots;
  std::size_t used = 0;
  std::vector<const std::string*> dense;
  std::map<std::uint32_t, const std::string*> sparse;
  std::uint32_t nextCode = 0;
};

TokenMap::TokenMap() : m_words(std::make_unique<Words>(ModelState::current().names)) {}

TokenMap::~TokenMap() = default;

void TokenMap::clear() { m_words = std::make_unique<Words>(m_words->pool); }

void TokenMap::seed(const std::string& token, unsigned int code) {
  Words& words = *m_words;
  words.reserveOne();
  const std::uint32_t hash = finishHash(extendHash(emptyHash, token));
  Words::Slot& slot = words.slotOf(token, hash);
  const std::string* word = words.pool.intern(std::string_view(token));
  if (slot.word == nullptr) {
    slot = {word, hash, code};
    ++words.used;
  }
  words.enterCode(code, word);
  words.nextCode = std::max(words.nextCode, code + 1);
}

unsigned int TokenMap::getCode(std::string_view token) {
  Words& words = *m_words;
  words.reserveOne();
  const std::uint32_t hash = finishHash(extendHash(emptyHash, token));
  Words::Slot& slot = words.slotOf(token, hash);
  if (slot.word == nullptr) {
    slot = {words.pool.intern(token), hash, words.nextCode};
    ++words.used;
    words.enterCode(words.nextCode++, slot.word);
  }
  return slot.code;
}

unsigned int TokenMap::getCode(const std::string& token) {
  return getCode(std::string_view(token));
}

unsigned int TokenMap::getCode(const char* token) {
  if (token == nullptr) {
    throw std::logic_error("basic_string: construction from null is not valid");
  }
  return getCode(std::string_view(token));
}

const std::string& TokenMap::getToken(unsigned int code) const {
  const std::string* word = m_words->wordOf(code);
  if (word == nullptr) fatal("ERROR: no token for code: %d\n", static_cast<int>(code));
  return *word;
}

}  // namespace XRF_RTL2LL
