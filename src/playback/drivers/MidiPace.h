// Sonarello: how fast an output may be fed without losing anything.
#pragma once

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>

namespace Sonarello {

/// Room in the ring of a JACK output. The server empties it once a cycle; what was written while cycle
/// c ran is out for certain when cycle c + 3 has begun. Never filling it has two reasons: the library
/// waits without end for room in a ring that a dead server no longer empties, and what exceeds a port's
/// buffer in one cycle is lost without a word.
class CyclePace {
 public:
  /// Bytes on their way at once, heads of the entries included: half of the ring.
  static constexpr std::size_t Room = 8192;
  /// Bytes that the ring takes for an entry beside the message.
  static constexpr std::size_t Head = 4;

  /// True if a message may be written now. One larger than the room may go alone.
  [[nodiscard]] bool Fits(std::uint32_t cycle, std::size_t bytes) noexcept {
    const std::size_t waiting = Waiting(cycle);
    return waiting == 0 || waiting + bytes + Head <= Room;
  }
  /// A message has been written; `cycle` was read behind the writing.
  void Written(std::uint32_t cycle, std::size_t bytes) noexcept {
    Waiting(cycle);
    TWritten& slot = slots[cycle % slots.size()];
    slot.Cycle = cycle;
    slot.Bytes += bytes + Head;
  }
  /// Bytes that may not be out yet.
  std::size_t Waiting(std::uint32_t cycle) noexcept {
    std::size_t sum = 0;
    for (TWritten& slot : slots) {
      if (cycle - slot.Cycle >= Delay) {
        slot.Bytes = 0;
      }
      sum += slot.Bytes;
    }
    return sum;
  }

 private:
  static constexpr std::uint32_t Delay = 3;
  struct TWritten {
    std::uint32_t Cycle = 0;
    std::size_t Bytes = 0;
  };
  std::array<TWritten, 4> slots{};
};

/// Room in a buffer that empties at a constant speed.
class WirePace {
 public:
  using TTime = std::chrono::steady_clock::time_point;

  /// `room`: bytes that the buffer holds; `bytesPerSecond`: how fast it empties.
  WirePace(double room, double bytesPerSecond, TTime now)
      : size(room), speed(bytesPerSecond), last(now) {}

  /// True if a message may be written now; one larger than the buffer when that is empty.
  [[nodiscard]] bool Fits(TTime now, std::size_t bytes) noexcept {
    Empty(now);
    return filled <= 0 || filled + static_cast<double>(bytes) <= size;
  }
  void Written(TTime now, std::size_t bytes) noexcept {
    Empty(now);
    filled += static_cast<double>(bytes);
  }

 private:
  void Empty(TTime now) noexcept {
    filled = std::max(0.0, filled - speed * std::chrono::duration<double>(now - last).count());
    last = now;
  }

  double size;
  double speed;
  double filled = 0;
  TTime last;
};

}  // namespace Sonarello
