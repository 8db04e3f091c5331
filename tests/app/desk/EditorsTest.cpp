// The editors' windows in the whole program: opened, told of the song, their edits taken back.
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

#include "app/controls/ValueBox.h"
#include "app/desk/MainBench.h"
#include "app/editors/ControllerColumn.h"
#include "app/editors/ControllerForm.h"
#include "app/editors/EventListForm.h"
#include "app/editors/EventListModel.h"
#include "app/editors/EventView.h"

namespace Sonarello {

namespace {

struct Editors : Main {
  TEventListForm& List() { return *form->findChild<TEventListForm*>(); }
  TControllerForm& Overview() { return *form->findChild<TControllerForm*>(); }
  /// Selects the first row of the list that has a text in a column.
  std::int32_t RowWith(int column, const char* text) {
    for (int row = 0; row < List().Model().rowCount(); ++row)
      if (List().Model().index(row, column).data().toString() == QLatin1String(text)) return row + 1;
    ADD_FAILURE() << "no row reads " << text;
    return 1;
  }
  void DeleteRow(std::int32_t row) {
    List().Table().setCurrentIndex(List().Model().index(row - 1, PositionColumn));
    Key(List().Table(), Qt::Key_Delete);
    Settle();
  }
};

TEST_F(Editors, TheListOpensOnTheTrackOfTheActiveChannel) {
  BeginWithSong();
  Choose("MME_ListEditor");
  ASSERT_TRUE(List().isVisible());
  EXPECT_EQ(List().windowTitle().toStdString(), "Event list – eight bars.mid");
  EXPECT_EQ(List().L_MidiChannel->text().toStdString(), "Ch: 1");
  EXPECT_GT(List().Model().rowCount(), 8);
}

TEST_F(Editors, TheListOpensWithTheSongWhereTheSettingsSaySo) {
  store.WriteBool("", "AutoShowEventEditor", true);
  Begin();
  EXPECT_FALSE(List().isVisible());
  ASSERT_TRUE(form->OpenFile(SongFile()));
  EXPECT_TRUE(List().isVisible());
  EXPECT_GT(List().Model().rowCount(), 8);
}

TEST_F(Editors, TheTempoEditorIsTheListOfTheMastersMetas) {
  BeginWithSong();
  Choose("MME_TempoEditor");
  ASSERT_TRUE(List().isVisible());
  EXPECT_EQ(List().CB_TrackList->currentIndex(), 0);
  EXPECT_EQ(List().CB_Filter->currentIndex(), 8);
  EXPECT_EQ(List().Model().index(RowWith(LengthColumn, "Tempo") - 1, Value2Column).data().toString(),
            QStringLiteral("120"));
}

TEST_F(Editors, TheTempoEditorAsksForASong) {
  Begin();
  Choose("MME_TempoEditor");
  EXPECT_THAT(Told(), testing::ElementsAre("Please open a midi file."));
  EXPECT_FALSE(List().isVisible());
}

TEST_F(Editors, AnEditOfTheTempoReachesTheDesk) {
  BeginWithSong();
  Choose("MME_TempoEditor");
  const std::int32_t length = TheSong().SongLength;
  const std::int32_t row = RowWith(LengthColumn, "Tempo");
  List().Model().setData(List().Model().index(row - 1, Value2Column), QStringLiteral("60"),
                         Qt::EditRole);
  EXPECT_NEAR(TheSong().SongLength, 2 * length, 2);
  EXPECT_TRUE(TheDesk().IsModified());
}

TEST_F(Editors, TheKeysOfTheTransportWorkInTheList) {
  BeginWithSong();
  Choose("MME_ListEditor");
  EventView& table = List().Table();
  const auto time = [&] { return TheDesk().Player().TimePosition.load(); };
  Key(table, Qt::Key_PageDown);
  Key(table, Qt::Key_PageDown);
  const int wound = time();
  EXPECT_GT(wound, 500);
  Key(table, Qt::Key_PageUp);
  EXPECT_LT(time(), wound);
  EXPECT_GT(time(), 0);
  Key(table, Qt::Key_Home);
  EXPECT_EQ(time(), 0);
  Key(table, Qt::Key_Space);
  EXPECT_TRUE(TheDesk().IsPlaying());
  Key(table, Qt::Key_Space);
  EXPECT_FALSE(TheDesk().IsPlaying());
}

TEST_F(Editors, AnOpenFieldOfTheListKeepsTheKeysOfTheTransport) {
  BeginWithSong();
  Choose("MME_ListEditor");
  EventView& table = List().Table();
  table.setCurrentIndex(List().Model().index(RowWith(KindColumn, "Note") - 1, PositionColumn));
  Key(table, Qt::Key_F2);
  QWidget* const field = table.viewport()->findChild<QLineEdit*>();
  ASSERT_NE(field, nullptr);
  for (const auto key : {Qt::Key_PageDown, Qt::Key_Home, Qt::Key_Space}) Key(*field, key);
  EXPECT_EQ(TheDesk().Player().TimePosition.load(), 0);
  EXPECT_FALSE(TheDesk().IsPlaying());
}

TEST_F(Editors, UndoOfTheMenuTakesTheListsEditBack) {
  BeginWithSong();
  Choose("MME_ListEditor");
  const int count = List().Model().rowCount();
  DeleteRow(RowWith(KindColumn, "Note"));
  EXPECT_EQ(List().Model().rowCount(), count - 1);
  Choose("MME_Undo");
  EXPECT_EQ(List().Model().rowCount(), count);
}

TEST_F(Editors, AnotherSongLeavesNothingOfTheOldOne) {
  BeginWithSong();
  Choose("MME_ListEditor");
  DeleteRow(RowWith(KindColumn, "Note"));
  ASSERT_TRUE(form->OpenFile(SongFile()));
  Settle();
  EXPECT_FALSE(work->eventEdits.CanUndo());
  EXPECT_GT(List().Model().rowCount(), 8);
}

TEST_F(Editors, ASongThatIsRefusedLeavesTheListAsItWas) {
  BeginWithSong();
  Choose("MME_ListEditor");
  const int count = List().Model().rowCount();
  EXPECT_FALSE(form->OpenFile(folder.Write("broken.mid", "no song")));
  Settle();
  EXPECT_EQ(List().Model().rowCount(), count);
}

TEST_F(Editors, AFaderMovesTheValueThatTheListShows) {
  BeginWithSong();
  Choose("MME_ListEditor");
  const std::int32_t row = RowWith(LengthColumn, "Volume");
  TheDesk().strips.Moves.TB_Volume00Change(0, 77);
  Settle();
  EXPECT_EQ(List().Model().index(row - 1, Value2Column).data().toString(), QStringLiteral("77"));
}

TEST_F(Editors, TheControllerOverviewFollowsTheStripsAndMovesThem) {
  BeginWithSong();
  Choose("MMV_Controllers");
  ASSERT_TRUE(Overview().isVisible());
  EXPECT_EQ(Overview().Column(0).Value().text(), QStringLiteral("100"));
  TheDesk().strips.Moves.TB_Volume00Change(0, 90);
  EXPECT_EQ(Overview().Column(0).Value().text(), QStringLiteral("90"));
  QTest::keyClick(&Overview().Column(1).Fader(), Qt::Key_Up);
  EXPECT_EQ(Strip(1).volume().position(), 81);
}

TEST_F(Editors, TheListsEditOfAFirstValueMovesStripAndOverview) {
  BeginWithSong();
  Choose("MMV_Controllers");
  Choose("MME_ListEditor");
  const std::int32_t row = RowWith(LengthColumn, "Volume");
  List().Model().setData(List().Model().index(row - 1, Value2Column), QStringLiteral("33"),
                         Qt::EditRole);
  EXPECT_EQ(Strip(0).volume().position(), 33);
  EXPECT_EQ(Overview().Column(0).Value().text(), QStringLiteral("33"));
}

TEST_F(Editors, WindowsComeBackWhereTheyWereLeft) {
  BeginWithSong();
  Choose("MME_ListEditor");
  List().resize(900, 500);
  Close();
  EXPECT_EQ(store.ReadInteger("", "EventListFormWidth", 0), 900);
  EXPECT_EQ(store.ReadInteger("", "EventListFormHeight", 0), 500);
  EXPECT_TRUE(store.ReadBool("", "EventListFormVis", false));
}

}  // namespace

}  // namespace Sonarello
