// Sonarello: the rows of a list's text, their cells, and which cell of a layout means what.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "instruments/ListTable.h"

namespace Sonarello {

/// Walks the rows of a text. "\n", "\r\n" and "\r" end a row; no row stands behind the last of them.
class RowWalk {
 public:
  explicit RowWalk(std::string_view text) noexcept : all(text) {}
  /// Takes the next row; false if there is none.
  bool Next(std::string_view& row) noexcept;
  /// The line of the row last taken, from 1.
  [[nodiscard]] int Line() const noexcept { return line; }

 private:
  std::string_view all;
  std::size_t begin = 0;     ///< of the next row
  std::size_t newLine = 0;   ///< the first "\n" from `begin` on, once it was sought
  std::size_t carriage = 0;  ///< the first "\r"
  bool sought = false;
  int line = 0;
};

[[nodiscard]] int RowCount(std::string_view text) noexcept;

/// True if a row holds nothing but blanks and tabs.
[[nodiscard]] bool IsBlankRow(std::string_view row) noexcept;

/// Takes the cell up to the next tab off a row; a tab at the end of the row begins no further cell.
/// False if nothing is left.
bool TakeCell(std::string_view& rest, std::string_view& cell) noexcept;

/// The cells of a row of a fixed layout.
class RowCells {
 public:
  static constexpr std::size_t Most = 17;  ///< cells of the widest layout; further ones are left out

  explicit RowCells(std::string_view row) noexcept;
  [[nodiscard]] std::size_t Count() const noexcept { return count; }
  /// A cell; empty behind the last one.
  [[nodiscard]] std::string_view operator[](std::size_t index) const noexcept { return cells[index]; }

 private:
  std::array<std::string_view, Most> cells{};
  std::size_t count = 0;
};

/// The number in a cell of decimal digits, with blanks around them and zeros in front; nothing if the
/// cell holds anything else or a number above `largest`.
[[nodiscard]] std::optional<std::int32_t> CellNumber(std::string_view cell,
                                                     std::int32_t largest) noexcept;

/// A text cut in two at its first blank: "16 Power Kit" is "16" and "Power Kit".
struct TNumberAndName {
  std::string_view Number;
  std::string_view Name;
};
[[nodiscard]] TNumberAndName SplitAtBlank(std::string_view text) noexcept;

/// Places of the cells in a row of a table-like layout; -1: the layout has no such cell.
struct TColumns {
  Sonarello::Layout Layout;
  std::int8_t Category;
  std::int8_t SubCategory;
  std::int8_t Name;
  std::int8_t CC00;
  std::int8_t CC32;
  std::int8_t Patch;
  std::int8_t Needed;  ///< fewest cells of a row
};

/// The places of a layout, or nil for one whose rows are no fixed columns.
[[nodiscard]] const TColumns* ColumnsOf(Layout layout) noexcept;

/// Cells of the insert effects in layout M17.
inline constexpr std::size_t FirstInsertCell = 6;
inline constexpr std::size_t SecondInsertCell = 11;
inline constexpr std::size_t InsertConnectCell = 16;

/// Rows of a list of layout P: one per program, and that of the drum kits.
inline constexpr int ProgramRows = 129;

/// The banks of layout P.
struct TProgramBanks {
  std::int8_t CC00;     ///< of the capital tones
  std::int8_t CC32;     ///< of the capital tones
  std::int8_t KitCC00;  ///< of the drum kits
  std::int8_t KitCC32;
};
[[nodiscard]] TProgramBanks ProgramBanksOf(const TListSpec& spec) noexcept;

/// In front of the name of a kit that the user edited.
inline constexpr std::string_view EditedMark = "* ";

}  // namespace Sonarello
