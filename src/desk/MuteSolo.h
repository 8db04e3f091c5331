// Sonarello: mute and solo of the strips.
#pragma once

#include <bitset>

#include "desk/StripsDesk.h"

namespace Sonarello {

/// Main thread, also during playback. What becomes silent is silent at once: its notes are ended.
class TMuteSolo {
 public:
  explicit TMuteSolo(TStripsDesk& d) : desk(d) {}

  /// The mute button of a channel (0-15) was pressed with the left button: toggles its mute; with Ctrl
  /// all channels are heard again.
  void Btn_Mute00MouseDown(int channel, bool ctrl);
  /// The solo button of a channel was pressed: toggles its solo; with Ctrl all solos and mutes go.
  /// While a channel is solo, exactly the others are mute; with the last solo the mutes come back that
  /// were there before the first.
  void Btn_Solo00MouseDown(int channel, bool ctrl);
  /// All mutes off: what Ctrl does on a mute button, for M×.
  void ClearMutes();
  /// All solos and mutes off: what Ctrl does on a solo button, for S×.
  void ClearSolos();

  [[nodiscard]] bool AnySolo() const;
  [[nodiscard]] bool AnyMute() const;
  /// True for a channel that is mute only because another one is solo.
  [[nodiscard]] bool IsMutedBySolo(int channel) const;

 private:
  using TChannels = std::bitset<ChannelCount>;
  [[nodiscard]] TChannels Mutes() const;
  /// Sets the mutes and ends the notes of those channels that become mute.
  void SetMutes(TChannels mutes);
  void Silence(int channel);

  TStripsDesk& desk;
};

}  // namespace Sonarello
