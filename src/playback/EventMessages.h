// Sonarello: what a song's channel event becomes on its way to a device.
#pragma once

#include <cstdint>
#include <optional>

#include "core/Ports.h"
#include "core/Song.h"
#include "playback/Realtime.h"

namespace Sonarello {

/// A short message and the route that it goes out on.
struct TOutgoing {
  int Route = 0;
  std::uint8_t Status = 0;
  std::uint8_t Data1 = 0;
  std::uint8_t Data2 = 0;
};

/// The message of a channel event by the desk's settings: mutes, drum transposes, velocities, wire
/// channels, routes. Nothing if it does not go out.
[[nodiscard]] std::optional<TOutgoing> MessageOf(const Song& song, const TRealtimeData& realtime,
                                                 const IRoutes& routes, const TypMidiEvent& event);

/// True for a note-on that starts a note.
[[nodiscard]] inline bool StartsNote(const TypMidiEvent& event) noexcept {
  return event.Kind() == NoteOn && event.Value[1] > 0;
}

}  // namespace Sonarello
