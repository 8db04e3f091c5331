// Writes down the short messages that the desk's operations send, for tests.
#pragma once

#include <string>
#include <vector>

#include "playback/SendMidiData.h"

namespace Sonarello {

/// What went out, in a readable notation: "0> B0 78 00" (route, bytes; programs have two).
struct SentLog {
  std::vector<std::string> Lines;

  [[nodiscard]] TSendMidiData Sender() {
    return [this](int route, std::uint8_t status, std::uint8_t data1, std::uint8_t data2) {
      std::string line = std::to_string(route) + ">" + Hex(status) + Hex(data1);
      if ((status & 0xE0) != 0xC0) line += Hex(data2);
      Lines.push_back(line);
    };
  }

 private:
  static std::string Hex(std::uint8_t byte) {
    constexpr const char* digits = "0123456789ABCDEF";
    return std::string(" ") + digits[byte >> 4] + digits[byte & 15];
  }
};

}  // namespace Sonarello
