#include "core/TextEncoding.h"

#include <algorithm>
#include <array>

namespace Sonarello {

namespace {

/// Windows-1252 from 0x80 to 0x9F; 0: no character.
constexpr std::array<char16_t, 32> WindowsBlock = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

std::uint8_t Byte(std::string_view text, std::size_t index) noexcept {
  return static_cast<std::uint8_t>(text[index]);
}

/// Bytes of the character that a byte leads, 0 if it leads none.
std::size_t LedBytes(std::uint8_t lead) noexcept {
  if (lead < 0x80) return 1;
  if (lead < 0xC2 || lead > 0xF4) return 0;
  return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

}  // namespace

// --- UTF-8

TCharacter FirstCharacter(std::string_view text) noexcept {
  if (text.empty()) return {};
  const std::size_t length = LedBytes(Byte(text, 0));
  if (length == 1) return {Byte(text, 0), 1};
  if (length == 0 || text.size() < length) return {};
  char32_t code = Byte(text, 0) & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if (!ContinuesCharacter(text[i])) return {};
    code = code << 6U | (Byte(text, i) & 0x3FU);
  }
  constexpr std::array<char32_t, 5> smallest = {0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < smallest[length] || code > 0x10FFFF || isSurrogate) return {};
  return {code, length};
}

bool IsUTF8(std::string_view bytes) noexcept {
  while (!bytes.empty()) {
    const std::size_t length = FirstCharacter(bytes).Length;
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

void AppendUTF8(std::string& text, char32_t code) {
  const auto put = [&text](char32_t byte) { text += static_cast<char>(byte); };
  if (code < 0x80) return put(code);
  if (code < 0x800) {
    put(0xC0U | code >> 6U);
  } else if (code < 0x10000) {
    put(0xE0U | code >> 12U);
  } else {
    put(0xF0U | code >> 18U);
    put(0x80U | (code >> 12U & 0x3FU));
  }
  if (code >= 0x800) put(0x80U | (code >> 6U & 0x3FU));
  put(0x80U | (code & 0x3FU));
}

std::size_t CharactersOf(std::string_view text) noexcept {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char c) { return !ContinuesCharacter(c); }));
}

std::string_view CutToBytes(std::string_view text, std::size_t mostBytes) noexcept {
  if (text.size() <= mostBytes) return text;
  while (mostBytes > 0 && ContinuesCharacter(text[mostBytes])) --mostBytes;
  return text.substr(0, mostBytes);
}

std::string_view WithoutLastCharacter(std::string_view text) noexcept {
  return text.empty() ? text : CutToBytes(text, text.size() - 1);
}

// --- Texts whose encoding is not told

char32_t FromWindowsByte(std::uint8_t byte) noexcept {
  return byte < 0x80 || byte > 0x9F ? byte : WindowsBlock[byte - 0x80U];
}

std::string DecodedText(std::string_view bytes) {
  if (IsUTF8(bytes)) return std::string(bytes);
  std::string text;
  for (const char c : bytes) AppendUTF8(text, static_cast<std::uint8_t>(c));
  return text;
}

std::string EncodedText(std::string_view text, std::string_view bytesBefore) {
  if (IsUTF8(bytesBefore)) return std::string(text);
  std::string bytes;
  for (std::string_view rest = text; !rest.empty();) {
    const auto [code, length] = FirstCharacter(rest);
    if (length == 0 || code > 0xFF) return std::string(text);
    bytes += static_cast<char>(static_cast<std::uint8_t>(code));
    rest.remove_prefix(length);
  }
  return bytes;
}

}  // namespace Sonarello
