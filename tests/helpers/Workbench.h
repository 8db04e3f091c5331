// A song with everything that its operations need, for tests.
#pragma once

#include <deque>
#include <span>
#include <string>
#include <vector>

#include "core/EventList.h"
#include "core/MidiFunctions.h"
#include "helpers/SmfBuilder.h"

namespace Sonarello {

/// Records what the user is told; answers questions from a queue, else with yes.
class RecordedMessages : public IMessages {
 public:
  void Show(const std::string& text) override { Shown.push_back(text); }
  bool Ask(const std::string& text) override {
    Asked.push_back(text);
    if (Answers.empty()) return true;
    const bool answer = Answers.front();
    Answers.pop_front();
    return answer;
  }

  std::vector<std::string> Shown;
  std::vector<std::string> Asked;
  std::deque<bool> Answers;
};

/// Routes that a test sets; one route to "GM Soundset" at first.
class TestRoutes : public IRoutes {
 public:
  [[nodiscard]] std::span<const TMidiRouting> MidiRouting() const override { return Table; }
  std::vector<TMidiRouting> Table = {
      {.Delay = 0, .Instrument = "GM Soundset", .InstrumValue = 0, .OutputName = {}}};
};

struct Workbench {
  Song song;
  Options options;
  TestRoutes routes;
  RecordedMessages messages;
  SongHooks hooks;
  TMidiFunctions functions{song, options, routes, messages, hooks};

  /// The main instrument by its catalogue number.
  void Instrument(int value) { routes.Table[0].InstrumValue = static_cast<std::uint8_t>(value); }
  void Decode(Bytes file) {
    functions.SourceData = std::move(file);
    functions.DecodeMidiData();
  }
  TMyTrack& Track(int index) { return song.MidiTrack.at(static_cast<std::size_t>(index)); }
  /// The event of a track by its index in the list, the head being 0.
  PtrMidiEvent Event(int track, int index) {
    PtrMidiEvent e = Track(track).TrkFirstEvent;
    while (e != nullptr && index-- > 0) e = e->NextEvent;
    return e;
  }
};

}  // namespace Sonarello
