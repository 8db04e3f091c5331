// Sonarello: the bytes of lyrics and chords as a reader sees them.
#pragma once

#include <string>
#include <string_view>

#include "core/Data.h"

namespace Sonarello {

/// A lyric without its marks.
struct TLyricText {
  bool Before = false;  ///< it starts a line
  std::string Text;     ///< bytes as in the file
  bool After = false;   ///< what follows starts a line
};

/// Takes the marks off a lyric: "/", "\", CR and LF at its ends are line marks, CR and LF inside are
/// blanks; "%a" to "%g" in front are marks of language and prompt; "{@...}" and "{#...}" in front tell
/// of the file (MMA RP-026), as do texts of karaoke files that start "@" with one of their letters.
[[nodiscard]] TLyricText ReadLyricText(std::string_view bytes);
/// True for a text that starts a line of karaoke words.
[[nodiscard]] bool IsKaraokeLine(std::string_view bytes) noexcept;
/// True for the first text of a karaoke file ("@K...").
[[nodiscard]] bool IsKaraokeMark(std::string_view bytes) noexcept;

/// Latin-1 as UTF-8. The bytes 0x80 to 0x9F, which Latin-1 leaves empty, count as those of Windows.
[[nodiscard]] std::string FromLatin1(std::string_view bytes);

/// True for an XF chord (43 7B 01 in a sequencer-specific meta).
[[nodiscard]] bool IsXFChord(const TypMidiEvent& event) noexcept;
/// True for a chord of a style (43 7E in a sysex), whose bytes are those of an XF chord.
[[nodiscard]] bool IsStyleChord(const TypMidiEvent& event) noexcept;

}  // namespace Sonarello
