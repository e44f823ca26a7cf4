#include <support/FileLines.h>

namespace XRF_RTL2LL {

FileLines::FileLines(const std::string& path, const TextSource& source, const char* phase)
    : m_lines(source), m_phase(phase), m_place(path, &m_lines, [](const void* lines) {
        return ReadPlace::Position{static_cast<const LineReader*>(lines)->number(), 0};
      }) {}

void FileLines::report() {
  constexpr std::uint64_t distance = std::uint64_t{1} << 22;
  progress(m_phase, m_lines.offset(), m_lines.size());
  m_report = m_lines.offset() + distance;
}

bool FileLines::end() const {
  if (m_lines.failed()) fatalHere("The file cannot be read to its end.");
  return false;
}

}  // namespace XRF_RTL2LL
