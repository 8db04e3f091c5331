#include "playback/SongRender.h"

#include <array>

#include "playback/EventMessages.h"
#include "playback/HostedAudio.h"

namespace Sonarello {

namespace {

constexpr std::int32_t ProgressStep = 500;  ///< ms of the song

}  // namespace

std::int32_t TSongRender::Duration(std::int32_t from) const {
  return song.SongLength + SongTailTime - from;
}

bool TSongRender::IsHosted(int route) const {
  const auto table = routes.MidiRouting();
  return static_cast<std::size_t>(route) < table.size() && table[static_cast<std::size_t>(route)].VSTi;
}

bool TSongRender::Run(const std::function<void(std::span<const float>)>& write,
                      const std::function<bool(double)>& progress) {
  cursors.clear();
  for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t)
    cursors.push_back(song.MidiTrack[static_cast<std::size_t>(t)].TrkFirstEvent);
  const TMyTrack* effects = song.DSPTrackOf(routes.MidiRouting().front().InstrumValue);
  cursors.push_back(effects == nullptr ? nullptr : effects->TrkFirstEvent);
  std::array<float, BytesOfMillisecond(0) / sizeof(float)> block{};
  const std::int32_t end = Duration();
  for (std::int32_t t = 0; t < end; ++t) {
    if (t % ProgressStep == 0 && progress && !progress(static_cast<double>(t) / end)) return false;
    SendDue(t);
    SendEffects(t);
    const auto frames =
        std::span(block).first(static_cast<std::size_t>(BytesOfMillisecond(t)) / sizeof(float));
    graph.Render(frames);
    write(frames);
  }
  return true;
}

void TSongRender::SendDue(std::int32_t position) {
  for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t) {
    if (song.MidiTrack[static_cast<std::size_t>(t)].TrkIgnore) continue;
    const TypMidiEvent*& e = cursors[static_cast<std::size_t>(t)];
    for (; e != nullptr && e->TimePosition <= position; e = e->NextEvent) SendEvent(*e);
  }
}

void TSongRender::SendEvent(const TypMidiEvent& e) {
  if (e.DLength < 1) return;
  if (e.Command == Sysex || e.Command == SysexEscape) {
    if (!IsHosted(0) || routes.MidiRouting().front().MSWavetable) return;
    sysex.clear();
    if (e.Command == Sysex) sysex.push_back(e.Command);
    const auto bytes = e.Meta.Bytes();
    sysex.insert(sysex.end(), bytes.begin(), bytes.end());
    return outputs.SendLong(0, sysex);
  }
  if (!e.IsChannelEvent()) return;
  const auto message = MessageOf(song, realtime, routes, e);
  if (message && IsHosted(message->Route))
    outputs.SendShort(message->Route, message->Status, message->Data1, message->Data2);
}

void TSongRender::SendEffects(std::int32_t position) {
  const TypMidiEvent*& e = cursors.back();
  for (; e != nullptr && e->TimePosition <= position; e = e->NextEvent)
    if (e->Command == Sysex) SendEvent(*e);
}

}  // namespace Sonarello
