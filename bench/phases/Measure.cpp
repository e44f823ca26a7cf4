#include "Measure.h"

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <stdexcept>

namespace phases {

namespace {

double processTime() {
  timespec time{};
  if (clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time) != 0) {
    throw std::runtime_error("no processor clock");
  }
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

}  // namespace

Memory memory() {
  std::ifstream status("/proc/self/status");
  Memory result;
  for (std::string line; std::getline(status, line);) {
    unsigned long long value = 0;
    if (std::sscanf(line.c_str(), "VmHWM: %llu", &value) == 1) result.peak = value * 1024;
    if (std::sscanf(line.c_str(), "VmRSS: %llu", &value) == 1) result.resident = value * 1024;
  }
  if (result.peak == 0) throw std::runtime_error("cannot read /proc/self/status");
  return result;
}

uint64_t allocatedBytes() {
  const struct mallinfo2 heap = mallinfo2();
  return heap.uordblks + heap.hblkhd;
}

void releaseFreeMemory() { malloc_trim(0); }

bool forgetPeak() {
  std::ofstream file("/proc/self/clear_refs");
  file << "5" << std::flush;
  return file.good();
}

uint64_t fileSize(const std::string& path) { return std::filesystem::file_size(path); }

Timer::Timer() : m_wall(Clock::now()), m_cpu(processTime()) {}

double Timer::wall() const { return std::chrono::duration<double>(Clock::now() - m_wall).count(); }

double Timer::cpu() const { return processTime() - m_cpu; }

}  // namespace phases
