#include "core/Markers.h"

#include <charconv>
#include <cstdint>
#include <string>

#include "core/EventList.h"

namespace Sonarello {

namespace {

struct TPrefixRow {
  std::string_view Prefix;
  TMarker::Kind What;
  bool MayDrum;    ///< "_Drums" may stand in the text
  bool MayOutput;  ///< "///" and an output may follow
};

using Kind = TMarker::Kind;
constexpr TPrefixRow PrefixRows[] = {
    {"SR4P_ch.", Kind::Route, false, false},
    {"SR5P_ch.", Kind::Route, false, false},
    {"SR6P_ch.", Kind::Route, false, false},
    {"SR7_ch.", Kind::Route, true, false},
    {"SR8_ch.", Kind::Route, true, false},
    {"SR9_ch.", Kind::Route, true, true},
    {"SRL_ch.", Kind::Route, true, true},
    {"SRLI_ch.", Kind::Route, true, true},
    {"SR9vsti_ch.", Kind::HostedRoute, true, true},
    {"SRLvsti_ch.", Kind::HostedRoute, true, true},
    {"SRLIvsti_ch.", Kind::HostedRoute, true, true},
    {"SR7_dr.", Kind::DrumForce, false, false},
    {"SR8_dr.", Kind::DrumForce, false, false},
    {"SR9_dr.", Kind::DrumForce, false, false},
    {"SRL_dr.", Kind::DrumForce, false, false},
    {"SRLI_dr.", Kind::DrumForce, false, false},
    {"srl_ignore", Kind::Ignore, false, false},
};

constexpr std::string_view DrumsMark = "_Drums";
constexpr std::string_view OutputMark = "///";

/// A text that is a whole decimal number, else none.
std::optional<std::int64_t> Number(std::string_view text) {
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return value;
}

/// A plug-in's unique ID: 32 bits, written signed or unsigned; -1 for a text that is no number.
std::int32_t UniqueID(std::string_view text) {
  const std::optional<std::int64_t> value = Number(text);
  if (!value || *value < INT32_MIN || *value > UINT32_MAX) return -1;
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(*value));
}

void ReadChannelMarker(const TPrefixRow& row, std::string_view number, std::string text,
                       TMarker& marker) {
  const std::optional<std::int64_t> channel = Number(number);
  if (!channel || *channel < 1 || *channel > ChannelCount) return;
  marker.Channel = static_cast<int>(*channel);
  // The mark stands behind the name or, in files of ours, behind the output.
  if (const std::size_t mark = text.find(DrumsMark); row.MayDrum && mark != text.npos) {
    marker.Drums = true;
    text.erase(mark, DrumsMark.size());
  }
  if (const std::size_t mark = text.find(OutputMark); row.MayOutput && mark != text.npos) {
    marker.HasOutput = true;
    marker.OutputName = text.substr(mark + OutputMark.size());
    text.erase(mark);
  }
  marker.Instrument = row.What == Kind::Route ? std::string(CurrentInstrumentName(text)) : text;
}

}  // namespace

std::string_view CurrentInstrumentName(std::string_view name) {
  if (name == "Ketron SD2") return "Ketron SD2/SD4";
  if (name == "Limex Tradition Exclusiv 200") return "Limex Tradition Exclusiv 200v3";
  return name;
}

std::optional<TMarker> ParseMarker(std::string_view text) {
  for (const TPrefixRow& row : PrefixRows) {
    if (!text.starts_with(row.Prefix)) continue;
    TMarker marker;
    marker.What = row.What;
    if (row.What == Kind::Ignore) return marker;
    const std::string_view rest = text.substr(row.Prefix.size());
    const std::size_t blank = rest.find(' ');
    if (blank == rest.npos) return marker;
    const std::string_view number = rest.substr(0, blank);
    const std::string_view words = rest.substr(blank + 1);
    if (row.What != Kind::DrumForce) {
      ReadChannelMarker(row, number, std::string(words), marker);
    } else if (words == "10" && (number == "2" || number == "3")) {
      marker.DrumForm = number == "2" ? 2 : 3;
    }
    return marker;
  }
  return std::nullopt;
}

int RouteOfMarker(const TMarker& marker, std::span<const TMidiRouting> routes) {
  const bool hosted = marker.What == Kind::HostedRoute;
  const std::int32_t id = hosted ? UniqueID(marker.Instrument) : 0;
  const auto find = [&](bool withOutput) {
    for (std::size_t k = 0; k < routes.size(); ++k) {
      const TMidiRouting& route = routes[k];
      const bool same =
          hosted ? route.VSTi && route.VSTiUniqueID == id : route.Instrument == marker.Instrument;
      if (same && (!withOutput || route.OutputName == marker.OutputName)) return static_cast<int>(k);
    }
    return -1;
  };
  const int exact = marker.HasOutput ? find(true) : -1;
  return exact >= 0 ? exact : find(false);
}

void ApplyMarker(Song& song, int track, PtrMidiEvent event, std::span<const TMidiRouting> routes) {
  const std::optional<TMarker> marker = ParseMarker(event->Meta.Text());
  if (!marker) return;
  TMyTrack& owner = song.MidiTrack[static_cast<std::size_t>(track)];
  if (marker->What == Kind::Ignore) {
    // The writer does not build this mark anew, so it stays.
    if (song.MidiFileFormat != 0) owner.TrkIgnore = true;
    return;
  }
  LogChange(song, ChangeKind::Dropped, track, *event, "Marke des Programms, wurde gelesen",
            "mark of this program, obeyed");
  MarkRemoved(event);
  if (marker->What == Kind::DrumForce) {
    if (marker->DrumForm == 2) song.DrumsSecForceToChannel10 = true;
    if (marker->DrumForm == 3) song.DrumsThirdForceToChannel10 = true;
    return;
  }
  if (marker->Channel == 0) return;
  const auto channel = static_cast<std::size_t>(marker->Channel - 1);
  if (marker->Drums) song.MidiData[channel].DrumPart = 1;
  const int route = RouteOfMarker(*marker, routes);
  if (route < 0) return;
  song.MidiOutIndex[channel] = static_cast<std::uint8_t>(route);
  owner.TrkDelay = routes[static_cast<std::size_t>(route)].Delay;
}

}  // namespace Sonarello
