#include "playback/Realtime.h"

namespace Sonarello {

void TRealtimeData::InitializeRealtimeData() noexcept {
  for (TRealtime& channel : Realtime) {
    channel.Ctrl.fill(NothingPending);
    for (auto* drums :
         {&channel.DrumLevel, &channel.DrumLowPass, &channel.DrumPitch, &channel.DrumReverb})
      drums->fill(NothingPending);
    channel.Patch = channel.AllSoundOff = channel.Volume = NothingPending;
  }
  RMSValue.fill({});
  RealtimeData = false;
  RealtimeInsertFx = false;
  RealtimeSysex.clear();
}

void TRealtimeData::ResetChannels() noexcept {
  // The element behind the sixteen channels has no wire channel of its own; it takes the first.
  for (std::size_t c = 0; c < Realtime.size(); ++c)
    Realtime[c].MidiChannel = static_cast<std::uint8_t>(c % ChannelCount);
}

}  // namespace Sonarello
