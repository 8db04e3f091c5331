// Sonarello: the tables of one instrument, loaded and indexed.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "instruments/SoundListReader.h"

namespace Sonarello {

struct TMember;

inline constexpr int MostMaps = 4;  ///< GS maps of the largest instrument

[[nodiscard]] constexpr bool IsMidiValue(int value) noexcept { return value >= 0 && value < 128; }

/// Finds the first row of an address in stored order, in constant time.
class AddressIndex {
 public:
  AddressIndex();
  /// Adds a row behind all others; a taken address stays with its first row.
  void Add(const TPatch& row);
  /// The first row with all three numbers, or nil. Numbers outside 0-127 match no row.
  [[nodiscard]] const TPatch* Find(const TAddress& address) const noexcept {
    // One test for all three: each is below 128 and none is negative.
    if (((address.CC00 | address.CC32 | address.Patch) & ~127) != 0 || bankOf.empty()) return nullptr;
    const std::int16_t bank = bankOf[static_cast<std::size_t>(address.CC00 * 128 + address.CC32)];
    if (bank < 0) return nullptr;
    const std::int16_t row =
        banks[static_cast<std::size_t>(bank)][static_cast<std::size_t>(address.Patch)];
    return row < 0 ? nullptr : rows[static_cast<std::size_t>(row)];
  }
  /// The first row with this program, whatever its banks, or nil.
  [[nodiscard]] const TPatch* FindProgram(int program) const noexcept;
  /// True if a row has this bank MSB.
  [[nodiscard]] bool HoldsBank(int CC00) const noexcept;
  /// The first row of the index, or nil.
  [[nodiscard]] const TPatch* First() const noexcept { return rows.empty() ? nullptr : rows.front(); }

 private:
  static constexpr std::size_t BankCount = 128 * 128;
  static constexpr std::size_t MostRows = 32767;
  using TBank = std::array<std::int16_t, 128>;  ///< by program: index into `rows`, -1 if none

  std::vector<std::int16_t> bankOf;  ///< by CC0 * 128 + CC32: index into `banks`, -1 if none
  std::vector<TBank> banks;
  TBank byProgram;
  std::vector<const TPatch*> rows;
};

/// The sound tables of one instrument. Never changes once loaded, so that threads may share it.
class SoundSet {
 public:
  /// Loads the tables of an instrument by its catalogue number.
  SoundSet(int value, const TLoadSettings& settings, IMessages& messages);
  SoundSet(const SoundSet&) = delete;
  SoundSet& operator=(const SoundSet&) = delete;

  [[nodiscard]] int Value() const noexcept { return instrument; }
  /// Its row of the catalogue of kinds.
  [[nodiscard]] const TMember& Member() const noexcept { return *member; }
  /// Place in the family's rules of the one that decides for a bank MSB (0-127); rules behind the last
  /// one mean that none does.
  [[nodiscard]] std::size_t RuleFor(bool drums, int bank) const noexcept {
    return rules[drums ? 1 : 0][static_cast<std::size_t>(bank)];
  }
  /// The lists in their order of search.
  [[nodiscard]] std::span<const TSoundList> Lists() const noexcept { return lists; }
  /// The list with this name, or nil.
  [[nodiscard]] const TSoundList* List(std::string_view name) const noexcept;
  /// The rows of a scope.
  [[nodiscard]] const AddressIndex& Index(Scope scope) const noexcept {
    const auto& index = indexes[static_cast<std::size_t>(scope)];
    return index ? *index : none;
  }
  /// Number of GS maps, 0 for an instrument without.
  [[nodiscard]] int MapCount() const noexcept { return mapCount; }

 private:
  [[nodiscard]] TSoundList* Mutable(std::string_view name) noexcept;
  AddressIndex& IndexFor(Scope scope);
  void Build();

  void ChooseRules();

  int instrument;
  const TMember* member;
  std::array<std::array<std::uint8_t, 128>, 2> rules{};  ///< for sounds and drums, by bank MSB
  std::vector<TSoundList> lists;
  std::array<std::unique_ptr<AddressIndex>, ScopeCount> indexes;
  AddressIndex none;
  int mapCount = 0;
};

/// The sound sets of the instruments in use. Not for several threads until `Load` is done.
class SoundSets {
 public:
  /// Loads an instrument's tables unless they are there already.
  void Load(int value, const TLoadSettings& settings, IMessages& messages);
  /// Forgets an instrument's tables.
  void Unload(int value) noexcept { sets[Index(value)].reset(); }
  /// The tables of an instrument, or nil if it is not in use.
  [[nodiscard]] const SoundSet* Find(int value) const noexcept { return sets[Index(value)].get(); }

 private:
  static std::size_t Index(int value) noexcept { return static_cast<std::uint8_t>(value); }
  std::array<std::unique_ptr<SoundSet>, 256> sets;
};

}  // namespace Sonarello
