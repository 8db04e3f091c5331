// Sonarello: which sound lists each instrument has, and in which form they are stored.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace Sonarello {

/// Forms of a stored row: cells with a tab between.
enum class Layout : std::uint8_t {
  F5,      ///< category, name, CC0, CC32, program
  F4,      ///< category, name, CC0, program; CC32 is 0
  Kronos,  ///< category, sub-category, name, program; the banks are the list's
  F6,      ///< category, sub-category, name, CC0, CC32, program
  Custom,  ///< category, name, CC32, program; CC0 is the list's
  P,       ///< 128 rows of a capital tone and its variations, and a row of drum kits
  C3,      ///< name, CC0, CC32 of a custom drum kit
  K4,      ///< name, CC0, CC32, program of a drum kit
  DS,      ///< "program kit name", then a cell per note
  DN,      ///< "CC0-program name" or "CC0-CC32-program name", then a cell per note; program from 1
  X15,     ///< the effect defaults of a sound by its CC0, CC32, program
  M17,     ///< category, sub-category, name, CC0, CC32, program, insert effects
  Names,   ///< a text per row
};

/// What the rows of a list are asked for.
enum class Scope : std::uint8_t {
  Sounds,
  GM2,          ///< sounds of bank MSB 121 of an instrument that keeps them apart
  Custom,       ///< sounds that the user made
  Drums,        ///< drum kits
  GM2Drums,     ///< drum kits of bank MSB 120 of an instrument that keeps them apart
  CustomDrums,  ///< drum kits that the user made
  Map1,         ///< sounds of the first GS map, and so on
  Map2,
  Map3,
  Map4,
  MapDrums1,  ///< drum kits of the first GS map, and so on
  MapDrums2,
  MapDrums3,
  MapDrums4,
  Notes,        ///< note names of kits that stand in other lists
  CustomNotes,  ///< note names of the user's kits
  Companion,    ///< effect defaults of the sounds of another list
  Categories,
};
inline constexpr int ScopeCount = 18;
/// The scope `n` maps further than `first`, such as `Map3` for Map1 and 2.
[[nodiscard]] constexpr Scope ScopePlus(Scope first, int n) noexcept {
  return static_cast<Scope>(static_cast<int>(first) + n);
}

/// Where the kits of a program-indexed list of sounds are asked for: as drums, or as the drums of its
/// map.
[[nodiscard]] constexpr Scope KitScope(Scope sounds) noexcept {
  const bool map = sounds >= Scope::Map1 && sounds <= Scope::Map4;
  return map ? ScopePlus(sounds, static_cast<int>(Scope::MapDrums1) - static_cast<int>(Scope::Map1))
             : Scope::Drums;
}

/// Where a list's rows come from.
enum class ListKind : std::uint8_t {
  Real,      ///< the instrument's own sounds
  Fallback,  ///< a standard that the instrument implements
  User,      ///< no rows ship; the user's file brings them
  Absent,    ///< no rows are known and no file is looked for
};

/// One list of one instrument, a row of data/instruments/lists.tsv.
struct TListSpec {
  std::uint8_t Value = 0;  ///< the instrument
  std::string_view Name;   ///< of the list, such as "Panel_Voices"
  Sonarello::Scope Scope = Scope::Sounds;
  Sonarello::Layout Layout = Layout::F5;
  bool OneBased = false;  ///< programs are stored from 1
  std::int8_t CC00 = -1;  ///< of every row of a layout without that cell, else -1
  std::int8_t CC32 = -1;
  bool NumberIsCC00 = false;  ///< layout P: a variation's number is CC0 (GS), else CC32
  std::string_view Suffix;    ///< behind every display name, such as " (GM2)"
  ListKind Kind = ListKind::Real;
  std::string_view File;       ///< in data/instruments; empty if no rows ship
  std::string_view UserFiles;  ///< names of replacement files, '|' between; empty if none
  std::string_view Words;      ///< the list and its instrument in import messages
  std::string_view Source;     ///< key of the source, see SOURCES.md
  std::string_view Sure;       ///< how sure the facts are
  std::string_view Companion;  ///< of an effect list: the list whose sounds it completes
};

/// The lists of an instrument in their order of search; empty for an unknown value.
[[nodiscard]] std::span<const TListSpec> ListsOf(int value);
/// Every list of every instrument, by instrument.
[[nodiscard]] std::span<const TListSpec> AllLists();

}  // namespace Sonarello
