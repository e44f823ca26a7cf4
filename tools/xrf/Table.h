#pragma once

#include <tools/xrf/Style.h>

#include <string>
#include <vector>

namespace xrf {

/// Rows in aligned columns below a header. For tables too long to keep, measure every row first and
/// then ask for the lines one by one.
class Table {
 public:
  enum class Align { Left, Right };
  struct Column {
    std::string title;
    Align align;
  };
  struct Cell {
    std::string text;
    Color color = Color::Plain;
  };
  using Row = std::vector<Cell>;

  Table(std::vector<Column> columns, bool colored);

  void measure(const Row& row);
  /// Each with its line feed.
  std::string header() const;
  std::string line(const Row& row) const;
  /// Measures and prints a short table.
  std::string text(const std::vector<Row>& rows);

 private:
  std::vector<Column> m_columns;
  std::vector<std::size_t> m_widths;
  bool m_colored;
};

}  // namespace xrf
