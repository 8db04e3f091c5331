#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLineEdit>

#include "app/Application.h"
#include "app/controls/Hands.h"
#include "app/controls/Knob.h"
#include "app/controls/ParamSlider.h"
#include "app/controls/SegmentedChoice.h"
#include "app/controls/Shown.h"
#include "app/controls/Stepper.h"
#include "app/controls/ValueBox.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

template <typename Kind>
struct Turned {
  Turned() {
    control.resize(control.sizeHint());
    control.setValue(64);
    control.setDefault(40);
    ShowForTest(control);
    QObject::connect(&control, &ValueControl::moved,
                     [this](int to) { log.push_back(std::to_string(to)); });
    QObject::connect(&control, &ValueControl::pressed, [this] { log.push_back("pressed"); });
    QObject::connect(&control, &ValueControl::released, [this] { log.push_back("released"); });
  }
  Kind control;
  Log log;
};

TEST(Knob, Turns127StepsIn160PixelsUpwards) {
  Turned<Knob> knob;
  knob.control.setValue(0);
  Press(knob.control, {23, 23});
  MoveTo(knob.control, {23, 23 - 160});
  EXPECT_EQ(knob.control.value(), 127);
  MoveTo(knob.control, {23, 23 - 80});
  EXPECT_EQ(knob.control.value(), 64);
  Release(knob.control, {23, 23 - 80});
  EXPECT_THAT(knob.log, ElementsAre("pressed", "127", "64", "released"));
}

TEST(Knob, TurnsAtAQuarterOfTheSpeedWithShift) {
  Turned<Knob> knob;
  knob.control.setValue(0);
  Press(knob.control, {23, 23});
  MoveTo(knob.control, {23, 23 - 160}, Qt::ShiftModifier);
  EXPECT_EQ(knob.control.value(), 32);
}

TEST(Knob, TakesItsDefaultOnDoubleClickAndDel) {
  Turned<Knob> knob;
  DoubleClick(knob.control, {23, 23});
  EXPECT_EQ(knob.control.value(), 40);
  knob.control.setValue(100);
  QTest::keyClick(&knob.control, Qt::Key_Delete);
  EXPECT_EQ(knob.control.value(), 40);
}

TEST(Knob, StepsByKeysAndWheel) {
  Turned<Knob> knob;
  QTest::keyClick(&knob.control, Qt::Key_Up);
  QTest::keyClick(&knob.control, Qt::Key_Right);
  QTest::keyClick(&knob.control, Qt::Key_Down);
  QTest::keyClick(&knob.control, Qt::Key_Left);
  QTest::keyClick(&knob.control, Qt::Key_PageUp);
  QTest::keyClick(&knob.control, Qt::Key_PageDown);
  Turn(knob.control, -120);
  Turn(knob.control, 120);
  EXPECT_THAT(knob.log, ElementsAre("65", "66", "65", "64", "72", "64", "65", "64"));
}

TEST(Knob, SaysNothingWhenTheProgramSetsIt) {
  Turned<Knob> knob;
  knob.control.setValue(10);
  knob.control.setValue(1000);
  EXPECT_EQ(knob.control.value(), 127);
  EXPECT_THAT(knob.log, IsEmpty());
}

TEST(Knob, DrawsItsArcFromTheLeftOrFromTheTop) {
  Turned<Knob> knob;
  const auto arcAt = [&](int x, int y) { return Picture(knob.control).pixelColor(x, y) == th().acc; };
  knob.control.setValue(127);
  EXPECT_TRUE(arcAt(3, 23)) << "at nine o'clock";
  EXPECT_TRUE(arcAt(42, 23)) << "at three o'clock";
  knob.control.setBipolar(true);
  EXPECT_FALSE(arcAt(3, 23));
  EXPECT_TRUE(arcAt(42, 23));
  knob.control.setValue(0);
  EXPECT_TRUE(arcAt(3, 23));
  EXPECT_FALSE(arcAt(42, 23));
}

TEST(ParamSlider, JumpsToAClickAndIsDragged) {
  Turned<ParamSlider> slider;
  slider.control.setRange(-64, 63);
  slider.control.setValue(0);
  const QRectF track = slider.control.track();
  Press(slider.control, {track.right(), 16});
  EXPECT_EQ(slider.control.value(), 63);
  MoveTo(slider.control, {track.left() - 100, 16});
  EXPECT_EQ(slider.control.value(), -64);
  Release(slider.control, {track.left(), 16});
  EXPECT_THAT(slider.log, ElementsAre("pressed", "63", "-64", "released"));
}

TEST(ParamSlider, DoesNotJumpWhenItsThumbIsTakenOffItsMiddle) {
  Turned<ParamSlider> slider;
  const QRectF track = slider.control.track();
  Press(slider.control, {track.left() + track.width() * 64 / 127 + 5, 16});
  EXPECT_EQ(slider.control.value(), 64);
}

TEST(ParamSlider, TakesItsDefaultOnADoubleClickOnTheValue) {
  Turned<ParamSlider> slider;
  DoubleClick(slider.control, slider.control.valueBox().center());
  EXPECT_EQ(slider.control.value(), 40);
}

TEST(ParamSlider, SaysWhenTheUserTurnsToIt) {
  Turned<ParamSlider> slider;
  int chosen = 0;
  QObject::connect(&slider.control, &ParamSlider::chosen, [&] { ++chosen; });
  Click(slider.control, {5, 16});
  EXPECT_GE(chosen, 1);
  EXPECT_EQ(slider.control.value(), 64);
}

struct Stepped {
  explicit Stepped(StepperKind kind) : stepper(kind) {
    stepper.resize(66, 20);
    ShowForTest(stepper);
    QObject::connect(&stepper, &Stepper::pressed,
                     [this](int by) { log.push_back("pressed " + std::to_string(by)); });
    QObject::connect(&stepper, &Stepper::stepped,
                     [this](int by) { log.push_back("step " + std::to_string(by)); });
    QObject::connect(&stepper, &Stepper::released, [this] { log.push_back("released"); });
    QObject::connect(&stepper, &Stepper::rangeWanted, [this] { log.push_back("range"); });
  }
  Stepper stepper;
  Log log;
};

constexpr QPointF minusButton{8, 10}, figure{33, 10}, plusButton{58, 10};

TEST(Stepper, ReportsItsButtonsUntilTheyAreLetGo) {
  Stepped velocity(StepperKind::Velocity);
  Press(velocity.stepper, minusButton);
  EXPECT_THAT(velocity.log, ElementsAre("pressed -1", "step -1"));
  Release(velocity.stepper, minusButton);
  Click(velocity.stepper, plusButton);
  EXPECT_THAT(velocity.log,
              ElementsAre("pressed -1", "step -1", "released", "pressed 1", "step 1", "released"));
  EXPECT_EQ(velocity.stepper.value(), 0) << "its owner changes the value";
}

TEST(Stepper, StepsDownWithTheLeftAndUpWithTheRightButtonOnTheFigure) {
  Stepped velocity(StepperKind::Velocity);
  Click(velocity.stepper, figure);
  Click(velocity.stepper, figure, Qt::RightButton);
  EXPECT_THAT(velocity.log,
              ElementsAre("pressed -1", "step -1", "released", "pressed 1", "step 1", "released"));
}

TEST(Stepper, AsksForTheRangeWithCtrl) {
  Stepped velocity(StepperKind::Velocity), octave(StepperKind::Octave);
  for (const QPointF& at : {minusButton, figure, plusButton})
    Click(velocity.stepper, at, Qt::LeftButton, Qt::ControlModifier);
  EXPECT_THAT(velocity.log, ElementsAre("range", "range", "range"));
  Click(octave.stepper, plusButton, Qt::LeftButton, Qt::ControlModifier);
  EXPECT_THAT(octave.log, ElementsAre("pressed 1", "step 1", "released"));
}

TEST(Stepper, OfTheOctaveStepsByItsArrowsOnly) {
  Stepped octave(StepperKind::Octave);
  Click(octave.stepper, figure);
  Click(octave.stepper, plusButton, Qt::RightButton);
  EXPECT_THAT(octave.log, IsEmpty());
}

TEST(Stepper, RepeatsAfter700MillisecondsAndThenEvery150) {
  Stepped velocity(StepperKind::Velocity);
  velocity.stepper.setRepeats(true);
  Press(velocity.stepper, plusButton);
  ASSERT_NE(RunningTimer(velocity.stepper), nullptr);
  EXPECT_EQ(RunningTimer(velocity.stepper)->interval(), 700);
  Strike(velocity.stepper);
  EXPECT_EQ(RunningTimer(velocity.stepper)->interval(), 150);
  Strike(velocity.stepper);
  Release(velocity.stepper, plusButton);
  EXPECT_EQ(RunningTimer(velocity.stepper), nullptr);
  EXPECT_THAT(velocity.log, ElementsAre("pressed 1", "step 1", "step 1", "step 1", "released"));
}

TEST(Stepper, DoesNotRepeatUnlessAsked) {
  Stepped velocity(StepperKind::Velocity);
  Press(velocity.stepper, plusButton);
  EXPECT_EQ(RunningTimer(velocity.stepper), nullptr);
}

TEST(Stepper, LightsTheArrowOfTheOctaveInForce) {
  Stepped octave(StepperKind::Octave);
  const auto lit = [&](const QPointF& at) {
    return Picture(octave.stepper).pixelColor(at.toPoint() - QPoint(0, 8)) == th().accd;
  };
  EXPECT_FALSE(lit(minusButton) || lit(plusButton));
  octave.stepper.setValue(1);
  EXPECT_TRUE(lit(plusButton));
  octave.stepper.setValue(-1);
  EXPECT_TRUE(lit(minusButton) && !lit(plusButton));
}

TEST(Stepper, StepsByWheelAndKeys) {
  Stepped velocity(StepperKind::Velocity);
  Turn(velocity.stepper, 120);
  QTest::keyClick(&velocity.stepper, Qt::Key_Down);
  EXPECT_THAT(velocity.log,
              ElementsAre("pressed 1", "step 1", "released", "pressed -1", "step -1", "released"));
}

struct Typed {
  Typed() {
    holder.setFocusPolicy(Qt::StrongFocus);
    holder.resize(100, 40);
    box.setGeometry(10, 10, 74, 22);
    box.setValue(64);
    ShowForTest(holder);
    holder.activateWindow();
    QObject::connect(&box, &ValueBox::typed,
                     [this](int value) { log.push_back(std::to_string(value)); });
  }
  [[nodiscard]] QLineEdit& field() { return *box.findChild<QLineEdit*>(); }
  QWidget holder;
  ValueBox box{&holder};
  Log log;
};

TEST(ValueBox, TypesAfterADoubleClickAndTakesEnter) {
  Typed typed;
  DoubleClick(typed.box, {30, 10});
  ASSERT_TRUE(typed.box.typing());
  EXPECT_EQ(typed.field().selectedText(), QStringLiteral("64"));
  QTest::keyClicks(&typed.field(), QStringLiteral("100"));
  QTest::keyClick(&typed.field(), Qt::Key_Return);
  EXPECT_FALSE(typed.box.typing());
  EXPECT_THAT(typed.log, ElementsAre("100"));
  EXPECT_TRUE(typed.holder.hasFocus()) << "the focus goes back to where it was";
}

TEST(ValueBox, KeepsTheNumberInItsRange) {
  Typed typed;
  typed.box.beginTyping(QStringLiteral("9"));
  QTest::keyClicks(&typed.field(), QStringLiteral("99"));
  QTest::keyClick(&typed.field(), Qt::Key_Enter);
  EXPECT_THAT(typed.log, ElementsAre("127"));
}

TEST(ValueBox, DiscardsWithEscAndWithNothingTyped) {
  Typed typed;
  typed.box.beginTyping();
  QTest::keyClicks(&typed.field(), QStringLiteral("100"));
  QTest::keyClick(&typed.field(), Qt::Key_Escape);
  typed.box.beginTyping();
  QTest::keyClick(&typed.field(), Qt::Key_Delete);
  QTest::keyClick(&typed.field(), Qt::Key_Return);
  EXPECT_THAT(typed.log, IsEmpty());
  EXPECT_EQ(typed.box.text(), QStringLiteral("64"));
}

TEST(ValueBox, TakesDigitsOnly) {
  Typed typed;
  typed.box.beginTyping(QStringLiteral("1"));
  QTest::keyClicks(&typed.field(), QStringLiteral("x-2"));
  QTest::keyClick(&typed.field(), Qt::Key_Return);
  EXPECT_THAT(typed.log, ElementsAre("12"));
}

TEST(ValueBox, TakesTheNumberWhenTheFocusGoesElsewhere) {
  Typed typed;
  typed.box.beginTyping(QStringLiteral("5"));
  typed.holder.setFocus(Qt::MouseFocusReason);
  EXPECT_THAT(typed.log, ElementsAre("5"));
  EXPECT_FALSE(typed.box.typing());
}

TEST(SegmentedChoice, ChoosesByClickAndArrows) {
  SegmentedChoice choice({QStringLiteral("Dark"), QStringLiteral("Light"), QStringLiteral("Auto")});
  choice.resize(choice.sizeHint());
  ShowForTest(choice);
  Log log;
  QObject::connect(&choice, &SegmentedChoice::changed,
                   [&](int to) { log.push_back(std::to_string(to)); });
  Click(choice, QRectF(choice.segmentRect(1)).center());
  Click(choice, QRectF(choice.segmentRect(1)).center());
  QTest::keyClick(&choice, Qt::Key_Right);
  QTest::keyClick(&choice, Qt::Key_Right);
  QTest::keyClick(&choice, Qt::Key_Left);
  EXPECT_THAT(log, ElementsAre("1", "2", "1"));
  choice.setCurrent(0);
  EXPECT_EQ(log.size(), 3U) << "what the program sets is no choice of the user's";
  EXPECT_EQ(choice.segmentRect(2).right() + 1, choice.width());
}

}  // namespace
}  // namespace Sonarello
