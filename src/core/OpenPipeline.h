// Sonarello: the one road from a file name to a song that the rest of the system can rely on.
#pragma once

#include <string>

#include "core/MidiFunctions.h"

namespace Sonarello {

/// Opens songs into one store. What it leaves there is the program's definition of a clean song.
class OpenPipeline {
 public:
  OpenPipeline(Song& song, const Options& options, const IRoutes& routes, IMessages& messages,
               const SongHooks& hooks)
      : song(song), options(options), routes(routes), messages(messages), hooks(hooks),
        functions(song, options, routes, messages, hooks) {}

  /// Opens a file (path, UTF-8), or builds a new song through the hook `CreateMidiData` if `CreateNew`.
  /// True if a song is in the store afterwards. A failure was shown; the store then wants clearing,
  /// which the next open does, and `MidiFileLoaded` is false.
  bool OpenMidiFile(const std::string& FileToOpen, bool CreateNew);

 private:
  Song& song;
  const Options& options;
  const IRoutes& routes;
  IMessages& messages;
  const SongHooks& hooks;
  TMidiFunctions functions;
};

}  // namespace Sonarello
