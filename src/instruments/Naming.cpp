#include "instruments/Naming.h"

#include <algorithm>

#include "core/Texts.h"

namespace Sonarello {

namespace {

/// A text in the user's language, without a copy.
std::string_view InLanguage(const TUnknown& text) {
  return GermanLanguage ? text.German : text.English;
}

/// What an unset number means: the bank that the instrument starts with.
TAddress Effective(const TFamily& family, const TSoundQuery& query) {
  TAddress address = query.Address;
  const bool drums = query.Channel == DrumChannel || query.DrumPart != 0;
  const TAddress& initial = drums ? family.DrumCapital : family.Capital;
  if (address.CC00 < 0) address.CC00 = initial.CC00;
  if (address.CC32 < 0) address.CC32 = address.CC00 == initial.CC00 ? initial.CC32 : 0;
  return address;
}

bool IsDrumBank(const TFamily& family, int bank) {
  return std::ranges::find(family.DrumBanks, bank) != family.DrumBanks.end();
}

/// Looks one question up in one instrument.
class NameSearch {
 public:
  NameSearch(const SoundSet& s, const TSoundQuery& q, const TNaming& n)
      : set(s),
        member(s.Member()),
        family(*member.Family),
        query(q),
        naming(n),
        address(Effective(family, q)) {
    answer.IsDrums = PlaysDrums(family, q);
    answer.Effective = address;
  }

  const TSoundName& Run() {
    if (family.Maps) return InMaps();
    const std::size_t place = set.RuleFor(answer.IsDrums, std::clamp(address.CC00, 0, 127));
    if (place >= family.Rules.size()) return Unknown({}, member.Sound);
    const TNameRule& rule = family.Rules[place];
    if (const TPatch* row = Find(rule, address)) return Take(row, true);
    if (naming.AutoProgChange && Mend(rule)) return answer;
    const bool tenth = query.Channel == DrumChannel && !rule.UnknownDrums.German.empty();
    return Unknown(tenth ? rule.UnknownDrums : rule.Unknown,
                   rule.When == NameWhen::Rest ? member.Sound : member.Drums);
  }

 private:
  const TPatch* Find(const TNameRule& rule, const TAddress& wanted) const {
    for (std::size_t i = 0; i < rule.ScopeCount; ++i) {
      const AddressIndex& index = set.Index(rule.Scopes[i]);
      const TPatch* row =
          rule.Key == NameKey::Address ? index.Find(wanted) : index.FindProgram(wanted.Patch);
      if (row != nullptr) return row;
    }
    return nullptr;
  }

  const TSoundName& Take(const TPatch* row, bool known) {
    answer.Row = row;
    answer.Name = row->Name;
    answer.Known = known;
    return answer;
  }

  const TSoundName& Unknown(const TUnknown& ofRule, const TUnknown& ofMember) {
    answer.Name = InLanguage(ofRule.German.empty() ? ofMember : ofRule);
    return answer;
  }

  /// Takes the numbers that repair writes; those that stay are not written.
  void Write(const TAddress& mended) {
    if (mended.CC00 != query.Address.CC00) answer.Mended.CC00 = mended.CC00;
    if (mended.CC32 != query.Address.CC32) answer.Mended.CC32 = mended.CC32;
    if (mended.Patch != query.Address.Patch) answer.Mended.Patch = mended.Patch;
  }

  /// Takes an address if the rule finds it.
  bool TakeAt(const TNameRule& rule, const TAddress& mended) {
    const TPatch* row = Find(rule, mended);
    if (row == nullptr) return false;
    Write(mended);
    answer.Row = row;
    answer.Name = row->Name;
    return true;
  }

  /// Takes an address as a kit even if the table has none there.
  bool TakeKit(const TNameRule& rule, const TAddress& mended) {
    if (TakeAt(rule, mended)) return true;
    const TPatch* first = set.Index(rule.Scopes[0]).First();
    if (family.FirstKitName.empty() && first == nullptr) return false;
    Write(mended);
    answer.Name = family.FirstKitName.empty() ? first->Name : family.FirstKitName;
    return true;
  }

  bool TakeKitBank(const TNameRule& rule) {
    const TPatch* first = set.Index(rule.Scopes[0]).First();
    if (first == nullptr) return false;
    const TAddress bank =
        set.Index(rule.Scopes[0]).FindProgram(address.Patch) != nullptr && family.DrumCapital.CC00 >= 0
            ? TAddress{family.DrumCapital.CC00, family.DrumCapital.CC32, address.Patch}
            : TAddress{};
    return TakeAt(rule, bank) || TakeAt(rule, {first->CC00, first->CC32, address.Patch}) ||
           TakeAt(rule, first->Address());
  }

  bool Borrow(const TNameRule& rule) {
    const TPatch* row = set.Index(rule.Scopes[0]).FindProgram(address.Patch);
    if (row == nullptr) return false;
    answer.Row = row;
    answer.Name = row->Name;
    return true;
  }

  bool Mend(const TNameRule& rule) {
    switch (rule.OnRepair) {
      case Repair::None: return false;
      case Repair::LSB: return TakeAt(rule, {address.CC00, 0, address.Patch});
      case Repair::Capital:
        return TakeAt(rule, {family.Capital.CC00, family.Capital.CC32, address.Patch});
      case Repair::Kit: return TakeKit(rule, {address.CC00, 0, 0});
      case Repair::Program0: return TakeKit(rule, {address.CC00, address.CC32, 0});
      case Repair::FirstKit: return TakeKit(rule, {0, 0, 0});
      case Repair::KitBank: return TakeKitBank(rule);
      case Repair::Borrow: return Borrow(rule);
    }
    return false;
  }

  /// The GS way: LSB picks the map, 0 being the default one; the bank MSB the variation.
  const TSoundName& InMaps() {
    int map = address.CC32;
    if (naming.AutoProgChange && naming.RolandSCDefaultMap && map == 0 &&
        naming.RolandSCDefaultMapIdx >= 1 && naming.RolandSCDefaultMapIdx <= set.MapCount()) {
      map = naming.RolandSCDefaultMapIdx;
      answer.Mended.CC32 = map;
    }
    if (map < 1 || map > set.MapCount()) map = set.MapCount();
    if (map < 1) return Unknown({}, answer.IsDrums ? member.Drums : member.Sound);
    return answer.IsDrums ? KitOfMap(map) : SoundOfMap(map);
  }

  const TSoundName& SoundOfMap(int map) {
    const AddressIndex& sounds = set.Index(ScopePlus(Scope::Map1, map - 1));
    if (const TPatch* row = sounds.Find({address.CC00, map, address.Patch})) return Take(row, true);
    const TPatch* capital = sounds.FindProgram(address.Patch);
    if (capital == nullptr) return Unknown({}, member.Sound);
    if (naming.AutoProgChange) answer.Mended.CC00 = 0;
    return Take(capital, false);
  }

  const TSoundName& KitOfMap(int map) {
    const AddressIndex& kits = set.Index(ScopePlus(Scope::MapDrums1, map - 1));
    if (const TPatch* row = kits.FindProgram(address.Patch)) return Take(row, true);
    if (!naming.AutoProgChange || kits.First() == nullptr) return Unknown({}, member.Drums);
    answer.Mended.Patch = 0;
    return Take(kits.FindProgram(0) != nullptr ? kits.FindProgram(0) : kits.First(), false);
  }

  const SoundSet& set;
  const TMember& member;
  const TFamily& family;
  const TSoundQuery& query;
  const TNaming& naming;
  TAddress address;
  TSoundName answer;
};

}  // namespace

bool PlaysDrums(const TFamily& family, const TSoundQuery& query) noexcept {
  const bool tenth = query.Channel == DrumChannel;
  switch (family.Drums) {
    case DrumRule::Channel10: return tenth || IsDrumBank(family, query.Address.CC00);
    case DrumRule::Channel10OrPart: return tenth || query.DrumPart != 0;
    case DrumRule::Part: return query.DrumPart != 0;
    case DrumRule::Bank:
      return IsDrumBank(family,
                        query.Address.CC00 >= 0 ? query.Address.CC00 : Effective(family, query).CC00);
  }
  return false;
}

TSoundName NameSound(const SoundSet& set, const TSoundQuery& query, const TNaming& naming) {
  // The usual case, a sound that the first list of its bank holds, comes without any detour.
  const TFamily& family = *set.Member().Family;
  if (!family.Maps && IsMidiValue(query.Address.CC00)) {
    const bool drums = PlaysDrums(family, query);
    const TNameRule& rule = family.Rules[set.RuleFor(drums, query.Address.CC00)];
    if (rule.Key == NameKey::Address)
      if (const TPatch* row = set.Index(rule.Scopes[0]).Find(query.Address))
        return {.Name = row->Name,
                .Known = true,
                .IsDrums = drums,
                .Mended = {},
                .Row = row,
                .Effective = query.Address};
  }
  return NameSearch(set, query, naming).Run();
}

std::string TSoundName::Text() const {
  if (!Name.ends_with('=')) return std::string(Name);
  return std::string(Name) + std::to_string(Effective.CC00) + " LSB=" + std::to_string(Effective.CC32) +
         " PC=" + std::to_string(Effective.Patch);
}

std::string ProgramChangeName(const SoundSet& set, int CC00, int CC32, int Patch,
                              const TNaming& naming) {
  return NameSound(set, {.Address = {CC00, CC32, Patch}}, naming).Text();
}

std::string DrumsChangeName(const SoundSet& set, int Patch, const TNaming& naming) {
  const TFamily& family = *set.Member().Family;
  return NameSound(set,
                   {.Address = {family.DrumCapital.CC00, family.DrumCapital.CC32, Patch},
                    .Channel = DrumChannel,
                    .DrumPart = 1},
                   naming)
      .Text();
}

}  // namespace Sonarello
