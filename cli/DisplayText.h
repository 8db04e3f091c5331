// Sonarello: bytes of a file as text that may be shown.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Sonarello {

/// The decoded bytes with every control character written out (\r, \n, \t, \xNN), so that a text from a
/// file can neither break a line nor steer a terminal.
[[nodiscard]] std::string VisibleText(std::string_view bytes);

/// A file name as given, its control characters written out, so that it keeps to its line.
[[nodiscard]] std::string NameOnOneLine(std::string_view name);

/// A message of the program on one line: each of its line breaks ("\r\n", "\r" or "\n") is written as
/// \r.
[[nodiscard]] std::string OneLine(std::string_view message);

/// Cuts a UTF-8 text to a number of characters, the last of them "…" if something was cut.
[[nodiscard]] std::string Shortened(std::string_view text, std::size_t characters);

/// Columns that a UTF-8 text takes, one per character.
[[nodiscard]] std::size_t TextWidth(std::string_view text);

}  // namespace Sonarello
