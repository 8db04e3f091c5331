// Sonarello: the rows of a sound list in memory.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "instruments/ListTable.h"

namespace Sonarello {

/// A sound's address: bank select MSB, bank select LSB, program; 0-127 each, -1 if not set.
struct TAddress {
  int CC00 = -1;
  int CC32 = -1;
  int Patch = -1;
  friend bool operator==(const TAddress&, const TAddress&) = default;
};

/// One sound or drum kit. Texts point into the list's text or the program's own.
struct TPatch {
  std::int32_t CatIndex = -1;  ///< index into the list's categories, -1 without
  std::int8_t CC00 = -1;       ///< 0-127, -1 if not set
  std::int8_t CC32 = -1;
  std::int8_t Patch = -1;
  std::string_view Name;     ///< as displayed, with the list's suffix
  std::string_view CatName;  ///< sub-category, of layouts that have one
  std::string_view Drums;    ///< note cells of a drum kit as stored, tabs between; empty without

  [[nodiscard]] TAddress Address() const noexcept { return {CC00, CC32, Patch}; }
};

/// Values of a sound's effects, of the Yamaha arrangers. The numbers are the instrument's own.
struct TXTPatch {
  std::int8_t Ctrl71 = 64;  ///< default value of this controller, and so on
  std::int8_t Ctrl72 = 64;
  std::int8_t Ctrl73 = 64;
  std::int8_t Ctrl74 = 64;
  std::int8_t Ctrl91 = 40;
  std::int8_t Ctrl93 = 0;
  std::int32_t DSPIndex = 358;            ///< index into the instrument's effect list
  std::array<std::int32_t, 16> DSPPar{};  ///< `DSPPar01` to `DSPPar16`; -1: the sound sets none
  std::int32_t MPBassFreq = 16;
  std::int32_t MPBassGain = 64;
  std::int32_t MPTrebleFreq = 47;
  std::int32_t MPTrebleGain = 64;

  TXTPatch() { DSPPar.fill(-1); }
  friend bool operator==(const TXTPatch&, const TXTPatch&) = default;
};

/// Insert effects of a Motif sound. An index of -1 is no effect.
struct TMotifInserts {
  std::int32_t InsertA_FxIndex = -1;
  std::int32_t InsertA_FxPreset = -1;
  std::string_view InsertA_FxName;
  std::string_view InsertA_PresetName;
  std::string_view InsertA_DefaultValues;  ///< numbers, commas between
  std::int32_t InsertB_FxIndex = -1;
  std::int32_t InsertB_FxPreset = -1;
  std::string_view InsertB_FxName;
  std::string_view InsertB_PresetName;
  std::string_view InsertB_DefaultValues;
  std::int32_t InsertConnect = -1;

  friend bool operator==(const TMotifInserts&, const TMotifInserts&) = default;
};

/// A list as it was read. The texts of rows that the reader composed or took from a file live in
/// `Texts`, so a list may be moved, not copied.
struct TSoundList {
  const TListSpec* Spec = nullptr;
  std::vector<TPatch> Rows;                  ///< in stored order
  std::vector<TPatch> Kits;                  ///< drum kits of the last row of layout P, else empty
  std::vector<TXTPatch> Effects;             ///< one per row, or empty if the list has no companion
  std::vector<TMotifInserts> Inserts;        ///< one per row, or empty
  std::vector<std::string_view> Categories;  ///< in order of appearance
  bool FromUser = false;                     ///< the user's file took the place of the shipped rows
  std::deque<std::string> Texts;             ///< what the views point into, if not into the program

  TSoundList() = default;
  TSoundList(TSoundList&&) = default;
  TSoundList& operator=(TSoundList&&) = default;
  TSoundList(const TSoundList&) = delete;
  TSoundList& operator=(const TSoundList&) = delete;
};

}  // namespace Sonarello
