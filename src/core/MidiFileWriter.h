// Sonarello: from the song's store to a Standard MIDI File.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/FileCalls.h"
#include "core/Options.h"
#include "core/Ports.h"
#include "core/Song.h"

namespace Sonarello {

/// Writes a song. The desk's settings (drum transposes, velocities, routes) are applied to a copy; the
/// song stays as it is.
class MidiFileWriter {
 public:
  MidiFileWriter(Song& s, const Options& o, const IRoutes& r, IMessages& m, const SongHooks& h,
                 FileCalls& f = FileCalls::System())
      : song(s), options(o), routes(r), messages(m), hooks(h), files(f) {}

  /// Writes the song to a file (path, UTF-8) in format 0 or 1. True when the file holds the whole song.
  /// A failure was shown; the file is then what it was before, or a copy was named that holds the song.
  bool Save(const std::string& fileName, int format);

  /// The bytes that `Save` writes. `fileName` gives the name of the song.
  /// Raises EMidiError, after it was shown.
  [[nodiscard]] std::vector<std::uint8_t> Encode(const std::string& fileName, int format);

 private:
  Song& song;
  const Options& options;
  const IRoutes& routes;
  IMessages& messages;
  const SongHooks& hooks;
  FileCalls& files;
};

}  // namespace Sonarello
