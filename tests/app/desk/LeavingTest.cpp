#include <QLineEdit>

#include "app/desk/MainBench.h"
#include "app/desk/ToolWindows.h"
#include "app/panels/EffectRow.h"
#include "app/panels/LyricBar.h"
#include "app/playback/VirtualKeysForm.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* Question = "\"eight bars.mid\" was changed.\nShould the changes be saved?";
constexpr const char* Loss = "The changes will be lost.";

class Leaving : public Main {
 protected:
  void BeginWithChangedSong() {
    BeginWithSong();
    TheDesk().strips.Moves.TB_Volume00Change(0, 33);
    other = folder.Write("other.mid", EightBars());
  }
  std::string other;
};

TEST_F(Leaving, AChangedSongIsSavedIfTheUserWantsIt) {
  BeginWithChangedSong();
  answers = {true};
  EXPECT_TRUE(form->OpenFile(other));
  EXPECT_THAT(Told(), ElementsAre(Question));
  EXPECT_EQ(told[0].Accept, QStringLiteral("Save"));
  EXPECT_EQ(told[0].Refuse, QStringLiteral("Don't save"));
  EXPECT_EQ(TheSong().MidiFileName, other);
  ASSERT_TRUE(form->OpenFile(SongFile()));
  EXPECT_EQ(Ctrl(0, 7).Value, 33);
}

TEST_F(Leaving, AChangedSongGoesIfTheUserWantsThat) {
  BeginWithChangedSong();
  const std::string before = BytesOf(SongFile());
  answers = {false, true};
  EXPECT_TRUE(form->OpenFile(other));
  EXPECT_THAT(Told(), ElementsAre(Question, Loss));
  EXPECT_EQ(told[1].Accept, QStringLiteral("Discard"));
  EXPECT_EQ(told[1].Refuse, QStringLiteral("Cancel"));
  EXPECT_EQ(TheSong().MidiFileName, other);
  EXPECT_EQ(BytesOf(SongFile()), before);
}

TEST_F(Leaving, AChangedSongStaysIfTheUserThinksAgain) {
  BeginWithChangedSong();
  const std::string before = BytesOf(SongFile());
  answers = {false, false};
  EXPECT_FALSE(form->OpenFile(other));
  EXPECT_EQ(TheSong().MidiFileName, SongFile());
  EXPECT_TRUE(TheDesk().IsModified());
  EXPECT_EQ(BytesOf(SongFile()), before);
}

TEST_F(Leaving, ASaveThatFailsKeepsTheSong) {
  BeginWithChangedSong();
  const std::string gone = folder.File("gone");
  std::filesystem::create_directory(gone);
  std::filesystem::copy_file(SongFile(), gone + "/song.mid");
  answers = {true};
  ASSERT_TRUE(form->OpenFile(gone + "/song.mid"));
  std::filesystem::remove_all(gone);
  TheDesk().Changed();
  told.clear();
  answers = {true};
  EXPECT_FALSE(form->OpenFile(other));
  EXPECT_EQ(TheSong().MidiFileName, gone + "/song.mid");
  EXPECT_TRUE(TheDesk().IsModified());
  EXPECT_EQ(told.size(), 2U) << "the question, and why it could not be saved";
}

TEST_F(Leaving, ANewSongAsksByItsOwnWordsInGermanToo) {
  Begin();
  ASSERT_TRUE(TheDesk().NewMidiFile({}));
  TheDesk().Changed();
  answers = {false, false};
  EXPECT_FALSE(Close());
  EXPECT_THAT(Told(), ElementsAre("The new song was changed.\nShould the changes be saved?", Loss));
  told.clear();
  const InGerman german;
  answers = {false, false};
  EXPECT_FALSE(Close());
  EXPECT_THAT(Told(),
              ElementsAre("Der neue Song wurde geändert.\nSollen die Änderungen gespeichert werden?",
                          "Die Änderungen gehen verloren."));
  EXPECT_EQ(told[0].Accept, QString::fromUtf8("Speichern"));
  EXPECT_EQ(told[0].Refuse, QString::fromUtf8("Nicht speichern"));
  EXPECT_EQ(told[1].Accept, QString::fromUtf8("Verwerfen"));
}

TEST_F(Leaving, TheEndAsksIfThatIsWanted) {
  store.WriteBool("", "ConfirmTerminate", true);
  BeginWithSong();
  answers = {false};
  EXPECT_FALSE(Close());
  EXPECT_TRUE(form->isVisible());
  EXPECT_THAT(Told(), ElementsAre("Terminate Sonarello XI?"));
  {
    const InGerman german;
    answers = {false};
    EXPECT_FALSE(Close());
    EXPECT_EQ(Told().back(), "Sonarello XI beenden?");
    EXPECT_EQ(told.back().Accept, QString::fromUtf8("Beenden"));
  }
  Choose("MMS_Quit");
  EXPECT_FALSE(form->isVisible());
  EXPECT_EQ(told.size(), 3U);
}

TEST_F(Leaving, TheEndDoesNotAskIfItIsNotWanted) {
  BeginWithSong();
  Choose("MMS_Quit");
  EXPECT_THAT(told, IsEmpty());
  EXPECT_FALSE(form->isVisible());
}

TEST_F(Leaving, TheEndAsksForAChangedSongInAnyCase) {
  BeginWithChangedSong();
  answers = {false, false};
  EXPECT_FALSE(Close());
  EXPECT_THAT(Told(), ElementsAre(Question, Loss));
  answers = {true};
  EXPECT_TRUE(Close());
  End();
  Begin();
  ASSERT_TRUE(form->OpenFile(SongFile()));
  EXPECT_EQ(Ctrl(0, 7).Value, 33);
}

TEST_F(Leaving, TheEndStopsTheSongThatPlays) {
  BeginWithSong();
  ASSERT_TRUE(TheDesk().PlayButtonClick());
  EXPECT_TRUE(Close());
  EXPECT_FALSE(TheDesk().IsPlaying());
}

TEST_F(Leaving, EverythingIsFoundAgain) {
  midi.Inputs = {"Keys"};
  BeginWithSong();
  form->resize(1300, 800);
  form->move(31, 42);
  Choose("MME_VirtualKeyboard");
  QWidget& keys = *form->findChild<TVirtualKeysForm*>();
  keys.resize(900, 170);
  keys.move(71, 83);
  Choose("MMV_Light");
  Choose("MMV_Lyrics");
  Choose("MMV_Effects");
  Choose("MMS_Scale120");
  TheDesk().Routes().MidiRouteLoad[1].Instrument = "Yamaha Genos";
  TheDesk().Routes().MidiRouteLoad[1].OutputName = "Port B";
  const QRect place = form->geometry();
  EXPECT_TRUE(Close());
  EXPECT_FALSE(keys.isVisible());
  End();

  Begin();
  EXPECT_EQ(form->geometry(), place);
  QWidget& again = *form->findChild<TVirtualKeysForm*>();
  EXPECT_TRUE(again.isVisible());
  EXPECT_EQ(again.pos(), QPoint(71, 83));
  EXPECT_EQ(th().kind, ThemeKind::Light);
  EXPECT_TRUE(Entry("MMV_Light").isChecked());
  EXPECT_FALSE(Entry("MMV_Lyrics").isChecked());
  EXPECT_FALSE(Entry("MMV_Effects").isChecked());
  EXPECT_EQ(metrics().percent, 120);
  EXPECT_TRUE(Entry("MMS_Scale120").isChecked());
  EXPECT_EQ(form->Menu().Submenu("MMF_OpenRecent").actions().size(), 1);
  EXPECT_EQ(ToStd(form->Menu().Submenu("MMF_OpenRecent").actions()[0]->toolTip()), SongFile());
}

TEST_F(Leaving, RoutesAreFoundAgain) {
  store.WriteBool("", "MultiMidi", true);
  Begin();
  TheDesk().Routes().MidiRouteLoad[1].Instrument = "Yamaha Genos";
  TheDesk().Routes().MidiRouteLoad[1].OutputName = "Port B";
  EXPECT_TRUE(Close());
  End();
  Begin();
  ASSERT_EQ(TheDesk().Routes().MidiRouteElements(), 2);
  EXPECT_EQ(TheDesk().Routes().MidiRouting()[1].Instrument, "Yamaha Genos");
  EXPECT_EQ(TheDesk().Routes().MidiRouting()[1].OutputName, "Port B");
}

TEST_F(Leaving, AWindowThatWasLargeIsLargeAgain) {
  Begin();
  form->showMaximized();
  Settle();
  EXPECT_TRUE(Close());
  End();
  Begin();
  EXPECT_TRUE(form->isMaximized());
}

TEST_F(Leaving, AWindowOffTheScreenComesBackOntoIt) {
  store.WriteInteger("", "MainFormLeft", -5000);
  store.WriteInteger("", "MainFormTop", 9000);
  Begin();
  EXPECT_TRUE(form->screen()->availableGeometry().intersects(form->geometry()));
  EXPECT_GE(form->x(), 0);
  EXPECT_LT(form->y(), form->screen()->availableGeometry().bottom());
}

TEST_F(Leaving, AutoloadWaitsUntilTheOutputsAreThere) {
  Begin(SongFile());
  EXPECT_TRUE(Fire("AutoloadTimer"));
  EXPECT_FALSE(TheSong().MidiFileLoaded);
  Fire("SetupTimer");
  EXPECT_TRUE(Fire("AutoloadTimer"));
  EXPECT_EQ(TheSong().MidiFileName, SongFile());
  EXPECT_FALSE(Fire("AutoloadTimer")) << "it has stopped itself";
  EXPECT_EQ(store.ReadString("", "SourcePath", ""), folder.Path.string());
}

TEST_F(Leaving, AutoloadTellsOfAFileThatIsNotThere) {
  Begin("/nowhere/song.mid");
  Fire("SetupTimer");
  Fire("AutoloadTimer");
  EXPECT_FALSE(TheSong().MidiFileLoaded);
  EXPECT_THAT(Told(), ElementsAre("There is no such file: /nowhere/song.mid"));
}

TEST_F(Leaving, AfterACrashTheNewestBackupIsOffered) {
  BeginWithSong();
  TheDesk().strips.Moves.TB_Volume00Change(0, 33);
  // The song is older than what is made of it now.
  std::filesystem::last_write_time(
      SongFile(), std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
  work->recovery.Own = {.Pid = 999'999'999, .Start = "an earlier start"};
  work->recovery.BeginSession(SongFile());
  Fire("AutoBackupTimer");
  ASSERT_TRUE(work->backup.LastBackup().has_value());
  End();  // without an end in order
  Begin();
  Fire("SetupTimer");
  answers = {true};
  Fire("AutoloadTimer");
  ASSERT_EQ(told.size(), 1U);
  EXPECT_EQ(told[0].Kind, TMessageKind::Question);
  ASSERT_TRUE(TheSong().MidiFileLoaded);
  EXPECT_EQ(Ctrl(0, 7).Value, 33);
  EXPECT_EQ(TheSong().MidiFileName, SongFile());
  EXPECT_TRUE(TheDesk().IsModified());
  EXPECT_TRUE(form->isWindowModified());
  EXPECT_THAT(ToStd(form->windowTitle()), HasSubstr("eight bars.mid"));
}

}  // namespace
}  // namespace Sonarello
