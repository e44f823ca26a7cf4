// What memory itself takes to move: the bound of everything that touches much of it.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
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
  return 0;
}
