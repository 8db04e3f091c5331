// Sonarello: the sounds of all sixteen channels at a glance.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "core/Ports.h"
#include "instruments/SoundNames.h"
#include "playback/SongGate.h"

namespace Sonarello {

/// One channel as the overview shows it.
struct TPatchRow {
  std::string Number;       ///< of the strip, "4"
  bool Redirected = false;  ///< it goes out on another channel than its own
  std::string Sound;        ///< "???" without program, "noteless" without notes, empty without song
  std::string Part;         ///< drum part, and the instrument if there are several outputs
  std::string Hint;         ///< the two bank selects
  bool Drums = false;
  bool Active = false;  ///< the channel has notes
  bool Selected = false;
  bool Mute = false;
  bool MuteBySolo = false;  ///< muted because another channel is soloed
  bool Solo = false;
  bool Rec = false;

  friend bool operator==(const TPatchRow&, const TPatchRow&) = default;
};

/// What the overview asks of others; unset ones do nothing.
struct TPatchOverviewHooks {
  std::function<void(int channel)> OpenBrowser;
  std::function<void(int channel)> SelectChannel;
  std::function<void(int channel)> SoundChanged;   ///< the strips show the sound anew
  std::function<void(int channel)> EventsChanged;  ///< events came into the song
  std::function<void()> Changed;                   ///< the song wants a backup
};

class TPatchOverview {
 public:
  TPatchOverview(Song& s, TSoundNames& n, const IRoutes& r, IMessages& m, SongGate& g)
      : song(s), names(n), routes(r), messages(m), gate(g) {}

  TPatchOverviewHooks Hooks;

  /// The row of a channel (0-15).
  [[nodiscard]] TPatchRow Row(int channel) const;
  /// True if a channel has a sound to look at.
  [[nodiscard]] bool CanOpen(int channel) const;
  /// A click on a row: the channel is selected and its browser opens.
  void L_PatchMouseUp(int channel);
  /// True if a channel lacks a program change and a track could hold it.
  [[nodiscard]] bool CanInsertPatch(int channel) const;
  /// Gives a channel a program change if the user wants it. False if nothing came in.
  bool PM_InsertPatchClick(int channel);

 private:
  Song& song;
  TSoundNames& names;
  const IRoutes& routes;
  IMessages& messages;
  SongGate& gate;
};

}  // namespace Sonarello
