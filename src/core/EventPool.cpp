#include "core/EventPool.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>

namespace Sonarello {

namespace {

// Slabs grow from a page's worth for a small song to 4 MB; a reserved slab is as large as asked for.
constexpr std::size_t FirstSlabNodes = 800;
constexpr std::size_t LargestSlabNodes = 52'000;
constexpr std::size_t LargePage = std::size_t{2} << 20;

}  // namespace

EventPool::~EventPool() {
  ReleaseAll();
  for (Slab& slab : slabs) std::free(slab.first);
}

bool EventPool::AddSlab(std::size_t nodes) noexcept {
  const std::size_t bytes = nodes * sizeof(TypMidiEvent);
  const bool large = bytes >= LargePage;
  const std::size_t alignment = large ? LargePage : alignof(std::max_align_t);
  const std::size_t rounded = (bytes + alignment - 1) / alignment * alignment;
  void* memory = std::aligned_alloc(alignment, rounded);
  if (memory == nullptr) return false;
  // Large pages save most of the page faults of a big song; where the system has none, nothing is lost.
  if (large) madvise(memory, rounded, MADV_HUGEPAGE);
  auto* first = static_cast<TypMidiEvent*>(memory);
  try {
    slabs.push_back({first, first, rounded / sizeof(TypMidiEvent)});
  } catch (const std::bad_alloc&) {
    std::free(memory);
    return false;
  }
  return true;
}

void EventPool::CloseSlab() noexcept {
  if (open < slabs.size()) slabs[open].used = std::max(slabs[open].used, next);
}

void EventPool::OpenSlab(std::size_t index) noexcept {
  open = index;
  next = slabs[index].used;
  end = slabs[index].first + slabs[index].capacity;
}

PtrMidiEvent EventPool::TakeSlowly() noexcept {
  if (failing && --untilFailure <= 0) {
    untilFailure = 0;
    return nullptr;
  }
  if (freed != nullptr) {
    PtrMidiEvent node = freed;
    freed = node->NextEvent;
    node->NextEvent = nullptr;
    ++live;
    return node;
  }
  if (next == end) {
    CloseSlab();
    std::size_t index = slabs.empty() ? 0 : open + 1;
    if (index >= slabs.size()) {
      const std::size_t nodes =
          slabs.empty() ? FirstSlabNodes : std::min(slabs.back().capacity * 2, LargestSlabNodes);
      if (!AddSlab(nodes)) return nullptr;
      index = slabs.size() - 1;
    }
    OpenSlab(index);
  }
  ++live;
  return new (next++) TypMidiEvent;
}

void EventPool::Release(PtrMidiEvent node) noexcept {
  *node = TypMidiEvent{};
  node->NextEvent = freed;
  freed = node;
  --live;
}

void EventPool::ReleaseAll() noexcept {
  CloseSlab();
  for (Slab& slab : slabs) {
    for (TypMidiEvent* node = slab.first; node != slab.used; ++node) node->Meta.Clear();
    slab.used = slab.first;
  }
  freed = nullptr;
  live = 0;
  next = end = nullptr;
  if (!slabs.empty()) OpenSlab(0);
}

void EventPool::Shrink() noexcept {
  if (live != 0) return;
  for (Slab& slab : slabs) std::free(slab.first);
  slabs.clear();
  next = end = freed = nullptr;
  open = 0;
}

void EventPool::Reserve(std::size_t count) noexcept {
  if (static_cast<std::size_t>(end - next) >= count) return;
  CloseSlab();
  // A slab of an earlier song that is large enough and still empty serves again.
  for (std::size_t i = slabs.empty() ? 0 : open; i < slabs.size(); ++i) {
    if (slabs[i].used != slabs[i].first || slabs[i].capacity < count) continue;
    std::swap(slabs[i], slabs[std::min(open + 1, slabs.size() - 1)]);
    OpenSlab(std::min(open + 1, slabs.size() - 1));
    return;
  }
  if (AddSlab(count)) OpenSlab(slabs.size() - 1);
}

}  // namespace Sonarello
