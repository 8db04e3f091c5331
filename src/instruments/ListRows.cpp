#include "instruments/ListRows.h"

#include <algorithm>

namespace Sonarello {

namespace {

constexpr TColumns Columns[] = {
    {Layout::F5, 0, -1, 1, 2, 3, 4, 5},   {Layout::F4, 0, -1, 1, 2, -1, 3, 4},
    {Layout::F6, 0, 1, 2, 3, 4, 5, 6},    {Layout::Kronos, 0, 1, 2, -1, -1, 3, 4},
    {Layout::M17, 0, 1, 2, 3, 4, 5, 6},   {Layout::Custom, 0, -1, 1, -1, 2, 3, 4},
    {Layout::C3, -1, -1, 0, 1, 2, -1, 3}, {Layout::K4, -1, -1, 0, 1, 2, 3, 4},
};

constexpr std::int8_t GM2SoundBank = 121;
constexpr std::int8_t GM2KitBank = 120;
constexpr std::int8_t XGKitBank = 127;

}  // namespace

bool RowWalk::Next(std::string_view& row) noexcept {
  if (begin >= all.size()) return false;
  // Either end is sought again only once it was passed, so that a walk stays linear.
  if (!sought || newLine < begin) newLine = std::min(all.find('\n', begin), all.size());
  if (!sought || carriage < begin) carriage = std::min(all.find('\r', begin), all.size());
  sought = true;
  const std::size_t end = std::min(newLine, carriage);
  row = all.substr(begin, end - begin);
  begin = end + (carriage < newLine && carriage + 1 == newLine && newLine < all.size() ? 2 : 1);
  ++line;
  return true;
}

int RowCount(std::string_view text) noexcept {
  RowWalk walk(text);
  std::string_view row;
  while (walk.Next(row)) {
  }
  return walk.Line();
}

bool IsBlankRow(std::string_view row) noexcept {
  return row.find_first_not_of(" \t") == std::string_view::npos;
}

bool TakeCell(std::string_view& rest, std::string_view& cell) noexcept {
  if (rest.empty()) return false;
  const std::size_t tab = std::min(rest.find('\t'), rest.size());
  cell = rest.substr(0, tab);
  rest.remove_prefix(std::min(tab + 1, rest.size()));
  return true;
}

RowCells::RowCells(std::string_view row) noexcept {
  while (count < Most && TakeCell(row, cells[count])) ++count;
}

std::optional<std::int32_t> CellNumber(std::string_view cell, std::int32_t largest) noexcept {
  const std::size_t first = cell.find_first_not_of(' ');
  if (first == std::string_view::npos) return std::nullopt;
  cell = cell.substr(first, cell.find_last_not_of(' ') - first + 1);
  std::int64_t value = 0;
  for (const char c : cell) {
    if (c < '0' || c > '9') return std::nullopt;
    value = value * 10 + (c - '0');
    if (value > largest) return std::nullopt;
  }
  return static_cast<std::int32_t>(value);
}

TNumberAndName SplitAtBlank(std::string_view text) noexcept {
  const std::size_t blank = std::min(text.find(' '), text.size());
  return {text.substr(0, blank), text.substr(std::min(blank + 1, text.size()))};
}

const TColumns* ColumnsOf(Layout layout) noexcept {
  const TColumns* const columns = std::ranges::find(Columns, layout, &TColumns::Layout);
  return columns == std::end(Columns) ? nullptr : columns;
}

TProgramBanks ProgramBanksOf(const TListSpec& spec) noexcept {
  const std::int8_t map = std::max<std::int8_t>(spec.CC32, 0);
  if (spec.NumberIsCC00) return {.CC00 = 0, .CC32 = map, .KitCC00 = 0, .KitCC32 = map};
  const std::int8_t bank = std::max<std::int8_t>(spec.CC00, 0);
  // With bank MSB 0 it is the variations by bank LSB that tell XG from GM.
  const bool isXG = bank == 0 && spec.CC32 < 0;
  const std::int8_t kits = bank == GM2SoundBank ? GM2KitBank : isXG ? XGKitBank : std::int8_t{0};
  return {.CC00 = bank, .CC32 = map, .KitCC00 = kits, .KitCC32 = 0};
}

}  // namespace Sonarello
