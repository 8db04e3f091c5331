// Counting, lengthening and pairing of notes.
#include <filesystem>
#include <fstream>
#include <queue>
#include <string>
#include <vector>

#include "core/EventList.h"
#include "core/MidiFunctions.h"
#include "core/NoteTable.h"
#include "core/Texts.h"
#include "core/TimeMap.h"

namespace Sonarello {

namespace {

// --- Counting

struct TNoteCount {
  std::int32_t Open;  ///< note-ons less note-offs
  std::int32_t LastPosition;
};
using TNoteCounts = NoteTable<TNoteCount>;

void CountNotes(const TMyTrack& track, TNoteCounts& counts) {
  counts.Clear();
  for (PtrMidiEvent e = track.TrkFirstEvent; e != nullptr; e = Following(e)) {
    if (!IsLiveNote(*e)) continue;
    TNoteCount& count = counts[*e];
    const bool on = e->Kind() == NoteOn;
    count.Open += on ? 1 : -1;
    if (on || count.Open < 0) count.LastPosition = e->Position;
  }
}

/// The faulty keys of one kind: how many, and a line for each.
struct TFaults {
  std::int32_t Count = 0;
  std::string Lines;
};

void AddFault(TFaults& faults, const Song& song, int channel, int key, std::int32_t position) {
  ++faults.Count;
  const std::string number = std::to_string(channel + 1);
  faults.Lines += "\r\nCh." + (number.size() < 2 ? "0" + number : number) + ", Pos. " +
                  TicksToStr(song, position) + ", Note " + NoteName(key) + "(" + std::to_string(key) +
                  ")";
}

/// Text of a track's faults, the note-offs ahead of the note-ons; empty for a clean track.
std::string FaultsOf(const Song& song, TNoteCounts& counts) {
  TFaults offs;
  TFaults ons;
  counts.ForEach([&](int channel, int key, const TNoteCount& count) {
    if (count.Open != 0) AddFault(count.Open < 0 ? offs : ons, song, channel, key, count.LastPosition);
  });
  if (offs.Count > 0)
    return Text("Es wurden ", "Found ") + std::to_string(offs.Count) +
           Text(" Note-Offs ohne Note-Ons gefunden,", " Note-Offs without Note-Ons,") + offs.Lines;
  if (ons.Count > 0)
    return Text("Es wurden ", "Found ") + std::to_string(ons.Count) +
           Text(" Note-Ons ohne Note-Offs gefunden,", " Note-Ons without Note-Offs,") + ons.Lines;
  return {};
}

/// Keeps the verdict beside the program's data. It has reached the user already, so a folder that
/// cannot be written costs no more than this copy.
void WriteVerdict(const std::string& folder, const std::string& songName, const std::string& message) {
  if (folder.empty()) return;
  const std::u8string path(folder.begin(), folder.end());
  std::ofstream file(std::filesystem::path(path) / "_NoteOnOff.txt", std::ios::binary);
  file << songName << "\r\n\r\n" << message << "\r\n";
}

// --- Lengthening

/// Moves the note-offs of a track's short notes in one walk. A note-off that has to go behind later
/// events waits outside the list until the walk meets the first event behind its new tick, so that any
/// number of them costs no more than sorting them.
class NoteLengthener {
 public:
  NoteLengthener(Song& s, std::int32_t t, std::int32_t minimum)
      : song(s),
        index(t),
        track(s.MidiTrack[static_cast<std::size_t>(t)]),
        minNoteLength(minimum),
        cursor(s) {}

  void Run() {
    PtrMidiEvent next = nullptr;
    for (PtrMidiEvent e = track.TrkFirstEvent; e != nullptr; e = next) {
      LinkWaiting(*e);
      next = e->NextEvent;
      if (next != nullptr && e->Kind() == NoteOff && IsLiveNote(*e) && e->NoteOnEvent != nullptr)
        Lengthen(e);
    }
  }

 private:
  struct TWaiting {
    PtrMidiEvent Event;
    std::size_t Order;
    /// The earliest tick is first, inside a tick the one that came first.
    bool operator<(const TWaiting& other) const {
      if (Event->Position != other.Event->Position) return Event->Position > other.Event->Position;
      return Order > other.Order;
    }
  };

  void Lengthen(PtrMidiEvent off) {
    const std::int32_t start = off->NoteOnEvent->Position;
    if (std::int64_t{off->Position} - start >= minNoteLength) return;
    // A note at the song's end is cut there: nothing stands behind End of track.
    const std::int32_t end = static_cast<std::int32_t>(
        std::min<std::int64_t>(std::int64_t{start} + minNoteLength, track.TrkLastEvent->Position));
    const std::int32_t old = off->Position;
    if (end == old) return;
    PtrMidiEvent next = off->NextEvent;
    off->Position = end;
    off->TimePosition = cursor.TimeOf(end);
    LogMove(song, index, *off, old, "Note kürzer als die Mindestlänge",
            "note shorter than the minimum length");
    // It stays in front of what stands at its new tick unless something earlier stands between.
    const bool overtaken =
        next->Position < end || (!waiting.empty() && waiting.top().Event->Position < end);
    if (!overtaken) return;
    waiting.push({off, order++});
    Unlink(track, off);
  }

  void LinkWaiting(const TypMidiEvent& reached) {
    while (!waiting.empty() &&
           (waiting.top().Event->Position < reached.Position || reached.NextEvent == nullptr)) {
      LinkBehind(track, reached.PrevEvent, waiting.top().Event);
      waiting.pop();
    }
  }

  Song& song;
  std::int32_t index;
  TMyTrack& track;
  std::int32_t minNoteLength;
  ZoneCursor cursor;
  std::priority_queue<TWaiting> waiting;
  std::size_t order = 0;
};

// --- Pairing

constexpr std::int32_t MostOpenNotes = 32;

/// The open note-ons of one key. Each leads to the next by its `NoteOffEvent`, which is free until the
/// note is paired.
struct TOpenQueue {
  PtrMidiEvent Oldest;
  PtrMidiEvent Newest;
  std::int32_t Count;

  void Append(PtrMidiEvent on) {
    (Count == 0 ? Oldest : Newest->NoteOffEvent) = on;
    Newest = on;
    ++Count;
  }
  PtrMidiEvent Take() {
    PtrMidiEvent on = Oldest;
    Oldest = on->NoteOffEvent;
    --Count;
    return on;
  }
};
using TOpenQueues = NoteTable<TOpenQueue>;

/// Ends an earlier pairing of an event.
void Unpair(TypMidiEvent& event) {
  if (event.NoteOnEvent != nullptr) {
    if (event.NoteOnEvent->NoteOffEvent == &event) event.NoteOnEvent->NoteOffEvent = nullptr;
    event.NoteOnEvent = nullptr;
  }
  if (event.NoteOffEvent != nullptr) event.NoteOffEvent = nullptr;
}

void NeutraliseNoteOff(PtrMidiEvent off, TStrayNoteOffs* strays) {
  if (strays != nullptr) {
    LogChange(strays->Owner, ChangeKind::Dropped, strays->Track, *off, "Note-Off ohne Note-On",
              "note-off without note-on");
    strays->Found.push_back({&strays->Owner.MidiTrack[static_cast<std::size_t>(strays->Track)], off});
  }
  const std::uint8_t type = off->DType;
  Neutralise(off);
  off->DType = type;  // stays as it was; this is deliberate
}

void LeaveUnpaired(TOpenQueues& open) {
  open.ForEach([](int, int, TOpenQueue& queue) {
    while (queue.Count > 0) queue.Take()->NoteOffEvent = nullptr;
  });
}

}  // namespace

bool TMidiFunctions::CheckForNoteOnsNoteOffs(std::string& MessageToReturn) {
  MessageToReturn.clear();
  TNoteCounts counts;
  // Only the first faulty track is told. This is deliberate.
  for (std::int32_t t = 0; t < song.NumberOfSourceTracks && MessageToReturn.empty(); ++t) {
    const TMyTrack& track = song.MidiTrack[static_cast<std::size_t>(t)];
    if (track.TrkIgnore) continue;
    CountNotes(track, counts);
    MessageToReturn = FaultsOf(song, counts);
  }
  if (MessageToReturn.empty()) return true;
  WriteVerdict(options.DataPath, song.MidiFileName, MessageToReturn);
  return false;
}

void TMidiFunctions::CheckForZeroLength() {
  if (options.MinNoteLength <= 0) return;
  for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t)
    if (!song.MidiTrack[static_cast<std::size_t>(t)].TrkIgnore)
      NoteLengthener(song, t, options.MinNoteLength).Run();
}

bool TMidiFunctions::SetNoteOnOffPointers(PtrMidiEvent FirstEvent, TStrayNoteOffs* Strays) {
  TOpenQueues open;
  PtrMidiEvent e = FirstEvent;
  bool paired = true;
  for (; e != nullptr && paired; e = Following(e)) {
    Unpair(*e);
    if (!IsLiveNote(*e)) continue;
    TOpenQueue& queue = open[*e];
    if (e->Kind() == NoteOn) {
      paired = queue.Count < MostOpenNotes;
      if (paired) queue.Append(e);
    } else if (queue.Count == 0) {
      NeutraliseNoteOff(e, Strays);
    } else {
      e->NoteOnEvent = queue.Take();
      e->NoteOnEvent->NoteOffEvent = e;
    }
  }
  LeaveUnpaired(open);
  for (; e != nullptr; e = Following(e)) Unpair(*e);
  return paired;
}

}  // namespace Sonarello
