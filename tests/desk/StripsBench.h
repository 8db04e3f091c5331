// The strips over a player on a virtual clock, with everything that they tell written down, for tests.
#pragma once

#include <string>
#include <vector>

#include "core/ChannelStock.h"
#include "desk/Strips.h"
#include "helpers/PlayerBench.h"
#include "playback/Winding.h"

namespace Sonarello {

struct StripsBench : PlayerBench {
  StripsBench() {
    TStripsHooks& hooks_ = strips.Desk.Hooks;
    hooks_.ShowStrip = [this](int channel) { Tell("strip " + Number(channel)); };
    hooks_.ShowMutes = [this] { Tell("mutes"); };
    hooks_.ShowSolos = [this](int channel) { Tell("solos " + Number(channel)); };
    hooks_.SelectionChanged = [this](int before, int now) {
      Tell("select " + Number(before) + " " + Number(now));
    };
    hooks_.ShowController = [this](int channel, int controller, int value) {
      Tell("show " + Number(channel) + " " + Number(controller) + " " + Number(value));
    };
    hooks_.EventChanged = [this](PtrMidiEvent event, bool becameReal) {
      Tell((becameReal ? "real " : "event ") + Number(event->Value[0]) + " " + Number(event->Value[1]));
    };
    hooks_.Changed = [this] { Tell("changed"); };
    hooks_.PortFailed = [this](const std::string& text) { Tell("failed " + text); };
    hooks_.TransposeChange = [this] { Tell("transpose"); };
    hooks_.TempoChange = [this] { Tell("tempo"); };
  }

  /// Two channels: volumes at tick 10 and, on channel 1, at 500; a note each from 100 to 900; a
  /// panorama on channel 1.
  StripsBench& TwoChannels() {
    Ctrl(10, 7, 80).Ctrl(10, 7, 40, 2).Ctrl(20, 10, 64);
    On(100, 60).On(100, 62, 2).Ctrl(500, 7, 90).Off(900, 60).Off(900, 62, 2);
    return Loaded();
  }
  /// Ends the song and hands it to the player and the strips.
  StripsBench& Loaded() {
    Ready();
    strips.SongChanged();
    return *this;
  }
  /// The controllers that the song lacks, as placeholders, as behind an open.
  StripsBench& Placeholders() {
    song.MidiTrack.front().TrkMidiIndex = ChannelCount;
    InsertDefaultControllers(song);
    functions.SetTimePositions();
    player.SongChanged();
    return *this;
  }
  [[nodiscard]] TMidiChannelData& Data(int channel) {
    return song.MidiData[static_cast<std::size_t>(channel)];
  }
  [[nodiscard]] TCtrl& Entry(int channel, int controller) {
    return Data(channel).CtrlArray[static_cast<std::size_t>(controller)];
  }
  [[nodiscard]] TRealtime& Pending(int channel) {
    return realtime.Realtime[static_cast<std::size_t>(channel)];
  }
  [[nodiscard]] int Volume(int channel) { return Entry(channel, 7).Value; }
  /// The events of a controller in the first track: "80 90".
  [[nodiscard]] std::string Values(int channel, int controller) {
    std::string values;
    ForEachEvent(song.MidiTrack.front(), [&](PtrMidiEvent e) {
      if (e->Command != (Controller | channel) || e->Value[0] != controller) return;
      values += (values.empty() ? "" : " ") + std::to_string(e->Value[1]);
    });
    return values;
  }
  /// What the strips told since the last time.
  [[nodiscard]] std::vector<std::string> Told() { return std::exchange(told, {}); }
  /// What went out since the last time, without times.
  [[nodiscard]] std::vector<std::string> Sent() {
    std::vector<std::string> lines = Log();
    for (std::string& line : lines) line.erase(0, line.find(' ') + 1);
    out.Sent.clear();
    return lines;
  }
  void Tell(const std::string& line) { told.push_back(line); }
  static std::string Number(int number) { return std::to_string(number); }

  TStrips strips{{song, options, routes, out, realtime, gate, player, functions}};
  std::vector<std::string> told;
};

}  // namespace Sonarello
