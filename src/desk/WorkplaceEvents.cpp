// What the event list and the controller overview ask of the desk, and what they tell it.
#include <algorithm>

#include "desk/Workplace.h"

namespace Sonarello {

void Workplace::TellEvents() {
  // An undo would bring back events into a song that others have changed meanwhile.
  eventEdits.ClearBackupedData();
  if (EventsChanged) EventsChanged();
}

void Workplace::TellOwnTimes() {
  tellsOwnTimes = true;
  desk.strips.Position.SignaturesChanged();
  desk.Tell([](SongObserver& o) { o.TimesChanged(); });
  tellsOwnTimes = false;
}

/// A control of the desk has moved an event: it would jump back if the list took back an older edit.
void Workplace::EventChanged(PtrMidiEvent event, bool) {
  if (eventEdits.TakesBack(event)) eventEdits.ClearBackupedData();
}

void Workplace::WireEvents() {
  eventRows.Hooks.PatchName = [this](int channel) { return desk.names.CurrentName(channel); };
  eventRows.Hooks.TimePosition = [this] { return desk.Player().TimePosition.load(); };
  eventRows.Hooks.ShowPlayed = [this](int track) {
    const auto held = desk.gate.Enter();
    desk.Player().ShownTrack = track;
    desk.Player().ShownListPos = -1;
  };
  eventRows.Texts.Hooks.ProgramChangeName = [this](int channel, const TAddress& address) {
    return desk.names.ProgramChangeName(channel, address);
  };
  desk.redirection.Hooks.ShowTracks = [this](int, int) { TellEvents(); };
}

void Workplace::WireEventEdits() {
  TEventEditHooks& told = eventEdits.Hooks;
  told.IsPlaying = [this] { return desk.IsPlaying(); };
  told.StopButtonClick = [this] { desk.StopButtonClick(); };
  told.Changed = [this] { desk.Changed(); };
  told.EndNotes = [this](int channel) {
    const auto c = static_cast<std::size_t>(channel);
    desk.Player().EndNotesHeld(desk.song.MidiOutIndex[c], desk.realtime.Realtime[c].MidiChannel);
  };
  told.ForgetEvent = [this](PtrMidiEvent event) {
    for (auto* const banks : {&desk.Player().LastCtrl00, &desk.Player().LastCtrl32})
      std::ranges::replace(*banks, event, nullptr);
  };
  told.ChangeTimes = [this](const std::function<void()>& change) {
    desk.strips.Tempo.ChangeTimes(change);
  };
  told.ReadAndShowLyrics = [this] {
    lyrics.ReadAndShowLyrics(desk.song);
    if (LyricsChanged) LyricsChanged();
  };
  told.TimesChanged = [this] {
    // What stands in the song's tempi now is its own, an offset that was on them included.
    desk.strips.Tempo.SongChanged();
    TellOwnTimes();
  };
  told.KeySignaturesChanged = [this] { TellOwnTimes(); };
  told.SysexsChanged = [this] { ReadEffects(); };
  told.ReadFirstValues = [this] { desk.strips.ReadFirstValues(); };
  told.ShowController = [this](int channel, int controller) {
    const int value = desk.strips.Moves.ValueOf(channel, controller);
    desk.Tell([=](SongObserver& o) { o.ControllerChanged(channel, controller, value); });
  };
  told.DisplayPatchName = [this](int channel) {
    desk.Tell([channel](SongObserver& o) { o.SoundChanged(channel); });
  };
  told.NotesChanged = [this](int channel) {
    desk.Tell([channel](SongObserver& o) { o.StripChanged(channel); });
  };
  told.UndoChanged = [this] {
    if (UndoChanged) UndoChanged();
  };
}

void Workplace::WireControllers() {
  controllers.Hooks.PatchName = eventRows.Hooks.PatchName;
  controllers.Hooks.EventInserted = [this](int) { TellEvents(); };
}

}  // namespace Sonarello
