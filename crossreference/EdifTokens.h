#pragma once

#include <crossreference/TokenMap.h>
#include <support/HugePages.h>
#include <support/Limits.h>
#include <support/PageArray.h>
#include <support/Report.h>
#include <support/TextSource.h>

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace XRF_RTL2LL {

/// A netlist as a stream of word codes that still knows where in the text each word stands. The
/// text itself is not kept: it is read again when a place in it is asked for.
class EdifTokens {
 public:
  /// Set in the code of a quoted string that is exactly one parenthesis, which is text, not
  /// structure.
  static constexpr std::uint32_t quotedMark = 0x80000000U;

  EdifTokens(const TextSource& source, TokenMap& words, const Limits& limits = {})
      : m_source(source), m_words(words), m_limits(limits) {}

  /// Reads the whole text.
  void lex();
  std::size_t size() const { return m_size; }
  std::uint32_t operator[](std::size_t index) const {
    return static_cast<const std::uint32_t*>(m_chunks[index / chunkSize].get())[index % chunkSize];
  }
  /// The index behind the parenthesis that closes the list in which a token stands; beyond `size`
  /// where none does.
  std::size_t endOfList(std::size_t index) const;
  /// The index behind a list that begins at `open`, known at once where few lists are around it.
  std::size_t endOfOuterList(std::size_t open) const;
  /// Line and column of a token; of the end of the text for an index beyond the last. Any place of
  /// the text, if that has changed since.
  ReadPlace::Position position(std::size_t index) const;
  /// While `lex` runs, where it stands.
  ReadPlace::Position lexedPosition() const { return positionOf(m_place); }

 private:
  class Writer;

  static constexpr std::size_t checkpointDistance = 64;
  // Cells lie in a library, which lies in the list that is the whole netlist.
  static constexpr unsigned outerLists = 3;
  static constexpr std::size_t chunkSize = hugePage / sizeof(std::uint32_t);

  ReadPlace::Position positionOf(std::uint64_t offset) const;

  const TextSource& m_source;
  TokenMap& m_words;
  const Limits m_limits;
  // Chunks, since a vector that grows takes twice and more what it holds.
  std::vector<Pages> m_chunks;
  std::size_t m_size = 0;
  PageArray<std::uint64_t> m_checkpoints;  // offset of every checkpointDistance-th token
  std::unordered_map<std::size_t, std::size_t> m_ends;  // of outer lists that are long
  std::uint64_t m_place = 0;
};

}  // namespace XRF_RTL2LL
