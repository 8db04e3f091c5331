#include "desk/SongProperties.h"

#include <algorithm>

#include "core/Texts.h"

namespace Sonarello {

namespace {

std::string MinutesText(std::int32_t milliseconds) {
  const std::int32_t seconds = milliseconds / 1000;
  const std::string rest = std::to_string(seconds % 60);
  return std::to_string(seconds / 60) + (rest.size() < 2 ? ":0" : ":") + rest;
}

std::string TempoText(const Song& song) {
  if (song.SourceTempo.empty()) return "120";
  const auto last = std::max<std::int32_t>(song.SourceTempoElements, 1);
  const auto count = std::min(static_cast<std::size_t>(last), song.SourceTempo.size());
  const auto [low, high] = std::minmax_element(
      song.SourceTempo.begin(), song.SourceTempo.begin() + static_cast<std::ptrdiff_t>(count),
      [](const TTempo& a, const TTempo& b) { return a.Tempo < b.Tempo; });
  std::string text = std::to_string(song.SourceTempo.front().Tempo) + " BPM";
  if (low->Tempo != high->Tempo)
    text += " (" + std::to_string(low->Tempo) + "–" + std::to_string(high->Tempo) + ")";
  return text;
}

std::string SignatureText(const Song& song) {
  if (song.TimeZone.empty()) return "4/4";
  std::vector<std::string> signs;
  const auto zones =
      std::min(static_cast<std::size_t>(std::max(song.TimeZoneElements, 1)), song.TimeZone.size());
  for (std::size_t z = 0; z < zones; ++z) {
    std::string sign = std::to_string(song.TimeZone[z].TS_Numerator) + "/" +
                       std::to_string(song.TimeZone[z].TS_Denominator);
    if (std::ranges::find(signs, sign) == signs.end()) signs.push_back(std::move(sign));
  }
  std::string text;
  for (const std::string& sign : signs) text += (text.empty() ? "" : ", ") + sign;
  return text;
}

}  // namespace

std::string NumberText(std::int64_t number) {
  std::string digits = std::to_string(number < 0 ? -number : number);
  const std::string sign = Text(".", ",");
  for (std::size_t place = digits.size(); place > 3; place -= 3) digits.insert(place - 3, sign);
  return (number < 0 ? "-" : "") + digits;
}

std::string FileNameOf(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string SongFactsLine(const Song& song) {
  return "SMF " + std::to_string(song.MidiFileOrgFormat) + " · " + std::to_string(song.SourceTimeBase) +
         Text(" T/V · ", " PPQ · ") + MinutesText(song.SongLength);
}

std::vector<TSongProperty> SongProperties(const Song& song, const std::string& noteCheck) {
  std::int64_t events = 0;
  for (const TMyTrack& track : song.MidiTrack) events += track.TrkEventCounter;
  std::string channels;
  std::int64_t notes = 0;
  for (int c = 0; c < ChannelCount; ++c) {
    const TMidiChannelData& data = song.MidiData[static_cast<std::size_t>(c)];
    notes += data.ActiveNotes;
    if (data.Active) channels += (channels.empty() ? "" : ", ") + std::to_string(c + 1);
  }
  return {
      {Text("Datei", "File"), song.MidiFileName.empty()
                                  ? Text("(noch nicht gespeichert)", "(not saved yet)")
                                  : song.MidiFileName},
      {Text("Format", "Format"), "SMF " + std::to_string(song.MidiFileOrgFormat)},
      {Text("Auflösung", "Resolution"),
       std::to_string(song.SourceTimeBase) + Text(" Ticks pro Viertel", " ticks per quarter")},
      {Text("Länge", "Length"), MinutesText(song.SongLength) + " (" +
                                    std::to_string(song.MaxSongPositionMeasure) +
                                    Text(" Takte)", " measures)")},
      {"Tempo", TempoText(song)},
      {Text("Taktart", "Time signature"), SignatureText(song)},
      {Text("Spuren", "Tracks"), std::to_string(song.NumberOfSourceTracks)},
      {Text("Kanäle", "Channels"), channels.empty() ? "-" : channels},
      {Text("Events", "Events"), NumberText(events)},
      {Text("Noten", "Notes"), NumberText(notes)},
      {Text("Notenprüfung", "Note check"),
       noteCheck.empty() ? Text("fehlerfrei", "no faults") : noteCheck},
  };
}

}  // namespace Sonarello
