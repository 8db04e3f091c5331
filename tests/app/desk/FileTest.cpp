#include <QDialog>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLabel>
#include <QMimeData>

#include "app/desk/MainBench.h"
#include "app/panels/DropCard.h"
#include "app/panels/FilePanel.h"
#include "app/panels/StatusBar.h"
#include "core/MidiFileWriter.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class File : public Main {
 protected:
  /// Drags something over the window and drops it. True if the window took it.
  bool Drop(const QMimeData& data) {
    QDragEnterEvent enter(QPoint(100, 100), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QCoreApplication::sendEvent(form.get(), &enter);
    litWhileDragged = Of<DropCard>().dragging();
    if (!enter.isAccepted()) return false;
    QDropEvent drop(QPointF(100, 100), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(form.get(), &drop);
    Settle();
    return true;
  }
  bool litWhileDragged = false;
};

TEST_F(File, OpensWhatTheDialogNames) {
  Begin();
  EXPECT_TRUE(Of<DropCard>().isVisible());
  chosenName = SongFile();
  Choose("MMF_OpenMidifile");
  EXPECT_EQ(askedIn, folder.File("documents"));
  ASSERT_TRUE(TheSong().MidiFileLoaded);
  EXPECT_EQ(TheSong().MidiFileName, SongFile());
  EXPECT_EQ(form->windowTitle(), QStringLiteral("eight bars.mid[*] - Sonarello"));
  EXPECT_FALSE(form->isWindowModified());
  EXPECT_EQ(Of<FilePanel>().NameLine(), QStringLiteral("eight bars.mid"));
  EXPECT_FALSE(Of<DropCard>().isVisible());
  EXPECT_TRUE(Of<StatusBar>().LeftParts().contains(QStringLiteral("Opened")));
  EXPECT_THAT(told, IsEmpty());
  // The next dialog begins where this song was.
  chosenName.clear();
  Choose("MMF_OpenMidifile");
  EXPECT_EQ(askedIn, folder.Path.string());
  EXPECT_EQ(store.ReadString("", "SourcePath", ""), folder.Path.string());
  EXPECT_EQ(TheSong().MidiFileName, SongFile());
}

TEST_F(File, TheCardOpensASongToo) {
  Begin();
  chosenName = SongFile();
  Button(Of<DropCard>(), "Open midifile").click();
  EXPECT_TRUE(TheSong().MidiFileLoaded);
}

TEST_F(File, KeepsTheNineSongsThatWereOpenLast) {
  Begin();
  EXPECT_FALSE(form->Menu().Submenu("MMF_OpenRecent").isEnabled());
  for (int n = 0; n < 11; ++n)
    ASSERT_TRUE(form->OpenFile(folder.Write("song " + std::to_string(n) + ".mid", EightBars())));
  QMenu& recent = form->Menu().Submenu("MMF_OpenRecent");
  ASSERT_EQ(recent.actions().size(), 9);
  for (int n = 1; n <= 9; ++n) {
    QAction* const entry = recent.actions()[n - 1];
    EXPECT_EQ(entry->objectName(), QStringLiteral("MMF_Midifile%1").arg(n));
    EXPECT_EQ(entry->text(), QStringLiteral("&%1  song %2.mid").arg(n).arg(11 - n));
    EXPECT_EQ(ToStd(entry->toolTip()), folder.File("song " + std::to_string(11 - n) + ".mid"));
  }
  recent.actions()[4]->trigger();
  Settle();
  EXPECT_EQ(TheSong().MidiFileName, folder.File("song 6.mid"));
  EXPECT_EQ(recent.actions()[0]->text(), QStringLiteral("&1  song 6.mid"));
  EXPECT_TRUE(store.ReadString("", "LastMidifilesList", "").starts_with(folder.File("song 6.mid\t")));
}

TEST_F(File, EachOfTheNineEntriesOpensItsSong) {
  Begin();
  for (int n = 0; n < 9; ++n)
    ASSERT_TRUE(form->OpenFile(folder.Write("song " + std::to_string(n) + ".mid", EightBars())));
  QMenu& recent = form->Menu().Submenu("MMF_OpenRecent");
  // The last entry each time: all nine come round.
  for (int n = 0; n < 9; ++n) {
    recent.actions()[8]->trigger();
    Settle();
    EXPECT_EQ(TheSong().MidiFileName, folder.File("song " + std::to_string(n) + ".mid"));
  }
}

TEST_F(File, ARecentSongThatIsGoneLeavesTheList) {
  BeginWithSong();
  const std::string gone = folder.Write("gone & away.mid", EightBars());
  ASSERT_TRUE(form->OpenFile(gone));
  ASSERT_TRUE(form->OpenFile(SongFile()));
  QMenu& recent = form->Menu().Submenu("MMF_OpenRecent");
  EXPECT_EQ(recent.actions()[1]->text(), QStringLiteral("&2  gone && away.mid"));
  std::filesystem::remove(gone);
  recent.actions()[1]->trigger();
  Settle();
  EXPECT_THAT(Told(), ElementsAre(HasSubstr(gone)));
  ASSERT_EQ(recent.actions().size(), 1);
  EXPECT_EQ(TheSong().MidiFileName, SongFile());
  EXPECT_EQ(store.ReadString("", "LastMidifilesList", ""), SongFile());
}

TEST_F(File, ARecentSongThatIsRefusedStaysInTheList) {
  BeginWithSong();
  const std::string file = folder.Write("soon rubbish.mid", EightBars());
  ASSERT_TRUE(form->OpenFile(file));
  ASSERT_TRUE(form->OpenFile(SongFile()));
  EXPECT_EQ(folder.Write("soon rubbish.mid", "rubbish"), file);
  form->Menu().Submenu("MMF_OpenRecent").actions()[1]->trigger();
  Settle();
  EXPECT_EQ(told.size(), 1U);
  EXPECT_EQ(form->Menu().Submenu("MMF_OpenRecent").actions().size(), 2);
}

TEST_F(File, ANewSongIsMadeByItsDialog) {
  Begin();
  EXPECT_TRUE(InDialog([&] { Choose("MMF_NewMidifile"); },
                       [](QWidget& dialog) {
                         EXPECT_EQ(dialog.objectName(), QStringLiteral("NewMidiDataForm"));
                         EXPECT_EQ(dialog.windowTitle(), QStringLiteral("New midifile"));
                         static_cast<QDialog&>(dialog).accept();
                       }));
  ASSERT_TRUE(TheSong().MidiFileLoaded);
  EXPECT_TRUE(TheSong().MidiFileName.empty());
  EXPECT_EQ(TheSong().SourceTimeBase, 480);
  // Its first save asks for a name.
  chosenName = folder.File("mine");
  Choose("MMF_SaveMidifile");
  EXPECT_EQ(suggested, folder.File("documents/New song.mid"));
  EXPECT_TRUE(std::filesystem::exists(folder.File("mine.mid")));
  EXPECT_EQ(TheSong().MidiFileName, folder.File("mine.mid"));
}

TEST_F(File, ANewSongThatIsNotWantedChangesNothing) {
  BeginWithSong();
  EXPECT_TRUE(InDialog([&] { Choose("MMF_NewMidifile"); },
                       [](QWidget& dialog) { static_cast<QDialog&>(dialog).reject(); }));
  EXPECT_EQ(TheSong().MidiFileName, SongFile());
}

TEST_F(File, TellsTheSongsProperties) {
  BeginWithSong();
  QString all;
  EXPECT_TRUE(InDialog([&] { Choose("MMF_Properties"); },
                       [&](QWidget& dialog) {
                         EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Properties"));
                         for (const QLabel* label : dialog.findChildren<QLabel*>())
                           all += label->text() + QLatin1Char('\n');
                       }));
  for (const char* part : {"eight bars.mid", "480", "120 BPM", "4/4", "0:14"})
    EXPECT_TRUE(all.contains(QLatin1String(part))) << part << " is not in\n" << ToStd(all);
}

TEST_F(File, SavesUnderItsNameAndIsNoLongerChanged) {
  BeginWithSong();
  TheDesk().strips.Moves.TB_Volume00Change(0, 33);
  EXPECT_TRUE(form->isWindowModified());
  EXPECT_TRUE(Of<FilePanel>().NameLine() != QString());
  Choose("MMF_SaveMidifile");
  EXPECT_FALSE(form->isWindowModified());
  EXPECT_TRUE(Of<StatusBar>().LeftParts().contains(QStringLiteral("Saved")));
  EXPECT_EQ(suggested, "");
  ASSERT_TRUE(form->OpenFile(SongFile()));
  EXPECT_EQ(Ctrl(0, 7).Value, 33);
}

TEST_F(File, SavesInBothFormats) {
  BeginWithSong();
  chosenName = folder.File("zero.mid");
  Choose("MMF_SaveFileAsFormat0");
  EXPECT_EQ(suggested, folder.File("documents/eight bars.mid"));
  chosenName = folder.File("one.mid");
  Choose("MMF_SaveFileAsFormat1");
  // The dialog begins where the last save went.
  EXPECT_EQ(suggested, folder.File("zero.mid"));
  const std::string zero = BytesOf(folder.File("zero.mid"));
  const std::string one = BytesOf(folder.File("one.mid"));
  ASSERT_GT(zero.size(), 14U);
  ASSERT_GT(one.size(), 14U);
  EXPECT_EQ(zero[9], 0);
  EXPECT_EQ(zero[11], 1) << "one track";
  EXPECT_EQ(one[9], 1);
  EXPECT_GT(one[11], 1);
  EXPECT_EQ(TheSong().MidiFileName, folder.File("one.mid"));
  EXPECT_EQ(form->windowTitle(), QStringLiteral("one.mid[*] - Sonarello"));
  QMenu& recent = form->Menu().Submenu("MMF_OpenRecent");
  EXPECT_EQ(recent.actions()[0]->text(), QStringLiteral("&1  one.mid"));
  EXPECT_EQ(recent.actions()[1]->text(), QStringLiteral("&2  zero.mid"));
}

TEST_F(File, ANameWithoutEndingGetsOneAndAsksBeforeItOverwrites) {
  BeginWithSong();
  const std::string there = folder.Write("there.mid", "precious");
  chosenName = folder.File("there");
  answers = {false};
  Choose("MMF_SaveFileAsFormat1");
  EXPECT_THAT(Told(), ElementsAre("There is a file with the same name!\nDo you want to overwrite it?"));
  EXPECT_EQ(BytesOf(there), "precious");
  EXPECT_EQ(TheSong().MidiFileName, SongFile());
  Choose("MMF_SaveFileAsFormat1");
  EXPECT_NE(BytesOf(there), "precious");
  EXPECT_EQ(TheSong().MidiFileName, there);
}

TEST_F(File, ASaveThatIsCancelledOrFailsKeepsNameAndChange) {
  BeginWithSong();
  TheDesk().Changed();
  Choose("MMF_SaveFileAsFormat0");
  EXPECT_THAT(told, IsEmpty());
  chosenName = folder.File("no such folder/song.mid");
  Choose("MMF_SaveFileAsFormat0");
  EXPECT_EQ(told.size(), 1U);
  EXPECT_EQ(TheSong().MidiFileName, SongFile());
  EXPECT_TRUE(form->isWindowModified());
  EXPECT_FALSE(Of<StatusBar>().LeftParts().contains(QStringLiteral("Saved")));
}

TEST_F(File, ARefusedFileCostsTheSongNothing) {
  BeginWithSong();
  Desk& desk = TheDesk();
  desk.strips.Tempo.SetOffset(7);
  desk.TransposeTo(3);
  desk.strips.MuteSolo.Btn_Mute00MouseDown(1, false);
  ASSERT_TRUE(desk.SetLoop(2000, 6000));
  desk.redirection.Redirect(0, 4, false);
  const std::string before = folder.File("before.mid");
  const std::string after = folder.File("after.mid");
  const auto save = [&](const std::string& file) {
    ASSERT_TRUE(
        MidiFileWriter(desk.song, desk.options, desk.Routes(), messages, desk.Hooks()).Save(file, 1));
  };
  save(before);
  answers = {false, true};  // do not save the changes, let them go
  EXPECT_FALSE(form->OpenFile(folder.Write("rubbish.mid", "rubbish")));
  ASSERT_TRUE(desk.song.MidiFileLoaded);
  EXPECT_EQ(desk.song.MidiFileName, SongFile());
  EXPECT_TRUE(form->isWindowModified());
  EXPECT_EQ(desk.strips.Tempo.Offset(), 7);
  EXPECT_EQ(desk.Player().TempoOffset, 7);
  EXPECT_EQ(desk.song.TransposeNew, 3);
  EXPECT_TRUE(Data(1).Mute);
  EXPECT_TRUE(desk.Player().Looping);
  EXPECT_EQ(desk.realtime.Realtime[0].MidiChannel, 4);
  save(after);
  EXPECT_EQ(BytesOf(before), BytesOf(after));
  // Its own tempo comes back by the reset, not by a second offset.
  desk.strips.Tempo.Tempo_NullClick();
  EXPECT_EQ(desk.song.SourceTempo.front().Tempo, 120);
}

TEST_F(File, ADroppedSongIsOpened) {
  Begin();
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(ToQt(SongFile()))});
  EXPECT_TRUE(Drop(data));
  EXPECT_TRUE(litWhileDragged);
  EXPECT_FALSE(Of<DropCard>().dragging());
  EXPECT_EQ(TheSong().MidiFileName, SongFile());
}

TEST_F(File, TheCardGoesDarkWhenTheDragLeaves) {
  Begin();
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(ToQt(SongFile()))});
  QDragEnterEvent enter(QPoint(100, 100), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(form.get(), &enter);
  EXPECT_TRUE(Of<DropCard>().dragging());
  QDragLeaveEvent leave;
  QCoreApplication::sendEvent(form.get(), &leave);
  EXPECT_FALSE(Of<DropCard>().dragging());
}

TEST_F(File, TextFoldersAndWebPagesAreNotTaken) {
  Begin();
  QMimeData text;
  text.setText(QStringLiteral("a song"));
  QMimeData directory;
  directory.setUrls({QUrl::fromLocalFile(ToQt(folder.Path.string()))});
  QMimeData page;
  page.setUrls({QUrl(QStringLiteral("http://example.org/song.mid"))});
  for (const QMimeData* data : {&text, &directory, &page}) {
    EXPECT_FALSE(Drop(*data));
    EXPECT_FALSE(litWhileDragged);
  }
  EXPECT_FALSE(TheSong().MidiFileLoaded);
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(File, ADroppedFileThatIsNoSongIsRefused) {
  BeginWithSong();
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(ToQt(folder.Write("picture.png", "\x89PNG not a song")))});
  EXPECT_TRUE(Drop(data));
  EXPECT_EQ(told.size(), 1U);
  EXPECT_EQ(TheSong().MidiFileName, SongFile());
}

}  // namespace
}  // namespace Sonarello
