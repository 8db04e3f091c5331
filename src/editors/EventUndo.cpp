#include "editors/EventUndo.h"

#include <algorithm>
#include <functional>

namespace Sonarello {

namespace {

/// Calls f(number, PtrMidiEvent&) for every reference but those of the key signatures, whose number
/// changes with the song.
template <class F>
void ForEachFixedReference(Song& song, F&& f) {
  std::vector<TKeySignArray> keys;
  keys.swap(song.KeySignArray);
  std::size_t number = 0;
  song.ForEachReference([&](PtrMidiEvent& e) { f(number++, e); });
  keys.swap(song.KeySignArray);
}

}  // namespace

TKeySignArray* TEventUndo::Keys() const noexcept {
  const auto index = static_cast<std::size_t>(number);
  return number >= 0 && index < song.KeySignArray.size() ? &song.KeySignArray[index] : nullptr;
}

void TEventUndo::Begin(std::string what, TMyTrack& edited, int trackNumber) {
  Discard();
  ++steps;
  track = &edited;
  number = trackNumber;
  rest = {};
  for (std::size_t c = 0; c < ChannelCount; ++c) {
    rest.Active[c] = song.MidiData[c].Active;
    rest.ActiveNotes[c] = song.MidiData[c].ActiveNotes;
  }
  if (const TKeySignArray* keys = Keys()) rest.Keys = *keys;
  rest.TrkName = edited.TrkName;
  rest.TrkNoteOnCnt = edited.TrkNoteOnCnt;
  rest.TrkMidiIndex = edited.TrkMidiIndex;
  rest.TrkIgnore = edited.TrkIgnore;
  rest.XF_Track = song.XF_Track;
  rest.XF_ChordsArrayElements = song.XF_ChordsArrayElements;
  rest.XF_Format = song.XF_Format;
  name = std::move(what);
}

void TEventUndo::WillChange(PtrMidiEvent event) {
  entries.push_back({What::Changed, event, event->PrevEvent, *event});
}

void TEventUndo::Inserted(PtrMidiEvent event) {
  entries.push_back({What::Inserted, event, nullptr, {}});
}

void TEventUndo::Remove(const std::vector<PtrMidiEvent>& events) {
  entries.reserve(entries.size() + events.size());
  ForgetReferences(events);
  for (PtrMidiEvent event : events) {
    entries.push_back({What::Removed, event, event->PrevEvent, {}});
    if (track->TrkPlayEvent == event) track->TrkPlayEvent = event->NextEvent;
    if (track->TrkLoopStart == event) track->TrkLoopStart = event->PrevEvent;
    Unlink(*track, event);
  }
}

void TEventUndo::ForgetReferences(const std::vector<PtrMidiEvent>& events) {
  const auto goes = [&](PtrMidiEvent e) {
    return e != nullptr && std::ranges::binary_search(events, e, std::less<>());
  };
  ForEachFixedReference(song, [&](std::size_t n, PtrMidiEvent& e) {
    if (!goes(e)) return;
    rest.References.emplace_back(n, e);
    e = nullptr;
  });
  for (TKeySignArray& keys : song.KeySignArray) {
    std::erase_if(keys.ValArray, [&](const TKeySigns& key) { return goes(key.MidiEvent); });
    keys.Elements = static_cast<std::int32_t>(keys.ValArray.size());
  }
}

void TEventUndo::RestoreReferences() noexcept {
  if (rest.References.empty()) return;
  ForEachFixedReference(song, [&](std::size_t n, PtrMidiEvent& e) {
    for (const auto& [place, event] : rest.References)
      if (place == n && e == nullptr) e = event;
  });
  rest.References.clear();
}

void TEventUndo::RestoreRest() noexcept {
  for (std::size_t c = 0; c < ChannelCount; ++c) {
    song.MidiData[c].Active = rest.Active[c];
    song.MidiData[c].ActiveNotes = rest.ActiveNotes[c];
  }
  if (TKeySignArray* keys = Keys()) *keys = std::move(rest.Keys);
  track->TrkName = std::move(rest.TrkName);
  track->TrkNoteOnCnt = rest.TrkNoteOnCnt;
  track->TrkMidiIndex = rest.TrkMidiIndex;
  track->TrkIgnore = rest.TrkIgnore;
  song.XF_Track = rest.XF_Track;
  song.XF_ChordsArrayElements = rest.XF_ChordsArrayElements;
  song.XF_Format = rest.XF_Format;
}

/// Entries are put back in the reverse order, so that what stood in front of an event stands there.
void TEventUndo::PutBack(TEntry& entry) noexcept {
  const PtrMidiEvent event = entry.Event;
  const bool isNext = entry.Kind == What::Changed && track->TrkPlayEvent == event;
  const PtrMidiEvent behind = entry.Kind == What::Removed ? nullptr : event->NextEvent;
  if (entry.Kind != What::Removed) {
    if (track->TrkPlayEvent == event) track->TrkPlayEvent = event->NextEvent;
    if (track->TrkLoopStart == event) track->TrkLoopStart = event->PrevEvent;
    Unlink(*track, event);
  }
  if (entry.Kind == What::Inserted) {
    song.ForEachReference([&](PtrMidiEvent& e) {
      if (e == event) e = nullptr;
    });
    song.Pool.Release(event);
    return;
  }
  if (entry.Kind == What::Changed) *event = std::move(entry.Image);
  LinkBehind(*track, entry.Before, event);
  // An event that stays where it is and is due next is still due.
  if (isNext && event->NextEvent == behind) track->TrkPlayEvent = event;
}

bool TEventUndo::Keeps(const TypMidiEvent* event) const noexcept {
  return std::ranges::any_of(entries, [&](const TEntry& entry) { return entry.Event == event; });
}

void TEventUndo::Discard() noexcept {
  for (const TEntry& entry : entries)
    if (entry.Kind == What::Removed) song.Pool.Release(entry.Event);
  Forget();
}

void TEventUndo::Forget() noexcept {
  entries.clear();
  rest.References.clear();
  name.clear();
}

}  // namespace Sonarello
