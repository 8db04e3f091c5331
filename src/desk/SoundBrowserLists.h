// Sonarello: the browser's settings of an instrument, and its lists as the user's files.
#pragma once

#include <string>
#include <string_view>

#include "core/FileCalls.h"
#include "core/Options.h"
#include "core/Ports.h"
#include "core/Settings.h"
#include "desk/SoundBrowserBanks.h"

namespace Sonarello {

/// What a browser remembers, in the section of its instrument's name.
struct TBrowserSettings {
  static constexpr int NotPlaced = -9999;  ///< place of a window that has not been placed yet

  bool SortSounds = true;
  bool Patches_WithDSPs = true;
  int PatchesFormHeight = 322;
  int PatchesFormLeft = NotPlaced;
  int PatchesFormTop = NotPlaced;

  friend bool operator==(const TBrowserSettings&, const TBrowserSettings&) = default;
};
[[nodiscard]] TBrowserSettings ReadBrowserSettings(const ISettings& settings,
                                                   std::string_view instrument);

/// How the lists of an instrument (catalogue number) are loaded: `SortSounds` is its own setting.
[[nodiscard]] TLoadSettings BrowserLoadSettings(const ISettings& settings, const Options& options,
                                                int instrumValue);

/// Turns the sorted display of an instrument on or off. It shows with the next start, which the user
/// is told.
void SetSortSounds(ISettings& settings, IMessages& messages, std::string_view instrument, bool sort);

/// The entry of the popup that saves a bank's list, such as "save Panel voices"; empty for a bank that
/// has no such entry: one without a file name or without sounds, or the user's own.
[[nodiscard]] std::string SaveVoicesText(const TBrowserBank& bank);

/// Saves a bank's list in its file in a folder (UTF-8). A file that is there is only written over if
/// the user wants it; a failure is told. False if nothing was written.
bool SaveVoices(const TBrowserBank& bank, std::string_view DataPath, IMessages& messages,
                FileCalls& calls = FileCalls::System());

/// Gives a sound of the user's own list another name, in the file. Tabs and line breaks become blanks.
/// False, and nothing happens, for another bank's sound or an empty name; a failure is told. The sound
/// set is to be loaded anew afterwards.
bool RenameCustomSound(const TBrowserBank& bank, std::int32_t row, std::string_view name,
                       std::string_view DataPath, IMessages& messages,
                       FileCalls& calls = FileCalls::System());

}  // namespace Sonarello
