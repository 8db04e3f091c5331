#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/Application.h"
#include "app/controls/FocusRing.h"
#include "app/controls/GroupButton.h"
#include "app/controls/GroupColumn.h"
#include "app/controls/GroupFader.h"
#include "app/controls/Hands.h"
#include "app/controls/Knob.h"
#include "app/controls/LedButton.h"
#include "app/controls/LevelMeter.h"
#include "app/controls/NamePlate.h"
#include "app/controls/SegmentedChoice.h"
#include "app/controls/Shown.h"
#include "app/controls/Stepper.h"
#include "app/controls/StripBank.h"
#include "app/controls/TrackBar.h"
#include "app/controls/ValueBox.h"
#include "helpers/InGerman.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;

std::string Name(QWidget& widget) {
  return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name).toStdString();
}

QAccessible::Role RoleOf(QWidget& widget) {
  return QAccessible::queryAccessibleInterface(&widget)->role();
}

struct Row {
  Row() {
    row.resize(1264, 345);
    ShowSong(row);
    ShowForTest(row);
    row.activateWindow();
  }
  StripRow row;
};

TEST(Spoken, PartsOfAStripHaveNamesInEnglish) {
  Row desk;
  const ChannelStrip& strip = desk.row.strip(3);
  EXPECT_EQ(Name(strip.volume()), "Channel 4 volume, ChamberStrings (S.Art2!)");
  EXPECT_EQ(Name(strip.solo()), "Channel 4 solo");
  EXPECT_EQ(Name(strip.mute()), "Channel 4 mute");
  EXPECT_EQ(Name(strip.record()), "Channel 4 record");
  EXPECT_EQ(Name(strip.namePlate()), "Channel 4 sound: ChamberStrings (S.Art2!)");
  EXPECT_EQ(Name(strip.velocity()), "Channel 4 velocity");
  EXPECT_EQ(Name(strip.octave()), "Channel 4 octave");
  EXPECT_EQ(Name(desk.row.strip(3)), "Channel 4, active");
  EXPECT_EQ(Name(desk.row.strip(4)), "Channel 5, muted");
  EXPECT_EQ(Name(desk.row.strip(7)), "Channel 8, armed for recording");
  EXPECT_EQ(Name(desk.row.strip(9)), "Channel 10, drums");
  EXPECT_EQ(Name(desk.row.strip(11)), "Channel 12, redirected to 14");
  EXPECT_EQ(Name(desk.row.strip(14)), "Channel 15, noteless");
}

TEST(Spoken, PartsOfAStripHaveNamesInGerman) {
  const InGerman german;
  Row desk;
  const ChannelStrip& strip = desk.row.strip(3);
  EXPECT_EQ(Name(strip.volume()), "Kanal 4 Lautstärke, ChamberStrings (S.Art2!)");
  EXPECT_EQ(Name(strip.solo()), "Kanal 4 Solo");
  EXPECT_EQ(Name(strip.mute()), "Kanal 4 stumm");
  EXPECT_EQ(Name(strip.record()), "Kanal 4 Aufnahme");
  EXPECT_EQ(Name(strip.namePlate()), "Kanal 4 Sound: ChamberStrings (S.Art2!)");
  EXPECT_EQ(Name(strip.velocity()), "Kanal 4 Anschlag");
  EXPECT_EQ(Name(strip.octave()), "Kanal 4 Oktave");
  EXPECT_EQ(Name(desk.row.strip(4)), "Kanal 5, stumm");
  EXPECT_EQ(Name(desk.row.strip(9)), "Kanal 10, Schlagzeug");
  EXPECT_EQ(Name(desk.row.strip(14)), "Kanal 15, notenlos");
  EXPECT_EQ(desk.row.strip(14).namePlate().name(), QStringLiteral("notenlos"));
  EXPECT_EQ(Name(desk.row.group().link()), "Fader koppeln");
  EXPECT_EQ(Name(desk.row.group().fader()), "Gruppe Lautstärke");
}

TEST(Spoken, PartsOfAStripHaveTheRolesOfWhatTheyAre) {
  Row desk;
  const ChannelStrip& strip = desk.row.strip(3);
  EXPECT_EQ(RoleOf(strip.volume()), QAccessible::Slider);
  EXPECT_EQ(RoleOf(strip.solo()), QAccessible::CheckBox);
  EXPECT_EQ(RoleOf(strip.namePlate()), QAccessible::PushButton);
  EXPECT_EQ(RoleOf(strip.velocity()), QAccessible::SpinBox);
  EXPECT_EQ(RoleOf(strip.levelMeter()), QAccessible::Indicator);
  EXPECT_EQ(RoleOf(desk.row.strip(3)), QAccessible::Grouping);
  EXPECT_EQ(RoleOf(desk.row.group().link()), QAccessible::CheckBox);
  EXPECT_EQ(RoleOf(desk.row.group().allMuteOffButton()), QAccessible::PushButton);
  Knob knob;
  EXPECT_EQ(RoleOf(knob), QAccessible::Dial);
}

TEST(Spoken, AFaderTellsItsValueAndIsMovedByAScreenReader) {
  Row desk;
  int moved = -1;
  QObject::connect(&desk.row.bank(), &StripBank::volumeMoved, [&](int, int to) { moved = to; });
  QAccessibleInterface* fader = QAccessible::queryAccessibleInterface(&desk.row.strip(3).volume());
  ASSERT_NE(fader->valueInterface(), nullptr);
  EXPECT_EQ(fader->valueInterface()->currentValue().toInt(), 88);
  EXPECT_EQ(fader->valueInterface()->minimumValue().toInt(), 0);
  EXPECT_EQ(fader->valueInterface()->maximumValue().toInt(), 127);
  fader->valueInterface()->setCurrentValue(20);
  EXPECT_EQ(moved, 20);
}

TEST(Spoken, ALightTellsItsStateAndWhy) {
  Row desk;
  StripView view = desk.row.strip(0).view();
  view.MutedBySolo = true;
  desk.row.setView(0, view);
  QAccessibleInterface* mute = QAccessible::queryAccessibleInterface(&desk.row.strip(0).mute());
  EXPECT_TRUE(mute->state().checkable);
  EXPECT_TRUE(mute->state().checked);
  EXPECT_EQ(mute->text(QAccessible::Description), QStringLiteral("muted by solo"));
  EXPECT_FALSE(QAccessible::queryAccessibleInterface(&desk.row.strip(1).mute())->state().checked);
}

TEST(Spoken, AStepperAndAKnobTellTheirTextAsItIsShown) {
  Row desk;
  QAccessibleInterface* velocity = QAccessible::queryAccessibleInterface(&desk.row.strip(5).velocity());
  EXPECT_EQ(velocity->text(QAccessible::Value), QStringLiteral("−8"));
  Knob knob;
  knob.setValue(52);
  knob.setValueText(QStringLiteral("−12"));
  EXPECT_EQ(QAccessible::queryAccessibleInterface(&knob)->text(QAccessible::Value),
            QStringLiteral("−12"));
}

TEST(Spoken, ButtonsArePressedByAScreenReader) {
  Row desk;
  Log log;
  QObject::connect(&desk.row.bank(), &StripBank::soundWanted, [&](int) { log.emplace_back("sound"); });
  QObject::connect(&desk.row.bank(), &StripBank::soloPressed,
                   [&](int, Qt::KeyboardModifiers) { log.emplace_back("solo"); });
  const auto act = [](QWidget& widget, const QString& action) {
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&widget);
    EXPECT_TRUE(spoken->actionInterface()->actionNames().contains(action));
    spoken->actionInterface()->doAction(action);
  };
  act(desk.row.strip(3).namePlate(), QAccessibleActionInterface::pressAction());
  act(desk.row.strip(3).solo(), QAccessibleActionInterface::toggleAction());
  EXPECT_THAT(log, ElementsAre("sound", "solo"));
  QAccessibleInterface* disabled = QAccessible::queryAccessibleInterface(&desk.row.strip(15).solo());
  EXPECT_FALSE(
      disabled->actionInterface()->actionNames().contains(QAccessibleActionInterface::toggleAction()));
}

/// What is announced while it lives.
struct Announced {
  Announced() {
    Events().clear();
    SetAnnouncer([](QAccessibleEvent& event) {
      if (event.type() == QAccessible::ValueChanged)
        Events().push_back(
            std::to_string(static_cast<QAccessibleValueChangeEvent&>(event).value().toInt()));
      if (event.type() == QAccessible::StateChanged) Events().emplace_back("state");
    });
  }
  ~Announced() { SetAnnouncer(nullptr); }
  Announced(const Announced&) = delete;
  Announced& operator=(const Announced&) = delete;
  static Log& Events() {
    static Log events;
    return events;
  }
};

TEST(Spoken, ValuesAreAnnouncedForTheActiveStripAloneAndFourTimesASecondAtMost) {
  Row desk;
  const Announced announced;
  for (const int channel : {2, 3})
    for (const int volume : {10, 20, 30}) {
      StripView view = desk.row.strip(channel).view();
      view.Volume = volume;
      desk.row.setView(channel, view);
    }
  EXPECT_THAT(Announced::Events(), ElementsAre("10"));
  ASSERT_NE(RunningTimer(desk.row.strip(3).volume()), nullptr);
  EXPECT_EQ(RunningTimer(desk.row.strip(3).volume())->interval(), 250);
  Strike(desk.row.strip(3).volume());
  EXPECT_THAT(Announced::Events(), ElementsAre("10", "30")) << "the last one always";
}

TEST(Spoken, ALightAnnouncesThatItChanged) {
  Row desk;
  const Announced announced;
  StripView view = desk.row.strip(2).view();
  view.Solo = true;
  desk.row.setView(2, view);
  EXPECT_THAT(Announced::Events(), ElementsAre("state"));
}

TEST(FocusRing, IsShownToTheKeyboardOnly) {
  QWidget window;
  auto* column = new QVBoxLayout(&window);
  auto* button = new QPushButton(QStringLiteral("OK"), &window);
  auto* knob = new Knob(&window);
  column->addWidget(button);
  column->addWidget(knob);
  ShowForTest(window);
  window.activateWindow();
  const auto* ring = qApp->findChild<FocusRing*>(QString(), Qt::FindDirectChildrenOnly);
  ASSERT_NE(ring, nullptr);
  button->clearFocus();
  button->setFocus(Qt::TabFocusReason);
  EXPECT_EQ(ring->ringed(), button);
  knob->setFocus(Qt::MouseFocusReason);
  EXPECT_EQ(ring->ringed(), nullptr);
  button->setFocus(Qt::ShortcutFocusReason);
  EXPECT_EQ(ring->ringed(), button);
  Click(*knob);
  EXPECT_EQ(ring->ringed(), nullptr) << "the mouse is in use again";
}

TEST(FocusRing, MovesWithTheStripInUse) {
  Row desk;
  const auto* ring = qApp->findChild<FocusRing*>(QString(), Qt::FindDirectChildrenOnly);
  desk.row.bank().setFocus(Qt::TabFocusReason);
  EXPECT_EQ(ring->ringed(), &desk.row.strip(3));
  StripView view = desk.row.strip(3).view();
  view.Active = false;
  desk.row.setView(3, view);
  view = desk.row.strip(9).view();
  view.Active = true;
  desk.row.setView(9, view);
  EXPECT_EQ(ring->ringed(), &desk.row.strip(9));
}

TEST(FocusRing, IsDrawnTwoPixelsOutsideOfItsControl) {
  QWidget window;
  window.resize(200, 100);
  QPushButton button(QStringLiteral("OK"), &window);
  button.setGeometry(50, 30, 80, 28);
  ShowForTest(window);
  window.activateWindow();
  button.clearFocus();
  button.setFocus(Qt::TabFocusReason);
  QCoreApplication::processEvents();
  const QImage picture = Picture(window);
  for (const int x : {46, 47, 132, 133}) EXPECT_EQ(picture.pixelColor(x, 44), th().acc) << x;
  for (const int x : {45, 48, 49, 131, 134}) EXPECT_EQ(picture.pixelColor(x, 44), th().bg0) << x;
}

TEST(Tabs, TheStripsAreOneStopAfterTheGroupColumn) {
  Row desk;
  QWidget* focus = &desk.row.group().link();
  focus->setFocus(Qt::TabFocusReason);
  Log stops;
  for (int i = 0; i < 5; ++i) {
    stops.emplace_back(QApplication::focusWidget()->metaObject()->className());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  EXPECT_THAT(stops,
              ElementsAre("Sonarello::GroupButton", "Sonarello::GroupButton", "Sonarello::GroupButton",
                          "Sonarello::GroupFader", "Sonarello::StripBank"));
}

}  // namespace
}  // namespace Sonarello
