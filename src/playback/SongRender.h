// Sonarello: a song into sound, faster than it plays.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "core/Ports.h"
#include "core/Song.h"
#include "playback/AudioGraph.h"
#include "playback/Outputs.h"
#include "playback/Realtime.h"
#include "playback/SongEnd.h"

namespace Sonarello {

/// Renders a song on the hosted instruments of its routes: millisecond by millisecond what is due goes
/// in, and the sound of the millisecond comes out. Channels on ports are silent. The player must be
/// stopped; its cursors stay.
class TSongRender {
 public:
  TSongRender(const Song& s, const TRealtimeData& r, const IRoutes& t, IOutputs& o, AudioGraph& g)
      : song(s), realtime(r), routes(t), outputs(o), graph(g) {}

  /// Milliseconds that a render takes from `from` (ms) to the end of the song and its tail.
  [[nodiscard]] std::int32_t Duration(std::int32_t from = 0) const;
  /// Renders all of it. `write` takes the frames of each millisecond; `progress` is told 0.0 to 1.0 and
  /// ends the work by returning false. Frames of a second are 44,100, exactly. True if it was not
  /// ended.
  bool Run(const std::function<void(std::span<const float>)>& write,
           const std::function<bool(double)>& progress);

 private:
  void SendDue(std::int32_t position);
  void SendEvent(const TypMidiEvent& e);
  void SendEffects(std::int32_t position);
  [[nodiscard]] bool IsHosted(int route) const;

  const Song& song;
  const TRealtimeData& realtime;
  const IRoutes& routes;
  IOutputs& outputs;
  AudioGraph& graph;
  std::vector<const TypMidiEvent*> cursors;  ///< by track; the last one is the effect track's
  std::vector<std::uint8_t> sysex;
};

}  // namespace Sonarello
