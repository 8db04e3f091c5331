// Sonarello: what choosing a sound has changed in a song, so that it can be taken back.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "core/Song.h"

namespace Sonarello {

/// Remembers the events of one channel as they were before they were written first. Events that others
/// have taken out of the song meanwhile are left alone. Its operations are called with the song's gate
/// held.
class TSoundJournal {
 public:
  explicit TSoundJournal(Song& s) : song(s) {}

  /// Forgets everything and follows a channel (0-15).
  void Begin(int channel);
  /// Remembers the event that is in force for a controller, and the desk's value.
  void TouchController(int controller);
  /// Remembers the program change that is in force.
  void TouchProgram();
  /// To be called in front of an insertion: remembers which events the desk knows the sound by.
  void BeginInsertion();
  /// An event that came in, to be taken out again.
  void Inserted(PtrMidiEvent event) { inserted.push_back(event); }
  [[nodiscard]] bool HasInserted() const noexcept { return !inserted.empty(); }

  /// True if a remembered event differs from what it was, or one came in.
  [[nodiscard]] bool IsChanged() const;
  /// Gives every remembered event and the desk its values back; what came in stays.
  void Restore();
  /// `Restore`, then what came in goes out. True if events went.
  bool RestoreAll();

 private:
  static constexpr int Program = -1;
  /// An event in its first state, or only a value of the desk where the song has no event.
  struct TEntry {
    PtrMidiEvent Event = nullptr;
    int Controller = Program;
    int DeskValue = 0;  ///< `CtrlArray[n].Value` or `Patch`
    std::uint8_t Command = 0;
    std::int32_t Position = 0;  ///< ticks
    std::array<std::uint8_t, 2> Value{};
    std::int32_t DLength = 0;
  };

  /// What the desk knows a channel's sound by.
  struct TDeskSound {
    TCtrl BankMSB;
    TCtrl BankLSB;
    PtrMidiEvent PatchEvent = nullptr;
    std::int8_t Patch = -1;
  };

  void RestoreDeskSound();
  void Touch(PtrMidiEvent event, int controller, int deskValue);
  void RestoreEntry(const TEntry& entry);
  void RestoreDesk(const TEntry& entry);
  [[nodiscard]] bool StillIs(const TEntry& entry, const TypMidiEvent& event) const;

  Song& song;
  int channel = 0;
  std::vector<TEntry> entries;
  std::vector<PtrMidiEvent> inserted;
  TDeskSound before;  ///< the insertion
};

}  // namespace Sonarello
