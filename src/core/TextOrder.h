// Sonarello: texts compared without regard to capitals, for searches and sorted lists.
#pragma once

#include <compare>
#include <string>
#include <string_view>

namespace Sonarello {

/// A UTF-8 text with the capitals of Latin script (up to U+017F) as small letters, of the same length;
/// all else stays, bytes that are no UTF-8 too. For names and searches in which the case does not
/// count.
[[nodiscard]] std::string SmallLetters(std::string_view text);

/// Compares two UTF-8 texts by their characters in small letters; bytes that are no UTF-8 stand behind
/// all characters. Texts that differ in case only are ordered by their bytes, so that only equal texts
/// compare equal.
[[nodiscard]] std::strong_ordering CompareTexts(std::string_view a, std::string_view b) noexcept;

}  // namespace Sonarello
