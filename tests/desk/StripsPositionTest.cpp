// The position as the display shows it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desk/StripsBench.h"

namespace Sonarello {
namespace {

using ::testing::IsEmpty;

/// 125 bpm in 4/4, from measure 3 (tick 3840) in 6/8 at 60 bpm.
struct StripsPosition : ::testing::Test, StripsBench {
  StripsPosition() {
    NewTrack().Tempo(0, 480'000).Sign(0, 4, 2).On(10, 60);
    Tempo(3840, 1'000'000).Sign(3840, 6, 3).Off(9000, 60);
    Loaded();
  }
  void Key(std::int32_t position, int SF, int MI, std::size_t track = 0) {
    const std::array bytes = {static_cast<std::uint8_t>(SF), static_cast<std::uint8_t>(MI)};
    const PtrMidiEvent e = NewMeta(song.Pool, MetaKeySignature, bytes, position);
    InsertByPosition(song.MidiTrack.front(), e);
    song.KeySignArray.resize(std::max(song.KeySignArray.size(), track + 1));
    song.KeySignArray[track].ValArray.push_back({e, SF, MI});
    song.KeySignArray[track].Elements =
        static_cast<std::int32_t>(song.KeySignArray[track].ValArray.size());
    strips.Position.SignaturesChanged();
  }
};

TEST(MeasureText, PutsAZeroInFrontOfASingleDigit) {
  EXPECT_EQ(MeasureText(1, 1), "1:01");
  EXPECT_EQ(MeasureText(17, 9), "17:09");
  EXPECT_EQ(MeasureText(120, 12), "120:12");
}

TEST(MeasureText, ShowsTimesWithThousandths) {
  EXPECT_EQ(ClockText(0), "0:00.000");
  EXPECT_EQ(ClockText(41'382), "0:41.382");
  EXPECT_EQ(ClockText(61'007), "1:01.007");
  EXPECT_EQ(ClockText(3'600'000), "60:00.000");
  EXPECT_EQ(ClockText(-5), "0:00.000");
  const InGerman german;
  EXPECT_EQ(ClockText(41'382), "0:41.382");
}

TEST(MeasureText, NamesKeysInBothLanguages) {
  EXPECT_EQ(KeySignatureName(-1, 0), "F major");
  EXPECT_EQ(KeySignatureName(-1, 1), "D minor");
  EXPECT_EQ(KeySignatureName(-7, 0), "Cb major");
  EXPECT_EQ(KeySignatureName(7, 1), "A# minor");
  EXPECT_EQ(KeySignatureName(8, 0), "");
  EXPECT_EQ(KeySignatureName(-8, 0), "");
  const InGerman german;
  EXPECT_EQ(KeySignatureName(0, 0), "C-Dur");
  EXPECT_EQ(KeySignatureName(0, 1), "a-Moll");
  EXPECT_EQ(KeySignatureName(5, 0), "H-Dur");
  EXPECT_EQ(KeySignatureName(-2, 0), "B-Dur");
  EXPECT_EQ(KeySignatureName(-2, 1), "g-Moll");
  EXPECT_EQ(KeySignatureName(6, 1), "dis-Moll");
}

TEST_F(StripsPosition, TheSongBeginsAtOneOne) {
  const TPositionView view = strips.Position.At(0);
  EXPECT_EQ(view.Position, "1:01");
  EXPECT_EQ(view.MTC, "001.01.000");
  EXPECT_EQ(view.Clock, "0:00.000");
  EXPECT_EQ(view.TempoText, "125.0");
  EXPECT_EQ(view.Signature, "4/4");
  EXPECT_EQ(view.Key, "");
  EXPECT_EQ(view.TimeZone, 0);
}

TEST_F(StripsPosition, CountsThroughTempiAndSignatures) {
  const TPositionView before = strips.Position.At(3839);
  EXPECT_EQ(before.Position, "2:04");
  EXPECT_EQ(before.MTC, "002.04.479");
  EXPECT_EQ(before.SongPosition, 3839);
  const TPositionView behind = strips.Position.At(3840);
  EXPECT_EQ(behind.Position, "3:01");
  EXPECT_EQ(behind.TempoText, "60.0");
  EXPECT_DOUBLE_EQ(behind.Tempo, 60);
  EXPECT_EQ(behind.Signature, "6/8");
  EXPECT_EQ(behind.TimeZone, 1);
  EXPECT_EQ(strips.Position.At(3840 + 2500).Position, "3:06");
  EXPECT_EQ(strips.Position.At(3840 + 3000).Position, "4:01");
}

TEST_F(StripsPosition, AgreesWithThePositionTextsAtEveryTick) {
  for (std::int32_t time = 0; time < song.SongLength; time += 7) {
    const TPositionView view = strips.Position.At(time);
    EXPECT_EQ(view.MTC, SongPositionToMTC(song, view.SongPosition));
    const std::string beat = view.MTC.substr(4, 2);
    EXPECT_EQ(view.Position, std::to_string(std::stoi(view.MTC)) + ':' + beat);
  }
}

TEST_F(StripsPosition, BehindTheSongTheLastPlaceIsShown) {
  const TPositionView end = strips.Position.At(song.SongLength + 3000);
  EXPECT_EQ(end.SongPosition, song.MaxSongPosition);
  EXPECT_EQ(end.Position, strips.Position.At(song.SongLength).Position);
}

TEST_F(StripsPosition, ATimeInFrontOfTheSongIsItsStart) {
  EXPECT_EQ(strips.Position.At(-10), strips.Position.At(0));
}

TEST_F(StripsPosition, AnEmptyStoreReadsOneOne) {
  Song empty;
  const TPositionView view = TStripsPosition(empty, gate).At(5000);
  EXPECT_EQ(view.Position, "1:01");
  EXPECT_EQ(view.Key, "");
}

TEST_F(StripsPosition, ShowsTheKeyInForceOnWhicheverTrackItStands) {
  Key(480, -1, 0);
  Key(1920, 3, 1, 1);
  Key(960, 0, 0, 2);
  EXPECT_EQ(strips.Position.At(479).Key, "");
  EXPECT_EQ(strips.Position.At(480).Key, "F major");
  EXPECT_EQ(strips.Position.At(960).Key, "C major");
  EXPECT_EQ(strips.Position.At(5000).Key, "F# minor");
}

TEST_F(StripsPosition, ShowsTheKeyAsItIsTransposed) {
  Key(0, 0, 0);
  song.TransposeNew = 2;
  EXPECT_EQ(strips.Position.At(0).Key, "D major");
  song.TransposeNew = -2;
  EXPECT_EQ(strips.Position.At(0).Key, "Bb major");
}

TEST_F(StripsPosition, ARemovedKeyIsNotShown) {
  Key(0, 2, 0);
  MarkRemoved(song.KeySignArray[0].ValArray[0].MidiEvent);
  song.KeySignArray[0].ValArray.push_back({nullptr, 3, 0});
  strips.Position.SignaturesChanged();
  EXPECT_EQ(strips.Position.At(0).Key, "");
}

TEST_F(StripsPosition, TellsTheTempoAtAPosition) {
  EXPECT_EQ(strips.Position.TempoAt(0), 125);
  EXPECT_EQ(strips.Position.TempoAt(3839), 125);
  EXPECT_EQ(strips.Position.TempoAt(3840), 60);
  EXPECT_EQ(strips.Position.TempoAt(1'000'000), 60);
}

TEST_F(StripsPosition, TheSongsCurrentZoneAndTempoFollow) {
  strips.Position.Follow(5000);
  EXPECT_EQ(song.CurrentTimeZone, 1);
  EXPECT_EQ(song.CurrentTempo, 60);
  strips.Position.Follow(0);
  EXPECT_EQ(song.CurrentTimeZone, 0);
  EXPECT_EQ(song.CurrentTempo, 125);
}

TEST_F(StripsPosition, ShowsTheTempoWithTheOffset) {
  strips.Tempo.SetOffset(4);
  EXPECT_EQ(strips.Position.At(0).TempoText, "129.0");
  EXPECT_EQ(strips.Position.TempoAt(0), 129);
  EXPECT_THAT(CheckSong(song), IsEmpty());
}

}  // namespace
}  // namespace Sonarello
