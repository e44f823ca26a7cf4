#ifndef BENCH_GENERATE_OUTPUTFILE_H
#define BENCH_GENERATE_OUTPUTFILE_H

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace generate {

enum class LineEnd : uint8_t { Lf, CrLf };

/// A text file that is written through one large buffer. Every failure throws std::runtime_error.
class OutputFile {
 public:
  explicit OutputFile(const std::string& path, LineEnd lineEnd = LineEnd::Lf);

  OutputFile& operator<<(std::string_view text) {
    buffer_.append(text);
    if (buffer_.size() >= kFlushSize) flush();
    return *this;
  }
  OutputFile& operator<<(char character) {
    buffer_.push_back(character);
    return *this;
  }
  OutputFile& operator<<(uint64_t number);

  /// Writes what is left and closes the file. A file that is not closed may be cut short.
  void close();

 private:
  static constexpr size_t kFlushSize = size_t{1} << 20;
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  void flush();

  std::string path_;
  LineEnd lineEnd_;
  std::unique_ptr<std::FILE, Closer> file_;
  std::string buffer_;
};

/// Appends a number in decimal.
void appendNumber(std::string& text, uint64_t number);

/// Appends a number in hexadecimal with at least `digits` digits.
void appendHex(std::string& text, uint64_t number, unsigned digits);

}  // namespace generate

#endif
