#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/Application.h"
#include "app/controls/GroupFader.h"
#include "app/controls/Hands.h"
#include "app/controls/LevelMeter.h"
#include "app/controls/Shown.h"
#include "app/controls/TrackBar.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Volume {
  explicit Volume(QSize size = {74, 200}) {
    fader.resize(size);
    fader.setPosition(64);
    ShowForTest(fader);
    QObject::connect(&fader, &TCustomTrackBar::moved,
                     [this](int to) { log.push_back(std::to_string(to)); });
    QObject::connect(&fader, &TCustomTrackBar::pressed, [this] { log.push_back("pressed"); });
    QObject::connect(&fader, &TCustomTrackBar::released, [this] { log.push_back("released"); });
  }
  [[nodiscard]] QPointF cap() const { return {38, fader.y(fader.position())}; }

  TCustomTrackBar fader;
  Log log;
};

TEST(Fader, ItsCapStandsWhereTheValueIs) {
  const Volume volume;
  EXPECT_DOUBLE_EQ(volume.fader.y(127), 11);
  EXPECT_DOUBLE_EQ(volume.fader.y(0), 189);
  EXPECT_DOUBLE_EQ(volume.fader.y(96), 189 - 178.0 * 96 / 127);
}

TEST(Fader, HasASmallerCapInANarrowStrip) {
  EXPECT_DOUBLE_EQ(FaderPlan::Of({72, 200}).x, 38);
  EXPECT_DOUBLE_EQ(FaderPlan::Of({72, 200}).capWidth, 32);
  EXPECT_DOUBLE_EQ(FaderPlan::Of({71, 200}).x, 30);
  EXPECT_DOUBLE_EQ(FaderPlan::Of({71, 200}).capWidth, 26);
  const AtScale scale(150);
  EXPECT_DOUBLE_EQ(FaderPlan::Of({108, 300}).capWidth, 48);
  EXPECT_DOUBLE_EQ(FaderPlan::Of({107, 300}).capWidth, 39);
}

TEST(Fader, DoesNotJumpWhenItsCapIsTakenOffItsMiddle) {
  Volume volume;
  const QPointF grip = volume.cap() + QPointF(5, 6);
  Press(volume.fader, grip);
  MoveTo(volume.fader, grip);
  EXPECT_EQ(volume.fader.position(), 64);
  MoveTo(volume.fader, grip - QPointF(0, 178));
  EXPECT_EQ(volume.fader.position(), 127);
  MoveTo(volume.fader, grip);
  EXPECT_EQ(volume.fader.position(), 64);
  Release(volume.fader, grip);
  EXPECT_THAT(volume.log, ElementsAre("pressed", "127", "64", "released"));
}

TEST(Fader, MovesAtAQuarterOfTheSpeedWithShift) {
  Volume volume;
  Press(volume.fader, volume.cap());
  const QPointF from = volume.cap();
  MoveTo(volume.fader, from - QPointF(0, 56), Qt::NoModifier);  // 178 pixels are 127 steps
  EXPECT_EQ(volume.fader.position(), 104);
  MoveTo(volume.fader, from - QPointF(0, 56), Qt::ShiftModifier);
  EXPECT_EQ(volume.fader.position(), 104);
  MoveTo(volume.fader, from - QPointF(0, 0), Qt::ShiftModifier);
  EXPECT_EQ(volume.fader.position(), 94);
  MoveTo(volume.fader, from - QPointF(0, 0), Qt::NoModifier);
  EXPECT_EQ(volume.fader.position(), 94);
  Release(volume.fader, from);
}

TEST(Fader, StepsByEightTowardsAClickAndRepeatsUntilTheCapIsThere) {
  Volume volume;
  const QPointF at(60, volume.fader.y(90));
  Press(volume.fader, at);
  EXPECT_EQ(volume.fader.position(), 72);
  ASSERT_NE(RunningTimer(volume.fader), nullptr);
  EXPECT_EQ(RunningTimer(volume.fader)->interval(), 400);
  for (int i = 0; i < 20; ++i) Strike(volume.fader);
  EXPECT_EQ(volume.fader.position(), 88) << "the cap is under the pointer now";
  Release(volume.fader, at);
  EXPECT_EQ(RunningTimer(volume.fader), nullptr);
}

TEST(Fader, StepsDownTowardsAClickBelow) {
  Volume volume;
  Click(volume.fader, QPointF(20, 185));
  EXPECT_EQ(volume.fader.position(), 56);
  EXPECT_THAT(volume.log, ElementsAre("pressed", "56", "released"));
}

TEST(Fader, GetsLowerByOneStepForEachNotchAwayFromTheUser) {
  Volume volume;
  Turn(volume.fader, -120);
  EXPECT_EQ(volume.fader.position(), 65);
  Turn(volume.fader, 240);
  EXPECT_EQ(volume.fader.position(), 63);
  Turn(volume.fader, -60);
  EXPECT_EQ(volume.fader.position(), 63) << "half a notch";
  Turn(volume.fader, -60);
  EXPECT_EQ(volume.fader.position(), 64);
  EXPECT_THAT(volume.log, ElementsAre("65", "63", "64"));
}

TEST(Fader, StaysWithinItsRange) {
  Volume volume;
  volume.fader.setPosition(0);
  Turn(volume.fader, 120);
  EXPECT_EQ(volume.fader.position(), 0);
  volume.fader.setPosition(127);
  Turn(volume.fader, -120);
  EXPECT_EQ(volume.fader.position(), 127);
  volume.fader.setPosition(400);
  EXPECT_EQ(volume.fader.position(), 127);
  EXPECT_THAT(volume.log, IsEmpty()) << "what the program sets is no move of the user's";
}

TEST(Fader, TakesKeysWhereItHasTheFocus) {
  Volume volume;
  QTest::keyClick(&volume.fader, Qt::Key_Up);
  QTest::keyClick(&volume.fader, Qt::Key_Down, Qt::ShiftModifier);
  QTest::keyClick(&volume.fader, Qt::Key_PageUp);
  EXPECT_THAT(volume.log, ElementsAre("65", "57", "65"));
}

TEST(Fader, LeavesTheRightButtonToTheStrip) {
  Volume volume;
  Click(volume.fader, volume.cap(), Qt::RightButton);
  EXPECT_THAT(volume.log, IsEmpty());
}

TEST(Fader, LetsGoWhenItIsHiddenWhileHeld) {
  Volume volume;
  Press(volume.fader, volume.cap());
  volume.fader.hide();
  EXPECT_THAT(volume.log, ElementsAre("pressed", "released"));
}

TEST(Fader, DrawsItsCapLineAtTheValue) {
  Volume volume({74, 211});  // whole pixels for 189 steps
  volume.fader.setPosition(127);
  const QImage picture = Picture(volume.fader);
  EXPECT_EQ(picture.pixelColor(38, 10), th().capline);
  EXPECT_EQ(picture.pixelColor(38, 11), th().capline);
  volume.fader.setLook(TCustomTrackBar::Look::Drum, TCustomTrackBar::Dim::None);
  EXPECT_EQ(Picture(volume.fader).pixelColor(38, 10), th().drum);
  volume.fader.setLook(TCustomTrackBar::Look::Active, TCustomTrackBar::Dim::None);
  EXPECT_EQ(Picture(volume.fader).pixelColor(38, 10), th().acc);
  EXPECT_EQ(Picture(volume.fader).pixelColor(38, 150), th().acc) << "the fill down to zero";
}

struct Group {
  Group() {
    fader.resize(66, 226);
    ShowForTest(fader);
    QObject::connect(&fader, &GroupFader::pressed, [this] { log.push_back("pressed"); });
    QObject::connect(&fader, &GroupFader::moved, [this](int to) { log.push_back(std::to_string(to)); });
    QObject::connect(&fader, &GroupFader::released, [this] { log.push_back("released"); });
  }
  GroupFader fader;
  Log log;
};

TEST(GroupFader, TellsHowFarItIsDraggedFromItsMiddle) {
  Group group;
  Press(group.fader, {33, 113});
  MoveTo(group.fader, {33, 63});  // 200 pixels are 254 steps
  EXPECT_EQ(group.fader.position(), 64);
  MoveTo(group.fader, {33, -500});
  EXPECT_THAT(group.log, ElementsAre("pressed", "64", "127"));
}

TEST(GroupFader, SpringsBackInEightFramesWithoutSayingSo) {
  Group group;
  Press(group.fader, {33, 113});
  MoveTo(group.fader, {33, 63});
  Release(group.fader, {33, 63});
  EXPECT_TRUE(group.fader.returning());
  EXPECT_EQ(RunningTimer(group.fader)->interval() * 8, 120);
  int frames = 0, last = group.fader.position();
  while (group.fader.returning() && frames < 100) {
    Strike(group.fader);
    EXPECT_LE(group.fader.position(), last);
    last = group.fader.position();
    ++frames;
  }
  EXPECT_EQ(frames, 8);
  EXPECT_EQ(group.fader.position(), 0);
  EXPECT_THAT(group.log, ElementsAre("pressed", "64", "released"));
}

TEST(GroupFader, JumpsBackWithReducedMotion) {
  Group group;
  SetReducedMotion(true);
  Press(group.fader, {33, 113});
  MoveTo(group.fader, {33, 63});
  Release(group.fader, {33, 63});
  SetReducedMotion(false);
  EXPECT_FALSE(group.fader.returning());
  EXPECT_EQ(group.fader.position(), 0);
}

TEST(GroupFader, CanBeTakenAgainOnItsWayBack) {
  Group group;
  Press(group.fader, {33, 113});
  MoveTo(group.fader, {33, 63});
  Release(group.fader, {33, 63});
  Strike(group.fader);
  Press(group.fader, {33, 90});
  EXPECT_FALSE(group.fader.returning());
  EXPECT_EQ(group.fader.position(), 0) << "a new hold starts from the middle";
  MoveTo(group.fader, {33, 85});
  EXPECT_EQ(group.fader.position(), 6);
}

TEST(GroupFader, MovesAsWholeHoldsByKeysAndWheel) {
  Group group;
  QTest::keyClick(&group.fader, Qt::Key_Up);
  QTest::keyClick(&group.fader, Qt::Key_Down, Qt::ShiftModifier);
  Turn(group.fader, 120);
  EXPECT_THAT(group.log, ElementsAre("pressed", "1", "released", "pressed", "-8", "released", "pressed",
                                     "1", "released"));
}

struct Meter {
  explicit Meter(int height = 206) {
    meter.setGround(th().bg2, 1);
    meter.resize(9, height);
    ShowForTest(meter);
  }
  LevelMeter meter;
};

TEST(LevelMeter, HasASegmentForEachFourPixels) {
  const Meter meter;
  EXPECT_EQ(meter.meter.segments(), 50);
  EXPECT_EQ(Meter(209).meter.segments(), 50);
  EXPECT_EQ(Meter(210).meter.segments(), 51);
  const AtScale scale(150);
  EXPECT_EQ(Meter(309).meter.segments(), 50);
}

TEST(LevelMeter, LightsASegmentFromOneBelowWhatItStandsFor) {
  const Meter shown;
  const LevelMeter& meter = shown.meter;
  EXPECT_EQ(meter.litAt(0), 0);
  EXPECT_EQ(meter.litAt(1), 0) << "the first segment stands for 2.54";
  EXPECT_EQ(meter.litAt(2), 1);
  EXPECT_EQ(meter.litAt(125), 49);
  EXPECT_EQ(meter.litAt(126), 50);
  EXPECT_EQ(meter.litAt(127), 50);
}

TEST(LevelMeter, StaysDarkWithoutALevelEvenIfItHasMoreSegmentsThanLevels) {
  const Meter shown(700);
  EXPECT_GT(shown.meter.segments(), 127);
  EXPECT_EQ(shown.meter.litAt(0), 0);
}

TEST(LevelMeter, TurnsYellowAbove96AndRedAbove116) {
  Meter shown;
  shown.meter.setLevel(127);
  const QImage picture = Picture(shown.meter);
  for (int segment = 1; segment <= 50; ++segment) {
    const double stands = segment / 50.0 * 127;
    const QColor expected = stands > 116 ? th().m3 : stands > 96 ? th().m2 : th().m1;
    EXPECT_EQ(picture.pixelColor(4, shown.meter.segmentRect(segment).center().y()), expected)
        << segment;
  }
}

TEST(LevelMeter, DrawsAsManySegmentsAsItSays) {
  Meter shown;
  shown.meter.setLevel(70);
  const QImage picture = Picture(shown.meter);
  int lit = 0, dark = 0;
  for (int segment = 1; segment <= 50; ++segment) {
    const QRect rect = shown.meter.segmentRect(segment);
    const QColor colour = picture.pixelColor(0, rect.top());
    lit += colour == th().m1;
    dark += colour == th().moff;
    EXPECT_EQ(rect.height(), 3);
    EXPECT_EQ(picture.pixelColor(8, rect.bottom()), colour);
    EXPECT_EQ(picture.pixelColor(4, rect.top() - 1), th().bg2) << "a gap above each";
  }
  EXPECT_EQ(lit, shown.meter.lit());
  EXPECT_EQ(dark, 50 - lit);
}

class WatchedMeter : public LevelMeter {
 public:
  QRect painted;

 protected:
  void paintEvent(QPaintEvent* event) override {
    painted = event->rect();
    LevelMeter::paintEvent(event);
  }
};

TEST(LevelMeter, RepaintsOnlyTheSegmentsBetweenOldAndNewLevel) {
  WatchedMeter meter;
  meter.setGround(th().bg2, 1);
  meter.resize(9, 206);
  meter.setLevel(60);
  ShowForTest(meter);
  const int before = meter.lit();
  meter.setLevel(70);
  QTest::qWait(0);
  QCoreApplication::processEvents();
  EXPECT_EQ(meter.painted, meter.segmentRect(meter.lit()).united(meter.segmentRect(before + 1)));
  meter.painted = QRect();
  meter.setLevel(70);
  QCoreApplication::processEvents();
  EXPECT_TRUE(meter.painted.isNull());
}

}  // namespace
}  // namespace Sonarello
