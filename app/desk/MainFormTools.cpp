// The windows beside the main window: made once, and what they report.
#include "app/adapters/UpdateCheck.h"
#include "app/controls/QtText.h"
#include "app/desk/MainForm.h"
#include "app/desk/ToolWindows.h"
#include "app/desk/VelocityEditor.h"
#include "app/instruments/AutoRevoicerForm.h"
#include "app/instruments/PatchesForm.h"
#include "app/instruments/SoundBrowserForm.h"
#include "app/options/OptionsForm.h"
#include "app/panels/WindowSwitches.h"
#include "app/playback/VirtualKeysForm.h"

namespace Sonarello {

void TMainForm::BuildWindows() {
  optionsForm = std::make_unique<TOptionsForm>(p.store, this);
  connect(optionsForm.get(), &TOptionsForm::OptionsChanged, this, &TMainForm::ApplyOptions);
  revoicerForm = std::make_unique<TAutoRevoicerForm>(p.work.revoicerDesk, this);
  patchesForm = std::make_unique<TPatchesForm>(p.work.overview, this);
  browserForm = std::make_unique<TSoundBrowserForm>(p.work.browser, this);
  keysForm = std::make_unique<TVirtualKeysForm>(p.work.desk.keys, this);
  velocityEditor = std::make_unique<VelocityEditor>(p.work.desk.strips.Velocities, this);
  connect(velocityEditor.get(), &VelocityEditor::rangeChanged, this,
          [this](int channel) { ShowStrip(channel); });
  updates = std::make_unique<UpdateCheck>(SONARELLO_VERSION);
  connect(updates.get(), &UpdateCheck::Finished, this, [this](const TUpdateResult& result) {
    menu->Forbid("MMH_Updates", QString());
    TellUpdate(result, p.messages, [this](const std::string& page) {
      return OpenUrl ? OpenUrl(ToQt(page)) : OpenWebPage(page);
    });
  });
  windows = new ToolWindows(p.store, this);
  windows->Add(ToolWindow::Sounds, *patchesForm, "Patch", QSize(560, 520));
  windows->Add(ToolWindow::Revoicer, *revoicerForm, "Revoicer", QSize(720, 480));
  windows->Add(ToolWindow::Keyboard, *keysForm, "VirtualKeys", QSize(880, 150));
  BuildEditors();
  connect(windows, &ToolWindows::shownChanged, this, &TMainForm::UpdateSwitches);
}

void TMainForm::UpdateSwitches() {
  const QString noSong = QText("Erst einen Song öffnen", "Open a song first");
  const bool song = p.work.desk.song.MidiFileLoaded;
  switches->SetView(DeskWindow::Sounds, {.shown = windows->IsShown(ToolWindow::Sounds),
                                         .reason = song ? QString() : noSong});
  switches->SetView(DeskWindow::Keyboard,
                    {.shown = windows->IsShown(ToolWindow::Keyboard), .reason = {}});
  const auto later = [this](DeskWindow window, const QString& reason) {
    switches->SetView(window, {.shown = false, .reason = reason});
  };
  switches->SetView(DeskWindow::Controllers, {.shown = windows->IsShown(ToolWindow::Controllers),
                                              .reason = song ? QString() : noSong});
  switches->SetView(DeskWindow::Events, {.shown = windows->IsShown(ToolWindow::Events),
                                         .reason = song ? QString() : noSong});
  later(DeskWindow::KeyEditor, QText("Der Key-Editor gehört noch nicht zu dieser Version",
                                     "The key editor is not part of this version yet"));
  later(DeskWindow::Drums, QText("Die Drum-Editoren gehören noch nicht zu dieser Version",
                                 "The drum editors are not part of this version yet"));
  later(DeskWindow::Lyrics, QText("Das Liedtext-Fenster gehört noch nicht zu dieser Version",
                                  "The lyrics window is not part of this version yet"));
  UpdateMenu();
}

}  // namespace Sonarello
