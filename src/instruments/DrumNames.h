// Sonarello: the names of a drum kit and of its notes.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/Data.h"
#include "instruments/SoundSet.h"

namespace Sonarello {

/// A drum kit by its names.
struct TDrumNames {
  std::string DrumSetName;  ///< with the word of its list, such as " GM2"; empty: no such kit is known
  std::array<std::string_view, KeyCount> Names{};  ///< by note; empty where the kit defines none
  const TPatch* Row = nullptr;                     ///< the kit's row, nil if no such kit is known
  bool UserEdited = false;  ///< the user changed the kit; its name starts with "* "
};

/// Finds a kit and the names of its notes. The names point into the lists.
///
/// `address`: a bank of -1 matches every row, as kits of GS and GM2 are known by their program alone;
/// so does a number that a row leaves open. A program of -1, that of a channel without, finds no kit.
/// `scope` narrows the search of the kit to lists of one scope.
///
/// The kit is the first row with the address in the drum lists, in stored order; if there is none, in
/// the lists of note names. A row without note cells (many instruments keep kits and note names in two
/// lists) takes the names of the first row with its address that has some: in the lists of its own
/// scope and the note names that go with them (`CustomNotes` for the user's kits, else `Notes`), then
/// in all others.
///
/// Cells of a row:
/// - `<note> <name>`: split at the first blank. A cell that does not read so or has a note above 127
///   is left out. Of two cells with one note the later holds.
/// - "+", "++", ...: the kit is a variation. Its base's names come first, and its own cells replace
///   them by note. The number of signs is a level as in an outline, a row without mark being level 0:
///   the base is the nearest row above of a lower level. In a list without gaps, "+" so varies the
///   nearest kit without mark, "++" the nearest "+" kit, "+++" the nearest "++" kit. Where a level is
///   left out, a row never takes names from behind the kit that it stands under. Without a base its
///   own cells stand.
/// - "##": the row ends a run. No row below has its base in it or above it; cells behind do not count.
/// - "*": the user edited the kit.
[[nodiscard]] TDrumNames ReadDrumNames(std::span<const TSoundList> lists, const TAddress& address,
                                       std::optional<Scope> scope = std::nullopt);
[[nodiscard]] inline TDrumNames ReadDrumNames(const SoundSet& set, const TAddress& address,
                                              std::optional<Scope> scope = std::nullopt) {
  return ReadDrumNames(set.Lists(), address, scope);
}

}  // namespace Sonarello
