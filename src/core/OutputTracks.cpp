#include "core/OutputTracks.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <string_view>

namespace Sonarello {

namespace {

constexpr int MetaSongTag = 0x4B;  // maker and title tags of song publishers; about the song as a whole
constexpr std::string_view ChannelPrefix = "ch.";

/// Instrument names that start "ch." with a channel and a blank belong to that channel's track.
int TargetOfInstrumentName(std::string_view text) {
  if (!text.starts_with(ChannelPrefix)) return 1;
  text.remove_prefix(ChannelPrefix.size());
  int channel = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), channel);
  const bool blankFollows = end != text.data() + text.size() && *end == ' ';
  const bool known = error == std::errc{} && blankFollows && channel >= 1 && channel <= ChannelCount;
  return known ? channel : 1;
}

int TargetOfMeta(const TypMidiEvent& meta) {
  switch (meta.MType) {
    case MetaTempo:
    case MetaTimeSignature:
    case MetaSmpteOffset:
    case MetaKeySignature:
    case MetaSongTag: return 0;
    case MetaTrackName:
    case MetaEndOfTrack: return -1;
    case MetaInstrumentName: return TargetOfInstrumentName(meta.Meta.Text());
    default: return 1;
  }
}

}  // namespace

std::span<const TMyTrack> SourceTracks(const Song& song) noexcept {
  const auto inUse = static_cast<std::size_t>(std::max(0, song.NumberOfSourceTracks));
  return std::span(song.MidiTrack).first(std::min(song.MidiTrack.size(), inUse));
}

TOutputPlan EmptyPlan(const Song& song, int format, bool sysexsOnExtraTrack) {
  TOutputPlan plan;
  plan.SourceIsFormat0 = song.MidiFileOrgFormat == 0;
  if (format == 0) {
    plan.Branch = TWriterBranch::Mixed;
    plan.Tracks.resize(1);
  } else if (plan.SourceIsFormat0) {
    plan.Branch = TWriterBranch::Split;
    plan.Tracks.resize(1 + ChannelCount + (sysexsOnExtraTrack ? 1 : 0));
  } else {
    plan.Tracks.resize(SourceTracks(song).size());
  }
  return plan;
}

int SplitTarget(const TypMidiEvent& event, std::size_t sysexTarget) {
  if (event.IsChannelEvent()) return event.Channel() + 1;
  return event.Command == MetaEvent ? TargetOfMeta(event) : static_cast<int>(sysexTarget);
}

int ChannelOfOutput(const TOutputPlan& plan, const Song& song, std::size_t track) {
  if (plan.Branch == TWriterBranch::Mixed) return -1;
  if (plan.Branch == TWriterBranch::Split)
    return track >= 1 && track <= ChannelCount ? static_cast<int>(track) - 1 : -1;
  const int channel = song.MidiTrack[track].TrkMidiIndex;
  return channel < ChannelCount ? channel : -1;
}

namespace {

/// Puts each channel's tracks where the tracks of its output channel stood. Tracks that find no such
/// place, because that channel has fewer tracks, fill what is left in their own order.
std::vector<std::size_t> Reordered(const TOutputPlan& plan, const Song& song, const DeskCopy& desk) {
  // The first track stays the first whatever it holds: it is the one that tempi are read from.
  std::array<std::vector<std::size_t>, ChannelCount> places;
  for (std::size_t t = 1; t < plan.Tracks.size(); ++t)
    if (const int c = ChannelOfOutput(plan, song, t); c >= 0)
      places[static_cast<std::size_t>(c)].push_back(t);

  constexpr std::size_t free = SIZE_MAX;
  std::vector<std::size_t> order(plan.Tracks.size(), free);
  order[0] = 0;
  std::vector<std::size_t> homeless;
  std::array<std::size_t, ChannelCount> taken{};
  for (std::size_t t = 1; t < plan.Tracks.size(); ++t) {
    const int c = ChannelOfOutput(plan, song, t);
    if (c < 0) {
      order[t] = t;
      continue;
    }
    const auto output = static_cast<std::size_t>(desk.ChannelOf(c));
    if (taken[output] < places[output].size())
      order[places[output][taken[output]++]] = t;
    else
      homeless.push_back(t);
  }
  std::size_t next = 0;
  for (std::size_t& place : order)
    if (place == free) place = homeless[next++];
  return order;
}

}  // namespace

std::vector<std::size_t> FileOrder(const TOutputPlan& plan, const Song& song, const DeskCopy& desk) {
  std::vector<std::size_t> order(plan.Tracks.size());
  if (desk.ChangesChannels())
    order = Reordered(plan, song, desk);
  else
    for (std::size_t t = 0; t < order.size(); ++t) order[t] = t;
  std::erase_if(order, [&](std::size_t t) { return !plan.Tracks[t].Written; });
  return order;
}

std::string SongNameOf(const std::string& fileName) {
  const std::u8string name =
      std::filesystem::path(std::u8string(fileName.begin(), fileName.end())).stem().u8string();
  return {name.begin(), name.end()};
}

}  // namespace Sonarello
