// Sonarello: the desk's settings as they change a channel event on its way into a file.
#pragma once

#include <array>
#include <cstdint>

#include "core/Data.h"

namespace Sonarello {

class Song;
struct SongHooks;

/// A channel message on its way.
struct TShortMessage {
  std::uint8_t Command = 0;
  std::uint8_t Value0 = 0;
  std::uint8_t Value1 = 0;
};

/// A velocity (1-127) brought from the range that a channel has to the one that the velocity editor
/// asks for; 1-127.
[[nodiscard]] std::uint8_t MappedVelocity(const TNotesVelocities& range, int velocity) noexcept;

/// Drum transposes, velocities and output channels of a song at one moment, as tables.
/// Velocity settings change note-ons; the release velocity of a note-off is the song's own.
class DeskCopy {
 public:
  DeskCopy(const Song& song, const SongHooks& hooks);

  /// False if every message would stay as it is.
  [[nodiscard]] bool ChangesAnything() const noexcept { return changesNotes || changesChannels; }
  /// True if a channel's output is another channel.
  [[nodiscard]] bool ChangesChannels() const noexcept { return changesChannels; }
  /// Output channel (0-15) of a channel of the song.
  [[nodiscard]] int ChannelOf(int channel) const noexcept {
    return channels[static_cast<std::size_t>(channel)];
  }

  void Apply(TShortMessage& message) const noexcept {
    const std::size_t channel = message.Command & 0x0FU;
    if ((message.Command & 0xE0) == NoteOff) ApplyToNote(channel, message);
    message.Command = static_cast<std::uint8_t>((message.Command & 0xF0) | channels[channel]);
  }

 private:
  using TKeys = std::array<std::uint8_t, KeyCount>;

  void SetKeys(const Song& song, const SongHooks& hooks, int channel);
  void SetVelocities(const Song& song, int channel);
  void ApplyToNote(std::size_t channel, TShortMessage& message) const noexcept;

  std::array<TKeys, ChannelCount> keys{};        ///< key as written, by channel and key
  std::array<TKeys, ChannelCount> velocities{};  ///< mapped velocity, by channel and velocity
  std::array<bool, ChannelCount> mapped{};       ///< `velocities` holds for the channel, else `deltas`
  std::array<std::array<std::int16_t, KeyCount>, ChannelCount> deltas{};  ///< by channel and key
  std::array<std::uint8_t, ChannelCount> channels{};
  bool changesNotes = false;
  bool changesChannels = false;
};

}  // namespace Sonarello
