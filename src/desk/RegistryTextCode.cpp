#include "desk/RegistryTextCode.h"

#include <algorithm>
#include <initializer_list>

#include "core/TextEncoding.h"

namespace Sonarello {

namespace {

constexpr char32_t ByteArea = 0xF700;  ///< a lone byte b stands at ByteArea + b
constexpr char32_t Replacement = 0xFFFD;

bool IsLoneByte(char32_t code) { return code >= ByteArea + 0x80 && code <= ByteArea + 0xFF; }

void AppendUtf16(std::u16string& text, char32_t code) {
  if (code < 0x10000) {
    text += static_cast<char16_t>(code);
    return;
  }
  code -= 0x10000;
  text += static_cast<char16_t>(0xD800 + (code >> 10U));
  text += static_cast<char16_t>(0xDC00 + (code & 0x3FFU));
}

std::string_view AsText(std::span<const std::uint8_t> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::optional<std::string> FromUnits(std::span<const std::uint8_t> bytes, bool lowFirst) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  std::u16string units(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < units.size(); ++i) {
    const unsigned first = bytes[2 * i];
    const unsigned second = bytes[2 * i + 1];
    units[i] = static_cast<char16_t>(lowFirst ? first | (second << 8U) : second | (first << 8U));
  }
  return FromUtf16(units);
}

}  // namespace

std::u16string ToUtf16(std::string_view text) {
  std::u16string units;
  units.reserve(text.size());
  while (!text.empty()) {
    const TCharacter character = FirstCharacter(text);
    if (character.Length != 0 && !IsLoneByte(character.Code)) {
      AppendUtf16(units, character.Code);
      text.remove_prefix(character.Length);
    } else {
      AppendUtf16(units, ByteArea + static_cast<std::uint8_t>(text.front()));
      text.remove_prefix(1);
    }
  }
  return units;
}

std::string FromUtf16(std::u16string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char32_t unit = text[i];
    if (IsLoneByte(unit)) {
      bytes += static_cast<char>(static_cast<std::uint8_t>(unit - ByteArea));
    } else if (unit < 0xD800 || unit > 0xDFFF) {
      AppendUTF8(bytes, unit);
    } else if (unit < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) {
      AppendUTF8(bytes, 0x10000 + ((unit - 0xD800) << 10U) + (text[i + 1] - 0xDC00U));
      ++i;
    } else {
      AppendUTF8(bytes, Replacement);
    }
  }
  return bytes;
}

bool IsOneLine(std::string_view text) {
  return std::ranges::none_of(text, [](char c) { return c >= 0 && c < ' ' && c != '\t'; });
}

std::optional<std::string> DecodeRegistryFile(std::span<const std::uint8_t> bytes) {
  const auto startsWith = [&](std::initializer_list<int> mark) {
    return bytes.size() >= mark.size() &&
           std::equal(mark.begin(), mark.end(), bytes.begin(), [](int a, int b) { return a == b; });
  };
  if (startsWith({0xFF, 0xFE})) return FromUnits(bytes.subspan(2), true);
  if (startsWith({0xFE, 0xFF})) return FromUnits(bytes.subspan(2), false);
  if (startsWith({0xEF, 0xBB, 0xBF})) return FromOldBytes(bytes.subspan(3));
  if (bytes.size() >= 2 && bytes[0] != 0 && bytes[1] == 0) return FromUnits(bytes, true);
  if (bytes.size() >= 2 && bytes[0] == 0 && bytes[1] != 0) return FromUnits(bytes, false);
  return FromOldBytes(bytes);
}

std::string FromUtf16Bytes(std::span<const std::uint8_t> bytes) {
  return FromUnits(bytes.first(bytes.size() - bytes.size() % 2), true).value_or(std::string());
}

std::string FromOldBytes(std::span<const std::uint8_t> bytes) { return DecodedText(AsText(bytes)); }

}  // namespace Sonarello
