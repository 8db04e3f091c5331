// Songs into format 0: all tracks mixed down.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "WriterKit.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;

TEST(WriterMix, MixesTracksByPositionLowerTracksFirst) {
  WriterBench bench;
  bench.Load(Smf(1, 480)
                 .Track()
                 .At(0)
                 .Text(3, "Song")
                 .Tempo(500000)
                 .End()
                 .Track()
                 .At(0)
                 .Text(3, "Lead")
                 .Note(1, 60, 100, 200)
                 .End()
                 .Track()
                 .Note(2, 61, 50, 100)
                 .At(100)
                 .Prog(2, 1)
                 .End());
  const WrittenFile file = bench.Write(0);
  EXPECT_EQ(file.Format, 0);
  ASSERT_EQ(file.Tracks.size(), 1U);
  EXPECT_THAT(file.Tracks[0],
              ElementsAre(HeadLine, "0 name Song", "0 ff51 07a120", "0 name Lead", "50 913d64",
                          "100 903c64", "100 813d40", "100 c101", "200 803c40", "999 end"));
}

TEST(WriterMix, NamesAFormatZeroSongAfterItsFile) {
  for (const bool unmix : {false, true}) {
    WriterBench bench;
    bench.options.UnmixFormat0 = unmix;
    bench.Load(Smf(0, 480).Track().At(0).Text(3, "old").Note(1, 60, 1, 2).Note(2, 61, 2, 3).End());
    EXPECT_THAT(bench.Write(0).Tracks.at(0).at(1), "0 name My Song");
    EXPECT_EQ(bench.Write(0).Count("0 name old"), 0);
  }
}

TEST(WriterMix, KeepsTheOrderOfAFormatZeroSongThatWasNotSplit) {
  WriterBench bench;
  bench.options.UnmixFormat0 = false;
  bench.Load(
      Smf(0, 480).Track().At(5).Sysex({1, 0xF7}).Prog(9, 1).Prog(2, 2).Text(5, "la").Prog(1, 3).End());
  EXPECT_THAT(bench.Write(0).Tracks.at(0),
              ElementsAre(HeadLine, "0 name My Song", "5 f0 01f7", "5 c801", "5 c102", "5 lyric la",
                          "5 c003", "999 end"));
}

TEST(WriterMix, PutsAResetInFrontOfWhatOtherTracksSetAtItsTick) {
  WriterBench bench;  // split on load: the sysex lies on track 10, the controller on track 1
  bench.Load(Smf(0, 480).Track().At(0).Sysex({0x7E, 0x7F, 9, 1, 0xF7}).Ctrl(1, 7, 80).End());
  EXPECT_THAT(bench.Write(0).Tracks.at(0),
              ElementsAre(HeadLine, "0 name My Song", "0 f0 7e7f0901f7", "0 b00750", "999 end"));
}

TEST(WriterMix, IsAFixedPointOfLoadAndSave) {
  WriterBench bench;
  bench.Load(Smf(0, 480)
                 .Track()
                 .At(0)
                 .Tempo(500000)
                 .Text(5, "la")
                 .Prog(1, 5)
                 .Note(1, 60, 0, 10)
                 .Note(10, 36, 20, 30)
                 .At(40)
                 .Sysex({1, 0xF7})
                 .End());
  const Bytes once = bench.Encode(0);
  WriterBench again;
  again.LoadBytes(once);
  EXPECT_EQ(again.Encode(0), once);
}

TEST(WriterMix, EqualsASortOfAllEventsForAnyNumberOfTracks) {
  std::mt19937 random(7);
  for (const int tracks : {2, 3, 16, 17, 33}) {
    WriterBench bench;
    Smf smf(1, 480);
    std::vector<std::pair<int, std::string>> expected;
    for (int t = 0; t < tracks; ++t) {
      smf.Track();
      int tick = 0;
      for (int i = 0; i < 50; ++i) {
        tick += static_cast<int>(random() % 4);
        smf.At(tick).Ctrl(1 + t % 16, t, i);
        char line[16];
        std::snprintf(line, sizeof line, "%d b%x%02x%02x", tick, static_cast<unsigned>(t % 16),
                      static_cast<unsigned>(t), static_cast<unsigned>(i));
        expected.emplace_back(tick, line);
      }
      smf.End();
    }
    std::ranges::stable_sort(expected, {}, &std::pair<int, std::string>::first);
    bench.Load(smf);
    const std::vector<std::string> written = bench.Write(0).Tracks.at(0);
    ASSERT_EQ(written.size(), expected.size() + 2);
    for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(written[i + 1], expected[i].second);
  }
}

TEST(WriterMix, TellsOfAnEventBehindItsSuccessorAndGoesOn) {
  WriterBench bench;
  bench.Load(Smf(1, 480).Track().End().Track().Note(1, 60, 100, 200).End());
  bench.Event(1, 1)->Position = 300;
  const WrittenFile file = bench.Write(0);
  EXPECT_THAT(bench.messages.Shown,
              ElementsAre("F0-Mixdown: Falsches Event bei Position 300\rEventCmd 144\rEventtyp 1"));
  EXPECT_EQ(file.Tracks[0].size(), 4U);
}

}  // namespace
}  // namespace Sonarello
