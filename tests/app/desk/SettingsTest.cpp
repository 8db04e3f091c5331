// The settings window as the main window opens it, export and import, scale and appearance.
#include <QCheckBox>
#include <QLabel>
#include <set>

#include "app/controls/LevelMeter.h"
#include "app/desk/MainBench.h"
#include "app/desk/ToolWindows.h"
#include "app/editors/EventListForm.h"
#include "app/editors/EventListModel.h"
#include "app/options/OptionsForm.h"
#include "app/options/RoutesTable.h"
#include "app/options/SegmentChoice.h"
#include "app/panels/Banner.h"
#include "app/panels/DropCard.h"
#include "app/panels/LyricBar.h"
#include "app/panels/StatusBar.h"
#include "app/panels/TransposePanel.h"
#include "app/panels/WindowSwitches.h"

namespace Sonarello {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Settings : public Main {
 protected:
  /// Opens the settings and gives what the user edits there.
  TOptionsForm& Open() {
    Choose("MMS_ShowSettings");
    auto& options = Of<TOptionsForm>();
    EXPECT_TRUE(options.isVisible());
    return options;
  }
  QCheckBox& Check(const char* key) {
    auto* const box = Of<TOptionsForm>().findChild<QCheckBox*>(QLatin1String(key));
    EXPECT_NE(box, nullptr) << key;
    return *box;
  }
  void Ok() {
    Of<TOptionsForm>().Btn_OKClick();
    Settle();
  }
  /// Writes a setting and has it taken over, as the window does behind OK.
  void Change(const char* key, const std::string& value, TOptionChange what) {
    store.WriteString("", key, value);
    TOptionChanges changes;
    changes.Flags = static_cast<unsigned>(what);
    changes.Keys = {key};
    Q_EMIT Of<TOptionsForm>().OptionsChanged(changes);
    Settle();
  }
};

TEST_F(Settings, CancelChangesNothing) {
  Begin();
  TOptionsForm& options = Open();
  Check("DisplayActive").click();
  options.Btn_CancelClick();
  EXPECT_TRUE(TheDesk().settings.DisplayActive);
  EXPECT_FALSE(store.HasValue("", "DisplayActive"));
}

TEST_F(Settings, WhatIsChangedCountsAtOnce) {
  BeginWithSong();
  Open();
  Check("DisplayActive").click();
  Check("ShowLyrics").click();
  Check("AutoBackupEnabled").click();
  Check("GrabMidiDriver").click();
  Ok();
  EXPECT_FALSE(TheDesk().settings.DisplayActive);
  EXPECT_FALSE(TheDesk().Player().DisplayActive);
  EXPECT_TRUE(Strip(0).levelMeter().isHidden());
  EXPECT_FALSE(Entry("MMV_Lyrics").isChecked());
  EXPECT_FALSE(work->backup.AutoBackupEnabled);
  EXPECT_FALSE(TheDesk().strips.Desk.Settings.GrabMidiDriver);
  EXPECT_FALSE(store.ReadBool("", "DisplayActive", true));
}

TEST_F(Settings, WhoWantsNoBackupsIsNotToldThatOneFailed) {
  BeginWithSong();
  work->backup.Clock = [] { return std::tm{}; };
  std::filesystem::create_directories(folder.File("data") +
                                      "/AutoBackups/eight bars_19000100_000000.mid");
  TheDesk().Changed();
  Fire("AutoBackupTimer");
  EXPECT_TRUE(Of<Banner>().isVisible());
  Open();
  Check("AutoBackupEnabled").click();
  Ok();
  EXPECT_FALSE(Of<Banner>().isVisible());
}

TEST_F(Settings, TranspositionOfTheSettingsIsShownOnTheDesk) {
  BeginWithSong();
  Open();
  Check("IntelligentTranspose").click();
  Ok();
  EXPECT_FALSE(TheDesk().transpose.Settings.IntelligentTranspose);
  EXPECT_FALSE(Button(Of<TransposePanel>(), "Intelligent transposition").isChecked());
}

TEST_F(Settings, AppearanceAndScaleChangeAtOnceAndInTheMenu) {
  Begin();
  Change("SkinIndex", "1", TOptionChange::Theme);
  EXPECT_EQ(th().kind, ThemeKind::Light);
  EXPECT_TRUE(Entry("MMV_Light").isChecked());
  Change("ScaleIndex", "3", TOptionChange::Scale);
  EXPECT_EQ(metrics().percent, 150);
  EXPECT_TRUE(Entry("MMS_Scale150").isChecked());
  EXPECT_FALSE(Entry("MMS_Scale100").isChecked());
  EXPECT_EQ(form->minimumSize(), QSize(1920, 1080));
}

TEST_F(Settings, TheEventListFollowsNamesOfNotesAndInstruments) {
  BeginWithSong();
  Choose("MME_ListEditor");
  EventListModel& rows = Of<TEventListForm>().Model();
  const auto rowWith = [&](int column, const char* text) {
    for (int row = 0; row < rows.rowCount(); ++row)
      if (rows.index(row, column).data().toString() == QLatin1String(text)) return row;
    ADD_FAILURE() << "no row reads " << text;
    return 0;
  };
  const QModelIndex note = rows.index(rowWith(KindColumn, "Note"), Value1Column);
  rows.setData(note, QStringLiteral("B3"), Qt::EditRole);
  EXPECT_EQ(note.data().toString(), QStringLiteral("B3"));
  Change("UseGermanChords", "1", TOptionChange::Display);
  EXPECT_EQ(note.data().toString(), QStringLiteral("H3"));
  const QModelIndex program = rows.index(rowWith(KindColumn, "Program change"), LengthColumn);
  EXPECT_EQ(program.data().toString(), QStringLiteral("(GM Soundset)"));
  Change("MidiInstrument00", "Yamaha Genos", TOptionChange::Routes);
  EXPECT_EQ(program.data().toString(), QStringLiteral("(Yamaha Genos)"));
}

TEST_F(Settings, TheLanguageWaitsForTheNextStart) {
  Begin();
  Change("Lang", "de", TOptionChange::Language);
  EXPECT_THAT(Told(), ElementsAre("The language changes with the next start."));
  EXPECT_EQ(told[0].Kind, TMessageKind::Note);
}

TEST_F(Settings, RoutesAreBuiltAnew) {
  BeginWithSong();
  Change("MidiOutput00", "Port B", TOptionChange::Routes);
  EXPECT_EQ(TheDesk().Routes().MidiRouting()[0].OutputName, "Port B");
  midi.Sent.clear();
  TheDesk().strips.Moves.TB_Volume00Change(0, 12);
  EXPECT_THAT(midi.SentTo("Port B"), Contains(TestMidiDriver::TBytes{0xB0, 7, 12}));
}

TEST_F(Settings, RoutesThatAreBuiltAnewStopTheSong) {
  BeginWithSong();
  ASSERT_TRUE(TheDesk().PlayButtonClick());
  Change("MidiOutput00", "Port B", TOptionChange::Routes);
  EXPECT_FALSE(TheDesk().IsPlaying());
}

TEST_F(Settings, AnotherMainInstrumentAsksWhetherTheSongIsFittedToIt) {
  BeginWithSong();
  store.WriteString("", "MidiInstrument00", "Yamaha Genos");
  TOptionChanges changes;
  changes.Flags = static_cast<unsigned>(TOptionChange::Routes) |
                  static_cast<unsigned>(TOptionChange::MainInstrument);
  changes.Keys = {"MidiInstrument00"};
  answers = {false};
  Q_EMIT Of<TOptionsForm>().OptionsChanged(changes);
  EXPECT_THAT(Told(),
              ElementsAre("The main instrument is another one.\nShould the song be opened again "
                          "to fit it?"));
  EXPECT_EQ(TheDesk().RouteOf(0).Instrument, "Yamaha Genos");
  EXPECT_TRUE(Of<StatusBar>().RightParts().contains(QStringLiteral("Yamaha Genos")));
  told.clear();
  const PtrMidiEvent before = Ctrl(0, 7).Event;
  Q_EMIT Of<TOptionsForm>().OptionsChanged(changes);
  EXPECT_EQ(told.size(), 1U);
  EXPECT_NE(before, nullptr);
  EXPECT_EQ(TheSong().MidiFileName, SongFile());
}

TEST_F(Settings, WithoutASongNobodyIsAskedToFitIt) {
  Begin();
  Change("MidiInstrument00", "Yamaha Genos", TOptionChange::MainInstrument);
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(Settings, AMidiInputIsListenedToAtOnce) {
  midi.Inputs = {"Keys"};
  Begin();
  EXPECT_EQ(midi.OpenInputs, 0);
  Change("MidiInputName", "Keys", TOptionChange::Recording);
  EXPECT_EQ(midi.OpenInputs, 1);
  EXPECT_FALSE(Of<WindowSwitches>().midiIn());
  midi.Feed("Keys", 0, {0x90, 60, 100});
  Fire("MidiInMonitorTimer");
  EXPECT_TRUE(Of<WindowSwitches>().midiIn());
  Fire("MidiInMonitorTimer");
  EXPECT_FALSE(Of<WindowSwitches>().midiIn());
  Change("MidiInputName", "", TOptionChange::Recording);
  EXPECT_EQ(midi.OpenInputs, 0);
}

TEST_F(Settings, ListsAreReadAnewWhereAnOptionOfTheirsChanged) {
  BeginWithSong();
  ASSERT_TRUE(work->browser.Open(0));
  std::set<int> channels;
  bool asked = false;
  struct Watcher : SongObserver {
    explicit Watcher(std::set<int>& c) : channels(c) {}
    void SoundChanged(int channel) override { channels.insert(channel); }
    std::set<int>& channels;
  } watcher(channels);
  TheDesk().Observers.push_back(&watcher);
  // Whoever reads the lists asks how they are to be sorted.
  TheDesk().SortSounds = [&](int) { return asked = true; };
  Change("LimexTE200", "1", TOptionChange::Sounds);
  std::erase(TheDesk().Observers, static_cast<SongObserver*>(&watcher));
  TheDesk().SortSounds = {};
  EXPECT_TRUE(asked);
  EXPECT_EQ(channels.size(), 16U);
  EXPECT_FALSE(work->browser.IsOpen());
  EXPECT_TRUE(TheDesk().options.LimexTE200);
  EXPECT_FALSE(Strip(0).view().Name.isEmpty());
}

TEST_F(Settings, ListsAreSortedFromTheNextStartOn) {
  store.WriteBool("GM Soundset", "SortSounds", true);
  Begin();
  ASSERT_TRUE(TheDesk().SortSounds);
  EXPECT_TRUE(TheDesk().SortSounds(TheDesk().Routes().MidiRouting()[0].InstrumValue));
  store.WriteBool("GM Soundset", "SortSounds", false);
  EXPECT_FALSE(TheDesk().SortSounds(TheDesk().Routes().MidiRouting()[0].InstrumValue));
}

TEST_F(Settings, ExportAndImportBringEverythingBack) {
  Begin();
  Choose("MMV_Light");
  Choose("MMS_Scale130");
  Choose("MMV_Effects");
  chosenName = folder.File("settings.reg");
  Choose("MMS_ExportSettings");
  EXPECT_EQ(suggested, folder.File("documents/Sonarello.reg"));
  EXPECT_TRUE(Of<StatusBar>().LeftParts().contains(QStringLiteral("Settings exported")));
  Choose("MMV_Light");
  Choose("MMS_Scale100");
  Choose("MMV_Effects");
  answers = {false};
  Choose("MMS_ImportSettings");
  EXPECT_EQ(told.size(), 1U) << "a question first";
  EXPECT_EQ(th().kind, ThemeKind::Dark);
  Choose("MMS_ImportSettings");
  EXPECT_EQ(th().kind, ThemeKind::Light);
  EXPECT_EQ(metrics().percent, 130);
  EXPECT_TRUE(Entry("MMV_Light").isChecked());
  EXPECT_TRUE(Entry("MMS_Scale130").isChecked());
  EXPECT_FALSE(Entry("MMV_Effects").isChecked());
  EXPECT_TRUE(Of<StatusBar>().LeftParts().contains(QStringLiteral("Settings imported")));
}

TEST_F(Settings, AnImportThatIsNoneIsRefused) {
  Begin();
  chosenName = folder.Write("wrong.reg", "rubbish");
  Choose("MMS_ImportSettings");
  EXPECT_EQ(told.size(), 1U);
  EXPECT_NE(told[0].Kind, TMessageKind::Question);
  chosenName.clear();
  Choose("MMS_ImportSettings");
  EXPECT_EQ(told.size(), 1U);
}

TEST_F(Settings, AnExportThatFailsIsToldOf) {
  Begin();
  chosenName = folder.File("no such folder/settings.reg");
  Choose("MMS_ExportSettings");
  EXPECT_THAT(Told(), ElementsAre(HasSubstr("The file could not be written:\n" + chosenName)));
  EXPECT_FALSE(Of<StatusBar>().LeftParts().contains(QStringLiteral("Settings exported")));
}

TEST_F(Settings, AnImportedInstrumentAsksWhetherTheSongIsFittedToIt) {
  BeginWithSong();
  chosenName = folder.File("settings.reg");
  store.WriteString("", "MidiInstrument00", "Yamaha Genos");
  Choose("MMS_ExportSettings");
  store.WriteString("", "MidiInstrument00", "GM Soundset");
  answers = {true, false};
  Choose("MMS_ImportSettings");
  ASSERT_EQ(told.size(), 2U);
  EXPECT_THAT(Told()[1], HasSubstr("The main instrument is another one."));
  EXPECT_EQ(TheDesk().RouteOf(0).Instrument, "Yamaha Genos");
}

}  // namespace
}  // namespace Sonarello
