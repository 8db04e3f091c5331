#include "desk/RegistryTextValue.h"

#include <charconv>
#include <cstdio>

namespace Sonarello {

std::string TRawValue::Prefix() const {
  if (Type == Binary) return "hex:";
  char digits[16];
  std::snprintf(digits, sizeof digits, "hex(%x):", Type);
  return digits;
}

std::string TRawValue::StoredText() const {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text = Prefix();
  for (std::size_t i = 0; i < Bytes.size(); ++i) {
    if (i > 0) text += ',';
    text += digits[Bytes[i] >> 4U];
    text += digits[Bytes[i] & 0xFU];
  }
  return text;
}

std::optional<TRawValue> TRawValue::Parse(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (!text.starts_with("hex") || colon == std::string_view::npos) return std::nullopt;
  TRawValue value;
  if (text.starts_with("hex(")) std::from_chars(text.data() + 4, text.data() + colon, value.Type, 16);
  for (std::size_t i = colon + 1; i + 1 < text.size(); i += 3) {
    const int high = HexDigit(text[i]);
    const int low = HexDigit(text[i + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    value.Bytes.push_back(static_cast<std::uint8_t>(high * 16 + low));
  }
  if (!IsRawType(value.Type) || value.StoredText() != text) return std::nullopt;
  return value;
}

bool IsRawType(std::uint32_t type) { return type != 1 && type != 2 && type != 4; }

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

}  // namespace Sonarello
