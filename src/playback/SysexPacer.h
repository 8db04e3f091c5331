// Sonarello: long and dense sysex, at the speed of a wire.
#pragma once

#include <cstdint>
#include <vector>

#include "core/Meta.h"

namespace Sonarello {

/// Holds back sysex that comes faster than a MIDI wire carries it (31,250 baud, 10 bits a byte), so
/// that a device's buffer does not overflow and a note behind it does not wait. Up to a burst goes out
/// at once.
class SysexPacer {
 public:
  /// Makes room, so that pacing allocates nothing while a song plays.
  void SetRoutes(std::size_t count) {
    budgets.assign(count, Burst);
    waiting.clear();
    waiting.reserve(Room);
    last = 0;
  }
  /// Hands a message on if the wire is free for it, else keeps it. A message for which there is no room
  /// goes out at once.
  template <class F>
  void Send(std::size_t route, std::uint8_t command, const Meta& bytes, F&& send) {
    const bool crowded = waiting.size() > first;
    if (route >= budgets.size() || (!crowded && budgets[route] >= Cost(bytes)) ||
        waiting.size() == Room)
      return Pay(route, command, bytes, send);
    waiting.push_back({route, command, bytes});
  }
  /// The clock has moved on to `now` (ms): hands on what the wires have room for.
  template <class F>
  void Advance(std::int64_t now, F&& send) {
    const double grown = static_cast<double>(now - last) * BytesPerMillisecond;
    last = now;
    for (double& budget : budgets) budget = budget + grown < Burst ? budget + grown : Burst;
    while (first < waiting.size() && budgets[waiting[first].Route] >= Cost(waiting[first].Bytes)) {
      const TWaiting next = waiting[first++];
      Pay(next.Route, next.Command, next.Bytes, send);
    }
    if (first == waiting.size()) {
      waiting.clear();
      first = 0;
    }
  }
  /// Forgets what waits.
  void Clear() noexcept {
    waiting.clear();
    first = 0;
  }
  [[nodiscard]] std::size_t Waiting() const noexcept { return waiting.size() - first; }

 private:
  static constexpr double BytesPerMillisecond = 3.125;
  static constexpr double Burst = 1024;
  static constexpr std::size_t Room = 4096;

  struct TWaiting {
    std::size_t Route;
    std::uint8_t Command;
    Meta Bytes;
  };

  /// What a message needs at once; one longer than a burst needs a full budget.
  static double Cost(const Meta& bytes) {
    const auto length = static_cast<double>(bytes.size()) + 1;
    return length < Burst ? length : Burst;
  }
  template <class F>
  void Pay(std::size_t route, std::uint8_t command, const Meta& bytes, F&& send) {
    if (route < budgets.size()) budgets[route] -= static_cast<double>(bytes.size()) + 1;
    send(route, command, bytes.Bytes());
  }

  std::vector<double> budgets;  ///< bytes, by route
  std::vector<TWaiting> waiting;
  std::size_t first = 0;  ///< of those that wait
  std::int64_t last = 0;  ///< ms
};

}  // namespace Sonarello
