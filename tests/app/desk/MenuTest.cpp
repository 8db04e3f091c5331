#include <QLabel>
#include <map>
#include <set>

#include "app/desk/MainBench.h"
#include "app/desk/MenuTable.h"
#include "app/editors/ControllerForm.h"
#include "app/editors/EventListForm.h"
#include "app/instruments/AutoRevoicerForm.h"
#include "app/instruments/PatchesForm.h"
#include "app/options/OptionsForm.h"
#include "app/panels/EffectRow.h"
#include "app/panels/LyricBar.h"
#include "app/panels/SongSlider.h"
#include "app/playback/VirtualKeysForm.h"

namespace Sonarello {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// True for the lines of the table that are entries, not submenus or separators.
bool IsEntry(const TMenuEntry& entry) {
  return !entry.Name.empty() && entry.Name != "<" && entry.Name.back() != '>';
}

class Menu : public Main {
 protected:
  Menu() {
    manual = folder.File("manual");
    qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(folder.File("config")));
    qputenv("XDG_DATA_HOME", QByteArray::fromStdString(folder.File("share")));
  }
  ~Menu() override {
    qunsetenv("XDG_CONFIG_HOME");
    qunsetenv("XDG_DATA_HOME");
  }

  /// Chooses an entry that shows and hides a window.
  template <class Window>
  bool Toggles(const char* name) {
    auto* const window = Find<Window>();
    if (window == nullptr || window->isVisible()) return false;
    Choose(name);
    const bool shown = window->isVisible() && Entry(name).isChecked();
    Choose(name);
    return shown && !window->isVisible() && !Entry(name).isChecked();
  }
  template <class Window>
  Window* Find() {
    for (QWidget* widget : QApplication::topLevelWidgets())
      if (auto* const window = qobject_cast<Window*>(widget)) return window;
    return nullptr;
  }
  bool Opens(const char* name, const QString& objectName) {
    QString shown;
    InDialog([&] { Choose(name); }, [&](QWidget& dialog) { shown = dialog.objectName(); });
    return shown == objectName;
  }
  bool Saves(const char* name, int format) {
    chosenName = folder.File(std::string(name) + ".mid");
    Choose(name);
    const std::string bytes = BytesOf(chosenName);
    return bytes.size() > 14 && bytes[9] == format;
  }
  bool Scales(const char* name, int percent) {
    Choose(name);
    return metrics().percent == percent && WindowScaleOf(TheDesk().settings) == percent &&
           Entry(name).isChecked();
  }

  using TEffects = std::map<std::string, std::function<bool()>>;
  /// What every entry that can be chosen does; true if it did.
  TEffects Effects() {
    TEffects all = ProgramEffects();
    for (TEffects more : {FileEffects(), ViewEffects(), HelpEffects()}) all.merge(more);
    return all;
  }
  TEffects ProgramEffects();
  TEffects FileEffects();
  TEffects ViewEffects();
  TEffects HelpEffects();
};

Menu::TEffects Menu::ProgramEffects() {
  return {
      {"MMS_About", [&] { return Opens("MMS_About", QStringLiteral("AboutForm")); }},
      {"MMS_ShowSettings",
       [&] {
         Choose("MMS_ShowSettings");
         auto* const options = Find<TOptionsForm>();
         const bool shown = options != nullptr && options->isVisible();
         if (options != nullptr) options->Btn_CancelClick();
         return shown;
       }},
      {"MMS_ExportSettings",
       [&] {
         chosenName = folder.File("settings.reg");
         Choose("MMS_ExportSettings");
         return std::filesystem::exists(chosenName);
       }},
      {"MMS_ImportSettings",
       [&] {
         chosenName = folder.File("nothing there.reg");
         told.clear();
         Choose("MMS_ImportSettings");
         return Told() == std::vector<std::string>{"The file could not be read:\n" + chosenName};
       }},
      {"MMS_Hide",
       [&] {
         Choose("MMS_Hide");
         const bool hidden = form->isMinimized();
         form->showNormal();
         Settle();
         return hidden;
       }},
      {"MMS_HideOthers",
       [&] {
         Choose("MMV_Sounds");
         const bool shown = Find<TPatchesForm>()->isVisible();
         Choose("MMS_HideOthers");
         return shown && !Find<TPatchesForm>()->isVisible() && form->isVisible();
       }},
      {"MMS_Quit",
       [&] {
         Choose("MMS_Quit");
         const bool closed = !form->isVisible();
         form->show();
         return closed;
       }},
  };
}

Menu::TEffects Menu::FileEffects() {
  return {
      {"MMF_OpenMidifile",
       [&] {
         chosenName = folder.Write("another.mid", EightBars());
         Choose("MMF_OpenMidifile");
         return TheSong().MidiFileName == chosenName;
       }},
      {"MMF_Properties", [&] { return Opens("MMF_Properties", QStringLiteral("PropertiesForm")); }},
      {"MMF_NewMidifile", [&] { return Opens("MMF_NewMidifile", QStringLiteral("NewMidiDataForm")); }},
      {"MMF_SaveMidifile",
       [&] {
         TheDesk().Changed();
         Choose("MMF_SaveMidifile");
         return !TheDesk().IsModified();
       }},
      {"MMF_SaveFileAsFormat0", [&] { return Saves("MMF_SaveFileAsFormat0", 0); }},
      {"MMF_SaveFileAsFormat1", [&] { return Saves("MMF_SaveFileAsFormat1", 1); }},
      {"MME_Undo",
       [&] {
         work->undo.BeginRangeCommand(TUndoKind::CopyRange, "Copy Range");
         Choose("MME_Undo");
         return !work->undo.IsEnabled() && !Entry("MME_Undo").isEnabled();
       }},
  };
}

Menu::TEffects Menu::ViewEffects() {
  return {
      {"MME_AutoRevoicer", [&] { return Toggles<TAutoRevoicerForm>("MME_AutoRevoicer"); }},
      {"MME_VirtualKeyboard", [&] { return Toggles<TVirtualKeysForm>("MME_VirtualKeyboard"); }},
      {"MMV_Controllers", [&] { return Toggles<TControllerForm>("MMV_Controllers"); }},
      {"MME_ListEditor",
       [&] {
         Choose("MME_ListEditor");
         return Find<TEventListForm>()->isVisible();
       }},
      {"MME_TempoEditor",
       [&] {
         Choose("MME_TempoEditor");
         return Find<TEventListForm>()->isVisible() && work->eventRows.FilterIndex() == 8;
       }},
      {"MMV_Sounds", [&] { return Toggles<TPatchesForm>("MMV_Sounds"); }},
      {"MMV_Lyrics",
       [&] {
         const bool before = TheDesk().settings.ShowLyrics;
         Choose("MMV_Lyrics");
         return store.ReadBool("", "ShowLyrics", before) != before &&
                Entry("MMV_Lyrics").isChecked() != before;
       }},
      {"MMV_Effects",
       [&] {
         const bool before = Entry("MMV_Effects").isChecked();
         Choose("MMV_Effects");
         return store.ReadBool("", "EffectRowVis", before) != before &&
                Entry("MMV_Effects").isChecked() != before;
       }},
      {"MMV_Light",
       [&] {
         Choose("MMV_Light");
         const bool light = th().kind == ThemeKind::Light && store.ReadInteger("", "SkinIndex", 0) == 1;
         Choose("MMV_Light");
         return light && th().kind == ThemeKind::Dark && store.ReadInteger("", "SkinIndex", 1) == 0;
       }},
      {"MMS_Scale120", [&] { return Scales("MMS_Scale120", 120); }},
      {"MMS_Scale130", [&] { return Scales("MMS_Scale130", 130); }},
      {"MMS_Scale150", [&] { return Scales("MMS_Scale150", 150); }},
      {"MMS_Scale100", [&] { return Scales("MMS_Scale100", 100); }},
  };
}

Menu::TEffects Menu::HelpEffects() {
  return {
      {"MMH_Manual",
       [&] {
         opened.clear();
         Choose("MMH_Manual");
         return opened == std::vector<std::string>{"file://" + manual + "/en/index.html"};
       }},
      {"MMH_Updates",
       [&] {
         told.clear();
         Choose("MMH_Updates");
         return QTest::qWaitFor([&] { return !told.empty(); });
       }},
      {"MMH_AssocWithMID",
       [&] {
         told.clear();
         Choose("MMH_AssocWithMID");
         return told.size() == 1 && std::filesystem::exists(folder.File("config/mimeapps.list"));
       }},
  };
}

TEST_F(Menu, EveryEntryDoesItsWorkOrTellsWhyItCannot) {
  BeginWithSong();
  const auto effects = Effects();
  std::set<std::string> tried;
  int rooms = 0;
  for (const TMenuEntry& entry : MainMenuEntries()) {
    if (!IsEntry(entry)) continue;
    const std::string name(entry.Name);
    const QAction& action = form->Menu().Entry(entry.Name);
    const bool enabled = action.isEnabled() || name == "MME_Undo";
    if (!enabled) {
      EXPECT_FALSE(action.toolTip().trimmed().isEmpty()) << name;
      rooms += entry.Needs == MenuNeeds::Room;
      if (entry.Needs != MenuNeeds::Room) {
        EXPECT_EQ(action.toolTip(), QStringLiteral("Screen too small")) << name;
      }
      EXPECT_FALSE(effects.contains(name)) << name << " cannot be chosen";
      continue;
    }
    const auto effect = effects.find(name);
    if (effect == effects.end()) {
      ADD_FAILURE() << name << " can be chosen, and nobody knows what it does";
      continue;
    }
    EXPECT_TRUE(effect->second()) << name;
    tried.insert(name);
  }
  EXPECT_EQ(tried.size(), effects.size());
  EXPECT_GT(rooms, 0);
}

TEST_F(Menu, WithoutASongItsEntriesTellThatOneIsWanted) {
  Begin();
  for (const TMenuEntry& entry : MainMenuEntries()) {
    if (!IsEntry(entry) || entry.Needs != MenuNeeds::Song) continue;
    EXPECT_FALSE(form->Menu().Entry(entry.Name).isEnabled()) << entry.Name;
    EXPECT_EQ(form->Menu().Entry(entry.Name).toolTip(), QStringLiteral("Open a song first"))
        << entry.Name;
  }
}

TEST_F(Menu, EntriesBearTheSystemsNamesAndTexts) {
  Begin();
  const std::map<const char*, const char*> texts = {
      {"MMF_OpenMidifile", "Open midifile"},
      {"MMF_Properties", "Properties"},
      {"MMF_NewMidifile", "New midifile"},
      {"MMF_SaveMidifile", "Save midifile"},
      {"MMF_ExportWAV16", "WAV 16 bit"},
      {"MMF_MP3Export320", "MP3 320 kbit/s"},
      {"MMF_MultiMode", "Multi Mode"},
      {"MME_KeyEditor", "Key Editor"},
      {"MME_ListEditor", "List Editor"},
      {"MME_TrackCopy", "Copy Track"},
      {"MME_TrackDelete", "Delete Track"},
      {"MME_TrackMove", "Move Track"},
      {"MME_RangeCopy", "Copy Range"},
      {"MME_RangeDelete", "Delete Range"},
      {"MME_RangeTranspose", "Transpose Range"},
      {"MME_MidiLonger", "Append empty measure to midifile"},
      {"MME_MidiShorter", "Shorten midifile"},
      {"MME_Undo", "Undo"},
      {"MME_AutoRevoicer", "Auto Revoicer"},
      {"MMH_Manual", "Operating Manual"},
      {"MMH_Updates", "Checks for Updates"},
      {"MMS_ShowSettings", "Show..."},
      {"MMS_ExportSettings", "Export..."},
      {"MMS_ImportSettings", "Import..."},
      {"MMS_ShowVSTSettings", "VST instruments"},
      {"MMS_Quit", "Quit Sonarello"},
  };
  for (const auto& [name, text] : texts) EXPECT_EQ(ToStd(Entry(name).text()), text) << name;
  const std::map<const char*, const char*> menus = {{"MMF", "File"},
                                                    {"MMF_OpenRecent", "Open Recent"},
                                                    {"MME", "Edit"},
                                                    {"MMF_SaveMidifileAs", "Save midifile as..."},
                                                    {"MMV", "View"},
                                                    {"MME_Track", "Track (midi channel)"},
                                                    {"MMH", "Help"},
                                                    {"MME_Range", "Range"},
                                                    {"MMS_Settings", "Settings"}};
  for (const auto& [name, text] : menus)
    EXPECT_EQ(ToStd(form->Menu().Submenu(name).title()), text) << name;
}

TEST_F(Menu, NoShortcutIsGivenTwice) {
  Begin();
  std::set<QString> given;
  for (const TMenuEntry& entry : MainMenuEntries()) {
    if (!IsEntry(entry) || entry.Shortcut.empty()) continue;
    const QKeySequence keys = form->Menu().Entry(entry.Name).shortcut();
    EXPECT_FALSE(keys.isEmpty()) << entry.Name;
    EXPECT_TRUE(given.insert(keys.toString()).second) << entry.Name << ": " << ToStd(keys.toString());
  }
}

TEST_F(Menu, TheUndoEntryNamesItsCommand) {
  BeginWithSong();
  EXPECT_EQ(Entry("MME_Undo").text(), QStringLiteral("Undo"));
  EXPECT_FALSE(Entry("MME_Undo").isEnabled());
  EXPECT_EQ(Entry("MME_Undo").toolTip(), QStringLiteral("There is no command to take back"));
  work->undo.BeginRangeCommand(TUndoKind::DeleteRange, "Delete Range");
  Ctrl(0, 7).Event->Value[1] = 1;
  EXPECT_EQ(Entry("MME_Undo").text(), QStringLiteral("Undo - Delete Range"));
  EXPECT_TRUE(Entry("MME_Undo").isEnabled());
  answers = {false};
  Choose("MME_Undo");
  EXPECT_EQ(told.size(), 1U);
  EXPECT_EQ(told[0].Kind, TMessageKind::Question);
  EXPECT_TRUE(Entry("MME_Undo").isEnabled()) << "the user did not want it";
  EXPECT_EQ(Ctrl(0, 7).Event->Value[1], 1);
  Choose("MME_Undo");
  EXPECT_EQ(Ctrl(0, 7).Event->Value[1], 100);
  EXPECT_EQ(Entry("MME_Undo").text(), QStringLiteral("Undo"));
  EXPECT_FALSE(Entry("MME_Undo").isEnabled());
}

TEST_F(Menu, TheMenuOfTheSliderUndoesToo) {
  BeginWithSong();
  SongSlider& slider = Of<SongSlider>();
  const auto open = [&] { Q_EMIT slider.customContextMenuRequested(QPoint(50, 5)); };
  EXPECT_TRUE(InMenu(open, [](QMenu& popup) {
    EXPECT_EQ(popup.objectName(), QStringLiteral("PopupMenu_Copy"));
    for (const QAction* entry : popup.actions()) {
      if (entry->isSeparator()) continue;
      EXPECT_FALSE(entry->isEnabled()) << ToStd(entry->text());
      EXPECT_NE(entry->toolTip(), entry->text());
      EXPECT_FALSE(entry->toolTip().trimmed().isEmpty()) << ToStd(entry->text());
    }
  }));
  work->undo.BeginRangeCommand(TUndoKind::CopyRange, "Copy Range");
  EXPECT_TRUE(InMenu(open, [](QMenu& popup) {
    auto* const undo = popup.findChild<QAction*>(QStringLiteral("PMC_Undo"));
    ASSERT_NE(undo, nullptr);
    EXPECT_EQ(undo->text(), QStringLiteral("Undo - Copy Range"));
    undo->trigger();
  }));
  EXPECT_FALSE(work->undo.IsEnabled());
}

TEST_F(Menu, AnotherSongForgetsTheCommand) {
  BeginWithSong();
  work->undo.BeginRangeCommand(TUndoKind::CopyRange, "Copy Range");
  ASSERT_TRUE(form->OpenFile(SongFile()));
  EXPECT_FALSE(Entry("MME_Undo").isEnabled());
  EXPECT_EQ(Entry("MME_Undo").text(), QStringLiteral("Undo"));
}

TEST_F(Menu, ScalesThatTheScreenCannotHoldTellSo) {
  Begin();
  // 1280 by 720 pixels at 100 %, on a screen of 1920 by 1080.
  for (const char* name : {"MMS_Scale100", "MMS_Scale120", "MMS_Scale130", "MMS_Scale150"})
    EXPECT_TRUE(Entry(name).isEnabled()) << name;
  for (const char* name : {"MMS_Scale160", "MMS_Scale180"}) {
    EXPECT_FALSE(Entry(name).isEnabled()) << name;
    EXPECT_EQ(Entry(name).toolTip(), QStringLiteral("Screen too small"));
    Entry(name).trigger();
    EXPECT_EQ(metrics().percent, 100);
  }
}

TEST_F(Menu, AManualThatIsNotThereIsNotOffered) {
  manual.clear();
  Begin();
  EXPECT_FALSE(Entry("MMH_Manual").isEnabled());
  EXPECT_EQ(Entry("MMH_Manual").toolTip(), QStringLiteral("The manual is not installed"));
}

TEST_F(Menu, AManualThatNothingOpensIsToldOf) {
  Begin();
  opens = false;
  Choose("MMH_Manual");
  EXPECT_THAT(Told(), ElementsAre("No program opens the manual: " + manual + "/en/index.html"));
  const InGerman german;
  Choose("MMH_Manual");
  EXPECT_EQ(Told().back(),
            "Kein Programm öffnet die Bedienungsanleitung: " + manual + "/de/index.html");
}

TEST_F(Menu, TheCheckForUpdatesTellsThatNoAddressIsSet) {
  Begin();
  Choose("MMH_Updates");
  ASSERT_TRUE(QTest::qWaitFor([&] { return !told.empty(); }));
  EXPECT_FALSE(told[0].Text.isEmpty());
  EXPECT_TRUE(Entry("MMH_Updates").isEnabled()) << "it can be tried again";
}

TEST_F(Menu, ACheckForUpdatesThatFailsTellsSoToTheLetter) {
  store.WriteString("", "UpdateUrl", "no address");
  Begin();
  Choose("MMH_Updates");
  ASSERT_TRUE(QTest::qWaitFor([&] { return !told.empty(); }));
  EXPECT_THAT(Told(), ElementsAre("Error retreaving data over internet!"));
}

TEST_F(Menu, TheAboutBoxTellsNameVersionAndLicence) {
  Begin();
  QString all;
  EXPECT_TRUE(InDialog([&] { Choose("MMS_About"); },
                       [&](QWidget& dialog) {
                         EXPECT_EQ(dialog.windowTitle(), QStringLiteral("About Sonarello"));
                         for (const QLabel* label : dialog.findChildren<QLabel*>())
                           all += label->text() + QLatin1Char('\n');
                       }));
  EXPECT_THAT(ToStd(all), HasSubstr("Sonarello "));
  EXPECT_THAT(ToStd(all), HasSubstr("GNU General Public License"));
}

}  // namespace
}  // namespace Sonarello
