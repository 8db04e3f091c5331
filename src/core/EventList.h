// Sonarello: the few functions through which every list of events is made and spliced.
//
// Invariants they keep: the track head is first and stands at position 0; an End of track is last;
// positions ascend; neighbours point at each other; `TrkEventCounter` counts the nodes; nothing outside
// the lists points at a freed node. `CheckSong` verifies them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/Song.h"

namespace Sonarello {

// --- Making nodes. Each raises EMidiError with `OutOfMemoryText()` when there is no memory; `site` is
// --- put in front of that text where a message tells which generator failed ("1003: ").

/// A zeroed node with `MType` -1, linked nowhere.
[[nodiscard]] PtrMidiEvent NewEvent(EventPool& pool, std::string_view site = {});
/// A channel event. `command` with its channel; values 0-127; `DLength` 2 or 3 by the command.
[[nodiscard]] PtrMidiEvent NewChannelEvent(EventPool& pool, std::uint8_t command, std::uint8_t value0,
                                           std::uint8_t value1, std::int32_t position,
                                           std::string_view site = {});
/// A sysex. `bytes` stand behind the 0xF0 and end with 0xF7.
[[nodiscard]] PtrMidiEvent NewSysex(EventPool& pool, std::span<const std::uint8_t> bytes,
                                    std::int32_t position, std::string_view site = {});
/// A meta event of a type from 0 to 127.
[[nodiscard]] PtrMidiEvent NewMeta(EventPool& pool, int type, std::span<const std::uint8_t> bytes,
                                   std::int32_t position, std::string_view site = {});
[[nodiscard]] PtrMidiEvent NewMeta(EventPool& pool, int type, std::string_view text,
                                   std::int32_t position, std::string_view site = {});
/// A copy of all fields; linked nowhere, without pair.
[[nodiscard]] PtrMidiEvent NewCopy(EventPool& pool, const TypMidiEvent& event,
                                   std::string_view site = {});
/// Length of a channel message with its status byte: 2 for programs and channel aftertouch, else 3.
[[nodiscard]] constexpr std::int32_t MessageLength(std::uint8_t command) noexcept {
  return (command & 0xE0) == 0xC0 ? 2 : 3;
}

// --- Splicing

/// Makes the list of an empty track: a track head. `TrkEventCounter` becomes 1.
void BeginTrack(EventPool& pool, TMyTrack& track, std::string_view site = {});
/// Appends a node behind `TrkLastEvent`, which becomes the node.
inline void Append(TMyTrack& track, PtrMidiEvent node) noexcept {
  node->PrevEvent = track.TrkLastEvent;
  track.TrkLastEvent->NextEvent = node;
  track.TrkLastEvent = node;
  ++track.TrkEventCounter;
}
/// Appends the End of track at a position, unless the list ends with one, which is moved there.
void EndTrack(EventPool& pool, TMyTrack& track, std::int32_t position, std::string_view site = {});

/// Links a node directly behind another node of the track.
void LinkBehind(TMyTrack& track, PtrMidiEvent place, PtrMidiEvent node) noexcept;
/// The node that an event at `position` goes behind: the last one at or before that tick, in front of
/// End of track. The search starts at `from`, a node at or before the position (the head by default).
[[nodiscard]] PtrMidiEvent PlaceFor(const TMyTrack& track, std::int32_t position,
                                    PtrMidiEvent from = nullptr) noexcept;
/// Links a node by its `Position`, behind all events of that tick, in front of End of track. A position
/// outside the song becomes its first or last tick.
void InsertByPosition(TMyTrack& track, PtrMidiEvent node, PtrMidiEvent from = nullptr) noexcept;
/// Links many nodes by their positions in one walk, as `InsertByPosition` in their order would.
void InsertBatch(TMyTrack& track, std::vector<PtrMidiEvent>& nodes);
/// Takes a node out of its list; the node keeps its fields. Never for a head or an End of track.
void Unlink(TMyTrack& track, PtrMidiEvent node) noexcept;
/// Takes out a node, sets its position and links it anew behind all events of that tick.
void MoveTo(TMyTrack& track, PtrMidiEvent node, std::int32_t position) noexcept;
/// Takes out a node and frees it. A note goes with its pair, which must be on the same track;
/// every reference to them is forgotten.
void Remove(Song& song, TMyTrack& track, PtrMidiEvent node) noexcept;
/// A node that is to be removed, and its track.
struct TRemoval {
  TMyTrack* Track;
  PtrMidiEvent Event;
};
/// Removes many nodes as `Remove` does, in one go over the references. A node may be named twice.
void RemoveBatch(Song& song, std::vector<TRemoval>& nodes);

/// Brings the events of a track without End of track into the order of their positions; events of one
/// tick keep their order.
void SortByPosition(TMyTrack& track);

/// Marks an event as removed: it stays linked, is neither played nor written.
inline void MarkRemoved(PtrMidiEvent node) noexcept { node->DLength = 0; }
/// The stronger form: the event also becomes an empty text meta and lets its payload go.
void Neutralise(PtrMidiEvent node) noexcept;

/// The next event in a walk over a whole list. A song's nodes mostly lie side by side, so the memory of
/// a node further on, which spans two cache lines, is asked for ahead: a long walk waits for little
/// else.
[[nodiscard]] inline PtrMidiEvent Following(const TypMidiEvent* e) noexcept {
  constexpr std::uintptr_t ahead = 48 * sizeof(TypMidiEvent);
  constexpr std::uintptr_t cacheLine = 64;
  const std::uintptr_t place = reinterpret_cast<std::uintptr_t>(e) + ahead;
  __builtin_prefetch(reinterpret_cast<const void*>(place));
  __builtin_prefetch(reinterpret_cast<const void*>(place + cacheLine));
  return e->NextEvent;
}

/// Calls f(event) for each event of a track from its head; f may change the event, not the list.
template <class F>
void ForEachEvent(const TMyTrack& track, F&& f) {
  for (PtrMidiEvent e = track.TrkFirstEvent; e != nullptr; e = Following(e)) f(e);
}

/// The first track whose only channel is `channel` (0-15), or -1.
[[nodiscard]] int TrackOfChannel(const Song& song, int channel) noexcept;

/// Every broken invariant of the song, one line each; empty for a sound song. Linear in its events.
[[nodiscard]] std::vector<std::string> CheckSong(const Song& song);

}  // namespace Sonarello
