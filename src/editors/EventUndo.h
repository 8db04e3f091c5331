// Sonarello: the event list's own undo, one step deep.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "core/EventList.h"

namespace Sonarello {

/// Keeps what one edit changes, however large the song: the events it touches as they were, and those
/// that it removed. An edit calls `Begin`, then tells of each event before it changes it. Main thread,
/// the gate held by the caller.
class TEventUndo {
 public:
  explicit TEventUndo(Song& s) : song(s) {}
  TEventUndo(const TEventUndo&) = delete;
  TEventUndo& operator=(const TEventUndo&) = delete;
  /// Leaves removed events to the song's pool.
  ~TEventUndo() = default;

  /// A new edit begins on a track: what was kept before is freed. `name` is what the menu says.
  void Begin(std::string name, TMyTrack& track, int number);
  /// An event is about to change in place or to move. Raises std::bad_alloc, as all that keep.
  void WillChange(PtrMidiEvent event);
  /// An event was linked into the list.
  void Inserted(PtrMidiEvent event);
  /// Takes events out of the list and out of every reference, and keeps them. Sorted by their
  /// addresses.
  void Remove(const std::vector<PtrMidiEvent>& events);

  /// Takes events, sorted by their addresses, out of every reference; an undo brings them back.
  void ForgetReferences(const std::vector<PtrMidiEvent>& events);

  /// Events that an undo has put back as they were, and those that it takes out: call `leave` for what
  /// stands as it will not stay, `enter` for what stands as it was.
  template <class Leave, class Enter>
  void Undo(Leave&& leave, Enter&& enter);
  /// Frees what is kept: there is nothing to undo any more.
  void Discard() noexcept;
  /// Forgets what is kept without freeing it. Call it when the store is cleared.
  void Forget() noexcept;

  [[nodiscard]] bool IsEnabled() const noexcept { return !name.empty(); }
  /// Edits that have begun so far.
  [[nodiscard]] std::uint64_t Steps() const noexcept { return steps; }
  /// True if an undo would touch the event.
  [[nodiscard]] bool Keeps(const TypMidiEvent* event) const noexcept;
  /// Events that are kept.
  [[nodiscard]] std::size_t Size() const noexcept { return entries.size(); }
  [[nodiscard]] const std::string& Name() const noexcept { return name; }
  [[nodiscard]] TMyTrack* Track() const noexcept { return track; }

 private:
  enum class What : std::uint8_t { Changed, Inserted, Removed };
  struct TEntry {
    What Kind = What::Changed;
    PtrMidiEvent Event = nullptr;
    PtrMidiEvent Before = nullptr;  ///< what stood in front of it
    TypMidiEvent Image;             ///< the event as it was
  };
  /// What an edit may change beside events.
  struct TRest {
    std::vector<std::pair<std::size_t, PtrMidiEvent>> References;  ///< forgotten ones, by their number
    std::array<bool, ChannelCount> Active{};
    std::array<std::int32_t, ChannelCount> ActiveNotes{};
    TKeySignArray Keys;
    std::string TrkName;
    std::int32_t TrkNoteOnCnt = 0;
    std::int32_t XF_Track = -1;
    std::int32_t XF_ChordsArrayElements = 0;
    std::int8_t TrkMidiIndex = -1;
    bool TrkIgnore = false;
    bool XF_Format = false;
  };

  [[nodiscard]] TKeySignArray* Keys() const noexcept;
  void RestoreReferences() noexcept;
  void RestoreRest() noexcept;
  void PutBack(TEntry& entry) noexcept;

  Song& song;
  std::string name;
  TMyTrack* track = nullptr;
  int number = -1;  ///< of the track, -1 for an effect memory
  std::uint64_t steps = 0;
  std::vector<TEntry> entries;
  TRest rest;
};

template <class Leave, class Enter>
void TEventUndo::Undo(Leave&& leave, Enter&& enter) {
  for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
    if (entry->Kind != What::Removed) leave(entry->Event);
    PutBack(*entry);
    if (entry->Kind != What::Inserted) enter(entry->Event);
  }
  // What was removed stands in its list again, what was inserted is back in the pool.
  entries.clear();
  RestoreReferences();
  RestoreRest();
  name.clear();
}

}  // namespace Sonarello
