// Insertion of events at the place of a row.
#include <algorithm>

#include "core/Texts.h"
#include "core/TimeMap.h"
#include "editors/EventEdits.h"
#include "editors/EventStep.h"
#include "instruments/Naming.h"

namespace Sonarello {

namespace {

constexpr int NewKey = 120;  ///< C8, as the messages say
constexpr int NewVelocity = 100;
constexpr std::uint8_t NewRelease = 17;  ///< release velocity of a note-off that was none
constexpr std::int32_t DrumNoteLength = 10;
constexpr std::int32_t FirstProgramTick = 6;
constexpr std::int32_t FirstProgramTime = 8;  // ms
constexpr std::int32_t TicksInFrontOfEnd = 2;
constexpr std::uint8_t GMSystemOn[] = {0x7E, 0x7F, 0x09, 0x01, 0xF7};

constexpr std::uint8_t On(int channel) { return static_cast<std::uint8_t>(NoteOn | channel); }

std::string EventMemoryText() {
  return Text("Fehler bei der Speicherzuweisung für neues Midi-Event",
              "Error allocating memory for new midi event");
}
std::string ProgramMemoryText() {
  return Text("Fehler bei der Speicherzuweisung für Programm-Wechsel!",
              "Error getting memory for program change event");
}
std::string NoteOffMemoryText() {
  return Text("Fehler bei der Speicherzuweisung für Note-Off Event!",
              "Error getting memory for note off event");
}

/// What a new note of key 120 meets on its channel.
struct TNeighbours {
  PtrMidiEvent Same = nullptr;   ///< starts where it starts
  PtrMidiEvent Next = nullptr;   ///< starts before it ends
  PtrMidiEvent Sound = nullptr;  ///< sounds into it
};
TNeighbours NeighboursOf(PtrMidiEvent from, std::uint8_t command, std::int32_t start,
                         std::int32_t end) {
  TNeighbours found;
  for (PtrMidiEvent e = from; e != nullptr && e->Position < end; e = Following(e)) {
    if (e->Command != command || e->Value[0] != NewKey || e->DLength == 0) continue;
    if (e->Position == start && found.Same == nullptr) found.Same = e;
    if (e->Position > start && found.Next == nullptr) found.Next = e;
    const bool sounds =
        e->Position < start && e->NoteOffEvent != nullptr && e->NoteOffEvent->Position >= start;
    if (sounds) found.Sound = e;
  }
  return found;
}

}  // namespace

bool TEventEdits::MayInsert() const {
  return rows.Showing && rows.TrackIndex() >= 0 && rows.Index.IsCurrent() &&
         !rows.InsertKinds().empty() && !IsPlaying();
}

int TEventEdits::ChannelOfInsert(const TypMidiEvent* selected) const {
  if (song.MidiFileFormat == 0) return std::max(rows.TrackIndex() - 1, 0);
  const int own = rows.Index.List()->TrkMidiIndex;
  if (own >= 0 && own < ChannelCount) return own;
  for (const TypMidiEvent* e = selected; e != nullptr; e = e->PrevEvent)
    if (e->IsChannelEvent()) return e->Channel();
  for (const TypMidiEvent* e = selected; e != nullptr; e = e->NextEvent)
    if (e->IsChannelEvent()) return e->Channel();
  if (song.MidiFileOrgFormat == 0 && rows.TrackIndex() <= ChannelCount)
    return std::max(rows.TrackIndex() - 1, 0);
  return std::clamp(song.ActiveMidiIndex, 0, ChannelCount - 1);
}

TEventEdits::TPlaceOfInsert TEventEdits::PlaceOfInsert(std::int32_t row) const {
  TPlaceOfInsert place;
  place.Selected = rows.Event(row);
  if (place.Selected == nullptr && rows.Events() == 0)
    place.Selected = rows.Index.List()->TrkFirstEvent;
  if (place.Selected == nullptr) return place;
  // At the song's end itself nothing could follow.
  place.Position =
      std::clamp(place.Selected->Position, 0, std::max(song.MaxSongPosition - TicksInFrontOfEnd, 0));
  place.Channel = ChannelOfInsert(place.Selected);
  return place;
}

/// A new event of a kind, linked nowhere; nil when there is no memory, which was told.
PtrMidiEvent TEventEdits::MakeEvent(TEventKind kind, const TPlaceOfInsert& place) const {
  const auto channelEvent = [&](Status status, int value0, int value1) {
    return NewChannelEvent(song.Pool, static_cast<std::uint8_t>(status | place.Channel),
                           static_cast<std::uint8_t>(value0), static_cast<std::uint8_t>(value1),
                           place.Position);
  };
  constexpr int centre = 0x40;
  try {
    switch (kind) {
      case TEventKind::Note: return channelEvent(NoteOn, NewKey, NewVelocity);
      case TEventKind::ProgramChange: {
        const PtrMidiEvent event = channelEvent(ProgramChange, 0, 0);
        if (event->Position >= FirstProgramTick) return event;
        event->Position = FirstProgramTick;
        event->TimePosition = FirstProgramTime;
        return event;
      }
      case TEventKind::Controller: return channelEvent(Controller, 7, 100);
      case TEventKind::KeyAftertouch: {
        const bool onNote = place.Selected->Kind() == NoteOn;
        return channelEvent(KeyAftertouch, onNote ? place.Selected->Value[0] : 0, NewVelocity);
      }
      case TEventKind::ChannelAftertouch: return channelEvent(ChannelAftertouch, 0, 0);
      case TEventKind::PitchBend: return channelEvent(PitchBend, 0, centre);
      case TEventKind::Sysex: return NewSysex(song.Pool, GMSystemOn, place.Position);
      default: {
        const int type = rows.TrackIndex() == 0 ? int{MetaTempo} : int{MetaLyric};
        return NewMeta(song.Pool, type, MetaDefault(type), place.Position);
      }
    }
  } catch (const EMidiError&) {
    messages.Show(kind == TEventKind::ProgramChange ? ProgramMemoryText() : EventMemoryText());
    return nullptr;
  }
}

std::int32_t TEventEdits::PM_InsertMidiEventClick(std::int32_t row) {
  if (!MayInsert()) return 0;
  const TPlaceOfInsert place = PlaceOfInsert(row);
  if (place.Selected == nullptr) {
    messages.Show(
        Text("Fehler beim Finden von Midi-Event zum Einfügen.", "Error finding midi event for Insert"));
    return 0;
  }
  const TEventKind kind = rows.InsertKinds()[static_cast<std::size_t>(rows.InsertIndex())];
  const PtrMidiEvent event = MakeEvent(kind, place);
  if (event == nullptr) return 0;
  TStep step(*this, Text("Midi-Event einfügen", "insert midi event"));
  std::vector<std::string> told;
  if (kind == TEventKind::Note) {
    if (!InsertNote(step, event, told)) return 0;
  } else {
    step.Insert(event);
  }
  if (event->IsChannelEvent() && step.Track().TrkMidiIndex != event->Channel()) step.ReadTrackChannel();
  step.Finish();
  // The word of a new lyric is another than that of its row. This is deliberate.
  if (event->IsMeta(MetaLyric)) rows.Explain(event, "Lyrics");
  const std::int32_t inserted = rows.Index.RowOf(event);
  if (inserted > 0) rows.EventListPosition = inserted;
  // The song is whole again: while a message stands, timers look at it.
  for (const std::string& text : told) messages.Show(text);
  return inserted;
}

/// Inserts a note and its end. False if there is no room for it; the event is gone then. `told` gets
/// what is to be told behind the step.
bool TEventEdits::InsertNote(TStep& step, PtrMidiEvent on, std::vector<std::string>& told) {
  const int channel = on->Channel();
  const auto& data = song.MidiData[static_cast<std::size_t>(channel)];
  const bool drums = channel == DrumChannel || data.DrumPart > 0;
  const std::int32_t length = drums ? DrumNoteLength : song.SourceTimeBase;
  std::int32_t end = std::min(Saturated(std::int64_t{on->Position} + length), song.MaxSongPosition);
  const TNeighbours near = NeighboursOf(rows.Index.NodeBeforeNotes(channel, NewKey, on->Position),
                                        On(channel), on->Position, end);
  if (near.Same != nullptr) {
    song.Pool.Release(on);
    step.Cancel();
    messages.Show(
        Text("Es befindet sich bereits eine Note \"C8\" an dieser Position!\rBitte ändern Sie "
             "die Position oder die Höhe dieser Note\rum eine weitere Note einfügen zu "
             "können.",
             "There is already a note \"C8\" at this position!\rPlease move to another "
             "position or change the pitch\rto be able to insert another note"));
    return false;
  }
  if (near.Next != nullptr) end = std::max(near.Next->Position - 1, on->Position);
  PtrMidiEvent off = nullptr;
  try {
    off = NewChannelEvent(song.Pool, static_cast<std::uint8_t>(NoteOff | channel), NewKey, NewRelease,
                          end);
  } catch (const EMidiError&) {
    song.Pool.Release(on);
    step.Cancel();
    messages.Show(NoteOffMemoryText());
    return false;
  }
  if (near.Sound != nullptr) {
    const PtrMidiEvent before = near.Sound->NoteOffEvent;
    step.Touch(before);
    step.Move(before, std::max(on->Position - 1, near.Sound->Position));
    step.Settle(before);
  }
  step.Insert(on);
  step.Insert(off);
  if (near.Next != nullptr)
    told.push_back(
        Text("Es befindet sich bereits eine Note \"C8\" an einer nahen Position!\rDaher wurde "
             "die eingefügte Note entsprechend gekürzt",
             "There is already a note \"C8\" at a near position!\rTherefor is the inserted "
             "note shortened"));
  // The two blanks are deliberate.
  if (near.Sound != nullptr)
    told.push_back(
        Text("Es befindet sich bereits eine Note \"C8\" in diesem Bereich!\rDaher wurde diese  "
             "Note entsprechend gekürzt",
             "There is already a note \"C8\" at a near previous position!\rTherefor this note "
             "is shortened"));
  return true;
}

}  // namespace Sonarello
