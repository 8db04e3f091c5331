#include "playback/LevelMeters.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace Sonarello {
namespace {

std::vector<int> Fall(TRMSValue meter) {
  std::vector<int> levels;
  for (int i = 0; i < 200 && meter.Level > meter.Peak; ++i) {
    UpdateRMS({&meter, 1});
    levels.push_back(meter.Level);
  }
  return levels;
}

TEST(LevelMeters, RiseAtOnce) {
  TRMSValue meter;
  MeterNoteOn(meter, 100);
  EXPECT_EQ(meter.Level, 0);
  UpdateRMS({&meter, 1});
  EXPECT_EQ(meter.Level, 100);
  EXPECT_EQ(meter.Count, 1);
}

TEST(LevelMeters, ShowTheLoudestOfTheNotes) {
  TRMSValue meter;
  MeterNoteOn(meter, 60);
  MeterNoteOn(meter, 90);
  MeterNoteOn(meter, 30);
  EXPECT_EQ(meter.Peak, 90);
  EXPECT_EQ(meter.Count, 3);
  MeterNoteOff(meter);
  UpdateRMS({&meter, 1});
  EXPECT_EQ(meter.Level, 90) << "the peak holds until the last note has ended";
}

TEST(LevelMeters, ShowANoteThatWasOverBeforeTheNextStep) {
  TRMSValue meter;
  MeterNoteOn(meter, 80);
  MeterNoteOff(meter);
  UpdateRMS({&meter, 1});
  EXPECT_EQ(meter.Level, 80);
  EXPECT_EQ(meter.Peak, 0);
  UpdateRMS({&meter, 1});
  EXPECT_EQ(meter.Level, 75);
}

TEST(LevelMeters, FallByASixteenthAndAtLeastByTwo) {
  const std::vector<int> levels = Fall({127, 0, 0});
  ASSERT_GT(levels.size(), 3U);
  EXPECT_EQ(levels[0], 120);  // 127 / 16 = 7
  EXPECT_EQ(levels[1], 113);
  EXPECT_EQ(levels.back(), 0);
  for (std::size_t i = 1; i < levels.size(); ++i)
    EXPECT_TRUE(levels[i - 1] - levels[i] >= 2 || levels[i] == 0) << i;
}

TEST(LevelMeters, NeverFallBelowThePeakOrNothing) {
  EXPECT_THAT(Fall({100, 1, 98}), testing::ElementsAre(98));
  EXPECT_THAT(Fall({1, 0, 0}), testing::ElementsAre(0));
  EXPECT_THAT(Fall({3, 0, 0}), testing::ElementsAre(1, 0));
}

TEST(LevelMeters, StandStillAtTheirPeak) {
  TRMSValue meter = {64, 1, 64};
  UpdateRMS({&meter, 1});
  EXPECT_EQ(meter.Level, 64);
  EXPECT_EQ(meter.Peak, 64);
}

TEST(LevelMeters, CountNoNoteOffThatHasNoNote) {
  TRMSValue meter;
  MeterNoteOff(meter);
  EXPECT_EQ(meter.Count, 0);
}

TEST(LevelMeters, CountNoFurtherThanTheyCan) {
  TRMSValue meter;
  meter.Count = std::numeric_limits<std::int16_t>::max();
  MeterNoteOn(meter, 1);
  EXPECT_EQ(meter.Count, std::numeric_limits<std::int16_t>::max());
}

TEST(DrumLights, ShineForTheirTime) {
  std::array<TDrumsRec, KeyCount> drums;
  drums[36].XValue = 1000;
  drums[127].XValue = 1050;
  EXPECT_TRUE(UpdateDrumLights(drums, 1000)[36]);
  auto lit = UpdateDrumLights(drums, 1000 + DrumLightTime - 1);
  EXPECT_TRUE(lit[36] && lit[127]);
  lit = UpdateDrumLights(drums, 1000 + DrumLightTime);
  EXPECT_FALSE(lit[36]);
  EXPECT_EQ(drums[36].XValue, 0);
  EXPECT_TRUE(lit[127]);
  EXPECT_EQ(lit.count(), 1U);
}

TEST(DrumLights, TakeAHoldTimeOfTheirOwn) {
  std::array<TDrumsRec, KeyCount> drums;
  drums[0].XValue = 10;
  EXPECT_TRUE(UpdateDrumLights(drums, 510, 501)[0]);
  EXPECT_FALSE(UpdateDrumLights(drums, 511, 501)[0]);
}

TEST(DrumLights, BearAPlayerThatIsALittleAhead) {
  std::array<TDrumsRec, KeyCount> drums;
  drums[40].XValue = 2003;
  EXPECT_TRUE(UpdateDrumLights(drums, 2000)[40]);
}

TEST(DrumLights, GoOutAfterAJumpBack) {
  std::array<TDrumsRec, KeyCount> drums;
  drums[40].XValue = 60000;
  EXPECT_FALSE(UpdateDrumLights(drums, 1000)[40]);
  EXPECT_EQ(drums[40].XValue, 0);
}

}  // namespace
}  // namespace Sonarello
