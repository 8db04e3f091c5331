// Sonarello: takes numbers from a fuzz target's input.
#pragma once

#include <cstdint>
#include <string_view>

#include "Targets.h"

namespace Sonarello::Fuzz {

/// Reads an input from its start; behind its end stand zeros.
class InputReader {
 public:
  explicit InputReader(Input input) : rest(input) {}

  std::uint8_t Byte() {
    if (rest.empty()) return 0;
    const std::uint8_t byte = rest.front();
    rest = rest.subspan(1);
    return byte;
  }
  bool Flag() { return (Byte() & 1) != 0; }
  std::int32_t Number16() {
    const std::int32_t high = Byte();
    return high << 8 | Byte();
  }
  std::int32_t Number24() {
    const std::int32_t high = Number16();
    return high << 8 | Byte();
  }
  [[nodiscard]] bool Empty() const { return rest.empty(); }
  [[nodiscard]] Input Rest() const { return rest; }
  [[nodiscard]] std::string_view Text() const {
    return {reinterpret_cast<const char*>(rest.data()), rest.size()};
  }

 private:
  Input rest;
};

}  // namespace Sonarello::Fuzz
