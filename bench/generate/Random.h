#ifndef BENCH_GENERATE_RANDOM_H
#define BENCH_GENERATE_RANDOM_H

#include <cstdint>

namespace generate {

/// Scrambles a number (the finaliser of splitmix64). The same on every machine, unlike the
/// distributions of the standard library, so a seed names one design everywhere.
constexpr uint64_t scramble(uint64_t value) {
  value += 0x9e3779b97f4a7c15U;
  value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9U;
  value = (value ^ (value >> 27)) * 0x94d049bb133111ebU;
  return value ^ (value >> 31);
}

/// A property of a numbered thing: depends on the numbers alone, never on what was asked before.
constexpr uint64_t scramble(uint64_t seed, uint64_t a, uint64_t b = 0, uint64_t c = 0) {
  return scramble(scramble(scramble(scramble(seed) ^ a) ^ b) ^ c);
}

/// A reproducible sequence of numbers.
class Random {
 public:
  explicit Random(uint64_t seed) : state_(scramble(seed)) {}

  /// A number below `limit`, which is at least 1.
  uint32_t below(uint32_t limit) {
    state_ += 0x9e3779b97f4a7c15U;
    return static_cast<uint32_t>((scramble(state_) >> 32) * limit >> 32);
  }

  bool percent(uint32_t share) { return below(100) < share; }

 private:
  uint64_t state_;
};

}  // namespace generate

#endif
