// Sonarello: values of a registry text file that are neither a text nor a number.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Sonarello {

/// A value of bytes. The store keeps it as it is written in a file, in its plainest form: "hex:0a,ff",
/// or "hex(b):..." for another type than binary.
struct TRawValue {
  static constexpr std::uint32_t Binary = 3;

  std::uint32_t Type = Binary;  ///< the registry's number of the type
  std::vector<std::uint8_t> Bytes;

  /// "hex:" or "hex(b):".
  [[nodiscard]] std::string Prefix() const;
  /// As the store keeps it.
  [[nodiscard]] std::string StoredText() const;
  /// Reads what `StoredText` gives, and nothing else.
  [[nodiscard]] static std::optional<TRawValue> Parse(std::string_view text);
};

/// True for the types that are kept as bytes: not texts (1, 2) and not numbers (4).
[[nodiscard]] bool IsRawType(std::uint32_t type);

/// The value of a hexadecimal digit, -1 for any other character.
[[nodiscard]] int HexDigit(char c);

}  // namespace Sonarello
