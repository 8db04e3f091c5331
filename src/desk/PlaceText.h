// Sonarello: places in the song as the user types them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "core/Song.h"

namespace Sonarello {

/// Time (ms) of a place "measure" or "measure:beat", both from 1; "." does as well as ":", blanks
/// around do not count. Nothing for anything else and for a place behind the song.
[[nodiscard]] std::optional<std::int32_t> TimeOfPlace(const Song& song, std::string_view text);

}  // namespace Sonarello
