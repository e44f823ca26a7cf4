#pragma once

#include <streambuf>
#include <string_view>

namespace xrf {

/// Writes to standard output; what goes wrong shows at `finishOutput`.
void printOut(std::string_view text);

/// Ends the output. Raises a Failure when any of it could not be written.
void finishOutput();

/// Standard output for code that writes to a C++ stream. Does not pass on requests to flush, since
/// the model's text form makes one with every line.
class StandardOutputBuffer : public std::streambuf {
 protected:
  int_type overflow(int_type byte) override;
  std::streamsize xsputn(const char* text, std::streamsize size) override;
};

}  // namespace xrf
