// Sonarello: the song's name and the track of its own that sysexes may have.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/MidiFunctions.h"

namespace Sonarello {

/// Name of a song by its file (path, UTF-8): without folder and without the last four characters, its
/// extension. A name too short for an extension is taken whole.
[[nodiscard]] std::string SongNameOf(std::string_view path);

/// The track name on track 0 that carries the song's name, put in if there is none. Raises EMidiError.
[[nodiscard]] PtrMidiEvent EnsureSongName(Song& song);

/// Moves all sysexes to a new last track, named and with an output delay in ms. In their places stay
/// removed copies. A last track that is left without content gives way to the new one. `sysexes` is
/// kept up to date. Raises EMidiError or std::bad_alloc.
void MakeExtraSysexTrack(Song& song, std::vector<TMidiFunctions::TSourceSysex>& sysexes,
                         std::int32_t delay);

}  // namespace Sonarello
