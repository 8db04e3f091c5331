// Sonarello: the sounds of an instrument as its browser shows them: banks, categories, names, search.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "instruments/SoundSet.h"

namespace Sonarello {

/// Sounds of a bank that stand under one name.
struct TBrowserCategory {
  std::string Name;
  std::vector<std::int32_t> Sounds;  ///< indexes of the bank's rows, in stored order
};

/// One list of the instrument: a radio button of the browser.
struct TBrowserBank {
  std::string Name;  ///< as the user sees it, such as "Panel"
  const TSoundList* List = nullptr;
  bool Kits = false;     ///< the bank holds the drum kits of the list's last row, not its sounds
  bool IsDrums = false;  ///< its rows are drum kits
  std::vector<TBrowserCategory> Categories;  ///< a bank without sounds has none

  [[nodiscard]] std::span<const TPatch> Rows() const noexcept { return Kits ? List->Kits : List->Rows; }
  /// True if the rows come from the user's own file and none ship.
  [[nodiscard]] bool IsCustom() const noexcept { return List->Spec->Kind == ListKind::User; }
};

/// Where a sound stands in the browser. -1: nowhere.
struct TSoundPlace {
  int Bank = -1;
  int Category = -1;
  int Sound = -1;  ///< index into the category's `Sounds`

  [[nodiscard]] bool IsSet() const noexcept { return Sound >= 0; }
  friend bool operator==(const TSoundPlace&, const TSoundPlace&) = default;
};

/// The name without the part that tells a paid pack: it ends in front of " - Premium". An empty name
/// reads "---".
[[nodiscard]] std::string VoiceLabel(std::string_view name);

/// A name in its bank's list: without the suffix that tells the bank, and its bracketed end apart.
struct TSoundText {
  std::string Name;
  std::string Badge;  ///< such as "S.Art2!"; empty without
  friend bool operator==(const TSoundText&, const TSoundText&) = default;
};

/// All banks of an instrument. Refers to its sound set, which outlives it.
class TBrowserBanks {
 public:
  TBrowserBanks() = default;
  explicit TBrowserBanks(const SoundSet& set);

  [[nodiscard]] std::span<const TBrowserBank> Banks() const noexcept { return banks; }
  /// The row at a place, or nil.
  [[nodiscard]] const TPatch* RowAt(const TSoundPlace& place) const noexcept;
  /// The place of a row of one of the lists; not set for any other pointer.
  [[nodiscard]] TSoundPlace PlaceOf(const TPatch* row) const noexcept;
  /// The name of a row of a bank as the list shows it.
  [[nodiscard]] TSoundText ListText(int bank, const TPatch& row) const;
  /// Every place whose name holds the text, letters of any case alike (umlauts too), by banks in their
  /// order, in the banks that `offered` marks. An empty text matches nothing.
  [[nodiscard]] std::vector<TSoundPlace> Search(std::string_view text,
                                                const std::vector<bool>& offered) const;

 private:
  void Add(const TSoundList& list, bool kits);

  std::vector<TBrowserBank> banks;
};

}  // namespace Sonarello
