#include "desk/DeskSettings.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "desk/SettingsKeys.h"

namespace Sonarello {

namespace {

constexpr int MostChordTexts = 999;

std::string ChordTextKey(std::size_t number) { return "ChordText" + std::to_string(number); }

/// Where settings are read into.
struct TTarget {
  Options* SongOptions;
  DeskSettings* Desk;

  template <typename T>
  T& At(T Options::*member) const {
    return SongOptions->*member;
  }
  template <typename T>
  T& At(T DeskSettings::*member) const {
    return Desk->*member;
  }
};

void LoadKey(const ISettings& settings, const TSettingsKey& key, const TTarget& target) {
  const auto take = [&]<typename Member>(Member member) {
    if constexpr (!std::is_same_v<Member, std::monostate>) {
      auto& value = target.At(member);
      using Value = std::remove_reference_t<decltype(value)>;
      if constexpr (std::is_same_v<Value, bool>)
        value = settings.ReadBool({}, key.Key, value);
      else if constexpr (std::is_same_v<Value, std::string>)
        value = settings.ReadString({}, key.Key, value);
      else
        value = std::clamp(settings.ReadInteger({}, key.Key, value), key.Min, key.Max);
    }
  };
  std::visit(take, key.Member);
}

std::optional<std::string> TextOf(const TSettingsKey& key, const Options& options,
                                  const DeskSettings& desk) {
  const auto text = [&]<typename Member>(Member member) -> std::optional<std::string> {
    if constexpr (std::is_same_v<Member, std::monostate>) {
      return std::nullopt;
    } else {
      const auto& value = [&]() -> const auto& {
        if constexpr (std::is_invocable_v<Member, const Options&>)
          return options.*member;
        else
          return desk.*member;
      }
      ();
      using Value = std::remove_cvref_t<decltype(value)>;
      if constexpr (std::is_same_v<Value, bool>)
        return value ? "1" : "0";
      else if constexpr (std::is_same_v<Value, std::string>)
        return value;
      else
        return std::to_string(value);
    }
  };
  return std::visit(text, key.Member);
}

void LoadChordTexts(const ISettings& settings, DeskSettings& desk) {
  const int count = settings.ReadInteger({}, "ChordTextCounter", -1);
  if (count < 0) return;
  std::vector<std::string> texts;
  for (std::size_t i = 1; i <= static_cast<std::size_t>(std::min(count, MostChordTexts)); ++i) {
    std::string text = settings.ReadString({}, ChordTextKey(i), {});
    if (!text.empty()) texts.push_back(std::move(text));
  }
  desk.ChordTexts = std::move(texts);
}

void StoreChordTexts(ISettings& settings, const DeskSettings& desk) {
  DeskSettings stored;
  LoadChordTexts(settings, stored);
  if (stored.ChordTexts == desk.ChordTexts) return;
  const std::size_t count = std::min<std::size_t>(desk.ChordTexts.size(), MostChordTexts);
  const int before = std::min(settings.ReadInteger({}, "ChordTextCounter", 0), MostChordTexts);
  for (std::size_t i = 0; i < count; ++i)
    settings.WriteString({}, ChordTextKey(i + 1), desk.ChordTexts[i]);
  for (int i = static_cast<int>(count); i < before; ++i)
    settings.DeleteValue({}, ChordTextKey(static_cast<std::size_t>(i) + 1));
  settings.WriteInteger({}, "ChordTextCounter", static_cast<int>(count));
}

}  // namespace

std::int32_t WindowScaleOf(const DeskSettings& settings) {
  const auto last = static_cast<std::int32_t>(std::size(ScalePercents)) - 1;
  return ScalePercents[std::clamp(settings.ScaleIndex, 0, last)];
}

void LoadSettings(const ISettings& settings, Options& options, DeskSettings& desk) {
  std::string dataPath = std::move(options.DataPath);
  options = {};
  options.DataPath = std::move(dataPath);
  desk = {};
  for (const TSettingsKey& key : SettingsKeys()) LoadKey(settings, key, {&options, &desk});
  LoadChordTexts(settings, desk);
}

void StoreSettings(ISettings& settings, const Options& options, const DeskSettings& desk) {
  Options storedOptions;
  DeskSettings storedDesk;
  LoadSettings(settings, storedOptions, storedDesk);
  for (const TSettingsKey& key : SettingsKeys()) {
    const std::optional<std::string> now = TextOf(key, options, desk);
    if (now && now != TextOf(key, storedOptions, storedDesk)) settings.WriteString({}, key.Key, *now);
  }
  StoreChordTexts(settings, desk);
}

std::string SettingText(const TSettingsKey& key, const Options& options, const DeskSettings& desk) {
  return TextOf(key, options, desk).value_or(std::string());
}

bool SetSetting(const TSettingsKey& key, std::string_view text, Options& options, DeskSettings& desk) {
  if (std::holds_alternative<std::monostate>(key.Member)) return false;
  // The reader of stored settings knows what a number and a flag look like.
  MemorySettings one;
  one.WriteString({}, key.Key, text);
  if (key.Kind == TKeyKind::Number &&
      one.ReadInteger({}, key.Key, 0) != one.ReadInteger({}, key.Key, 1))
    return false;
  if (key.Kind == TKeyKind::Flag && one.ReadBool({}, key.Key, false) != one.ReadBool({}, key.Key, true))
    return false;
  LoadKey(one, key, {&options, &desk});
  return true;
}

bool IsGerman(const DeskSettings& desk, std::string_view systemLanguage) {
  const std::string_view code = desk.Lang.empty() ? systemLanguage : std::string_view(desk.Lang);
  const auto isLetter = [&](std::size_t i, char small, char big) {
    return code.size() > i && (code[i] == small || code[i] == big);
  };
  return isLetter(0, 'd', 'D') && isLetter(1, 'e', 'E');
}

}  // namespace Sonarello
