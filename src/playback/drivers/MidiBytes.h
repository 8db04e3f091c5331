// Sonarello: MIDI messages in a row of bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "playback/MidiType.h"

namespace Sonarello {

/// Length of the sysex, or rest of one, that a row of bytes begins with: up to and with its F7, else up
/// to the next status byte or the end. Real-time bytes (F8 and up) may stand inside.
[[nodiscard]] inline std::size_t SysexBytes(std::span<const std::uint8_t> bytes) {
  for (std::size_t i = 1; i < bytes.size(); ++i) {
    if (bytes[i] == 0xF7) {
      return i + 1;
    }
    if (bytes[i] >= 0x80 && bytes[i] < 0xF8) {
      return i;
    }
  }
  return bytes.size();
}

/// Calls `take` with each whole message of a row of bytes, in order. The row may begin with the rest of
/// a sysex. Bytes that belong to no whole message are left out; false if there are such.
template <class F>
bool ForEachMessage(std::span<const std::uint8_t> bytes, F&& take) {
  bool whole = true;
  for (std::size_t at = 0; at < bytes.size();) {
    const std::span rest = bytes.subspan(at);
    const bool sysex = rest[0] == 0xF0 || (rest[0] < 0x80 && at == 0);
    std::size_t length =
        sysex ? SysexBytes(rest) : static_cast<std::size_t>(ShortMessageLength(rest[0]));
    bool good = length > 0 && length <= rest.size();
    for (std::size_t i = 1; good && !sysex && i < length; ++i) {
      good = rest[i] < 0x80;
    }
    if (good) {
      take(rest.first(length));
    } else {
      whole = false;
      length = 1;
    }
    at += length;
  }
  return whole;
}

}  // namespace Sonarello
