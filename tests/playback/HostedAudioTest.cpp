// The player and the sound of hosted instruments.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "helpers/PlayerBench.h"
#include "playback/HostedAudio.h"

namespace Sonarello {

namespace {

class TestAudio : public IHostedAudio {
 public:
  [[nodiscard]] bool IsRunning() const override { return Running; }
  void PutNewData(int bytes) override { Bytes += bytes; }
  void ClearQueue() override { ++Cleared; }
  void DelayStart(int buffers) override { Delay = buffers; }
  [[nodiscard]] bool IsStartDue() override { return Delay == 0; }
  [[nodiscard]] int BufferTime() const override { return Buffer; }

  bool Running = true;
  std::int64_t Bytes = 0;
  int Cleared = 0;
  int Delay = 0;
  int Buffer = 10;
};

struct HostedAudio : testing::Test, PlayerBench {
  HostedAudio() {
    NewTrack().Tempo(0, 480'000).NewTrack();
    On(100, 60).Off(900, 60);
    Ready();
    hosted.SongChanged();
  }
  void Elapse(int milliseconds) {
    for (int i = 0; i < milliseconds; ++i) {
      clock.Advance(1);
      hosted.PlayMidiData();
    }
  }
  TestAudio audio;
  TMidiPlayer hosted{{song, options, routes, out, clock, gate, realtime, functions, &audio}};
};

TEST_F(HostedAudio, StartsTheSongWhenTheBuffersHavePassed) {
  ASSERT_TRUE(hosted.Play());
  EXPECT_EQ(audio.Cleared, 1);
  EXPECT_EQ(audio.Delay, 1);
  Elapse(50);
  EXPECT_EQ(hosted.TimePosition, 0);
  EXPECT_EQ(hosted.Tag, AudioReady);
  audio.Delay = 0;
  Elapse(1);
  EXPECT_EQ(hosted.Tag, MidiReady);
  out.Sent.clear();
  const std::int64_t start = clock.Milliseconds();
  Elapse(150);
  ASSERT_EQ(out.Sent.size(), 1U);
  EXPECT_EQ(out.Sent[0].Time - start, 100);
}

TEST_F(HostedAudio, WaitsForTwoBuffersOfALongDevice) {
  audio.Buffer = 100;
  ASSERT_TRUE(hosted.Play());
  EXPECT_EQ(audio.Delay, 2);
}

TEST_F(HostedAudio, FeedsTheSoundInStepWithTheClock) {
  ASSERT_TRUE(hosted.Play());
  audio.Delay = 0;
  Elapse(1);
  audio.Bytes = 0;
  Elapse(1000);
  EXPECT_EQ(audio.Bytes, 352'800) << "44,100 frames of 8 bytes";
}

TEST_F(HostedAudio, KeepsInstrumentsSoundingBehindAStop) {
  ASSERT_TRUE(hosted.Play());
  audio.Delay = 0;
  Elapse(200);
  hosted.Stop();
  hosted.MoveToTimePosition(900);
  Elapse(2);
  EXPECT_EQ(hosted.Tag, AudioReady);
  audio.Bytes = 0;
  Elapse(100);
  EXPECT_EQ(audio.Bytes, 35'280) << "wherever the song stands";
}

TEST_F(HostedAudio, PlaysByTheClockWhenTheDeviceGoesBeforeTheStart) {
  ASSERT_TRUE(hosted.Play());
  Elapse(5);
  audio.Running = false;
  Elapse(102);
  EXPECT_EQ(hosted.Tag, MidiReady);
  EXPECT_THAT(hosted.TimePosition, testing::AllOf(testing::Ge(100), testing::Le(102)));
}

TEST_F(HostedAudio, ParksWhenTheDeviceGoesBehindAStop) {
  ASSERT_TRUE(hosted.Play());
  audio.Delay = 0;
  Elapse(10);
  hosted.Stop();
  Elapse(2);
  audio.Running = false;
  Elapse(1);
  EXPECT_EQ(hosted.Tag, Parked);
}

TEST_F(HostedAudio, MakesUpForNoMoreThanATenthOfASecondBehindAStop) {
  ASSERT_TRUE(hosted.Play());
  audio.Delay = 0;
  Elapse(10);
  hosted.Stop();
  Elapse(2);
  audio.Bytes = 0;
  clock.Advance(5000);
  hosted.PlayMidiData();
  EXPECT_EQ(audio.Bytes, 35'280);
}

TEST_F(HostedAudio, MakesUpForNoMoreThanATenthOfASecond) {
  ASSERT_TRUE(hosted.Play());
  audio.Delay = 0;
  Elapse(10);
  audio.Bytes = 0;
  clock.Advance(2000);
  hosted.PlayMidiData();
  EXPECT_EQ(audio.Bytes, 35'280);
}

}  // namespace
}  // namespace Sonarello
