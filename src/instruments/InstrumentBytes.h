// Sonarello: the table of the files that the build put into the program.
#pragma once

#include <cstddef>
#include <string_view>

namespace Sonarello {

/// A file's path in data/instruments and its first byte; it ends where the next one begins.
struct TInstrumentBytes {
  std::string_view Path;
  const char* Begin;
};

/// By path; one row behind the last file tells where that ends.
extern const TInstrumentBytes InstrumentBytes[];
extern const std::size_t InstrumentByteCount;

}  // namespace Sonarello
