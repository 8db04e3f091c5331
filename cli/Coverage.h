// Sonarello: what is known of each instrument's sounds, from the lists that ship with the program.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "SoundLists.h"
#include "instruments/InstrumentArray.h"

namespace Sonarello {

/// How an instrument's sounds and kits are known. A fall-back holds rows of a standard that the
/// instrument implements, or of a related instrument. Note names, effect defaults and the user's own
/// sounds do not count.
enum class Knowledge {
  OwnTables,  ///< all of its lists are its own
  Partly,     ///< some are its own; others are missing, or a fall-back stands in for them
  Fallback,   ///< fall-backs stand in for all
  Nothing,
};

struct ListCoverage {
  const TListSpec* Spec = nullptr;
  std::size_t Rows = 0;  ///< as they load, kits of layout P included
  /// The instrument has the list from its maker, and its rows are not known.
  bool IsMissing = false;
};

struct InstrumentCoverage {
  const TInstrument* Instrument = nullptr;
  Knowledge State = Knowledge::Nothing;
  std::size_t OwnRows = 0;       ///< in lists of sounds, kits and note names
  std::size_t FallbackRows = 0;  ///< the same
  std::size_t Missing = 0;       ///< lists of sounds, kits and note names
  std::string_view Sure;         ///< the least that any of its own lists is sure of; empty without
  std::vector<ListCoverage> Lists;
};

/// Reads the shipped lists of an instrument and counts.
[[nodiscard]] InstrumentCoverage CoverageOf(const TInstrument& instrument);

/// The state in a few words of the user's language.
[[nodiscard]] std::string KnowledgeText(Knowledge state);

/// The instruments as a table with a line of sums behind it.
[[nodiscard]] std::string CoverageText(std::span<const InstrumentCoverage> all);
/// One instrument list by list.
[[nodiscard]] std::string CoverageDetails(const InstrumentCoverage& instrument);
/// All of it as JSON.
[[nodiscard]] std::string CoverageJson(std::span<const InstrumentCoverage> all);

}  // namespace Sonarello
