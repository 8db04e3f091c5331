// Sonarello: every key of the settings: its kind, default, range and meaning.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "core/Options.h"
#include "desk/DeskSettings.h"

namespace Sonarello {

enum class TKeyKind : std::uint8_t { Text, Number, Flag };

/// Where the value of a key lives while the program runs.
using TKeyMember =
    std::variant<std::monostate, bool Options::*, std::int32_t Options::*, bool DeskSettings::*,
                 std::int32_t DeskSettings::*, std::string DeskSettings::*>;

/// A key under its one name.
struct TSettingsKey {
  std::string_view Key;
  TKeyKind Kind = TKeyKind::Text;
  TKeyMember Member;     ///< none: the value stays in the store as it is; `German` says why
  std::int32_t Min = 0;  ///< of a number
  std::int32_t Max = 0;
  std::string_view Default;  ///< as stored, of a key without a member
  std::string_view German;   ///< what it means; with no member, where it belongs
  std::string_view English;
};

/// Every key with a name of its own, in alphabetical order; case does not count.
[[nodiscard]] std::span<const TSettingsKey> SettingsKeys();
[[nodiscard]] const TSettingsKey* FindSettingsKey(std::string_view key);
/// The default of a key as it would be stored.
[[nodiscard]] std::string DefaultText(const TSettingsKey& key);

/// The value of a key as it would be stored; empty for one without a member.
[[nodiscard]] std::string SettingText(const TSettingsKey& key, const Options& options,
                                      const DeskSettings& desk);
/// Sets a key from text; a number is brought into its range. False, and nothing changes, if the text is
/// no number or flag, or the key has no member.
bool SetSetting(const TSettingsKey& key, std::string_view text, Options& options, DeskSettings& desk);

/// What a key of any section holds: of a named key, of a window's place, of a numbered key
/// ("MidiInstrument00", "ChordText1"); nothing if nobody knows it.
[[nodiscard]] std::optional<TKeyKind> KindOfKey(std::string_view section, std::string_view key);

}  // namespace Sonarello
