// Sonarello: what the program finds out at its start.
#pragma once

#include <string>
#include <string_view>

namespace Sonarello {

/// Name of the folder of the user's own files, inside the documents.
inline constexpr std::string_view DataFolderName = "Sonarello XI";

/// The folder of the user's own files (UTF-8, ends in "/"): inside `documents`, made if it is missing.
/// If it cannot be made or written to, `applicationPath` takes its place.
[[nodiscard]] std::string FindDataPath(const std::string& documents,
                                       const std::string& applicationPath);

/// True if a file can be written in a folder (ends in "/"); leaves nothing behind.
[[nodiscard]] bool IsFolderWritable(const std::string& folder);

/// What the first parameter of the command line asks for.
struct TStartParameter {
  std::string AutoloadFileName;  ///< a song to open, or empty
  bool ResetRegistry = false;    ///< all settings are to be forgotten
};
[[nodiscard]] TStartParameter ReadStartParameter(std::string_view parameter);

/// The question before all settings are forgotten.
[[nodiscard]] std::string ResetQuestion();
/// The question at the end of the program.
[[nodiscard]] std::string TerminateQuestion();

}  // namespace Sonarello
