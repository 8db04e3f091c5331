// Deletion of rows, and the list's own undo.
#include <algorithm>

#include "core/TextEncoding.h"
#include "core/Texts.h"
#include "editors/EventEdits.h"
#include "editors/EventStep.h"

namespace Sonarello {

namespace {

/// Characters of a value that a question repeats.
constexpr std::size_t LongestValue = 60;

std::string Shortened(const std::string& text) {
  if (text.size() <= LongestValue) return text;
  return std::string(CutToBytes(text, LongestValue)) + "...";
}

bool IsPlayable(const TypMidiEvent& event) { return event.IsChannelEvent(); }

}  // namespace

// --- Questions

std::string TEventEdits::RowQuestion(std::int32_t row) const {
  const auto& [track, position, time, channel, kind, value1, length, value2] = rows.Row(row).Fields;
  const PtrMidiEvent event = rows.Event(row);
  const std::string place =
      (IsPlayable(*event)
           ? Text("\rauf Midi-Kanal \"" + channel + "\", ", "\ron midi channel \"" + channel + "\", ")
           : std::string("\r")) +
      Text("bei Position \"" + position + "\" gelöscht werden?", "at position \"" + position + "\" ?");
  const std::string begin = Text("Soll \"", "Delete the \"");
  const auto valued = [&](const std::string& what, const std::string& value) {
    return begin + what + "\"" + Text(" mit dem Wert \"", " with value \"") + Shortened(value) + "\"," +
           place;
  };
  switch (KindOf(*event)) {
    case TEventKind::Note:
      return begin + kind + " " + value1 + "\"" + Text(" mit Länge \"", " with length \"") + length +
             "\"," + Text(" Anschlagsdynamik \"", " velocity \"") + value2 + "\"," + place;
    case TEventKind::KeyAftertouch:
      return begin + kind + "\"" + Text(" für Note \"", " for note \"") + value1 + "\"" +
             Text(" mit dem Wert \"", " with value \"") + value2 + "\"," + place;
    case TEventKind::ProgramChange: return valued(kind, value1);
    case TEventKind::ChannelAftertouch:
    case TEventKind::PitchBend: return valued(kind, length);
    case TEventKind::Controller: return valued(kind + " " + value1, value2);
    default: return valued(length.empty() ? kind : kind + " " + length, value2);
  }
}

std::string TEventEdits::DeleteQuestion(const std::vector<std::int32_t>& selected) const {
  if (selected.size() == 1) return RowQuestion(selected.front());
  const auto [first, last] = std::ranges::minmax(selected);
  const std::string from = rows.Row(first).Fields[PositionColumn];
  const std::string to = rows.Row(last).Fields[PositionColumn];
  return Text("Sollen die selektierten Events von \"" + from + "\" bis \"" + to + "\" gelöscht werden?",
              "Delete all selected events from \"" + from + "\" to \"" + to + "\" ?");
}

// --- Deletion

std::int32_t TEventEdits::PM_DeleteMidiEventClick(std::vector<std::int32_t> selected) {
  std::erase_if(selected, [&](std::int32_t row) { return rows.Event(row) == nullptr; });
  if (selected.empty() || !rows.Showing) return 0;
  if (IsPlaying()) {
    messages.Show(
        Text("Löschen nicht erlaubt während des Abspielens!", "Delete not allowed during playback!"));
    return 0;
  }
  std::vector<PtrMidiEvent> events;
  bool refused = false;
  for (const std::int32_t row : selected) {
    const PtrMidiEvent event = rows.Event(row);
    if (IsProtected(*event))
      refused = true;
    else
      events.push_back(event);
  }
  if (refused)
    messages.Show(Text("Diesen Sysex dürfen Sie nicht löschen!", "This sysex is not to be deleted!"));
  if (events.empty() || !messages.Ask(DeleteQuestion(selected))) return 0;
  // A question may have been answered while something else happened.
  if (!rows.Index.IsCurrent() || IsPlaying()) return 0;
  const std::int32_t row = std::ranges::min(selected);
  DeleteEvents(events);
  rows.EventListPosition = std::clamp(row, 1, rows.Rows());
  return static_cast<std::int32_t>(events.size());
}

void TEventEdits::DeleteEvents(const std::vector<PtrMidiEvent>& events) {
  TStep step(*this, Text("Midi-Events löschen", "delete midi events"));
  bool ignored = false;
  std::vector<PtrMidiEvent> all = events;
  for (PtrMidiEvent event : events) {
    ignored = ignored || event->Meta.Text().starts_with("srl_ignore");
    if (event->NoteOffEvent != nullptr) all.push_back(event->NoteOffEvent);
  }
  step.Remove(all);
  if (ignored) step.ReadIgnore();
  step.Finish();
}

// --- Undo

std::string TEventEdits::UndoText() const {
  const std::string word = Text("Rückgängig", "Undo");
  return CanUndo() ? word + " - " + undo.Name() : word;
}

std::int32_t TEventEdits::PM_UndoClick() {
  if (!CanUndo()) return 0;
  if (IsPlaying() && Hooks.StopButtonClick) Hooks.StopButtonClick();
  if (IsPlaying()) return 0;
  TMyTrack* const track = undo.Track();
  TEventIndex other(gate);
  const bool isShown = rows.Index.List() == track && rows.Index.IsCurrent();
  if (!isShown) other.Build(*track, {.Track = 0, .Format = 1, .Filter = 0});
  const std::vector<PtrMidiEvent> back = TStep::Undo(*this, isShown ? rows.Index : other);
  if (!isShown) return 0;
  std::int32_t row = 0;
  for (PtrMidiEvent event : back)
    if (row == 0) row = rows.Index.RowOf(event);
  if (row > 0) rows.EventListPosition = row;
  rows.EventListPosition = std::clamp(rows.EventListPosition, 1, rows.Rows());
  return row;
}

void TEventEdits::ClearBackupedData() {
  undo.Discard();
  if (Hooks.UndoChanged) Hooks.UndoChanged();
}

}  // namespace Sonarello
