// The main window's menu: which entry calls what, and when entries can be chosen.
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>
#include <map>

#include "app/controls/Metrics.h"
#include "app/controls/QtText.h"
#include "app/controls/Theme.h"
#include "app/desk/InfoForms.h"
#include "app/desk/MainForm.h"
#include "app/desk/ToolWindows.h"
#include "app/panels/LyricBar.h"
#include "desk/SongProperties.h"

namespace Sonarello {

void TMainForm::MenuChosen(std::string_view name) {
  // Shortcuts reach their entries also while the windows take no input.
  if (busy) return;
  using Handler = std::function<void(TMainForm&)>;
  static const std::map<std::string_view, Handler> handlers = {
      {"MMS_About", [](TMainForm& f) { TAboutForm(QStringLiteral(SONARELLO_VERSION), &f).exec(); }},
      {"MMS_ShowSettings", [](TMainForm& f) { f.ShowSettings(); }},
      {"MMS_ExportSettings", [](TMainForm& f) { f.ExportSettings(); }},
      {"MMS_ImportSettings", [](TMainForm& f) { f.ImportSettings(); }},
      {"MMS_Hide", [](TMainForm& f) { f.showMinimized(); }},
      {"MMS_HideOthers", [](TMainForm& f) { f.HideOthers(); }},
      {"MMS_Quit", [](TMainForm& f) { f.close(); }},
      {"MMF_OpenMidifile", [](TMainForm& f) { f.MMF_OpenMidifileClick(); }},
      {"MMF_Properties", [](TMainForm& f) { f.MMF_PropertiesClick(); }},
      {"MMF_NewMidifile", [](TMainForm& f) { f.MMF_NewMidifileClick(); }},
      {"MMF_SaveMidifile", [](TMainForm& f) { f.MMF_SaveMidifileClick(); }},
      {"MMF_SaveFileAsFormat0", [](TMainForm& f) { f.SaveAs(0); }},
      {"MMF_SaveFileAsFormat1", [](TMainForm& f) { f.SaveAs(1); }},
      {"MME_Undo", [](TMainForm& f) { f.MME_UndoClick(); }},
      {"MME_ListEditor", [](TMainForm& f) { f.MME_ListEditorClick(); }},
      {"MME_TempoEditor", [](TMainForm& f) { f.MME_TempoEditorClick(); }},
      {"MMV_Controllers", [](TMainForm& f) { f.windows->Toggle(ToolWindow::Controllers); }},
      {"MME_AutoRevoicer", [](TMainForm& f) { f.windows->Toggle(ToolWindow::Revoicer); }},
      {"MME_VirtualKeyboard", [](TMainForm& f) { f.windows->Toggle(ToolWindow::Keyboard); }},
      {"MMV_Sounds", [](TMainForm& f) { f.windows->Toggle(ToolWindow::Sounds); }},
      {"MMV_Lyrics", [](TMainForm& f) { f.ToggleLyrics(); }},
      {"MMV_Effects", [](TMainForm& f) { f.ToggleEffects(); }},
      {"MMV_Light", [](TMainForm& f) { f.ToggleTheme(); }},
      {"MMS_Scale100", [](TMainForm& f) { f.SetScaleClick(100); }},
      {"MMS_Scale120", [](TMainForm& f) { f.SetScaleClick(120); }},
      {"MMS_Scale130", [](TMainForm& f) { f.SetScaleClick(130); }},
      {"MMS_Scale150", [](TMainForm& f) { f.SetScaleClick(150); }},
      {"MMS_Scale160", [](TMainForm& f) { f.SetScaleClick(160); }},
      {"MMS_Scale180", [](TMainForm& f) { f.SetScaleClick(180); }},
      {"MMH_Manual", [](TMainForm& f) { f.OpenManual(); }},
      {"MMH_Updates", [](TMainForm& f) { f.CheckForUpdates(); }},
      {"MMH_AssocWithMID", [](TMainForm& f) { f.Associate(); }},
  };
  const auto found = handlers.find(name);
  if (found != handlers.end()) found->second(*this);
  UpdateMenu();
}

void TMainForm::UpdateMenu() {
  menu->SetState({.SongLoaded = p.work.desk.song.MidiFileLoaded, .Playing = p.work.desk.IsPlaying()});
  QAction& undo = menu->Entry("MME_Undo");
  const bool ofList = p.work.eventEdits.CanUndo();
  undo.setText(ToQt(ofList ? p.work.eventEdits.UndoText() : p.work.undo.MenuText()));
  menu->Forbid("MME_Undo", ofList || p.work.undo.IsEnabled()
                               ? QString()
                               : QText("Es gibt keinen Befehl, der zurückzunehmen wäre",
                                       "There is no command to take back"));
  menu->Forbid("MMH_Manual", p.manual.empty() ? QText("Die Bedienungsanleitung ist nicht installiert",
                                                      "The manual is not installed")
                                              : QString());
  const auto check = [this](std::string_view name, bool on) {
    menu->Entry(name).setCheckable(true);
    menu->Entry(name).setChecked(on);
  };
  check("MMV_Light", th().kind == ThemeKind::Light);
  check("MMV_Lyrics", p.work.desk.settings.ShowLyrics);
  check("MMV_Effects", showEffects);
  check("MMV_Controllers", windows->IsShown(ToolWindow::Controllers));
  check("MMV_Sounds", windows->IsShown(ToolWindow::Sounds));
  check("MME_AutoRevoicer", windows->IsShown(ToolWindow::Revoicer));
  check("MME_VirtualKeyboard", windows->IsShown(ToolWindow::Keyboard));
  UpdateScaleMenu();
}

void TMainForm::UpdateScaleMenu() {
  const QScreen* const on = screen() != nullptr ? screen() : QGuiApplication::primaryScreen();
  for (const int percent : WindowScales) {
    const std::string name = "MMS_Scale" + std::to_string(percent);
    QAction& entry = menu->Entry(name);
    entry.setCheckable(true);
    entry.setChecked(percent == metrics().percent);
    const QSize least = QSize(LeastWidth, LeastHeight) * percent / 100;
    const bool fits = on == nullptr || (least.width() <= on->availableGeometry().width() &&
                                        least.height() <= on->availableGeometry().height());
    menu->Forbid(entry.objectName().toLatin1().constData(),
                 fits || percent == 100 ? QString() : QText("Bildschirm zu klein", "Screen too small"));
  }
}

void TMainForm::UpdateRecentMenu() {
  QMenu& recent = menu->Submenu("MMF_OpenRecent");
  recent.clear();
  int number = 0;
  for (const std::string& file : p.work.recent.Names()) {
    QString caption = ToQt(FileNameOf(file)).replace(QLatin1Char('&'), QLatin1String("&&"));
    QAction* const entry = recent.addAction(QStringLiteral("&%1  %2").arg(++number).arg(caption));
    entry->setObjectName(QStringLiteral("MMF_Midifile%1").arg(number));
    entry->setToolTip(ToQt(file));
    connect(entry, &QAction::triggered, this, [this, file] { MMF_Midifile1Click(file); });
  }
  recent.setEnabled(number > 0);
  recent.menuAction()->setToolTip(
      number > 0 ? QStringLiteral(" ")
                 : QText("Es war noch kein Song geöffnet", "No song has been open yet"));
}

}  // namespace Sonarello
