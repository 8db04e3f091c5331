#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/Application.h"
#include "app/controls/GroupButton.h"
#include "app/controls/Hands.h"
#include "app/controls/LedButton.h"
#include "app/controls/Shown.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Light {
  explicit Light(LedKind kind) : button(kind) {
    button.resize(button.sizeHint());
    ShowForTest(button);
    QObject::connect(&button, &LedButton::pressed,
                     [this](Qt::MouseButton which, Qt::KeyboardModifiers held) {
                       log.push_back(std::string(which == Qt::LeftButton ? "left" : "right") +
                                     ((held & Qt::ControlModifier) != 0 ? "+ctrl" : ""));
                     });
    QObject::connect(&button, &LedButton::released, [this] { log.push_back("released"); });
  }
  [[nodiscard]] QColor face() { return Picture(button).pixelColor(5, 6); }
  LedButton button;
  Log log;
};

TEST(LedButton, ReportsThePressAndCtrlButDoesNotChangeByItself) {
  Light solo(LedKind::Solo);
  Click(solo.button);
  Click(solo.button, {14, 13}, Qt::LeftButton, Qt::ControlModifier);
  EXPECT_THAT(solo.log, ElementsAre("left", "released", "left+ctrl", "released"));
  EXPECT_EQ(solo.button.state(), LedState::Off);
}

TEST(LedButton, ReportsBothPressesOfADoubleClick) {
  Light mute(LedKind::Mute);
  DoubleClick(mute.button, {14, 13});
  EXPECT_THAT(mute.log, ElementsAre("left", "released", "left", "released"));
}

TEST(LedButton, TakesTheRightButtonOnlyIfAsked) {
  Light mute(LedKind::Mute);
  Click(mute.button, {14, 13}, Qt::RightButton);
  EXPECT_THAT(mute.log, IsEmpty());
  mute.button.setTakesRightButton(true);
  Click(mute.button, {14, 13}, Qt::RightButton);
  EXPECT_THAT(mute.log, ElementsAre("right", "released"));
}

TEST(LedButton, IsLitInTheColourOfItsMeaning) {
  Light solo(LedKind::Solo), mute(LedKind::Mute), record(LedKind::Record);
  for (Light* light : {&solo, &mute, &record}) {
    EXPECT_EQ(light->face(), th().bg3);
    light->button.setState(LedState::Lit);
  }
  EXPECT_EQ(solo.face(), th().solo);
  EXPECT_EQ(mute.face(), th().mute);
  EXPECT_EQ(record.face(), th().rec);
  mute.button.setState(LedState::Implied);
  EXPECT_EQ(mute.face(), th().muteface);
}

TEST(LedButton, DoesNothingWhileDisabled) {
  Light solo(LedKind::Solo);
  solo.button.setEnabled(false);
  Click(solo.button);
  EXPECT_THAT(solo.log, IsEmpty());
}

TEST(LedButton, BlinksInHalvesOfASecondWhileItRecords) {
  Light record(LedKind::Record);
  record.button.setState(LedState::Lit);
  record.button.setBlinking(true);
  ASSERT_NE(RunningTimer(record.button), nullptr);
  EXPECT_EQ(RunningTimer(record.button)->interval(), 500);
  EXPECT_TRUE(record.button.glows());
  Strike(record.button);
  EXPECT_FALSE(record.button.glows());
  Strike(record.button);
  EXPECT_TRUE(record.button.glows());
  Strike(record.button);
  record.button.setBlinking(false);
  EXPECT_TRUE(record.button.glows()) << "it does not end in a dark half";
}

TEST(LedButton, StaysLitWithReducedMotion) {
  SetReducedMotion(true);
  Light record(LedKind::Record);
  record.button.setState(LedState::Lit);
  record.button.setBlinking(true);
  SetReducedMotion(false);
  EXPECT_EQ(RunningTimer(record.button), nullptr);
  EXPECT_TRUE(record.button.glows());
}

TEST(LedButton, IsPressedByEnterAndByAScreenReader) {
  Light solo(LedKind::Solo);
  QTest::keyClick(&solo.button, Qt::Key_Return);
  solo.button.pressSpoken();
  EXPECT_THAT(solo.log, ElementsAre("left", "released", "left", "released"));
}

TEST(LedButton, LeavesTheSpaceKeyToTheTransport) {
  Light solo(LedKind::Solo);
  QTest::keyClick(&solo.button, Qt::Key_Space);
  EXPECT_THAT(solo.log, IsEmpty());
}

TEST(SmallLed, IsLitInItsInk) {
  SmallLed activity, file(nullptr, SmallLed::Ink::File);
  for (SmallLed* led : {&activity, &file}) {
    led->resize(led->sizeHint());
    led->setLit(true);
    ShowForTest(*led);
  }
  EXPECT_EQ(Picture(activity).pixelColor(4, 4), th().play);
  EXPECT_EQ(Picture(file).pixelColor(4, 4), th().acc);
  activity.setLit(false);
  EXPECT_EQ(Picture(activity).pixelColor(4, 4), th().moff);
}

TEST(GroupButton, TogglesOnlyWhenItIsCheckable) {
  GroupButton link(Icon::Link, GroupButton::Place::Above),
      clear(Icon::Cross, GroupButton::Place::Behind);
  link.setCheckable(true);
  int clicks = 0;
  for (GroupButton* button : {&link, &clear}) {
    button->resize(66, 45);
    ShowForTest(*button);
    QObject::connect(button, &GroupButton::clicked, [&] { ++clicks; });
    Click(*button);
  }
  EXPECT_EQ(clicks, 2);
  EXPECT_TRUE(link.isChecked());
  EXPECT_FALSE(clear.isChecked());
}

TEST(GroupButton, DoesNothingIfThePointerLeavesBeforeTheRelease) {
  GroupButton clear(Icon::Cross, GroupButton::Place::Behind);
  clear.resize(66, 22);
  ShowForTest(clear);
  int clicks = 0;
  QObject::connect(&clear, &GroupButton::clicked, [&] { ++clicks; });
  Press(clear, {10, 10});
  Release(clear, {10, 200});
  EXPECT_EQ(clicks, 0);
}

}  // namespace
}  // namespace Sonarello
