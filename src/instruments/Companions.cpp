#include <array>
#include <optional>
#include <unordered_map>

#include "instruments/ListFaults.h"
#include "instruments/ListRows.h"
#include "instruments/SoundListReader.h"

namespace Sonarello {

namespace {

/// Cells of a companion row.
enum Cell : std::size_t {
  CC0,
  CC32,
  Program,
  FirstControl,  ///< 71, 72, 73, 74, 91, 93
  DSPIndex = 9,
  Parameters,
  FirstEQ,  ///< `MPBassFreq`, `MPBassGain`, `MPTrebleFreq`, `MPTrebleGain`
  CellCount = 15
};

constexpr std::int32_t LargestByte = 127;
constexpr std::int32_t LargestNumber = 999999;
constexpr std::size_t SingleParameter = 9;  ///< the cell with one number is `DSPPar10`
using TParameters = std::array<std::int32_t, 16>;

/// One row; what it does not tell is absent.
struct TCompanionRow {
  std::uint32_t Address = 0;
  TXTPatch Values;
  bool HasParameters = false;
};

std::uint32_t AddressKey(std::int32_t bank, std::int32_t bank2, std::int32_t program) {
  return static_cast<std::uint32_t>((bank << 14) | (bank2 << 7) | program);
}

bool ReadByte(std::string_view cell, std::int8_t& byte) {
  const auto value = CellNumber(cell, LargestByte);
  if (value) byte = static_cast<std::int8_t>(*value);
  return value.has_value();
}

bool ReadNumber(std::string_view cell, std::int32_t& number) {
  const auto value = CellNumber(cell, LargestNumber);
  if (value) number = *value;
  return value.has_value();
}

/// A parameter that a sound does not set is -1 in the list as in memory.
bool ReadParameter(std::string_view cell, std::int32_t& number) {
  number = -1;
  return cell == "-1" || ReadNumber(cell, number);
}

/// One number, sixteen with ";" between, or an empty cell, which sets none.
bool ReadParameters(std::string_view cell, TParameters& parameters) {
  parameters.fill(-1);
  if (cell.empty()) return true;
  if (cell.find(';') == std::string_view::npos) return ReadParameter(cell, parameters[SingleParameter]);
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    const std::size_t end = cell.find(';');
    const bool isLast = i + 1 == parameters.size();
    if (isLast != (end == std::string_view::npos)) return false;
    if (!ReadParameter(cell.substr(0, end), parameters[i])) return false;
    if (!isLast) cell.remove_prefix(end + 1);
  }
  return true;
}

/// A row but for its parameters; nothing if one of its cells is no number in range.
std::optional<TCompanionRow> ReadRow(const RowCells& cells, std::int32_t base) {
  if (cells.Count() < CellCount) return std::nullopt;
  TCompanionRow row;
  TXTPatch& v = row.Values;
  const auto bank = CellNumber(cells[CC0], LargestByte);
  const auto bank2 = CellNumber(cells[CC32], LargestByte);
  const auto program = CellNumber(cells[Program], LargestByte + base);
  if (!bank || !bank2 || !program || *program < base) return std::nullopt;
  row.Address = AddressKey(*bank, *bank2, *program - base);
  std::size_t cell = FirstControl;
  for (std::int8_t* control : {&v.Ctrl71, &v.Ctrl72, &v.Ctrl73, &v.Ctrl74, &v.Ctrl91, &v.Ctrl93})
    if (!ReadByte(cells[cell++], *control)) return std::nullopt;
  if (!ReadNumber(cells[DSPIndex], v.DSPIndex)) return std::nullopt;
  cell = FirstEQ;
  for (std::int32_t* value : {&v.MPBassFreq, &v.MPBassGain, &v.MPTrebleFreq, &v.MPTrebleGain})
    if (!ReadNumber(cells[cell++], *value)) return std::nullopt;
  row.HasParameters = ReadParameters(cells[Parameters], v.DSPPar);
  return row;
}

/// The first row of each address.
std::unordered_map<std::uint32_t, std::size_t> IndexOf(const TSoundList& list) {
  std::unordered_map<std::uint32_t, std::size_t> index;
  index.reserve(list.Rows.size());
  for (std::size_t i = 0; i < list.Rows.size(); ++i) {
    const TPatch& row = list.Rows[i];
    if (row.CC00 >= 0 && row.CC32 >= 0 && row.Patch >= 0)
      index.emplace(AddressKey(row.CC00, row.CC32, row.Patch), i);
  }
  return index;
}

}  // namespace

void ReadCompanion(TSoundList& list, const TListSpec& companion, std::string_view text,
                   std::int32_t dspIndex, IMessages* messages) {
  if (list.Effects.size() != list.Rows.size()) {
    TXTPatch none;
    none.DSPIndex = dspIndex;
    list.Effects.assign(list.Rows.size(), none);
  }
  const auto index = IndexOf(list);
  ListFaults faults(companion, RowCount(text), messages);
  RowWalk walk(text);
  std::string_view line;
  while (walk.Next(line)) {
    if (IsBlankRow(line)) continue;
    auto row = ReadRow(RowCells(line), companion.OneBased ? 1 : 0);
    if (!row || !row->HasParameters) faults.Row(walk.Line(), line);
    const auto sound = row ? index.find(row->Address) : index.end();
    if (sound == index.end()) continue;
    TXTPatch& effects = list.Effects[sound->second];
    if (!row->HasParameters) row->Values.DSPPar = effects.DSPPar;
    effects = row->Values;
  }
  faults.Finish();
}

}  // namespace Sonarello
