#include "desk/SoundBrowserBanks.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core/TextOrder.h"
#include "core/Texts.h"
#include "instruments/InstrumentFiles.h"
#include "instruments/ListReading.h"
#include "instruments/ListRows.h"

namespace Sonarello {

namespace {

constexpr int ProgramsOfGroup = 8;  // GM level 1 groups its 128 programs by eight

/// Scopes whose rows a channel can play.
bool IsShown(Scope scope) {
  return scope != Scope::Notes && scope != Scope::CustomNotes && scope != Scope::Companion &&
         scope != Scope::Categories;
}

bool HoldsDrums(Scope scope) {
  return scope == Scope::Drums || scope == Scope::GM2Drums || scope == Scope::CustomDrums ||
         (scope >= Scope::MapDrums1 && scope <= Scope::MapDrums4);
}

/// The sixteen groups of GM, which hold for the capital tones of GS, too.
const std::vector<std::string>& ProgramGroups() {
  static const std::vector<std::string> groups = [] {
    std::vector<std::string> names;
    RowWalk walk(InstrumentFile("standards/LB_Categories.txt"));
    for (std::string_view row; walk.Next(row);)
      if (!IsBlankRow(row)) names.emplace_back(row);
    return names;
  }();
  return groups;
}

struct TTitle {
  std::string_view Stem;
  std::string_view Title;
};
/// Titles of lists whose names do not read as one.
constexpr TTitle Titles[] = {
    {"GMXG", "GM/XG"},        {"PCMUser", "PCM User"},      {"SNAUser", "SN-A User"},
    {"SNSUser", "SN-S User"}, {"User_B1s", "User B1"},      {"User_B2s", "User B2"},
    {"Presets", "Preset"},    {"Panel_Premium", "Premium"},
};
/// The maps of a GS instrument by their number in the list's name.
constexpr std::string_view MapTitles[] = {"SC-55", "SC-88", "SC-88Pro", "SC-8820"};

/// A list's name without the word that says what it lists: "Panel" of "Panel_Voices".
std::string_view StemOf(std::string_view name) {
  constexpr std::string_view words[] = {"Sounds",   "Voices", "DrumSets", "DrumKits",
                                        "DrumsSrc", "Drums",  "DrumSet"};
  for (const std::string_view word : words)
    if (name.ends_with(word)) {
      name.remove_suffix(word.size());
      break;
    }
  if (name.ends_with('_')) name.remove_suffix(1);
  return name;
}

/// What a list is called on its radio button.
std::string TitleOf(const TListSpec& spec, bool isDrums) {
  for (const std::string_view source : {"SourceData", "SourceDrums"})
    if (spec.Name.starts_with(source) && spec.Name.size() == source.size() + 1) {
      const auto map = static_cast<std::size_t>(spec.Name.back() - '1');
      if (map < std::size(MapTitles)) return std::string(MapTitles[map]);
    }
  const std::string_view stem = StemOf(spec.Name);
  if (stem.empty() || stem.starts_with("Source")) return isDrums ? "Drumsets" : "Sounds";
  const auto title = std::ranges::find(Titles, stem, &TTitle::Stem);
  if (title != std::end(Titles)) return std::string(title->Title);
  constexpr std::string_view presets = "Presets";
  constexpr std::string_view boards = "SRX";
  if (stem.starts_with(presets)) return "Preset " + std::string(stem.substr(presets.size()));
  if (stem.starts_with(boards) && stem.size() > boards.size())
    return "SRX-" + std::string(stem.substr(boards.size()));
  return std::string(stem);
}

/// The categories of a bank before its sounds are filled in.
std::vector<TBrowserCategory> EmptyCategories(const TSoundList& list, bool isDrums) {
  std::vector<TBrowserCategory> categories;
  if (isDrums) return {{.Name = {}, .Sounds = {}}};
  if (list.Spec->Layout == Layout::P)
    for (const std::string& group : ProgramGroups())
      categories.push_back({.Name = group, .Sounds = {}});
  else
    for (const std::string_view name : list.Categories)
      categories.push_back({.Name = std::string(name), .Sounds = {}});
  if (categories.empty())
    categories.push_back({.Name = Text("Alle Sounds", "All sounds"), .Sounds = {}});
  return categories;
}

/// True if a bank has the title of another and no sound that is not there, too: the kits of a GS map
/// stand in the list of its sounds and, with their notes, in one of their own.
bool Repeats(const TBrowserBank& bank, const TBrowserBank& other) {
  if (bank.Name != other.Name || bank.IsDrums != other.IsDrums || bank.Rows().empty()) return false;
  return std::ranges::all_of(bank.Rows(), [&](const TPatch& row) {
    return std::ranges::find(other.Rows(), row.Address(), &TPatch::Address) != other.Rows().end();
  });
}

}  // namespace

std::string VoiceLabel(std::string_view name) {
  const std::string_view label = name.substr(0, name.find(" - Premium"));
  return std::string(label.empty() ? "---" : label);
}

TBrowserBanks::TBrowserBanks(const SoundSet& set) {
  for (const TSoundList& list : set.Lists()) {
    const Scope scope = list.Spec->Scope;
    if (!IsShown(scope)) continue;
    // The user's lists show without rows, too, so that one can see that there may be some.
    if (!list.Rows.empty() || list.Spec->Kind == ListKind::User) Add(list, false);
    if (!list.Kits.empty()) Add(list, true);
  }
}

void TBrowserBanks::Add(const TSoundList& list, bool kits) {
  TBrowserBank bank;
  bank.List = &list;
  bank.Kits = kits;
  bank.IsDrums = kits || HoldsDrums(list.Spec->Scope);
  bank.Name = TitleOf(*list.Spec, bank.IsDrums);
  if (std::ranges::any_of(banks, [&](const TBrowserBank& other) { return Repeats(bank, other); }))
    return;
  bank.Categories = EmptyCategories(list, bank.IsDrums);
  const bool byProgram = !bank.IsDrums && list.Spec->Layout == Layout::P;
  const std::span<const TPatch> rows = bank.Rows();
  for (std::size_t row = 0; row < rows.size(); ++row) {
    const int group = byProgram ? rows[row].Patch / ProgramsOfGroup : rows[row].CatIndex;
    const auto last = static_cast<int>(bank.Categories.size()) - 1;
    bank.Categories[static_cast<std::size_t>(std::clamp(group, 0, last))].Sounds.push_back(
        static_cast<std::int32_t>(row));
  }
  banks.push_back(std::move(bank));
}

const TPatch* TBrowserBanks::RowAt(const TSoundPlace& place) const noexcept {
  if (place.Bank < 0 || place.Category < 0 || place.Sound < 0) return nullptr;
  if (static_cast<std::size_t>(place.Bank) >= banks.size()) return nullptr;
  const TBrowserBank& bank = banks[static_cast<std::size_t>(place.Bank)];
  if (static_cast<std::size_t>(place.Category) >= bank.Categories.size()) return nullptr;
  const auto& sounds = bank.Categories[static_cast<std::size_t>(place.Category)].Sounds;
  if (static_cast<std::size_t>(place.Sound) >= sounds.size()) return nullptr;
  const std::int32_t row = sounds[static_cast<std::size_t>(place.Sound)];
  return &bank.Rows()[static_cast<std::size_t>(row)];
}

TSoundPlace TBrowserBanks::PlaceOf(const TPatch* row) const noexcept {
  for (std::size_t b = 0; b < banks.size(); ++b) {
    const std::span<const TPatch> rows = banks[b].Rows();
    if (rows.empty() || row < rows.data() || row >= rows.data() + rows.size()) continue;
    const auto index = static_cast<std::int32_t>(row - rows.data());
    for (std::size_t c = 0; c < banks[b].Categories.size(); ++c) {
      // Sounds of a category stand in the order of their rows.
      const auto& sounds = banks[b].Categories[c].Sounds;
      const auto found = std::ranges::lower_bound(sounds, index);
      if (found != sounds.end() && *found == index)
        return {static_cast<int>(b), static_cast<int>(c), static_cast<int>(found - sounds.begin())};
    }
  }
  return {};
}

TSoundText TBrowserBanks::ListText(int bank, const TPatch& row) const {
  const TListSpec& spec = *banks[static_cast<std::size_t>(bank)].List->Spec;
  TSoundText text{.Name = NameWithoutSuffix(row.Name, spec.Suffix), .Badge = {}};
  if (text.Name.empty()) text.Name = "---";
  const std::size_t bracket = text.Name.rfind(" (");
  if (bracket == std::string::npos || bracket == 0 || text.Name.back() != ')') return text;
  text.Badge = text.Name.substr(bracket + 2, text.Name.size() - bracket - 3);
  text.Name.resize(bracket);
  return text;
}

std::vector<TSoundPlace> TBrowserBanks::Search(std::string_view text,
                                               const std::vector<bool>& offered) const {
  std::vector<TSoundPlace> hits;
  const std::string wanted = SmallLetters(text);
  if (wanted.empty()) return hits;
  for (std::size_t b = 0; b < banks.size(); ++b) {
    if (b >= offered.size() || !offered[b]) continue;
    const std::span<const TPatch> rows = banks[b].Rows();
    for (std::size_t c = 0; c < banks[b].Categories.size(); ++c) {
      const auto& sounds = banks[b].Categories[c].Sounds;
      for (std::size_t s = 0; s < sounds.size(); ++s)
        if (SmallLetters(rows[static_cast<std::size_t>(sounds[s])].Name).find(wanted) !=
            std::string::npos)
          hits.push_back({static_cast<int>(b), static_cast<int>(c), static_cast<int>(s)});
    }
  }
  return hits;
}

}  // namespace Sonarello
