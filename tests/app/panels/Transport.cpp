// Transport, position, tempo, transposition and file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>

#include "app/Application.h"
#include "app/panels/PanelBench.h"
#include "app/panels/PanelButton.h"
#include "app/panels/PositionDisplay.h"
#include "app/panels/TempoPanel.h"
#include "app/panels/TransportPanel.h"
#include "app/panels/TransposePanel.h"
#include "helpers/InGerman.h"

namespace Sonarello {
namespace {

TransportView Song() { return {true, false, false, false, {}}; }

TEST(TransportPanel, RewindsWithAClick) {
  TransportPanel panel;
  panel.SetView(Song());
  const QSignalSpy rewound(&panel, &TransportPanel::rewindClicked);
  const QSignalSpy wound(&panel, &TransportPanel::windBack);
  QTest::mouseClick(ButtonOf(panel, "Rewind"), Qt::LeftButton);
  EXPECT_EQ(rewound.count(), 1);
  EXPECT_EQ(wound.count(), 0);
}

TEST(TransportPanel, WindsWhileRewindIsHeldAndDoesNotRewindThen) {
  TransportPanel panel;
  panel.SetView(Song());
  auto* rewind = ButtonOf(panel, "Rewind");
  const QSignalSpy rewound(&panel, &TransportPanel::rewindClicked);
  const QSignalSpy began(&panel, &TransportPanel::windBackBegan);
  const QSignalSpy wound(&panel, &TransportPanel::windBack);
  const QSignalSpy ended(&panel, &TransportPanel::windBackEnded);
  const auto* timer = panel.findChild<QTimer*>(QString(), Qt::FindDirectChildrenOnly);
  QTest::mousePress(rewind, Qt::LeftButton);
  EXPECT_EQ(timer->interval(), 400);
  EXPECT_TRUE(RunOut(panel));
  EXPECT_EQ(timer->interval(), 50);
  EXPECT_TRUE(RunOut(panel));
  EXPECT_EQ(began.count(), 1);
  EXPECT_EQ(wound.count(), 2);
  EXPECT_EQ(ended.count(), 0);
  QTest::mouseRelease(rewind, Qt::LeftButton);
  EXPECT_EQ(ended.count(), 1);
  EXPECT_EQ(rewound.count(), 0);
  EXPECT_FALSE(RunOut(panel));
}

TEST(TransportPanel, RewindIsNotMeantByAPressThatLeavesTheButton) {
  TransportPanel panel;
  panel.SetView(Song());
  auto* rewind = ButtonOf(panel, "Rewind");
  const QSignalSpy rewound(&panel, &TransportPanel::rewindClicked);
  const QSignalSpy wound(&panel, &TransportPanel::windBack);
  QTest::mousePress(rewind, Qt::LeftButton);
  QTest::mouseRelease(rewind, Qt::LeftButton, {}, {-20, -20});
  RunOut(panel);
  EXPECT_EQ(rewound.count(), 0);
  EXPECT_EQ(wound.count(), 0);
  EXPECT_FALSE(RunOut(panel));
}

TEST(TransportPanel, AHoldThatStraysAndComesBackDoesNotRewind) {
  TransportPanel panel;
  panel.SetView(Song());
  auto* rewind = ButtonOf(panel, "Rewind");
  const QSignalSpy rewound(&panel, &TransportPanel::rewindClicked);
  const QSignalSpy began(&panel, &TransportPanel::windBackBegan);
  const QSignalSpy ended(&panel, &TransportPanel::windBackEnded);
  const auto move = [&](const QPointF& at) {
    QMouseEvent event(QEvent::MouseMove, at, rewind->mapToGlobal(at), Qt::NoButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(rewind, &event);
  };
  QTest::mousePress(rewind, Qt::LeftButton);
  RunOut(panel);
  move({-20, -20});
  EXPECT_EQ(ended.count(), 1);
  move({20, 20});
  QTest::mouseRelease(rewind, Qt::LeftButton);
  EXPECT_EQ(rewound.count(), 0);
  EXPECT_EQ(began.count(), ended.count());
  QTest::keyClick(rewind, Qt::Key_Return);
  EXPECT_EQ(rewound.count(), 1);
}

TEST(TransportPanel, WindingEndsWhenTheSongGoes) {
  TransportPanel panel;
  panel.SetView(Song());
  const QSignalSpy ended(&panel, &TransportPanel::windBackEnded);
  QTest::mousePress(ButtonOf(panel, "Rewind"), Qt::LeftButton);
  RunOut(panel);
  panel.SetView({});
  EXPECT_EQ(ended.count(), 1);
  EXPECT_FALSE(RunOut(panel));
}

TEST(TransportPanel, AnswersTheEnterKey) {
  TransportPanel panel;
  panel.SetView(Song());
  const QSignalSpy played(&panel, &TransportPanel::playClicked);
  const QSignalSpy rewound(&panel, &TransportPanel::rewindClicked);
  QTest::keyClick(ButtonOf(panel, "Play"), Qt::Key_Return);
  QTest::keyClick(ButtonOf(panel, "Rewind"), Qt::Key_Enter);
  EXPECT_EQ(played.count(), 1);
  EXPECT_EQ(rewound.count(), 1);
}

TEST(TransportPanel, LightsWhatTheSongDoesAndNotWhatWasClicked) {
  TransportPanel panel;
  panel.SetView(Song());
  const QSignalSpy played(&panel, &TransportPanel::playClicked);
  auto* play = ButtonOf(panel, "Play");
  QTest::mouseClick(play, Qt::LeftButton);
  EXPECT_EQ(played.count(), 1);
  EXPECT_FALSE(play->isChecked());
  panel.SetView({true, true, true, true, {}});
  EXPECT_TRUE(play->isChecked());
  EXPECT_TRUE(ButtonOf(panel, "Record")->isChecked());
  EXPECT_TRUE(ButtonOf(panel, "Loop")->isChecked());
}

TEST(TransportPanel, SendsEachClickOnce) {
  TransportPanel panel;
  panel.SetView(Song());
  const QSignalSpy stop(&panel, &TransportPanel::stopClicked);
  const QSignalSpy record(&panel, &TransportPanel::recordClicked);
  const QSignalSpy loop(&panel, &TransportPanel::loopClicked);
  for (const char* name : {"Stop", "Record", "Loop"}) {
    QTest::mouseClick(ButtonOf(panel, QString::fromLatin1(name)), Qt::LeftButton);
  }
  EXPECT_EQ(stop.count(), 1);
  EXPECT_EQ(record.count(), 1);
  EXPECT_EQ(loop.count(), 1);
}

TEST(TransportPanel, TheRightButtonAsksForTheMenusOfRecordAndLoop) {
  TransportPanel panel;
  panel.SetView(Song());
  const QSignalSpy record(&panel, &TransportPanel::recordMenuWanted);
  const QSignalSpy loop(&panel, &TransportPanel::loopPanelWanted);
  for (const char* name : {"Record", "Loop"}) {
    auto* button = ButtonOf(panel, QString::fromLatin1(name));
    const QPoint at = button->rect().center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, button->mapToGlobal(at));
    QCoreApplication::sendEvent(button, &event);
  }
  EXPECT_EQ(record.count(), 1);
  EXPECT_EQ(loop.count(), 1);
}

TEST(TransportPanel, TellsWhyItIsOutOfOrder) {
  TransportPanel panel;
  auto* record = ButtonOf(panel, "Record");
  EXPECT_FALSE(record->isEnabled());
  EXPECT_TRUE(record->toolTip().contains("No song is open"));
  panel.SetView({true, false, false, false, QStringLiteral("There is no MIDI input")});
  EXPECT_FALSE(record->isEnabled());
  EXPECT_TRUE(record->toolTip().contains("There is no MIDI input"));
  EXPECT_EQ(record->accessibleDescription(), "There is no MIDI input");
  EXPECT_TRUE(ButtonOf(panel, "Play")->isEnabled());
}

TEST(TransportPanel, SpeaksGerman) {
  const InGerman german;
  TransportPanel panel;
  for (const char* name : {"Zurückspulen", "Wiedergabe", "Stopp", "Aufnahme", "Schleife"}) {
    EXPECT_TRUE(ButtonOf(panel, QString::fromUtf8(name))->toolTip().contains("Kein Song geöffnet"));
  }
}

TEST(TransportPanel, IsAsWideAsItsButtonsInBothDensities) {
  TransportPanel panel;
  EXPECT_EQ(panel.sizeHint(), QSize(286, 72));
  panel.SetDensity(Density::Compact);
  EXPECT_EQ(panel.sizeHint(), QSize(266, 62));
  const AtScale scale(150);
  EXPECT_EQ(panel.sizeHint(), QSize(2 * 16 + 5 * 66 + 4 * 9, 93));
}

TEST(PositionDisplay, WritesPositionsAndTimes) {
  PositionDisplay display;
  EXPECT_EQ(display.measureText(), "1:01");
  EXPECT_EQ(display.timeText(), "0:00.000");
  display.SetPosition(17, 3, 41382);
  EXPECT_EQ(display.measureText(), "17:03");
  EXPECT_EQ(display.timeText(), "0:41.382");
  display.SetPosition(1204, 12, 3'661'007);
  EXPECT_EQ(display.measureText(), "1204:12");
  EXPECT_EQ(display.timeText(), "61:01.007");
}

/// What of a widget is painted anew.
class PaintWatch : public QObject {
 public:
  explicit PaintWatch(QWidget& widget) { widget.installEventFilter(this); }
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) painted += static_cast<QPaintEvent*>(event)->region();
    return false;
  }
  QRegion painted;
};

TEST(PositionDisplay, RepaintsOnlyTheFiguresThatChange) {
  PositionDisplay display;
  display.SetSong(true);
  display.SetPosition(17, 3, 41000);
  ShowForTest(display);
  PaintWatch watch(display);
  display.SetPosition(17, 3, 41030);
  QCoreApplication::processEvents();
  EXPECT_EQ(watch.painted, QRegion(display.TimeRect()));
  watch.painted = {};
  display.SetPosition(17, 4, 41030);
  QCoreApplication::processEvents();
  EXPECT_EQ(watch.painted, QRegion(display.MeasureRect()));
  watch.painted = {};
  display.SetPosition(17, 4, 41030);
  QCoreApplication::processEvents();
  EXPECT_TRUE(watch.painted.isEmpty());
}

TEST(PositionDisplay, LooksTheSameAfterARunAsWhenPaintedWhole) {
  PositionDisplay display;
  display.SetSong(true);
  display.SetSignature("4/4");
  ShowForTest(display);
  for (int i = 0; i < 40; ++i) {
    display.SetPosition(i + 1, i % 4 + 1, i * 731);
    QCoreApplication::processEvents();
  }
  const QImage run = OnScreen(display);
  PositionDisplay whole;
  whole.SetSong(true);
  whole.SetSignature("4/4");
  whole.SetPosition(40, 4, 39 * 731);
  whole.resize(display.size());
  ShowForTest(whole);
  EXPECT_EQ(run, OnScreen(whole));
}

TEST(PositionDisplay, GivesLongSongsRoomForTheirMeasures) {
  PositionDisplay display;
  EXPECT_EQ(display.sizeHint(), QSize(240, 72));
  display.SetLastMeasure(12000);
  EXPECT_GT(display.sizeHint().width(), 240);
}

TEST(PositionDisplay, TellsItsPositionToAssistivePrograms) {
  PositionDisplay display;
  display.SetPosition(17, 3, 41382);
  auto* access = QAccessible::queryAccessibleInterface(&display);
  ASSERT_NE(access, nullptr);
  EXPECT_EQ(access->role(), QAccessible::StaticText);
  EXPECT_EQ(access->text(QAccessible::Value), "Bar 17 beat 3, 0:41.382");
  const InGerman german;
  EXPECT_EQ(access->text(QAccessible::Value), "Takt 17 Schlag 3, 0:41.382");
}

TEST(PanelTexts, NamesKeysInBothLanguagesAndBothWaysOfNaming) {
  EXPECT_EQ(KeyText(-1, false, false), "F major");
  EXPECT_EQ(KeyText(-2, false, false), "Bb major");
  EXPECT_EQ(KeyText(0, true, false), "A minor");
  EXPECT_EQ(KeyText(6, true, false), "D# minor");
  EXPECT_EQ(KeyText(8, false, false), "");
  EXPECT_EQ(KeyText(-8, true, true), "");
  const InGerman german;
  EXPECT_EQ(KeyText(0, false, true), "C-Dur");
  EXPECT_EQ(KeyText(-2, false, true), "B-Dur");
  EXPECT_EQ(KeyText(5, false, true), "H-Dur");
  EXPECT_EQ(KeyText(0, true, true), "a-Moll");
  EXPECT_EQ(KeyText(-7, true, true), "as-Moll");
  EXPECT_EQ(KeyText(7, true, true), "ais-Moll");
  EXPECT_EQ(KeyText(-2, false, false), "Bb-Dur");
  EXPECT_EQ(SignatureText(6, 8, KeyText(0, false, true)), "6/8 · C-Dur");
  EXPECT_EQ(SignatureText(3, 4, {}), "3/4");
}

TEST(PanelTexts, TimesNeverGoBelowZero) {
  EXPECT_EQ(TimeText(-5), "0:00.000");
  EXPECT_EQ(LengthText(171999), "2:51");
}

TEST(TempoPanel, ShowsTempoAndOffsetAndSendsItsClicks) {
  TempoPanel panel;
  panel.SetView({true, 96, 4});
  EXPECT_EQ(panel.figure(), "96.0");
  auto* reset = ButtonOf(panel, "Tempo as in the song");
  EXPECT_EQ(reset->text(), "+4");
  panel.SetView({true, 123.45, -12});
  EXPECT_EQ(panel.figure(), "123.5");
  EXPECT_EQ(reset->text(), QString::fromUtf8("−12"));
  panel.SetView({true, 123.45, 0});
  EXPECT_EQ(reset->text(), "0");
  const QSignalSpy minus(&panel, &TempoPanel::Tempo_MinusClick);
  const QSignalSpy null(&panel, &TempoPanel::Tempo_NullClick);
  const QSignalSpy plus(&panel, &TempoPanel::Tempo_PlusClick);
  QTest::mouseClick(ButtonOf(panel, "Tempo slower"), Qt::LeftButton);
  QTest::mouseClick(reset, Qt::LeftButton);
  QTest::mouseClick(ButtonOf(panel, "Tempo faster"), Qt::LeftButton);
  EXPECT_EQ(minus.count(), 1);
  EXPECT_EQ(null.count(), 1);
  EXPECT_EQ(plus.count(), 1);
}

TEST(TempoPanel, RepeatsWhileAButtonIsHeld) {
  const TempoPanel panel;
  for (const char* name : {"Tempo slower", "Tempo faster"}) {
    auto* button = ButtonOf(panel, QString::fromLatin1(name));
    EXPECT_TRUE(button->autoRepeat());
    EXPECT_EQ(button->autoRepeatDelay(), 700);
    EXPECT_EQ(button->autoRepeatInterval(), 150);
  }
  EXPECT_FALSE(ButtonOf(panel, "Tempo as in the song")->autoRepeat());
}

TEST(TempoPanel, TheWheelChangesTheTempoOfASongOnly) {
  TempoPanel panel;
  const QSignalSpy minus(&panel, &TempoPanel::Tempo_MinusClick);
  const QSignalSpy plus(&panel, &TempoPanel::Tempo_PlusClick);
  TurnWheel(panel, 1);
  EXPECT_EQ(plus.count(), 0);
  panel.SetView({true, 96, 0});
  TurnWheel(panel, 2);
  TurnWheel(panel, -1);
  EXPECT_EQ(plus.count(), 2);
  EXPECT_EQ(minus.count(), 1);
}

TEST(TempoPanel, TellsWhyItIsOutOfOrder) {
  const TempoPanel panel;
  EXPECT_FALSE(ButtonOf(panel, "Tempo faster")->isEnabled());
  EXPECT_TRUE(ButtonOf(panel, "Tempo faster")->toolTip().contains("No song is open"));
}

TEST(TempoPanel, IsAsWideAsInTheDesign) {
  TempoPanel panel;
  EXPECT_EQ(panel.sizeHint(), QSize(198, 72));
  panel.SetDensity(Density::Compact);
  EXPECT_EQ(panel.sizeHint(), QSize(188, 62));
}

TEST(TransposePanel, SendsItsClicks) {
  TransposePanel panel;
  panel.SetView({true, -2, false, 2});
  const QSignalSpy minus(&panel, &TransposePanel::Transpose_MinusClick);
  const QSignalSpy null(&panel, &TransposePanel::Transpose_NullClick);
  const QSignalSpy plus(&panel, &TransposePanel::Transpose_PlusClick);
  QSignalSpy intelligent(&panel, &TransposePanel::IntelligentTransposeChange);
  QTest::mouseClick(ButtonOf(panel, "One semitone down"), Qt::LeftButton);
  QTest::mouseClick(ButtonOf(panel, "No transposition"), Qt::LeftButton);
  QTest::mouseClick(ButtonOf(panel, "One semitone up"), Qt::LeftButton);
  TurnWheel(panel, 1);
  QTest::mouseClick(ButtonOf(panel, "Intelligent transposition"), Qt::LeftButton);
  EXPECT_EQ(minus.count(), 1);
  EXPECT_EQ(null.count(), 1);
  EXPECT_EQ(plus.count(), 2);
  ASSERT_EQ(intelligent.count(), 1);
  EXPECT_TRUE(intelligent[0][0].toBool());
  EXPECT_FALSE(ButtonOf(panel, "Intelligent transposition")->isChecked());
}

TEST(TransposePanel, ModesBelongToTheIntelligentTransposition) {
  TransposePanel panel;
  panel.SetView({true, 0, false, 2});
  auto* third = ButtonOf(panel, "Intelligent mode 3");
  EXPECT_FALSE(third->isEnabled());
  EXPECT_TRUE(third->toolTip().contains("on first"));
  panel.SetView({true, 0, true, 2});
  QSignalSpy mode(&panel, &TransposePanel::IT_ModeClick);
  QTest::mouseClick(third, Qt::LeftButton);
  ASSERT_EQ(mode.count(), 1);
  EXPECT_EQ(mode[0][0].toInt(), 3);
  EXPECT_TRUE(ButtonOf(panel, "Intelligent mode 2")->isChecked());
  panel.SetView({true, 0, true, 3});
  EXPECT_TRUE(third->isChecked());
}

TEST(TransposePanel, TheModesAreOneStopOfTheTabKeyAndArrowsChooseAmongThem) {
  TransposePanel panel;
  panel.SetView({true, 0, true, 2});
  ShowForTest(panel);
  for (int mode = 1; mode <= 4; ++mode) {
    const auto* button = ButtonOf(panel, QStringLiteral("Intelligent mode %1").arg(mode));
    EXPECT_EQ(button->focusPolicy(), mode == 2 ? Qt::TabFocus : Qt::NoFocus);
  }
  QSignalSpy chosen(&panel, &TransposePanel::IT_ModeClick);
  QTest::keyClick(ButtonOf(panel, "Intelligent mode 2"), Qt::Key_Right);
  ASSERT_EQ(chosen.count(), 1);
  EXPECT_EQ(chosen[0][0].toInt(), 3);
  EXPECT_TRUE(ButtonOf(panel, "Intelligent mode 3")->hasFocus());
  panel.SetView({true, 0, true, 4});
  QTest::keyClick(ButtonOf(panel, "Intelligent mode 4"), Qt::Key_Down);
  EXPECT_EQ(chosen.count(), 1);
}

TEST(TransposePanel, SpeaksGerman) {
  const InGerman german;
  TransposePanel panel;
  panel.SetView({true, 3, true, 1});
  EXPECT_TRUE(ButtonOf(panel, QString::fromUtf8("Einen Halbton höher"))->toolTip().contains("+3"));
  EXPECT_TRUE(ButtonOf(panel, "Intelligent-Modus 1")->isEnabled());
}

TEST(FilePanel, WritesNameAndFacts) {
  FilePanel panel;
  EXPECT_EQ(panel.NameLine(), "No file");
  EXPECT_EQ(panel.FactsLine(), "");
  FileView view = SongFile();
  panel.SetView(view);
  EXPECT_EQ(panel.NameLine(), "Muss_i_denn_Genos.mid");
  EXPECT_EQ(panel.FactsLine(), "SMF 0 · 480 PPQ · 2:51 · modified");
  EXPECT_TRUE(panel.toolTip().contains("/songs/Muss_i_denn_Genos.mid"));
  view.modified = false;
  panel.SetView(view);
  EXPECT_EQ(panel.FactsLine(), "SMF 0 · 480 PPQ · 2:51");
  view.name.clear();
  panel.SetView(view);
  EXPECT_EQ(panel.NameLine(), "Not saved yet");
}

TEST(FilePanel, SpeaksGerman) {
  const InGerman german;
  FilePanel panel;
  EXPECT_EQ(panel.NameLine(), "Keine Datei");
  panel.SetView(SongFile());
  EXPECT_EQ(panel.FactsLine(), QString::fromUtf8("SMF 0 · 480 T/V · 2:51 · geändert"));
}

TEST(FilePanel, TheDotOfAChangedSongIsSeen) {
  FilePanel panel;
  panel.resize(400, 72);
  FileView view = SongFile();
  view.name = "a.mid";
  const auto hasDot = [&] {
    const QImage picture = panel.grab().toImage();
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        if (picture.pixelColor(x, y) == th().warn) return true;
      }
    }
    return false;
  };
  panel.SetView(view);
  EXPECT_TRUE(hasDot());
  view.modified = false;
  panel.SetView(view);
  EXPECT_FALSE(hasDot());
}

}  // namespace
}  // namespace Sonarello
