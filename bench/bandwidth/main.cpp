// What memory itself takes: to move much of it, and to reach one place after another. The bounds of
// everything that touches much of it.

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <numeric>
#include <random>
#include <sys/mman.h>
#include <vector>

namespace {

/// Far more than caches hold.
constexpr std::size_t kBytes = std::size_t{256} << 20;
constexpr int kRounds = 8;

/// Megabytes a second of one copy, read and written counted once each.
double copyOnce(std::vector<char>& target, const std::vector<char>& source) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point start = Clock::now();
  std::memcpy(target.data(), source.data(), kBytes);
  const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  return 2.0 * static_cast<double>(kBytes) / 1e6 / seconds;
}

struct Line {
  std::uint64_t next;
  std::uint64_t filler[7];
};

struct Free {
  void operator()(Line* lines) const { std::free(lines); }
};

/// Nanoseconds of a step through lines that all lie elsewhere, each named by the one before it. The
/// lines are on huge pages, as what the library keeps.
double reach() {
  using Clock = std::chrono::steady_clock;
  constexpr std::size_t hugePage = std::size_t{1} << 21;
  constexpr std::size_t count = kBytes / sizeof(Line);
  constexpr std::uint64_t steps = 4'000'000;
  const std::unique_ptr<Line, Free> lines(static_cast<Line*>(std::aligned_alloc(hugePage, kBytes)));
  if (lines == nullptr) return 0;
  ::madvise(lines.get(), kBytes, MADV_HUGEPAGE);
  std::vector<std::uint32_t> order(count);
  std::iota(order.begin(), order.end(), 0U);
  std::shuffle(order.begin(), order.end(), std::mt19937(1));
  for (std::size_t at = 0; at < count; ++at) {
    lines.get()[order[at]].next = order[(at + 1) % count];
  }
  const Clock::time_point start = Clock::now();
  std::uint64_t at = 0;
  for (std::uint64_t step = 0; step < steps; ++step) at = lines.get()[at].next;
  const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  return at >= count ? 0 : seconds * 1e9 / static_cast<double>(steps);
}

}  // namespace

int main() {
  std::vector<char> source(kBytes, 'x');
  std::vector<char> target(kBytes);
  double best = 0;
  for (int round = 0; round < kRounds; ++round) {
    source[static_cast<std::size_t>(round)] = static_cast<char>('a' + round);
    best = std::max(best, copyOnce(target, source));
  }
  if (target[kRounds - 1] != 'a' + kRounds - 1) return 1;
  std::printf("bandwidth\t%.0f\n", best);
  std::printf("latency\t%.0f\n", reach());
  return 0;
}
