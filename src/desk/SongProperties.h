// Sonarello: what there is to say about a song, in words.
#pragma once

#include <string>
#include <vector>

#include "core/Song.h"

namespace Sonarello {

/// One line: what it is about, and what there is to say.
struct TSongProperty {
  std::string Label;
  std::string Text;
  friend bool operator==(const TSongProperty&, const TSongProperty&) = default;
};

/// The properties of a loaded song in the user's language: file, format, resolution, length, tempo,
/// signature, tracks, channels, events, notes. `noteCheck` is the verdict of the note check, empty for
/// a clean song. Costs no walk over the events.
[[nodiscard]] std::vector<TSongProperty> SongProperties(const Song& song, const std::string& noteCheck);

/// The line below a song's name: "SMF 0 · 480 T/V · 2:51".
[[nodiscard]] std::string SongFactsLine(const Song& song);

/// A whole number with the language's sign between thousands: 1.284 or 1,284.
[[nodiscard]] std::string NumberText(std::int64_t number);

/// The last part of a path.
[[nodiscard]] std::string FileNameOf(const std::string& path);

}  // namespace Sonarello
