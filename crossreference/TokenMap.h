#pragma once

#include <support/Api.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace XRF_RTL2LL {

class NamePool;
class Word;

/// Interns words as dense unsigned codes, handed out in order of first appearance. Words are
/// compared byte by byte. The words are stored in the model that was current when the map was made.
class XRF_API TokenMap {
 public:
  TokenMap();
  ~TokenMap();
  TokenMap(const TokenMap&) = delete;
  TokenMap& operator=(const TokenMap&) = delete;

  /// Forgets every word; the next new word receives code 0.
  void clear();
  /// Enters a word with a given code; what is there already is never overwritten. Later new words
  /// receive codes above it.
  void seed(const std::string& token, unsigned int code);
  /// The code of a word, a new one for a word not seen before. Throws std::logic_error for null.
  unsigned int getCode(const std::string& token);
  unsigned int getCode(const char* token);
  unsigned int getCode(std::string_view token);
  /// The word of a code, valid until `clear`. A code without a word is a fatal error.
  const std::string& getToken(unsigned int code) const;

 private:
  friend class EdifTokens;
  friend struct NetlistState;
  /// The pool that holds the words.
  NamePool& names() const;
  /// The word of a code. A code without one is a fatal error.
  const Word* wordOf(unsigned int code) const;
  /// For a word of that pool.
  unsigned int codeOf(const Word* pooled);
  /// Fetches the memory that `codeOf` will need.
  void prefetch(const Word* pooled) const;

  struct Words;
  std::unique_ptr<Words> m_words;
};

/// The codes of the words that every netlist's map is seeded with.
namespace token {
enum Code : std::uint32_t {
  Open,
  Close,
  Array,
  Cell,
  CellRef,
  DesignForm,
  Direction,
  Instance,
  InstanceRef,
  Init,
  Joined,
  Library,
  LibraryRef,
  Lut1,
  Lut2,
  Lut3,
  Lut4,
  Lut5,
  Lut6,
  Member,
  NetForm,
  Port,
  PortRef,
  Property,
  UpperQ,
  LowerQ,
  Rename,
  String,
  Program,
  Const0,
  Const1,
  Fd,
  Fdc,
  Fdce,
  Fde,
  Fdp,
  Fdpe,
  Fdr,
  Fdre,
  Fds,
  Fdse,
  Input,
  Output,
  Tarvona,
  Drumlane,
  PartProperty,
  IsClrInverted,
  IsDInverted,
  IsPreInverted,
  IsRInverted,
  IsSInverted,
  Count
};
}  // namespace token

}  // namespace XRF_RTL2LL
