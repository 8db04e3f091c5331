#include "playback/MidiPlayer.h"

#include <algorithm>

#include "playback/InstrumentResets.h"
#include "playback/MidiErrors.h"

namespace Sonarello {

namespace {

constexpr std::int64_t Millisecond = 1000;  // microseconds
constexpr std::uint8_t AllSoundOff = 120;
constexpr std::uint8_t AllNotesOff = 123;
constexpr std::uint8_t LocalControl = 122;
constexpr std::uint8_t ReleaseVelocity = 64;

/// NRPN MSBs of the values that a drum editor holds for each note.
struct TDrumValue {
  std::array<std::int8_t, KeyCount> TRealtime::*Values;
  std::uint8_t MSB;
};
constexpr TDrumValue DrumValues[] = {{&TRealtime::DrumLevel, 26},
                                     {&TRealtime::DrumLowPass, 20},
                                     {&TRealtime::DrumPitch, 24},
                                     {&TRealtime::DrumReverb, 29}};

}  // namespace

int TMidiPlayer::RouteOf(std::size_t channel) const { return p.song.MidiOutIndex[channel]; }

bool TMidiPlayer::IsHosted(int route) const {
  const auto table = p.routes.MidiRouting();
  return static_cast<std::size_t>(route) < table.size() && table[static_cast<std::size_t>(route)].VSTi;
}

bool TMidiPlayer::NoSysex() const { return p.routes.MidiRouting().front().MSWavetable; }

void TMidiPlayer::SongChanged() {
  const auto gate = p.gate.Enter();
  StopPlaying();
  p.realtime.InitializeRealtimeData();
  p.realtime.ResetChannels();
  for (std::size_t c = 0; c < ChannelCount; ++c)
    p.realtime.Realtime[c].MidiChannel = static_cast<std::uint8_t>(p.song.MidiData[c].MidiChannel);
  std::size_t longest = 0;
  for (std::int32_t t = 0; t < p.song.NumberOfSourceTracks; ++t)
    for (const TypMidiEvent* e = p.song.MidiTrack[static_cast<std::size_t>(t)].TrkFirstEvent;
         e != nullptr; e = e->NextEvent)
      if (e->Command == Sysex || e->Command == SysexEscape) longest = std::max(longest, e->Meta.size());
  sysexBytes.reserve(longest + 1);
  Looping = false;
  LoopStart = 0;
  LoopEnd = p.song.SongLength - 100;
  TempoOffset = 0;
  Rewind();
}

bool TMidiPlayer::Play() {
  if (State == TMidiPlayerState::stPlaying) return true;
  if (!PreparePlay()) return false;
  StartPlay();
  return true;
}

bool TMidiPlayer::PreparePlay() {
  if (!p.outputs.OpenAll()) return false;
  {
    const auto gate = p.gate.Enter();
    Ledger.SetRoutes(p.routes.MidiRouting().size());
    pacer.SetRoutes(p.routes.MidiRouting().size());
  }
  ResetFurtherRoutes();
  if (!NoSysex()) {
    if (p.realtime.RealtimeInsertFx && Hooks.SendInsertSysexs) Hooks.SendInsertSysexs();
    p.realtime.RealtimeInsertFx = false;
    const std::vector<std::uint8_t> sysex = std::move(p.realtime.RealtimeSysex);
    p.realtime.RealtimeSysex.clear();
    if (!sysex.empty()) SendSysex(0, Sysex, sysex);
  }
  if (RecMidiThru && RecSendLocalOff)
    for (std::size_t c = 0; c < ChannelCount; ++c)
      if (!IsHosted(RouteOf(c)))
        SendMidiData(RouteOf(c), static_cast<std::uint8_t>(Controller | c), LocalControl, 0);
  int sent = 0;
  for (int c = 0; c < ChannelCount; ++c) FlushPending(c, sent);
  SentOnStart = sent;
  return true;
}

void TMidiPlayer::ResetFurtherRoutes() {
  const auto table = p.routes.MidiRouting();
  const bool several = p.options.MultiMidi && table.size() >= 2 && TimePosition == 0 &&
                       std::ranges::any_of(p.song.MidiOutIndex, [](std::uint8_t r) { return r != 0; });
  if (!several) return;
  for (std::size_t r = 1; r < table.size(); ++r) {
    const auto reset = ResetOf(table[r].InstrumValue);
    if (table[r].MSWavetable || reset.empty()) continue;
    std::vector<std::uint8_t> message = {Sysex};
    message.insert(message.end(), reset.begin(), reset.end());
    const auto gate = p.gate.Enter();
    p.outputs.SendLong(static_cast<int>(r), message);
  }
  if (!p.options.QuickTakerPresent) p.clock.SleepFor(300 * Millisecond);
}

void TMidiPlayer::FlushPending(int channel, int& sent) {
  const auto c = static_cast<std::size_t>(channel);
  TRealtime& pending = p.realtime.Realtime[c];
  LastCtrl00[c] = LastCtrl32[c] = nullptr;
  const int route = RouteOf(c);
  const auto controller = static_cast<std::uint8_t>(Controller | pending.MidiChannel);
  const auto flush = [&](auto& slot, std::uint8_t status, std::uint8_t number, bool isProgram = false) {
    if (slot < 0) return;
    const auto value = static_cast<std::uint8_t>(slot);
    slot = -1;
    SendMidiData(route, status, isProgram ? value : number, isProgram ? 0 : value);
    ++sent;
    p.clock.SleepFor(Millisecond);
  };
  if (pending.AllSoundOff >= 0) pending.AllSoundOff = 0;
  flush(pending.AllSoundOff, controller, AllSoundOff);
  flush(pending.Ctrl[0], controller, 0);
  flush(pending.Ctrl[32], controller, 32);
  flush(pending.Patch, static_cast<std::uint8_t>(ProgramChange | pending.MidiChannel), 0, true);
  const bool drums = p.song.MidiData[c].DrumPart > 0;
  for (std::size_t n = 0; n < ControllerCount; ++n) {
    flush(pending.Ctrl[n], controller, static_cast<std::uint8_t>(n));
    if (!drums) continue;
    const int note = static_cast<int>(n) + p.song.MidiData[c].DrumArray[n].Transpose;
    for (const TDrumValue& drum : DrumValues) {
      std::int8_t& value = (pending.*drum.Values)[n];
      if (value < 0) continue;
      SendMidiData(route, controller, 99, drum.MSB);
      SendMidiData(route, controller, 98, static_cast<std::uint8_t>(std::clamp(note, 0, 127)));
      SendMidiData(route, controller, 6, static_cast<std::uint8_t>(value));
      value = -1;
      sent += 3;
      p.clock.SleepFor(3 * Millisecond);
    }
  }
  flush(pending.Volume, controller, 7);
}

void TMidiPlayer::StartPlay() {
  const bool audio = AudioRuns();
  if (audio) p.audio->ClearQueue();
  const auto gate = p.gate.Enter();
  LastPlayTimePosition = TimePosition;
  SwitchToVSTiTimer = SwitchToMidiPlayThread = false;
  StartTime = Now() - TimePosition;
  if (audio) {
    constexpr int longBuffer = 100;  // ms
    p.audio->DelayStart(p.audio->BufferTime() >= longBuffer ? 2 : 1);
    lastPutTime = 0;
    audioStart = Now();
    Tag = AudioReady;
  } else {
    Tag = MidiReady;
  }
  State = TMidiPlayerState::stPlaying;
}

void TMidiPlayer::Stop() {
  const auto gate = p.gate.Enter();
  if (State == TMidiPlayerState::stPlaying) return StopPlaying();
  Rewind();
  if (Hooks.ReadFirstValues) Hooks.ReadFirstValues();
}

void TMidiPlayer::StopPlaying() {
  if (State != TMidiPlayerState::stPlaying) return;
  const std::int64_t began = Now();
  if (AudioRuns())
    SwitchToVSTiTimer = true;
  else if (!inPass)
    Tag = Parked;
  pacer.Clear();
  EndLedger();
  for (int c = 0; c < ChannelCount; ++c) Silence(c);
  if (RecMidiThru && RecSendLocalOff)
    for (std::size_t c = 0; c < ChannelCount; ++c)
      if (!IsHosted(RouteOf(c)))
        Emit(RouteOf(c), static_cast<std::uint8_t>(Controller | c), LocalControl, 127);
  for (TMidiChannelData& channel : p.song.MidiData)
    for (TDrumsRec& drum : channel.DrumArray) drum.XValue = 0;
  p.realtime.RMSValue.fill({});
  StopTime = static_cast<std::int32_t>(Now() - began);
  State = TMidiPlayerState::stStopped;
}

void TMidiPlayer::Rewind() {
  TimePosition = 0;
  for (TMyTrack& track : p.song.MidiTrack) track.TrkPlayEvent = track.TrkFirstEvent;
  if (TMyTrack* effects = p.song.DSPTrackOf(p.routes.MidiRouting().front().InstrumValue))
    effects->TrkPlayEvent = effects->TrkFirstEvent;
  ForgetTracked();
  for (std::size_t c = 0; c < ChannelCount; ++c) {
    TMidiChannelData& data = p.song.MidiData[c];
    for (std::size_t n = 0; n < ControllerCount; ++n)
      if (PtrMidiEvent first = p.song.FirstControllers[c][n])
        data.CtrlArray[n] = {first, first->Value[1]};
      else if (data.CtrlArray[n].Event != nullptr)
        data.CtrlArray[n] = {};
    data.PatchEvent = p.song.FirstPatches[c];
    data.Patch = data.PatchEvent == nullptr ? std::int8_t{-1}
                                            : static_cast<std::int8_t>(data.PatchEvent->Value[0]);
  }
}

/// Controllers 120 and 123 on the song channel, and on the wire channel where that is another.
void TMidiPlayer::Silence(int channel) {
  const auto c = static_cast<std::size_t>(channel);
  const int wire = p.realtime.Realtime[c].MidiChannel;
  for (const int target : {channel, wire}) {
    const auto status = static_cast<std::uint8_t>(Controller | target);
    Emit(RouteOf(c), status, AllSoundOff, 0);
    Emit(RouteOf(c), status, AllNotesOff, 0);
    if (wire == channel) return;
  }
}

void TMidiPlayer::EndNotesHeld(int MidiOutIndex, int MidiChannel) {
  Ledger.EndIf(
      [&](std::size_t route, int channel) {
        return static_cast<int>(route) == MidiOutIndex && channel == MidiChannel;
      },
      [&](std::size_t route, int channel, std::uint8_t key) {
        Emit(static_cast<int>(route), static_cast<std::uint8_t>(NoteOff | channel), key,
             ReleaseVelocity);
      });
}

void TMidiPlayer::SilenceChannel(int channel) {
  const auto gate = p.gate.Enter();
  const auto c = static_cast<std::size_t>(channel);
  p.realtime.RMSValue[c].Count = 0;
  EndNotesHeld(RouteOf(c), p.realtime.Realtime[c].MidiChannel);
  Silence(channel);
}

void TMidiPlayer::EndAllNotes() {
  const auto gate = p.gate.Enter();
  EndLedger();
}

void TMidiPlayer::EndLedger() {
  Ledger.EndAll([&](std::size_t route, int channel, std::uint8_t key) {
    Emit(static_cast<int>(route), static_cast<std::uint8_t>(NoteOff | channel), key, ReleaseVelocity);
  });
}

void TMidiPlayer::SetLoop(std::int32_t loopStart, std::int32_t loopEnd) {
  const auto gate = p.gate.Enter();
  LoopStart = std::clamp(loopStart, 0, p.song.SongLength);
  LoopEnd = std::max(loopEnd, LoopStart);
  for (TMyTrack& track : p.song.MidiTrack) {
    track.TrkLoopStart = track.TrkFirstEvent;
    while (track.TrkLoopStart != nullptr && track.TrkLoopStart->NextEvent != nullptr &&
           track.TrkLoopStart->TimePosition < LoopStart)
      track.TrkLoopStart = track.TrkLoopStart->NextEvent;
  }
  Looping = true;
}

void TMidiPlayer::EndLoop() {
  const auto gate = p.gate.Enter();
  Looping = false;
}

void TMidiPlayer::SendMidiData(int MidiOutIndex, std::uint8_t Command, std::uint8_t Data1,
                               std::uint8_t Data2) {
  const auto gate = p.gate.Enter();
  Emit(MidiOutIndex, Command, Data1, Data2);
}

void TMidiPlayer::Emit(int MidiOutIndex, std::uint8_t Command, std::uint8_t Data1, std::uint8_t Data2) {
  Ledger.Sent(static_cast<std::size_t>(MidiOutIndex), Command, Data1, Data2);
  try {
    p.outputs.SendShort(MidiOutIndex, Command, Data1, Data2);
  } catch (const EMidiOutputError&) {
    // The event is lost, as on a cable that was pulled out; the song plays on.
  }
}

void TMidiPlayer::SendSysex(int MidiOutIndex, std::uint8_t Command,
                            std::span<const std::uint8_t> SysData) {
  std::vector<std::uint8_t> message = {Command};
  message.insert(message.end(), SysData.begin(), SysData.end());
  const int route =
      IsHosted(MidiOutIndex) ? MidiOutIndex : RouteOf(static_cast<std::size_t>(MidiOutIndex));
  const auto gate = p.gate.Enter();
  p.outputs.SendLong(route, message);
}

void TMidiPlayer::SendCustomSysex(std::span<const std::uint8_t> SysexMeta) {
  if (!p.outputs.Open(0)) return;
  std::vector<std::uint8_t> message = {Sysex};
  message.insert(message.end(), SysexMeta.begin(), SysexMeta.end());
  const auto gate = p.gate.Enter();
  p.outputs.SendLong(0, message);
}

}  // namespace Sonarello
