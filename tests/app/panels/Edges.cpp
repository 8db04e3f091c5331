// Status, banner, card, switches, and the loop's panel.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QLineEdit>

#include "app/Application.h"
#include "app/controls/Control.h"
#include "app/panels/Banner.h"
#include "app/panels/DropCard.h"
#include "app/panels/LoopPanel.h"
#include "app/panels/PanelBench.h"
#include "app/panels/WindowSwitches.h"
#include "helpers/InGerman.h"

namespace Sonarello {
namespace {

TEST(StatusBar, ShowsWhatTheDeskDoesAndHowItIsSet) {
  StatusBar bar;
  EXPECT_EQ(bar.LeftParts(), QStringList{"Ready"});
  bar.SetView(SongStatus());
  EXPECT_EQ(bar.LeftParts(),
            (QStringList{"Playing", "Stop 5 ms", QString::fromUtf8("Loop 9:01 – 25:01"),
                         "Auto backup 14:32"}));
  EXPECT_EQ(bar.RightParts(), (QStringList{"Yamaha Genos", "4 outputs", "100 %"}));
}

TEST(StatusBar, SpeaksGermanAndCountsOne) {
  const InGerman german;
  StatusBar bar;
  EXPECT_EQ(bar.LeftParts(), QStringList{"Bereit"});
  StatusView view = SongStatus();
  view.outputs = 1;
  bar.SetView(view);
  EXPECT_EQ(bar.LeftParts(),
            (QStringList{"Wiedergabe", "Stopp 5 ms", QString::fromUtf8("Schleife 9:01 – 25:01"),
                         "Autobackup 14:32"}));
  EXPECT_EQ(bar.RightParts(), (QStringList{"Yamaha Genos", "1 Ausgang", "100 %"}));
}

TEST(StatusBar, AMessageStaysForFourSeconds) {
  StatusBar bar;
  bar.ShowMessage(QStringLiteral("Saved"));
  for (int i = 0; i < 9; ++i) {
    ASSERT_TRUE(RunOut(bar));
    EXPECT_EQ(bar.LeftParts().front(), "Saved");
  }
  ASSERT_TRUE(RunOut(bar));
  EXPECT_EQ(bar.LeftParts().front(), "Ready");
  EXPECT_FALSE(RunOut(bar));
}

TEST(StatusBar, ANewMessageHasItsWholeTime) {
  StatusBar bar;
  bar.ShowMessage(QStringLiteral("Saved"));
  for (int i = 0; i < 9; ++i) RunOut(bar);
  bar.ShowMessage(QStringLiteral("Undone"));
  for (int i = 0; i < 9; ++i) RunOut(bar);
  EXPECT_EQ(bar.LeftParts().front(), "Undone");
}

TEST(StatusBar, ABarNeverRunsBackwardsWithinOneWork) {
  StatusBar bar;
  bar.ShowProgress(QStringLiteral("Opening"), 40, false);
  bar.ShowProgress(QStringLiteral("Opening"), 30, false);
  EXPECT_EQ(bar.percent(), 40);
  bar.ShowProgress(QStringLiteral("Opening"), 400, false);
  EXPECT_EQ(bar.percent(), 100);
  bar.ShowProgress(QStringLiteral("Saving"), 5, false);
  EXPECT_EQ(bar.percent(), 5);
  EXPECT_EQ(bar.LeftParts(), QStringList{"Saving"});
  bar.EndProgress();
  EXPECT_FALSE(bar.busy());
  EXPECT_EQ(bar.LeftParts(), QStringList{"Ready"});
}

TEST(StatusBar, EscCancelsWorkThatCanBeCancelledAndNothingElse) {
  QWidget window;
  auto* bar = new StatusBar(&window);
  ShowForTest(window);
  window.activateWindow();
  const QSignalSpy cancelled(bar, &StatusBar::cancelWanted);
  QTest::keyClick(&window, Qt::Key_Escape);
  bar->ShowProgress(QStringLiteral("Opening"), 10, false);
  QTest::keyClick(&window, Qt::Key_Escape);
  EXPECT_EQ(cancelled.count(), 0);
  bar->ShowProgress(QStringLiteral("Opening"), 20, true);
  EXPECT_TRUE(bar->accessibleDescription().contains("Esc: cancel"));
  QTest::keyClick(&window, Qt::Key_Escape);
  EXPECT_EQ(cancelled.count(), 1);
  bar->EndProgress();
  QTest::keyClick(&window, Qt::Key_Escape);
  EXPECT_EQ(cancelled.count(), 1);
}

TEST(StatusBar, TellsItsLineToAssistivePrograms) {
  StatusBar bar;
  bar.SetView(SongStatus());
  EXPECT_TRUE(bar.accessibleDescription().startsWith("Playing, Stop 5 ms"));
}

TEST(Banner, StandsAsLongAsItsTextAndTakesTheLinesItNeeds) {
  Banner banner;
  EXPECT_TRUE(banner.isHidden());
  banner.SetMessage(Severity::Warning, QStringLiteral("The output is missing.\r\nChoose another."));
  EXPECT_FALSE(banner.isHidden());
  EXPECT_EQ(banner.text(), "The output is missing. Choose another.");
  EXPECT_EQ(banner.accessibleName(), banner.text());
  EXPECT_EQ(banner.heightForWidth(1200), 32);
  EXPECT_GT(banner.heightForWidth(150), 32);
  banner.resize(150, 32);
  ShowForTest(banner);
  EXPECT_EQ(banner.height(), banner.heightForWidth(150));
  banner.resize(1200, banner.height());
  QCoreApplication::processEvents();
  EXPECT_EQ(banner.height(), 32);
  banner.SetMessage(Severity::Warning, {});
  EXPECT_TRUE(banner.isHidden());
}

TEST(DropCard, AsksForASongByItsButtons) {
  DropCard card;
  const QSignalSpy open(&card, &DropCard::openClicked);
  const QSignalSpy recent(&card, &DropCard::recentWanted);
  QTest::mouseClick(ButtonOf(card, "Open midifile"), Qt::LeftButton);
  QTest::keyClick(ButtonOf(card, "Open midifile"), Qt::Key_Return);
  EXPECT_EQ(open.count(), 2);
  auto* again = ButtonOf(card, "Open recent");
  EXPECT_FALSE(again->isEnabled());
  EXPECT_TRUE(again->toolTip().contains("No midifile has been opened yet"));
  card.SetRecent(true);
  QTest::mouseClick(again, Qt::LeftButton);
  EXPECT_EQ(recent.count(), 1);
}

TEST(DropCard, GivesTheFocusToTheFirstButton) {
  DropCard card;
  ShowForTest(card);
  card.activateWindow();
  card.FocusOpen();
  EXPECT_TRUE(ButtonOf(card, "Open midifile")->hasFocus());
}

TEST(DropCard, LightsUpWhileAFileHangsOverIt) {
  DropCard card;
  card.resize(card.sizeHint());
  const QPoint inside = card.CardRect().topLeft() + QPoint(20, 20);
  EXPECT_EQ(card.grab().toImage().pixelColor(inside), th().bg1);
  card.SetDragging(true);
  EXPECT_EQ(card.grab().toImage().pixelColor(inside), th().accbg);
}

TEST(DropCard, SpeaksGerman) {
  const InGerman german;
  DropCard card;
  EXPECT_EQ(card.accessibleName(),
            QString::fromUtf8("Öffnen Sie einen Song oder legen Sie ihn hier ab"));
  EXPECT_EQ(ButtonOf(card, QString::fromUtf8("Midifile öffnen"))->text(),
            QString::fromUtf8("Midifile öffnen…"));
  card.SetInstrument(QStringLiteral("Yamaha Genos"));
  EXPECT_TRUE(card.accessibleDescription().contains("Zielinstrument: Yamaha Genos"));
}

TEST(WindowSwitches, TellWhichWindowIsWanted) {
  WindowSwitches switches;
  QList<DeskWindow> wanted;
  QObject::connect(&switches, &WindowSwitches::switchClicked,
                   [&](DeskWindow window) { wanted += window; });
  QTest::mouseClick(ButtonOf(switches, "Events"), Qt::LeftButton);
  QTest::keyClick(ButtonOf(switches, "Keyboard"), Qt::Key_Return);
  EXPECT_THAT(wanted, testing::ElementsAre(DeskWindow::Events, DeskWindow::Keyboard));
  EXPECT_FALSE(ButtonOf(switches, "Events")->isChecked());
  switches.SetView(DeskWindow::Events, {true, {}});
  EXPECT_TRUE(ButtonOf(switches, "Events")->isChecked());
}

TEST(WindowSwitches, TellWhyAWindowCannotBeOpened) {
  WindowSwitches switches;
  switches.SetView(DeskWindow::Drums, {false, QStringLiteral("No song is open")});
  auto* drums = ButtonOf(switches, "Drums");
  EXPECT_FALSE(drums->isEnabled());
  EXPECT_TRUE(drums->toolTip().contains("No song is open"));
}

TEST(WindowSwitches, SpeakGermanAndShowTheirKeys) {
  const InGerman german;
  WindowSwitches switches;
  for (const auto& [name, key] :
       {std::pair{"Sounds", "F7"}, {"Events", "F6"}, {"Key-Editor", "F5"}, {"Liedtext", "F8"}}) {
    EXPECT_TRUE(ButtonOf(switches, QString::fromLatin1(name))->toolTip().contains(key));
  }
  ButtonOf(switches, "Klaviatur");
  ButtonOf(switches, "Controller");
}

TEST(WindowSwitches, TheLightOfTheMidiInputIsSeen) {
  WindowSwitches switches;
  switches.resize(switches.sizeHint());
  const auto lit = [&] {
    const QImage picture = switches.grab().toImage();
    int count = 0;
    for (int x = 0; x < picture.width(); ++x) {
      count += picture.pixelColor(x, picture.height() / 2) == th().play ? 1 : 0;
    }
    return count;
  };
  EXPECT_EQ(lit(), 0);
  switches.SetMidiIn(true, QStringLiteral("UM-ONE"));
  EXPECT_GE(lit(), 6);
}

LoopView Looped() { return {true, true, QStringLiteral("9:01"), QStringLiteral("25:01")}; }

TEST(LoopPanel, ShowsTheLoopAndSendsItsClicks) {
  LoopPanel panel;
  panel.SetView(Looped());
  EXPECT_EQ(panel.field(LoopEnd::Start)->text(), "9:01");
  EXPECT_EQ(panel.field(LoopEnd::End)->text(), "25:01");
  EXPECT_TRUE(ButtonOf(panel, "Loop")->isChecked());
  const QSignalSpy loop(&panel, &LoopPanel::loopClicked);
  QList<LoopEnd> here;
  QObject::connect(&panel, &LoopPanel::setHereClicked, [&](LoopEnd which) { here += which; });
  QTest::mouseClick(ButtonOf(panel, "Loop"), Qt::LeftButton);
  QTest::mouseClick(ButtonOf(panel, "End of the loop here"), Qt::LeftButton);
  QTest::mouseClick(ButtonOf(panel, "Start of the loop here"), Qt::LeftButton);
  EXPECT_EQ(loop.count(), 1);
  EXPECT_THAT(here, testing::ElementsAre(LoopEnd::End, LoopEnd::Start));
}

struct TypedLoop {
  TypedLoop() {
    panel.SetView(Looped());
    QObject::connect(&panel, &LoopPanel::endTyped, [this](LoopEnd which, const QString& text) {
      typed += {which, text};
    });
    QObject::connect(&panel, &LoopPanel::endStepped, [this](LoopEnd which, int bars) {
      stepped += {which, bars};
    });
  }
  LoopPanel panel;
  QList<std::pair<LoopEnd, QString>> typed;
  QList<std::pair<LoopEnd, int>> stepped;
};

TEST(LoopPanel, SendsWhatIsTyped) {
  TypedLoop loop;
  QLineEdit* start = loop.panel.field(LoopEnd::Start);
  start->selectAll();
  QTest::keyClicks(start, " 11:02");
  EXPECT_TRUE(loop.typed.isEmpty());
  QTest::keyClick(start, Qt::Key_Return);
  ASSERT_EQ(loop.typed.size(), 1);
  EXPECT_EQ(loop.typed[0].first, LoopEnd::Start);
  EXPECT_EQ(loop.typed[0].second, "11:02");
  QTest::keyClick(start, Qt::Key_Return);
  EXPECT_EQ(loop.typed.size(), 1);
}

TEST(LoopPanel, TheSongDoesNotOverwriteWhatIsBeingTyped) {
  TypedLoop loop;
  QLineEdit* end = loop.panel.field(LoopEnd::End);
  end->selectAll();
  QTest::keyClicks(end, "3");
  LoopView view = Looped();
  view.start = QStringLiteral("5:01");
  loop.panel.SetView(view);
  EXPECT_EQ(end->text(), "3");
  EXPECT_EQ(loop.panel.field(LoopEnd::Start)->text(), "5:01");
}

TEST(LoopPanel, EscDiscardsWhatIsTypedAndThenCloses) {
  TypedLoop loop;
  const QSignalSpy closed(&loop.panel, &LoopPanel::closed);
  QLineEdit* end = loop.panel.field(LoopEnd::End);
  QTest::keyClicks(end, "7");
  QTest::keyClick(end, Qt::Key_Escape);
  EXPECT_EQ(end->text(), "25:01");
  EXPECT_EQ(closed.count(), 0);
  EXPECT_TRUE(loop.typed.isEmpty());
  QTest::keyClick(end, Qt::Key_Escape);
  EXPECT_EQ(closed.count(), 1);
}

TEST(LoopPanel, ARefusedTextGoesBackAndTellsWhy) {
  TypedLoop loop;
  QLineEdit* start = loop.panel.field(LoopEnd::Start);
  start->selectAll();
  QTest::keyClicks(start, "99:01");
  QTest::keyClick(start, Qt::Key_Return);
  loop.panel.Refuse(LoopEnd::Start, QStringLiteral("The start lies behind the end"));
  EXPECT_EQ(start->text(), "9:01");
  EXPECT_EQ(start->accessibleDescription(), "The start lies behind the end");
  loop.panel.SetView(Looped());
  EXPECT_EQ(start->accessibleDescription(), "9:01");
}

TEST(LoopPanel, ArrowsAndWheelMoveAnEndByBars) {
  TypedLoop loop;
  QTest::keyClick(loop.panel.field(LoopEnd::Start), Qt::Key_Up);
  QTest::keyClick(loop.panel.field(LoopEnd::End), Qt::Key_Down);
  TurnWheel(*loop.panel.field(LoopEnd::End), 2);
  EXPECT_THAT(loop.stepped,
              testing::ElementsAre(std::pair(LoopEnd::Start, 1), std::pair(LoopEnd::End, -1),
                                   std::pair(LoopEnd::End, 2)));
}

TEST(LoopPanel, SlidesOpenAndShutInStepsOfTenMilliseconds) {
  QWidget window;
  window.resize(900, 200);
  auto* panel = new LoopPanel(&window);
  panel->SetView(Looped());
  ShowForTest(window);
  EXPECT_FALSE(panel->isVisible());
  panel->Slide(true);
  EXPECT_TRUE(panel->sliding());
  EXPECT_EQ(panel->findChild<QTimer*>(QString(), Qt::FindDirectChildrenOnly)->interval(), 10);
  int last = 0;
  while (RunOut(*panel)) {
    EXPECT_GT(panel->height(), last);
    last = panel->height();
  }
  EXPECT_EQ(panel->height(), panel->FullHeight());
  EXPECT_TRUE(panel->open());
  panel->Slide(false);
  while (RunOut(*panel)) continue;
  EXPECT_FALSE(panel->isVisible());
}

TEST(LoopPanel, TurnsRoundOnItsWay) {
  QWidget window;
  auto* panel = new LoopPanel(&window);
  ShowForTest(window);
  panel->Slide(true);
  RunOut(*panel);
  RunOut(*panel);
  panel->Slide(false);
  while (RunOut(*panel)) continue;
  EXPECT_FALSE(panel->isVisible());
  EXPECT_FALSE(panel->open());
}

TEST(LoopPanel, JumpsForThoseWhoWantNoMotion) {
  QWidget window;
  auto* panel = new LoopPanel(&window);
  ShowForTest(window);
  SetReducedMotion(true);
  panel->Slide(true);
  SetReducedMotion(false);
  EXPECT_FALSE(panel->sliding());
  EXPECT_EQ(panel->height(), panel->FullHeight());
}

TEST(LoopPanel, ANewScaleKeepsAnOpenPanelOpen) {
  QWidget window;
  auto* panel = new LoopPanel(&window);
  ShowForTest(window);
  SetReducedMotion(true);
  panel->Slide(true);
  SetReducedMotion(false);
  const AtScale scale(150);
  EXPECT_EQ(panel->height(), 66);
  EXPECT_EQ(panel->height(), panel->FullHeight());
}

TEST(LoopPanel, WithoutASongItTakesNothing) {
  LoopPanel panel;
  panel.SetView({});
  for (const char* name : {"Loop", "Start of the loop here", "End of the loop here"}) {
    EXPECT_FALSE(ButtonOf(panel, QString::fromLatin1(name))->isEnabled());
  }
  EXPECT_FALSE(panel.field(LoopEnd::Start)->isEnabled());
  EXPECT_TRUE(panel.field(LoopEnd::Start)->toolTip().contains("No song is open"));
}

TEST(LoopPanel, SpeaksGerman) {
  const InGerman german;
  LoopPanel panel;
  EXPECT_EQ(ButtonOf(panel, "Anfang der Schleife hier")->text(), "Hier");
  EXPECT_EQ(panel.field(LoopEnd::End)->accessibleName(), "Ende der Schleife");
}

}  // namespace
}  // namespace Sonarello
