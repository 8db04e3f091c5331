#include "core/EventList.h"

#include <algorithm>
#include <functional>

#include "core/Texts.h"

namespace Sonarello {

namespace {

template <class F>
PtrMidiEvent WithMemory(std::string_view site, F&& make) {
  try {
    if (PtrMidiEvent made = make()) return made;
  } catch (const std::bad_alloc&) {
  }
  throw EMidiError(std::string(site) + OutOfMemoryText());
}

}  // namespace

PtrMidiEvent NewEvent(EventPool& pool, std::string_view site) {
  return WithMemory(site, [&] { return pool.Take(); });
}

PtrMidiEvent NewChannelEvent(EventPool& pool, std::uint8_t command, std::uint8_t value0,
                             std::uint8_t value1, std::int32_t position, std::string_view site) {
  PtrMidiEvent node = NewEvent(pool, site);
  node->Command = command;
  node->DType = ShortEvent;
  node->DLength = MessageLength(command);
  node->Value = {value0, value1};
  node->ValueOrg = node->Value;
  node->Position = position;
  return node;
}

namespace {

PtrMidiEvent NewLong(EventPool& pool, std::uint8_t command, int type,
                     std::span<const std::uint8_t> bytes, std::int32_t position,
                     std::string_view site) {
  return WithMemory(site, [&]() -> PtrMidiEvent {
    Meta payload(bytes);
    PtrMidiEvent node = pool.Take();
    if (node == nullptr) return nullptr;
    node->Command = command;
    node->DType = LongEvent;
    node->MType = static_cast<std::int8_t>(type);
    node->DLength = static_cast<std::int32_t>(bytes.size());
    node->Meta = std::move(payload);
    node->Position = position;
    return node;
  });
}

}  // namespace

PtrMidiEvent NewSysex(EventPool& pool, std::span<const std::uint8_t> bytes, std::int32_t position,
                      std::string_view site) {
  return NewLong(pool, Sysex, -1, bytes, position, site);
}

PtrMidiEvent NewMeta(EventPool& pool, int type, std::span<const std::uint8_t> bytes,
                     std::int32_t position, std::string_view site) {
  return NewLong(pool, MetaEvent, type, bytes, position, site);
}

PtrMidiEvent NewMeta(EventPool& pool, int type, std::string_view text, std::int32_t position,
                     std::string_view site) {
  return NewMeta(pool, type, std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()),
                 position, site);
}

PtrMidiEvent NewCopy(EventPool& pool, const TypMidiEvent& event, std::string_view site) {
  PtrMidiEvent node = NewEvent(pool, site);
  *node = event;
  node->PrevEvent = node->NextEvent = node->NoteOnEvent = node->NoteOffEvent = nullptr;
  return node;
}

void BeginTrack(EventPool& pool, TMyTrack& track, std::string_view site) {
  constexpr std::uint8_t port[] = {0};
  PtrMidiEvent head = NewMeta(pool, MetaPort, port, 0, site);
  track.TrkFirstEvent = track.TrkLastEvent = head;
  track.TrkEventCounter = 1;
}

void EndTrack(EventPool& pool, TMyTrack& track, std::int32_t position, std::string_view site) {
  if (!track.TrkLastEvent->IsEndOfTrack())
    Append(track, NewMeta(pool, MetaEndOfTrack, std::span<const std::uint8_t>{}, position, site));
  track.TrkLastEvent->Position = position;
}

void LinkBehind(TMyTrack& track, PtrMidiEvent place, PtrMidiEvent node) noexcept {
  node->PrevEvent = place;
  node->NextEvent = place->NextEvent;
  if (place->NextEvent != nullptr)
    place->NextEvent->PrevEvent = node;
  else
    track.TrkLastEvent = node;
  place->NextEvent = node;
  ++track.TrkEventCounter;
}

PtrMidiEvent PlaceFor(const TMyTrack& track, std::int32_t position, PtrMidiEvent from) noexcept {
  PtrMidiEvent place = from != nullptr ? from : track.TrkFirstEvent;
  while (place->NextEvent != nullptr && !place->NextEvent->IsEndOfTrack() &&
         place->NextEvent->Position <= position)
    place = place->NextEvent;
  return place;
}

void InsertByPosition(TMyTrack& track, PtrMidiEvent node, PtrMidiEvent from) noexcept {
  node->Position = std::max(node->Position, 0);
  PtrMidiEvent place = PlaceFor(track, node->Position, from);
  // In front of End of track an event stands at the song's end at the latest.
  if (place->NextEvent != nullptr)
    node->Position = std::min(node->Position, place->NextEvent->Position);
  LinkBehind(track, place, node);
}

void InsertBatch(TMyTrack& track, std::vector<PtrMidiEvent>& nodes) {
  std::stable_sort(nodes.begin(), nodes.end(),
                   [](PtrMidiEvent a, PtrMidiEvent b) { return a->Position < b->Position; });
  PtrMidiEvent from = track.TrkFirstEvent;
  for (PtrMidiEvent node : nodes) {
    InsertByPosition(track, node, from);
    from = node;
  }
}

void Unlink(TMyTrack& track, PtrMidiEvent node) noexcept {
  node->PrevEvent->NextEvent = node->NextEvent;
  if (node->NextEvent != nullptr)
    node->NextEvent->PrevEvent = node->PrevEvent;
  else
    track.TrkLastEvent = node->PrevEvent;
  node->PrevEvent = node->NextEvent = nullptr;
  --track.TrkEventCounter;
}

void MoveTo(TMyTrack& track, PtrMidiEvent node, std::int32_t position) noexcept {
  // The search goes from the node's neighbourhood: a short move in a long track is a short walk.
  PtrMidiEvent from = node->PrevEvent;
  while (from->PrevEvent != nullptr && from->Position > position) from = from->PrevEvent;
  Unlink(track, node);
  node->Position = position;
  InsertByPosition(track, node, from);
}

namespace {

/// Frees a node that nothing outside its track points at.
void FreeUnreferenced(Song& song, TMyTrack& track, PtrMidiEvent node) noexcept {
  if (track.TrkPlayEvent == node) track.TrkPlayEvent = node->PrevEvent;
  if (track.TrkLoopStart == node) track.TrkLoopStart = node->PrevEvent;
  Unlink(track, node);
  song.Pool.Release(node);
}

void Free(Song& song, TMyTrack& track, PtrMidiEvent node) noexcept {
  song.ForEachReference([&](PtrMidiEvent& e) {
    if (e == node) e = nullptr;
  });
  FreeUnreferenced(song, track, node);
}

PtrMidiEvent PairOf(const TypMidiEvent& node) noexcept {
  return node.NoteOnEvent != nullptr ? node.NoteOnEvent : node.NoteOffEvent;
}

}  // namespace

void Remove(Song& song, TMyTrack& track, PtrMidiEvent node) noexcept {
  PtrMidiEvent pair = PairOf(*node);
  if (pair != nullptr) Free(song, track, pair);
  Free(song, track, node);
}

void RemoveBatch(Song& song, std::vector<TRemoval>& nodes) {
  if (nodes.empty()) return;
  const std::size_t named = nodes.size();
  for (std::size_t n = 0; n < named; ++n)
    if (PtrMidiEvent pair = PairOf(*nodes[n].Event)) nodes.push_back({nodes[n].Track, pair});
  const std::less<PtrMidiEvent> less;
  std::sort(nodes.begin(), nodes.end(),
            [less](const TRemoval& a, const TRemoval& b) { return less(a.Event, b.Event); });
  const auto doubled = [](const TRemoval& a, const TRemoval& b) { return a.Event == b.Event; };
  nodes.erase(std::unique(nodes.begin(), nodes.end(), doubled), nodes.end());
  song.ForEachReference([&](PtrMidiEvent& e) {
    const auto found = std::lower_bound(
        nodes.begin(), nodes.end(), e,
        [less](const TRemoval& removal, PtrMidiEvent event) { return less(removal.Event, event); });
    if (found != nodes.end() && found->Event == e) e = nullptr;
  });
  for (const TRemoval& removal : nodes) FreeUnreferenced(song, *removal.Track, removal.Event);
}

void SortByPosition(TMyTrack& track) {
  std::vector<PtrMidiEvent> events;
  for (PtrMidiEvent e = track.TrkFirstEvent->NextEvent; e != nullptr; e = e->NextEvent)
    events.push_back(e);
  std::stable_sort(events.begin(), events.end(),
                   [](PtrMidiEvent a, PtrMidiEvent b) { return a->Position < b->Position; });
  PtrMidiEvent last = track.TrkFirstEvent;
  for (PtrMidiEvent e : events) {
    last->NextEvent = e;
    e->PrevEvent = last;
    last = e;
  }
  last->NextEvent = nullptr;
  track.TrkLastEvent = last;
}

void Neutralise(PtrMidiEvent node) noexcept {
  node->DLength = 0;
  node->Command = MetaEvent;
  node->DType = LongEvent;
  node->MType = MetaText;
  node->Meta.Clear();
}

int TrackOfChannel(const Song& song, int channel) noexcept {
  for (int t = 0; t < song.NumberOfSourceTracks; ++t)
    if (song.MidiTrack[static_cast<std::size_t>(t)].TrkMidiIndex == channel) return t;
  return -1;
}

namespace {

/// Gathers the faults of a song; each check adds lines of "track T, tick P: what".
class Checker {
 public:
  explicit Checker(const Song& s) : song(s) {}

  std::vector<std::string> Run() {
    if (song.NumberOfSourceTracks > static_cast<std::int32_t>(song.MidiTrack.size()))
      return {"more tracks in use than there are"};
    for (int t = 0; t < song.NumberOfSourceTracks; ++t)
      CheckTrack(t, song.MidiTrack[static_cast<std::size_t>(t)]);
    std::sort(nodes.begin(), nodes.end());
    if (std::adjacent_find(nodes.begin(), nodes.end()) != nodes.end())
      faults.emplace_back("a node stands in two places");
    for (int t = 0; t < song.NumberOfSourceTracks; ++t)
      CheckPairs(t, song.MidiTrack[static_cast<std::size_t>(t)]);
    // Event pointers outside the lists may only point into them. The song is not changed by looking.
    const_cast<Song&>(song).ForEachReference([&](PtrMidiEvent& e) {
      if (e != nullptr && !Stands(e)) faults.emplace_back("a reference points at an event of no list");
    });
    return std::move(faults);
  }

 private:
  void Fault(int track, const TypMidiEvent& event, std::string_view what) {
    faults.push_back("track " + std::to_string(track) + ", tick " + std::to_string(event.Position) +
                     ": " + std::string(what));
  }
  bool Stands(PtrMidiEvent e) const { return std::binary_search(nodes.begin(), nodes.end(), e); }

  void CheckTrack(int t, const TMyTrack& track) {
    if (track.TrkFirstEvent == nullptr) {
      faults.push_back("track " + std::to_string(t) + ": no head");
      return;
    }
    const TypMidiEvent& head = *track.TrkFirstEvent;
    if (!head.IsMeta(MetaPort) || head.Position != 0)
      Fault(t, head, "the first event is no track head");
    std::int32_t count = 0;
    PtrMidiEvent last = nullptr;
    for (PtrMidiEvent e = track.TrkFirstEvent; e != nullptr; last = e, e = e->NextEvent) {
      ++count;
      nodes.push_back(e);
      if (e->PrevEvent != last) Fault(t, *e, "the neighbour in front is another one");
      if (last != nullptr && last->Position > e->Position) Fault(t, *e, "positions do not ascend");
      if (e->IsEndOfTrack() && e->NextEvent != nullptr) Fault(t, *e, "End of track is not last");
      CheckFields(t, *e);
    }
    if (!last->IsEndOfTrack()) Fault(t, *last, "the last event is no End of track");
    if (last->Position != song.MaxSongPosition)
      Fault(t, *last, "End of track is not at the song's end");
    if (last != track.TrkLastEvent) Fault(t, *last, "TrkLastEvent is another event");
    if (count != track.TrkEventCounter) Fault(t, *last, "TrkEventCounter is off");
  }

  void CheckFields(int t, const TypMidiEvent& e) {
    if (e.Value[0] > 127 || e.Value[1] > 127) Fault(t, e, "a value is above 127");
    if (e.IsChannelEvent()) {
      if (e.Command < 0x80) Fault(t, e, "the command is no status byte");
      if (e.DType != ShortEvent) Fault(t, e, "a channel event is no short event");
      if (e.DLength != 0 && e.DLength != MessageLength(e.Command)) Fault(t, e, "length of a message");
      if (!e.Meta.empty()) Fault(t, e, "a channel event has a payload");
    } else if (e.DLength != 0 && e.DLength != static_cast<std::int32_t>(e.Meta.size())) {
      Fault(t, e, "DLength is not the payload's length");
    }
  }

  void CheckPairs(int t, const TMyTrack& track) {
    ForEachEvent(track, [&](PtrMidiEvent e) {
      if (e->NoteOffEvent != nullptr) {
        if (!Stands(e->NoteOffEvent)) return Fault(t, *e, "the note-off stands in no list");
        if (e->NoteOffEvent->NoteOnEvent != e) Fault(t, *e, "the note-off has another note-on");
        if (e->Kind() != NoteOn || !e->IsChannelEvent()) Fault(t, *e, "no note-on, but has a note-off");
      }
      if (e->NoteOnEvent != nullptr) {
        if (!Stands(e->NoteOnEvent)) return Fault(t, *e, "the note-on stands in no list");
        if (e->NoteOnEvent->NoteOffEvent != e) Fault(t, *e, "the note-on has another note-off");
      }
    });
  }

  const Song& song;
  std::vector<const TypMidiEvent*> nodes;
  std::vector<std::string> faults;
};

}  // namespace

std::vector<std::string> CheckSong(const Song& song) { return Checker(song).Run(); }

}  // namespace Sonarello
