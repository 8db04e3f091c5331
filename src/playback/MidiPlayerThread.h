// Sonarello: the thread that plays.
#pragma once

#include <atomic>
#include <thread>

#include "playback/MidiPlayer.h"

namespace Sonarello {

/// Calls the player's pass about every millisecond, by deadlines on the clock. Asks the system for
/// real-time priority and runs well without. Ends with the object.
class TMidiPlayerThread {
 public:
  TMidiPlayerThread(TMidiPlayer& player, IClock& clock);
  TMidiPlayerThread(const TMidiPlayerThread&) = delete;
  TMidiPlayerThread& operator=(const TMidiPlayerThread&) = delete;
  ~TMidiPlayerThread();

  std::atomic<bool> WorkingFlag = false;  ///< true while the thread's loop runs

 private:
  void Run(const std::stop_token& stop, TMidiPlayer& player, IClock& clock);

  std::jthread thread;
};

/// The system's monotonic clock.
class SteadyClock : public IClock {
 public:
  [[nodiscard]] std::int64_t Microseconds() const override;
  void SleepUntil(std::int64_t microseconds) override;
};

}  // namespace Sonarello
