#include "instruments/InstrumentArray.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "core/Markers.h"
#include "core/TextOrder.h"

namespace Sonarello {

namespace {

template <class F>
const TInstrument* FindRow(F&& accepts) noexcept {
  const auto row = std::find_if(InstrumentArray.begin(), InstrumentArray.end(), accepts);
  return row == InstrumentArray.end() ? nullptr : &*row;
}

}  // namespace

const TInstrument* InstrumentByName(std::string_view name) noexcept {
  return FindRow([&](const TInstrument& row) { return row.Name == name; });
}

const TInstrument* InstrumentByValue(int value) noexcept {
  return FindRow([&](const TInstrument& row) { return row.Value == value; });
}

std::vector<const TInstrument*> FindInstruments(std::string_view text) {
  int value = -1;
  const auto [behind, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (fault == std::errc{} && behind == text.data() + text.size()) {
    const TInstrument* row = InstrumentByValue(value);
    return row != nullptr ? std::vector{row} : std::vector<const TInstrument*>{};
  }
  const std::string_view name = CurrentInstrumentName(text);
  if (const TInstrument* row = InstrumentByName(name)) return {row};
  const std::string lower = SmallLetters(name);
  if (const TInstrument* row =
          FindRow([&](const TInstrument& r) { return SmallLetters(r.Name) == lower; }))
    return {row};
  std::vector<const TInstrument*> rows;
  if (lower.empty()) return rows;
  for (const TInstrument& row : InstrumentArray)
    if (SmallLetters(row.Name).find(lower) != std::string::npos) rows.push_back(&row);
  return rows;
}

}  // namespace Sonarello
