#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace xrf {

/// How the command ends; scripts rely on the numbers.
enum class Status : int { Done = 0, Failed = 1, Usage = 2, NotFound = 3 };

/// Why the command cannot go on, and where in which file, as far as that is known.
struct Failure : std::runtime_error {
  explicit Failure(const std::string& text, std::string inFile = {}, std::uint64_t atLine = 0,
                   std::uint64_t atColumn = 0)
      : std::runtime_error(text), file(std::move(inFile)), line(atLine), column(atColumn) {}

  std::string file;      ///< empty when no file is to blame
  std::uint64_t line;    ///< counted from 1; 0 when unknown
  std::uint64_t column;  ///< counted from 1; 0 when unknown
};

/// A command line that contradicts itself.
struct UsageFailure : Failure {
  using Failure::Failure;
};

}  // namespace xrf
