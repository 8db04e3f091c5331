#include "core/WriterMarkers.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "core/EventList.h"

namespace Sonarello {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::uint8_t GMReset[] = {0x7E, 0x7F, 0x09, 0x01, 0xF7};
constexpr std::uint8_t GM2Reset[] = {0x7E, 0x7F, 0x09, 0x03, 0xF7};
constexpr std::uint8_t GSReset[] = {0x41, 0x10, 0x42, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x41, 0xF7};
constexpr std::uint8_t XGReset[] = {0x43, 0x10, 0x4C, 0x00, 0x00, 0x7E, 0x00, 0xF7};
constexpr std::uint8_t KetronReset[] = {0x26, 0x7B, 0x0E, 0x00, 0x01, 0xF7};
constexpr std::uint8_t MP11Reset[] = {0x41, 0x00, 0x42, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x41, 0xF7};

constexpr std::uint8_t GSFamily[] = {1, 2, 3, 4, 12, 15, 17, 22, 38, 60, 71, 72, 83};
constexpr std::uint8_t XGFamily[] = {5,  6,  7,  8,  9,  18, 19, 31, 33, 34,
                                     41, 54, 59, 62, 70, 74, 80, 87, 97};
constexpr std::uint8_t KetronFamily[] = {10, 11, 20, 30, 32, 40, 46, 47,  49,
                                         50, 55, 73, 76, 79, 84, 92, 101, 104};
constexpr std::uint8_t GM2Family[] = {14, 16, 25, 36, 37, 42, 43, 48, 52,
                                      61, 63, 64, 75, 78, 82, 90, 91, 103};
constexpr std::uint8_t MP11Family[] = {67};
constexpr std::uint8_t NoResetFamily[] = {13, 28, 35, 45};

struct TResetRow {
  Bytes Family;  ///< catalogue numbers
  Bytes Reset;
};
constexpr TResetRow ResetRows[] = {{GSFamily, GSReset},         {XGFamily, XGReset},
                                   {KetronFamily, KetronReset}, {GM2Family, GM2Reset},
                                   {MP11Family, MP11Reset},     {NoResetFamily, {}}};

constexpr std::string_view SecondDrumsMarker = "SRL_dr.2 10";
constexpr std::string_view ThirdDrumsMarker = "SRL_dr.3 10";

}  // namespace

Bytes RouteResetOf(int instrumValue) {
  for (const TResetRow& row : ResetRows)
    if (std::ranges::find(row.Family, instrumValue) != row.Family.end()) return row.Reset;
  return GMReset;
}

OutputRoutes::OutputRoutes(const Song& s, const Options& options, std::span<const TMidiRouting> routes)
    : song(s), table(routes), several(false) {
  for (int c = 0; c < ChannelCount; ++c) several |= IndexOf(c) != 0;
  several &= options.MultiMidi;
}

std::size_t OutputRoutes::IndexOf(int channel) const noexcept {
  const std::size_t route = song.MidiOutIndex[static_cast<std::size_t>(channel)];
  return route < table.size() ? route : 0;
}

std::size_t SysexTargetOf(const TOutputPlan& plan, const Song& song, const OutputRoutes& routes,
                          bool sysexsOnExtraTrack) {
  if (plan.Branch == TWriterBranch::Mixed) return 0;
  if (plan.Branch == TWriterBranch::Tracks) {
    const auto track = static_cast<std::size_t>(song.SysexTrack);
    return song.SysexTrack >= 0 && track < plan.Tracks.size()
               ? track
               : std::min<std::size_t>(1, plan.Tracks.size() - 1);
  }
  if (sysexsOnExtraTrack) return ChannelCount + 1;
  if (!routes.Several()) return 10;
  for (int c = 0; c < ChannelCount; ++c)
    if (song.MidiData[static_cast<std::size_t>(c)].Active && routes.IndexOf(c) == 0)
      return static_cast<std::size_t>(c) + 1;
  return 1;
}

namespace {

/// True if the song holds a sysex at tick 0, such as the reset that an earlier save put there.
bool StandsAtStart(const Song& song, Bytes bytes) {
  for (const TMyTrack& track : SourceTracks(song))
    for (PtrMidiEvent e = track.TrkFirstEvent; e != nullptr && e->Position == 0; e = e->NextEvent)
      if (e->Command == Sysex && !e->IsRemoved() && e->Meta.Equals(bytes)) return true;
  return false;
}

/// Fills the fronts of one plan.
class FrontMaker {
 public:
  FrontMaker(TOutputPlan& p, const TFrontSources& f, OwnNodes& n)
      : plan(p), from(f), nodes(n), resetWritten(f.routes.Count(), false) {}

  void Run() {
    if (plan.SourceIsFormat0) AddNames();
    if (!from.routes.Several()) return;
    if (plan.Branch == TWriterBranch::Mixed) return AddMixedMarkers();
    for (int c = 0; c < ChannelCount; ++c)
      if (TOutputTrack* track = TrackOf(c)) {
        AddRouteMarker(*track, c);
        AddDrumMarkers(*track);
        AddReset(*track, c);
      }
  }

 private:
  const TMidiChannelData& Channel(int channel) const {
    return from.song.MidiData[static_cast<std::size_t>(channel)];
  }

  /// A track of a file that had format 0 is named after the file or after the channel's sound.
  void AddNames() {
    AddName(plan.Tracks[0], from.songName);
    if (plan.Branch == TWriterBranch::Mixed) return;
    for (int c = 0; c < ChannelCount; ++c) {
      TOutputTrack& track = plan.Tracks[static_cast<std::size_t>(c) + 1];
      const TypMidiEvent* patch = from.song.FirstPatches[static_cast<std::size_t>(c)];
      const bool sounds = Channel(c).Active && patch != nullptr && !patch->IsRemoved();
      if (track.Written && sounds && from.hooks.PatchName)
        AddName(track, from.hooks.PatchName(from.song, c));
    }
    if (plan.Tracks.size() > ChannelCount + 1) AddName(plan.Tracks.back(), "Sysexs");
  }

  void AddName(TOutputTrack& track, std::string_view name) {
    if (!name.empty()) track.Front.push_back(nodes.Meta(MetaTrackName, name));
  }

  /// The track that tells the route of a channel: the first one of its own, else, for a channel in use,
  /// the first one of several channels. Nil if the file has no such track.
  TOutputTrack* TrackOf(int channel) {
    for (std::size_t t = 0; t < plan.Tracks.size(); ++t)
      if (plan.Tracks[t].Written && ChannelOfOutput(plan, from.song, t) == channel)
        return &plan.Tracks[t];
    if (plan.Branch == TWriterBranch::Split || !Channel(channel).Active) return nullptr;
    for (std::size_t t = 0; t < plan.Tracks.size(); ++t)
      if (plan.Tracks[t].Written && from.song.MidiTrack[t].TrkMidiIndex >= ChannelCount)
        return &plan.Tracks[t];
    return nullptr;
  }

  void AddMixedMarkers() {
    TOutputTrack& track = plan.Tracks[0];
    for (int c = 0; c < ChannelCount; ++c)
      if (Channel(c).Active) AddRouteMarker(track, c);
    AddDrumMarkers(track);
    for (int c = 0; c < ChannelCount; ++c)
      if (Channel(c).Active) AddReset(track, c);
  }

  /// Tells the reader which instrument and output a channel plays through. The channel is the one that
  /// the events bear in the file.
  void AddRouteMarker(TOutputTrack& track, int channel) {
    const TMidiRouting& route = from.routes[from.routes.IndexOf(channel)];
    std::string text = route.VSTi ? "SRLvsti_ch." : "SRL_ch.";
    text += std::to_string(from.desk.ChannelOf(channel) + 1) + " ";
    text +=
        route.VSTi ? std::to_string(static_cast<std::uint32_t>(route.VSTiUniqueID)) : route.Instrument;
    text += "///" + route.OutputName;
    if (Channel(channel).DrumPart != 0) text += "_Drums";
    track.Front.push_back(nodes.Meta(MetaInstrumentName, text));
  }

  void AddDrumMarkers(TOutputTrack& track) {
    if (from.song.DrumsSecForceToChannel10)
      track.Front.push_back(nodes.Meta(MetaInstrumentName, SecondDrumsMarker));
    if (from.song.DrumsThirdForceToChannel10)
      track.Front.push_back(nodes.Meta(MetaInstrumentName, ThirdDrumsMarker));
  }

  /// The reset of a route other than the first stands once in the file; route 0 has the song's own.
  void AddReset(TOutputTrack& track, int channel) {
    const std::size_t route = from.routes.IndexOf(channel);
    if (!from.options.AutoSysex || route == 0 || resetWritten[route]) return;
    resetWritten[route] = true;
    const Bytes reset = RouteResetOf(from.routes[route].InstrumValue);
    if (!reset.empty() && !StandsAtStart(from.song, reset)) track.Front.push_back(nodes.Sysex(reset));
  }

  TOutputPlan& plan;
  const TFrontSources& from;
  OwnNodes& nodes;
  std::vector<bool> resetWritten;
};

}  // namespace

void AddFronts(TOutputPlan& plan, const TFrontSources& from, OwnNodes& nodes) {
  FrontMaker(plan, from, nodes).Run();
}

}  // namespace Sonarello
