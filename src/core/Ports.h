// Sonarello: what the song core asks of those who use it.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "core/ChannelStock.h"
#include "core/Data.h"

namespace Sonarello {

class Song;

/// How the user is told something and asked something.
class IMessages {
 public:
  virtual ~IMessages() = default;
  /// Tells the user a text. "\r" and "\r\n" are line breaks.
  virtual void Show(const std::string& text) = 0;
  /// Asks a question; true for yes.
  virtual bool Ask(const std::string& text) = 0;
  /// Tells how far a long work has come, 0.0 to 1.0. False asks the work to stop where it can.
  virtual bool Progress(double /*done*/) { return true; }
};

/// The outputs that channels play through.
class IRoutes {
 public:
  virtual ~IRoutes() = default;
  /// The live routes, at least one; route 0 is the main instrument.
  [[nodiscard]] virtual std::span<const TMidiRouting> MidiRouting() const = 0;
};

/// Steps of the open and save pipelines that belong to higher rooms. A composition root sets what it
/// has; an unset hook does nothing. Each is told the song that is being opened or saved.
struct SongHooks {
  using Step = std::function<void(Song&)>;
  Step WritePendingBackup;  ///< a changed song is about to be replaced
  Step ResetEffectMemory;   ///< the effect memory of the main instrument takes its defaults
  Step StopPlayer;          ///< playback ends before the old song is cleared
  Step CloseEditors;        ///< editor windows let go of the old song
  Step ReloadRevoicer;      ///< the auto revoicer's data follow the instrument
  Step ResetDesk;           ///< transpose and solo displays, backup timer
  Step ReadEffectMemory;  ///< the instrument's effects are read into its blocks, on analysis of sysexes
  std::function<bool(Song&)> SearchRolandSCFXInsertSysex;  ///< true if the song uses Roland inserts
  std::function<void(Song&, bool)> RolandInsertsFound;     ///< switches the Roland insert editor
  Step RemoveCountIn;                                      ///< the song's count-in is taken out
  Step CreateMidiData;  ///< a new song is built in the empty store; a failure is shown and raised
  Step ResetPlayback;   ///< loop range, song position display
  /// The bank selects that a sound change of a channel (0-15) gets where the song has none.
  std::function<TBank(const Song&, int)> MissingBank;
  /// Banks come into the instruments' terms; the index holds the song's own.
  std::function<void(Song&, const TProgramIndex&)> AdaptBanks;
  Step ReadFirstValues;  ///< the desk takes the channels' first values
  Step ShowStrips;       ///< channel strips and sound names
  Step ReadDrums;        ///< drum channel decision, per-note drum parameters
  Step ShowControllers;
  Step ReadLyrics;
  Step SelectChannel;  ///< the strip of `ActiveMidiIndex` is selected
  /// The verdict of the note check: empty for a clean song, else the text for the menu entry. The flag
  /// tells whether the range tools may work.
  std::function<void(const std::string&, bool)> NoteCheckResult;
  Step ForgetRangeTools;  ///< backups of the range tools
  /// The song's notes do not allow the range tools: their start entries are disabled, and if the flag
  /// is set, their windows close and their other entries are disabled as well.
  std::function<void(Song&, bool)> DisableRangeTools;
  Step SetUpEffects;  ///< effect editors and the auto revoicer
  Step RememberFile;  ///< recent files
  /// Name of a channel's sound (0-15) in its instrument's terms.
  std::function<std::string(const Song&, int)> PatchName;
  /// True if a drum transpose may move a channel's note to a key (0-127, the instrument's drum mask).
  std::function<bool(const Song&, int, int)> DrumKeyMayMove;
};

}  // namespace Sonarello
