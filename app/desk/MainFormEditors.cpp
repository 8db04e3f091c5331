// The editors' windows: opened, and told what happens to the song.
#include <QFileInfo>

#include "app/controls/QtText.h"
#include "app/desk/MainForm.h"
#include "app/desk/ToolWindows.h"
#include "app/editors/ControllerForm.h"
#include "app/editors/EventListForm.h"
#include "core/EventList.h"

namespace Sonarello {

namespace {

constexpr int MasterTrack = 0;
constexpr int AllEvents = 0, MetaEvents = 8;  ///< entries of the filter list
constexpr int AnyTrack = -1;

}  // namespace

void TMainForm::BuildEditors() {
  Workplace& work = p.work;
  eventListForm = std::make_unique<TEventListForm>(work.eventRows, work.eventEdits, p.messages, this);
  controllerForm = std::make_unique<TControllerForm>(work.controllers, this);
  windows->Add(ToolWindow::Events, *eventListForm, "EventList",
               QSize(TEventListForm::UsualWidth, TEventListForm::UsualHeight));
  windows->Add(ToolWindow::Controllers, *controllerForm, "Controller",
               QSize(TControllerForm::UsualWidth, TControllerForm::UsualHeight));
  work.EventsChanged = [this] { eventListForm->UpdateDisplayedEvents(); };
  work.LeavingSong = [this] { eventListForm->LeaveSong(); };
  connect(controllerForm.get(), &TControllerForm::channelTouched, this,
          [this](int channel) { p.work.desk.strips.Desk.SetMidiChannel(channel); });
}

int TMainForm::TrackOfSelected() const {
  const Song& song = p.work.desk.song;
  if (song.MidiFileFormat == 0) return song.ActiveMidiIndex + 1;
  const int track = TrackOfChannel(song, song.ActiveMidiIndex);
  return track > MasterTrack ? track : MasterTrack;
}

/// Notes and chords by the names of the user's choice.
void TMainForm::ShowNoteNames() {
  p.work.eventRows.Texts.UseGermanChords = p.work.desk.settings.UseGermanChords;
  eventListForm->ShowValues();
}

/// Behind a song that was opened, or that stayed.
void TMainForm::ShowEditors() {
  const Song& song = p.work.desk.song;
  const QString file = song.MidiFileLoaded ? QFileInfo(ToQt(song.MidiFileName)).fileName() : QString();
  ShowNoteNames();
  if (song.MidiFileLoaded)
    eventListForm->ShowSong(file, TrackOfSelected());
  else
    eventListForm->LeaveSong();
  controllerForm->ShowController();
}

void TMainForm::ShowEventList(int track, int filter) {
  if (!p.work.desk.song.MidiFileLoaded) return p.messages.Show(TControllerOverview::NoSongText());
  windows->Show(ToolWindow::Events);
  if (track != AnyTrack) eventListForm->ShowTrack(track, filter);
  eventListForm->SyncDisplayToMidiPosition();
}

void TMainForm::MME_ListEditorClick() { ShowEventList(AnyTrack, AllEvents); }

void TMainForm::MME_TempoEditorClick() { ShowEventList(MasterTrack, MetaEvents); }

/// The list's last edit is younger than what a tool has kept: a tool ends it.
void TMainForm::MME_UndoClick() {
  if (!p.work.eventEdits.CanUndo()) {
    p.work.undo.Undo();
    return;
  }
  if (windows->IsShown(ToolWindow::Events)) return eventListForm->PM_UndoClick();
  p.work.eventEdits.PM_UndoClick();
}

void TMainForm::EventChanged(PtrMidiEvent, bool becameReal) {
  if (becameReal)
    eventListForm->UpdateDisplayedEvents();
  else
    eventListForm->ShowValues();
}

}  // namespace Sonarello
