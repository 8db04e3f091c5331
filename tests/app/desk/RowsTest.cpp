// What the desk shows around its strips: lyrics, effects, banner, status, the card without a song.
#include <QComboBox>

#include "app/desk/MainBench.h"
#include "app/options/OptionsForm.h"
#include "app/options/SegmentChoice.h"
#include "app/panels/Banner.h"
#include "app/panels/DropCard.h"
#include "app/panels/EffectCell.h"
#include "app/panels/EffectRow.h"
#include "app/panels/FilePanel.h"
#include "app/panels/LyricBar.h"
#include "app/panels/PositionDisplay.h"
#include "app/panels/SongSlider.h"
#include "app/panels/StatusBar.h"
#include "playback/AudioDevice.h"

namespace Sonarello {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

class Rows : public Main {
 protected:
  /// The demo song on an arranger, with lyrics, chords and effects.
  void BeginWithDemo() {
    store.WriteString("", "MidiInstrument00", "Yamaha Genos");
    Begin();
    Fire("SetupTimer");
    Fire("AutoloadTimer");
    const std::string song = folder.File("demo.mid");
    std::filesystem::copy_file(SONARELLO_SOURCE_DIR "/examples/demo.mid", song);
    ASSERT_TRUE(form->OpenFile(song));
    Settle();
  }
  std::string Status() {
    return ToStd((Of<StatusBar>().LeftParts() + Of<StatusBar>().RightParts()).join(QLatin1Char('|')));
  }
};

TEST_F(Rows, LyricsCanBeHiddenAndComeBack) {
  BeginWithDemo();
  ASSERT_TRUE(work->lyrics.HasLyrics());
  EXPECT_TRUE(Of<LyricBar>().isVisible());
  Choose("MMV_Lyrics");
  EXPECT_FALSE(Of<LyricBar>().isVisible());
  EXPECT_FALSE(Entry("MMV_Lyrics").isChecked());
  Choose("MMV_Lyrics");
  EXPECT_TRUE(Of<LyricBar>().isVisible());
}

TEST_F(Rows, ASongWithoutLyricsHasNoBarOfThem) {
  BeginWithDemo();
  ASSERT_TRUE(form->OpenFile(SongFile()));
  EXPECT_FALSE(Of<LyricBar>().isVisible());
}

TEST_F(Rows, EffectsCanBeHiddenAndTellWhyTheyDoNotOpen) {
  BeginWithDemo();
  EffectRow& row = Of<EffectRow>();
  ASSERT_TRUE(row.HasCells());
  EXPECT_TRUE(row.isVisible());
  for (const EffectCell* cell : row.cells()) {
    EXPECT_FALSE(cell->view().opens);
    EXPECT_TRUE(cell->toolTip().contains(
        QStringLiteral("The effect editors are not part of this version yet")));
  }
  Choose("MMV_Effects");
  EXPECT_FALSE(row.isVisible());
  Choose("MMV_Effects");
  EXPECT_TRUE(row.isVisible());
}

TEST_F(Rows, NoRowLiesOnAnother) {
  BeginWithDemo();
  for (const char* scale : {"MMS_Scale150", "MMS_Scale100"}) {
    Choose(scale);
    Settle();
    std::vector<QWidget*> panels = {&Of<SongSlider>(),     &Of<StripRow>(),  &Of<EffectRow>(),
                                    &Of<LyricBar>(),       &Of<StatusBar>(), &Of<FilePanel>(),
                                    &Of<PositionDisplay>()};
    for (std::size_t a = 0; a < panels.size(); ++a) {
      for (std::size_t b = a + 1; b < panels.size(); ++b)
        EXPECT_FALSE(panels[a]->geometry().intersects(panels[b]->geometry()))
            << scale << ": " << panels[a]->metaObject()->className() << " and "
            << panels[b]->metaObject()->className();
      EXPECT_TRUE(panels[a]->parentWidget()->rect().contains(panels[a]->geometry()))
          << scale << ": " << panels[a]->metaObject()->className();
    }
  }
}

TEST_F(Rows, WhatWentWrongWithOutputsStandsAboveTheDesk) {
  loadSynthesizer = []() -> std::unique_ptr<IHostedInstrument> {
    throw TAudioError("There is no sound font.");
  };
  Begin();
  EXPECT_FALSE(Of<Banner>().isVisible());
  EXPECT_TRUE(Fire("SetupTimer"));
  EXPECT_TRUE(Of<Banner>().isVisible());
  EXPECT_THAT(ToStd(Of<Banner>().text()), HasSubstr("There is no sound font."));
  EXPECT_THAT(told, IsEmpty()) << "no dialog at the start";
}

TEST_F(Rows, ALongComplaintTakesItsRoomFromTheDesk) {
  loadSynthesizer = []() -> std::unique_ptr<IHostedInstrument> {
    std::string text = "There is no sound font:";
    for (int n = 0; n < 40; ++n) text += " /somewhere/else";
    throw TAudioError(text);
  };
  BeginWithSong();
  const Banner& banner = Of<Banner>();
  EXPECT_EQ(banner.height(), banner.heightForWidth(banner.width()));
  EXPECT_GT(banner.height(), banner.minimumSizeHint().height());
  for (const QWidget* panel : std::initializer_list<QWidget*>{&Of<FilePanel>(), &Of<PositionDisplay>(),
                                                              &Of<SongSlider>(), &Of<StripRow>()})
    EXPECT_GT(panel->y(), banner.geometry().bottom()) << panel->metaObject()->className();
}

TEST_F(Rows, TheStatusTellsOutputsScaleAndBackup) {
  BeginWithSong();
  EXPECT_THAT(Status(), HasSubstr("GM Soundset"));
  EXPECT_THAT(Status(), HasSubstr("100 %"));
  Choose("MMS_Scale130");
  EXPECT_THAT(Status(), HasSubstr("130 %"));
  EXPECT_FALSE(work->backup.LastBackup().has_value());
  Fire("AutoBackupTimer");
  EXPECT_FALSE(work->backup.LastBackup().has_value()) << "nothing was changed";
  work->backup.Clock = [] {
    std::tm time{};
    time.tm_hour = 14;
    time.tm_min = 5;
    time.tm_mday = 1;
    return time;
  };
  TheDesk().Changed();
  Fire("AutoBackupTimer");
  EXPECT_THAT(Status(), HasSubstr("14:05"));
  EXPECT_TRUE(form->isWindowModified()) << "a backup is no save";
}

TEST_F(Rows, AFailedBackupStandsAboveTheDeskUntilOneWorks) {
  BeginWithSong();
  work->backup.Clock = [] {
    std::tm time{};
    time.tm_year = 126;
    time.tm_mon = 2;
    time.tm_mday = 7;
    return time;
  };
  // A folder of the backup's name is in its way.
  const std::filesystem::path inTheWay =
      folder.File("data") + "/AutoBackups/eight bars_20260307_000000.mid";
  std::filesystem::create_directories(inTheWay);
  TheDesk().Changed();
  EXPECT_FALSE(Of<Banner>().isVisible());
  for (int n = 0; n < 2; ++n) {
    Fire("AutoBackupTimer");
    EXPECT_TRUE(Of<Banner>().isVisible());
    EXPECT_EQ(ToStd(Of<Banner>().text()), "The auto backup could not be written!");
  }
  EXPECT_THAT(told, IsEmpty()) << "no dialog over a playing song";
  std::filesystem::remove(inTheWay);
  Fire("AutoBackupTimer");
  EXPECT_TRUE(std::filesystem::is_regular_file(inTheWay));
  EXPECT_FALSE(Of<Banner>().isVisible());
  EXPECT_THAT(ToStd(Of<Banner>().text()), IsEmpty());
}

TEST_F(Rows, AFailedBackupStandsBesideWhatElseWentWrong) {
  loadSynthesizer = []() -> std::unique_ptr<IHostedInstrument> {
    throw TAudioError("There is no sound font.");
  };
  BeginWithSong();
  work->backup.Clock = [] { return std::tm{}; };
  std::filesystem::create_directories(folder.File("data") +
                                      "/AutoBackups/eight bars_19000100_000000.mid");
  TheDesk().Changed();
  Fire("AutoBackupTimer");
  EXPECT_EQ(ToStd(Of<Banner>().text()),
            "There is no sound font. · The auto backup could not be written!");
}

TEST_F(Rows, ABackupIsNotWrittenIfTheUserWantsNone) {
  store.WriteBool("", "AutoBackupEnabled", false);
  BeginWithSong();
  TheDesk().Changed();
  Fire("AutoBackupTimer");
  EXPECT_FALSE(work->backup.LastBackup().has_value());
}

TEST_F(Rows, TheCardOffersTheRecentSongs) {
  store.WriteString("", "LastMidifilesList", SongFile());
  Begin();
  QAbstractButton& recent = Button(Of<DropCard>(), "Open recent");
  EXPECT_TRUE(recent.isEnabled());
  recent.click();
  auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_EQ(menu, &form->Menu().Submenu("MMF_OpenRecent"));
  menu->actions()[0]->trigger();
  menu->close();
  Settle();
  EXPECT_EQ(TheSong().MidiFileName, SongFile());
}

TEST_F(Rows, TheCardHasNoRecentSongsAtFirst) {
  Begin();
  EXPECT_FALSE(Button(Of<DropCard>(), "Open recent").isEnabled());
}

TEST_F(Rows, TheSettingsWindowsOkChangesTheLookOfAll) {
  Begin();
  Choose("MMS_ShowSettings");
  auto& options = Of<TOptionsForm>();
  auto* const skin = options.findChild<SegmentChoice*>(QStringLiteral("SkinIndex"));
  auto* const scale = options.findChild<QComboBox*>(QStringLiteral("ScaleIndex"));
  ASSERT_NE(skin, nullptr);
  ASSERT_NE(scale, nullptr);
  Q_EMIT skin->Chosen(1);
  Q_EMIT scale->activated(1);
  EXPECT_EQ(th().kind, ThemeKind::Dark) << "nothing before OK";
  options.Btn_OKClick();
  Settle();
  EXPECT_EQ(th().kind, ThemeKind::Light);
  EXPECT_EQ(metrics().percent, 120);
  EXPECT_EQ(store.ReadInteger("", "SkinIndex", 0), 1);
  EXPECT_EQ(store.ReadInteger("", "ScaleIndex", 0), 1);
}

}  // namespace
}  // namespace Sonarello
