// What memory itself takes: to move much of it, to reach one place after another, and to be the
// first to touch it. The bounds of everything that touches much of it.

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
constexpr std::size_t kHugePage = std::size_t{1} << 21;

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
  constexpr std::size_t count = kBytes / sizeof(Line);
  constexpr std::uint64_t steps = 4'000'000;
  const std::unique_ptr<Line, Free> lines(
      static_cast<Line*>(std::aligned_alloc(kHugePage, kBytes)));
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

/// Seconds that it takes to be the first to touch a gigabyte of huge pages. The kernel clears them,
/// and a virtual machine may have to ask its host for them.
double touch() {
  using Clock = std::chrono::steady_clock;
  constexpr std::size_t size = std::size_t{1} << 30;
  void* memory = ::mmap(nullptr, size + kHugePage, PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (memory == MAP_FAILED) return 0;
  ::madvise(memory, size + kHugePage, MADV_HUGEPAGE);
  auto* bytes = static_cast<volatile char*>(memory);
  const Clock::time_point start = Clock::now();
  for (std::size_t at = 0; at < size; at += 4096) bytes[at] = 1;
  const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  ::munmap(memory, size + kHugePage);
  return seconds;
}

}  // namespace

int main() {
  // The second time the memory was in use a moment ago.
  const double first = touch();
  std::printf("touch\t%.2f\t%.2f\n", first, touch());
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
