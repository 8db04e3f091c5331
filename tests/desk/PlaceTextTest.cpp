#include "desk/PlaceText.h"

#include <gtest/gtest.h>

#include "helpers/SongBuilder.h"

namespace Sonarello {
namespace {

struct PlaceTextTest : ::testing::Test {
  TestSong bench{480};
  PlaceTextTest() {
    bench.NewTrack().Tempo(0, 500000).Sign(0, 4, 2).Finish(480 * 4 * 10);
    bench.Map();
  }
};

TEST_F(PlaceTextTest, ReadsMeasureAndBeat) {
  EXPECT_EQ(TimeOfPlace(bench.song, "1"), 0);
  EXPECT_EQ(TimeOfPlace(bench.song, "2:01"), 2000);
  EXPECT_EQ(TimeOfPlace(bench.song, " 3.3 "), 5000);
}

TEST_F(PlaceTextTest, RefusesWhatIsNoPlace) {
  for (const char* text :
       {"", " ", "0", "1:0", "-1", "1:", ":1", "a", "2:1x", "2;1", "1:1:1", "99999999999"})
    EXPECT_EQ(TimeOfPlace(bench.song, text), std::nullopt) << text;
}

TEST_F(PlaceTextTest, RefusesAPlaceBehindTheSong) {
  EXPECT_EQ(TimeOfPlace(bench.song, "500"), std::nullopt);
}

}  // namespace
}  // namespace Sonarello
