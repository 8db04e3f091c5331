#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "Commands.h"
#include "instruments/InstrumentArray.h"

namespace Sonarello {

int InstrumentsCommand(const Arguments& arguments, const Setup&, Console& console) {
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
