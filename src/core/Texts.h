// Sonarello: the two languages of every text that a user reads.
#pragma once

#include <string>
#include <string_view>

namespace Sonarello {

/// The user's language. Set once at start, before any text is asked for.
inline bool GermanLanguage = false;

/// Picks one of two texts that stand side by side, so that neither is changed without the other.
[[nodiscard]] inline std::string Text(std::string_view german, std::string_view english) {
  return std::string(GermanLanguage ? german : english);
}

/// The message of a failed allocation of an event, in the user's language.
[[nodiscard]] inline std::string OutOfMemoryText() {
  return Text("Speicherzuordnungsfehler: Bitte mehr Speicher!", "Error allocating memory!");
}

}  // namespace Sonarello
