// Sonarello: the order of texts in sorted lists.
#pragma once

#include <compare>
#include <string>
#include <string_view>

namespace Sonarello {

/// Compares two UTF-8 texts, letters of any case alike (ASCII and Latin-1); texts that differ in case
/// only are ordered by their bytes, so that only equal texts compare equal.
[[nodiscard]] std::strong_ordering CompareTexts(std::string_view a, std::string_view b) noexcept;

/// A UTF-8 text in small letters (ASCII and Latin-1), of the same length; for searches in which the
/// case does not count.
[[nodiscard]] std::string SmallLetters(std::string_view text);

}  // namespace Sonarello
