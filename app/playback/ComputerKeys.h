// The computer's keyboard as a piano.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace Sonarello {

/// The semitones above the lowest key that a key of the computer's keyboard plays, by its place: the
/// lowest row of letters is an octave and a bit with its black keys in the row above, the upper row of
/// letters begins an octave higher with its black keys among the digits. `scanCode` is the number by
/// which X11 and Wayland know the place (that of Linux's input events and 8), so that what is printed
/// on the key does not count. Nothing for other places.
[[nodiscard]] constexpr std::optional<int> SemitoneOfKey(std::uint32_t scanCode) {
  struct TKeyRow {
    std::uint32_t First;                    ///< scan code of the leftmost key
    std::array<std::int8_t, 12> Semitones;  ///< from left to right; -1 between black keys
  };
  constexpr std::array rows{
      TKeyRow{52, {0, 2, 4, 5, 7, 9, 11, 12, 14, 16, -1, -1}},        // z to /
      TKeyRow{39, {1, 3, -1, 6, 8, 10, -1, 13, 15, -1, -1, -1}},      // s to ;
      TKeyRow{24, {12, 14, 16, 17, 19, 21, 23, 24, 26, 28, 29, 31}},  // q to ]
      TKeyRow{11, {13, 15, -1, 18, 20, 22, -1, 25, 27, -1, 30, -1}},  // 2 to =
  };
  for (const TKeyRow& row : rows) {
    if (scanCode < row.First || scanCode - row.First >= row.Semitones.size()) continue;
    const int semitone = row.Semitones[scanCode - row.First];
    if (semitone >= 0) return semitone;
  }
  return std::nullopt;
}

}  // namespace Sonarello
