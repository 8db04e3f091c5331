#include "playback/drivers/MidiPace.h"

#include <gtest/gtest.h>

namespace Sonarello {
namespace {

using namespace std::chrono_literals;

TEST(CyclePace, HasRoomForHalfARing) {
  CyclePace pace;
  std::size_t sent = 0;
  while (pace.Fits(10, 3)) {
    pace.Written(10, 3);
    ++sent;
  }
  EXPECT_EQ(sent, CyclePace::Room / (3 + CyclePace::Head));
}

TEST(CyclePace, HasTheRoomAgainThreeCyclesLater) {
  CyclePace pace;
  pace.Written(10, 8000);
  EXPECT_FALSE(pace.Fits(12, 300));
  EXPECT_TRUE(pace.Fits(13, 300));
  EXPECT_EQ(pace.Waiting(13), 0U);
}

TEST(CyclePace, CountsEachCycleByItself) {
  CyclePace pace;
  pace.Written(1, 100);
  pace.Written(2, 200);
  pace.Written(3, 300);
  EXPECT_EQ(pace.Waiting(3), 600 + 3 * CyclePace::Head);
  EXPECT_EQ(pace.Waiting(4), 500 + 2 * CyclePace::Head);
  EXPECT_EQ(pace.Waiting(5), 300 + CyclePace::Head);
}

TEST(CyclePace, SendsAMessageLargerThanTheRoomAlone) {
  CyclePace pace;
  EXPECT_TRUE(pace.Fits(5, 16'000));
  pace.Written(5, 3);
  EXPECT_FALSE(pace.Fits(5, 16'000));
  EXPECT_TRUE(pace.Fits(8, 16'000));
}

TEST(CyclePace, CountsOnWhenTheCyclesWrap) {
  CyclePace pace;
  pace.Written(0xFFFFFFFF, 100);
  EXPECT_EQ(pace.Waiting(1), 100 + CyclePace::Head);
  EXPECT_EQ(pace.Waiting(2), 0U);
}

TEST(CyclePace, ForgetsWhatWasWrittenLongAgo) {
  CyclePace pace;
  pace.Written(4, 100);
  pace.Written(400, 50);
  EXPECT_EQ(pace.Waiting(400), 50 + CyclePace::Head);
}

TEST(WirePace, HasRoomForABuffer) {
  const WirePace::TTime start{};
  WirePace pace(4096, 3125, start);
  EXPECT_TRUE(pace.Fits(start, 4096));
  pace.Written(start, 4096);
  EXPECT_FALSE(pace.Fits(start, 1));
}

TEST(WirePace, EmptiesAtTheSpeedOfTheWire) {
  const WirePace::TTime start{};
  WirePace pace(4096, 3125, start);
  pace.Written(start, 4096);
  EXPECT_FALSE(pace.Fits(start + 900us, 3));
  EXPECT_TRUE(pace.Fits(start + 1ms, 3));
  EXPECT_FALSE(pace.Fits(start + 1300ms, 4096));
  EXPECT_TRUE(pace.Fits(start + 1311ms, 4096));
}

TEST(WirePace, SavesUpNoMoreThanItsBuffer) {
  const WirePace::TTime start{};
  WirePace pace(4096, 3125, start);
  EXPECT_TRUE(pace.Fits(start + 1h, 4096));
  pace.Written(start + 1h, 4096);
  EXPECT_FALSE(pace.Fits(start + 1h, 1));
}

TEST(WirePace, TakesWhatIsLargerThanItsBufferWhenEmpty) {
  const WirePace::TTime start{};
  WirePace pace(100, 100, start);
  EXPECT_TRUE(pace.Fits(start, 200));
  pace.Written(start, 200);
  EXPECT_FALSE(pace.Fits(start + 1500ms, 200));
  EXPECT_TRUE(pace.Fits(start + 2000ms, 200));
}

}  // namespace
}  // namespace Sonarello
