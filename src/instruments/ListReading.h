// Sonarello: turns the rows of a list's text into sounds and kits.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "core/Ports.h"
#include "instruments/ListFaults.h"
#include "instruments/ListRows.h"
#include "instruments/SoundList.h"

namespace Sonarello {

/// Reads one text into one list, whose `Spec` is set.
class ListReading {
 public:
  ListReading(TSoundList& target, std::string_view source, IMessages* messages);
  void Run(bool sort);

 private:
  void ReadColumns(const TColumns& columns, bool sort);
  bool ReadAddress(const TColumns& columns, const RowCells& cells, TPatch& patch) const;
  bool ReadBank(std::int8_t column, std::int8_t ofList, const RowCells& cells, std::int8_t& bank) const;
  bool TooFewCells(const TColumns& columns, std::string_view row);
  void SortRows();
  std::int32_t CategoryIndex(std::string_view category);

  void ReadKits();
  bool ReadKit(std::string_view row, TPatch& kit);
  bool ReadKitNumbers(std::string_view numbers, TPatch& kit) const;

  void ReadPrograms();
  void ReadVariations(std::string_view row, std::int8_t program, const TProgramBanks& banks);
  void ReadProgramKits(std::string_view row, const TProgramBanks& banks);

  void ReadNames();

  [[nodiscard]] std::string_view Displayed(std::string_view name);
  [[nodiscard]] std::string_view Kept(std::string text);

  TSoundList& list;
  const TListSpec& spec;
  std::string_view text;
  bool isUsers;  ///< faults are told
  ListFaults faults;
  RowWalk walk;
  std::vector<std::string_view> sources;  ///< rows behind their first cell, while they are sorted
};

/// A stored name as it is displayed, with the suffix of its list: in front of a bracket that the name
/// holds if the suffix is itself a bracket, else at the end.
[[nodiscard]] std::string NameWithSuffix(std::string_view name, std::string_view suffix);
/// The stored name of a displayed one.
[[nodiscard]] std::string NameWithoutSuffix(std::string_view name, std::string_view suffix);

}  // namespace Sonarello
