#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace phases {

/// Memory of this process in bytes, as the kernel counts its resident pages.
struct Memory {
  uint64_t resident = 0;
  uint64_t peak = 0;  ///< since the start or the last `forgetPeak`
};

Memory memory();
/// Bytes that the program asked for and did not free: other than resident pages, always the same
/// for the same work.
uint64_t allocatedBytes();
/// Gives free memory back to the kernel, so that what remains resident is in use.
void releaseFreeMemory();
/// Starts the peak anew at what is resident now. False where the kernel does not offer it.
bool forgetPeak();
uint64_t fileSize(const std::string& path);

/// Wall-clock and processor time since it was made.
class Timer {
 public:
  Timer();
  double wall() const;
  double cpu() const;

 private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point m_wall;
  double m_cpu;
};

}  // namespace phases
