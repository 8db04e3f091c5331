// Sonarello: the auto revoicer as its window uses it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/Ports.h"
#include "core/Settings.h"
#include "instruments/AutoRevoicer.h"
#include "playback/SongGate.h"

namespace Sonarello {

/// A row of the grid.
struct TRevoicerGridRow {
  std::string Pos;
  std::string SourceName;
  std::string SourceAddress;  ///< "104/21/0"
  std::string DestName;
  std::string DestAddress;

  friend bool operator==(const TRevoicerGridRow&, const TRevoicerGridRow&) = default;
};

/// What the desk's revoicer asks of others; unset ones do nothing.
struct TRevoicerDeskHooks {
  std::function<bool()> IsPlaying;
  std::function<void(int channel)> SoundChanged;  ///< a channel's name is shown anew
  std::function<void()> EventsChanged;            ///< the event list is drawn anew
  std::function<void()> Changed;                  ///< the song wants a backup
  std::function<void()> ListChanged;              ///< the grid is drawn anew
};

class TRevoicerDesk {
 public:
  TRevoicerDesk(Song& s, const IRoutes& r, ISettings& st, IMessages& m, SongGate& g, TAutoRevoicer& a)
      : song(s), routes(r), settings(st), messages(m), gate(g), revoicer(a) {}

  TRevoicerDeskHooks Hooks;

  /// Loads the list of the main instrument unless it is loaded. To be called when the window is shown
  /// and when the main instrument has changed.
  void LoadRevoiceData();
  [[nodiscard]] std::string Caption() const { return revoicer.Caption(); }
  [[nodiscard]] int RowCount() const noexcept { return revoicer.RevoicerArrayElm(); }
  /// A row by its index, which must be one of the list's.
  [[nodiscard]] TRevoicerGridRow Row(int index) const;
  /// Removes a row; an index outside the list does nothing.
  void Btn_DeleteClick(int index);
  [[nodiscard]] bool CanRevoice() const { return song.MidiFileLoaded && RowCount() > 0; }
  /// Replaces the sounds of the song; refused with a word during playback. False if nothing was done.
  bool Btn_RevoiceClick();
  /// What the last run did, in words; empty before one.
  [[nodiscard]] const std::string& Result() const noexcept { return result; }
  /// The sound changes that the last run left alone, a line each: "1.01.000: Kanal 3 - Ctrl00 fehlt!".
  [[nodiscard]] const std::vector<std::string>& Protocol() const noexcept { return protocol; }
  /// Forgets the last run; for another song.
  void ForgetRun();

 private:
  void Tell(const TRevoiceResult& run);

  Song& song;
  const IRoutes& routes;
  ISettings& settings;
  IMessages& messages;
  SongGate& gate;
  TAutoRevoicer& revoicer;
  std::string result;
  std::vector<std::string> protocol;
};

}  // namespace Sonarello
