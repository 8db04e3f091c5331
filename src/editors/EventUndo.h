// Sonarello: the event list's own undo, one step deep.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/EventList.h"
#include "core/MidiFunctions.h"
#include "playback/SongGate.h"

namespace Sonarello {

/// Keeps what one edit changes, however large the song: the events it touches as they were, and those
/// that it removed. An edit calls `Begin`, then tells of each event before it changes it.
class TEventUndo {
 public:
  TEventUndo(Song& s, SongGate& g) : song(s), gate(g) {}
  TEventUndo(const TEventUndo&) = delete;
  TEventUndo& operator=(const TEventUndo&) = delete;
  /// Leaves removed events to the song's pool.
  ~TEventUndo() = default;

  /// A new edit begins: what was kept before is freed. `name` is what the menu says.
  void Begin(std::string name);
  /// An event is about to change in place or to move; it stands in a list of the song.
  void WillChange(PtrMidiEvent event, int track);
  /// An event was linked into a list.
  void Inserted(PtrMidiEvent event, int track);
  /// Takes an event out of its list and out of every reference, and keeps it.
  void Remove(PtrMidiEvent event, int track);
  /// Tempi or signatures are about to change: their tables are kept.
  void WillChangeTimes();

  /// Takes back what was done since `Begin`, in the reverse order; the gate is held meanwhile. What
  /// follows from events (pairs, first values, times) is told to the caller by `Undone`.
  struct TUndone {
    bool Times = false;
    std::vector<std::pair<int, int>> Keys;  ///< channel and key of every note that was touched
  };
  TUndone Undo();
  /// Frees what is kept: there is nothing to undo any more.
  void Discard();
  /// Forgets what is kept without freeing it. Call it when the store is cleared.
  void Forget() noexcept;

  [[nodiscard]] bool IsEnabled() const noexcept { return !name.empty(); }
  [[nodiscard]] const std::string& Name() const noexcept { return name; }
  /// True if undoing adds or removes events, which wants the player to be stopped.
  [[nodiscard]] bool ChangesLists() const noexcept;

 private:
  enum class What : std::uint8_t { Changed, Inserted, Removed };
  struct TEntry {
    What Kind = What::Changed;
    int Track = 0;
    PtrMidiEvent Event = nullptr;
    PtrMidiEvent Before = nullptr;  ///< what stood in front of it
    TypMidiEvent Image;             ///< the event as it was
  };
  /// What an edit may change beside events.
  struct TRest {
    std::vector<std::pair<std::size_t, PtrMidiEvent>> References;  ///< forgotten ones, by their number
    std::array<bool, ChannelCount> Active{};
    std::array<std::int32_t, ChannelCount> ActiveNotes{};
    std::array<std::array<TCtrl, ControllerCount>, ChannelCount> CtrlArrays{};
  };

  void FreeRemoved() noexcept;

  Song& song;
  SongGate& gate;
  std::string name;
  std::vector<TEntry> entries;
};

}  // namespace Sonarello
