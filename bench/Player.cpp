#include "Player.h"

#include <filesystem>
#include <stdexcept>

#include "Desk.h"
#include "Measure.h"
#include "StandIns.h"
#include "core/EventList.h"
#include "core/OpenPipeline.h"
#include "playback/MidiPlayer.h"

namespace Sonarello::Bench {

namespace {

/// A clock that stands still until it is moved.
class StillClock : public IClock {
 public:
  [[nodiscard]] std::int64_t Microseconds() const override { return now; }
  void SleepUntil(std::int64_t microseconds) override { now = microseconds; }

 private:
  std::int64_t now = 0;
};

class NoOutputs : public IOutputs {
 public:
  bool OpenAll() override { return true; }
  bool Open(int) override { return true; }
  [[nodiscard]] bool IsOpen(int) const override { return true; }
  void CloseAll() override {}
  void SendShort(int, std::uint8_t, std::uint8_t, std::uint8_t) override {}
  void SendLong(int, std::span<const std::uint8_t>) override {}
};

/// Keeps the optimiser from dropping a walk.
volatile std::int64_t Sink;

void WalkAll(const Song& song) {
  std::int64_t sum = 0;
  for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t)
    ForEachEvent(song.MidiTrack[static_cast<std::size_t>(t)],
                 [&](const TypMidiEvent* e) { sum += e->Position; });
  Sink = sum;
}

}  // namespace

PlayerFigures MeasurePlayer(const std::string& file, int instrument) {
  Song song;
  Options options;
  OneRoute routes(instrument);
  DeafMessages messages;
  SongHooks hooks;
  TMidiFunctions functions(song, options, routes, messages, hooks);
  if (!OpenPipeline(song, options, routes, messages, hooks).OpenMidiFile(file, false))
    throw std::runtime_error("refused: " + file);
  StillClock clock;
  NoOutputs outputs;
  SongGate gate;
  TRealtimeData realtime;
  TMidiPlayer player({song, options, routes, outputs, clock, gate, realtime, functions, nullptr});
  player.SongChanged();

  PlayerFigures figures;
  WalkAll(song);
  figures.Walk = Seconds([&] { WalkAll(song); });
  figures.Move = Seconds([&] { player.MoveToTimePosition(song.SongLength); });
  player.MoveToTimePosition(0);
  static_cast<void>(player.Play());
  player.PlayMidiData();
  constexpr int passes = 200'000;
  figures.Pass = Seconds([&] {
                   for (int i = 0; i < passes; ++i) player.PlayMidiData();
                 }) /
                 passes;
  figures.Fader = MeasureFader({song, options, routes, outputs, realtime, gate, player, functions});
  player.TempoOffset = 5;
  player.TempoChanged = true;
  figures.Tempo = Seconds([&] { player.PlayMidiData(); });
  return figures;
}

}  // namespace Sonarello::Bench
