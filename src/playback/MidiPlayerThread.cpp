#include "playback/MidiPlayerThread.h"

#include <pthread.h>
#include <sched.h>

#include <chrono>

namespace Sonarello {

namespace {

constexpr std::int64_t PassPeriod = 1000;  // microseconds

void AskForPriority(std::jthread& thread) {
  sched_param priority{};
  priority.sched_priority = sched_get_priority_min(SCHED_FIFO) + 10;
  // Without the right to it the thread keeps its usual priority, which serves, too.
  static_cast<void>(pthread_setschedparam(thread.native_handle(), SCHED_FIFO, &priority));
}

}  // namespace

TMidiPlayerThread::TMidiPlayerThread(TMidiPlayer& player, IClock& clock)
    : thread([this, &player, &clock](const std::stop_token& stop) { Run(stop, player, clock); }) {
  AskForPriority(thread);
}

TMidiPlayerThread::~TMidiPlayerThread() {
  thread.request_stop();
  thread.join();
}

void TMidiPlayerThread::Run(const std::stop_token& stop, TMidiPlayer& player, IClock& clock) {
  WorkingFlag = true;
  std::int64_t deadline = clock.Microseconds();
  while (!stop.stop_requested()) {
    player.PlayMidiData();
    deadline += PassPeriod;
    const std::int64_t now = clock.Microseconds();
    if (deadline < now) deadline = now + PassPeriod;  // a pass that came late is not made up for
    clock.SleepUntil(deadline);
  }
  WorkingFlag = false;
}

std::int64_t SteadyClock::Microseconds() const {
  return std::chrono::duration_cast<std::chrono::microseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

void SteadyClock::SleepUntil(std::int64_t microseconds) {
  std::this_thread::sleep_until(
      std::chrono::steady_clock::time_point(std::chrono::microseconds(microseconds)));
}

}  // namespace Sonarello
