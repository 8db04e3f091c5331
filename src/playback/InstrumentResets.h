// Sonarello: the message that takes an instrument back to its start.
#pragma once

#include <cstdint>
#include <span>

namespace Sonarello {

/// The reset of an instrument by its catalogue number: the bytes behind F0, F7 included. Empty for
/// instruments that get none; GM System On for a number that no table names.
[[nodiscard]] std::span<const std::uint8_t> ResetOf(int instrumValue) noexcept;

}  // namespace Sonarello
