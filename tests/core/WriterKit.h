// What tests of the writer share: a strict reader of its own for what was written.
#pragma once

#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/MidiFileWriter.h"
#include "core/Texts.h"
#include "helpers/Workbench.h"

namespace Sonarello {

/// A file as a strict reader of SMF 1.0 finds it; each event is a line such as "480 903c64",
/// "0 name Piano", "0 ff51 07a120" or "2 f0 7e7f0901f7", positions absolute.
struct WrittenFile {
  int Format = -1;
  int Division = 0;
  std::vector<std::vector<std::string>> Tracks;

  explicit WrittenFile(const Bytes& bytes) : data(bytes) {
    Expect("MThd");
    if (Number(4) != 6) throw std::runtime_error("header length");
    Format = static_cast<int>(Number(2));
    const std::size_t count = Number(2);
    Division = static_cast<int>(Number(2));
    for (std::size_t t = 0; t < count; ++t) Tracks.push_back(Track());
    if (at != data.size()) throw std::runtime_error("bytes behind the last chunk");
  }

  [[nodiscard]] bool Has(std::size_t track, const std::string& line) const {
    for (const std::string& each : Tracks.at(track))
      if (each == line) return true;
    return false;
  }
  /// How often a line stands in the file.
  [[nodiscard]] int Count(const std::string& line) const {
    int count = 0;
    for (std::size_t t = 0; t < Tracks.size(); ++t)
      for (const std::string& each : Tracks[t]) count += each == line;
    return count;
  }

 private:
  std::uint8_t Byte() { return data.at(at++); }
  std::size_t Number(int bytes) {
    std::size_t value = 0;
    while (bytes-- > 0) value = value << 8 | Byte();
    return value;
  }
  std::size_t Quantity() {
    std::size_t value = 0;
    for (int i = 0; i < 4; ++i) {
      const std::uint8_t byte = Byte();
      value = value << 7 | (byte & 0x7F);
      if (byte < 0x80) return value;
    }
    throw std::runtime_error("a quantity of more than four bytes");
  }
  void Expect(const char* id) {
    for (; *id != '\0'; ++id)
      if (Byte() != static_cast<std::uint8_t>(*id)) throw std::runtime_error("chunk id");
  }
  std::string Hex(std::size_t count) {
    std::string text;
    char two[3];
    while (count-- > 0) {
      std::snprintf(two, sizeof two, "%02x", Byte());
      text += two;
    }
    return text;
  }

  std::vector<std::string> Track() {
    Expect("MTrk");
    const std::size_t length = Number(4);
    const std::size_t end = at + length;
    std::vector<std::string> lines;
    std::size_t tick = 0;
    std::uint8_t running = 0;
    while (true) {
      tick += Quantity();
      const std::string line = Event(running);
      if (line == "end") {
        lines.push_back(std::to_string(tick) + " end");
        if (at != end) throw std::runtime_error("chunk length");
        return lines;
      }
      lines.push_back(std::to_string(tick) + " " + line);
    }
  }

  std::string Event(std::uint8_t& running) {
    std::uint8_t status = data.at(at);
    if (status >= 0x80) {
      ++at;
    } else {
      status = running;
      if (status < 0x80) throw std::runtime_error("running status without a status");
    }
    if (status < 0xF0) {
      running = status;
      char two[3];
      std::snprintf(two, sizeof two, "%02x", status);
      return two + Hex((status & 0xE0) == 0xC0 ? 1 : 2);
    }
    running = 0;
    if (status == 0xF0 || status == 0xF7) return Payload(status == 0xF0 ? "f0 " : "f7 ");
    if (status != 0xFF) return "system";
    const std::uint8_t type = Byte();
    if (type == 0x2F && data.at(at) == 0) return ++at, "end";
    static const char* const names[] = {"",       "text ",   "",    "name ", "instrument ",
                                        "lyric ", "marker ", "cue "};
    if (type < 8 && names[type][0] != '\0') {
      const std::size_t length = Quantity();
      std::string text = names[type];
      for (std::size_t i = 0; i < length; ++i) text += static_cast<char>(Byte());
      return text;
    }
    char four[6];
    std::snprintf(four, sizeof four, "ff%02x ", type);
    return Payload(four);
  }
  std::string Payload(std::string line) {
    const std::size_t length = Quantity();
    return line += Hex(length);
  }

  const Bytes& data;
  std::size_t at = 0;
};

inline const std::string HeadLine = "0 ff21 00";

/// A workbench whose song comes in unfitted and goes out through the writer.
struct WriterBench : Workbench {
  WriterBench() {
    options.AutoSysex = false;
    GermanLanguage = false;
  }
  ~WriterBench() { GermanLanguage = false; }
  WriterBench(const WriterBench&) = delete;
  WriterBench& operator=(const WriterBench&) = delete;

  /// Reads a file and finds first programs and active channels, as the open pipeline does.
  void Load(const Smf& smf) { LoadBytes(smf.Build()); }
  void LoadBytes(Bytes file) {
    Decode(std::move(file));
    functions.SetFirstValues();
    for (TMyTrack& track : song.MidiTrack)
      ForEachEvent(track, [&](PtrMidiEvent e) {
        if (e->IsChannelEvent() && e->Kind() >= NoteOn && e->Kind() <= ProgramChange)
          song.MidiData[static_cast<std::size_t>(e->Channel())].Active = true;
      });
  }
  Bytes Encode(int format, const std::string& name = "/songs/My Song.mid") {
    return MidiFileWriter(song, options, routes, messages, hooks).Encode(name, format);
  }
  WrittenFile Write(int format, const std::string& name = "/songs/My Song.mid") {
    last = Encode(format, name);
    return WrittenFile(last);
  }
  TMidiChannelData& Channel(int number) {
    return song.MidiData.at(static_cast<std::size_t>(number - 1));
  }
  /// A second route, used by a channel (from 1).
  void RouteAway(int channel, int instrumValue = 87) {
    options.MultiMidi = true;
    routes.Table.push_back({.Delay = 0,
                            .Instrument = "Route " + std::to_string(routes.Table.size()),
                            .InstrumValue = static_cast<std::uint8_t>(instrumValue),
                            .OutputName = "Out " + std::to_string(routes.Table.size())});
    song.MidiOutIndex.at(static_cast<std::size_t>(channel - 1)) =
        static_cast<std::uint8_t>(routes.Table.size() - 1);
  }

  Bytes last;
};

}  // namespace Sonarello
