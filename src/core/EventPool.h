// Sonarello: where a song's event nodes come from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "core/Data.h"

namespace Sonarello {

/// Hands out event nodes from large slabs and takes them back into a free list, so that a song costs
/// no allocation per event and is released in one sweep. The slabs stay for the next song.
/// Not for several threads at once.
class EventPool {
 public:
  EventPool() = default;
  EventPool(const EventPool&) = delete;
  EventPool& operator=(const EventPool&) = delete;
  EventPool(EventPool&&) = delete;
  EventPool& operator=(EventPool&&) = delete;
  ~EventPool();

  /// A zeroed node (`MType` -1), or nil when there is no memory.
  [[nodiscard]] PtrMidiEvent Take() noexcept {
    if (next == end || failing) return TakeSlowly();
    ++live;
    // A big song is larger than any cache: the memory of nodes to come is asked for ahead.
    __builtin_prefetch(next + 24, 1);
    return new (next++) TypMidiEvent;
  }
  /// Gives a node back; its payload is released. The node must be unlinked and unreferenced.
  void Release(PtrMidiEvent node) noexcept;
  /// Takes every node back at once. No pointer to a node is valid afterwards.
  void ReleaseAll() noexcept;
  /// Gives the memory of unused slabs back to the system; call it on an empty pool.
  void Shrink() noexcept;

  /// Makes room so that the next `count` nodes lie side by side. A failure shows at `Take`.
  void Reserve(std::size_t count) noexcept;
  /// Nodes handed out and not given back.
  [[nodiscard]] std::size_t Live() const noexcept { return live; }

  /// Lets the n-th `Take` from now on fail, and all behind it; 0 or less lets none fail (for tests).
  void FailAt(std::int64_t n) noexcept {
    failing = n > 0;
    untilFailure = n;
  }

 private:
  struct Slab {
    TypMidiEvent* first = nullptr;
    TypMidiEvent* used = nullptr;  ///< behind the last node ever handed out
    std::size_t capacity = 0;
  };

  PtrMidiEvent TakeSlowly() noexcept;
  bool AddSlab(std::size_t nodes) noexcept;
  void CloseSlab() noexcept;
  void OpenSlab(std::size_t index) noexcept;

  TypMidiEvent* next = nullptr;  ///< first untouched node of the open slab
  TypMidiEvent* end = nullptr;
  TypMidiEvent* freed = nullptr;  ///< given back, linked by `NextEvent`
  std::size_t live = 0;
  std::vector<Slab> slabs;
  std::size_t open = 0;  ///< index of the open slab
  bool failing = false;
  std::int64_t untilFailure = 0;
};

}  // namespace Sonarello
