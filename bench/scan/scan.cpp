#include "TokenScan.h"

#include <chrono>
#include <cstdio>
#include <exception>

namespace {

void scan(const char* path) {
  using Clock = std::chrono::steady_clock;
  const token_scan::Text text = token_scan::readWhole(path);
  const Clock::time_point start = Clock::now();
  const uint64_t tokens = countTokens(text);
  const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  const double megabytes = static_cast<double>(text.size) / 1e6;
  std::printf("%s: %llu tokens, %llu bytes, %.6f s, %.1f MB/s\n", path,
              static_cast<unsigned long long>(tokens), static_cast<unsigned long long>(text.size),
              seconds, seconds > 0 ? megabytes / seconds : 0.0);
}

}  // namespace

int main(int count, char** words) {
  if (count < 2) {
    std::fputs("usage: scan FILE...\n", stderr);
    return 2;
  }
  try {
    for (int index = 1; index < count; ++index) scan(words[index]);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "scan: %s\n", error.what());
    return 1;
  }
}
