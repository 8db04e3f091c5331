// Sonarello: one level of undo for the tools that change a whole range of the song.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/MidiFunctions.h"
#include "core/Ports.h"
#include "core/Song.h"
#include "playback/SongGate.h"

namespace Sonarello {

/// What a backup was taken for: the `Tag` of the menu item `PMC_Undo`.
enum class TUndoKind : std::uint8_t {
  None = 0,
  CopyRange = 1,
  DeleteRange = 2,
  WholeSong = 3,  ///< any other tool that changes all tracks
  TransposeRange = 4,
  Recording = 5,  ///< into one track
};

/// A track as it was. Its list is linked but stands in no song.
struct TBackupTrack {
  std::int32_t TrkDelay = 0;  ///< ms
  std::int32_t TrkEventCounter = 0;
  PtrMidiEvent TrkFirstEvent = nullptr;
  PtrMidiEvent TrkLastEvent = nullptr;
  PtrMidiEvent TrkPlayEvent = nullptr;
  PtrMidiEvent TrkLoopStart = nullptr;
  std::int32_t TrkListIndex = 1;
  std::int32_t TrkNoteOnCnt = 0;
  std::int8_t TrkMidiIndex = -1;
  std::int8_t TrkPatchNumber = -1;
  bool TrkIgnore = false;
  std::string TrkName;
};

/// What an undo asks of those above it, in the order of its steps. Called on the main thread without
/// the gate; unset ones do nothing.
struct TUndoHooks {
  std::function<bool()> IsPlaying;            ///< unset: the song never plays
  std::function<void()> StopButtonClick;      ///< playback ends; called while playing only
  std::function<void()> MoveToStart;          ///< the player goes to 0 ms and forgets the old events
  std::function<std::int32_t()> TempoOffset;  ///< bpm that are in force; unset: 0
  /// Rewrites the notes for the transposition in force. Called if it is another than it was when the
  /// backup was taken.
  std::function<void()> Transpose;
  std::function<void()> ReadAndShowLyrics;  ///< the syllables are read anew
  std::function<void()> UpdateKeyEditor;
  std::function<void()> UpdateEventList;
  std::function<void()> ResetLyrics;  ///< the lyric display starts anew and goes to the position
  std::function<void()> Changed;      ///< the song is modified and wants a backup
  std::function<void()> MenuChanged;  ///< text and state of the two menu items are others
};

/// Keeps deep copies of tracks while a tool changes them, and brings them back once. A tool calls
/// `BeginRangeCommand` or `BeginRecording` before its first change; what was kept before is freed then.
/// Copies are nodes of the song's pool. Everything runs on the main thread.
class TUndo {
 public:
  TUndo(Song& s, TMidiFunctions& f, IMessages& m, SongGate& g)
      : song(s), functions(f), messages(m), gate(g) {}
  TUndo(const TUndo&) = delete;
  TUndo& operator=(const TUndo&) = delete;
  /// Leaves the copies to the song's pool.
  ~TUndo() = default;

  TUndoHooks Hooks;

  /// Keeps all tracks for a command with this name, in the user's language ("Bereich kopieren").
  /// Raises EMidiError with `OutOfMemoryText()` when there is no memory; song, former backup and menu
  /// are then as they were.
  void BeginRangeCommand(TUndoKind kind, std::string_view name);
  /// Keeps one track (index in `MidiTrack`) before events are recorded on a MIDI channel (from 1).
  /// Raises as `BeginRangeCommand`.
  void BeginRecording(std::int32_t track, int channel);

  /// The command of the menu: stops the player, asks, brings back what was kept, has everything shown
  /// anew. False if there is nothing to undo or the user said no.
  bool Undo();
  /// Brings back what was kept without asking, for a tool that failed half way.
  void Revert();
  /// Frees what was kept: the tool changed nothing.
  void Discard();
  /// Forgets what was kept without freeing it. Call it when the store is cleared: the pool takes all
  /// nodes back at once.
  void Forget();

  // --- `MME_Undo` and `PMC_Undo`, which always say the same

  [[nodiscard]] bool IsEnabled() const noexcept { return tag != TUndoKind::None; }
  [[nodiscard]] TUndoKind Tag() const noexcept { return tag; }
  /// "Rückgängig - Bereich kopieren", or "Rückgängig" without a command.
  [[nodiscard]] std::string MenuText() const;
  /// What stands behind " - "; empty if there is nothing to undo.
  [[nodiscard]] std::string CommandName() const;
  /// The question that `Undo` asks.
  [[nodiscard]] std::string Question() const;

  std::vector<TBackupTrack> BackupMidiTrack;  ///< all tracks; empty for a recording
  TBackupTrack RecBackupTrack;                ///< the recorded track
  std::int32_t RecBackupTrackIndex = -1;      ///< its index in `MidiTrack`, -1 if there is none

 private:
  /// What belongs to the song but not to a track's list.
  struct TBackupSong {
    std::size_t Tracks = 0;  ///< length of `MidiTrack`
    std::vector<TKeySignArray> KeySignArray;
    /// Copies of what `ForEachReference` meets, without key signatures; nothing for an event that no
    /// copy was made of.
    std::vector<std::optional<PtrMidiEvent>> References;
    std::array<TCountIn, ChannelCount> CountInArray{};
    std::vector<TTempo> SourceTempo;
    std::vector<TTimeSign> TimeSignature;
    std::vector<std::uint16_t> BackupTempo;
    std::array<bool, ChannelCount> Active{};
    std::array<std::int32_t, ChannelCount> ActiveNotes{};
    std::array<TNotesVelocities, ChannelCount> NotesVelocities{};
    std::array<std::int8_t, ChannelCount> ManualTransposeArray{};
    std::int32_t TransposeNew = 0;
    std::int32_t TempoOffset = 0;
    std::int32_t MaxSongPosition = 0;
    std::int32_t TickPositionOfFirstNote = 0;
    std::int32_t TickOrgPosOfFirstNote = 0;
    std::int32_t CountInIdx = -1;
    std::int32_t SysexTrack = -1;
    std::int32_t SysexFoundOnTrack = -1;
    std::int32_t XF_Track = -1;
    std::int32_t XF_ChordsArrayElements = 0;
    std::int32_t RolandDelaySysexTrack = -1;
    std::int32_t RolandInsFxOnTrack = -1;
    bool XF_Format = false;
  };
  class TBackup;

  void Begin(TUndoKind kind, std::string name, std::int32_t track);
  void FreeBackup() noexcept;
  void ShowMenu(TUndoKind kind, std::string name);
  /// The steps of an undo behind its question. Raises std::bad_alloc before anything has changed.
  void Restore();
  void MakeRoom();
  void RestoreReferences() noexcept;
  void RestoreTracks() noexcept;
  void RestoreSong() noexcept;
  void RestoreTimes();
  void RestoreEnd() noexcept;
  [[nodiscard]] bool PairNotes();
  [[nodiscard]] std::int32_t TempoOffset() const;

  Song& song;
  TMidiFunctions& functions;
  IMessages& messages;
  SongGate& gate;
  TUndoKind tag = TUndoKind::None;
  std::string command;
  TBackupSong kept;
};

}  // namespace Sonarello
