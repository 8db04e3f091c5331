#include <array>
#include <charconv>
#include <utility>
#include <vector>

#include "instruments/ListReading.h"
#include "instruments/ListRows.h"
#include "instruments/SoundListReader.h"

namespace Sonarello {

namespace {

/// Writes the rows of one list.
class ListWriting {
 public:
  explicit ListWriting(const TSoundList& source) : list(source), spec(*source.Spec) {}
  std::string Run();

 private:
  void PutColumns(const TColumns& columns);
  void PutInserts(const TMotifInserts& inserts);
  [[nodiscard]] std::string_view CategoryCell(std::size_t row) const;
  void PutKit(const TPatch& kit);
  void PutPrograms();
  void PutVariations(const std::vector<const TPatch*>& sounds);
  void PutProgramKits();
  void PutCell(const TColumns& columns, std::int8_t cell, std::size_t row);

  void Number(std::int32_t number);
  /// A number of an insert effect, empty for none.
  void OptionalNumber(std::int32_t number) {
    if (number >= 0) Number(number);
  }
  void Name(const TPatch& row) { out += NameWithoutSuffix(row.Name, spec.Suffix); }

  const TSoundList& list;
  const TListSpec& spec;
  std::string out;
};

std::string ListWriting::Run() {
  if (const TColumns* const columns = ColumnsOf(spec.Layout))
    PutColumns(*columns);
  else if (spec.Layout == Layout::DS || spec.Layout == Layout::DN)
    for (const TPatch& kit : list.Rows) PutKit(kit);
  else if (spec.Layout == Layout::P)
    PutPrograms();
  else if (spec.Layout == Layout::Names)
    for (const std::string_view name : list.Categories) out.append(name) += '\n';
  return std::move(out);
}

void ListWriting::PutColumns(const TColumns& columns) {
  const bool isMotif = spec.Layout == Layout::M17 && list.Inserts.size() == list.Rows.size();
  for (std::size_t row = 0; row < list.Rows.size(); ++row) {
    for (std::int8_t cell = 0; cell < columns.Needed; ++cell) PutCell(columns, cell, row);
    if (isMotif && list.Inserts[row] != TMotifInserts()) PutInserts(list.Inserts[row]);
    out += '\n';
  }
}

void ListWriting::PutCell(const TColumns& columns, std::int8_t cell, std::size_t row) {
  const TPatch& patch = list.Rows[row];
  if (cell > 0) out += '\t';
  if (cell == columns.Category) out += CategoryCell(row);
  if (cell == columns.SubCategory) out += patch.CatName;
  if (cell == columns.Name) Name(patch);
  if (cell == columns.CC00) Number(patch.CC00);
  if (cell == columns.CC32) Number(patch.CC32);
  if (cell == columns.Patch) Number(patch.Patch + (spec.OneBased ? 1 : 0));
}

/// The category, where it differs from that of the row above.
std::string_view ListWriting::CategoryCell(std::size_t row) const {
  const std::int32_t category = list.Rows[row].CatIndex;
  if (row > 0 && category == list.Rows[row - 1].CatIndex) return {};
  const auto index = static_cast<std::size_t>(category);
  return index < list.Categories.size() ? list.Categories[index] : std::string_view();
}

void ListWriting::PutInserts(const TMotifInserts& inserts) {
  const auto putInsert = [this](std::int32_t effect, std::string_view name, std::int32_t preset,
                                std::string_view presetName, std::string_view values) {
    out += '\t';
    OptionalNumber(effect);
    (out += '\t').append(name) += '\t';
    OptionalNumber(preset);
    (out += '\t').append(presetName).append("\t").append(values);
  };
  putInsert(inserts.InsertA_FxIndex, inserts.InsertA_FxName, inserts.InsertA_FxPreset,
            inserts.InsertA_PresetName, inserts.InsertA_DefaultValues);
  putInsert(inserts.InsertB_FxIndex, inserts.InsertB_FxName, inserts.InsertB_FxPreset,
            inserts.InsertB_PresetName, inserts.InsertB_DefaultValues);
  out += '\t';
  OptionalNumber(inserts.InsertConnect);
}

void ListWriting::PutKit(const TPatch& kit) {
  if (spec.Layout == Layout::DN) {
    Number(kit.CC00);
    out += '-';
    if (kit.CC32 != 0) {
      Number(kit.CC32);
      out += '-';
    }
    Number(kit.Patch + 1);
  } else {
    Number(kit.Patch + (spec.OneBased ? 1 : 0));
  }
  out += ' ';
  Name(kit);
  if (!kit.Drums.empty()) (out += '\t').append(kit.Drums);
  out += '\n';
}

void ListWriting::PutPrograms() {
  if (list.Rows.empty() && list.Kits.empty()) return;
  std::array<std::vector<const TPatch*>, 128> programs;
  for (const TPatch& row : list.Rows)
    if (row.Patch >= 0) programs[static_cast<std::size_t>(row.Patch)].push_back(&row);
  for (const auto& sounds : programs) PutVariations(sounds);
  PutProgramKits();
}

void ListWriting::PutVariations(const std::vector<const TPatch*>& sounds) {
  const TProgramBanks banks = ProgramBanksOf(spec);
  bool isFirst = true;
  for (const TPatch* sound : sounds) {
    const bool isCapital = isFirst && sound->CC00 == banks.CC00 && sound->CC32 == banks.CC32;
    if (!isCapital) {
      out += '\t';
      Number(spec.NumberIsCC00 ? sound->CC00 : sound->CC32);
      out += ' ';
    }
    Name(*sound);
    isFirst = false;
  }
  out += '\n';
}

void ListWriting::PutProgramKits() {
  bool isFirst = true;
  for (const TPatch& kit : list.Kits) {
    if (!isFirst || kit.Patch != 0) {
      out += '\t';
      Number(kit.Patch);
      out += ' ';
    }
    out += kit.Name;
    isFirst = false;
  }
  out += '\n';
}

void ListWriting::Number(std::int32_t number) {
  std::array<char, 12> digits{};
  const auto [end, fault] = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  out.append(digits.data(), end);
}

}  // namespace

std::string SoundListText(const TSoundList& list) { return ListWriting(list).Run(); }

}  // namespace Sonarello
