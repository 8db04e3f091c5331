// Controllers, effects and lyrics.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>

#include "app/Application.h"
#include "app/controls/Knob.h"
#include "app/panels/EffectCell.h"
#include "app/panels/PanelBench.h"
#include "app/panels/RoutingButton.h"
#include "helpers/InGerman.h"

namespace Sonarello {
namespace {

std::size_t IndexOf(int controller) {
  for (std::size_t i = 0; i < PanelControllers; ++i) {
    if (ControllersOfPanel()[i].number == controller) return i;
  }
  ADD_FAILURE() << "no knob for controller " << controller;
  return 0;
}

TEST(ControllerPanel, NoNameOfAControllerIsCutInANarrowWindow) {
  for (const int percent : {100, 130, 150, 180}) {
    const AtScale scale(percent);
    for (const int width : {1264, 1424, 1600}) {
      ControllerPanel panel;
      panel.resize(metrics().px(width), panel.sizeHint().height());
      ShowForTest(panel);
      auto knobs = panel.findChildren<Knob*>();
      std::ranges::sort(knobs, {}, [](const Knob* knob) { return knob->x(); });
      ASSERT_EQ(knobs.size(), 9);
      for (qsizetype i = 0; i + 1 < knobs.size(); ++i) {
        const double name = QFontMetricsF(metrics().font(Role::KnobName))
                                .horizontalAdvance(QLatin1String(
                                    ControllersOfPanel()[static_cast<std::size_t>(i)].english));
        const int room = knobs[i + 1]->x() - knobs[i]->geometry().right() - 1 - metrics().px(7 + 6);
        EXPECT_LE(name, room) << percent << " %, " << width << " wide, controller " << i;
      }
      EXPECT_EQ(knobs[0]->width() == metrics().px(46), width > 1264) << percent << ' ' << width;
    }
  }
}

TEST(ControllerPanel, HasNineKnobsInTheOrderOfTheDesk) {
  std::vector<int> numbers;
  for (const PanelController& controller : ControllersOfPanel()) numbers.push_back(controller.number);
  EXPECT_THAT(numbers, testing::ElementsAre(10, 11, 91, 93, 71, 72, 73, 74, 94));
}

TEST(ControllerPanel, ShowsPanoramaRoundItsMiddleAndTheOthersAsTheyAre) {
  ControllerPanel panel;
  panel.SetView(SongControllers());
  EXPECT_EQ(panel.ShownValue(IndexOf(10)), QString::fromUtf8("−12"));
  EXPECT_EQ(panel.ShownValue(IndexOf(11)), "127");
  EXPECT_EQ(panel.ShownValue(IndexOf(71)), "64");
  panel.SetValue(IndexOf(10), {127, true});
  EXPECT_EQ(panel.ShownValue(IndexOf(10)), "63");
  EXPECT_EQ(panel.knob(IndexOf(10))->value(), 127);
}

TEST(ControllerPanel, ShowsTheStandardsWhereTheSongGivesNoValue) {
  ControllerPanel panel;
  ControllersView view = SongControllers();
  view.values = {};
  panel.SetView(view);
  const std::array shown{"0", "127", "40", "0", "64", "64", "64", "64", "0"};
  for (std::size_t i = 0; i < PanelControllers; ++i) EXPECT_EQ(panel.ShownValue(i), shown[i]);
  EXPECT_EQ(panel.knob(IndexOf(10))->value(), 64);
}

TEST(ControllerPanel, WithoutASongItShowsDashesAndTakesNothing) {
  ControllerPanel panel;
  const QSignalSpy moved(&panel, &ControllerPanel::controllerMoved);
  for (std::size_t i = 0; i < PanelControllers; ++i) {
    EXPECT_EQ(panel.ShownValue(i), QString::fromUtf8("–"));
    EXPECT_FALSE(panel.knob(i)->isEnabled());
    EXPECT_TRUE(panel.knob(i)->toolTip().contains("No song is open"));
    TurnWheel(*panel.knob(i), 1);
  }
  EXPECT_EQ(moved.count(), 0);
}

TEST(ControllerPanel, AMoveOfAKnobIsToldWithItsController) {
  ControllerPanel panel;
  panel.SetView(SongControllers());
  QSignalSpy moved(&panel, &ControllerPanel::controllerMoved);
  QTest::keyClick(panel.knob(IndexOf(91)), Qt::Key_Up);
  ASSERT_EQ(moved.count(), 1);
  EXPECT_EQ(moved[0][0].toInt(), 91);
  EXPECT_EQ(moved[0][1].toInt(), 55);
  EXPECT_EQ(panel.ShownValue(IndexOf(91)), "55");
  TurnWheel(*panel.knob(IndexOf(74)), 1);
  ASSERT_EQ(moved.count(), 2);
  EXPECT_EQ(moved[1][0].toInt(), 74);
  EXPECT_EQ(moved[1][1].toInt(), 57);
}

TEST(ControllerPanel, ADoubleClickAndDelSetTheDefaults) {
  ControllerPanel panel;
  panel.SetView(SongControllers());
  QSignalSpy moved(&panel, &ControllerPanel::controllerMoved);
  QTest::mouseDClick(panel.knob(IndexOf(10)), Qt::LeftButton);
  ASSERT_GE(moved.count(), 1);
  EXPECT_EQ(moved.last()[1].toInt(), 64);
  QTest::keyClick(panel.knob(IndexOf(93)), Qt::Key_Delete);
  EXPECT_EQ(moved.last()[0].toInt(), 93);
  EXPECT_EQ(moved.last()[1].toInt(), 0);
}

TEST(ControllerPanel, AValueOfTheSongMovesTheKnobWithoutASignal) {
  ControllerPanel panel;
  panel.SetView(SongControllers());
  const QSignalSpy moved(&panel, &ControllerPanel::controllerMoved);
  panel.SetValue(IndexOf(11), {3, true});
  panel.SetView(SongControllers());
  EXPECT_EQ(moved.count(), 0);
}

TEST(ControllerPanel, LooksTheSameAfterARunAsWhenPaintedWhole) {
  ControllerPanel panel, whole;
  for (ControllerPanel* each : {&panel, &whole}) {
    each->resize(1264, 76);
    each->SetView(SongControllers());
  }
  ShowForTest(panel);
  for (std::size_t i = 0; i < PanelControllers; ++i) {
    panel.SetValue(i, {static_cast<int>(100 + i), true});
    whole.SetValue(i, {static_cast<int>(100 + i), true});
    QCoreApplication::processEvents();
  }
  const QImage run = OnScreen(panel);
  ShowForTest(whole);
  EXPECT_EQ(run, OnScreen(whole));
}

TEST(ControllerPanel, TellsThatAMoveIsNotSavedWhereTheSongHasNoEvent) {
  ControllerPanel panel;
  ControllersView view = SongControllers();
  view.values[0].inSong = false;
  panel.SetView(view);
  EXPECT_TRUE(panel.knob(0)->toolTip().contains("not saved"));
  EXPECT_FALSE(panel.knob(1)->toolTip().contains("not saved"));
  const InGerman german;
  panel.SetView(view);
  EXPECT_TRUE(panel.knob(0)->toolTip().contains("nicht gespeichert"));
}

TEST(ControllerPanel, NamesItsKnobsForAssistivePrograms) {
  ControllerPanel panel;
  panel.SetView(SongControllers());
  auto* access = QAccessible::queryAccessibleInterface(panel.knob(2));
  ASSERT_NE(access, nullptr);
  EXPECT_EQ(access->role(), QAccessible::Dial);
  EXPECT_EQ(access->text(QAccessible::Name), "Reverb, channel 4");
  const InGerman german;
  panel.SetView(SongControllers());
  EXPECT_EQ(access->text(QAccessible::Name), "Hall, Kanal 4");
}

TEST(ControllerPanel, TheRoutingButtonAsksForItsMenuAndTellsOfCtrl) {
  ControllerPanel panel;
  panel.SetView(SongControllers());
  QSignalSpy wanted(&panel, &ControllerPanel::routingMenuWanted);
  EXPECT_EQ(panel.routing()->text(), QString::fromUtf8("Yamaha Genos → UM-ONE MIDI 1"));
  QTest::mouseClick(panel.routing(), Qt::LeftButton, Qt::ControlModifier);
  QTest::mouseClick(panel.routing(), Qt::LeftButton);
  QTest::keyClick(panel.routing(), Qt::Key_Return, Qt::ControlModifier);
  ASSERT_EQ(wanted.count(), 3);
  EXPECT_EQ(wanted[0][1].value<Qt::KeyboardModifiers>(), Qt::ControlModifier);
  EXPECT_EQ(wanted[1][1].value<Qt::KeyboardModifiers>(), Qt::NoModifier);
  EXPECT_EQ(wanted[2][1].value<Qt::KeyboardModifiers>(), Qt::ControlModifier);
}

TEST(ControllerPanel, AnOnlyOutputIsPlainText) {
  ControllerPanel panel;
  ControllersView view = SongControllers();
  view.severalRoutes = false;
  view.routingReason = QStringLiteral("There is only one output");
  panel.SetView(view);
  const QSignalSpy wanted(&panel, &ControllerPanel::routingMenuWanted);
  QTest::mouseClick(panel.routing(), Qt::LeftButton);
  EXPECT_EQ(wanted.count(), 0);
  EXPECT_EQ(panel.routing()->focusPolicy(), Qt::NoFocus);
  EXPECT_TRUE(panel.routing()->toolTip().contains("only one output"));
}

TEST(ControllerPanel, AnAudioOutputTakesItsRoomFromTheRoutingButton) {
  ControllerPanel panel;
  panel.resize(1264, 64);
  panel.SetView(SongControllers());
  const int whole = panel.routing()->width();
  ControllersView view = SongControllers();
  view.audioOutput = QStringLiteral("Output: SUB 1");
  panel.SetView(view);
  EXPECT_LT(panel.routing()->width(), whole);
}

TEST(EffectRow, LaysItsCellsOutInThreeAndEightColumns) {
  EffectRow row;
  row.SetDensity(Density::Compact);
  row.SetView(SongEffects());
  row.resize(1264, row.sizeHint().height());
  ShowForTest(row);
  ASSERT_EQ(row.cells().size(), 22U);
  EXPECT_EQ(row.sizeHint().height(), 71);
  EXPECT_EQ(row.cells()[0]->geometry(), QRect(0, 0, 126, 34));
  EXPECT_EQ(row.cells()[3]->geometry(), QRect(0, 37, 126, 34));
  EXPECT_EQ(row.cells()[6]->geometry(), QRect(396, 0, 106, 34));
  EXPECT_EQ(row.cells()[13]->geometry().right(), 1263);
  EXPECT_EQ(row.cells()[14]->geometry().topLeft(), QPoint(396, 37));
}

TEST(EffectRow, AnInstrumentOfFewEffectsNeedsOneRowAndOneOfNoneNoRow) {
  EffectRow row;
  EffectsView view = SongEffects();
  view.system.resize(3);
  view.insertions.resize(6);
  row.SetView(view);
  EXPECT_EQ(row.Rows(), 1);
  EXPECT_EQ(row.sizeHint().height(), 36);
  row.SetView({});
  EXPECT_FALSE(row.HasCells());
}

TEST(EffectRow, AClickOpensACellThatOpens) {
  EffectRow row;
  EffectsView view = SongEffects();
  view.system[1].opens = false;
  view.system[1].reason = QStringLiteral("Not in this version");
  row.SetView(view);
  QSignalSpy activated(&row, &EffectRow::cellActivated);
  QTest::mouseClick(row.cells()[7], Qt::LeftButton);
  QTest::mouseClick(row.cells()[1], Qt::LeftButton);
  ASSERT_EQ(activated.count(), 1);
  EXPECT_EQ(activated[0][0].toInt(), 7);
  EXPECT_TRUE(row.cells()[1]->toolTip().contains("Not in this version"));
  EXPECT_EQ(row.cells()[1]->accessibleDescription(), "Not in this version");
}

TEST(EffectRow, IsOneStopOfTheTabKeyWithArrowsInside) {
  EffectRow row;
  row.SetView(SongEffects());
  row.resize(1264, row.sizeHint().height());
  ShowForTest(row);
  const auto stops = [&] {
    int count = 0;
    for (const EffectCell* cell : row.cells()) count += cell->focusPolicy() == Qt::TabFocus ? 1 : 0;
    return count;
  };
  EXPECT_EQ(stops(), 1);
  const auto press = [&](Qt::Key key) {
    QTest::keyClick(row.cells()[static_cast<std::size_t>(row.current())], key);
    return row.current();
  };
  EXPECT_EQ(press(Qt::Key_Left), 0);
  EXPECT_EQ(press(Qt::Key_Up), 0);
  EXPECT_EQ(press(Qt::Key_Right), 1);
  EXPECT_EQ(press(Qt::Key_Down), 4);
  EXPECT_EQ(press(Qt::Key_Right), 5);
  EXPECT_EQ(press(Qt::Key_Right), 14);
  EXPECT_EQ(press(Qt::Key_Up), 6);
  EXPECT_TRUE(row.cells()[6]->hasFocus());
  EXPECT_EQ(stops(), 1);
}

TEST(EffectRow, EnterAndSpaceOpenTheCurrentCell) {
  EffectRow row;
  row.SetView(SongEffects());
  QSignalSpy activated(&row, &EffectRow::cellActivated);
  EffectCell* cell = row.cells()[0];
  QKeyEvent wants(QEvent::ShortcutOverride, Qt::Key_Space, Qt::NoModifier);
  wants.ignore();
  QCoreApplication::sendEvent(cell, &wants);
  EXPECT_TRUE(wants.isAccepted());
  QTest::keyClick(cell, Qt::Key_Space);
  QTest::keyClick(cell, Qt::Key_Return);
  EXPECT_EQ(activated.count(), 2);
}

TEST(EffectRow, AShorterRowKeepsAStopOfTheTabKey) {
  EffectRow row;
  row.SetView(SongEffects());
  QTest::mouseClick(row.cells()[21], Qt::LeftButton);
  EXPECT_EQ(row.current(), 21);
  EffectsView view = SongEffects();
  view.insertions.resize(4);
  row.SetView(view);
  EXPECT_EQ(row.current(), 9);
  EXPECT_EQ(row.cells()[9]->focusPolicy(), Qt::TabFocus);
}

TEST(EffectRow, NamesItsCells) {
  EffectRow row;
  row.SetView(SongEffects());
  EXPECT_EQ(row.cells()[7]->accessibleName(), "DSP 2: Rotary Speaker 5, channel 4");
  EXPECT_EQ(row.cells()[4]->SecondLine(), "Off");
  EXPECT_EQ(row.cells()[4]->accessibleName(), "Vocal Harmony: Off");
  EXPECT_TRUE(row.cells()[7]->toolTip().contains("On"));
  EffectsView empty;
  empty.system = {{QStringLiteral("Chorus")}};
  row.SetView(empty);
  EXPECT_EQ(row.cells()[0]->SecondLine(), QString::fromUtf8("–"));
  const InGerman german;
  row.SetView(SongEffects());
  EXPECT_EQ(row.cells()[7]->accessibleName(), "DSP 2: Rotary Speaker 5, Kanal 4");
}

TEST(LyricBar, PlacesSyllablesBesideOneAnother) {
  LyricBar bar;
  bar.resize(1264, 82);
  bar.SetView(SongLyrics());
  const int count = static_cast<int>(SongLyrics().line.size());
  for (int i = 1; i < count; ++i) {
    EXPECT_NEAR(bar.RectOf(i).left(), bar.RectOf(i - 1).right(), 0.01);
  }
  EXPECT_EQ(bar.RectOf(0).left(), 16 + 124 + 1 + 16);
  EXPECT_TRUE(bar.RectOf(count).isEmpty());
  EXPECT_TRUE(bar.RectOf(-1).isEmpty());
}

TEST(LyricBar, ALineThatIsTooLongIsTurnedPageByPageBetweenWords) {
  LyricBar bar;
  bar.resize(460, 82);
  bar.SetView(SongLyrics());
  EXPECT_EQ(bar.Page(), 0);
  const int count = static_cast<int>(SongLyrics().line.size());
  int pages = 1;
  for (int i = 0; i < count; ++i) {
    const int before = bar.Page();
    bar.SetCurrent(i);
    const QRectF place = bar.RectOf(i);
    EXPECT_FALSE(place.isEmpty());
    EXPECT_LE(place.right(), 460 - 8) << i;
    if (bar.Page() == before) continue;
    ++pages;
    EXPECT_EQ(place.left(), 157) << i;
    EXPECT_TRUE(SongLyrics().line[static_cast<std::size_t>(i - 1)].text.endsWith(' ')) << i;
  }
  EXPECT_GE(pages, 3);
}

TEST(LyricBar, AWordWiderThanTheBarIsCutRatherThanLost) {
  LyricBar bar;
  bar.resize(400, 82);
  LyricView view;
  for (int i = 0; i < 40; ++i) view.line.push_back({QStringLiteral("tra-"), {}});
  bar.SetView(view);
  for (int i = 0; i < 40; ++i) {
    bar.SetCurrent(i);
    EXPECT_LE(bar.RectOf(i).right(), 400) << i;
    EXPECT_FALSE(bar.RectOf(i).isEmpty());
  }
}

TEST(LyricBar, ANewLineBeginsBeforeItsFirstSyllable) {
  LyricBar bar;
  bar.SetView(SongLyrics());
  bar.SetCurrent(5);
  LyricView chordOnly = SongLyrics();
  chordOnly.chord = QStringLiteral("Am");
  bar.SetView(chordOnly);
  EXPECT_EQ(bar.current(), 5);
  LyricView next = SongLyrics();
  next.line.pop_back();
  bar.SetView(next);
  EXPECT_EQ(bar.current(), -1);
  bar.SetCurrent(99);
  EXPECT_EQ(bar.current(), static_cast<int>(next.line.size()));
}

TEST(LyricBar, LooksTheSameAfterARunAsWhenPaintedWhole) {
  LyricBar bar, whole;
  for (LyricBar* each : {&bar, &whole}) {
    each->resize(1264, 82);
    each->SetView(SongLyrics());
  }
  ShowForTest(bar);
  for (int i = 0; i < 12; ++i) {
    bar.SetCurrent(i);
    QCoreApplication::processEvents();
  }
  bar.SetCurrent(4);
  const QImage run = OnScreen(bar);
  whole.SetCurrent(4);
  ShowForTest(whole);
  EXPECT_EQ(run, OnScreen(whole));
}

TEST(LyricBar, KnowsWhenThereIsNothingToShow) {
  EXPECT_TRUE(LyricView{}.Empty());
  EXPECT_FALSE(SongLyrics().Empty());
  LyricView chords;
  chords.comingChords = {QStringLiteral("C")};
  EXPECT_FALSE(chords.Empty());
}

TEST(LyricBar, TellsItsLineToAssistivePrograms) {
  LyricBar bar;
  bar.SetView(SongLyrics());
  EXPECT_TRUE(bar.accessibleDescription().contains(QString::fromUtf8("Städte-le")));
  EXPECT_TRUE(bar.accessibleDescription().contains("Chord G7"));
  LyricView chords;
  chords.comingChords = {QStringLiteral("C"), QStringLiteral("F")};
  bar.SetView(chords);
  EXPECT_EQ(bar.accessibleDescription(), "C F");
  const InGerman german;
  bar.SetView(SongLyrics());
  EXPECT_TRUE(bar.accessibleDescription().contains("Akkord G7"));
  EXPECT_EQ(LyricBar().accessibleName(), "Liedtext und Akkorde");
}

}  // namespace
}  // namespace Sonarello
