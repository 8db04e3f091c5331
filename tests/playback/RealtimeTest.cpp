#include "playback/Realtime.h"

#include <gtest/gtest.h>

namespace Sonarello {
namespace {

TEST(Realtime, BeginsWithNothingPending) {
  const TRealtimeData data;
  for (std::size_t c = 0; c < ChannelCount; ++c) EXPECT_EQ(data.Realtime[c].MidiChannel, c);
  for (const TRealtime& channel : data.Realtime) {
    for (const std::int32_t value : channel.Ctrl) EXPECT_EQ(value, NothingPending);
    for (const auto* drums :
         {&channel.DrumLevel, &channel.DrumLowPass, &channel.DrumPitch, &channel.DrumReverb})
      for (const std::int8_t value : *drums) EXPECT_EQ(value, NothingPending);
    EXPECT_EQ(channel.Patch, NothingPending);
    EXPECT_EQ(channel.AllSoundOff, NothingPending);
    EXPECT_EQ(channel.Volume, NothingPending);
    EXPECT_LT(channel.MidiChannel, ChannelCount);
  }
  EXPECT_FALSE(data.RealtimeData);
  EXPECT_FALSE(data.RealtimeInsertFx);
  EXPECT_TRUE(data.RealtimeSysex.empty());
}

TEST(Realtime, ForgetsWhatIsPendingAndKeepsTheWireChannels) {
  TRealtimeData data;
  for (TRealtime& channel : data.Realtime) {
    channel.MidiChannel = 5;
    channel.Ctrl[127] = channel.Ctrl[0] = 1;
    channel.DrumLevel[0] = channel.DrumLowPass[1] = channel.DrumPitch[2] = channel.DrumReverb[127] = 9;
    channel.Patch = channel.AllSoundOff = channel.Volume = 7;
  }
  for (TRMSValue& meter : data.RMSValue) meter = {100, 2, 90};
  data.RealtimeData = data.RealtimeInsertFx = true;
  data.RealtimeSysex = {0x7E, 0xF7};
  data.InitializeRealtimeData();
  for (const TRealtime& channel : data.Realtime) {
    EXPECT_EQ(channel.MidiChannel, 5);
    EXPECT_EQ(channel.Ctrl, TRealtimeData().Realtime[0].Ctrl);
    EXPECT_EQ(channel.DrumLevel[0], -1);
    EXPECT_EQ(channel.DrumLowPass[1], -1);
    EXPECT_EQ(channel.DrumPitch[2], -1);
    EXPECT_EQ(channel.DrumReverb[127], -1);
    EXPECT_EQ(channel.Patch, -1);
    EXPECT_EQ(channel.AllSoundOff, -1);
    EXPECT_EQ(channel.Volume, -1);
  }
  for (const TRMSValue& meter : data.RMSValue) {
    EXPECT_EQ(meter.Level, 0);
    EXPECT_EQ(meter.Count, 0);
    EXPECT_EQ(meter.Peak, 0);
  }
  EXPECT_FALSE(data.RealtimeData);
  EXPECT_FALSE(data.RealtimeInsertFx);
  EXPECT_TRUE(data.RealtimeSysex.empty());
}

TEST(Realtime, GivesEveryChannelItsOwnNumberBack) {
  TRealtimeData data;
  data.Realtime[0].MidiChannel = 15;
  data.Realtime[15].MidiChannel = 0;
  data.ResetChannels();
  EXPECT_EQ(data.Realtime[0].MidiChannel, 0);
  EXPECT_EQ(data.Realtime[15].MidiChannel, 15);
}

}  // namespace
}  // namespace Sonarello
