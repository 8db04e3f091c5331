// Sonarello: rows of text in columns.
#pragma once

#include <string>
#include <vector>

namespace Sonarello {

enum class Align { Left, Right };

/// A table with a heading; a column is as wide as its widest cell. The last column is never padded.
class TextTable {
 public:
  struct Column {
    std::string Heading;
    Align Side = Align::Left;
  };

  explicit TextTable(std::vector<Column> c) : columns(std::move(c)) {}
  /// A row with a cell for each column.
  void AddRow(std::vector<std::string> row) { rows.push_back(std::move(row)); }
  /// The table, one line per row.
  [[nodiscard]] std::string Render() const;

 private:
  std::vector<Column> columns;
  std::vector<std::vector<std::string>> rows;
};

}  // namespace Sonarello
