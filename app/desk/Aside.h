// Sonarello: long work on a thread of its own while the windows stay alive.
#pragma once

#include <QObject>
#include <atomic>
#include <functional>

#include "core/Ports.h"

namespace Sonarello {

/// Hands messages on to another, on the main thread, from whichever thread they come. A message from
/// elsewhere waits until the user has answered.
class AsideMessages final : public IMessages {
 public:
  explicit AsideMessages(IMessages& to) : shown(to) {}
  void Show(const std::string& text) override;
  bool Ask(const std::string& text) override;
  bool Progress(double done) override;

  /// How far the work on another thread has come, 0.0 to 1.0.
  [[nodiscard]] double Done() const { return progress; }
  /// The work is asked to stop where it can.
  void Cancel() { cancelled = true; }
  void Restart() {
    progress = 0;
    cancelled = false;
  }

 private:
  IMessages& shown;
  std::atomic<double> progress = 0;
  std::atomic<bool> cancelled = false;
};

/// Runs `work` on another thread and returns what it returned. Until then windows are painted and
/// timers run; the user's input reaches dialogs only. `tick` is called every 50 ms on the main thread.
bool RunAside(const std::function<bool()>& work, const std::function<void()>& tick);

}  // namespace Sonarello
