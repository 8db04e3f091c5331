// Sonarello: which program the desktop opens ".mid" files with, by the freedesktop.org rules.
#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/FileCalls.h"

namespace Sonarello {

/// Where the user's desktop keeps its choices.
struct TAssociationPlaces {
  std::filesystem::path ConfigHome;             ///< $XDG_CONFIG_HOME
  std::filesystem::path DataHome;               ///< $XDG_DATA_HOME
  std::vector<std::filesystem::path> DataDirs;  ///< $XDG_DATA_DIRS
  std::filesystem::path Program;                ///< the program's own file, absolute
};

/// File name of the program's desktop entry.
inline constexpr std::string_view DesktopEntryName = "sonarello.desktop";
/// What ".mid" files are called: the type's name, and the older one that some programs still ask for.
inline constexpr std::string_view MidiMimeTypes[] = {"audio/midi", "audio/x-midi"};

enum class TAssociationOutcome { Done, EntryFailed, ListFailed };
struct TAssociationResult {
  TAssociationOutcome Outcome = TAssociationOutcome::Done;
  std::string File;  ///< the file that could not be written
};

/// Makes the program the one that opens MIDI files: an entry for the user where the system has none,
/// and the user's list of defaults. What others wrote there stays, line by line.
[[nodiscard]] TAssociationResult AssociateWithMID(const TAssociationPlaces& places,
                                                  FileCalls& calls = FileCalls::System());
/// True if the list of defaults names the program for MIDI files.
[[nodiscard]] bool IsAssociatedWithMID(const TAssociationPlaces& places);

/// A list of defaults (mimeapps.list) in which an entry is the default of a type and among its added
/// ones, in front. Everything else stays as it is.
[[nodiscard]] std::string WithDefault(std::string_view list, std::string_view mimeType,
                                      std::string_view entry);
/// A desktop entry that starts a program with files. Raises nothing; any path is quoted.
[[nodiscard]] std::string DesktopEntryOf(std::string_view program);

/// What the user is told afterwards: how to do by hand what the desktop may still ask for.
[[nodiscard]] std::string AssociationText(const TAssociationResult& result);

}  // namespace Sonarello
