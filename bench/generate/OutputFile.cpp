#include "OutputFile.h"

#include <charconv>
#include <stdexcept>
#include <utility>

namespace generate {

OutputFile::OutputFile(const std::string& path, LineEnd lineEnd)
    : path_(path), lineEnd_(lineEnd), file_(std::fopen(path.c_str(), "wb")) {
  if (!file_) throw std::runtime_error("cannot write " + path_);
  std::setvbuf(file_.get(), nullptr, _IONBF, 0);
  buffer_.reserve(kFlushSize + (kFlushSize >> 2));
}

OutputFile& OutputFile::operator<<(uint64_t number) {
  appendNumber(buffer_, number);
  return *this;
}

void OutputFile::flush() {
  if (lineEnd_ == LineEnd::CrLf) {
    std::string text;
    text.reserve(buffer_.size() + buffer_.size() / 16);
    for (const char character : buffer_) {
      if (character == '\n') text += '\r';
      text += character;
    }
    buffer_ = std::move(text);
  }
  if (std::fwrite(buffer_.data(), 1, buffer_.size(), file_.get()) != buffer_.size()) {
    throw std::runtime_error("cannot write all of " + path_);
  }
  buffer_.clear();
}

void OutputFile::close() {
  flush();
  if (std::fclose(file_.release()) != 0) throw std::runtime_error("cannot write all of " + path_);
}

void appendNumber(std::string& text, uint64_t number) {
  char digits[20];
  const auto result = std::to_chars(digits, digits + sizeof digits, number);
  text.append(digits, result.ptr);
}

void appendHex(std::string& text, uint64_t number, unsigned digits) {
  char buffer[16];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, number, 16);
  const auto length = static_cast<unsigned>(result.ptr - buffer);
  if (length < digits) text.append(digits - length, '0');
  text.append(buffer, result.ptr);
}

}  // namespace generate
