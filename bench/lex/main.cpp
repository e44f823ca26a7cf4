// Cuts netlists into tokens and interns their words as the library's reader does, beside a bare
// scan of the same bytes.

#include <bench/scan/TokenScan.h>
#include <crossreference/EdifTokens.h>
#include <crossreference/XRF_RTL2LL.h>
#include <support/TextSource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <functional>
#include <stdexcept>

namespace {

using XRF_RTL2LL::EdifTokens;
using XRF_RTL2LL::TextSource;

constexpr int kRounds = 5;

double seconds(const std::function<void()>& work) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point start = Clock::now();
  work();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

/// The number of tokens, and how long it took to read them into a model of their own.
size_t lexed(const TextSource& source, double& took) {
  XRF_RTL2LL::Model model;
  const XRF_RTL2LL::ModelScope scope(model);
  XRF_RTL2LL::Netlist netlist;
  EdifTokens tokens(source, *netlist.getTokenMap());
  took = seconds([&] { tokens.lex(); });
  return tokens.size();
}

void measure(const char* path) {
  const token_scan::Text text = token_scan::readWhole(path);
  const TextSource memory(std::string_view(reinterpret_cast<const char*>(text.bytes.get()),
                                           text.size));  // NOLINT
  const TextSource file{std::string(path)};
  double best[3] = {1e9, 1e9, 1e9};
  size_t tokens = 0;
  for (int round = 0; round < kRounds; ++round) {
    double took[3];
    took[0] = seconds([&] { token_scan::countTokens(text); });
    tokens = lexed(memory, took[1]);
    if (lexed(file, took[2]) != tokens) throw std::runtime_error("the file changed meanwhile");
    for (int at = 0; at < 3; ++at) best[at] = std::min(best[at], took[at]);
  }
  const double megabytes = static_cast<double>(text.size) / 1e6;
  std::printf("%s: %zu tokens, %zu bytes, scan %.1f MB/s, lex %.1f MB/s, lex from file %.1f MB/s\n",
              path, tokens, text.size, megabytes / best[0], megabytes / best[1],
              megabytes / best[2]);
}

}  // namespace

int main(int count, char** words) {
  if (count < 2) {
    std::fputs("usage: lex FILE...\n", stderr);
    return 2;
  }
  try {
    for (int index = 1; index < count; ++index) measure(words[index]);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "lex: %s\n", error.what());
    return 1;
  }
}
