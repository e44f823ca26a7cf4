#ifndef BENCH_GENERATE_WORDS_H
#define BENCH_GENERATE_WORDS_H

#include "OutputFile.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace generate {

constexpr std::array<std::string_view, 16> kScalarWords = {
    "busy", "ready",  "empty", "full",  "start", "done", "ack",   "req",
    "last", "parity", "error", "grant", "lock",  "wrap", "stall", "flush"};
constexpr std::array<std::string_view, 24> kVectorWords = {
    "count", "state", "data", "addr",  "shift",  "acc",   "ptr",       "crc",
    "timer", "level", "head", "tail",  "opcode", "mask",  "credit",    "delay",
    "tap",   "sum",   "coef", "phase", "window", "index", "lane_data", "seq"};
constexpr std::array<std::string_view, 6> kMatrixWords = {"mem",  "fifo", "line",
                                                          "bank", "tbl",  "hist"};
constexpr std::array<std::string_view, 4> kRecordWords = {"pkt", "cfg", "hdr", "stat"};
constexpr std::array<std::string_view, 6> kFields = {"len", "tag", "kind", "src", "prio", "ok"};
constexpr std::array<uint32_t, 11> kVectorWidths = {2, 3, 4, 8, 8, 8, 12, 16, 16, 24, 32};

/// Takes the words of one list in turn, from any word on; numbers follow when all are used.
template <size_t N>
class WordSource {
 public:
  WordSource(const std::array<std::string_view, N>& words, uint32_t start)
      : words_(words), start_(start) {}

  std::string next() {
    std::string name(words_[(start_ + used_) % N]);
    if (used_ >= N) {
      name += '_';
      appendNumber(name, used_ / N);
    }
    ++used_;
    return name;
  }

 private:
  const std::array<std::string_view, N>& words_;
  uint32_t start_;
  uint32_t used_ = 0;
};

}  // namespace generate

#endif
