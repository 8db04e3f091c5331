// The event list's window: lists, keys, selection, search, position of the song.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QClipboard>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>

#include "app/editors/EventListBench.h"

namespace Sonarello {

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

std::int32_t CurrentRow(EventListBench& bench) { return bench.form->Table().currentIndex().row() + 1; }

struct Window : testing::Test {
  Window() { bench.PictureSong().Show(); }
  TEventListForm& form() { return *bench.form; }
  EventListBench bench;
};

TEST_F(Window, ShowsARowForEachEventWithTheHeadsOfItsColumns) {
  EXPECT_EQ(form().Model().rowCount(), bench.rows.Events());
  EXPECT_EQ(form().Model().columnCount(), 8);
  QStringList heads;
  for (int column = 0; column < 8; ++column)
    heads += form().Model().headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
  EXPECT_EQ(heads.join(QLatin1Char('|')).toStdString(),
            "Trk|Position|Time|Chn|Type|Value 1|Length / Expl.|Value 2");
  EXPECT_EQ(form().windowTitle().toStdString(), "Event list – Auld_Lang_Syne_Genos.mid");
}

TEST_F(Window, FillsItsListsAsTheRowsSay) {
  EXPECT_EQ(form().CB_TrackList->count(), 2);
  EXPECT_EQ(form().CB_TrackList->currentText().toStdString(), "Ch: 4, ChamberStrings (S.Art2!)");
  EXPECT_EQ(form().CB_Filter->count(), 9);
  EXPECT_EQ(form().CB_Insert->count(), 8);
  EXPECT_EQ(form().L_MidiChannel->text().toStdString(), "Ch: 4");
  EXPECT_TRUE(form().CB_Insert->isEnabled());
}

TEST_F(Window, TheKeysStepThroughTracksAndFilters) {
  bench.Key(Qt::Key_PageUp, Qt::ControlModifier);
  EXPECT_EQ(form().CB_TrackList->currentIndex(), 0);
  EXPECT_FALSE(form().CB_Insert->isEnabled());
  bench.Key(Qt::Key_PageUp, Qt::ControlModifier);
  EXPECT_EQ(form().CB_TrackList->currentIndex(), 0);
  bench.Key(Qt::Key_PageDown, Qt::ControlModifier);
  EXPECT_EQ(form().CB_TrackList->currentIndex(), 1);
  bench.Key(Qt::Key_PageDown, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(form().CB_Filter->currentIndex(), 1);
  EXPECT_EQ(bench.Cell(1, KindColumn), "Note");
  bench.Key(Qt::Key_PageUp, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(form().CB_Filter->currentIndex(), 0);
}

TEST_F(Window, AnEmptyListSaysWhatIsMissing) {
  form().CB_TrackListChange(0);
  form().CB_FilterChange(1);
  ASSERT_EQ(form().Model().rowCount(), 1);
  EXPECT_EQ(bench.Cell(1, PositionColumn), "-");
  EXPECT_EQ(bench.Cell(1, LengthColumn), "No notes found");
  EXPECT_EQ(form().Status().Parts(), QStringList{QStringLiteral("0 events")});
  EXPECT_FALSE(form().Btn_Delete->isEnabled());
  bench.Edit(1, PositionColumn);
  EXPECT_EQ(form().Delegate().Editor(), nullptr);
}

TEST_F(Window, TellsRowAndSelectionInTheStatusLine) {
  bench.Select(FirstNote);
  EXPECT_EQ(form().Status().Parts().join(QLatin1Char('|')).toStdString(), "84 events|Row 17");
  bench.Key(Qt::Key_Down, Qt::ShiftModifier);
  bench.Key(Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(form().Status().Parts().join(QLatin1Char('|')).toStdString(),
            "84 events|Row 19 · 3 selected");
}

TEST_F(Window, InsertsBehindTheSelectedRowAndSelectsTheNewOne) {
  form().CB_Insert->setCurrentIndex(2);
  Q_EMIT form().CB_Insert->activated(2);
  bench.Select(FirstNote);
  bench.Key(Qt::Key_Insert);
  EXPECT_EQ(form().Model().rowCount(), 85);
  EXPECT_EQ(bench.Cell(CurrentRow(bench), LengthColumn), "Volume");
  EXPECT_EQ(bench.Cell(CurrentRow(bench), Value2Column), "100");
  EXPECT_THAT(CheckSong(bench.song), IsEmpty());
}

TEST_F(Window, RefusesToInsertWhileTheSongPlays) {
  bench.playing = true;
  bench.time = 1;
  bench.Strike("EventListTimer");
  EXPECT_FALSE(form().Btn_Insert->isEnabled());
  EXPECT_FALSE(form().Btn_Delete->isEnabled());
  bench.Key(Qt::Key_Insert);
  EXPECT_EQ(form().Model().rowCount(), 84);
}

TEST_F(Window, DeletesTheSelectedRowsBehindAQuestion) {
  bench.Select(FirstNote);
  bench.Key(Qt::Key_Down, Qt::ShiftModifier);
  bench.messages.Answers = {false, true};
  bench.Key(Qt::Key_Delete);
  EXPECT_EQ(form().Model().rowCount(), 84);
  bench.Key(Qt::Key_Delete);
  ASSERT_EQ(bench.messages.Asked.size(), 2U);
  EXPECT_THAT(bench.messages.Asked[1], HasSubstr("005.01.000"));
  EXPECT_EQ(form().Model().rowCount(), 82);
  EXPECT_EQ(CurrentRow(bench), FirstNote);
  EXPECT_EQ(form().Status().Message().toStdString(), "2 events deleted");
  EXPECT_THAT(CheckSong(bench.song), IsEmpty());
}

TEST_F(Window, UndoBringsDeletedRowsBack) {
  bench.Select(FirstNote);
  bench.Key(Qt::Key_Delete);
  EXPECT_EQ(form().Model().rowCount(), 83);
  const std::unique_ptr<QMenu> menu(form().NewMenu());
  auto* const entry = menu->findChild<QAction*>(QStringLiteral("PM_Undo"));
  ASSERT_NE(entry, nullptr);
  entry->trigger();
  EXPECT_EQ(form().Model().rowCount(), 84);
  EXPECT_EQ(bench.Cell(FirstNote, LengthColumn), "476");
}

TEST_F(Window, OpensWithTheKeysInTheRows) {
  EXPECT_TRUE(form().Table().hasFocus());
  form().CB_TrackList->setFocus();
  form().hide();
  form().show();
  EXPECT_EQ(form().focusWidget(), &form().Table());
}

TEST_F(Window, TheMenuHasNoSysexListWithoutSysexs) {
  const std::unique_ptr<QMenu> menu(form().NewMenu());
  EXPECT_EQ(menu->findChild<QAction*>(QStringLiteral("PM_SysexList")), nullptr);
}

TEST_F(Window, TheMenuShowsTheSysexListUntilATrackIsChosen) {
  constexpr std::uint8_t reset[] = {0x7E, 0x7F, 0x09, 0x01, 0xF7};
  TMyTrack& master = bench.song.MidiTrack[0];
  InsertByPosition(master, NewSysex(bench.song.Pool, reset, 10), master.TrkFirstEvent);
  const std::unique_ptr<QMenu> menu(form().NewMenu());
  auto* const entry = menu->findChild<QAction*>(QStringLiteral("PM_SysexList"));
  ASSERT_NE(entry, nullptr);
  entry->trigger();
  EXPECT_EQ(form().L_MidiChannel->text(), QStringLiteral("Sysexs"));
  EXPECT_EQ(bench.Cell(1, TrackColumn), "99");
  EXPECT_FALSE(form().Btn_Insert->isEnabled());
  form().CB_TrackListChange(1);
  EXPECT_EQ(form().L_MidiChannel->text(), QStringLiteral("Ch: 4"));
  EXPECT_TRUE(form().Btn_Insert->isEnabled());
}

TEST_F(Window, AMessageGoesWithTheNextEdit) {
  bench.Select(FirstNote);
  bench.Key(Qt::Key_Delete);
  EXPECT_EQ(form().Status().Message(), QStringLiteral("1 event deleted"));
  form().PM_UndoClick();
  EXPECT_EQ(form().Status().Message(), QString());
}

TEST_F(Window, SelectsAllRowsByTheKeyboard) {
  bench.Key(Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(form().Table().SelectedCount(), 84);
  EXPECT_EQ(form().Table().SelectedRows().size(), 84U);
}

TEST_F(Window, CopiesTheSelectedRowsAsText) {
  bench.Select(FirstNote);
  bench.Key(Qt::Key_Down, Qt::ShiftModifier);
  bench.Key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(),
            " 1\t005.01.000\t000:10.000\t4\tNote\tF3\t476\t84\n"
            " 1\t005.01.000\t000:10.000\t4\tNote\tA3\t476\t79\n");
}

TEST_F(Window, EscapeClosesTheSearchThenTheWindow) {
  form().Search().Open();
  EXPECT_TRUE(form().Search().isVisible());
  QTest::keyClick(&form().Search().Field(), Qt::Key_Escape);
  EXPECT_FALSE(form().Search().isVisible());
  EXPECT_TRUE(form().isVisible());
  bench.Key(Qt::Key_Escape);
  EXPECT_FALSE(form().isVisible());
}

TEST_F(Window, FindsATextInAnyColumnForwardsAndBackwards) {
  bench.Select(1);
  form().Search().Open();
  QTest::keyClicks(&form().Search().Field(), QStringLiteral("bank"));
  EXPECT_EQ(CurrentRow(bench), BankMsb);
  QTest::keyClick(&form().Search().Field(), Qt::Key_Return);
  EXPECT_EQ(CurrentRow(bench), BankMsb + 1);
  QTest::keyClick(&form().Search().Field(), Qt::Key_Return);
  EXPECT_EQ(CurrentRow(bench), BankMsb);
  QTest::keyClick(&form().Search().Field(), Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(CurrentRow(bench), BankMsb + 1);
}

TEST_F(Window, SaysThatNoRowHasTheText) {
  form().Search().Open();
  QTest::keyClicks(&form().Search().Field(), QStringLiteral("xyz"));
  EXPECT_EQ(form().Search().Note().toStdString(), "No row contains “xyz”");
  EXPECT_FALSE(form().Search().IsSearching());
}

TEST_F(Window, TheTextOfALongSearchIsFoundPieceByPiece) {
  bench.form.reset();
  EventListBench longOne;
  longOne.more = 60'000;
  longOne.PictureSong().Show();
  longOne.Select(100);
  longOne.form->Search().Open();
  longOne.form->Search().Field().setText(QStringLiteral("Intro"));
  longOne.form->Search().Go(1);
  const auto isDone = [&] { return !longOne.form->Search().IsSearching(); };
  ASSERT_TRUE(QTest::qWaitFor(isDone, 60'000));
  EXPECT_EQ(CurrentRow(longOne), Marker);
  EXPECT_FALSE(longOne.form->Status().IsBusy());
  longOne.form->Search().Go(-1);
  ASSERT_TRUE(QTest::qWaitFor(isDone, 60'000));
  EXPECT_EQ(CurrentRow(longOne), Marker);
}

TEST_F(Window, EscapeEndsALongSearch) {
  bench.form.reset();
  EventListBench longOne;
  longOne.more = 200'000;
  longOne.PictureSong().Show();
  longOne.Select(100);
  longOne.form->Search().Open();
  longOne.form->Search().Field().setText(QStringLiteral("nowhere to be found"));
  longOne.form->Search().Go(1);
  ASSERT_TRUE(longOne.form->Search().IsSearching());
  EXPECT_TRUE(longOne.form->Status().IsBusy());
  QTest::keyClick(&longOne.form->Search().Field(), Qt::Key_Escape);
  EXPECT_FALSE(longOne.form->Search().IsSearching());
  EXPECT_FALSE(longOne.form->Status().IsBusy());
  EXPECT_TRUE(longOne.form->Search().isVisible());
  EXPECT_EQ(CurrentRow(longOne), 100);
}

TEST_F(Window, FollowsTheSongWithMarkAndSelection) {
  bench.playing = true;
  bench.time = 5000;
  bench.Strike("EventListTimer");
  EXPECT_EQ(form().Model().PlayRow(), Marker);
  EXPECT_EQ(CurrentRow(bench), Marker);
  bench.time = 20'000;
  bench.Strike("EventListTimer");
  EXPECT_EQ(CurrentRow(bench), form().Model().PlayRow());
  const int first = form().Table().verticalScrollBar()->value();
  EXPECT_NEAR(CurrentRow(bench) - first, form().Table().VisibleRows() / 2, 2);
}

TEST_F(Window, LeavesAnEditedCellAndASelectionOfSeveralRowsAlone) {
  bench.Edit(SecondNote, Value2Column);
  bench.time = 5000;
  bench.Strike("EventListTimer");
  EXPECT_EQ(form().Model().PlayRow(), Marker);
  EXPECT_EQ(CurrentRow(bench), SecondNote);
  EXPECT_NE(bench.Field(), nullptr);
  form().Delegate().Cancel();
  bench.Key(Qt::Key_Down, Qt::ShiftModifier);
  bench.time = 10'000;
  bench.Strike("EventListTimer");
  EXPECT_EQ(form().Table().SelectedCount(), 2);
}

TEST_F(Window, MarksNoRowAtTheStart) {
  bench.time = 5000;
  bench.Strike("EventListTimer");
  bench.time = 0;
  bench.Strike("EventListTimer");
  EXPECT_EQ(form().Model().PlayRow(), 0);
}

TEST_F(Window, ReadsTheListAnewThatOthersHaveChanged) {
  InsertByPosition(bench.Track(1), NewChannelEvent(bench.song.Pool, 0xB3, 11, 5, 500));
  bench.Strike("EventListTimer");
  EXPECT_EQ(form().Model().rowCount(), 85);
}

TEST_F(Window, LetsGoOfTheSong) {
  bench.Edit(SecondNote, Value2Column);
  form().LeaveSong();
  EXPECT_EQ(form().Model().rowCount(), 0);
  EXPECT_EQ(form().Delegate().Editor(), nullptr);
  EXPECT_EQ(bench.rows.Index.List(), nullptr);
  bench.Key(Qt::Key_Insert);
  bench.Key(Qt::Key_Delete);
  bench.Key(Qt::Key_F2);
  form().ShowSong(QStringLiteral("again.mid"), 1);
  EXPECT_EQ(form().Model().rowCount(), 84);
}

TEST_F(Window, HoldsNoEventsWhileItIsHidden) {
  form().hide();
  form().UpdateDisplayedEvents();
  EXPECT_EQ(bench.rows.Index.Rows(), 0);
  form().show();
  EXPECT_EQ(form().Model().rowCount(), 84);
  EXPECT_EQ(form().CB_TrackList->currentIndex(), 1);
}

TEST_F(Window, BlankAndLettersDoNothingToTheRows) {
  bench.Select(FirstNote);
  bench.Key(Qt::Key_Space);
  bench.Key(Qt::Key_S);
  EXPECT_EQ(CurrentRow(bench), FirstNote);
  EXPECT_EQ(form().Table().SelectedCount(), 1);
}

TEST_F(Window, SharesItsWidthAsTheDesignDoes) {
  QHeaderView& head = *form().Table().horizontalHeader();
  const int widths[] = {52, 108, 108, 48, 146, 176, 294, 294};
  for (int column = 0; column < 8; ++column) EXPECT_EQ(head.sectionSize(column), widths[column]);
  EXPECT_EQ(form().CB_TrackList->width(), 290);
  EXPECT_EQ(form().CB_Filter->width(), 180);
  EXPECT_EQ(form().CB_Insert->width(), 164);
}

TEST_F(Window, CanBeMadeSmallWithoutLosingItsTools) {
  form().resize(form().minimumSize());
  QCoreApplication::processEvents();
  EXPECT_EQ(form().width(), TEventListForm::LeastWidth);
  EXPECT_LE(form().Btn_Delete->geometry().right(), form().width());
  EXPECT_EQ(form().Table().horizontalHeader()->length(), form().Table().viewport()->width());
  EXPECT_GE(form().Table().columnWidth(LengthColumn), 180);
}

}  // namespace

}  // namespace Sonarello
