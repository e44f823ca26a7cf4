#include <tools/xrf/Table.h>

#include <algorithm>

namespace xrf {

namespace {

// Characters, not bytes, of UTF-8 text.
std::size_t widthOf(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) >> 6) != 2; }));
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

std::string Table::header() const {
  Row row;
  for (const Column& column : m_columns) row.push_back({column.title, Color::Bold});
  return line(row);
}

std::string Table::line(const Row& row) const {
  std::string result;
  std::size_t gap = 0;  // blanks owed before the next text, so that no line ends in blanks
  for (std::size_t i = 0; i < row.size(); ++i) {
    const Cell& cell = row[i];
    const std::size_t padding = m_widths[i] - widthOf(cell.text);
    if (m_columns[i].align == Align::Right) gap += padding;
    if (!cell.text.empty()) {
      result.append(gap, ' ');
      gap = 0;
      result += painted(cell.text, cell.color, m_colored);
    }
    if (m_columns[i].align == Align::Left) gap += padding;
    gap += 2;
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
