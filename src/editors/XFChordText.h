// Sonarello: names of the chords that XF events hold.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace Sonarello {

/// Root, type, bass root and bass type: bytes 3 to 6 of the event.
using TXFChordBytes = std::array<std::uint8_t, 4>;

/// Name of a chord such as "F#m7/C"; `german`: B is called H, Bb and A# are called B. A root holds an
/// accidental (high nibble, 0 to 6 from "bbb" to "###") and a note (low nibble, 1 to 7 from C to B);
/// one that holds none reads "X". Types are the numbers of the XF chord list; others read "???". The
/// language of the words "no-chord" is the user's.
[[nodiscard]] std::string XFChordName(const TXFChordBytes& chord, bool german);
/// The chord of a name, or none if it is not understood. "X" stands for a chord without root.
[[nodiscard]] std::optional<TXFChordBytes> XFChordOfName(std::string_view name, bool german);

/// The seven bytes of an XF chord event.
[[nodiscard]] std::array<std::uint8_t, 7> XFChordEvent(const TXFChordBytes& chord) noexcept;
/// The chord in an event of seven bytes at least: an XF chord, or a style's chord with the same bytes.
[[nodiscard]] TXFChordBytes XFChordIn(std::span<const std::uint8_t> event) noexcept;

}  // namespace Sonarello
