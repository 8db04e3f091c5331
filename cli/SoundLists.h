// Sonarello: what the commands about sounds ask of an instrument's lists.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Composition.h"
#include "instruments/SoundList.h"

namespace Sonarello {

/// What a list is there for.
enum class ListPart {
  Sounds,
  Kits,
  NoteNames,   ///< kits again, with the names of their notes
  Effects,     ///< of another list's sounds
  Categories,  ///< names of groups
};
[[nodiscard]] ListPart PartOf(Scope scope) noexcept;
/// True for the lists of the user's own sounds and kits.
[[nodiscard]] bool IsCustom(Scope scope) noexcept;

/// One row of a list.
struct TListRow {
  const TSoundList* List = nullptr;
  const TPatch* Row = nullptr;
  bool IsKit = false;
};
/// The rows of the lists of sounds, kits and note names, in stored order.
[[nodiscard]] std::vector<TListRow> RowsOf(const SoundSet& set);
/// The list that holds a row, or nil.
[[nodiscard]] const TSoundList* ListOf(const SoundSet& set, const TPatch* row);
/// The row's category and sub-category; empty without.
[[nodiscard]] std::string_view CategoryOf(const TListRow& row);

/// The sounds of the main instrument, or nil if none are known.
[[nodiscard]] const SoundSet* MainSounds(const Setup& setup);

/// What the settings say about naming.
[[nodiscard]] TNaming NamingOf(const Options& options);

/// A number of an address as text, "-" for one that is not set.
[[nodiscard]] std::string NumberText(int number);
/// The address as "MSB/LSB/program", "-" for a number that is not set.
[[nodiscard]] std::string PlainAddress(const TAddress& address);
/// "GM2_Sounds, User_Sounds", say: the names of lists that rows may stand in.
[[nodiscard]] std::string ListNames(const SoundSet& set);

}  // namespace Sonarello
