#include <tools/xrf/Table.h>

#include <algorithm>

namespace xrf {

namespace {

// Characters, not bytes, of UTF-8 text.
std::size_t widthOf(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) >> 6) != 2; }));
}

constexpr std::string_view ellipsis = "...";
// Narrower names tell nothing.
constexpr std::size_t leastWidth = 16;
constexpr std::size_t gapWidth = 2;

// The end of a text that is too wide.
std::string shortened(const std::string& text, std::size_t width) {
  std::size_t excess = widthOf(text);
  if (excess <= width || width <= ellipsis.size()) return text;
  excess -= width - ellipsis.size();
  std::size_t start = 0;
  const auto continues = [&] { return (static_cast<unsigned char>(text[start]) >> 6) == 2; };
  for (; excess != 0; --excess) {
    do ++start;
    while (start < text.size() && continues());
  }
  return std::string(ellipsis) + text.substr(start);
}

}  // namespace

Table::Table(std::vector<Column> columns, bool colored)
    : m_columns(std::move(columns)), m_colored(colored) {
  for (const Column& column : m_columns) m_widths.push_back(widthOf(column.title));
}

void Table::measure(const Row& row) {
  for (std::size_t i = 0; i < row.size(); ++i) {
    m_widths[i] = std::max(m_widths[i], widthOf(row[i].text));
  }
}

void Table::fit(std::size_t width) {
  if (width == 0) return;
  std::size_t total = gapWidth * (m_widths.size() - 1);
  for (const std::size_t column : m_widths) total += column;
  while (total > width) {
    std::size_t widest = m_widths.size();
    for (std::size_t i = 0; i < m_widths.size(); ++i) {
      if (m_columns[i].align != Align::Left || m_widths[i] <= leastWidth) continue;
      if (widest == m_widths.size() || m_widths[i] > m_widths[widest]) widest = i;
    }
    if (widest == m_widths.size()) return;
    --m_widths[widest];
    --total;
  }
}

std::string Table::header() {
  fit(outputWidth());
  Row row;
  for (const Column& column : m_columns) row.push_back({column.title, Color::Bold});
  return line(row);
}

std::string Table::line(const Row& row) const {
  std::string result;
  std::size_t gap = 0;  // blanks owed before the next text, so that no line ends in blanks
  for (std::size_t i = 0; i < row.size(); ++i) {
    const std::string text = shortened(row[i].text, m_widths[i]);
    const std::size_t padding = m_widths[i] - std::min(m_widths[i], widthOf(text));
    if (m_columns[i].align == Align::Right) gap += padding;
    if (!text.empty()) {
      result.append(gap, ' ');
      gap = 0;
      result += painted(text, row[i].color, m_colored);
    }
    if (m_columns[i].align == Align::Left) gap += padding;
    gap += gapWidth;
  }
  return result + "\n";
}

std::string Table::text(const std::vector<Row>& rows) {
  for (const Row& row : rows) measure(row);
  std::string result = header();
  for (const Row& row : rows) result += line(row);
  return result;
}

}  // namespace xrf
