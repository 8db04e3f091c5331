#include "SoundLists.h"

#include <algorithm>

namespace Sonarello {

namespace {

bool HoldsRows(const TSoundList& list) {
  const ListPart part = PartOf(list.Spec->Scope);
  return part == ListPart::Sounds || part == ListPart::Kits || part == ListPart::NoteNames;
}

bool Holds(const std::vector<TPatch>& rows, const TPatch* row) {
  return std::ranges::any_of(rows, [row](const TPatch& r) { return &r == row; });
}

}  // namespace

ListPart PartOf(Scope scope) noexcept {
  switch (scope) {
    case Scope::Sounds:
    case Scope::GM2:
    case Scope::Custom:
    case Scope::Map1:
    case Scope::Map2:
    case Scope::Map3:
    case Scope::Map4: return ListPart::Sounds;
    case Scope::Drums:
    case Scope::GM2Drums:
    case Scope::CustomDrums:
    case Scope::MapDrums1:
    case Scope::MapDrums2:
    case Scope::MapDrums3:
    case Scope::MapDrums4: return ListPart::Kits;
    case Scope::Notes:
    case Scope::CustomNotes: return ListPart::NoteNames;
    case Scope::Companion: return ListPart::Effects;
    case Scope::Categories: return ListPart::Categories;
  }
  return ListPart::Categories;
}

bool IsCustom(Scope scope) noexcept {
  return scope == Scope::Custom || scope == Scope::CustomDrums || scope == Scope::CustomNotes;
}

std::vector<TListRow> RowsOf(const SoundSet& set) {
  std::vector<TListRow> rows;
  for (const TSoundList& list : set.Lists()) {
    if (!HoldsRows(list)) continue;
    const bool kits = PartOf(list.Spec->Scope) != ListPart::Sounds;
    for (const TPatch& row : list.Rows) rows.push_back({&list, &row, kits});
    for (const TPatch& kit : list.Kits) rows.push_back({&list, &kit, true});
  }
  return rows;
}

const TSoundList* ListOf(const SoundSet& set, const TPatch* row) {
  for (const TSoundList& list : set.Lists())
    if (Holds(list.Rows, row) || Holds(list.Kits, row)) return &list;
  return nullptr;
}

std::string_view CategoryOf(const TListRow& row) {
  const auto& categories = row.List->Categories;
  const std::int32_t index = row.Row->CatIndex;
  if (index < 0 || static_cast<std::size_t>(index) >= categories.size()) return {};
  return categories[static_cast<std::size_t>(index)];
}

const SoundSet* MainSounds(const Setup& setup) {
  return setup.sounds->Find(setup.routes.Table.front().InstrumValue);
}

TNaming NamingOf(const Options& options) {
  return {.AutoProgChange = options.AutoProgChange,
          .RolandSCDefaultMap = options.RolandSCDefaultMap,
          .RolandSCDefaultMapIdx = options.RolandSCDefaultMapIdx};
}

std::string NumberText(int number) { return number < 0 ? "-" : std::to_string(number); }

std::string PlainAddress(const TAddress& address) {
  return NumberText(address.CC00) + "/" + NumberText(address.CC32) + "/" + NumberText(address.Patch);
}

std::string ListNames(const SoundSet& set) {
  std::string names;
  for (const TSoundList& list : set.Lists())
    if (HoldsRows(list)) names += (names.empty() ? "" : ", ") + std::string(list.Spec->Name);
  return names;
}

}  // namespace Sonarello
