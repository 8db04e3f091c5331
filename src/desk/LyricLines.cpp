#include "desk/LyricLines.h"

#include <algorithm>
#include <span>
#include <utility>

#include "core/EventList.h"
#include "core/MidiFunctions.h"
#include "core/TextEncoding.h"
#include "desk/LyricLinesText.h"
#include "editors/XFChordText.h"

namespace Sonarello {

namespace {

/// Calls f(event) for each live event of the tracks in use that are not held out, with its track.
template <class F>
void ForEachLive(const Song& song, F&& f) {
  for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t) {
    const TMyTrack& track = song.MidiTrack[static_cast<std::size_t>(t)];
    if (track.TrkIgnore) continue;
    for (PtrMidiEvent e = track.TrkFirstEvent; e != nullptr; e = Following(e))
      if (e->Command >= Sysex && e->DLength > 0) f(*e, t);
  }
}

/// What a track has of the two kinds of lyrics.
struct TLyricCount {
  std::int32_t Lyrics = 0;
  std::int32_t Texts = 0;
  std::int32_t KaraokeLines = 0;
};

struct TLyricCounts {
  std::vector<TLyricCount> Tracks;
  bool IsKaraokeFile = false;
};

TLyricCounts CountLyrics(const Song& song) {
  TLyricCounts counts;
  counts.Tracks.resize(static_cast<std::size_t>(std::max(0, song.NumberOfSourceTracks)));
  ForEachLive(song, [&](const TypMidiEvent& e, std::int32_t t) {
    if (!e.IsMeta(MetaLyric) && !e.IsMeta(MetaText)) return;
    TLyricCount& count = counts.Tracks[static_cast<std::size_t>(t)];
    const std::string_view text = e.Meta.Text();
    if (e.IsMeta(MetaText) && IsKaraokeMark(text)) counts.IsKaraokeFile = true;
    if (ReadLyricText(text).Text.empty()) return;
    if (e.IsMeta(MetaLyric)) {
      ++count.Lyrics;
    } else {
      ++count.Texts;
      if (IsKaraokeLine(text)) ++count.KaraokeLines;
    }
  });
  return counts;
}

/// Texts of a track that are the words of a karaoke song: those of any other track are remarks.
std::int32_t KaraokeTexts(const TLyricCount& count, bool isKaraokeFile) {
  constexpr std::int32_t fewestLines = 2;
  constexpr std::int32_t fewestTexts = 4;  // of a karaoke file without marks of lines
  const bool words = count.KaraokeLines >= fewestLines || (isKaraokeFile && count.Texts >= fewestTexts);
  return words ? count.Texts : 0;
}

}  // namespace

void TLyricLines::Clear() {
  HyphenArray.clear();
  Lines.clear();
  XF_ChordsArray.clear();
  lineStarts.clear();
  nextChords.clear();
  LyricsMetaType = MetaLyric;
  LyricsTrack = -1;
}

void TLyricLines::ReadAndShowLyrics(Song& song) {
  Clear();
  ReadHyphens(song);
  ReadXFChords(song);
  BuildLines();
  PlaceChords();
  SetShownFrom();
  song.HyphenArrayElements = static_cast<std::int32_t>(HyphenArray.size());
}

/// The track with most of the song's lyrics carries them: others repeat them for other voices.
void TLyricLines::ChooseTrack(const Song& song) {
  const TLyricCounts counts = CountLyrics(song);
  std::int32_t most = 0;
  const auto choose = [&](auto&& textsOf, std::int8_t type) {
    for (std::size_t t = 0; t < counts.Tracks.size(); ++t)
      if (const std::int32_t texts = textsOf(counts.Tracks[t]); texts > most) {
        most = texts;
        LyricsTrack = static_cast<std::int32_t>(t);
        LyricsMetaType = type;
      }
  };
  choose([](const TLyricCount& count) { return count.Lyrics; }, MetaLyric);
  if (LyricsTrack >= 0) return;
  choose([&](const TLyricCount& count) { return KaraokeTexts(count, counts.IsKaraokeFile); }, MetaText);
}

void TLyricLines::ReadHyphens(const Song& song) {
  ChooseTrack(song);
  if (LyricsTrack < 0) return;
  const TMyTrack& track = song.MidiTrack[static_cast<std::size_t>(LyricsTrack)];
  std::string bytes;
  ForEachEvent(track, [&](PtrMidiEvent e) {
    if (e->IsMeta(LyricsMetaType) && e->DLength > 0) bytes += e->Meta.Text();
  });
  const bool isUtf8 = IsUTF8(bytes);
  bool startsLine = true;
  ForEachEvent(track, [&](PtrMidiEvent e) {
    if (!e->IsMeta(LyricsMetaType) || e->DLength == 0) return;
    TLyricText text = ReadLyricText(e->Meta.Text());
    if (text.Before) startsLine = true;
    if (!isUtf8) text.Text = FromLatin1(text.Text);
    if (!text.Text.empty()) {
      if (startsLine) lineStarts.push_back(HyphenArray.size());
      startsLine = false;
      HyphenArray.push_back(
          {e, TimeToStr(e->TimePosition), std::move(text.Text), e->Position, e->TimePosition});
    }
    if (text.After) startsLine = true;
  });
}

/// Chords of a style count in songs without XF chords only: some files tell each chord both ways.
void TLyricLines::ReadXFChords(const Song& song) {
  std::vector<TXF_Chords> styleChords;
  ForEachLive(song, [&](const TypMidiEvent& e, std::int32_t) {
    const bool isXF = IsXFChord(e);
    if (!isXF && !IsStyleChord(e)) return;
    const TXFChordBytes bytes = XFChordIn(e.Meta.Bytes());
    TXF_Chords chord;
    chord.ChordName = XFChordName(bytes, false);
    chord.GermanChordName = XFChordName(bytes, true);
    chord.Position = e.Position;
    chord.TimePosition = e.TimePosition;
    chord.ChordOrgValue = bytes[0];
    chord.ChordTone = bytes[1];
    chord.BassOrgValue = bytes[2];
    chord.BassTone = bytes[3];
    (isXF ? XF_ChordsArray : styleChords).push_back(std::move(chord));
  });
  if (XF_ChordsArray.empty()) XF_ChordsArray = std::move(styleChords);
  std::ranges::stable_sort(XF_ChordsArray, {}, &TXF_Chords::Position);
  nextChords.assign(XF_ChordsArray.size(), -1);
  for (std::size_t n = XF_ChordsArray.size(); n-- > 1;)
    nextChords[n - 1] = XF_ChordsArray[n].ChordName == XF_ChordsArray[n - 1].ChordName
                            ? nextChords[n]
                            : static_cast<int>(n);
}

void TLyricLines::UpdateTimes(const Song& song) {
  for (THyphens& hyphen : HyphenArray) {
    hyphen.TimePosition = TimeOfPosition(song, hyphen.Position);
    hyphen.MTC = TimeToStr(hyphen.TimePosition);
  }
  for (TXF_Chords& chord : XF_ChordsArray) chord.TimePosition = TimeOfPosition(song, chord.Position);
  SetShownFrom();
}

// --- Lines

namespace {

/// A syllable as the breaking of lines sees it.
struct TBreak {
  bool Line = false;       ///< a mark starts a line here
  bool Word = false;       ///< a word starts here
  std::size_t Length = 0;  ///< characters from here to the next word
};

std::vector<TBreak> BreaksOf(const std::vector<THyphens>& hyphens,
                             std::span<const std::size_t> starts) {
  std::vector<TBreak> breaks(hyphens.size());
  for (const std::size_t start : starts) breaks[start].Line = true;
  for (std::size_t n = hyphens.size(); n-- > 0;) {
    const std::string& text = hyphens[n].Text;
    breaks[n].Word = n == 0 || text.front() == ' ' || hyphens[n - 1].Text.back() == ' ';
    breaks[n].Length = CharactersOf(text);
    if (n + 1 < hyphens.size() && !breaks[n + 1].Line && !breaks[n + 1].Word)
      breaks[n].Length += breaks[n + 1].Length;
  }
  return breaks;
}

}  // namespace

/// A line ends at its mark, or where the next word would make it too long.
void TLyricLines::BuildLines() {
  const std::vector<TBreak> breaks = BreaksOf(HyphenArray, lineStarts);
  std::size_t length = 0;
  for (std::size_t n = 0; n < HyphenArray.size(); ++n) {
    const std::string& text = HyphenArray[n].Text;
    const bool tooLong = breaks[n].Word && length > 0 && length + breaks[n].Length > LongestLine;
    if (breaks[n].Line || tooLong) {
      Lines.push_back({.Text = {}, .FirstHyphen = n, .Syllables = {}, .Chords = {}, .ShownFrom = 0});
      length = 0;
    }
    TLyricLine& line = Lines.back();
    // Blanks in front of a line's first word would indent it.
    const std::size_t skip = line.Text.empty() ? std::min(text.find_first_not_of(' '), text.size()) : 0;
    line.Syllables.push_back({line.Text.size(), text.size() - skip});
    line.Text += text.substr(skip);
    length += CharactersOf(text);
  }
}

/// A chord stands above the syllable that is sung with it; one between two syllables above the nearer
/// one.
void TLyricLines::PlaceChords() {
  if (HyphenArray.empty()) return;
  for (std::size_t c = 0; c < XF_ChordsArray.size(); ++c) {
    const std::int64_t position = XF_ChordsArray[c].Position;
    const auto behind = std::ranges::upper_bound(HyphenArray, position, {}, &THyphens::Position);
    auto nearest = behind == HyphenArray.begin() ? behind : behind - 1;
    if (behind != HyphenArray.end() &&
        std::int64_t{behind->Position} - position < position - nearest->Position)
      nearest = behind;
    const auto hyphen = static_cast<std::size_t>(nearest - HyphenArray.begin());
    auto line = std::ranges::upper_bound(Lines, hyphen, {}, &TLyricLine::FirstHyphen) - 1;
    line->Chords.push_back({c, line->Syllables[hyphen - line->FirstHyphen].Begin});
  }
}

/// A line takes over in the middle of the pause in front of it, so that a singer sees it in time.
void TLyricLines::SetShownFrom() {
  constexpr std::int32_t mostAhead = 1500;  // ms
  for (std::size_t n = 1; n < Lines.size(); ++n) {
    const std::int32_t first = HyphenArray[Lines[n].FirstHyphen].TimePosition;
    const std::int32_t last = HyphenArray[Lines[n].FirstHyphen - 1].TimePosition;
    Lines[n].ShownFrom = first - std::clamp((first - last) / 2, 0, mostAhead);
  }
  if (!Lines.empty()) Lines.front().ShownFrom = 0;
}

// --- Moments

namespace {

/// Index of the last element at or before a time, -1 if there is none.
template <class Range, class Member>
int LastAt(const Range& range, std::int32_t time, Member member) {
  const auto behind = std::ranges::upper_bound(range, time, {}, member);
  return static_cast<int>(behind - range.begin()) - 1;
}

}  // namespace

int TLyricLines::CurrentHyphen(std::int32_t timePosition) const {
  return LastAt(HyphenArray, timePosition, &THyphens::TimePosition);
}

TLyricMoment TLyricLines::At(std::int32_t timePosition) const {
  TLyricMoment moment;
  if (!Lines.empty()) {
    moment.Line = std::max(0, LastAt(Lines, timePosition, &TLyricLine::ShownFrom));
    const TLyricLine& line = Lines[static_cast<std::size_t>(moment.Line)];
    const int first = static_cast<int>(line.FirstHyphen);
    moment.Syllable = std::max(-1, CurrentHyphen(timePosition) - first);
    moment.Syllable = std::min(moment.Syllable, static_cast<int>(line.Syllables.size()) - 1);
    if (moment.Line + 1 < static_cast<int>(Lines.size())) moment.NextLine = moment.Line + 1;
  }
  moment.Chord = LastAt(XF_ChordsArray, timePosition, &TXF_Chords::TimePosition);
  if (moment.Chord >= 0)
    moment.NextChord = nextChords[static_cast<std::size_t>(moment.Chord)];
  else if (HasChords())
    moment.NextChord = 0;
  return moment;
}

}  // namespace Sonarello
