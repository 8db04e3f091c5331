// Sonarello: saving a file so that no crash, full disk or pulled plug leaves it half written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "core/FileCalls.h"

namespace Sonarello {

/// Where a save stopped.
enum class TSaveStep : std::uint8_t {
  Done,        ///< the file holds the whole content
  ReadOnly,    ///< the write protection could not be taken off
  Opening,     ///< the file, or the copy beside it, could not be opened for writing
  Incomplete,  ///< the system took fewer bytes than there are
  Writing,     ///< another failure while writing, flushing or reading back
};

struct TSaveResult {
  TSaveStep Step = TSaveStep::Done;
  std::size_t Written = 0;  ///< bytes that the system took before it stopped
  /// A complete copy that had to stay because the file itself was damaged; empty otherwise.
  std::string Copy;
};

/// Writes a file (path, UTF-8). An existing file is written over in place: links, owner, permissions
/// and attributes stay; a write protection is taken off first. Before its first byte changes, the
/// complete new content stands beside it in a copy that was flushed and read back; the copy goes when
/// the write has succeeded. A new file is made under its name at once, complete. Unless `Copy` says
/// otherwise, a failure leaves the file as it was. Devices and pipes are simply written to.
[[nodiscard]] TSaveResult SaveFile(const std::string& fileName, std::span<const std::uint8_t> content,
                                   FileCalls& calls = FileCalls::System());

/// The complete copies of a file that an interrupted save left beside it (paths). A copy of what the
/// file itself holds is none of them.
[[nodiscard]] std::vector<std::string> CopiesLeftBeside(const std::string& fileName);

}  // namespace Sonarello
