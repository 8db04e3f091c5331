#include "desk/BarTimes.h"

#include <gtest/gtest.h>

#include "helpers/SongBuilder.h"

namespace Sonarello {
namespace {

using TTimes = std::vector<std::int64_t>;

TEST(BarTimes, AnEmptySongHasOneBar) {
  const Song song;
  EXPECT_EQ(BarTimes(song), TTimes{0});
}

TEST(BarTimes, CountsBarsOfASteadySong) {
  TestSong s(480);
  s.NewTrack().Tempo(0, 500000).Sign(0, 4, 2).Finish(480 * 4 * 3 + 480);
  s.Map();
  EXPECT_EQ(BarTimes(s.song), (TTimes{0, 2000, 4000, 6000}));
}

TEST(BarTimes, FollowsTempoChangesInsideABar) {
  TestSong s(480);
  s.NewTrack().Tempo(0, 500000).Sign(0, 4, 2).Tempo(480 * 2, 1000000).Finish(480 * 4 * 2 + 100);
  s.Map();
  EXPECT_EQ(BarTimes(s.song), (TTimes{0, 3000, 7000}));
}

TEST(BarTimes, FollowsSignatures) {
  TestSong s(480);
  s.NewTrack().Tempo(0, 500000).Sign(0, 3, 2).Sign(480 * 6, 6, 3).Finish(480 * 12);
  s.Map();
  EXPECT_EQ(BarTimes(s.song), (TTimes{0, 1500, 3000, 4500, 6000}));
}

TEST(BarTimes, StaysBoundedInAHugeSong) {
  TestSong s(1);
  s.NewTrack().Tempo(0, 500000).Sign(0, 1, 7).Finish(100'000'000);
  s.Map();
  EXPECT_LE(BarTimes(s.song).size(), MostBars);
  EXPECT_TRUE(std::ranges::is_sorted(BarTimes(s.song)));
}

}  // namespace
}  // namespace Sonarello
