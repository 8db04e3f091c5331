// The player's thread against a busy main thread. What would be a race shows under ThreadSanitizer.
#include "playback/MidiPlayerThread.h"

#include <gtest/gtest.h>

#include <random>

#include "helpers/PlayerBench.h"
#include "helpers/ThreadBench.h"
#include "playback/Winding.h"

namespace Sonarello {

namespace {

struct BusyBench : TestSong {
  BusyBench() : TestSong(480) {
    constexpr int notes = 400;
    NewTrack().Tempo(0, 480'000).Tempo(20'000, 400'000);
    for (int channel = 1; channel <= 8; ++channel) {
      NewTrack().Ctrl(0, 7, 100, channel);
      for (int i = 0; i < notes; ++i)
        On(100 + i * 100, 40 + i % 40, channel).Off(180 + i * 100, 40 + i % 40, channel);
    }
    Finish();
    Map();
    Pair();
    BackupTempi(song);
    functions.SetFirstValues();
    player.SongChanged();
  }

  FastClock clock{20};
  CountingOutputs out;
  SongGate gate;
  TRealtimeData realtime;
  TMidiPlayer player{{song, options, routes, out, clock, gate, realtime, functions, nullptr}};
};

/// One edit of a busy user.
void Edit(BusyBench& b, std::mt19937& random) {
  const auto pick = [&](int below) {
    return static_cast<int>(random() % static_cast<unsigned>(below));
  };
  const auto channel = static_cast<std::size_t>(pick(8));
  switch (pick(7)) {
    case 0: {
      const auto held = b.gate.Enter();
      TCtrl& volume = b.song.MidiData[channel].CtrlArray[7];
      if (volume.Event != nullptr)
        volume.Value = volume.Event->Value[1] = static_cast<std::uint8_t>(pick(128));
      break;
    }
    case 1: {
      const auto held = b.gate.Enter();
      b.song.MidiData[channel].Mute = !b.song.MidiData[channel].Mute;
      break;
    }
    case 2:
      b.player.TempoOffset = pick(100) - 50;
      b.player.TempoChanged = true;
      break;
    case 3: b.player.MoveToTimePosition(pick(35'000)); break;
    case 4: b.player.SetLoop(pick(10'000), 10'000 + pick(10'000)); break;
    case 5: b.player.EndLoop(); break;
    default: {
      const auto held = b.gate.Enter();
      TMyTrack& track = b.song.MidiTrack[channel + 1];
      PtrMidiEvent e = track.TrkFirstEvent->NextEvent;  // the controller at the head
      if (track.TrkPlayEvent != e) MoveTo(track, e, pick(50));
      break;
    }
  }
}

TEST(MidiPlayerThread, PlaysOnWhileTheMainThreadEditsWindsAndLoops) {
  BusyBench b;
  std::mt19937 random(1);
  {
    TMidiPlayerThread thread(b.player, b.clock);
    ASSERT_TRUE(b.player.Play());
    const std::int64_t until = b.clock.Milliseconds() + 60'000;
    while (b.clock.Milliseconds() < until) {
      Edit(b, random);
      if (b.player.State == TMidiPlayerState::stStopped) {
        b.player.Stop();
        ASSERT_TRUE(b.player.Play());
      }
      b.clock.SleepFor(20'000);
    }
    b.player.Stop();
  }
  EXPECT_EQ(b.player.State, TMidiPlayerState::stStopped);
  EXPECT_TRUE(b.player.Ledger.Empty());
  EXPECT_EQ(b.out.Hanging(), 0);
  EXPECT_GT(b.out.Sent, 1000);
  EXPECT_EQ(CheckSong(b.song), std::vector<std::string>{});
}

TEST(MidiPlayerThread, EndsWithItsObject) {
  BusyBench b;
  {
    TMidiPlayerThread thread(b.player, b.clock);
    while (!thread.WorkingFlag) std::this_thread::yield();
  }
  EXPECT_EQ(b.player.Tag, Parked);
}

}  // namespace
}  // namespace Sonarello
