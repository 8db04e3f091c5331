// The main window's commands on files.
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QMimeData>

#include "app/controls/QtText.h"
#include "app/desk/FileNames.h"
#include "app/desk/InfoForms.h"
#include "app/desk/MainForm.h"
#include "app/desk/NewMidiDataForm.h"
#include "app/desk/ToolWindows.h"
#include "app/panels/Banner.h"
#include "app/panels/DropCard.h"
#include "app/panels/StatusBar.h"
#include "core/Texts.h"
#include "desk/SongProperties.h"
#include "desk/Startup.h"

namespace Sonarello {

namespace {

QString MidiFilter() {
  return QText("MIDI-Dateien (*.mid *.MID *.midi *.kar);;Alle Dateien (*)",
               "MIDI files (*.mid *.MID *.midi *.kar);;All files (*)");
}

/// The file of a drop that can be opened, or an empty path.
std::string DroppedFile(const QMimeData& data) {
  for (const QUrl& url : data.urls()) {
    const QString name = url.toLocalFile();
    if (!name.isEmpty() && QFileInfo(name).isFile()) return PathOf(name);
  }
  return {};
}

}  // namespace

bool TMainForm::ReadAside(const std::function<bool()>& read) {
  if (busy) return false;
  busy = true;
  DisplayTimer.stop();
  SlidersTimer.stop();
  windows->Freeze(true);
  p.aside.Restart();
  p.messages.Work.Begin(QText("Song wird geöffnet", "Opening song"), false);
  const bool opened = RunAside(read, [this] { p.messages.Work.Report(p.aside.Done()); });
  p.messages.Work.End();
  busy = false;
  windows->Freeze(false);
  return opened;
}

bool TMainForm::ReadSong(const std::string& file, const TNewSong* wishes) {
  Desk& desk = p.work.desk;
  EndWind();
  desk.LeaveSong();
  const bool opened = ReadAside([&] { return desk.ReadSong(file, wishes); });
  desk.ShowSong();
  // A song that stayed, as the file was refused, was stopped.
  ShowLevels(false);
  ShowTransport();
  ShowPosition();
  p.work.SongOpened(opened);
  if (!opened) ShowEditors();
  if (opened && p.work.desk.settings.AutoShowEventEditor) MME_ListEditorClick();
  return opened;
}

bool TMainForm::OpenFile(const std::string& file) {
  if (busy || !MayLeaveSong() || !ReadSong(file)) return false;
  Status(QText("Geöffnet", "Opened"));
  return true;
}

void TMainForm::MMF_OpenMidifileClick() {
  const std::string& last = p.work.desk.settings.SourcePath;
  const QString folder = NameOf(last.empty() ? p.documents : last);
  const QString name = AskOpenName
                           ? AskOpenName(folder)
                           : QFileDialog::getOpenFileName(
                                 this, QText("Midifile öffnen", "Open midifile"), folder, MidiFilter());
  if (!name.isEmpty()) OpenFile(PathOf(name));
}

void TMainForm::MMF_Midifile1Click(const std::string& file) {
  if (OpenFile(file) || QFileInfo::exists(NameOf(file))) return;
  p.work.ForgetRecent(file);
}

void TMainForm::MMF_NewMidifileClick() {
  if (busy || !MayLeaveSong()) return;
  TNewMidiDataForm wishes(this);
  if (wishes.exec() != QDialog::Accepted) return;
  const TNewSong song = wishes.Wishes();
  ReadSong({}, &song);
}

void TMainForm::MMF_PropertiesClick() {
  TPropertiesForm(SongProperties(p.work.desk.song, p.work.desk.NoteCheck()), this).exec();
}

void TMainForm::MMF_SaveMidifileClick() {
  const Song& song = p.work.desk.song;
  if (song.MidiFileName.empty()) return SaveAs(song.MidiFileFormat);
  if (p.work.SaveMidiFile(song.MidiFileName, song.MidiFileFormat))
    Status(QText("Gespeichert", "Saved"));
}

void TMainForm::SaveAs(int format) {
  const Song& song = p.work.desk.song;
  if (!song.MidiFileLoaded) return;
  const std::string& last = p.work.desk.settings.DestPath;
  std::string suggestion = last.empty() ? p.documents : last;
  suggestion += "/" + (song.MidiFileName.empty() ? Text("Neuer Song.mid", "New song.mid")
                                                 : FileNameOf(song.MidiFileName));
  QString name = AskSaveName
                     ? AskSaveName(NameOf(suggestion))
                     : QFileDialog::getSaveFileName(this, QText("Midifile speichern", "Save midifile"),
                                                    NameOf(suggestion), MidiFilter());
  if (name.isEmpty()) return;
  if (QFileInfo(name).suffix().isEmpty()) {
    name += QLatin1String(".mid");
    // The dialog has not asked about the name that it becomes.
    if (QFileInfo::exists(name) &&
        !p.messages.Ask(
            Text("Es existiert bereits eine Datei mit diesem Namen!\rWollen Sie diese Datei "
                 "überschreiben?",
                 "There is a file with the same name!\rDo you want to overwrite it?")))
      return;
  }
  const std::string file = PathOf(name);
  if (!p.work.SaveMidiFile(file, format)) return;
  p.work.desk.settings.DestPath = PathOf(QFileInfo(name).absolutePath());
  Status(QText("Gespeichert", "Saved"));
}

bool TMainForm::MayLeaveSong() {
  const Desk& desk = p.work.desk;
  if (!p.confirmSave || !desk.song.MidiFileLoaded || !desk.IsModified()) return true;
  const std::string name = desk.song.MidiFileName.empty()
                               ? Text("Der neue Song", "The new song")
                               : "\"" + FileNameOf(desk.song.MidiFileName) + "\"";
  if (!p.messages.Ask(name + Text(" wurde geändert.\rSollen die Änderungen gespeichert werden?",
                                  " was changed.\rShould the changes be saved?"),
                      QText("Speichern", "Save"), QText("Nicht speichern", "Don't save")))
    return p.messages.Ask(Text("Die Änderungen gehen verloren.", "The changes will be lost."),
                          QText("Verwerfen", "Discard"), QText("Abbrechen", "Cancel"));
  MMF_SaveMidifileClick();
  return !desk.IsModified();
}

void TMainForm::OfferRecovery() {
  while (const auto offer = p.work.recovery.OfferRecovery()) {
    const bool wanted = p.messages.Ask(RecoveryQuestion(*offer));
    p.work.recovery.Answered(*offer);
    if (!wanted || !OpenFile(offer->BackupPath)) continue;
    // The backup is another file than the song: saving asks for a name, and leaving for a save.
    p.work.desk.song.MidiFileName = offer->SongPath;
    p.work.desk.Changed();
    ShowFile();
    AutoloadFileName.clear();
    return;
  }
}

void TMainForm::SetupTimerTimer() {
  SetupTimer.stop();
  p.work.desk.StartAudio();
  ShowComplaints();
}

void TMainForm::AutoloadTimerTimer() {
  if (!AllFormsCreated || !p.work.desk.MidiDriverReady()) return;
  AutoloadTimer.stop();
  OfferRecovery();
  if (!AutoloadFileName.empty()) {
    if (QFileInfo(NameOf(AutoloadFileName)).isFile())
      OpenFile(PathOf(QFileInfo(NameOf(AutoloadFileName)).absoluteFilePath()));
    else
      p.messages.Show(Text("Diese Datei gibt es nicht: ", "There is no such file: ") +
                      AutoloadFileName);
  }
}

void TMainForm::closeEvent(QCloseEvent* event) {
  if (busy) return event->ignore();
  // A sound that was only tried out is no change to save.
  p.work.browser.Btn_CancelClick();
  const bool modified = p.work.desk.song.MidiFileLoaded && p.work.desk.IsModified();
  if (p.work.desk.settings.ConfirmTerminate && !modified &&
      !p.messages.Ask(TerminateQuestion(), QText("Beenden", "Quit"), QText("Abbrechen", "Cancel")))
    return event->ignore();
  if (!MayLeaveSong()) return event->ignore();
  if (p.work.desk.IsPlaying()) StopClick();
  StoreWindows();
  windows->HideAll();
  p.work.Close();
  event->accept();
}

void TMainForm::dragEnterEvent(QDragEnterEvent* event) {
  if (busy || DroppedFile(*event->mimeData()).empty()) return;
  event->acceptProposedAction();
  card->SetDragging(true);
}

void TMainForm::dragLeaveEvent(QDragLeaveEvent*) { card->SetDragging(false); }

void TMainForm::dropEvent(QDropEvent* event) {
  card->SetDragging(false);
  const std::string file = DroppedFile(*event->mimeData());
  if (file.empty()) return;
  event->acceptProposedAction();
  // The drag ends before a dialog may open.
  QTimer::singleShot(0, this, [this, file] { OpenFile(file); });
}

}  // namespace Sonarello
