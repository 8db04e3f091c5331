// Sonarello: what the user is told when a song could not be written.
#pragma once

#include <cstddef>
#include <string>

#include "core/OutputTracks.h"

namespace Sonarello {

/// An event has no form in a file. The counting and the storing pass tell it in their own English
/// words.
[[nodiscard]] std::string CodingText(TWriterBranch branch, bool storing);
/// The system took fewer bytes than the file has.
[[nodiscard]] std::string IncompleteText(TWriterBranch branch, const std::string& name,
                                         std::size_t written, std::size_t total);
[[nodiscard]] std::string WritingText(TWriterBranch branch, const std::string& name);
[[nodiscard]] std::string OpeningText(TWriterBranch branch, const std::string& name);
[[nodiscard]] std::string ReadOnlyText(TWriterBranch branch, const std::string& name);
/// The target is damaged; the complete song stands in another file.
[[nodiscard]] std::string CopyText(const std::string& copy);

}  // namespace Sonarello
