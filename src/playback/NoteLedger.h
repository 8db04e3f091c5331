// Sonarello: which notes sound on the devices.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "core/Data.h"

namespace Sonarello {

/// Counts the notes that were started on each route, wire channel and key, and not yet ended. A note
/// ends when as many note-offs have gone out as note-ons.
class NoteLedger {
 public:
  /// Makes room for routes, so that counting allocates nothing.
  void SetRoutes(std::size_t count) { counts.resize(count * RouteSize); }
  /// Takes note of a message that goes out.
  void Sent(std::size_t route, std::uint8_t status, std::uint8_t key, std::uint8_t velocity) noexcept {
    const std::uint8_t kind = status & 0xF0;
    if ((kind != NoteOn && kind != NoteOff) || (route + 1) * RouteSize > counts.size()) return;
    std::uint8_t& count = counts[route * RouteSize + (status & 0x0FU) * KeyCount + (key & 0x7FU)];
    if (kind == NoteOn && velocity > 0) {
      if (count < 255 && count++ == 0) ++sounding;
    } else if (count > 0 && --count == 0) {
      --sounding;
    }
  }
  [[nodiscard]] bool Empty() const noexcept { return sounding == 0; }
  /// Calls end(route, channel, key) once for every note that sounds, and forgets all of them.
  template <class F>
  void EndAll(F&& end) {
    EndIf([](std::size_t, int) { return true; }, end);
  }
  /// The same for the notes on routes and channels that `which(route, channel)` picks.
  template <class W, class F>
  void EndIf(W&& which, F&& end) {
    if (sounding == 0) return;
    for (std::size_t i = 0; i < counts.size(); ++i) {
      if (counts[i] == 0) continue;
      const std::size_t route = i / RouteSize;
      const int channel = static_cast<int>(i % RouteSize / KeyCount);
      if (!which(route, channel)) continue;
      counts[i] = 0;
      --sounding;
      end(route, channel, static_cast<std::uint8_t>(i % KeyCount));
    }
  }

 private:
  static constexpr std::size_t RouteSize = std::size_t{ChannelCount} * KeyCount;
  std::vector<std::uint8_t> counts;  ///< by route, channel, key
  std::size_t sounding = 0;          ///< entries above 0
};

}  // namespace Sonarello
