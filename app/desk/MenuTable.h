// Sonarello: the entries of the main menu as data.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace Sonarello {

/// When an entry can be chosen.
enum class MenuNeeds : std::uint8_t {
  Nothing,
  Song,     ///< a song is loaded
  Stopped,  ///< a song is loaded and does not play
  Room,     ///< what it opens is not part of this version; its tooltip tells
};

/// One entry. A line with an empty name is a separator, one that ends in ">" opens a submenu that "<"
/// closes.
struct TMenuEntry {
  std::string_view Name;  ///< "MMF_OpenMidifile"; its handler is called Name + "Click"
  std::string_view German;
  std::string_view English;
  std::string_view Shortcut;  ///< as QKeySequence reads it, or empty
  MenuNeeds Needs = MenuNeeds::Nothing;
  std::string_view GermanHint;  ///< tooltip; of a missing room what it will be
  std::string_view EnglishHint;
};

/// The whole main menu in its order.
[[nodiscard]] std::span<const TMenuEntry> MainMenuEntries() noexcept;

/// The tooltip of an entry that cannot be chosen now, in the user's language.
[[nodiscard]] std::string WhyDisabled(const TMenuEntry& entry);

}  // namespace Sonarello
