// Sonarello: the one road from a file name to a song that the rest of the system can rely on.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/MidiFunctions.h"

namespace Sonarello {

/// Reads a file (path, UTF-8) whole for the reader. A file that cannot be read or is too short to hold
/// a song is shown; false then.
[[nodiscard]] bool ReadSourceData(const std::string& file, std::vector<std::uint8_t>& data,
                                  IMessages& messages);

/// Opens songs into one store. What it leaves there is the program's definition of a clean song.
class OpenPipeline {
 public:
  OpenPipeline(Song& s, const Options& o, const IRoutes& r, IMessages& m, const SongHooks& h)
      : song(s), options(o), messages(m), hooks(h), functions(s, o, r, m, h) {}

  /// Opens a file (path, UTF-8), or builds a new song through the hook `CreateMidiData` if `CreateNew`.
  /// True if a song is in the store afterwards. A failure was shown; the store is then empty.
  bool OpenMidiFile(const std::string& FileToOpen, bool CreateNew);

 private:
  void LeaveOldSong();
  bool Load(const std::string& file);
  bool Create();
  void TreatCountIn();
  void BuildTimeMap();
  void PlaceLoopStarts();
  void SetUpChannels();
  void CheckNotes();
  void PairNotes();
  void CheckLists();
  /// Tells how far the open has come, as shares of its usual time. It cannot be broken off: the store
  /// would be half built.
  void Tell(double done) { messages.Progress(done); }
  void Run(const SongHooks::Step& step) {
    if (step) step(song);
  }

  Song& song;
  const Options& options;
  IMessages& messages;
  const SongHooks& hooks;
  TMidiFunctions functions;
};

/// Looks for broken links, falling positions and values above 127. The message of the first fault, in
/// the user's language; empty for sound lists.
[[nodiscard]] std::string ListFault(const Song& song);

}  // namespace Sonarello
