#include "desk/SoundBrowserJournal.h"

#include <algorithm>

#include "core/EventList.h"

namespace Sonarello {

namespace {

constexpr std::size_t BankMSB = 0;
constexpr std::size_t BankLSB = 32;

/// Calls f(track, event) for each event of the song.
template <class F>
void ForEachOfSong(Song& song, F&& f) {
  for (TMyTrack& track : song.MidiTrack)
    for (PtrMidiEvent e = track.TrkFirstEvent; e != nullptr;) {
      PtrMidiEvent next = Following(e);
      f(track, e);
      e = next;
    }
}

}  // namespace

void TSoundJournal::Begin(int c) {
  channel = c;
  entries.clear();
  inserted.clear();
}

void TSoundJournal::Touch(PtrMidiEvent event, int controller, int deskValue) {
  const bool known = std::ranges::any_of(entries, [&](const TEntry& entry) {
    return entry.Event == event && entry.Controller == controller;
  });
  if (known) return;
  TEntry entry{.Event = event, .Controller = controller, .DeskValue = deskValue};
  if (event != nullptr) {
    entry.Command = event->Command;
    entry.Position = event->Position;
    entry.Value = event->Value;
    entry.DLength = event->DLength;
  }
  entries.push_back(entry);
}

void TSoundJournal::TouchController(int controller) {
  const TCtrl& entry =
      song.MidiData[static_cast<std::size_t>(channel)].CtrlArray[static_cast<std::size_t>(controller)];
  Touch(entry.Event, controller, entry.Value);
}

void TSoundJournal::TouchProgram() {
  const TMidiChannelData& data = song.MidiData[static_cast<std::size_t>(channel)];
  Touch(data.PatchEvent, Program, data.Patch);
}

bool TSoundJournal::StillIs(const TEntry& entry, const TypMidiEvent& event) const {
  if (event.Command != entry.Command || event.Position != entry.Position) return false;
  return entry.Controller == Program || event.Value[0] == entry.Controller;
}

bool TSoundJournal::IsChanged() const {
  if (HasInserted()) return true;
  bool changed = false;
  ForEachOfSong(song, [&](const TMyTrack&, PtrMidiEvent e) {
    for (const TEntry& entry : entries)
      if (entry.Event == e && (entry.Value != e->Value || entry.DLength != e->DLength)) changed = true;
  });
  return changed;
}

void TSoundJournal::RestoreDesk(const TEntry& entry) {
  TMidiChannelData& data = song.MidiData[static_cast<std::size_t>(channel)];
  if (entry.Controller == Program) {
    if (data.PatchEvent == entry.Event) data.Patch = static_cast<std::int8_t>(entry.DeskValue);
    return;
  }
  TCtrl& controller = data.CtrlArray[static_cast<std::size_t>(entry.Controller)];
  if (controller.Event == entry.Event) controller.Value = static_cast<std::uint8_t>(entry.DeskValue);
}

void TSoundJournal::RestoreEntry(const TEntry& entry) {
  entry.Event->Value = entry.Value;
  entry.Event->DLength = entry.DLength;
  RestoreDesk(entry);
}

void TSoundJournal::Restore() {
  for (const TEntry& entry : entries)
    if (entry.Event == nullptr) RestoreDesk(entry);
  // The walk tells which of the events are still there; a pointer alone would not.
  ForEachOfSong(song, [&](const TMyTrack&, PtrMidiEvent e) {
    for (const TEntry& entry : entries)
      if (entry.Event == e && StillIs(entry, *e)) RestoreEntry(entry);
  });
}

bool TSoundJournal::RestoreAll() {
  Restore();
  std::vector<TRemoval> removals;
  ForEachOfSong(song, [&](TMyTrack& track, PtrMidiEvent e) {
    if (std::ranges::find(inserted, e) != inserted.end()) removals.push_back({&track, e});
  });
  RemoveBatch(song, removals);
  inserted.clear();
  if (removals.empty()) return false;
  RestoreDeskSound();
  return true;
}

/// The desk had lost its way to what went out; it finds back to what it knew before.
void TSoundJournal::RestoreDeskSound() {
  const PtrMidiEvent known[] = {before.BankMSB.Event, before.BankLSB.Event, before.PatchEvent};
  std::array<bool, std::size(known)> isThere{};
  ForEachOfSong(song, [&](const TMyTrack&, PtrMidiEvent e) {
    for (std::size_t i = 0; i < std::size(known); ++i) isThere[i] = isThere[i] || known[i] == e;
  });
  TMidiChannelData& data = song.MidiData[static_cast<std::size_t>(channel)];
  if (data.CtrlArray[BankMSB].Event == nullptr)
    data.CtrlArray[BankMSB] = isThere[0] ? before.BankMSB : TCtrl{nullptr, before.BankMSB.Value};
  if (data.CtrlArray[BankLSB].Event == nullptr)
    data.CtrlArray[BankLSB] = isThere[1] ? before.BankLSB : TCtrl{nullptr, before.BankLSB.Value};
  if (data.PatchEvent == nullptr) {
    data.PatchEvent = isThere[2] ? before.PatchEvent : nullptr;
    data.Patch = before.Patch;
  }
}

void TSoundJournal::BeginInsertion() {
  if (HasInserted()) return;
  const TMidiChannelData& data = song.MidiData[static_cast<std::size_t>(channel)];
  before = {data.CtrlArray[BankMSB], data.CtrlArray[BankLSB], data.PatchEvent, data.Patch};
}

}  // namespace Sonarello
