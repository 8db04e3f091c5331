// Sonarello: backups of a changed song, written by a timer.
#pragma once

#include <ctime>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "core/FileCalls.h"
#include "core/Options.h"
#include "core/Ports.h"
#include "core/Song.h"
#include "playback/SongGate.h"

namespace Sonarello {

/// What backups are made of. Everything outlives the object that is handed it.
struct TAutoBackupParts {
  Song& song;
  const Options& options;  ///< `DataPath` is where the folder of the backups stands
  const IRoutes& routes;
  const SongHooks& hooks;
  SongGate& gate;
  bool& AutoBackupChanged;  ///< set by everything that changes the song
};

/// Writes a changed song into "AutoBackups" in `DataPath`, at each tick of a timer that has a reason
/// to. Neither the song's name nor its modified state change. Runs on the main thread, also while the
/// player runs: the song is encoded in memory with the gate held, so that a backup is the song of one
/// moment; the file is written when the gate is free again. A backup must not open a dialog over a
/// playing song: that it failed is told by `Failure`.
class TAutoBackup {
 public:
  static constexpr int Interval = 600'000;  ///< ms between ticks
  static constexpr std::string_view Folder = "AutoBackups";

  explicit TAutoBackup(const TAutoBackupParts& parts, FileCalls& calls = FileCalls::System())
      : p(parts), files(calls) {}

  bool AutoBackupEnabled = true;
  std::string AutoBackupFileName;  ///< path of the last backup that was tried
  /// The local time; tests hand in their own.
  std::function<std::tm()> Clock = LocalTime;
  /// Saves the hosted instruments' set beside a backup; it is told the backup's path without ".mid".
  std::function<void(const std::string&)> SaveVSTiSet;

  /// Writes a backup if backups are on, the song has tracks and was changed since the last tick. True
  /// if one was written. A write that failed is tried again at the next tick.
  bool Tick();

  /// When the last backup of this run was written.
  [[nodiscard]] const std::optional<std::tm>& LastBackup() const noexcept { return lastBackup; }
  /// Why the last backup was not written, for the user: until one is written again, or backups are
  /// switched off. Empty when all is well.
  [[nodiscard]] std::string Failure() const { return AutoBackupEnabled ? failure : std::string(); }

  [[nodiscard]] static std::tm LocalTime();

 private:
  bool Write();

  TAutoBackupParts p;
  FileCalls& files;
  std::optional<std::tm> lastBackup;
  std::string failure;
};

/// File name of a backup: the song's name (path, UTF-8) without folder and last four characters, "_",
/// the time and ".mid".
[[nodiscard]] std::string AutoBackupNameOf(std::string_view songPath, const std::tm& time);
/// Name of a song in the names of its backups: what stands in front of "_" and the time.
[[nodiscard]] std::string AutoBackupStemOf(std::string_view songPath);

}  // namespace Sonarello
