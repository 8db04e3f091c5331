// The event list: which events make a row, and what stands in its columns.
#include "editors/EventRows.h"

#include <gtest/gtest.h>

#include <chrono>

#include "helpers/SongBuilder.h"

namespace Sonarello {

namespace {

struct ListBench : TestSong {
  SongGate gate;
  TEventRows rows{song, routes, options, gate};

  ListBench& Show(int track, int filter = 0) {
    song.MidiFileLoaded = true;
    rows.UpdateDisplayedEvents();
    rows.CB_TrackListChange(track);
    rows.CB_FilterChange(filter);
    return *this;
  }
};

TEST(EventRowsFigures, AListOfAMillionEventsIsReadyAtOnce) {
  ListBench s;
  s.NewTrack().NewTrack();
  for (int n = 0; n < 500'000; ++n) s.On(n * 10, n % 128).Off(n * 10 + 5, n % 128);
  s.Finish().Map();
  s.Show(1);
  const auto start = std::chrono::steady_clock::now();
  s.rows.ShowEventsOnTrack(1);
  const auto built = std::chrono::steady_clock::now();
  s.rows.Index.PairKeys(0, 3, 4);
  const auto paired = std::chrono::steady_clock::now();
  s.rows.Index.Leave(*s.rows.Event(5));
  s.rows.Index.SettleListPos();
  const auto settled = std::chrono::steady_clock::now();
  std::size_t letters = 0;
  for (int n = 0; n < 60; ++n) letters += s.rows.Row(1000 + n).Fields[1].size();
  EXPECT_GT(letters, 0U);
  const auto page = std::chrono::steady_clock::now();
  const auto ms = [](auto a, auto b) { return std::chrono::duration<double, std::milli>(b - a).count(); };
  std::printf("build %.1f pair %.1f settle %.1f page %.2f\n", ms(start, built), ms(built, paired),
              ms(paired, settled), ms(settled, page));
}

}  // namespace

}  // namespace Sonarello
