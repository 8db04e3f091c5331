// Edits of channel events: position, channel, key, length and values.
#include <algorithm>

#include "core/Texts.h"
#include "core/TimeMap.h"
#include "editors/EventEdits.h"
#include "editors/EventPosition.h"
#include "editors/EventStep.h"

namespace Sonarello {

namespace {

constexpr std::int32_t ShortestNote = 2;  ///< ticks, of a length that is typed

std::string Advice() {
  return Text("Belassen Sie die Änderung nur wenn Sie genau wissen was Sie tun.",
              "Leave the change only if you know exactly what you are doing.");
}

std::string RangeText(std::int64_t first, std::int64_t last) {
  const std::string range = std::to_string(first) + " - " + std::to_string(last);
  return Text("Gültige Werte: " + range, "Valid values: " + range);
}

/// A number in a range, or none.
std::optional<int> NumberIn(std::string_view text, int first, int last) {
  std::int64_t number = 0;
  if (!ReadNumber(text, number) || number < first || number > last) return std::nullopt;
  return static_cast<int>(number);
}

bool IsSameNote(const TypMidiEvent& a, const TypMidiEvent& b) {
  return a.Command == b.Command && a.DLength == b.DLength && a.DType == b.DType && a.MType == b.MType &&
         a.Value[0] == b.Value[0] && a.Meta == b.Meta;
}

/// The next start of the same note behind `on`, up to a tick; nil if there is none.
PtrMidiEvent NextEqual(const TypMidiEvent& on, std::int32_t until) {
  for (PtrMidiEvent e = on.NextEvent; e != nullptr && e->Position <= until; e = e->NextEvent)
    if (IsSameNote(*e, on)) return e;
  return nullptr;
}

/// The bank selects that stand in front of a program, as the list remembers them.
struct TTrio {
  PtrMidiEvent MSB = nullptr;
  PtrMidiEvent LSB = nullptr;
};
TTrio BanksOf(const TypMidiEvent& program, const TEventFilter& filter) {
  TTrio trio;
  for (PtrMidiEvent e = program.PrevEvent; e != nullptr; e = e->PrevEvent) {
    if (e->DLength == 0 || !filter.IsOfList(*e)) continue;
    if (e->Kind() == ProgramChange) break;
    if (e->Kind() != Controller || e->Channel() != program.Channel()) continue;
    if (e->Value[0] == 0 && trio.MSB == nullptr) trio.MSB = e;
    if (e->Value[0] == 32 && trio.LSB == nullptr) trio.LSB = e;
    if (trio.MSB != nullptr && trio.LSB != nullptr) break;
  }
  return trio;
}

}  // namespace

// --- Position and length

TEditResult TEventEdits::EditPosition(const TCell& cell) {
  constexpr std::int32_t aheadMSB = 4;  // ticks
  constexpr std::int32_t aheadLSB = 2;
  const TTypedPosition typed = ParsePosition(song, cell.Text);
  if (typed.Position < 0) {
    if (!typed.Message.empty()) Post(typed.Message);
    return Refused(cell, Text("Takt.Schlag.Ticks erwartet", "measure.beat.ticks expected"));
  }
  const PtrMidiEvent event = cell.Event;
  TStep step(*this, Text("Position ändern", "change position"));
  if (event->Kind() == NoteOn) {
    const std::int32_t shown = rows.Index.Length(cell.Row);
    MoveNote(step, event, typed.Position,
             shown >= 0 ? shown : event->NoteOffEvent->Position - event->Position);
  } else {
    const TTrio banks = event->Kind() == ProgramChange ? BanksOf(*event, rows.Index.Filter()) : TTrio{};
    for (const auto& [moved, ahead] :
         {std::pair{banks.MSB, aheadMSB}, std::pair{banks.LSB, aheadLSB}, std::pair{event, 0}}) {
      if (moved == nullptr) continue;
      step.Touch(moved);
      step.Move(moved, typed.Position - ahead);
      step.Settle(moved);
    }
  }
  step.Finish();
  return Done(cell, PositionColumn);
}

void TEventEdits::MoveNote(TStep& step, PtrMidiEvent on, std::int32_t position, std::int32_t length) {
  step.Touch(on);
  step.Move(on, position);
  step.Settle(on);
  EndNoteAt(step, on, Saturated(std::int64_t{on->Position} + length));
}

/// Moves the note-off of a note to a tick, but in front of the next start of the same note.
void TEventEdits::EndNoteAt(TStep& step, PtrMidiEvent on, std::int32_t end) {
  const PtrMidiEvent off = on->NoteOffEvent;
  const std::int32_t wanted = std::min(end, song.MaxSongPosition);
  const PtrMidiEvent next = NextEqual(*on, wanted);
  step.Touch(off);
  step.Move(off, next == nullptr ? wanted : std::max(next->Position - 1, on->Position));
  if (next != nullptr) off->TimePosition = std::max(next->TimePosition - 1, on->TimePosition);
  step.Settle(off);
  if (next == nullptr) return;
  const std::string position = TicksToStr(song, next->Position);
  Post(Text("Eine andere gleiche Note fängt bei \"" + position + "\", daher wurde diese Note verküzt!",
            "Another note starts at \"" + position + "\", therefor the note will be shortened!"));
}

TEditResult TEventEdits::EditNoteLength(const TCell& cell) {
  const PtrMidiEvent on = cell.Event;
  std::int64_t typed = 0;
  if (!ReadNumber(cell.Text, typed))
    return Refused(cell, Text("Länge in Ticks erwartet", "length in ticks expected"));
  const std::int64_t longest = std::int64_t{song.MaxSongPosition} - on->Position;
  const bool tooLong = typed > longest;
  const auto length =
      static_cast<std::int32_t>(tooLong ? longest - 1 : std::max<std::int64_t>(typed, 0));
  if (typed < ShortestNote || length < 1) {
    Post(Text("Notenlänge zu kurz!", "Note length too short!"));
    return Refused(cell);
  }
  if (tooLong)
    Post(Text("Notenlänge zu lang, daher wurde diese gekürzt!",
              "Note length cut to fit the song length!"));
  const std::int32_t shown = rows.Index.Length(cell.Row);
  if (length == shown) return Refused(cell);
  TStep step(*this, Text("Notenlänge ändern", "change note length"));
  EndNoteAt(step, on, on->Position + length);
  step.Finish();
  return Done(cell, LengthColumn);
}

// --- Channel and key

TEditResult TEventEdits::EditChannel(const TCell& cell) {
  const std::optional<int> typed = NumberIn(cell.Text, 1, ChannelCount);
  if (!typed) return Refused(cell, RangeText(1, ChannelCount));
  // The cell shows the channel that the strip goes out on: what is chosen is what is shown then.
  int channel = *typed - 1;
  if (song.MidiData[static_cast<std::size_t>(channel)].MidiChannel != channel)
    for (int strip = 0; strip < ChannelCount; ++strip)
      if (song.MidiData[static_cast<std::size_t>(strip)].MidiChannel == *typed - 1) channel = strip;
  const auto take = [channel](PtrMidiEvent e) {
    e->Command = static_cast<std::uint8_t>((e->Command & 0xF0) | channel);
  };
  TStep step(*this, Text("Midi-Kanal ändern", "change midi channel"));
  const PtrMidiEvent off = cell.Event->NoteOffEvent;
  step.Change(cell.Event, take);
  if (off != nullptr) step.Change(off, take);
  step.ReadTrackChannel();
  step.Finish();
  return Done(cell, ChannelColumn);
}

TEditResult TEventEdits::EditKey(const TCell& cell) {
  const std::optional<int> key = KeyOfName(cell.Text, rows.Texts.UseGermanChords);
  if (!key) return Refused(cell, Text("Notenname erwartet", "name of a note expected"));
  TStep step(*this, Text("Note ändern", "change note"));
  const PtrMidiEvent off = cell.Event->NoteOffEvent;
  const auto take = [&](PtrMidiEvent e) { TStep::SetValue(e, 0, *key); };
  step.Change(cell.Event, take);
  if (off != nullptr) step.Change(off, take);
  step.Finish();
  return Done(cell, Value1Column);
}

TEditResult TEventEdits::EditVelocity(const TCell& cell) {
  constexpr int highest = 127;
  const std::optional<int> velocity = NumberIn(cell.Text, 1, highest);
  if (!velocity) return Refused(cell, RangeText(1, highest));
  TStep step(*this, Text("Anschlagsdynamik ändern", "change velocity"));
  step.Change(cell.Event, [&](PtrMidiEvent e) { TStep::SetValue(e, 1, *velocity); });
  step.Finish();
  return Done(cell, Value2Column);
}

// --- Values

TEditResult TEventEdits::EditPitchBend(const TCell& cell) {
  constexpr int centre = 8192;
  const std::optional<int> bend = NumberIn(cell.Text, -centre, centre - 1);
  if (!bend) return Refused(cell, RangeText(-centre, centre - 1));
  TStep step(*this, Text("Pitch Bend ändern", "change pitch bend"));
  step.Change(cell.Event, [&](PtrMidiEvent e) {
    TStep::SetValue(e, 0, (*bend + centre) & 0x7F);
    TStep::SetValue(e, 1, (*bend + centre) >> 7);
  });
  step.Finish();
  return Done(cell, LengthColumn);
}

TEditResult TEventEdits::EditController(const TCell& cell) {
  struct TSensible {
    int Controller;
    int Value;
  };
  constexpr TSensible sensible[] = {{0, 0}, {1, 0}, {32, 0}, {10, 64}, {11, 127}};
  const std::optional<int> number = ControllerOfName(cell.Text);
  if (!number) return Refused(cell, Text("Controller erwartet", "controller expected"));
  const PtrMidiEvent event = cell.Event;
  if (*number == event->Value[0]) return Refused(cell);
  const bool wasBank = event->Value[0] == 0 || event->Value[0] == 32;
  TStep step(*this, Text("Controller ändern", "change controller"));
  step.Change(event, [&](PtrMidiEvent e) {
    TStep::SetValue(e, 0, *number);
    for (const TSensible& row : sensible)
      if (row.Controller == *number) TStep::SetValue(e, 1, row.Value);
  });
  step.Finish();
  TakeFirstValue(*event);
  if (wasBank || *number == 0 || *number == 32) Post(SoundChangeWarning(Advice()));
  return Done(cell, Value1Column);
}

TEditResult TEventEdits::EditControllerValue(const TCell& cell) {
  constexpr int highest = 127;
  const std::optional<int> value = NumberIn(cell.Text, 0, highest);
  if (!value) return Refused(cell, RangeText(0, highest));
  TStep step(*this, Text("Controller-Wert ändern", "change value of controller"));
  step.ChangeValue(cell.Event, [&](PtrMidiEvent e) { TStep::SetValue(e, 1, *value); });
  step.Finish();
  TakeFirstValue(*cell.Event);
  WarnOfSoundChange(*cell.Event, Advice());
  return Done(cell, Value2Column);
}

/// A controller in front of the song's first note is its channel's first value as well.
void TEventEdits::TakeFirstValue(const TypMidiEvent& event) {
  constexpr std::uint8_t withFader[] = {7, 10, 11, 71, 72, 73, 74, 91, 93, 94};
  const int channel = event.Channel();
  const bool hasFader = std::ranges::find(withFader, event.Value[0]) != std::end(withFader);
  const bool inFront = hasFader && event.Position < song.TickPositionOfFirstNote;
  {
    // The player follows the song's values in the same place.
    const auto held = gate.Enter();
    TCtrl& first = song.MidiData[static_cast<std::size_t>(channel)].CtrlArray[event.Value[0]];
    if (first.Event != &event && !inFront) return;
    first.Value = event.Value[1];
  }
  if (Hooks.ShowController) Hooks.ShowController(channel, event.Value[0]);
}

TEditResult TEventEdits::EditProgram(const TCell& cell) {
  constexpr int programs = 128;
  const std::optional<int> program = NumberIn(cell.Text, 1, programs);
  if (!program) return Refused(cell, RangeText(1, programs));
  const PtrMidiEvent event = cell.Event;
  TStep step(*this, Text("Programm-Wechsel ändern", "change program"));
  step.ChangeValue(event, [&](PtrMidiEvent e) {
    TStep::SetValue(e, 0, *program - 1);
    TMidiChannelData& data = song.MidiData[static_cast<std::size_t>(e->Channel())];
    if (data.PatchEvent == e) data.Patch = static_cast<std::int8_t>(*program - 1);
  });
  step.Finish();
  WarnOfSoundChange(*event, Advice());
  return Done(cell, Value1Column);
}

}  // namespace Sonarello
