// Sonarello: the order of texts in sorted lists.
#pragma once

#include <compare>
#include <string_view>

namespace Sonarello {

/// Compares two UTF-8 texts, letters of any case alike (ASCII and Latin-1); texts that differ in case
/// only are ordered by their bytes, so that only equal texts compare equal.
[[nodiscard]] std::strong_ordering CompareTexts(std::string_view a, std::string_view b) noexcept;

}  // namespace Sonarello
