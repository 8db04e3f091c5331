// Sonarello: texts of unknown encoding as they stand in files: UTF-8, or else an 8-bit code.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Sonarello {

// --- UTF-8 (RFC 3629: no overlong forms, no surrogates, at most U+10FFFF)

/// A character at the start of a text.
struct TCharacter {
  char32_t Code = 0;
  std::size_t Length = 0;  ///< bytes; 0 if the text does not begin with UTF-8, or is empty
};

/// The character at the start of a text.
[[nodiscard]] TCharacter FirstCharacter(std::string_view text) noexcept;
/// True if all of a text is UTF-8. The empty text is.
[[nodiscard]] bool IsUTF8(std::string_view bytes) noexcept;
/// Appends the character of a code (up to U+10FFFF, no surrogate) to a text.
void AppendUTF8(std::string& text, char32_t code);

/// True for a byte that only stands inside a character of several bytes.
[[nodiscard]] constexpr bool ContinuesCharacter(char byte) noexcept {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80;
}
/// Characters of a UTF-8 text.
[[nodiscard]] std::size_t CharactersOf(std::string_view text) noexcept;
/// The start of a UTF-8 text of at most so many bytes; it never ends inside a character.
[[nodiscard]] std::string_view CutToBytes(std::string_view text, std::size_t mostBytes) noexcept;
/// A UTF-8 text without its last character; the empty text stays.
[[nodiscard]] std::string_view WithoutLastCharacter(std::string_view text) noexcept;

// --- Texts whose encoding is not told

/// Code of a byte of Windows-1252: that of Latin-1 but for 0x80 to 0x9F; 0 for 0 and for the five bytes
/// that are no character. Source: the code page's table at the Unicode Consortium.
[[nodiscard]] char32_t FromWindowsByte(std::uint8_t byte) noexcept;
/// Bytes for display: as they are if they are UTF-8, else read as Latin-1.
[[nodiscard]] std::string DecodedText(std::string_view bytes);
/// Bytes for a text (UTF-8) that was edited: Latin-1 if the bytes before were no UTF-8 and the new text
/// can be, else UTF-8.
[[nodiscard]] std::string EncodedText(std::string_view text, std::string_view bytesBefore);

}  // namespace Sonarello
