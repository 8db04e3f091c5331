// Sonarello: texts of the settings in the encodings of a registry text file.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace Sonarello {

/// UTF-8 as UTF-16. Bytes that are no UTF-8, as in the names of old files, become code points of the
/// private area, U+F780 to U+F7FF, and come back from there: every text survives the way out and in.
[[nodiscard]] std::u16string ToUtf16(std::string_view text);
/// The way back. Half a surrogate pair becomes U+FFFD.
[[nodiscard]] std::string FromUtf16(std::u16string_view text);
/// True if a text has no control characters but tabs: it can stand between quotation marks on one line.
[[nodiscard]] bool IsOneLine(std::string_view text);
/// A file's text as UTF-8: UTF-16 of either byte order, with or without its mark, UTF-8, and if it is
/// neither, Latin-1. Nothing if it is cut off inside a character.
[[nodiscard]] std::optional<std::string> DecodeRegistryFile(std::span<const std::uint8_t> bytes);
/// Text of UTF-16 units, low byte first; an odd byte at the end is left out.
[[nodiscard]] std::string FromUtf16Bytes(std::span<const std::uint8_t> bytes);
/// Bytes of an old file's text: UTF-8, or else Latin-1.
[[nodiscard]] std::string FromOldBytes(std::span<const std::uint8_t> bytes);

}  // namespace Sonarello
