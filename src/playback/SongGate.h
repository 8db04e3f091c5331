// Sonarello: who may touch the song at a moment while it plays.
#pragma once

#include <mutex>

namespace Sonarello {

/// Guards what the player and the main thread share: the song's lists and values, the pending values,
/// the player's cursors. Each holds it for moments only: the player during a pass, the main thread
/// around an edit; nobody across a dialog, a file operation or a wait.
class SongGate {
 public:
  [[nodiscard]] std::unique_lock<std::mutex> Enter() { return std::unique_lock(mutex); }

 private:
  std::mutex mutex;
};

}  // namespace Sonarello
