// Sonarello: which events of a list make a row, and where each row's event stands.
#pragma once

#include <bitset>
#include <cstdint>
#include <utility>
#include <vector>

#include "core/EventList.h"
#include "playback/SongGate.h"

namespace Sonarello {

/// Index in the track list from which on the sysex list is meant.
inline constexpr int SysexListIndex = 99;

/// The rules by which an event makes a row.
struct TEventFilter {
  int Track = 0;   ///< index in the track list
  int Format = 1;  ///< `MidiFileFormat`
  int Filter = 0;  ///< index in the filter list: 0 all, 1-8 a kind

  /// The first rule: in format 0 each entry of the track list holds its own channel's events.
  [[nodiscard]] bool IsOfList(const TypMidiEvent& event) const noexcept;
  [[nodiscard]] bool MakesRow(const TypMidiEvent& event) const noexcept;
};

/// Bank selects that stand in front of a program change; 255 for one that is not given.
struct TBankMemory {
  static constexpr std::uint8_t NotGiven = 0xFF;
  std::uint8_t MSB = NotGiven;
  std::uint8_t LSB = NotGiven;

  friend bool operator==(const TBankMemory&, const TBankMemory&) = default;
};

struct TOpenNoteRow;

/// The rows of one list: 12 bytes a row, whose texts are made when they are shown. Rows count from 1.
/// Everything runs on the main thread; the gate is held in pieces while `ListPos`, which the player
/// reads, is written.
class TEventIndex {
 public:
  explicit TEventIndex(SongGate& g) : gate(g) {}

  /// Reads a list anew, which must stand until the next call, and gives every event its `ListPos`: a
  /// row's event its row, a hidden one the row in front of it, at least 1.
  /// With `pair` the events' own pairing follows the rows'.
  void Build(TMyTrack& list, const TEventFilter& rules, bool pair = false);
  /// Forgets everything; nothing is shown.
  void Clear() noexcept;

  [[nodiscard]] const TEventFilter& Filter() const noexcept { return filter; }
  [[nodiscard]] TMyTrack* List() const noexcept { return track; }
  /// False if the list was changed behind the index's back; its pointers may then lead nowhere.
  [[nodiscard]] bool IsCurrent() const noexcept;
  [[nodiscard]] std::int32_t Rows() const noexcept { return static_cast<std::int32_t>(events.size()); }
  /// Event of a row, nil for a row that is not there.
  [[nodiscard]] PtrMidiEvent Event(std::int32_t row) const noexcept;
  /// Length of a note's row, ticks; -1 without note-off. First in, first out, by channel and key, at
  /// most 32 open at once, whatever the events' own pairing says.
  [[nodiscard]] std::int32_t Length(std::int32_t row) const noexcept;
  /// What a program's row has in front of it.
  [[nodiscard]] TBankMemory Bank(std::int32_t row) const noexcept;
  /// Row of an event of the list; 0 if it makes none.
  [[nodiscard]] std::int32_t RowOf(const TypMidiEvent* event) const noexcept;
  /// An event of the list at or in front of a tick, the head if there is no row: where a walk to the
  /// tick may begin.
  [[nodiscard]] PtrMidiEvent NodeBefore(std::int32_t position) const noexcept;
  /// The same for a walk that meets every note of a channel and a key which may sound at a tick.
  [[nodiscard]] PtrMidiEvent NodeBeforeNotes(int channel, int key,
                                             std::int32_t position) const noexcept;
  /// The row that the song stands on at a time (ms): that of the first event at or behind it, at
  /// least 1; 0 without rows. Costs no walk.
  [[nodiscard]] std::int32_t RowAtTime(std::int32_t milliseconds) const noexcept;

  // --- Edits. An event that is unlinked, moved or changed in what makes it a row leaves first and
  // --- enters again behind the change; both are harmless for an event without row.

  /// The event is about to leave the list or to change; it still stands where it stood. Its row, or 0.
  std::int32_t Leave(const TypMidiEvent& event);
  /// The event stands in the list as it is to be shown. Its row, or 0.
  std::int32_t Enter(PtrMidiEvent event);
  /// The list as it stands now is the one that the index knows.
  void Adopt() noexcept;
  /// Pairs the notes of a channel (0-15) and a key (0-127), or of two keys in one walk, in the list and
  /// in the rows. `from` and `to` are the first and the last tick at which notes of them stood or stand
  /// otherwise than before; what lies outside is looked at only as far as it must.
  void PairKeys(int channel, int key, int other, std::int32_t from, std::int32_t to);
  /// Reads the banks of the program rows around two places and between them anew.
  void ReadBanks(const TypMidiEvent& first, const TypMidiEvent& last);
  /// Gives `ListPos` to the events whose rows were shifted by edits since the last call. Cheap when
  /// there are none; meant for a moment in which nothing is waited for.
  void SettleListPos();

 private:
  class TPairing;
  using TKeys = std::bitset<std::size_t{ChannelCount} * KeyCount>;
  [[nodiscard]] static std::size_t KeyIndex(int channel, int key) noexcept {
    return static_cast<std::size_t>(channel) * KeyCount + static_cast<std::size_t>(key);
  }
  void ReadRows(bool pair);
  void NoteProgram(const TypMidiEvent& event) noexcept;
  void CloseNote(TPairing& pairing, PtrMidiEvent off, bool pair);
  void EndPair(const TOpenNoteRow& open, PtrMidiEvent off);
  void Grow();
  [[nodiscard]] std::int32_t PlaceOfRow(const TypMidiEvent& event) const noexcept;

  SongGate& gate;
  TMyTrack* track = nullptr;
  TEventFilter filter;
  std::vector<PtrMidiEvent> events;
  /// Of a note's row its length, of a program's row its banks (MSB * 256 + LSB).
  std::vector<std::int32_t> details;
  /// Keys whose notes are not all paired as the rows tell: one without end, an end without note.
  TKeys loose;
  std::int32_t longest = 0;                    ///< no note is longer, ticks
  std::int32_t firstProgram = 0;               ///< no program change stands earlier, ticks
  std::int32_t lastProgram = -1;               ///< none stands later
  std::int32_t nodes = 0;                      ///< `TrkEventCounter` as the index knows the list
  std::pair<PtrMidiEvent, PtrMidiEvent> ends;  ///< first and last node
  std::int32_t unsettled = 0;                  ///< first row whose `ListPos` is to be told; 0: none
};

}  // namespace Sonarello
