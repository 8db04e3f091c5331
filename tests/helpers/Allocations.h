// What a thread asks of the heap. Counted by the operators in playback/Allocations.cpp.
#pragma once

#include <cstdint>

namespace Sonarello {

/// Allocations of the calling thread so far.
[[nodiscard]] std::uint64_t AllocationsOfThread() noexcept;

}  // namespace Sonarello
