// Sonarello: the keyboard on the screen.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>

#include "core/Song.h"
#include "playback/Outputs.h"
#include "playback/Realtime.h"
#include "playback/SendMidiData.h"
#include "playback/SongGate.h"

namespace Sonarello {

/// Plays one note at a time on the route and the wire channel of the active channel. A note always ends
/// where it began, whatever was selected or redirected in between.
class TVirtualKeys {
 public:
  TVirtualKeys(const Song& s, const TRealtimeData& r, IOutputs& o, SongGate& g, TSendMidiData sender)
      : song(s), realtime(r), outputs(o), gate(g), send(std::move(sender)) {}
  TVirtualKeys(const TVirtualKeys&) = delete;
  TVirtualKeys& operator=(const TVirtualKeys&) = delete;
  /// Ends the note.
  ~TVirtualKeys() { Release(); }

  /// Takes hold of the port for previews: it is opened for a note. Otherwise a note only sounds on a
  /// port that is open already.
  bool GrabMidiDriver = false;

  /// Ends the last note and starts another. Key and velocity 0-127; velocity 0 starts none. False if
  /// nothing sounds: no active channel, no such key, a port that is closed. Raises EMidiOutputError if
  /// that is how a port tells that it does not open.
  bool Press(int key, int velocity = 100);
  /// Ends the note. To be called when a button is let go, the window is left or hidden, and before
  /// routes are rebuilt.
  void Release();
  [[nodiscard]] bool IsSounding() const noexcept { return sounding.has_value(); }

 private:
  struct TNote {
    int Route;
    std::uint8_t Channel;  ///< on the wire
    std::uint8_t Key;
  };

  const Song& song;
  const TRealtimeData& realtime;
  IOutputs& outputs;
  SongGate& gate;
  TSendMidiData send;
  std::optional<TNote> sounding;
};

}  // namespace Sonarello
