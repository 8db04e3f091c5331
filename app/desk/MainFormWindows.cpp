// The main window's other windows, and what settings change.
#include <QDesktopServices>
#include <QFileDialog>
#include <QUrl>

#include "app/adapters/DesktopAssociation.h"
#include "app/adapters/UpdateCheck.h"
#include "app/controls/Metrics.h"
#include "app/controls/QtText.h"
#include "app/controls/Theme.h"
#include "app/desk/FileNames.h"
#include "app/desk/MainForm.h"
#include "app/desk/ToolWindows.h"
#include "app/options/OptionsForm.h"
#include "app/panels/EffectRow.h"
#include "app/panels/LyricBar.h"
#include "core/Texts.h"
#include "desk/OptionsEdit.h"
#include "desk/SettingsFiles.h"

namespace Sonarello {

namespace {

QString RegistryFilter() { return QText("Registrierungsdateien (*.reg)", "Registry files (*.reg)"); }

}  // namespace

void TMainForm::ShowSettings() {
  Desk& desk = p.work.desk;
  StoreSettings(p.store, desk.options, desk.settings);
  optionsForm->ShowOptions(LoadOptionsInput(p.store, desk.OutputNames(), desk.InputNames()));
}

void TMainForm::ApplyOptions(const TOptionChanges& changes) {
  if (changes.IsEmpty()) return;
  Desk& desk = p.work.desk;
  if (desk.IsPlaying() && changes.Has(TOptionChange::Routes)) StopClick();
  const std::string dataPath = desk.options.DataPath;
  LoadSettings(p.store, desk.options, desk.settings);
  desk.options.DataPath = dataPath;
  desk.SettingsChanged();
  p.work.backup.AutoBackupEnabled = desk.settings.AutoBackupEnabled;
  p.work.browser.SetGrabMidiDriver(desk.settings.GrabMidiDriver);
  if (changes.Has(TOptionChange::Theme) || changes.Has(TOptionChange::Scale)) ApplyAppearance();
  // The browser shows the lists of an instrument that may change or go.
  if (changes.Has(TOptionChange::Routes) || changes.Has(TOptionChange::Sounds))
    p.work.browser.Btn_CancelClick();
  if (changes.Has(TOptionChange::Routes)) {
    desk.Routes().LoadSettings(p.store, desk.options.MultiMidi);
    desk.BuildRoutes();
  }
  if (changes.Has(TOptionChange::Sounds)) desk.ReloadSounds();
  if (changes.Has(TOptionChange::Display)) {
    ShowLyrics();
    ShowNoteNames();
  }
  if (changes.Has(TOptionChange::Recording)) ListenToMidiIn();
  ShowStrips();
  ShowTranspose();
  ShowStatus();
  ShowComplaints();
  UpdateMenu();
  if (changes.Has(TOptionChange::Language))
    p.messages.Show(TMessageKind::Note, Text("Die Sprache ändert sich mit dem nächsten Start.",
                                             "The language changes with the next start."));
  const bool refit = changes.Has(TOptionChange::MainInstrument) && desk.song.MidiFileLoaded &&
                     !desk.song.MidiFileName.empty();
  if (refit &&
      p.messages.Ask(Text("Das Hauptinstrument ist ein anderes.\rSoll der Song neu geöffnet werden, "
                          "damit er ihm angepasst wird?",
                          "The main instrument is another one.\rShould the song be opened again to "
                          "fit it?")))
    OpenFile(desk.song.MidiFileName);
}

void TMainForm::ExportSettings() {
  const QString suggestion = ToQt(p.documents) + QStringLiteral("/Sonarello.reg");
  QString name = AskSaveName ? AskSaveName(suggestion)
                             : QFileDialog::getSaveFileName(
                                   this, QText("Einstellungen exportieren", "Export settings"),
                                   suggestion, RegistryFilter());
  if (name.isEmpty()) return;
  StoreWindows();
  StoreSettings(p.store, p.work.desk.options, p.work.desk.settings);
  if (!ExportSettingsFile(p.store, PathOf(name), p.messages)) return;
  Status(QText("Einstellungen exportiert", "Settings exported"));
}

void TMainForm::ImportSettings() {
  const QString name = AskOpenName ? AskOpenName(ToQt(p.documents))
                                   : QFileDialog::getOpenFileName(
                                         this, QText("Einstellungen importieren", "Import settings"),
                                         ToQt(p.documents), RegistryFilter());
  if (name.isEmpty()) return;
  const std::string instrument = p.work.desk.Routes().MidiRouteLoad[0].Instrument;
  if (!ImportSettingsFile(p.store, PathOf(name), p.messages)) return;
  showEffects = p.store.ReadBool("", "EffectRowVis", true);
  ShowEffects();
  TOptionChanges all;
  for (const TOptionChange change :
       {TOptionChange::Theme, TOptionChange::Scale, TOptionChange::Routes, TOptionChange::Sounds,
        TOptionChange::Recording, TOptionChange::Display})
    all.Flags |= static_cast<unsigned>(change);
  if (p.store.ReadString("", "MidiInstrument00", instrument) != instrument)
    all.Flags |= static_cast<unsigned>(TOptionChange::MainInstrument);
  all.Keys = {"*"};
  ApplyOptions(all);
  p.work.recent.Load(p.store);
  UpdateRecentMenu();
  Status(QText("Einstellungen importiert", "Settings imported"));
}

void TMainForm::SetScaleClick(int percent) {
  DeskSettings& settings = p.work.desk.settings;
  const auto* const found = std::ranges::find(ScalePercents, percent);
  settings.ScaleIndex = static_cast<std::int32_t>(found - std::begin(ScalePercents));
  p.store.WriteInteger("", "ScaleIndex", settings.ScaleIndex);
  ApplyAppearance();
}

void TMainForm::ToggleTheme() {
  DeskSettings& settings = p.work.desk.settings;
  settings.SkinIndex = settings.SkinIndex == 0 ? 1 : 0;
  p.store.WriteInteger("", "SkinIndex", settings.SkinIndex);
  ApplyAppearance();
}

void TMainForm::ToggleLyrics() {
  DeskSettings& settings = p.work.desk.settings;
  settings.ShowLyrics = !settings.ShowLyrics;
  p.store.WriteBool("", "ShowLyrics", settings.ShowLyrics);
  ShowLyrics();
}

void TMainForm::ToggleEffects() {
  showEffects = !showEffects;
  p.store.WriteBool("", "EffectRowVis", showEffects);
  ShowEffects();
}

void TMainForm::ApplyAppearance() {
  const DeskSettings& settings = p.work.desk.settings;
  const int percent = WindowScaleOf(settings);
  if (percent != metrics().percent) SetScale(percent);
  const ThemeKind kind = settings.SkinIndex == 0 ? ThemeKind::Dark : ThemeKind::Light;
  if (kind != th().kind) SetTheme(kind);
  setMinimumSize(metrics().px(LeastWidth), metrics().px(LeastHeight));
  Arrange();
  ShowStatus();
}

void TMainForm::HideOthers() {
  p.work.browser.Btn_CancelClick();
  windows->HideAll();
}

void TMainForm::CheckForUpdates() {
  menu->Forbid("MMH_Updates", QText("Die Abfrage läuft", "The check is under way"));
  updates->Start(ToQt(p.store.ReadString("", "UpdateUrl", "")));
}

void TMainForm::Associate() { AssocWithMID(DesktopPlaces(), p.messages); }

void TMainForm::OpenManual() {
  const std::string page = p.manual + Text("/de/index.html", "/en/index.html");
  const QString url = QUrl::fromLocalFile(ToQt(page)).toString();
  if (OpenUrl ? OpenUrl(url) : QDesktopServices::openUrl(QUrl(url))) return;
  p.messages.Show(
      TMessageKind::Error,
      Text("Kein Programm öffnet die Bedienungsanleitung: ", "No program opens the manual: ") + page);
}

void TMainForm::StoreWindows() {
  StorePlace(*this, p.store, "Main");
  p.store.WriteBool("", "MainFormMaximized", isMaximized());
  windows->Store();
}

void TMainForm::RestoreWindows() {
  RestorePlace(*this, p.store, "Main", QSize(metrics().px(1440), metrics().px(900)));
  showEffects = p.store.ReadBool("", "EffectRowVis", true);
}

}  // namespace Sonarello
