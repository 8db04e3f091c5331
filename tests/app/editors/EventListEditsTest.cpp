// Cells that are edited in the event list: every editor, by the keyboard, and what refuses an edit.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/editors/EventListBench.h"

namespace Sonarello {

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

/// Chooses an item of the list that edits a cell.
void Choose(EventListBench& bench, const QString& item) {
  QComboBox* const list = bench.List();
  ASSERT_NE(list, nullptr);
  const int index = list->findText(item);
  ASSERT_GE(index, 0) << item.toStdString();
  list->hidePopup();
  list->setCurrentIndex(index);
  Q_EMIT list->activated(index);
  QCoreApplication::processEvents();
}

struct Editing : testing::Test {
  Editing() { bench.PictureSong().Show(); }
  ~Editing() override { EXPECT_THAT(CheckSong(bench.song), IsEmpty()); }
  EventListBench bench;
};

TEST_F(Editing, WhileTheSongPlaysInsertSaysWhyItDoesNothing) {
  bench.playing = true;
  const int count = bench.form->Model().rowCount();
  bench.Key(Qt::Key_Insert);
  EXPECT_EQ(bench.form->Model().rowCount(), count);
  EXPECT_EQ(bench.form->Status().Message(), QStringLiteral("Not while the song plays"));
}

TEST_F(Editing, APositionIsTypedAndItsRowMovesWithTheSelection) {
  bench.Edit(FirstNote, PositionColumn);
  bench.Type(QStringLiteral("5.2"));
  const std::int32_t row = bench.form->Table().currentIndex().row() + 1;
  EXPECT_NE(row, FirstNote);
  EXPECT_EQ(bench.Cell(row, PositionColumn), "005.02.000");
  EXPECT_EQ(bench.Cell(row, Value1Column), "F3");
  EXPECT_EQ(bench.changes, 1);
}

TEST_F(Editing, ARefusedPositionLeavesTheCellAndIsTold) {
  bench.Edit(Marker, PositionColumn);
  bench.Type(QStringLiteral("999"));
  EXPECT_EQ(bench.Cell(Marker, PositionColumn), "003.01.000");
  EXPECT_THAT(bench.messages.Shown, IsEmpty());
  bench.Strike("MessageTimer");
  ASSERT_EQ(bench.messages.Shown.size(), 1U);
  EXPECT_THAT(bench.messages.Shown[0], HasSubstr("measures greater than"));
  EXPECT_EQ(bench.changes, 0);
}

TEST_F(Editing, AChannelIsChosenFromSixteen) {
  bench.Edit(Volume, ChannelColumn);
  ASSERT_NE(bench.List(), nullptr);
  EXPECT_EQ(bench.List()->count(), 16);
  EXPECT_EQ(bench.List()->currentText(), QStringLiteral("4"));
  Choose(bench, QStringLiteral("7"));
  EXPECT_EQ(bench.Cell(Volume, ChannelColumn), "7");
}

TEST_F(Editing, AKeyIsChosenByItsName) {
  bench.Edit(FirstNote, Value1Column);
  EXPECT_EQ(bench.List()->count(), 128);
  EXPECT_EQ(bench.List()->currentText(), QStringLiteral("F3"));
  Choose(bench, QStringLiteral("G3"));
  EXPECT_EQ(bench.Cell(FirstNote, Value1Column), "G3");
}

TEST_F(Editing, AControllerIsChosenByItsName) {
  bench.Edit(Volume, Value1Column);
  EXPECT_EQ(bench.List()->currentText(), QStringLiteral("Volume"));
  Choose(bench, QStringLiteral("Expression"));
  EXPECT_EQ(bench.Cell(Volume, LengthColumn), "Expression");
  EXPECT_EQ(bench.Cell(Volume, Value2Column), "127");
}

TEST_F(Editing, AProgramIsTypedFromOne) {
  bench.Edit(Program, Value1Column);
  bench.Type(QStringLiteral("50"));
  EXPECT_EQ(bench.Cell(Program, Value1Column), "50");
  EXPECT_EQ(bench.rows.Event(Program)->Value[0], 49);
}

TEST_F(Editing, AMetaTypeIsChosenFromFourteen) {
  bench.Edit(Marker, Value1Column);
  EXPECT_EQ(bench.List()->count(), 14);
  Choose(bench, QStringLiteral("Cue Point"));
  EXPECT_EQ(bench.Cell(Marker, Value1Column), "7");
}

TEST_F(Editing, ANoteLengthIsTyped) {
  bench.Edit(FirstNote, LengthColumn);
  bench.Type(QStringLiteral("100"));
  EXPECT_EQ(bench.Cell(FirstNote, LengthColumn), "100");
}

TEST_F(Editing, ATooShortNoteLengthIsRefused) {
  bench.Edit(FirstNote, LengthColumn);
  bench.Type(QStringLiteral("1"));
  EXPECT_EQ(bench.Cell(FirstNote, LengthColumn), "476");
  bench.Strike("MessageTimer");
  EXPECT_EQ(bench.messages.Shown, std::vector<std::string>{"Note length too short!"});
}

TEST_F(Editing, APitchBendIsTyped) {
  bench.Edit(Bend, LengthColumn);
  bench.Type(QStringLiteral("-8192"));
  EXPECT_EQ(bench.Cell(Bend, LengthColumn), "-8192");
  bench.Edit(Bend, LengthColumn);
  bench.Type(QStringLiteral("8192"));
  EXPECT_EQ(bench.Cell(Bend, LengthColumn), "-8192");
}

TEST_F(Editing, AVelocityAndAControllerValueAreTyped) {
  bench.Edit(SecondNote, Value2Column);
  bench.Type(QStringLiteral("101"));
  EXPECT_EQ(bench.Cell(SecondNote, Value2Column), "101");
  bench.Edit(Volume, Value2Column);
  bench.Type(QStringLiteral("12"));
  EXPECT_EQ(bench.Cell(Volume, Value2Column), "12");
}

TEST_F(Editing, AKeySignatureIsChosenFromThirty) {
  bench.Edit(TrackName + 2, Value2Column);
  EXPECT_EQ(bench.List()->count(), 30);
  EXPECT_EQ(bench.List()->currentText(), QStringLiteral("F"));
  Choose(bench, QStringLiteral("Bb"));
  EXPECT_EQ(bench.Cell(TrackName + 2, Value2Column), "Bb");
}

TEST_F(Editing, ALyricAndAChordAreTyped) {
  bench.Edit(Lyric, Value2Column);
  bench.Type(QStringLiteral("Must"));
  EXPECT_EQ(bench.Cell(Lyric, Value2Column), "Must");
  bench.Edit(Chord, Value2Column);
  bench.Type(QStringLiteral("Gm7"));
  EXPECT_EQ(bench.Cell(Chord, Value2Column), "Gm7");
}

TEST_F(Editing, ASysexWithBadDigitsIsRefusedInTheStatusLine) {
  const std::string before = bench.Cell(Xg, Value2Column);
  bench.Edit(Xg, Value2Column);
  bench.Type(QStringLiteral("43 1G F7"));
  EXPECT_EQ(bench.Cell(Xg, Value2Column), before);
  EXPECT_FALSE(bench.form->Status().Message().isEmpty());
  EXPECT_EQ(bench.changes, 0);
}

TEST_F(Editing, ASysexIsTypedAndExplainedAnew) {
  bench.Edit(Xg, Value2Column);
  bench.Type(QStringLiteral("7e 7f 09 01"));
  EXPECT_EQ(bench.Cell(Xg, Value2Column), "7E 7F 09 01 F7");
  EXPECT_EQ(bench.Cell(Xg, LengthColumn), "GM System On");
}

TEST_F(Editing, EscapeLeavesTheCellAsItWas) {
  bench.Edit(SecondNote, Value2Column);
  bench.Type(QStringLiteral("1"), Qt::Key_Escape);
  EXPECT_EQ(bench.Cell(SecondNote, Value2Column), "79");
  EXPECT_EQ(bench.form->Delegate().Editor(), nullptr);
  EXPECT_EQ(bench.edits.EditOnRow[static_cast<std::size_t>(TEventEdit::NoteValue)], 0);
  EXPECT_TRUE(bench.form->isVisible());
}

TEST_F(Editing, AnUnchangedTextChangesNothing) {
  bench.Edit(SecondNote, Value2Column);
  bench.Type(QStringLiteral("79"));
  EXPECT_EQ(bench.changes, 0);
}

TEST_F(Editing, AClickElsewhereTakesTheText) {
  bench.Edit(SecondNote, Value2Column);
  bench.Field()->selectAll();
  QTest::keyClicks(bench.Field(), QStringLiteral("64"));
  bench.form->CB_Filter->setFocus();
  QCoreApplication::processEvents();
  EXPECT_EQ(bench.Cell(SecondNote, Value2Column), "64");
}

TEST_F(Editing, TabTakesTheTextAndGoesToTheNextCellOfTheSameEvent) {
  bench.Edit(FirstNote, PositionColumn);
  bench.Type(QStringLiteral("6.1"), Qt::Key_Tab);
  const std::int32_t row = bench.form->Table().currentIndex().row() + 1;
  EXPECT_EQ(bench.Cell(row, PositionColumn), "006.01.000");
  EXPECT_EQ(bench.Cell(row, Value1Column), "F3");
  EXPECT_EQ(bench.form->Table().currentIndex().column(), ChannelColumn);
  ASSERT_NE(bench.List(), nullptr);
  EXPECT_EQ(bench.List()->currentText(), QStringLiteral("4"));
}

TEST_F(Editing, BackTabGoesToTheCellInFront) {
  bench.Edit(SecondNote, Value2Column);
  bench.Type(QStringLiteral("80"), Qt::Key_Backtab);
  EXPECT_EQ(bench.form->Table().currentIndex().column(), LengthColumn);
  ASSERT_NE(bench.Field(), nullptr);
  EXPECT_EQ(bench.Field()->text(), QStringLiteral("476"));
}

TEST_F(Editing, TheWarningOfASoundComesWhileItsCellIsEdited) {
  bench.Edit(Program, PositionColumn);
  ASSERT_NE(bench.Field(), nullptr);
  bench.Strike("MessageTimer");
  ASSERT_EQ(bench.messages.Shown.size(), 1U);
  EXPECT_THAT(bench.messages.Shown[0], HasSubstr("else press ESC."));
  EXPECT_NE(bench.Field(), nullptr);
}

TEST_F(Editing, FixedCellsOpenNoEditor) {
  for (const int column : {TrackColumn + 0, TimeColumn + 0, KindColumn + 0, LengthColumn + 0}) {
    bench.Edit(Volume, column);
    EXPECT_EQ(bench.form->Delegate().Editor(), nullptr) << column;
  }
}

TEST_F(Editing, EnterEditsTheCurrentCell) {
  bench.Select(SecondNote, Value2Column);
  bench.Key(Qt::Key_Return);
  EXPECT_NE(bench.Field(), nullptr);
}

TEST_F(Editing, ADoubleClickEditsACell) {
  const QRect cell = bench.form->Table().visualRect(bench.form->Model().index(Lyric - 1, Value2Column));
  // As from a mouse: a first click, then the double click.
  QTest::mouseClick(bench.form->Table().viewport(), Qt::LeftButton, Qt::NoModifier, cell.center());
  QTest::mouseDClick(bench.form->Table().viewport(), Qt::LeftButton, Qt::NoModifier, cell.center());
  ASSERT_NE(bench.Field(), nullptr);
  EXPECT_EQ(bench.Field()->text(), QStringLiteral("Should"));
}

TEST_F(Editing, TheStatusLineTellsTheKeysOfAnEditor) {
  bench.Edit(SecondNote, Value2Column);
  EXPECT_THAT(ToStd(bench.form->Status().Parts().last()), "Enter applies, Esc discards");
  bench.form->Delegate().Cancel();
  EXPECT_EQ(bench.form->Status().Parts().size(), 2);
}

TEST_F(Editing, ARowThatAnotherToolChangesIsNotOverwritten) {
  bench.Edit(SecondNote, Value2Column);
  bench.form->UpdateDisplayedEvents();
  EXPECT_EQ(bench.form->Delegate().Editor(), nullptr);
  EXPECT_EQ(bench.Cell(SecondNote, Value2Column), "79");
}

TEST_F(Editing, UndoTakesTheLastEditBack) {
  bench.Edit(SecondNote, Value2Column);
  bench.Type(QStringLiteral("80"));
  bench.Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(bench.Cell(SecondNote, Value2Column), "79");
  EXPECT_FALSE(bench.edits.CanUndo());
  bench.Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(bench.Cell(SecondNote, Value2Column), "79");
}

TEST_F(Editing, TheChecksumOfARolandSysexIsRecomputedFromItsMenu) {
  bench.Select(RolandReset, Value2Column);
  const std::unique_ptr<QMenu> menu(bench.form->NewMenu());
  auto* const entry = menu->findChild<QAction*>(QStringLiteral("PM_Checksum"));
  ASSERT_NE(entry, nullptr);
  entry->trigger();
  EXPECT_EQ(bench.Cell(RolandReset, Value2Column), "41 10 42 12 40 00 04 7F 3D F7");
}

TEST_F(Editing, OtherRowsHaveNoChecksumInTheirMenu) {
  bench.Select(Xg, Value2Column);
  const std::unique_ptr<QMenu> menu(bench.form->NewMenu());
  EXPECT_EQ(menu->findChild<QAction*>(QStringLiteral("PM_Checksum")), nullptr);
}

}  // namespace

}  // namespace Sonarello
