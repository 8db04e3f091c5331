// Mute and solo.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bitset>
#include <random>

#include "desk/StripsBench.h"

namespace Sonarello {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr bool WithCtrl = true;
constexpr bool NoCtrl = false;

/// A long note on each of three channels.
struct StripsMuteSolo : ::testing::Test, StripsBench {
  StripsMuteSolo() {
    NewTrack().Tempo(0, 480'000);
    On(10, 60).On(10, 62, 2).On(10, 64, 3).Off(900, 60).Off(900, 62, 2).Off(900, 64, 3);
    Loaded();
  }
  /// The mutes of the first three channels: "M.M".
  [[nodiscard]] std::string Mutes() {
    std::string mutes;
    for (int c = 0; c < 3; ++c) mutes += Data(c).Mute ? 'M' : '.';
    return mutes;
  }
  void Mute(int channel, bool ctrl = NoCtrl) { strips.MuteSolo.Btn_Mute00MouseDown(channel, ctrl); }
  void Solo(int channel, bool ctrl = NoCtrl) { strips.MuteSolo.Btn_Solo00MouseDown(channel, ctrl); }
};

TEST_F(StripsMuteSolo, TheMuteButtonTogglesAndSelectsItsStrip) {
  Mute(1);
  EXPECT_EQ(Mutes(), ".M.");
  EXPECT_EQ(song.ActiveMidiIndex, 1);
  EXPECT_THAT(Told(), ElementsAre("select -1 1", "mutes"));
  Mute(1);
  EXPECT_EQ(Mutes(), "...");
  EXPECT_THAT(Told(), ElementsAre("mutes"));
}

TEST_F(StripsMuteSolo, AMuteIsNoChangeOfTheSong) {
  Mute(1);
  Solo(0);
  EXPECT_THAT(Told(), ::testing::Not(::testing::Contains("changed")));
}

TEST_F(StripsMuteSolo, AChannelWithoutEventsHasNoMuteAndNoSolo) {
  Mute(8);
  Solo(8);
  Mute(-1);
  Solo(16);
  EXPECT_FALSE(Data(8).Mute);
  EXPECT_FALSE(strips.MuteSolo.AnySolo());
  EXPECT_THAT(Told(), IsEmpty());
}

TEST_F(StripsMuteSolo, NothingHappensWithoutASong) {
  song.MidiFileLoaded = false;
  Mute(0);
  Solo(0);
  EXPECT_EQ(Mutes(), "...");
  EXPECT_FALSE(strips.MuteSolo.AnySolo());
}

TEST_F(StripsMuteSolo, MutingEndsTheNoteThatSoundsAndSilencesTheChannel) {
  Start();
  Elapse(20);
  static_cast<void>(Sent());
  ASSERT_EQ(realtime.RMSValue[1].Count, 1);
  Mute(1);
  EXPECT_THAT(Sent(), ElementsAre("81 3E 40", "B1 78 00", "B1 7B 00"));
  EXPECT_EQ(realtime.RMSValue[1].Count, 0);
  EXPECT_EQ(realtime.RMSValue[0].Count, 1);
  Elapse(1000);
  EXPECT_THAT(Sent(), ElementsAre("80 3C 40", "82 40 40")) << "its own note-off is not sent";
  EXPECT_TRUE(player.Ledger.Empty());
}

TEST_F(StripsMuteSolo, UnmutingSendsNothing) {
  Mute(1);
  Start();
  Mute(1);
  EXPECT_THAT(Sent(), IsEmpty());
}

TEST_F(StripsMuteSolo, SplitDrumsAreSilencedOnChannelTen) {
  Routes(2);
  song.MidiOutIndex[1] = 1;
  Data(1).DrumPart = 2;
  song.DrumsSecForceToChannel10 = true;
  Start();
  Elapse(20);
  ASSERT_THAT(Sent(), ElementsAre("90 3C 64", "1> 99 3E 64", "92 40 64"));
  Mute(1);
  EXPECT_THAT(Sent(), ElementsAre("1> 89 3E 40", "1> B9 78 00", "1> B9 7B 00"));
  EXPECT_EQ(realtime.RMSValue[1].Count, 0);
}

TEST_F(StripsMuteSolo, CtrlOnMuteTakesAllMutesAway) {
  Mute(0);
  Mute(2);
  Mute(1, WithCtrl);
  EXPECT_EQ(Mutes(), "...");
}

TEST_F(StripsMuteSolo, CtrlOnMuteWithNothingMuteChangesNothing) {
  Mute(1, WithCtrl);
  EXPECT_EQ(Mutes(), "...");
  EXPECT_THAT(Told(), ElementsAre("select -1 1"));
  EXPECT_THAT(Sent(), IsEmpty());
}

TEST_F(StripsMuteSolo, CtrlMeansNothingWithTheSpecialFlag) {
  strips.Desk.Settings.Flag_SpecialB = true;
  Mute(0, WithCtrl);
  EXPECT_EQ(Mutes(), "M..");
  Solo(1, WithCtrl);
  EXPECT_TRUE(Data(1).Solo);
  EXPECT_EQ(Mutes(), "M.M");
}

TEST_F(StripsMuteSolo, SoloMutesExactlyTheOthers) {
  Solo(1);
  EXPECT_EQ(Mutes(), "M.M");
  EXPECT_TRUE(Data(8).Mute) << "those without events as well";
  EXPECT_THAT(Told(), ElementsAre("select -1 1", "solos 1", "mutes"));
  Solo(2);
  EXPECT_EQ(Mutes(), "M..");
  Solo(1);
  EXPECT_EQ(Mutes(), "MM.");
}

TEST_F(StripsMuteSolo, SoloEndsTheNotesOfThoseThatBecomeMute) {
  Mute(2);
  Start();
  Elapse(20);
  static_cast<void>(Sent());
  for (int c = 3; c < 16; ++c) Data(c).Mute = true;
  Solo(1);
  EXPECT_THAT(Sent(), ElementsAre("80 3C 40", "B0 78 00", "B0 7B 00")) << "channel 3 was mute before";
  EXPECT_EQ(realtime.RMSValue[0].Count, 0);
}

TEST_F(StripsMuteSolo, TheLastSoloBringsTheMutesBackThatWereThereBefore) {
  Mute(0);
  Solo(0);
  Solo(1);
  EXPECT_EQ(Mutes(), "..M");
  Mute(1);
  EXPECT_EQ(Mutes(), ".MM");
  Solo(0);
  EXPECT_EQ(Mutes(), "M.M") << "each solo sets all mutes anew";
  Solo(1);
  EXPECT_EQ(Mutes(), "M..");
}

TEST_F(StripsMuteSolo, AChannelThatIsMuteAgainBehindTheLastSoloIsSilenced) {
  Mute(0);
  Solo(0);
  Start();
  Elapse(20);
  static_cast<void>(Sent());
  Solo(0);
  EXPECT_THAT(Sent(), ElementsAre("80 3C 40", "B0 78 00", "B0 7B 00"));
}

TEST_F(StripsMuteSolo, CtrlOnSoloTakesAllSolosAndMutesAway) {
  Mute(0);
  Solo(1);
  Solo(2);
  static_cast<void>(Told());
  Solo(0, WithCtrl);
  EXPECT_EQ(Mutes(), "...");
  EXPECT_FALSE(strips.MuteSolo.AnySolo());
  EXPECT_FALSE(strips.MuteSolo.AnyMute());
  EXPECT_THAT(Told(), ElementsAre("select 2 0", "solos -1", "mutes"));
  Solo(1);
  Solo(1);
  EXPECT_EQ(Mutes(), "...") << "the mutes from before are gone as well";
}

TEST_F(StripsMuteSolo, TheButtonsOfTheGroupColumnDoWhatCtrlDoes) {
  Mute(0);
  Mute(1);
  strips.MuteSolo.ClearMutes();
  EXPECT_EQ(Mutes(), "...");
  Mute(0);
  Solo(1);
  strips.MuteSolo.ClearSolos();
  EXPECT_EQ(Mutes(), "...");
  EXPECT_FALSE(strips.MuteSolo.AnySolo());
  static_cast<void>(Told());
  strips.MuteSolo.ClearSolos();
  strips.MuteSolo.ClearMutes();
  EXPECT_THAT(Told(), IsEmpty());
}

TEST_F(StripsMuteSolo, KnowsWhichMutesASoloCauses) {
  Mute(0);
  EXPECT_FALSE(strips.MuteSolo.IsMutedBySolo(0));
  Solo(1);
  EXPECT_FALSE(strips.MuteSolo.IsMutedBySolo(0)) << "it was mute before";
  EXPECT_FALSE(strips.MuteSolo.IsMutedBySolo(1));
  EXPECT_TRUE(strips.MuteSolo.IsMutedBySolo(2));
  EXPECT_FALSE(strips.MuteSolo.IsMutedBySolo(-1));
  Mute(1);
  EXPECT_FALSE(strips.MuteSolo.IsMutedBySolo(1)) << "a soloed channel is only mute by its own button";
  Solo(1);
  EXPECT_FALSE(strips.MuteSolo.IsMutedBySolo(2));
}

TEST_F(StripsMuteSolo, ASoloedChannelThatLostItsEventsCanGiveItsSoloUp) {
  Solo(1);
  Data(1).Active = false;
  Solo(1);
  EXPECT_FALSE(strips.MuteSolo.AnySolo());
  EXPECT_EQ(Mutes(), "...");
  Solo(1);
  EXPECT_FALSE(strips.MuteSolo.AnySolo());
}

TEST_F(StripsMuteSolo, AnySequenceKeepsTheRules) {
  std::mt19937 random(17);
  const auto below = [&](unsigned end) { return static_cast<int>(random() % end); };
  std::bitset<3> before;
  for (int i = 0; i < 5000; ++i) {
    const bool hadSolo = strips.MuteSolo.AnySolo();
    std::bitset<3> mutes;
    for (std::size_t c = 0; c < 3; ++c) mutes[c] = song.MidiData[c].Mute;
    const bool ctrl = below(8) == 0;
    const bool onSolo = below(2) == 1;
    if (onSolo)
      Solo(below(3), ctrl);
    else
      Mute(below(3), ctrl);
    if (!hadSolo && strips.MuteSolo.AnySolo()) before = mutes;
    for (std::size_t c = 0; c < 3; ++c) {
      const TMidiChannelData& data = song.MidiData[c];
      if (onSolo && strips.MuteSolo.AnySolo()) {
        ASSERT_EQ(data.Mute, !data.Solo);
      }
      if (hadSolo && onSolo && !ctrl && !strips.MuteSolo.AnySolo()) {
        ASSERT_EQ(data.Mute, before[c]);
      }
      if (ctrl) {
        ASSERT_FALSE(data.Mute);
      }
    }
  }
  EXPECT_THAT(CheckSong(song), IsEmpty());
}

TEST_F(StripsMuteSolo, NoNoteHangsWhateverIsPressedWhileTheSongPlays) {
  for (unsigned seed = 1; seed <= 20; ++seed) {
    std::mt19937 random(seed);
    Start();
    for (int i = 0; i < 100; ++i) {
      Elapse(10);
      const int channel = static_cast<int>(random() % 3);
      if (random() % 2 == 0)
        Solo(channel, random() % 8 == 0);
      else
        Mute(channel, random() % 8 == 0);
      for (int c = 0; c < 3; ++c)
        if (Data(c).Mute) {
          ASSERT_EQ(realtime.RMSValue[static_cast<std::size_t>(c)].Count, 0);
        }
    }
    Elapse(200);
    EXPECT_TRUE(player.Ledger.Empty());
    player.Stop();
    player.Stop();
  }
}

}  // namespace
}  // namespace Sonarello
