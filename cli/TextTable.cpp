#include "TextTable.h"

#include <algorithm>
#include <utility>

#include "DisplayText.h"

namespace Sonarello {

std::string TextTable::Render() const {
  std::vector<std::string> heading;
  std::vector<std::size_t> widths;
  for (std::size_t c = 0; c < columns.size(); ++c) {
    heading.push_back(columns[c].Heading);
    std::size_t width = TextWidth(columns[c].Heading);
    for (const auto& row : rows) width = std::max(width, TextWidth(row[c]));
    widths.push_back(width);
  }
  std::string text;
  const auto add = [&](const std::vector<std::string>& row) {
    for (std::size_t c = 0; c < row.size(); ++c) {
      const std::string padding(widths[c] - TextWidth(row[c]), ' ');
      if (c > 0) text += "  ";
      if (columns[c].Side == Align::Right) text += padding;
      text += row[c];
      if (columns[c].Side == Align::Left && c + 1 < row.size()) text += padding;
    }
    while (text.ends_with(' ')) text.pop_back();
    text += '\n';
  };
  add(heading);
  for (const auto& row : rows) add(row);
  return text;
}

}  // namespace Sonarello
