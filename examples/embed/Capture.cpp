#include "Capture.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

Capture::Capture(const std::string& file) : m_taken(true) {
  std::ifstream in(file);
  if (!in) throw std::runtime_error(file + ": cannot read it");
  std::string line;
  for (unsigned number = 1; std::getline(in, line); ++number) {
    std::istringstream words(line);
    std::uint32_t frame = 0;
    std::uint32_t offset = 0;
    words >> std::hex >> frame >> std::dec >> offset;
    if (!words) {
      throw std::runtime_error(file + ":" + std::to_string(number) + ": no frame and offset");
    }
    m_ones.insert({frame, offset});
  }
}
