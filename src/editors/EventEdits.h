// Sonarello: edits in the event list: cells, insertion, deletion, each with its own undo.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/MidiFunctions.h"
#include "editors/EventRows.h"
#include "editors/EventUndo.h"

namespace Sonarello {

enum class TCellEditor : std::uint8_t {
  None,
  Text,
  List,          ///< one of the items
  ListWithText,  ///< one of the items, or a text
};

/// The editor that a cell wants.
struct TCellEditing {
  TCellEditor Editor = TCellEditor::None;
  std::vector<std::string> Items;
  std::string Text;  ///< what stands in the cell
};

/// What is edited: one pending edit at most for each.
enum class TEventEdit : std::uint8_t {
  Controller,
  CtrlValue,
  MetaEvent,
  MetaValue,
  MidiChannel,
  NoteLength,
  Note,
  NoteValue,
  PitchBend,
  Position,
  ProgChange,
  SysexValue,
  Count,
};

/// How an edit ended.
struct TEditResult {
  bool Applied = false;  ///< the song has changed
  std::string Text;      ///< what the cell shows now; its old text if the edit was refused
  std::int32_t Row = 0;  ///< where the edited event stands now; 0 if the list does not show it any more
  std::string Status;    ///< why the edit was refused, for the status line; often empty
};

/// What edits ask of those above them. Called on the main thread without the gate unless told
/// otherwise; unset ones do nothing.
struct TEventEditHooks {
  std::function<bool()> IsPlaying;        ///< unset: the song never plays
  std::function<void()> StopButtonClick;  ///< playback ends
  /// Tells a text when the cell's editor is closed; unset: it is told at once.
  std::function<void(const std::string&)> PostMessage;
  std::function<void()> Changed;  ///< the song is modified and wants a backup
  /// A note that may sound was changed: its channel's (0-15) notes end. Gate held.
  std::function<void(int channel)> EndNotes;
  /// An event leaves the song: the player forgets it. Gate held.
  std::function<void(PtrMidiEvent)> ForgetEvent;
  /// Calls a change of tempi or signatures so that the song stays at its musical place; unset: it is
  /// just called. Gate held.
  std::function<void(const std::function<void()>& change)> ChangeTimes;
  std::function<void()> ReadAndShowLyrics;  ///< lyrics have changed
  std::function<void()> TimesChanged;       ///< tempi and signatures have changed
  std::function<void()> KeySignaturesChanged;
  std::function<void()> SysexsChanged;    ///< sysexes, and with them perhaps effects, have changed
  std::function<void()> ReadFirstValues;  ///< the desk takes the channels' first values
  /// The first value of a channel's (0-15) controller has changed: faders, the controller window.
  std::function<void(int channel, int controller)> ShowController;
  std::function<void(int channel)> DisplayPatchName;  ///< the sound of a channel (0-15)
  std::function<void(int channel)> NotesChanged;      ///< notes of a channel (0-15), for their views
  std::function<void()> UndoChanged;                  ///< state and text of the undo item
};

/// Edits what `TEventRows` shows. An edit keeps the song whole (`CheckSong`), brings rows and index up
/// to date and can be undone until the next one.
class TEventEdits {
 public:
  TEventEdits(Song& s, TEventRows& r, TMidiFunctions& f, const IRoutes& t, IMessages& m, SongGate& g)
      : song(s), rows(r), functions(f), routes(t), messages(m), gate(g), undo(s) {}
  TEventEdits(const TEventEdits&) = delete;
  TEventEdits& operator=(const TEventEdits&) = delete;

  TEventEditHooks Hooks;

  // --- Cells (EventCells.cpp)

  /// True for a cell (column 0-7, row from 1) that cannot be edited.
  [[nodiscard]] bool GetCellReadOnly(int column, std::int32_t row) const;
  /// The editor of a cell. Keeps row and text for `CellEditDone`; warns where an edit may spoil the
  /// choice of a sound.
  TCellEditing GetCellEditorType(int column, std::int32_t row);
  /// Applies an edit. An unchanged text changes nothing; a refused one leaves the song as it was.
  TEditResult CellEditDone(int column, std::int32_t row, std::string_view text);
  /// The edit is given up.
  void CellEditCancelled();

  std::array<std::int32_t, static_cast<std::size_t>(TEventEdit::Count)> EditOnRow{};  ///< 0: none
  std::array<std::string, static_cast<std::size_t>(TEventEdit::Count)> EditPrev;
  std::string EditXFChordPrev;

  // --- Sysexes (EventMetaEdits.cpp)

  /// True for a row with a Roland data set message, whose checksum can be computed.
  [[nodiscard]] bool HasRolandChecksum(std::int32_t row) const;
  /// Computes it anew.
  TEditResult RecomputeChecksum(std::int32_t row);
  /// True for a sysex that the song needs: it holds it by reference, or it is the instrument's reset.
  [[nodiscard]] bool IsProtected(const TypMidiEvent& event) const;

  // --- Rows (EventInsert.cpp, EventDelete.cpp)

  /// True if something can be inserted now.
  [[nodiscard]] bool MayInsert() const;
  /// Inserts an event of the chosen kind at the place of a row. Row of the new event, or 0.
  std::int32_t PM_InsertMidiEventClick(std::int32_t row);
  /// Asks and deletes the events of the rows. The number of events that went, notes counting once.
  std::int32_t PM_DeleteMidiEventClick(std::vector<std::int32_t> selected);
  /// The question for a row or several.
  [[nodiscard]] std::string DeleteQuestion(const std::vector<std::int32_t>& selected) const;

  // --- Undo (EventDelete.cpp)

  [[nodiscard]] bool CanUndo() const noexcept { return undo.IsEnabled(); }
  [[nodiscard]] std::string UndoText() const;
  /// True for an event that taking back the last edit would set back or bring back.
  [[nodiscard]] bool TakesBack(const TypMidiEvent* event) const noexcept { return undo.Keeps(event); }
  /// Takes back the last edit. A row that it concerned, or 0.
  std::int32_t PM_UndoClick();
  /// The song was changed by others: the last edit cannot be undone any more.
  void ClearBackupedData();
  /// The song is about to be replaced.
  void Forget() noexcept { undo.Forget(); }

 private:
  class TStep;
  struct TCell;
  using TApply = TEditResult (TEventEdits::*)(const TCell&);

  [[nodiscard]] bool IsPlaying() const { return Hooks.IsPlaying && Hooks.IsPlaying(); }
  void Post(const std::string& text);
  /// The warning that a change may spoil the choice of a sound, with what is advised.
  [[nodiscard]] static std::string SoundChangeWarning(const std::string& advice);
  void WarnOfSoundChange(const TypMidiEvent& event, const std::string& advice);
  [[nodiscard]] TEditResult Refused(const TCell& cell, std::string status = {}) const;
  [[nodiscard]] TEditResult Done(const TCell& cell, int column) const;
  TEditResult Apply(const TCell& cell);
  void TakeBackHalf();

  TEditResult EditPosition(const TCell& cell);
  TEditResult EditChannel(const TCell& cell);
  TEditResult EditKey(const TCell& cell);
  TEditResult EditNoteLength(const TCell& cell);
  TEditResult EditVelocity(const TCell& cell);
  TEditResult EditController(const TCell& cell);
  TEditResult EditControllerValue(const TCell& cell);
  TEditResult EditProgram(const TCell& cell);
  TEditResult EditPitchBend(const TCell& cell);
  TEditResult EditMetaType(const TCell& cell);
  TEditResult EditMetaValue(const TCell& cell);
  TEditResult EditSysex(const TCell& cell);

  void MoveNote(TStep& step, PtrMidiEvent on, std::int32_t position, std::int32_t length);
  void EndNoteAt(TStep& step, PtrMidiEvent on, std::int32_t end);
  void TakeFirstValue(const TypMidiEvent& event);
  TEditResult SetSysex(const TCell& cell, std::vector<std::uint8_t> bytes);

  struct TPlaceOfInsert {
    PtrMidiEvent Selected = nullptr;
    std::int32_t Position = 0;
    int Channel = 0;
  };
  [[nodiscard]] TPlaceOfInsert PlaceOfInsert(std::int32_t row) const;
  [[nodiscard]] int ChannelOfInsert(const TypMidiEvent* selected) const;
  [[nodiscard]] PtrMidiEvent MakeEvent(TEventKind kind, const TPlaceOfInsert& place) const;
  bool InsertNote(TStep& step, PtrMidiEvent on, std::vector<std::string>& told);
  void DeleteEvents(const std::vector<PtrMidiEvent>& events);
  [[nodiscard]] std::string RowQuestion(std::int32_t row) const;

  Song& song;
  TEventRows& rows;
  TMidiFunctions& functions;
  const IRoutes& routes;
  IMessages& messages;
  SongGate& gate;
  TEventUndo undo;
  TEventKind pendingKind = TEventKind::Unknown;  ///< of the row whose editor was opened last
};

}  // namespace Sonarello
