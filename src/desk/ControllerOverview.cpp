#include "desk/ControllerOverview.h"

#include <algorithm>

#include "core/EventList.h"
#include "core/Texts.h"
#include "desk/SoundBrowserInsertion.h"
#include "editors/EventTexts.h"

namespace Sonarello {

namespace {

constexpr int Greatest = 127;

/// Bank selects, data entry with its numbers, and the channel modes mean nothing by one value of their
/// own.
bool IsOfOthers(int controller) {
  constexpr int others[] = {0, 6, 32, 38, 96, 97, 98, 99, 100, 101};
  constexpr int firstMode = 120;
  return controller >= firstMode || std::ranges::find(others, controller) != std::end(others);
}

std::size_t Index(int number) { return static_cast<std::size_t>(number); }

}  // namespace

std::vector<int> TControllerOverview::Choices() {
  std::vector<int> choices;
  for (const std::uint8_t number : NamedControllers())
    if (!IsOfOthers(number)) choices.push_back(number);
  return choices;
}

std::string TControllerOverview::ChoiceText(int controller) {
  return std::string(ControllerName(controller)) + " · CC " + std::to_string(controller);
}

std::string TControllerOverview::NoSongText() {
  return Text("Bitte öffnen Sie ein Midifile.", "Please open a midi file.");
}

void TControllerOverview::SetController(int number) {
  const std::vector<int> choices = Choices();
  if (std::ranges::find(choices, number) == choices.end()) return;
  controller = number;
  CallHook(Hooks.ShowController);
}

PtrMidiEvent TControllerOverview::FirstEvent(int channel) const {
  return strips.Desk.song.FirstControllers[Index(channel)][Index(controller)];
}

TMyTrack* TControllerOverview::TrackFor(int channel) const {
  Song& song = strips.Desk.song;
  if (!strips.Desk.IsActive(channel)) return nullptr;
  const int own = TrackOfChannel(song, channel);
  const auto takes = [&](const TMyTrack& track) {
    return !track.TrkIgnore && track.TrkFirstEvent != nullptr &&
           (song.MidiFileFormat == 0 || track.TrkMidiIndex == ChannelCount);
  };
  if (own >= 0 && !song.MidiTrack[Index(own)].TrkIgnore) return &song.MidiTrack[Index(own)];
  const auto found = std::ranges::find_if(song.MidiTrack, takes);
  return found == song.MidiTrack.end() ? nullptr : &*found;
}

TControllerColumn TControllerOverview::Column(int channel) const {
  TControllerColumn column;
  column.Strip = strips.View(channel);
  column.Value = DefaultControllerValue(controller);
  const Song& song = strips.Desk.song;
  if (song.MidiFileLoaded && Hooks.PatchName && column.Strip.Active)
    column.Name = Hooks.PatchName(channel);
  {
    const auto held = strips.Desk.gate.Enter();
    const PtrMidiEvent first = song.MidiFileLoaded ? FirstEvent(channel) : nullptr;
    column.InSong = first != nullptr && first->DLength != 0;
    column.CanInsert = first != nullptr || (song.MidiFileLoaded && TrackFor(channel) != nullptr);
    if (column.InSong) {
      column.Value = first->Value[1];
      column.Position = TicksToStr(song, first->Position);
    }
  }
  column.Shown = ShownControllerValue(controller, column.Value);
  return column;
}

bool TControllerOverview::MidiCh00_CtrlValueChange(int channel, int value) {
  if (!strips.Desk.song.MidiFileLoaded || !TStripsDesk::IsChannel(channel) || value < 0 ||
      value > Greatest)
    return false;
  if (FirstEvent(channel) == nullptr && !InsertFirst(channel, value)) return false;
  ChangeFirst(channel, FirstEvent(channel), value);
  CallHook(Hooks.ShowController);
  return true;
}

/// The event stands behind the setup of the instrument, where the desk's own controllers stand, but in
/// front of the channel's notes.
bool TControllerOverview::InsertFirst(int channel, int value) {
  Song& song = strips.Desk.song;
  TMyTrack* const track = TrackFor(channel);
  if (track == nullptr) return false;
  constexpr std::int32_t setup = 20;  // ticks behind the first beat
  std::int32_t tick = song.SourceTimeBase + setup;
  if (const auto note = FirstNoteOf(song, channel)) tick = std::min(tick, *note - 1);
  tick = std::clamp(tick, 0, std::max(song.MaxSongPosition - SongTail, 0));
  {
    const auto held = strips.Desk.gate.Enter();
    const PtrMidiEvent event =
        NewChannelEvent(song.Pool, static_cast<std::uint8_t>(Status::Controller | channel),
                        static_cast<std::uint8_t>(controller), static_cast<std::uint8_t>(value), tick);
    event->TimePosition = TimeOfPosition(song, tick);
    InsertByPosition(*track, event);
    song.FirstControllers[Index(channel)][Index(controller)] = event;
    TCtrl& entry = strips.Desk.Data(channel).CtrlArray[Index(controller)];
    if (entry.Event == nullptr) entry.Event = event;
  }
  CallHook(Hooks.EventInserted, channel);
  return true;
}

void TControllerOverview::ChangeFirst(int channel, PtrMidiEvent first, int value) {
  const bool inForce = strips.Desk.Data(channel).CtrlArray[Index(controller)].Event == first;
  if (inForce) return strips.Moves.ControllerChange(channel, controller, value);
  // Another event is in force where the song stands. It keeps its value and comes back with it; what
  // is heard meanwhile is the fader.
  bool becameReal = false;
  {
    const auto held = strips.Desk.gate.Enter();
    first->Value[1] = static_cast<std::uint8_t>(value);
    becameReal = first->DLength == 0;
    first->DLength = MessageLength(Status::Controller);
    strips.Desk.Data(channel).CtrlArray[Index(controller)].Value = static_cast<std::uint8_t>(value);
  }
  const TStripsHooks& told = strips.Desk.Hooks;
  CallHook(told.ShowController, channel, controller, value);
  CallHook(told.Changed);
  strips.Moves.Send(channel, controller, value);
  CallHook(told.EventChanged, first, becameReal);
}

}  // namespace Sonarello
