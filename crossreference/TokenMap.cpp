#include <crossreference/ModelState.h>
#include <crossreference/TokenMap.h>
#include <support/PageArray.h>
#include <support/Report.h>

#include <algorithm>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string>
#include <unordered_map>

namespace XRF_RTL2LL {

// Words live in the model's pool, so a name outlives the map it was read with.
struct TokenMap::Words {
  static constexpr std::uint32_t unknown = 0xffffffffU;

  explicit Words(NamePool& names) : pool(names) {}

  const Word* wordOf(std::uint32_t code) const {
    if (code < dense.size()) return dense[code];
    const auto found = sparse.find(code);
    return found == sparse.end() ? nullptr : found->second;
  }

  // Codes come one after another, but a seed may lie anywhere.
  void enterCode(std::uint32_t code, const Word* word) {
    if (wordOf(code) != nullptr) return;
    if (code < dense.size()) {
      dense[code] = word;
    } else if (code == dense.size()) {
      dense.push_back(word);
    } else {
      sparse.emplace(code, word);
    }
  }

  // Where the code of a word is kept.
  std::uint32_t& code(const Word* word) {
    const std::uint32_t number = word->number();
    // Some beyond, since the next words come with ever higher numbers.
    if (number >= codes.size()) codes.resize(number + std::size_t{256}, unknown);
    return codes[number];
  }

  std::uint32_t codeOf(const Word* word) {
    std::uint32_t& known = code(word);
    if (known == unknown && wordOf(unknown) != word) {
      known = nextCode++;
      enterCode(known, word);
    }
    return known;
  }

  NamePool& pool;
  PageArray<std::uint32_t> codes;  // by the word's number in the pool
  PageArray<const Word*> dense;
  std::map<std::uint32_t, const Word*> sparse;
  std::uint32_t nextCode = 0;
  // Copies of the words that were asked for as strings.
  std::mutex textsLock;
  std::unordered_map<std::uint32_t, std::string> texts;
};

TokenMap::TokenMap() : m_words(std::make_unique<Words>(ModelState::current().names)) {}

TokenMap::~TokenMap() = default;

void TokenMap::clear() { m_words = std::make_unique<Words>(m_words->pool); }

void TokenMap::seed(const std::string& token, unsigned int code) {
  Words& words = *m_words;
  const Word* word = words.pool.intern(std::string_view(token));
  std::uint32_t& known = words.code(word);
  if (known == Words::unknown) known = code;
  words.enterCode(code, word);
  words.nextCode = std::max(words.nextCode, code + 1);
}

unsigned int TokenMap::getCode(std::string_view token) {
  return m_words->codeOf(m_words->pool.intern(token));
}

NamePool& TokenMap::names() const { return m_words->pool; }

unsigned int TokenMap::codeOf(const Word* pooled) { return m_words->codeOf(pooled); }

void TokenMap::prefetch(const Word* pooled) const {
  const std::uint32_t number = pooled->number();
  if (number < m_words->codes.size()) __builtin_prefetch(&m_words->codes[number]);
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

const Word* TokenMap::wordOf(unsigned int code) const {
  const Word* word = m_words->wordOf(code);
  if (word == nullptr) fatal("ERROR: no token for code: %d\n", static_cast<int>(code));
  return word;
}

const std::string& TokenMap::getToken(unsigned int code) const {
  const Word* word = wordOf(code);
  const std::lock_guard lock(m_words->textsLock);
  return m_words->texts.try_emplace(code, word->view()).first->second;
}

}  // namespace XRF_RTL2LL
