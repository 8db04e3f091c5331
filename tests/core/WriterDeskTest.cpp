// The desk's settings, applied to the copy that is written.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "WriterKit.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;

class WriterDesk : public testing::Test {
 protected:
  /// Channel 1 plays key 60 and 62 with velocities 100 and 20, channel 2 key 60 with 100.
  void SetUp() override {
    bench.Load(Smf(1, 480)
                   .Track()
                   .At(0)
                   .Tempo(500000)
                   .End()
                   .Track()
                   .At(0)
                   .Ctrl(1, 60, 60)
                   .Note(1, 60, 1, 2, 100)
                   .Note(1, 62, 3, 4, 20)
                   .End()
                   .Track()
                   .Note(2, 60, 5, 6, 100)
                   .End());
  }
  std::vector<std::string> Notes() {
    std::vector<std::string> notes;
    for (const auto& track : bench.Write(1).Tracks)
      for (const std::string& line : track)
        if (line.find(" 9") != std::string::npos && line.ends_with("end") == false)
          notes.push_back(line.substr(line.find(' ') + 1));
    return notes;
  }
  WriterBench bench;
};

TEST_F(WriterDesk, MovesDrumKeysOfNoteOnsAndNoteOffs) {
  bench.Channel(1).DrumArray[60].Transpose = -12;
  const WrittenFile file = bench.Write(1);
  EXPECT_THAT(file.Tracks[1], ElementsAre(HeadLine, "0 b03c3c", "1 903064", "2 803040", "3 903e14",
                                          "4 803e40", "999 end"));
  EXPECT_EQ(file.Count("5 913c64"), 1) << "another channel keeps its keys";
}

TEST_F(WriterDesk, LeavesAKeyWhereItIsThatWouldLeaveTheKeyboard) {
  bench.Channel(1).DrumArray[60].Transpose = -61;
  bench.Channel(1).DrumArray[62].Transpose = 66;
  EXPECT_THAT(Notes(), ElementsAre("903c64", "903e14", "913c64"));
  bench.Channel(1).DrumArray[60].Transpose = -60;
  bench.Channel(1).DrumArray[62].Transpose = 65;
  EXPECT_THAT(Notes(), ElementsAre("900064", "907f14", "913c64"));
}

TEST_F(WriterDesk, AsksTheDrumMaskWhereAKeyMayMoveTo) {
  bench.hooks.DrumKeyMayMove = [](const Song&, int channel, int key) {
    return channel == 0 && key != 48;
  };
  bench.Channel(1).DrumArray[60].Transpose = -12;
  bench.Channel(1).DrumArray[62].Transpose = -12;
  EXPECT_THAT(Notes(), ElementsAre("903c64", "903214", "913c64"));
}

TEST_F(WriterDesk, AddsVelocitiesOfChannelAndKeyAndStaysInRange) {
  bench.song.VelocityDelta[0] = 10;
  bench.Channel(1).DrumArray[62].DeltaVelocity = 5;
  EXPECT_THAT(Notes(), ElementsAre("903c6e", "903e23", "913c64"));
  bench.song.VelocityDelta[0] = 127;
  EXPECT_THAT(Notes(), ElementsAre("903c7f", "903e7f", "913c64"));
  bench.song.VelocityDelta[0] = -127;
  bench.Channel(1).DrumArray[62].DeltaVelocity = -128;
  EXPECT_THAT(Notes(), ElementsAre("903c01", "903e01", "913c64"));
}

TEST_F(WriterDesk, LeavesReleaseVelocitiesAlone) {
  bench.song.VelocityDelta[0] = 50;
  EXPECT_EQ(bench.Write(1).Count("2 803c40"), 1);
}

TEST_F(WriterDesk, MapsVelocitiesIntoAStoredRangeInsteadOfAdding) {
  bench.song.NotesVelocities[0] = {
      .Minimum = 20, .Maximum = 100, .Mean = 60, .Mapped = true, .NewMinimum = 60, .NewMaximum = 100};
  bench.song.VelocityDelta[0] = 27;
  EXPECT_THAT(Notes(), ElementsAre("903c64", "903e3c", "913c64"));
}

TEST_F(WriterDesk, MapsWhatLiesOutsideTheOldRangeIntoTheVelocitiesThatThereAre) {
  bench.song.NotesVelocities[0] = {
      .Minimum = 50, .Maximum = 60, .Mean = 55, .Mapped = true, .NewMinimum = 1, .NewMaximum = 127};
  EXPECT_THAT(Notes(), ElementsAre("903c7f", "903e01", "913c64"));
}

TEST_F(WriterDesk, PutsNotesThatAreAllAlikeIntoTheMiddleOfTheNewRange) {
  bench.song.NotesVelocities[1] = {
      .Minimum = 100, .Maximum = 100, .Mean = 100, .Mapped = true, .NewMinimum = 40, .NewMaximum = 60};
  EXPECT_THAT(Notes(), ElementsAre("903c64", "903e14", "913c32"));
}

TEST_F(WriterDesk, ChangesFormatZeroFilesAlike) {
  bench.song.VelocityDelta[0] = 1;
  bench.Channel(1).DrumArray[60].Transpose = 1;
  EXPECT_EQ(bench.Write(0).Count("1 903d65"), 1);
}

TEST_F(WriterDesk, ExchangesChannelsAndTheirTracks) {
  bench.Channel(1).MidiChannel = 1;
  bench.Channel(2).MidiChannel = 0;
  const WrittenFile file = bench.Write(1);
  EXPECT_THAT(file.Tracks[1], ElementsAre(HeadLine, "5 903c64", "6 803c40", "999 end"));
  EXPECT_THAT(file.Tracks[2], ElementsAre(HeadLine, "0 b13c3c", "1 913c64", "2 813c40", "3 913e14",
                                          "4 813e40", "999 end"));
}

TEST_F(WriterDesk, KeepsTheTrackInItsPlaceWhenTheOtherChannelHasNone) {
  bench.Channel(1).MidiChannel = 8;
  bench.Channel(9).MidiChannel = 0;
  const WrittenFile file = bench.Write(1);
  ASSERT_EQ(file.Tracks.size(), 3U);
  EXPECT_EQ(file.Tracks[1][2], "1 983c64");
}

TEST_F(WriterDesk, LosesNoTrackWhenTwoChannelsShareAnOutput) {
  bench.Channel(1).MidiChannel = 4;
  bench.Channel(2).MidiChannel = 4;
  const WrittenFile file = bench.Write(1);
  ASSERT_EQ(file.Tracks.size(), 3U);
  EXPECT_EQ(file.Count("1 943c64") + file.Count("5 943c64"), 2);
}

TEST_F(WriterDesk, TakesAnImpossibleOutputChannelForTheChannelItself) {
  bench.Channel(1).MidiChannel = -1;
  bench.Channel(2).MidiChannel = 16;
  EXPECT_THAT(Notes(), ElementsAre("903c64", "903e14", "913c64"));
}

TEST(WriterDeskTracks, NeverMovesTheTempoTrack) {
  WriterBench bench;
  bench.Load(
      Smf(1, 480).Track().At(0).Tempo(300000).Note(1, 60, 0, 1).End().Track().Note(2, 61, 0, 1).End());
  bench.Channel(1).MidiChannel = 1;
  bench.Channel(2).MidiChannel = 0;
  const WrittenFile file = bench.Write(1);
  EXPECT_EQ(file.Tracks[0][1], "0 ff51 0493e0");
  EXPECT_EQ(file.Tracks[0][2], "0 913c64");
}

TEST(WriterDeskTracks, ReordersTheTracksOfASplitSong) {
  WriterBench bench;
  bench.Load(Smf(0, 480).Track().At(0).On(1, 60).On(2, 61).On(16, 62).End());
  bench.Channel(1).MidiChannel = 15;
  bench.Channel(16).MidiChannel = 0;
  const WrittenFile file = bench.Write(1);
  ASSERT_EQ(file.Tracks.size(), 4U);
  EXPECT_EQ(file.Tracks[1][1], "0 903e64");
  EXPECT_EQ(file.Tracks[2][1], "0 913d64");
  EXPECT_EQ(file.Tracks[3][1], "0 9f3c64");
}

TEST(WriterDeskTracks, ExchangesSeveralTracksOfAChannelPairwise) {
  WriterBench bench;
  Smf smf(1, 480);
  smf.Track().End();
  for (const int channel : {1, 2, 1, 2, 1}) smf.Track().At(0).Prog(channel, 10 * channel).End();
  bench.Load(smf);
  bench.Channel(1).MidiChannel = 1;
  bench.Channel(2).MidiChannel = 0;
  const WrittenFile file = bench.Write(1);
  std::vector<std::string> programs;
  for (std::size_t t = 1; t < file.Tracks.size(); ++t) programs.push_back(file.Tracks[t][1]);
  EXPECT_THAT(programs, ElementsAre("0 c014", "0 c10a", "0 c014", "0 c10a", "0 c10a"));
}

}  // namespace
}  // namespace Sonarello
