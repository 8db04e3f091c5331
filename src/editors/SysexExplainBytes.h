// Sonarello: the rules for sysexes that the build put into the program.
#pragma once

#include <cstddef>
#include <string_view>

namespace Sonarello {

/// A file's path in data/sysex and its first byte; it ends where the next one begins.
struct TSysexExplainBytes {
  std::string_view Path;
  const char* Begin;
};

/// By path; one row behind the last file tells where that ends.
extern const TSysexExplainBytes SysexExplainBytes[];
extern const std::size_t SysexExplainByteCount;

}  // namespace Sonarello
