#include "TokenScan.h"

#include <array>
#include <cstdio>
#include <stdexcept>
#include <string>

namespace token_scan {

namespace {

enum ByteClass : uint8_t { kWord, kBlank, kParenthesis, kQuote, kEscape };

constexpr std::array<uint8_t, 256> makeClasses() {
  std::array<uint8_t, 256> classes{};
  for (const char blank : {' ', '\t', '\n', '\v', '\f', '\r'}) {
    classes[static_cast<unsigned char>(blank)] = kBlank;
  }
  classes['('] = kParenthesis;
  classes[')'] = kParenthesis;
  classes['"'] = kQuote;
  classes['\\'] = kEscape;
  return classes;
}

constexpr std::array<uint8_t, 256> kClasses = makeClasses();

/// The end of a quoted string, past its closing quote.
const unsigned char* skipString(const unsigned char* at, const unsigned char* end) {
  while (at < end && *at != '"') at += *at == '\\' ? 2 : 1;
  return at + 1;
}

/// The end of a word; the blank after the text stops it at the latest.
const unsigned char* skipWord(const unsigned char* at, const unsigned char* end) {
  for (;;) {
    while (kClasses[*at] == kWord) ++at;
    if (kClasses[*at] != kEscape || at >= end) return at;
    at += 2;
    if (at >= end) return end;
  }
}

uint64_t count(const unsigned char* at, const unsigned char* end) {
  uint64_t tokens = 0;
  while (at < end) {
    const uint8_t byteClass = kClasses[*at];
    if (byteClass == kBlank) {
      ++at;
      continue;
    }
    ++tokens;
    if (byteClass == kParenthesis) {
      ++at;
    } else if (byteClass == kQuote) {
      at = skipString(at + 1, end);
    } else {
      at = skipWord(at, end);
    }
  }
  return tokens;
}

}  // namespace

Text readWhole(const char* path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path, "rb"), std::fclose);
  if (!file || std::fseek(file.get(), 0, SEEK_END) != 0) {
    throw std::runtime_error(std::string("cannot read ") + path);
  }
  const long end = std::ftell(file.get());
  if (end < 0) throw std::runtime_error(std::string("cannot read ") + path);
  std::rewind(file.get());
  Text text;
  text.size = static_cast<size_t>(end);
  text.bytes = std::make_unique<unsigned char[]>(text.size + 1);
  if (std::fread(text.bytes.get(), 1, text.size, file.get()) != text.size) {
    throw std::runtime_error(std::string("cannot read all of ") + path);
  }
  text.bytes[text.size] = ' ';
  return text;
}

uint64_t countTokens(const Text& text) {
  return count(text.bytes.get(), text.bytes.get() + text.size);
}

}  // namespace token_scan
