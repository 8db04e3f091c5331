#include "desk/SettingsKeys.h"

#include <algorithm>
#include <vector>

#include "core/TextOrder.h"
#include "desk/MyRegistry.h"
#include "desk/SettingsKeyTables.h"
#include "desk/WindowPlaces.h"

namespace Sonarello {

namespace {

TSettingsKey OfOption(const TOption& option) {
  TSettingsKey key;
  key.Key = option.Key;
  key.Kind = option.IsFlag() ? TKeyKind::Flag : TKeyKind::Number;
  if (option.IsFlag())
    key.Member = std::get<0>(option.Member);
  else
    key.Member = std::get<1>(option.Member);
  key.Min = option.Min;
  key.Max = option.Max;
  key.German = option.German;
  key.English = option.English;
  return key;
}

std::vector<TSettingsKey> AllKeys() {
  std::vector<TSettingsKey> keys;
  for (const TOption& option : OptionTable()) keys.push_back(OfOption(option));
  for (const std::span<const TSettingsKey> table : {DeskKeys(), EffectKeys(), KeptKeys()})
    keys.insert(keys.end(), table.begin(), table.end());
  std::ranges::sort(keys, {}, [](const TSettingsKey& key) { return SmallLetters(key.Key); });
  return keys;
}

/// True for a name that begins with `prefix` and goes on with nothing but digits.
bool IsNumbered(std::string_view folded, std::string_view prefix, std::size_t least, std::size_t most) {
  if (!folded.starts_with(prefix)) return false;
  folded.remove_prefix(prefix.size());
  return folded.size() >= least && folded.size() <= most &&
         std::ranges::all_of(folded, [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

std::span<const TSettingsKey> SettingsKeys() {
  static const std::vector<TSettingsKey> keys = AllKeys();
  return keys;
}

const TSettingsKey* FindSettingsKey(std::string_view key) {
  const std::string folded = SmallLetters(key);
  const std::span<const TSettingsKey> keys = SettingsKeys();
  const auto found = std::ranges::lower_bound(
      keys, folded, {}, [](const TSettingsKey& row) { return SmallLetters(row.Key); });
  return found != keys.end() && SmallLetters(found->Key) == folded ? &*found : nullptr;
}

std::string DefaultText(const TSettingsKey& key) {
  static const Options options;
  static const DeskSettings desk;
  struct TReader {
    std::string_view Default;
    std::string operator()(std::monostate) const { return std::string(Default); }
    std::string operator()(bool Options::*member) const { return options.*member ? "1" : "0"; }
    std::string operator()(std::int32_t Options::*member) const {
      return std::to_string(options.*member);
    }
    std::string operator()(bool DeskSettings::*member) const { return desk.*member ? "1" : "0"; }
    std::string operator()(std::int32_t DeskSettings::*member) const {
      return std::to_string(desk.*member);
    }
    std::string operator()(std::string DeskSettings::*member) const { return desk.*member; }
  };
  return std::visit(TReader{key.Default}, key.Member);
}

std::optional<TKeyKind> KindOfKey(std::string_view section, std::string_view key) {
  switch (PlaceKeyOf(key)) {
    case TPlaceKey::Number: return TKeyKind::Number;
    case TPlaceKey::Flag: return TKeyKind::Flag;
    case TPlaceKey::None: break;
  }
  const std::string folded = SmallLetters(key);
  if (!section.empty()) {
    if (folded == "sortsounds" || folded == "patches_withdsps") return TKeyKind::Flag;
    return std::nullopt;
  }
  if (const TSettingsKey* row = FindSettingsKey(key)) return row->Kind;
  if (IsNumbered(folded, "midiinstrument", 2, 2) || IsNumbered(folded, "midioutput", 2, 2) ||
      IsNumbered(folded, "chordtext", 1, 4))
    return TKeyKind::Text;
  return std::nullopt;
}

}  // namespace Sonarello
