// Sonarello: how an instrument names a sound by its address, and what it plays where it has none.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "instruments/SoundSet.h"

namespace Sonarello {

inline constexpr int DrumChannel = 9;  ///< MIDI channel 10, which GM keeps for drums

/// What decides that a channel plays drums.
enum class DrumRule : std::uint8_t {
  Channel10,        ///< the channel, or a drum bank
  Channel10OrPart,  ///< the channel, or its drum part
  Part,             ///< its drum part; the channel's number has no meaning
  Bank,             ///< the bank MSB alone
};

/// When a row of a family's table applies.
enum class NameWhen : std::uint8_t {
  Bank,   ///< bank MSB in the row's range
  Drums,  ///< the channel plays drums
  Rest,
};

enum class NameKey : std::uint8_t {
  Address,  ///< MSB, LSB and program
  Program,  ///< the program alone
};

/// What is written over a sound that the instrument does not have, and how it is then named.
enum class Repair : std::uint8_t {
  None,
  LSB,       ///< LSB 0 of the same bank, if that holds the program
  Capital,   ///< the capital bank, if that holds the program
  Kit,       ///< LSB 0, program 0
  Program0,  ///< program 0
  FirstKit,  ///< all three 0
  KitBank,   ///< this program in the bank of the first kit, else the first kit
  Borrow,    ///< nothing is written; the first sound with the program lends its name
};

/// A text for sounds that no table knows. A text that ends in "=" is followed by the numbers.
struct TUnknown {
  std::string_view German;
  std::string_view English;
};

/// A row of a family's table; the first that applies decides. Its scopes are searched in their order.
struct TNameRule {
  NameWhen When = NameWhen::Rest;
  std::uint8_t FirstBank = 0;
  std::uint8_t LastBank = 127;
  std::array<Scope, 3> Scopes{};
  std::uint8_t ScopeCount = 1;
  NameKey Key = NameKey::Address;
  Repair OnRepair = Repair::None;
  TUnknown Unknown;       ///< empty: the member's own words
  TUnknown UnknownDrums;  ///< on channel 10; empty: as `Unknown`

  [[nodiscard]] constexpr bool AppliesTo(bool drums, int bank) const noexcept {
    if (When == NameWhen::Bank) return bank >= FirstBank && bank <= LastBank;
    return When == NameWhen::Rest || drums;
  }
};

/// What the instruments of one kind have in common.
struct TFamily {
  DrumRule Drums = DrumRule::Channel10;
  std::span<const std::uint8_t> DrumBanks;  ///< bank MSBs that hold nothing but kits
  TAddress Capital;                         ///< bank of the standard sounds, program unused
  TAddress DrumCapital;                     ///< bank that a drum channel without bank select means
  std::span<const TNameRule> Rules;         ///< unused with maps
  bool Maps = false;                        ///< LSB picks a GS map, MSB the variation
  std::string_view FirstKitName;            ///< of a repaired drum channel; empty: as the table says
};

/// An instrument of the catalogue: its kind, and its own words for what it does not know.
struct TMember {
  std::uint8_t Value = 0;
  std::string_view Class;  ///< name of its sound set
  const TFamily* Family = nullptr;
  TUnknown Sound;
  TUnknown Drums;
};

/// The member with this catalogue number, or nil.
[[nodiscard]] const TMember* MemberOf(int value) noexcept;
[[nodiscard]] std::span<const TMember> Members() noexcept;

/// What is asked: numbers of a channel, -1 where the song sets none.
struct TSoundQuery {
  TAddress Address;
  int Channel = 0;   ///< 0-15
  int DrumPart = 0;  ///< 0 melodic
};

/// Settings that naming depends on.
struct TNaming {
  bool AutoProgChange = false;  ///< unknown sounds are mended
  bool RolandSCDefaultMap = false;
  int RolandSCDefaultMapIdx = 0;  ///< the map that LSB 0 stands for, from 1
};

/// A name, and where it comes from.
struct TSoundName {
  std::string_view Name;  ///< valid as long as the sound set; what ends in "=" lacks its numbers
  bool Known = false;     ///< the instrument has the sound under the address asked for
  bool IsDrums = false;   ///< a kit was asked for
  TAddress Mended;        ///< numbers that repair writes; -1: that one stays
  const TPatch* Row = nullptr;
  TAddress Effective;  ///< what was looked for: the address asked for, unset banks filled in

  [[nodiscard]] bool IsMended() const noexcept { return Mended != TAddress{}; }
  /// The name as it is shown, with its numbers.
  [[nodiscard]] std::string Text() const;
};

/// Names a sound. Never writes: with `AutoProgChange` the answer tells what a repair would write and
/// the name that the channel then has.
[[nodiscard]] TSoundName NameSound(const SoundSet& set, const TSoundQuery& query,
                                   const TNaming& naming);

/// True if a channel of this instrument plays drums.
[[nodiscard]] bool PlaysDrums(const TFamily& family, const TSoundQuery& query) noexcept;

/// Name of a sound anywhere in the song, by the words of its instrument.
[[nodiscard]] std::string ProgramChangeName(const SoundSet& set, int CC00, int CC32, int Patch,
                                            const TNaming& naming);
/// Name of a drum kit by its program alone.
[[nodiscard]] std::string DrumsChangeName(const SoundSet& set, int Patch, const TNaming& naming);

/// Name of an organ-flute setting, such as "FullOrgan (OrganFlutes)", by the message's bytes behind F0.
/// "OrganFlutes (OrganFlutes)" if there is no message or it holds no known setting; of several that
/// match the last.
[[nodiscard]] std::string_view OrganFluteName(std::span<const std::uint8_t> sysex) noexcept;
/// The address that plays organ flutes on the instruments that have them.
inline constexpr TAddress OrganFlutes = {0, 126, 16};

}  // namespace Sonarello
