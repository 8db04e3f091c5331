#include "instruments/InstrumentFiles.h"

#include <algorithm>

#include "instruments/InstrumentBytes.h"

namespace Sonarello {

std::string_view InstrumentFile(std::string_view path) noexcept {
  const TInstrumentBytes* const end = InstrumentBytes + InstrumentByteCount;
  const TInstrumentBytes* const file = std::lower_bound(
      InstrumentBytes, end, path,
      [](const TInstrumentBytes& row, std::string_view wanted) { return row.Path < wanted; });
  if (file == end || file->Path != path) return {};
  return {file->Begin, static_cast<std::size_t>(file[1].Begin - file->Begin)};
}

}  // namespace Sonarello
