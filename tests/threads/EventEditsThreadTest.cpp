// Edits in the event list while the song plays. What would be a race shows under ThreadSanitizer.
#include <gtest/gtest.h>

#include <random>

#include "editors/EditorBench.h"
#include "helpers/ThreadBench.h"
#include "playback/MidiPlayer.h"
#include "playback/Winding.h"

namespace Sonarello {

namespace {

struct PlayedList : EditorBench {
  PlayedList() {
    constexpr int notes = 400;
    NewTrack().Sign(0, 4, 2).Tempo(0, 480'000).Tempo(20'000, 400'000);
    for (int channel = 1; channel <= 4; ++channel) {
      NewTrack().Words(0, MetaTrackName, "Part").Ctrl(4, 0, 1, channel).Ctrl(6, 32, 2, channel);
      Program(8, channel, channel).Ctrl(10, 7, 100, channel);
      for (int i = 0; i < notes; ++i) {
        Note(100 + i * 100, 180 + i * 100, 40 + i % 3, channel);
        Ctrl(190 + i * 100, i % 2 == 0 ? 11 : 1, i % 128, channel);
      }
    }
    Open(1);
    BackupTempi(song);
    player.SongChanged();
    edits.Hooks.IsPlaying = [this] { return player.State == TMidiPlayerState::stPlaying; };
    edits.Hooks.StopButtonClick = [this] { player.Stop(); };
    edits.Hooks.EndNotes = [this](int channel) { player.EndNotesHeld(0, channel); };
    edits.Hooks.ForgetEvent = [this](PtrMidiEvent event) {
      for (auto* const banks : {&player.LastCtrl00, &player.LastCtrl32})
        std::ranges::replace(*banks, event, nullptr);
    };
    rows.Hooks.TimePosition = [this] { return player.TimePosition.load(); };
    rows.Hooks.ShowPlayed = [this](int track) {
      const auto held = gate.Enter();
      player.ShownTrack = track;
      player.ShownListPos = -1;
    };
  }

  FastClock clock{20};
  CountingOutputs out;
  TRealtimeData realtime;
  TMidiPlayer player{{song, options, routes, out, clock, gate, realtime, functions, nullptr}};
};

/// One thing that a user does to the list while the song plays.
void Work(PlayedList& s, std::mt19937& random, int& applied) {
  const auto pick = [&](int below) {
    return static_cast<int>(random() % static_cast<unsigned>(below));
  };
  if (pick(12) == 0) s.rows.CB_TrackListChange(pick(static_cast<int>(s.rows.TrackLines().size())));
  if (pick(20) == 0) s.rows.CB_FilterChange(pick(9));
  if (pick(5) == 0) s.rows.SyncDisplayToMidiPosition();
  if (pick(5) == 0) s.rows.Index.SettleListPos();
  if (pick(8) == 0) s.player.MoveToTimePosition(pick(35'000));
  if (pick(40) == 0) s.edits.PM_UndoClick();  // stops the song
  const std::int32_t row = 1 + pick(s.rows.Rows());
  switch (pick(5)) {
    case 0:
      applied +=
          s.Edit(row, PositionColumn, TicksToStr(s.song, pick(s.song.MaxSongPosition))).Applied ? 1 : 0;
      break;
    case 1: applied += s.Edit(row, Value2Column, std::to_string(1 + pick(127))).Applied ? 1 : 0; break;
    case 2: applied += s.Edit(row, LengthColumn, std::to_string(2 + pick(200))).Applied ? 1 : 0; break;
    case 3: applied += s.Edit(row, ChannelColumn, std::to_string(1 + pick(16))).Applied ? 1 : 0; break;
    case 4: applied += s.Edit(row, Value1Column, KeyName(40 + pick(4), false)).Applied ? 1 : 0; break;
    default: s.edits.PM_UndoClick(); break;
  }
}

TEST(EventEditsThread, ASongPlaysOnWhileItsListIsEdited) {
  PlayedList s;
  std::mt19937 random(1);
  int applied = 0;
  {
    TMidiPlayerThread thread(s.player, s.clock);
    ASSERT_TRUE(s.player.Play());
    const std::int64_t until = s.clock.Milliseconds() + 60'000;
    while (s.clock.Milliseconds() < until) {
      Work(s, random, applied);
      if (s.player.State == TMidiPlayerState::stStopped) {
        s.player.Stop();
        ASSERT_TRUE(s.player.Play());
      }
      s.clock.SleepFor(10'000);
    }
    s.player.Stop();
  }
  EXPECT_GT(applied, 20);
  EXPECT_GT(s.out.Sent, 1000);
  EXPECT_TRUE(s.player.Ledger.Empty());
  EXPECT_EQ(s.out.Hanging(), 0);
  EXPECT_EQ(CheckSong(s.song), std::vector<std::string>{});
}

TEST(EventEditsThread, NothingIsInsertedOrDeletedWhileTheSongPlays) {
  PlayedList s;
  TMidiPlayerThread thread(s.player, s.clock);
  const Bytes before = s.Saved();
  ASSERT_TRUE(s.player.Play());
  EXPECT_EQ(s.Insert(TEventKind::Note, 20), 0);
  EXPECT_EQ(s.edits.PM_DeleteMidiEventClick({20}), 0);
  EXPECT_EQ(s.LastMessage(), "Delete not allowed during playback!");
  s.player.Stop();
  EXPECT_EQ(s.Saved(), before);
}

}  // namespace

}  // namespace Sonarello
