// A player on a clock that moves only when told, with outputs that write down what comes, for tests.
#pragma once

#include <string>
#include <vector>

#include "helpers/SongBuilder.h"
#include "playback/MidiErrors.h"
#include "playback/MidiPlayer.h"

namespace Sonarello {

class VirtualClock : public IClock {
 public:
  [[nodiscard]] std::int64_t Microseconds() const override { return now; }
  void SleepUntil(std::int64_t microseconds) override {
    if (microseconds > now) now = microseconds;
  }
  void Advance(std::int64_t milliseconds) { now += milliseconds * 1000; }

 private:
  std::int64_t now = 5'000'000;
};

/// A message that went out: when, by which route, and its bytes.
struct TSent {
  std::int64_t Time = 0;  ///< ms on the clock
  int Route = 0;
  std::vector<std::uint8_t> Bytes;
  friend bool operator==(const TSent&, const TSent&) = default;
};

class RecordingOutputs : public IOutputs {
 public:
  explicit RecordingOutputs(const IClock& c) : clock(c) {}
  bool OpenAll() override { return opens; }
  bool Open(int) override { return opens; }
  [[nodiscard]] bool IsOpen(int) const override { return opens; }
  void CloseAll() override {}
  void SendShort(int route, std::uint8_t status, std::uint8_t data1, std::uint8_t data2) override {
    if (fails) throw EMidiOutputError("(Short Msg) The specified device handle is invalid.");
    const bool two = (status & 0xE0) == 0xC0;
    Sent.push_back({clock.Milliseconds(), route,
                    two ? std::vector<std::uint8_t>{status, data1}
                        : std::vector<std::uint8_t>{status, data1, data2}});
  }
  void SendLong(int route, std::span<const std::uint8_t> message) override {
    if (fails) throw EMidiOutputError("(Long Msg) The specified device handle is invalid.");
    Sent.push_back({clock.Milliseconds(), route, {message.begin(), message.end()}});
  }

  std::vector<TSent> Sent;
  bool opens = true;
  bool fails = false;

 private:
  const IClock& clock;
};

/// A song under construction and the player that plays it. Quarter notes of 480 ticks at 125 bpm: a
/// millisecond is a tick.
struct PlayerBench : TestSong {
  PlayerBench() : TestSong(480) {}

  /// Ends the song, makes its times and channels, and hands it to the player.
  PlayerBench& Ready() {
    if (song.MidiTrack.empty()) NewTrack();
    Finish();
    Map();
    for (TMyTrack& track : song.MidiTrack)
      ForEachEvent(track, [&](PtrMidiEvent e) {
        if (e->IsChannelEvent()) song.MidiData[static_cast<std::size_t>(e->Channel())].Active = true;
      });
    BackupTempi(song);
    functions.SetFirstValues();
    song.MidiFileLoaded = true;
    player.SongChanged();
    began = clock.Milliseconds();
    return *this;
  }
  /// Starts and forgets what the start itself sent.
  void Start() {
    ASSERT_TRUE(player.Play());
    out.Sent.clear();
    began = clock.Milliseconds() - player.TimePosition;
  }
  /// Lets time pass, a pass each millisecond.
  void Elapse(int milliseconds) {
    for (int i = 0; i < milliseconds; ++i) {
      clock.Advance(1);
      player.PlayMidiData();
    }
  }
  /// What went out, in a readable notation: "100: 90 3C 64" (ms of the song, bytes), with the route in
  /// front if it is not 0: "100: 1> 90 3C 64".
  [[nodiscard]] std::vector<std::string> Log() const {
    std::vector<std::string> lines;
    for (const TSent& sent : out.Sent) {
      std::string line = std::to_string(sent.Time - began) + ":";
      if (sent.Route != 0) line += " " + std::to_string(sent.Route) + ">";
      for (const std::uint8_t byte : sent.Bytes) {
        constexpr const char* digits = "0123456789ABCDEF";
        line += std::string(" ") + digits[byte >> 4] + digits[byte & 15];
      }
      lines.push_back(line);
    }
    return lines;
  }
  void Routes(std::size_t count) {
    routes.Table.resize(count, routes.Table.front());
    options.MultiMidi = count > 1;
  }
  void Hosted(std::size_t route) { routes.Table.at(route).VSTi = true; }

  VirtualClock clock;
  RecordingOutputs out{clock};
  SongGate gate;
  TRealtimeData realtime;
  TMidiPlayer player{{song, options, routes, out, clock, gate, realtime, functions, nullptr}};
  std::int64_t began = 0;
};

}  // namespace Sonarello
