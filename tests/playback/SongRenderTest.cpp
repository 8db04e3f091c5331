#include "playback/SongRender.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "helpers/PlayerBench.h"
#include "helpers/TestInstrument.h"
#include "helpers/TestMidiDriver.h"
#include "playback/HostedAudio.h"
#include "playback/RouteOutputs.h"

namespace Sonarello {

namespace {

using testing::ElementsAre;

constexpr int OneTickAMillisecond = 480'000;

struct SongRender : testing::Test, PlayerBench {
  SongRender() {
    NewTrack().Tempo(0, OneTickAMillisecond).NewTrack();
    auto own = std::make_unique<TestInstrument>();
    instrument = own.get();
    host.LoadInstrument(0, std::move(own));
    routes.Table[0].VSTi = true;
    routes.Table[0].VSTiHandle = host.VSTiArray()[0].Handle;
    outputs.RoutesBuilt();
    host.Graph().TakeOffline();
  }
  /// Renders and keeps the left channel.
  bool Render(const std::function<bool(double)>& progress = {}) {
    TSongRender render(song, realtime, routes, outputs, host.Graph());
    return render.Run(
        [&](std::span<const float> frames) {
          for (std::size_t i = 0; i < frames.size(); i += 2) left.push_back(frames[i]);
        },
        progress);
  }

  TestMidiDriver driver;
  TVSTInstruments host;
  TRouteOutputs outputs{driver, routes, &host};
  TestInstrument* instrument = nullptr;
  std::vector<float> left;
};

TEST_F(SongRender, RendersTheSongAndItsTailToTheFrame) {
  On(100, 60).Off(200, 60);
  Ready();
  ASSERT_TRUE(Render());
  std::int64_t frames = 0;
  for (std::int32_t t = 0; t < song.SongLength + SongTailTime; ++t) frames += BytesOfMillisecond(t) / 8;
  EXPECT_EQ(static_cast<std::int64_t>(left.size()), frames);
  EXPECT_EQ(instrument->Frames, frames);
}

TEST_F(SongRender, TakesExactly44100FramesASecond) {
  int bytes = 0;
  for (int t = 0; t < 1000; ++t) bytes += BytesOfMillisecond(t);
  EXPECT_EQ(bytes, 352'800);
}

TEST_F(SongRender, SoundsExactlyWhileANoteDoes) {
  On(100, 60).Off(200, 60);
  Ready();
  ASSERT_TRUE(Render());
  const auto first = std::ranges::find_if(left, [](float f) { return f != 0; });
  const auto silent = std::find(first, left.end(), 0.0F);
  EXPECT_EQ(first - left.begin(), 4410);
  EXPECT_EQ(silent - left.begin(), 8820);
  EXPECT_TRUE(std::all_of(silent, left.end(), [](float f) { return f == 0; }));
}

TEST_F(SongRender, SendsByTheRulesOfThePlayer) {
  On(100, 60, 1, 100).On(101, 61, 2).Ctrl(102, 7, 90, 3);
  Ready();
  song.VelocityDelta[0] = 27;
  song.MidiData[1].Mute = true;
  realtime.Realtime[2].MidiChannel = 8;
  ASSERT_TRUE(Render());
  ASSERT_EQ(instrument->Told.size(), 2U);
  EXPECT_THAT(instrument->Told[0].Bytes, ElementsAre(0x90, 60, 127));
  EXPECT_THAT(instrument->Told[1].Bytes, ElementsAre(0xB8, 7, 90));
}

TEST_F(SongRender, LeavesChannelsOnPortsOut) {
  On(100, 60, 2);
  Ready();
  Routes(2);
  driver.Outputs = {"Port"};
  routes.Table[1].VSTi = false;
  routes.Table[1].OutputName = "Port";
  outputs.RoutesBuilt();
  ASSERT_TRUE(outputs.OpenAll());
  song.MidiOutIndex[1] = 1;
  ASSERT_TRUE(Render());
  EXPECT_TRUE(instrument->Told.empty());
  EXPECT_TRUE(driver.Sent.empty()) << "a port would get the song all at once";
}

TEST_F(SongRender, LeavesIgnoredTracksOut) {
  On(100, 60);
  Ready();
  song.MidiTrack[1].TrkIgnore = true;
  ASSERT_TRUE(Render());
  EXPECT_TRUE(instrument->Told.empty());
}

TEST_F(SongRender, SendsSysexWhole) {
  Put(NewSysex(song.Pool, std::vector<std::uint8_t>{0x7E, 0x7F, 9, 1, 0xF7}, 10));
  Ready();
  ASSERT_TRUE(Render());
  ASSERT_EQ(instrument->Told.size(), 1U);
  EXPECT_THAT(instrument->Told[0].Bytes, ElementsAre(0xF0, 0x7E, 0x7F, 9, 1, 0xF7));
  EXPECT_EQ(instrument->Told[0].Frame, 441);
}

TEST_F(SongRender, LeavesThePlayersCursorsWhereTheyAre) {
  On(100, 60).Off(200, 60);
  Ready();
  player.MoveToTimePosition(150);
  PtrMidiEvent cursor = song.MidiTrack[1].TrkPlayEvent;
  ASSERT_TRUE(Render());
  EXPECT_EQ(song.MidiTrack[1].TrkPlayEvent, cursor);
  EXPECT_EQ(player.TimePosition, 150);
}

TEST_F(SongRender, EndsWhenItIsToldTo) {
  On(100, 60);
  Ready();
  EXPECT_FALSE(Render([](double) { return false; }));
  EXPECT_TRUE(left.empty());
  std::vector<double> told;
  EXPECT_TRUE(Render([&](double done) {
    told.push_back(done);
    return true;
  }));
  EXPECT_TRUE(std::ranges::is_sorted(told));
  EXPECT_LT(told.back(), 1.0);
}

}  // namespace
}  // namespace Sonarello
