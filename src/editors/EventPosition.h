// Sonarello: positions as they are typed into the event list.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/Song.h"

namespace Sonarello {

/// A position that was typed, or why it is none.
struct TTypedPosition {
  std::int32_t Position = -1;  ///< ticks; -1 if it is refused
  std::string Message;         ///< for the user; empty for a text that is no position at all
};

/// Reads measure, beat and ticks, parted by "." or ":". What is missing is the first beat, tick 0; a
/// measure or beat of 0 counts as 1.
[[nodiscard]] TTypedPosition ParsePosition(const Song& song, std::string_view text);

/// A decimal number with an optional sign and blanks around it; false for any other text.
[[nodiscard]] bool ReadNumber(std::string_view text, std::int64_t& number) noexcept;

}  // namespace Sonarello
