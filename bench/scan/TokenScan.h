#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

/// A bare scan for tokens: words, parentheses and quoted strings, counted and forgotten. What a
/// reader of such files takes is measured against it.
namespace token_scan {

/// A file's bytes, followed by a blank that ends its last word.
struct Text {
  std::unique_ptr<unsigned char[]> bytes;
  size_t size = 0;
};

/// Throws std::runtime_error where the file cannot be read.
Text readWhole(const char* path);

uint64_t countTokens(const Text& text);

}  // namespace token_scan
