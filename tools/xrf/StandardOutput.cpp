#include <tools/xrf/Failure.h>
#include <tools/xrf/StandardOutput.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace xrf {

void printOut(std::string_view text) { std::fwrite(text.data(), 1, text.size(), stdout); }

void finishOutput() {
  const bool failedBefore = std::ferror(stdout) != 0;
  if (std::fflush(stdout) == 0 && !failedBefore) return;
  const char* reason = errno != 0 ? std::strerror(errno) : "write failed";
  throw Failure(reason, "standard output");
}

StandardOutputBuffer::int_type StandardOutputBuffer::overflow(int_type byte) {
  if (traits_type::eq_int_type(byte, traits_type::eof())) return traits_type::not_eof(byte);
  return std::fputc(byte, stdout) == EOF ? traits_type::eof() : byte;
}

std::streamsize StandardOutputBuffer::xsputn(const char* text, std::streamsize size) {
  return static_cast<std::streamsize>(std::fwrite(text, 1, static_cast<std::size_t>(size), stdout));
}

}  // namespace xrf
