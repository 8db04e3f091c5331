// Sonarello: the events of several tracks, in the order of their positions.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "core/Data.h"
#include "core/EventList.h"

namespace Sonarello {

/// The first event of a track behind its head; nil for a track without list.
[[nodiscard]] inline const TypMidiEvent* BehindHead(const TMyTrack& track) noexcept {
  const TypMidiEvent* first = track.TrkFirstEvent;
  return first != nullptr && first->IsMeta(MetaPort) ? first->NextEvent : first;
}

/// Calls f(event) for each event of a track but its head.
template <class F>
void WalkTrack(const TMyTrack& track, F&& f) {
  for (const TypMidiEvent* e = BehindHead(track); e != nullptr; e = Following(e)) f(*e);
}

/// Walks several tracks at once: at each step the lowest position among them. At one tick a sysex goes
/// first, so that no reset undoes what other tracks set together with it; then the lower track. The
/// cost of a step grows with the logarithm of the number of tracks. The first walk finds the order;
/// later ones over the same events repeat it from two bytes per event.
class MergedWalk {
 public:
  /// At most 65536 tracks.
  explicit MergedWalk(std::span<const TMyTrack> sources) : tracks(sources) {}

  /// Calls f(event) for each event of the tracks but their heads.
  template <class F>
  void Run(F&& f) {
    if (tracks.size() == 1) return WalkTrack(tracks.front(), f);
    next.clear();
    for (const TMyTrack& track : tracks) next.push_back(BehindHead(track));
    if (order.empty()) return Merge(f);
    for (const std::uint16_t track : order) f(Take(track));
  }

 private:
  /// Position, then sysex or not, then track: the entries of the heap.
  using TKey = std::uint64_t;
  static constexpr TKey TrackBits = 0xFFFF;

  const TypMidiEvent& Take(std::size_t track) noexcept {
    const TypMidiEvent* event = next[track];
    next[track] = Following(event);
    return *event;
  }

  TKey KeyOf(std::size_t track) const noexcept {
    const TypMidiEvent& event = *next[track];
    const auto position = static_cast<std::uint32_t>(std::max(0, event.Position));
    const TKey late = event.Command == Sysex ? 0 : TrackBits + 1;
    return TKey{position} << 32 | late | track;
  }

  template <class F>
  void Merge(F& f) {
    for (std::size_t t = 0; t < tracks.size(); ++t)
      if (next[t] != nullptr) heap.push_back(KeyOf(t));
    std::ranges::sort(heap);
    while (!heap.empty()) {
      const std::size_t track = heap.front() & TrackBits;
      order.push_back(static_cast<std::uint16_t>(track));
      f(Take(track));
      if (next[track] != nullptr) {
        Sink(KeyOf(track));
      } else {
        const TKey last = heap.back();
        heap.pop_back();
        if (!heap.empty()) Sink(last);
      }
    }
  }

  /// Replaces the lowest entry of the heap.
  void Sink(TKey key) noexcept {
    std::size_t i = 0;
    for (std::size_t child; (child = 2 * i + 1) < heap.size(); i = child) {
      if (child + 1 < heap.size()) child += heap[child + 1] < heap[child] ? 1U : 0U;
      if (key <= heap[child]) break;
      heap[i] = heap[child];
    }
    heap[i] = key;
  }

  std::span<const TMyTrack> tracks;
  std::vector<const TypMidiEvent*> next;  ///< by track
  std::vector<TKey> heap;
  std::vector<std::uint16_t> order;  ///< track of each event
};

}  // namespace Sonarello
