#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLineEdit>

#include "app/Application.h"
#include "app/controls/GroupButton.h"
#include "app/controls/GroupColumn.h"
#include "app/controls/GroupFader.h"
#include "app/controls/Hands.h"
#include "app/controls/LedButton.h"
#include "app/controls/LevelMeter.h"
#include "app/controls/NamePlate.h"
#include "app/controls/Shown.h"
#include "app/controls/Stepper.h"
#include "app/controls/StripBank.h"
#include "app/controls/StripPlan.h"
#include "app/controls/TrackBar.h"
#include "app/controls/ValueBox.h"
#include "helpers/InGerman.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

std::string On(const char* what, int channel) {
  return std::string(what) + " " + std::to_string(channel);
}

std::string On(const char* what, int channel, int value) {
  return On(what, channel) + " " + std::to_string(value);
}

std::string On(const char* what, int channel, Qt::KeyboardModifiers held) {
  return On(what, channel) + ((held & Qt::ControlModifier) != 0 ? " ctrl" : "");
}

/// The row of a desk of 1280 or 1440, which writes down all that it reports.
struct Row {
  explicit Row(int width = 1264, int height = 345) {
    row.setCompact(true);
    row.resize(width, height);
    ShowForTest(row);
    row.activateWindow();
    ShowSong(row);
    Listen();
    ListenToGroup();
  }

  void Listen() {
    const auto add = [this](const std::string& line) { log.push_back(line); };
    const StripBank* const bank = &row.bank();
    QObject::connect(bank, &StripBank::channelSelected, [=](int c) { add(On("selected", c)); });
    QObject::connect(bank, &StripBank::volumeMoved, [=](int c, int v) { add(On("volume", c, v)); });
    QObject::connect(bank, &StripBank::faderPressed, [=](int c) { add(On("taken", c)); });
    QObject::connect(bank, &StripBank::faderReleased, [=](int c) { add(On("let go", c)); });
    QObject::connect(bank, &StripBank::soundWanted, [=](int c) { add(On("sound", c)); });
    QObject::connect(bank, &StripBank::redirectMenuWanted,
                     [=](int c, const QPoint&) { add(On("redirect", c)); });
    QObject::connect(bank, &StripBank::soloPressed,
                     [=](int c, Qt::KeyboardModifiers held) { add(On("solo", c, held)); });
    QObject::connect(bank, &StripBank::mutePressed,
                     [=](int c, Qt::KeyboardModifiers held) { add(On("mute", c, held)); });
    QObject::connect(bank, &StripBank::recPressed, [=](int c) { add(On("rec", c)); });
    QObject::connect(bank, &StripBank::velocityPressed,
                     [=](int c, int by) { add(On("velocity", c, by)); });
    QObject::connect(bank, &StripBank::velocityReleased, [=](int c) { add(On("velocity end", c)); });
    QObject::connect(bank, &StripBank::velocityRangeWanted, [=](int c) { add(On("range", c)); });
    QObject::connect(bank, &StripBank::octavePressed, [=](int c, int by) { add(On("octave", c, by)); });
    QObject::connect(bank, &StripBank::octaveReleased, [=](int c) { add(On("octave end", c)); });
  }

  void ListenToGroup() {
    const auto add = [this](const std::string& line) { log.push_back(line); };
    const StripBank* const bank = &row.bank();
    const GroupColumn* const group = &row.group();
    QObject::connect(group, &GroupColumn::pressed, [=] { add("group taken"); });
    QObject::connect(group, &GroupColumn::moved, [=](int by) { add(On("group", by)); });
    QObject::connect(group, &GroupColumn::released, [=] { add("group let go"); });
    QObject::connect(group, &GroupColumn::linkToggled,
                     [=](bool on) { add(on ? "linked" : "unlinked"); });
    QObject::connect(bank, &StripBank::allSoloOff, [=] { add("all solo off"); });
    QObject::connect(bank, &StripBank::allMuteOff, [=] { add("all mute off"); });
  }

  void Change(int channel, const std::function<void(StripView&)>& change) {
    StripView view = row.strip(channel).view();
    change(view);
    row.setView(channel, view);
  }

  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    row.bank().setFocus(Qt::TabFocusReason);
    QTest::keyClick(&row.bank(), key, modifiers);
  }

  StripRow row;
  Log log;
};

TEST(StripPlan, FillsTheRowWithoutAGapOrARest) {
  for (const bool compact : {false, true})
    for (int width = 1200; width < 2300; ++width) {
      const StripRowPlan plan{width, compact};
      const int gap = compact ? 3 : 4;
      EXPECT_EQ(plan.strip(15, 300).right() + 1, width);
      EXPECT_EQ(plan.strip(0, 300).left(), plan.group(300).right() + 1 + gap);
      for (int channel = 1; channel < 16; ++channel) {
        const int between = plan.strip(channel, 300).left() - plan.strip(channel - 1, 300).right() - 1;
        EXPECT_LE(std::abs(between - gap), 1);
        EXPECT_LE(std::abs(plan.strip(channel, 300).width() - plan.strip(0, 300).width()), 1);
      }
    }
}

TEST(StripPlan, MakesStripsOf81And72PixelsAtTheTwoUsualWidths) {
  EXPECT_EQ((StripRowPlan{1424, false}.strip(0, 456).width()), 81);
  EXPECT_EQ((StripRowPlan{1264, true}.strip(0, 345).width()), 72);
  EXPECT_EQ((StripRowPlan{1264, true}.strip(1, 345).left()), 144);
}

TEST(StripPlan, GivesTheFaderWhatTheOtherRowsLeave) {
  const StripPlan plan = StripPlan::Of({72, 345}, true);
  EXPECT_EQ(plan.head, QRect(1, 1, 70, 24));
  EXPECT_EQ(plan.plate, QRect(4, 28, 64, 45));
  EXPECT_EQ(plan.leds.top(), 76);
  EXPECT_EQ(plan.value, QRect(4, 273, 64, 22));
  EXPECT_EQ(plan.velocity.top(), 298);
  EXPECT_EQ(plan.octave.bottom(), 340);
  EXPECT_EQ(plan.fader, QRect(4, 101, 64, 169));
  const int least = StripPlan::LeastHeight(true);
  EXPECT_EQ(StripPlan::Of({72, least}, true).fader.height(), 120);
}

TEST(Strip, ReportsTheFaderWithTheChannelFirst) {
  Row desk;
  TCustomTrackBar& fader = desk.row.strip(2).volume();
  const QPointF cap(30, fader.y(78));
  Press(fader, cap);
  MoveTo(fader, {30, fader.y(100)});
  Release(fader, cap);
  EXPECT_THAT(desk.log, ElementsAre("selected 2", "taken 2", "volume 2 100", "let go 2"));
  EXPECT_EQ(desk.row.strip(2).valueBox().text(), QStringLiteral("100"));
}

TEST(Strip, ReportsWheelAndTypedVolumes) {
  Row desk;
  Turn(desk.row.strip(0).volume(), -120);
  ValueBox& box = desk.row.strip(0).valueBox();
  DoubleClick(box, {30, 10});
  ASSERT_TRUE(box.typing());
  QTest::keyClicks(box.findChild<QLineEdit*>(), QStringLiteral("12"));
  QTest::keyClick(box.findChild<QLineEdit*>(), Qt::Key_Return);
  EXPECT_EQ(desk.log.front(), "volume 0 97");
  EXPECT_EQ(desk.log.back(), "volume 0 12");
  EXPECT_EQ(desk.row.strip(0).volume().position(), 12);
}

TEST(Strip, ReportsItsLightsWithCtrl) {
  Row desk;
  const ChannelStrip& strip = desk.row.strip(5);
  Click(strip.solo());
  Click(strip.mute(), {10, 10}, Qt::LeftButton, Qt::ControlModifier);
  Click(strip.record());
  EXPECT_THAT(desk.log,
              ElementsAre("selected 5", "solo 5", "selected 5", "mute 5 ctrl", "selected 5", "rec 5"));
}

TEST(Strip, ReportsVelocityAndOctave) {
  Row desk;
  const ChannelStrip& strip = desk.row.strip(5);
  Click(strip.velocity(), {5, 10});
  Click(strip.velocity(), {32, 10}, Qt::RightButton);
  Click(strip.velocity(), {32, 10}, Qt::LeftButton, Qt::ControlModifier);
  Click(strip.octave(), {58, 10});
  EXPECT_THAT(desk.log, ElementsAre("selected 5", "velocity 5 -1", "velocity end 5", "selected 5",
                                    "velocity 5 1", "velocity end 5", "selected 5", "range 5",
                                    "selected 5", "octave 5 1", "octave end 5"));
}

TEST(Strip, OpensTheSoundBrowserByItsPlateAndByARightClickBesideTheNumber) {
  Row desk;
  Click(desk.row.strip(6).namePlate());
  EXPECT_THAT(desk.log, ElementsAre("selected 6", "sound 6"));
  desk.log.clear();
  QTest::mouseClick(&desk.row.strip(6), Qt::RightButton, Qt::NoModifier, {36, 344});
  EXPECT_THAT(desk.log, ElementsAre("selected 6", "sound 6"));
}

TEST(Strip, TakesARightClickOnAnyOfItsParts) {
  Row desk;
  const ChannelStrip& strip = desk.row.strip(6);
  for (QWidget* part :
       std::initializer_list<QWidget*>{&strip.volume(), &strip.solo(), &strip.mute(), &strip.record(),
                                       &strip.namePlate(), &strip.valueBox(), &strip.octave()}) {
    desk.log.clear();
    QTest::mouseClick(desk.row.windowHandle(), Qt::RightButton, Qt::NoModifier,
                      part->mapTo(&desk.row, part->rect().center()));
    EXPECT_THAT(desk.log, ElementsAre("selected 6", "sound 6")) << part->metaObject()->className();
  }
}

TEST(Strip, OpensTheRedirectionMenuByARightClickOnItsNumber) {
  Row desk;
  QTest::mouseClick(&desk.row.strip(6), Qt::RightButton, Qt::NoModifier, {12, 12});
  EXPECT_THAT(desk.log, ElementsAre("selected 6", "redirect 6"));
}

TEST(Strip, IsSelectedByAClickOnItsHead) {
  Row desk;
  QTest::mouseClick(&desk.row.strip(8), Qt::LeftButton, Qt::NoModifier, {12, 12});
  EXPECT_THAT(desk.log, ElementsAre("selected 8"));
}

TEST(Strip, WithoutNotesLetsItsVolumeMoveAndRecordsButNothingElse) {
  Row desk;
  const ChannelStrip& strip = desk.row.strip(14);
  for (QWidget* part : std::initializer_list<QWidget*>{&strip.solo(), &strip.mute(), &strip.velocity(),
                                                       &strip.octave()})
    EXPECT_FALSE(part->isEnabled()) << part->metaObject()->className();
  EXPECT_EQ(strip.namePlate().name(), QStringLiteral("noteless"));
  Turn(strip.volume(), -120);
  Click(strip.record());
  EXPECT_THAT(desk.log, ElementsAre("volume 14 101", "selected 14", "rec 14"));
}

TEST(Strip, SaysWhyItsPartsAreDisabled) {
  Row desk;
  EXPECT_TRUE(desk.row.strip(14).solo().toolTip().contains(QStringLiteral("No notes on this channel")));
  desk.row.setNoSong();
  EXPECT_TRUE(desk.row.strip(0).volume().toolTip().contains(QStringLiteral("No song is open")));
}

TEST(Strip, WithoutASongShowsADashAndTakesNothing) {
  Row desk;
  desk.row.setNoSong();
  const ChannelStrip& strip = desk.row.strip(0);
  EXPECT_EQ(strip.valueBox().text(), QStringLiteral("–"));
  EXPECT_EQ(strip.namePlate().name(), QString());
  EXPECT_EQ(strip.volume().position(), 100);
  for (QWidget* part : std::initializer_list<QWidget*>{&strip.volume(), &strip.solo(), &strip.record(),
                                                       &strip.octave()})
    EXPECT_FALSE(part->isEnabled());
  EXPECT_FALSE(desk.row.group().fader().isEnabled());
  desk.Key(Qt::Key_S);
  desk.Key(Qt::Key_Up);
  EXPECT_THAT(desk.log, IsEmpty());
  ShowSong(desk.row);
  EXPECT_TRUE(strip.volume().isEnabled());
  EXPECT_TRUE(desk.row.group().fader().isEnabled());
}

TEST(Strip, ShowsItsStateInTheGroundOfItsHead) {
  Row desk;
  const auto ground = [&](int channel, QPoint at) {
    return Picture(desk.row.strip(channel)).pixelColor(at);
  };
  const QPoint head(50, 22), side(36, 26);
  EXPECT_EQ(ground(0, head), th().bg2);
  EXPECT_EQ(ground(3, head), th().accd);
  EXPECT_EQ(ground(3, side), th().bg2a);
  EXPECT_EQ(ground(7, head), th().rec);
  EXPECT_EQ(ground(9, head), th().drumbg);
  EXPECT_EQ(ground(14, head), th().bg1);
  desk.Change(3, [](StripView& view) { view.Armed = true; });
  EXPECT_EQ(ground(3, head), th().rec) << "armed goes before active";
  EXPECT_EQ(ground(3, side), th().bg2a);
}

TEST(Strip, ShowsAMuteCausedBySoloInAnotherWayThanItsOwn) {
  Row desk;
  desk.Change(0, [](StripView& view) { view.MutedBySolo = true; });
  desk.Change(1, [](StripView& view) { view.Mute = true; });
  EXPECT_EQ(desk.row.strip(0).mute().state(), LedState::Implied);
  EXPECT_EQ(desk.row.strip(1).mute().state(), LedState::Lit);
  EXPECT_EQ(desk.row.strip(2).mute().state(), LedState::Off);
}

TEST(Strip, KeepsItsMeterDarkWhileItIsSilent) {
  Row desk;
  EXPECT_EQ(desk.row.strip(0).levelMeter().level(), 85);
  EXPECT_EQ(desk.row.strip(4).levelMeter().level(), 0) << "muted";
  desk.Change(0, [](StripView& view) { view.MutedBySolo = true; });
  EXPECT_EQ(desk.row.strip(0).levelMeter().level(), 0);
}

TEST(Strip, TakesNoMoreLevelsThanItHasStrips) {
  Row desk;
  const std::vector<int> levels(40, 127);
  desk.row.setLevels(levels);
  EXPECT_EQ(desk.row.strip(0).levelMeter().level(), 127);
  desk.row.setLevels(std::span(levels).first(0));
  desk.row.setMetersShown(false);
  EXPECT_FALSE(desk.row.strip(0).levelMeter().isVisible());
}

TEST(Strip, ShowsTheOwnersVolumeAgainIfAMoveIsRefused) {
  Row desk;
  const StripView before = desk.row.strip(0).view();
  Turn(desk.row.strip(0).volume(), -120);
  EXPECT_EQ(desk.row.strip(0).volume().position(), 97);
  desk.row.setView(0, before);
  EXPECT_EQ(desk.row.strip(0).volume().position(), 96);
  EXPECT_EQ(desk.row.strip(0).valueBox().text(), QStringLiteral("96"));
}

TEST(Strip, BlinksOnlyWhileItRecords) {
  Row desk;
  EXPECT_EQ(RunningTimer(desk.row.strip(7).record()), nullptr);
  desk.Change(7, [](StripView& view) { view.Recording = true; });
  EXPECT_NE(RunningTimer(desk.row.strip(7).record()), nullptr);
  desk.Change(7, [](StripView& view) { view.Armed = false; });
  EXPECT_EQ(RunningTimer(desk.row.strip(7).record()), nullptr);
}

TEST(StripKeys, LeftAndRightGoFromChannelToChannel) {
  Row desk;
  EXPECT_EQ(desk.row.bank().current(), 3);
  desk.Key(Qt::Key_Right);
  desk.Change(3, [](StripView& view) { view.Active = false; });
  desk.Change(4, [](StripView& view) { view.Active = true; });
  desk.Key(Qt::Key_Right);
  desk.Key(Qt::Key_Left);
  EXPECT_THAT(desk.log, ElementsAre("selected 4", "selected 5", "selected 3"));
}

TEST(StripKeys, StopAtTheOutermostChannels) {
  Row desk;
  desk.Change(3, [](StripView& view) { view.Active = false; });
  desk.Change(0, [](StripView& view) { view.Active = true; });
  desk.Key(Qt::Key_Left);
  EXPECT_THAT(desk.log, IsEmpty());
}

TEST(StripKeys, UpAndDownMoveTheVolumeByOneAndWithShiftByEight) {
  Row desk;
  desk.Key(Qt::Key_Up);
  desk.Key(Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_THAT(desk.log, ElementsAre("volume 3 89", "volume 3 81"));
}

TEST(StripKeys, LettersPressTheLightsAndWithShiftClearThem) {
  Row desk;
  desk.Key(Qt::Key_S);
  desk.Key(Qt::Key_M);
  desk.Key(Qt::Key_R);
  desk.Key(Qt::Key_S, Qt::ShiftModifier);
  desk.Key(Qt::Key_M, Qt::ShiftModifier);
  EXPECT_THAT(desk.log, ElementsAre("solo 3", "mute 3", "rec 3", "all solo off", "all mute off"));
}

TEST(StripKeys, PlusAndMinusChangeTheVelocityAndCtrlWithArrowsTheOctave) {
  Row desk;
  desk.Key(Qt::Key_Plus);
  desk.Key(Qt::Key_Plus, Qt::ShiftModifier);
  desk.Key(Qt::Key_Minus, Qt::KeypadModifier);
  desk.Key(Qt::Key_Up, Qt::ControlModifier);
  desk.Key(Qt::Key_Down, Qt::ControlModifier);
  EXPECT_THAT(desk.log, ElementsAre("velocity 3 1", "velocity end 3", "velocity 3 1", "velocity end 3",
                                    "velocity 3 -1", "velocity end 3", "octave 3 1", "octave end 3",
                                    "octave 3 -1", "octave end 3"));
}

TEST(StripKeys, DigitsTypeAVolume) {
  Row desk;
  desk.Key(Qt::Key_1);
  QLineEdit* field = desk.row.strip(3).valueBox().findChild<QLineEdit*>();
  ASSERT_NE(field, nullptr);
  QTest::keyClicks(field, QStringLiteral("05"));
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_THAT(desk.log, ElementsAre("volume 3 105"));
  EXPECT_TRUE(desk.row.bank().hasFocus());
}

TEST(StripKeys, EnterOpensTheSoundBrowserAndTheContextKeyTheRedirection) {
  Row desk;
  desk.Key(Qt::Key_Return);
  QContextMenuEvent context(QContextMenuEvent::Keyboard, {}, {});
  QApplication::sendEvent(&desk.row.bank(), &context);
  EXPECT_THAT(desk.log, ElementsAre("sound 3", "redirect 3"));
}

TEST(StripKeys, DoNotPressWhatAStripWithoutNotesHasDisabled) {
  Row desk;
  desk.Change(3, [](StripView& view) { view.HasNotes = false; });
  for (const Qt::Key key : {Qt::Key_S, Qt::Key_M, Qt::Key_Plus}) desk.Key(key);
  desk.Key(Qt::Key_Up, Qt::ControlModifier);
  EXPECT_THAT(desk.log, IsEmpty());
  desk.Key(Qt::Key_R);
  EXPECT_THAT(desk.log, ElementsAre("rec 3"));
}

TEST(StripKeys, LeaveSpaceHomeAndCtrlLettersToTheWindow) {
  Row desk;
  const auto asksFor = [&](Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QKeyEvent event(QEvent::ShortcutOverride, key, modifiers);
    event.ignore();
    QApplication::sendEvent(&desk.row.bank(), &event);
    return event.isAccepted();
  };
  EXPECT_FALSE(asksFor(Qt::Key_Space, Qt::NoModifier));
  EXPECT_FALSE(asksFor(Qt::Key_Home, Qt::NoModifier));
  EXPECT_FALSE(asksFor(Qt::Key_S, Qt::ControlModifier));
  EXPECT_FALSE(asksFor(Qt::Key_1, Qt::ControlModifier));
  EXPECT_TRUE(asksFor(Qt::Key_S, Qt::NoModifier));
  EXPECT_TRUE(asksFor(Qt::Key_1, Qt::NoModifier));
  EXPECT_TRUE(asksFor(Qt::Key_Up, Qt::ControlModifier));
}

TEST(GroupColumn, ReportsAllOfItsParts) {
  Row desk;
  const GroupColumn& group = desk.row.group();
  Click(group.link());
  Click(group.link());
  Click(group.allSoloOffButton());
  Click(group.allMuteOffButton());
  EXPECT_THAT(desk.log, ElementsAre("linked", "unlinked", "all solo off", "all mute off"));
}

TEST(GroupColumn, ReportsTheGroupFaderAndShowsItsPosition) {
  Row desk;
  GroupFader& fader = desk.row.group().fader();
  const QPointF middle = QRectF(fader.rect()).center();
  Press(fader, middle);
  MoveTo(fader, middle - QPointF(0, 20));
  const int position = fader.position();
  EXPECT_GT(position, 0);
  auto* value = desk.row.group().findChild<ValueBox*>();
  EXPECT_EQ(value->text(), QStringLiteral("+%1").arg(position));
  Release(fader, middle);
  EXPECT_THAT(desk.log, ElementsAre("group taken", On("group", position), "group let go"));
  while (fader.returning()) Strike(fader);
  EXPECT_EQ(value->text(), QStringLiteral("±0"));
  EXPECT_EQ(desk.log.size(), 3U);
}

TEST(GroupColumn, ShowsTheLinkThatTheProgramSetsWithoutReportingIt) {
  Row desk;
  desk.row.setLinked(true);
  EXPECT_TRUE(desk.row.group().link().isChecked());
  EXPECT_THAT(desk.log, IsEmpty());
}

TEST(StripRow, KeepsItsPlanWhenTheScaleChanges) {
  Row desk;
  const AtScale scale(150);
  desk.row.resize(1896, 518);
  const StripRowPlan plan{1896, true};
  const ChannelStrip& last = desk.row.strip(15);
  EXPECT_EQ(last.mapTo(&desk.row, QPoint(0, 0)), plan.strip(15, 518).topLeft());
  EXPECT_EQ(last.width(), plan.strip(15, 518).width());
  EXPECT_EQ(last.valueBox().height(), 33);
}

}  // namespace
}  // namespace Sonarello
