// Sonarello: the way from a driver's thread to the main thread, without a lock.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

namespace Sonarello {

/// A ring of a fixed number of items between exactly one thread that puts and one that reads and
/// removes. Nothing waits, nothing allocates but the constructor, and all of the capacity can be used.
template <typename Item>
class TRing {
 public:
  /// `capacity`: items that fit, 0 for a ring that refuses everything.
  explicit TRing(std::uint16_t capacity)
      : Capacity(capacity), items(std::make_unique<Item[]>(capacity)) {}

  const std::uint16_t Capacity;

  /// Items that wait. Exact for the thread that asks, as far as its own side goes.
  [[nodiscard]] std::uint16_t EventCount() const noexcept {
    // The taken ones first: what is put meanwhile may only be counted too much, never below zero.
    const std::uint32_t gone = taken.load(std::memory_order_acquire);
    const std::uint32_t count = put.load(std::memory_order_acquire) - gone;
    return static_cast<std::uint16_t>(count < Capacity ? count : Capacity);
  }

  /// True if the next put would be refused. Only for the thread that puts.
  [[nodiscard]] bool Full() const noexcept {
    return put.load(std::memory_order_relaxed) - taken.load(std::memory_order_acquire) >= Capacity;
  }

  /// Appends a copy; false if there is no room.
  bool Put(const Item& item) noexcept {
    if (Full()) {
      return false;
    }
    items[nextPut] = item;
    nextPut = Behind(nextPut);
    put.store(put.load(std::memory_order_relaxed) + 1, std::memory_order_release);
    return true;
  }

  /// Copies the oldest item without taking it out; false if there is none.
  bool Read(Item& item) const noexcept {
    if (Empty()) {
      return false;
    }
    item = items[nextGet];
    return true;
  }

  /// Takes the oldest item out; false if there is none.
  bool Remove() noexcept {
    if (Empty()) {
      return false;
    }
    nextGet = Behind(nextGet);
    taken.store(taken.load(std::memory_order_relaxed) + 1, std::memory_order_release);
    return true;
  }

 private:
  [[nodiscard]] bool Empty() const noexcept {
    return put.load(std::memory_order_acquire) == taken.load(std::memory_order_relaxed);
  }
  [[nodiscard]] std::uint32_t Behind(std::uint32_t index) const noexcept {
    return index + 1 == Capacity ? 0 : index + 1;
  }

  std::unique_ptr<Item[]> items;
  // Each side writes to a cache line of its own. The counters run on and wrap at 2^32.
  alignas(64) std::atomic<std::uint32_t> put{0};
  std::uint32_t nextPut = 0;
  alignas(64) std::atomic<std::uint32_t> taken{0};
  std::uint32_t nextGet = 0;
};

}  // namespace Sonarello
