// Sonarello: a song's lyrics as lines of syllables, with the chords above them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/Song.h"

namespace Sonarello {

/// One syllable.
struct THyphens {
  PtrMidiEvent MidiEvent = nullptr;  ///< its meta; valid until events are removed
  std::string MTC;                   ///< its time as a text
  std::string Text;                  ///< UTF-8, without the marks of lines
  std::int32_t Position = 0;         ///< ticks
  std::int32_t TimePosition = 0;     ///< ms
};

/// One XF chord.
struct TXF_Chords {
  std::string ChordName;        ///< "Bb7", "F#m7/E"
  std::string GermanChordName;  ///< the same with H for B and B for Bb
  std::int32_t Position = 0;    ///< ticks
  std::int32_t TimePosition = 0;
  std::uint8_t ChordOrgValue = 0;  ///< root, type, root of the bass, type of the bass as in the file
  std::uint8_t ChordTone = 0;
  std::uint8_t BassOrgValue = 0;
  std::uint8_t BassTone = 0;

  [[nodiscard]] const std::string& Name(bool useGermanChords) const noexcept {
    return useGermanChords ? GermanChordName : ChordName;
  }
};

/// A piece of a line's text that is sung at once.
struct TLineSyllable {
  std::size_t Begin = 0;  ///< bytes in the line's text
  std::size_t Length = 0;
};
/// A chord above a line.
struct TLineChord {
  std::size_t Chord = 0;  ///< index in `Chords`
  std::size_t Begin = 0;  ///< byte of the line's text above which it stands
};
/// A line of the lyric bar.
struct TLyricLine {
  std::string Text;                      ///< UTF-8
  std::size_t FirstHyphen = 0;           ///< index in `HyphenArray`
  std::vector<TLineSyllable> Syllables;  ///< one for each syllable from there on
  std::vector<TLineChord> Chords;
  std::int32_t ShownFrom = 0;  ///< ms from which the line is the current one
};

/// What the lyric bar shows at a moment. Indices, -1 if there is none.
struct TLyricMoment {
  int Line = -1;       ///< current line
  int Syllable = -1;   ///< current syllable, counted in the line; -1: none of it is sung yet
  int NextLine = -1;   ///< the line below
  int Chord = -1;      ///< chord in force
  int NextChord = -1;  ///< the next one with another name
  friend bool operator==(const TLyricMoment&, const TLyricMoment&) = default;
};

/// Reads lyrics and XF chords of a song once and finds moments by binary search. Lyric metas carry the
/// lyrics, in songs without them the texts of a karaoke track. Bytes are read as UTF-8 where all of a
/// song's are valid, else as Latin-1.
class TLyricLines {
 public:
  /// Longest line, in characters; longer ones go on with the next word in a line of their own.
  static constexpr std::size_t LongestLine = 80;

  std::vector<THyphens> HyphenArray;
  std::vector<TLyricLine> Lines;
  std::vector<TXF_Chords> XF_ChordsArray;
  std::int8_t LyricsMetaType = MetaLyric;  ///< 5, or 1 for karaoke texts
  std::int32_t LyricsTrack = -1;           ///< index in `MidiTrack`, -1 without lyrics

  /// Reads everything anew; tells `song.HyphenArrayElements`. Walks the song once; call it when songs
  /// or their events change, with the gate held while the player runs.
  void ReadAndShowLyrics(Song& song);
  /// Takes over new times of the same events, after a change of tempo. Needs the gate as above.
  void UpdateTimes(const Song& song);
  void Clear();

  [[nodiscard]] bool HasLyrics() const noexcept { return !HyphenArray.empty(); }
  [[nodiscard]] bool HasChords() const noexcept { return !XF_ChordsArray.empty(); }

  /// What is shown at a time (ms). Two binary searches.
  [[nodiscard]] TLyricMoment At(std::int32_t timePosition) const;
  /// Index of the syllable that is sung at a time, -1 before the first.
  [[nodiscard]] int CurrentHyphen(std::int32_t timePosition) const;

 private:
  void ChooseTrack(const Song& song);
  void ReadHyphens(const Song& song);
  void ReadXFChords(const Song& song);
  void BuildLines();
  void PlaceChords();
  void SetShownFrom();

  std::vector<std::size_t> lineStarts;  ///< syllables that begin a line by a mark
  std::vector<int> nextChords;          ///< by chord: the next one with another name, -1 if none
};

}  // namespace Sonarello
