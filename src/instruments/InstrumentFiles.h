// Sonarello: the instruments' tables as they ship inside the program.
#pragma once

#include <string_view>

namespace Sonarello {

/// The text of a file of data/instruments by its path in there, such as "lists.tsv"; empty if there is
/// none. The text lives as long as the program.
[[nodiscard]] std::string_view InstrumentFile(std::string_view path) noexcept;

}  // namespace Sonarello
