// Sonarello: the desk with everything that lies on it.
#pragma once

#include <functional>
#include <string>

#include "desk/AutoBackup.h"
#include "desk/ControllerOverview.h"
#include "desk/Desk.h"
#include "desk/EffectRow.h"
#include "desk/LyricLines.h"
#include "desk/PatchOverview.h"
#include "desk/RecentFiles.h"
#include "desk/Recovery.h"
#include "desk/RevoicerDesk.h"
#include "desk/SoundBrowser.h"
#include "desk/Undo.h"
#include "editors/EventEdits.h"
#include "editors/EventRows.h"

namespace Sonarello {

/// All logic behind the windows, wired together. What happens to the song reaches the windows as
/// `SongObserver` calls of the desk. Main thread.
class Workplace final : private SongObserver {
 public:
  /// `dataPath` is the folder of the user's own files, ending in "/".
  Workplace(const TDeskParts& parts, const std::string& dataPath);
  Workplace(const Workplace&) = delete;
  Workplace& operator=(const Workplace&) = delete;
  ~Workplace() override;

  /// Reads the settings and starts the desk.
  void Start();
  /// Another song is in the store, or the old one stayed: marks the session, remembers the file. To be
  /// called behind `Desk::ShowSong`.
  void SongOpened(bool opened);
  /// Saves under a name (format 0 or 1) and goes on under it.
  bool SaveMidiFile(const std::string& file, int format);
  /// Stores routes, settings and recent files, and ends the session in order.
  void Close();
  /// Folder that a song was opened from or saved into last, without "/" at its end.
  void RememberSourcePath(const std::string& file);
  /// Takes a file that is gone out of the list.
  void ForgetRecent(const std::string& file);

  Desk desk;
  TUndo undo;
  TAutoBackup backup;
  TRecovery recovery;
  RecentFiles recent;
  TLyricLines lyrics;
  TEffectRow effects;
  TAutoRevoicer revoicer;
  TRevoicerDesk revoicerDesk;
  TSoundBrowser browser;
  TPatchOverview overview;
  TEventRows eventRows;
  TEventEdits eventEdits;
  TControllerOverview controllers;

  /// The text or the state of the undo entries has changed.
  std::function<void()> UndoChanged;
  /// The recent files have changed.
  std::function<void()> RecentChanged;
  /// Syllables, chords or their times are others.
  std::function<void()> LyricsChanged;
  std::function<void()> EffectsChanged;
  /// Events came, went or moved, or tracks have other names: lists of events are made anew.
  std::function<void()> EventsChanged;
  /// The song is about to be replaced: windows let go of its events. They look at it again behind
  /// `SongOpened`.
  std::function<void()> LeavingSong;

 private:
  void SongChanged() override;
  void RoutesChanged() override;
  void TimesChanged() override;
  void EventChanged(PtrMidiEvent event, bool becameReal) override;
  void WireUndo();
  void WireBrowser();
  void WireRevoicer();
  void WireEvents();
  void WireEventEdits();
  void WireControllers();
  void TellEvents();
  /// Tells of tempi or signatures that the event list's own edit changed.
  void TellOwnTimes();
  void ReadEffects();
  void TellSound(int channel);

  IRegistryStore& store;
  bool tellsOwnTimes = false;  ///< while `TellOwnTimes` runs: the list's undo stays
  bool trialSaved = false;     ///< the song was saved with a sound that the browser may take back
};

}  // namespace Sonarello
