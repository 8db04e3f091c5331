// Sonarello: what is left of a song when the program or the machine failed.
#pragma once

#include <sys/types.h>

#include <ctime>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "core/FileCalls.h"

namespace Sonarello {

/// A program that runs or ran: its number, and what tells it from a later one of the same number.
struct TProcessMark {
  pid_t Pid = 0;
  std::string Start;  ///< start of the machine and, since then, of the process; empty if not known
  friend bool operator==(const TProcessMark&, const TProcessMark&) = default;
};

/// This process.
[[nodiscard]] TProcessMark OwnProcess();
/// True if the very process still runs. Without knowledge of starts its number decides.
[[nodiscard]] bool IsRunning(const TProcessMark& process);

/// A song that was open when its program ended without order, and its newest backup.
struct TRecoveryOffer {
  std::string SongPath;  ///< UTF-8; empty for a song that was never saved
  std::string BackupPath;
  std::time_t SongTime = 0;  ///< last change of the song's file; 0 if it is gone or never was
  std::time_t BackupTime = 0;
  std::string Mark;  ///< the session's mark, for `Answered`
};

/// Keeps a mark in `DataPath` while a song is open, which only an orderly end takes away. What an old
/// mark and the backups tell is offered at the next start. All times are those of files, so that they
/// compare whatever the clock was set to.
class TRecovery {
 public:
  explicit TRecovery(std::string dataPath, FileCalls& calls = FileCalls::System());

  /// A song (path, UTF-8; empty for a new one) is open from now on; it takes the place of a former one.
  /// False if the mark could not be written: the song works, but would not be offered.
  bool BeginSession(const std::string& songPath);
  /// The song is closed in order.
  void EndSession();

  /// The newest backup that a session left behind which has not ended in order, made during it and
  /// newer than its song; nothing if there is none. Sessions of programs that still run, this one
  /// included, are none. Marks without such a backup are taken away. Call it at start, and again after
  /// `Answered` until there is nothing.
  [[nodiscard]] std::optional<TRecoveryOffer> OfferRecovery();
  /// The user has answered: the offer is not made again.
  void Answered(const TRecoveryOffer& offer);

  /// Who this process is, and who still runs; tests hand in their own.
  TProcessMark Own = OwnProcess();
  std::function<bool(const TProcessMark&)> Runs = IsRunning;

 private:
  [[nodiscard]] std::filesystem::path OwnMark() const;

  std::filesystem::path folder;
  FileCalls& files;
};

/// The question whether the backup shall be opened.
[[nodiscard]] std::string RecoveryQuestion(const TRecoveryOffer& offer);

}  // namespace Sonarello
