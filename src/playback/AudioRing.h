// Sonarello: samples on their way from the thread that renders to the one that plays.
#pragma once

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace Sonarello {

/// A queue of samples without locks. One thread puts, one thread gets; any thread may ask for the
/// count and throw away what is queued. Allocates only when it is made.
class TAudioRing {
 public:
  /// Room for at least so many samples.
  explicit TAudioRing(std::size_t samples) : cells(std::bit_ceil(std::max<std::size_t>(samples, 2))) {}

  [[nodiscard]] std::size_t Capacity() const noexcept { return cells.size(); }

  /// Samples that wait to be got.
  [[nodiscard]] std::size_t Queued() const noexcept {
    // What was put is read last: it only grows, so the difference is never negative.
    const std::uint64_t from =
        std::max(taken.load(std::memory_order_acquire), dropped.load(std::memory_order_acquire));
    return static_cast<std::size_t>(put.load(std::memory_order_acquire) - from);
  }

  /// Appends samples: all of them, or none (false) if there is no room.
  [[nodiscard]] bool Put(std::span<const float> samples) noexcept {
    const std::uint64_t at = put.load(std::memory_order_relaxed);
    if (samples.size() > cells.size() - (at - taken.load(std::memory_order_acquire))) return false;
    const std::size_t first = std::min(samples.size(), cells.size() - Cell(at));
    std::copy_n(samples.begin(), first, cells.begin() + Offset(at));
    std::copy(samples.begin() + static_cast<std::ptrdiff_t>(first), samples.end(), cells.begin());
    put.store(at + samples.size(), std::memory_order_release);
    return true;
  }

  /// Takes the oldest samples, as many as there are; returns how many.
  std::size_t Get(std::span<float> samples) noexcept {
    const std::uint64_t at = Next();
    const std::size_t count = std::min(samples.size(), Waiting(at));
    const std::size_t first = std::min(count, cells.size() - Cell(at));
    std::copy_n(cells.begin() + Offset(at), first, samples.begin());
    std::copy_n(cells.begin(), count - first, samples.begin() + static_cast<std::ptrdiff_t>(first));
    taken.store(at + count, std::memory_order_release);
    return count;
  }

  /// Skips the oldest samples. Belongs to the thread that gets.
  void Skip(std::size_t samples) noexcept {
    const std::uint64_t at = Next();
    taken.store(at + std::min(samples, Waiting(at)), std::memory_order_release);
  }

  /// Throws away what is queued at this moment. The room comes free with the next `Get` or `Skip`.
  void Discard() noexcept {
    const std::uint64_t until = put.load(std::memory_order_acquire);
    std::uint64_t known = dropped.load(std::memory_order_relaxed);
    while (known < until && !dropped.compare_exchange_weak(known, until, std::memory_order_acq_rel)) {
    }
  }

 private:
  [[nodiscard]] std::size_t Cell(std::uint64_t at) const noexcept { return at & (cells.size() - 1); }
  [[nodiscard]] std::ptrdiff_t Offset(std::uint64_t at) const noexcept {
    return static_cast<std::ptrdiff_t>(Cell(at));
  }
  [[nodiscard]] std::uint64_t Next() const noexcept {
    return std::max(taken.load(std::memory_order_relaxed), dropped.load(std::memory_order_acquire));
  }
  [[nodiscard]] std::size_t Waiting(std::uint64_t at) const noexcept {
    return static_cast<std::size_t>(put.load(std::memory_order_acquire) - at);
  }

  std::vector<float> cells;
  // Counts of samples since the start; they never wrap. Each has one writer but `dropped`.
  alignas(64) std::atomic<std::uint64_t> put{0};
  alignas(64) std::atomic<std::uint64_t> taken{0};
  alignas(64) std::atomic<std::uint64_t> dropped{0};
};

}  // namespace Sonarello
