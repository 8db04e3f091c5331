// The player's pass: what has fallen due goes out, track by track.
#include <algorithm>

#include "core/TimeMap.h"
#include "playback/EventMessages.h"
#include "playback/LevelMeters.h"
#include "playback/LiveTempo.h"
#include "playback/MidiErrors.h"
#include "playback/MidiPlayer.h"
#include "playback/SongEnd.h"

namespace Sonarello {

namespace {

constexpr std::int32_t LoopAhead = 10;    ///< ms by which a loop jumps early
constexpr std::int32_t LargestGap = 100;  ///< ms of audio that one pass makes up for

/// Instruments whose effects live in a track of their own (`Song::DSPTrackOf` finds it).
void SendDue(TMyTrack& track, std::int32_t position, auto&& send) {
  PtrMidiEvent& e = track.TrkPlayEvent;
  while (e != nullptr && e->TimePosition <= position) {
    if (e->Command == Sysex && e->DLength > 0) send(*e);
    if (e->NextEvent == nullptr) return;
    e = e->NextEvent;
  }
}

}  // namespace

void TMidiPlayer::PlayMidiData() {
  const auto gate = p.gate.Enter();
  if (Tag == MidiReady) {
    Tag = InMidiPass;
    inPass = true;
    MidiPass();
    inPass = false;
    Tag = MidiReady;
    if (SwitchToVSTiTimer.exchange(false)) ReturnToAudio();
    return;
  }
  if (Tag == AudioReady) AudioPass();
}

/// Instruments sound on while no song plays; their time begins anew.
void TMidiPlayer::ReturnToAudio() {
  audioStart = Now();
  lastPutTime = 0;
  Tag = AudioReady;
}

void TMidiPlayer::AudioPass() {
  if (!AudioRuns()) {
    // A song that waited for a device that is gone plays by the clock.
    StartTime = Now() - TimePosition;
    Tag = State == TMidiPlayerState::stPlaying ? MidiReady : Parked;
    return;
  }
  Tag = InAudioPass;
  if (State == TMidiPlayerState::stPlaying && p.audio->IsStartDue()) SwitchToMidiPlayThread = true;
  if (SwitchToMidiPlayThread.exchange(false)) {
    StartTime = Now() - TimePosition;
    lastPutTime = TimePosition;
    Tag = MidiReady;
    return;
  }
  // Instruments keep sounding while no song plays.
  const auto elapsed = static_cast<std::int32_t>(Now() - audioStart);
  if (elapsed - lastPutTime > LargestGap) lastPutTime = elapsed - LargestGap;
  for (; lastPutTime < elapsed; ++lastPutTime) p.audio->PutNewData(BytesOfMillisecond(lastPutTime));
  Tag = AudioReady;
}

void TMidiPlayer::MidiPass() {
  if (State != TMidiPlayerState::stPlaying) return;
  if (TempoChanged.exchange(false)) ApplyTempo();
  MiliSecsSinceStart = Now() - StartTime;
  if (RecordingActive && !p.options.QuickTakerPresent) {
    StartTime = Now();
    MiliSecsSinceStart = 0;
  }
  const auto position = static_cast<std::int32_t>(MiliSecsSinceStart);
  TimePosition = position;
  if (position > p.song.SongLength + SongTailTime) return StopPlaying();
  TracksNotesArrElm = DrumsNotesArrElm = 0;
  pacer.Advance(Now(),
                [&](std::size_t route, std::uint8_t command, std::span<const std::uint8_t> bytes) {
                  SendBytes(static_cast<int>(route), command, bytes);
                });
  PlayDue(position);
  SendEffectTrack(position);
  FeedAudio(position);
  if (Looping && position > LoopEnd - LoopAhead) JumpToLoopStart();
}

void TMidiPlayer::PlayDue(std::int32_t position) {
  for (std::int32_t t = 0; t < p.song.NumberOfSourceTracks; ++t) {
    TMyTrack& track = p.song.MidiTrack[static_cast<std::size_t>(t)];
    if (track.TrkIgnore) continue;
    PtrMidiEvent& e = track.TrkPlayEvent;
    while (e != nullptr && e->TimePosition <= position + track.TrkDelay) {
      if (p.song.MidiFileFormat == 0 || t == ShownTrack) ShownListPos = e->ListPos;
      SendEvent(e, position);
      if (e->NextEvent == nullptr) break;
      e = e->NextEvent;
    }
  }
}

void TMidiPlayer::SendEvent(PtrMidiEvent e, std::int32_t position) {
  if (e->DLength < 1) return;
  if (e->Command == Sysex || e->Command == SysexEscape) return SendSongSysex(*e);
  if (!e->IsChannelEvent()) return;
  if ((e->Kind() & 0xE0) == NoteOff)
    SendNote(*e, position);
  else
    SendOther(*e);
  Track(e);
}

/// Sysex goes to route 0, whichever channel it speaks of.
void TMidiPlayer::SendSongSysex(const TypMidiEvent& e) {
  if (NoSysex()) return;
  const auto send = [&](std::size_t route, std::uint8_t command, std::span<const std::uint8_t> bytes) {
    SendBytes(static_cast<int>(route), command, bytes);
  };
  if (IsHosted(0)) return send(0, e.Command, e.Meta.Bytes());
  pacer.Send(static_cast<std::size_t>(RouteOf(0)), e.Command, e.Meta, send);
}

void TMidiPlayer::SendBytes(int route, std::uint8_t command, std::span<const std::uint8_t> bytes) {
  sysexBytes.clear();
  // An escape holds bytes as they are; an F7 in front of them would end a sysex that never began.
  if (command == Sysex) sysexBytes.push_back(command);
  sysexBytes.insert(sysexBytes.end(), bytes.begin(), bytes.end());
  try {
    p.outputs.SendLong(route, sysexBytes);
  } catch (const EMidiOutputError&) {
    // On the player's thread nobody could be told; the event is lost as a short one is.
  }
}

void TMidiPlayer::SendNote(const TypMidiEvent& e, std::int32_t position) {
  const auto c = static_cast<std::size_t>(e.Channel());
  TMidiChannelData& data = p.song.MidiData[c];
  TRMSValue& meter = p.realtime.RMSValue[c];
  const bool starts = StartsNote(e);
  if (!starts && DisplayActive) MeterNoteOff(meter);
  const auto message = MessageOf(p.song, p.realtime, p.routes, e);
  if (!message) return;
  Emit(message->Route, message->Status, message->Data1, message->Data2);
  if (!starts) return;
  const bool drums = data.DrumPart > 0;
  if (drums) data.DrumArray[e.Value[0]].XValue = position;
  KeepNote({static_cast<std::uint8_t>(c), e.Value[0], message->Data2}, drums);
  if (DisplayActive) MeterNoteOn(meter, message->Data2);
}

void TMidiPlayer::KeepNote(const TNotePlayed& note, bool drums) {
  if (TracksNotesArrElm < MostNotesOfPass)
    TracksNotesArray[static_cast<std::size_t>(TracksNotesArrElm++)] = note;
  if (drums && DrumsNotesArrElm < MostNotesOfPass)
    DrumsNotesArray[static_cast<std::size_t>(DrumsNotesArrElm++)] = note;
}

void TMidiPlayer::SendOther(const TypMidiEvent& e) {
  if (const auto message = MessageOf(p.song, p.realtime, p.routes, e))
    Emit(message->Route, message->Status, message->Data1, message->Data2);
}

void TMidiPlayer::SendEffectTrack(std::int32_t position) {
  if (NoSysex()) return;
  TMyTrack* effects = p.song.DSPTrackOf(p.routes.MidiRouting().front().InstrumValue);
  if (effects == nullptr || effects->TrkFirstEvent == nullptr) return;
  SendDue(*effects, position, [&](const TypMidiEvent& e) { SendSongSysex(e); });
}

void TMidiPlayer::FeedAudio(std::int32_t position) {
  if (!AudioRuns()) return;
  if (position - lastPutTime > LargestGap) lastPutTime = position - LargestGap;
  for (; lastPutTime < position; ++lastPutTime) p.audio->PutNewData(BytesOfMillisecond(lastPutTime));
}

void TMidiPlayer::JumpToLoopStart() {
  EndLedger();
  for (int c = 0; c < ChannelCount; ++c) Silence(c);
  TimePosition = LoopStart;
  lastPutTime = LoopStart;
  for (TMyTrack& track : p.song.MidiTrack) track.TrkPlayEvent = track.TrkLoopStart;
  StartTime = Now() - LoopStart;
  for (TRMSValue& meter : p.realtime.RMSValue) meter.Count = 0;
  if (Hooks.LoopRewound) Hooks.LoopRewound();
}

/// Tempi follow the desk's offset.
void TMidiPlayer::ApplyTempo() {
  KeepPlace([&] { ApplyTempoOffset(p.song, p.functions, TempoOffset); });
  if (Hooks.TempoApplied) Hooks.TempoApplied();
}

void TMidiPlayer::KeepPlace(const std::function<void()>& change) {
  const auto timeOf = [&](std::int32_t tick) { return tick > 0 ? TimeOfPosition(p.song, tick) : 0; };
  const std::int32_t tick = TickOfTime(p.song, TimePosition);
  const std::int32_t loopStart = TickOfTime(p.song, LoopStart);
  const std::int32_t loopEnd = TickOfTime(p.song, LoopEnd);
  change();
  TimePosition = timeOf(tick);
  LoopStart = timeOf(loopStart);
  LoopEnd = timeOf(loopEnd);
  if (State != TMidiPlayerState::stPlaying) return;
  // What was due next is due next: nothing is skipped, and nothing comes in a heap.
  StartTime = Now() - TimePosition;
  lastPutTime = TimePosition;
}

}  // namespace Sonarello
