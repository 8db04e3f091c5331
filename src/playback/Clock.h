// Sonarello: the time that playback goes by.
#pragma once

#include <cstdint>

namespace Sonarello {

/// A monotonic clock. The program's is the system's; tests have one that only moves when told to.
class IClock {
 public:
  virtual ~IClock() = default;
  /// Microseconds since some moment before the program began to play. Never goes back.
  [[nodiscard]] virtual std::int64_t Microseconds() const = 0;
  /// Waits until the clock shows a time, or goes on at once if it has passed.
  virtual void SleepUntil(std::int64_t microseconds) = 0;

  [[nodiscard]] std::int64_t Milliseconds() const { return Microseconds() / 1000; }
  void SleepFor(std::int64_t microseconds) { SleepUntil(Microseconds() + microseconds); }
};

}  // namespace Sonarello
