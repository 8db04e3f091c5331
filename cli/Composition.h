// Sonarello: where the rooms are put together for one song at a time.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Arguments.h"
#include "Console.h"
#include "core/MidiFunctions.h"
#include "core/OpenPipeline.h"
#include "instruments/SoundNames.h"
#include "tools/NewMidiData.h"

namespace Sonarello {

/// The routes that the settings describe.
class SettingsRoutes : public IRoutes {
 public:
  [[nodiscard]] std::span<const TMidiRouting> MidiRouting() const override { return Table; }
  std::vector<TMidiRouting> Table;
};

/// What all songs of one run share.
struct Setup {
  Options options;
  SettingsRoutes routes;
  std::shared_ptr<const SoundSets> sounds;  ///< of the routes' instruments; read only, for all threads
  std::vector<std::string> complaints;      ///< what was wrong with the user's own sound lists
};

/// Options and routes from the command line. What is wrong is told in `complaint`.
[[nodiscard]] std::optional<Setup> MakeSetup(const Arguments& arguments, std::string& complaint);

/// Loads the tables of the routes' instruments anew.
void LoadSounds(Setup& setup);
/// What the settings say about the loading of sound lists.
[[nodiscard]] TLoadSettings LoadSettingsOf(const Options& options);

/// Keeps what the user is told about one song; questions get one fixed answer.
class SongMessages : public IMessages {
 public:
  explicit SongMessages(bool a) : answer(a) {}
  void Show(const std::string& text) override { Shown.push_back(text); }
  bool Ask(const std::string& text) override {
    Shown.push_back(text);
    return answer;
  }

  std::vector<std::string> Shown;

 private:
  bool answer;
};

/// One song with everything that works on it.
class SongDesk {
 public:
  SongDesk(const Setup& s, bool answer);
  SongDesk(const SongDesk&) = delete;
  SongDesk& operator=(const SongDesk&) = delete;

  /// Opens a file through the whole pipeline. False if it was refused; `messages` tell why.
  bool Open(const std::string& file);
  /// Builds a new song, named after a file that does not exist yet.
  bool Create(const std::string& file, const TNewSong& wishes);
  /// Runs the reader alone. False if the file was refused; the last message is the reason.
  bool Decode(const std::string& file);
  /// Writes the song. False if that failed; `messages` tell why.
  bool Save(const std::string& file, int format);
  [[nodiscard]] TMidiFunctions& Functions() { return functions; }
  /// From now on `changes` fills.
  void RecordChanges() { song.Changes = &changes; }
  [[nodiscard]] const TMidiRouting& MainRoute() const { return setup.routes.Table.front(); }
  [[nodiscard]] std::size_t RouteCount() const { return setup.routes.Table.size(); }

  Song song;
  SongMessages messages;
  ChangeLog changes;
  std::string NoteCheck;  ///< verdict of the note check; empty for a clean song
  TSoundNames names;

 private:
  void WireHooks();

  const Setup& setup;
  SongHooks hooks;
  TMidiFunctions functions;
  TNewSong newSong;
};

/// The setup for the reader alone: nothing is fitted, named or moved.
[[nodiscard]] Setup ReaderSetup(Setup setup);

/// Tells what a song's messages say, each line with the file's name in front.
void TellMessages(Console& console, const std::string& file, const std::vector<std::string>& messages);

}  // namespace Sonarello
