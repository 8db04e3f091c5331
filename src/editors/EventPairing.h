// Sonarello: notes of a list that have begun and not ended, and walks that the player does not notice.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "editors/EventIndex.h"

namespace Sonarello {

/// Events that are read or written while the gate is held at one time: some ten microseconds.
inline constexpr int PieceLength = 4096;

/// Calls f for each event from `e` on, the gate held in pieces, while f returns true.
template <class F>
void InPieces(SongGate& gate, PtrMidiEvent e, F&& f) {
  while (e != nullptr) {
    const auto held = gate.Enter();
    for (int i = 0; i < PieceLength && e != nullptr; ++i, e = Following(e))
      if (!f(e)) return;
  }
}

/// An open note and its row, 0 for a hidden one.
struct TOpenNoteRow {
  PtrMidiEvent Event = nullptr;
  std::int32_t Row = 0;
};

/// Open notes of one key, first in, first out.
class TOpenQueue {
 public:
  static constexpr std::size_t MostOpen = 32;

  /// False if there is no room; the note stays without end.
  bool Push(TOpenNoteRow note) {
    if (count == MostOpen) return false;
    notes[(first + count++) % MostOpen] = note;
    return true;
  }
  /// The oldest note, or none.
  TOpenNoteRow Pop() {
    if (count == 0) return {};
    const TOpenNoteRow note = notes[first];
    first = (first + 1) % MostOpen;
    --count;
    return note;
  }
  [[nodiscard]] bool IsEmpty() const noexcept { return count == 0; }

 private:
  std::array<TOpenNoteRow, MostOpen> notes{};
  std::size_t first = 0;
  std::size_t count = 0;
};

/// The open notes of all channels and keys.
class TEventIndex::TPairing {
 public:
  TPairing() : queues(std::size_t{ChannelCount} * KeyCount) {}
  [[nodiscard]] TOpenQueue& Of(const TypMidiEvent& event) {
    return queues[KeyIndex(event.Channel(), event.Value[0] % KeyCount)];
  }
  /// Empties the queues, f(event) for each note in them.
  template <class F>
  void ForEachOpen(F&& f) {
    for (TOpenQueue& queue : queues)
      while (const PtrMidiEvent event = queue.Pop().Event) f(*event);
  }

 private:
  std::vector<TOpenQueue> queues;
};

}  // namespace Sonarello
