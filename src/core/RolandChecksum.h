// Sonarello: the check byte of Roland's data set messages (DT1).
#pragma once

#include <cstdint>
#include <span>

namespace Sonarello {

/// The byte that makes the sum of address and data bytes a multiple of 128. `bytes` are address and
/// data, without the command byte 12 in front of them.
[[nodiscard]] constexpr std::uint8_t RolandChecksum(std::span<const std::uint8_t> bytes) noexcept {
  std::uint32_t sum = 0;
  for (const std::uint8_t byte : bytes) sum += byte;
  return static_cast<std::uint8_t>((0x80 - sum % 0x80) % 0x80);
}

}  // namespace Sonarello
