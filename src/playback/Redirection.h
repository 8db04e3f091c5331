// Sonarello: two channel strips exchange their wire channels.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "core/Ports.h"
#include "core/Song.h"
#include "playback/Realtime.h"
#include "playback/SendMidiData.h"
#include "playback/SongGate.h"

namespace Sonarello {

/// Number and colour of a strip's channel label. A twin is the same label of the controller window.
struct TChannelLabel {
  int Number = 1;    ///< 1-16
  bool Red = false;  ///< the strip goes out on another channel than its own

  static constexpr std::uint32_t RedColor = 0xFFFF0000;
  static constexpr std::uint32_t TwinRedColor = 0xFF00FFFF;
  static constexpr std::uint32_t NormalColor = 0x61574C;
  static constexpr std::uint32_t TwinNormalColor = 0xFF000000;

  [[nodiscard]] std::string Text() const { return std::to_string(Number); }
  friend bool operator==(const TChannelLabel&, const TChannelLabel&) = default;
};

/// The label of a strip (0-15).
[[nodiscard]] TChannelLabel ChannelLabelOf(const Song& song, int strip);
/// The strip whose label shows a channel (0-15): the last one that does, strip 0 if none.
[[nodiscard]] int StripShowing(const Song& song, int channel);
/// The heading of the selected strip, with its channel (0-15).
[[nodiscard]] std::string ActiveChannelText(int channel);
/// The track list of the event list: "Master", then a line for each strip.
[[nodiscard]] std::vector<std::string> TrackListLines(
    const Song& song, const std::function<std::string(int strip)>& patchName);

/// What a redirection asks of others, in the order in which it asks. Called without the gate but for
/// `EndNotes`; unset ones do nothing.
struct TRedirectionHooks {
  std::function<bool(int strip)>
      IsInFurtherDrumEditor;                            ///< the second or the third one shows the strip
  std::function<void()> Changed;                        ///< the song wants a backup
  std::function<void(const std::string&)> ShowHeading;  ///< the heading of the selected strip
  TEndNotes EndNotes;
  std::function<void(int strip, const TChannelLabel&)> ShowLabel;
  std::function<void(int strip)> ShowSound;    ///< the strip's sound name
  std::function<void(int strip)> SelectStrip;  ///< the fields of the selected strip are shown anew
  /// Effect blocks of the two strips follow the exchange: those of the Yamaha arrangers, by the
  /// exchanged channels, then the part equalisers of the Korg ones.
  std::function<void(int OldChannel, int NewChannel)> SwapYamahaParts;
  std::function<void(int stripA, int stripB)> SwapKorgPartEQ;
  std::function<void(int stripA, int stripB)> ShowTracks;  ///< track list of the event list
};

enum class RedirectionResult {
  Done,
  Refused,   ///< a strip is in a drum editor, and the user was told; or there is no such command
  Declined,  ///< the user did not want it
};

/// The redirection of a strip to another channel. The song's events stay as they are. Runs on the main
/// thread, also during playback.
class TRedirection {
 public:
  TRedirection(Song& s, IMessages& m, SongGate& g, TRealtimeData& d, TSendMidiData sender)
      : song(s), messages(m), gate(g), realtime(d), send(std::move(sender)) {}

  TRedirectionHooks Hooks;

  /// True for a channel (0-15) that a strip can be sent to: all but channel 10.
  [[nodiscard]] static constexpr bool IsOffered(int channel) noexcept {
    constexpr int drums = 9;
    return channel >= 0 && channel < ChannelCount && channel != drums;
  }
  /// Sends the strip that goes out on `OldChannel` to `NewChannel` (0-15), and the strip that went out
  /// there to `OldChannel`.
  RedirectionResult Redirect(int OldChannel, int NewChannel, bool isPlaying);

 private:
  [[nodiscard]] bool MayTake(int strip, int OldChannel, int NewChannel);
  void ShowHeading(int stripA, int stripB, int OldChannel, int NewChannel) const;
  void Silence(int silenced, int channel, int successor, bool isPlaying);
  void SendValues(int strip, int route, int channel) const;
  void Exchange(int stripA, int stripB, int OldChannel, int NewChannel);
  void ShowStrips(int stripA, int stripB, int NewChannel);

  Song& song;
  IMessages& messages;
  SongGate& gate;
  TRealtimeData& realtime;
  TSendMidiData send;
};

}  // namespace Sonarello
