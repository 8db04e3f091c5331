#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Coverage.h"
#include "instruments/InstrumentArray.h"

namespace Sonarello {

namespace {

int Coverage(const Arguments& arguments, const Setup& setup, Console& console) {
  const bool one = !arguments.Instrument.empty();
  std::vector<InstrumentCoverage> all;
  for (const TInstrument& row : InstrumentArray)
    if (!one || row.Value == setup.routes.Table.front().InstrumValue) all.push_back(CoverageOf(row));
  if (arguments.Json)
    console.Out(CoverageJson(all));
  else
    console.Out(one ? CoverageDetails(all.front()) : CoverageText(all));
  return Done;
}

}  // namespace

int InstrumentsCommand(const Arguments& arguments, const Setup& setup, Console& console) {
  if (arguments.Coverage) return Coverage(arguments, setup, console);
  if (arguments.Json) {
    auto list = nlohmann::ordered_json::array();
    for (const TInstrument& row : InstrumentArray)
      list.push_back({{"value", row.Value}, {"name", row.Name}});
    console.Out(list.dump(2) + "\n");
    return Done;
  }
  for (const TInstrument& row : InstrumentArray)
    console.Out(fmt::format("{:>3}  {}\n", row.Value, row.Name));
  return Done;
}

}  // namespace Sonarello
