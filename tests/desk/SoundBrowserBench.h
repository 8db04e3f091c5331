// A sound browser over a fitted song, with outputs that write down what comes, for tests.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "core/MidiFileWriter.h"
#include "desk/SoundBrowser.h"
#include "helpers/PlayerBench.h"
#include "helpers/SentLog.h"
#include "helpers/SoundBench.h"
#include "instruments/InstrumentArray.h"

namespace Sonarello {

/// A folder of user files that goes with the test.
struct UserFolder {
  UserFolder() {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "sonarello-browser-").string() + std::string(6, 'X');
    Path = mkdtemp(pattern.data());
  }
  ~UserFolder() { std::filesystem::remove_all(Path); }
  UserFolder(const UserFolder&) = delete;
  UserFolder& operator=(const UserFolder&) = delete;
  void Write(const std::string& name, const std::string& text) const {
    std::ofstream(std::filesystem::path(Path) / name, std::ios::binary) << text;
  }
  [[nodiscard]] std::string Read(const std::string& name) const {
    std::ifstream file(std::filesystem::path(Path) / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  std::string Path;
};

struct SoundBrowserBench : SoundBench {
  explicit SoundBrowserBench(int value) : SoundBench(value) {
    if (const TInstrument* row = InstrumentByValue(value)) routes.Table[0].Instrument = row->Name;
    browser.Hooks.IsPlaying = [this] { return isPlaying; };
    browser.Hooks.SoundChanged = [this](int channel) { Told.push_back("sound " + Number(channel)); };
    browser.Hooks.EventsChanged = [this](int channel) { Told.push_back("events " + Number(channel)); };
    browser.Hooks.Changed = [this] { Told.push_back("changed"); };
    browser.Hooks.DrumsChanged = [this](int channel) { Told.push_back("drums " + Number(channel)); };
    browser.Hooks.Opened = [this] { Told.push_back("opened"); };
    browser.Hooks.Closed = [this] { Told.push_back("closed"); };
    browser.Hooks.DoSolo = [this](int channel) {
      bool& solo = song.MidiData[static_cast<std::size_t>(channel)].Solo;
      solo = !solo;
    };
  }

  /// Opens a song of format 1 in which the channels (1-16) play notes from tick 1920 on, each with a
  /// sound in front.
  bool OpenWith(const std::vector<std::pair<int, TAddress>>& sounds) {
    Smf file(1, 480);
    file.Track().Tempo(500000);
    for (const auto& [channel, address] : sounds) {
      file.Track().At(0);
      if (address.CC00 >= 0) file.Ctrl(channel, 0, address.CC00);
      if (address.CC32 >= 0) file.Ctrl(channel, 32, address.CC32);
      if (address.Patch >= 0) file.Prog(channel, address.Patch);
      file.Note(channel, 60, 1920, 2400).Note(channel, 62, 2400, 2880);
    }
    return Open(file);
  }
  /// The place of the first sound whose name in the instrument is this one.
  [[nodiscard]] TSoundPlace Named(std::string_view name) const {
    const auto banks = browser.Banks().Banks();
    for (const TBrowserBank& bank : banks)
      for (const TPatch& row : bank.Rows())
        if (row.Name == name) return browser.Banks().PlaceOf(&row);
    return {};
  }
  [[nodiscard]] std::string NameAt(const TSoundPlace& place) const {
    const TPatch* row = browser.Banks().RowAt(place);
    return row == nullptr ? std::string() : std::string(row->Name);
  }
  /// The bytes that saving the song would write.
  [[nodiscard]] std::vector<std::uint8_t> Saved() {
    return MidiFileWriter(song, options, routes, messages, {}).Encode("song.mid", song.MidiFileFormat);
  }
  /// Everything of the song that a choice of sounds may touch, as text.
  [[nodiscard]] std::string State() const {
    std::string text;
    const auto add = [&text](auto number) { text += std::to_string(number) + " "; };
    for (const TMyTrack& track : song.MidiTrack) {
      add(track.TrkEventCounter);
      ForEachEvent(track, [&](const TypMidiEvent* e) {
        add(e->Position), add(e->Command), add(e->DLength), add(e->Value[0]), add(e->Value[1]);
      });
    }
    for (const TMidiChannelData& data : song.MidiData) {
      add(data.Patch), add(data.DrumPart), add(reinterpret_cast<std::uintptr_t>(data.PatchEvent));
      for (const TCtrl& entry : data.CtrlArray)
        add(entry.Value), add(reinterpret_cast<std::uintptr_t>(entry.Event));
    }
    for (const PtrMidiEvent e : song.FirstPatches) add(reinterpret_cast<std::uintptr_t>(e));
    for (const auto& channel : song.FirstControllers)
      for (const PtrMidiEvent e : channel) add(reinterpret_cast<std::uintptr_t>(e));
    for (const TRealtime& pending : realtime.Realtime) {
      add(pending.Patch);
      for (const std::int32_t value : pending.Ctrl) add(value);
    }
    return text;
  }

  VirtualClock clock;
  RecordingOutputs out{clock};
  SongGate gate;
  TRealtimeData realtime;
  MemorySettings settings;
  TAutoRevoicer revoicer;
  SentLog sent;
  bool isPlaying = false;
  std::vector<std::string> Told;
  TSoundBrowser browser{
      {song, sets, names, options, routes, settings, messages, gate, realtime, out, revoicer},
      sent.Sender()};

 private:
  static std::string Number(int channel) { return std::to_string(channel + 1); }
};

}  // namespace Sonarello
