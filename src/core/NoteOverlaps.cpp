// Repair of notes that start while the same key sounds.
#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "core/EventList.h"
#include "core/MidiFunctions.h"
#include "core/NoteTable.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

/// The note-offs that a walk has not reached yet, by channel and key, in list order.
class UpcomingNoteOffs {
 public:
  [[nodiscard]] bool IsBuilt() const noexcept { return built; }

  /// Collects the note-offs from an event on.
  void Build(PtrMidiEvent from) {
    const auto forEachNoteOff = [from](auto&& f) {
      for (PtrMidiEvent e = from; e != nullptr; e = e->NextEvent)
        if (e->Kind() == NoteOff && IsLiveNote(*e)) f(e);
    };
    ends.fill(0);
    forEachNoteOff([this](PtrMidiEvent e) { ++ends[Table::IndexOf(*e)]; });
    std::size_t sum = 0;
    for (std::size_t key = 0; key < Table::Size; ++key) {
      next[key] = sum;
      sum += ends[key];
      ends[key] = next[key];
    }
    offs.resize(sum);
    forEachNoteOff([this](PtrMidiEvent e) { offs[ends[Table::IndexOf(*e)]++] = e; });
    built = true;
  }
  /// Takes the first note-off of a note's channel and key; nil if there is none.
  PtrMidiEvent Take(const TypMidiEvent& note) noexcept {
    const std::size_t key = Table::IndexOf(note);
    return next[key] == ends[key] ? nullptr : offs[next[key]++];
  }

 private:
  using Table = NoteTable<PtrMidiEvent>;

  // Set up when they are built: most tracks need no repair.
  std::array<std::size_t, Table::Size> next;
  std::array<std::size_t, Table::Size> ends;
  std::vector<PtrMidiEvent> offs;
  bool built = false;
};

/// One walk over a track. A repair leaves everything in front of it as it was, so the walk goes on from
/// there with the state that a walk from the start would reach.
class OverlapRepair {
 public:
  OverlapRepair(Song& s, IMessages& m, const SongHooks& h, std::int32_t t, std::vector<TRemoval>& gone)
      : song(s),
        messages(m),
        hooks(h),
        index(t),
        track(s.MidiTrack[static_cast<std::size_t>(t)]),
        removed(gone) {}

  std::int32_t Doubled = 0;
  std::int32_t Overlapped = 0;

  /// False if the whole search ends here.
  bool Run() {
    PtrMidiEvent next = nullptr;
    for (PtrMidiEvent e = track.TrkFirstEvent; e != nullptr; e = next) {
      next = e->NextEvent;
      if (!IsLiveNote(*e)) continue;
      PtrMidiEvent& first = open[*e];
      if (e->Kind() == NoteOff) {
        if (upcoming.IsBuilt()) upcoming.Take(*e);
        if (first == nullptr && EndsAt(*e)) return false;
        first = nullptr;
      } else if (first == nullptr) {
        first = e;
      } else {
        if (!upcoming.IsBuilt()) upcoming.Build(e);
        const bool overlap = e->Position - first->Position >= 2;
        if (!(overlap ? EndInFrontOf(first, e) : RemoveDoubled(e))) return false;
        next = e->NextEvent;
      }
    }
    return true;
  }

 private:
  /// Tells of a note-off without note-on; true if the user ends the search.
  bool EndsAt(const TypMidiEvent& off) {
    const std::string key = std::to_string(off.Value[0]) + " / " + NoteName(off.Value[0]);
    if (hooks.DisableRangeTools) hooks.DisableRangeTools(song, true);
    return messages.Ask(
        Text("Doppelte Note-Off entdeckt: Spur " + std::to_string(index) + ", Midikanal " +
                 std::to_string(off.Channel() + 1) + "\rNote " + key + ", mit Wert " +
                 std::to_string(off.Value[1]) + ", bei Position " + std::to_string(off.Position) +
                 ", Time " + std::to_string(off.TimePosition) +
                 "\rDie Funktionen \"Bereich kopieren\" und \"löschen\" wurden deaktiviert.\r\r"
                 "Soll die Überprüfung abgebrochen werden?",
             "Found double note off!\rCopy and delete range are disabled.\r\rAbort search for \"Double "
             "notes\"?"));
  }

  /// Moves the first note's note-off to one tick before the second note starts, in front of what stands
  /// there.
  bool EndInFrontOf(PtrMidiEvent& first, PtrMidiEvent second) {
    PtrMidiEvent off = upcoming.Take(*second);
    if (off == nullptr) {
      messages.Show(Text(std::to_string(track.TrkLastEvent->Position) +
                             " DoubleNoteOn.Position: " + std::to_string(second->Position) +
                             " Position für Note Off-Verschiebung nicht gefunden!",
                         "Position for note off movement not found!"));
      return false;
    }
    PtrMidiEvent place = LastBefore(second->Position - 1, second);
    if (place == nullptr) {  // a broken list: the first note itself stands before that tick
      messages.Show(Text("Position für NoteOff-Verschiebung nicht gefunden!",
                         "Position for note off movement not found!"));
      return false;
    }
    const std::int32_t old = off->Position;
    Unlink(track, off);
    off->Position = second->Position - 1;
    off->TimePosition = std::max(second->TimePosition - 1, 0);
    LinkBehind(track, place, off);
    LogMove(song, index, *off, old, "Note endet vor der nächsten gleichen Note",
            "note ends before the same key starts again");
    first = second;
    ++Overlapped;
    return true;
  }

  /// Lets the second note-on and the first note-off behind it go.
  bool RemoveDoubled(PtrMidiEvent second) {
    PtrMidiEvent off = upcoming.Take(*second);
    if (off == nullptr) {
      if (hooks.DisableRangeTools) hooks.DisableRangeTools(song, false);
      messages.Show(Text("Position für NoteOff nach \"Doppelte NoteOn\" nicht gefunden!",
                         "Position for note off after \"double note on\" not found!"));
      return false;
    }
    for (const PtrMidiEvent e : {second, off})
      LogChange(song, ChangeKind::Dropped, index, *e, "doppelte Note", "doubled note");
    PassPairOn(second, off);
    for (const PtrMidiEvent e : {second, off}) MarkRemoved(e);
    removed.push_back({&track, second});
    track.TrkNoteOnCnt = std::max(track.TrkNoteOnCnt - 1, 0);
    std::int32_t& notes = song.MidiData[static_cast<std::size_t>(second->Channel())].ActiveNotes;
    notes = std::max(notes - 1, 0);
    ++Doubled;
    return true;
  }

  /// Makes the two events a pair; the partners that they had so far become one as well.
  static void PassPairOn(PtrMidiEvent on, PtrMidiEvent off) {
    PtrMidiEvent otherOn = off->NoteOnEvent;
    PtrMidiEvent otherOff = on->NoteOffEvent;
    if (otherOn != on) {
      if (otherOn != nullptr) otherOn->NoteOffEvent = otherOff;
      if (otherOff != nullptr) otherOff->NoteOnEvent = otherOn;
    }
    on->NoteOffEvent = off;
    off->NoteOnEvent = on;
  }

  /// The last event before a tick, searched backwards; nil if there is none. Many keys may be repaired
  /// at one tick of many events, so the place of a tick is found once.
  PtrMidiEvent LastBefore(std::int32_t position, PtrMidiEvent from) {
    if (position == placeTick) return placeBefore;
    PtrMidiEvent e = from;
    while (e != nullptr && e->Position >= position) e = e->PrevEvent;
    placeTick = position;
    placeBefore = e;
    return e;
  }

  Song& song;
  IMessages& messages;
  const SongHooks& hooks;
  std::int32_t index;
  TMyTrack& track;
  NoteTable<PtrMidiEvent> open;    ///< the sounding note-on of each key
  UpcomingNoteOffs upcoming;       ///< built at the first repair
  std::vector<TRemoval>& removed;  ///< doubled notes; marked as removed, freed when all is repaired
  std::int32_t placeTick = -1;
  PtrMidiEvent placeBefore = nullptr;
};

}  // namespace

void TMidiFunctions::RemoveNoteOverlaps() {
  FoundOverlappedNotes = FoundDoubleNotes = 0;
  std::vector<TRemoval> removed;
  bool goOn = true;
  for (std::int32_t t = 0; t < song.NumberOfSourceTracks && goOn; ++t) {
    if (song.MidiTrack[static_cast<std::size_t>(t)].TrkIgnore) continue;
    OverlapRepair repair(song, messages, hooks, t, removed);
    goOn = repair.Run();
    FoundOverlappedNotes += repair.Overlapped;
    FoundDoubleNotes += repair.Doubled;
  }
  RemoveBatch(song, removed);
}

}  // namespace Sonarello
