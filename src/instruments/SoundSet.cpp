#include "instruments/SoundSet.h"

#include <algorithm>

#include "instruments/Naming.h"

namespace Sonarello {

namespace {

bool IsIndexed(Scope scope) { return scope != Scope::Companion && scope != Scope::Categories; }

}  // namespace

AddressIndex::AddressIndex() { byProgram.fill(-1); }

void AddressIndex::Add(const TPatch& row) {
  const TAddress address = row.Address();
  if (!IsMidiValue(address.CC00) || !IsMidiValue(address.CC32) || !IsMidiValue(address.Patch)) return;
  const auto place = static_cast<std::int16_t>(rows.size());
  if (bankOf.empty()) bankOf.assign(BankCount, -1);
  std::int16_t& bank = bankOf[static_cast<std::size_t>(address.CC00 * 128 + address.CC32)];
  if (bank < 0) {
    bank = static_cast<std::int16_t>(banks.size());
    banks.emplace_back().fill(-1);
  }
  const auto program = static_cast<std::size_t>(address.Patch);
  std::int16_t& taken = banks[static_cast<std::size_t>(bank)][program];
  if (taken >= 0 || rows.size() == MostRows) return;
  taken = place;
  if (byProgram[program] < 0) byProgram[program] = place;
  rows.push_back(&row);
}

bool AddressIndex::HoldsBank(int CC00) const noexcept {
  if (bankOf.empty() || !IsMidiValue(CC00)) return false;
  const auto begin = bankOf.begin() + CC00 * 128;
  return std::any_of(begin, begin + 128, [](std::int16_t bank) { return bank >= 0; });
}

const TPatch* AddressIndex::FindProgram(int program) const noexcept {
  if (!IsMidiValue(program)) return nullptr;
  const std::int16_t row = byProgram[static_cast<std::size_t>(program)];
  return row < 0 ? nullptr : rows[static_cast<std::size_t>(row)];
}

SoundSet::SoundSet(int value, const TLoadSettings& settings, IMessages& messages)
    : instrument(value), member(MemberOf(value)) {
  for (const TListSpec& spec : ListsOf(value)) {
    if (spec.Scope == Scope::Companion) continue;
    lists.push_back(LoadSoundList(spec, settings, messages));
  }
  for (const TListSpec& spec : ListsOf(value))
    if (spec.Scope == Scope::Companion)
      if (TSoundList* list = Mutable(spec.Companion)) LoadCompanion(*list, spec, settings, messages);
  Build();
  ChooseRules();
}

void SoundSet::ChooseRules() {
  const std::span<const TNameRule> table = member->Family->Rules;
  for (const bool drums : {false, true})
    for (int bank = 0; bank < 128; ++bank) {
      const auto rule =
          std::ranges::find_if(table, [&](const TNameRule& r) { return r.AppliesTo(drums, bank); });
      rules[drums ? 1 : 0][static_cast<std::size_t>(bank)] =
          static_cast<std::uint8_t>(rule - table.begin());
    }
}

TSoundList* SoundSet::Mutable(std::string_view name) noexcept {
  const auto list =
      std::ranges::find_if(lists, [&](const TSoundList& l) { return l.Spec->Name == name; });
  return list == lists.end() ? nullptr : &*list;
}

const TSoundList* SoundSet::List(std::string_view name) const noexcept {
  const auto list =
      std::ranges::find_if(lists, [&](const TSoundList& l) { return l.Spec->Name == name; });
  return list == lists.end() ? nullptr : &*list;
}

AddressIndex& SoundSet::IndexFor(Scope scope) {
  auto& index = indexes[static_cast<std::size_t>(scope)];
  if (!index) index = std::make_unique<AddressIndex>();
  return *index;
}

void SoundSet::Build() {
  for (const TSoundList& list : lists) {
    const Scope scope = list.Spec->Scope;
    if (!IsIndexed(scope)) continue;
    for (const TPatch& row : list.Rows) IndexFor(scope).Add(row);
    for (const TPatch& kit : list.Kits) IndexFor(KitScope(scope)).Add(kit);
  }
  while (mapCount < MostMaps && Index(ScopePlus(Scope::Map1, mapCount)).First() != nullptr) ++mapCount;
}

void SoundSets::Load(int value, const TLoadSettings& settings, IMessages& messages) {
  auto& set = sets[Index(value)];
  if (!set && !ListsOf(value).empty()) set = std::make_unique<SoundSet>(value, settings, messages);
}

}  // namespace Sonarello
