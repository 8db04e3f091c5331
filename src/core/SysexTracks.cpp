#include "core/SysexTracks.h"

#include <algorithm>
#include <utility>

#include "core/EventList.h"
#include "core/TextEncoding.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

using TSourceSysex = TMidiFunctions::TSourceSysex;

TMyTrack& TrackAt(Song& song, std::int32_t index) {
  return song.MidiTrack[static_cast<std::size_t>(index)];
}

/// True if a track holds nothing but its head and names.
bool IsBare(const TMyTrack& track) {
  for (PtrMidiEvent e = track.TrkFirstEvent->NextEvent; e != nullptr; e = e->NextEvent)
    if (e->DLength > 0 && !e->IsMeta(MetaTrackName)) return false;
  return true;
}

/// Frees a track's events and takes the track out; the tracks behind it move up.
void RemoveTrack(Song& song, std::int32_t index) {
  // No event in a list has the status 0: it marks those that go, for the references to them.
  constexpr std::uint8_t going = 0;
  PtrMidiEvent first = TrackAt(song, index).TrkFirstEvent;
  for (PtrMidiEvent e = first; e != nullptr; e = e->NextEvent) e->Command = going;
  song.ForEachReference([](PtrMidiEvent& e) {
    if (e != nullptr && e->Command == going) e = nullptr;
  });
  while (first != nullptr) song.Pool.Release(std::exchange(first, first->NextEvent));
  song.MidiTrack.erase(song.MidiTrack.begin() + index);
  song.KeySignArray.erase(song.KeySignArray.begin() + index);
  --song.NumberOfSourceTracks;
}

/// The sysexes of all tracks that are not held out, by position; those of one tick by track.
std::vector<PtrMidiEvent> MovedInOrder(const Song& song, const std::vector<TSourceSysex>& sysexes) {
  struct Place {
    std::int32_t Position;
    PtrMidiEvent Event;
  };
  std::vector<Place> places;
  for (const TSourceSysex& sysex : sysexes)
    if (!song.MidiTrack[static_cast<std::size_t>(sysex.Track)].TrkIgnore)
      places.push_back({sysex.Event->Position, sysex.Event});
  std::stable_sort(places.begin(), places.end(),
                   [](const Place& a, const Place& b) { return a.Position < b.Position; });
  std::vector<PtrMidiEvent> events;
  events.reserve(places.size());
  for (const Place& place : places) events.push_back(place.Event);
  return events;
}

/// Adds a track behind the last: its head and its name, without End of track.
TMyTrack& AddTrack(Song& song, const std::string& name, std::int32_t delay) {
  const auto count = static_cast<std::size_t>(song.NumberOfSourceTracks);
  song.MidiTrack.resize(count);
  song.MidiTrack.emplace_back();
  song.KeySignArray.resize(count);
  song.KeySignArray.emplace_back();
  ++song.NumberOfSourceTracks;
  TMyTrack& track = song.MidiTrack.back();
  track.TrkDelay = delay;
  track.TrkName = name;
  BeginTrack(song.Pool, track);
  Append(track, NewMeta(song.Pool, MetaTrackName, name, 0));
  track.TrkPlayEvent = track.TrkFirstEvent;
  return track;
}

}  // namespace

std::string SongNameOf(std::string_view path) {
  constexpr int extensionLength = 4;
  const std::string_view name = path.substr(path.find_last_of('/') + 1);
  std::string_view stem = name;
  for (int i = 0; i < extensionLength; ++i) {
    if (stem.empty()) return std::string(name);
    stem = WithoutLastCharacter(stem);
  }
  return std::string(stem);
}

PtrMidiEvent EnsureSongName(Song& song) {
  if (song.NumberOfSourceTracks == 0) return nullptr;
  TMyTrack& track = TrackAt(song, 0);
  for (PtrMidiEvent e = track.TrkFirstEvent; e != nullptr; e = e->NextEvent)
    if (e->IsMeta(MetaTrackName) && e->DLength >= 1) return e;
  const std::string name = SongNameOf(song.MidiFileName);
  PtrMidiEvent node = NewMeta(song.Pool, MetaTrackName, name, 0);
  LinkBehind(track, track.TrkFirstEvent, node);
  if (track.TrkName.empty()) track.TrkName = name;
  if (!name.empty())
    LogChange(song, ChangeKind::Inserted, 0, *node, "Name des Liedes", "the song's name");
  return node;
}

void MakeExtraSysexTrack(Song& song, std::vector<TSourceSysex>& sysexes, std::int32_t delay) {
  const std::vector<PtrMidiEvent> moved = MovedInOrder(song, sysexes);
  const std::int32_t formerLast = song.NumberOfSourceTracks - 1;
  TMyTrack& extra = AddTrack(song, Text("Sysex-Spur", "Sysex track"), delay);
  std::int32_t extraIndex = formerLast + 1;
  // The event itself moves and a removed copy takes its place, so that every pointer to it stays true.
  for (TSourceSysex& sysex : sysexes) {
    TMyTrack& source = TrackAt(song, sysex.Track);
    if (source.TrkIgnore) continue;
    PtrMidiEvent copy = NewCopy(song.Pool, *sysex.Event);
    MarkRemoved(copy);
    LinkBehind(source, sysex.Event, copy);
    Unlink(source, sysex.Event);
    sysex.Event = copy;
  }
  for (PtrMidiEvent event : moved) Append(extra, event);
  EndTrack(song.Pool, extra, song.MaxSongPosition);
  for (std::int32_t* track : {&song.RolandInsFxOnTrack, &song.RolandDelaySysexTrack})
    if (*track >= 0 && !TrackAt(song, *track).TrkIgnore) *track = extraIndex;

  if (formerLast > 0 && IsBare(TrackAt(song, formerLast))) {
    RemoveTrack(song, formerLast);
    std::erase_if(sysexes, [&](const TSourceSysex& s) { return s.Track == formerLast; });
    extraIndex = formerLast;
    for (std::int32_t* track : {&song.RolandInsFxOnTrack, &song.RolandDelaySysexTrack})
      *track = std::min(*track, extraIndex);
  }
  song.SysexTrack = extraIndex;
  for (PtrMidiEvent event : moved) {
    sysexes.push_back({extraIndex, event});
    if (!event->IsRemoved())
      LogMove(song, extraIndex, *event, event->Position, "Sysex auf eigener Spur",
              "sysex on a track of its own");
  }
}

}  // namespace Sonarello
