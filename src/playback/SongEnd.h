// Sonarello: where a song's sound ends.
#pragma once

#include <cstdint>

namespace Sonarello {

/// ms that a song goes on behind its last event, so that it can die away.
inline constexpr std::int32_t SongTailTime = 3300;

}  // namespace Sonarello
