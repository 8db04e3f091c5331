// Sonarello: the table of the effect data that the build put into the program.
#pragma once

#include <cstddef>
#include <string_view>

namespace Sonarello {

/// A file's path in data/effects and its first byte; it ends where the next one begins.
struct TEffectRowBytes {
  std::string_view Path;
  const char* Begin;
};

/// By path; one row behind the last file tells where that ends.
extern const TEffectRowBytes EffectRowBytes[];
extern const std::size_t EffectRowByteCount;

}  // namespace Sonarello
