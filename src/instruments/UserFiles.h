// Sonarello: the user's own files of sound lists.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Sonarello {

enum class UserFile : std::uint8_t {
  Missing,
  Read,
  Unreadable,  ///< a folder or device, no permission, a read error, or too large for a list
};

/// Bytes of the largest file that is taken for a list; the largest real one has some 100 kB.
inline constexpr std::size_t LargestUserFile = std::size_t{16} << 20;

/// Reads a file (path, UTF-8) whole. Never waits, as a pipe would make it.
[[nodiscard]] UserFile ReadUserFile(const std::string& path, std::string& bytes);

/// The path of a file in a folder, which may end in "/".
[[nodiscard]] std::string PathInFolder(std::string_view folder, std::string_view name);

}  // namespace Sonarello
