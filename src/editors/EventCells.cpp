// Cells of the event list: which can be edited, by which editor, and what an edit is handed to.
#include <algorithm>

#include "core/Texts.h"
#include "editors/EventEdits.h"
#include "editors/EventStep.h"

namespace Sonarello {

namespace {

std::size_t Index(TEventEdit edit) { return static_cast<std::size_t>(edit); }

bool IsBank(const TypMidiEvent& event) {
  return event.Kind() == Controller && (event.Value[0] == 0 || event.Value[0] == 32);
}

/// What is edited in a cell of an event; `Count` for a cell that is not.
TEventEdit EditOf(int column, const TypMidiEvent& event) {
  const TEventKind kind = KindOf(event);
  const bool isNote = kind == TEventKind::Note;
  switch (column) {
    case PositionColumn: return TEventEdit::Position;
    case ChannelColumn: return event.IsChannelEvent() ? TEventEdit::MidiChannel : TEventEdit::Count;
    case Value1Column:
      if (isNote) return TEventEdit::Note;
      if (kind == TEventKind::Controller) return TEventEdit::Controller;
      if (kind == TEventKind::ProgramChange) return TEventEdit::ProgChange;
      return kind == TEventKind::Meta ? TEventEdit::MetaEvent : TEventEdit::Count;
    case LengthColumn:
      if (isNote) return TEventEdit::NoteLength;
      return kind == TEventKind::PitchBend ? TEventEdit::PitchBend : TEventEdit::Count;
    case Value2Column:
      if (isNote) return TEventEdit::NoteValue;
      if (kind == TEventKind::Controller) return TEventEdit::CtrlValue;
      if (kind == TEventKind::Meta) return TEventEdit::MetaValue;
      return kind == TEventKind::Sysex ? TEventEdit::SysexValue : TEventEdit::Count;
    default: return TEventEdit::Count;
  }
}

std::vector<std::string> Channels() {
  std::vector<std::string> items;
  for (int channel = 1; channel <= ChannelCount; ++channel) items.push_back(std::to_string(channel));
  return items;
}

std::vector<std::string> Keys(bool german) {
  std::vector<std::string> items;
  for (int key = 0; key < KeyCount; ++key) items.push_back(KeyName(key, german));
  return items;
}

std::vector<std::string> Controllers() {
  std::vector<std::string> items;
  for (const std::uint8_t number : NamedControllers()) items.emplace_back(ControllerName(number));
  return items;
}

std::vector<std::string> MetaTypes() {
  std::vector<std::string> items;
  for (TMetaChoice& choice : MetaChoices()) items.push_back(std::move(choice.Name));
  return items;
}

/// Controllers that are off or on: pedals, local control.
bool IsSwitch(int controller) {
  constexpr int firstPedal = 64;
  constexpr int lastPedal = 67;
  constexpr int local = 122;
  return (controller >= firstPedal && controller <= lastPedal) || controller == local;
}

struct TNotFound {
  std::string_view German;
  std::string_view English;
};

/// What is said when an edit does not find its event, in the order of the edits.
constexpr std::array<TNotFound, static_cast<std::size_t>(TEventEdit::Count)> NotFoundTexts = {{
    {"Fehler beim Suchen des Midi-Befehls um Controller zu ändern.",
     "Error searching for midi event to change the controller."},
    {"Fehler beim Suchen des Midi-Befehls um Controller-Wert zu ändern.",
     "Error searching for midi event to change the value of controller."},
    {"Fehler beim Suchen des Midi-Befehls um Meta-Event-Typ zu ändern.",
     "Error searching for midi event to change the meta event type."},
    {"Fehler beim Suchen des Midi-Befehls um Meta-Event-Wert zu ändern.",
     "Error searching for midi event to change the meta event value."},
    {"Fehler beim Suchen des Midi-Befehls um Midi-Kanal zu ändern.",
     "Error searching for midi event to change the midi channel."},
    {"Fehler beim Suchen des Midi-Befehls um Notenlänge zu ändern.",
     "Error searching for midi event to change the note length."},
    {"Fehler beim Suchen des Midi-Befehls um Note zu ändern.",
     "Error searching for midi event to change the note."},
    {"Fehler beim Suchen des Midi-Befehls um Note zu ändern.",
     "Error searching for midi event to change the note."},
    {"Fehler beim Suchen des Midi-Befehls um Pitch Bend zu ändern.",
     "Error searching for midi event to change the pitch bend value."},
    {"Fehler beim Suchen des Midi-Befehls um Position zu ändern.",
     "Error searching for midi event to change the position."},
    {"Fehler beim Suchen des Midi-Befehls um Programm-Wechsel zu ändern.",
     "Error searching for midi event to modify the patch change."},
    {"Fehler beim Suchen des Midi-Befehls um Sysex zu ändern.",
     "Error searching for midi event to change the sysex."},
}};
constexpr TNotFound NotePositionNotFound = {
    "Fehler beim Suchen des Midi-Befehls um Position der Note zu ändern.",
    "Error searching for midi event to change the position of note."};
constexpr TNotFound ProgramPositionNotFound = {
    "Fehler beim Suchen des Midi-Befehls um Programm-Wechsel zu verschieben.",
    "Error searching for midi event to change the position of program change."};

std::string NotFoundText(TEventEdit edit, TEventKind kind) {
  TNotFound text = NotFoundTexts[Index(edit)];
  if (edit == TEventEdit::Position && kind == TEventKind::Note) text = NotePositionNotFound;
  if (edit == TEventEdit::Position && kind == TEventKind::ProgramChange) text = ProgramPositionNotFound;
  return Text(text.German, text.English);
}

}  // namespace

// --- Editors

bool TEventEdits::GetCellReadOnly(int column, std::int32_t row) const {
  const PtrMidiEvent event = rows.Event(row);
  return event == nullptr || EditOf(column, *event) == TEventEdit::Count;
}

TCellEditing TEventEdits::GetCellEditorType(int column, std::int32_t row) {
  if (!rows.Showing || GetCellReadOnly(column, row)) return {};
  const TypMidiEvent& event = *rows.Event(row);
  const TEventEdit edit = EditOf(column, event);
  const std::string shown = rows.Row(row).Fields[static_cast<std::size_t>(column)];
  EditOnRow[Index(edit)] = row;
  EditPrev[Index(edit)] = shown;
  pendingKind = KindOf(event);
  if (edit == TEventEdit::MetaValue && HoldsXFChord(event)) EditXFChordPrev = shown;
  if (column == PositionColumn)
    WarnOfSoundChange(event, Text("Ändern Sie die Position nur wenn Sie genau wissen was Sie "
                                  "tun,\ransonsten drücken Sie die Taste ESC!",
                                  "Change the position only if you know exactly what you are "
                                  "doing,\relse press ESC."));
  if (column == ChannelColumn)
    WarnOfSoundChange(event, Text("Ändern Sie den Midi-Kanal nur wenn Sie genau wissen was Sie "
                                  "tun,\ransonsten drücken Sie die Taste ESC!",
                                  "Change the midi channel only if you know exactly what you are "
                                  "doing,\relse press ESC."));
  const bool german = rows.Texts.UseGermanChords;
  switch (edit) {
    case TEventEdit::MidiChannel: return {TCellEditor::List, Channels(), shown};
    case TEventEdit::Note: return {TCellEditor::List, Keys(german), KeyName(event.Value[0], german)};
    case TEventEdit::Controller:
      return {
          TCellEditor::ListWithText, Controllers(),
          ControllerName(event.Value[0]).empty() ? shown : std::string(ControllerName(event.Value[0]))};
    case TEventEdit::CtrlValue:
      if (IsSwitch(event.Value[0])) return {TCellEditor::ListWithText, {"0", "127"}, shown};
      return {TCellEditor::Text, {}, shown};
    case TEventEdit::MetaEvent: {
      for (const TMetaChoice& choice : MetaChoices())
        if (choice.Type == event.MType) return {TCellEditor::List, MetaTypes(), choice.Name};
      return {TCellEditor::List, MetaTypes(), {}};
    }
    case TEventEdit::MetaValue:
      if (event.IsMeta(MetaKeySignature)) return {TCellEditor::List, KeySignatureNames(), shown};
      return {TCellEditor::Text, {}, shown};
    default: return {TCellEditor::Text, {}, shown};
  }
}

void TEventEdits::CellEditCancelled() { EditOnRow.fill(0); }

void TEventEdits::Post(const std::string& text) {
  if (Hooks.PostMessage)
    Hooks.PostMessage(text);
  else
    messages.Show(text);
}

std::string TEventEdits::SoundChangeWarning(const std::string& advice) {
  return Text(
             "Die Controller \"0\" und \"32\", zusammen mit dem Programm-Wechsel\rbilden die "
             "Sound-Auswahl. Wenn Sie einen dieser Parameter ändern\rstimmt, unter Umständen, die "
             "Sound-Auswahl nicht mehr!\r\r",
             "The controllers \"0\" and \"32\", together with the program change,\rform the sound "
             "selection. If you change one of these parameter,\rthe sound selection could be "
             "wrong!\r\r") +
         advice;
}

void TEventEdits::WarnOfSoundChange(const TypMidiEvent& event, const std::string& advice) {
  if (IsBank(event) || event.Kind() == ProgramChange) Post(SoundChangeWarning(advice));
}

// --- Edits

TEditResult TEventEdits::Refused(const TCell& cell, std::string status) const {
  return {.Applied = false, .Text = cell.Prev, .Row = cell.Row, .Status = std::move(status)};
}

TEditResult TEventEdits::Done(const TCell& cell, int column) const {
  const std::int32_t row = rows.Index.RowOf(cell.Event);
  if (row == 0) return {.Applied = true, .Text = {}, .Row = 0, .Status = {}};
  return {.Applied = true,
          .Text = rows.Row(row).Fields[static_cast<std::size_t>(column)],
          .Row = row,
          .Status = {}};
}

TEditResult TEventEdits::CellEditDone(int column, std::int32_t row, std::string_view text) {
  if (!rows.Showing || column < 0 || column >= EventColumnCount) return {};
  const PtrMidiEvent event = rows.Event(row);
  TCell cell{.Column = column, .Row = row, .Event = event, .Text = std::string(text), .Prev = {}};
  TEventEdit edit = event == nullptr ? TEventEdit::Count : EditOf(column, *event);
  if (event == nullptr) {
    // The row is gone with a list that others changed. What was begun on it is dropped and told.
    for (std::size_t n = 0; n < EditOnRow.size(); ++n)
      if (row > 0 && EditOnRow[n] == row) edit = static_cast<TEventEdit>(n);
  }
  if (edit == TEventEdit::Count) return {};
  std::int32_t& onRow = EditOnRow[Index(edit)];
  cell.Prev = onRow == row || event == nullptr ? EditPrev[Index(edit)]
                                               : rows.Row(row).Fields[static_cast<std::size_t>(column)];
  onRow = 0;
  if (event == nullptr) {
    Post(NotFoundText(edit, pendingKind));
    return Refused(cell);
  }
  if (cell.Text == cell.Prev) return Refused(cell);
  const std::uint64_t steps = undo.Steps();
  try {
    return Apply(cell);
  } catch (const std::bad_alloc&) {
    if (undo.Steps() != steps) TakeBackHalf();
    Post(OutOfMemoryText());
    return Refused(cell);
  }
}

/// An edit failed half way: the song is as it was, and the rows are read anew.
void TEventEdits::TakeBackHalf() {
  TEventIndex other(gate);
  other.Build(*undo.Track(), {.Track = 0, .Format = 1, .Filter = 0});
  TStep::Undo(*this, other);
  rows.ShowEventsOnTrack(rows.ShowingTrack);
}

TEditResult TEventEdits::Apply(const TCell& cell) {
  constexpr std::array<TApply, static_cast<std::size_t>(TEventEdit::Count)> table = {
      &TEventEdits::EditController, &TEventEdits::EditControllerValue, &TEventEdits::EditMetaType,
      &TEventEdits::EditMetaValue,  &TEventEdits::EditChannel,         &TEventEdits::EditNoteLength,
      &TEventEdits::EditKey,        &TEventEdits::EditVelocity,        &TEventEdits::EditPitchBend,
      &TEventEdits::EditPosition,   &TEventEdits::EditProgram,         &TEventEdits::EditSysex};
  const TEventEdit edit = EditOf(cell.Column, *cell.Event);
  const TEventKind kind = KindOf(*cell.Event);
  const bool needsPair =
      kind == TEventKind::Note && (edit == TEventEdit::Position || edit == TEventEdit::NoteLength);
  if (needsPair && cell.Event->NoteOffEvent == nullptr) {
    Post(NotFoundText(edit, kind));
    return Refused(cell);
  }
  return (this->*table[Index(edit)])(cell);
}

}  // namespace Sonarello
