#include "desk/LyricLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/TextEncoding.h"
#include "desk/LyricLinesText.h"
#include "helpers/SongBuilder.h"
#include "playback/LiveTempo.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A song at 125 bpm (a tick is a millisecond) whose lyrics and chords are written down.
struct LyricBench : TestSong {
  LyricBench() { NewTrack().Tempo(0, 480000).NewTrack(); }
  LyricBench& Lyric(std::int32_t position, std::string_view text, int type = MetaLyric) {
    Put(NewMeta(song.Pool, type, text, position));
    return *this;
  }
  LyricBench& Chord(std::int32_t position, std::initializer_list<int> bytes) {
    std::vector<std::uint8_t> payload = {0x43, 0x7B, 0x01};
    for (const int byte : bytes) payload.push_back(static_cast<std::uint8_t>(byte));
    Put(NewMeta(song.Pool, MetaSequencerSpecific, payload, position));
    return *this;
  }
  LyricBench& Read() {
    Finish().Map();
    lyrics.ReadAndShowLyrics(song);
    return *this;
  }
  [[nodiscard]] std::vector<std::string> Lines() const {
    std::vector<std::string> texts;
    for (const TLyricLine& line : lyrics.Lines) texts.push_back(line.Text);
    return texts;
  }
  /// A line with its syllables in bars, "Should| auld".
  [[nodiscard]] std::string Syllables(std::size_t index) const {
    const TLyricLine& line = lyrics.Lines.at(index);
    std::string text;
    for (const TLineSyllable& syllable : line.Syllables)
      text += (text.empty() ? "" : "|") + line.Text.substr(syllable.Begin, syllable.Length);
    return text;
  }
  /// Chords above a line, "C7@12".
  [[nodiscard]] std::vector<std::string> ChordsAbove(std::size_t index) const {
    std::vector<std::string> texts;
    for (const TLineChord& chord : lyrics.Lines.at(index).Chords)
      texts.push_back(lyrics.XF_ChordsArray.at(chord.Chord).ChordName + "@" +
                      std::to_string(chord.Begin));
    return texts;
  }

  TLyricLines lyrics;
};

TEST(LyricLines, LyricMetasBecomeLinesOfSyllables) {
  LyricBench b;
  b.Lyric(480, "Should ").Lyric(960, "auld ").Lyric(1200, "ac-").Lyric(1440, "quaint\r");
  b.Lyric(1920, "be ").Lyric(2400, "for-").Lyric(2880, "got").Read();
  EXPECT_THAT(b.Lines(), ElementsAre("Should auld ac-quaint", "be for-got"));
  EXPECT_EQ(b.Syllables(0), "Should |auld |ac-|quaint");
  EXPECT_EQ(b.lyrics.Lines[1].FirstHyphen, 4U);
  EXPECT_EQ(b.lyrics.HyphenArray.size(), 7U);
  EXPECT_EQ(b.song.HyphenArrayElements, 7);
  EXPECT_EQ(b.lyrics.HyphenArray[1].TimePosition, 960);
  EXPECT_EQ(b.lyrics.HyphenArray[1].MTC, "000:00.960");
  EXPECT_EQ(b.lyrics.HyphenArray[1].MidiEvent->Position, 960);
  EXPECT_EQ(b.lyrics.LyricsMetaType, 5);
  EXPECT_EQ(b.lyrics.LyricsTrack, 1);
}

TEST(LyricLines, EveryMarkOfALineCountsInFrontBehindAndAlone) {
  LyricBench b;
  b.Lyric(0, "a\n").Lyric(10, "/b").Lyric(20, "\\c").Lyric(30, "\r").Lyric(40, "d/").Lyric(50, "e");
  b.Lyric(60, "\r\nf").Lyric(70, "").Lyric(80, "g").Read();
  EXPECT_THAT(b.Lines(), ElementsAre("a", "b", "c", "d", "e", "fg"));
}

TEST(LyricLines, MarksInsideASyllableAreText) {
  LyricBench b;
  b.Lyric(0, "he/she ").Lyric(10, "one\rtwo ").Lyric(20, "100%a").Lyric(30, "\x01\ttab").Read();
  EXPECT_THAT(b.Lines(), ElementsAre("he/she one two 100%a tab"));
}

TEST(LyricLines, KaraokeTextsAreReadWhereThereAreNoLyrics) {
  LyricBench b;
  b.Lyric(0, "@KMIDI KARAOKE FILE", MetaText).NewTrack();
  b.Lyric(0, "@LENGL", MetaText).Lyric(0, "@TAuld Lang Syne", MetaText);
  b.Lyric(480, "\\Should", MetaText).Lyric(960, " auld", MetaText);
  b.Lyric(1440, "/be", MetaText).Lyric(1920, "%a for", MetaText).Lyric(2400, "got", MetaText).Read();
  EXPECT_THAT(b.Lines(), ElementsAre("Should auld", "be forgot"));
  EXPECT_EQ(b.lyrics.LyricsMetaType, 1);
  EXPECT_EQ(b.lyrics.LyricsTrack, 2);
}

TEST(LyricLines, ASongWithBothKindsShowsItsLyricsOnly) {
  LyricBench b;
  for (int n = 0; n < 9; ++n) b.Lyric(n, "/no ", MetaText);
  b.NewTrack();
  b.Lyric(5, "yes").Read();
  EXPECT_THAT(b.Lines(), ElementsAre("yes"));
  EXPECT_EQ(b.lyrics.LyricsMetaType, 5);
}

TEST(LyricLines, RemarksAreNoLyrics) {
  LyricBench b;
  b.Lyric(0, "Sequenced by", MetaText).Lyric(0, "me", MetaText).Lyric(1, "/home/me", MetaText);
  b.Lyric(2, "four", MetaText).Lyric(3, "five", MetaText).Read();
  EXPECT_FALSE(b.lyrics.HasLyrics());
  EXPECT_EQ(b.song.HyphenArrayElements, 0);
  EXPECT_EQ(b.lyrics.LyricsTrack, -1);
}

TEST(LyricLines, AKaraokeFileNeedsNoMarksOfLines) {
  LyricBench b;
  b.Lyric(0, "@KMIDI KARAOKE FILE", MetaText).NewTrack();
  for (const char* text : {"one ", "two ", "three ", "four"}) b.Lyric(480, text, MetaText);
  b.Read();
  EXPECT_THAT(b.Lines(), ElementsAre("one two three four"));
}

TEST(LyricLines, TheTrackWithMostLyricsCarriesThem) {
  LyricBench b;
  b.Lyric(480, "voice two").NewTrack();
  b.Lyric(480, "voice ").Lyric(960, "one").NewTrack();
  b.Lyric(480, "three").Lyric(960, "held").Lyric(1000, "out").Track(3).TrkIgnore = true;
  b.Read();
  EXPECT_THAT(b.Lines(), ElementsAre("voice one"));
  EXPECT_EQ(b.lyrics.LyricsTrack, 2);
}

TEST(LyricLines, RemovedEventsAndTagsOfTheFileAreLeftOut) {
  LyricBench b;
  b.Lyric(0, "{@LATIN}").Lyric(0, "{#Title=x}{@LATIN}Oh ").Lyric(10, "gone ");
  MarkRemoved(b.Track(1).TrkLastEvent);
  b.Lyric(20, "{my}").Lyric(30, "{@open").Read();
  EXPECT_THAT(b.Lines(), ElementsAre("Oh {my}{@open"));
}

TEST(LyricLines, TextIsUtf8OrElseLatin1) {
  LyricBench b;
  b.Lyric(0, "St\xC3\xA4").Lyric(10, "dte").Read();
  EXPECT_THAT(b.Lines(), ElementsAre("Städte"));
  LyricBench latin;
  latin.Lyric(0, "St\xE4").Lyric(10, "dte, don\x92t \x81").Lyric(20, "\x81").Lyric(30, "!").Read();
  EXPECT_THAT(latin.Lines(), ElementsAre("Städte, don’t !"));
  EXPECT_EQ(latin.lyrics.HyphenArray.size(), 3U) << "a syllable of nothing is none";
  LyricBench mixed;
  mixed.Lyric(0, "\xC3\xA4").Lyric(10, "\xE4").Read();
  EXPECT_THAT(mixed.Lines(), ElementsAre("Ã¤ä")) << "one encoding for the whole song";
}

TEST(LyricLines, ALineThatIsTooLongGoesOnWithTheNextWord) {
  LyricBench b;
  for (int n = 0; n < 40; ++n) b.Lyric(n * 10, n % 2 == 0 ? "wörd" : "-end ");
  b.Read();
  ASSERT_GE(b.lyrics.Lines.size(), 3U);
  for (const TLyricLine& line : b.lyrics.Lines) {
    EXPECT_LE(CharactersOf(line.Text), TLyricLines::LongestLine);
    EXPECT_TRUE(line.Text.starts_with("wörd-end"));
    EXPECT_TRUE(line.Text.ends_with("-end "));
  }
  LyricBench oneWord;
  for (int n = 0; n < 100; ++n) oneWord.Lyric(n, "la-");
  oneWord.Read();
  EXPECT_EQ(oneWord.lyrics.Lines.size(), 1U) << "no line breaks a word";
}

TEST(LyricLines, BlanksInFrontOfALineAreNotShown) {
  LyricBench b;
  b.Lyric(0, "/  so ").Lyric(10, " be").Lyric(20, " it").Read();
  EXPECT_THAT(b.Lines(), ElementsAre("so  be it"));
  EXPECT_EQ(b.Syllables(0), "so | be| it");
}

TEST(LyricLines, AMomentHasItsLineItsSyllableAndTheNextLine) {
  LyricBench b;
  b.Lyric(1000, "a ").Lyric(2000, "b\r").Lyric(4000, "c ").Lyric(5000, "d\r").Lyric(20000, "e").Read();
  const auto at = [&](std::int32_t time) { return b.lyrics.At(time); };
  EXPECT_EQ(at(0), (TLyricMoment{0, -1, 1, -1, -1}));
  EXPECT_EQ(at(999), (TLyricMoment{0, -1, 1, -1, -1}));
  EXPECT_EQ(at(1000), (TLyricMoment{0, 0, 1, -1, -1}));
  EXPECT_EQ(at(2999), (TLyricMoment{0, 1, 1, -1, -1}));
  EXPECT_EQ(at(3000), (TLyricMoment{1, -1, 2, -1, -1})) << "in the middle of the pause";
  EXPECT_EQ(at(4000), (TLyricMoment{1, 0, 2, -1, -1}));
  EXPECT_EQ(at(18499), (TLyricMoment{1, 1, 2, -1, -1}));
  EXPECT_EQ(at(18500), (TLyricMoment{2, -1, -1, -1, -1})) << "a long pause shows it 1.5 s ahead";
  EXPECT_EQ(at(1'000'000), (TLyricMoment{2, 0, -1, -1, -1}));
  EXPECT_EQ(b.lyrics.CurrentHyphen(999), -1);
  EXPECT_EQ(b.lyrics.CurrentHyphen(4500), 2);
}

TEST(LyricLines, MomentsAreThoseOfAWalk) {
  LyricBench b;
  for (int n = 0; n < 500; ++n) b.Lyric(n * 37 + n % 7, n % 6 == 5 ? "x\r" : "x ");
  b.Read();
  for (int time = 0; time < 19000; time += 13) {
    int walked = -1;
    while (walked + 1 < 500 &&
           b.lyrics.HyphenArray[static_cast<std::size_t>(walked) + 1].TimePosition <= time)
      ++walked;
    ASSERT_EQ(b.lyrics.CurrentHyphen(time), walked);
    const TLyricMoment moment = b.lyrics.At(time);
    const auto line = static_cast<std::size_t>(moment.Line);
    if (moment.Syllable >= 0) {
      ASSERT_EQ(static_cast<int>(b.lyrics.Lines[line].FirstHyphen) + moment.Syllable, walked);
    }
  }
}

TEST(LyricLines, AChangeOfTempoMovesTheTimes) {
  LyricBench b;
  b.Chord(1000, {0x31, 0, 0x31, 0}).Lyric(1000, "a\r").Lyric(3000, "b").Read();
  b.functions.UpdateTimeZoneData();
  ApplyTempoOffset(b.song, b.functions, 125);
  b.lyrics.UpdateTimes(b.song);
  EXPECT_EQ(b.lyrics.HyphenArray[1].TimePosition, 1500);
  EXPECT_EQ(b.lyrics.HyphenArray[1].MTC, "000:01.500");
  EXPECT_EQ(b.lyrics.XF_ChordsArray[0].TimePosition, 500);
  EXPECT_EQ(b.lyrics.Lines[1].ShownFrom, 1000);
  EXPECT_EQ(b.lyrics.At(1500).Syllable, 0);
}

TEST(LyricLines, ChordsStandAboveTheirSyllables) {
  LyricBench b;
  b.Chord(0, {0x34, 0, 0x34, 0}).Lyric(480, "Should ").Lyric(960, "auld ");
  b.Chord(970, {0x31, 19, 0x31, 19}).Chord(1430, {0x34, 0, 0x34, 0}).Lyric(1440, "ac-");
  b.Lyric(1920, "quaint\r").Lyric(2400, "ance").Chord(9000, {0x27, 0, 0x27, 0}).Read();
  EXPECT_THAT(b.ChordsAbove(0), ElementsAre("F@0", "C7@7", "F@12"));
  EXPECT_THAT(b.ChordsAbove(1), ElementsAre("Bb@0"));
}

TEST(LyricLines, TheNextChordIsOneWithAnotherName) {
  LyricBench b;
  for (const auto& [position, root] : {std::pair{100, 0x31}, {200, 0x31}, {300, 0x34}, {400, 0x34}})
    b.Chord(position, {root, 0, root, 0});
  b.Read();
  const auto chords = [&](std::int32_t time) {
    const TLyricMoment moment = b.lyrics.At(time);
    return std::pair{moment.Chord, moment.NextChord};
  };
  EXPECT_EQ(chords(0), (std::pair{-1, 0}));
  EXPECT_EQ(chords(100), (std::pair{0, 2}));
  EXPECT_EQ(chords(299), (std::pair{1, 2}));
  EXPECT_EQ(chords(300), (std::pair{2, -1}));
  EXPECT_EQ(chords(9000), (std::pair{3, -1}));
  EXPECT_EQ(b.lyrics.At(0).Line, -1);
  EXPECT_FALSE(b.lyrics.HasLyrics());
  EXPECT_TRUE(b.lyrics.HasChords());
}

TEST(LyricLines, ChordsOfAStyleCountWithoutXFChordsOnly) {
  LyricBench b;
  const std::uint8_t style[] = {0x43, 0x7E, 0x02, 0x32, 8, 0x32, 8, 0xF7};
  b.Put(NewSysex(b.song.Pool, style, 100));
  const std::uint8_t other[] = {0x43, 0x7E, 0x00, 0x08, 0x7F, 0xF7};
  b.Put(NewSysex(b.song.Pool, other, 200));
  b.Read();
  ASSERT_EQ(b.lyrics.XF_ChordsArray.size(), 1U);
  EXPECT_EQ(b.lyrics.XF_ChordsArray[0].ChordName, "Dm");
  EXPECT_EQ(b.lyrics.XF_ChordsArray[0].ChordOrgValue, 0x32);
  EXPECT_EQ(b.lyrics.XF_ChordsArray[0].BassTone, 8);
  LyricBench both;
  both.Put(NewSysex(both.song.Pool, style, 100));
  both.Chord(100, {0x31, 0, 0x31, 0}).Read();
  ASSERT_EQ(both.lyrics.XF_ChordsArray.size(), 1U);
  EXPECT_EQ(both.lyrics.XF_ChordsArray[0].ChordName, "C");
}

TEST(LyricLines, AChordIsCalledAsInTheEventList) {
  LyricBench b;
  b.Chord(0, {0x27, 10, 0x37, 127}).Chord(100, {0x20, 8, 0x20, 8}).Read();
  ASSERT_EQ(b.lyrics.XF_ChordsArray.size(), 2U);
  EXPECT_EQ(b.lyrics.XF_ChordsArray[0].Name(false), "Bbm7/B");
  EXPECT_EQ(b.lyrics.XF_ChordsArray[0].Name(true), "Bm7/H");
  EXPECT_EQ(b.lyrics.XF_ChordsArray[1].Name(false), "Xm") << "an accidental without note is no root";
}

TEST(LyricLines, ASongWithoutLyricsForgetsThoseBefore) {
  LyricBench b;
  b.Lyric(0, "a").Chord(0, {0x31, 0, 0x31, 0}).Read();
  EXPECT_TRUE(b.lyrics.HasLyrics());
  LyricBench empty;
  empty.Read();
  b.lyrics.ReadAndShowLyrics(empty.song);
  EXPECT_FALSE(b.lyrics.HasLyrics());
  EXPECT_FALSE(b.lyrics.HasChords());
  EXPECT_THAT(b.lyrics.Lines, IsEmpty());
  EXPECT_EQ(b.lyrics.At(0), TLyricMoment{});
  Song none;
  b.lyrics.ReadAndShowLyrics(none);
  EXPECT_EQ(b.lyrics.At(100), TLyricMoment{});
}

TEST(LyricLines, AWordBoxFileIsReadAsTheReaderLeavesIt) {
  LyricBench b;
  b.Lyric(0, "One line\r").Lyric(480, "\r").Lyric(960, "another one\r").Read();
  EXPECT_THAT(b.Lines(), ElementsAre("One line", "another one"));
}

}  // namespace
}  // namespace Sonarello
