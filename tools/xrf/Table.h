#pragma once

#include <tools/xrf/Style.h>

#include <string>
#include <vector>

namespace xrf {

/// Rows in aligned columns below a header. For tables too long to keep, measure every row first and
/// then ask for the header and the lines one by one.
///
/// On a terminal that is too narrow, texts of columns that are aligned to the left lose their
/// beginning, since names differ at their end. What goes to a file or a pipe is always whole.
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
  /// Each with its line feed. The header settles how wide the columns are.
  std::string header();
  std::string line(const Row& row) const;
  /// Measures and prints a short table.
  std::string text(const std::vector<Row>& rows);

 private:
  void fit(std::size_t width);

  std::vector<Column> m_columns;
  std::vector<std::size_t> m_widths;
  bool m_colored;
};

}  // namespace xrf
