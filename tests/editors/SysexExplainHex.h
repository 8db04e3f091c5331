// Sonarello: sysexes for tests, written as their bytes.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

namespace Sonarello {

/// The bytes of a text such as "43 10 4C".
inline std::vector<std::uint8_t> BytesOf(const std::string& hexadecimal) {
  std::vector<std::uint8_t> bytes;
  std::istringstream words(hexadecimal);
  for (std::string word; words >> word;)
    bytes.push_back(static_cast<std::uint8_t>(std::strtoul(word.c_str(), nullptr, 16)));
  return bytes;
}

inline std::string TextOf(const std::vector<std::uint8_t>& bytes) {
  static constexpr char digits[] = "0123456789ABCDEF";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    if (!text.empty()) text += ' ';
    text += digits[byte >> 4];
    text += digits[byte & 15];
  }
  return text;
}

}  // namespace Sonarello
