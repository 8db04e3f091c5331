#include "instruments/ListReading.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <string>
#include <utility>

#include "core/TextOrder.h"

namespace Sonarello {

namespace {

constexpr std::int32_t LargestByte = 127;
constexpr std::int32_t LargestNumber = std::numeric_limits<std::int32_t>::max();
constexpr std::string_view Bracket = " (";

/// A number of an insert effect; an empty cell and "-1" are none.
bool ReadInsertNumber(std::string_view cell, std::int32_t& number) {
  number = -1;
  if (cell.empty() || cell == "-1") return true;
  const auto value = CellNumber(cell, LargestNumber);
  if (value) number = *value;
  return value.has_value();
}

bool ReadInserts(const RowCells& cells, TMotifInserts& inserts) {
  const std::size_t a = FirstInsertCell;
  const std::size_t b = SecondInsertCell;
  inserts.InsertA_FxName = cells[a + 1];
  inserts.InsertA_PresetName = cells[a + 3];
  inserts.InsertA_DefaultValues = cells[a + 4];
  inserts.InsertB_FxName = cells[b + 1];
  inserts.InsertB_PresetName = cells[b + 3];
  inserts.InsertB_DefaultValues = cells[b + 4];
  return ReadInsertNumber(cells[a], inserts.InsertA_FxIndex) &&
         ReadInsertNumber(cells[a + 2], inserts.InsertA_FxPreset) &&
         ReadInsertNumber(cells[b], inserts.InsertB_FxIndex) &&
         ReadInsertNumber(cells[b + 2], inserts.InsertB_FxPreset) &&
         ReadInsertNumber(cells[InsertConnectCell], inserts.InsertConnect);
}

/// Reads 0-127, of a number that counts from `base`.
bool ReadByte(std::string_view cell, std::int32_t base, std::int8_t& byte) {
  const auto value = CellNumber(cell, LargestByte + base);
  if (!value || *value < base) return false;
  byte = static_cast<std::int8_t>(*value - base);
  return true;
}

}  // namespace

ListReading::ListReading(TSoundList& target, std::string_view source, IMessages* messages)
    : list(target),
      spec(*target.Spec),
      text(source),
      isUsers(messages != nullptr),
      faults(spec, isUsers ? RowCount(source) : 0, messages),
      walk(source) {}

void ListReading::Run(bool sort) {
  if (const TColumns* const columns = ColumnsOf(spec.Layout))
    ReadColumns(*columns, sort && columns->Category >= 0);
  else if (spec.Layout == Layout::DS || spec.Layout == Layout::DN)
    ReadKits();
  else if (spec.Layout == Layout::P)
    ReadPrograms();
  else if (spec.Layout == Layout::Names)
    ReadNames();
  faults.Finish();
}

void ListReading::ReadColumns(const TColumns& columns, bool sort) {
  std::string_view row;
  std::string_view category;
  if (!isUsers) list.Rows.reserve(static_cast<std::size_t>(RowCount(text)));
  while (walk.Next(row)) {
    if (IsBlankRow(row)) continue;
    const RowCells cells(row);
    if (cells.Count() < static_cast<std::size_t>(columns.Needed)) {
      if (TooFewCells(columns, row)) continue;
      break;
    }
    if (columns.Category >= 0 && !cells[0].empty()) category = cells[0];
    TPatch patch;
    TMotifInserts inserts;
    const bool isMotif = spec.Layout == Layout::M17;
    if (!ReadAddress(columns, cells, patch) || (isMotif && !ReadInserts(cells, inserts))) {
      faults.Row(walk.Line(), row);
      continue;
    }
    if (columns.Category >= 0) patch.CatIndex = CategoryIndex(category);
    if (columns.SubCategory >= 0) patch.CatName = cells[static_cast<std::size_t>(columns.SubCategory)];
    patch.Name = Displayed(cells[static_cast<std::size_t>(columns.Name)]);
    list.Rows.push_back(patch);
    if (isMotif) list.Inserts.push_back(inserts);
    if (sort) sources.push_back(row.substr(cells[0].size()));
  }
  if (sort) SortRows();
}

bool ListReading::ReadAddress(const TColumns& columns, const RowCells& cells, TPatch& patch) const {
  // A custom kit has no program of its own: its bank alone picks it.
  patch.Patch = 0;
  const std::int32_t base = spec.OneBased ? 1 : 0;
  const std::int8_t noCC32 = spec.Layout == Layout::F4 ? std::int8_t{0} : spec.CC32;
  return ReadBank(columns.CC00, spec.CC00, cells, patch.CC00) &&
         ReadBank(columns.CC32, noCC32, cells, patch.CC32) &&
         (columns.Patch < 0 ||
          ReadByte(cells[static_cast<std::size_t>(columns.Patch)], base, patch.Patch));
}

bool ListReading::ReadBank(std::int8_t column, std::int8_t ofList, const RowCells& cells,
                           std::int8_t& bank) const {
  if (column >= 0) return ReadByte(cells[static_cast<std::size_t>(column)], 0, bank);
  bank = ofList;
  return true;
}

/// Reports the row; true if the rows behind it are read.
bool ListReading::TooFewCells(const TColumns& columns, std::string_view row) {
  const bool namesCount = columns.Needed < 5;
  if (namesCount)
    faults.TooFewCells(columns.Needed, walk.Line(), row);
  else
    faults.Row(walk.Line(), row);
  return !isUsers || spec.Layout != Layout::F5;
}

/// A category that comes back behind another one is a further category.
std::int32_t ListReading::CategoryIndex(std::string_view category) {
  if (list.Categories.empty() || list.Categories.back() != category)
    list.Categories.push_back(category);
  return static_cast<std::int32_t>(list.Categories.size()) - 1;
}

void ListReading::SortRows() {
  const auto categoryOf = [this](std::size_t row) {
    return list.Categories[static_cast<std::size_t>(list.Rows[row].CatIndex)];
  };
  std::vector<std::size_t> order(list.Rows.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order, [&](std::size_t a, std::size_t b) {
    const auto byCategory = CompareTexts(categoryOf(a), categoryOf(b));
    return byCategory != 0 ? byCategory < 0 : CompareTexts(sources[a], sources[b]) < 0;
  });
  const std::vector<TPatch> rows = std::exchange(list.Rows, {});
  const std::vector<TMotifInserts> inserts = std::exchange(list.Inserts, {});
  const std::vector<std::string_view> categories = std::exchange(list.Categories, {});
  for (const std::size_t from : order) {
    TPatch& row = list.Rows.emplace_back(rows[from]);
    row.CatIndex = CategoryIndex(categories[static_cast<std::size_t>(row.CatIndex)]);
    if (!inserts.empty()) list.Inserts.push_back(inserts[from]);
  }
}

void ListReading::ReadKits() {
  std::string_view row;
  while (walk.Next(row)) {
    if (IsBlankRow(row)) continue;
    TPatch kit;
    if (ReadKit(row, kit))
      list.Rows.push_back(kit);
    else
      faults.Row(walk.Line(), row);
  }
}

/// The mark of an edited kit may stand in a cell in front of the row, in front of the numbers or in
/// front of the name; it is kept in front of the name.
bool ListReading::ReadKit(std::string_view row, TPatch& kit) {
  std::string_view head;
  TakeCell(row, head);
  bool isEdited = head == "*" && TakeCell(row, head);
  if (head.starts_with(EditedMark)) {
    head.remove_prefix(EditedMark.size());
    isEdited = true;
  }
  const auto [numbers, name] = SplitAtBlank(head);
  if (!ReadKitNumbers(numbers, kit)) return false;
  const bool needsMark = isEdited && !name.starts_with(EditedMark);
  kit.Name = Displayed(needsMark ? Kept(std::string(EditedMark).append(name)) : name);
  kit.Drums = row;
  return true;
}

/// "127-8-18" is CC0, CC32 and program, "127-18" has CC32 0; in layout DS the program stands alone.
bool ListReading::ReadKitNumbers(std::string_view numbers, TPatch& kit) const {
  kit.CC00 = spec.CC00;
  kit.CC32 = spec.CC32;
  if (spec.Layout == Layout::DS) return ReadByte(numbers, spec.OneBased ? 1 : 0, kit.Patch);
  const std::size_t first = numbers.find('-');
  const std::size_t last = numbers.rfind('-');
  if (first == std::string_view::npos || !ReadByte(numbers.substr(0, first), 0, kit.CC00)) return false;
  kit.CC32 = 0;
  if (last != first && !ReadByte(numbers.substr(first + 1, last - first - 1), 0, kit.CC32))
    return false;
  return ReadByte(numbers.substr(last + 1), 1, kit.Patch);
}

void ListReading::ReadPrograms() {
  int rows = RowCount(text);
  std::string_view row;
  bool hasRow = walk.Next(row);
  for (; rows > ProgramRows && hasRow && IsBlankRow(row); --rows) hasRow = walk.Next(row);
  if (rows != ProgramRows) return;
  const TProgramBanks banks = ProgramBanksOf(spec);
  for (int program = 0; program < ProgramRows - 1; ++program) {
    ReadVariations(row, static_cast<std::int8_t>(program), banks);
    walk.Next(row);
  }
  ReadProgramKits(row, banks);
}

void ListReading::ReadVariations(std::string_view row, std::int8_t program,
                                 const TProgramBanks& banks) {
  TPatch patch;
  patch.CC00 = banks.CC00;
  patch.CC32 = banks.CC32;
  patch.Patch = program;
  std::string_view rest = row;
  std::string_view cell;
  if (TakeCell(rest, cell) && !cell.empty()) {
    patch.Name = Displayed(cell);
    list.Rows.push_back(patch);
  }
  while (TakeCell(rest, cell)) {
    if (cell.empty()) continue;
    const auto [number, name] = SplitAtBlank(cell);
    if (name.empty() || !ReadByte(number, 0, spec.NumberIsCC00 ? patch.CC00 : patch.CC32)) {
      faults.Row(walk.Line(), row);
      continue;
    }
    patch.Name = Displayed(name);
    list.Rows.push_back(patch);
  }
}

void ListReading::ReadProgramKits(std::string_view row, const TProgramBanks& banks) {
  TPatch kit;
  kit.CC00 = banks.KitCC00;
  kit.CC32 = banks.KitCC32;
  kit.Patch = 0;
  std::string_view rest = row;
  std::string_view cell;
  if (TakeCell(rest, cell) && !cell.empty()) {
    kit.Name = cell;
    list.Kits.push_back(kit);
  }
  while (TakeCell(rest, cell)) {
    if (cell.empty()) continue;
    const auto [number, name] = SplitAtBlank(cell);
    kit.Name = name;
    if (!name.empty() && ReadByte(number, 0, kit.Patch))
      list.Kits.push_back(kit);
    else
      faults.Row(walk.Line(), row);
  }
}

void ListReading::ReadNames() {
  std::string_view row;
  while (walk.Next(row))
    if (!IsBlankRow(row)) list.Categories.push_back(row);
}

std::string_view ListReading::Displayed(std::string_view name) {
  return spec.Suffix.empty() ? name : Kept(NameWithSuffix(name, spec.Suffix));
}

std::string_view ListReading::Kept(std::string composed) {
  return list.Texts.emplace_back(std::move(composed));
}

std::string NameWithSuffix(std::string_view name, std::string_view suffix) {
  const std::size_t place =
      suffix.starts_with(Bracket) ? std::min(name.find(Bracket), name.size()) : name.size();
  std::string whole;
  whole.reserve(name.size() + suffix.size());
  return whole.append(name.substr(0, place)).append(suffix).append(name.substr(place));
}

std::string NameWithoutSuffix(std::string_view name, std::string_view suffix) {
  // No bracket stands in front of a suffix that is one, so that the first one is the suffix.
  const std::size_t place = suffix.starts_with(Bracket) ? name.find(Bracket)
                            : name.ends_with(suffix)    ? name.size() - suffix.size()
                                                        : std::string_view::npos;
  if (place == std::string_view::npos || !name.substr(place).starts_with(suffix))
    return std::string(name);
  return std::string(name.substr(0, place)).append(name.substr(place + suffix.size()));
}

}  // namespace Sonarello
