#include "app/desk/DeskViews.h"

#include "app/controls/QtText.h"

namespace Sonarello {

namespace {

constexpr int ComingChords = 8;

QString ChordName(const TLyricLines& lyrics, int chord, bool german) {
  if (chord < 0) return {};
  return ToQt(lyrics.XF_ChordsArray[static_cast<std::size_t>(chord)].Name(german));
}

std::vector<LyricSyllable> LineOf(const TLyricLines& lyrics, const TLyricLine& line, bool german) {
  std::vector<LyricSyllable> syllables;
  for (const TLineSyllable& at : line.Syllables)
    syllables.push_back(
        {.text = ToQt(std::string_view(line.Text).substr(at.Begin, at.Length)), .chord = {}});
  for (const TLineChord& chord : line.Chords) {
    std::size_t over = 0;
    while (over + 1 < line.Syllables.size() && line.Syllables[over + 1].Begin <= chord.Begin) ++over;
    if (over < syllables.size() && syllables[over].chord.isEmpty())
      syllables[over].chord = ChordName(lyrics, static_cast<int>(chord.Chord), german);
  }
  return syllables;
}

/// Who is treated, for ears: "K 4" becomes "Kanal 4".
QString SpokenPart(const std::string& part) {
  const std::size_t blank = part.find(' ');
  if (blank == std::string::npos) return ToQt(part);
  return QText("Kanal ", "channel ") + ToQt(part.substr(blank + 1));
}

}  // namespace

QString NoRecording() {
  return QText("Die Aufnahme gehört noch nicht zu dieser Version",
               "Recording is not part of this version yet");
}

LyricView LyricViewOf(const TLyricLines& lyrics, const TLyricMoment& moment, bool german) {
  LyricView view;
  view.chord = ChordName(lyrics, moment.Chord, german);
  view.nextChord = ChordName(lyrics, moment.NextChord, german);
  const auto at = [&](int line) -> const TLyricLine& {
    return lyrics.Lines[static_cast<std::size_t>(line)];
  };
  if (moment.Line >= 0) view.line = LineOf(lyrics, at(moment.Line), german);
  if (moment.NextLine >= 0) view.nextLine = ToQt(at(moment.NextLine).Text);
  if (lyrics.HasLyrics() || moment.NextChord < 0) return view;
  const int end =
      std::min(moment.NextChord + ComingChords, static_cast<int>(lyrics.XF_ChordsArray.size()));
  for (int chord = moment.NextChord; chord < end; ++chord)
    view.comingChords.push_back(ChordName(lyrics, chord, german));
  return view;
}

EffectsView EffectsViewOf(const TEffectRow& effects, bool song) {
  EffectsView view;
  for (const TEffectCell& cell : effects.Cells) {
    EffectView shown{.block = ToQt(cell.BlockName()),
                     .effect = song ? ToQt(cell.EffectName) : QString(),
                     .part = ToQt(cell.Part),
                     .spokenPart = SpokenPart(cell.Part),
                     .on = cell.On,
                     .opens = false,
                     .reason = QText("Die Effekt-Editoren gehören noch nicht zu dieser Version",
                                     "The effect editors are not part of this version yet")};
    (cell.Block == TEffectBlock::DSP ? view.insertions : view.system).push_back(std::move(shown));
  }
  return view;
}

}  // namespace Sonarello
