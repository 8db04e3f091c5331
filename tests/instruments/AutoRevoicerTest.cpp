// Sounds replaced by a list of the user's.
#include "instruments/AutoRevoicer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <vector>

#include "helpers/SongBuilder.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr int Genos = 87;
constexpr std::string_view GenosName = "Yamaha Genos";

TRevoicerRec Rule(const TAddress& source, const TAddress& dest) {
  TRevoicerRec rec;
  rec.SourceVoiceCC00 = source.CC00;
  rec.SourceVoiceCC32 = source.CC32;
  rec.SourceVoicePatch = source.Patch;
  rec.SourceVoiceName = "from";
  rec.DestVoiceCC00 = dest.CC00;
  rec.DestVoiceCC32 = dest.CC32;
  rec.DestVoicePatch = dest.Patch;
  rec.DestVoiceName = "to";
  return rec;
}

/// A song of the Genos with its first values read, and what a run does to it.
struct RevoicedSong : TestSong {
  RevoicedSong() { Instrument(Genos); }

  RevoicedSong& NewTrack() { return TestSong::NewTrack(), *this; }
  RevoicedSong& Ctrl(int position, int controller, int value, int channel = 1) {
    return TestSong::Ctrl(position, controller, value, channel), *this;
  }
  RevoicedSong& Prog(int position, int program, int channel = 1) {
    const auto command = static_cast<std::uint8_t>(ProgramChange + channel - 1);
    Put(NewChannelEvent(song.Pool, command, static_cast<std::uint8_t>(program), 0, position));
    return *this;
  }
  RevoicedSong& Sound(int position, int msb, int lsb, int program, int channel = 1) {
    return Ctrl(position, 0, msb, channel)
        .Ctrl(position, 32, lsb, channel)
        .Prog(position, program, channel);
  }
  /// Marks the last event as removed.
  RevoicedSong& Gone() { return MarkRemoved(song.MidiTrack.back().TrkLastEvent), *this; }
  RevoicedSong& Ready() {
    Finish();
    functions.SetFirstValues();
    return *this;
  }
  TRevoiceResult Run(const std::vector<TRevoicerRec>& rows) {
    TRevoiceResult result = Revoice(song, routes, rows);
    EXPECT_THAT(CheckSong(song), IsEmpty());
    return result;
  }
  TMidiChannelData& Desk(int channel = 1) {
    return song.MidiData.at(static_cast<std::size_t>(channel - 1));
  }

  /// Live bank selects and programs of a track: "0=104 @480", "P7 @480", ...
  [[nodiscard]] std::vector<std::string> Sounds(int track = 0) {
    std::vector<std::string> lines;
    ForEachEvent(Track(track), [&](PtrMidiEvent e) {
      if (!e->IsChannelEvent() || e->IsRemoved()) return;
      const std::string at = " @" + std::to_string(e->Position);
      if (e->Kind() == ProgramChange) lines.push_back("P" + std::to_string(e->Value[0]) + at);
      if (e->Kind() == Controller)
        lines.push_back(std::to_string(e->Value[0]) + "=" + std::to_string(e->Value[1]) + at);
    });
    return lines;
  }
};

std::vector<std::string> Texts(const TRevoiceResult& result) {
  std::vector<std::string> lines;
  for (const TRevoiceLine& line : result.Protocol) lines.push_back(line.Text);
  return lines;
}

// --- The run

TEST(Revoice, WritesTheDestinationIntoBankSelectsAndProgram) {
  RevoicedSong s;
  s.NewTrack().Sound(480, 0, 112, 5).Ready();
  const auto result = s.Run({Rule({0, 112, 5}, {104, 21, 7})});
  EXPECT_THAT(s.Sounds(), ElementsAre("0=104 @480", "32=21 @480", "P7 @480"));
  EXPECT_EQ(result.Replaced, 1);
  EXPECT_EQ(result.Inserted, 0);
  EXPECT_THAT(result.Protocol, IsEmpty());
}

TEST(Revoice, TakesTheFirstProgramToTheDesk) {
  RevoicedSong s;
  s.NewTrack().Sound(480, 0, 112, 5).Sound(960, 0, 112, 6).Ready();
  s.Run({Rule({0, 112, 5}, {104, 21, 7}), Rule({0, 112, 6}, {104, 22, 8})});
  EXPECT_EQ(s.Desk().CtrlArray[0].Value, 104);
  EXPECT_EQ(s.Desk().CtrlArray[0].Event, s.Event(0, 1));
  EXPECT_EQ(s.Desk().CtrlArray[32].Value, 21);
  EXPECT_EQ(s.Desk().CtrlArray[32].Event, s.Event(0, 2));
  EXPECT_EQ(s.Desk().Patch, 7);
  EXPECT_EQ(s.Desk().PatchEvent, s.song.FirstPatches[0]);
}

TEST(Revoice, LeavesTheDeskAloneIfOnlyALaterProgramChanges) {
  RevoicedSong s;
  s.NewTrack().Sound(480, 0, 112, 5).Sound(960, 0, 112, 6).Ready();
  s.Run({Rule({0, 112, 6}, {104, 22, 8})});
  EXPECT_EQ(s.Desk().CtrlArray[0].Value, 0);
  EXPECT_EQ(s.Desk().CtrlArray[32].Value, 112);
  EXPECT_EQ(s.Desk().Patch, 5);
  EXPECT_THAT(s.Sounds(),
              ElementsAre("0=0 @480", "32=112 @480", "P5 @480", "0=104 @960", "32=22 @960", "P8 @960"));
}

TEST(Revoice, PutsTheBankSelectInForceOnTheDesk) {
  RevoicedSong s;
  s.NewTrack().Ctrl(0, 0, 1).Ctrl(10, 0, 0).Ctrl(10, 32, 112).Prog(20, 5).Ready();
  ASSERT_EQ(s.Desk().CtrlArray[0].Value, 1);
  s.Run({Rule({0, 112, 5}, {104, 21, 7})});
  EXPECT_EQ(s.Desk().CtrlArray[0].Event, s.Event(0, 2));
  EXPECT_EQ(s.Desk().CtrlArray[0].Value, 104);
  EXPECT_THAT(s.Sounds(), ElementsAre("0=1 @0", "0=104 @10", "32=21 @10", "P7 @20"));
}

TEST(Revoice, ReplacesEveryProgramOfTheSongOnEveryTrack) {
  RevoicedSong s;
  s.NewTrack().Sound(0, 0, 0, 1).Sound(480, 0, 0, 2).Sound(960, 0, 0, 1);
  s.NewTrack().Sound(0, 0, 0, 1, 2).Ready();
  EXPECT_EQ(s.Run({Rule({0, 0, 1}, {8, 9, 10})}).Replaced, 3);
  EXPECT_THAT(s.Sounds(0), ElementsAre("0=8 @0", "32=9 @0", "P10 @0", "0=0 @480", "32=0 @480",
                                       "P2 @480", "0=8 @960", "32=9 @960", "P10 @960"));
  EXPECT_THAT(s.Sounds(1), ElementsAre("0=8 @0", "32=9 @0", "P10 @0"));
}

TEST(Revoice, NeedsAllThreeNumbersOfTheSource) {
  RevoicedSong s;
  s.NewTrack().Sound(0, 1, 2, 3).Ready();
  const auto before = s.Sounds();
  const auto result =
      s.Run({Rule({2, 2, 3}, {9, 9, 9}), Rule({1, 3, 3}, {9, 9, 9}), Rule({1, 2, 4}, {9, 9, 9})});
  EXPECT_EQ(result.Replaced, 0);
  EXPECT_EQ(s.Sounds(), before);
}

TEST(Revoice, DoesNotReplaceAReplacement) {
  RevoicedSong s;
  s.NewTrack().Sound(0, 0, 0, 1).Sound(480, 0, 0, 2).Ready();
  s.Run({Rule({0, 0, 1}, {0, 0, 2}), Rule({0, 0, 2}, {0, 0, 1})});
  EXPECT_THAT(s.Sounds(),
              ElementsAre("0=0 @0", "32=0 @0", "P2 @0", "0=0 @480", "32=0 @480", "P1 @480"));
}

TEST(Revoice, GoesByTheFirstRowOfASource) {
  RevoicedSong s;
  s.NewTrack().Sound(0, 0, 0, 1).Ready();
  s.Run({Rule({0, 0, 1}, {5, 5, 5}), Rule({0, 0, 1}, {6, 6, 6})});
  EXPECT_EQ(s.Desk().Patch, 5);
}

TEST(Revoice, KeepsTheChannelsOfATrackApart) {
  RevoicedSong s;
  s.NewTrack().Ctrl(0, 0, 1, 1).Ctrl(0, 32, 2, 1).Ctrl(0, 0, 3, 2).Ctrl(0, 32, 4, 2);
  s.Prog(10, 5, 1).Prog(10, 5, 2).Ready();
  s.Run({Rule({1, 2, 5}, {11, 12, 15}), Rule({3, 4, 5}, {13, 14, 16})});
  EXPECT_THAT(s.Sounds(),
              ElementsAre("0=11 @0", "32=12 @0", "0=13 @0", "32=14 @0", "P15 @10", "P16 @10"));
}

TEST(Revoice, LeavesChannelsOfOtherInstrumentsAlone) {
  RevoicedSong s;
  s.routes.Table.push_back(
      {.Delay = 0, .Instrument = "Ketron SD9", .InstrumValue = 92, .OutputName = {}});
  s.routes.Table.push_back(
      {.Delay = 0, .Instrument = "Yamaha Genos", .InstrumValue = Genos, .OutputName = {}});
  s.NewTrack()
      .Sound(0, 0, 0, 1, 1)
      .Sound(0, 0, 0, 1, 2)
      .Sound(0, 0, 0, 1, 3)
      .Sound(0, 0, 0, 1, 4)
      .Ready();
  s.song.MidiOutIndex[1] = 1;  // another instrument
  s.song.MidiOutIndex[2] = 2;  // the main instrument by another output
  s.song.MidiOutIndex[3] = 9;  // no such route
  const auto result = s.Run({Rule({0, 0, 1}, {0, 0, 2})});
  EXPECT_EQ(result.Replaced, 2);
  EXPECT_EQ(s.Desk(1).Patch, 2);
  EXPECT_EQ(s.Desk(2).Patch, 1);
  EXPECT_EQ(s.Desk(3).Patch, 2);
  EXPECT_EQ(s.Desk(4).Patch, 1);
  EXPECT_TRUE(result.Channels[0]);
  EXPECT_FALSE(result.Channels[1]);
  EXPECT_TRUE(result.Channels[2]);
  EXPECT_FALSE(result.Channels[3]);
}

TEST(Revoice, LeavesDrumChannelsAlone) {
  RevoicedSong s;
  s.NewTrack().Sound(0, 0, 0, 1, 10).Prog(5, 1, 11).Ready();
  s.Desk(10).DrumPart = 1;
  s.Desk(11).DrumPart = 2;
  const auto result = s.Run({Rule({0, 0, 1}, {0, 0, 2})});
  EXPECT_EQ(s.Desk(10).Patch, 1);
  EXPECT_FALSE(result.Channels[9]);
  EXPECT_THAT(result.Protocol, IsEmpty()) << "nor are their bank selects missed";
}

TEST(Revoice, ListsAProgramWithoutBankSelectsInGermanInBothLanguages) {
  for (const bool german : {false, true}) {
    GermanLanguage = german;
    RevoicedSong s;
    s.NewTrack().Prog(0, 1, 3);
    s.NewTrack().Ctrl(0, 0, 0, 1).Prog(480, 1, 1);
    s.NewTrack().Ctrl(0, 32, 0, 16).Prog(960, 1, 16).Ready();
    const auto result = s.Run({Rule({0, 0, 1}, {9, 9, 9})});
    EXPECT_THAT(Texts(result), ElementsAre(": Kanal 1 - Ctrl32 fehlt!", ": Kanal 3 - Ctrl00 fehlt!",
                                           ": Kanal 16 - Ctrl00 fehlt!"));
    EXPECT_EQ(result.Protocol[0].Track, 1);
    EXPECT_EQ(result.Protocol[0].Position, 480);
    EXPECT_EQ(result.Replaced, 0);
    EXPECT_THAT(s.Sounds(0), ElementsAre("P1 @0"));
    GermanLanguage = false;
  }
}

TEST(Revoice, CountsOnlyControllersBeforeTheProgram) {
  RevoicedSong s;
  s.NewTrack().Prog(0, 1).Ctrl(1, 0, 0).Ctrl(1, 32, 0).Ready();
  EXPECT_THAT(Texts(s.Run({Rule({0, 0, 1}, {9, 9, 9})})), ElementsAre(": Kanal 1 - Ctrl00 fehlt!"));
}

TEST(Revoice, LooksForControllersOnTheProgramsTrackOnly) {
  RevoicedSong s;
  s.NewTrack().Ctrl(0, 0, 0).Ctrl(0, 32, 0);
  s.NewTrack().Prog(480, 1).Ready();
  EXPECT_THAT(Texts(s.Run({Rule({0, 0, 1}, {9, 9, 9})})), ElementsAre(": Kanal 1 - Ctrl00 fehlt!"));
}

TEST(Revoice, TakesOtherControllersForNoBankSelect) {
  RevoicedSong s;
  s.NewTrack().Ctrl(0, 0, 0).Ctrl(0, 32, 0).Ctrl(0, 7, 5).Ctrl(0, 33, 5).Prog(0, 1).Ready();
  s.Run({Rule({0, 0, 1}, {9, 10, 11})});
  EXPECT_THAT(s.Sounds(), ElementsAre("0=9 @0", "32=10 @0", "7=5 @0", "33=5 @0", "P11 @0"));
}

TEST(Revoice, DoesNotCountRemovedEvents) {
  RevoicedSong s;
  s.NewTrack().Ctrl(0, 0, 1).Ctrl(0, 0, 2).Gone().Ctrl(0, 32, 3).Prog(5, 9).Gone().Prog(10, 4).Ready();
  const auto result = s.Run({Rule({1, 3, 4}, {5, 6, 7}), Rule({1, 3, 9}, {8, 8, 8})});
  EXPECT_EQ(result.Replaced, 1);
  EXPECT_THAT(s.Sounds(), ElementsAre("0=5 @0", "32=6 @0", "P7 @10"));
  EXPECT_EQ(s.Event(0, 2)->Value[1], 2) << "the removed one stays as it is";
  EXPECT_EQ(s.Event(0, 4)->Value[0], 9);
}

TEST(Revoice, MissesABankSelectThatIsRemoved) {
  RevoicedSong s;
  s.NewTrack().Ctrl(0, 0, 0).Ctrl(0, 32, 0).Gone().Prog(10, 1).Ready();
  EXPECT_THAT(Texts(s.Run({Rule({0, 0, 1}, {9, 9, 9})})), ElementsAre(": Kanal 1 - Ctrl32 fehlt!"));
}

TEST(Revoice, NeitherReadsNorChangesTracksThatAreHeldOut) {
  RevoicedSong s;
  s.NewTrack().Sound(0, 0, 0, 1);
  s.song.MidiTrack.back().TrkIgnore = true;
  s.Prog(10, 2, 2).Ready();
  const auto result = s.Run({Rule({0, 0, 1}, {9, 9, 9})});
  EXPECT_THAT(s.Sounds(), ElementsAre("0=0 @0", "32=0 @0", "P1 @0", "P2 @10"));
  EXPECT_THAT(result.Protocol, IsEmpty());
}

TEST(Revoice, LeavesTheRemoteSequenceAlone) {
  RevoicedSong s;
  s.NewTrack().Sound(0, 77, 5, 1, 16).Sound(480, 0, 0, 1, 16).Ready();
  ASSERT_NE(s.song.PromptaRemotePatch, nullptr);
  EXPECT_THAT(s.Run({Rule({77, 5, 1}, {9, 9, 9}), Rule({0, 0, 1}, {8, 8, 8})}).Protocol, IsEmpty());
  EXPECT_THAT(s.Sounds(),
              ElementsAre("0=77 @0", "32=5 @0", "P1 @0", "0=8 @480", "32=8 @480", "P8 @480"));
}

TEST(Revoice, TakesNoBankSelectOfTheRemoteSequenceForASound) {
  RevoicedSong s;
  s.NewTrack().Sound(0, 77, 5, 1, 16).Prog(480, 1, 16).Ctrl(500, 0, 77, 16).Prog(510, 1, 16).Ready();
  const auto result = s.Run({Rule({77, 5, 1}, {9, 9, 9})});
  EXPECT_THAT(Texts(result), ElementsAre(": Kanal 16 - Ctrl00 fehlt!", ": Kanal 16 - Ctrl32 fehlt!"));
  EXPECT_EQ(result.Replaced, 0);
}

// --- Bank selects that serve several programs

TEST(Revoice, GivesALaterProgramItsOwnBankSelectsBack) {
  RevoicedSong s;
  s.NewTrack().Sound(0, 0, 112, 5).Prog(480, 6).Ready();
  const auto result = s.Run({Rule({0, 112, 5}, {104, 21, 7})});
  EXPECT_THAT(s.Sounds(),
              ElementsAre("0=104 @0", "32=21 @0", "P7 @0", "0=0 @480", "32=112 @480", "P6 @480"));
  EXPECT_EQ(result.Inserted, 2);
}

TEST(Revoice, LeavesTheSharedBankSelectsToAnEarlierProgramThatStays) {
  RevoicedSong s;
  s.NewTrack().Sound(0, 0, 112, 5).Prog(480, 6).Prog(960, 5).Ready();
  const auto result = s.Run({Rule({0, 112, 6}, {104, 21, 7})});
  EXPECT_THAT(s.Sounds(), ElementsAre("0=0 @0", "32=112 @0", "P5 @0", "0=104 @480", "32=21 @480",
                                      "P7 @480", "0=0 @960", "32=112 @960", "P5 @960"));
  EXPECT_EQ(result.Inserted, 4);
  EXPECT_EQ(s.Desk().CtrlArray[0].Value, 0);
}

TEST(Revoice, FindsEveryProgramOfSharedBankSelectsByTheirOldNumbers) {
  RevoicedSong s;
  s.NewTrack().Sound(0, 0, 112, 5).Prog(480, 6).Ready();
  const auto result = s.Run({Rule({0, 112, 5}, {104, 21, 7}), Rule({0, 112, 6}, {104, 22, 8})});
  EXPECT_EQ(result.Replaced, 2);
  EXPECT_THAT(s.Sounds(), ElementsAre("0=104 @0", "32=21 @0", "P7 @0", "32=22 @480", "P8 @480"))
      << "only the bank select that differs comes in";
}

TEST(Revoice, InsertsNothingWhereAllProgramsNeedTheSameBanks) {
  RevoicedSong s;
  s.NewTrack().Sound(0, 0, 112, 5).Prog(480, 6).Prog(960, 5).Ready();
  const auto result = s.Run({Rule({0, 112, 5}, {104, 21, 7}), Rule({0, 112, 6}, {104, 21, 8})});
  EXPECT_EQ(result.Inserted, 0);
  EXPECT_THAT(s.Sounds(), ElementsAre("0=104 @0", "32=21 @0", "P7 @0", "P8 @480", "P7 @960"));
}

TEST(Revoice, FollowsEachOfTheTwoBankSelectsByItself) {
  RevoicedSong s;
  s.NewTrack().Sound(0, 0, 112, 5).Ctrl(480, 32, 113).Prog(480, 6).Ready();
  s.Run({Rule({0, 112, 5}, {104, 21, 7})});
  EXPECT_THAT(s.Sounds(),
              ElementsAre("0=104 @0", "32=21 @0", "P7 @0", "32=113 @480", "0=0 @480", "P6 @480"));
}

TEST(Revoice, KeepsTheSoundOfAListedProgramThatSharesABankSelect) {
  RevoicedSong s;
  s.NewTrack().Ctrl(0, 0, 0).Prog(10, 5).Ctrl(20, 32, 112).Prog(30, 6).Ready();
  const auto result = s.Run({Rule({0, 112, 6}, {104, 21, 7})});
  EXPECT_THAT(Texts(result), ElementsAre(": Kanal 1 - Ctrl32 fehlt!"));
  EXPECT_THAT(s.Sounds(), ElementsAre("0=0 @0", "P5 @10", "32=21 @20", "0=104 @30", "P7 @30"));
}

TEST(Revoice, MakesInsertedBankSelectsOfTheProgramsChannelAndTime) {
  RevoicedSong s;
  s.NewTrack().Sound(0, 0, 112, 5, 4).Prog(480, 6, 4).Ready();
  s.song.FirstPatches[3]->NextEvent->TimePosition = 500;
  s.Run({Rule({0, 112, 5}, {104, 21, 7})});
  const PtrMidiEvent msb = s.Event(0, 4);
  EXPECT_EQ(msb->Command, 0xB3);
  EXPECT_EQ(msb->DLength, 3);
  EXPECT_EQ(msb->DType, ShortEvent);
  EXPECT_EQ(msb->TimePosition, 500);
}

TEST(Revoice, LeavesTheSongAsItWasWhenMemoryRunsOut) {
  RevoicedSong s;
  s.NewTrack().Sound(0, 0, 112, 5).Prog(480, 6).Ready();
  const auto before = s.Sounds();
  const std::size_t nodes = s.song.Pool.Live();
  const std::vector rows = {Rule({0, 112, 5}, {104, 21, 7})};
  s.song.Pool.FailAt(2);
  try {
    Revoice(s.song, s.routes, rows);
    FAIL() << "no failure told";
  } catch (const EMidiError& error) {
    EXPECT_EQ(error.what(), OutOfMemoryText());
  }
  s.song.Pool.FailAt(0);
  EXPECT_EQ(s.Sounds(), before);
  EXPECT_EQ(s.song.Pool.Live(), nodes);
  EXPECT_EQ(s.Desk().Patch, 5);
}

TEST(Revoice, IsAtRestAfterOneRun) {
  RevoicedSong s;
  s.NewTrack().Sound(0, 0, 112, 5).Prog(480, 6).Sound(960, 1, 2, 3).Ready();
  const std::vector rows = {Rule({0, 112, 5}, {104, 21, 7}), Rule({1, 2, 3}, {104, 21, 8})};
  s.Run(rows);
  const auto once = s.Sounds();
  EXPECT_EQ(s.Run(rows).Replaced, 0);
  EXPECT_EQ(s.Sounds(), once);
}

/// The sounds that the programs of a track are heard with, in order; -1 for a bank that is not set.
std::vector<TAddress> Heard(RevoicedSong& s, int channel) {
  std::vector<TAddress> sounds;
  TAddress now;
  ForEachEvent(s.Track(0), [&](PtrMidiEvent e) {
    if (!e->IsChannelEvent() || e->IsRemoved() || e->Channel() != channel - 1) return;
    if (e->Kind() == Controller && e->Value[0] == 0) now.CC00 = e->Value[1];
    if (e->Kind() == Controller && e->Value[0] == 32) now.CC32 = e->Value[1];
    if (e->Kind() == ProgramChange) sounds.push_back({now.CC00, now.CC32, e->Value[0]});
  });
  return sounds;
}

TEST(Revoice, GivesEveryProgramOfAnySongItsDestinationOrItsOldSound) {
  std::mt19937 random(20);
  const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  for (int round = 0; round < 300; ++round) {
    RevoicedSong s;
    s.NewTrack();
    for (int i = 0; i < 40; ++i) {
      const int channel = 1 + below(2);
      if (below(3) == 0)
        s.Prog(i * 3, below(3), channel);
      else
        s.Ctrl(i * 3, below(2) * 32, below(3), channel);
      if (below(8) == 0) s.Gone();
    }
    s.Ready();
    std::vector<TRevoicerRec> rows;
    for (int i = 0; i < 8; ++i)
      rows.push_back(Rule({below(3), below(3), below(3)}, {below(3), below(3), below(3)}));
    std::array expected = {Heard(s, 1), Heard(s, 2)};
    for (auto& sounds : expected)
      for (TAddress& sound : sounds) {
        const auto row = std::ranges::find(rows, sound, &TRevoicerRec::Source);
        if (row != rows.end()) sound = row->Dest();
      }
    s.Run(rows);
    EXPECT_EQ(Heard(s, 1), expected[0]) << "round " << round;
    EXPECT_EQ(Heard(s, 2), expected[1]) << "round " << round;
  }
}

// --- What is told

TEST(Revoice, TellsTheLogWhatItRewroteAndInserted) {
  ChangeLog log;
  RevoicedSong s;
  s.NewTrack().Sound(0, 0, 112, 5).Prog(480, 6).Ready();
  s.song.Changes = &log;
  s.Run({Rule({0, 112, 5}, {0, 21, 7})});
  std::vector<std::string> told;
  for (const TChange& c : log.Changes())
    told.push_back((c.Kind == ChangeKind::Rewritten ? "rewritten " : "inserted ") + c.What + ": " +
                   c.Why);
  EXPECT_THAT(
      told, ElementsAre(
                "rewritten Controller 32 = 21, channel 1: sound replaced by the auto revoicer",
                "rewritten Program change 7, channel 1: sound replaced by the auto revoicer",
                "inserted Controller 32 = 112, channel 1: bank select served several program changes"));
}

TEST(Revoice, TellsTheLogInGermanToo) {
  const InGerman german;
  ChangeLog log;
  RevoicedSong s;
  s.NewTrack().Sound(0, 0, 112, 5).Prog(480, 6).Ready();
  s.song.Changes = &log;
  s.Run({Rule({0, 112, 5}, {0, 21, 5})});
  ASSERT_THAT(log.Changes(), SizeIs(2));
  EXPECT_EQ(log.Changes()[0].Why, "Klang durch den Auto Revoicer ersetzt");
  EXPECT_EQ(log.Changes()[1].Why, "Bankwahl galt mehreren Programmwechseln");
}

// --- The store

struct Store {
  MemorySettings settings;
  RecordedMessages messages;
  TAutoRevoicer revoicer;

  explicit Store(const std::vector<std::string>& rows = {}) {
    for (std::size_t i = 0; i < rows.size(); ++i) Write(static_cast<int>(i) + 1, rows[i]);
    settings.WriteInteger(GenosName, "AutoRevoicerElm", static_cast<int>(rows.size()));
  }
  void Write(int number, const std::string& row) {
    settings.WriteString(GenosName, (number < 10 ? "AutoRev0" : "AutoRev") + std::to_string(number),
                         row);
  }
  Store& Load() { return revoicer.LoadRevoiceData(settings, GenosName, messages), *this; }
  std::string Row(std::string_view key) { return settings.ReadString(GenosName, key, "-"); }
  int Count() { return settings.ReadInteger(GenosName, "AutoRevoicerElm", -1); }
};

TEST(AutoRevoicer, LoadsTheRowsOfAnInstrument) {
  Store store({"Old Piano\t0\t112\t0\tCFX\t104\t21\t1", "B\t1\t2\t3\tC\t4\t5\t6"});
  store.settings.WriteInteger("Ketron SD9", "AutoRevoicerElm", 0);
  store.Load();
  ASSERT_EQ(store.revoicer.RevoicerArrayElm(), 2);
  const TRevoicerRec& row = store.revoicer.RevoicerArray[0];
  EXPECT_EQ(row.SourceVoiceName, "Old Piano");
  EXPECT_EQ(AddressText(row.Source()), "0/112/0");
  EXPECT_EQ(row.DestVoiceName, "CFX");
  EXPECT_EQ(AddressText(row.Dest()), "104/21/1");
  EXPECT_EQ(store.revoicer.RevoicerArray[1].Dest(), (TAddress{4, 5, 6}));
  EXPECT_THAT(store.messages.Shown, IsEmpty());
  store.revoicer.LoadRevoiceData(store.settings, "Ketron SD9", store.messages);
  EXPECT_EQ(store.revoicer.RevoicerArrayElm(), 0) << "the rows of the instrument before are gone";
}

TEST(AutoRevoicer, NamesTheInstrumentInItsCaption) {
  Store store;
  store.Load();
  EXPECT_EQ(store.revoicer.Caption(), " Auto Revoicer - Yamaha Genos");
  EXPECT_EQ(store.revoicer.Instrument(), "Yamaha Genos");
  EXPECT_EQ(TAutoRevoicer::PositionHead, "Pos");
}

TEST(AutoRevoicer, StoresARowUnderTheInstrumentsName) {
  Store store;
  store.Load();
  EXPECT_TRUE(store.revoicer.SaveToRevoicer(store.settings, {0, 112, 0}, "Old", {104, 21, 1}, "New"));
  EXPECT_EQ(store.Count(), 1);
  EXPECT_EQ(store.Row("AutoRev01"), "Old\t0\t112\t0\tNew\t104\t21\t1");
}

TEST(AutoRevoicer, CountsTheKeysOnBehindNine) {
  Store store;
  store.Load();
  for (int i = 0; i < 101; ++i)
    ASSERT_TRUE(store.revoicer.SaveToRevoicer(store.settings, {0, 0, i}, "a", {1, 1, 1}, "b"));
  EXPECT_EQ(store.Count(), 101);
  EXPECT_EQ(store.Row("AutoRev09"), "a\t0\t0\t8\tb\t1\t1\t1");
  EXPECT_EQ(store.Row("AutoRev10"), "a\t0\t0\t9\tb\t1\t1\t1");
  EXPECT_EQ(store.Row("AutoRev101"), "a\t0\t0\t100\tb\t1\t1\t1");
  EXPECT_EQ(store.Row("AutoRev010"), "-");
}

TEST(AutoRevoicer, ReplacesTheDestinationOfASourceThatIsThere) {
  Store store({"A\t0\t0\t1\tX\t9\t9\t9", "B\t0\t0\t2\tY\t9\t9\t9"});
  store.Load();
  EXPECT_TRUE(store.revoicer.SaveToRevoicer(store.settings, {0, 0, 1}, "A again", {1, 2, 3}, "Z"));
  EXPECT_EQ(store.Count(), 2);
  EXPECT_EQ(store.Row("AutoRev01"), "A\t0\t0\t1\tZ\t1\t2\t3");
  EXPECT_EQ(store.Row("AutoRev02"), "B\t0\t0\t2\tY\t9\t9\t9");
  EXPECT_EQ(store.revoicer.RevoicerArray[0].DestVoiceName, "Z");
}

TEST(AutoRevoicer, RefusesNumbersThatNoSongCanHave) {
  Store store;
  store.Load();
  EXPECT_FALSE(store.revoicer.SaveToRevoicer(store.settings, {255, 0, 0}, "a", {0, 0, 0}, "b"));
  EXPECT_FALSE(store.revoicer.SaveToRevoicer(store.settings, {0, 0, 0}, "a", {0, 0, -1}, "b"));
  EXPECT_EQ(store.Count(), 0);
  EXPECT_THAT(store.revoicer.RevoicerArray, IsEmpty());
}

TEST(AutoRevoicer, StoresNothingBeforeAnInstrumentIsLoaded) {
  Store store;
  EXPECT_FALSE(store.revoicer.SaveToRevoicer(store.settings, {0, 0, 0}, "a", {0, 0, 1}, "b"));
  EXPECT_EQ(store.settings.ReadString("", "AutoRev01", "-"), "-");
}

TEST(AutoRevoicer, TakesNoMoreRowsThanTheStoreCanName) {
  Store store;
  store.Load();
  store.revoicer.RevoicerArray.resize(TAutoRevoicer::MaxRows);
  EXPECT_FALSE(store.revoicer.SaveToRevoicer(store.settings, {1, 0, 0}, "a", {0, 0, 1}, "b"));
  EXPECT_TRUE(store.revoicer.SaveToRevoicer(store.settings, {0, 0, 0}, "a", {0, 0, 1}, "b"))
      << "a known source still takes another destination";
}

TEST(AutoRevoicer, KeepsTabsAndLineBreaksOfNamesOutOfTheRow) {
  Store store;
  store.Load();
  store.revoicer.SaveToRevoicer(store.settings, {0, 0, 1}, "a\tb", {0, 0, 2}, "c\r\nd");
  EXPECT_EQ(store.Row("AutoRev01"), "a b\t0\t0\t1\tc  d\t0\t0\t2");
}

TEST(AutoRevoicer, MovesLaterRowsUpWhenOneIsDeleted) {
  Store store({"A\t0\t0\t1\tX\t9\t9\t9", "B\t0\t0\t2\tY\t9\t9\t9", "C\t0\t0\t3\tZ\t9\t9\t9"});
  store.Load();
  store.revoicer.Delete(store.settings, 1);
  EXPECT_EQ(store.Count(), 2);
  EXPECT_EQ(store.Row("AutoRev01"), "A\t0\t0\t1\tX\t9\t9\t9");
  EXPECT_EQ(store.Row("AutoRev02"), "C\t0\t0\t3\tZ\t9\t9\t9");
  EXPECT_EQ(store.Row("AutoRev03"), "-") << "no stale row stays behind";
  EXPECT_EQ(store.settings.ReadInteger("Auto Revoicer", "RevoicerArrayElm", -1), 2);
}

TEST(AutoRevoicer, DeletesTheLastRow) {
  Store store({"A\t0\t0\t1\tX\t9\t9\t9"});
  store.Load();
  store.revoicer.Delete(store.settings, 0);
  EXPECT_EQ(store.Count(), 0);
  EXPECT_EQ(store.Row("AutoRev01"), "-");
  EXPECT_EQ(store.settings.ReadInteger("Auto Revoicer", "RevoicerArrayElm", -1), 0);
}

TEST(AutoRevoicer, DeletesNothingOutsideTheList) {
  Store store({"A\t0\t0\t1\tX\t9\t9\t9"});
  store.Load();
  store.revoicer.Delete(store.settings, -1);
  store.revoicer.Delete(store.settings, 1);
  EXPECT_EQ(store.revoicer.RevoicerArrayElm(), 1);
  EXPECT_EQ(store.settings.ReadInteger("Auto Revoicer", "RevoicerArrayElm", -1), -1);
}

TEST(AutoRevoicer, LeavesOutMalformedRowsAndTellsOfThemAtOnce) {
  Store store({"A\t0\t0\t1\tX\t9\t9\t9", "B\t0\t0\t2\tY\t9\t9", "C\t0\t0\tx\tZ\t9\t9\t9",
               "D\t0\t0\t4\tZ\t9\t9\t128", "", "E\t0\t0\t1\tZ\t8\t8\t8", "F\t0\t0\t7\tZ\t7\t7\t7"});
  store.Load();
  ASSERT_EQ(store.revoicer.RevoicerArrayElm(), 2);
  EXPECT_EQ(store.revoicer.RevoicerArray[1].SourceVoiceName, "F");
  EXPECT_THAT(store.messages.Shown,
              ElementsAre("Auto Revoicer - Yamaha Genos: faulty rows are left out"
                          "\rAutoRev02: 7 cells instead of 8"
                          "\rAutoRev03: cell 4, \"x\", is no number from 0 to 127"
                          "\rAutoRev04: cell 8, \"128\", is no number from 0 to 127"
                          "\rAutoRev06: same source as AutoRev01"
                          "\rAutoRev05: missing"));
}

TEST(AutoRevoicer, TellsOfMalformedRowsInGerman) {
  const InGerman german;
  Store store({"B\t0\t0\t2\tY\t9\t9", "C\t0\t0\tx\tZ\t9\t9\t9", "D\t0\t0\t4\tZ\t9\t9\t1",
               "E\t0\t0\t4\tZ\t9\t9\t2", ""});
  store.Load();
  EXPECT_THAT(store.messages.Shown,
              ElementsAre("Auto Revoicer - Yamaha Genos: fehlerhafte Zeilen werden übergangen"
                          "\rAutoRev01: 7 Felder statt 8"
                          "\rAutoRev02: Feld 4, \"x\", ist keine Zahl von 0 bis 127"
                          "\rAutoRev04: dieselbe Quelle wie AutoRev03"
                          "\rAutoRev05: fehlt"));
}

TEST(AutoRevoicer, LeavesAFaultyStoreAsItIsUntilTheListChanges) {
  Store store({"bad", "A\t0\t0\t1\tX\t9\t9\t9"});
  store.Load();
  EXPECT_EQ(store.Row("AutoRev01"), "bad");
  EXPECT_EQ(store.Count(), 2);
  store.revoicer.SaveToRevoicer(store.settings, {0, 0, 5}, "N", {0, 0, 6}, "M");
  EXPECT_EQ(store.Count(), 2);
  EXPECT_EQ(store.Row("AutoRev01"), "A\t0\t0\t1\tX\t9\t9\t9");
  EXPECT_EQ(store.Row("AutoRev02"), "N\t0\t0\t5\tM\t0\t0\t6");
  TAutoRevoicer again;
  again.LoadRevoiceData(store.settings, GenosName, store.messages);
  EXPECT_EQ(again.RevoicerArray, store.revoicer.RevoicerArray);
  EXPECT_THAT(store.messages.Shown, SizeIs(1)) << "the second load finds no fault";
}

TEST(AutoRevoicer, RemovesStaleKeysOfRowsThatWereLeftOut) {
  Store store({"A\t0\t0\t1\tX\t9\t9\t9", "B\t0\t0\t2\tX\t9\t9\t9", "bad", "bad too"});
  store.Load();
  store.revoicer.Delete(store.settings, 0);
  EXPECT_EQ(store.Count(), 1);
  EXPECT_EQ(store.Row("AutoRev01"), "B\t0\t0\t2\tX\t9\t9\t9");
  for (const char* key : {"AutoRev02", "AutoRev03", "AutoRev04"}) EXPECT_EQ(store.Row(key), "-");
}

TEST(AutoRevoicer, BearsACountThatCannotBe) {
  Store store({"A\t0\t0\t1\tX\t9\t9\t9"});
  for (const int count : {2000000000, -3}) {
    store.settings.WriteInteger(GenosName, "AutoRevoicerElm", count);
    store.messages.Shown.clear();
    store.Load();
    EXPECT_EQ(store.revoicer.RevoicerArrayElm(), count > 0 ? 1 : 0);
    ASSERT_THAT(store.messages.Shown, SizeIs(1));
    EXPECT_THAT(store.messages.Shown[0], HasSubstr("AutoRevoicerElm: " + std::to_string(count)));
    EXPECT_LT(store.messages.Shown[0].size(), 400U)
        << "thousands of missing rows are told in few words";
  }
  EXPECT_EQ(store.Row("AutoRev01"), "A\t0\t0\t1\tX\t9\t9\t9");
}

TEST(AutoRevoicer, RevoicesBySavedRows) {
  Store store;
  store.Load();
  store.revoicer.SaveToRevoicer(store.settings, {0, 112, 5}, "Old", {104, 21, 7}, "New");
  RevoicedSong s;
  s.NewTrack().Sound(0, 0, 112, 5).Ready();
  EXPECT_EQ(store.revoicer.Revoice(s.song, s.routes).Replaced, 1);
  EXPECT_EQ(s.Desk().Patch, 7);
}

// --- Files of rules

TEST(RevoicerRules, ReadARowPerLineAndLeaveOutCommentsAndEmptyLines) {
  const auto rules = ReadRevoicerRules(
      "\xEF\xBB\xBF# a comment\r\n\r\n \t \nOld Piano \t "
      "000\t112\t0\tCFX\t104\t21\t1\r\n#x\t1\nB\t1\t2\t3\t\t4\t5\t6");
  EXPECT_THAT(rules.Faults, IsEmpty());
  ASSERT_THAT(rules.Rows, SizeIs(2));
  EXPECT_EQ(rules.Rows[0].SourceVoiceName, "Old Piano");
  EXPECT_EQ(rules.Rows[0].Source(), (TAddress{0, 112, 0}));
  EXPECT_EQ(rules.Rows[0].Dest(), (TAddress{104, 21, 1}));
  EXPECT_EQ(rules.Rows[1].DestVoiceName, "");
  EXPECT_EQ(rules.Rows[1].Dest(), (TAddress{4, 5, 6}));
}

TEST(RevoicerRules, AreEmptyInAnEmptyFile) {
  for (const char* text : {"", "\n", "\r\n\r\n", "# only a comment"}) {
    const auto rules = ReadRevoicerRules(text);
    EXPECT_THAT(rules.Rows, IsEmpty());
    EXPECT_THAT(rules.Faults, IsEmpty());
  }
}

TEST(RevoicerRules, TellFaultsWithTheLineCountedFromOne) {
  const std::string text =
      "# "
      "head\n\nA\t0\t0\t1\tX\t0\t0\n\t\nB\t0\t0\t-"
      "1\tX\t0\t0\t0\nC\t0\t0\t1\tX\t0\t0\t2\nD\t0\t\t1\tX\t0\t0\t2\nE\t0\t0\t1\tX\t0\t0\t3\n"
      "F\t0\t0\t2\tX\t0\t0\t2\t\n";
  const auto rules = ReadRevoicerRules(text);
  ASSERT_THAT(rules.Rows, SizeIs(1));
  EXPECT_EQ(rules.Rows[0].SourceVoiceName, "C");
  EXPECT_THAT(
      rules.Faults,
      ElementsAre("line 3: 7 cells instead of 8", "line 5: cell 4, \"-1\", is no number from 0 to 127",
                  "line 7: cell 3, \"\", is no number from 0 to 127", "line 8: same source as line 6",
                  "line 9: 9 cells instead of 8"));
  const InGerman german;
  EXPECT_THAT(
      ReadRevoicerRules(text).Faults,
      ElementsAre("Zeile 3: 7 Felder statt 8", "Zeile 5: Feld 4, \"-1\", ist keine Zahl von 0 bis 127",
                  "Zeile 7: Feld 3, \"\", ist keine Zahl von 0 bis 127",
                  "Zeile 8: dieselbe Quelle wie Zeile 6", "Zeile 9: 9 Felder statt 8"));
}

TEST(RevoicerRules, ComeBackAsTheyWereWritten) {
  std::vector<TRevoicerRec> rows = {Rule({0, 112, 5}, {104, 21, 7}), Rule({127, 127, 127}, {0, 0, 0}),
                                    Rule({1, 2, 3}, {4, 5, 6})};
  rows[0].SourceVoiceName = "# 1 Größe";
  rows[1].SourceVoiceName = "";
  rows[1].DestVoiceName = "";
  for (const bool german : {false, true}) {
    GermanLanguage = german;
    const auto again = ReadRevoicerRules(RevoicerRulesText(rows));
    EXPECT_THAT(again.Faults, IsEmpty());
    EXPECT_EQ(again.Rows, rows);
    GermanLanguage = false;
  }
}

TEST(RevoicerRules, NameTheirCellsInTheFirstLine) {
  EXPECT_EQ(RevoicerRulesText({}), "# source\tCC0\tCC32\tprogram\tdestination\tCC0\tCC32\tprogram\n");
  const InGerman german;
  EXPECT_EQ(RevoicerRulesText({}), "# Quelle\tCC0\tCC32\tProgramm\tZiel\tCC0\tCC32\tProgramm\n");
}

}  // namespace
}  // namespace Sonarello
