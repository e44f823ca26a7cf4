#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

/// The records of a cross-reference file that it holds by the million, as their lines have them.
/// Texts are parts of the line.
namespace XRF_RTL2LL {

struct BitRecord {
  std::uint32_t id = 0;
  std::string_view kind;
  std::string_view value;
  std::uint32_t location[3] = {0, 0, 0};
  unsigned fields = 0;  ///< how many the line has, up to the third location number

  /// False for a line that is no such record.
  bool scan(std::string_view line);
};

struct SignalRecord {
  std::string_view visibility;
  std::string_view direction;
  std::string_view name;
  std::uint32_t id = 0;
  std::uint32_t net = 0;
  std::uint32_t lsb = 0;
  std::uint32_t msb = 0;
  unsigned fields = 0;   ///< how many the line has, up to the second bit
  bool isPlain = false;  ///< each index has a number in `bits`
  std::vector<std::uint32_t> bits;
  std::string_view rest;       ///< what follows the msb, where the record is not plain
  std::ptrdiff_t closing = 0;  ///< parentheses beyond the record's own

  bool scan(std::string_view line);
  /// True for a plain record alone.
  bool scanPlain(std::string_view line);

 private:
  void scanAny(std::string_view line);
};

struct ModuleRecord {
  std::string_view visibility;
  std::string_view definition;
  std::string_view name;
  std::uint32_t id = 0;
  std::ptrdiff_t closing = 0;  ///< all parentheses that close

  bool scan(std::string_view line);
  /// True for a plain record alone.
  bool scanPlain(std::string_view line);
};

}  // namespace XRF_RTL2LL
